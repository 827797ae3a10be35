/* test_datetime.cpp - the date and the time input under real pointer, key and focus input,
** and what they take from files: "now" is the server's time, from the offset stored in a
** real configuration file, and the month names come from the message catalogue. */
#include "inputs_support.h"
#include <cstdio>
#include <fstream>
#include <functional>
#include <set>
#include <unistd.h>
#include <vector>
#include "kx.h"
#include "xcontrols/guidateinput.h"
#include "xcontrols/guitimeinput.h"

namespace {
using inputs::textOf;
/* A catalogue with some month names translated and a private configuration directory,
** named to the runtime before main: the names are read once per process. */
const std::string gCatalogue = [] {
    std::string path = "/tmp/xcinputs-months-" + std::to_string(getpid()) + ".txt";
    std::ofstream(path) << "# month names\n757 = FALSCH\n763 = Juni\n767 = Okt\n769 = Dez\n";
    setenv("KX_MESSAGES", path.c_str(), 1);
    return path;
}();
const std::string gConfigDir = [] {
    char pattern[] = "/tmp/xcinputs-XXXXXX";
    setenv("KX_CONFIG_DIR", mkdtemp(pattern), 1);
    return std::string(pattern);
}();
const std::string gTimeFile = gConfigDir + "/timeserver.cfg";

/* A date input (day, month, year) and a time input (hours, minutes) side by side. */
class DateTime : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        makeDate();
        makeTime();
        realize();
    }
    /* Date fields left to right as the plugin screens lay them out: day, month, year. */
    void makeDate() {
        d = {field("day", 2), field("month", 6), field("year", 4), arrow("up", XmARROW_UP),
             arrow("down", XmARROW_DOWN)};
        date = GuiManageDateInput(d.year, d.month, d.day, d.up, d.down);
    }
    void makeTime() {
        t = {field("hours", 2), field("minutes", 2), arrow("up", XmARROW_UP),
             arrow("down", XmARROW_DOWN)};
        time = GuiManageTimeInput(t.hours, t.minutes, t.up, t.down);
    }
    void TearDown() override {
        if (date) GuiDateInputDestroy(date);
        if (time) GuiTimeInputDestroy(time);
        InputsTest::TearDown();
    }
    static void TearDownTestSuite() {
        std::remove(gCatalogue.c_str());
        std::remove(gTimeFile.c_str());
        rmdir(gConfigDir.c_str());
    }
    std::string shownDate() {
        return textOf(d.day) + " " + textOf(d.month) + " " + textOf(d.year);
    }
    std::string shownTime() { return textOf(t.hours) + ":" + textOf(t.minutes); }
    /* Destroys the date or the time input, as a client does from a callback of a field. */
    static void closeInput(Widget, XtPointer self, XtPointer) {
        auto *test = static_cast<DateTime *>(self);
        if (test->closingDate) GuiDateInputDestroy(test->date), test->date = nullptr;
        else GuiTimeInputDestroy(test->time), test->time = nullptr;
    }
    bool closingDate = true;
    struct { Widget day, month, year, up, down; } d;
    struct { Widget hours, minutes, up, down; } t;
    GuiDateInput *date = nullptr;
    GuiTimeInput *time = nullptr;
};

