// The button with a picture: nothing of the picture's own ground is painted.
#include "host/windows/screenshot.h"
#include "tests/windows/page_tables.h"

#include <uxtheme.h>

namespace windows_tests {
namespace {

TEST_F(panel_window, ThePictureOfAButtonHasNoGround)
{
    show_panel();
    const control button = of_panel(5100);
    const auto looks = [&] {
        pump();
        return zentrix::host::picture_of_client(button.window);
    };
    const auto grey_at = [](const zentrix::host::picture& of, int right, int down) {
        const int x = of.width / 2 + right, y = of.height / 2 + down;
        return static_cast<int>(of.bytes[static_cast<std::size_t>(3 * (y * of.width + x))]);
    };
    const auto normal = looks();
    button.send(BM_SETCHECK, BST_CHECKED);
    const auto checked = looks();
    button.send(BM_SETCHECK, BST_UNCHECKED);
    host.set("ApplyIsEnabled", 0);
    host.update_panel();
    const auto disabled = looks();
    ASSERT_GT(normal.width, 19) << "wider than the picture";
    for (const auto* state : {&normal, &checked, &disabled}) {
        // Without a theme the button has a face; a theme paints it in its own colour up to the border of one pixel.
        const int ground = IsAppThemed() ? grey_at(*state, -9, 0) : GetRValue(GetSysColor(COLOR_BTNFACE));
        for (const int side : {-7, 6}) EXPECT_EQ(grey_at(*state, side, -7), ground) << "a corner";
        EXPECT_LT(grey_at(*state, 0, 0), ground - 20) << "the middle of the rings";
    }
    EXPECT_NE(checked.bytes, normal.bytes) << "pressed";
    EXPECT_GT(grey_at(disabled, 0, 0), grey_at(normal, 0, 0) + 50) << "faint";
}

}  // namespace
}  // namespace windows_tests
