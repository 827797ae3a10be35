// Push buttons and edit boxes under real input: the actions a press runs, the CLOSE that
// reports the job to the client, and the text an edit box keeps in its item data.
#include "plgscreen.h"
#include <Xm/ScrolledW.h>
#include <Xm/Text.h>
namespace xt {
namespace {
using Buttons = ShownBothWays;
/* Button 4 runs HIDE 3, CLOSE 4 (itself), SHOW 5 (hidden): the CLOSE ends the list. */
TEST_P(Buttons, CloseReportsTheButtonsJobWithTrueAndStopsTheList) {
    for (bool callback : {true, false}) {
        SCOPED_TRACE(callback ? "with a close callback" : "without");
        if (!callback) InitPluginScreens(nullptr, nullptr);
        closeCalls().clear();
        Screen s, later;
        void *col = column(s);
        s.add(col, Label, 3, labelData("three"));
        s.add(col, PushButton, 4, pushButtonData("OK"));
        s.add(col, Label, 5, labelData("five"));
        s.item(5)->hidden = 1;
        for (int32_t target : {3, 4, 5})
            s.addAction(4, target, target == 3 ? ACTION_HIDE : target == 4 ? ACTION_CLOSE
                                                                            : ACTION_SHOW);
        show(s, 4711);
        later.add(nullptr, Label, 1, labelData("another job's screen"));
        later.attach(1, ATTACH_LEFT, ATTACH_POSITION, 80, 0, 0); /* clear of the button */
        show(later, 13);
        click(outer(s, 4));
        EXPECT_TRUE(hiddenItem(s, 3) && hiddenItem(s, 5)) << "the SHOW after the CLOSE never runs";
        ASSERT_EQ(closeCalls().size(), callback ? 1u : 0u);
        for (const CloseCall &c : closeCalls()) EXPECT_TRUE(c.jobId == 4711 && c.flag == 1);
        EXPECT_TRUE(hasTrace("close plugin screen for job 4711"));
        destroy(later);
        destroy(s);
    }
}
/* A CLOSE aimed at a label, actions on missing items or an item without a widget: skipped,
** and the list goes on. */
TEST_P(Buttons, ActionsOnALabelOrOnMissingItemsAreSkippedAndTheListGoesOn) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 3, labelData("not a button"));
    s.add(col, PushButton, 4, pushButtonData("Apply"));
    s.add(col, Label, 5, labelData("five"));
    s.add(col, Label, 7, nullptr);
    const int32_t actions[][2] = {{3, ACTION_CLOSE}, {99, ACTION_HIDE}, {7, ACTION_HIDE},
                                  {5, ACTION_DISALLOW_INPUT}};
    for (const auto &a : actions) s.addAction(4, a[0], a[1]);
    show(s);
    click(outer(s, 4));
    EXPECT_TRUE(closeCalls().empty() && shownItem(s, 3));
    EXPECT_EQ(s.item(7)->hidden, 0) << "nothing to hide: the flag stays";
    EXPECT_TRUE(disabledItem(s, 5)) << "the last action ran";
    destroy(s);
}
using EditBoxes = ShownBothWays;
std::string storedText(const Screen &s, int32_t id) {
    const char *text = data<EditBoxData>(s, id)->text;
    return text ? text : "<null>";
}
/* One row: a plain text that refuses what goes beyond its length; rows 0: a scrolled
** multi-line text, whose scrolled window is the outer widget. Each keystroke is stored. */
TEST_P(EditBoxes, OneRowIsAPlainTextRowsZeroAScrolledMultiLineText) {
    for (int32_t rows : {1, 0}) {
        SCOPED_TRACE(rows);
        Screen s;
        s.add(nullptr, EditBox, 1, editBoxData(rows ? 8 : 0, 12, rows));
        show(s);
        Widget text = value(s, 1);
        EXPECT_EQ(XtIsSubclass(outer(s, 1), xmScrolledWindowWidgetClass), rows == 0);
        focus(text);
        type("abcd");
        key(XK_Return);
        type("efghi");
        EXPECT_EQ(storedText(s, 1), rows ? "abcdefgh" : "abcd\nefghi");
        for (int i = 0; i < 10; ++i) key(XK_BackSpace);
        EXPECT_EQ(storedText(s, 1), "");
        destroy(s);
    }
}
XT_BOTH_WAYS(Buttons, AfterBuild);
XT_BOTH_WAYS(EditBoxes, AfterBuild);
} // namespace
} // namespace xt
