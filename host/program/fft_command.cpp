#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdio>
#include <iostream>
#include <limits>
#include <span>

#include "host/fft/fft.h"
#include "host/files/file_error.h"
#include "host/parameters/recorded_image.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/lens_options.h"
#include "host/program/many_files.h"
#include "host/program/picture_options.h"
#include "host/program/reciprocal_scale.h"
#include "host/program/result_record.h"
#include "host/program/step_times.h"
#include "host/program/wave_file.h"
#include "host/program/work_options.h"
#include "host/text/number_text.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

struct fft_request
{
    bool inverse = false;
    many_files files;
    std::string output;
    bool real_part = false;  ///< of the inverse: write nothing else
    nan_rule not_finite = nan_rule::refuse;
    picture_options picture;
    bool timing = false;
};

std::span<const std::uint32_t> sizes_of(const host::image& pixels, std::array<std::uint32_t, 3>& sizes)
{
    for (std::size_t d = 0; d < sizes.size(); ++d) sizes[d] = pixels.size(d);
    return std::span{sizes}.first(pixels.dimensions());
}

/// Real numbers as complex ones.
host::image_ref as_complex(const std::filesystem::path& file, const host::image& pixels)
{
    constexpr double largest = std::numeric_limits<float>::max();
    std::array<std::uint32_t, 3> sizes{};
    auto wave = host::image::create(pixels.name(), HOST_ELEMENT_COMPLEX64, sizes_of(pixels, sizes));
    wave->set_scale(pixels.scale());
    auto* out = static_cast<std::complex<float>*>(wave->data());
    bool fits = true;
    for (std::uint32_t z = 0; z < pixels.size(2); ++z)
        host::for_each_pixel_of_plane(pixels, z, [&](std::complex<double> pixel) {
            fits = fits && !(std::abs(pixel.real()) > largest && std::isfinite(pixel.real()));
            *out++ = std::complex<float>{pixel};
        });
    if (!fits) throw host::file_error{file, "has values that are too large for single precision"};
    return wave;
}

/// Real or complex, a plane or a stack.
host::image_ref read_any(const std::string& name)
{
    const auto file = host::system_path(name);
    const auto read = host::read_recorded_image(file);
    if (read->type().meaning == host::element_class::complex) return read_waves(name);
    if (read->dimensions() < 2)
        throw host::file_error{file, "contains " + one_line(*read) + "; expected an image of two or three dimensions"};
    return as_complex(file, *read);
}

/// Transforms each plane in place. Throws  host::file_error when the result is too large for its numbers
void transform(const std::string& name, host::image& wave, bool inverse)
{
    host::fft_plan plan{wave.size(0), wave.size(1)};
    auto* const pixels = static_cast<std::complex<float>*>(wave.data());
    const std::size_t plane = std::size_t{wave.size(0)} * wave.size(1);
    for (std::uint32_t z = 0; z < wave.size(2); ++z)
        inverse ? plan.backward(pixels + z * plane) : plan.forward(pixels + z * plane);
    if (!std::all_of(pixels, pixels + wave.count(), [](const std::complex<float>& pixel) {
            return std::isfinite(pixel.real()) && std::isfinite(pixel.imag());
        }))
        throw host::file_error{host::system_path(name), "the result is too large for single precision"};
    host::calibration scale = wave.scale();
    for (std::size_t d = 0; d < 2; ++d)
        scale.axes[d] = reciprocal_scale(scale.axes[d], wave.size(d), inverse ? 0 : wave.size(d) / 2);
    wave.set_scale(scale);
}

host::image_ref real_part_of(const host::image& wave)
{
    std::array<std::uint32_t, 3> sizes{};
    auto part = host::image::create(wave.name(), HOST_ELEMENT_FLOAT32, sizes_of(wave, sizes));
    part->set_scale(wave.scale());
    const auto* const pixels = static_cast<const std::complex<float>*>(wave.data());
    std::transform(pixels, pixels + wave.count(), static_cast<float*>(part->data()),
                   [](const std::complex<float>& pixel) { return pixel.real(); });
    return part;
}

/// "0.0977 1/nm" for square pixels with a known scale; otherwise empty.
std::string step_of(const host::image& wave)
{
    const auto& [x, y, z] = wave.scale().axes;
    if (x.step == 0 || x.unit != y.unit || std::abs(x.step - y.step) > 1e-3 * std::abs(x.step)) return "";
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.6g", x.step);
    return std::string{digits} + (x.unit.empty() ? "" : " " + x.unit);
}

std::string text_of(const fft_request& request, const host::image& result, const std::string& output)
{
    const std::string step = step_of(result);
    return (request.inverse ? "transformed back: " : "transformed: ") + one_line(result) + " -> " + output +
           (request.inverse ? ", scaled by 1 / (width * height)"
                            : ", zero frequency at (" + std::to_string(result.size(0) / 2) + ", " +
                                  std::to_string(result.size(1) / 2) + "), not scaled") +
           (step.empty() ? "" : ", " + step + " per pixel") + "\n";
}

