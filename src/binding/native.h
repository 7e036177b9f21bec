#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

#include "binding/values.h"
#include "framework/plugin_main.h"

/// Turns C++ functions into script functions: wraps a function of any supported signature in the contract's call form.
namespace qorv::binding {

/// A parameter's kind in the contract; an output has HOST_OUTPUT and the kind of its cell.
struct parameter_kind
{
    host_kind kind;
    host_kind cell = HOST_VOID;
    friend bool operator==(const parameter_kind&, const parameter_kind&) = default;
};

struct signature
{
    host_kind result;
    const parameter_kind* parameters;
    std::size_t count;
};

namespace details {

template <class T>
struct parameter
{
    static constexpr parameter_kind kind{kind_of<T>};
    static T read(const host_value& value) { return from_value<T>(value); }
};

template <class T>
struct parameter<output<T>>
{
    static constexpr parameter_kind kind{HOST_OUTPUT, kind_of<T>};
    static output<T> read(const host_value& value) { return output<T>{value.as.cell}; }
};

/// Stores in *error a throwable for the exception being handled, or null when none can be made.
void throwable_of_current_exception(host_object** error) noexcept;

/// Throws std::invalid_argument when the host passed `count` arguments to a native function with `expected` parameters.
void require_count(std::uint32_t count, std::size_t expected);

template <class Function>
struct binding;

template <class Result, class... Parameters>
struct binding<Result (*)(Parameters...)>
{
    // One extra element, because a zero-sized array has no usable data().
    static constexpr std::array<parameter_kind, sizeof...(Parameters) + 1> kinds{
        parameter<std::remove_cvref_t<Parameters>>::kind..., parameter_kind{HOST_VOID}};
    static constexpr signature shape{kind_of<Result>, kinds.data(), sizeof...(Parameters)};

    template <Result (*function)(Parameters...)>
    static std::int32_t HOST_CALL entry(void*, const host_value* arguments, std::uint32_t count, host_value* result,
                                        host_object** error)
    {
        try {
            require_count(count, sizeof...(Parameters));
            run<function>(arguments, result, std::index_sequence_for<Parameters...>{});
            return 0;
        } catch (...) {
            throwable_of_current_exception(error);
            return 1;
        }
    }

  private:
    template <Result (*function)(Parameters...), std::size_t... i>
    static void run([[maybe_unused]] const host_value* arguments, host_value* result, std::index_sequence<i...>)
    {
        if constexpr (std::is_void_v<Result>) {
            function(parameter<std::remove_cvref_t<Parameters>>::read(arguments[i])...);
            if (result) *result = value_of_kind(HOST_VOID);
        } else {
            Result returned = function(parameter<std::remove_cvref_t<Parameters>>::read(arguments[i])...);
            if (result) store(*result, std::move(returned));
        }
    }
};

/// Throws std::logic_error, naming the prototype, when the C++ signature does not match the prototype's types.
void require_fit(const std::string& prototype, const signature& shape);

}  // namespace details

/// Registers `function` under `prototype`.
/// Throws  std::logic_error when the C++ signature does not match the prototype (a defect, found at start-up);
///         Gatan::gatan_exception when the host refuses
template <auto function>
void add_function(Gatan::PlugIn::PlugInMain& plug_in, const std::string& prototype)
{
    using binding = details::binding<decltype(function)>;
    details::require_fit(prototype, binding::shape);
    plug_in.AddFunction(prototype, &binding::template entry<function>);
}

}  // namespace qorv::binding
