#include "functions/elementwise/elementwise_entry.h"

#include "entry/steps.h"
#include "entry/timing_scope.h"
#include "functions/elementwise/modulus.h"
#include "functions/elementwise/norm.h"
#include "functions/elementwise/polar.h"
#include "functions/elementwise/powers.h"
#include "image/overlap.h"
#include "image/runs.h"

namespace qorv::functions {
namespace {

using binding::image_ref;
using binding::output;
using dm::read_lock;
using dm::reading;
using dm::write_lock;
using dm::writing;

constexpr char rho_and_theta_real[] = "imgRho and imgTheta should be Real.";
constexpr char theta_real[] = "imgTheta should be Real.";
constexpr char source_complex[] = "cimSrc should be Complex.";

bool is_float_or_double(std::uint32_t code) { return has_type(dm::float_or_double{}, code); }

/// The code of the complex type of a real type's precision.
std::uint32_t complex_code(std::uint32_t real)
{
    return real == dm::code_of<float> ? dm::code_of<std::complex<float>> : dm::code_of<std::complex<double>>;
}

/// The code of the real type of a complex type's precision.
std::uint32_t real_code(std::uint32_t complex)
{
    return complex == dm::code_of<std::complex<float>> ? dm::code_of<float> : dm::code_of<double>;
}

void require_up_to_3d(const image_ref& image)
{
    dm::require(binding::ImageGetNumDimensions(image) <= binding::kMaxDim, dm::errors::up_to_3d);
}

/// Throws  errors::different_size unless the sources agree along all axes
void require_same_volume(const image_ref& a, const image_ref& b)
{
    for (std::uint32_t axis = 0; axis < binding::kMaxDim; ++axis)
        dm::require(dm::size_along(a, axis) == dm::size_along(b, axis), dm::errors::different_size);
}

/// Calls compute(count, source..., result) for contiguous runs of all the images.
/// Throws  errors::out_of_place when the result overlaps a source without being the same pixels
template <class Compute, class Result, class... Source>
void fill(const dm::image<Result>& result, Compute compute, const dm::image<Source>&... sources)
{
    (dm::require_in_place_or_apart(sources, result), ...);
    dm::for_runs(compute, sources..., result);
}

/// The destination of both Polar functions: a new image by default, otherwise checked against the phase.
image_ref polar_destination(image_ref destination, const image_ref& theta, std::uint32_t real_type)
{
    require_up_to_3d(theta);
    if (!destination) return dm::new_image_like("", complex_code(real_type), theta);
    dm::require(binding::ImageGetDataType(destination) == complex_code(real_type), dm::errors::invalid_data_type);
    dm::require_same_size(theta, destination);
    return destination;
}

/// The body of Exp2 and Log2. `compute(count, source, destination)` is called for contiguous runs.
template <class Compute>
image_ref of_one_real(const image_ref& source, image_ref destination, Compute compute)
{
    dm::require_image(source);
    const std::uint32_t type = binding::ImageGetDataType(source);
    dm::require(type != 0, dm::errors::all_real);
    destination = dm::or_clone_of(std::move(destination), source);
    dm::require(binding::ImageGetDataType(destination) == type, dm::errors::invalid_image_type);
    dm::require_same_size(source, destination);
    if (!is_float_or_double(type)) return {};  // scripts rely on a null result without an error
    dm::with_locks(reading{source}, writing{destination}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, type, [&]<class T>() { fill(to.view<T>(), compute, from.view<T>()); });
    });
    return destination;
}

/// An output image of AbsArg: the one that the variable holds, or a new real image.
image_ref real_output(image_ref held, std::string_view name, const image_ref& source, std::uint32_t type)
{
    return held ? std::move(held) : dm::new_image_like(name, real_code(type), source);
}

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
    const auto compute = [](auto count, auto* rho, auto* theta, auto* result) { polar(rho, theta, result, count); };
    const auto fill_polar = [&](const read_lock& rho, const read_lock& theta, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { fill(to.view<std::complex<T>>(), compute, rho.view<T>(), theta.view<T>()); });
    };
    dm::with_locks(reading{imgRho}, reading{imgTheta}, writing{cimDst}, fill_polar);
    return cimDst;
}

image_ref Polar2DM(double fRho, image_ref imgTheta, image_ref cimDst)
{
    const dm::timing_scope timing{"Polar2DM"};
    const std::uint32_t type = dm::required_type(dm::float_or_double{}, imgTheta, theta_real);
    cimDst = polar_destination(std::move(cimDst), imgTheta, type);
    const auto compute = [&]<class T>(auto count, const T* theta, auto* result) {
        polar(static_cast<T>(fRho), theta, result, count);
    };
    dm::with_locks(reading{imgTheta}, writing{cimDst}, [&](const read_lock& theta, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { fill(to.view<std::complex<T>>(), compute, theta.view<T>()); });
    });
    return cimDst;
}

