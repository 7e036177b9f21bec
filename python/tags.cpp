#include "python/tags.h"

#include <limits>

#include "python/values.h"

namespace zentrix::python {

namespace {

const py::object& abstract_class(const char* name)
{
    static const auto& mapping = *new py::object{py::module_::import("collections.abc").attr("Mapping")};
    static const auto& sequence = *new py::object{py::module_::import("collections.abc").attr("Sequence")};
    return std::string_view{name} == "Mapping" ? mapping : sequence;
}

bool is_mapping(py::handle object)
{
    return PyDict_Check(object.ptr()) || py::isinstance(object, abstract_class("Mapping"));
}

bool is_sequence(py::handle object)
{
    if (PyUnicode_Check(object.ptr()) || PyBytes_Check(object.ptr())) return false;
    return PyList_Check(object.ptr()) || py::isinstance(object, abstract_class("Sequence"));
}

/// Module zentrix._tags, which has the Python classes for tags of the host.
py::object wrapper_module() { return py::module_::import("zentrix._tags"); }

/// The view in a TagGroup or TagList; null for any other object.
tags_view* view_in(py::handle object)
{
    if (!py::hasattr(object, "_tags")) return nullptr;
    const py::object view = object.attr("_tags");
    return py::isinstance<tags_view>(view) ? view.cast<tags_view*>() : nullptr;
}

/// A Python mapping or sequence as tags. May be called with or without the interpreter lock.
class python_tags : public host::tag_group
{
  public:
    python_tags(py::handle owned, bool is_list) : owner_{owned}, is_list_{is_list} {}

    const py::object& python_object() const { return owner_.get(); }

    bool is_list() const override { return is_list_; }

    std::size_t count() const override
    {
        return call_back([&] { return py::len(owner_.get()); });
    }

    std::optional<host::tag> get(const std::string& name) const override
    {
        if (is_list_) return std::nullopt;
        return call_back([&]() -> std::optional<host::tag> {
            const auto key = text_to_python(name);
            if (!owner_.get().contains(key)) return std::nullopt;
            return tag_from_python(owner_.get()[key]);
        });
    }

    std::optional<host::tag> get_at(std::size_t index) const override
    {
        return call_back([&]() -> std::optional<host::tag> {
            if (index >= py::len(owner_.get())) return std::nullopt;
            if (is_list_) return tag_from_python(owner_.get()[py::int_{index}]);
            const py::object key = key_at(index);
            return tag_from_python(owner_.get()[key]);
        });
    }

    std::string name_at(std::size_t index) const override
    {
        if (is_list_) return {};
        return call_back([&] {
            const bool present = index < py::len(owner_.get());
            return present ? text_from_python(py::str(key_at(index))) : std::string{};
        });
    }

    void set(const std::string& name, host::tag value) override
    {
        if (is_list_) throw host::script_error{"A tag list has no named tags."};
        call_back([&] { set_item(text_to_python(name), tag_to_python(value)); });
    }

    void insert(std::size_t index, host::tag value) override
    {
        if (!is_list_) throw host::script_error{"Tags are inserted by number into tag lists only."};
        call_back([&] { owner_.get().attr("insert")(index, tag_to_python(value)); });
    }

    void replace(std::size_t index, host::tag value) override
    {
        if (!is_list_) throw host::script_error{"The tag list has no tag of that number."};
        call_back([&] { set_item(py::int_{index}, tag_to_python(value)); });
    }

  private:
    py::object key_at(std::size_t index) const
    {
        auto keys = py::iter(owner_.get());
        for (std::size_t i = 0; i < index; ++i) ++keys;
        return py::reinterpret_borrow<py::object>(*keys);
    }

    void set_item(const py::object& key, const py::object& value) const
    {
        if (PyObject_SetItem(owner_.get().ptr(), key.ptr(), value.ptr()) != 0) throw py::error_already_set{};
    }

    python_owner owner_;
    bool is_list_;
};

host::tag number_tag(std::int64_t number)
{
    using limits = std::numeric_limits<std::int32_t>;
    if (number < limits::min() || number > limits::max()) return static_cast<double>(number);
    return static_cast<std::int32_t>(number);
}

}  // namespace

bool is_tags(py::handle object) { return view_in(object) || is_mapping(object) || is_sequence(object); }

host::tag_group_ref tags_of(py::handle object)
{
    if (const auto* view = view_in(object)) return view->held;
    if (auto existing = std::dynamic_pointer_cast<host::tag_group>(find_stand_in(object))) return existing;
    auto tags = std::make_shared<python_tags>(object, !is_mapping(object));
    remember_stand_in(object, tags);
    return tags;
}

py::object tags_to_python(const host::tag_group_ref& tags)
{
    if (const auto from_python = std::dynamic_pointer_cast<python_tags>(tags)) return from_python->python_object();
    return wrapper_module().attr("wrap")(tags_view{tags}, tags->is_list());
}

py::object tag_to_python(const host::tag& value)
{
    struct visitor
    {
        py::object operator()(std::int32_t number) const { return py::int_{number}; }
        py::object operator()(float number) const { return py::float_{double{number}}; }
        py::object operator()(double number) const { return py::float_{number}; }
        py::object operator()(const std::string& text) const { return text_to_python(text); }
        py::object operator()(const host::tag_group_ref& group) const
        {
            return group ? tags_to_python(group) : py::object{py::none()};
        }
    };
    return std::visit(visitor{}, value);
}

std::optional<host::tag> tag_from_python(py::handle value)
{
    if (py::isinstance<py::array>(value) || is_reference(value)) return std::nullopt;
    const auto converted = result_from_python(value);
    if (const auto* number = std::get_if<std::int64_t>(&converted)) return number_tag(*number);
    if (const auto* number = std::get_if<double>(&converted)) return *number;
    if (const auto* text = std::get_if<std::string>(&converted)) return *text;
    if (auto group = host::object_in<host::tag_group>(converted)) return group;
    return std::nullopt;
}

}  // namespace zentrix::python
