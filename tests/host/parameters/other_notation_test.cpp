#include "host/parameters/other_notation.h"

#include <gtest/gtest.h>

#include <string>

#include "host/parameters/parameter_entries.h"
#include "tests/support/same_bytes.h"

using namespace zentrix;
using namespace zentrix::host;
using json = nlohmann::ordered_json;

namespace {

using enum lens::coefficient;

testing::AssertionResult are_near(const coefficient_map& got, const coefficient_map& expected)
{
    const auto shown = [&] {
        parameter_set set;
        set.coefficients = got;
        auto result = testing::AssertionFailure();
        for (const auto& [which, value] : got)
            result << lens::traits(which).name << ' ' << value.modulus << '@' << value.angle_degrees << "  ";
        return result;
    };
    if (got.size() != expected.size()) return shown();
    for (const auto& [which, value] : expected) {
        const auto found = got.find(which);
        if (found == got.end()) return shown();
        const double turns = std::remainder(found->second.angle_degrees - value.angle_degrees, 360);
        if (std::abs(found->second.modulus - value.modulus) > 1e-9 * std::abs(value.modulus) || std::abs(turns) > 1e-5)
            return shown();
    }
    return testing::AssertionSuccess();
}

std::string refusal_of(const std::string& text)
{
    return support::message_of([&] { parameters_in(json::parse(text)); });
}

}  // namespace

TEST(OtherNotation, IsReadToTheCoefficientsThatItMeans)
{
    const coefficient_map expected{{C1, {-62, 0}}, {A1, {14, 35}}, {B2, {380, 110}}, {C3, {0.15, 0}}};
    const char* const files[] = {
        R"({"frame": {"length": "A", "angle": "rad"}, "C10": -620, "C12": 140, "phi12": 0.3054326190990077,
            "C21": 11400, "phi21": 1.9198621771937625, "C30": 1.5e6})",
        R"({"notation": "polar", "frame": {"angle": "deg", "length": "nm"}, "defocus": 62, "Cs": 0.15e6,
            "C12": {"value": 140, "unit": "A"}, "phi12": 17.5, "C21": 1140, "phi21": 110})",
        R"({"frame": {"length": "nm", "angle": "deg", "clockwise": true, "zero": 90}, "C10": -62, "C12": 14,
            "phi12": 72.5, "C21": 1140, "phi21": {"value": -20, "unit": "deg"}, "C30": 0.15e6})",
        R"({"C10": {"value": -62, "unit": "nm"}, "C30": {"value": 0.15, "unit": "mm"},
            "C12a": {"value": 11.468128620045869, "unit": "nm"}, "C12b": {"value": 8.030070108914585, "unit": "nm"},
            "C21a": {"value": -389.9029634, "unit": "nm"}, "C21b": {"value": 1071.249588, "unit": "nm"}})",
        R"({"notation": "corrector", "frame": {"length": "nm", "angle": "deg"}, "C1": -62, "A1": 14, "phiA1": 35,
            "B2": 380, "phiB2": -110, "C3": 0.15e6})",
        R"({"model": "any", "c_1_0": {"magnitude": -62e-9, "units": "m"}, "c_3_0": {"magnitude": 150, "units": "um"},
            "c_1_2": {"magnitude": 14, "units": "nm", "angle": 17.5, "angle_units": "degree", "delta_time": 3},
            "c_2_1": {"magnitude": 1140, "magnitude@units": "nm", "angle": 110, "angle@units": "deg"}})",
        R"({"aberration_model": {"c_1": {"magnitude": -62, "units": "nm"}, "c_3": {"magnitude": 0.15, "units": "mm"},
            "a_1": {"magnitude": {"value": 14, "unit": "nm"}, "angle": {"value": 35, "unit": "deg"}},
            "b_2": {"magnitude": 380, "units": "nm", "angle": -110, "angle_units": "deg"}}, "kv": 300})",
        R"({"c_1_0": {"magnitude": -62, "units": "nm"}, "c_3_0": {"magnitude": 0.15, "units": "mm"},
            "c_1_2_a": {"magnitude": 11.468128620045869, "units": "nm"},
            "c_1_2_b": {"magnitude": 8.030070108914585, "units": "nm"},
            "c_2_1_a": {"magnitude": -389.9029634, "units": "nm"},
            "c_2_1_b": {"magnitude": 1071.249588, "units": "nm"}})",
    };
    for (const char* text : files)
        EXPECT_TRUE(are_near(parameters_in(json::parse(text)).coefficients, expected)) << text;
}

