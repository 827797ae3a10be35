/* test_numinput.cpp - the number input under real pointer, key and focus input. */
#include <chrono>
#include <vector>
#include "inputs_support.h"
#include "xcontrols/guinuminput.h"
namespace {
using Clock = std::chrono::steady_clock;
using inputs::textOf;
using Values = std::vector<int32_t>;

/* What the value callback saw: the values, when, and from which widget. */
struct Reports {
    Values values;
    std::vector<Clock::time_point> times;
    Widget from = nullptr;
    static void onValue(Widget text, void *data, int32_t *value) {
        auto *self = static_cast<Reports *>(data);
        self->values.push_back(*value);
        self->times.push_back(Clock::now());
        self->from = text;
    }
    /* Milliseconds between report i and report i + 1, for i in [first, last). */
    double meanGap(std::size_t first, std::size_t last) const {
        return std::chrono::duration<double, std::milli>(times[last] - times[first]).count() /
               static_cast<double>(last - first);
    }
};
class NumInputTest : public inputs::InputsTest {
protected:
    /* A text field and two arrows at the end of the row, the input on them with its reports
    ** registered, and the shell shown. */
    GuiNumInput *make(int32_t max, int32_t min, int32_t initial, int32_t width, int32_t wrap) {
        text = field("text", 6);
        up = arrow("up", XmARROW_UP), down = arrow("down", XmARROW_DOWN);
        GuiNumInput *input = GuiManageNumInput(text, up, down, max, min, initial, width, wrap);
        GuiAddNumInputCallback(input, Reports::onValue, &reports);
        if (!XtIsRealized(shell())) realize();
        xt::pump();
        return input;
    }
    void hold(Widget w) { xt::movePointer(w), xt::pressPointer(); }
    void releaseAfter(int ms) { xt::pumpFor(ms), xt::releasePointer(), xt::pump(); }
    Widget text = nullptr, up = nullptr, down = nullptr;
    Reports reports;
};

TEST_F(NumInputTest, HeldUpButtonWrapsAroundAndStepsFasterTheLongerItIsHeld) {
    GuiNumInput *input = make(10, 1, 10, 0, 1);
    hold(up);
    ASSERT_TRUE(xt::pumpUntil([&] { return reports.values.size() >= 27; }, 8000))
        << "only " << reports.values.size() << " steps while the button was held";
    releaseAfter(0);
    for (std::size_t i = 0; i < reports.values.size(); ++i)
        EXPECT_EQ(reports.values[i], static_cast<int32_t>(i % 10 + 1)) << "step " << i + 1;
    EXPECT_EQ(reports.from, text) << "the callback gets the text field";
    /* Nominal gaps: 200 ms before the 2nd to 5th steps, 100 ms before the 6th to 20th,
    ** 50 ms after that. Timers may run late on a busy machine, so only the order of the
    ** mean gaps is asserted, with a wide margin. */
    const double slow = reports.meanGap(0, 4), medium = reports.meanGap(5, 18);
    const double fast = reports.meanGap(20, reports.values.size() - 1);
    EXPECT_GT(slow, 150.0);
    EXPECT_LT(medium, slow * 0.8) << "slow " << slow << " medium " << medium;
    EXPECT_LT(fast, medium * 0.85) << "medium " << medium << " fast " << fast;
    EXPECT_GT(fast, 25.0);
    EXPECT_TRUE(hasTraceContaining("Remove Timer ")) << "the release removes the pending timer";
    const std::size_t atRelease = reports.values.size();
    xt::pumpFor(400);
    EXPECT_EQ(reports.values.size(), atRelease) << "no step after the release";
    GuiNumInputDestroy(input);
}
/* Without wrap a held button steps up to the limit, rings once there and stops. */
TEST_F(NumInputTest, HeldButtonStopsAtTheLimitWithOneBell) {
    struct Row { int32_t initial; bool goesUp; Values reported; const char *shown; };
    const Row rows[] = {{10, true, {}, "10"}, {3, false, {2, 1}, "1"}};
    for (const Row &r : rows) {
        GuiNumInput *input = make(10, 1, r.initial, 0, 0);
        reports.values.clear();
        bells.reset();
        hold(r.goesUp ? up : down);
        ASSERT_TRUE(xt::pumpUntil([&] { return bells.count() >= 1; }, 3000)) << r.shown;
        releaseAfter(500);
        EXPECT_EQ(reports.values, r.reported) << r.shown;
        EXPECT_EQ(bells.count(), 1) << r.shown;
        EXPECT_EQ(textOf(text), r.shown);
        GuiNumInputDestroy(input);
    }
}
/* Creation shows the initial value unchecked; steps fill with zeros to the width (none for
** a width of zero or less); a set outside the range is refused. */
TEST_F(NumInputTest, StepsFillToTheWidthAndSetsStayInRange) {
    struct Row { int32_t max, min, initial, width, set; const char *clicks, *shown; Values sent; };
    const Row rows[] = {
        {10, 1, 0, 3, -1, "", "0", {}},           {20, 0, 9, 3, -1, "u", "010", {10}},
        {20, 0, 9, 3, 8, "dd", "006", {8, 7, 6}}, {20, 0, 9, 6, -1, "u", "000010", {10}},
        {20, 0, 9, -3, -1, "u", "10", {10}},      {5, -5, 0, 0, -1, "dd", "-2", {-1, -2}},
        {10, 1, 4, 0, 11, "", "4", {}}};
    for (const Row &r : rows) {
        reports.values.clear();
        GuiNumInput *input = make(r.max, r.min, r.initial, r.width, 0);
        if (r.set >= 0) GuiNumInputSet(input, r.set);
        for (const char *c = r.clicks; *c; ++c) xt::click(*c == 'u' ? up : down);
        EXPECT_EQ(textOf(text), r.shown) << "row " << &r - rows;
        EXPECT_EQ(reports.values, r.sent) << "row " << &r - rows;
        GuiNumInputDestroy(input);
    }
}
/* Typed text is checked when the field loses the focus or the value is read: no number
** becomes the minimum, above the range the maximum, without a bell. A new range pulls the
** shown value into it; sensitivity covers the field and both buttons; a null handle is
** traced and ignored. */
TEST_F(NumInputTest, TypedTextRangeSensitivityAndNullHandles) {
    GuiNumInput *input = make(9, 5, 7, 2, 0);
    retype(text, "abc");
    leaveField();
    EXPECT_EQ(textOf(text), "05");
    EXPECT_EQ(reports.values.back(), 5) << "each key and the check report";
    retype(text, "42");
    int32_t value = 0;
    EXPECT_EQ(GuiNumInputGetValue(&value, input), 1);
    EXPECT_EQ(value, 9) << "reading the value checks the range first";
    leaveField();
    EXPECT_EQ(textOf(text), "09");
    EXPECT_EQ(reports.values.back(), 9);
    EXPECT_EQ(bells.count(), 0) << "checks never ring";
    GuiNumInputChangeRange(input, 20, 30);
    GuiNumInputChangeRange(input, 10, 25);
    EXPECT_EQ(textOf(text), "20") << "a value inside the new range stays";
    EXPECT_EQ(reports.values.back(), 20);
    EXPECT_EQ(GuiNumInputSet(input, 9) + GuiNumInputSet(input, 26), 0) << "out of range";
    GuiNumInputSetSensitive(input, 0);
    EXPECT_FALSE(XtIsSensitive(text) || XtIsSensitive(up) || XtIsSensitive(down));
    xt::click(up);
    EXPECT_EQ(textOf(text), "20") << "an insensitive button does not step";
    GuiNumInputDestroy(input);
    value = 42;
    EXPECT_EQ(GuiNumInputGetValue(&value, nullptr) + GuiNumInputSet(nullptr, 1), 0);
    GuiNumInputChangeRange(nullptr, 1, 2);
    GuiNumInputSetSensitive(nullptr, 1);
    GuiNumInputDestroy(nullptr);
    EXPECT_EQ(value, 42);
    EXPECT_TRUE(hasTraceContaining("GuiNumInputSet: null argument"));
}
/* Destroyed by the program while its button is held (never disarmed), or by a client from
** its report while the button repeats or of the focus-out check: the widgets go with it, no
** timer fires on the freed record (the AddressSanitizer build) and nothing is reported. */
TEST_F(NumInputTest, DestroyWhileBusyLeavesNoTimerAndReportsNoMore) {
    using Closer = inputs::CloseOnFirstReport<GuiNumInput, GuiNumInputDestroy>;
    for (int way = 0; way < 3; ++way) {
        Closer closer{make(10, 1, 5, 0, 1)};
        int destroyed = 0;
        inputs::countDestroys(&destroyed, {text, up, down});
        if (way == 2) retype(text, "99");
        if (way > 0) GuiAddNumInputCallback(closer.input, closer.onValue, &closer);
        if (way < 2) hold(up);
        if (way == 2) xt::click(spare);
        auto done = [&] { return way > 0 ? closer.input == nullptr : !reports.values.empty(); };
        ASSERT_TRUE(xt::pumpUntil(done));
        if (way == 0) GuiNumInputDestroy(closer.input), closer.input = nullptr;
        const std::size_t atDestroy = reports.values.size();
        xt::pumpFor(500);
        if (way < 2) xt::releasePointer();
        xt::pump();
        EXPECT_EQ(closer.input, nullptr) << "way " << way;
        EXPECT_EQ(destroyed, 3) << "way " << way;
        EXPECT_EQ(reports.values.size(), atDestroy) << "way " << way;
    }
}
} // namespace
