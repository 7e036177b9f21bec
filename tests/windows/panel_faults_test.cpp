// Every request that the panel makes of the host fails once: while it is created, shown, used, hidden and destroyed.
// Every call of a host function or of the handler throws, refuses without a reason, or gives null once. Every
// allocation of the library fails once.
#include "host/objects/value.h"
#include "tests/faults/allocations.h"
#include "tests/faults/misbehaving_host.h"
#include "tests/windows/page_tables.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace windows_tests {
namespace {

using zentrix::host::fault_point;

/// A way in which requests fail.
struct failing_way
{
    const char* name;
    std::uint64_t most;  ///< failures of one action, unless a long walk was asked for
    std::function<void(panel_host&, std::uint64_t number)> plan;
    std::function<std::uint64_t(panel_host&)> requests;  ///< since the last plan
    std::function<std::string(panel_host&)> end;         ///< ends the plan; returns the prototype of what failed
    std::function<bool(const events& errors, const std::string& prototype)> reports;  ///< whether as it should
};

failing_way by_code()
{
    return {"requests that fail",
            12,
            [](panel_host& host, std::uint64_t number) {
                number ? host.faults().plan({fault_point::any, number}) : host.faults().clear();
            },
            [](panel_host& host) { return host.faults().count(fault_point::any); },
            [](panel_host& host) {
                const auto failed = host.faults().failed();
                host.faults().clear();
                return failed.size() == 1 ? failed[0].prototype : "";
            },
            [](const events& errors, const std::string& prototype) {
                const std::string missing = "A function of the following prototype can not be found:\n\n" + prototype;
                return errors.size() == 1 &&
                       (errors[0] == "This host call was made to fail." || errors[0] == "There is not enough memory." ||
                        errors[0] == "std::bad_alloc" || errors[0] == missing);
            }};
}

failing_way by(faults::misbehaviour how, const char* name, const char* text)
{
    return {name,
            2,
            [how](panel_host&, std::uint64_t number) { faults::plan_misbehaviour(how, number); },
            [](panel_host&) { return faults::watched_calls(); },
            [](panel_host&) { return faults::end_misbehaviour(); },
            [text = std::string{text}](const events& errors, const std::string&) {
                return text.empty() || errors == events{text};  // null may also be an answer
            }};
}

failing_way by_allocation()
{
    return {"allocations that fail",
            30,
            [](panel_host&, std::uint64_t number) { faults::plan_allocations({number}); },
            [](panel_host&) { return faults::allocations(); },
            [](panel_host&) {
                const bool failed = faults::failed_allocations() > 0;
                faults::plan_allocations({});
                return failed ? "an allocation" : "";
            },
            [](const events& errors, const std::string&) {
                return errors == events{"std::bad_alloc"} ||
                       errors == events{"std::bad_alloc", "The panel's window cannot be created."};
            }};
}

class failing_panel : public panel_window
{
  protected:
    /// What can be seen of the panel and its tags after an action.
    struct outcome
    {
        std::map<std::string, zentrix::host::tag> tags;
        events announced;
        events errors;
        std::vector<std::string> shown;  ///< texts and states of controls
        friend bool operator==(const outcome&, const outcome&) = default;
    };

    failing_panel()
    {
        start_tags_ = host.tags();
        // Looks up the function that only failures of script functions need.
        show_panel();
        host.faults().plan({fault_point::make_string, 1});
        EXPECT_THROW(host.update_panel(), zentrix::host::script_error);
        host.faults().clear();
    }

    /// The panel before an action: with the tags of the start, on the page "Basic".
    enum class start
    {
        closed,
        never_shown,
        hidden,
        shown
    };

    void prepare(start wanted)
    {
        const bool opens = wanted == start::shown || wanted == start::hidden;
        if (IsWindow(panel) && !opens) host.close_panel();
        pump();
        for (const auto& [key, value] : start_tags_) host.set_tag(key, value);
        if (!IsWindow(panel) && wanted != start::closed) panel = host.open_panel(frame);
        if (opens) {
            show_panel();
            go_to_page(1);
            host.update_panel();
        }
        if (wanted == start::hidden) show_panel(false);
        take_events();
        host.take_errors();
    }

