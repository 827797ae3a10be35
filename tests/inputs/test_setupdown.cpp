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
#include "xcontrols/guitimeinput.h"

namespace {

class SetUpDownTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        text = field("text", 6);
        XtAddCallback(text, XmNvalueChangedCallback, onChanged, &changes);
        realize();
    }
    static void onChanged(Widget, XtPointer data, XtPointer) { ++*static_cast<int *>(data); }

    /* Types `typed` into the field, then applies GuiSetUpDownValue and gives the text. */
    std::string apply(const char *typed, int32_t direction, int32_t min, int32_t max,
                      int32_t width) {
        retype(text, typed);
        bells.reset();
        changes = 0;
        GuiSetUpDownValue(text, direction, min, max, width);
        return inputs::textOf(text);
    }

    Widget text = nullptr;
    int changes = 0;
};

TEST_F(SetUpDownTest, ValidationLeavesATypedValueInRangeExactlyAsTyped) {
    EXPECT_EQ(apply("7", GUI_UPDOWN_VALIDATE, 0, 23, 2), "7");
    EXPECT_EQ(changes, 0) << "nothing is written";
    EXPECT_EQ(bells.count(), 0);
}

TEST_F(SetUpDownTest, ValidationClampsAboveTheMaximumWithABellAndFills) {
    EXPECT_EQ(apply("30", GUI_UPDOWN_VALIDATE, 0, 23, 2), "23");
    EXPECT_EQ(bells.count(), 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(SetUpDownTest, ValidationClampsBelowTheMinimumAndReadsNonNumbersAsZero) {
    EXPECT_EQ(apply("abc", GUI_UPDOWN_VALIDATE, 1, 31, 2), "01");
    EXPECT_EQ(bells.count(), 1);
    EXPECT_EQ(apply("abc", GUI_UPDOWN_VALIDATE, 0, 31, 2), "abc")
        << "0 lies in the range, so the text stays as typed";
}

TEST_F(SetUpDownTest, StepsWriteTheNumberWithTheWidthsDigits) {
    EXPECT_EQ(apply("5", GUI_UPDOWN_UP, 0, 100, 0), "6");
    EXPECT_EQ(apply("5", GUI_UPDOWN_UP, 0, 100, 1), "6");
    EXPECT_EQ(apply("5", GUI_UPDOWN_UP, 0, 100, 2), "06");
    EXPECT_EQ(apply("5", GUI_UPDOWN_DOWN, 0, 100, 3), "004");
    EXPECT_EQ(apply("5", GUI_UPDOWN_UP, 0, 100, 9), "0006") << "wider widths give 4 digits";
    EXPECT_EQ(apply("5", GUI_UPDOWN_UP, 0, 100, -1), "0006");
    EXPECT_EQ(apply("-5", GUI_UPDOWN_DOWN, -10, 10, 0), "-6");
    EXPECT_EQ(bells.count(), 0);
}

TEST_F(SetUpDownTest, AnotherDirectionKeepsTheNumberButWritesIt) {
    EXPECT_EQ(apply("7", 5, 0, 23, 2), "07");
    EXPECT_EQ(changes, 1);
}

TEST_F(SetUpDownTest, StepsStopAtTheLimitsWithABellAndNeverWrap) {
    EXPECT_EQ(apply("23", GUI_UPDOWN_UP, 0, 23, 2), "23");
    EXPECT_EQ(bells.count(), 1);
    EXPECT_EQ(apply("0", GUI_UPDOWN_DOWN, 0, 23, 2), "00");
    EXPECT_EQ(bells.count(), 1);
}

TEST_F(SetUpDownTest, AMinimumAboveTheMaximumRingsTwiceAndTheMaximumWins) {
    EXPECT_EQ(apply("7", GUI_UPDOWN_VALIDATE, 10, 5, 0), "5");
    EXPECT_EQ(bells.count(), 2);
}

TEST_F(SetUpDownTest, StepsAtTheEndsOfThe32BitRangeDoNotOverflow) {
    EXPECT_EQ(apply("2147483647", GUI_UPDOWN_UP, 0, 2147483647, 0), "2147483647");
    EXPECT_EQ(apply("-2147483648", GUI_UPDOWN_DOWN, -2147483647 - 1, 0, 0), "-2147483648");
    EXPECT_EQ(bells.count(), 1);
}

TEST_F(SetUpDownTest, EachCallWritesOneTraceLine) {
    clearTraces();
    GuiSetUpDownValue(text, GUI_UPDOWN_UP, 0, 9, 0);
    ASSERT_EQ(traces().size(), 1u);
    const xt::TraceLine &line = traces().front();
    EXPECT_EQ(line.component, "GUI");
    EXPECT_EQ(line.msgNo, 202);
    EXPECT_EQ(line.sub, 0);
    EXPECT_EQ(line.level, 1);
    EXPECT_EQ(line.text, "GuiSetUpDownValue()");
}

TEST_F(SetUpDownTest, ANullWidgetIsTracedAndIgnored) {
    GuiSetUpDownValue(nullptr, GUI_UPDOWN_UP, 0, 9, 0);
    EXPECT_TRUE(hasTrace("GuiSetUpDownValue: a widget is missing"));
}

/* Each control takes only the classes of widget that it can work with; one of another
** class ("bad", in the place the row says) is traced and the control refused. */
TEST_F(SetUpDownTest, WidgetsOfTheWrongClassAreTracedAndRefused) {
    auto make = [this](const char *name, WidgetClass cls) {
        return XtVaCreateManagedWidget(name, cls, form(), nullptr);
    };
    Widget good = field("good", 4), list = make("list", xmListWidgetClass);
    Widget button = make("button", xmPushButtonWidgetClass);
    struct Row {
        const char *function;
        WidgetClass badClass;
        std::function<bool(Widget bad)> made;
    };
    const Row rows[] = {
        {"GuiManageCombo", xmPushButtonWidgetClass,
         [&](Widget bad) { return GuiManageCombo(bad, button, list) != nullptr; }},
        {"GuiManageCombo", xmArrowButtonWidgetClass,
         [&](Widget bad) { return GuiManageCombo(good, bad, list) != nullptr; }},
        {"GuiManageCombo", xmTextFieldWidgetClass,
         [&](Widget bad) { return GuiManageCombo(good, button, bad) != nullptr; }},
        {"GuiManageNumInput", xmLabelWidgetClass,
         [&](Widget bad) {
             return GuiManageNumInput(bad, button, button, 9, 0, 1, 0, 0) != nullptr;
         }},
        {"GuiManageDateInput", xmPushButtonWidgetClass,
         [&](Widget bad) {
             return GuiManageDateInput(good, bad, good, button, button) != nullptr;
         }},
        {"GuiManageDateInput", xmTextFieldWidgetClass,
         [&](Widget bad) { return GuiManageDateInput(good, good, good, bad, button) != nullptr; }},
        {"GuiManageTimeInput", xmLabelWidgetClass,
         [&](Widget bad) { return GuiManageTimeInput(good, bad, button, button) != nullptr; }},
        {"GuiSetUpDownValue", xmLabelWidgetClass, [&](Widget bad) {
             GuiSetUpDownValue(bad, GUI_UPDOWN_UP, 0, 9, 0);
             return false;
         }},
    };
    int row = 0;
    for (const Row &r : rows) {
        Widget bad = make("bad", r.badClass);
        clearTraces();
        EXPECT_FALSE(r.made(bad)) << "row " << row;
        EXPECT_TRUE(hasTraceContaining(std::string(r.function) + ": bad is of the wrong class"))
            << "row " << row;
        XtDestroyWidget(bad);
        ++row;
    }
}

/* A trace number stands for one message: the controls' failure lines all differ, and
** none takes the number of the date input's time-server fallback. */
TEST_F(SetUpDownTest, EachMessageOfTheControlsHasItsOwnNumber) {
    Widget up = XtVaCreateManagedWidget("up", xmPushButtonWidgetClass, form(), nullptr);
    Widget down = XtVaCreateManagedWidget("down", xmPushButtonWidgetClass, form(), nullptr);
    GuiDateInput *date = GuiManageDateInput(field("y", 4), field("m", 4), field("d", 2), up, down);
    clearTraces();
    GuiChangeComboSelection(nullptr, 1, 1);
    GuiCreateComboAndWidgets(nullptr, form(), "x", 1, 1, 5, 0);
    GuiManageNumInput(nullptr, up, down, 9, 0, 1, 0, 0);
    GuiManageNumInput(up, up, down, 9, 0, 1, 0, 0);
    GuiDateInputSet(date, 2024, 13, 1);
    std::set<int32_t> numbers;
    for (const xt::TraceLine &line : traces()) numbers.insert(line.msgNo);
    EXPECT_EQ(traces().size(), 5u);
    EXPECT_EQ(numbers.size(), traces().size());
    EXPECT_EQ(numbers.count(503), 0u);
    GuiDateInputDestroy(date);
}

TEST_F(SetUpDownTest, WorksOnMultiLineTextWidgetsToo) {
    Widget multi = XtVaCreateManagedWidget("multi", xmTextWidgetClass, form(), nullptr);
    XmTextSetString(multi, const_cast<char *>("41"));
    GuiSetUpDownValue(multi, GUI_UPDOWN_UP, 0, 99, 3);
    EXPECT_EQ(inputs::textOf(multi), "042");
}

} // namespace
