/* test_numinput.cpp - the number input under real pointer, key and focus input. */
#include <chrono>
#include <numeric>
#include <vector>
#include "inputs_support.h"
#include "xcontrols/guinuminput.h"
namespace {
using Clock = std::chrono::steady_clock;

/* What the value callback saw: the values, when, and from which widget. */
struct Reports {
    std::vector<int32_t> values;
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
        double sum = 0;
        for (std::size_t i = first; i < last; ++i)
            sum += std::chrono::duration<double, std::milli>(times[i + 1] - times[i]).count();
        return sum / static_cast<double>(last - first);
    }
};
class NumInputTest : public inputs::InputsTest {
protected:
    void SetUp() override {
        InputsTest::SetUp();
        text = field("text", 6);
        up = arrow("up", XmARROW_UP);
        down = arrow("down", XmARROW_DOWN);
    }
    /* Makes the input, registers the reports and shows the shell. */
    GuiNumInput *make(int32_t max, int32_t min, int32_t initial, int32_t width, int32_t wrap) {
        GuiNumInput *input = GuiManageNumInput(text, up, down, max, min, initial, width, wrap);
        GuiAddNumInputCallback(input, Reports::onValue, &reports);
        if (!XtIsRealized(shell())) realize();
        xt::pump();
        return input;
    }
    Widget text = nullptr, up = nullptr, down = nullptr;
    Reports reports;
};

