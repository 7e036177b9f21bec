#include "host/parameters/parameter_text.h"

#include <gtest/gtest.h>

#include <complex>

#include "host/parameters/parameter_file.h"

using namespace zentrix;
using host::parameter_set;

namespace {

using enum lens::coefficient;

parameter_set example()
{
    parameter_set set;
    set.kilovolts = 300;
    set.pixel_nm = 0.05;
    set.coefficients = {{C1, {-30, 0}}, {A1, {12.5, 135}}, {B2, {0.1, -10}}};
    set.focus_spread_nm = 4;
    set.envelope = lens::damping::off;
    return set;
}

TEST(ParameterText, IsACommandACallInPythonAndAScriptFunctionsCall)
{
    EXPECT_EQ(host::option_text(example()),
              "--kv 300 --pixel 0.05 --C1 -30 --A1 12.5@135 --B2 0.1@-10 --focus-spread 4 --envelope off");
    EXPECT_EQ(host::python_text(example()),
              "zentrix.correct(wave, kv=300, pixel=0.05, C1=-30, A1=(12.5, 135), "
              "B2=(0.1, -10), focus_spread=4, envelope=\"off\")");
    parameter_set simple;
    simple.wavelength_nm = 2 * 3.141592653589793;
    simple.pixel_nm = 4;
    simple.coefficients = {{C1, {3, 0}}, {A2, {6, 0}}};
    EXPECT_EQ(host::script_text(simple, 64, 48),
              "ZXWTFMulDLL( spectrum, 6.283185307179586, 4, -1.5, complex( -0, -0 ), -0, -0, complex( -0, -0 ), "
              "complex( -2, -0 ), complex( -0, -0 ), complex( -0, -0 ), complex( -0, -0 ), complex( -0, -0 ), "
              "complex( -0, -0 ), complex( -0, -0 ), complex( -0, -0 ), complex( -0, -0 ), 0, 0, 0, 0, "
              "complex( 0, 0 ), spectrum )");
}

TEST(ParameterText, IsReadBackFromACommandAndFromAnObject)
{
    parameter_set tilted = example();
    tilted.tilt_mrad = {0.5, -2};
    for (const auto& set : {example(), tilted})
        for (const std::string& text :
             {host::option_text(set), "zentrix correct in.npy -o out.npy\n " + host::option_text(set),
              "zentrix correct in.npy " + host::option_text(set) + " -o out", " " + host::as_json(set).dump()})
            EXPECT_EQ(host::option_text(host::parameters_in_text(text)), host::option_text(set)) << text;
    EXPECT_EQ(host::option_text(host::parameters_in_text("--C1=-3")), "--C1 -3");
}

TEST(ParameterText, OtherTextIsRefused)
{
    const std::pair<const char*, const char*> refused[] = {
        {"", "The text has no parameters."},
        {"an old friend", "\"an\" is no option with parameters."},
        {"--C1", "--C1 has no value."},
        {"--kv high", "--kv is a number, not \"high\"."},
        {"--kv 300000", "300000 kV: are these volts? kv is in kilovolts, 300 for 300,000 V."},
        {"--kv 300 --pixel=2e-11", "The pixel size is 2e-11 nm: are these metres? pixel is in nanometres."},
        {"--wavelength 0", "The wavelength must be a positive number of nanometres."},
        {"--vibration -1", "--vibration must not be negative."},
        {"--C1 3 nm", "\"nm\" is no option with parameters."},
        {"--zoom 2", "\"--zoom\" is no option with parameters."},
        {"--envelope soft", "\"--envelope soft\" is no option with parameters."},
        {R"({"C1": "x"})", R"(clipboard: C1 is a number in nm, not "x")"},
        {"{", "clipboard: is not valid JSON at line 1, column 2"}};
    for (const auto& [text, problem] : refused) {
        try {
            host::parameters_in_text(text);
            ADD_FAILURE() << text;
        } catch (const std::exception& thrown) {
            EXPECT_EQ(std::string{thrown.what()}, problem) << text;
        }
    }
}

}  // namespace
