#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <set>

#include "image/errors.h"
#include "tests/script/destinations.h"

// Tables of script functions: their element types, destinations and timing, and the failure of each of their host
// calls.
namespace {

using namespace script;
namespace errors = qorv::dm::errors;

const script_value null{}, out = make_cell();
const std::complex<double> i{0, 1};
const integer one{1}, two{2}, three{3};
constexpr char correlation_name[] = "ZXCrossCorrelationMaskWithDefocus";
constexpr double inf = std::numeric_limits<double>::infinity();
script_value picture(std::uint32_t code, const extents& sizes = {8, 4}) { return whole_numbers(code, sizes); }

image_ref curve() { return image_of<float>({1, 2, 3}, {3}); }
image_ref matrix() { return image_of<double>({4, 0, 0, 4}, {2, 2}); }

/// The functions with a source and a destination.
std::vector<destination_row> destination_rows()
{
    const auto alone = [](auto s, auto d) { return arguments{s, d}; };
    const auto twice = [](auto s, auto d) { return arguments{s, s, d}; };
    const auto after_number = [](auto s, auto d) { return arguments{2.5, s, d}; };
    const auto and_number = [](auto s, auto d) { return arguments{s, 0.5, d}; };
    const auto radius_1 = [](auto s, auto d) { return arguments{s, one, d}; };
    const auto radius_2 = [](auto s, auto d) { return arguments{s, two, d}; };
    const auto radius_3 = [](auto s, auto d) { return arguments{s, three, d}; };
    const auto padded = [](auto s, auto d) { return arguments{s, two, d, integer{-1}}; };
    const auto blur = [](auto s, auto d) { return arguments{s, 1.5, three, d}; };
    const auto ft_window = [](auto s, auto d) { return arguments{s, integer{3}, d}; };
    const auto real_window = [](auto s, auto d) { return arguments{s, 0.5, 2., 1., d}; };
    const auto complex_window = [](auto s, auto d) { return arguments{s, 0.5 * i, i, 1. + i, d}; };
    const auto weight = [](auto s, auto d) { return arguments{s, curve(), two, one, 1., 2., three, d}; };
    const auto shift = [](auto s, auto d) { return arguments{s, one, one, 6., 10., 1., d}; };
    const auto lens = [](auto s, auto d) {
        arguments args(20, 0.1);
        args.front() = s;
        args.insert(args.end(), {one, 0.01 * i, d});
        return args;
    };
    const auto mask = [](auto s, auto d) { return arguments{s, null, matrix(), 1., 0.5, d}; };
    const auto correlation = [](auto s, auto d) { return arguments{s, s, two, two, .1, .1, 20., .3, one, out, d}; };
    std::vector<std::uint32_t> real_and_binary = real_types;
    real_and_binary.push_back(HOST_ELEMENT_BINARY);
    const auto& averaged = float_and_complex_types;
    const auto apart = in_place::not_offered, refused = in_place::refused, same = in_place::same_result;
    return {
        {"ZXWTFMulDLL", "WTFMulDM", {3}, lens, same, same_type, false, {{17, 12}}, false},
        {"ZXImageShifterForSemper",
         "ImageShifterForSemperDM",
         complex_types,
         shift,
         same,
         same_type,
         false,
         {{12, 20}},
         false},
        {"ZXPolar", "Polar1DM", float_types, twice, apart, complex_of},
        {"ZXPolar", "Polar2DM", float_types, after_number, apart, complex_of},
        {"ZXAbs", "AbsDM", complex_types, alone, apart, real_of},
        {"ZXExp2", "Exp2DM", float_types, alone},
        {"ZXLog2", "Log2DM", float_types, alone},
        {"ZXPow", "PowDM", float_types, twice},
        {"ZXCArg", "CArgDM", complex_types, alone},
        {"ZXNorm", "CNormDM", complex_types, and_number},
        {"ZXMovingAverage", "MovingAverageDM", averaged, radius_2, apart, same_type, false},
        {"ZXMovingAverageX", "MovingAverageXDM", averaged, radius_2, same, same_type, true, {{6, 5, 4}}},
        {"ZXMovingAverageY", "MovingAverageYDM", averaged, radius_2, same, same_type, true, {{6, 5, 4}}},
        {"ZXMovingAverageZ", "MovingAverageZDM", averaged, radius_2, same, same_type, true, {{6, 5, 4}}},
        {"ZXGaussianBlur", "GaussianBlurDM", float_types, blur},
        {"ZXMaximumFilter", "MaximumFilterDM", real_and_binary, radius_3, refused},
        {"ZXMinimumFilter", "MinimumFilterDM", real_and_binary, radius_1, refused},
        {"ZXMedianFilter", "MedianFilterDM2", float_types, radius_1, refused},
        {"ZXMedianFilter", "MedianFilterDM2", float_types, padded, refused},
        {"ZXMedianFilter", "MedianFilterDM2", integer_types, radius_3, apart, float_type},
        {"ZXMedianZ", "MedianZDM", float_types, alone, same, same_type, false, {{7, 5}}},
        {"ZXMedianZ", "MedianZDM", integer_types, alone, apart, float_type, false, {{7, 5}}},
        {"ZXFTWindow", "FTWindowDM", averaged, ft_window, same, same_type, false},
        {"ZXHanningWindow", "HanningWindowDM", float_types, real_window, same, same_type, false},
        {"ZXSineWindow", "SineWindowComplexDM", float_types, complex_window, apart, complex_of, false},
        {"ZXVorbisWindow", "VorbisWindowComplexDM", complex_types, complex_window, same, same_type, false},
        {"ZXWeight", "WeightDM", averaged, weight, same, same_type, false},
        {"ZXMask", "MaskDM", complex_types, mask, same, same_type, false},
        {correlation_name, "CrossCorrelationMaskWithDefocusDM", complex_types, correlation, same, same_type, false},
    };
}

TEST(Functions, FillTheirDestination)
{
    for (const auto& row : destination_rows()) expect_destination_rules(row);
}

TEST(Functions, GiveTheSameBitsOnEveryPlatform)
{
    script_host script;
    const extents sizes{37, 29, 2}, deep{37, 29, 11};
    const auto a = whole_numbers(HOST_ELEMENT_FLOAT32, sizes), b = whole_numbers(HOST_ELEMENT_FLOAT32, sizes, 11),
               z = whole_numbers(HOST_ELEMENT_COMPLEX64, sizes);
    const auto eighth = script.call_image("ZXPolar", {0.125, b, null});  // fractions
    for (const auto& [name, args, expected] : std::vector<std::tuple<const char*, arguments, std::uint64_t>>{
             {"ZXPolar", {a, b, null}, 0xd5f0b23ec77939c9},
             {"ZXExp2", {script.call_image("ZXLog2", {a, null}), null}, 0x575f5d8e818130bd},
             {"ZXPow", {a, script.call_image("ZXAbs", {eighth, null}), null}, 0x1a284460ebdf1c55},
             {"ZXLog2", {b, null}, 0x54a4817a7e2a519d},
             {"ZXCArg", {z, null}, 0x91852a64bf0e9aed},
             {"ZXNorm", {eighth, 1e3, null}, 0xc5b04a5bed1a3229},
             {"ZXMovingAverage", {whole_numbers(HOST_ELEMENT_FLOAT32, deep), three, null}, 0xa75d865754ac7892},
             {"ZXMovingAverageX", {whole_numbers(HOST_ELEMENT_COMPLEX64, deep), three, null}, 0x658404acb72250f9},
             {"ZXMovingAverageZ", {whole_numbers(HOST_ELEMENT_FLOAT32, deep), three, null}, 0x61addca05b6c2d5c},
             {"ZXGaussianBlur",
              {whole_numbers(HOST_ELEMENT_FLOAT32, {67, 53}), 2., three, null},
              0x2fb170c1e81ac9a8}}) {
        const auto got = digest(script.call_image(name, args));
        EXPECT_EQ(got, expected) << name << std::hex << " 0x" << got;
    }
}

/// The functions of statistics, windows and masks, with the arguments after the source or sources.
struct source_row
{
    const char* name;
    const char* counter;
    std::vector<std::uint32_t> types;
    const char* refusal;  ///< of other types
    std::size_t sources;
    arguments others;