TEST(OtherNotation, IsRefusedIfItIsNotClear)
{
    const struct
    {
        const char *text, *problem;
    } rows[] = {
        {R"({"C10": -62})",
         R"(C10 has no unit: give it as {"value": ..., "unit": ...}, or give "frame": {"length": "nm" or "A"})"},
        {R"({"C12": {"value": 1, "unit": "nm"}, "phi12": 0.3})",
         R"(phi12 has no unit: give it as {"value": ..., "unit": ...}, or give "frame": {"angle": "deg" or "rad"})"},
        {R"({"C10": {"value": -62, "unit": "nm"}, "A1": 3})", R"("A1" is not a coefficient of the notation polar)"},
        {R"({"C12a": {"value": 1, "unit": "nm"}, "C12": 3})",
         R"("C12" is not a coefficient of the notation cartesian)"},
        {R"({"notation": "zentrix", "C10": 3})", R"("C10" is not a parameter)"},
        {R"({"notation": "german", "C10": 3})",
         R"(notation is "zentrix", "polar", "cartesian", "corrector" or "nexus", not "german")"},
        {R"({"frame": {"length": "A"}, "C1": -620})", R"(frame is for the coefficients of another "notation")"},
        {R"({"frame": {"length": "kg"}, "C10": 1})", R"(the length of frame is a unit such as "nm" or "A", not "kg")"},
        {R"({"frame": {"angle": "mrad"}, "C10": 1})", R"(the angle of frame is "deg" or "rad", not "mrad")"},
        {R"({"frame": {"clockwise": 1}, "C10": 1})", "clockwise in frame is true or false, not 1"},
        {R"({"frame": {"unit": "A"}, "C10": 1})", R"(frame has the unknown member "unit")"},
        {R"({"defocus": 62})", R"("defocus" is not a parameter)"},
        {R"({"frame": {"length": "nm"}, "C10": 1, "defocus": 2})", "defocus is another name of C10: give one of them."},
        {R"({"c_1_0": {"magnitude": 1, "units": "nm"}, "defocus": {"magnitude": 1, "units": "nm"}})",
         "defocus: programs disagree on its sign. Use c_1_0 or c_1 instead, which is negative if underfocused"},
        {R"({"c_1_0": -62})", R"(c_1_0 is an object {"magnitude": ..., "units": ...}, not -62)"},
        {R"({"c_1_0": {"magnitude": -62}})", R"(c_1_0 has no units of its magnitude: "units")"},
        {R"({"a_1": {"magnitude": 3, "units": "nm"}})", "a_1 needs an angle"},
        {R"({"c_1": {"magnitude": 3, "units": "nm", "angle": 3, "angle_units": "deg"}})", "c_1 has no angle"},
        {R"({"a_1": {"magnitude": 3, "units": "deg", "angle": 1, "angle_units": "deg"}})",
         R"(A1: "deg" is not the unit of a length such as nm)"},
        {R"({"a_7": {"magnitude": 3, "units": "nm", "angle": 1, "angle_units": "deg"}})",
         R"("A7" is not a coefficient of the notation corrector)"},
        {R"({"aberration_model": {"kv": 300}, "kv": 300})", "kv is given twice"},
    };
    for (const auto& [text, problem] : rows) EXPECT_EQ(refusal_of(text), problem) << text;
}

TEST(OtherNotation, IsWrittenAsItIsRead)
{
    coefficient_map all;
    for (const auto& about : lens::all_coefficients)
        all[about.which] = {1.5 + static_cast<double>(about.which), about.symmetry == 0 ? 0 : 7.0 * about.symmetry};
    const file_frame frames[] = {{}, {"A", "rad", true, -90}, {"mm", "deg", false, 12}};
    for (const char* name : {"polar", "cartesian", "corrector", "nexus"})
        for (const file_frame& frame : frames) {
            json file = entries_of(all, notation_named(name).value(), frame);
            file["frame"] = as_json(frame);
            file["notation"] = name;
            EXPECT_TRUE(are_near(parameters_in(file).coefficients, all)) << file.dump(1);
        }
    const json few = entries_of({{A1, {14, 0}}}, other_notation::nexus, {});
    EXPECT_EQ(few, json::parse(R"({"c_1_2_a": {"magnitude": 14.0, "units": "nm"},
                                   "c_1_2_b": {"magnitude": 0.0, "units": "nm"}})"));
}
