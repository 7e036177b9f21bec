#include "host/program/hologram_report.h"

#include <charconv>
#include <sstream>

#include "host/program/describe.h"
#include "host/text/number_text.h"

namespace zentrix::program {

namespace {

using host::number_text;

/// Four digits.
std::string short_text(double value)
{
    char digits[32];
    const auto written = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific, 3);
    return number_text(host::parse_number<double>({digits, written.ptr}).value_or(value));
}

/// "3.79 pixels (3.486 nm)"
std::string length_text(double pixels, double pixel_nm)
{
    return short_text(pixels) + " pixels" + (pixel_nm > 0 ? " (" + short_text(pixels * pixel_nm) + " nm)" : "");
}

const char* quality_of(const host::sideband& band)
{
    if (!host::doubt_about(band).empty()) return "doubtful";
    return band.distinction == 0 ? "given" : "good";
}

json number_or_null(double value) { return value > 0 ? json(value) : json(nullptr); }

}  // namespace

json options_as_json(const hologram_request& request)
{
    const auto& options = request.options;
    const auto or_auto = [](const std::optional<double>& number) { return number ? json(*number) : json("auto"); };
    json described{{"result", request.result == hologram_result::unwrapped ? "unwrapped phase"
                              : request.result == hologram_result::phase   ? "phase"
                                                                           : "wave"},
                   {"sideband", options.which == host::sideband_choice::upper ? "other" : "auto"},
                   {"radius", or_auto(options.filter.radius)},
                   {"window", host::name_of(options.filter.shape)},
                   {"flank", or_auto(options.filter.flank)},
                   {"full_size", options.filter.full_size},
                   {"despike", options.despike}};
    if (options.at) described["sideband"] = {options.at->real(), options.at->imag()};
    if (request.result_is_phase()) described["unit"] = request.in_degrees ? "deg" : "rad";
    return described;
}

std::string quantity_of(const hologram_request& request)
{
    if (!request.result_is_phase()) return "wave";
    return request.in_degrees ? "phase in degrees" : "phase in radians";
}

std::string text_of(const hologram_request& request, const hologram_outcome& done, const std::string& output)
{
    std::ostringstream text;
    const auto& report = done.report;
    const double nm = done.hologram_pixel_nm;
    text << "sideband at " << short_text(report.band.at.real()) << ',' << short_text(report.band.at.imag()) << ", "
         << short_text(report.band.height) << " times its surroundings";
    if (report.band.distinction > 0) text << ", " << short_text(report.band.distinction) << " times the next peak";
    text << " (" << quality_of(report.band) << ')';
    const auto percent = [](std::optional<double> contrast) {
        return contrast ? short_text(*contrast * 100) + " %" : "not known because the mean is less than the fringes";
    };
    text << "\nfringes: " << length_text(report.spacing_pixels, nm) << ", contrast " << percent(report.contrast);
    if (report.reference_contrast) text << " (reference " << percent(report.reference_contrast) << ')';
    text << "\nresolution: " << length_text(report.resolution_pixels, nm) << ", filter radius "
         << short_text(report.filter.radius) << " pixels of the transform\n";
    if (report.replaced > 0) text << "outliers replaced: " << report.replaced << '\n';
    if (report.weak > 0) text << "pixels with a weak reference: " << report.weak << '\n';
    if (done.is_corrected) text << "aberrations removed\n";
    if (done.unwrapped)
        text << "unwrapped: " << done.unwrapped->positive_residues + done.unwrapped->negative_residues << " residues, "
             << done.unwrapped->cut_pixels << " pixels at cuts\n";
    const double wave_nm = host::square_pixel_nm(done.wave->scale());
    text << quantity_of(request) << ", " << one_line(*done.result)
         << (wave_nm > 0 ? ", pixels of " + short_text(wave_nm) + " nm" : "") << " -> " << output << '\n';
    return text.str();
}

json as_json(const hologram_outcome& done)
{
    const auto& report = done.report;
    const double nm = done.hologram_pixel_nm;
    json described{{"pixel_nm", number_or_null(host::square_pixel_nm(done.wave->scale()))},
                   {"sideband", {report.band.at.real(), report.band.at.imag()}},
                   {"height", report.band.height},
                   {"distinction", number_or_null(report.band.distinction)},
                   {"quality", quality_of(report.band)},
                   {"spacing_pixels", report.spacing_pixels},
                   {"spacing_nm", number_or_null(report.spacing_pixels * nm)},
                   {"angle_degrees", report.angle_degrees},
                   {"contrast", report.contrast ? json(*report.contrast) : json(nullptr)},
                   {"reference_contrast", report.reference_contrast ? json(*report.reference_contrast) : json(nullptr)},
                   {"radius", report.filter.radius},
                   {"flank", report.filter.flank},
                   {"resolution_pixels", report.resolution_pixels},
                   {"resolution_nm", number_or_null(report.resolution_pixels * nm)},
                   {"replaced_pixels", report.replaced},
                   {"weak_pixels", report.weak}};
    if (done.unwrapped) described["unwrapping"] = as_json(*done.unwrapped);
    return described;
}

}  // namespace zentrix::program
