#include "panel/rules/tip_texts.h"

#include "lens/notation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace qorv::panel {
namespace {

/// The number after the last "= " of a part of a text that begins with `name`.
double number_of(const std::string& text, const std::string& name)
{
    const auto start = text.find(name + " = ");
    if (start == std::string::npos) return -1;
    const std::string part = text.substr(start, text.find(',', start) - start);
    return std::strtod(part.c_str() + part.rfind("= ") + 2, nullptr);
}

TEST(Tips, GiveEveryCoefficientInTheOtherNotation)
{
    for (const coefficient& shown : coefficients) {
        row_values values;
        values.modulus = 12;
        values.angle = 60;
        const auto found = std::ranges::find(zentrix::lens::all_coefficients, std::string_view{shown.name},
                                             &zentrix::lens::coefficient_traits::name);
        ASSERT_NE(found, std::end(zentrix::lens::all_coefficients)) << shown.name;
        const auto& about = *found;
        zentrix::lens::aberrations lens;
        lens[about.which] = {12, about.symmetry == 0 ? 0.0 : 60.0};
        const std::string text = value_tip({shown, values});
        EXPECT_EQ(text.find(std::string{shown.name} + ", "), 0U);
        EXPECT_EQ(unit_of(shown), std::string{about.unit});
        std::size_t numbers = 0;
        for (const auto& [name, number] : to_notation(lens, zentrix::lens::notation::polar, {})) {
            if (number == 0) continue;
            EXPECT_NEAR(number_of(text, name), number, 1e-4) << text;
            ++numbers;
        }
        EXPECT_EQ(numbers, about.symmetry == 0 ? 1U : 2U) << shown.name;
    }
}

}  // namespace
}  // namespace qorv::panel
