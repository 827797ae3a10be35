// Selection toggles and radio buttons under real clicks: what they record in the item
// data and which actions (or inverses) they run on the other items of the screen.
#include "actionscreen.h"

namespace xt {
namespace {

using Toggles = ActionTest;

TEST_P(Toggles, SwitchingOnHidesAndDisallowsSwitchingOffShowsAndAllows) {
    Screen s;
    void *col = column(s);
    s.add(col, selectionItem, 1, selectionData("Expert mode", 0));
    s.add(col, Label, 5, labelData("Hidden when on"));
    s.add(col, PushButton, 7, pushButtonData("Disabled when on"));
    s.addAction(1, 5, ACTION_HIDE);
    s.addAction(1, 7, ACTION_DISALLOW_INPUT);
    show(s);
    ASSERT_TRUE(shownItem(s, 5));
    ASSERT_TRUE(enabledItem(s, 7));
    for (int id : {1, 5, 7}) ASSERT_TRUE(withinParent(outer(s, id))) << "item " << id;

    clearTraces();
    click(outer(s, 1));
    EXPECT_TRUE(toggleOn(s, 1));
    EXPECT_EQ(data<SelectionItemData>(s, 1)->set, 1);
    EXPECT_TRUE(hasTrace("selection now set 1"));
    EXPECT_TRUE(hiddenItem(s, 5));
    EXPECT_TRUE(disabledItem(s, 7));
    EXPECT_EQ(countTrace("Process HIDE action"), 1);
    EXPECT_EQ(countTrace("Process DISALLOW INPUT action"), 1);

    clearTraces();
    click(outer(s, 1));
    EXPECT_FALSE(toggleOn(s, 1));
    EXPECT_EQ(data<SelectionItemData>(s, 1)->set, 0);
    EXPECT_TRUE(hasTrace("selection now set 0"));
    EXPECT_TRUE(shownItem(s, 5)) << "switched off: the inverse, SHOW";
    EXPECT_TRUE(enabledItem(s, 7)) << "switched off: the inverse, ALLOW INPUT";
    EXPECT_EQ(actionTraces(), 2);
    destroy(s);
}

TEST_P(Toggles, AToggleStartingOffRunsTheInversesAtCreationOnEarlierItemsOnly) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 5, labelData("built before the toggle"));
    s.add(col, selectionItem, 1, selectionData("Show both", 0));
    s.add(col, Label, 6, labelData("built after the toggle"));
    for (int target : {5, 6}) {
        s.addAction(1, target, ACTION_SHOW);
        s.addAction(1, target, ACTION_ALLOW_INPUT);
    }
    show(s);
    EXPECT_TRUE(hiddenItem(s, 5)) << "SHOW inverted is HIDE";
    EXPECT_TRUE(disabledItem(s, 5)) << "ALLOW INPUT inverted is DISALLOW INPUT";
    EXPECT_TRUE(shownItem(s, 6)) << "an item after the toggle has no GUI data yet";
    EXPECT_TRUE(enabledItem(s, 6));
    EXPECT_EQ(countTrace("Process HIDE action"), 1);
    EXPECT_EQ(countTrace("Process DISALLOW INPUT action"), 1);
    EXPECT_EQ(countTrace("selection now set 0"), 1);
    EXPECT_EQ(data<SelectionItemData>(s, 1)->set, 0);

    click(outer(s, 1));
    EXPECT_TRUE(shownItem(s, 5));
    EXPECT_TRUE(enabledItem(s, 5));
    destroy(s);
}

TEST_P(Toggles, AToggleStartingOnRunsItsActionsPlainAtCreation) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 5, labelData("hidden by the toggle"));
    s.add(col, selectionItem, 1, selectionData("On", 1));
    s.addAction(1, 5, ACTION_HIDE);
    show(s);
    EXPECT_TRUE(toggleOn(s, 1));
    EXPECT_TRUE(hiddenItem(s, 5));
    EXPECT_EQ(countTrace("selection now set 1"), 1);
    destroy(s);
}

