// Push buttons and edit boxes under real input: the actions a press runs, the CLOSE that
// reports the job to the client (who may end the screen from inside the call), and the
// text that an edit box keeps in its item data as the user types.
#include "actionscreen.h"

#include <Xm/ScrolledW.h>
#include <Xm/Text.h>

#include <string>

namespace xt {
namespace {

using Buttons = ActionTest;

/* Labels 3 and 5 (5 starts hidden) and push button 4 in a column; the button runs
** HIDE 3, CLOSE 4 (itself), SHOW 5. */
void closingScreen(Screen &s) {
    void *col = column(s);
    s.add(col, Label, 3, labelData("three"));
    s.add(col, PushButton, 4, pushButtonData("OK"));
    s.add(col, Label, 5, labelData("five"));
    s.item(5)->hidden = 1;
    s.addAction(4, 3, ACTION_HIDE);
    s.addAction(4, 4, ACTION_CLOSE);
    s.addAction(4, 5, ACTION_SHOW);
}

TEST_P(Buttons, CloseReportsTheJobWithTrueAndStopsTheList) {
    Screen s;
    closingScreen(s);
    show(s, 4711);
    ASSERT_TRUE(hiddenItem(s, 5));
    clearTraces();
    click(outer(s, 4));
    EXPECT_TRUE(hiddenItem(s, 3));
    ASSERT_EQ(closeCalls().size(), 1u);
    EXPECT_EQ(closeCalls()[0].jobId, 4711);
    EXPECT_EQ(closeCalls()[0].flag, 1) << "a boolean object holding true";
    EXPECT_TRUE(hasTrace("close plugin screen for job 4711"));
    EXPECT_TRUE(hiddenItem(s, 5)) << "the SHOW after the CLOSE never runs";
    EXPECT_FALSE(hasTrace("Process SHOW action"));
    destroy(s);
}

TEST_P(Buttons, CloseReportsTheJobTheButtonWasBuiltFor) {
    Screen s, later;
    closingScreen(s);
    show(s, 12);
    later.add(nullptr, Label, 1, labelData("another job's screen"));
    later.attach(1, ATTACH_LEFT, ATTACH_POSITION, 80, 0, 0); /* clear of the button */
    GuiCreatePlgScreen(form(), later.tree(), 13);
    pump();
    ASSERT_EQ(glJobId, 13);
    click(outer(s, 4));
    ASSERT_EQ(closeCalls().size(), 1u);
    EXPECT_EQ(closeCalls()[0].jobId, 12);
    destroy(later);
    destroy(s);
}

TEST_P(Buttons, TheClientMayFreeTheWholeScreenFromTheCloseCallback) {
    Screen s;
    closingScreen(s);
    s.add(nullptr, EditBox, 6, editBoxData(0, 0, 0, "text"));
    s.attach(6, ATTACH_LEFT, ATTACH_POSITION, 60, 0, 0);
    show(s, 8);
    screenToFree() = s.slot();
    clearTraces();
    click(outer(s, 4));
    ASSERT_EQ(closeCalls().size(), 1u);
    EXPECT_EQ(s.tree(), nullptr) << "freed from inside the button's own callback";
    EXPECT_TRUE(hasTrace("Destroy the widgets making up the screen"));
    EXPECT_FALSE(hasTrace("Process SHOW action"));
    pumpFor(100);
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form(), XmNchildren, &children, XmNnumChildren, &count, nullptr);
    EXPECT_EQ(count, 0u) << "every widget of the screen is gone";
    click(form()); /* the pointer over where the button was */
}

TEST_P(Buttons, CloseAimedAtAButtonWithoutActionsReportsJobZero) {
    Screen s;
    void *col = column(s);
    s.add(col, selectionItem, 1, selectionData("Close the screen", 0));
    s.add(col, PushButton, 4, pushButtonData("Stores no job"));
    s.addAction(1, 4, ACTION_CLOSE);
    show(s, 31);
    click(outer(s, 1));
    ASSERT_EQ(closeCalls().size(), 1u) << "the toggle's CLOSE reaches the button";
    EXPECT_EQ(closeCalls()[0].jobId, 0) << "only a button with actions keeps the job";
    EXPECT_TRUE(hasTrace("close plugin screen for job 0"));
    destroy(s);
}

TEST_P(Buttons, WithoutACloseCallbackTheListStillStops) {
    InitPluginScreens(nullptr, nullptr);
    Screen s;
    closingScreen(s);
    show(s, 5);
    click(outer(s, 4));
    EXPECT_TRUE(hiddenItem(s, 3));
    EXPECT_TRUE(hasTrace("close plugin screen for job 5"));
    EXPECT_TRUE(hiddenItem(s, 5));
    EXPECT_TRUE(closeCalls().empty());
    destroy(s);
}

TEST_P(Buttons, CloseAimedAtALabelDoesNothingAndTheListGoesOn) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 3, labelData("not a button"));
    s.add(col, PushButton, 4, pushButtonData("Apply"));
    s.add(col, Label, 5, labelData("five"));
    s.addAction(4, 3, ACTION_CLOSE);
    s.addAction(4, 5, ACTION_HIDE);
    show(s);
    click(outer(s, 4));
    EXPECT_TRUE(hasTrace("Process CLOSE action"));
    EXPECT_FALSE(hasTraceContaining("close plugin screen"));
    EXPECT_TRUE(closeCalls().empty());
    EXPECT_TRUE(shownItem(s, 3));
    EXPECT_TRUE(hiddenItem(s, 5)) << "the next action ran";
    destroy(s);
}

