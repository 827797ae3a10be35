/* test_datetime.cpp - the date and the time input under real pointer, key and focus input. */
#include "inputs_support.h"
#include <functional>
#include <vector>
#include "kx.h"
#include "xcontrols/guidateinput.h"
#include "xcontrols/guitimeinput.h"

namespace {
using inputs::textOf;

/* A date input (day, month, year) and a time input (hours, minutes) side by side. */
class DateTime : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        d = dateWidgets();
        t = timeWidgets();
        date = GuiManageDateInput(d.year, d.month, d.day, d.up, d.down);
        time = GuiManageTimeInput(t.hours, t.minutes, t.up, t.down);
        realize();
    }
    void TearDown() override {
        if (date) GuiDateInputDestroy(date);
        if (time) GuiTimeInputDestroy(time);
        InputsTest::TearDown();
    }
    std::string shownDate() {
        return textOf(d.day) + " " + textOf(d.month) + " " + textOf(d.year);
    }
    std::string shownTime() { return textOf(t.hours) + ":" + textOf(t.minutes); }
    int32_t month() {
        int32_t m = -1;
        GuiDateInputGetMonth(&m, date);
        return m;
    }
    inputs::DateWidgets d;
    inputs::TimeWidgets t;
    GuiDateInput *date = nullptr;
    GuiTimeInput *time = nullptr;
};

/* Each row sets a value, then steps a field with a button click (the field focused first,
** unless none is named) or retypes it and leaves it; then the control shows `expected`
** and the server has rung `bells`. */
TEST_F(DateTime, SteppingAndTypingStayInRange) {
    auto D = [this](int y, int m, int dd) { return [=] { GuiDateInputSet(date, y, m, dd); }; };
    auto T = [this](int h, int m) { return [=] { GuiTimeInputSet(time, h, m); }; };
    struct Row {
        std::function<void()> set;
        Widget field, button;
        const char *typed, *expected;
        int bells;
    };
    const Row rows[] = {
        {D(2024, 5, 10), nullptr, d.up, nullptr, "11 May 2024", 0},  // a new input steps the day
        {T(10, 20), nullptr, t.up, nullptr, "11:20", 0},              // and the hours
        {D(2024, 3, 31), d.month, d.down, nullptr, "29 Feb 2024", 1},  // the day pulled back
        {D(2023, 3, 31), d.month, d.down, nullptr, "28 Feb 2023", 1},
        {D(2024, 2, 29), d.year, d.up, nullptr, "28 Feb 2025", 1},
        {D(3000, 6, 15), d.year, d.up, nullptr, "15 Jun 3000", 1},
        {D(1900, 6, 15), d.year, d.down, nullptr, "15 Jun 1900", 1},
        {D(2024, 12, 5), d.month, d.up, nullptr, "05 Dec 2024", 0},  // no wrap into next year
        {D(2024, 1, 5), d.month, d.down, nullptr, "05 Jan 2024", 0},
        {D(2024, 4, 10), d.day, nullptr, "45", "30 Apr 2024", 1},
        {D(2024, 4, 10), d.day, nullptr, "5", "5 Apr 2024", 0},  // as typed when in range
        {[] {}, d.day, d.up, nullptr, "06 Apr 2024", 0},           // stepping writes two digits
        {D(2024, 4, 10), d.year, nullptr, "abcd", "10 Apr 1900", 1},
        {D(2024, 4, 5), d.month, nullptr, "oct", "05 Oct 2024", 0},
        {[] {}, d.month, nullptr, "x", "05 Oct 2024", 0},  // an unknown name: the previous one
        {D(2024, 0, 1), nullptr, nullptr, nullptr, "01 BAD 2024", 0},
        {T(23, 59), t.hours, t.up, nullptr, "23:59", 1},
        {T(23, 59), t.minutes, t.up, nullptr, "23:59", 1},  // minutes do not carry
        {T(0, 0), t.minutes, t.down, nullptr, "00:00", 1},
        {T(12, 0), t.hours, nullptr, "7", "7:00", 0},
        {[] {}, t.hours, t.up, nullptr, "08:00", 0},
        {T(12, 0), t.minutes, nullptr, "75", "12:59", 1},
        {T(24, -5), nullptr, nullptr, nullptr, "00:00", 0},  // a set out of range shows zero
        {T(-1, 60), nullptr, nullptr, nullptr, "00:00", 0},
        {[this] { GuiTimeInputSetMaxTime(time, 17, 30), GuiTimeInputSet(time, 17, 29); },
         t.hours, t.up, nullptr, "17:29", 1},
        {T(16, 30), t.minutes, t.up, nullptr, "16:30", 1},  // in every hour
        {[this] { GuiTimeInputSetMinTime(time, 8, 15), GuiTimeInputSet(time, 8, 15); },
         t.minutes, t.down, nullptr, "08:15", 1},
        {T(9, 0), t.hours, nullptr, "3", "08:00", 1},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        const Row &r = rows[i];
        r.set();
        bells.reset();
        if (r.typed) retype(r.field, r.typed), leaveField();
        else if (r.field) xt::focus(r.field);
        if (r.button) xt::click(r.button);
        const bool isTime = std::string(r.expected).find(':') != std::string::npos;
        EXPECT_EQ(isTime ? shownTime() : shownDate(), r.expected) << "row " << i;
        EXPECT_EQ(bells.count(), r.bells) << "row " << i;
    }
}

