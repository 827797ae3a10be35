/* test_kx_misc.cpp - strings, time, configuration, paths, passwords and trace. */
#include "kxtest.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using kxtest::ScopedEnv;
using kxtest::take;
using StrTest = kxtest::PoolTest;
using TimeTest = kxtest::PoolTest;
using PathTest = kxtest::PoolTest;
using SecurityTest = kxtest::PoolTest;

/* ---- strings ---- */

TEST_F(StrTest, DuplicateCopiesIntoTheNamedPool) {
    const uint32_t other = MemPoolCreate("strings");
    char *copy = StrDuplicateIntoPool("hello", other);
    EXPECT_STREQ(copy, "hello");
    EXPECT_EQ(MemPoolLiveCount(other), 1);
    EXPECT_EQ(MemPoolLiveBytes(other), 6);
    MemFreeInternal(&copy);
    EXPECT_EQ(StrDuplicateIntoPool(nullptr, pool()), nullptr);
}

TEST_F(StrTest, CatJoinsUpToTheTerminatingNull) {
    EXPECT_EQ(take(StrCat("a", "bc", "", "def", nullptr)), "abcdef");
    EXPECT_EQ(take(StrCat(nullptr, "x", "y", nullptr)), "xy") << "a null first counts as empty";
    EXPECT_EQ(take(StrCat("only", nullptr)), "only");
    EXPECT_EQ(take(StrCat(nullptr, nullptr)), "");
    const std::string longPart(5000, 'z');
    EXPECT_EQ(take(StrCat(longPart.c_str(), "!", longPart.c_str(), nullptr)),
              longPart + "!" + longPart);
}

TEST_F(StrTest, SizeCountsTheTerminator) {
    EXPECT_EQ(StrSize("abc"), 4);
    EXPECT_EQ(StrSize(""), 1);
    EXPECT_EQ(StrSize(nullptr), 0);
}

TEST_F(StrTest, FromIntegerCoversTheWholeRange) {
    char *text = nullptr;
    ASSERT_TRUE(StrFromInteger(&text, -42));
    EXPECT_EQ(take(text), "-42");
    ASSERT_TRUE(StrFromInteger(&text, INT64_MIN));
    EXPECT_EQ(take(text), "-9223372036854775808");
    ASSERT_TRUE(StrFromInteger(&text, INT64_MAX));
    EXPECT_EQ(take(text), "9223372036854775807");
    ASSERT_TRUE(StrFromInteger(&text, 0));
    EXPECT_EQ(take(text), "0");
    EXPECT_FALSE(StrFromInteger(nullptr, 1));
}

TEST_F(StrTest, ComparisonsTreatNullAsEmpty) {
    EXPECT_EQ(StrCompare("abc", "abc"), 0);
    EXPECT_LT(StrCompare("abc", "abd"), 0);
    EXPECT_GT(StrCompare("b", "abc"), 0);
    EXPECT_LT(StrCompare("ab", "abc"), 0);
    EXPECT_EQ(StrCompare(nullptr, ""), 0);
    EXPECT_LT(StrCompare(nullptr, "a"), 0);
    EXPECT_GT(StrCompare("a", nullptr), 0);
    EXPECT_NE(StrCompare("ABC", "abc"), 0);
    EXPECT_GT(StrCompare("\xe9", "e"), 0) << "bytes compare unsigned";

    EXPECT_EQ(StrCompareNoCase("Hello", "hELLO"), 0);
    EXPECT_LT(StrCompareNoCase("apple", "Banana"), 0);
    EXPECT_EQ(StrCompareNoCase(nullptr, ""), 0);
    EXPECT_GT(StrCompareNoCase("a", nullptr), 0);

    EXPECT_EQ(StrCompareRangeNoCase("ABCdef", "abcXYZ", 3), 0);
    EXPECT_NE(StrCompareRangeNoCase("ABCdef", "abcXYZ", 4), 0);
    EXPECT_EQ(StrCompareRangeNoCase("ab", "AB", 10), 0) << "equal strings shorter than n";
    EXPECT_NE(StrCompareRangeNoCase("ab", "abc", 10), 0);
    EXPECT_EQ(StrCompareRangeNoCase("x", "y", 0), 0);
    EXPECT_EQ(StrCompareRangeNoCase(nullptr, "", 5), 0);
}

