// Requests that come while a picture is made, failures, and the end while a picture is made.
#include "host/correction/queued_pictures.h"
#include "host/correction/picture_values.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace {

using namespace zentrix::host;

/// Pictures whose work lasts until the test lets it end. The request's zoom is the number of the job.
class slow_pictures : public queued_pictures
{
  public:
    int width() const override { return 1; }
    int height() const override { return 1; }

    std::vector<double> begun;
    struct progress
    {
        std::atomic<bool> may_end = false, gave_up = false, started = false;
    };
    const std::shared_ptr<progress> job = std::make_shared<progress>();
    std::string begin_failure, work_failure;

  private:
    task begin(const picture_request& wanted) override
    {
        if (!begin_failure.empty()) throw std::runtime_error{begin_failure};
        begun.push_back(wanted.zoom);
        job->started = false;
        task next;
        next.is_slow = wanted.full;
        next.work = [job = job, failure = work_failure](const std::atomic<bool>& given_up) {
            job->started = true;
            while (!job->may_end && !given_up) std::this_thread::yield();
            if (given_up) job->gave_up = true;
            if (!failure.empty()) throw std::runtime_error{failure};
            return rendered_picture{};
        };
        return next;
    }
};

TEST(QueuedPictures, OfManyRequestsTheFirstAndTheNewestAreMade)
{
    slow_pictures pictures;
    std::atomic<int> ready = 0;
    pictures.on_ready([&] { ++ready; });
    const auto first = pictures.request({.zoom = 1});
    std::uint64_t last = 0;
    for (const double zoom : {2.0, 3.0, 4.0}) last = pictures.request({.zoom = zoom});
    EXPECT_FALSE(pictures.take());
    pictures.job->may_end = true;
    std::vector<std::uint64_t> numbers;
    while (numbers.size() < 2)
        if (const auto picture = pictures.take()) numbers.push_back(picture->number);
    EXPECT_EQ(numbers, (std::vector{first, last}));
    EXPECT_EQ(pictures.begun, (std::vector{1.0, 4.0}));
    while (ready < 2) std::this_thread::yield();  // the announcement may be later
    pictures.on_ready({});
    EXPECT_EQ(ready, 2);
    EXPECT_FALSE(pictures.job->gave_up);
}

TEST(QueuedPictures, AnOvertakenSlowPictureIsGivenUpAndNotDelivered)
{
    slow_pictures pictures;
    pictures.request({.zoom = 1, .full = true});
    while (!pictures.job->started) std::this_thread::yield();
    const auto number = pictures.request({.zoom = 2});
    while (!pictures.job->gave_up) std::this_thread::yield();
    pictures.job->may_end = true;
    std::optional<rendered_picture> picture;
    while (!picture) picture = pictures.take();
    EXPECT_EQ(picture->number, number);
    EXPECT_EQ(pictures.begun, (std::vector{1.0, 2.0}));
}

TEST(QueuedPictures, FailuresAtTheBeginAndLaterArriveAndTheNextPictureIsMade)
{
    slow_pictures pictures;
    pictures.job->may_end = true;
    pictures.work_failure = "second";
    std::atomic<int> ready = 0;
    pictures.on_ready([&] { ++ready; });
    EXPECT_EQ(pictures.wait_for({}).failure, "second");
    while (ready < 1) std::this_thread::yield();  // the announcement may be later than the picture
    pictures.begin_failure = "first";
    pictures.request({});
    EXPECT_EQ(ready, 2) << "no work announces it";
    EXPECT_EQ(pictures.take()->failure, "first");
    pictures.begin_failure = pictures.work_failure = "";
    EXPECT_EQ(pictures.wait_for({}).failure, "");
    pictures.on_ready({});
}

TEST(QueuedPictures, MayBeDestroyedWhileAPictureIsMade)
{
    for (int i = 0; i < 50; ++i) {
        slow_pictures pictures;
        pictures.request({.full = i % 2 == 0});
        if (i % 3 == 0) pictures.request({});
    }
}

TEST(PictureValues, TheHistogramCountsAllValuesAndIsWiderThanTheLimits)
{
    const float values[] = {-100, 0, 0.5F, 1, 2, 100, std::numeric_limits<float>::quiet_NaN()};
    const auto histogram = histogram_of(values, {0, 2}, display_mode::real);
    EXPECT_EQ(histogram.range.black, -1);
    EXPECT_EQ(histogram.range.white, 3);
    for (const auto& [bin, count] : {std::pair{0, 1}, {64, 1}, {96, 1}, {128, 1}, {192, 1}, {255, 1}})
        EXPECT_EQ(histogram.counts[static_cast<std::size_t>(bin)], static_cast<std::uint32_t>(count)) << bin;
    EXPECT_LT(histogram_of({values, 1}, {-100, -100}, display_mode::real).range.black, -100);
    constexpr float largest = std::numeric_limits<float>::max();
    const float extremes[] = {-largest, 0, largest};
    const auto wide = histogram_of(extremes, {-largest, largest}, display_mode::real);
    for (const std::size_t bin : {0U, 128U, 255U}) EXPECT_EQ(wide.counts[bin], 1U) << bin;
    const auto phases = histogram_of(values, {0, 3}, display_mode::phase).range;
    EXPECT_EQ(phases.black, -1.5F);
    EXPECT_EQ(phases.white, std::numbers::pi_v<float>) << "no phase is larger";
}

}  // namespace
