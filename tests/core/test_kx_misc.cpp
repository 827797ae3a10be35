/* test_kx_misc.cpp - strings, time, configuration, paths, messages, passwords and trace. */
#include "kxtest.h"
#include <algorithm>
#include <cctype>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <optional>
#include <unistd.h>
namespace {
using kxtest::Values;
using Texts = std::vector<std::string>;
using MiscTest = kxtest::PoolTest;
/* Sets (or, given null, removes) an environment variable for a scope. */
struct ScopedEnv {
    ScopedEnv(const char *name, const char *value) : name(name) {
        if (const char *now = std::getenv(name)) old = now;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnv() { old ? setenv(name.c_str(), old->c_str(), 1) : unsetenv(name.c_str()); }
    std::string name;
    std::optional<std::string> old;
};
/* A pool string as a std::string (null as "<null>"), freed. */
std::string take(char *s) {
    std::string text = s ? s : "<null>";
    MemFreeInternal(&s);
    return text;
}
/* A path for a scratch file of this process; the caller removes the file. */
std::string scratch(const char *name) { return "/tmp/kx" + std::to_string(getpid()) + name; }
/* Comparison rows: 'e'xact, 'c'ase ignored, or case ignored in the first n; the result's sign. */
TEST_F(MiscTest, StringsJoinFormatIntoThePoolAndCompareNullAsEmptyBytesAsUnsigned) {
    const uint32_t other = MemPoolCreate("strings");
    const std::string z(5000, 'z');
    char *copy = StrDuplicateIntoPool("hello", other), *number = nullptr;
    EXPECT_EQ((Values{MemPoolLiveBytes(other), StrFromInteger(&number, INT64_MIN),
                      StrFromInteger(nullptr, 1), StrSize("abc"), StrSize(nullptr)}),
              (Values{6, 1, 0, 4, 0}));
    EXPECT_EQ((Texts{take(copy), take(number), take(StrCat(nullptr, "x", "", "y", nullptr)),
                     take(StrCat(z.c_str(), "!", z.c_str(), nullptr)),
                     take(StrDuplicateIntoPool(nullptr, pool()))}),
              (Texts{"hello", "-9223372036854775808", "xy", z + "!" + z, "<null>"}));
    const struct { char kind; const char *a, *b; int32_t n; int sign; } rows[] = {
        {'e', "abc", "abc", 0, 0}, {'e', "ab", "abc", 0, -1}, {'e', nullptr, "a", 0, -1},
        {'e', "ABC", "abc", 0, -1}, {'e', "\xe9", "e", 0, 1}, {'c', "Hello", "hELLO", 0, 0},
        {'c', "apple", "Banana", 0, -1}, {'n', "ABCdef", "abcXYZ", 3, 0},
        {'n', "ABCdef", "abcXYZ", 4, -1}, {'n', "x", "y", 0, 0}};
    for (const auto &r : rows) {
        const int got = r.kind == 'e'   ? StrCompare(r.a, r.b)
                        : r.kind == 'c' ? StrCompareNoCase(r.a, r.b)
                                        : StrCompareRangeNoCase(r.a, r.b, r.n);
        EXPECT_EQ((got > 0) - (got < 0), r.sign) << "row " << &r - rows;
    }
}
/* In New York, UTC-5 in winter, UTC-4 in summer. A date gives local midnight (30 February rolls
** over), a time of day seconds after it; past 32 bits, or given null, 0 is stored and refused. */
TEST_F(MiscTest, TimesConvertBetweenFormsInUtcAndLocalTimeWithin32BitsOrAreRefused) {
    ScopedEnv zone("TZ", "EST5EDT,M3.2.0,M11.1.0");
    tzset(); /* the zone stays loaded after the test: no other test reads the local time */
    EXPECT_EQ((Values{TimeDaysInMonth(0, 2023), TimeDaysInMonth(13, 2023), TimeDaysInMonth(4, 2023),
                      TimeDaysInMonth(2, 2023), TimeDaysInMonth(2, 2000), TimeIsLeapYear(1900)}),
              (Values{0, 0, 30, 28, 29, 0}));
    const int32_t before = static_cast<int32_t>(std::time(nullptr)), now = TimeNow();
    EXPECT_TRUE(now >= before && now <= before + 2);
    const struct { bool utc; int32_t t; Values expected; } rows[] = {
        {true, 1700000000, {2023, 11, 14, 22, 13, 20, 2, 317}},
        {false, 1700000000, {2023, 11, 14, 17, 13, 20, 2, 317}},
        {false, 1690000000, {2023, 7, 22, 0, 26, 40, 6, 202}}};
    for (const auto &r : rows) {
        KxTimeStruct o{};
        ASSERT_TRUE(r.utc ? TimeToUTCBreakdownStruct(&o, r.t) : TimeToBreakdownStruct(&o, r.t));
        EXPECT_EQ((Values{o.iYear, o.iMonth, o.iDay, o.iHours, o.iMinutes, o.iSeconds, o.iWeekDay,
                          o.iYearDay}), r.expected) << r.t << (r.utc ? " UTC" : " local");
    }
    const struct { KxDateStruct date; int32_t t; } dates[] = {
        {{2024, 2, 29, 0}, 1709182800}, {{2023, 7, 4, 0}, 1688443200},
        {{2023, 2, 30, 0}, 1677733200}, {{2023, 0, 1, 0}, 0}, {{2023, 13, 1, 0}, 0},
        {{INT32_MIN, 1, 1, 0}, 0}, {{INT32_MAX, 12, INT32_MAX, 0}, 0}};
    for (const auto &r : dates) {
        int32_t t = 123;
        EXPECT_EQ((Values{TimeFromDate(&t, &r.date), t}), (Values{r.t != 0, r.t})) << r.date.iYear;
    }
    const struct { KxTimeOfDayStruct tod; int ok; int32_t seconds; } times[] = {
        {{13, 45, 30}, 1, 13 * 3600 + 45 * 60 + 30}, {{596523, 14, 7}, 1, INT32_MAX},
        {{-596523, -14, -8}, 1, INT32_MIN}, {{596523, 14, 8}, 0, 0},
        {{INT32_MIN, INT32_MIN, INT32_MIN}, 0, 0}};
    for (const auto &r : times) {
        int32_t t = 123;
        EXPECT_EQ((Values{TimeFromTimeOfDay(&t, &r.tod), t}), (Values{r.ok, r.seconds}))
            << r.tod.iHours << "h";
    }
    int32_t t = 123;
    EXPECT_EQ((Values{TimeFromDate(&t, nullptr), t, TimeFromTimeOfDay(nullptr, &times[0].tod)}),
              (Values{0, 0, 0}));
}
/* Rows: the value read as 32 and as 64 bits; 4711 when the variable is left as it was. Files
** come from KX_CONFIG_DIR, by a path with a slash, or from the home's config directory. */
TEST_F(MiscTest, ConfigurationIntegersIgnoreCaseAndBlanksAndTheHomeIsKxHomeOrBesideTheLibrary) {
    const std::string dir = scratch("config"), byPath = dir + "/server.cfg";
    std::filesystem::create_directories(dir + "/config");
    ScopedEnv env("KX_CONFIG_DIR", dir.c_str());
    std::ofstream(byPath) << "; the server time\n# a comment\n\nBefore = 3\n[ Orlenda Time ]\n"
                             "  Offset From Server   =   -3600  \nBig = 9000000000\nPlus = +17\n"
                             "Word = twelve\nEmpty =\n[Other]\nOffset From Server = 99\n";
    const char *f = "server.cfg", *s = "Orlenda Time", *o = "Offset From Server";
    const struct { const char *file, *section, *key; int64_t value, value64; } rows[] = {
        {f, s, o, -3600, -3600}, {f, "orlenda time", "OFFSET FROM SERVER", -3600, -3600},
        {f, s, "Plus", 17, 17}, {f, s, "Big", 4711, INT64_C(9000000000)},
        {"absent.cfg", s, o, 4711, 4711}, {f, s, "Before", 4711, 4711} /* outside the section */,
        {f, s, "Word", 4711, 4711}, {f, s, "Empty", 4711, 4711}, {nullptr, s, "Plus", 4711, 4711},
        {byPath.c_str(), "other", o, 99, 99}};
    for (const auto &r : rows) {
        int32_t value = 4711;
        int64_t value64 = 4711;
        EXPECT_EQ((Values{CfgGetInteger(&value, r.file, r.section, r.key, 0), value,
                          CfgGetInt64(&value64, r.file, r.section, r.key, 0), value64}),
                  (Values{r.value != 4711, r.value, r.value64 != 4711, r.value64})) << &r - rows;
    }
    ScopedEnv noDir("KX_CONFIG_DIR", nullptr), homeDir("KX_HOME", dir.c_str());
    Values read;
    for (const char *text : {"[Home]\nValue = 77\n", "[Home]\nValue = 78\n"}) {
        std::ofstream(dir + "/config/home.cfg") << text;
        int32_t value = 0;
        read.push_back(CfgGetInteger(&value, "home.cfg", "Home", "Value", 0) * value);
    }
    EXPECT_EQ(read, (Values{77, 78})) << "from the home's config directory, read afresh";
    EXPECT_EQ(take(PathHomeBuild("config", "home.cfg", nullptr)), dir + "/config/home.cfg");
    EXPECT_EQ(PathHomeBuild("gui", "", "up.bmp", nullptr), nullptr) << "an empty component";
    std::filesystem::remove_all(dir);
    ScopedEnv noHome("KX_HOME", nullptr);
    const std::string home = PathHomeDir() ? PathHomeDir() : "";
    EXPECT_TRUE(home.find("xcontrols") != std::string::npos && home.front() == '/') << home;
}
/* The catalogue is read once per process, at the first text asked; none is asked before.
** Blanks are trimmed; an empty translation is one; a line without '=' is skipped. */
TEST_F(MiscTest, CatalogueTextsReplaceTheDefaultAndAreReadOnce) {
    const std::string catalogue = scratch("messages");
    std::ofstream(catalogue) << "# messages of the screens\n757 = Bitte wählen\n"
                                "  758=  Abbrechen  \n\n759 =\nnot a number = ignored\n"
                                "760 ignored too\n99999999999 = out of range\n";
    ScopedEnv env("KX_MESSAGES", catalogue.c_str());
    const struct { const char *fallback; int32_t number; const char *expected; } rows[] = {
        {"Please choose", 757, "Bitte wählen"}, {"Cancel", 758, "Abbrechen"}, {"Empty", 759, ""},
        {"Other", 760, "Other"}, {nullptr, 762, ""}};
    for (const auto &row : rows)
        EXPECT_STREQ(LocaleGetStaticString(row.fallback, row.number), row.expected) << row.number;
    char buffer[] = "Transient";
    const char *text = LocaleGetString(buffer, 770);
    buffer[0] = 'X'; /* a result outlives the caller's buffer; one copy per text */
    EXPECT_TRUE(text == std::string("Transient") && LocaleGetString("Transient", 770) == text);
    std::ofstream(catalogue) << "757 = changed\n";
    EXPECT_STREQ(LocaleGetString("Please choose", 757), "Bitte wählen") << "read once";
    std::remove(catalogue.c_str());
}
/* A block that turns out to hold no password (another key, a changed text) is wiped too. */
TEST_F(MiscTest, PasswordEncryptionRoundTripsAndHidesTheClearText) {
    kxtest::FreedSecrets freed;
    const char *clear = "correct horse battery staple";
    char *sealed = nullptr, *again = nullptr, *empty = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, clear, 1234) &&
                SecurityEncryptPassword(&again, clear, 1234) &&
                SecurityEncryptPassword(&empty, nullptr, 0));
    std::string text = sealed;
    EXPECT_TRUE(text.find("horse") == std::string::npos && text != again &&
                std::all_of(text.begin(), text.end(), ::isprint))
        << "hidden, printable, and a fresh nonce every time: " << text;
    char *opened = SecurityDecryptPassword(sealed, 1234);
    EXPECT_STREQ(opened, clear);
    MemFreeSecret(&opened);
    EXPECT_EQ(take(SecurityDecryptPassword(empty, 0)), "") << "null seals as empty";
    EXPECT_EQ(SecurityDecryptPassword(sealed, 1235), nullptr) << "another key";
    for (char **p : {&sealed, &again, &empty}) MemFreeInternal(p);
    text[text.size() / 2] = text[text.size() / 2] == 'A' ? 'B' : 'A';
    for (const char *bad : {text.c_str(), static_cast<const char *>(nullptr), "plain", "kx1:AAAA"})
        EXPECT_EQ(SecurityDecryptPassword(bad, 1234), nullptr) << (bad ? bad : "null");
    EXPECT_EQ(freed.bytes, std::string(3 * (std::strlen(clear) + 1), '\0')) << "not wiped";
}
/* The test below runs it alone: 0 when a line went nowhere (unformatted), or whole to a file. */
void traceFromTheFirstLine() {
    setenv("KX_TRACE", "stderr", 1);
    TraceMessage("GUI        ", 4, 1, 1, "from the environment");
    setenv("KX_TRACE", "off", 1);
    TraceMessage("GUI        ", 4, 2, 1, "read once");
    TraceSetSink("off");
    const bool nowhere = !TraceIsOn() && !TraceMessage("GUI", 4, 3, 1, "overridden");
    const std::string path = scratch("trace"), longText(10000, 'x');
    TraceSetSink(("file:" + path).c_str());
    const bool filed = TraceMessage("GUIPWD     ", 8, 2, -1, "%s", longText.c_str());
    std::ifstream file(path);
    const bool whole = std::string(std::istreambuf_iterator<char>(file), {}) ==
                       "GUIPWD       8.2 L-1 " + longText + "\n";
    std::remove(path.c_str());
    std::exit(nowhere && filed && whole ? 0 : 1);
}
/* KX_TRACE is read at the first line of a process, so the test runs in a process of its own
** (the threadsafe style starts the test binary again for the statement). */
TEST(Trace, KxTraceChoosesTheSinkAtTheFirstLineUntilOverriddenAndAFileGetsLinesWhole) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(traceFromTheFirstLine(), testing::ExitedWithCode(0),
                "^GUI          4\\.1 L1 from the environment\nGUI          4\\.2 L1 read once\n$");
}
} // namespace
