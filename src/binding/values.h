#pragma once

#include <complex>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "binding/object_ref.h"

/// Conversion between C++ values and host_value, for calls of host functions and of our script functions.
namespace qorv::binding {

template <class T>
concept object_reference = std::derived_from<T, object_ref>;

/// The host_kind of a C++ type; HOST_VOID for void.
template <class T>
inline constexpr host_kind kind_of = HOST_VOID;
template <>
inline constexpr host_kind kind_of<bool> = HOST_INT32;
template <>
inline constexpr host_kind kind_of<std::int16_t> = HOST_INT32;
template <>
inline constexpr host_kind kind_of<std::int32_t> = HOST_INT32;
template <>
inline constexpr host_kind kind_of<std::uint32_t> = HOST_UINT32;
template <>
inline constexpr host_kind kind_of<std::uint64_t> = HOST_UINT64;
template <>
inline constexpr host_kind kind_of<float> = HOST_FLOAT32;
template <>
inline constexpr host_kind kind_of<double> = HOST_FLOAT64;
template <>
inline constexpr host_kind kind_of<std::complex<double>> = HOST_COMPLEX;
template <>
inline constexpr host_kind kind_of<std::string> = HOST_STRING;
template <>
inline constexpr host_kind kind_of<void*> = HOST_POINTER;
template <object_reference T>
inline constexpr host_kind kind_of<T> = T::kind;

inline host_value value_of_kind(host_kind kind) noexcept
{
    host_value value{};
    value.kind = kind;
    return value;
}

/// A plain number or pointer as a host_value.
template <class T>
requires(std::is_arithmetic_v<T> || std::same_as<T, void*> || std::same_as<T, std::complex<double>>) host_value
    to_value(T number)
noexcept
{
    host_value value = value_of_kind(kind_of<T>);
    if constexpr (kind_of<T> == HOST_INT32) value.as.i32 = static_cast<std::int32_t>(number);
    if constexpr (kind_of<T> == HOST_UINT32) value.as.u32 = number;
    if constexpr (kind_of<T> == HOST_UINT64) value.as.u64 = number;
    if constexpr (kind_of<T> == HOST_FLOAT32) value.as.f32 = number;
    if constexpr (kind_of<T> == HOST_FLOAT64) value.as.f64 = number;
    if constexpr (kind_of<T> == HOST_POINTER) value.as.pointer = number;
    if constexpr (kind_of<T> == HOST_COMPLEX) {
        value.as.complex_parts[0] = number.real();
        value.as.complex_parts[1] = number.imag();
    }
    return value;
}

/// A reference as a lent object.
template <object_reference T>
host_value to_value(const T& object) noexcept
{
    host_value value = value_of_kind(T::kind);
    value.as.object = object.get();
    return value;
}

/// Reads a value of the right kind. Adds a reference to an object.
template <class T>
T from_value(const host_value& value)
{
    if constexpr (std::same_as<T, bool>)
        return value.as.i32 != 0;
    else if constexpr (kind_of<T> == HOST_INT32)
        return static_cast<T>(value.as.i32);
    else if constexpr (kind_of<T> == HOST_UINT32)
        return value.as.u32;
    else if constexpr (kind_of<T> == HOST_UINT64)
        return value.as.u64;
    else if constexpr (kind_of<T> == HOST_FLOAT32)
        return value.as.f32;
    else if constexpr (kind_of<T> == HOST_FLOAT64)
        return value.as.f64;
    else if constexpr (kind_of<T> == HOST_POINTER)
        return value.as.pointer;
    else if constexpr (kind_of<T> == HOST_COMPLEX)
        return {value.as.complex_parts[0], value.as.complex_parts[1]};
    else if constexpr (std::same_as<T, std::string>)
        return text_of(string_ref::share(value.as.object));
    else
        return T::share(value.as.object);
}

/// Stores a result or an output. The receiver owns the reference to an object.
template <class T>
void store(host_value& value, T content)
{
    if constexpr (std::same_as<T, std::string>) {
        host_object* string = make_string(content).detach();
        value = value_of_kind(HOST_STRING);
        value.as.object = string;
    } else if constexpr (object_reference<T>) {
        value = value_of_kind(T::kind);
        value.as.object = content.detach();
    } else
        value = to_value(content);
}

/// Output parameter of one of our script functions (`double *`, `ImageRef *`): the script's variable, or nothing if the
/// script passes none. Set it last, after everything that can fail.
template <class T>
class output
{
  public:
    output() = default;
    explicit output(host_value* cell) : cell_{cell} {}

    explicit operator bool() const noexcept { return cell_ != nullptr; }
    /// The variable's current value; T{} without a variable.
    T get() const { return cell_ ? from_value<T>(*cell_) : T{}; }
    /// Stores into the variable, if there is one.
    void set(T content) const
    {
        if (!cell_) return;
        host_value stored{};
        store(stored, std::move(content));
        // Release the previous object.
        if constexpr (object_reference<T>) T::adopt(cell_->as.object);
        if constexpr (std::same_as<T, std::string>) string_ref::adopt(cell_->as.object);
        *cell_ = stored;
    }

  private:
    host_value* cell_ = nullptr;
};

}  // namespace qorv::binding
