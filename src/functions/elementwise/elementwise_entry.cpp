#include "functions/elementwise/elementwise_entry.h"

#include <vector>

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "image/overlap.h"
#include "image/runs.h"
#include "image/visit.h"

namespace qorv::functions {
namespace {

constexpr char rho_and_theta_real[] = "imgRho and imgTheta should be Real.";
constexpr char theta_real[] = "imgTheta should be Real.";
constexpr char source_complex[] = "cimSrc should be Complex.";

template <class T>
constexpr std::uint32_t code_of = static_cast<std::uint32_t>(dm::data_type_of<T>);

bool is_float_or_double(std::uint32_t code) { return has_type(dm::float_or_double{}, code); }

bool is_complex(std::uint32_t code)
{
    return code == code_of<std::complex<float>> || code == code_of<std::complex<double>>;
}

/// The complex code of the precision of a real one, and the other way round.
std::uint32_t complex_of(std::uint32_t real)
{
    return real == code_of<float> ? code_of<std::complex<float>> : code_of<std::complex<double>>;
}
std::uint32_t real_of(std::uint32_t complex)
{
    return complex == code_of<std::complex<float>> ? code_of<float> : code_of<double>;
}

/// A new image with the sizes of another one.
image_ref new_image(std::string_view name, std::uint32_t code, const image_ref& like)
{
    std::vector<std::uint32_t> sizes;
    for (std::uint32_t axis = 0; axis < binding::ImageGetNumDimensions(like); ++axis)
        sizes.push_back(binding::ImageGetDimensionSize(like, axis));
    return binding::NewImage(name, code, sizes);
}

void require_up_to_3d(const image_ref& image)
{
    dm::require(binding::ImageGetNumDimensions(image) <= binding::kMaxDim, dm::errors::up_to_3d);
}

/// Two sources agree along every axis: what one of them lacks could not be computed.
void require_same_volume(const image_ref& a, const image_ref& b)
{
    for (std::uint32_t axis = 0; axis < binding::kMaxDim; ++axis)
        dm::require(dm::size_along(a, axis) == dm::size_along(b, axis), dm::errors::different_size);
}

/// compute(count, source..., result) for flat stretches of all the images.
/// Throws  errors::out_of_place when the result overlaps a source without being the same pixels
template <class Compute, class Result, class... Source>
void fill(const dm::image<Result>& result, Compute compute, const dm::image<Source>&... sources)
{
    (dm::require_in_place_or_apart(sources, result), ...);
    dm::for_runs(compute, sources..., result);
}

/// Destination of both Polar functions: new where none was given, else of the phase's precision and size.
image_ref polar_destination(image_ref destination, const image_ref& theta, std::uint32_t real_type)
{
    require_up_to_3d(theta);
    if (!destination) return new_image("", complex_of(real_type), theta);
    dm::require(binding::ImageGetDataType(destination) == complex_of(real_type), dm::errors::invalid_data_type);
    dm::require_same_size(theta, destination);
    return destination;
}

/// The functions of one real image: Exp2 and Log2. `compute(count, source, destination)` gets flat stretches.
template <class Compute>
image_ref of_one_real(const image_ref& source, image_ref destination, Compute compute)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    dm::require(type != 0, dm::errors::all_real);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::require_same_size(source, destination);
    if (!is_float_or_double(type)) return {};  // neither a result nor an error: scripts rely on it
    dm::read_lock from{source};
    dm::write_lock to{destination};
    visit(dm::float_or_double{}, type, [&]<class T>() { fill(to.view<T>(), compute, from.view<T>()); });
    to.release();
    from.release();
    return destination;
}

/// An output image of AbsArg: the one that the script gave or a new one.
image_ref real_output(image_ref given, std::string_view name, const image_ref& source, std::uint32_t type)
{
    return given ? std::move(given) : new_image(name, real_of(type), source);
}

}  // namespace

image_ref Polar1DM(image_ref imgRho, image_ref imgTheta, image_ref cimDst)
{
    const dm::timing_scope timing{"Polar1DM"};
    dm::require_image(imgRho);
    dm::require_image(imgTheta);
    const std::uint32_t type = binding::ImageGetDataType(imgRho);
    dm::require(is_float_or_double(type) && binding::ImageGetDataType(imgTheta) == type, rho_and_theta_real);
    require_up_to_3d(imgRho);
    cimDst = polar_destination(std::move(cimDst), imgTheta, type);
    require_same_volume(imgRho, imgTheta);
    dm::read_lock rho{imgRho};
    dm::read_lock theta{imgTheta};
    dm::write_lock to{cimDst};
    visit(dm::float_or_double{}, type, [&]<class T>() {
        fill(
            to.view<std::complex<T>>(),
            [](auto count, auto* modulus, auto* phase, auto* result) { polar(modulus, phase, result, count); },
            rho.view<T>(), theta.view<T>());
    });
    to.release();
    theta.release();
    rho.release();
    return cimDst;
}

image_ref Polar2DM(double fRho, image_ref imgTheta, image_ref cimDst)
{
    const dm::timing_scope timing{"Polar2DM"};
    dm::require_image(imgTheta);
    const std::uint32_t type = binding::ImageGetDataType(imgTheta);
    dm::require(is_float_or_double(type), theta_real);
    cimDst = polar_destination(std::move(cimDst), imgTheta, type);
    dm::read_lock theta{imgTheta};
    dm::write_lock to{cimDst};
    visit(dm::float_or_double{}, type, [&]<class T>() {
        fill(
            to.view<std::complex<T>>(),
            [&](auto count, auto* phase, auto* result) { polar(static_cast<T>(fRho), phase, result, count); },
            theta.view<T>());
    });
    to.release();
    theta.release();
    return cimDst;
}