/* Toggle 1 (off) sets toggle 9, which comes after it. */
void masterAndFollower(Screen &s, int32_t followerSet) {
    void *col = column(s);
    s.add(col, selectionItem, 1, selectionData("Master", 0));
    s.add(col, selectionItem, 9, selectionData("Follower", followerSet));
    s.addAction(1, 9, ACTION_SET);
}

TEST_P(Toggles, SetAndClearMoveTheOtherToggleButNotItsStoredFlag) {
    Screen s;
    masterAndFollower(s, 1);
    show(s);
    ASSERT_TRUE(toggleOn(s, 9)) << "item 9 comes after item 1: untouched at creation";

    clearTraces();
    click(outer(s, 1)); /* on: SET 9 */
    EXPECT_TRUE(toggleOn(s, 9));
    click(outer(s, 1)); /* off: the inverse, CLEAR 9 */
    EXPECT_FALSE(toggleOn(s, 1));
    EXPECT_FALSE(toggleOn(s, 9)) << "switched off by the CLEAR";
    EXPECT_EQ(data<SelectionItemData>(s, 9)->set, 1) << "the item data keeps its flag";
    EXPECT_EQ(countTrace("selection now set 1"), 1) << "item 9's handler never ran";
    EXPECT_EQ(countTrace("selection now set 0"), 1);
    EXPECT_TRUE(hasTrace("Process CLEAR action"));

    clearTraces();
    click(outer(s, 1)); /* on again: SET 9 switches it on, its flag still says 1 */
    EXPECT_TRUE(toggleOn(s, 9));
    EXPECT_TRUE(hasTrace("Process SET action"));
    EXPECT_TRUE(hasTrace("Got a widget to action"));
    EXPECT_TRUE(hasTrace("Action for Selecition"));
    EXPECT_EQ(countTrace("selection now set 1"), 1);
    destroy(s);
}

TEST_P(Toggles, SetOnAnUnsetToggleLeavesItsFlagAtZero) {
    Screen s;
    masterAndFollower(s, 0);
    show(s);
    click(outer(s, 1));
    EXPECT_TRUE(toggleOn(s, 9));
    EXPECT_EQ(data<SelectionItemData>(s, 9)->set, 0);
    click(outer(s, 9)); /* the user's own click on item 9 is recorded again */
    EXPECT_FALSE(toggleOn(s, 9));
    EXPECT_EQ(data<SelectionItemData>(s, 9)->set, 0);
    EXPECT_TRUE(hasTrace("selection now set 0"));
    destroy(s);
}

/* A radio manager (20) with three buttons; button 21 starts set. Button 21 would hide
** label 5, button 22 hides label 6, button 23 hides label 8. */
void radioScreen(Screen &s, void *col) {
    void *radio = s.add(col, RadioManager, 20, radioManagerData());
    s.add(radio, RadioButton, 21, radioButtonData("First", 1));
    s.add(radio, RadioButton, 22, radioButtonData("Second", 0));
    s.add(radio, RadioButton, 23, radioButtonData("Third", 0));
    s.add(col, Label, 5, labelData("five"));
    s.add(col, Label, 6, labelData("six"));
    s.add(col, Label, 8, labelData("eight"));
    s.addAction(21, 5, ACTION_HIDE);
    s.addAction(22, 6, ACTION_HIDE);
    s.addAction(23, 8, ACTION_HIDE);
}

TEST_P(Toggles, RadioButtonsAreBuiltFromTheirDataAndRunNothingAtCreation) {
    Screen s;
    void *col = column(s);
    radioScreen(s, col);
    show(s);
    EXPECT_TRUE(toggleOn(s, 21));
    EXPECT_FALSE(toggleOn(s, 22));
    EXPECT_EQ(XtParent(value(s, 21)), outer(s, 20)) << "each button's toggle in its own GUI data";
    EXPECT_EQ(countTrace("radio button status not changed"), 3);
    EXPECT_EQ(actionTraces(), 0);
    EXPECT_TRUE(shownItem(s, 5));
    EXPECT_TRUE(hasTrace("Created RadioManager"));
    destroy(s);
}

