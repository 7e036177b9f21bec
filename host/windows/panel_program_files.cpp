#include "host/windows/panel_program.h"

#include <utility>

#include "host/files/image_file.h"
#include "host/parameters/parameter_file.h"
#include "host/parameters/parameter_text.h"
#include "host/text/system_path.h"
#include "host/windows/file_dialog.h"
#include "host/windows/panel_parameters.h"

namespace zentrix::host {

namespace {

constexpr wchar_t parameter_files[] = L"Parameters and records (*.json)\0*.json\0";

}  // namespace

void panel_program::save()
{
    const auto file = ask_file(wave_window_->handle(), {false, L"Wave (*.npy)\0*.npy\0", L"npy", L"corrected.npy"});
    if (file.empty()) return;
    const image_ref& result = handler_->result();
    const auto record = record_path({file});  // throws before anything is written
    write_image(file, *result);
    write_record(record, provenance_of(file), {{file, result.get()}});
}

provenance panel_program::provenance_of(const std::filesystem::path& result) const
{
    const parameter_set set = parameters_of(handler_->coefficients(), handler_->scope());
    provenance made{.command = {"zentrix"}, .inputs = {}, .parameters = set, .program = options_.program};
    const bool by_one_command = handler_->applied().empty();
    made.command.emplace_back(by_one_command ? "correct" : "panel");
    if (options_.input) {
        made.inputs.push_back(*options_.input);
        made.command.push_back(options_.input->name);
    }
    if (by_one_command) {
        made.command.insert(made.command.end(), {"-o", utf8_path(result)});
        for (std::string& word : option_words(set)) made.command.push_back(std::move(word));
        return made;
    }
    for (const auto& [lens, scope] : handler_->applied())
        made.more["applied_before"].push_back(as_json(parameters_of(lens, scope)));
    return made;
}

void panel_program::save_parameters()
{
    const auto file = ask_file(wave_window_->handle(), {false, parameter_files, L"json", L"parameters.json"});
    if (!file.empty()) write_parameters(file, parameters_of(handler_->coefficients(), handler_->scope()));
}

void panel_program::load_parameters()
{
    const auto file = ask_file(wave_window_->handle(), {true, parameter_files, L"json", L""});
    if (file.empty()) return;
    show_parameters(read_parameters(file), "load");
}

}  // namespace zentrix::host
