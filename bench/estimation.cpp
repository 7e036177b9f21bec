// How often the aberrations of a wave are found, how far the answers are off, and whether they admit it.
//
//     build/release/bench/estimation [--case NAME] [--lenses N] [--seeds N] [--size N] [--first N]
//
// Each case is run with N lenses out of trim and N seeds of object and noise for each. A line says
//   right         chi is within 0.1 rad rms of the truth up to the resolution, and everything is determined
//   part          some coefficients are not determined
//   none          no coefficient is determined
//   false         everything is determined, but chi is off by more than 0.1 rad
//   chi           median error of chi of the right ones [rad]
//   bias          mean error over its standard deviation, the largest of all coefficients, and of which
//   cover         share of determined components within one standard deviation (68 % expected), and within two (95 %)
//   evaluations, seconds

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "bench/estimation_waves.h"
#include "host/estimation/estimate.h"
#include "lens/aberration_basis.h"
#include "lens/electron.h"

namespace {

using namespace zentrix;
using bench::simulation;
using bench::specimen;

struct test_case
{
    const char* name;
    simulation how;
    bool knows_widths = true;
};

const std::vector<test_case>& cases()
{
    static const std::vector<test_case> all = [] {
        std::vector<test_case> list;
        const auto add = [&](const char* name, auto change) {
            test_case one{name, {}};
            one.how.wavelength_nm = lens::electron_wavelength(300);
            change(one.how);
            list.push_back(one);
        };
        add("no-noise", [](simulation&) {});
        add("noise-5", [](simulation& how) { how.noise = 0.05; });
        add("noise-10", [](simulation& how) { how.noise = 0.1; });
        add("noise-20", [](simulation& how) { how.noise = 0.2; });
        add("noise-30", [](simulation& how) { how.noise = 0.3; });
        add("noise-40", [](simulation& how) { how.noise = 0.4; });
        add("noise-80", [](simulation& how) { how.noise = 0.8; });
        add("thin", [](simulation& how) { how.object = specimen::thin_crystal, how.noise = 0.02; });
        add("amorphous", [](simulation& how) { how.object = specimen::amorphous, how.noise = 0.05; });
        add("cropped", [](simulation& how) { how.is_cropped = true, how.noise = 0.05; });
        add("absorbing", [](simulation& how) { how.absorption = 0.2, how.noise = 0.02; });
        add("envelope", [](simulation& how) { how.spread = {3, 0, 0.02}, how.noise = 0.02; });
        add("unknown-envelope", [](simulation& how) { how.spread = {3, 0, 0.02}, how.noise = 0.02; });
        list.back().knows_widths = false;
        add("bars", [](simulation& how) { how.object = specimen::target, how.noise = 0.05; });
        add("vacuum", [](simulation& how) { how.object = specimen::vacuum, how.noise = 0.1; });
        return list;
    }();
    return all;
}

/// rms of the difference of chi over the frequencies up to `resolution`. [rad]
double chi_error(const lens::aberrations& a, const lens::aberrations& b, double wavelength, double resolution)
{
    constexpr int steps = 60;
    double sum = 0, count = 0;
    for (int y = -steps; y <= steps; ++y)
        for (int x = -steps; x <= steps; ++x) {
            if (x * x + y * y > steps * steps) continue;
            const std::complex<double> w = std::complex<double>(x, y) * (wavelength * resolution / steps);
            double difference = 0;
            for (const auto& about : lens::all_coefficients)
                difference += ((a.in_nanometres(about.which) - b.in_nanometres(about.which)) *
                               lens::aberration_term(about.which, w))
                                  .real();
            sum += std::pow(2 * 3.14159265358979 / wavelength * difference, 2);
            ++count;
        }
    return std::sqrt(sum / count);
}

/// Sums over the runs of a case.
struct tally
{
    struct sums
    {
        double first = 0, squares = 0, count = 0;
    };
    int runs = 0, right = 0, part = 0, none = 0, wrong = 0;
    std::vector<double> errors;
    std::map<std::string, sums> offsets;  ///< of each component, in standard deviations
    int components = 0, within_one = 0, within_two = 0;
    double evaluations = 0, seconds = 0;