/* ---- time ---- */

TEST_F(TimeTest, LeapYearsAndMonthLengths) {
    EXPECT_FALSE(TimeIsLeapYear(1900));
    EXPECT_TRUE(TimeIsLeapYear(2000));
    EXPECT_TRUE(TimeIsLeapYear(2024));
    EXPECT_FALSE(TimeIsLeapYear(2023));
    EXPECT_EQ(TimeDaysInMonth(2, 1900), 28);
    EXPECT_EQ(TimeDaysInMonth(2, 2000), 29);
    EXPECT_EQ(TimeDaysInMonth(2, 2024), 29);
    EXPECT_EQ(TimeDaysInMonth(2, 2023), 28);
    const int32_t lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month)
        EXPECT_EQ(TimeDaysInMonth(month, 2023), lengths[month - 1]) << "month " << month;
    EXPECT_EQ(TimeDaysInMonth(0, 2023), 0);
    EXPECT_EQ(TimeDaysInMonth(13, 2023), 0);
}

TEST_F(TimeTest, NowIsTheSystemClock) {
    const int32_t before = static_cast<int32_t>(std::time(nullptr));
    const int32_t now = TimeNow();
    EXPECT_GE(now, before);
    EXPECT_LE(now, before + 2);
}

/* Sets the process's time zone for a scope. */
class ScopedZone {
public:
    explicit ScopedZone(const char *zone) : env_("TZ", zone) { tzset(); }
    ~ScopedZone() { tzset(); }

private:
    ScopedEnv env_;
};

TEST_F(TimeTest, BreakdownInUtcAndInLocalTime) {
    ScopedZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    const int32_t t = 1700000000; /* 2023-11-14 22:13:20 UTC, a Tuesday */
    KxTimeStruct utc{};
    ASSERT_TRUE(TimeToUTCBreakdownStruct(&utc, t));
    EXPECT_EQ(utc.iHours, 22);
    EXPECT_EQ(utc.iMinutes, 13);
    EXPECT_EQ(utc.iSeconds, 20);
    EXPECT_EQ(utc.iYear, 2023);
    EXPECT_EQ(utc.iMonth, 11);
    EXPECT_EQ(utc.iDay, 14);
    EXPECT_EQ(utc.iWeekDay, 2);
    EXPECT_EQ(utc.iYearDay, 317);

    KxTimeStruct local{};
    ASSERT_TRUE(TimeToBreakdownStruct(&local, t));
    EXPECT_EQ(local.iHours, 23) << "one hour east of UTC in winter";
    EXPECT_EQ(local.iDay, 14);

    ASSERT_TRUE(TimeToBreakdownStruct(&local, 1690000000)); /* 2023-07-22 04:26:40 UTC */
    EXPECT_EQ(local.iHours, 6) << "two hours in summer";

    ASSERT_TRUE(TimeToBreakdownStruct(&local, t + 3600));
    EXPECT_EQ(local.iHours, 0);
    EXPECT_EQ(local.iDay, 15) << "local midnight passed, UTC's did not";

    EXPECT_FALSE(TimeToBreakdownStruct(nullptr, t));
    EXPECT_FALSE(TimeToUTCBreakdownStruct(nullptr, t));
}

