#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>

#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/commands.h"
#include "host/program/describe.h"
#include "host/program/picture_options.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

struct unwrap_request
{
    std::string phase;
    std::string output;
    std::int32_t box = 0;
    bool take_argument = false;
    picture_options picture;
};

/// The wrapped phase as 4-byte floats.
host::image_ref read_phase(const unwrap_request& request)
{
    const auto file = host::system_path(request.phase);
    auto read = host::read_image(file);
    const bool complex = read->type().meaning == host::element_class::complex;
    if (read->dimensions() != 2)
        throw host::file_error{file, "holds " + one_line(*read) + "; expected a phase of two dimensions"};
    if (complex && !request.take_argument)
        throw host::file_error{file, "holds " + one_line(*read) +
                                         "; expected a real phase in radians (--phase takes the argument of a "
                                         "complex wave first)"};
    if (!complex && request.take_argument)
        throw host::file_error{file, "holds " + one_line(*read) + "; --phase needs a complex wave"};
    if (!complex && read->type().meaning != host::element_class::real)
        throw host::file_error{file, "holds " + one_line(*read) + "; expected float32 or float64, in radians"};
    if (read->code() == host::code_of(host::element_class::real, 4)) return read;

    const std::uint32_t sizes[] = {read->size(0), read->size(1)};
    auto phase = host::image::create(read->name(), host::code_of(host::element_class::real, 4), sizes);
    auto* out = static_cast<float*>(phase->data());
    host::for_each_pixel_of_plane(*read, 0, [&](std::complex<double> pixel) {
        *out++ = static_cast<float>(complex ? std::arg(pixel) : pixel.real());
    });
    return phase;
}

/// Degrees or an unwrapped phase make the method return nonsense without an error.
void warn_beyond_half_a_turn(const std::string& file, const host::image& phase)
{
    const auto* const begin = static_cast<const float*>(phase.data());
    const auto beyond = std::count_if(begin, begin + phase.count(), [](float v) { return std::abs(v) > 3.1416F; });
    if (beyond > 0)
        std::cerr << "zentrix: " << file << ": " << beyond
                  << " values are beyond -pi to pi; a wrapped phase in radians "
                  << "is expected\n";
}

void run(const unwrap_request& request, const global_options& global)
{
    check_names(request.output, request.picture);
    const auto phase = read_phase(request);
    warn_beyond_half_a_turn(request.phase, *phase);
    host::image_ref unwrapped;
    {
        session zentrix{global};
        const auto result = zentrix.engine().call("ZXGoldstain", {host::object_ref{phase}, std::int64_t{request.box}});
        unwrapped = host::object_in<host::image>(result);
    }
    write_result(request.output, request.picture, *unwrapped);
    if (global.json)
        print({{"result", as_json(*unwrapped, request.output)}});
    else
        std::cout << "unwrapped " << one_line(*unwrapped) << " -> " << request.output << '\n';
}

}  // namespace

void add_unwrap_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("unwrap", "Join the 2 pi steps of a wrapped phase by Goldstein's branch cuts");
    auto request = std::make_shared<unwrap_request>();
    request->picture.shown = host::display_mode::real;
    command->add_option("PHASE", request->phase, "The wrapped phase in radians (.npy, real, two dimensions)")
        ->required();
    command
        ->add_option("-o,--output", request->output,
                     "The unwrapped phase, float32 (.npy, or .png for its picture alone)")
        ->required()
        ->type_name("FILE");
    command->add_option(
        "--box", request->box,
        "Largest box in which residues are joined [pixels] (0: half of width + height; below 3: no cuts "
        "by boxes)");
    command->add_flag("--phase", request->take_argument, "PHASE is a complex wave: take its argument first");
    add_picture_options(*command, request->picture);
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