    outcome after(const std::function<void()>& act)
    {
        outcome found;
        events thrown;
        try {
            act();
            pump();
        } catch (const zentrix::host::script_error& error) {
            thrown.push_back(error.what());
        }
        found.announced = take_events();
        found.errors = host.take_errors();
        found.errors.insert(found.errors.end(), thrown.begin(), thrown.end());
        found.tags = host.tags();
        if (!IsWindow(panel)) return found;
        for (const int id : {1, 5111, 5099, 5100})
            found.shown.push_back(of_panel(id).text() + (of_panel(id).enabled() ? " on" : " off"));
        if (!IsWindow(active_page())) return found;
        for (const row_table& row : pages[1].rows)
            for (const control& one : {of_page(row.modulus), of_page(row.step), of_page(row.knob)})
                if (one.window) found.shown.push_back(one.text() + " at " + std::to_string(one.send(TBM_GETPOS)));
        return found;
    }

    void expect_failures(const failing_way& way, const char* name, start from, const std::function<void()>& act)
    {
        prepare(from);
        after(act);  // looks functions up
        prepare(from);
        way.plan(host, 0);
        std::uint64_t requests = 0;
        const auto counted = [&] {
            act();
            pump();
            requests = way.requests(host);
        };
        const outcome success = after(counted);
        EXPECT_EQ(success.errors, events{});
        // A showing reads all tags, and takes long. Unless a long walk was asked for, some of its requests suffice.
        const std::uint64_t step = std::getenv("ZENTRIX_LONG_WALKS") ? 1 : requests / way.most + 1;
        std::uint64_t walked = 0;
        for (std::uint64_t k = 1; k <= requests; k += step, ++walked) {
            SCOPED_TRACE(name + (", request " + std::to_string(k)));
            prepare(from);
            const auto held = host.report().references;
            const auto before = host.tags();
            std::string failed;
            const outcome failure = after([&] {
                way.plan(host, k);
                try {
                    act();
                    pump();
                } catch (...) {
                    failed = way.end(host);
                    throw;
                }
                failed = way.end(host);
            });
            ASSERT_NE(failed, "");
            SCOPED_TRACE(failed);
            EXPECT_TRUE(way.reports(failure.errors, failed)) << testing::PrintToString(failure.errors);
            for (const auto& [key, value] : failure.tags)
                EXPECT_TRUE(value == before.at(key) || value == success.tags.at(key)) << key;
            const auto report = host.report();
            EXPECT_EQ(report.references, held);
            EXPECT_TRUE(report.locks.empty() && report.violations.empty()) << report.text();
            prepare(from);
            EXPECT_EQ(after(act), success);
        }
        std::cout << "[   WALK   ] panel, " << name << ", " << way.name << ": " << walked << " of " << requests
                  << std::endl;
    }

    std::map<std::string, zentrix::host::tag> start_tags_;
};

TEST_F(failing_panel, ReportsTheErrorAndWorksAfterwards)
{
    const row_table& row = all_rows[3];  // A1
    const std::tuple<const char*, start, std::function<void()>> actions[] = {
        {"create", start::closed, [&] { panel = host.open_panel(frame); }},
        {"show", start::never_shown, [&] { show_panel(); }},
        {"type a modulus", start::shown, [&] { of_page(row.modulus).type("2.5"); }},
        {"type a step", start::shown, [&] { of_page(row.step).type("0.5"); }},
        {"spin a modulus", start::shown, [&] { of_page(row.modulus_spin).click_spin(1); }},
        {"spin an angle", start::shown, [&] { of_page(row.angle_spin).click_spin(1); }},
        {"turn a knob", start::shown, [&] { of_page(row.knob).send(TBM_SETPOS, TRUE, 77); }},
        {"change the page", start::shown, [&] { go_to_page(3); }},
        {"choose a display", start::shown, [&] { choose_display(panel, 4); }},
        {"apply", start::shown, [&] { of_panel(1).send(BM_CLICK); }},
        {"preferences", start::shown, [&] { of_panel(5099).send(BM_CLICK); }},
        {"transfer function", start::shown, [&] { of_panel(5100).send(BM_CLICK); }},
        {"update", start::shown, [&] { host.update_panel(); }},
        {"hide", start::shown, [&] { show_panel(false); }},
        {"show again", start::hidden, [&] { show_panel(); }},
        {"destroy", start::shown, [&] { host.close_panel(); }},
    };
    using faults::misbehaviour;
    const failing_way ways[] = {
        by_code(),
        by(misbehaviour::throws_number, "calls that throw", "An unknown error occurred in the host."),
        by(misbehaviour::throws_bad_alloc, "calls without memory", "std::bad_alloc"),
        by(misbehaviour::refuses, "calls that refuse", "A call of the host failed."),
        by(misbehaviour::gives_null, "calls that give null", ""),
        by_allocation(),
    };
    for (const failing_way& way : ways)
        for (const auto& [name, from, act] : actions) expect_failures(way, name, from, act);
    prepare(start::shown);
}

}  // namespace
}  // namespace windows_tests
