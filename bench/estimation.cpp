// How often the aberrations of a wave are found, how far the answers are off, and whether they admit it.
//
//     build/release/bench/estimation [--case NAME] [--lenses N] [--seeds N] [--size N] [--first N] [--verbose]
//
// Each case is run with N lenses out of trim and N seeds of object and noise for each. A line has numbers of answers,
//   right         everything that can be is determined, and chi is within 0.1 rad rms of the truth up to the resolution
//   part          some coefficients are not determined
//   none          no coefficient is determined
//   false         everything is determined, but chi is off by more than 0.1 rad
// and in numbers of coefficients
//   stated        those that were determined
//   false         of these, those that are off by more than five stated standard deviations and change chi by more than
//                 0.1 rad rms
// then
//   chi           median error of chi of the right answers [rad]
//   bias          mean error over its standard deviation, the largest of all coefficients, and of which
//   cover         share of determined components within one standard deviation (68 % expected), and within two (95 %)
//   evaluations, seconds
// The last lines have the sums, and the shares of false answers and statements below which they are with a probability
// of 95 % (Clopper, Pearson, Biometrika 26 (1934) 404-413). For an amplitude object, C1 and A1 can be determined.

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
        add("no-widths", [](simulation& how) { how.noise = 0.05; });
        list.back().knows_widths = false;
        add("holes", [](simulation& how) { how.strength = -1, how.noise = 0.05; });
        add("holes-noise-10", [](simulation& how) { how.strength = -1, how.noise = 0.1; });
        add("strong", [](simulation& how) { how.strength = 4, how.noise = 0.05; });
        add("thin", [](simulation& how) { how.strength = 0.2, how.noise = 0.02; });
        add("amorphous", [](simulation& how) { how.object = specimen::amorphous, how.noise = 0.05; });
        add("cropped", [](simulation& how) { how.is_cropped = true, how.noise = 0.05; });
        add("absorbing", [](simulation& how) { how.absorption = 0.2, how.noise = 0.02; });
        add("envelope", [](simulation& how) { how.spread = {3, 0, 0.02}, how.noise = 0.02; });
        add("unknown-envelope", [](simulation& how) { how.spread = {3, 0, 0.02}, how.noise = 0.02; });
        list.back().knows_widths = false;
        add("bars", [](simulation& how) { how.object = specimen::target, how.noise = 0.05; });
        add("grey-bars", [](simulation& how) {
            how.object = specimen::grey_target, how.noise = 0.05;
            how.wavelength_nm = 405, how.pixel_nm = 6900, how.aperture = 0.25 / how.pixel_nm;
        });
        list.push_back(list.back());
        list.back().name = "wide-grey-bars";
        list.back().how.widest_bar = 16;
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

/// The share that is not exceeded with a probability of 95 % if `count` of `of` were counted: the upper bound of
/// Clopper and Pearson, by bisection of the binomial distribution.
double upper_bound(int count, int of)
{
    if (count >= of) return 1;
    double low = 0, high = 1;
    for (int step = 0; step < 60; ++step) {
        const double share = (low + high) / 2;
        double term = std::pow(1 - share, of), sum = term;
        for (int k = 1; k <= count; ++k) {
            term *= (of - k + 1.0) / k * share / (1 - share);
            sum += term;
        }
        (sum > 0.05 ? low : high) = share;
    }
    return high;
}

