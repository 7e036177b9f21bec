#include "tests/faults/walked_call.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace faults {
namespace {

constexpr char not_found[] = "A function of the following prototype can not be found:\n\n";

/// The texts of a call that fails by this request.
std::vector<std::string> texts_of(const failed_request& failed)
{
    switch (failed.point) {
        case fault_point::make_string: return {no_memory};
        case fault_point::find_function:
        case fault_point::find_method: return {not_found + failed.prototype};
        default: return {fault{}.text};
    }
}

/// Requests that are made after the pixels of a destination have been computed.
bool is_late(const failed_request& failed)
{
    return failed.point == fault_point::call && (failed.prototype.starts_with("void ImageDataChanged(") ||
                                                 failed.prototype.starts_with("void UnlockMemory("));
}

std::vector<std::uint64_t> pixels_of(const std::vector<image_ref>& images)
{
    std::vector<std::uint64_t> pixels;
    for (const auto& picture : images) pixels.push_back(picture->fingerprint());
    return pixels;
}

/// The contents without the pixels' hashes.
std::string without_pixels(std::string text)
{
    for (auto at = text.find(", pixels "); at != std::string::npos; at = text.find(", pixels ", at))
        text.erase(at, text.find_first_of("\n,]", at + 1) - at);
    return text;
}

}  // namespace

walked_call::walked_call(script_host& script, const typical_call& walked)
    : script_{script}, host_{script.host()}, walked_{walked}
{
    for (const auto& text : host_.functions().prototypes(origin::host))
        host_functions_.insert("function \"" + text + "\": 1 reference");
    result_of_a_call();
    host_.faults().clear();
    const auto reports = trace_reports();
    const auto args = copy_of(walked_.args);
    const auto images = images_in(args);
    const auto result = script_.call(walked_.function, args);
    result_ = contents({result}) + contents(args);
    resulting_pixels_ = pixels_of(images);
    requests_ = host_.faults().count(fault_point::any);
    reports_of_a_call_ = trace_reports() - reports;
    // A failure looks up the functions that only failures need.
    for (const auto point : {fault_point::call, fault_point::find_method, fault_point::make_string}) {
        host_.faults().plan({point, 1});
        script_.failure(walked_.function, copy_of(walked_.args));
    }
    host_.faults().clear();
}

std::string walked_call::prototype() const
{
    return host_.functions().resolve(walked_.function, walked_.args)->signature().text;
}

std::string walked_call::result_of_a_call()
{
    const auto args = copy_of(walked_.args);
    const auto result = script_.call(walked_.function, args);
    return contents({result}) + contents(args);
}

std::uint64_t walked_call::trace_reports() const
{
    std::uint64_t reports = 0;
    for (const auto& [name, counter] : host_.records().traces()) reports += counter.reports;
    return reports;
}

std::multiset<std::string> walked_call::held() const
{
    std::multiset<std::string> lines;
    for (const auto& line : host_.report().references)
        if (!host_functions_.contains(line)) lines.insert(line);
    return lines;
}

walked_call::state walked_call::state_of(const arguments& args) const
{
    return {output_values(args), contents(args), pixels_of(images_in(args)), held(), trace_reports()};
}

std::uint64_t walked_call::expect_failure(const std::vector<fault>& planned)
{
    const auto args = copy_of(walked_.args);
    const auto images = images_in(args);
    const auto before = state_of(args);
    host_.faults().plan(planned);
    const auto text = script_.failure(walked_.function, args);
    const auto failed = host_.faults().failed();
    const auto made = host_.faults().count(fault_point::any);
    host_.faults().clear();

    std::string requests;
    for (const auto& one : failed) requests += "failing: " + one.prototype + "\n";
    SCOPED_TRACE(walked_.function + "\n" + requests);
    EXPECT_EQ(failed.size(), planned.size());
    std::vector<std::string> texts;
    for (const auto& one : failed) std::ranges::move(texts_of(one), std::back_inserter(texts));
    if (!walked_.other_text.empty()) texts.push_back(walked_.other_text);
    if (failed.size() > 1) texts.push_back(walked_.function + " failed and gave no reason.");
    EXPECT_THAT(texts, testing::Contains(text));
    expect_unchanged(args, images, before, reports_of_a_call_,
                     std::ranges::any_of(failed, is_late) ? pixels::as_before_or_in_result : pixels::as_before);
    expect_success();
    return made;
}

void walked_call::expect_failing_allocation(allocation_plan plan)
{
    const auto args = copy_of(walked_.args);
    const auto images = images_in(args);
    const auto before = state_of(args);
    script_value answer;
    plan_allocations(plan);
    std::string text;
    try {
        answer = script_.call(walked_.function, args);
    } catch (const script_error& error) {
        text = error.what();
    }
    plan_allocations({});
    if (text.empty()) {  // streams and sorting can do with less memory
        EXPECT_EQ(contents({answer}) + contents(args), result_);
        return;
    }
    EXPECT_EQ(text, no_memory);
    // Texts among the arguments are copied before the time is measured.
    const bool was_timed = trace_reports() > before.reports;
    expect_unchanged(args, images, before, was_timed ? reports_of_a_call_ : 0, pixels::as_before);
    expect_success();
}

std::string walked_call::expect_unharmed(const std::function<void()>& start, const std::function<std::string()>& stop)
{
    const auto args = copy_of(walked_.args);
    const auto images = images_in(args);
    const auto before = state_of(args);
    start();
    const auto text = script_.failure(walked_.function, args);
    const failed_request refused{fault_point::call, stop()};
    SCOPED_TRACE(walked_.function + "\nmisbehaving: " + refused.prototype + "\nfailure: " + text);
    if (!text.empty()) {
        expect_unchanged(args, images, before, reports_of_a_call_,
                         is_late(refused) ? pixels::as_before_or_in_result : pixels::as_before);
    } else {
        EXPECT_THAT(host_.report().locks, testing::IsEmpty());
        EXPECT_THAT(host_.report().violations, testing::IsEmpty());
        EXPECT_EQ(held(), before.held);
    }
    expect_success();
    return text;
}

void walked_call::expect_unchanged(const arguments& args, const std::vector<image_ref>& images, const state& before,
                                   std::uint64_t reports, pixels allowed)
{
    const auto report = host_.report();
    EXPECT_THAT(report.locks, testing::IsEmpty());
    EXPECT_THAT(report.violations, testing::IsEmpty());
    EXPECT_EQ(held(), before.held);
    EXPECT_EQ(trace_reports(), before.reports + reports);
    EXPECT_TRUE(output_values(args) == before.outputs);
    const auto after = contents(args);
    auto found = pixels_of(images), expected = before.pixels;
    if (allowed == pixels::as_before_or_in_result && found == resulting_pixels_) expected = found;
    EXPECT_EQ(without_pixels(after), without_pixels(before.contents));
    EXPECT_EQ(found, expected) << "pixels";
}

void walked_call::expect_success() { EXPECT_EQ(result_of_a_call(), result_) << walked_.function; }

}  // namespace faults
