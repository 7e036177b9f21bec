// Exceptions in callbacks of the system.
#include "afx/afx.h"

#include "resources/resource.h"
#include "tests/windows/panel_window.h"

namespace windows_tests {
namespace {

/// Fails when it is attached to its window.
template <class Base>
struct unattachable : Base
{
    using Base::Base;
    void PreSubclassWindow() override { throw std::runtime_error{"not attached"}; }
};

TEST(Callbacks, SurviveAnObjectThatCannotBeAttached)
{
    unattachable<CPropertyPage> page{IDD_BASIC};
    CPropertySheet sheet;
    sheet.AddPage(&page);
    EXPECT_TRUE(sheet.Create(CWnd::FromHandle(the_frame()), WS_CHILD, 0));
    EXPECT_EQ(page.m_hWnd, nullptr);
    unattachable<CEdit> edit;
    EXPECT_FALSE(edit.Create(WS_CHILD, CRect{}, CWnd::FromHandle(the_frame()), 0)) << "the hook refuses the window";
    EXPECT_EQ(edit.m_hWnd, nullptr);
}

}  // namespace
}  // namespace windows_tests
