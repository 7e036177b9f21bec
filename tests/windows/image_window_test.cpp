// A window of the panel program whose picture cannot be made.
#include "host/windows/image_window.h"

#include "host/correction/picture_values.h"
#include "host/correction/staged_pictures.h"
#include "host/windows/screenshot.h"
#include "tests/windows/control.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace windows_tests {
namespace {

using namespace zentrix::host;

/// White pixels, or a failure.
class white_pictures : public staged_pictures
{
  public:
    bool fails = true;
    int width() const override { return 2; }
    int height() const override { return 2; }

  private:
    second_stage begin(const picture_request& wanted) override
    {
        if (fails) throw std::runtime_error{"no picture"};
        return {[wanted](const std::atomic<bool>& given_up) {
            rendered_picture picture;
            picture.is_full = true;
            picture.values = image::create("white", HOST_ELEMENT_FLOAT32, {{2, 2}});
            show_values(wanted, given_up, picture);
            return picture;
        }};
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
        for (int i = 0; i < 3; ++i) pump(), Sleep(10);  // the picture comes from another thread
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

}  // namespace
}  // namespace windows_tests