/// Sums over the runs of a case.
struct tally
{
    struct sums
    {
        double first = 0, squares = 0, count = 0;
    };
    int runs = 0, right = 0, part = 0, none = 0, wrong = 0;
    int statements = 0, false_statements = 0;
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

/// Counts a determined coefficient.
void judge(const host::estimated_coefficient& one, const host::estimate& found, const simulation& how, bool shows,
           tally& into)
{
    const auto& about = lens::traits(one.which);
    const std::string name{about.name};
    lens::aberrations only_this = how.lens;
    only_this[one.which] = one.found;
    const double chi = chi_error(only_this, how.lens, how.wavelength_nm, found.resolution);
    const auto off = (only_this.in_nanometres(one.which) - how.lens.in_nanometres(one.which)) / about.nanometres;
    if (shows)
        std::printf("  %s off by %.3g sigma = %.3g of %.3g %s, chi %.3f; %s\n", name.c_str(),
                    std::abs(off) / one.uncertainty, off.real(), one.uncertainty, std::string{about.unit}.c_str(), chi,
                    one.determined ? "determined" : one.reason.c_str());
    if (!one.determined) return;
    into.add_component(name, off.real(), one.uncertainty);
    if (about.symmetry != 0) into.add_component(name, off.imag(), one.uncertainty);
    ++into.statements;
    if (std::abs(off) > 5 * one.uncertainty && chi > 0.1) ++into.false_statements;
}

void run_once(const test_case& one, const simulation& how, bool shows, tally& into)
{
    const auto wave = bench::simulate(how);
    lens::optics setup{how.wavelength_nm, how.pixel_nm, {}, one.knows_widths ? how.spread : lens::coherence{}, {}};
    const bool is_amplitude = how.object == specimen::target || how.object == specimen::grey_target;
    if (is_amplitude) setup.lens = how.lens;
    host::estimate_options options;
    options.threads = 1;
    options.widths_are_known = one.knows_widths;
    if (is_amplitude) {
        options.free = {lens::coefficient::C1, lens::coefficient::A1};
        setup.lens[lens::coefficient::C1] = setup.lens[lens::coefficient::A1] = {};
    }
    const auto found = host::estimate_aberrations(*wave, setup, options);
    ++into.runs;
    into.evaluations += static_cast<double>(found.evaluations);
    into.seconds += found.seconds;
    if (shows) std::printf("seed %u, resolution %.3g, noise %.3g\n", how.seed, found.resolution, found.noise);
    for (const auto& coefficient : found.coefficients) judge(coefficient, found, how, shows, into);
    const bool all = std::ranges::all_of(found.coefficients, &host::estimated_coefficient::determined);
    const double error = chi_error(found.setup.lens, how.lens, how.wavelength_nm, found.resolution);
    if (shows)
        std::printf("  chi off by %.3g, stated %.3g rad; %s\n", error, found.chi_uncertainty, found.criterion.c_str());
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
    std::ranges::sort(of.errors);
    double bias = 0;
    std::string biased = "-";
    for (const auto& [coefficient, sum] : of.offsets) {
        const double mean = sum.first / sum.count;
        if (sum.count > 4 && std::abs(mean) > std::abs(bias)) bias = mean, biased = coefficient;
    }
    const auto percent = [&](int count) { return of.components > 0 ? 100.0 * count / of.components : 0.0; };
    std::printf("%-17s %5d %5d %5d %5d %5d  %6d %5d  %8.2g  %5.2f %-2s  %4.0f %4.0f  %6.0f %6.1f\n", name, of.runs,
                of.right, of.part, of.none, of.wrong, of.statements, of.false_statements,
                of.errors.empty() ? 0.0 : of.errors[of.errors.size() / 2], bias, biased.c_str(), percent(of.within_one),
                percent(of.within_two), of.evaluations / of.runs, of.seconds / of.runs);
    std::fflush(stdout);
}

/// Adds the counts, without what is a mean of one case.
void add(tally& sum, const tally& one)
{
    sum.runs += one.runs, sum.right += one.right, sum.part += one.part, sum.none += one.none, sum.wrong += one.wrong;
    sum.statements += one.statements, sum.false_statements += one.false_statements;
    sum.components += one.components, sum.within_one += one.within_one, sum.within_two += one.within_two;
    sum.evaluations += one.evaluations, sum.seconds += one.seconds;
    sum.errors.insert(sum.errors.end(), one.errors.begin(), one.errors.end());
}

void print_sums(tally& all)
{
    if (all.runs == 0) return;
    print("all", all);
    std::printf("false answers: %d of %d, below %.2g %%; false statements: %d of %d, below %.2g %%\n", all.wrong,
                all.runs, 100 * upper_bound(all.wrong, all.runs), all.false_statements, all.statements,
                100 * upper_bound(all.false_statements, all.statements));
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
    bool shows = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--case") == 0 && i + 1 < argc) wanted = argv[i + 1];
        shows = shows || std::strcmp(argv[i], "--verbose") == 0;
    }
    std::printf(
        "%d lenses x %d seeds from %d on, %d x %d pixels\n%-17s  runs right  part  none false  stated false       chi  "
        " bias     cover %%  evaluations, s\n",
        lenses, seeds, first, size, size, "case");
    tally all;
    for (const test_case& one : cases()) {
        if (!wanted.empty() && wanted != one.name) continue;
        tally of;
        for (int lens = 0; lens < lenses; ++lens)
            for (int seed = 0; seed < seeds; ++seed) {
                simulation how = one.how;
                how.size = size;
                how.lens = bench::random_lens(static_cast<std::uint32_t>(first + lens));
                if (how.wavelength_nm > 1) how.lens = bench::light_lens(how.lens);
                how.seed = static_cast<std::uint32_t>(1000 * (first + lens) + seed + 1);
                run_once(one, how, shows, of);
            }
        print(one.name, of);
        add(all, of);
    }
    print_sums(all);
    return 0;
}
