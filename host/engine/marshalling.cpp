#include "host/engine/marshalling.h"

#include "host/objects/conversion.h"

namespace zentrix::host {

namespace {

[[noreturn]] void refuse(journal& records, const std::string& text)
{
    records.add_violation(text);
    throw script_error{text};
}

script_value object_from(handle_table& handles, journal& records, const host_value& passed, const prototype_type& type)
{
    auto held = handles.get(passed.as.object);
    if (held && held->kind() != static_cast<object_kind>(type.kind))
        refuse(records, held->describe() + " is passed as " + name_of(type.kind) + ".");
    if (type.kind != HOST_STRING) return held;
    if (!held) refuse(records, "A null string is passed.");
    return static_cast<const string_object&>(*held).text();
}

/// An output parameter of a call by the library.
struct output
{
    host_value* place;
    prototype_type type;
    script_value before;
    cell_ref cell;
};

/// The current value of a cell. A null object, which a cell never filled also holds, is read as the default value of
/// the type.
script_value value_in_cell(handle_table& handles, journal& records, const host_value& cell, const prototype_type& type)
{
    if (is_counted(type.kind) && cell.kind == static_cast<std::uint32_t>(type.kind) && !cell.as.object)
        return default_value(type);
    return from_library(handles, records, cell, type);
}

/// Stores the new values into the library's cells after all of them have been converted.
void store(std::vector<output>& outputs, handle_table& handles)
{
    std::vector<host_value> fresh;
    fresh.reserve(outputs.size());
    try {
        for (auto& one : outputs) fresh.push_back(counted_for_library(handles, one.cell->value, one.type));
    } catch (...) {
        for (std::size_t i = 0; i < fresh.size(); ++i)
            if (is_counted(outputs[i].type.kind)) handles.release(fresh[i].as.object);
        throw;
    }
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        if (is_counted(outputs[i].type.kind)) handles.release(outputs[i].place->as.object);
        *outputs[i].place = fresh[i];
    }
}

}  // namespace

prototype_type cell_type_of(const prototype_type& output) { return {output.word, output.cell_kind, HOST_VOID}; }

script_value default_value(const prototype_type& type)
{
    if (type.kind == HOST_STRING) return std::string{};
    if (is_counted(type.kind)) return object_ref{};
    if (type.kind == HOST_POINTER) return static_cast<void*>(nullptr);
    return convert(std::int64_t{0}, type);
}

script_value from_library(handle_table& handles, journal& records, const host_value& passed, const prototype_type& type)
{
    if (passed.kind != static_cast<std::uint32_t>(type.kind))
        refuse(records, std::string{"A value of kind "} + name_of(static_cast<host_kind>(passed.kind)) +
                            " is passed where the prototype has " + name_of(type.kind) + ".");
    switch (type.kind) {
        case HOST_VOID: return {};
        case HOST_INT32: return std::int64_t{passed.as.i32};
        case HOST_UINT32: return std::int64_t{passed.as.u32};
        case HOST_UINT64:
            if (passed.as.u64 > static_cast<std::uint64_t>(INT64_MAX))
                throw script_error{"bad numeric conversion: positive overflow"};
            return static_cast<std::int64_t>(passed.as.u64);
        case HOST_FLOAT32: return double{passed.as.f32};
        case HOST_FLOAT64: return passed.as.f64;
        case HOST_COMPLEX: return std::complex<double>{passed.as.complex_parts[0], passed.as.complex_parts[1]};
        case HOST_POINTER: return passed.as.pointer;
        default: return object_from(handles, records, passed, type);
    }
}

object_ref string_for_library(const std::string& text)
{
    if (text.find('\0') != std::string::npos)
        throw script_error{"A text with a null character cannot be passed to the library."};
    return std::make_shared<string_object>(text);
}

host_value counted_for_library(handle_table& handles, const script_value& value, const prototype_type& type)
{
    const auto converted = convert(value, type);
    host_value plain{};
    plain.kind = static_cast<std::uint32_t>(type.kind);
    switch (type.kind) {
        case HOST_VOID: break;
        case HOST_INT32: plain.as.i32 = static_cast<std::int32_t>(std::get<std::int64_t>(converted)); break;
        case HOST_UINT32: plain.as.u32 = static_cast<std::uint32_t>(std::get<std::int64_t>(converted)); break;
        case HOST_UINT64: plain.as.u64 = static_cast<std::uint64_t>(std::get<std::int64_t>(converted)); break;
        case HOST_FLOAT32: plain.as.f32 = static_cast<float>(std::get<double>(converted)); break;
        case HOST_FLOAT64: plain.as.f64 = std::get<double>(converted); break;
        case HOST_COMPLEX: {
            const auto number = std::get<std::complex<double>>(converted);
            plain.as.complex_parts[0] = number.real();
            plain.as.complex_parts[1] = number.imag();
            break;
        }
        case HOST_POINTER: plain.as.pointer = std::get<void*>(converted); break;
        case HOST_STRING: plain.as.object = handles.give(string_for_library(std::get<std::string>(converted))); break;
        default: plain.as.object = handles.give(std::get<object_ref>(converted));
    }
    return plain;
}

void call_for_library(function& callee, handle_table& handles, journal& records, std::span<const host_value> passed,
                      host_value* result)
{
    const auto& signature = callee.signature();
    if (!signature.takes(passed.size()))
        refuse(records, "\"" + signature.text + "\" is called with " + std::to_string(passed.size()) + " arguments.");
    std::vector<script_value> values;
    std::vector<output> outputs;
    for (std::size_t i = 0; i < passed.size(); ++i) {
        const auto& type = signature.parameter_of(i).type;
        if (type.kind != HOST_OUTPUT) {
            values.push_back(from_library(handles, records, passed[i], type));
            continue;
        }
        if (passed[i].kind != HOST_OUTPUT)
            refuse(records, "\"" + signature.text + "\" is called with a value in place of an output parameter.");
        cell_ref cell;
        if (passed[i].as.cell) {
            const auto cell_type = cell_type_of(type);
            auto before = value_in_cell(handles, records, *passed[i].as.cell, cell_type);
            cell = make_cell(before);
            outputs.push_back({passed[i].as.cell, cell_type, std::move(before), cell});
        }
        values.push_back(std::move(cell));
    }
    const auto answer = call_converted(callee, values);
    std::erase_if(outputs, [](const output& one) { return one.cell->value == one.before; });
    auto plain = result ? counted_for_library(handles, answer, signature.result) : host_value{};
    try {
        store(outputs, handles);
    } catch (...) {
        if (result && is_counted(signature.result.kind)) handles.release(plain.as.object);
        throw;
    }
    if (result) *result = plain;
}

}  // namespace zentrix::host
