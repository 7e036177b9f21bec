#include "functions/files/files_entry.h"

#include <algorithm>
#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/files/file_selection.h"
#include "functions/files/numbered_name.h"
#include "functions/files/raw_file.h"
#include "functions/files/select_files.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

constexpr char name_tag[] = "Name";

/// A list with a group for each file, the file's name in its tag "Name".
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

tag_group_ref selected(const output<std::string>& path, const std::string& filter, const output<std::int32_t>& width,
                       const output<std::int32_t>& height, const output<std::int32_t>& type, const std::string& owner)
{
    const std::string start = path.get();
    const bool is_listed = lists_files(start);  // then nobody is asked anything
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

/// Where entry `index` of a list keeps its name: in its tag "Name", or as a text itself.
std::string name_path(const tag_group_ref& list, std::int32_t index, std::string& name)
{
    std::string entry{'['};
    entry += std::to_string(index);
    entry += ']';
    for (const std::string& place : {entry + ":" + name_tag, entry})
        if (binding::TagGroupGetTagAsString(list, place, name)) return place;
    throw std::runtime_error{dm::errors::parameters_invalid};
}

}  // namespace

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
    dm::write_lock to{image};
    using any_type = dm::element_list<std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t,
                                      std::uint32_t, float, double, std::complex<float>, std::complex<double>>;
    dm::visit(any_type{}, code, [&]<class T>() { file.read(dm::flat(to.view<T>()), bytes); });
    to.release();
    return image;
}

void SortNumberedNameDM(tag_group_ref tFiles)
{
    const dm::timing_scope timing{"SortNumberedNameDM"};
    dm::require(static_cast<bool>(tFiles), dm::errors::parameters_invalid);
    const std::int32_t count = binding::TagGroupCountTags(tFiles);
    std::vector<std::string> names(static_cast<std::size_t>(std::max(count, 0))), places;
    for (std::int32_t i = 0; i < count; ++i) places.push_back(name_path(tFiles, i, names[static_cast<std::size_t>(i)]));
    sort_numbered_names(names);
    for (std::size_t i = 0; i < names.size(); ++i) binding::TagGroupSetTagAsString(tFiles, places[i], names[i]);
}

}  // namespace qorv::functions
