#include "host/parameters/parameter_file.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/support/same_bytes.h"
#include "tests/support/scratch.h"

using namespace zentrix;
using host::parameter_set;
using support::scratch_folder;

namespace {

using enum lens::coefficient;

/// All parameters that are given, as bits.
std::vector<std::uint64_t> bits_of(const parameter_set& set)
{
    std::vector<std::uint64_t> bits;
    const auto add = [&](double value) { bits.push_back(std::bit_cast<std::uint64_t>(value)); };
    const auto add_if_given = [&](const std::optional<double>& value) {
        bits.push_back(value.has_value());
        add(value.value_or(0));
    };
    add_if_given(set.kilovolts);
    add_if_given(set.wavelength_nm);
    add_if_given(set.pixel_nm);
    for (const auto& [which, value] : set.coefficients) {
        bits.push_back(static_cast<std::uint64_t>(which));
        add(value.modulus);
        add(value.angle_degrees);
    }
    add_if_given(set.focus_spread_nm);
    add_if_given(set.convergence_mrad);
    add_if_given(set.vibration_nm);
    add_if_given(set.tilt_mrad ? std::optional{set.tilt_mrad->real()} : std::nullopt);
    add_if_given(set.tilt_mrad ? std::optional{set.tilt_mrad->imag()} : std::nullopt);
    bits.push_back(set.envelope ? static_cast<std::uint64_t>(*set.envelope) : 99);
    return bits;
}

parameter_set read(const std::string& text)
{
    const scratch_folder folder;
    folder.write("p.json", text);
    return host::read_parameters(folder / "p.json");
}

/// What is wrong with a file of this text, without the file's name.
std::string problem_of(const std::string& text)
{
    const scratch_folder folder;
    folder.write("p.json", text);
    const std::string said = support::message_of([&] { host::read_parameters(folder / "p.json"); });
    const auto name = said.find("p.json: ");
    return name == std::string::npos ? said : said.substr(name + 8);
}

}  // namespace

TEST(ParameterFile, AcceptsEachFormOfAnEntry)
{
    parameter_set common;
    common.kilovolts = 300;
    common.pixel_nm = 0.02;
    common.coefficients = {{C1, {-62, 0}}, {A1, {14, 35}}};
    const char* const same[] = {
        R"({"kv": 300, "pixel": 0.02, "C1": -62, "A1": "14@35"})",
        "\xEF\xBB\xBF"
        R"({"kv": 300.0, "pixel": 2e-2, "C1": "-62", "A1": [14, 35], "comment": "a file with a byte order mark"})",
        R"({"energy": 300e3, "pixel": {"value": 20, "unit": "pm"}, "C1": {"value": -0.062, "unit": "um"},
            "A1": {"modulus": 14, "angle": 35}})",
        R"({"kv": {"value": 300000, "unit": "V"}, "pixel": {"value": 0.2, "unit": "\u00c5"},
            "C1": {"modulus": -620, "unit": "A", "uncertainty": 3}, "uncertainties": {"C1": 3},
            "A1": {"value": 140, "unit": "A", "angle": 35, "angle_unit": "deg"}})",
        R"({"command": ["zentrix"], "wavelength_nm": 0.00197, "parameters":
            {"C1": -62, "A1": {"modulus": 14, "unit": "nm", "angle": 35}, "kv": 300, "pixel": 0.02}, "input": []})",
    };
    for (const char* text : same) EXPECT_EQ(bits_of(read(text)), bits_of(common)) << text;

    parameter_set others;
    others.wavelength_nm = 625;
    others.focus_spread_nm = 3;
    others.convergence_mrad = 0.25;
    others.vibration_nm = 0;
    others.tilt_mrad = {{0.5, -2}};
    others.envelope = lens::damping::off;
    others.coefficients = {{C3, {1.2, 0}}};
    const char* const same_others[] = {
        R"({"wavelength": 625, "focus_spread": 3, "convergence": 0.25, "vibration": 0, "tilt": [0.5, -2],
            "envelope": "off", "C3": 1.2})",
        R"({"wavelength": {"value": 0.625, "unit": "um"}, "focus-spread": {"value": 30, "unit": "A"},
            "convergence": {"value": 250, "unit": "urad"}, "vibration": 0, "tilt": "0.5,-2", "envelope": "off",
            "C3": {"value": 1200, "unit": "um"}})",
        R"({"wavelength": 625, "focus_spread": 3, "convergence": {"value": 0.00025, "unit": "rad"}, "vibration": 0,
            "tilt": {"value": [0.0005, -0.002], "unit": "rad"}, "envelope": "off", "C3": 1.2})",
    };
    for (const char* text : same_others) EXPECT_EQ(bits_of(read(text)), bits_of(others)) << text;
}