void AbsArgDM(image_ref cimSrc, output<image_ref> imgRho, output<image_ref> imgTheta)
{
    const dm::timing_scope timing{"AbsArgDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    dm::require(is_complex(type), source_complex);
    image_ref rho = real_output(imgRho.get(), "Rho", cimSrc, type);
    image_ref theta = real_output(imgTheta.get(), "Theta", cimSrc, type);
    dm::require_same_size(cimSrc, rho);
    dm::require_same_size(cimSrc, theta);
    dm::require(binding::ImageGetDataType(rho) == real_of(type) && binding::ImageGetDataType(theta) == real_of(type),
                dm::errors::invalid_image_type);
    dm::require(!(rho == theta), dm::errors::out_of_place);
    dm::read_lock from{cimSrc};
    dm::write_lock to_rho{rho};
    dm::write_lock to_theta{theta};
    visit(dm::float_or_double{}, real_of(type), [&]<class T>() {
        const auto source = from.view<std::complex<T>>();
        const auto modulus = to_rho.view<T>(), phase = to_theta.view<T>();
        dm::require_in_place_or_apart(source, modulus);
        dm::require_in_place_or_apart(source, phase);
        dm::for_runs([](auto count, auto* z, auto* length, auto* angle) { modulus_and_phase(z, length, angle, count); },
                     source, modulus, phase);
    });
    to_theta.release();
    to_rho.release();
    from.release();
    imgRho.set(std::move(rho));
    imgTheta.set(std::move(theta));
}

image_ref AbsDM(image_ref cimSrc, image_ref imgDst)
{
    const dm::timing_scope timing{"AbsDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    dm::require(is_complex(type), source_complex);
    if (!imgDst) imgDst = new_image("Rho", real_of(type), cimSrc);  // a clone would be complex
    dm::require(binding::ImageGetDataType(imgDst) == real_of(type), dm::errors::invalid_image_type);
    dm::require_same_size(cimSrc, imgDst);
    dm::read_lock from{cimSrc};
    dm::write_lock to{imgDst};
    visit(dm::float_or_double{}, real_of(type), [&]<class T>() {
        fill(
            to.view<T>(), [](auto count, auto* source, auto* result) { modulus<T>(source, result, count); },
            from.view<std::complex<T>>());
    });
    to.release();
    from.release();
    return imgDst;
}

image_ref Exp2DM(image_ref imgA, image_ref imgDst)
{
    const dm::timing_scope timing{"Exp2DM"};
    return of_one_real(imgA, std::move(imgDst),
                       []<class T>(auto count, const T* a, T* result) { exp2<T>(a, result, count); });
}

image_ref Log2DM(image_ref imgA, image_ref imgDst)
{
    const dm::timing_scope timing{"Log2DM"};
    return of_one_real(imgA, std::move(imgDst),
                       []<class T>(auto count, const T* a, T* result) { log2<T>(a, result, count); });
}

image_ref PowDM(image_ref imgA, image_ref imgB, image_ref imgDst)
{
    const dm::timing_scope timing{"PowDM"};
    dm::require_image(imgA);
    dm::require_image(imgB);
    const std::uint32_t type = binding::ImageGetDataType(imgA);
    imgDst = dm::or_clone_of(std::move(imgDst), imgA);
    dm::require(binding::ImageGetDataType(imgB) == type && binding::ImageGetDataType(imgDst) == type,
                dm::errors::invalid_image_type);
    require_same_volume(imgA, imgB);
    dm::require_same_size(imgA, imgDst);
    dm::require(is_float_or_double(type), dm::errors::all_real);
    dm::read_lock base{imgA};
    dm::read_lock exponent{imgB};
    dm::write_lock to{imgDst};
    visit(dm::float_or_double{}, type, [&]<class T>() {
        fill(
            to.view<T>(), [](auto count, auto* a, auto* b, auto* result) { pow<T>(a, b, result, count); },
            base.view<T>(), exponent.view<T>());
    });
    to.release();
    exponent.release();
    base.release();
    return imgDst;
}

image_ref CArgDM(image_ref cimSrc, image_ref cimDst)
{
    const dm::timing_scope timing{"CArgDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    cimDst = dm::or_clone_of(std::move(cimDst), cimSrc);
    dm::require(is_complex(type) && binding::ImageGetDataType(cimDst) == type, dm::errors::all_complex);
    dm::require_same_size(cimSrc, cimDst);
    dm::read_lock from{cimSrc};
    dm::write_lock to{cimDst};
    visit(dm::float_or_double{}, real_of(type), [&]<class T>() {
        fill(
            to.view<std::complex<T>>(),
            [](auto count, auto* source, auto* result) { unit_phase<T>(source, result, count); },
            from.view<std::complex<T>>());
    });
    to.release();
    from.release();
    return cimDst;
}

image_ref CNormDM(image_ref cimSrc, double fScale, image_ref imgDst)
{
    const dm::timing_scope timing{"CNormDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    imgDst = dm::or_clone_of(std::move(imgDst), cimSrc);
    const std::uint32_t result_type = binding::ImageGetDataType(imgDst);
    dm::require(is_complex(type) && (result_type == type || result_type == real_of(type)),
                dm::errors::invalid_image_type);
    dm::require_same_size(cimSrc, imgDst);
    dm::read_lock from{cimSrc};
    dm::write_lock to{imgDst};
    const auto compute = [&](auto count, auto* source, auto* result) { norm(source, fScale, result, count); };
    visit(dm::float_or_double{}, real_of(type), [&]<class T>() {
        const auto source = from.view<std::complex<T>>();
        if (result_type == type)
            fill(to.view<std::complex<T>>(), compute, source);
        else
            fill(to.view<T>(), compute, source);
    });
    to.release();
    from.release();
    return imgDst;
}

}  // namespace qorv::functions
