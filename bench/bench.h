#pragma once

#include "image/processor.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

/// Comparisons of several ways to do the same work, on Google Benchmark. A way is timed only after its result was
/// checked. The output gives the time per pixel and the ratio to the first way of the comparison.
namespace bench {

/// Adds the ratios to the console output and remembers failed checks.
class ratio_reporter : public benchmark::ConsoleReporter
{
  public:
    ratio_reporter() : ConsoleReporter{OO_Tabular} {}

    bool ReportContext(const Context& context) override
    {
        if (std::exchange(has_context_, true)) return true;
        ConsoleReporter::ReportContext(context);
        name_field_width_ = 44;  // the names that follow are not known yet
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override
    {
        auto with_ratios = runs;
        for (Run& run : with_ratios) {
            failed_ |= run.error_occurred;
            if (run.error_occurred) continue;
            const double time = run.counters.at("per_pixel");
            run.counters["ratio"] = time / references_.emplace(run.aggregate_name, time).first->second;
        }
        ConsoleReporter::ReportRuns(with_ratios);
    }
    void start_comparison() { references_.clear(); }
    bool failed() const { return failed_; }

  private:
    std::map<std::string, double> references_;  ///< time per pixel of the first way, by the name of the statistic
    bool has_context_ = false, failed_ = false;
};
inline ratio_reporter reporter;

enum class clock
{
    processor,  ///< little disturbed by the load of other programs
    wall        ///< for work of several threads
};

/// One comparison; runs when it goes out of scope.
class comparison
{
  public:
    comparison(std::string what, double pixels, clock timed_by = clock::processor)
        : what_{std::move(what)}, pixels_{pixels}, clock_{timed_by}
    {}
    comparison(const comparison&) = delete;
    comparison& operator=(const comparison&) = delete;
    ~comparison()
    {
        reporter.start_comparison();
        benchmark::RunSpecifiedBenchmarks(&reporter);
        benchmark::ClearRegisteredBenchmarks();
    }

    /// `right()` is called after a first `work()`; where it is false, nothing is timed and the program ends with 1.
    template <class Work, class Right>
    void add(const std::string& way, Work work, Right right)
    {
        const auto run = [work, right, pixels = pixels_, checked = false](benchmark::State& state) mutable {
            if (!std::exchange(checked, true)) {
                work();
                if (!right()) state.SkipWithError("wrong result");
            }
            for ([[maybe_unused]] auto _ : state) {
                work();
                benchmark::ClobberMemory();
            }
            using benchmark::Counter;
            state.counters["per_pixel"] = Counter{pixels, Counter::kIsIterationInvariantRate | Counter::kInvert};
        };
        auto* registered = benchmark::RegisterBenchmark((what_ + '/' + way).c_str(), run);
        registered->Unit(benchmark::kMillisecond);
        if (clock_ == clock::wall) registered->UseRealTime();
    }

  private:
    std::string what_;
    double pixels_;
    clock clock_;
};

/// Compares the variants of a kernel that writes `results` elements, the plain one first; all must give the same bytes.
/// `run(kernel, to)` calls the kernel.
template <class R, class Table, class Run>
void compare_variants(const std::string& what, double pixels, std::size_t results, const Table& table, Run run)
{
    const auto rows = qorv::dm::runnable(table);
    std::vector<R> plain(results), result(results);
    run(rows.back().function, plain.data());
    comparison compared{what, pixels};
    for (auto row = rows.rbegin(); row != rows.rend(); ++row)
        compared.add(
            row->name, [&, kernel = row->function] { run(kernel, result.data()); },
            [&] { return std::memcmp(static_cast<void*>(result.data()), plain.data(), results * sizeof(R)) == 0; });
}

/// Uniformly distributed pixels, the same in every run.
template <class T>
std::vector<T> noise(std::size_t count, double low, double high)
{
    std::mt19937 generator{1};
    std::uniform_real_distribution<double> values{low, high};
    std::vector<T> result(count);
    for (T& pixel : result) pixel = static_cast<T>(values(generator));
    return result;
}

/// The body of `main`: `comparisons` makes one comparison after another. Returns the program's exit code.
template <class Comparisons>
int run(int argc, char** argv, Comparisons comparisons)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    qorv::dm::read_processor_features();
    comparisons();
    return reporter.failed() ? 1 : 0;
}

}  // namespace bench
