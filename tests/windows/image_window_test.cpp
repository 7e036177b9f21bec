// A window of the panel program whose image cannot be had.
#include "host/windows/image_window.h"

#include "host/objects/image.h"
#include "host/windows/screenshot.h"
#include "tests/windows/control.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace windows_tests {
namespace {

using namespace zentrix::host;

TEST(ImageWindow, ShowsTheBackgroundOrThePreviousPictureWhenItsImageFails)
{
    const auto white = image::create("white", HOST_ELEMENT_FLOAT32, {{2, 2}});
    bool fails = true;
    int failures = 0;
    window::on_failure([&](const std::string&) { ++failures; });
    image_window shows{"", nullptr, {40, 40}, [&] { return fails ? throw std::runtime_error{""} : white; }};
    shows.set_limits({-1, 0});
    ShowWindow(shows.handle(), SW_SHOWNOACTIVATE);
    const auto painted = [&] {
        InvalidateRect(shows.handle(), nullptr, FALSE);
        pump();
        const auto now = picture_of_client(shows.handle());
        const std::uint8_t* const middle =
            &now.bytes[static_cast<std::size_t>(3 * (now.width / 2 + now.height / 2 * now.width))];
        return RGB(middle[0], middle[1], middle[2]);
    };
    for (int i = 0; i < 2; ++i) EXPECT_EQ(painted(), GetSysColor(COLOR_APPWORKSPACE));
    EXPECT_EQ(failures, 1) << "a failure is not repeated before the next refresh";
    for (const bool now_fails : {false, true}) {
        fails = now_fails;
        shows.refresh();
        EXPECT_EQ(painted(), RGB(255, 255, 255));
    }
    EXPECT_EQ(failures, 2);
    window::on_failure(nullptr);
}

}  // namespace
}  // namespace windows_tests