TEST_F(TimeTest, FromDateGivesLocalMidnightAndRoundTrips) {
    ScopedZone zone("EST5EDT,M3.2.0,M11.1.0");
    for (KxDateStruct date : {KxDateStruct{2024, 2, 29, 0}, KxDateStruct{2023, 7, 4, 0},
                              KxDateStruct{1999, 12, 31, 0}, KxDateStruct{2030, 1, 1, 0}}) {
        int32_t t = -1;
        ASSERT_TRUE(TimeFromDate(&t, &date));
        KxTimeStruct back{};
        ASSERT_TRUE(TimeToBreakdownStruct(&back, t));
        EXPECT_EQ(back.iYear, date.iYear);
        EXPECT_EQ(back.iMonth, date.iMonth);
        EXPECT_EQ(back.iDay, date.iDay);
        EXPECT_EQ(back.iHours, 0);
        EXPECT_EQ(back.iMinutes, 0);
    }
    int32_t t = 0;
    KxDateStruct winter{2023, 1, 15, 0};
    ASSERT_TRUE(TimeFromDate(&t, &winter));
    EXPECT_EQ(t, 1673758800) << "2023-01-15 05:00 UTC is midnight in New York";
}

TEST_F(TimeTest, FromDateRollsDaysOverAndRefusesBadMonths) {
    ScopedZone zone("UTC0");
    int32_t t = 0;
    KxDateStruct feb30{2023, 2, 30, 0};
    ASSERT_TRUE(TimeFromDate(&t, &feb30));
    KxTimeStruct back{};
    TimeToBreakdownStruct(&back, t);
    EXPECT_EQ(back.iMonth, 3);
    EXPECT_EQ(back.iDay, 2);

    for (KxDateStruct bad : {KxDateStruct{2023, 0, 1, 0}, KxDateStruct{2023, 13, 1, 0},
                             KxDateStruct{2023, -1, 1, 0}, KxDateStruct{INT32_MIN, 1, 1, 0},
                             KxDateStruct{INT32_MAX, 12, INT32_MAX, 0}}) {
        t = 123;
        EXPECT_FALSE(TimeFromDate(&t, &bad)) << bad.iYear << "-" << bad.iMonth;
        EXPECT_EQ(t, 0);
    }
    t = 123;
    EXPECT_FALSE(TimeFromDate(&t, nullptr));
    EXPECT_EQ(t, 0);
    EXPECT_FALSE(TimeFromDate(nullptr, &feb30));
}

TEST_F(TimeTest, TimeOfDayIsSecondsAfterAUtcMidnight) {
    KxTimeOfDayStruct tod{13, 45, 30};
    int32_t t = 0;
    ASSERT_TRUE(TimeFromTimeOfDay(&t, &tod));
    EXPECT_EQ(t, 13 * 3600 + 45 * 60 + 30);
    KxTimeStruct back{};
    ASSERT_TRUE(TimeToUTCBreakdownStruct(&back, t));
    EXPECT_EQ(back.iHours, 13);
    EXPECT_EQ(back.iMinutes, 45);
    EXPECT_FALSE(TimeFromTimeOfDay(&t, nullptr));
    EXPECT_FALSE(TimeFromTimeOfDay(nullptr, &tod));

    /* Whatever is typed into an hour field: a sum past 32 bits is refused (0 stored). */
    const struct { KxTimeOfDayStruct tod; int ok; int32_t seconds; } rows[] = {
        {{596523, 14, 7}, 1, INT32_MAX},
        {{-596523, -14, -8}, 1, INT32_MIN},
        {{999999, 0, 0}, 0, 0},
        {{596523, 14, 8}, 0, 0},
        {{0, INT32_MAX, INT32_MAX}, 0, 0},
        {{INT32_MIN, INT32_MIN, INT32_MIN}, 0, 0},
    };
    for (const auto &row : rows) {
        t = 123;
        EXPECT_EQ(TimeFromTimeOfDay(&t, &row.tod), row.ok) << row.tod.iHours << "h";
        EXPECT_EQ(t, row.seconds) << row.tod.iHours << "h";
    }
}

/* ---- configuration ---- */

