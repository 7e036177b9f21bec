#pragma once

#include "host/batch/file_task.h"
#include "host/program/kept_session.h"
#include "host/program/lens_request.h"

namespace zentrix::program {

/// Corrects or aberrates one wave, or a stack of waves plane by plane, for each call.
class lens_work
{
  public:
    /// The arguments must outlive this object.
    lens_work(const lens_request& request, const global_options& global)
        : request_{request}, global_{global}, session_{global}
    {}

    /// task  with two outputs: the result and a picture
    /// Throws  host::file_error, host::script_error, usage_error when the pixel size or the voltage is not known
    host::file_outcome operator()(const host::file_task& task);

  private:
    struct job;
    void warn_of_units(const job& one);
    void check_stack(const job& one) const;
    host::image_ref next_wave(job& one, const std::string& name) const;
    lens::transfer_arguments arguments_for(job& one) const;
    void multiply(job& one, const host::image_ref& wave);
    void make_wave(job& one, const host::picture_texts& texts);
    void make_stack(job& one);
    void make_sweep(job& one);
    host::file_outcome outcome_of(const job& one) const;

    const lens_request& request_;
    const global_options& global_;
    kept_session session_;
    bool has_warned_ = false;
};

}  // namespace zentrix::program