/* Typed names match a whole name first, then the first letter. */
TEST_F(DateTime, TypedMonthNames) {
    GuiDateInputSet(date, 2024, 4, 5);
    const std::pair<const char *, int32_t> rows[] = {
        {"AUG", 8}, {"j", 1}, {"jun", 6}, {"Mxyz", 3}, {"a", 4}, {"s", 9}, {"december", 12}};
    for (const auto &[typed, expected] : rows) {
        retype(d.month, typed);
        leaveField();
        EXPECT_EQ(month(), expected) << typed;
    }
    GuiDateInputSet(date, 2024, 13, 1);
    EXPECT_EQ(textOf(d.month), "BAD");
    EXPECT_TRUE(hasTrace("No such month 13"));
}

/* The date is the local date of a time value, read back as its local midnight; the time
** is the UTC time of day. */
TEST_F(DateTime, TimeValuesInAndOut) {
    KxDateStruct march7{2024, 3, 7, 0};
    int32_t midnight = 0, value = 0;
    TimeFromDate(&midnight, &march7);
    GuiDateInputSetTimeT(date, midnight + 13 * 3600);
    EXPECT_EQ(shownDate(), "07 Mar 2024");
    EXPECT_EQ(GuiDateInputGetTimeT(&value, date), 1);
    EXPECT_EQ(value, midnight);
    GuiTimeInputSetTimeT(time, 19800 * 86400 + 9 * 3600 + 5 * 60 + 59);
    EXPECT_EQ(shownTime(), "09:05");
    EXPECT_EQ(GuiTimeInputGetTimeT(&value, time), 1);
    EXPECT_EQ(value, 9 * 3600 + 5 * 60);
}

/* A set reports once per field (the month's report still sees the old month); steps and
** each typed key report too. */
TEST_F(DateTime, EveryChangeIsReported) {
    static std::vector<std::string> seen;
    seen.clear();
    GuiDateInputSet(date, 2024, 1, 10);
    GuiTimeInputSet(time, 10, 10);
    GuiAddDateInputCallback(date, [](GuiDateInput *, void *, int32_t *v) {
        KxTimeStruct l{};
        TimeToBreakdownStruct(&l, *v);
        seen.push_back(std::to_string(l.iYear) + "-" + std::to_string(l.iMonth) + "-" +
                       std::to_string(l.iDay));
    }, nullptr);
    GuiAddTimeInputCallback(time, [](GuiTimeInput *, void *, int32_t *v) {
        seen.push_back(std::to_string(*v / 3600 % 24) + ":" + std::to_string(*v / 60 % 60));
    }, nullptr);
    GuiDateInputSet(date, 2023, 5, 20);
    xt::focus(d.day);
    xt::click(d.up);
    xt::focus(t.minutes);
    xt::click(t.down);
    GuiTimeInputSet(time, 14, 45);
    EXPECT_EQ(seen, (std::vector<std::string>{"2023-1-10", "2023-1-10", "2023-5-20", "2023-5-21",
                                              "10:9", "14:9", "14:45"}));
    retype(d.year, "2030");
    EXPECT_EQ(seen.back(), "2030-5-21") << "each typed key reports";
}