/* A temporary configuration directory named by KX_CONFIG_DIR. */
class CfgTest : public kxtest::PoolTest {
protected:
    void SetUp() override {
        PoolTest::SetUp();
        char pattern[] = "/tmp/kxcfgXXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir_ = pattern;
        env_ = std::make_unique<ScopedEnv>("KX_CONFIG_DIR", dir_.c_str());
    }
    void TearDown() override {
        env_.reset();
        for (const std::string &file : files_) std::remove(file.c_str());
        rmdir(dir_.c_str());
        PoolTest::TearDown();
    }
    void write(const std::string &name, const std::string &text) {
        std::string path = dir_ + "/" + name;
        std::ofstream(path) << text;
        files_.push_back(path);
    }
    std::string dir_;

private:
    std::unique_ptr<ScopedEnv> env_;
    std::vector<std::string> files_;
};

const char *kServerCfg =
    "; the server time\n"
    "# another comment\n"
    "\n"
    "Before = 3\n"
    "[ Orlenda Time ]\n"
    "  Offset From Server   =   -3600  \n"
    "Big = 9000000000\n"
    "Minus One = -1\n"
    "Plus = +17\n"
    "Word = twelve\n"
    "Trailing = 12abc\n"
    "Empty =\n"
    "[Other]\n"
    "Offset From Server = 99\n";

TEST_F(CfgTest, ReadsIntegersIgnoringCaseAndBlanks) {
    write("timeserver.cfg", kServerCfg);
    int32_t value = 0;
    EXPECT_EQ(CfgGetInteger(&value, "timeserver.cfg", "Orlenda Time", "Offset From Server", 0), 1);
    EXPECT_EQ(value, -3600);
    EXPECT_EQ(CfgGetInteger(&value, "timeserver.cfg", "orlenda time", "OFFSET FROM SERVER", 0), 1);
    EXPECT_EQ(value, -3600);
    EXPECT_EQ(CfgGetInteger(&value, "timeserver.cfg", "Other", "offset from server", 0), 1);
    EXPECT_EQ(value, 99);
    EXPECT_EQ(CfgGetInteger(&value, "timeserver.cfg", "Orlenda Time", "Minus One", 0), 1);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(CfgGetInteger(&value, "timeserver.cfg", "Orlenda Time", "Plus", 0), 1);
    EXPECT_EQ(value, 17);
}

TEST_F(CfgTest, MissingOrBadValuesLeaveTheVariableUnchanged) {
    write("timeserver.cfg", kServerCfg);
    const struct {
        const char *file, *section, *key;
    } misses[] = {
        {"absent.cfg", "Orlenda Time", "Offset From Server"},
        {"timeserver.cfg", "No Such Section", "Offset From Server"},
        {"timeserver.cfg", "Orlenda Time", "No Such Key"},
        {"timeserver.cfg", "Orlenda Time", "Before"},  /* outside the section */
        {"timeserver.cfg", "Orlenda Time", "Word"},
        {"timeserver.cfg", "Orlenda Time", "Trailing"},
        {"timeserver.cfg", "Orlenda Time", "Empty"},
        {"timeserver.cfg", "Orlenda Time", "Big"},      /* does not fit 32 bits */
        {nullptr, "Orlenda Time", "Plus"},
        {"timeserver.cfg", nullptr, "Plus"},
        {"timeserver.cfg", "Orlenda Time", nullptr},
    };
    for (const auto &miss : misses) {
        int32_t value = 4711;
        EXPECT_EQ(CfgGetInteger(&value, miss.file, miss.section, miss.key, 0), 0)
            << (miss.key ? miss.key : "(null)");
        EXPECT_EQ(value, 4711);
    }
    EXPECT_EQ(CfgGetInteger(nullptr, "timeserver.cfg", "Orlenda Time", "Plus", 0), 0);
}

TEST_F(CfgTest, SixtyFourBitValues) {
    write("timeserver.cfg", kServerCfg);
    int64_t value = 5;
    EXPECT_EQ(CfgGetInt64(&value, "timeserver.cfg", "Orlenda Time", "Big", 0), 1);
    EXPECT_EQ(value, INT64_C(9000000000));
    EXPECT_EQ(CfgGetInt64(&value, "timeserver.cfg", "Orlenda Time", "Minus One", 0), 1);
    EXPECT_EQ(value, -1);
    value = 5;
    EXPECT_EQ(CfgGetInt64(&value, "timeserver.cfg", "Orlenda Time", "Word", 0), 0);
    EXPECT_EQ(CfgGetInt64(&value, "timeserver.cfg", "Nowhere", "Big", 0), 0);
    EXPECT_EQ(value, 5);
}