    void add_component(const std::string& name, double error, double uncertainty)
    {
        if (uncertainty <= 0) return;
        auto& sum = offsets[name];
        sum.first += error / uncertainty;
        sum.squares += error * error / (uncertainty * uncertainty);
        ++sum.count;
        ++components;
        within_one += std::abs(error) < uncertainty ? 1 : 0;
        within_two += std::abs(error) < 2 * uncertainty ? 1 : 0;
    }
};

void run_once(const test_case& one, const simulation& how, tally& into)
{
    const auto wave = bench::simulate(how);
    lens::optics setup{how.wavelength_nm, how.pixel_nm, {}, one.knows_widths ? how.spread : lens::coherence{}, {}};
    host::estimate_options options;
    options.threads = 1;
    const auto found = host::estimate_aberrations(*wave, setup, options);
    ++into.runs;
    into.evaluations += static_cast<double>(found.evaluations);
    into.seconds += found.seconds;
    for (const auto& coefficient : found.coefficients) {
        if (!coefficient.determined) continue;
        const auto& about = lens::traits(coefficient.which);
        const auto off =
            (found.setup.lens.in_nanometres(coefficient.which) - how.lens.in_nanometres(coefficient.which)) /
            about.nanometres;
        into.add_component(std::string{about.name}, off.real(), coefficient.uncertainty);
        if (about.symmetry != 0) into.add_component(std::string{about.name}, off.imag(), coefficient.uncertainty);
    }
    const bool all = std::ranges::all_of(found.coefficients, &host::estimated_coefficient::determined);
    const double error = chi_error(found.setup.lens, how.lens, how.wavelength_nm, found.resolution);
    if (!found.any_determined())
        ++into.none;
    else if (!all)
        ++into.part;
    else if (error < 0.1) {
        ++into.right;
        into.errors.push_back(error);
    } else
        ++into.wrong;
}

void print(const char* name, tally& of)
{
    const auto percent = [&](int count) { return 100.0 * count / of.runs; };
    std::ranges::sort(of.errors);
    double bias = 0;
    std::string biased = "-";
    for (const auto& [coefficient, sum] : of.offsets) {
        const double mean = sum.first / sum.count;
        if (sum.count > 4 && std::abs(mean) > std::abs(bias)) bias = mean, biased = coefficient;
    }
    std::printf("%-17s %4d %5.1f %5.1f %5.1f %5.1f  %8.2g  %5.2f %-2s  %4.0f %4.0f  %6.0f %6.1f\n", name, of.runs,
                percent(of.right), percent(of.part), percent(of.none), percent(of.wrong),
                of.errors.empty() ? 0.0 : of.errors[of.errors.size() / 2], bias, biased.c_str(),
                of.components > 0 ? 100.0 * of.within_one / of.components : 0.0,
                of.components > 0 ? 100.0 * of.within_two / of.components : 0.0, of.evaluations / of.runs,
                of.seconds / of.runs);
    std::fflush(stdout);
}

int number_after(int argc, char** argv, const char* option, int otherwise)
{
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], option) == 0) return std::atoi(argv[i + 1]);
    return otherwise;
}

}  // namespace

int main(int argc, char** argv)
{
    const int lenses = number_after(argc, argv, "--lenses", 3), seeds = number_after(argc, argv, "--seeds", 3);
    const int size = number_after(argc, argv, "--size", 256), first = number_after(argc, argv, "--first", 0);
    std::string wanted;
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--case") == 0) wanted = argv[i + 1];
    std::printf(
        "%d lenses x %d seeds, %d x %d pixels\n%-17s runs right  part  none false       chi   bias     cover %%  "
        "evaluations, s\n",
        lenses, seeds, size, size, "case");
    for (const test_case& one : cases()) {
        if (!wanted.empty() && wanted != one.name) continue;
        tally of;
        for (int lens = 0; lens < lenses; ++lens)
            for (int seed = 0; seed < seeds; ++seed) {
                simulation how = one.how;
                how.size = size;
                how.lens = bench::random_lens(static_cast<std::uint32_t>(first + lens));
                how.seed = static_cast<std::uint32_t>(1000 * (first + lens) + seed + 1);
                run_once(one, how, of);
            }
        print(one.name, of);
    }
    return 0;
}
