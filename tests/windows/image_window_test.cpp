// A window of the panel program whose picture cannot be made.
#include "host/windows/image_window.h"

#include "host/correction/picture_values.h"
#include "host/correction/queued_pictures.h"
#include "host/windows/screenshot.h"
#include "tests/windows/control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <thread>

namespace windows_tests {
namespace {

using namespace zentrix::host;

/// Pictures that count their work. They have full resolution.
class counted_pictures : public queued_pictures
{
  public:
    int begun = 0, taken = 0;

    /// Handles messages until the window has taken all pictures.
    void settle() const
    {
        for (int i = 0; i < 1000; ++i) {
            pump();
            if (taken == begun) break;
            Sleep(10);
        }
        pump();  // painting
    }

  protected:
    /// values  real, made by the worker
    task showing(const picture_request& wanted, std::function<image_ref()> values)
    {
        ++begun;
        task next;
        next.work = [=](const std::atomic<bool>& given_up) {
            rendered_picture picture;
            picture.is_full = true;
            picture.values = values();
            show_values(wanted, given_up, picture);
            return picture;
        };
        next.taken = [this] { ++taken; };
        return next;
    }
};

/// White pixels, or a failure.
class white_pictures : public counted_pictures
{
  public:
    bool fails = true;
    int width() const override { return 2; }
    int height() const override { return 2; }

  private:
    task begin(const picture_request& wanted) override
    {
        if (fails) throw std::runtime_error{"no picture"};
        return showing(wanted, [] { return image::create("white", HOST_ELEMENT_FLOAT32, {{2, 2}}); });
    }
};

TEST(ImageWindow, ShowsTheBackgroundOrThePreviousPictureWhenItsImageFails)
{
    white_pictures pictures;
    int failures = 0;
    window::on_failure([&](const std::string&) { ++failures; });
    image_window shows{"", nullptr, {40, 40}, pictures};
    shows.set_limits({-1, 0});
    ShowWindow(shows.handle(), SW_SHOWNOACTIVATE);
    const auto painted = [&] {
        InvalidateRect(shows.handle(), nullptr, FALSE);
        pictures.settle();
        const auto now = picture_of_client(shows.handle());
        const std::uint8_t* const middle =
            &now.bytes[static_cast<std::size_t>(3 * (now.width / 2 + now.height / 2 * now.width))];
        return RGB(middle[0], middle[1], middle[2]);
    };
    for (int i = 0; i < 2; ++i) EXPECT_EQ(painted(), GetSysColor(COLOR_APPWORKSPACE));
    EXPECT_EQ(failures, 1) << "a failure is not repeated before the next refresh";
    for (const bool now_fails : {false, true}) {
        pictures.fails = now_fails;
        shows.refresh();
        EXPECT_EQ(painted(), RGB(255, 255, 255));
    }
    EXPECT_EQ(failures, 2);
    window::on_failure(nullptr);
}

/// One pixel with the number of the picture. From the third on, pictures wait until they are released.
class numbered_pictures : public counted_pictures
{
  public:
    int width() const override { return 1; }
    int height() const override { return 1; }
    std::atomic<bool> released = false;

  private:
    task begin(const picture_request& wanted) override
    {
        return showing(wanted, [this, number = begun + 1] {
            while (number > 2 && !released) Sleep(1);
            const auto values = image::create("number", HOST_ELEMENT_FLOAT32, {{1, 1}});
            values->at<float>(0, 0) = static_cast<float>(number);
            return values;
        });
    }
};

TEST(ImageWindow, WaitsForTheNewestPictureAlsoWhenAnOlderOneHasJustCome)
{
    numbered_pictures pictures;
    image_window shows{"", nullptr, {40, 40}, pictures};
    shows.set_limits({0, 5});
    ShowWindow(shows.handle(), SW_SHOWNOACTIVATE);
    pictures.settle();
    shows.refresh();
    shows.refresh();  // waits, because the other has begun
    for (int i = 0; i < 1000 && pictures.taken < 2; ++i) pump(), Sleep(1);
    ASSERT_EQ(pictures.taken, 2);
    const std::jthread later{[&] { Sleep(50), pictures.released = true; }};
    const int shown = shows.shown().bytes[0];
    EXPECT_EQ(shown, 255 * pictures.begun / 5);
    EXPECT_GE(pictures.begun, 3);

    const int begun = pictures.begun;
    shows.refresh_at_rest();
    EXPECT_EQ(pictures.begun, begun);
    for (int i = 0; i < 1000 && pictures.taken == begun; ++i) pump(), Sleep(10);
    EXPECT_EQ(pictures.taken, begun + 1);
}

/// 64 x 64 pixels, each of another value from its neighbours; before the correction all are 0.
class slope_pictures : public counted_pictures
{
  public:
    int width() const override { return 64; }
    int height() const override { return 64; }
    static float value(int x, int y) { return static_cast<float>((37 * x + 101 * y) % 256); }
    std::atomic<bool> held = false;  ///< no picture is finished meanwhile