/* Each row sets a value, retypes a field and leaves it or focuses it, and clicks a button;
** then the control shows `expected` and the server has rung `bells`. Typed month names match
** a whole name (the catalogue's where it has one), else the English name's first letter. */
TEST_F(DateTime, SteppingAndTypingStayInRange) {
    auto D = [this](int y, int m, int dd) { return [=] { GuiDateInputSet(date, y, m, dd); }; };
    auto T = [this](int h, int m) { return [=] { GuiTimeInputSet(time, h, m); }; };
    struct Row { std::function<void()> set; Widget field, button; const char *typed, *expected;
                 int bells; };
    const Row rows[] = {
        {D(2024, 5, 10), nullptr, d.up, nullptr, "11 May 2024", 0},  // a new input steps the day
        {D(2024, 3, 31), d.month, d.down, nullptr, "29 Feb 2024", 1},  // the day pulled back
        {D(2024, 2, 29), d.year, d.up, nullptr, "28 Feb 2025", 1},
        {D(2024, 12, 5), d.month, d.up, nullptr, "05 Dez 2024", 0},  // no wrap into next year
        {D(2024, 4, 10), d.day, nullptr, "45", "30 Apr 2024", 1},
        {D(2024, 4, 10), d.day, d.up, "5", "06 Apr 2024", 0},  // stepping writes two digits
        {D(2024, 4, 5), d.month, nullptr, "AUG", "05 Aug 2024", 0},  // a whole name, any case
        {[] {}, d.month, nullptr, "juni", "05 Juni 2024", 0},  // as the catalogue has it
        {[] {}, d.month, nullptr, "jxyz", "05 Jan 2024", 0},  // else the first letter
        {[] {}, d.month, nullptr, "december", "05 Dez 2024", 0},
        {[] {}, d.month, nullptr, "xyz", "05 Dez 2024", 0},  // an unknown name: as it was
        {D(2024, 13, 1), nullptr, nullptr, nullptr, "01 FALSCH 2024", 0},
        {T(23, 59), t.hours, t.up, nullptr, "23:59", 1},
        {T(12, 0), t.hours, t.up, "7", "08:00", 0},
        {T(12, 0), t.minutes, nullptr, "75", "12:59", 1},
        {T(24, -5), nullptr, nullptr, nullptr, "00:00", 0},  // a set out of range shows zero
        {[this] { GuiTimeInputSetMaxTime(time, 17, 30), GuiTimeInputSet(time, 17, 29); },
         t.hours, t.up, nullptr, "17:29", 1},
        {[this] { GuiTimeInputSetMinTime(time, 8, 15), GuiTimeInputSet(time, 9, 0); },
         t.hours, nullptr, "3", "08:00", 1},
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
    EXPECT_TRUE(hasTrace("No such month 13"));
}

/* The date is the local date of a time value, read back as its local midnight; the time
** is the UTC time of day. Sensitivity covers all the widgets of each. */
TEST_F(DateTime, TimeValuesAndSensitivity) {
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
    int32_t y = 0, m = 0, day = 0, hours = 0;
    EXPECT_EQ(GuiDateInputGetYear(&y, date) + GuiDateInputGetMonth(&m, date) +
              GuiDateInputGetDay(&day, date) + GuiTimeInputGetHours(&hours, time), 4);
    EXPECT_EQ(std::make_tuple(y, m, day, hours), std::make_tuple(2024, 3, 7, 9));
    for (int on : {0, 1}) {
        GuiDateInputSetSensitive(date, on);
        GuiTimeInputSetSensitive(time, on);
        for (Widget w : {d.day, d.month, d.year, d.up, d.down, t.hours, t.minutes, t.up, t.down})
            EXPECT_EQ(XtIsSensitive(w), on) << XtName(w);
    }
}

/* A date set reports once per field (the month's report still sees the old month); steps
** and each typed key report too. */
TEST_F(DateTime, EveryChangeIsReported) {
    static std::vector<std::string> seen;
    GuiDateInputSet(date, 2024, 1, 10);
    GuiAddDateInputCallback(date, [](GuiDateInput *, void *, int32_t *v) {
        KxTimeStruct l{};
        TimeToBreakdownStruct(&l, *v);
        seen.push_back(std::to_string(l.iYear) + "-" + std::to_string(l.iMonth) + "-" +
                       std::to_string(l.iDay));
    }, nullptr);
    GuiDateInputSet(date, 2023, 5, 20);
    xt::focus(d.day);
    xt::click(d.up);
    EXPECT_EQ(seen, (std::vector<std::string>{"2023-1-10", "2023-1-10", "2023-5-20", "2023-5-21"}));
    retype(d.year, "2030");
    EXPECT_EQ(seen.back(), "2030-5-21") << "each typed key reports";
}

/* The file is read afresh on every call: a stored offset (local minus server, in ms) shifts
** "now" and is traced; without a usable one (no file, a value wider than 32 bits) the local
** clock is shown with a warning. The date input traces under its own numbers. */
TEST_F(DateTime, TheStoredOffsetShiftsNow) {
    struct Row { bool inDate; const char *offset; int32_t shift, msgNo; const char *trace; };
    const Row rows[] = {
        {false, "3600000", -3600, 523, "OrlTime delta = 3600000"},
        {true, "86400000", -86400, 504, "OrlTime delta = 86400000"},
        {false, "4294967296000", 0, 522, "Cannot get OrlTime - falling back to TimeNow()"},
        {true, nullptr, 0, 503, "Cannot get OrlTime - falling back to TimeNow()"}};
    for (const Row &r : rows) {
        if (r.offset) std::ofstream(gTimeFile) << "[Orlenda Time]\nOffset From Server = "
                                               << r.offset << "\n";
        else std::remove(gTimeFile.c_str());
        /* The clock may tick over during the call: "now" at either side counts. */
        auto shown = [&] { return r.inDate ? shownDate() : shownTime(); };
        auto shownAt = [&](int32_t when) {
            r.inDate ? GuiDateInputSetTimeT(date, when) : GuiTimeInputSetTimeT(time, when);
            return shown();
        };
        clearTraces();
        const int32_t before = TimeNow();
        r.inDate ? GuiDateInputSetNow(date) : GuiTimeInputSetNow(time);
        const std::string now = shown();
        EXPECT_TRUE(now == shownAt(before + r.shift) || now == shownAt(TimeNow() + r.shift))
            << "row " << &r - rows << " shows " << now;
        std::set<std::pair<int32_t, std::string>> lines;
        for (const xt::TraceLine &l : traces()) lines.emplace(l.msgNo, l.text);
        EXPECT_EQ(lines.count({r.msgNo, r.trace}), 1u) << "row " << &r - rows;
    }
}
/* Destroying either input while one of its fields has the focus, from a callback of that
** field, or from the input's own report of a step or a set, takes its widgets with it,
** reaches no freed record and reports nothing more; the shell goes on working. */
TEST_F(DateTime, DestroyFromAnywhereTakesTheWidgetsAndReportsNoMore) {
    for (int way = 0; way < 8; ++way) {
        closingDate = way < 4;
        inputs::CloseOnFirstReport<GuiDateInput, GuiDateInputDestroy> dateCloser{date};
        inputs::CloseOnFirstReport<GuiTimeInput, GuiTimeInputDestroy> timeCloser{time};
        int destroyed = 0;
        if (closingDate) inputs::countDestroys(&destroyed, {d.day, d.month, d.year, d.up, d.down});
        else inputs::countDestroys(&destroyed, {t.hours, t.minutes, t.up, t.down});
        GuiDateInputSet(date, 2024, 3, 31);
        GuiTimeInputSet(time, 0, 0);
        xt::focus(closingDate ? d.month : t.minutes);
        if (way % 4 == 0) closeInput(nullptr, this, nullptr);
        if (way % 4 == 1) {
            XtAddCallback(closingDate ? d.month : t.minutes, XmNactivateCallback, closeInput, this);
            xt::key(XK_Return);
        }
        if (way % 4 >= 2 && closingDate)
            GuiAddDateInputCallback(date, dateCloser.onValue, &dateCloser), date = nullptr;
        else if (way % 4 >= 2)
            GuiAddTimeInputCallback(time, timeCloser.onValue, &timeCloser), time = nullptr;
        if (way % 4 == 2) xt::click(closingDate ? d.down : t.down);  // a step goes on checking
        if (way == 3) GuiDateInputSet(dateCloser.input, 2025, 6, 1);
        if (way == 7) GuiTimeInputSet(timeCloser.input, 12, 34);
        xt::pump();
        EXPECT_EQ(destroyed, closingDate ? 5 : 4) << "way " << way;
        xt::focus(spare);
        xt::type("1");
        closingDate ? makeDate() : makeTime();
        xt::pump();
    }
    EXPECT_EQ(textOf(spare), "11111111");
    GuiDateInputDestroy(nullptr);
    GuiTimeInputDestroy(nullptr);
}

} // namespace
