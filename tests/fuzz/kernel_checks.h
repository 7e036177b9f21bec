#pragma once

#include <vector>

#include "image/processor.h"
#include "tests/fuzz/strided.h"
#include "tests/support/one_nan.h"

namespace fuzz {

/// A check decodes its parameters, runs all variants of one kernel for one element type, and fails when they differ.
/// Images with strides: filters, statistics, transposition.
std::vector<void (*)(input&)> image_kernel_checks();
/// Flat sequences of elements: modulus, powers, transfer function, shifter, unwrapping.
std::vector<void (*)(input&)> flat_kernel_checks();

/// Runs each variant, the plain one last, and compares the results after `comparable`.
/// run  calls the variant's function and returns its result
template <class Kernel, class Run, class Comparable>
void compare_variants(const char* name, qorv::dm::variants<Kernel> table, Run run, Comparable comparable)
{
    const auto expected = comparable(run(*table.back().function));
    for (const auto& row : qorv::dm::runnable(table)) {
        const auto got = comparable(run(*row.function));
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (std::memcmp(&got[i], &expected[i], sizeof expected[i]) != 0)
                fail(std::string{name} + ": " + row.name + " differs from the plain form at element " +
                     std::to_string(i) + " of " + std::to_string(expected.size()));
    }
}

constexpr auto apart_from_payloads = [](auto values) { return support::one_nan(std::move(values)); };
constexpr auto to_the_bit = [](auto values) { return values; };

}  // namespace fuzz
