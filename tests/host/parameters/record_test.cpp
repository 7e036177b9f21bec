#include "host/parameters/record.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/files/npy.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_file.h"
#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

using namespace zentrix;
using namespace zentrix::host;
namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

namespace {

class records : public testing::Test
{
  protected:
    records()
    {
        folder_.write("in.npy", "abc");
        made_.command = {"zentrix", "correct", "in.npy", "-o", "it's out.npy"};
        made_.inputs = {input_of(at("in.npy"))};
        made_.parameters = parameter_set{};
        made_.parameters->kilovolts = 300;
        made_.parameters->pixel_nm = 0.1;
        made_.parameters->coefficients[lens::coefficient::A1] = {14, 35};
        made_.more = {{"removed", true}};
        write_npy(folder_ / "out.npy", *wave_);
    }

    std::string at(const std::string& name) const { return (folder_ / name).string(); }
    void record(const std::string& name) { write_record(folder_ / name, made_, {{folder_ / "out.npy", wave_.get()}}); }
    std::string place_of(const std::string& result) { return record_path({folder_ / result}).filename().string(); }

    const support::scratch_folder folder_;
    const std::uint32_t sizes_[2] = {3, 2};
    image_ref wave_ = image::create("wave", HOST_ELEMENT_COMPLEX64, sizes_);
    provenance made_;
};

TEST_F(records, SayHowAResultWasMade)
{
    record("out.json");
    json written = read_json(folder_ / "out.json");
    EXPECT_EQ(written["command"], json(made_.command));
    EXPECT_NEAR(written["wavelength_nm"].get<double>(), 0.0019687489006848795, 1e-12);
    EXPECT_EQ(written["removed"], true);
    EXPECT_EQ(written["program"]["name"], "zentrix");
    // As printed by xxh128sum.
    EXPECT_EQ(written["input"],
              json({{"name", at("in.npy")}, {"size", 3}, {"digest", "xxh128:06b05ab6733a618578af5f94892f3950"}}));
    written["result"].erase("digest");
    const json axis{{"step", 0.1}, {"first", 0}, {"unit", "nm"}};
    EXPECT_EQ(written["result"], json({{"file", "out.npy"},
                                       {"size", fs::file_size(folder_ / "out.npy")},
                                       {"type", "complex64"},
                                       {"shape", {3, 2}},
                                       {"scale", {{"x", axis}, {"y", axis}, {"kv", 300}}}}));
    const auto again = read_parameters(folder_ / "out.json");
    EXPECT_EQ(as_json(again), as_json(*made_.parameters));

    const auto texts = texts_of(made_);
    ASSERT_EQ(texts.size(), 5);
    EXPECT_EQ(texts[1].second, R"(zentrix correct in.npy -o 'it'\''s out.npy')");
    EXPECT_EQ(json::parse(texts[2].second), as_json(again));
    EXPECT_NE(texts[4].second.find("xxh128:06b05ab6733a618578af5f94892f3950"), std::string::npos);
}

TEST_F(records, DoNotReplaceWhatIsSomethingElse)
{
    EXPECT_EQ(place_of("out.npy"), "out.json");
    record("out.json");
    EXPECT_EQ(place_of("out.npy"), "out.json") << "its own record";
    EXPECT_EQ(place_of("out.png"), "out.png.json") << "the record of another result";
    EXPECT_EQ(record_path({folder_ / "out.png", folder_ / "out.npy"}), folder_ / "out.json") << "made together";
    fs::remove(folder_ / "out.npy");
    EXPECT_EQ(place_of("out.png"), "out.json") << "a record of files that are gone";

    write_npy(folder_ / "out.npy", *wave_);
    for (const char* other : {"", "{}", R"({"C1": -62})", R"({"program": {"name": "zentrix"}})",
                              R"({"program": {"name": "other"}, "result": {"file": "out.npy"}})"}) {
        folder_.write("out.json", other);
        EXPECT_EQ(place_of("out.npy"), "out.npy.json") << other;
    }
    folder_.write("out.npy.json", "{}");
    EXPECT_NE(support::message_of([&] { place_of("out.npy"); }).find("out.json: is not a record of out.npy"),
              std::string::npos);

    fs::remove(folder_ / "out.npy");
    EXPECT_NE(support::message_of([&] { record("new.json"); }).find("out.npy: there is no such file"),
              std::string::npos);
    EXPECT_FALSE(fs::exists(folder_ / "new.json")) << "a result that is not there";
}

TEST_F(records, TellWhetherAResultWasMadeInTheSameWay)
{
    const auto is_done = [&](const provenance& made) { return is_recorded({folder_ / "out.npy"}, made); };
    EXPECT_FALSE(is_done(made_));
    record("out.json");
    provenance same = made_;
    same.command = {"other", "words"};
    EXPECT_TRUE(is_done(same));
    fs::rename(folder_ / "out.json", folder_ / "out.npy.json");
    EXPECT_TRUE(is_done(same));

    using change = void (*)(provenance&);
    const change changes[] = {
        [](provenance& made) { made.parameters->coefficients[lens::coefficient::A1].modulus += 1e-14; },
        [](provenance& made) { made.parameters = {}; },
        [](provenance& made) { made.more["removed"] = false; },
        [](provenance& made) { made.more["nan"] = "zero"; },
        [](provenance& made) { made.inputs[0].contents.digest[10] ^= 1; },
        [](provenance& made) { made.inputs[0].plane = 0; },
        [](provenance& made) { made.inputs.push_back(made.inputs[0]); }};
    for (const change& apply : changes) {
        provenance other = made_;
        apply(other);
        EXPECT_FALSE(is_done(other)) << &apply - changes;
    }
    EXPECT_FALSE(is_recorded({folder_ / "out.npy", folder_ / "out.png"}, made_));
    fs::resize_file(folder_ / "out.npy", 40);
    EXPECT_FALSE(is_done(made_));
}

TEST_F(records, GiveTheirScaleToTheResult)
{
    const auto scale_of = [&](const image& pixels) { return recorded_scale(folder_ / "out.npy", pixels); };
    EXPECT_FALSE(scale_of(*wave_));
    record("out.json");
    ASSERT_TRUE(scale_of(*wave_));
    EXPECT_EQ(square_pixel_nm(*scale_of(*wave_)), 0.1) << "of the parameters";
    EXPECT_EQ(scale_of(*wave_)->kilovolts, 300);

    calibration own;
    own.axes[0] = {0.25, -3.5, "1/nm"};
    own.axes[1] = {0.5, 0, "\u00b5m"};
    own.kilovolts = 80;
    wave_->set_scale(own);
    record("out.json");
    const auto read = scale_of(*wave_).value();
    for (int d = 0; d < 3; ++d) {
        EXPECT_EQ(read.axes[d].step, own.axes[d].step);
        EXPECT_EQ(read.axes[d].first, own.axes[d].first);
        EXPECT_EQ(read.axes[d].unit, own.axes[d].unit);
    }
    EXPECT_EQ(read.kilovolts, 80);

    EXPECT_FALSE(scale_of(*image::create("other type", HOST_ELEMENT_COMPLEX128, sizes_)));
    EXPECT_FALSE(scale_of(*image::create("other shape", HOST_ELEMENT_COMPLEX64, {{2, 3}})));
    json record = read_json(folder_ / "out.json");
    for (const json& scale : {json(3), json{{"x", 3}, {"kv", "300"}}, json{{"x", {{"step", "a"}, {"unit", 4}}}}}) {
        record["result"]["scale"] = scale;
        write_json(folder_ / "out.json", record);
        EXPECT_EQ(square_pixel_nm(scale_of(*wave_).value_or(calibration{})), 0) << scale;
    }
    fs::resize_file(folder_ / "out.npy", 40);
    EXPECT_FALSE(scale_of(*wave_)) << "another file";
}

}  // namespace
