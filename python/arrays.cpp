#include "python/arrays.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace zentrix::python {

namespace {

constexpr char capsule_name[] = "zentrix image";

/// NumPy's kind of a dtype; 0 if it has none.
constexpr char kind_of(host::element_class meaning)
{
    switch (meaning) {
        case host::element_class::signed_integer: return 'i';
        case host::element_class::unsigned_integer: return 'u';
        case host::element_class::real: return 'f';
        case host::element_class::complex: return 'c';
        case host::element_class::other: break;
    }
    return 0;
}

/// Asked of the dtype as Python does: NumPy 2 moved this field of its C structure, and the module is to run with both.
py::ssize_t bytes_of(const py::dtype& type) { return type.attr("itemsize").cast<py::ssize_t>(); }

/// The host's element type for a dtype; null if there is none.
const host::element* element_of(const py::dtype& type)
{
    const auto all = host::all_elements();
    const auto bytes = static_cast<std::size_t>(bytes_of(type));
    const auto found = std::ranges::find_if(all, [&](const host::element& element) {
        return kind_of(element.meaning) == type.kind() && element.bytes == bytes;
    });
    return found == all.end() ? nullptr : &*found;
}

bool has_flag(const py::array& array, int flag) { return (array.flags() & flag) != 0; }

/// Sizes and strides in elements, x first as in the host.
struct layout
{
    std::vector<std::uint32_t> sizes;
    std::vector<std::ptrdiff_t> strides;
};

/// Whether two elements may have the same address. False is certain; true is not.
bool may_overlap_itself(const layout& array)
{
    std::vector<std::pair<std::ptrdiff_t, std::ptrdiff_t>> steps;  // stride, number of steps
    for (std::size_t d = 0; d < array.sizes.size(); ++d)
        if (array.sizes[d] > 1) steps.emplace_back(std::abs(array.strides[d]), std::ptrdiff_t{array.sizes[d]} - 1);
    std::ranges::sort(steps);
    std::ptrdiff_t reach = 0;
    for (const auto& [stride, extent] : steps) {
        if (stride <= reach) return true;
        reach += stride * extent;
    }
    return false;
}

bool is_masked(const py::array& array)
{
    static const auto& masked_array = *new py::object{py::module_::import("numpy.ma").attr("MaskedArray")};
    return py::isinstance(array, masked_array);
}

/// Whether the elements are aligned and the strides multiples of the element size, as images need it. Arrays within
/// messages and structured arrays are often different.
bool has_image_layout(const py::array& array)
{
    if (!has_flag(array, py::detail::npy_api::NPY_ARRAY_ALIGNED_)) return false;
    const py::ssize_t bytes = bytes_of(array.dtype());
    for (py::ssize_t d = 0; d < array.ndim(); ++d)
        if (array.strides(d) % bytes != 0) return false;
    return true;
}

std::string shape_text(const py::array& array) { return py::str(array.attr("shape")).cast<std::string>(); }

/// Throws  py::type_error, py::value_error for an array that cannot be an image
void check(const py::array& array)
{
    const std::string type = py::str(array.dtype()).cast<std::string>();
    if (!element_of(array.dtype()))
        throw py::type_error{"An array of " + type +
                             " cannot be an image: convert it with astype() to (u)int8, (u)int16, (u)int32, float32, "
                             "float64, complex64 or complex128."};
    if (!array.dtype().attr("isnative").cast<bool>())
        throw py::type_error{
            "An array of " + type +
            " has its bytes in the other order: convert it with astype(array.dtype.newbyteorder('='))."};
    if (is_masked(array)) throw py::type_error{"A masked array cannot be an image: pass its filled() values."};
    if (array.ndim() < 1 || array.ndim() > static_cast<py::ssize_t>(host::max_dimensions))
        throw py::value_error{"An array of shape " + shape_text(array) +
                              " cannot be an image: it needs 1 to 3 dimensions."};
    if (array.size() == 0)
        throw py::value_error{"An array of shape " + shape_text(array) + " cannot be an image: it has no element."};
}

/// Requires an array with has_image_layout.
/// Throws  py::value_error for sizes and strides beyond 32 bits
layout layout_of(const py::array& array)
{
    constexpr auto largest = std::numeric_limits<std::int32_t>::max();
    const py::ssize_t bytes = bytes_of(array.dtype());
    layout found;
    for (py::ssize_t d = array.ndim(); d-- > 0;) {
        const py::ssize_t stride = array.strides(d) / bytes;
        if (array.shape(d) > largest || std::abs(stride) > largest)
            throw py::value_error{"An array of shape " + shape_text(array) +
                                  " cannot be an image: its sizes and strides have to fit 32 bits."};
        found.sizes.push_back(static_cast<std::uint32_t>(array.shape(d)));
        found.strides.push_back(stride);
    }
    return found;
}

host::access access_of(const py::array& array, const layout& arrangement)
{
    return array.writeable() && !may_overlap_itself(arrangement) ? host::access::write : host::access::read;
}

/// Notifications for an array whose images are temporary.
struct notification_count
{
    std::uint64_t times = 0;
    py::object finalizer;  ///< a weak reference that removes the count when the array dies
};

using notification_counts = std::unordered_map<PyObject*, notification_count>;

notification_counts& the_counts()
{
    static auto& counts = *new notification_counts;
    return counts;
}

/// Called when the host is notified of changed pixels: on its main thread, without the interpreter lock.
void count_notification(PyObject* array)
{
    const interpreter_lock locked;
    auto& count = the_counts()[array];
    ++count.times;
    if (!count.finalizer)
        count.finalizer = py::weakref(py::handle{array}, py::cpp_function{[array](const py::handle&) {
                                          const auto node = the_counts().extract(array);  // keeps the weak reference
                                      }});
}

/// The image of an array made by array_of; null for other arrays.
host::image_ref original_image(const py::array& array)
{
    const py::object base = array.base();
    if (!base || !PyCapsule_IsValid(base.ptr(), capsule_name)) return nullptr;
    return *static_cast<host::image_ref*>(PyCapsule_GetPointer(base.ptr(), capsule_name));
}

/// An image of its own over a copy of the elements. It refuses write locks, which would not reach the array.
host::image_ref image_of_copy(const py::array& array)
{
    const py::array copy = array.attr("copy")();
    const layout arrangement = layout_of(copy);
    return host::image::over("unaligned array", element_of(copy.dtype())->code, const_cast<void*>(copy.data()),
                             arrangement.sizes, arrangement.strides, host::access::read,
                             std::make_shared<python_owner>(copy));
}

/// The existing image of the array, unless the array's shape or flags have changed since.
host::image_ref present_image(const py::array& array, host::access allowed)
{
    auto image = original_image(array);
    if (!image) image = std::dynamic_pointer_cast<host::image>(find_stand_in(array));
    const bool same = image && shows(array, *image) && image->is_writable() == (allowed == host::access::write);
    return same ? image : nullptr;
}

}  // namespace

