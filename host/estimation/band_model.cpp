#include "host/estimation/band_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lens/aberration_basis.h"
#include "lens/transfer_value.h"

namespace zentrix::host {

namespace {

/// The least even size from `least` on that has small prime factors only.
std::ptrdiff_t quick_size(std::ptrdiff_t least)
{
    for (std::ptrdiff_t size = least + least % 2;; size += 2) {
        std::ptrdiff_t rest = size;
        for (const int prime : {2, 3, 5})
            while (rest % prime == 0) rest /= prime;
        if (rest == 1) return size;
    }
}

/// The cut-out of one dimension: frequencies up to `resolution`, and not more than there are.
std::ptrdiff_t cut_size(double resolution, double step, std::ptrdiff_t size)
{
    const auto least = 2 * static_cast<std::ptrdiff_t>(std::ceil(resolution / step)) + 2;
    if (least >= size) return size;
    return std::min(quick_size(least), size);
}

/// Replaces the lower triangle of the symmetric, positive definite matrix a (n x n) by its Cholesky factor. A row that
/// depends on those above it gets the diagonal `least`.
void factorise(std::vector<double>& a, std::size_t n, double least)
{
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = a[i * n + j];
            for (std::size_t k = 0; k < j; ++k) sum -= a[i * n + k] * a[j * n + k];
            a[i * n + j] = i == j ? std::sqrt(std::max(sum, least * a[i * n + i])) : sum / a[j * n + j];
        }
}

/// One flank of a soft edge: 0 at the border, 1 from `width` on.
double flank(double distance, double width)
{
    if (distance >= width) return 1;
    return 0.5 - 0.5 * std::cos(std::numbers::pi * distance / width);
}

}  // namespace

std::vector<unknown> unknowns_of(std::span<const lens::coefficient> coefficients)
{
    std::vector<lens::coefficient> sorted{coefficients.begin(), coefficients.end()};
    std::ranges::sort(sorted);
    std::vector<unknown> result;
    for (const auto which : sorted) {
        result.push_back({which});
        if (lens::traits(which).symmetry != 0) result.push_back({which, unknown::part::imaginary});
    }
    return result;
}

double value_of(const imaging& lens, const unknown& one)
{
    if (one.what == unknown::part::contrast) return lens.contrast;
    const auto value = lens.in_nanometres(one.which);
    return one.what == unknown::part::imaginary ? value.imag() : value.real();
}

void add_to(imaging& lens, const unknown& one, double nanometres)
{
    if (one.what == unknown::part::contrast) {
        lens.contrast += nanometres;
        return;
    }
    const auto& about = lens::traits(one.which);
    lens::polar& value = lens[one.which];
    if (about.symmetry == 0) {
        value.modulus += nanometres / about.nanometres;
        return;
    }
    const auto sum =
        lens.in_nanometres(one.which) +
        (one.what == unknown::part::imaginary ? std::complex{0.0, nanometres} : std::complex{nanometres, 0.0});
    value = {std::abs(sum) / about.nanometres, std::arg(sum) * 180 / std::numbers::pi};
}

band_model::band_model(const wave_spectrum& spectrum, double resolution, const lens::optics& base, const imaging& at,
                       std::vector<unknown> unknowns, double margin)
    : base_{base},
      at_{at},
      unknowns_{std::move(unknowns)},
      resolution_{resolution},
      step_x_{1 / (static_cast<double>(spectrum.width) * spectrum.pixel_nm)},
      step_y_{1 / (static_cast<double>(spectrum.height) * spectrum.pixel_nm)}
{
    base_.lens = static_cast<const lens::aberrations&>(at);
    width_ = cut_size(resolution, step_x_, spectrum.width);
    height_ = cut_size(resolution, step_y_, spectrum.height);
    cut_out(spectrum);
    make_basis();
    make_weights(margin);
    const double share = static_cast<double>(width_ * height_) / static_cast<double>(spectrum.values.size());
    noise_variance_ *= spectrum.noise * spectrum.noise / 2 * share;
}

void band_model::cut_out(const wave_spectrum& spectrum)
{
    const auto arguments = lens::arguments_for(base_, 2, 2, lens::direction::apply);
    // The transform back divides by the number of pixels of the cut-out.
    const auto scale = static_cast<double>(width_ * height_);
    constexpr double least_envelope = 0.2;
    double gains = 0;
    for (std::ptrdiff_t y = 0; y < height_; ++y) {
        row here{y, -1, static_cast<std::ptrdiff_t>(spectrum_.size()), 0};
        for (std::ptrdiff_t x = 0; x < width_; ++x) {
            const auto kx = x - width_ / 2, ky = y - height_ / 2;
            const double gx = static_cast<double>(kx) * step_x_, gy = static_cast<double>(ky) * step_y_;
            const bool is_inside = std::hypot(gx, gy) <= resolution_;
            if (!is_inside) continue;
            if (here.x < 0) here.x = x;
            ++here.count;
            const auto at = (ky + spectrum.height / 2) * spectrum.width + kx + spectrum.width / 2;
            const std::complex<double> value = std::complex<double>{spectrum.values[static_cast<std::size_t>(at)]} *
                                               std::polar(1.0, kx == 0 && ky == 0 ? 0 : at_.contrast);
            const auto transfer = lens::transfer_value(arguments, {gx, -gy});
            const double damping = std::abs(transfer);
            const double gain = 1 / std::max(damping, least_envelope);
            gains += gain * gain;
            spectrum_.emplace_back(value * std::conj(transfer) / damping * scale * gain);
        }
        if (here.count > 0) rows_.push_back(here);
    }
    noise_variance_ = gains / static_cast<double>(spectrum_.size());
    filled_ = static_cast<double>(spectrum_.size()) / static_cast<double>(width_ * height_);
}

