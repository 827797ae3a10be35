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
    const int32_t actions[][2] = {{5, ACTION_SHOW}, {5, ACTION_ALLOW_INPUT}, {6, ACTION_HIDE},
                                  {7, ACTION_DISALLOW_INPUT}};
    for (const auto &a : actions) s.addAction(1, a[0], a[1]);
    s.addAction(3, 8, ACTION_HIDE);
    show(s);
    EXPECT_TRUE(hiddenItem(s, 5) && disabledItem(s, 5)) << "off at creation: the inverses";
    EXPECT_TRUE(shownItem(s, 6) && enabledItem(s, 7)) << "later items have no GUI data yet";
    EXPECT_TRUE(hiddenItem(s, 8) && toggleOn(s, 3)) << "on at creation: the actions";
    for (int32_t on : {1, 0}) {
        SCOPED_TRACE(on);
        clearTraces();
        click(outer(s, 1));
        EXPECT_EQ(toggleOn(s, 1), on == 1);
        EXPECT_EQ(data<SelectionItemData>(s, 1)->set, on);
        EXPECT_EQ(shownItem(s, 5) && enabledItem(s, 5), on == 1);
        EXPECT_EQ(hiddenItem(s, 6) && disabledItem(s, 7), on == 1);
        EXPECT_EQ(actionTraces(), 4);
    }
    destroy(s);
}
TEST_P(Toggles, SetAndClearMoveTheOtherToggleButNotItsStoredFlag) {
    for (int32_t followerSet : {1, 0}) {
        SCOPED_TRACE(followerSet);
        Screen s;
        void *col = column(s);
        s.add(col, selectionItem, 1, selectionData("Master", 0));
        s.add(col, selectionItem, 9, selectionData("Follower", followerSet));
        s.addAction(1, 9, ACTION_SET);
        show(s);
        EXPECT_EQ(toggleOn(s, 9), followerSet == 1) << "built after item 1: untouched at creation";
        for (bool on : {true, false, true}) {
            click(outer(s, 1)); /* on: SET 9; off: the inverse, CLEAR 9 */
            EXPECT_EQ(toggleOn(s, 9), on);
            EXPECT_EQ(data<SelectionItemData>(s, 9)->set, followerSet) << "9's handler never ran";
        }
        click(outer(s, 9)); /* the user's own click is recorded */
        EXPECT_EQ(data<SelectionItemData>(s, 9)->set, 0);
        destroy(s);
        clearTraces();
    }
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
        EXPECT_EQ(actionTraces(), 0) << "nothing runs at creation";
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
        destroy(s);
    }
}
TEST_P(Toggles, SetOnARadioButtonSwitchesTheOthersOffWithoutTheirHandlers) {
    Screen s;
    void *col = column(s);
    radioScreen(s, col);
    s.add(col, PushButton, 30, pushButtonData("Pick the third"));
    s.addAction(30, 23, ACTION_SET);
    show(s);
    click(outer(s, 30));
    for (int32_t id : {21, 22, 23}) EXPECT_EQ(toggleOn(s, id), id == 23) << id;
    EXPECT_EQ(data<RadioButtonData>(s, 21)->set, 1) << "flags in the item data stay";
    EXPECT_EQ(data<RadioButtonData>(s, 23)->set, 0);
    EXPECT_TRUE(shownItem(s, 8)) << "no radio action runs";
    destroy(s);
}
TEST_P(Toggles, ARadioButtonWithoutALabelGetsGuiDataButNoToggle) {
    Screen s;
    void *col = column(s);
    void *radio = s.add(col, RadioManager, 20, radioManagerData());
    s.add(radio, RadioButton, 21, radioButtonData(nullptr, 1));
    s.add(radio, ComboItem, 22, comboItemData("not a button"));
    s.add(radio, RadioButton, 23, radioButtonData("Only", 0));
    s.add(col, PushButton, 30, pushButtonData("Set the missing one"));
    s.addAction(30, 21, ACTION_SET);
    show(s);
    EXPECT_NE(s.item(21)->guiData, nullptr);
    for (int32_t id : {21, 22, 23}) EXPECT_EQ(widgetCount(s.item(id)), id == 23) << id;
    click(value(s, 23));
    click(outer(s, 30));
    EXPECT_TRUE(hasTrace("Process SET action"));
    EXPECT_TRUE(toggleOn(s, 23)) << "nothing to select: the others stay";
    destroy(s);
}
XT_BOTH_WAYS(Toggles, AfterBuild);
} // namespace
} // namespace xt