json further_members(const fft_request& request, const host::file_task& task)
{
    json more{{"inverse", request.inverse}, {"real_part", request.real_part}};
    if (request.not_finite != nan_rule::refuse) more["nan"] = request.not_finite == nan_rule::zero ? "zero" : "mean";
    if (!task.outputs.at(1).empty() || is_picture_name(task.outputs.at(0)))
        more["picture"] = choice_of(request.picture);
    return more;
}

host::file_outcome process(const fft_request& request, const global_options& global, const host::file_task& task)
{
    step_times times;
    picture_options picture = request.picture;
    picture.png = task.outputs.at(1);
    const std::string& output = task.outputs.at(0);
    auto wave = times.measure("read", [&] { return read_any(task.input); });
    if (wave->size(2) > 1 && (is_picture_name(output) || !picture.png.empty()))
        throw host::file_error{host::system_path(task.input),
                               "contains " + one_line(*wave) + "; a stack cannot be shown as one picture"};
    const auto results = results_of(task);
    host::provenance made{.command = command_for(task, request.files, {"-o", "--png"}, global),
                          .inputs = {host::input_of(task.input)},
                          .program = host::program_facts({}, false),
                          .more = further_members(request, task)};
    if (request.files.resumes && host::is_recorded(results, made)) return done_before(task);
    const auto record = host::record_path(results);
    apply_nan_rule(task.input, *wave, request.not_finite);
    check_picture(output, picture, *wave);
    times.measure("transform", [&] { transform(task.input, *wave, request.inverse); });
    const auto result = request.real_part ? real_part_of(*wave) : wave;
    const auto shown =
        times.measure("write", [&] { return write_result(output, picture, *result, host::texts_of(made)); });
    std::vector<host::recorded_result> recorded;
    for (const auto& file : results)
        recorded.push_back({file, is_picture_name(host::utf8_path(file)) ? nullptr : result.get()});
    finish_with_record(record, made, recorded);

    if (request.timing && !global.json) std::cerr << "zentrix: " << times.text() << '\n';
    host::file_outcome outcome;
    outcome.facts = {{"result", as_json(*result, output)}};
    if (!request.inverse) outcome.facts["zero_frequency"] = {wave->size(0) / 2, wave->size(1) / 2};
    if (shown) outcome.facts["picture"] = as_json(*shown);
    if (request.timing) outcome.facts["seconds"] = times.as_json();
    outcome.text = text_of(request, *result, output) + (shown ? "picture: " + one_line(*shown) + "\n" : "");
    return outcome;
}

void run(const fft_request& request, const global_options& global)
{
    const auto meaning = request.real_part ? host::element_class::real : host::element_class::complex;
    const auto results = destination_of(request.output, request.files, meaning);
    const auto pictures = destination_of_pictures(request.picture.png, request.files);
    picture_options first = request.picture;
    first.png = example_of(pictures);
    check_names(example_of(results), first, meaning);
    process_files(request.files, {results, pictures}, global,
                  [&](const host::file_task& task) { return process(request, global, task); });
}

CLI::App* add_command(CLI::App& app, const global_options& global, bool inverse, const std::string& name,
                      const std::string& purpose)
{
    CLI::App* const command = app.add_subcommand(name, purpose);
    auto request = std::make_shared<fft_request>();
    request->inverse = inverse;
    request->picture.shown = inverse ? host::display_mode::modulus : host::display_mode::log_modulus;
    command
        ->add_option(inverse ? "SPECTRUM" : "IMAGE", request->files.inputs,
                     std::string{inverse ? "Spectra" : "Real or complex images"} +
                         ", or stacks of them: files, folders, patterns such as \"data/*.npy\"")
        ->required();
    command->add_option("-o,--output", request->output, "Result (.png: a picture only), or a folder for many results")
        ->required()
        ->type_name("FILE|FOLDER/");
    if (inverse) command->add_flag("--real", request->real_part, "Write the real part only, as float32");
    add_nan_option(*command, request->not_finite);
    add_picture_options(*command, request->picture);
    add_result_options(*command, request->files);
    add_timing_option(*command, request->timing);
    command->callback([&global, request] { run(*request, global); });
    return command;
}

}  // namespace

void add_fft_commands(CLI::App& app, const global_options& global)
{
    add_command(app, global, false, "fft", "Fourier transform images; the result is complex64")
        ->footer(
            "F(u, v) = sum f(x, y) exp(-2 pi i (u x / width + v y / height)), not scaled. The zero frequency is at\n"
            "(width / 2, height / 2) in integer division, positive frequencies are to the right and below. A scale in "
            "nm\n"
            "becomes one in 1/nm.\n\n"
            "Examples:\n"
            "  zentrix fft wave.npy -o spectrum.npy --png spectrum.png\n"
            "  zentrix fft \"waves/*.npy\" -o spectra/ --jobs 2");
    add_command(app, global, true, "ifft", "Transform spectra back, the inverse of \"zentrix fft\"")
        ->footer(
            "The inverse of \"zentrix fft\" with the factor 1 / (width * height): the zero frequency is expected in "
            "the\n"
            "middle. A scale in 1/nm becomes one in nm.\n\n"
            "Examples:\n"
            "  zentrix ifft spectrum.npy -o wave.npy\n"
            "  zentrix ifft spectrum.npy -o image.npy --real");
}

}  // namespace zentrix::program
