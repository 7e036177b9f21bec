#include "functions/files/files_entry.h"

#include <algorithm>
#include <vector>

#include "binding/call.h"
#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/files/file_selection.h"
#include "functions/files/numbered_name.h"
#include "functions/files/raw_file.h"
#include "functions/files/select_files.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using binding::output;
using binding::tag_group_ref;

constexpr char name_tag[] = "Name";
constexpr char entries_with_other_tags[] = "Entries with other tags than \"Name\" cannot be sorted.";

/// A list of groups, one for each file, with the file's name in the tag "Name".
tag_group_ref list_of(const std::vector<std::string>& names)
{
    tag_group_ref list = binding::NewTagList();
    std::int32_t index = 0;
    for (const std::string& name : names) {
        const tag_group_ref file = binding::NewTagGroup();
        binding::TagGroupSetTagAsString(file, name_tag, name);
        binding::TagGroupInsertTagAsTagGroup(list, index++, file);
    }
    return list;
}

/// The body of both forms of SelectImageFiles.
tag_group_ref selected(const output<std::string>& path, const std::string& filter, const output<std::int32_t>& width,
                       const output<std::int32_t>& height, const output<std::int32_t>& type, const std::string& owner)
{
    const std::string start = path.get();
    const bool is_listed = lists_files(start);  // no dialog is needed
    const auto files = is_listed ? expanded(start, filter) : platform::choose_files(start, filter, owner);
    platform::raw_format format{width.get(), height.get(), type.get()};
    const bool any_raw = std::any_of(files.begin(), files.end(), [](const std::string& file) { return is_raw(file); });
    if (files.empty()) return binding::NewTagList();
    if (any_raw && !is_listed && !platform::choose_raw_format(format, owner)) return binding::NewTagList();
    const auto [folder, names] = grouped(files);
    tag_group_ref list = list_of(names);
    path.set(folder);
    width.set(format.width);
    height.set(format.height);
    type.set(any_raw ? format.type : static_cast<std::int32_t>(dm::element_type::none));
    return list;
}

/// An entry of a list of names. Its name is the tag "Name" of a group, or the entry itself if it is a text.
struct named_entry
{
    tag_group_ref holder;
    std::string path;
    std::string name;
    bool is_group;

    void rename(const std::string& new_name) const { binding::TagGroupSetTagAsString(holder, path, new_name); }
};

/// Throws  errors::parameters_invalid for an entry without a name, entries_with_other_tags
named_entry entry_at(const tag_group_ref& list, std::int32_t index)
{
    named_entry entry{list, "[" + std::to_string(index) + "]", "", false};
    tag_group_ref group;
    if (binding::TagGroupGetIndexedTagAsTagGroup(list, index, group)) entry = {group, name_tag, "", true};
    dm::require(binding::TagGroupGetTagAsString(entry.holder, entry.path, entry.name), dm::errors::parameters_invalid);
    dm::require(!entry.is_group || binding::TagGroupCountTags(group) == 1, entries_with_other_tags);
    return entry;
}

/// Writing a text over itself shows, before anything is changed, whether texts can be written by number. In a group
/// they cannot.
/// Throws  errors::parameters_invalid for a group of texts and for a list that refuses the text
void require_list(const std::vector<named_entry>& entries)
{
    const auto text = std::find_if(entries.begin(), entries.end(), [](const auto& entry) { return !entry.is_group; });
    if (text == entries.end()) return;
    try {
        text->rename(text->name);
    } catch (const binding::host_error&) {
        throw std::runtime_error{dm::errors::parameters_invalid};
    }
}

/// Writes the former names of the first `count` entries. Returns whether all could be written.
bool restore(const std::vector<named_entry>& entries, const std::vector<std::string>& names, std::size_t count)
{
    bool all = true;
    for (std::size_t i = 0; i < count; ++i) {
        try {
            if (entries[i].name != names[i]) entries[i].rename(entries[i].name);
        } catch (const std::exception&) {  // the first error is reported
            all = false;
        }
    }
    return all;
}

