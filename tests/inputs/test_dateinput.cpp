/* test_dateinput.cpp - the date input under real pointer, key and focus input. */
#include <vector>

#include "inputs_support.h"
#include "kx.h"
#include "xcontrols/guidateinput.h"

namespace {

struct Date {
    int32_t year, month, day;
    bool operator==(const Date &o) const {
        return year == o.year && month == o.month && day == o.day;
    }
};

std::ostream &operator<<(std::ostream &out, const Date &d) {
    return out << d.year << "-" << d.month << "-" << d.day;
}

int32_t timeOf(int32_t year, int32_t month, int32_t day) {
    KxDateStruct date{year, month, day, 0};
    int32_t t = 0;
    TimeFromDate(&t, &date);
    return t;
}

/* The dates that the value callback saw, in local time. */
struct Reports {
    std::vector<Date> dates;
    GuiDateInput *from = nullptr;
    static void onValue(GuiDateInput *input, void *data, int32_t *time) {
        auto *self = static_cast<Reports *>(data);
        KxTimeStruct local{};
        TimeToBreakdownStruct(&local, *time);
        self->dates.push_back({local.iYear, local.iMonth, local.iDay});
        self->from = input;
    }
};

class DateInputTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        const inputs::DateWidgets w = dateWidgets();
        day = w.day, month = w.month, year = w.year, up = w.up, down = w.down;
        input = GuiManageDateInput(year, month, day, up, down);
        ASSERT_NE(input, nullptr);
        realize();
    }
    void TearDown() override {
        if (input) GuiDateInputDestroy(input);
        InputsTest::TearDown();
    }
    void show(int32_t y, int32_t m, int32_t d) {
        GuiDateInputSet(input, y, m, d);
        bells.reset();
    }
    int32_t shownMonth() {
        int32_t m = -1;
        EXPECT_EQ(GuiDateInputGetMonth(&m, input), 1);
        return m;
    }
    /* Focuses a field and clicks a button: the click moves the focus to the button. */
    void stepField(Widget f, Widget button) {
        xt::focus(f);
        xt::click(button);
    }

    Widget day = nullptr, month = nullptr, year = nullptr, up = nullptr, down = nullptr;
    GuiDateInput *input = nullptr;
};

TEST_F(DateInputTest, TheHandleRecordsTheWidgetsAndStartsOnTheDayField) {
    EXPECT_EQ(input->wYear, year);
    EXPECT_EQ(input->wMonth, month);
    EXPECT_EQ(input->wDay, day);
    EXPECT_EQ(input->wUp, up);
    EXPECT_EQ(input->wDown, down);
    EXPECT_EQ(input->wCurrent, day);
    EXPECT_EQ(input->fnCallback, nullptr);
    EXPECT_EQ(inputs::textOf(year), "") << "managing writes no field";

    show(2024, 5, 10);
    xt::click(up);
    EXPECT_EQ(inputs::textOf(day), "11") << "a new input steps the day field";
    EXPECT_EQ(inputs::textOf(month), "May");
    EXPECT_EQ(inputs::textOf(year), "2024");
}

TEST_F(DateInputTest, ShowsATimeValueAsLocalDateAndReadsItBack) {
    GuiDateInputSetTimeT(input, timeOf(2024, 3, 7) + 13 * 3600);
    EXPECT_EQ(inputs::textOf(year), "2024");
    EXPECT_EQ(inputs::textOf(month), "Mar");
    EXPECT_EQ(inputs::textOf(day), "07");
    EXPECT_EQ(shownMonth(), 3);
    int32_t t = 0, y = 0, d = 0;
    EXPECT_EQ(GuiDateInputGetTimeT(&t, input), 1);
    EXPECT_EQ(t, timeOf(2024, 3, 7)) << "read back as the local midnight of the date";
    EXPECT_EQ(GuiDateInputGetYear(&y, input), 1);
    EXPECT_EQ(GuiDateInputGetDay(&d, input), 1);
    EXPECT_EQ(y, 2024);
    EXPECT_EQ(d, 7);
}

TEST_F(DateInputTest, ASetReportsOncePerFieldAndTheMonthReportSeesTheOldNumber) {
    show(2024, 1, 10);
    Reports reports;
    GuiAddDateInputCallback(input, Reports::onValue, &reports);
    GuiDateInputSet(input, 2023, 5, 20);
    EXPECT_EQ(reports.dates, (std::vector<Date>{{2023, 1, 10}, {2023, 1, 10}, {2023, 5, 20}}));
    EXPECT_EQ(reports.from, input);
}

