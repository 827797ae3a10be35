/* test_setupdown.cpp - stepping and checking the number in one text field. */
#include "inputs_support.h"
#include "xcontrols/guisetupdown.h"

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

TEST_F(SetUpDownTest, WorksOnMultiLineTextWidgetsToo) {
    Widget multi = XtVaCreateManagedWidget("multi", xmTextWidgetClass, form(), nullptr);
    XmTextSetString(multi, const_cast<char *>("41"));
    GuiSetUpDownValue(multi, GUI_UPDOWN_UP, 0, 99, 3);
    EXPECT_EQ(inputs::textOf(multi), "042");
}

} // namespace