TEST_P(Toggles, ClickingAnotherRadioButtonRunsOnlyTheNewButtonsActions) {
    Screen s;
    void *col = column(s);
    radioScreen(s, col);
    show(s);
    clearTraces();
    click(value(s, 22));
    EXPECT_TRUE(toggleOn(s, 22));
    EXPECT_FALSE(toggleOn(s, 21));
    EXPECT_EQ(data<RadioButtonData>(s, 22)->set, 1);
    EXPECT_EQ(data<RadioButtonData>(s, 21)->set, 0) << "the old button records that it is off";
    EXPECT_TRUE(hasTrace("radio now set 1"));
    EXPECT_TRUE(hasTrace("radio now set 0"));
    EXPECT_TRUE(hiddenItem(s, 6)) << "the new button's action";
    EXPECT_TRUE(shownItem(s, 5)) << "the old button runs neither its actions nor inverses";
    EXPECT_EQ(actionTraces(), 1);

    clearTraces();
    click(value(s, 22)); /* already set */
    EXPECT_TRUE(toggleOn(s, 22));
    EXPECT_EQ(data<RadioButtonData>(s, 22)->set, 1);
    EXPECT_TRUE(hasTrace("radio button status not changed"));
    EXPECT_EQ(actionTraces(), 0);
    destroy(s);
}

TEST_P(Toggles, TwoButtonsStoredSetAreBothShownSetUntilTheNextClick) {
    Screen s;
    void *col = column(s);
    radioScreen(s, col);
    data<RadioButtonData>(s, 22)->set = 1;
    show(s);
    EXPECT_TRUE(toggleOn(s, 21));
    EXPECT_TRUE(toggleOn(s, 22));
    EXPECT_EQ(actionTraces(), 0);
    clearTraces();
    click(value(s, 23));
    EXPECT_FALSE(toggleOn(s, 21));
    EXPECT_FALSE(toggleOn(s, 22));
    EXPECT_TRUE(toggleOn(s, 23));
    for (int id : {21, 22}) EXPECT_EQ(data<RadioButtonData>(s, id)->set, 0) << id;
    EXPECT_EQ(countTrace("radio now set 0"), 2);
    EXPECT_TRUE(hiddenItem(s, 8));
    EXPECT_EQ(actionTraces(), 1) << "only the new button's action";
    destroy(s);
}

TEST_P(Toggles, SetOnARadioButtonSwitchesTheOthersOffWithoutTheirHandlers) {
    Screen s;
    void *col = column(s);
    radioScreen(s, col);
    s.add(col, PushButton, 30, pushButtonData("Pick the third"));
    s.addAction(30, 23, ACTION_SET);
    show(s);
    clearTraces();
    click(outer(s, 30));
    EXPECT_FALSE(toggleOn(s, 21));
    EXPECT_FALSE(toggleOn(s, 22));
    EXPECT_TRUE(toggleOn(s, 23));
    EXPECT_EQ(data<RadioButtonData>(s, 21)->set, 1) << "flags in the item data stay";
    EXPECT_EQ(data<RadioButtonData>(s, 23)->set, 0);
    EXPECT_TRUE(shownItem(s, 8)) << "no radio action runs";
    EXPECT_FALSE(hasTrace("Radio button callback"));
    for (const char *line : {"Process SET action", "Got a widget to action", "Action for Radio Button",
                             "Got oGuiData", "We have a valid radio button widget to set",
                             "GuiSetRadioButton END"})
        EXPECT_EQ(countTrace(line), 1) << line;
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
    EXPECT_EQ(widgetCount(s.item(21)), 0);
    EXPECT_EQ(widgetCount(s.item(22)), 0);
    EXPECT_EQ(widgetCount(s.item(23)), 1);
    click(value(s, 23));
    ASSERT_TRUE(toggleOn(s, 23));
    clearTraces();
    click(outer(s, 30));
    EXPECT_TRUE(hasTrace("Process SET action"));
    EXPECT_FALSE(hasTrace("Got a widget to action"));
    EXPECT_TRUE(toggleOn(s, 23)) << "nothing to select: the others stay";
    destroy(s);
}

INSTANTIATE_TEST_SUITE_P(BothWays, Toggles, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);

} // namespace
} // namespace xt
