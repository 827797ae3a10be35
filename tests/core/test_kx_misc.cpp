/* test_kx_misc.cpp - strings, time, configuration, paths, passwords and trace. */
#include "kxtest.h"
#include <algorithm>
#include <cctype>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
namespace {
using kxtest::ScopedEnv;
using kxtest::take;
using kxtest::Values;
using StrTest = kxtest::PoolTest;
using TimeTest = kxtest::PoolTest;
using MiscTest = kxtest::PoolTest;
TEST_F(StrTest, DuplicateJoinAndFormatIntoThePool) {
    const uint32_t other = MemPoolCreate("strings");
    const std::string z(5000, 'z');
    char *copy = StrDuplicateIntoPool("hello", other), *integers[4] = {};
    EXPECT_EQ(MemPoolLiveBytes(other), 6);
    const int64_t numbers[] = {-42, 0, INT64_MIN, INT64_MAX};
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(StrFromInteger(&integers[i], numbers[i]));
    /* A null first part counts as empty; the terminator counts in a size. */
    const std::vector<std::string> got = {take(copy), take(StrCat("a", "bc", "", "def", nullptr)),
        take(StrCat(nullptr, "x", "y", nullptr)), take(StrCat(nullptr, nullptr)),
        take(StrCat(z.c_str(), "!", z.c_str(), nullptr)), take(integers[0]), take(integers[1]),
        take(integers[2]), take(integers[3]), take(StrDuplicateIntoPool(nullptr, pool()))};
    EXPECT_EQ(got, (std::vector<std::string>{"hello", "abcdef", "xy", "", z + "!" + z, "-42", "0",
        "-9223372036854775808", "9223372036854775807", "<null>"}));
    EXPECT_EQ((Values{StrFromInteger(nullptr, 1), StrSize("abc"), StrSize(""), StrSize(nullptr)}),
              (Values{0, 4, 1, 0}));
}
/* Rows: 'e'xact, 'c'ase ignored, or case ignored in the first n; the sign of the result. */
TEST_F(StrTest, ComparisonsTreatNullAsEmptyAndBytesAsUnsigned) {
    const struct { char kind; const char *a, *b; int32_t n; int sign; } rows[] = {
        {'e', "abc", "abc", 0, 0}, {'e', "abc", "abd", 0, -1}, {'e', "b", "abc", 0, 1},
        {'e', "ab", "abc", 0, -1}, {'e', nullptr, "", 0, 0}, {'e', nullptr, "a", 0, -1},
        {'e', "a", nullptr, 0, 1}, {'e', "ABC", "abc", 0, -1}, {'e', "\xe9", "e", 0, 1},
        {'c', "Hello", "hELLO", 0, 0}, {'c', "apple", "Banana", 0, -1}, {'c', nullptr, "", 0, 0},
        {'c', "a", nullptr, 0, 1}, {'n', "ABCdef", "abcXYZ", 3, 0},
        {'n', "ABCdef", "abcXYZ", 4, -1}, {'n', "ab", "AB", 10, 0}, {'n', "ab", "abc", 10, -1},
        {'n', "x", "y", 0, 0}, {'n', nullptr, "", 5, 0}};
    for (const auto &r : rows) {
        const int got = r.kind == 'e'   ? StrCompare(r.a, r.b)
                        : r.kind == 'c' ? StrCompareNoCase(r.a, r.b)
                                        : StrCompareRangeNoCase(r.a, r.b, r.n);
        EXPECT_EQ((got > 0) - (got < 0), r.sign) << "row " << &r - rows;
    }
}
/* The process's time zone for a scope. */
struct ScopedZone : ScopedEnv {
    explicit ScopedZone(const char *zone) : ScopedEnv("TZ", zone) { tzset(); }
    ~ScopedZone() { tzset(); }
};
TEST_F(TimeTest, CalendarClockAndBreakdownInUtcAndInLocalTime) {
    Values lengths;
    for (int32_t month = 0; month <= 13; ++month) lengths.push_back(TimeDaysInMonth(month, 2023));
    EXPECT_EQ(lengths, (Values{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 0}));
    for (int32_t year : {1900, 2000, 2023, 2024}) {
        const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
        EXPECT_EQ((Values{TimeIsLeapYear(year), TimeDaysInMonth(2, year)}),
                  (Values{leap, 28 + leap}));
    }
    const int32_t before = static_cast<int32_t>(std::time(nullptr)), now = TimeNow();
    EXPECT_TRUE(now >= before && now <= before + 2);
    ScopedZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    /* One hour east of UTC in winter, two in summer; local midnight passed before UTC's. */
    const struct { bool utc; int32_t t; Values expected; } rows[] = {
        {true, 1700000000, {2023, 11, 14, 22, 13, 20, 2, 317}},
        {false, 1700000000, {2023, 11, 14, 23, 13, 20, 2, 317}},
        {false, 1690000000, {2023, 7, 22, 6, 26, 40, 6, 202}},
        {false, 1700003600, {2023, 11, 15, 0, 13, 20, 3, 318}}};
    for (const auto &r : rows) {
        KxTimeStruct o{};
        ASSERT_TRUE(r.utc ? TimeToUTCBreakdownStruct(&o, r.t) : TimeToBreakdownStruct(&o, r.t));
        EXPECT_EQ((Values{o.iYear, o.iMonth, o.iDay, o.iHours, o.iMinutes, o.iSeconds, o.iWeekDay,
                          o.iYearDay}), r.expected) << r.t << (r.utc ? " UTC" : " local");
    }
    EXPECT_EQ((Values{TimeToBreakdownStruct(nullptr, 0), TimeToUTCBreakdownStruct(nullptr, 0)}),
              (Values{0, 0}));
}
/* A date gives local midnight (here New York's), a day past the month's end rolls over
** (30 February); a time of day, seconds after midnight. A result past 32 bits, or a null
** argument, is refused with 0 stored. */
TEST_F(TimeTest, DatesAndTimesOfDayConvertWithin32BitsOrAreRefused) {
    ScopedZone zone("EST5EDT,M3.2.0,M11.1.0");
    const struct { KxDateStruct date; int32_t t; } dates[] = {
        {{2024, 2, 29, 0}, 1709182800}, {{2023, 7, 4, 0}, 1688443200},
        {{1999, 12, 31, 0}, 946616400}, {{2030, 1, 1, 0}, 1893474000},
        {{2023, 2, 30, 0}, 1677733200}, {{2023, 0, 1, 0}, 0}, {{2023, 13, 1, 0}, 0},
        {{2023, -1, 1, 0}, 0}, {{INT32_MIN, 1, 1, 0}, 0}, {{INT32_MAX, 12, INT32_MAX, 0}, 0}};
    for (const auto &r : dates) {
        int32_t t = 123;
        const int ok = TimeFromDate(&t, &r.date);
        EXPECT_EQ((Values{ok, t}), (Values{r.t != 0, r.t})) << r.date.iYear << "-" << r.date.iMonth;
    }
    const struct { KxTimeOfDayStruct tod; int ok; int32_t seconds; } times[] = {
        {{13, 45, 30}, 1, 13 * 3600 + 45 * 60 + 30}, {{596523, 14, 7}, 1, INT32_MAX},
        {{-596523, -14, -8}, 1, INT32_MIN}, {{999999, 0, 0}, 0, 0}, {{596523, 14, 8}, 0, 0},
        {{0, INT32_MAX, INT32_MAX}, 0, 0}, {{INT32_MIN, INT32_MIN, INT32_MIN}, 0, 0}};
    for (const auto &r : times) {
        int32_t t = 123;
        const int ok = TimeFromTimeOfDay(&t, &r.tod);
        EXPECT_EQ((Values{ok, t}), (Values{r.ok, r.seconds})) << r.tod.iHours << "h";
    }
    int32_t t = 123;
    const KxDateStruct date{2024, 1, 1, 0};
    const KxTimeOfDayStruct tod{1, 2, 3};
    EXPECT_EQ((Values{TimeFromDate(&t, nullptr), t, TimeFromDate(nullptr, &date),
                      TimeFromTimeOfDay(&t, nullptr), TimeFromTimeOfDay(nullptr, &tod)}),
              (Values{0, 0, 0, 0, 0}));
}
/* Rows: the value read as 32 and as 64 bits; 4711 when the variable is left as it was. Files
** come from KX_CONFIG_DIR, or by a path with a slash, or from the home's config directory,
** and are read afresh each time. */
TEST_F(MiscTest, ConfigurationIntegersIgnoreCaseAndBlanksOrLeaveTheVariableAlone) {
    char pattern[] = "/tmp/kxcfgXXXXXX";
    const std::string dir = mkdtemp(pattern);
    ScopedEnv env("KX_CONFIG_DIR", dir.c_str());
    std::ofstream(dir + "/server.cfg")
        << "; the server time\n# another comment\n\nBefore = 3\n[ Orlenda Time ]\n"
           "  Offset From Server   =   -3600  \nBig = 9000000000\nMinus One = -1\nPlus = +17\n"
           "Word = twelve\nTrailing = 12abc\nEmpty =\n[Other]\nOffset From Server = 99\n";
    const std::string byPath = dir + "/server.cfg"; /* a path with a slash is used as it is */
    const char *f = "server.cfg", *s = "Orlenda Time", *o = "Offset From Server";
    const struct { const char *file, *section, *key; int64_t value, value64; } rows[] = {
        {f, s, o, -3600, -3600}, {f, "orlenda time", "OFFSET FROM SERVER", -3600, -3600},
        {f, "Other", o, 99, 99}, {f, s, "Minus One", -1, -1}, {f, s, "Plus", 17, 17},
        {f, s, "Big", 4711, INT64_C(9000000000)}, {"absent.cfg", s, o, 4711, 4711},
        {f, "No Such Section", o, 4711, 4711}, {f, s, "No Such Key", 4711, 4711},
        {f, s, "Before", 4711, 4711} /* outside the section */, {f, s, "Word", 4711, 4711},
        {f, s, "Trailing", 4711, 4711}, {f, s, "Empty", 4711, 4711},
        {nullptr, s, "Plus", 4711, 4711}, {f, nullptr, "Plus", 4711, 4711},
        {f, s, nullptr, 4711, 4711}, {byPath.c_str(), "other", o, 99, 99}};
    for (const auto &r : rows) {
        int32_t value = 4711;
        int64_t value64 = 4711;
        const int found = CfgGetInteger(&value, r.file, r.section, r.key, 0);
        const int found64 = CfgGetInt64(&value64, r.file, r.section, r.key, 0);
        EXPECT_EQ((Values{found, value, found64, value64}),
                  (Values{r.value != 4711, r.value, r.value64 != 4711, r.value64}))
            << "row " << &r - rows;
    }
    int32_t first = 0, second = 0, home = 0;
    std::ofstream(dir + "/live.cfg") << "[S]\nK = 1\n";
    CfgGetInteger(&first, "live.cfg", "S", "K", 0);
    std::ofstream(dir + "/live.cfg") << "[S]\nK = 2\n";
    CfgGetInteger(&second, "live.cfg", "S", "K", 0);
    std::filesystem::create_directory(dir + "/config");
    std::ofstream(dir + "/config/home.cfg") << "[Home]\nValue = 77\n";
    ScopedEnv noDir("KX_CONFIG_DIR", nullptr), homeDir("KX_HOME", dir.c_str());
    CfgGetInteger(&home, "home.cfg", "Home", "Value", 0);
    EXPECT_EQ((Values{first, second, home, CfgGetInteger(nullptr, f, s, "Plus", 0)}),
              (Values{1, 2, 77, 0}));
    std::filesystem::remove_all(dir);
}
TEST_F(MiscTest, TheHomeIsKxHomeOrAnAbsoluteDirectoryBesideTheLibrary) {
    {
        ScopedEnv home("KX_HOME", "/opt/kx/home");
        EXPECT_STREQ(PathHomeDir(), "/opt/kx/home");
        EXPECT_EQ(take(PathHomeBuild("gui", "bmps", "up.bmp", nullptr)),
                  "/opt/kx/home/gui/bmps/up.bmp");
        EXPECT_EQ(PathHomeBuild("gui", "", "up.bmp", nullptr), nullptr) << "an empty component";
    }
    ScopedEnv home("KX_HOME", nullptr);
    const std::string dir = PathHomeDir() ? PathHomeDir() : "";
    EXPECT_TRUE(dir.find("xcontrols") != std::string::npos && dir.front() == '/') << dir;
    EXPECT_EQ(take(PathHomeBuild("config", nullptr)), dir + "/config");
}
TEST_F(MiscTest, PasswordEncryptionRoundTripsAndHidesTheClearText) {
    const char *clear = "correct horse battery staple";
    char *sealed = nullptr, *again = nullptr, *empty = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, clear, 1234) &&
                SecurityEncryptPassword(&again, clear, 1234) &&
                SecurityEncryptPassword(&empty, nullptr, 0));
    std::string text = sealed;
    auto printable = [](unsigned char c) { return std::isprint(c) != 0; };
    EXPECT_TRUE(text.find("horse") == std::string::npos && text != again &&
                std::all_of(text.begin(), text.end(), printable))
        << "hidden, printable, and a fresh nonce every time: " << text;
    {
        kxtest::FreedSecrets freed;
        char *opened = SecurityDecryptPassword(sealed, 1234);
        EXPECT_STREQ(opened, clear);
        MemFreeSecret(&opened);
        EXPECT_EQ(freed.bytes, std::string(std::strlen(clear) + 1, '\0')) << "not wiped";
    }
    EXPECT_EQ(take(SecurityDecryptPassword(empty, 0)), "") << "null seals as empty";
    EXPECT_EQ(SecurityDecryptPassword(sealed, 1235), nullptr) << "another key";
    for (char **p : {&sealed, &again, &empty}) MemFreeInternal(p);
    EXPECT_FALSE(SecurityEncryptPassword(nullptr, "x", 1));
    text[text.size() / 2] = text[text.size() / 2] == 'A' ? 'B' : 'A';
    for (const char *bad : {text.c_str(), static_cast<const char *>(nullptr), "", "plain text",
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
/* With no sink and no hook a line goes nowhere and costs no formatting; a file gets it all. */
TEST_F(MiscTest, TraceLinesGoFormattedToTheHookAndTheSinkOrNowhere) {
    const std::string path = kxtest::tempFile(), longText(10000, 'x');
    TraceSetSink("off");
    Values results = {TraceIsOn(), TraceMessage("GUI", 1, 0, 0, "nobody hears this")};
    {
        kxtest::TraceLines captured;
        results.push_back(TraceMessage("GUI        ", 12, 3, 1, "Failed to load %s", "up.bmp"));
        EXPECT_EQ(captured.lines,
                  std::vector<std::string>{"GUI        |12|3|1|Failed to load up.bmp"});
    }
    TraceSetSink(("file:" + path).c_str());
    results.push_back(TraceMessage("GUIPWD     ", 757, 0, -1, "Remove Timer %d", 4));
    results.push_back(TraceMessage("GUI        ", 8, 2, 4, "%s", longText.c_str()));
    TraceSetSink(nullptr); /* silences */
    results.push_back(TraceMessage("GUI        ", 6, 0, 0, "silent"));
    EXPECT_EQ(results, (Values{0, 0, 1, 1, 1, 0}));
    std::stringstream file;
    file << std::ifstream(path).rdbuf();
    EXPECT_EQ(file.str(),
              "GUIPWD       757.0 L-1 Remove Timer 4\nGUI          8.2 L4 " + longText + "\n");
    std::remove(path.c_str());
}
} // namespace
