#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "tests/script/destinations.h"

// Every call that a script function makes of the host fails once: the script gets a text, and nothing stays held or locked.
namespace {

using namespace script;

const script_value null{};
script_value picture(std::uint32_t code, const extents& sizes = {8, 4}) { return whole_numbers(code, sizes); }

/// The transfer function's arguments between source and destination.
arguments wave_transfer(script_value source, script_value destination)
{
    arguments given{std::move(source)};
    given.resize(20, 0.1);
    given.insert(given.end(), {integer{1}, std::complex<double>{}, std::move(destination)});
    return given;
}

/// The path of a raw file of 8 x 4 bytes that is there until the program ends.
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

script_value numbered_names()
{
    const auto list = memory_tag_group::make_list();
    for (const char* name : {"img10", "img2"}) list->insert(list->count(), std::string{name});
    return object_ref{list};
}

/// A call of every function that asks the host for something.
std::vector<std::pair<const char*, arguments>> all_calls()
{
    const script_value out = make_cell();
    const std::complex<double> i{0, 1};
    return {
        {"ZXWTFMulDLL", wave_transfer(picture(3), null)},
        {"ZXWTFMulDLL", wave_transfer(picture(3), picture(3))},
        {"ZXGoldstain", {picture(2), integer{0}}},
        {"ZXImageShifterForSemper", {picture(3), integer{0}, integer{0}, 4., 2., 1., null}},
        {"ZXMovingAverage", {picture(2, {8, 4, 2}), integer{1}, null}},
        {"ZXMovingAverage2", {picture(13), integer{1}, out, out}},
        {"ZXMovingAverageX", {picture(3), integer{1}, null}},
        {"ZXMovingAverageY", {picture(2), integer{1}, picture(2)}},
        {"ZXMovingAverageZ", {picture(12, {8, 4, 3}), integer{1}, null}},
        {"ZXGaussianBlur", {picture(2), 1.5, integer{3}, null}},
        {"ZXMaximumFilter", {picture(1), integer{1}, null}},
        {"ZXMinimumFilter", {picture(14), integer{1}, null}},
        {"ZXMedianFilter", {picture(10), integer{1}, null}},
        {"ZXMedianFilter", {picture(2), integer{1}, null, integer{1}}},
        {"ZXNthElement", {picture(7), integer{3}}},
        {"ZXMedian", {picture(12)}},
        {"ZXMedianZ", {picture(2, {8, 4, 3}), null}},
        {"ZXSurvey", {picture(2), out, out, out, out, out}},
        {"ZXSurvey", {picture(6), out, out, out, out}},
        {"ZXPolar", {picture(2), picture(2), null}},
        {"ZXPolar", {2.5, picture(12), picture(13)}},
        {"ZXAbsArg", {picture(3), out, out}},
        {"ZXAbs", {picture(13), null}},
        {"ZXExp2", {picture(2), null}},
        {"ZXLog2", {picture(12), picture(12)}},
        {"ZXPow", {picture(2), picture(2), null}},
        {"ZXCArg", {picture(3), null}},
        {"ZXNorm", {picture(3), 0.5, picture(2)}},
        {"ZXSurveyDifference", {picture(2), picture(2), out, out, out, out, out, out, out}},
        {"ZXMinMax", {picture(1), out, out, out, out, out, out, out, out}},
        {"ZXMax", {picture(12), out, out, out}},
        {"ZXRadialSurvey", {picture(2, {8, 4, 2}), integer{4}, integer{2}, 1., 1.}},
        {"ZXWeight", {picture(3), picture(2, {5}), integer{4}, integer{2}, 1., 1., integer{3}, null}},
        {"ZXFTWindow", {picture(3), integer{4}, null}},
        {"ZXHanningWindow", {picture(2), 1., 2., 3., null}},
        {"ZXSineWindow", {picture(2), 1. + i, 2. * i, i, null}},
        {"ZXMask", {picture(3), picture(13, {3}), picture(2, {3, 2}), 2., 1., null}},
        {"ZXCrossCorrelationMaskWithDefocus",
         {picture(3), picture(3), integer{4}, integer{2}, 1., 1., 1., 3., integer{2}, out, null}},
        {"ZXGetCenterOfMass", {picture(2), make_cell(4.), make_cell(2.), 3., integer{9}, -1000.}},
        {"ZXOpenImage", {raw_file(), integer{8}, integer{4}, integer{1}, integer{1}}},
        {"ZXSelectImageFiles",
         {make_cell(raw_file() + ";"), std::string{}, make_cell(integer{8}), make_cell(integer{4}),
          make_cell(integer{1})}},
        {"ZXSortNumberedName", {numbered_names()}},
        {"ZXTransposeXZ", {picture(13, {2, 3, 4}), null}},
        {"ZXTransposeYZ", {picture(23, {2, 3, 4}), null}},
    };
}

std::uint64_t trace_reports(engine& host)
{
    std::uint64_t reports = 0;
    for (const auto& [name, counter] : host.records().traces()) reports += counter.reports;
    return reports;
}

/// What the outputs hold.
std::vector<script_value> values_in(const arguments& given)
{
    std::vector<script_value> values;
    for (const auto& argument : given)
        if (const auto* out = std::get_if<cell_ref>(&argument)) values.push_back((*out)->value);
    return values;
}

TEST(Faults, EveryHostCallMayFail)
{
    std::map<fault_point, std::uint64_t> all_requests;
    const auto calls = all_calls();
    for (const auto& [function, row] : calls) {
        script_host script;
        engine& host = script.host();
        ASSERT_EQ(script.failure(function, with_new_outputs(row)), "") << function;  // also fills the slots
        for (const auto point : {fault_point::call, fault_point::find_method, fault_point::make_string}) {
            host.faults().clear();
            ASSERT_EQ(script.failure(function, with_new_outputs(row)), "") << function;
            const auto requests = host.faults().count(point);
            EXPECT_TRUE(requests > 0 || point != fault_point::call) << function;
            all_requests[point] += requests;
            for (std::uint64_t k = 1; k <= requests; ++k) {
                const auto given = with_new_outputs(row);
                const auto outputs = values_in(given);
                const auto reports = trace_reports(host);
                host.faults().plan({point, k});
                EXPECT_NE(script.failure(function, given), "") << function << ", request " << k;
                EXPECT_EQ(host.faults().fired(), 1u);
                host.faults().clear();
                EXPECT_EQ(trace_reports(host), reports + 1) << function << ", request " << k;
                EXPECT_THAT(host.report().locks, testing::IsEmpty()) << function << ", request " << k;
                EXPECT_TRUE(values_in(given) == outputs) << function << ", request " << k;
            }
        }
    }
    for (const auto& [point, requests] : all_requests) EXPECT_GT(requests, calls.size() / 2) << static_cast<int>(point);
}

}  // namespace
