#include "host/program/reciprocal_scale.h"

namespace zentrix::program {

std::string reciprocal_unit(const std::string& unit)
{
    constexpr std::string_view over = "1/", power = "^-1";
    if (unit.empty()) return "";
    if (unit.starts_with(over)) return unit.substr(over.size());
    if (unit.ends_with(power)) return unit.substr(0, unit.size() - power.size());
    return std::string{over} + unit;
}

host::axis_scale reciprocal_scale(const host::axis_scale& of, std::uint32_t pixels, std::uint32_t zero)
{
    if (of.step == 0) return {};
    const double step = 1 / (of.step * pixels);
    return {step, zero == 0 ? 0 : -step * zero, reciprocal_unit(of.unit)};
}

}  // namespace zentrix::program