bool shows(const py::array& array, const host::image& image)
{
    const auto* element = element_of(array.dtype());
    if (!element || element->code != image.code() || array.data() != image.data()) return false;
    if (static_cast<std::size_t>(array.ndim()) != image.dimensions()) return false;
    for (std::size_t d = 0; d < image.dimensions(); ++d) {
        const auto axis = array.ndim() - 1 - static_cast<py::ssize_t>(d);
        if (array.shape(axis) != image.size(d)) return false;
        if (array.strides(axis) != image.stride(d) * static_cast<py::ssize_t>(element->bytes)) return false;
    }
    return true;
}

host::image_ref image_of(const py::array& array)
{
    check(array);
    if (!has_image_layout(array)) return image_of_copy(array);
    const layout arrangement = layout_of(array);
    const auto allowed = access_of(array, arrangement);
    if (auto present = present_image(array, allowed)) return present;
    auto* const data = const_cast<void*>(array.data());  // `allowed` defines whether it may be written
    auto image = host::image::over("array", element_of(array.dtype())->code, data, arrangement.sizes,
                                   arrangement.strides, allowed, std::make_shared<python_owner>(array));
    image->on_changed([array = array.ptr()](host::image&) { count_notification(array); });
    remember_stand_in(array, image);
    return image;
}

py::array array_of(const host::image_ref& image)
{
    const host::element& element = image->type();
    const char kind = kind_of(element.meaning);
    if (kind == 0) throw py::type_error{"NumPy has no element type for " + image->describe() + "."};
    std::vector<py::ssize_t> shape, strides;
    for (std::size_t d = image->dimensions(); d-- > 0;) {
        shape.push_back(image->size(d));
        strides.push_back(image->stride(d) * static_cast<py::ssize_t>(element.bytes));
    }
    const py::capsule keeper{new host::image_ref{image}, capsule_name, [](PyObject* capsule) {
                                 delete static_cast<host::image_ref*>(PyCapsule_GetPointer(capsule, capsule_name));
                             }};
    py::array array{py::dtype{kind + std::to_string(element.bytes)}, shape, strides, image->data(), keeper};
    if (!image->is_writable()) array.attr("flags").attr("writeable") = false;
    return array;
}

std::uint64_t notifications(const py::array& array)
{
    std::uint64_t times = 0;
    if (const auto image = original_image(array)) times += image->changes();
    const auto found = the_counts().find(array.ptr());
    return found == the_counts().end() ? times : times + found->second.times;
}

}  // namespace zentrix::python
