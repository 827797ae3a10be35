/* test_timeinput.cpp - the time input under real pointer, key and focus input. */
#include <utility>
#include <vector>

#include "inputs_support.h"
#include "kx.h"
#include "xcontrols/guitimeinput.h"

namespace {

constexpr int32_t kHour = 3600;
constexpr int32_t kMinute = 60;

/* The times of day that the value callback saw, as (hours, minutes) in UTC. */
struct Reports {
    std::vector<std::pair<int32_t, int32_t>> times;
    static void onValue(GuiTimeInput *, void *data, int32_t *time) {
        KxTimeStruct utc{};
        TimeToUTCBreakdownStruct(&utc, *time);
        static_cast<Reports *>(data)->times.emplace_back(utc.iHours, utc.iMinutes);
    }
};

class TimeInputTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        const inputs::TimeWidgets w = timeWidgets();
        hours = w.hours, minutes = w.minutes, up = w.up, down = w.down;
        input = GuiManageTimeInput(hours, minutes, up, down);
        ASSERT_NE(input, nullptr);
        realize();
    }
    void TearDown() override {
        if (input) GuiTimeInputDestroy(input);
        InputsTest::TearDown();
    }
    void show(int32_t h, int32_t m) {
        GuiTimeInputSet(input, h, m);
        bells.reset();
    }
    std::string shown() { return inputs::textOf(hours) + ":" + inputs::textOf(minutes); }

    Widget hours = nullptr, minutes = nullptr, up = nullptr, down = nullptr;
    GuiTimeInput *input = nullptr;
};

TEST_F(TimeInputTest, TheHandleStartsOnTheHoursFieldWithDefaultLimits) {
    EXPECT_EQ(input->wHours, hours);
    EXPECT_EQ(input->wMinutes, minutes);
    EXPECT_EQ(input->wUp, up);
    EXPECT_EQ(input->wDown, down);
    EXPECT_EQ(input->wCurrent, hours);
    EXPECT_EQ(input->iMaxHours, 0);
    EXPECT_EQ(input->iMaxMinutes, 0);
    EXPECT_EQ(input->iMinHours, 0);
    EXPECT_EQ(input->iMinMinutes, 0);
    EXPECT_EQ(shown(), ":") << "managing writes no field";
    show(10, 20);
    xt::click(up);
    EXPECT_EQ(shown(), "11:20");
}

TEST_F(TimeInputTest, TheHoursStopAt23AndTheMinutesDoNotCarry) {
    show(23, 59);
    xt::focus(hours);
    xt::click(up);
    EXPECT_EQ(shown(), "23:59");
    EXPECT_EQ(bells.count(), 1);
    xt::focus(minutes);
    xt::click(up);
    EXPECT_EQ(shown(), "23:59");
    EXPECT_EQ(bells.count(), 2);
    show(0, 0);
    xt::focus(minutes);
    xt::click(down);
    EXPECT_EQ(shown(), "00:00");
}

TEST_F(TimeInputTest, UpperLimitsStopEachFieldOnItsOwn) {
    GuiTimeInputSetMaxTime(input, 17, 30);
    EXPECT_EQ(input->iMaxHours, 17);
    EXPECT_EQ(input->iMaxMinutes, 30);
    show(16, 29);
    EXPECT_EQ(shown(), "16:29") << "a new limit does not touch the fields";
    xt::focus(hours);
    xt::click(up);
    xt::click(up);
    EXPECT_EQ(inputs::textOf(hours), "17");
    EXPECT_EQ(bells.count(), 1);
    xt::focus(minutes);
    xt::click(up);
    xt::click(up);
    EXPECT_EQ(inputs::textOf(minutes), "30");
    EXPECT_EQ(bells.count(), 2);

    show(9, 30);
    xt::focus(minutes);
    xt::click(up);
    EXPECT_EQ(shown(), "09:30") << "the minute limit holds in every hour";
}

TEST_F(TimeInputTest, LowerLimitsStopStepsAndChecks) {
    GuiTimeInputSetMinTime(input, 8, 15);
    show(8, 16);
    xt::focus(hours);
    xt::click(down);
    EXPECT_EQ(inputs::textOf(hours), "08");
    xt::focus(minutes);
    xt::click(down);
    xt::click(down);
    EXPECT_EQ(inputs::textOf(minutes), "15");
    retype(hours, "3");
    leaveField();
    EXPECT_EQ(inputs::textOf(hours), "08");
}

TEST_F(TimeInputTest, ATypedValueInRangeStaysAsTypedAndSteppingWritesTwoDigits) {
    show(12, 0);
    retype(hours, "7");
    leaveField();
    EXPECT_EQ(inputs::textOf(hours), "7");
    EXPECT_EQ(bells.count(), 0);
    xt::focus(hours);
    xt::click(up);
    EXPECT_EQ(inputs::textOf(hours), "08");
}

