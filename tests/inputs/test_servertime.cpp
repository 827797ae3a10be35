/* test_servertime.cpp - "now" in the date and time inputs is the server's time, from the
** offset stored in a real configuration file. */
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include <unistd.h>

#include "inputs_support.h"
#include "kx.h"
#include "xcontrols/guidateinput.h"
#include "xcontrols/guitimeinput.h"

namespace {

/* A private configuration directory, named to the runtime by KX_CONFIG_DIR. */
class ConfigDir {
public:
    ConfigDir() {
        char pattern[] = "/tmp/xcinputs-XXXXXX";
        path_ = mkdtemp(pattern);
        setenv("KX_CONFIG_DIR", path_.c_str(), 1);
    }
    ~ConfigDir() {
        remove();
        rmdir(path_.c_str());
        unsetenv("KX_CONFIG_DIR");
    }
    ConfigDir(const ConfigDir &) = delete;
    ConfigDir &operator=(const ConfigDir &) = delete;

    void write(const std::string &content) { std::ofstream(file()) << content; }
    void writeOffset(const std::string &ms) {
        write("# written by the time service\n[Orlenda Time]\nOffset From Server = " + ms + "\n");
    }
    void remove() { unlink(file().c_str()); }

private:
    std::string file() const { return path_ + "/timeserver.cfg"; }
    std::string path_;
};

class ServerTimeTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        const inputs::TimeWidgets t = timeWidgets();
        const inputs::DateWidgets d = dateWidgets();
        hours = t.hours, minutes = t.minutes;
        timeInput = GuiManageTimeInput(t.hours, t.minutes, t.up, t.down);
        dateInput = GuiManageDateInput(d.year, d.month, d.day, d.up, d.down);
        realize();
    }
    void TearDown() override {
        GuiTimeInputDestroy(timeInput);
        GuiDateInputDestroy(dateInput);
        InputsTest::TearDown();
    }

    static std::string hhmm(int32_t t) {
        KxTimeStruct utc{};
        TimeToUTCBreakdownStruct(&utc, t);
        char text[8];
        std::snprintf(text, sizeof text, "%02d:%02d", utc.iHours, utc.iMinutes);
        return text;
    }
    static std::string localDate(int32_t t) {
        KxTimeStruct local{};
        TimeToBreakdownStruct(&local, t);
        return std::to_string(local.iYear) + "-" + std::to_string(local.iMonth) + "-" +
               std::to_string(local.iDay);
    }

    /* The time input's "now", and what it may be given `shiftSeconds` against the local
    ** clock (the clock may tick over a minute during the call: both sides count). */
    void expectTimeNowShifted(int32_t shiftSeconds) {
        const int32_t before = TimeNow();
        GuiTimeInputSetNow(timeInput);
        const int32_t after = TimeNow();
        const std::string shown = inputs::textOf(hours) + ":" + inputs::textOf(minutes);
        const std::set<std::string> allowed{hhmm(before + shiftSeconds), hhmm(after + shiftSeconds)};
        EXPECT_TRUE(allowed.count(shown)) << "shown " << shown << ", expected "
                                          << *allowed.begin() << " (shift " << shiftSeconds << " s)";
    }
    void expectDateNowShifted(int32_t shiftSeconds) {
        const int32_t before = TimeNow();
        GuiDateInputSetNow(dateInput);
        const int32_t after = TimeNow();
        int32_t y = 0, m = 0, d = 0;
        GuiDateInputGetYear(&y, dateInput);
        GuiDateInputGetMonth(&m, dateInput);
        GuiDateInputGetDay(&d, dateInput);
        const std::string shown =
            std::to_string(y) + "-" + std::to_string(m) + "-" + std::to_string(d);
        const std::set<std::string> allowed{localDate(before + shiftSeconds),
                                            localDate(after + shiftSeconds)};
        EXPECT_TRUE(allowed.count(shown)) << "shown " << shown << ", expected "
                                          << *allowed.begin();
    }
    const xt::TraceLine *lastTrace(int32_t msgNo) const {
        const xt::TraceLine *found = nullptr;
        for (const auto &line : traces())
            if (line.msgNo == msgNo) found = &line;
        return found;
    }

    ConfigDir config;
    Widget hours = nullptr, minutes = nullptr;
    GuiTimeInput *timeInput = nullptr;
    GuiDateInput *dateInput = nullptr;
};

