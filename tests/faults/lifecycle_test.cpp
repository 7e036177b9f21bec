#include <gmock/gmock.h>

#include "host/engine/module.h"
#include "tests/faults/allocations.h"
#include "tests/faults/report.h"
#include "tests/script/script_host.h"

// Every request and every allocation of the library's lifecycle entries fails once.
namespace {

using namespace faults;
using namespace zentrix::host;

library_entries& loaded()
{
    static library_entries entries = module{ZENTRIX_LIBRARY_FILE}.entries();
    return entries;
}

/// An entry whose allocations count.
template <auto entry>
struct counted;
template <class Result, class... Arguments, Result (HOST_CALL* library_entries::*entry)(Arguments...)>
struct counted<entry>
{
    static Result HOST_CALL run(Arguments... arguments)
    {
        const in_library runs;
        return (loaded().*entry)(arguments...);
    }
};

template <auto... entries>
library_entries all_counted()
{
    library_entries all;
    ((all.*entries = counted<entries>::run), ...);
    return all;
}

library_entries entries()
{
    using all = library_entries;
    return all_counted<&all::get_version, &all::link, &all::register_floating_windows, &all::startup, &all::run,
                       &all::request_close, &all::prepare_close, &all::cleanup, &all::shutdown>();
}

/// A host without the companion package, so that the library asks for it and shows a dialog.
struct host_of_a_life
{
    host_of_a_life() : host{{.file_exists = [](const std::string&) { return false; }}} { watch(host); }

    /// Loads the library and closes it. Returns the number of registered functions and windows.
    std::size_t live()
    {
        host.records().clear();
        library zentrix{host, entries()};
        const std::size_t registered = host.functions().prototypes(origin::library).size() + host.windows().size();
        zentrix.close();
        return registered;
    }

    std::vector<std::string> errors()
    {
        std::vector<std::string> texts;
        for (const auto& error : host.records().errors()) texts.push_back(error.text);
        return texts;
    }

    /// Nothing is held, all lifecycle entries reported their time, and the next life is complete.
    void expect_no_trace(std::size_t complete)
    {
        EXPECT_EQ(host.report().text(), "");
        for (const char* name :
             {"RegisterFloatingWindows", "Start", "Run", "RequestClose", "PrepareClose", "Cleanup", "End"})
            EXPECT_EQ(host.records().traces().at(std::string{"PlugIn_"} + name).reports, 1u) << name;
        EXPECT_EQ(live(), complete);
        EXPECT_THAT(errors(), testing::IsEmpty());
        EXPECT_EQ(host.report().text(), "");
    }

    engine host;
};

TEST(Lifecycle, RequestsThatFailAreReportedAndLeaveNothing)
{
    host_of_a_life whole;
    const auto complete = whole.live();
    const auto requests = whole.host.faults().count(fault_point::any);
    EXPECT_GE(requests, complete);
    for (std::uint64_t k = 1; k <= requests; ++k) {
        SCOPED_TRACE("request " + std::to_string(k));
        host_of_a_life life;
        life.host.faults().plan({fault_point::any, k});
        life.live();
        EXPECT_EQ(life.host.faults().fired(), 1u);
        EXPECT_EQ(life.host.faults().count(fault_point::any), k) << "the entry ends at the first failure";
        life.host.faults().clear();
        EXPECT_EQ(life.errors().size(), 1u);
        life.expect_no_trace(complete);
    }
    report("lifecycle: " + count_of(requests, "failed requests"));
}

TEST(Lifecycle, AllocationsThatFailAreReportedAndLeaveNothing)
{
    std::size_t complete = 0;
    std::uint64_t most = 0;
    {
        host_of_a_life whole;
        whole.live();
        plan_allocations({});
        complete = whole.live();
        most = allocations();
    }
    EXPECT_GT(most, complete);
    for (std::uint64_t k = 1; k <= most; ++k)
        for (const bool all_later : all_later_or_not) {
            SCOPED_TRACE("allocation " + std::to_string(k) + (all_later ? " and all later" : ""));
            host_of_a_life life;
            plan_allocations({k, all_later});
            life.live();
            EXPECT_GE(failed_allocations(), 1u);
            plan_allocations({});
            EXPECT_THAT(life.errors(), testing::Each("std::bad_alloc"));
            EXPECT_FALSE(life.errors().empty());
            life.expect_no_trace(complete);
        }
    report("lifecycle: " + count_of(all_later_or_not.size() * most, "walks with failing allocations"));
}

}  // namespace