TEST(ParameterFile, RefusesWhatItDoesNotUnderstandAndNamesIt)
{
    const struct
    {
        std::string text, problem;
    } rows[] = {
        {"", "is not valid JSON at line 1, column 1"},
        {"{\"kv\": 300,\n \"C1\": NaN}", "is not valid JSON at line 2, column 8"},
        {R"({"C1": 1e999})", "has a number that is too large"},
        {R"({"C1": "1\u0000"})", "has a text with a null character"},
        {"[1, 2]", "expected an object of parameters, not [1,2]"},
        {R"({"C1": -62, "kv": 300, "C1": 62})", "C1 is given twice"},
        {R"({"focus_spread": 3, "focus-spread": 3})", "focus_spread is given twice"},
        {R"({"kv": 300, "wavelength": 0.00197})", "kv and wavelength exclude each other: give one of them"},
        {R"({"kv": 300, "energy": 300000})", "kv and energy are the same parameter: give one of them"},
        {R"({"c1": -62})", R"("c1" is not a parameter. Did you mean "C1"?)"},
        {R"({"A\n9": 1})", R"("A\n9" is not a parameter)"},
        {R"({"C1": null})", "C1 is a number in nm, not null"},
        {R"({"C1": true})", "C1 is a number in nm, not true"},
        {R"({"C1": [-62, 0]})", "C1 is a number in nm, not [-62,0]"},
        {R"({"C1": "-62@0"})", R"(C1 is a number in nm, not "-62@0")"},
        {R"({"A1": [14, 35, 1]})", "A1 is a number or [modulus, angle] in nm and degrees, not [14,35,1]"},
        {R"({"A1": [14, "35"]})", R"(the angle of A1 is a number of degrees, not "35")"},
        {R"({"C3": {"value": 1, "angle": 3}})", "C3 is round and has no angle"},
        {R"({"C3": {"value": 1, "modulus": 3}})", R"(C3 needs "modulus" (or "value", which is the same))"},
        {R"({"C3": {"value": 1, "unit": "mrad"}})", R"(C3: "mrad" is not the unit of a length such as nm)"},
        {R"({"C3": {"value": 1, "units": "nm"}})", R"(C3 has the unknown member "units")"},
        {R"({"C3": {"value": 1e308, "unit": "m"}})", "C3 is too large"},
        {R"({"A1": {"modulus": 1, "angle": 3, "angle_unit": "nm"}})", R"(A1: "nm" is not the unit of an angle)"},
        {R"({"kv": {"value": 300, "unit": "nm"}})", R"(kv: "nm" is not the unit of a voltage)"},
        {R"({"kv": {"value": 300, "unit": 3}})", "the unit of kv is a text, not 3"},
        {R"({"kv": {"unit": "kV"}})", R"(kv has no "value")"},
        {R"({"kv": 300000})", "300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V."},
        {R"({"pixel": 0})", "The pixel size must be a positive number of nanometres."},
        {R"({"wavelength": 0})", "wavelength has to be positive"},
        {R"({"vibration": -1})", "vibration must not be negative"},
        {R"({"tilt": 3})", "tilt is [right, up] in mrad, not 3"},
        {R"({"envelope": true})", R"(envelope is "auto", "on" or "off", not true)"},
        {R"({"parameters": {"C1": 1}, "kv": 300})", R"(kv is outside of "parameters", which the file has, too)"},
        {R"({"parameters": 3})", "expected an object of parameters, not 3"},
        {std::string(33, '['), "objects and arrays are nested more than 32 deep"},
        {std::string((1 << 20) + 1, ' '), "is larger than 1 MiB; is it a file of parameters?"},
        {"{\"" + std::string(100, 'x') + "\": 1}", "\"" + std::string(60, 'x') + "...\" is not a parameter"},
    };
    for (const auto& [text, problem] : rows) EXPECT_EQ(problem_of(text), problem) << text.substr(0, 80);
}