TEST_F(NumInputTest, CreationShowsTheInitialValueUncheckedAndUnreported) {
    GuiNumInput *input = make(10, 1, 0, 3, 1);
    EXPECT_EQ(inputs::textOf(text), "0");
    EXPECT_TRUE(reports.values.empty());
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, HeldUpButtonWrapsAroundAndStepsFasterTheLongerItIsHeld) {
    GuiNumInput *input = make(10, 1, 10, 0, 1);
    hold(up);
    ASSERT_TRUE(xt::pumpUntil([&] { return reports.values.size() >= 27; }, 8000))
        << "only " << reports.values.size() << " steps while the button was held";
    release();
    xt::pump();

    for (std::size_t i = 0; i < reports.values.size(); ++i)
        EXPECT_EQ(reports.values[i], static_cast<int32_t>(i % 10 + 1)) << "step " << i + 1;
    EXPECT_EQ(reports.from, text) << "the callback gets the text field";

    /* Nominal gaps: 200 ms before the 2nd to 5th steps, 100 ms before the 6th to 20th,
    ** 50 ms after that. Timers may run late on a busy machine, so only the order of the
    ** mean gaps is asserted, with a wide margin. */
    const double slow = reports.meanGap(0, 4);
    const double medium = reports.meanGap(5, 18);
    const double fast = reports.meanGap(20, reports.values.size() - 1);
    EXPECT_GT(slow, 150.0);
    EXPECT_LT(medium, slow * 0.8) << "slow " << slow << " medium " << medium;
    EXPECT_LT(fast, medium * 0.85) << "medium " << medium << " fast " << fast;
    EXPECT_GT(fast, 25.0);

    EXPECT_TRUE(hasTraceContaining("Remove Timer ")) << "the release removes the pending timer";
    EXPECT_EQ(input->idTimer, 0u);
    EXPECT_EQ(input->iRepeatCount, 0);
    const std::size_t atRelease = reports.values.size();
    xt::pumpFor(400);
    EXPECT_EQ(reports.values.size(), atRelease) << "no step after the release";
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, HeldUpButtonAtTheLimitWithoutWrapRingsOnceAndStays) {
    GuiNumInput *input = make(10, 1, 10, 0, 0);
    hold(up);
    xt::pumpFor(600);
    EXPECT_EQ(bells.count(), 1);
    EXPECT_EQ(inputs::textOf(text), "10");
    EXPECT_TRUE(reports.values.empty()) << "nothing changed, nothing reported";
    EXPECT_EQ(input->idTimer, 0u) << "no repeat timer at the limit";
    release();
    xt::pump();
    EXPECT_FALSE(hasTraceContaining("Remove Timer")) << "there was no timer to remove";
    EXPECT_EQ(bells.count(), 1);
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, HeldDownButtonStopsAtTheLowerLimitWithoutWrap) {
    GuiNumInput *input = make(10, 1, 3, 0, 0);
    hold(down);
    ASSERT_TRUE(xt::pumpUntil([&] { return bells.count() >= 1; }, 3000));
    xt::pumpFor(500);
    release();
    xt::pump();
    EXPECT_EQ(reports.values, (std::vector<int32_t>{2, 1}));
    EXPECT_EQ(bells.count(), 1) << "one bell, then the repeat stops";
    EXPECT_EQ(inputs::textOf(text), "1");
    GuiNumInputDestroy(input);
}
/* Steps fill with zeros to the width (none for a width of zero or less); set values are
** written as given. */
TEST_F(NumInputTest, StepsFillToTheWidth) {
    struct Row { int32_t max, min, initial, width, set; const char *clicks, *shown; };
    const Row rows[] = {{20, 0, 9, 3, -1, "u", "010"},     {20, 0, 9, 3, 7, "", "7"},
                        {20, 0, 9, 3, 7, "u", "008"},      {20, 0, 9, 3, 8, "dd", "006"},
                        {20, 0, 9, 6, -1, "u", "000010"},  {20, 0, 9, -3, -1, "u", "10"},
                        {5, -5, 0, 0, -1, "dd", "-2"}};
    for (const Row &r : rows) {
        if (&r != rows) {   /* the destroy took the widgets */
            text = field("text", 6);
            up = arrow("up", XmARROW_UP), down = arrow("down", XmARROW_DOWN);
        }
        GuiNumInput *input = make(r.max, r.min, r.initial, r.width, 0);
        if (r.set >= 0) {
            EXPECT_EQ(GuiNumInputSet(input, r.set), 1);
        }
        for (const char *c = r.clicks; *c; ++c) xt::click(*c == 'u' ? up : down);
        EXPECT_EQ(inputs::textOf(text), r.shown) << r.width << " " << r.set;
        GuiNumInputDestroy(input);
    }
}
TEST_F(NumInputTest, SetRefusesValuesOutsideTheRange) {
    GuiNumInput *input = make(10, 1, 4, 0, 0);
    EXPECT_EQ(GuiNumInputSet(input, 11), 0);
    EXPECT_EQ(GuiNumInputSet(input, 0), 0);
    EXPECT_EQ(inputs::textOf(text), "4");
    EXPECT_TRUE(reports.values.empty());
    EXPECT_EQ(GuiNumInputSet(input, 10), 1);
    EXPECT_EQ(reports.values, (std::vector<int32_t>{10}));
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, ChangingTheRangePullsTheShownValueIntoItAndReportsIt) {
    GuiNumInput *input = make(50, 0, 12, 0, 0);
    GuiNumInputChangeRange(input, 20, 30);
    EXPECT_EQ(inputs::textOf(text), "20");
    EXPECT_EQ(reports.values, (std::vector<int32_t>{20}));

    GuiNumInputChangeRange(input, 10, 25);
    EXPECT_EQ(inputs::textOf(text), "20") << "a value inside the new range stays";
    EXPECT_EQ(reports.values.size(), 1u);
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, TextThatIsNoNumberBecomesTheMinimumWhenTheFieldLosesTheFocus) {
    GuiNumInput *input = make(9, 5, 7, 0, 0);
    retype(text, "abc");
    EXPECT_EQ(inputs::textOf(text), "abc");
    leaveField();
    EXPECT_EQ(inputs::textOf(text), "5");
    ASSERT_FALSE(reports.values.empty());
    EXPECT_EQ(reports.values.back(), 5);
    Boolean cursorShown = True;
    XtVaGetValues(text, XmNcursorPositionVisible, &cursorShown, nullptr);
    EXPECT_FALSE(cursorShown) << "the cursor hides when the field loses the focus";
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, TypedValueAboveTheRangeIsClampedWithoutBell) {
    GuiNumInput *input = make(9, 5, 7, 2, 0);
    retype(text, "42");
    Boolean cursorShown = False;
    XtVaGetValues(text, XmNcursorPositionVisible, &cursorShown, nullptr);
    EXPECT_TRUE(cursorShown) << "the cursor shows while the field has the focus";
    int32_t value = 0;
    EXPECT_EQ(GuiNumInputGetValue(&value, input), 1);
    EXPECT_EQ(value, 9) << "reading the value checks the range first";
    EXPECT_EQ(inputs::textOf(text), "09");
    leaveField();
    EXPECT_EQ(inputs::textOf(text), "09");
    EXPECT_EQ(bells.count(), 0) << "checks never ring";
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, ClicksBetweenChecksStartFromTheCountOfTheChecks) {
    GuiNumInput *input = make(100, 0, 50, 0, 0);
    int32_t value = 0;
    for (int i = 0; i < 3; ++i) GuiNumInputGetValue(&value, input);
    EXPECT_EQ(input->iRepeatCount, 3) << "checks count like steps";
    xt::click(up);
    EXPECT_EQ(input->iRepeatCount, 0) << "the release starts the count afresh";
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, SensitivityCoversTheFieldAndBothButtons) {
    GuiNumInput *input = make(10, 1, 5, 0, 0);
    GuiNumInputSetSensitive(input, 0);
    EXPECT_FALSE(XtIsSensitive(text) || XtIsSensitive(up) || XtIsSensitive(down));
    xt::click(up);
    EXPECT_EQ(inputs::textOf(text), "5") << "an insensitive button does not step";
    GuiNumInputSetSensitive(input, 1);
    EXPECT_TRUE(XtIsSensitive(text) && XtIsSensitive(up) && XtIsSensitive(down));
    GuiNumInputDestroy(input);
}
TEST_F(NumInputTest, DestroyTakesTheWidgetsWithIt) {
    GuiNumInput *input = make(10, 1, 5, 0, 0);
    inputs::DestroyCounter destroyed;
    destroyed.watch({text, up, down});
    GuiNumInputDestroy(input);
    xt::pump();
    EXPECT_EQ(destroyed.count(), 3);
}
/* The button is destroyed while held, so it is never disarmed: the pending repeat must
** not fire on the freed handle (an AddressSanitizer build of this test proves it). */
TEST_F(NumInputTest, DestroyWhileTheButtonIsHeldLeavesNoTimerBehind) {
    GuiNumInput *input = make(100, 0, 10, 0, 1);
    hold(up);
    ASSERT_TRUE(xt::pumpUntil([&] { return !reports.values.empty(); }));
    ASSERT_NE(input->idTimer, 0u) << "a repeat is pending while the button is held";
    GuiNumInputDestroy(input);
    const std::size_t atDestroy = reports.values.size();
    xt::pumpFor(500);
    release();
    xt::pump();
    EXPECT_EQ(reports.values.size(), atDestroy) << "no step after the destroy";
}
/* A client that closes the input from its value callback, in the middle of a step that
** has already started the next timer, which the destroy must remove. */
TEST_F(NumInputTest, DestroyFromItsOwnReportWhileRepeatingLeavesNoTimerBehind) {
    inputs::CloseOnFirstReport<GuiNumInput, GuiNumInputDestroy> closer{make(10, 1, 1, 0, 0)};
    GuiAddNumInputCallback(closer.input, closer.onValue, &closer);
    hold(up);
    ASSERT_TRUE(xt::pumpUntil([&] { return closer.input == nullptr; }));
    xt::pumpFor(500);
    release();
    xt::pump();
    EXPECT_EQ(closer.lateReports, 0);
}
/* The check on leaving the field writes the clamped value, whose report closes the
** input: the field is not written, nor reported, once more. */
TEST_F(NumInputTest, DestroyFromTheReportOfTheFocusOutCheckEndsTheCheck) {
    inputs::CloseOnFirstReport<GuiNumInput, GuiNumInputDestroy> closer{make(10, 1, 5, 0, 0)};
    retype(text, "99");
    GuiAddNumInputCallback(closer.input, closer.onValue, &closer);
    xt::click(spare());
    EXPECT_EQ(closer.input, nullptr);
    EXPECT_EQ(closer.lateReports, 0);
}
TEST_F(NumInputTest, NullHandlesAreTracedAndIgnored) {
    int32_t value = 42;
    EXPECT_EQ(GuiNumInputSet(nullptr, 1), 0);
    EXPECT_EQ(GuiNumInputGetValue(&value, nullptr), 0);
    EXPECT_EQ(value, 42);
    GuiNumInputChangeRange(nullptr, 1, 2);
    GuiNumInputSetSensitive(nullptr, 1);
    GuiAddNumInputCallback(nullptr, Reports::onValue, nullptr);
    GuiNumInputDestroy(nullptr);
    EXPECT_EQ(GuiManageNumInput(nullptr, up, down, 10, 1, 1, 0, 0), nullptr);
    EXPECT_TRUE(hasTraceContaining("GuiNumInputSet: null argument"));
    EXPECT_TRUE(hasTraceContaining("GuiManageNumInput: a widget is missing"));
}

} // namespace
