#include "host/program/sweep.h"

#include <cmath>
#include <stdexcept>
#include <vector>

#include "host/text/number_text.h"
#include "lens/numbers.h"

namespace zentrix::program {

namespace {

using host::number_text;

constexpr double most_planes = 10000;

/// The numbers of "1:2:3"; empty if one is none.
std::vector<double> numbers_between_colons(const std::string& word)
{
    std::vector<double> numbers;
    for (std::size_t begin = 0; begin <= word.size();) {
        const std::size_t end = std::min(word.find(':', begin), word.size());
        const auto number = lens::parse_number(word.substr(begin, end - begin));
        if (!number) return {};
        numbers.push_back(*number);
        begin = end + 1;
    }
    return numbers;
}

[[noreturn]] void refuse(const lens::coefficient_traits& about, const std::string& why)
{
    throw std::invalid_argument{"--" + std::string{about.name} + ": " + why};
}

}  // namespace

bool is_sweep(const std::string& word) { return word.find(':') != std::string::npos; }

sweep parse_sweep(lens::coefficient which, const std::string& word)
{
    const auto& about = lens::traits(which);
    const std::size_t at = word.find('@');
    const auto angle = at == std::string::npos ? 0.0 : lens::parse_number(word.substr(at + 1));
    const auto numbers = numbers_between_colons(word.substr(0, at));
    const bool has_forbidden_angle = about.symmetry == 0 && at != std::string::npos;
    if (numbers.size() != 3 || !angle || has_forbidden_angle)
        refuse(about, std::string{"a sweep is START:STOP:STEP"} +
                          (about.symmetry == 0 ? "" : " or START:STOP:STEP@DEGREES") + ", not \"" + word + "\"");
    const double span = numbers[1] - numbers[0], step = numbers[2];
    if (step == 0 || span / step < 0)
        refuse(about, "the step of " + word + " does not lead from the start to the stop");
    // Decimal steps are not exact: 0:0.3:0.1 has four values although 0.3 / 0.1 < 3.
    const double steps = std::floor(span / step * (1 + 1e-12) + 1e-9);
    if (!(steps < most_planes)) refuse(about, word + " are more than " + number_text(most_planes) + " values");
    return {which, numbers[0], step, *angle, static_cast<std::size_t>(steps) + 1};
}

host::axis_scale sweep::axis() const { return {step, start, std::string{lens::traits(which).unit}}; }

std::string sweep::text() const
{
    const auto& about = lens::traits(which);
    return std::string{about.name} + " from " + number_text(start) + " to " + number_text(value(count - 1).modulus) +
           " " + std::string{about.unit} +
           (about.symmetry == 0 ? "" : " @ " + number_text(angle_degrees) + " degrees") + " in steps of " +
           number_text(step);
}

json sweep::as_json() const
{
    const auto& about = lens::traits(which);
    json described{{"coefficient", about.name}, {"start", start}, {"stop", value(count - 1).modulus}, {"step", step},
                   {"unit", about.unit},        {"planes", count}};
    if (about.symmetry != 0) described.update({{"angle", angle_degrees}, {"angle_unit", "deg"}});
    return described;
}

}  // namespace zentrix::program
