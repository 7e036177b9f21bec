#include <CLI/CLI.hpp>
#include <limits>

#include "host/files/image_file.h"
#include "host/program/commands.h"
#include "host/program/lens_options.h"
#include "host/program/unwrap_work.h"
#include "host/program/work_options.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

void run(unwrap_request& request, const global_options& global)
{
    const auto results = destination_of(request.output, request.files);
    const auto pictures = destination_of_pictures(request.picture.png, request.files);
    auto cuts = destination_of(request.cuts, request.files);
    cuts.suffix += "_cuts";  // a folder may take results and cuts
    picture_options first = request.picture;
    first.png = example_of(pictures);
    check_names(example_of(results), first);
    if (!request.cuts.empty()) host::require_writable_kind(host::system_path(example_of(cuts)));
    host::require_folder(example_of(cuts));
    if (!request.mask.empty()) request.files.others = {request.mask};
    unwrap_work work{request, global};
    process_files(
        request.files, {results, pictures, cuts}, global, [&](const host::file_task& task) { return work(task); },
        [&] { work.prepare(); });
}

}  // namespace

void add_unwrap_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command =
        app.add_subcommand("unwrap", "Unwrap a phase by Goldstein's branch cuts; a volume plane by plane");
    auto request = std::make_shared<unwrap_request>();
    request->picture.shown = host::display_mode::real;
    request->picture.quantity = "phase (rad)";
    command
        ->add_option(
            "PHASE", request->files.inputs,
            "Wrapped phases in radians, of two or three dimensions: files, folders, patterns such as \"data/*.npy\"")
        ->required();
    command
        ->add_option("-o,--output", request->output,
                     "Unwrapped phase, float32 (.png: a picture only), or a folder for many results")
        ->required()
        ->type_name("FILE|FOLDER/");
    command
        ->add_option("--box", request->box,
                     "Largest box in which residues are joined [pixels] (0: half of width + height; 1, 2: every "
                     "residue is cut off "
                     "to the nearest edge)")
        ->check(CLI::Range(0, std::numeric_limits<std::int32_t>::max()).description(""));
    command
        ->add_option("--mask", request->mask,
                     "Leave out the pixels that are not 0 in this image, which has the size of PHASE or of one plane; "
                     "they keep their values")
        ->type_name("FILE");
    command
        ->add_option(
            "--cuts", request->cuts,
            "Also write the pixels at cuts: .png for a picture, red on the wrapped phase, with pixels left out "
            "in blue; otherwise an image of 0 and 1")
        ->type_name("FILE|FOLDER/");
    command->add_flag("--phase", request->is_wave, "PHASE is a complex wave: unwrap its phase");
    add_picture_options(*command, request->picture);
    command->add_option("--pixel", request->pixel_nm, "Pixel size of the result [nm] (default: that of the file)")
        ->check(pixel_in_nanometres());
    add_result_options(*command, request->files);
    add_timing_option(*command, request->timing);
    command->footer(
        "Examples:\n"
        "  zentrix unwrap phase.npy -o unwrapped.npy --png unwrapped.png --cuts cuts.png\n"
        "  zentrix unwrap wave.npy --phase --mask mask.npy -o unwrapped.npy\n"
        "  zentrix unwrap \"data/*.npy\" -o unwrapped/ --jobs 4\n\n"
        "Pixels that are infinite or not a number are left out, too. Regions that cuts or gaps separate carry "
        "unrelated\n"
        "multiples of 2 pi.");
    command->callback([&global, request] { run(*request, global); });
}

}  // namespace zentrix::program