  private:
    task begin(const picture_request& wanted) override
    {
        return showing(wanted, [this, before = wanted.uncorrected] {
            while (held) Sleep(1);
            auto values = image::create("slope", HOST_ELEMENT_FLOAT32, {{64, 64}});
            for (int y = 0; y < 64 && !before; ++y)
                for (int x = 0; x < 64; ++x) values->at<float>(x, y) = value(x, y);
            return values;
        });
    }
};

TEST(ImageWindow, ZoomsPansAndChoosesLimits)
{
    slope_pictures pictures;
    image_window shows{"", nullptr, {200, 300}, pictures};
    shows.set_mode(display_mode::real);
    shows.add_status_line({0.05, 0, false});
    shows.add_histogram();
    ShowWindow(shows.handle(), SW_SHOWNOACTIVATE);
    const control window{shows.handle()};
    const auto settled = [&] { pictures.settle(); };
    /// Whether pixels of the screen are those of the image with these limits.
    const auto shows_image = [&](float black, float white) {
        settled();
        const auto now = picture_of_client(shows.handle());
        const pixel_box seen = shows.map().visible();
        const double zoom = shows.map().zoom();
        int wrong = 0;
        for (int y = seen.top; y < seen.bottom; ++y)
            for (int x = seen.left; x < seen.right; ++x) {
                const auto pixel = shows.map().pixel_at(x, y);
                const float value = slope_pictures::value(static_cast<int>(pixel->x), static_cast<int>(pixel->y));
                const double grey = 255 * std::clamp((value - black) / (white - black), 0.0F, 1.0F);
                wrong += std::abs(now.bytes[static_cast<std::size_t>(3 * (y * now.width + x))] - grey) > 1;
            }
        EXPECT_EQ(wrong, 0) << "at a zoom of " << zoom;
    };
    window.key('B');  // no scale bar
    window.key('1');
    settled();
    const auto& limits = shows.shown_limits();
    ASSERT_LT(limits.black, 2);
    shows_image(limits.black, limits.white);
    EXPECT_EQ(shows.map().zoom(), 1);
    for (int i = 0; i < 4; ++i) window.key(VK_ADD);
    EXPECT_EQ(shows.map().zoom(), 4);
    shows_image(limits.black, limits.white);
    const pixel_box before = shows.map().whole();
    window.mouse(WM_LBUTTONDOWN, 30, 30);
    window.mouse(WM_MOUSEMOVE, 24, 41);
    window.mouse(WM_LBUTTONUP, 24, 41);
    EXPECT_EQ(shows.map().whole().left, before.left - 6);
    EXPECT_EQ(shows.map().whole().top, before.top + 11);
    shows_image(limits.black, limits.white);
    window.key('F');
    EXPECT_EQ(shows.map().zoom(), 200.0 / 64);

    const int strip = window.client().bottom - shows.height_below_picture() + 10;
    const float former = limits.white;
    int handle = 199;
    while (handle > 0 && !shows.limit_at({handle, strip})) --handle;  // the white one, from the right
    pictures.held = true;
    shows.refresh();  // its picture has other limits
    window.mouse(WM_LBUTTONDOWN, handle, strip);
    window.mouse(WM_MOUSEMOVE, handle - 20, strip);
    window.mouse(WM_LBUTTONUP, handle - 20, strip);
    const float chosen = shows.shown_limits().white;
    EXPECT_LT(chosen, former - 20);
    pictures.held = false;
    shows_image(limits.black, chosen);
    window.send(WM_KEYDOWN, VK_SPACE);
    settled();
    EXPECT_EQ(shows.shown().bytes, std::vector<std::uint8_t>(64 * 64)) << "the source, with the same limits";
    window.send(WM_KEYUP, VK_SPACE);
    shows_image(limits.black, chosen);
    window.mouse(WM_LBUTTONDBLCLK, handle, strip);
    EXPECT_EQ(shows.shown_limits().white, former);
}

}  // namespace
}  // namespace windows_tests
