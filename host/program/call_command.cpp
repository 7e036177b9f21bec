#include <CLI/CLI.hpp>
#include <algorithm>

#include "host/program/argument.h"
#include "host/program/call_work.h"
#include "host/program/commands.h"
#include "host/program/work_options.h"

namespace zentrix::program {

namespace {

constexpr char help_on_arguments[] =
    R"(Arguments:
  number            4, -0.5, inf, -inf or nan
  complex number    re,im or a number
  text              as it is
  image             an image file (.dm3, .dm4, .mrc, .npy, .tif), or null; the same file twice is one image
  list of texts     list:a,b,c
  output parameter  _ prints it after the call as name = value; _=START gives it a start value; null omits it

Examples:
  zentrix call MedianFilter in.npy 2 null 1 -o out.npy
  zentrix call ZXMovingAverage2 in.npy 2 _ _ -o imgDst1=mean.npy -o imgDst2=squares.npy
  zentrix call ZXGetCenterOfMass spot.npy _=12 _=15 5 20 0
  zentrix call ZXMedianFilter {} 2 null 1 --each "data/*.npy" -o filtered/ --jobs 4
  zentrix call ZXSelectImageFiles "_=data/*.raw" "" _=512 _=512 _=2)";

void run(call_request& request, const global_options& global)
{
    const bool has_place = std::ranges::find(request.words, each_file) != request.words.end();
    if (request.files.inputs.empty() == has_place)
        throw usage_error{has_place ? "{} among the arguments needs --each FILE..."
                                    : "--each needs {} among the arguments, in the place of the file"};
    call_work work{request, global};
    const auto call = [&](const host::file_task& task) { return work(task); };
    if (request.files.inputs.empty()) {
        host::file_task task;
        for (const std::string& output : request.outputs) task.outputs.push_back(file_of_output(output));
        return print_outcome(call(task), global);
    }
    std::vector<host::destination> destinations;
    for (const std::string& output : request.outputs)
        destinations.push_back(destination_of(file_of_output(output), request.files));
    request.files.prints_values = true;
    process_files(request.files, destinations, global, call);
}

}  // namespace

void add_call_command(CLI::App& app, const global_options& global)
{
    CLI::App* const command = app.add_subcommand("call", "Call a script function by name");
    auto request = std::make_shared<call_request>();
    command->add_option("NAME", request->name, "Function, as \"zentrix functions\" lists it, with or without ZX")
        ->required();
    command->add_option("ARGUMENT", request->words, "Its arguments, see below");
    command
        ->add_option(
            "-o", request->outputs,
            "Write the returned image (.npy, .mrc, .tif, .png); with name=FILE the image of that output parameter")
        ->type_name("[name=]FILE|FOLDER/")
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
    command
        ->add_option("--each", request->files.inputs,
                     "Call once for each of these files, folders, patterns; {} among the arguments is the file")
        ->type_name("FILE...")
        ->group("Many files");
    add_result_options(*command, request->files);
    command->footer(help_on_arguments);
    command->callback([&global, request] {
        for (auto& word : request->words) word = unprotect_number(word);
        run(*request, global);
    });
}

}  // namespace zentrix::program
