#include "host/program/unwrap_work.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <iostream>
#include <span>

#include "host/batch/output_files.h"
#include "host/correction/cut_overlay.h"
#include "host/correction/unwrap_plane.h"
#include "host/correction/unwrap_report.h"
#include "host/files/file_error.h"
#include "host/files/image_file.h"
#include "host/files/png.h"
#include "host/parameters/recorded_image.h"
#include "host/pictures/for_each_pixel.h"
#include "host/program/describe.h"
#include "host/program/result_record.h"
#include "host/program/step_times.h"
#include "host/text/system_path.h"

namespace zentrix::program {

namespace {

[[noreturn]] void refuse(const std::string& file, const host::image& pixels, const char* why)
{
    throw host::file_error{host::system_path(file), "contains " + one_line(pixels) + "; " + why};
}

void check_type(const unwrap_request& request, const host::image& pixels)
{
    const bool is_complex = pixels.type().meaning == host::element_class::complex;
    if (pixels.dimensions() < 2) refuse(request.phase, pixels, "expected a phase of two or three dimensions");
    if (is_complex && !request.is_wave)
        refuse(request.phase, pixels, "expected a real phase in radians (--phase computes it from a complex wave)");
    if (!is_complex && request.is_wave) refuse(request.phase, pixels, "--phase needs a complex wave");
    if (!is_complex && pixels.type().meaning != host::element_class::real)
        refuse(request.phase, pixels, "expected float32 or float64, in radians");
    const bool has_picture =
        !request.picture.png.empty() || is_picture_name(request.output) || is_picture_name(request.cuts);
    if (pixels.size(2) > 1 && has_picture) refuse(request.phase, pixels, "a volume cannot be shown as one picture");
}

/// A new image of the same size and scale.
host::image_ref new_like(const host::image& pixels, std::uint32_t code)
{
    std::vector<std::uint32_t> sizes;
    for (std::size_t d = 0; d < pixels.dimensions(); ++d) sizes.push_back(pixels.size(d));
    auto created = host::image::create(pixels.name(), code, sizes);
    created->set_scale(pixels.scale());
    return created;
}

/// The wrapped phase as float32.
host::image_ref read_phase(const unwrap_request& request)
{
    auto read = host::read_recorded_image(host::system_path(request.phase));
    check_type(request, *read);
    if (request.pixel_nm) {
        auto scale = read->scale();
        scale.axes[0] = scale.axes[1] = {*request.pixel_nm, 0, "nm"};
        read->set_scale(scale);
    }
    if (read->code() == HOST_ELEMENT_FLOAT32) return read;
    auto phase = new_like(*read, HOST_ELEMENT_FLOAT32);
    auto* out = static_cast<float*>(phase->data());
    for (std::uint32_t z = 0; z < read->size(2); ++z)
        host::for_each_pixel_of_plane(*read, z, [&](std::complex<double> pixel) {
            *out++ = static_cast<float>(request.is_wave ? std::arg(pixel) : pixel.real());
        });
    return phase;
}

/// Degrees or an unwrapped phase would give a meaningless result without an error.
void warn_beyond_half_a_turn(const std::string& file, const host::image& phase)
{
    const auto* const begin = static_cast<const float*>(phase.data());
    const auto count =
        std::count_if(begin, begin + phase.count(), [](float v) { return std::isfinite(v) && std::abs(v) > 3.1416F; });
    if (count > 0)
        std::cerr << "zentrix: warning: " << file << ": " << count
                  << " values are beyond -pi to pi; expected a wrapped phase in radians\n";
}

struct unwrapping
{
    host::image_ref phase;
    host::image_ref cuts;        ///< uint8, 1 for pixels at cuts; null unless wanted
    host::unwrap_report report;  ///< sums over all planes
    std::size_t largest = 0;     ///< pixels of the largest region of each plane, together
};

/// The elements of plane z of a contiguous image.
template <class T>
std::span<T> plane_of(host::image& pixels, std::uint32_t z)
{
    const std::size_t count = std::size_t{pixels.size(0)} * pixels.size(1);
    return {static_cast<T*>(pixels.data()) + z * count, count};
}

/// Unwraps each plane; the library unwraps a single one.
/// phase  float32, contiguous, not changed; pixels left out are not finite
unwrapping unwrap(const host::image_ref& phase, const unwrap_request& request, host::engine& engine, step_times& times)
{
    step_times::seconds function{}, report{};
    unwrapping done{phase->clone(), request.cuts.empty() ? nullptr : new_like(*phase, HOST_ELEMENT_UINT8), {}};
    const std::uint32_t sizes[] = {phase->size(0), phase->size(1)};
    const std::ptrdiff_t strides[] = {1, phase->size(0)};
    std::vector<std::int32_t> labels(std::size_t{sizes[0]} * sizes[1]);
    for (std::uint32_t z = 0; z < phase->size(2); ++z) {
        const auto wrapped = plane_of<float>(*phase, z), result = plane_of<float>(*done.phase, z);
        const auto cuts = done.cuts ? plane_of<std::uint8_t>(*done.cuts, z) : std::span<std::uint8_t>{};
        const auto start = step_times::clock::now();
        host::unwrap_plane(engine,
                           host::image::over("plane", HOST_ELEMENT_FLOAT32, result.data(), sizes, strides,
                                             host::access::write, done.phase),
                           request.box);
        const auto unwrapped = step_times::clock::now();
        done.report += host::report_on_unwrapping(wrapped, result, sizes[0], labels, cuts);
        done.largest += static_cast<std::size_t>(std::ranges::count(labels, 1));
        function += unwrapped - start;
        report += step_times::clock::now() - unwrapped;
    }
    times.add("function", function);
    times.add("report", report);
    return done;
}

void write_cuts(const std::string& file, const host::image& phase, host::image& cuts)
{
    if (is_picture_name(file))
        host::write_png(host::system_path(file), host::paint_cuts(phase, plane_of<std::uint8_t>(cuts, 0)));
    else
        host::write_image(host::system_path(file), cuts);
}

/// In words, with a warning against comparing regions.
std::string text_of(const unwrapping& done)
{
    const host::unwrap_report& report = done.report;
    std::string text = "residues: " + std::to_string(report.positive_residues) + " positive, " +
                       std::to_string(report.negative_residues) +
                       " negative; pixels at cuts: " + std::to_string(report.cut_pixels) +
                       "; regions with an offset of their own: " + std::to_string(report.regions) +
                       "; pixels not reached: " + std::to_string(report.unreached);
    if (report.left_out > 0) text += "; pixels left out: " + std::to_string(report.left_out);
    if (report.regions > 1)
        text += "\nThe " + std::to_string(report.regions) +
                " regions carry unrelated multiples of 2 pi: compare phases within a region only.";
    if (report.regions > 1 && done.phase->size(2) == 1)
        text += " The largest has " + std::to_string(done.largest) + " of " +
                std::to_string(done.phase->count() - report.left_out) + " pixels.";
    return text + '\n';
}

void warn_of_gaps(const std::string& file, std::size_t count, std::size_t of)
{
    if (count == 0) return;
    std::cerr << "zentrix: " << file << ": " << count << " of " << of
              << " pixels are infinite or not a number; they are left out and stay as they are\n";
}

/// Everything that decides on the result.
host::provenance provenance_of(const unwrap_request& request, const mask_file* mask, const host::file_task& task,
                               const global_options& global)
{
    host::provenance made{.command = command_for(task, request.files, {"-o", "--png", "--cuts"}, global),
                          .inputs = {host::input_of(request.phase)},
                          .parameters = {},
                          .program = program_with_library(global),
                          .more = {{"box", request.box}, {"of_wave", request.is_wave}}};
    if (request.pixel_nm) made.more["pixel_nm"] = *request.pixel_nm;
    if (mask != nullptr) made.inputs.push_back(mask->input());
    if (!request.picture.png.empty() || is_picture_name(request.output))
        made.more["picture"] = choice_of(request.picture);
    return made;
}

}  // namespace

const mask_file* unwrap_work::mask()
{
    if (!request_.mask.empty() && !mask_) mask_.emplace(request_.mask);
    return mask_ ? &*mask_ : nullptr;
}

host::file_outcome unwrap_work::operator()(const host::file_task& task)
{
    unwrap_request request = request_;
    request.phase = task.input;
    request.output = task.outputs.at(0);
    request.picture.png = task.outputs.at(1);
    request.cuts = task.outputs.at(2);
    const auto results = results_of(task);
    host::require_own_names({request.phase, request.mask}, task.outputs);
    const auto made = provenance_of(request, mask(), task, global_);
    if (request.files.resumes && host::is_recorded(results, made)) return done_before(task);
    const auto record = host::record_path(results);
    host::require_places(task.outputs);

    step_times times;
    const auto read = times.measure("read", [&] { return read_phase(request); });
    check_picture(request.output, request.picture, *read);
    const auto mask_of_phase = mask_ ? mask_->mask_for(*read) : nullptr;
    const auto phase = mask_of_phase ? read->clone() : read;
    const std::size_t masked = mask_of_phase ? leave_out(*phase, *mask_of_phase) : 0;
    warn_beyond_half_a_turn(request.phase, *phase);
    const unwrapping done = unwrap(phase, request, session_.engine(times), times);
    warn_of_gaps(request.phase, done.report.left_out - masked, phase->count());
    if (mask_of_phase) restore_left_out(*done.phase, *read, *mask_of_phase);
    const auto shown = times.measure("write", [&] {
        auto range = write_result(request.output, request.picture, *done.phase, host::texts_of(made));
        if (done.cuts) write_cuts(request.cuts, *phase, *done.cuts);
        return range;
    });
    std::vector<host::recorded_result> recorded;
    for (const auto& file : results) {
        const bool is_cuts = file == host::system_path(request.cuts);
        recorded.push_back(
            {file, is_picture_name(host::utf8_path(file)) ? nullptr : (is_cuts ? done.cuts : done.phase).get()});
    }
    finish_with_record(record, made, recorded);

    if (request.timing && !global_.json) std::cerr << "zentrix: " << times.text() << '\n';
    host::file_outcome outcome;
    outcome.facts = {{"result", as_json(*done.phase, request.output)}, {"report", as_json(done.report)}};
    outcome.facts["report"]["largest_region"] = done.largest;
    if (shown) outcome.facts["picture"] = as_json(*shown);
    if (done.cuts) outcome.facts["cuts"] = request.cuts;
    if (request.timing) outcome.facts["seconds"] = times.as_json();
    outcome.text = "unwrapped " + one_line(*done.phase) + " -> " + request.output + "\n" + text_of(done);
    if (shown) outcome.text += "picture: " + one_line(*shown) + "\n";
    return outcome;
}

}  // namespace zentrix::program
