#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "functions/files/file_selection.h"
#include "functions/files/raw_file.h"
#include "image/errors.h"
#include "tests/script/destinations.h"

namespace {

using namespace script;
namespace fs = std::filesystem;
namespace errors = qorv::dm::errors;
using testing::ElementsAre;

/// A folder of its own, gone after the test.
class Files : public testing::Test
{
  protected:
    Files() : folder{fs::temp_directory_path() / ("zentrix_files_" + std::to_string(std::random_device{}()))}
    {
        fs::create_directories(folder / "other");
    }
    ~Files() override { fs::remove_all(folder); }

    std::string path(const std::string& name) const { return (folder / name).make_preferred().string(); }
    std::string write(const std::string& name, const std::vector<unsigned char>& bytes) const
    {
        std::ofstream{folder / name, std::ios::binary}.write(reinterpret_cast<const char*>(bytes.data()),
                                                             static_cast<std::streamsize>(bytes.size()));
        return path(name);
    }

    fs::path folder;
};

TEST_F(Files, RawImagesComeBackInEveryType)
{
    script_host script;
    const std::uint32_t codes[] = {9, 6, 1, 10, 7, 11, 2, 12, 3, 13};
    for (integer type = 0; type < 10; ++type)
        for (const std::uint32_t depth : {1u, 2u}) {
            const auto original = whole_numbers(codes[type], {5, 3, depth});
            const std::string file = write("raw.bin", bytes_of(original));
            const auto read = script.call_image("ZXOpenImage", {file, integer{5}, integer{3}, integer{depth}, type});
            EXPECT_EQ(read->code(), codes[type]);
            EXPECT_EQ(read->dimensions(), depth == 1 ? 2u : 3u);
            EXPECT_EQ(bytes_of(read), bytes_of(original)) << "type " << type;
            EXPECT_EQ(read->name(), "raw.bin");
        }
}

TEST_F(Files, OpenImageRefusesInOrderAndLeavesPicturesToTheHost)
{
    auto options = script_host::with_checks();
    options.open_image = [](const std::string& file) {
        return image::create(file, HOST_ELEMENT_FLOAT32, {{std::uint32_t{2}, std::uint32_t{2}}});
    };
    script_host script{options};
    const std::string file = write("six.raw", std::vector<unsigned char>(6)), missing = path("missing.raw");
    struct refusal
    {
        std::string file;
        integer width, height, depth, type;
        const char* text;
    };
    const refusal refusals[] = {
        {missing, 0, 2, 1, 10, errors::unknown_data_type},       {missing, 0, 2, 1, -2, errors::unknown_data_type},
        {missing, 0, 2, 1, 0, errors::invalid_image_size},       {missing, 3, 2, -1, 0, errors::invalid_image_size},
        {missing, 3, 2, 1, 0, qorv::functions::file_not_opened}, {file, 3, 2, 1, 2, errors::invalid_image_size},
        {file, 3, 1, 1, 0, errors::invalid_image_size},          {file, 3, 2, 1, 0, ""},
    };
    for (const auto& r : refusals)
        EXPECT_EQ(script.failure("ZXOpenImage", {r.file, r.width, r.height, r.depth, r.type}), r.text);
    EXPECT_EQ(script.call_image("ZXOpenImage", {missing, integer{0}, integer{0}, integer{0}, integer{-1}})->name(),
              missing);
}

std::vector<std::string> names_in(const script_value& list)
{
    const auto group = object_in<tag_group>(list);
    std::vector<std::string> names;
    for (std::size_t k = 0; k < group->count(); ++k)
        names.push_back(group->read_string("[" + std::to_string(k) + "]:Name").value_or("?"));
    return names;
}

TEST_F(Files, SelectImageFilesTakesListsWithoutADialog)
{
    script_host script;
    for (const char* name : {"img10.raw", "img2.RAW", "a.dat", "p1.tif", "other/img3.raw"}) write(name, {1});
    const auto select = [&](const std::string& start, const std::string& filter, auto&&... owner) {
        std::vector<script_value> given{make_cell(start),      filter,  make_cell(integer{7}), make_cell(integer{8}),
                                        make_cell(integer{6}), owner...};
        const auto names = names_in(script.call("ZXSelectImageFiles", given));
        const auto text = [&](std::size_t k) { return std::get<cell_ref>(given[k])->value; };
        return std::tuple{names, std::get<std::string>(text(0)), std::get<integer>(text(2)),
                          std::get<integer>(text(4))};
    };
    using names = std::vector<std::string>;
    const std::string main_window = "Main window";
    EXPECT_EQ(select(path("img*.raw"), ""), std::tuple(names{"img2.RAW", "img10.raw"}, path(""), 7, 6));
    // Pictures tell their type themselves.
    EXPECT_EQ(select(path("*.tif") + "\n", "", main_window), std::tuple(names{"p1.tif"}, path(""), 7, -1));
    EXPECT_EQ(select(path("a.dat") + ";" + path("other"), "Raw|*.raw;*.img|All|*.*"),
              std::tuple(names{path("a.dat"), path("other/img3.raw")}, "", 7, 6));
    EXPECT_EQ(select(path("none*"), ""), std::tuple(names{}, path("none*"), 7, 6));
}

TEST(FileSelection, ReadsFiltersAndPatterns)
{
    using namespace qorv::functions;
    EXPECT_THAT(patterns_of("Raw files|*.raw;*.dat|All|*.*"), ElementsAre("*.raw", "*.dat"));
    EXPECT_THAT(patterns_of("All|*.*"), ElementsAre("*"));
    EXPECT_THAT(patterns_of("*.raw"), ElementsAre("*.raw"));
    EXPECT_THAT(patterns_of(""), ElementsAre("*"));
    const std::tuple<const char*, const char*, bool> table[] = {
        {"*", "", true},        {"*.raw", "A.RAW", true},   {"a?c*", "abcd", true}, {"a?c", "ac", false},
        {"*b*b", "abcb", true}, {"*.raw", "raw", false},    {"a*", "ba", false},    {"", "a", false},
        {"a**", "a", true},     {"*ab*b?", "aabbbc", true},
    };
    for (const auto& [pattern, name, fits] : table) EXPECT_EQ(matches(pattern, name), fits) << pattern << " " << name;
    EXPECT_FALSE(matches("*a*a*a*a*a*a*a*a*a*a*a*a*b", std::string(200, 'a'))) << "before the user gives up";
}

TEST(SortNumberedName, SortsGroupsAndTexts)
{
    script_host script;
    const auto texts = memory_tag_group::make_list(), groups = memory_tag_group::make_list();
    for (const char* name : {"img10", "IMG2", "img1"}) {
        texts->insert(texts->count(), std::string{name});
        const auto group = memory_tag_group::make_group();
        group->set("Name", std::string{name});
        group->set("Order", static_cast<std::int32_t>(groups->count()));
        groups->insert(groups->count(), group);
    }
    script.call("ZXSortNumberedName", {groups});
    EXPECT_THAT(names_in(groups), ElementsAre("img1", "IMG2", "img10"));
    EXPECT_EQ(groups->read_long("[0]:Order"), 0);
    script.call("ZXSortNumberedName", {texts});
    EXPECT_EQ(texts->read_string("[2]"), "img10");
    groups->insert(0, std::int32_t{5});
    EXPECT_EQ(script.failure("ZXSortNumberedName", {groups}), errors::parameters_invalid);
    EXPECT_EQ(script.failure("ZXSortNumberedName", {script_value{}}), errors::parameters_invalid);
    script.call("ZXSortNumberedName", {memory_tag_group::make_list()});
}

}  // namespace