TEST_P(Buttons, ActionsOnMissingItemsAreSkipped) {
    Screen s;
    void *col = column(s);
    s.add(col, PushButton, 4, pushButtonData("Apply"));
    s.add(col, Label, 5, labelData("five"));
    s.add(col, Label, 7, nullptr); /* GUI data but no widget */
    s.addAction(4, 99, ACTION_HIDE); /* no such item */
    s.addAction(4, 7, ACTION_HIDE);
    s.addAction(4, 5, ACTION_DISALLOW_INPUT);
    show(s);
    clearTraces();
    click(outer(s, 4));
    EXPECT_EQ(countTrace("Process HIDE action"), 1) << "written for the item without a widget";
    EXPECT_EQ(s.item(7)->hidden, 0) << "nothing to hide: the flag stays";
    EXPECT_TRUE(disabledItem(s, 5));
    destroy(s);
}

TEST_P(Buttons, AButtonWithoutActionsIgnoresPresses) {
    Screen s;
    void *col = column(s);
    s.add(col, PushButton, 4, pushButtonData("No list"));
    s.add(col, PushButton, 6, pushButtonData("Empty list"));
    ListCreateFromPool(&s.item(6)->actions, 0, MemGetDefaultPoolId());
    show(s, 3);
    for (int id : {4, 6}) {
        Widget button = outer(s, id);
        EXPECT_EQ(XtHasCallbacks(button, XmNactivateCallback), XtCallbackHasNone) << id;
        XtPointer job = reinterpret_cast<XtPointer>(1);
        XtVaGetValues(button, XmNuserData, &job, nullptr);
        EXPECT_EQ(job, nullptr) << "no job stored in button " << id;
        clearTraces();
        click(button);
        EXPECT_TRUE(traces().empty()) << "button " << id;
    }
    EXPECT_TRUE(closeCalls().empty());
    destroy(s);
}

/* ---- Edit boxes ------------------------------------------------------------------------ */

using EditBoxes = ActionTest;

std::string widgetText(Widget text) {
    char *value = XmTextGetString(text);
    std::string out = value ? value : "";
    XtFree(value);
    return out;
}

std::string storedText(const Screen &s, int32_t id) {
    const char *text = static_cast<EditBoxData *>(s.item(id)->itemData)->text;
    return text ? text : "<null>";
}

TEST_P(EditBoxes, OneRowOfEightRefusesTheNinthCharacter) {
    Screen s;
    s.add(nullptr, EditBox, 1, editBoxData(8, 12, 1));
    show(s);
    Widget text = value(s, 1);
    ASSERT_EQ(widgetCount(s.item(1)), 1);
    EXPECT_EQ(outer(s, 1), text) << "a single text widget";
    EXPECT_TRUE(XtIsSubclass(text, xmTextWidgetClass));
    EXPECT_EQ(XtParent(text), form());
    EXPECT_TRUE(isViewable(text));
    focus(text);
    type("abcdefghi");
    EXPECT_EQ(widgetText(text), "abcdefgh");
    EXPECT_EQ(storedText(s, 1), "abcdefgh");
    EXPECT_EQ(countTrace("new value is abcdefgh"), 1);
    EXPECT_FALSE(hasTraceContaining("abcdefghi"));
    destroy(s);
}