/* A stored offset (local minus server, in ms) shifts "now" by whole seconds, traced. */
TEST_F(ServerTimeTest, TheStoredOffsetShiftsNow) {
    const std::pair<const char *, int32_t> rows[] = {
        {"5000", -5}, {"-61000", 61}, {"3600000", -3600}, {"999", 0}, {"-1999", 1}};
    for (const auto &[offset, shift] : rows) {
        config.writeOffset(offset);
        expectTimeNowShifted(shift);
        ASSERT_NE(lastTrace(523), nullptr) << offset;
        EXPECT_EQ(lastTrace(523)->text, std::string("OrlTime delta = ") + offset);
        EXPECT_EQ(lastTrace(523)->level, 0);
    }
}
/* The runtime's 32-bit read leaves the probe alone for a value that does not fit, so
** such an offset counts as none stored. */
TEST_F(ServerTimeTest, AnOffsetWiderThan32BitsCountsAsNoneStored) {
    config.writeOffset("4294967296000");
    expectTimeNowShifted(0);
    EXPECT_NE(lastTrace(522), nullptr);
    EXPECT_EQ(lastTrace(523), nullptr);
}
TEST_F(ServerTimeTest, TheDateInputUsesTheSameOffsetUnderItsOwnTraceNumbers) {
    config.writeOffset("86400000");
    expectDateNowShifted(-86400);
    ASSERT_NE(lastTrace(504), nullptr);
    EXPECT_EQ(lastTrace(504)->text, "OrlTime delta = 86400000");
    EXPECT_EQ(lastTrace(523), nullptr);
}
TEST_F(ServerTimeTest, WithoutTheFileTheLocalClockIsShownWithATraceOnEveryCall) {
    config.remove();
    expectTimeNowShifted(0);
    expectTimeNowShifted(0);
    expectDateNowShifted(0);
    int timeLines = 0, dateLines = 0;
    for (const auto &line : traces()) {
        if (line.text != "Cannot get OrlTime - falling back to TimeNow()") continue;
        EXPECT_EQ(line.level, -1);
        timeLines += line.msgNo == 522;
        dateLines += line.msgNo == 503;
    }
    EXPECT_EQ(timeLines, 2);
    EXPECT_EQ(dateLines, 1);
}
TEST_F(ServerTimeTest, AMissingSectionOrKeyOrAStoredMinusOneFallsBack) {
    for (const char *content : {"[Other]\nOffset From Server = 5000\n",
                                "[Orlenda Time]\nOther Key = 5000\n",
                                "[Orlenda Time]\nOffset From Server = -1\n"}) {
        config.write(content);
        clearTraces();
        GuiTimeInputSetNow(timeInput);
        EXPECT_NE(lastTrace(522), nullptr) << content;
        EXPECT_EQ(lastTrace(523), nullptr) << content;
    }
}
TEST_F(ServerTimeTest, TheFileIsReadAfreshOnEveryCall) {
    config.writeOffset("5000");
    GuiTimeInputSetNow(timeInput);
    config.writeOffset("7000");
    GuiTimeInputSetNow(timeInput);
    config.remove();
    GuiTimeInputSetNow(timeInput);
    std::vector<std::string> lines;
    for (const auto &line : traces())
        if (line.msgNo == 522 || line.msgNo == 523) lines.push_back(line.text);
    EXPECT_EQ(lines, (std::vector<std::string>{"OrlTime delta = 5000", "OrlTime delta = 7000",
                                               "Cannot get OrlTime - falling back to TimeNow()"}));
}

} // namespace
