// Files of parameters and records: whatever the text is, it is understood or refused. What was read can be written in
// each notation and read again. The first byte says what the text is.
#include <cmath>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/parameters/json_file.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/record.h"
#include "host/parameters/recorded_image.h"
#include "tests/fuzz/fuzz.h"
#include "tests/support/scratch.h"

using namespace zentrix::host;
namespace lens = zentrix::lens;

namespace {

/// A folder with an image, whose record the text may be.
struct place
{
    support::scratch_folder folder;
    place()
    {
        const auto pixels = image::create("image", HOST_ELEMENT_FLOAT32, {{std::uint32_t{4}, std::uint32_t{3}}});
        write_image(folder / "out.npy", *pixels);
        write_image(folder / "in.npy", *pixels);
    }
};

place& shared()
{
    static place made;
    return made;
}

/// The coefficient in nanometres. Nothing where its precision is lost: by overflow, or in an angle of many turns.
std::optional<std::complex<double>> nanometres(const parameter_set& of, lens::coefficient which)
{
    const lens::polar& value = of.coefficients.at(which);
    const double modulus = std::abs(value.modulus);
    if (modulus < 1e-100 || modulus > 1e100 || std::abs(value.angle_degrees) > 1e5) return {};
    lens::aberrations one;
    one[which] = value;
    return one.in_nanometres(which);
}

/// What was read; an error from here on is a fault.
void check_parameters(const parameter_set& read)
{
    for (const auto& width : {read.focus_spread_nm, read.convergence_mrad, read.vibration_nm})
        if (width && !(*width >= 0)) fuzz::fail("a width is no width");
    for (const auto& positive : {read.kilovolts, read.wavelength_nm, read.pixel_nm})
        if (positive && !(*positive > 0)) fuzz::fail("a voltage or a length is none");
    const std::string written = as_json(read).dump();
    const auto again = shared().folder / "again.json";
    write_parameters(again, read);
    if (as_json(read_parameters(again)).dump() != written) fuzz::fail("parameters change when they are written");
    constexpr other_notation notations[] = {other_notation::polar, other_notation::cartesian, other_notation::corrector,
                                            other_notation::nexus};
    const auto converted = as_json(read, notations[written.size() % std::size(notations)], {});
    shared().folder.write("other.json", converted.dump());
    try {
        const parameter_set back = read_parameters(shared().folder / "other.json");
        for (const auto& [which, value] : read.coefficients) {
            const auto expected = nanometres(read, which);
            if (!expected) continue;
            const auto found = back.coefficients.contains(which) ? nanometres(back, which) : std::nullopt;
            if (!found || std::abs(*found - *expected) > 1e-9 * std::abs(*expected))
                fuzz::fail("a coefficient differs in another notation: " + converted.dump());
        }
    } catch (const file_error& problem) {
        const std::string text = problem.what();
        if (text.find("too large") == std::string::npos) fuzz::fail("does not read its own notation: " + text);
    }
}

void check_record()
{
    const auto result = shared().folder / "out.npy";
    const auto pixels = read_recorded_image(result);
    recorded_scale(result, *pixels);
    has_record(result);
    is_made_from_neighbour(result);
    is_recorded({result}, {.command = {"zentrix"}, .inputs = {input_of((shared().folder / "in.npy").string())}});
    for (const double number : {pixels->scale().kilovolts, pixels->scale().axes[0].step, pixels->scale().axes[1].first})
        if (!std::isfinite(number)) fuzz::fail("a scale is not finite");
    record_path({result});
}

}  // namespace

std::vector<std::string> fuzz::seeds()
{
    const auto& folder = shared().folder;
    const auto pixels = read_image(folder / "out.npy");
    pixels->set_scale({{{{0.5, 0, "nm"}, {0.5, 0, "nm"}, {}}}, 300});
    provenance made{.command = {"zentrix", "correct"}, .inputs = {input_of((folder / "in.npy").string())}};
    made.parameters.emplace().kilovolts = 300;
    made.parameters->pixel_nm = 0.5;
    write_record(folder / "out.json", made, {{folder / "out.npy", pixels.get()}});
    std::vector<std::string> texts{
        folder.read("out.json"),
        R"({"kv": 300, "pixel": 0.02, "C1": -62, "A1": "14@35", "envelope": "off", "tilt": "0.5,-2"})",
        R"({"energy": 300e3, "pixel": {"value": 20, "unit": "pm"}, "A1": {"modulus": 14, "angle": 35}})",
        R"({"wavelength": 625, "focus_spread": 3, "convergence": {"value": 250, "unit": "urad"}, "vibration": 0,
            "tilt": [0.5, -2], "C3": {"value": 1200, "unit": "um", "uncertainty": 3}, "comment": "text"})",
        R"({"C10": -62, "C12": 140, "phi12": 0.5, "C30": 1e6, "frame": {"length": "A", "angle": "rad"}})",
        R"({"C10": -62, "C12a": 14, "C12b": 3, "frame": {"length": "nm", "clockwise": true, "zero": 90}})",
        R"({"notation": "corrector", "C1": -62, "A1": 14, "phiA1": 3, "frame": {"length": "nm", "angle": "deg"}})",
        R"({"c_1_0": {"magnitude": -62, "units": "nm"}, "c_1_2_a": {"magnitude": 3, "units": "nm"},
            "c_1_2_b": {"magnitude": 3, "units": "nm"}})",
        R"({"A1": "14@-135", "B2": [-30, 190], "A2": "3@300", "S3": "2@275", "A3": "1@-1", "B4": "1@200", "D4": "1@99",
            "A4": "1@333", "C5": -2, "A5": "3@31", "R5": "1@275", "S5": "4@-100"})",
        R"({"vibration": -1, "focus_spread": 3})",
        R"({"pixel": -0.02, "convergence": 1})",
        R"({"a": [[[[{"b": null}]]], 1e308, "\ud83d\ude00\u0000"], "kv": true})"};
    std::vector<std::string> inputs;
    for (const std::string& text : texts)
        for (const char what : {'\0', '\1', '\2'}) inputs.push_back(what + text);
    return inputs;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::input from{data, size};
    const std::size_t what = from.below(3);
    const auto& folder = shared().folder;
    const char* const names[] = {"parameters.json", "out.json", "out.npy.json"};
    folder.write(names[what], from.rest());
    std::optional<parameter_set> read;
    try {
        if (what == 0)
            read = read_parameters(folder / names[0]);
        else
            check_record();
    } catch (const file_error&) {
    }
    if (read) check_parameters(*read);
    for (const char* const name : names) std::filesystem::remove(folder / name);
    return 0;
}
