#pragma once

#include <array>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "binding/object_ref.h"
#include "binding/values.h"
#include "framework/error_manager.h"

/// Calls of host functions and of methods of script objects.
namespace qorv::binding {

/// A call of the host failed. Keeps the host's throwable, so that a script function can return it unchanged.
class host_error : public Gatan::gatan_exception
{
  public:
    host_error(std::string text, throwable_ref throwable)
        : gatan_exception{std::move(text)}, throwable_{std::move(throwable)}
    {}
    const throwable_ref& throwable() const noexcept { return throwable_; }

  private:
    throwable_ref throwable_;
};

/// Caches the host function of one prototype: looked up at the first use, and again after a change of the link.
/// Slots have static storage duration. One that the end of the process destroys leaves the list of release_all, because
/// a host may shut the library down after that. `find` and `require` may be called on any thread.
class function_slot
{
  public:
    /// `prototype` is the exact text, blanks included, and lives as long as the slot.
    explicit constexpr function_slot(const char* prototype) noexcept : prototype_{prototype} {}
    function_slot(const function_slot&) = delete;
    function_slot& operator=(const function_slot&) = delete;
    ~function_slot();

    /// The host function; null when the host has none or there is no host.
    const function_ref& find();

    /// The host function.
    /// Throws  Gatan::gatan_exception "A function of the following prototype can not be found:\n\n" + prototype
    const function_ref& require();

    /// Empties all slots, so that the host counts no function as held.
    static void release_all() noexcept;

  private:
    const char* prototype_;
    function_ref function_;
    function_slot* next_ = nullptr;
    bool is_listed_ = false;
};

/// Marks an output argument of a host call: `target` is the cell's initial value and receives what the host stored.
template <class T>
struct out
{
    T& target;
};
template <class T>
out(T&) -> out<T>;

namespace details {

/// One argument's host_value, and whatever it points to.
template <class T>
struct argument
{
    explicit argument(const T& content) : value{to_value(content)} {}
    void finish() {}
    host_value value;
};

template <class Text>
requires std::convertible_to<Text, std::string_view>
struct argument<Text>
{
    explicit argument(std::string_view text) : string{make_string(text)}, value{to_value(string)} {}
    void finish() {}
    string_ref string;
    host_value value;
};

template <class T>
struct argument<out<T>>
{
    explicit argument(out<T> output)
        : target{output.target}, cell{value_of_kind(kind_of<T>)}, value{value_of_kind(HOST_OUTPUT)}
    {
        store(cell, target);
        value.as.cell = &cell;
    }
    argument(const argument&) = delete;
    argument& operator=(const argument&) = delete;
    ~argument()
    {
        if constexpr (std::same_as<T, std::string>) string_ref::adopt(cell.as.object);
        if constexpr (object_reference<T>) T::adopt(cell.as.object);
    }
    void finish() { target = from_value<T>(cell); }

    T& target;
    host_value cell;
    host_value value;
};

/// Runs the call. Throws host_error with the host's text.
void invoke(const function_ref& function, const host_value* arguments, std::uint32_t count, host_value* result);

template <class Result, class... Arguments>
Result call(const function_ref& function, const Arguments&... arguments)
{
    std::tuple<argument<Arguments>...> held{arguments...};
    return std::apply(
        [&](auto&... each) -> Result {
            // One extra element, because a zero-sized array has no usable data().
            const std::array<host_value, sizeof...(Arguments) + 1> values{each.value...};
            host_value result = value_of_kind(kind_of<Result>);
            invoke(function, values.data(), sizeof...(Arguments), &result);
            (each.finish(), ...);
            if constexpr (object_reference<Result>)
                return Result::adopt(result.as.object);
            else if constexpr (std::same_as<Result, std::string>)
                return text_of(string_ref::adopt(result.as.object));
            else if constexpr (!std::is_void_v<Result>)
                return from_value<Result>(result);
        },
        held);
}

}  // namespace details

/// Calls the host function of a slot with the arguments in prototype order: numbers of exactly the prototype's type,
/// references, texts, `out{variable}` for outputs.
template <class Result, class... Arguments>
Result call(function_slot& slot, const Arguments&... arguments)
{
    return details::call<Result>(slot.require(), arguments...);
}

/// The method of a script object with this name and prototype.
/// Throws  Gatan::gatan_exception "Attempt to dispatch off a null object." for a null object; "A function of the
///         following prototype can not be found:\n\n" + prototype when the object has no such method
function_ref find_method(const script_object_ref& object, std::string_view name, std::string_view prototype);

/// Calls a method returned by find_method; `object` becomes its first argument.
template <class Result, class... Arguments>
Result call(const function_ref& method, const script_object_ref& object, const Arguments&... arguments)
{
    return details::call<Result>(method, object, arguments...);
}

/// Finds a method by name and prototype and calls it; `object` becomes its first argument.
template <class Result, class... Arguments>
Result call_method(const script_object_ref& object, std::string_view name, std::string_view prototype,
                   const Arguments&... arguments)
{
    return details::call<Result>(find_method(object, name, prototype), object, arguments...);
}

}  // namespace qorv::binding