TEST_F(DateInputTest, SteppingTheMonthDownFrom31MarchPullsTheDayToTheEndOfFebruary) {
    show(2024, 3, 31);
    stepField(month, down);
    EXPECT_EQ(inputs::textOf(month), "Feb");
    EXPECT_EQ(shownMonth(), 2);
    EXPECT_EQ(inputs::textOf(day), "29") << "2024 is a leap year";
    EXPECT_EQ(bells.count(), 1);

    show(2023, 3, 31);
    stepField(month, down);
    EXPECT_EQ(inputs::textOf(day), "28");
    EXPECT_EQ(bells.count(), 1);
}

TEST_F(DateInputTest, SteppingTheYearOutOfALeapYearPullsThe29thBack) {
    show(2024, 2, 29);
    stepField(year, up);
    EXPECT_EQ(inputs::textOf(year), "2025") << "stepped years are plain decimals";
    EXPECT_EQ(inputs::textOf(day), "28");
}

TEST_F(DateInputTest, TheYearStopsAt3000And1900WithABell) {
    show(3000, 6, 15);
    stepField(year, up);
    EXPECT_EQ(inputs::textOf(year), "3000");
    EXPECT_EQ(bells.count(), 1);

    show(1900, 6, 15);
    stepField(year, down);
    EXPECT_EQ(inputs::textOf(year), "1900");
    EXPECT_EQ(bells.count(), 1);
}

TEST_F(DateInputTest, TheMonthDoesNotWrapIntoTheNextYear) {
    show(2024, 12, 5);
    stepField(month, up);
    EXPECT_EQ(inputs::textOf(month), "Dec");
    EXPECT_EQ(shownMonth(), 12);
    EXPECT_EQ(inputs::textOf(year), "2024");
    show(2024, 1, 5);
    stepField(month, down);
    EXPECT_EQ(inputs::textOf(month), "Jan");
    EXPECT_EQ(shownMonth(), 1);
}

TEST_F(DateInputTest, ATypedMonthNameIsParsedWhenTheFieldLosesTheFocus) {
    show(2024, 4, 5);
    retype(month, "oct");
    leaveField();
    EXPECT_EQ(inputs::textOf(month), "Oct");
    EXPECT_EQ(shownMonth(), 10);

    retype(month, "x");
    leaveField();
    EXPECT_EQ(inputs::textOf(month), "Oct") << "an unknown name brings the previous one back";
    EXPECT_EQ(shownMonth(), 10);
}

TEST_F(DateInputTest, AMonthNameIsMatchedWholeFirstThenByItsFirstLetter) {
    show(2024, 4, 5);
    const std::vector<std::pair<const char *, int32_t>> cases{
        {"AUG", 8}, {"j", 1}, {"jun", 6}, {"Mxyz", 3}, {"a", 4}, {"s", 9}, {"december", 12}};
    for (const auto &[typed, expected] : cases) {
        retype(month, typed);
        leaveField();
        EXPECT_EQ(shownMonth(), expected) << typed;
    }
}

TEST_F(DateInputTest, ATypedDayBeyondTheMonthIsClampedButOneInRangeStaysAsTyped) {
    show(2024, 4, 10);
    retype(day, "45");
    leaveField();
    EXPECT_EQ(inputs::textOf(day), "30");
    EXPECT_EQ(bells.count(), 1);

    retype(day, "5");
    leaveField();
    EXPECT_EQ(inputs::textOf(day), "5") << "no leading zero when nothing was clamped";
    stepField(day, up);
    EXPECT_EQ(inputs::textOf(day), "06") << "stepping writes two digits";
}

TEST_F(DateInputTest, AYearThatIsNoNumberBecomes1900) {
    show(2024, 4, 10);
    retype(year, "abcd");
    leaveField();
    EXPECT_EQ(inputs::textOf(year), "1900");
}

TEST_F(DateInputTest, MonthZeroShowsBadAndOutOfRangeMonthsAreTraced) {
    show(2024, 0, 1);
    EXPECT_EQ(inputs::textOf(month), "BAD");
    EXPECT_EQ(shownMonth(), 0);
    show(2024, 13, 1);
    EXPECT_EQ(inputs::textOf(month), "BAD");
    EXPECT_TRUE(hasTrace("No such month 13"));
}