TEST(ParameterFile, IsReadAgainToTheSameBits)
{
    std::mt19937_64 random{5};
    const auto chance = [&] { return random() % 2 == 0; };
    /// Any finite number; some with few digits.
    const auto number = [&] {
        for (;;) {
            const double value = chance() ? std::bit_cast<double>(random())
                                          : static_cast<double>(static_cast<int>(random() % 20001) - 10000) / 100;
            if (std::isfinite(value)) return value;
        }
    };
    const auto positive = [&](double least, double most) {
        for (;;)
            if (const double value = std::abs(number()); value >= least && value <= most) return value;
    };
    constexpr double largest = std::numeric_limits<double>::max(), smallest = std::numeric_limits<double>::denorm_min();
    const scratch_folder folder;
    for (int i = 0; i < 200; ++i) {
        parameter_set set;
        if (chance())
            set.kilovolts = positive(1, 3000);
        else if (chance())
            set.wavelength_nm = positive(smallest, largest);
        if (chance()) set.pixel_nm = positive(1e-4, largest);
        for (const auto& about : lens::all_coefficients)
            if (chance()) set.coefficients[about.which] = {number(), about.symmetry == 0 ? 0 : number()};
        if (chance()) set.focus_spread_nm = positive(0, largest);
        if (chance()) set.convergence_mrad = positive(0, largest);
        if (chance()) set.vibration_nm = positive(0, largest);
        if (chance()) set.tilt_mrad = {{number(), -0.0}};
        if (chance()) set.envelope = static_cast<lens::damping>(random() % 3);
        host::write_parameters(folder / "p.json", set);
        ASSERT_EQ(bits_of(host::read_parameters(folder / "p.json")), bits_of(set)) << folder.read("p.json");
    }
    parameter_set some;
    some.kilovolts = 300;
    some.tilt_mrad = {{0.5, -2}};
    host::write_parameters(folder / "p.json", some);
    EXPECT_EQ(folder.read("p.json"), R"({
  "kv": {"value": 300.0, "unit": "kV"},
  "tilt": {
    "value": [0.5, -2.0],
    "unit": "mrad"
  }
}
)");
    parameter_set infinite;
    infinite.coefficients[B2] = {std::numeric_limits<double>::infinity(), 0};
    const auto before = folder.read("p.json");
    EXPECT_EQ(support::message_of([&] { host::write_parameters(folder / "p.json", infinite); }),
              "B2 is not a finite number");
    EXPECT_EQ(folder.read("p.json"), before);
}

TEST(ParameterSet, OverlaysAndBecomesOptics)
{
    const auto over = read(R"({"wavelength": 2, "C1": 1, "A1": [2, 30], "tilt": [1, 2]})");
    const auto under = read(R"({"kv": 300, "pixel": 0.5, "A1": 9, "C3": 3, "tilt": [5, 5], "vibration": 4})");
    const auto both = host::overlaid(over, under);
    EXPECT_EQ(bits_of(both), bits_of(read(R"({"wavelength": 2, "pixel": 0.5, "C1": 1, "A1": [2, 30], "C3": 3,
                                              "tilt": [1, 2], "vibration": 4})")));
    const lens::optics optics = host::optics_of(both);
    EXPECT_EQ(optics.wavelength_nm, 2);
    EXPECT_EQ(optics.pixel_nm, 0.5);
    EXPECT_EQ(optics.lens[C3].modulus, 3);
    EXPECT_EQ(optics.lens[B2].modulus, 0);
    EXPECT_EQ(optics.lens[A1].angle_degrees, 30);
    EXPECT_EQ(optics.spread.vibration_nm, 4);
    EXPECT_EQ(optics.spread.focus_spread_nm, 0);
    EXPECT_EQ(optics.tilt_mrad, (std::complex<double>{1, 2}));
    EXPECT_NEAR(host::optics_of(under).wavelength_nm, 0.0019687489006848795, 1e-12);
    EXPECT_EQ(support::message_of([&] { host::optics_of(over); }), "The pixel size (pixel) is missing.");
    EXPECT_EQ(support::message_of([] { host::optics_of({}); }),
              "The accelerating voltage (kv) or the wavelength is missing.");
}
