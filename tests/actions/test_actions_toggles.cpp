// Selection toggles and radio buttons under real clicks: what they record in the item
// data and which actions (or inverses) they run on the other items of the screen.
#include "plgscreen.h"
namespace xt {
namespace {
using Toggles = ShownBothWays;
TEST_P(Toggles, OnRunsTheActionsOffTheInversesAndCreationReportsTheFirstState) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 5, labelData("before the toggle"));
    s.add(col, Label, 8, labelData("hidden by a toggle built on"));
    s.add(col, selectionItem, 1, selectionData("Expert mode", 0));
    s.add(col, selectionItem, 3, selectionData("On", 1));
    s.add(col, Label, 6, labelData("after the toggle"));
    s.add(col, PushButton, 7, pushButtonData("after the toggle"));
    s.add(col, selectionItem, 9, selectionData("Follower", 1));
    const int32_t actions[][2] = {{5, ACTION_SHOW}, {5, ACTION_ALLOW_INPUT}, {6, ACTION_HIDE},
                                  {7, ACTION_DISALLOW_INPUT}, {9, ACTION_SET}};
    for (const auto &a : actions) s.addAction(1, a[0], a[1]);
    s.addAction(3, 8, ACTION_HIDE);
    show(s);
    EXPECT_TRUE(hiddenItem(s, 5) && disabledItem(s, 5)) << "off at creation: the inverses";
    EXPECT_TRUE(shownItem(s, 6) && enabledItem(s, 7) && toggleOn(s, 9)) << "built later";
    EXPECT_TRUE(hiddenItem(s, 8) && toggleOn(s, 3)) << "on at creation: the actions";
    for (int32_t on : {1, 0}) {
        SCOPED_TRACE(on);
        clearTraces();
        click(outer(s, 1));
        EXPECT_EQ(toggleOn(s, 1), on == 1);
        EXPECT_EQ(data<SelectionItemData>(s, 1)->set, on);
        EXPECT_EQ(shownItem(s, 5) && enabledItem(s, 5), on == 1);
        EXPECT_EQ(hiddenItem(s, 6) && disabledItem(s, 7), on == 1);
        EXPECT_EQ(toggleOn(s, 9), on == 1) << "SET, and CLEAR its inverse";
        EXPECT_EQ(data<SelectionItemData>(s, 9)->set, 1) << "9's own handler never runs";
        EXPECT_EQ(actionTraces(), 5);
    }
    destroy(s);
}
/* Radio manager 20 with buttons 21 (stored set), 22, 23 hiding labels 5, 6, 8. */
void radioScreen(Screen &s, void *col) {
    void *radio = s.add(col, RadioManager, 20, radioManagerData());
    const int32_t buttons[][2] = {{21, 5}, {22, 6}, {23, 8}};
    for (const auto &b : buttons) {
        s.add(radio, RadioButton, b[0], radioButtonData("choice", b[0] == 21));
        s.add(col, Label, b[1], labelData("label"));
        s.addAction(b[0], b[1], ACTION_HIDE);
    }
    s.add(col, PushButton, 30, pushButtonData("Pick the third"));
    s.addAction(30, 23, ACTION_SET);
}
TEST_P(Toggles, ARadioClickRunsOnlyTheNewButtonsActionsAndClearsTheOthersFlags) {
    struct Row { int32_t secondSet, clicked, hides; } rows[] = {{0, 22, 6}, {1, 23, 8}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.clicked);
        Screen s;
        radioScreen(s, column(s));
        data<RadioButtonData>(s, 22)->set = row.secondSet;
        show(s);
        EXPECT_TRUE(toggleOn(s, 21));
        EXPECT_EQ(toggleOn(s, 22), row.secondSet == 1) << "built from the data, however many";
        EXPECT_FALSE(hasTrace("Process HIDE action")) << "nothing runs at creation";
        for (int round = 0; round < 2; ++round) {
            clearTraces();
            click(value(s, row.clicked));
            for (int32_t id : {21, 22, 23}) {
                EXPECT_EQ(toggleOn(s, id), id == row.clicked) << id;
                EXPECT_EQ(data<RadioButtonData>(s, id)->set, id == row.clicked) << id;
            }
            EXPECT_TRUE(hiddenItem(s, row.hides) && shownItem(s, 5));
            EXPECT_EQ(actionTraces(), round == 0) << "a click on the set button runs nothing";
        }
        if (row.clicked == 22) { /* SET 23: the others go off, their flags and actions stay */
            click(outer(s, 30));
            for (int32_t id : {21, 22, 23}) EXPECT_EQ(toggleOn(s, id), id == 23) << id;
            EXPECT_TRUE(data<RadioButtonData>(s, 22)->set == 1 && shownItem(s, 8));
        }
        destroy(s);
    }
}
XT_BOTH_WAYS(Toggles, AfterBuild);
} // namespace
} // namespace xt