TEST_F(DateInputTest, TheFocusedFieldBecomesTheCurrentOne) {
    xt::focus(year);
    EXPECT_EQ(input->wCurrent, year);
    xt::click(down);
    EXPECT_EQ(input->wCurrent, year) << "the buttons leave the current field alone";
    xt::focus(month);
    EXPECT_EQ(input->wCurrent, month);
}

TEST_F(DateInputTest, ReportsFollowSteppingAndTyping) {
    show(2024, 4, 10);
    Reports reports;
    GuiAddDateInputCallback(input, Reports::onValue, &reports);
    stepField(day, up);
    ASSERT_FALSE(reports.dates.empty());
    EXPECT_EQ(reports.dates.back(), (Date{2024, 4, 11}));
    retype(year, "2030");
    EXPECT_EQ(reports.dates.back(), (Date{2030, 4, 11})) << "each typed key reports";
}

TEST_F(DateInputTest, SensitivityCoversAllFiveWidgets) {
    GuiDateInputSetSensitive(input, 0);
    for (Widget w : {day, month, year, up, down}) EXPECT_FALSE(XtIsSensitive(w));
    GuiDateInputSetSensitive(input, 1);
    for (Widget w : {day, month, year, up, down}) EXPECT_TRUE(XtIsSensitive(w));
}

TEST_F(DateInputTest, DestroyWhileAFieldHasTheFocusTakesTheWidgetsWithIt) {
    show(2024, 4, 10);
    xt::focus(month);
    inputs::DestroyCounter destroyed;
    destroyed.watch({day, month, year, up, down});
    GuiDateInputDestroy(input);
    input = nullptr;
    xt::pump();
    EXPECT_EQ(destroyed.count(), 5);
    xt::focus(spare());
    xt::type("12");
    EXPECT_EQ(inputs::textOf(spare()), "12") << "the shell goes on working";
}

/* A client that closes the input from a callback of its own field: the widgets are only
** destroyed when the dispatch ends, after the record is freed, while the focus is still
** in one of them. */
TEST_F(DateInputTest, DestroyFromACallbackOfAFocusedFieldReachesNoFreedRecord) {
    show(2024, 4, 10);
    auto close = [](Widget, XtPointer data, XtPointer) {
        auto **slot = static_cast<GuiDateInput **>(data);
        GuiDateInputDestroy(*slot);
        *slot = nullptr;
    };
    XtAddCallback(day, XmNactivateCallback, close, &input);
    xt::focus(day);
    xt::key(XK_Return);
    EXPECT_EQ(input, nullptr);
    xt::focus(spare());
    xt::type("1");
    EXPECT_EQ(inputs::textOf(spare()), "1");
}

/* The month step goes on to check the day after the report that destroyed the input,
** without reporting the day. */
TEST_F(DateInputTest, DestroyFromTheReportOfAMonthStepWaitsForTheStepToFinish) {
    show(2024, 3, 31);
    inputs::CloseOnFirstReport<GuiDateInput, GuiDateInputDestroy> closer{input};
    GuiAddDateInputCallback(input, closer.onValue, &closer);
    input = nullptr;
    xt::focus(month);
    xt::click(down);
    EXPECT_EQ(closer.input, nullptr);
    EXPECT_EQ(closer.lateReports, 0);
}

/* Outside an event dispatch the widgets go at once: the set must neither write on into
** destroyed fields nor report the month and the day to a client that closed the input. */
TEST_F(DateInputTest, DestroyFromTheReportOfASetEndsTheSetAndItsReports) {
    inputs::CloseOnFirstReport<GuiDateInput, GuiDateInputDestroy> closer{input};
    GuiAddDateInputCallback(input, closer.onValue, &closer);
    input = nullptr;
    GuiDateInputSet(closer.input, 2025, 6, 1);
    EXPECT_EQ(closer.input, nullptr);
    EXPECT_EQ(closer.lateReports, 0);
}

TEST_F(DateInputTest, NullArgumentsAreTracedAndIgnored) {
    int32_t value = 7;
    EXPECT_EQ(GuiDateInputGetTimeT(nullptr, input), 0);
    EXPECT_EQ(GuiDateInputGetYear(&value, nullptr), 0);
    EXPECT_EQ(value, 7);
    GuiDateInputSet(nullptr, 2024, 1, 1);
    GuiDateInputSetNow(nullptr);
    GuiDateInputSetSensitive(nullptr, 0);
    GuiDateInputDestroy(nullptr);
    EXPECT_EQ(GuiManageDateInput(year, month, nullptr, up, down), nullptr);
    EXPECT_TRUE(hasTrace("GuiDateInputGetTimeT: null argument"));
}

} // namespace
