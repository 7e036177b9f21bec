#include "lens/notation.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <set>
#include <stdexcept>

namespace zentrix::lens {

namespace {

/// How the other notations write a coefficient.
struct counterpart
{
    coefficient which;
    std::string indices;  ///< "21" of C21
    double factor;        ///< C_nm is this times the coefficient: (n + 1) / divisor
    bool power_of_w;      ///< in the notation of correctors
};

const std::vector<counterpart>& counterparts()
{
    static const std::vector<counterpart> all = [] {
        std::vector<counterpart> made;
        for (const auto& about : all_coefficients) {
            const int order = about.name[1] - '0';  // A1 is of first order
            const bool has_own_divisor = about.divisor == order + 1;
            made.push_back({about.which, std::to_string(order) + std::to_string(about.symmetry),
                            (order + 1.0) / about.divisor, !has_own_divisor});
        }
        return made;
    }();
    return all;
}

const counterpart& counterpart_of(coefficient which) { return counterparts()[static_cast<std::size_t>(which)]; }

/// An angle as the other program has it, and back: both have the same form.
class angle_rule
{
  public:
    angle_rule(coefficient which, notation other, const notation_frame& frame)
        : symmetry_{traits(which).symmetry},
          sign_{frame.clockwise == conjugates(which, other) ? 1.0 : -1.0},
          scale_{other == notation::polar ? symmetry_ : 1.0},
          unit_{frame.radians ? 180 / std::numbers::pi : 1},
          turn_{symmetry_ * frame.zero_degrees}
    {}

    double to_other(double degrees) const { return reduced(sign_ * (degrees - turn_), 360) / scale_ / unit_; }
    double from_other(double angle) const { return reduced(sign_ * angle * unit_ * scale_ + turn_, 360); }

  private:
    static bool conjugates(coefficient which, notation other)
    {
        return other == notation::corrector && counterpart_of(which).power_of_w;
    }

    static double reduced(double degrees, double period)
    {
        const double rest = std::remainder(degrees, period);
        return rest < 0 ? rest + period : rest;
    }

    int symmetry_;
    double sign_, scale_, unit_, turn_;
};

double length_unit(coefficient which, const notation_frame& frame)
{
    return frame.length_nm == 0 ? 1 : frame.length_nm / traits(which).nanometres;
}

double factor(coefficient which, notation other, const notation_frame& frame)
{
    return (other == notation::corrector ? 1 : counterpart_of(which).factor) / length_unit(which, frame);
}

/// The names of modulus and angle, or of both components; the second is empty for a round coefficient.
std::pair<std::string, std::string> names(coefficient which, notation other)
{
    const bool is_round = traits(which).symmetry == 0;
    if (other == notation::corrector) {
        const std::string name{traits(which).name};
        return {name, is_round ? "" : "phi" + name};
    }
    const std::string& indices = counterpart_of(which).indices;
    if (is_round) return {"C" + indices, ""};
    if (other == notation::polar) return {"C" + indices, "phi" + indices};
    return {"C" + indices + "a", "C" + indices + "b"};
}

constexpr double radians(double degrees) { return degrees * std::numbers::pi / 180; }

}  // namespace

named_numbers to_notation(const aberrations& lens, notation to, const notation_frame& frame)
{
    named_numbers numbers;
    for (const auto& about : all_coefficients) {
        const auto [first, second] = names(about.which, to);
        const double modulus = lens[about.which].modulus * factor(about.which, to, frame);
        if (about.symmetry == 0) {
            numbers.emplace_back(first, modulus);
            continue;
        }
        const double angle = angle_rule{about.which, to, frame}.to_other(lens[about.which].angle_degrees);
        const double phase = frame.radians ? angle : radians(angle);
        const bool split = to == notation::cartesian;
        numbers.emplace_back(first, split ? modulus * std::cos(phase) : modulus);
        numbers.emplace_back(second, split ? modulus * std::sin(phase) : angle);
    }
    return numbers;
}

aberrations from_notation(const named_numbers& numbers, notation from, const notation_frame& frame)
{
    std::set<std::string> used;
    const auto value_of = [&](const std::string& name) {
        const auto is_it = [&](const auto& number) { return number.first == name; };
        const auto found = std::ranges::find_if(numbers, is_it);
        if (found == numbers.end() || name.empty()) return 0.0;
        used.insert(name);
        return found->second;
    };
    aberrations lens;
    for (const auto& about : all_coefficients) {
        const auto [first, second] = names(about.which, from);
        double modulus = value_of(first);
        double angle = value_of(second);
        if (about.which == coefficient::C1) modulus -= value_of("defocus");
        if (about.which == coefficient::C3) modulus += value_of("Cs");
        if (from == notation::cartesian && about.symmetry != 0) {
            const std::complex<double> both{modulus, angle};
            modulus = std::abs(both);
            angle = std::arg(both) * (frame.radians ? 1 : 180 / std::numbers::pi);
        }
        lens[about.which] = {modulus / factor(about.which, from, frame),
                             about.symmetry == 0 ? 0 : angle_rule{about.which, from, frame}.from_other(angle)};
    }
    for (const auto& [name, value] : numbers)
        if (!used.contains(name)) throw std::invalid_argument{name + " is not a coefficient of this notation."};
    if (used.size() < numbers.size()) throw std::invalid_argument{"A coefficient is given twice."};
    if (used.contains("defocus") && used.contains(names(coefficient::C1, from).first))
        throw std::invalid_argument{"defocus is another name of " + names(coefficient::C1, from).first +
                                    ": give one of them."};
    if (used.contains("Cs") && used.contains(names(coefficient::C3, from).first))
        throw std::invalid_argument{"Cs is another name of " + names(coefficient::C3, from).first +
                                    ": give one of them."};
    return lens;
}

}  // namespace zentrix::lens