TEST_F(CfgTest, FilesAreReadAfreshAndPathsWithASlashAreUsedAsTheyAre) {
    write("live.cfg", "[S]\nK = 1\n");
    int32_t value = 0;
    ASSERT_EQ(CfgGetInteger(&value, "live.cfg", "S", "K", 0), 1);
    EXPECT_EQ(value, 1);
    write("live.cfg", "[S]\nK = 2\n");
    ASSERT_EQ(CfgGetInteger(&value, "live.cfg", "S", "K", 0), 1);
    EXPECT_EQ(value, 2);
    const std::string full = dir_ + "/live.cfg";
    ASSERT_EQ(CfgGetInteger(&value, full.c_str(), "s", "k", 0), 1);
    EXPECT_EQ(value, 2);
}

TEST_F(CfgTest, WithoutAConfigDirectoryTheHomeConfigDirectoryIsUsed) {
    char pattern[] = "/tmp/kxhomeXXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    const std::string home = pattern;
    const std::string configDir = home + "/config";
    mkdir(configDir.c_str(), 0700);
    const std::string file = configDir + "/home.cfg";
    std::ofstream(file) << "[Home]\nValue = 77\n";
    {
        ScopedEnv noDir("KX_CONFIG_DIR", nullptr);
        ScopedEnv homeDir("KX_HOME", home.c_str());
        int32_t value = 0;
        EXPECT_EQ(CfgGetInteger(&value, "home.cfg", "Home", "Value", 0), 1);
        EXPECT_EQ(value, 77);
    }
    std::remove(file.c_str());
    rmdir(configDir.c_str());
    rmdir(home.c_str());
}

/* ---- paths ---- */

TEST_F(PathTest, HomeBuildJoinsBelowKxHome) {
    ScopedEnv home("KX_HOME", "/opt/kx/home");
    EXPECT_STREQ(PathHomeDir(), "/opt/kx/home");
    EXPECT_EQ(take(PathHomeBuild("gui", "bmps", "up.bmp", nullptr)), "/opt/kx/home/gui/bmps/up.bmp");
    EXPECT_EQ(take(PathHomeBuild("config", nullptr)), "/opt/kx/home/config");
    EXPECT_EQ(PathHomeBuild("gui", "", "up.bmp", nullptr), nullptr) << "an empty component";
}

TEST_F(PathTest, WithoutKxHomeTheHomeLiesBesideTheLibrary) {
    ScopedEnv home("KX_HOME", nullptr);
    const char *dir = PathHomeDir();
    ASSERT_NE(dir, nullptr);
    const std::string text = dir;
    EXPECT_NE(text.find("xcontrols"), std::string::npos) << text;
    EXPECT_EQ(text.front(), '/') << "an absolute directory: " << text;
    char *built = PathHomeBuild("gui", nullptr);
    EXPECT_EQ(take(built), text + "/gui");
}

/* ---- passwords ---- */

TEST_F(SecurityTest, EncryptionRoundTripsAndHidesTheClearText) {
    const char *clear = "correct horse battery staple";
    char *sealed = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, clear, 1234));
    ASSERT_NE(sealed, nullptr);
    EXPECT_EQ(std::strstr(sealed, clear), nullptr);
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

    char *again = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&again, clear, 1234));
    EXPECT_STRNE(sealed, again) << "a fresh nonce every time";
    MemFreeInternal(&again);

    std::string tampered = sealed;
    tampered[tampered.size() / 2] = tampered[tampered.size() / 2] == 'A' ? 'B' : 'A';
    EXPECT_EQ(SecurityDecryptPassword(tampered.c_str(), 1234), nullptr);
    MemFreeInternal(&sealed);
}

