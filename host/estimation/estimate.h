#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/objects/image.h"
#include "lens/transfer.h"

/// The aberrations of a wave, found from the wave itself. docs/estimation.md explains the method and its limits.
namespace zentrix::host {

enum class specimen_kind
{
    automatic,  ///< decided by the wave
    phase,      ///< changes the phase only, as thin specimens do with electrons: all coefficients
    amplitude   ///< absorbs, as a printed target does with light: C1 and A1 only
};
/// The words for them: auto, phase, amplitude. Another word than these means auto.
std::string_view name_of(specimen_kind kind);
specimen_kind specimen_named(std::string_view name);

/// In pixels of the wave.
struct pixel_region
{
    std::ptrdiff_t x = 0, y = 0, width = 0, height = 0;
};

struct search_range
{
    double lowest = 0, highest = 0;  ///< in the unit of the coefficient
};

struct estimate_options
{
    /// The coefficients that are searched. The others keep the values of the optics.
    std::vector<lens::coefficient> free{lens::coefficient::C1, lens::coefficient::A1, lens::coefficient::B2,
                                        lens::coefficient::A2, lens::coefficient::C3, lens::coefficient::S3};
    /// Where the search for C1 starts; by default it is derived from wavelength and resolution, around the value of
    /// the optics.
    std::optional<search_range> defocus;
    std::optional<pixel_region> region;  ///< by default the whole wave
    specimen_kind object = specimen_kind::automatic;
    /// That the widths of the optics are right to a tenth, zeros exactly. Otherwise the uncertainties include what an
    /// envelope that is not known may change.
    bool widths_are_known = false;
    std::ptrdiff_t threads = 0;  ///< 0: one for each processor; the result does not depend on it
    /// Ends the search within one evaluation on each thread once it is true; any thread may set it. Null: nothing does.
    const std::atomic<bool>* stop = nullptr;
};

/// A coefficient that was searched.
struct estimated_coefficient
{
    lens::coefficient which;
    lens::polar value;             ///< in the coefficient's unit; the start value if it is not determined
    double uncertainty = 0;        ///< standard deviation of the modulus, in the coefficient's unit; for a coefficient
                                   ///< with an angle, of each component
    double angle_uncertainty = 0;  ///< standard deviation [degrees]; 0 for a round coefficient
    bool determined = false;
    lens::polar found;   ///< where the search ended; of no value unless it is determined
    std::string reason;  ///< why it is not determined: one sentence without full stop
};

struct estimate
{
    /// The optics of the call with the coefficients that are determined; those that are not keep their start values.
    lens::optics setup;
    std::vector<estimated_coefficient> coefficients;  ///< in the order of lens::coefficient
    specimen_kind object = specimen_kind::phase;      ///< never automatic
    std::string criterion;                 ///< what was optimised, for example "least variance of the modulus"
    double noise = 0;                      ///< rms of the complex noise of a pixel, in units of the mean modulus
    double resolution = 0;                 ///< highest spatial frequency in use [1/nm]
    double chi_uncertainty = 0;            ///< standard deviation of chi from all determined coefficients, rms to the
                                           ///< resolution [rad]
    std::size_t starts = 0, agreeing = 0;  ///< how many starts the search had, and how many of them led to the result;
                                           ///< for an amplitude object, quarters of the wave with the same focus
    std::size_t evaluations = 0;           ///< of the criterion, or of it with its gradient
    double seconds = 0;
    bool stopped = false;  ///< by the progress callback or estimate_options::stop; then nothing is determined

    bool any_determined() const;
    bool all_determined() const;
};

/// Receives the fraction of the work that is done, 0 to 1 (never decreasing), and the best optics so far. It is called
/// on the thread of the caller only, some ten times per second at most. When it returns false, the search stops.
using estimate_progress = std::function<bool(double fraction, const lens::optics& current)>;

/// Searches the coefficients that bring a wave nearest to one that has passed no lens.
///
/// wave     complex of two floats per pixel, two dimensions, contiguous; at least 64 x 64, all pixels finite
/// setup    wavelength, pixel size, tilt, widths of the envelope, the values of the coefficients that are not free, and
///          the start values of those that are (the start of C1 is only the middle of its range)
/// progress may be empty; may throw, which ends the search with that exception
///
/// The same input gives the same result with any number of threads.
/// Throws   std::invalid_argument for optics that lens::arguments_for refuses, no free coefficient, one twice, an empty
///          range or one that is too wide for the resolution of the wave, a region that is not in the wave, a wave
///          that is too small or zero, or units with which the search comes to coefficients that lens::arguments_for
///          refuses; what progress throws; std::bad_alloc
estimate estimate_aberrations(const image& wave, const lens::optics& setup, const estimate_options& options,
                              const estimate_progress& progress = {});

}  // namespace zentrix::host
