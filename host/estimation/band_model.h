#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "host/estimation/wave_spectrum.h"
#include "host/fft/fft.h"
#include "lens/transfer.h"

namespace zentrix::host {

/// What makes an aberrated wave of a phase object's wave, in this search.
struct imaging : lens::aberrations
{
    /// Angle of the scattered wave against that of a phase object, added to chi at all frequencies but zero [rad]. An
    /// object that absorbs in proportion to its phase has a positive one, about the ratio of both.
    double contrast = 0;
};

/// A number that is searched.
struct unknown
{
    enum class part
    {
        real,       ///< of a coefficient; the only one of a round coefficient
        imaginary,  ///< of a coefficient
        contrast    ///< imaging::contrast; `which` is not used
    };
    lens::coefficient which;
    part what = part::real;
};

/// The unknowns of these coefficients in a fixed order, lower powers of the angle first.
std::vector<unknown> unknowns_of(std::span<const lens::coefficient> coefficients);

/// The value of an unknown in nanometres (the contrast: radians), and its change.
double value_of(const imaging& lens, const unknown& one);
void add_to(imaging& lens, const unknown& one, double nanometres);

enum class criterion
{
    modulus_variance,
    phase_skewness
};

/// A wave up to a highest frequency, as a function of its aberrations. The spectrum is cut out, so that an evaluation
/// costs what the band needs. The variables are combinations of the unknowns whose aberration functions are
/// orthonormal in the band: a change of length 1 changes chi by 1 rad rms, in every direction.
class band_model
{
  public:
    /// spectrum    must outlive the model
    /// resolution  highest frequency [1/nm]
    /// base        wavelength, widths and tilt; the spectrum is divided by their envelope, but by
    ///             a fifth at least
    /// at          coefficients and contrast where all variables are zero; those of `base` are not used
    /// margin      width of the weight's soft edge over that of the wave; 0: all pixels count alike
    band_model(const wave_spectrum& spectrum, double resolution, const lens::optics& base, const imaging& at,
               std::vector<unknown> unknowns, double margin);

    std::size_t variables() const noexcept { return unknowns_.size(); }
    const std::vector<unknown>& unknowns() const noexcept { return unknowns_; }
    double resolution() const noexcept { return resolution_; }
    /// Variance of the real part of a pixel's noise over the squared mean modulus, as if it filled the whole cut-out.
    double noise_variance() const noexcept { return noise_variance_; }
    /// The sum of the weights squared: one over the number of pixels that count.
    double weight_norm() const noexcept { return weight_norm_; }
    /// Share of the cut-out that the band fills, about pi / 4.
    double filled() const noexcept { return filled_; }

    /// Coefficients and contrast at a point.
    imaging imaging_at(std::span<const double> variables) const;
    /// The point for these values of the unknowns.
    std::vector<double> variables_of(const imaging& lens) const;
    /// Changes of the unknowns [nm] to changes of the variables and back.
    std::vector<double> to_variables(std::span<const double> nanometres) const;
    std::vector<double> to_nanometres(std::span<const double> variables) const;
    /// A gradient towards the unknowns [1/nm] as one towards the variables.
    std::vector<double> along_variables(std::span<const double> gradient) const;

    std::span<const float> weights() const noexcept { return weights_; }
    std::ptrdiff_t width() const noexcept { return width_; }
    std::ptrdiff_t height() const noexcept { return height_; }

  private:
    friend class band_evaluator;

    struct row
    {
        std::ptrdiff_t y, x, first,
            count;  ///< row and column in the cut-out; index of its first value, number of values
    };

    void cut_out(const wave_spectrum& spectrum);
    void make_basis();
    void make_weights(double margin);

    lens::optics base_;
    imaging at_;
    std::vector<unknown> unknowns_;
    double resolution_, noise_variance_ = 0, weight_norm_ = 0, filled_ = 0;
    std::ptrdiff_t width_ = 0, height_ = 0;
    double step_x_ = 0, step_y_ = 0;  ///< frequencies from pixel to pixel [1/nm]
    std::vector<row> rows_;
    std::vector<std::complex<float>> spectrum_;  ///< at the base, values in the band only
    std::vector<float> basis_;                   ///< variable by variable
    std::vector<double> factor_;                 ///< lower triangle L, row by row: variables = L^T nanometres
    std::vector<float> weights_;
};

/// Evaluates a model. Several evaluators of one model may be used at the same time, each by one thread.
class band_evaluator
{
  public:
    explicit band_evaluator(const band_model& model);

    /// The criterion at a point, and its derivatives unless `gradient` is empty.
    double operator()(criterion what, std::span<const double> variables, std::span<double> gradient);

    /// As above for both criteria; costs one transform less than two calls.
    struct values
    {
        double variance, skewness;
    };
    values both(std::span<const double> variables, std::span<double> variance_gradient,
                std::span<double> skewness_gradient);

    /// The derivative of the criterion as the sum over tiles of the wave: row i of the result has what tile i
    /// contributes to the derivative for each variable. tiles_x * tiles_y rows.
    std::vector<double> tile_gradients(criterion what, std::span<const double> variables, std::ptrdiff_t tiles_x,
                                       std::ptrdiff_t tiles_y);

    /// The wave at a point, cut-out's size.
    const std::vector<std::complex<float>>& wave_at(std::span<const double> variables);

    std::size_t evaluations() const noexcept { return evaluations_; }

  private:
    void turn_spectrum(std::span<const double> variables);
    void to_wave(std::span<const std::complex<float>> packed);
    double derive(criterion what, std::complex<float>* gradient) const;
    void project(std::span<double> gradient);

    const band_model* model_;
    fft_plan transform_;
    std::vector<std::complex<float>> turned_, wave_, slope_;
    std::vector<float> scratch_;
    std::size_t evaluations_ = 0;
};

}  // namespace zentrix::host
