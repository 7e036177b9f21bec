#include "tests/faults/typical_calls.h"

#include <bit>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <random>

#include "host/objects/script_object.h"
#include "image/errors.h"

namespace faults {
namespace {

const script_value null{}, out = make_cell();
const integer one{1}, two{2}, three{3}, as_host_does{-1};

script_value picture(std::uint32_t code, const extents& sizes = {8, 4}) { return whole_numbers(code, sizes); }
script_value holding(std::uint32_t code, const extents& sizes = {8, 4}) { return make_cell(picture(code, sizes)); }

/// The path of a raw file of 8 x 4 bytes, which is deleted when the program ends.
std::string raw_file()
{
    struct temporary
    {
        temporary() { std::ofstream{path, std::ios::binary} << std::string(8 * 4, 'x'); }
        ~temporary() { std::filesystem::remove(path); }
        std::filesystem::path path = std::filesystem::temp_directory_path() /
                                     ("zentrix_faults_" + std::to_string(std::random_device{}()) + ".raw");
    };
    static const temporary file;
    return file.path.string();
}

script_value names(bool in_groups)
{
    const auto list = memory_tag_group::make_list();
    for (const char* name : {"img10", "img2", "img1"}) {
        const auto group = memory_tag_group::make_group();
        group->set("Name", std::string{name});
        list->insert(list->count(), in_groups ? tag{group} : tag{std::string{name}});
    }
    return object_ref{list};
}

/// A volume with a NaN in the second plane, which filters of ranks repair at the end.
script_value with_nan()
{
    const auto made = whole_numbers(HOST_ELEMENT_FLOAT32, {8, 9, 2});
    made->at<float>(3, 2, 1) = std::numeric_limits<float>::quiet_NaN();
    return object_ref{made};
}

/// Functions that are in no other table.
std::vector<typical_call> calls_of_own_form()
{
    const integer width{8}, height{4}, unsigned_bytes{1};
    const script_value volume = picture(2, {8, 9, 2});
    const arguments selected{make_cell(raw_file() + ";"), "", make_cell(width), make_cell(height),
                             make_cell(unsigned_bytes)};
    arguments selected_by_owner = selected;
    selected_by_owner.emplace_back("Main window");
#ifdef _WIN32
    const char *command = "no-such-program-anywhere", *document = "no-such-document-anywhere";
#else
    const char *command = ":", *document = "no-such-document-anywhere";
#endif
    return {
        {"ZXGoldstain", {picture(2), integer{0}}},
        {"ZXAbsArg", {picture(3), out, out}},
        {"ZXAbsArg", {picture(13), holding(12), holding(12)}},
        {"ZXMovingAverage", {volume, one, picture(2, {8, 9, 2})}},
        {"ZXMovingAverage", {volume, one, volume}},
        {"ZXMovingAverage2", {picture(2), one, out, out}},
        {"ZXMovingAverage2", {picture(13), one, out, out}},
        {"ZXMovingAverage2", {picture(13), one, holding(13), holding(13)}},
        {"ZXMaximumFilter", {with_nan(), three, picture(2, {8, 9, 2})}},
        {"ZXMinimumFilter", {with_nan(), one, picture(2, {8, 9, 2})}},
        {"ZXMedianFilter", {with_nan(), three, picture(2, {8, 9, 2})}},
        {"ZXMedianFilter", {with_nan(), two, picture(2, {8, 9, 2}), one}},
        {"ZXNthElement", {picture(7), three}},
        {"ZXNthElement", {picture(2), three}},
        {"ZXMedian", {picture(12)}},
        {"ZXMedian", {picture(1)}},
        {"ZXMedianZ", {picture(2, {8, 4, 3}), null}},
        {"ZXMask", {picture(3), picture(13, {3}), picture(2, {3, 2}), 2., 1., null}},
        {"ZXOpenImage", {raw_file(), width, height, one, unsigned_bytes}},
        {"ZXOpenImage", {"a file", width, height, one, as_host_does}},
        {"ZXSelectImageFiles", selected},
        {"ZXSelectImageFiles", selected_by_owner},
        {"ZXSortNumberedName", {names(true)}},
        {"ZXSortNumberedName", {names(false)}, qorv::dm::errors::parameters_invalid},
        {"ZXTransposeXZ", {picture(13, {2, 3, 4}), null}},
        {"ZXTransposeXZ", {picture(13, {2, 3, 4}), picture(13, {4, 3, 2})}},
        {"ZXTransposeYZ", {picture(23, {2, 3, 4}), null}},
        {"ZXTransposeYZ", {picture(1, {2, 3, 4}), picture(1, {2, 4, 3})}},
        {"ZXSetUseSIMD", {one}},
        {"ZXPadSize", {integer{513}}},
        {"ZXToDMDataType", {three}},
        {"ZXSetNumThreads", {two}},
        {"ZXGetNumThreads", {}},
        {"ZXGetMaxThreads", {}},
        {"ZXGetSpecialDirectory", {integer{0x28}, integer{0}}},
        {"ZXExec", {command}},
        {"ZXExecWait", {command}},
        {"ZXShellExec", {document}},
        {"ZXSetZentrixHandler", {null, null}},
        {"ZXZentrixPanelUpdate", {}},
        {"ZXIsPaletteOpen", {}},
        {"ZXIsWindowVisible", {}},
    };
}

class copier
{
  public:
    script_value operator()(const script_value& value)
    {
        if (const auto* cell = std::get_if<cell_ref>(&value)) return make_cell((*this)((*cell)->value));
        if (const auto picture = object_in<image>(value)) {
            auto& copy = copies_[picture.get()];
            if (!copy) copy = picture->clone();
            return object_ref{copy};
        }
        if (const auto tags = object_in<tag_group>(value)) return object_ref{copy_of(*tags)};
        return value;
    }