void AbsArgDM(image_ref cimSrc, output<image_ref> imgRho, output<image_ref> imgTheta)
{
    const dm::timing_scope timing{"AbsArgDM"};
    const std::uint32_t type = dm::required_type(dm::either_complex{}, cimSrc, source_complex);
    image_ref rho = real_output(imgRho.get(), "Rho", cimSrc, type);
    image_ref theta = real_output(imgTheta.get(), "Theta", cimSrc, type);
    dm::require_same_size(cimSrc, rho);
    dm::require_same_size(cimSrc, theta);
    dm::require(
        binding::ImageGetDataType(rho) == real_code(type) && binding::ImageGetDataType(theta) == real_code(type),
        dm::errors::invalid_image_type);
    dm::require(!(rho == theta), dm::errors::out_of_place);
    const auto compute = [](auto count, auto* z, auto* modulus, auto* phase) {
        modulus_and_phase(z, modulus, phase, count);
    };
    const auto split = [&](const read_lock& from, const write_lock& to_rho, const write_lock& to_theta) {
        visit(dm::float_or_double{}, real_code(type), [&]<class T>() {
            const auto source = from.view<std::complex<T>>();
            const auto modulus = to_rho.view<T>(), phase = to_theta.view<T>();
            dm::require_in_place_or_apart(source, modulus);
            dm::require_in_place_or_apart(source, phase);
            dm::for_runs(compute, source, modulus, phase);
        });
    };
    dm::with_locks(reading{cimSrc}, writing{rho}, writing{theta}, split);
    imgRho.set(std::move(rho));
    imgTheta.set(std::move(theta));
}

image_ref AbsDM(image_ref cimSrc, image_ref imgDst)
{
    const dm::timing_scope timing{"AbsDM"};
    const std::uint32_t type = dm::required_type(dm::either_complex{}, cimSrc, source_complex);
    if (!imgDst) imgDst = dm::new_image_like("Rho", real_code(type), cimSrc);  // a clone would be complex
    dm::require(binding::ImageGetDataType(imgDst) == real_code(type), dm::errors::invalid_image_type);
    dm::require_same_size(cimSrc, imgDst);
    const auto compute = []<class T>(auto count, auto* source, T* result) { modulus<T>(source, result, count); };
    dm::with_locks(reading{cimSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, real_code(type),
              [&]<class T>() { fill(to.view<T>(), compute, from.view<std::complex<T>>()); });
    });
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
    const auto compute = []<class T>(auto count, auto* a, auto* b, T* result) { pow<T>(a, b, result, count); };
    const auto fill_powers = [&](const read_lock& base, const read_lock& exponent, const write_lock& to) {
        visit(dm::float_or_double{}, type,
              [&]<class T>() { fill(to.view<T>(), compute, base.view<T>(), exponent.view<T>()); });
    };
    dm::with_locks(reading{imgA}, reading{imgB}, writing{imgDst}, fill_powers);
    return imgDst;
}

image_ref CArgDM(image_ref cimSrc, image_ref cimDst)
{
    const dm::timing_scope timing{"CArgDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    cimDst = dm::or_clone_of(std::move(cimDst), cimSrc);
    dm::require(has_type(dm::either_complex{}, type) && binding::ImageGetDataType(cimDst) == type,
                dm::errors::all_complex);
    dm::require_same_size(cimSrc, cimDst);
    const auto compute = [](auto count, auto* source, auto* result) { unit_phase(source, result, count); };
    dm::with_locks(reading{cimSrc}, writing{cimDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::either_complex{}, type, [&]<class T>() { fill(to.view<T>(), compute, from.view<T>()); });
    });
    return cimDst;
}

image_ref CNormDM(image_ref cimSrc, double fScale, image_ref imgDst)
{
    const dm::timing_scope timing{"CNormDM"};
    dm::require_image(cimSrc);
    const std::uint32_t type = binding::ImageGetDataType(cimSrc);
    imgDst = dm::or_clone_of(std::move(imgDst), cimSrc);
    const std::uint32_t result_type = binding::ImageGetDataType(imgDst);
    dm::require(has_type(dm::either_complex{}, type) && (result_type == type || result_type == real_code(type)),
                dm::errors::invalid_image_type);
    dm::require_same_size(cimSrc, imgDst);
    const auto compute = [&](auto count, auto* source, auto* result) { norm(source, fScale, result, count); };
    dm::with_locks(reading{cimSrc}, writing{imgDst}, [&](const read_lock& from, const write_lock& to) {
        visit(dm::float_or_double{}, real_code(type), [&]<class T>() {
            const auto source = from.view<std::complex<T>>();
            if (result_type == type)
                fill(to.view<std::complex<T>>(), compute, source);
            else
                fill(to.view<T>(), compute, source);
        });
    });
    return imgDst;
}

constexpr dm::script_function rows[] = {
    {"ComplexImagePtr ", "Polar(ImageRef imgRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
     binding::add_function<Polar1DM>},
    {"ComplexImagePtr ", "Polar(double fRho, ImageRef imgTheta, ComplexImagePtr cimDst)",
     binding::add_function<Polar2DM>},
    {"void ", "AbsArg(ComplexImagePtr cimSrc, ImageRef * imgRho, ImageRef * imgTheta)",
     binding::add_function<AbsArgDM>},
    {"ImageRef ", "Abs(ComplexImagePtr cimSrc, ImageRef imgDst)", binding::add_function<AbsDM>},
    {"ImageRef ", "Exp2(ImageRef imgA, ImageRef imgDst)", binding::add_function<Exp2DM>},
    {"ImageRef ", "Log2(ImageRef imgA, ImageRef imgDst)", binding::add_function<Log2DM>},
    {"ImageRef ", "Pow(ImageRef imgA, ImageRef imgB, ImageRef imgDst)", binding::add_function<PowDM>},
    {"ComplexImagePtr ", "CArg(ComplexImagePtr cimSrc, ComplexImagePtr cimDst)", binding::add_function<CArgDM>},
    {"ImageRef ", "Norm(ComplexImagePtr cimSrc, double fScale, ImageRef imgDst)", binding::add_function<CNormDM>},
};

}  // namespace

const dm::script_functions elementwise_functions{rows};

}  // namespace qorv::functions
