/* test_kx_misc.cpp - strings, time, configuration, paths, passwords and trace. */
#include "kxtest.h"
#include <cctype>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
namespace {
using kxtest::ScopedEnv;
using kxtest::take;
using StrTest = kxtest::PoolTest;
using TimeTest = kxtest::PoolTest;
using PathTest = kxtest::PoolTest;
using SecurityTest = kxtest::PoolTest;
TEST_F(StrTest, DuplicateJoinAndFormatIntoThePool) {
    const uint32_t other = MemPoolCreate("strings");
    char *copy = StrDuplicateIntoPool("hello", other);
    EXPECT_EQ(MemPoolLiveBytes(other), 6);
    EXPECT_EQ(take(copy), "hello");
    EXPECT_EQ(StrDuplicateIntoPool(nullptr, pool()), nullptr);
    const std::string z(5000, 'z');
    const struct { char *text; std::string expected; } rows[] = {
        {StrCat("a", "bc", "", "def", nullptr), "abcdef"},
        {StrCat(nullptr, "x", "y", nullptr), "xy"}, /* a null first counts as empty */
        {StrCat(nullptr, nullptr), ""},
        {StrCat(z.c_str(), "!", z.c_str(), nullptr), z + "!" + z},
    };
    for (const auto &row : rows) EXPECT_EQ(take(row.text), row.expected);
    for (int64_t n : {int64_t{-42}, int64_t{0}, INT64_MIN, INT64_MAX}) {
        char *text = nullptr;
        ASSERT_TRUE(StrFromInteger(&text, n));
        EXPECT_EQ(take(text), std::to_string(n));
    }
    EXPECT_FALSE(StrFromInteger(nullptr, 1));
    EXPECT_EQ(StrSize("abc"), 4) << "the terminator counts";
    EXPECT_EQ(StrSize(""), 1);
    EXPECT_EQ(StrSize(nullptr), 0);
}
TEST_F(StrTest, ComparisonsTreatNullAsEmptyAndBytesAsUnsigned) {
    enum Kind { Exact, NoCase, Range };
    const struct { Kind kind; const char *a, *b; int32_t n; int sign; } rows[] = {
        {Exact, "abc", "abc", 0, 0}, {Exact, "abc", "abd", 0, -1}, {Exact, "b", "abc", 0, 1},
        {Exact, "ab", "abc", 0, -1}, {Exact, nullptr, "", 0, 0}, {Exact, nullptr, "a", 0, -1},
        {Exact, "a", nullptr, 0, 1}, {Exact, "ABC", "abc", 0, -1}, {Exact, "\xe9", "e", 0, 1},
        {NoCase, "Hello", "hELLO", 0, 0}, {NoCase, "apple", "Banana", 0, -1},
        {NoCase, nullptr, "", 0, 0}, {NoCase, "a", nullptr, 0, 1},
        {Range, "ABCdef", "abcXYZ", 3, 0}, {Range, "ABCdef", "abcXYZ", 4, -1},
        {Range, "ab", "AB", 10, 0}, {Range, "ab", "abc", 10, -1}, {Range, "x", "y", 0, 0},
        {Range, nullptr, "", 5, 0},
    };
    for (const auto &r : rows) {
        const int got = r.kind == Exact    ? StrCompare(r.a, r.b)
                        : r.kind == NoCase ? StrCompareNoCase(r.a, r.b)
                                           : StrCompareRangeNoCase(r.a, r.b, r.n);
        EXPECT_EQ((got > 0) - (got < 0), r.sign)
            << r.kind << " " << (r.a ? r.a : "null") << " " << (r.b ? r.b : "null") << " " << r.n;
    }
}
TEST_F(TimeTest, CalendarAndClock) {
    const struct { int32_t month, year, days; } rows[] = {
        {2, 1900, 28}, {2, 2000, 29}, {2, 2024, 29}, {2, 2023, 28}, {0, 2023, 0}, {13, 2023, 0}};
    for (const auto &r : rows) {
        EXPECT_EQ(TimeDaysInMonth(r.month, r.year), r.days) << r.month << "/" << r.year;
        EXPECT_EQ(TimeIsLeapYear(r.year), r.days == 29 || r.year == 2024) << r.year;
    }
    const int32_t lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month)
        EXPECT_EQ(TimeDaysInMonth(month, 2023), lengths[month - 1]) << "month " << month;
    const int32_t before = static_cast<int32_t>(std::time(nullptr)), now = TimeNow();
    EXPECT_GE(now, before);
    EXPECT_LE(now, before + 2);
}
/* The process's time zone for a scope. */
struct ScopedZone : ScopedEnv {
    explicit ScopedZone(const char *zone) : ScopedEnv("TZ", zone) { tzset(); }
    ~ScopedZone() { tzset(); }
};
std::vector<int32_t> fields(const KxTimeStruct &t) {
    return {t.iYear, t.iMonth, t.iDay, t.iHours, t.iMinutes, t.iSeconds, t.iWeekDay, t.iYearDay};
}
TEST_F(TimeTest, BreakdownInUtcAndInLocalTime) {
    ScopedZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    const struct { bool utc; int32_t t; std::vector<int32_t> expected; } rows[] = {
        {true, 1700000000, {2023, 11, 14, 22, 13, 20, 2, 317}},
        {false, 1700000000, {2023, 11, 14, 23, 13, 20, 2, 317}}, /* one hour east in winter */
        {false, 1690000000, {2023, 7, 22, 6, 26, 40, 6, 202}},   /* two hours in summer */
        {false, 1700003600, {2023, 11, 15, 0, 13, 20, 3, 318}},  /* local midnight passed */
    };
    for (const auto &r : rows) {
        KxTimeStruct out{};
        ASSERT_TRUE(r.utc ? TimeToUTCBreakdownStruct(&out, r.t) : TimeToBreakdownStruct(&out, r.t));
        EXPECT_EQ(fields(out), r.expected) << r.t << (r.utc ? " UTC" : " local");
    }
    EXPECT_FALSE(TimeToBreakdownStruct(nullptr, 0));
    EXPECT_FALSE(TimeToUTCBreakdownStruct(nullptr, 0));
}
/* Local midnight in New York; a day past the month's end rolls over (30 February). */
TEST_F(TimeTest, FromDateGivesLocalMidnightRollsDaysOverAndRefusesWhatDoesNotFit) {
    ScopedZone zone("EST5EDT,M3.2.0,M11.1.0");
    const struct { KxDateStruct date; int32_t t; } rows[] = {
        {{2024, 2, 29, 0}, 1709182800}, {{2023, 7, 4, 0}, 1688443200},
        {{1999, 12, 31, 0}, 946616400}, {{2030, 1, 1, 0}, 1893474000},
        {{2023, 2, 30, 0}, 1677733200}, {{2023, 0, 1, 0}, 0}, {{2023, 13, 1, 0}, 0},
        {{2023, -1, 1, 0}, 0}, {{INT32_MIN, 1, 1, 0}, 0}, {{INT32_MAX, 12, INT32_MAX, 0}, 0},
    };
    for (const auto &r : rows) {
        int32_t t = 123;
        EXPECT_EQ(TimeFromDate(&t, &r.date), r.t != 0) << r.date.iYear << "-" << r.date.iMonth;
        EXPECT_EQ(t, r.t) << r.date.iYear << "-" << r.date.iMonth;
    }
    int32_t t = 123;
    EXPECT_FALSE(TimeFromDate(&t, nullptr));
    EXPECT_EQ(t, 0);
    EXPECT_FALSE(TimeFromDate(nullptr, &rows[0].date));
}
/* Whatever is typed into an hour field: a sum past 32 bits is refused (0 stored). */
TEST_F(TimeTest, TimeOfDayIsSecondsAfterMidnightWithin32Bits) {
    const struct { KxTimeOfDayStruct tod; int ok; int32_t seconds; } rows[] = {
        {{13, 45, 30}, 1, 13 * 3600 + 45 * 60 + 30},
        {{596523, 14, 7}, 1, INT32_MAX},
        {{-596523, -14, -8}, 1, INT32_MIN},
        {{999999, 0, 0}, 0, 0},
        {{596523, 14, 8}, 0, 0},
        {{0, INT32_MAX, INT32_MAX}, 0, 0},
        {{INT32_MIN, INT32_MIN, INT32_MIN}, 0, 0},
    };
    for (const auto &row : rows) {
        int32_t t = 123;
        EXPECT_EQ(TimeFromTimeOfDay(&t, &row.tod), row.ok) << row.tod.iHours << "h";
        EXPECT_EQ(t, row.seconds) << row.tod.iHours << "h";
    }
    int32_t t = 0;
    EXPECT_FALSE(TimeFromTimeOfDay(&t, nullptr));
    EXPECT_FALSE(TimeFromTimeOfDay(nullptr, &rows[0].tod));
}
/* A temporary configuration directory named by KX_CONFIG_DIR, holding server.cfg. */
class CfgTest : public kxtest::PoolTest {
protected:
    void SetUp() override {
        PoolTest::SetUp();
        char pattern[] = "/tmp/kxcfgXXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir = pattern;
        env = std::make_unique<ScopedEnv>("KX_CONFIG_DIR", pattern);
        std::ofstream(dir + "/server.cfg")
            << "; the server time\n# another comment\n\nBefore = 3\n[ Orlenda Time ]\n"
               "  Offset From Server   =   -3600  \nBig = 9000000000\nMinus One = -1\n"
               "Plus = +17\nWord = twelve\nTrailing = 12abc\nEmpty =\n[Other]\n"
               "Offset From Server = 99\n";
    }
    void TearDown() override {
        env.reset();
        std::filesystem::remove_all(dir);
        PoolTest::TearDown();
    }
    std::string dir;
    std::unique_ptr<ScopedEnv> env;
};
TEST_F(CfgTest, ReadsIntegersIgnoringCaseAndBlanksOrLeavesTheVariableAlone) {
    const char *f = "server.cfg", *s = "Orlenda Time";
    const struct { const char *file, *section, *key; int found; int64_t value, value64; } rows[] = {
        {f, s, "Offset From Server", 1, -3600, -3600},
        {f, "orlenda time", "OFFSET FROM SERVER", 1, -3600, -3600},
        {f, "Other", "offset from server", 1, 99, 99},
        {f, s, "Minus One", 1, -1, -1},
        {f, s, "Plus", 1, 17, 17},
        {f, s, "Big", 0, 4711, INT64_C(9000000000)}, /* does not fit 32 bits */
        {"absent.cfg", s, "Offset From Server", 0, 4711, 4711},
        {f, "No Such Section", "Offset From Server", 0, 4711, 4711},
        {f, s, "No Such Key", 0, 4711, 4711},
        {f, s, "Before", 0, 4711, 4711}, /* outside the section */
        {f, s, "Word", 0, 4711, 4711},
        {f, s, "Trailing", 0, 4711, 4711},
        {f, s, "Empty", 0, 4711, 4711},
        {nullptr, s, "Plus", 0, 4711, 4711},
        {f, nullptr, "Plus", 0, 4711, 4711},
        {f, s, nullptr, 0, 4711, 4711},
    };
    for (const auto &r : rows) {
        int32_t value = 4711;
        int64_t value64 = 4711;
        SCOPED_TRACE("row " + std::to_string(&r - rows));
        EXPECT_EQ(CfgGetInteger(&value, r.file, r.section, r.key, 0), r.found);
        EXPECT_EQ(value, r.value);
        EXPECT_EQ(CfgGetInt64(&value64, r.file, r.section, r.key, 0), r.value64 != 4711);
        EXPECT_EQ(value64, r.value64);
    }
    EXPECT_EQ(CfgGetInteger(nullptr, f, s, "Plus", 0), 0);
}
TEST_F(CfgTest, FilesAreReadAfreshFromTheConfigOrTheHomeDirectory) {
    int32_t value = 0;
    for (const char *text : {"[S]\nK = 1\n", "[S]\nK = 2\n"}) {
        std::ofstream(dir + "/live.cfg") << text;
        ASSERT_EQ(CfgGetInteger(&value, "live.cfg", "S", "K", 0), 1);
        EXPECT_EQ(value, text[8] - '0');
    }
    ASSERT_EQ(CfgGetInteger(&value, (dir + "/server.cfg").c_str(), "other", "offset from server",
                            0), 1) << "a path with a slash is used as it is";
    EXPECT_EQ(value, 99);
    std::filesystem::create_directory(dir + "/config");
    std::ofstream(dir + "/config/home.cfg") << "[Home]\nValue = 77\n";
    ScopedEnv noDir("KX_CONFIG_DIR", nullptr), home("KX_HOME", dir.c_str());
    EXPECT_EQ(CfgGetInteger(&value, "home.cfg", "Home", "Value", 0), 1);
    EXPECT_EQ(value, 77);
}
TEST_F(PathTest, TheHomeIsKxHomeOrBesideTheLibrary) {
    {
        ScopedEnv home("KX_HOME", "/opt/kx/home");
        EXPECT_STREQ(PathHomeDir(), "/opt/kx/home");
        EXPECT_EQ(take(PathHomeBuild("gui", "bmps", "up.bmp", nullptr)),
                  "/opt/kx/home/gui/bmps/up.bmp");
        EXPECT_EQ(PathHomeBuild("gui", "", "up.bmp", nullptr), nullptr) << "an empty component";
    }
    ScopedEnv home("KX_HOME", nullptr);
    const std::string dir = PathHomeDir() ? PathHomeDir() : "";
    EXPECT_NE(dir.find("xcontrols"), std::string::npos) << dir;
    EXPECT_EQ(dir.front(), '/') << "an absolute directory: " << dir;
    EXPECT_EQ(take(PathHomeBuild("config", nullptr)), dir + "/config");
}
TEST_F(SecurityTest, EncryptionRoundTripsAndHidesTheClearText) {
    const char *clear = "correct horse battery staple";
    char *sealed = nullptr, *again = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, clear, 1234));
    EXPECT_EQ(std::strstr(sealed, "horse"), nullptr);
    for (const char *c = sealed; *c; ++c) EXPECT_TRUE(std::isprint(static_cast<unsigned char>(*c)));
    {
        kxtest::FreedSecrets freed;
        char *opened = SecurityDecryptPassword(sealed, 1234);
        EXPECT_STREQ(opened, clear);
        MemFreeSecret(&opened);
        EXPECT_EQ(freed.bytes, std::string(std::strlen(clear) + 1, '\0')) << "not wiped";
    }
    EXPECT_EQ(SecurityDecryptPassword(sealed, 1235), nullptr) << "another key";
    ASSERT_TRUE(SecurityEncryptPassword(&again, clear, 1234));
    EXPECT_STRNE(sealed, again) << "a fresh nonce every time";
    MemFreeInternal(&again);
    std::string tampered = sealed;
    tampered[tampered.size() / 2] = tampered[tampered.size() / 2] == 'A' ? 'B' : 'A';
    MemFreeInternal(&sealed);
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, nullptr, 0));
    EXPECT_EQ(take(SecurityDecryptPassword(sealed, 0)), "") << "null seals as empty";
    MemFreeInternal(&sealed);
    EXPECT_FALSE(SecurityEncryptPassword(nullptr, "x", 1));
    for (const char *bad : {tampered.c_str(), static_cast<const char *>(nullptr), "", "plain text",
                            "kx1:", "kx1:!!!not base64!!!", "kx1:AAAA"})
        EXPECT_EQ(SecurityDecryptPassword(bad, 1234), nullptr) << (bad ? bad : "null");
}
/* KX_TRACE is read at the first line of a process, so the test runs in a process of its
** own (the threadsafe style starts the test binary again for the statement). */
TEST(TraceEnvironment, KxTraceChoosesTheSinkAtTheFirstLineUntilOverridden) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            setenv("KX_TRACE", "stderr", 1);
            TraceMessage("GUI        ", 4, 1, 1, "from the environment");
            setenv("KX_TRACE", "off", 1);
            TraceMessage("GUI        ", 4, 2, 1, "read once");
            TraceSetSink("off");
            std::exit(TraceMessage("GUI        ", 4, 3, 1, "overridden") == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0),
        "^GUI          4\\.1 L1 from the environment\nGUI          4\\.2 L1 read once\n$");
}
class TraceTest : public kxtest::PoolTest {
protected:
    void TearDown() override {
        TraceSetSink("off");
        PoolTest::TearDown();
    }
};
TEST_F(TraceTest, TheHookGetsEveryLineWhateverTheSinkAndNoSinkCostsNothing) {
    TraceSetSink("off");
    EXPECT_FALSE(TraceIsOn()) << "no sink and no hook: a line would go nowhere";
    {
        kxtest::TraceLines captured;
        EXPECT_TRUE(TraceIsOn());
        EXPECT_EQ(TraceMessage("GUI        ", 12, 3, 1, "Failed to load %s", "up.bmp"), 1);
        ASSERT_EQ(captured.lines.size(), 1u);
        EXPECT_EQ(captured.lines[0], "GUI        |12|3|1|Failed to load up.bmp");
    }
    EXPECT_EQ(TraceMessage("GUI", 1, 0, 0, "nobody hears this"), 0);
    TraceSetSink("stderr");
    EXPECT_TRUE(TraceIsOn());
    testing::internal::CaptureStderr();
    TraceMessage("GUI        ", 5, 0, 0, "to stderr");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "GUI          5.0 L0 to stderr\n");
    TraceSetSink(nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TraceMessage("GUI        ", 6, 0, 0, "silent"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "a null sink silences";
}
TEST_F(TraceTest, AFileSinkGetsFormattedLinesOfAnyLength) {
    const std::string path = kxtest::tempFile(), longText(10000, 'x');
    TraceSetSink(("file:" + path).c_str());
    EXPECT_EQ(TraceMessage("GUIPWD     ", 757, 0, -1, "Remove Timer %d", 4), 1);
    EXPECT_EQ(TraceMessage("GUI        ", 8, 2, 4, "%s", longText.c_str()), 1);
    std::ifstream in(path);
    std::string first, second;
    std::getline(in, first);
    std::getline(in, second);
    EXPECT_EQ(first, "GUIPWD       757.0 L-1 Remove Timer 4");
    EXPECT_EQ(second, "GUI          8.2 L4 " + longText);
    std::remove(path.c_str());
}
} // namespace
