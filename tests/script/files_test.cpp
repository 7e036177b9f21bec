#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "image/errors.h"
#include "tests/script/destinations.h"

namespace {

using namespace script;
namespace fs = std::filesystem;
namespace errors = qorv::dm::errors;
using testing::ElementsAre;

/// A temporary folder for each test.
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

TEST_F(Files, RawImagesAreReadInEveryType)
{
    script_host script;
    const std::uint32_t codes[] = {9, 6, 1, 10, 7, 11, 2, 12, 3, 13};
    for (integer type = 0; type < 10; ++type)
        for (const std::uint32_t depth : {1u, 2u}) {
            const auto original = whole_numbers(codes[type], {5, 3, depth});
            const std::string file = write("raw.bin", bytes_of(original));
            const auto read = script.call_image("ZXOpenImage", {file, integer{5}, integer{3}, integer{depth}, type});
            EXPECT_EQ(std::pair(read->code(), read->dimensions()), std::pair(codes[type], std::size_t{depth + 1}));
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
    for (const auto& [name, w, h, d, type, text] :
         std::vector<std::tuple<std::string, integer, integer, integer, integer, const char*>>{
             {missing, 0, 2, 1, 10, errors::unknown_data_type},
             {missing, 0, 2, 1, 0, errors::invalid_image_size},
             {missing, 3, 2, -1, 0, errors::invalid_image_size},
             {missing, 3, 2, 1, 0, "The file cannot be opened."},
             {file, 3, 2, 1, 2, errors::invalid_image_size},
             {file, 3, 2, 1, 0, ""}})
        EXPECT_EQ(script.failure("ZXOpenImage", {name, w, h, d, type}), text);
    EXPECT_EQ(script.call_image("ZXOpenImage", {missing, integer{0}, integer{0}, integer{0}, integer{-1}})->name(),
              missing);
}

std::vector<std::string> names_in(const script_value& list)
{
    const auto group = object_in<tag_group>(list);
    std::vector<std::string> names;
    for (std::size_t k = 0; k < group->count(); ++k) {
        const std::string entry = "[" + std::to_string(k) + "]";
        const auto text = group->read_string(entry);
        names.push_back(text ? *text : group->read_string(entry + ":Name").value_or("?"));
    }
    return names;
}

TEST_F(Files, SelectImageFilesExpandsListsWithoutADialog)
{
    script_host script;
    for (const char* name : {"img10.raw", "img2.RAW", "a.dat", "p1.tif", "s.mrcs", "other/img3.raw"}) write(name, {1});
    const auto select = [&](const std::string& start, const std::string& filter, auto&&... owner) {
        std::vector<script_value> args{make_cell(start),      filter,  make_cell(integer{7}), make_cell(integer{8}),
                                       make_cell(integer{6}), owner...};
        const auto names = names_in(script.call("ZXSelectImageFiles", args));
        const auto text = [&](std::size_t k) { return std::get<cell_ref>(args[k])->value; };
        return std::tuple{names, std::get<std::string>(text(0)), std::get<integer>(text(2)),
                          std::get<integer>(text(4))};
    };
    using names = std::vector<std::string>;
    const std::string main_window = "Main window";
    EXPECT_EQ(select(path("img*.raw"), ""), std::tuple(names{"img2.RAW", "img10.raw"}, path(""), 7, 6));
    // Picture formats give their type.
    EXPECT_EQ(select(path("*.tif") + "\n", "", main_window), std::tuple(names{"p1.tif"}, path(""), 7, -1));
    EXPECT_EQ(select(path("*.mrcs"), ""), std::tuple(names{"s.mrcs"}, path(""), 7, -1));
    EXPECT_EQ(select(path("a.dat") + ";" + path("other"), "Raw|*.raw;*.img|All|*.*"),
              std::tuple(names{path("a.dat"), path("other/img3.raw")}, "", 7, 6));
    EXPECT_EQ(select(path("none*"), ""), std::tuple(names{}, path("none*"), 7, 6));
}

tag_group_ref names_as(bool as_groups, const std::vector<std::string>& names)
{
    const auto list = memory_tag_group::make_list();
    for (const std::string& name : names) {
        const auto group = memory_tag_group::make_group();
        group->set("Name", name);
        list->insert(list->count(), as_groups ? tag{group} : tag{name});
    }
    return list;
}

TEST(SortNumberedName, SortsTextsAndGroups)
{
    script_host script;
    for (const bool as_groups : {false, true}) {
        const auto list = names_as(as_groups, {"img1", "img30", "IMG2", "img10"});
        script.call("ZXSortNumberedName", {list});
        EXPECT_THAT(names_in(list), ElementsAre("img1", "IMG2", "img10", "img30"));
    }
}

TEST(SortNumberedName, RefusesWhatItCannotMove)
{
    script_host script;
    const auto with_number = names_as(true, {"b", "a"}), with_more_tags = names_as(true, {"b", "a"});
    with_number->insert(2, std::int32_t{5});
    with_more_tags->write("[1]:Exposure", 0.5f);
    const auto group = memory_tag_group::make_group();
    for (const char* name : {"b", "a"}) group->set(name, std::string{name});
    const auto fails = [&](const script_value& list) { return script.failure("ZXSortNumberedName", {list}); };
    EXPECT_EQ(fails(script_value{}), errors::parameters_invalid);
    EXPECT_EQ(fails(group), errors::parameters_invalid);
    EXPECT_EQ(fails(with_number), errors::parameters_invalid);
    EXPECT_EQ(fails(with_more_tags), "Entries with other tags than \"Name\" cannot be sorted.");
    for (const auto& list : {with_number, with_more_tags}) EXPECT_EQ(list->read_string("[0]:Name"), "b");
    EXPECT_EQ(fails(memory_tag_group::make_list()), "");
}

}  // namespace
