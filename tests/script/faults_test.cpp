#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "script/script_host.h"

// Every call that a script function makes of the host fails once: the script gets a text, and nothing stays held or locked.
namespace {

using namespace script;

struct case_row
{
    const char* function;
    std::function<std::vector<script_value>()> arguments;
};

script_value null() { return {}; }
script_value picture(std::uint32_t code, std::vector<std::uint32_t> sizes) { return noise(code, std::move(sizes)); }
script_value cell() { return make_cell(); }

/// The transfer function's arguments between source and destination.
std::vector<script_value> wave_transfer(script_value source, script_value destination)
{
    std::vector<script_value> arguments{std::move(source)};
    for (int i = 0; i < 16; ++i) arguments.emplace_back(0.5);
    for (double number : {1e-3, 1e-3, 0.1}) arguments.emplace_back(number);
    arguments.emplace_back(integer{1});
    arguments.emplace_back(std::complex<double>{});
    arguments.push_back(std::move(destination));
    return arguments;
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

const case_row rows[] = {
    {"ZXWTFMulDLL",
     [] {
         return wave_transfer(picture(3, {8, 4}), null());
     }},
    {"ZXWTFMulDLL",
     [] {
         return wave_transfer(picture(3, {8, 4}), picture(3, {8, 4}));
     }},
    {"ZXGoldstain",
     [] {
         return std::vector{picture(2, {8, 4}), script_value{integer{0}}};
     }},
    {"ZXImageShifterForSemper",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), integer{0}, integer{0}, 4., 2., 1., null()};
     }},
    {"ZXMovingAverage",
     [] {
         return std::vector<script_value>{picture(2, {8, 4, 2}), integer{1}, null()};
     }},
    {"ZXMovingAverage2",
     [] {
         return std::vector<script_value>{picture(13, {8, 4}), integer{1}, cell(), cell()};
     }},
    {"ZXMovingAverageX",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), integer{1}, null()};
     }},
    {"ZXMovingAverageY",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), integer{1}, picture(2, {8, 4})};
     }},
    {"ZXMovingAverageZ",
     [] {
         return std::vector<script_value>{picture(12, {8, 4, 3}), integer{1}, null()};
     }},
    {"ZXGaussianBlur",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), 1.5, integer{3}, null()};
     }},
    {"ZXMaximumFilter",
     [] {
         return std::vector<script_value>{picture(1, {8, 4}), integer{1}, null()};
     }},
    {"ZXMinimumFilter",
     [] {
         return std::vector<script_value>{picture(14, {8, 4}), integer{1}, null()};
     }},
    {"ZXMedianFilter",
     [] {
         return std::vector<script_value>{picture(10, {8, 4}), integer{1}, null()};
     }},
    {"ZXMedianFilter",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), integer{1}, null(), integer{1}};
     }},
    {"ZXNthElement",
     [] {
         return std::vector<script_value>{picture(7, {8, 4}), integer{3}};
     }},
    {"ZXMedian",
     [] {
         return std::vector<script_value>{picture(12, {8, 4})};
     }},
    {"ZXMedianZ",
     [] {
         return std::vector<script_value>{picture(2, {8, 4, 3}), null()};
     }},
    {"ZXSurvey",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), cell(), cell(), cell(), cell(), cell()};
     }},
    {"ZXSurvey",
     [] {
         return std::vector<script_value>{picture(6, {8, 4}), cell(), cell(), cell(), cell()};
     }},
    {"ZXPolar",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), picture(2, {8, 4}), null()};
     }},
    {"ZXPolar",
     [] {
         return std::vector<script_value>{2.5, picture(12, {8, 4}), picture(13, {8, 4})};
     }},
    {"ZXAbsArg",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), cell(), cell()};
     }},
    {"ZXAbs",
     [] {
         return std::vector<script_value>{picture(13, {8, 4}), null()};
     }},
    {"ZXExp2",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), null()};
     }},
    {"ZXLog2",
     [] {
         return std::vector<script_value>{picture(12, {8, 4}), picture(12, {8, 4})};
     }},
    {"ZXPow",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), picture(2, {8, 4}), null()};
     }},
    {"ZXCArg",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), null()};
     }},
    {"ZXNorm",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), 0.5, picture(2, {8, 4})};
     }},
    {"ZXSurveyDifference",
     [] {
         return std::vector<script_value>{
             picture(2, {8, 4}), picture(2, {8, 4}), cell(), cell(), cell(), cell(), cell(), cell(), cell()};
     }},
    {"ZXMinMax",
     [] {
         return std::vector<script_value>{
             picture(1, {8, 4}), cell(), cell(), cell(), cell(), cell(), cell(), cell(), cell()};
     }},
    {"ZXMax",
     [] {
         return std::vector<script_value>{picture(12, {8, 4}), cell(), cell(), cell()};
     }},
    {"ZXRadialSurvey",
     [] {
         return std::vector<script_value>{picture(2, {8, 4, 2}), integer{4}, integer{2}, 1., 1.};
     }},
    {"ZXWeight",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), picture(2, {5}), integer{4}, integer{2}, 1., 1.,
                                          integer{3},         null()};
     }},
    {"ZXFTWindow",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), integer{4}, null()};
     }},
    {"ZXHanningWindow",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), 1., 2., 3., null()};
     }},
    {"ZXSineWindow",
     [] {
         const std::complex<double> number{1, 2};
         return std::vector<script_value>{picture(2, {8, 4}), number, number, number, null()};
     }},
    {"ZXMask",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}), picture(13, {3}), picture(2, {3, 2}), 2., 1., null()};
     }},
    {"ZXCrossCorrelationMaskWithDefocus",
     [] {
         return std::vector<script_value>{picture(3, {8, 4}),
                                          picture(3, {8, 4}),
                                          integer{4},
                                          integer{2},
                                          1.,
                                          1.,
                                          1.,
                                          3.,
                                          integer{2},
                                          cell(),
                                          null()};
     }},
    {"ZXGetCenterOfMass",
     [] {
         return std::vector<script_value>{picture(2, {8, 4}), make_cell(4.), make_cell(2.), 3., integer{9}, -1000.};
     }},
    {"ZXOpenImage",
     [] {
         return std::vector<script_value>{raw_file(), integer{8}, integer{4}, integer{1}, integer{1}};
     }},
    {"ZXSelectImageFiles",
     [] {
         return std::vector<script_value>{make_cell(raw_file() + ";"), std::string{}, make_cell(integer{8}),
                                          make_cell(integer{4}), make_cell(integer{1})};
     }},
    {"ZXSortNumberedName", [] { return std::vector<script_value>{numbered_names()}; }},
    {"ZXTransposeXZ",
     [] {
         return std::vector<script_value>{picture(13, {2, 3, 4}), null()};
     }},
    {"ZXTransposeYZ",
     [] {
         return std::vector<script_value>{picture(23, {2, 3, 4}), null()};
     }},
};

