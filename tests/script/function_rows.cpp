#include "tests/script/function_rows.h"

#include <limits>

#include "image/errors.h"

namespace script {
namespace {

namespace errors = qorv::dm::errors;

const script_value out = make_cell();
const std::complex<double> i{0, 1};
const integer one{1}, two{2}, three{3};
constexpr char correlation_name[] = "ZXCrossCorrelationMaskWithDefocus";
constexpr double inf = std::numeric_limits<double>::infinity();

image_ref curve() { return image_of<float>({1, 2, 3}, {3}); }
image_ref matrix() { return image_of<double>({4, 0, 0, 4}, {2, 2}); }

}  // namespace

arguments source_row::operator()(const image_ref& source) const
{
    arguments args(sources, source);
    args.insert(args.end(), others.begin(), others.end());
    return with_new_outputs(args);
}

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

}  // namespace script
