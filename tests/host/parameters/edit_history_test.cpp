#include "host/parameters/edit_history.h"

#include <gtest/gtest.h>

#include <vector>

using zentrix::host::edit_history;

namespace {

/// Undoes all steps: the states on the way, the present one first.
std::vector<int> way_back(edit_history<int> history)
{
    std::vector<int> states{history.present()};
    while (const int* const before = history.undo()) states.push_back(*before);
    return states;
}

TEST(EditHistory, EditsOfOneNameAreOneStepUntilTheStepEnds)
{
    edit_history<int> history{0};
    for (const int typed : {1, 12, 125}) EXPECT_TRUE(history.record(typed, "A1"));
    EXPECT_FALSE(history.record(125, "B2")) << "nothing was edited";
    history.record(7, "B2");
    history.record(8, "A1");
    history.end_step();
    history.record(9, "A1");
    EXPECT_EQ(way_back(history), (std::vector{9, 8, 7, 125, 0}));
    history.record(8, "A1");  // leads back to where the step began
    EXPECT_EQ(way_back(history), (std::vector{8, 7, 125, 0}));
    history.record(9, "A1");
    EXPECT_EQ(way_back(history), (std::vector{9, 8, 7, 125, 0})) << "the step before has ended";
}

TEST(EditHistory, RedoLastsUntilTheNextEdit)
{
    edit_history<int> history{0};
    EXPECT_EQ(history.undo(), nullptr);
    history.record(1, "A1");
    history.record(2, "Apply");
    EXPECT_EQ(history.undo_name() + "/" + history.redo_name(), "Apply/");
    EXPECT_EQ(*history.undo(), 1);
    EXPECT_EQ(history.undo_name() + "/" + history.redo_name(), "A1/Apply");
    EXPECT_EQ(*history.redo(), 2);
    EXPECT_EQ(history.redo(), nullptr);
    history.undo();
    history.record(3, "A1");  // the step was ended by undo
    EXPECT_EQ(history.redo_name(), "");
    EXPECT_EQ(way_back(history), (std::vector{3, 1, 0}));
}

TEST(EditHistory, ForgetsTheOldestSteps)
{
    edit_history<int> history{0, 3};
    for (int i = 1; i <= 10; ++i) {
        history.record(i, "A1");
        history.end_step();
    }
    EXPECT_EQ(way_back(history), (std::vector{10, 9, 8, 7}));
}

}  // namespace