std::uint64_t trace_reports(engine& host)
{
    std::uint64_t reports = 0;
    for (const auto& [name, counter] : host.records().traces()) reports += counter.reports;
    return reports;
}

/// What the outputs hold.
std::vector<script_value> values_in(const std::vector<script_value>& arguments)
{
    std::vector<script_value> values;
    for (const auto& argument : arguments)
        if (const auto* out = std::get_if<cell_ref>(&argument)) values.push_back((*out)->value);
    return values;
}

TEST(Faults, EveryHostCallMayFail)
{
    std::map<fault_point, std::uint64_t> all_requests;
    for (const auto& [function, arguments] : rows) {
        script_host script;
        engine& host = script.host();
        ASSERT_EQ(script.failure(function, arguments()), "") << function;  // also fills the slots
        for (const auto point : {fault_point::call, fault_point::find_method, fault_point::make_string}) {
            host.faults().clear();
            ASSERT_EQ(script.failure(function, arguments()), "") << function;
            const auto requests = host.faults().count(point);
            EXPECT_TRUE(requests > 0 || point != fault_point::call) << function;
            all_requests[point] += requests;
            for (std::uint64_t k = 1; k <= requests; ++k) {
                const auto given = arguments();
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
    for (const auto& [point, requests] : all_requests)
        EXPECT_GT(requests, std::size(rows) / 2) << static_cast<int>(point);
}

}  // namespace