TEST_F(TimeInputTest, ATypedValueOutOfRangeIsClampedWithABellOnLeaving) {
    show(12, 0);
    retype(minutes, "75");
    leaveField();
    EXPECT_EQ(inputs::textOf(minutes), "59");
    EXPECT_EQ(bells.count(), 1);
}

TEST_F(TimeInputTest, SetShowsOutOfRangeValuesAsZero) {
    GuiTimeInputSet(input, 24, -5);
    EXPECT_EQ(shown(), "00:00");
    GuiTimeInputSet(input, -1, 60);
    EXPECT_EQ(shown(), "00:00");
    GuiTimeInputSet(input, 23, 59);
    EXPECT_EQ(shown(), "23:59");
}

TEST_F(TimeInputTest, ShowsTheUtcTimeOfDayOfATimeValueAndReadsItBack) {
    GuiTimeInputSetTimeT(input, 9 * kHour + 5 * kMinute);
    EXPECT_EQ(shown(), "09:05");
    const int32_t someUtcMidnight = 19800 * 24 * kHour;
    GuiTimeInputSetTimeT(input, someUtcMidnight + 9 * kHour + 5 * kMinute + 59);
    EXPECT_EQ(shown(), "09:05");
    int32_t t = 0, h = 0, m = 0;
    EXPECT_EQ(GuiTimeInputGetTimeT(&t, input), 1);
    EXPECT_EQ(t, 9 * kHour + 5 * kMinute);
    EXPECT_EQ(GuiTimeInputGetHours(&h, input), 1);
    EXPECT_EQ(GuiTimeInputGetMinutes(&m, input), 1);
    EXPECT_EQ(h, 9);
    EXPECT_EQ(m, 5);
}

TEST_F(TimeInputTest, EveryChangeIsReported) {
    show(10, 10);
    Reports reports;
    GuiAddTimeInputCallback(input, Reports::onValue, &reports);
    xt::focus(minutes);
    xt::click(down);
    GuiTimeInputSet(input, 14, 45);
    using P = std::pair<int32_t, int32_t>;
    EXPECT_EQ(reports.times, (std::vector<P>{{10, 9}, {14, 9}, {14, 45}}));
}

TEST_F(TimeInputTest, SensitivityCoversAllFourWidgets) {
    GuiTimeInputSetSensitive(input, 0);
    for (Widget w : {hours, minutes, up, down}) EXPECT_FALSE(XtIsSensitive(w));
    GuiTimeInputSetSensitive(input, 1);
    for (Widget w : {hours, minutes, up, down}) EXPECT_TRUE(XtIsSensitive(w));
}

TEST_F(TimeInputTest, DestroyWhileAFieldHasTheFocusTakesTheWidgetsWithIt) {
    xt::focus(minutes);
    inputs::DestroyCounter destroyed;
    destroyed.watch({hours, minutes, up, down});
    GuiTimeInputDestroy(input);
    input = nullptr;
    xt::pump();
    EXPECT_EQ(destroyed.count(), 4);
}

/* The widgets go when the dispatch ends, after the record is freed, with the focus
** still in one of them. */
TEST_F(TimeInputTest, DestroyFromACallbackOfAFocusedFieldReachesNoFreedRecord) {
    auto close = [](Widget, XtPointer data, XtPointer) {
        auto **slot = static_cast<GuiTimeInput **>(data);
        GuiTimeInputDestroy(*slot);
        *slot = nullptr;
    };
    XtAddCallback(minutes, XmNactivateCallback, close, &input);
    xt::focus(minutes);
    xt::key(XK_Return);
    EXPECT_EQ(input, nullptr);
}

/* Outside an event dispatch the widgets go at once: the set must not write the minutes
** into a destroyed field, nor report them, after the hours' report destroyed the input. */
TEST_F(TimeInputTest, DestroyFromTheReportOfASetEndsTheSetAndItsReports) {
    inputs::CloseOnFirstReport<GuiTimeInput, GuiTimeInputDestroy> closer{input};
    GuiAddTimeInputCallback(input, closer.onValue, &closer);
    input = nullptr;
    GuiTimeInputSet(closer.input, 12, 34);
    EXPECT_EQ(closer.input, nullptr);
    EXPECT_EQ(closer.lateReports, 0);
}

TEST_F(TimeInputTest, NullArgumentsAreTracedAndIgnored) {
    GuiTimeInputSetMaxTime(nullptr, 1, 2);
    GuiTimeInputSetMinTime(nullptr, 1, 2);
    GuiTimeInputSet(nullptr, 1, 2);
    GuiTimeInputSetNow(nullptr);
    int32_t value = 3;
    EXPECT_EQ(GuiTimeInputGetHours(&value, nullptr), 0);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(GuiManageTimeInput(hours, nullptr, up, down), nullptr);
    EXPECT_TRUE(hasTrace("GuiTimeInputGetHours: null argument"));
}

} // namespace
