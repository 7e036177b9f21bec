#include "host/windows/panel_program.h"

#include <cmath>
#include <utility>

namespace zentrix::host {

void panel_program::show_estimate_dialog()
{
    if (!estimate_)
        estimate_ = std::make_unique<estimate_dialog>(
            wave_window_->handle(), frame_->handle(),
            estimate_listener{.begin =
                                  [this] {
                                      const auto make_wave = [source = handler_->source()](const auto& given_up) {
                                          return wave_of(*source, &given_up);
                                      };
                                      return std::pair{wave_maker{make_wave}, handler_->optics()};
                                  },
                              .preview = [this](const lens::aberrations& lens) { handler_->preview(lens); },
                              .finished = [this](const estimate& found) { accept_estimate(found); },
                              .given_up = [this] { handler_->end_preview(); }});
    estimate_->show();
}

void panel_program::accept_estimate(const estimate& found)
{
    handler_->end_preview();
    for (const auto& one : found.coefficients)
        log("estimate " + std::string{lens::traits(one.which).name} + (one.determined ? "" : " not determined"));
    if (!found.any_determined()) return;
    auto lens = found.setup.lens;
    for (const auto& about : lens::all_coefficients)  // the panel has whole degrees
        lens[about.which].angle_degrees = std::round(lens[about.which].angle_degrees);
    edit_as("estimate", [&] { handler_->set(lens, handler_->scope()); });
}

}  // namespace zentrix::host
