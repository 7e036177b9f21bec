#include "python/values.h"

#include <algorithm>
#include <complex>
#include <optional>

#include "python/handlers.h"
#include "python/tags.h"

namespace zentrix::python {

namespace {

/// Classes of NumPy scalars, looked up once.
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

constexpr char nul_in_text[] = "A text with a NUL character cannot be passed to a script.";

host::script_value whole_number(py::handle value_with_index)
{
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value_with_index.ptr()));
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

bool is_complex(py::handle value)
{
    return PyComplex_Check(value.ptr()) || py::isinstance(value, numpy_scalars().complex);
}

bool is_real(py::handle value)
{
    const auto* numeric = Py_TYPE(value.ptr())->tp_as_number;
    return numeric && numeric->nb_float;
}

double real_number(py::handle value)
{
    const double number = PyFloat_AsDouble(value.ptr());
    if (number == -1 && PyErr_Occurred()) throw py::error_already_set{};
    return number;
}

/// A text for a script, where a NUL would end it.
std::string script_text(py::handle text)
{
    auto utf8 = text_from_python(text);
    if (utf8.find('\0') != std::string::npos) throw host::script_error{nul_in_text};
    return utf8;
}

/// Whether the class of the object is one of paths; a mere attribute of the object does not count, as for os.fspath.
bool is_path(py::handle value) { return py::hasattr(py::type::of(value), "__fspath__"); }

/// Throws  what `__fspath__` raises; py::type_error unless it returns a str or bytes
std::string path_text(py::handle path)
{
    const auto name = py::reinterpret_steal<py::object>(PyOS_FSPath(path.ptr()));
    if (!name) throw py::error_already_set{};
    if (PyUnicode_Check(name.ptr())) return script_text(name);
    const auto decoded = py::reinterpret_steal<py::object>(
        PyUnicode_DecodeFSDefaultAndSize(PyBytes_AS_STRING(name.ptr()), PyBytes_GET_SIZE(name.ptr())));
    if (!decoded) throw py::error_already_set{};
    return script_text(decoded);
}

/// Numbers and texts; nothing for anything else.
std::optional<host::script_value> plain_value(py::handle value)
{
    if (value.is_none()) return host::script_value{};
    if (py::isinstance(value, numpy_scalars().truth)) return std::int64_t{PyObject_IsTrue(value.ptr())};
    if (PyIndex_Check(value.ptr()) && !py::isinstance<py::array>(value)) return whole_number(value);
    if (PyFloat_Check(value.ptr())) return PyFloat_AS_DOUBLE(value.ptr());
    if (is_complex(value)) {
        const Py_complex number = PyComplex_AsCComplex(value.ptr());
        return std::complex{number.real, number.imag};
    }
    if (PyUnicode_Check(value.ptr())) return script_text(value);
    return std::nullopt;
}

host::script_value object_from_python(py::handle value)
{
    if (is_real(value)) return real_number(value);
    if (PyObject_CheckBuffer(value.ptr()))
        throw py::type_error{"Bytes are no script value: decode() them to a text or view them as a NumPy array."};
    if (is_tags(value)) return host::object_ref{tags_of(value)};
    if (is_path(value)) return path_text(value);
    return host::object_ref{handler_of(value)};
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
    py::object operator()(const host::cell_ref&) const
    {
        return py::none();
    }                                                          // scripts never pass output parameters to Python
    py::object operator()(void*) const { return py::none(); }  // nor pointers
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

call_arguments::call_arguments(const py::args& arguments)
{
    values_.reserve(arguments.size());
    for (const py::handle argument : arguments) values_.push_back(from_python(argument));
}

host::script_value call_arguments::from_python(py::handle argument)
{
    if (is_reference(argument)) return cell_for(argument);
    if (py::isinstance<py::array>(argument)) {
        const auto array = py::reinterpret_borrow<py::array>(argument);
        auto image = image_of(array);
        arrays_.emplace_back(array, image);
        return host::object_ref{std::move(image)};
    }
    return result_from_python(argument);
}

host::script_value call_arguments::cell_for(py::handle reference)
{
    const auto same = [&](const auto& known) { return known.first.is(reference); };
    const auto found = std::ranges::find_if(references_, same);
    if (found != references_.end()) return found->second;
    const py::object initial = reference.attr("value");
    if (is_reference(initial)) throw py::type_error{"A Ref cannot hold a Ref."};
    auto cell = host::make_cell(from_python(initial));
    references_.emplace_back(py::reinterpret_borrow<py::object>(reference), cell);
    return cell;
}

void call_arguments::store_outputs() const
{
    for (const auto& [ref, cell] : references_) ref.attr("value") = to_python(cell->value);
}

bool call_arguments::has_strided_array() const
{
    return std::ranges::any_of(arrays_, [](const auto& entry) { return !entry.second->is_contiguous(); });
}

py::object call_arguments::to_python(const host::script_value& value) const
{
    const auto image = host::object_in<host::image>(value);
    for (const auto& [array, shown] : arrays_)
        if (image && shown == image && shows(array, *image)) return array;
    return argument_to_python(value);
}

void look_up_classes()
{
    const py::object array = py::module_::import("numpy").attr("zeros")(1, "float32");
    const call_arguments one_of_each_kind{py::make_tuple(1.0, py::dict{}, array)};
    (void)script_error_class();
}

host::script_value result_from_python(py::handle result)
{
    if (auto plain = plain_value(result)) return *std::move(plain);
    if (py::isinstance<py::array>(result)) return host::object_ref{image_of(py::reinterpret_borrow<py::array>(result))};
    return object_from_python(result);
}

py::object argument_to_python(const host::script_value& value) { return std::visit(to_python_visitor{}, value); }

}  // namespace zentrix::python