TEST_P(EditBoxes, RowsZeroGiveAScrolledMultiLineTextWhoseWindowIsTheOuterWidget) {
    Screen s;
    s.add(nullptr, EditBox, 1, editBoxData(0, 0, 0));
    show(s);
    Widget text = value(s, 1);
    ASSERT_EQ(widgetCount(s.item(1)), 2);
    EXPECT_TRUE(XtIsSubclass(text, xmTextWidgetClass));
    EXPECT_TRUE(XtIsSubclass(XtParent(text), xmScrolledWindowWidgetClass));
    EXPECT_EQ(outer(s, 1), XtParent(text)) << "the scrolled window is the first record";
    int mode = 0;
    XtVaGetValues(text, XmNeditMode, &mode, nullptr);
    EXPECT_EQ(mode, XmMULTI_LINE_EDIT);
    EXPECT_TRUE(isViewable(text));
    focus(text);
    type("ab");
    key(XK_Return);
    type("cd");
    EXPECT_EQ(storedText(s, 1), "ab\ncd");
    destroy(s);
}

TEST_P(EditBoxes, EveryKeystrokeReplacesTheStoredText) {
    Screen s;
    s.add(nullptr, EditBox, 1, editBoxData(0, 10, 1, "x"));
    show(s);
    Widget text = value(s, 1);
    EXPECT_EQ(widgetText(text), "x") << "the initial text";
    focus(text);
    XmTextSetInsertionPosition(text, 1);
    int64_t blocks = -1;
    std::string expected = "x";
    for (const char *c : {"y", "z", "1"}) {
        type(c);
        expected += c;
        EXPECT_EQ(storedText(s, 1), expected);
        if (blocks < 0) blocks = poolGrowth();
        EXPECT_EQ(poolGrowth(), blocks) << "the old copy is freed when a new one is stored";
    }
    key(XK_BackSpace);
    EXPECT_EQ(storedText(s, 1), "xyz");
    EXPECT_TRUE(hasTrace("new value is xyz1"));
    destroy(s);
}

TEST_P(EditBoxes, ClearingTheTextStoresAnEmptyString) {
    Screen s;
    s.add(nullptr, EditBox, 1, editBoxData(0, 10, 1, "ab"));
    show(s);
    focus(value(s, 1));
    XmTextSetInsertionPosition(value(s, 1), 2);
    key(XK_BackSpace);
    key(XK_BackSpace);
    EXPECT_EQ(storedText(s, 1), "");
    EXPECT_TRUE(hasTrace("new value is "));
    destroy(s);
}

TEST_P(EditBoxes, AHiddenEditBoxStaysUnmappedAndShowsWhenAnActionSaysSo) {
    Screen s;
    void *col = column(s);
    s.add(col, PushButton, 2, pushButtonData("Show the box"));
    s.add(col, EditBox, 1, editBoxData(0, 10, 1));
    s.add(col, EditBox, 3, editBoxData(0, 10, 4));
    s.item(1)->hidden = 1;
    s.item(3)->hidden = 1;
    s.addAction(2, 1, ACTION_SHOW);
    s.addAction(2, 3, ACTION_SHOW);
    show(s);
    EXPECT_TRUE(hiddenItem(s, 1));
    EXPECT_TRUE(hiddenItem(s, 3));
    click(outer(s, 2));
    EXPECT_TRUE(shownItem(s, 1));
    EXPECT_TRUE(shownItem(s, 3));
    EXPECT_TRUE(isViewable(value(s, 3))) << "the text inside the scrolled window too";
    destroy(s);
}

INSTANTIATE_TEST_SUITE_P(BothWays, Buttons, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);
INSTANTIATE_TEST_SUITE_P(BothWays, EditBoxes, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);

} // namespace
} // namespace xt
