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
/* A catalogue with some month names translated, named by KX_MESSAGES before main: the
** names are read once per process. */
const std::string gCatalogue = [] {
    std::string path = "/tmp/xcinputs-months-" + std::to_string(getpid()) + ".txt";
    std::ofstream(path) << "# month names\n757 = FALSCH\n763 = Juni\n767 = Okt\n769 = Dez\n";
    setenv("KX_MESSAGES", path.c_str(), 1);
    return path;
}();
/* A private configuration directory, named to the runtime by KX_CONFIG_DIR. */
class ConfigDir {
public:
    ConfigDir() : path_(mkdtemp(pattern_)) { setenv("KX_CONFIG_DIR", path_.c_str(), 1); }
    ~ConfigDir() {
        write(nullptr);
        rmdir(path_.c_str());
        unsetenv("KX_CONFIG_DIR");
    }
    ConfigDir(const ConfigDir &) = delete;
    /* Writes the time service's file, or removes it for null. */
    void write(const char *content) {
        if (content == nullptr) unlink(file().c_str());
        else std::ofstream(file()) << content;
    }
private:
    std::string file() const { return path_ + "/timeserver.cfg"; }
    char pattern_[21] = "/tmp/xcinputs-XXXXXX";
    std::string path_;
};

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
    static void TearDownTestSuite() { std::remove(gCatalogue.c_str()); }
    /* "Now" in the date or the time input, and what it may be at `shift` seconds from the
    ** local clock (the clock may tick over during the call: both sides count). */
    void expectNowShifted(bool inDate, int32_t shift) {
        auto shownAt = [inDate](int32_t when) {
            KxTimeStruct s{};
            if (!inDate) return TimeToUTCBreakdownStruct(&s, when), ymd(0, s.iHours, s.iMinutes);
            return TimeToBreakdownStruct(&s, when), ymd(s.iYear, s.iMonth, s.iDay);
        };
        const int32_t before = TimeNow();
        inDate ? GuiDateInputSetNow(date) : GuiTimeInputSetNow(time);
        const int32_t after = TimeNow();
        int32_t y = 0, m = 0, dd = 0;
        if (inDate) {
            GuiDateInputGetYear(&y, date), GuiDateInputGetMonth(&m, date);
            GuiDateInputGetDay(&dd, date);
        }
        const std::string shown = inDate ? ymd(y, m, dd)
                                         : ymd(0, std::stoi(textOf(t.hours)),
                                               std::stoi(textOf(t.minutes)));
        EXPECT_TRUE(shown == shownAt(before + shift) || shown == shownAt(after + shift))
            << "shown " << shown << ", expected " << shownAt(before + shift);
    }
    static std::string ymd(int y, int m, int dd) {
        return std::to_string(y) + "-" + std::to_string(m) + "-" + std::to_string(dd);
    }
    /* Destroys the date or the time input, as a client does from a callback of a field. */
    static void closeInput(Widget, XtPointer self, XtPointer) {
        auto *test = static_cast<DateTime *>(self);
        if (test->closingDate) GuiDateInputDestroy(test->date), test->date = nullptr;
        else GuiTimeInputDestroy(test->time), test->time = nullptr;
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
    ConfigDir config;
    bool closingDate = true;
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
        {D(3000, 6, 15), d.year, d.up, nullptr, "15 Juni 3000", 1},
        {D(1900, 6, 15), d.year, d.down, nullptr, "15 Juni 1900", 1},
        {D(2024, 12, 5), d.month, d.up, nullptr, "05 Dez 2024", 0},  // no wrap into next year
        {D(2024, 1, 5), d.month, d.down, nullptr, "05 Jan 2024", 0},
        {D(2024, 4, 10), d.day, nullptr, "45", "30 Apr 2024", 1},
        {D(2024, 4, 10), d.day, nullptr, "5", "5 Apr 2024", 0},  // as typed when in range
        {[] {}, d.day, d.up, nullptr, "06 Apr 2024", 0},           // stepping writes two digits
        {D(2024, 4, 10), d.year, nullptr, "abcd", "10 Apr 1900", 1},
        {D(2024, 4, 5), d.month, nullptr, "oct", "05 Okt 2024", 0},
        {[] {}, d.month, nullptr, "x", "05 Okt 2024", 0},  // an unknown name: the previous one
        {D(2024, 0, 1), nullptr, nullptr, nullptr, "01 FALSCH 2024", 0},
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

/* Typed names match a whole name first, then the first letter; the names are those of
** the catalogue where it translates them (Juni, Okt, Dez), the English ones elsewhere and
** for the first letter. */
TEST_F(DateTime, TypedMonthNames) {
    GuiDateInputSet(date, 2024, 4, 5);
    const std::pair<const char *, int32_t> rows[] = {
        {"AUG", 8}, {"j", 1}, {"juni", 6}, {"Mxyz", 3}, {"a", 4}, {"s", 9}, {"december", 12},
        {"okt", 10}, {"d", 12}, {"Oct", 10}};
    for (const auto &[typed, expected] : rows) {
        retype(d.month, typed);
        leaveField();
        EXPECT_EQ(month(), expected) << typed;
    }
    GuiDateInputSet(date, 2024, 13, 1);
    EXPECT_EQ(textOf(d.month), "FALSCH");
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

/* The file is read afresh on every call: a stored offset (local minus server, in ms)
** shifts "now" by whole seconds and is traced; without a usable one (no file, section or
** key, a stored -1, a value wider than 32 bits, which the runtime's read leaves alone)
** the local clock is shown with a warning. The date input traces under its own numbers. */
TEST_F(DateTime, TheStoredOffsetShiftsNow) {
    const std::string fallback = "Cannot get OrlTime - falling back to TimeNow()";
    struct Row { bool inDate; const char *offset, *file; int32_t shift; };
    const Row rows[] = {
        {false, "5000", nullptr, -5}, {false, "-61000", nullptr, 61},
        {false, "3600000", nullptr, -3600}, {false, "999", nullptr, 0},
        {false, "-1999", nullptr, 1}, {true, "86400000", nullptr, -86400},
        {false, "-1", nullptr, 0}, {false, "4294967296000", nullptr, 0},
        {false, nullptr, "[Other]\nOffset From Server = 5000\n", 0},
        {false, nullptr, "[Orlenda Time]\nOther Key = 5000\n", 0},
        {false, nullptr, nullptr, 0}, {true, nullptr, nullptr, 0}};
    for (const Row &r : rows) {
        const std::string offset = r.offset ? r.offset : "";
        const bool stored = !offset.empty() && offset != "-1" && offset.size() < 12;
        config.write(r.offset ? ("# written by the time service\n[Orlenda Time]\n"
                                 "Offset From Server = " + offset + "\n").c_str() : r.file);
        clearTraces();
        expectNowShifted(r.inDate, r.shift);
        std::vector<std::tuple<int32_t, int, std::string>> lines;
        for (const xt::TraceLine &l : traces())
            if (std::set<int32_t>{503, 504, 522, 523}.count(l.msgNo))
                lines.emplace_back(l.msgNo, l.level, l.text);
        const int32_t number = (r.inDate ? 503 : 522) + stored;
        EXPECT_EQ(lines, (decltype(lines){{number, stored ? 0 : -1,
                                           stored ? "OrlTime delta = " + offset : fallback}}))
            << "row " << &r - rows;
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
        inputs::DestroyCounter destroyed;
        if (closingDate) destroyed.watch({d.day, d.month, d.year, d.up, d.down});
        else destroyed.watch({t.hours, t.minutes, t.up, t.down});
        GuiDateInputSet(date, 2024, 3, 31);
        GuiTimeInputSet(time, 0, 0);
        xt::focus(closingDate ? d.month : t.minutes);
        if (way % 4 == 0) closeInput(nullptr, this, nullptr);
        if (way % 4 == 1) {
            XtAddCallback(closingDate ? d.month : t.minutes, XmNactivateCallback, closeInput, this);
            xt::key(XK_Return);
        }
        if (way % 4 >= 2 && closingDate) {
            GuiAddDateInputCallback(date, dateCloser.onValue, &dateCloser), date = nullptr;
        } else if (way % 4 >= 2) {
            GuiAddTimeInputCallback(time, timeCloser.onValue, &timeCloser), time = nullptr;
        }
        if (way % 4 == 2) xt::click(closingDate ? d.down : t.down);  // a step goes on checking
        if (way == 3) GuiDateInputSet(dateCloser.input, 2025, 6, 1);
        if (way == 7) GuiTimeInputSet(timeCloser.input, 12, 34);
        xt::pump();
        EXPECT_EQ(destroyed.count, closingDate ? 5 : 4) << "way " << way;
        EXPECT_EQ(dateCloser.lateReports + timeCloser.lateReports, 0) << "way " << way;
        xt::focus(spare());
        xt::type("1");
        if (closingDate) {
            d = dateWidgets();
            date = GuiManageDateInput(d.year, d.month, d.day, d.up, d.down);
        } else {
            t = timeWidgets();
            time = GuiManageTimeInput(t.hours, t.minutes, t.up, t.down);
        }
        xt::pump();
    }
    EXPECT_EQ(textOf(spare()), "11111111");
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
