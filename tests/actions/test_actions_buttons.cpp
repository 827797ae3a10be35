// Push buttons and edit boxes under real input: the actions a press runs, the CLOSE that
// reports the job to the client, and the text an edit box keeps in its item data.
#include "plgscreen.h"
#include <Xm/ScrolledW.h>
#include <Xm/Text.h>
namespace xt {
namespace {
using Buttons = ShownBothWays;
/* Labels 3 and 5 (5 hidden) and push button 4: HIDE 3, CLOSE 4 (itself), SHOW 5. */
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
TEST_P(Buttons, CloseReportsTheButtonsJobWithTrueAndStopsTheList) {
    for (bool callback : {true, false}) {
        SCOPED_TRACE(callback ? "with a close callback" : "without");
        if (!callback) InitPluginScreens(nullptr, nullptr);
        closeCalls().clear();
        Screen s, later;
        closingScreen(s);
        show(s, 4711);
        later.add(nullptr, Label, 1, labelData("another job's screen"));
        later.attach(1, ATTACH_LEFT, ATTACH_POSITION, 80, 0, 0); /* clear of the button */
        show(later, 13);
        clearTraces();
        click(outer(s, 4));
        EXPECT_TRUE(hiddenItem(s, 3));
        ASSERT_EQ(closeCalls().size(), callback ? 1u : 0u);
        for (const CloseCall &c : closeCalls()) {
            EXPECT_EQ(c.jobId, 4711) << "the job the button was built for";
            EXPECT_EQ(c.flag, 1) << "a boolean object holding true";
        }
        EXPECT_TRUE(hasTrace("close plugin screen for job 4711"));
        EXPECT_TRUE(hiddenItem(s, 5)) << "the SHOW after the CLOSE never runs";
        destroy(later);
        destroy(s);
    }
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
    destroy(s);
}
TEST_P(Buttons, ActionsOnALabelOrOnMissingItemsAreSkippedAndTheListGoesOn) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 3, labelData("not a button"));
    s.add(col, PushButton, 4, pushButtonData("Apply"));
    s.add(col, Label, 5, labelData("five"));
    s.add(col, Label, 7, nullptr); /* GUI data but no widget */
    const int32_t actions[][2] = {{3, ACTION_CLOSE}, {99, ACTION_HIDE}, {7, ACTION_HIDE},
                                  {5, ACTION_DISALLOW_INPUT}};
    for (const auto &a : actions) s.addAction(4, a[0], a[1]);
    show(s);
    clearTraces();
    click(outer(s, 4));
    EXPECT_TRUE(hasTrace("Process CLOSE action"));
    EXPECT_FALSE(hasTraceContaining("close plugin screen"));
    EXPECT_TRUE(closeCalls().empty());
    EXPECT_TRUE(shownItem(s, 3));
    EXPECT_EQ(countTrace("Process HIDE action"), 1) << "written for the item without a widget";
    EXPECT_EQ(s.item(7)->hidden, 0) << "nothing to hide: the flag stays";
    EXPECT_TRUE(disabledItem(s, 5)) << "the last action ran";
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
        XtPointer job = reinterpret_cast<XtPointer>(1);
        XtVaGetValues(outer(s, id), XmNuserData, &job, nullptr);
        EXPECT_EQ(job, nullptr) << "no job stored in button " << id;
        clearTraces();
        click(outer(s, id));
        EXPECT_TRUE(traces().empty()) << "button " << id;
    }
    destroy(s);
}

using EditBoxes = ShownBothWays;
std::string storedText(const Screen &s, int32_t id) {
    const char *text = static_cast<EditBoxData *>(s.item(id)->itemData)->text;
    return text ? text : "<null>";
}
/* One row: a plain text that refuses what goes beyond its length; rows 0: a scrolled
** multi-line text, whose scrolled window is the outer widget. */
TEST_P(EditBoxes, OneRowIsAPlainTextRowsZeroAScrolledMultiLineText) {
    for (int32_t rows : {1, 0}) {
        SCOPED_TRACE(rows);
        Screen s;
        s.add(nullptr, EditBox, 1, editBoxData(rows ? 8 : 0, 12, rows));
        show(s);
        Widget text = value(s, 1);
        ASSERT_TRUE(XtIsSubclass(text, xmTextWidgetClass));
        EXPECT_EQ(outer(s, 1), rows ? text : XtParent(text));
        EXPECT_EQ(XtIsSubclass(outer(s, 1), xmScrolledWindowWidgetClass), rows == 0);
        focus(text);
        type("abcd");
        key(XK_Return);
        type("efghi");
        EXPECT_EQ(storedText(s, 1), rows ? "abcdefgh" : "abcd\nefghi");
        destroy(s);
        clearTraces();
    }
}
TEST_P(EditBoxes, EveryKeystrokeReplacesTheStoredTextDownToEmpty) {
    Screen s;
    s.add(nullptr, EditBox, 1, editBoxData(0, 10, 1, "x"));
    show(s);
    focus(value(s, 1));
    XmTextSetInsertionPosition(value(s, 1), 1);
    int64_t blocks = -1;
    std::string expected = "x";
    for (const char *c : {"y", "z"}) {
        type(c);
        expected += c;
        EXPECT_EQ(storedText(s, 1), expected);
        if (blocks < 0) blocks = poolGrowth();
        EXPECT_EQ(poolGrowth(), blocks) << "the old copy is freed when a new one is stored";
    }
    key(XK_BackSpace);
    EXPECT_EQ(storedText(s, 1), "xy");
    key(XK_BackSpace);
    key(XK_BackSpace);
    EXPECT_EQ(storedText(s, 1), "");
    EXPECT_TRUE(hasTrace("new value is "));
    destroy(s);
}
TEST_P(EditBoxes, HiddenEditBoxesStayUnmappedUntilAnActionShowsThem) {
    Screen s;
    void *col = column(s);
    s.add(col, PushButton, 2, pushButtonData("Show the boxes"));
    s.add(col, EditBox, 1, editBoxData(0, 10, 1));
    s.add(col, EditBox, 3, editBoxData(0, 10, 4));
    for (int id : {1, 3}) {
        s.item(id)->hidden = 1;
        s.addAction(2, id, ACTION_SHOW);
    }
    show(s);
    EXPECT_TRUE(hiddenItem(s, 1) && hiddenItem(s, 3));
    click(outer(s, 2));
    EXPECT_TRUE(shownItem(s, 1) && shownItem(s, 3));
    EXPECT_TRUE(isViewable(value(s, 3))) << "the text inside the scrolled window too";
    destroy(s);
}
XT_BOTH_WAYS(Buttons, AfterBuild);
XT_BOTH_WAYS(EditBoxes, AfterBuild);
} // namespace
} // namespace xt
