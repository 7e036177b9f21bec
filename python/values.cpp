#include "python/values.h"

#include <algorithm>
#include <complex>
#include <optional>

#include "python/handlers.h"
#include "python/tags.h"

namespace zentrix::python {

namespace {

/// Classes of NumPy's scalars, looked up once.
struct scalar_classes
{
    py::object truth = py::module_::import("numpy").attr("bool_");
    py::object complex = py::module_::import("numpy").attr("complexfloating");
};

const scalar_classes& numpy_scalars()
{
    static const auto& found = *new scalar_classes;
    return found;
}

host::script_value whole_number(py::handle given)
{
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(given.ptr()));
    if (!number) throw py::error_already_set{};
    int overflow = 0;
    const long long value = PyLong_AsLongLongAndOverflow(number.ptr(), &overflow);
    if (overflow == 0) return std::int64_t{value};
    const double real = PyLong_AsDouble(number.ptr());
    if (!PyErr_Occurred()) return real;
    PyErr_Clear();
    throw host::script_error{overflow > 0 ? "bad numeric conversion: positive overflow"
                                          : "bad numeric conversion: negative overflow"};
}

bool is_complex(py::handle given)
{
    return PyComplex_Check(given.ptr()) || py::isinstance(given, numpy_scalars().complex);
}

bool is_real(py::handle given)
{
    const auto* numeric = Py_TYPE(given.ptr())->tp_as_number;
    return numeric && numeric->nb_float;
}

double real_number(py::handle given)
{
    const double number = PyFloat_AsDouble(given.ptr());
    if (number == -1 && PyErr_Occurred()) throw py::error_already_set{};
    return number;
}

bool is_path(py::handle given) { return py::hasattr(given, "__fspath__"); }

py::object text_of_path(py::handle path) { return py::reinterpret_steal<py::object>(PyOS_FSPath(path.ptr())); }

/// Numbers and texts; nothing for anything else.
std::optional<host::script_value> plain_value(py::handle given)
{
    if (given.is_none()) return host::script_value{};
    if (py::isinstance(given, numpy_scalars().truth)) return std::int64_t{PyObject_IsTrue(given.ptr())};
    if (PyIndex_Check(given.ptr()) && !py::isinstance<py::array>(given)) return whole_number(given);
    if (PyFloat_Check(given.ptr())) return PyFloat_AS_DOUBLE(given.ptr());
    if (is_complex(given)) {
        const Py_complex number = PyComplex_AsCComplex(given.ptr());
        return std::complex{number.real, number.imag};
    }
    if (PyUnicode_Check(given.ptr())) return text_from_python(given);
    return std::nullopt;
}

host::script_value object_from_python(py::handle given)
{
    if (is_real(given)) return real_number(given);
    if (PyObject_CheckBuffer(given.ptr()))
        throw py::type_error{"Bytes are no script value: decode() them to a text or view them as a NumPy array."};
    if (is_tags(given)) return host::object_ref{tags_of(given)};
    if (is_path(given)) return plain_value(text_of_path(given)).value();
    return host::object_ref{handler_of(given)};
}

struct to_python_visitor
{
    py::object operator()(std::monostate) const { return py::none(); }
    py::object operator()(std::int64_t number) const { return py::int_{number}; }
    py::object operator()(double number) const { return py::float_{number}; }
    py::object operator()(std::complex<double> number) const
    {
        return py::reinterpret_steal<py::object>(PyComplex_FromDoubles(number.real(), number.imag()));
    }
    py::object operator()(const std::string& text) const { return text_to_python(text); }
    py::object operator()(const host::object_ref& held) const
    {
        if (!held) return py::none();
        if (const auto image = std::dynamic_pointer_cast<host::image>(held)) return array_of(image);
        if (const auto tags = std::dynamic_pointer_cast<host::tag_group>(held)) return tags_to_python(tags);
        if (const auto handler = std::dynamic_pointer_cast<python_handler>(held)) return handler->python_object();
        throw host::script_error{"Python has no form for " + held->describe() + "."};
    }
    py::object operator()(const host::cell_ref&) const { return py::none(); }  // a function returns no output parameter
    py::object operator()(void*) const { return py::none(); }                  // nor a pointer
};

}  // namespace

bool is_reference(py::handle object)
{
    static const auto& ref_class = *new py::object{py::module_::import("zentrix._ref").attr("Ref")};
    return py::isinstance(object, ref_class);
}

std::string text_from_python(py::handle text)
{
    const auto bytes =
        py::reinterpret_steal<py::object>(PyUnicode_AsEncodedString(text.ptr(), "utf-8", "surrogateescape"));
    if (!bytes) throw py::error_already_set{};
    return {PyBytes_AS_STRING(bytes.ptr()), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr()))};
}

py::str text_to_python(const std::string& text)
{
    return py::reinterpret_steal<py::str>(
        PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "surrogateescape"));
}

call_arguments::call_arguments(const py::args& given)
{
    values_.reserve(given.size());
    for (const py::handle one : given) values_.push_back(from_python(one));
}

host::script_value call_arguments::from_python(py::handle given)
{
    if (is_reference(given)) return cell_for(given);
    if (py::isinstance<py::array>(given)) {
        const auto array = py::reinterpret_borrow<py::array>(given);
        auto image = image_of(array);
        arrays_.emplace_back(array, image);
        return host::object_ref{std::move(image)};
    }
    return result_from_python(given);
}

host::script_value call_arguments::cell_for(py::handle given)
{
    const auto same = [&](const auto& one) { return one.first.is(given); };
    const auto found = std::ranges::find_if(references_, same);
    if (found != references_.end()) return found->second;
    const py::object initial = given.attr("value");
    if (is_reference(initial)) throw py::type_error{"A Ref cannot hold a Ref."};
    auto cell = host::make_cell(from_python(initial));
    references_.emplace_back(py::reinterpret_borrow<py::object>(given), cell);
    return cell;
}

void call_arguments::store_outputs() const
{
    for (const auto& [ref, cell] : references_) ref.attr("value") = to_python(cell->value);
}

bool call_arguments::has_scattered_array() const
{
    return std::ranges::any_of(arrays_, [](const auto& one) { return !one.second->is_contiguous(); });
}

py::object call_arguments::to_python(const host::script_value& value) const
{
    const auto image = host::object_in<host::image>(value);
    for (const auto& [array, shown] : arrays_)
        if (image && shown == image && shows(array, *image)) return array;
    return argument_to_python(value);
}

host::script_value result_from_python(py::handle given)
{
    if (auto plain = plain_value(given)) return *std::move(plain);
    if (py::isinstance<py::array>(given)) return host::object_ref{image_of(py::reinterpret_borrow<py::array>(given))};
    return object_from_python(given);
}

py::object argument_to_python(const host::script_value& value) { return std::visit(to_python_visitor{}, value); }

}  // namespace zentrix::python
