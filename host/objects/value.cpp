#include "host/objects/value.h"

#include <sstream>

namespace zentrix::host {

namespace {

template <class T>
std::string number_text(const char* kind, const T& number)
{
    std::ostringstream text;
    text << kind << number;
    return text.str();
}

struct describer
{
    std::string operator()(std::monostate) const { return "null"; }
    std::string operator()(std::int64_t number) const { return "integer " + std::to_string(number); }
    std::string operator()(double number) const { return number_text("real number ", number); }
    std::string operator()(std::complex<double> number) const { return number_text("complex number ", number); }
    std::string operator()(const std::string& text) const { return "text \"" + text + "\""; }
    std::string operator()(const object_ref& held) const { return held->describe(); }
    std::string operator()(const cell_ref&) const { return "output parameter"; }
    std::string operator()(void*) const { return "pointer"; }
};

}  // namespace

bool is_null(const script_value& value) noexcept
{
    if (const auto* held = std::get_if<object_ref>(&value)) return !*held;
    if (const auto* held = std::get_if<cell_ref>(&value)) return !*held;
    return std::holds_alternative<std::monostate>(value);
}

std::string describe(const script_value& value)
{
    if (is_null(value)) return "null";
    return std::visit(describer{}, value);
}

}  // namespace zentrix::host