TEST_F(DateTime, SensitivityCoversAllWidgets) {
    for (int on : {0, 1}) {
        GuiDateInputSetSensitive(date, on);
        GuiTimeInputSetSensitive(time, on);
        for (Widget w : {d.day, d.month, d.year, d.up, d.down, t.hours, t.minutes, t.up, t.down})
            EXPECT_EQ(XtIsSensitive(w), on) << XtName(w);
    }
}

/* Destroying either input while one of its fields has the focus, from a callback of that
** field, or from the input's own report of a set or a step, takes its widgets with it,
** reaches no freed record and reports nothing more; the shell goes on working. */
TEST_F(DateTime, DestroyFromAnywhereTakesTheWidgetsAndReportsNoMore) {
    using DateCloser = inputs::CloseOnFirstReport<GuiDateInput, GuiDateInputDestroy>;
    using TimeCloser = inputs::CloseOnFirstReport<GuiTimeInput, GuiTimeInputDestroy>;
    auto closeField = [](Widget, XtPointer slot, XtPointer) {
        auto **input = static_cast<GuiDateInput **>(slot);
        GuiDateInputDestroy(*input);
        *input = nullptr;
    };
    for (int way = 0; way < 4; ++way) {
        inputs::DestroyCounter destroyed;
        destroyed.watch({d.day, d.month, d.year, d.up, d.down});
        DateCloser closer{date};
        GuiDateInputSet(date, 2024, 3, 31);
        xt::focus(d.month);
        if (way == 0) GuiDateInputDestroy(date), date = nullptr;
        if (way == 1) XtAddCallback(d.month, XmNactivateCallback, closeField, &date);
        if (way == 1) xt::key(XK_Return);
        if (way >= 2) GuiAddDateInputCallback(date, closer.onValue, &closer), date = nullptr;
        if (way == 2) xt::click(d.down);  // the month step goes on to check the day
        if (way == 3) GuiDateInputSet(closer.input, 2025, 6, 1);
        xt::pump();
        EXPECT_EQ(destroyed.count(), 5) << "way " << way;
        EXPECT_EQ(closer.lateReports, 0) << "way " << way;
        xt::focus(spare());
        xt::type("1");
        d = dateWidgets();
        date = GuiManageDateInput(d.year, d.month, d.day, d.up, d.down);
        xt::pump();
    }
    EXPECT_EQ(textOf(spare()), "1111");
    TimeCloser closer{time};
    GuiAddTimeInputCallback(time, closer.onValue, &closer);
    time = nullptr;
    GuiTimeInputSet(closer.input, 12, 34);
    EXPECT_EQ(closer.input, nullptr);
    EXPECT_EQ(closer.lateReports, 0);
}

TEST_F(DateTime, NullArgumentsAreTracedAndIgnored) {
    int32_t value = 7;
    EXPECT_EQ(GuiDateInputGetTimeT(nullptr, date), 0);
    EXPECT_EQ(GuiDateInputGetYear(&value, nullptr), 0);
    EXPECT_EQ(GuiTimeInputGetHours(&value, nullptr), 0);
    EXPECT_EQ(value, 7);
    GuiDateInputSet(nullptr, 2024, 1, 1);
    GuiDateInputSetNow(nullptr);
    GuiDateInputDestroy(nullptr);
    GuiTimeInputSetMaxTime(nullptr, 1, 2);
    GuiTimeInputSetNow(nullptr);
    EXPECT_EQ(GuiManageDateInput(d.year, d.month, nullptr, d.up, d.down), nullptr);
    EXPECT_EQ(GuiManageTimeInput(t.hours, nullptr, t.up, t.down), nullptr);
    EXPECT_TRUE(hasTrace("GuiDateInputGetTimeT: null argument"));
    EXPECT_TRUE(hasTrace("GuiTimeInputGetHours: null argument"));
}

} // namespace