TEST_F(SecurityTest, EmptyAndNullTextsAndBadInput) {
    char *sealed = nullptr;
    ASSERT_TRUE(SecurityEncryptPassword(&sealed, nullptr, 0));
    EXPECT_EQ(take(SecurityDecryptPassword(sealed, 0)), "");
    MemFreeInternal(&sealed);
    EXPECT_FALSE(SecurityEncryptPassword(nullptr, "x", 1));
    EXPECT_EQ(SecurityDecryptPassword(nullptr, 1), nullptr);
    EXPECT_EQ(SecurityDecryptPassword("", 1), nullptr);
    EXPECT_EQ(SecurityDecryptPassword("plain text", 1), nullptr);
    EXPECT_EQ(SecurityDecryptPassword("kx1:", 1), nullptr);
    EXPECT_EQ(SecurityDecryptPassword("kx1:!!!not base64!!!", 1), nullptr);
    EXPECT_EQ(SecurityDecryptPassword("kx1:AAAA", 1), nullptr);
}

/* ---- trace ---- */

struct Captured {
    std::vector<std::string> lines;
};

void capture(void *ctx, const char *component, int32_t msgNo, int32_t sub, int32_t level,
             const char *text) {
    std::ostringstream line;
    line << component << "|" << msgNo << "|" << sub << "|" << level << "|" << text;
    static_cast<Captured *>(ctx)->lines.push_back(line.str());
}

class TraceTest : public kxtest::PoolTest {
protected:
    void TearDown() override {
        TraceSetCaptureHook(nullptr, nullptr);
        TraceSetSink("off");
        PoolTest::TearDown();
    }
};

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
            const int overridden = TraceMessage("GUI        ", 4, 3, 1, "overridden");
            std::exit(overridden == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0),
        "^GUI          4\\.1 L1 from the environment\nGUI          4\\.2 L1 read once\n$");
}

TEST_F(TraceTest, TheHookGetsEveryLineWhateverTheSink) {
    TraceSetSink("off");
    EXPECT_FALSE(TraceIsOn()) << "no sink and no hook: a line would go nowhere";
    Captured captured;
    TraceSetCaptureHook(capture, &captured);
    EXPECT_TRUE(TraceIsOn());
    EXPECT_EQ(TraceMessage("GUI        ", 12, 3, 1, "Failed to load %s", "up.bmp"), 1);
    ASSERT_EQ(captured.lines.size(), 1u);
    EXPECT_EQ(captured.lines[0], "GUI        |12|3|1|Failed to load up.bmp");
    TraceSetCaptureHook(nullptr, nullptr);
    EXPECT_EQ(TraceMessage("GUI", 1, 0, 0, "nobody hears this"), 0);
    EXPECT_EQ(captured.lines.size(), 1u);
}

TEST_F(TraceTest, AFileSinkGetsFormattedLinesOfAnyLength) {
    char path[] = "/tmp/kxtraceXXXXXX";
    const int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    TraceSetSink((std::string("file:") + path).c_str());
    const std::string longText(10000, 'x');
    EXPECT_EQ(TraceMessage("GUIPWD     ", 757, 0, -1, "Remove Timer %d", 4), 1);
    EXPECT_EQ(TraceMessage("GUI        ", 8, 2, 4, "%s", longText.c_str()), 1);

    std::ifstream in(path);
    std::string first, second;
    std::getline(in, first);
    std::getline(in, second);
    EXPECT_EQ(first, "GUIPWD       757.0 L-1 Remove Timer 4");
    EXPECT_EQ(second, "GUI          8.2 L4 " + longText);
    std::remove(path);
}

TEST_F(TraceTest, TraceSetSinkNamesTheSinkAndNullSilences) {
    TraceSetSink("stderr");
    EXPECT_TRUE(TraceIsOn());
    testing::internal::CaptureStderr();
    TraceMessage("GUI        ", 5, 0, 0, "to stderr");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "GUI          5.0 L0 to stderr\n");
    TraceSetSink(nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TraceMessage("GUI        ", 6, 0, 0, "silent"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
