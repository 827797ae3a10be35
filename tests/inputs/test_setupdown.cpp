/* test_setupdown.cpp - stepping and checking the number in one text field, and the
** checks of their arguments that all input controls share. */
#include "inputs_support.h"
#include <functional>
#include <set>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include "xcontrols/guicombo.h"
#include "xcontrols/guidateinput.h"
#include "xcontrols/guinuminput.h"
#include "xcontrols/guisetupdown.h"

namespace {
using inputs::textOf;
class SetUpDownTest : public inputs::InputsTest {
protected:
    Widget make(const char *name, WidgetClass cls) {
        return XtVaCreateManagedWidget(name, cls, form(), nullptr);
    }
};

/* A typed text, then one call: the text it leaves, the bells it rings and whether it
** wrote the field. Checks keep a number in range as typed; steps and other directions
** write it with the width's digits (four at most); limits ring and never wrap. */
TEST_F(SetUpDownTest, ChecksAndStepsOfATypedNumber) {
    Widget text = field("text", 6);
    int changes = 0;
    XtAddCallback(text, XmNvalueChangedCallback,
                  [](Widget, XtPointer n, XtPointer) { ++*static_cast<int *>(n); }, &changes);
    realize();
    struct Row { const char *typed; int32_t direction, min, max, width; const char *shown;
                 int bells, changes; };
    const Row rows[] = {
        {"7", GUI_UPDOWN_VALIDATE, 0, 23, 2, "7", 0, 0},
        {"30", GUI_UPDOWN_VALIDATE, 0, 23, 2, "23", 1, 1},
        {"abc", GUI_UPDOWN_VALIDATE, 1, 31, 2, "01", 1, 1},  /* no number reads as zero */
        {"7", GUI_UPDOWN_VALIDATE, 10, 5, 0, "5", 2, 1},  /* min above max: the max wins */
        {"5", GUI_UPDOWN_UP, 0, 100, 0, "6", 0, 1},
        {"5", GUI_UPDOWN_DOWN, 0, 100, 3, "004", 0, 1},
        {"5", GUI_UPDOWN_UP, 0, 100, -1, "0006", 0, 1},
        {"7", 5, 0, 23, 2, "07", 0, 1},  /* another direction keeps the number */
        {"2147483647", GUI_UPDOWN_UP, 0, INT32_MAX, 0, "2147483647", 1, 1},
        {"-2147483648", GUI_UPDOWN_DOWN, INT32_MIN, 0, 0, "-2147483648", 1, 1},
    };
    for (const Row &r : rows) {
        retype(text, r.typed);
        bells.reset();
        changes = 0;
        GuiSetUpDownValue(text, r.direction, r.min, r.max, r.width);
        const auto row = &r - rows;
        EXPECT_EQ(textOf(text), r.shown) << "row " << row;
        EXPECT_EQ(bells.count(), r.bells) << "row " << row;
        EXPECT_EQ(changes > 0, r.changes > 0) << "row " << row;
    }
    EXPECT_EQ(countTrace("GuiSetUpDownValue()"), static_cast<int>(std::size(rows)));
    Widget multi = make("multi", xmTextWidgetClass);
    XmTextSetString(multi, const_cast<char *>("41"));
    GuiSetUpDownValue(multi, GUI_UPDOWN_UP, 0, 99, 3);
    EXPECT_EQ(textOf(multi), "042") << "a multi-line text widget steps too";
}

/* Each control takes only the classes of widget that it can work with; one of another
** class ("bad", in the place the row says) is traced and the control refused. A trace
** number stands for one message: the controls' failure lines all differ, and none takes
** the number of the date input's time-server fallback. */
TEST_F(SetUpDownTest, WrongWidgetsAreRefusedAndEachMessageHasItsOwnNumber) {
    Widget good = field("good", 4), list = make("list", xmListWidgetClass);
    Widget button = make("button", xmPushButtonWidgetClass), down = arrow("down", XmARROW_DOWN);
    struct Row { const char *function; WidgetClass badClass; std::function<void *(Widget)> made; };
    const Row rows[] = {
        {"GuiManageCombo", xmPushButtonWidgetClass,
         [&](Widget bad) { return GuiManageCombo(bad, button, list); }},
        {"GuiManageCombo", xmArrowButtonWidgetClass,
         [&](Widget bad) { return GuiManageCombo(good, bad, list); }},
        {"GuiManageCombo", xmTextFieldWidgetClass,
         [&](Widget bad) { return GuiManageCombo(good, button, bad); }},
        {"GuiManageNumInput", xmLabelWidgetClass,
         [&](Widget bad) { return GuiManageNumInput(bad, button, button, 9, 0, 1, 0, 0); }},
        {"GuiManageDateInput", xmTextFieldWidgetClass,
         [&](Widget bad) { return GuiManageDateInput(good, good, good, bad, button); }},
        {"GuiSetUpDownValue", xmLabelWidgetClass, [&](Widget bad) {
             GuiSetUpDownValue(bad, GUI_UPDOWN_UP, 0, 9, 0);
             return static_cast<void *>(nullptr);
         }},
    };
    for (const Row &r : rows) {
        Widget bad = make("bad", r.badClass);
        clearTraces();
        EXPECT_EQ(r.made(bad), nullptr) << r.function << " row " << &r - rows;
        EXPECT_TRUE(hasTraceContaining(std::string(r.function) + ": bad is of the wrong class"))
            << "row " << &r - rows;
        XtDestroyWidget(bad);
    }
    GuiDateInput *date =
        GuiManageDateInput(field("y", 4), field("m", 4), field("d", 2), button, down);
    clearTraces();
    GuiChangeComboSelection(nullptr, 1, 1);
    GuiCreateComboAndWidgets(nullptr, form(), "x", 1, 1, 5, 0);
    GuiManageNumInput(nullptr, button, button, 9, 0, 1, 0, 0);
    GuiManageNumInput(button, button, button, 9, 0, 1, 0, 0);
    EXPECT_EQ(GuiManageNumInput(good, button, button, 9, 0, 1, 0, 0), nullptr) << "given twice";
    GuiDateInputSet(date, 2024, 13, 1);
    std::set<int32_t> numbers;
    for (const xt::TraceLine &line : traces()) numbers.insert(line.msgNo);
    EXPECT_EQ(traces().size(), 6u);
    EXPECT_EQ(numbers.size(), traces().size());
    EXPECT_EQ(numbers.count(503), 0u);
    GuiDateInputDestroy(date);
}

} // namespace
