// Number, date and time items: what they show at first, and the values that real clicks,
// typing and focus moves write back into the item data.
#include "plgscreen.h"
namespace xt {
namespace {
using Items = PlgScreenTest;
std::string shownDate(const GuiDateInput *in) {
    return textOf(in->wDay) + " " + textOf(in->wMonth) + " " + textOf(in->wYear);
}
TEST_F(Items, NumberArrowsWriteEachNewValueAndWrapAtTheEnds) {
    Screen s;
    s.add(nullptr, NumInput, 1, numInputData(5, 10, 1, 6));
    show(s);
    const GuiNumInput *in = numInputOf(s, 1);
    ASSERT_NE(in, nullptr);
    const Geometry up = geometry(in->wUp), down = geometry(in->wDown);
    const Geometry box = geometry(XtParent(in->wUp));
    EXPECT_LE(up.y + up.height, down.y + 1) << "up above down";
    EXPECT_TRUE(up.x + up.width == box.width && down.x + down.width == box.width) << "on the right";
    EXPECT_EQ(geometry(in->wText).x + geometry(in->wText).width, box.width - 15);
    int32_t *value = &data<NumInputData>(s, 1)->value;
    const struct { KeySym arrow; int clicks; const char *text; int32_t value; } rows[] = {
        {0, 0, "5", 5}, {XK_Up, 1, "6", 6}, {XK_Down, 2, "4", 4}, {XK_Up, 6, "10", 10},
        {XK_Up, 1, "1", 1}};
    for (const auto &row : rows) {
        for (int i = 0; i < row.clicks; ++i) click(row.arrow == XK_Up ? in->wUp : in->wDown);
        EXPECT_EQ(textOf(in->wText), row.text) << "past the maximum it goes on at the minimum";
        EXPECT_EQ(*value, row.value);
    }
    destroy(s);
}
TEST_F(Items, TypingWritesEachChangeAndLeavingTheFieldWritesTheCheckedValue) {
    Screen s;
    void *grid = column(s);
    s.add(grid, NumInput, 1, numInputData(5, 10, 1));
    s.add(grid, NumInput, 2, numInputData(0, 10, 1));
    show(s);
    Widget field = numInputOf(s, 1)->wText, other = numInputOf(s, 2)->wText;
    EXPECT_EQ(textOf(other), "0") << "shown as the control writes it, even outside the range";
    for (auto [typed, left] : {std::pair{"7", "7"}, {"42", "10"}}) {
        retype(field, typed);
        EXPECT_EQ(data<NumInputData>(s, 1)->value, std::atoi(typed)) << "follows the typing";
        focus(other);
        EXPECT_EQ(textOf(field), left) << "leaving the field pulls the value into the range";
        EXPECT_EQ(data<NumInputData>(s, 1)->value, std::atoi(left));
    }
    EXPECT_EQ(data<NumInputData>(s, 2)->value, 1) << "the other field was left as well";
    destroy(s);
}
TEST_F(Items, DateLaysOutDayMonthYearAndStepsTheDayIntoTheItem) {
    Screen s;
    s.add(nullptr, DateInput, 1, dateInputData(dateTime(2024, 2, 28) + 13 * 3600));
    show(s);
    const GuiDateInput *in = dateInputOf(s, 1);
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(shownDate(in), "28 Feb 2024");
    EXPECT_EQ(XtParent(in->wDay), outer(s, 1));
    Widget row[] = {in->wDay, in->wMonth, in->wYear, in->wUp};
    for (int i = 1; i < 4; ++i) EXPECT_GT(geometry(row[i]).x, geometry(row[i - 1]).x) << i;
    const Geometry up = geometry(in->wUp), down = geometry(in->wDown);
    EXPECT_TRUE(down.x == up.x && up.y < down.y);
    int32_t *value = &data<DateInputData>(s, 1)->date;
    EXPECT_EQ(*value, dateTime(2024, 2, 28)) << "the initial report gives the day's start";
    const std::pair<Widget, int> steps[] = {{in->wUp, 29}, {in->wUp, 29}, {in->wDown, 28},
                                            {in->wDown, 27}};
    for (auto [arrow, day] : steps) {
        click(arrow);
        EXPECT_EQ(*value, dateTime(2024, 2, day)) << "February 2024 has 29 days";
    }
    focus(in->wYear); /* the arrows step the field that has the focus */
    click(in->wUp);
    EXPECT_EQ(*value, dateTime(2025, 2, 27));
    retype(in->wMonth, "jun"); /* the whole name: June, not January by its first letter */
    focus(in->wDay);
    EXPECT_EQ(*value, dateTime(2025, 6, 27));
    destroy(s);
}
TEST_F(Items, TimeInAGroupBoxLivesInTheBoxsFormAndWritesItsChanges) {
    Screen s;
    void *box = s.add(nullptr, GroupBox, 1, groupBoxData("When"));
    s.add(box, TimeInput, 2, timeInputData(timeOfDay(9, 5)));
    show(s);
    const GuiTimeInput *in = timeInputOf(s, 2);
    ASSERT_NE(in, nullptr);
    EXPECT_EQ(XtParent(outer(s, 2)), s.item(1)->guiData->childParent);
    EXPECT_EQ(textOf(in->wHours) + ":" + textOf(in->wMinutes), "09:05");
    int32_t *value = &data<TimeInputData>(s, 2)->time;
    EXPECT_EQ(*value, timeOfDay(9, 5));
    click(in->wUp);
    EXPECT_EQ(*value, timeOfDay(10, 5));
    retype(in->wMinutes, "45");
    click(in->wDown); /* leaves the minutes field, then steps it down */
    EXPECT_EQ(*value, timeOfDay(10, 44));
    destroy(s);
}
} // namespace
} // namespace xt