void band_model::make_basis()
{
    const std::size_t n = unknowns_.size(), count = spectrum_.size();
    const double wave_number = 2 * std::numbers::pi / base_.wavelength_nm;
    const std::complex<double> tilt = base_.tilt_mrad * 1e-3;
    std::vector<double> terms(n * count), rms(n);
    for (std::size_t j = 0; j < n; ++j) {
        const auto [which, what] = unknowns_[j];
        auto* out = terms.data() + j * count;
        if (what == unknown::part::contrast) {
            for (const row& here : rows_)
                for (std::ptrdiff_t i = 0; i < here.count; ++i)
                    *out++ = here.x + i == width_ / 2 && here.y == height_ / 2 ? 0 : 1;
            continue;
        }
        const auto part = [is_imaginary = what == unknown::part::imaginary](std::complex<double> term) {
            return is_imaginary ? -term.imag() : term.real();
        };
        const double at_zero = part(lens::aberration_term(which, tilt));
        for (const row& here : rows_)
            for (std::ptrdiff_t i = 0; i < here.count; ++i) {
                const std::complex<double> g{static_cast<double>(here.x + i - width_ / 2) * step_x_,
                                             static_cast<double>(height_ / 2 - here.y) * step_y_};
                const auto w = base_.wavelength_nm * g + tilt;
                *out++ = wave_number * (part(lens::aberration_term(which, w)) - at_zero);
            }
    }
    // The matrix of mean products, scaled to a unit diagonal for the sake of precision.
    const auto product = [&](std::size_t a, std::size_t b) {
        double sum = 0;
        for (std::size_t k = 0; k < count; ++k) sum += terms[a * count + k] * terms[b * count + k];
        return sum / static_cast<double>(count);
    };
    for (std::size_t j = 0; j < n; ++j) rms[j] = std::sqrt(product(j, j));
    factor_.assign(n * n, 0);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j <= i; ++j) factor_[i * n + j] = product(i, j) / (rms[i] * rms[j]);
    factorise(factor_, n, 1e-12);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = 0; j <= i; ++j) factor_[i * n + j] *= rms[i];

    // basis = L^-1 terms
    basis_.resize(n * count);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < i; ++j)
            for (std::size_t k = 0; k < count; ++k) terms[i * count + k] -= factor_[i * n + j] * terms[j * count + k];
        for (std::size_t k = 0; k < count; ++k) {
            terms[i * count + k] /= factor_[i * n + i];
            basis_[i * count + k] = static_cast<float>(terms[i * count + k]);
        }
    }
}

void band_model::make_weights(double margin)
{
    weights_.resize(static_cast<std::size_t>(width_ * height_));
    double sum = 0;
    std::vector<double> exact;
    for (std::ptrdiff_t y = 0; y < height_; ++y)
        for (std::ptrdiff_t x = 0; x < width_; ++x) {
            const auto part = [margin](std::ptrdiff_t at, std::ptrdiff_t size) {
                const double distance =
                    (static_cast<double>(std::min(at, size - 1 - at)) + 0.5) / static_cast<double>(size);
                // Nothing counts in the outer half of the margin.
                return margin > 0 ? flank(std::max(distance - margin / 2, 0.0), margin / 2) : 1.0;
            };
            exact.push_back(part(x, width_) * part(y, height_));
            sum += exact.back();
        }
    for (std::size_t i = 0; i < exact.size(); ++i) {
        weights_[i] = static_cast<float>(exact[i] / sum);
        weight_norm_ += exact[i] * exact[i] / (sum * sum);
    }
}

std::vector<double> band_model::to_variables(std::span<const double> nanometres) const
{
    const std::size_t n = unknowns_.size();
    std::vector<double> result(n);
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i; j < n; ++j) result[i] += factor_[j * n + i] * nanometres[j];
    return result;
}

std::vector<double> band_model::to_nanometres(std::span<const double> variables) const
{
    const std::size_t n = unknowns_.size();
    std::vector<double> result{variables.begin(), variables.end()};
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t j = i + 1; j < n; ++j) result[i] -= factor_[j * n + i] * result[j];
        result[i] /= factor_[i * n + i];
    }
    return result;
}

std::vector<double> band_model::along_variables(std::span<const double> gradient) const
{
    const std::size_t n = unknowns_.size();
    std::vector<double> result{gradient.begin(), gradient.end()};  // L^-1 gradient
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < i; ++j) result[i] -= factor_[i * n + j] * result[j];
        result[i] /= factor_[i * n + i];
    }
    return result;
}

imaging band_model::imaging_at(std::span<const double> variables) const
{
    imaging result = at_;
    const auto nanometres = to_nanometres(variables);
    for (std::size_t i = 0; i < unknowns_.size(); ++i) add_to(result, unknowns_[i], nanometres[i]);
    return result;
}

std::vector<double> band_model::variables_of(const imaging& lens) const
{
    std::vector<double> nanometres;
    for (const auto& one : unknowns_) nanometres.push_back(value_of(lens, one) - value_of(at_, one));
    return to_variables(nanometres);
}

}  // namespace zentrix::host