/// Renames the entries. If a name cannot be written, the former names are restored.
void rename(const std::vector<named_entry>& entries, const std::vector<std::string>& names)
{
    std::size_t current = 0;
    try {
        for (; current < entries.size(); ++current)
            if (entries[current].name != names[current]) entries[current].rename(names[current]);
    } catch (...) {
        // A name that cannot be restored is lost. A host that is short of memory may have some again the second time.
        if (!restore(entries, names, current + 1)) restore(entries, names, current + 1);
        throw;
    }
}

tag_group_ref SelectImageFilesDM(output<std::string> path, const std::string& strFilter, output<std::int32_t> nW,
                                 output<std::int32_t> nH, output<std::int32_t> eType)
{
    const dm::timing_scope timing{"SelectImageFilesDM"};
    return selected(path, strFilter, nW, nH, eType, "");
}

tag_group_ref SelectImageFilesOwnedDM(output<std::string> path, const std::string& strFilter, output<std::int32_t> nW,
                                      output<std::int32_t> nH, output<std::int32_t> eType,
                                      const std::string& cOwnerName)
{
    const dm::timing_scope timing{"SelectImageFilesOwnedDM"};
    return selected(path, strFilter, nW, nH, eType, cOwnerName);
}

image_ref OpenImageDM(const std::string& path, std::int32_t nW, std::int32_t nH, std::int32_t nD, std::int32_t eType)
{
    const dm::timing_scope timing{"OpenImageDM"};
    if (eType == static_cast<std::int32_t>(dm::element_type::none)) return binding::OpenImage(path);
    const std::uint32_t code = dm::ToDMDataType(eType);
    const std::uint64_t bytes = raw_bytes(static_cast<dm::element_type>(eType), nW, nH, nD);
    raw_file file{path};
    file.require_length(bytes);
    std::vector<std::uint32_t> sizes{static_cast<std::uint32_t>(nW), static_cast<std::uint32_t>(nH)};
    if (nD > 1) sizes.push_back(static_cast<std::uint32_t>(nD));
    image_ref image = binding::NewImage(grouped({path}).names.front(), code, sizes);
    using any_type = dm::element_list<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                      std::uint32_t, float, double, std::complex<float>, std::complex<double>>;
    dm::with_locks(dm::writing{image}, [&](const dm::write_lock& to) {
        dm::visit(any_type{}, code, [&]<class T>() { file.read(dm::flat(to.view<T>()), bytes); });
    });
    return image;
}

void SortNumberedNameDM(tag_group_ref tFiles)
{
    const dm::timing_scope timing{"SortNumberedNameDM"};
    dm::require(static_cast<bool>(tFiles), dm::errors::parameters_invalid);
    std::vector<named_entry> entries;
    const std::int32_t count = binding::TagGroupCountTags(tFiles);
    for (std::int32_t index = 0; index < count; ++index) entries.push_back(entry_at(tFiles, index));
    require_list(entries);
    std::vector<std::string> names;
    for (const named_entry& entry : entries) names.push_back(entry.name);
    sort_numbered_names(names);
    rename(entries, names);
}

constexpr dm::script_function rows[] = {
    {"TagGroup ", "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType)",
     binding::add_function<SelectImageFilesDM>},
    {"TagGroup ",
     "SelectImageFiles(dm_string * path, string strFilter, long * nW, long * nH, long * eType,char* cOwnerName)",
     binding::add_function<SelectImageFilesOwnedDM>},
    {"ImageRef ", "OpenImage(string path, long nW, long nH, long nD, long eType)", binding::add_function<OpenImageDM>},
};

constexpr dm::script_function name_rows[] = {
    {"void ", "SortNumberedName(TagGroup tFiles)", binding::add_function<SortNumberedNameDM>},
};

}  // namespace

const dm::script_functions file_functions{rows};
const dm::script_functions name_functions{name_rows};

}  // namespace qorv::functions