  private:
    static tag_group_ref copy_of(const tag_group& tags)
    {
        const auto copy = tags.is_list() ? memory_tag_group::make_list() : memory_tag_group::make_group();
        for (std::size_t i = 0; i < tags.count(); ++i) {
            tag value = *tags.get_at(i);
            if (const auto* nested = std::get_if<tag_group_ref>(&value)) value = copy_of(**nested);
            if (tags.is_list())
                copy->insert(i, value);
            else
                copy->set(tags.name_at(i), value);
        }
        return copy;
    }

    std::map<const image*, image_ref> copies_;
};

std::string contents(const tag_group& tags)
{
    std::string text = tags.is_list() ? "list[" : "group[";
    for (std::size_t i = 0; i < tags.count(); ++i) {
        const tag value = *tags.get_at(i);
        const auto* nested = std::get_if<tag_group_ref>(&value);
        text += tags.name_at(i) + "=" + (nested ? contents(**nested) : text_of(value)) + ",";
    }
    return text + "]";
}

std::string contents(const script_value& value)
{
    if (const auto* cell = std::get_if<cell_ref>(&value)) return "output " + contents((*cell)->value);
    if (const auto* number = std::get_if<double>(&value))
        return "bits " + std::to_string(std::bit_cast<std::uint64_t>(*number));
    if (const auto picture = object_in<image>(value))
        return picture->describe() + " " + picture->name() + ", pixels " + std::to_string(picture->fingerprint());
    if (const auto tags = object_in<tag_group>(value)) return contents(*tags);
    return describe(value);
}

}  // namespace

std::vector<typical_call> typical_calls()
{
    auto calls = calls_of_own_form();
    std::size_t k = 0;
    for (const auto& row : destination_rows()) {
        const std::uint32_t code = row.types[++k % row.types.size()];
        const extents& sizes = row.sizes.back();
        const auto destination = whole_numbers(row.result_type(code), sizes, 5);
        calls.push_back({row.name, row.make_arguments(whole_numbers(code, sizes), destination)});
        calls.push_back({row.name, row.make_arguments(whole_numbers(code, sizes), nullptr)});
    }
    for (const auto& row : source_rows())
        calls.push_back({row.name, row(whole_numbers(row.types[++k % row.types.size()], {9, 4}))});
    return calls;
}

arguments copy_of(const arguments& args)
{
    arguments copies;
    copier copy;
    for (const auto& value : args) copies.push_back(copy(value));
    return copies;
}

std::string contents(const arguments& values)
{
    std::string text;
    for (const auto& value : values) text += contents(value) + "\n";
    return text;
}

std::vector<image_ref> images_in(const arguments& args)
{
    std::vector<image_ref> images;
    for (const auto& value : args) {
        const auto* cell = std::get_if<cell_ref>(&value);
        if (const auto picture = object_in<image>(cell ? (*cell)->value : value)) images.push_back(picture);
    }
    return images;
}

std::vector<script_value> output_values(const arguments& args)
{
    std::vector<script_value> values;
    for (const auto& argument : args)
        if (const auto* cell = std::get_if<cell_ref>(&argument)) values.push_back((*cell)->value);
    return values;
}

engine_options options()
{
    engine_options chosen = script_host::with_checks();
    chosen.open_image = [](const std::string&) { return whole_numbers(HOST_ELEMENT_FLOAT32, {3, 2}); };
    return chosen;
}

}  // namespace faults