    arguments operator()(const image_ref& source) const
    {
        arguments args(sources, source);
        args.insert(args.end(), others.begin(), others.end());
        return with_new_outputs(args);
    }
};

std::vector<source_row> source_rows()
{
    const auto& all_types = float_and_complex_types;
    const script_value start = make_cell(2.);
    const auto no_real = errors::should_be_real, no_float = errors::should_be_real4_or_real8,
               no_complex = errors::all_complex, neither = errors::all_real_or_complex;
    return {
        {"ZXSurvey", "SurveyDM", real_types, errors::invalid_data_type, 1, arguments(5, out)},
        {"ZXSurvey", "SurveyDM", real_types, errors::invalid_data_type, 1, arguments(4, out)},
        {"ZXSurveyDifference", "SurveyDifferenceDM", real_types, errors::all_real, 2, arguments(7, out)},
        {"ZXMinMaxStable", "MinMaxStableDM", real_types, no_real, 1, arguments(8, out)},
        {"ZXMinMax", "MinMaxDM", real_types, no_real, 1, arguments(8, out)},
        {"ZXMin", "MinDM", real_types, no_real, 1, {out, out, out}},
        {"ZXMax", "MaxDM", real_types, no_real, 1, {out, out, out}},
        {"ZXRadialSurvey", "RadialSurveyDM", real_types, no_real, 1, {two, one, 1., 1.}},
        {"ZXGetCenterOfMass", "GetCenterOfMassDM", real_types, no_real, 1, {start, start, inf, two, -1000.}},
        {"ZXWeight", "WeightDM", all_types, neither, 1, {curve(), two, two, 1., 1., one, null}},
        {"ZXFTWindow", "FTWindowDM", all_types, neither, 1, {one, null}},
        {"ZXHanningWindow", "HanningWindowDM", float_types, no_float, 1, {0.5, 2., 1., null}},
        {"ZXHanningWindow", "HanningWindowComplexDM", all_types, neither, 1, {0.5 * i, i, 1. + i, null}},
        {"ZXSineWindow", "SineWindowDM", float_types, no_float, 1, {0.5, 2., 1., null}},
        {"ZXSineWindow", "SineWindowComplexDM", all_types, neither, 1, {0.5 * i, i, 1. + i, null}},
        {"ZXVorbisWindow", "VorbisWindowDM", float_types, no_float, 1, {0.5, 2., 1., null}},
        {"ZXVorbisWindow", "VorbisWindowComplexDM", all_types, neither, 1, {0.5 * i, i, 1. + i, null}},
        {"ZXMask", "MaskDM", complex_types, no_complex, 1, {null, matrix(), 1., 0.5, null}},
        {correlation_name,
         "CrossCorrelationMaskWithDefocusDM",
         complex_types,
         no_complex,
         2,
         {two, two, 0.1, 0.1, 20., 0.3, one, out, null}},
    };
}

TEST(Functions, AcceptTheirTypesOnly)
{
    for (const auto& row : source_rows()) {
        script_host script;
        for (const std::uint32_t code : {1u, 2u, 3u, 6u, 7u, 9u, 10u, 11u, 12u, 13u, 14u, 23u}) {
            const auto source = whole_numbers(code, {9, 4});
            const auto before = bytes_of(source);
            const bool is_accepted = std::ranges::count(row.types, code) > 0;
            EXPECT_EQ(script.failure(row.name, row(source)), is_accepted ? "" : row.refusal) << row.name << code;
            EXPECT_EQ(bytes_of(source), before) << row.name;
        }
        EXPECT_EQ(script.host().records().traces().at(row.counter).reports, 12u) << row.counter;
    }
}

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

/// A call of every function that calls the host.
std::vector<std::pair<std::string, arguments>> all_calls()
{
    const auto names = memory_tag_group::make_list();
    for (const char* name : {"img10", "img2"}) names->insert(names->count(), std::string{name});
    const integer width{8}, height{4}, unsigned_bytes{1};
    std::vector<std::pair<std::string, arguments>> calls{
        {"ZXGoldstain", {picture(2), integer{0}}},
        {"ZXAbsArg", {picture(3), out, out}},
        {"ZXMovingAverage2", {picture(2), one, out, out}},
        {"ZXMovingAverage2", {picture(13), one, out, out}},
        {"ZXNthElement", {picture(7), three}},
        {"ZXMedian", {picture(12)}},
        {"ZXMedianZ", {picture(2, {8, 4, 3}), null}},
        {"ZXMask", {picture(3), picture(13, {3}), picture(2, {3, 2}), 2., 1., null}},
        {"ZXOpenImage", {raw_file(), width, height, one, unsigned_bytes}},
        {"ZXSelectImageFiles",
         {make_cell(raw_file() + ";"), "", make_cell(width), make_cell(height), make_cell(unsigned_bytes)}},
        {"ZXSortNumberedName", {object_ref{names}}},
        {"ZXTransposeXZ", {picture(13, {2, 3, 4}), null}},
        {"ZXTransposeYZ", {picture(23, {2, 3, 4}), null}},
    };
    std::size_t k = 0;
    for (const auto& row : destination_rows()) {
        const std::uint32_t code = row.types[++k % row.types.size()];
        const extents& sizes = row.sizes.back();
        const auto destination = k % 2 ? nullptr : whole_numbers(row.result_type(code), sizes, 5);
        calls.emplace_back(row.name, row.make_arguments(whole_numbers(code, sizes), destination));
    }
    for (const auto& row : source_rows())
        calls.emplace_back(row.name, row(whole_numbers(row.types[++k % row.types.size()], {9, 4})));
    return calls;
}

std::uint64_t trace_reports(engine& host)
{
    std::uint64_t reports = 0;
    for (const auto& [name, counter] : host.records().traces()) reports += counter.reports;
    return reports;
}

std::vector<script_value> output_values(const arguments& args)
{
    std::vector<script_value> values;
    for (const auto& argument : args)
        if (const auto* cell = std::get_if<cell_ref>(&argument)) values.push_back((*cell)->value);
    return values;
}

TEST(Functions, ReportEveryFailingHostCallAndHoldNothing)
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
                SCOPED_TRACE(function + ", request " + std::to_string(k));
                const auto args = with_new_outputs(row);
                const auto outputs = output_values(args);
                const auto reports = trace_reports(host);
                host.faults().plan({point, k});
                EXPECT_NE(script.failure(function, args), "");
                EXPECT_EQ(host.faults().fired(), 1u);
                host.faults().clear();
                EXPECT_EQ(trace_reports(host), reports + 1);
                EXPECT_THAT(host.report().locks, testing::IsEmpty());
                EXPECT_TRUE(output_values(args) == outputs);
            }
        }
    }
    for (const auto& [point, requests] : all_requests) EXPECT_GT(requests, calls.size() / 2) << static_cast<int>(point);
}

TEST(Functions, AreAllCalledHereUnlessTheyNeverCallTheHost)
{
    script_host script;
    std::set<std::string> not_called;
    for (const std::string& prototype : script.host().functions().prototypes(origin::library)) {
        const auto start = prototype.find(' ') + 1;
        not_called.insert(prototype.substr(start, prototype.find('(') - start));
    }
    for (const auto& [function, row] : all_calls()) not_called.erase(function);
    EXPECT_THAT(not_called, testing::UnorderedElementsAre(
                                "ZXExec", "ZXExecWait", "ZXGetMaxThreads", "ZXGetNumThreads", "ZXGetSpecialDirectory",
                                "ZXIsPaletteOpen", "ZXIsWindowVisible", "ZXPadSize", "ZXSetNumThreads", "ZXSetUseSIMD",
                                "ZXSetZentrixHandler", "ZXShellExec", "ZXToDMDataType", "ZXZentrixPanelUpdate"));
}

}  // namespace
