// Number, date and time items: what they show at first, and the values that real clicks,
// typing and focus moves write back into the item data.
#include "itemsfixture.h"

#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>

namespace {

using items::textOf;

class Items : public items::ItemsTest {
protected:
    /* A one-column grid (item 100) that keeps the items of a test apart. */
    static void *column(xt::Screen &s) { return s.add(nullptr, RowColManager, 100, xt::rowColData(1)); }

    /* Shows two number items, 1 above 2, made from the data given. */
    void showNumbers(xt::Screen &s, void *first, void *second) {
        void *grid = column(s);
        s.add(grid, NumInput, 1, first);
        s.add(grid, NumInput, 2, second);
        show(s);
    }
};

/* ---- Number items ---------------------------------------------------------------------- */

TEST_F(Items, NumberShowsItsValueAsTheControlWritesItEvenOutsideTheRange) {
    xt::Screen s;
    showNumbers(s, xt::numInputData(0, 10, 1), xt::numInputData(10, 10, 1));
    ASSERT_NE(numInputOf(s, 1), nullptr);
    ASSERT_NE(numInputOf(s, 2), nullptr);
    EXPECT_EQ(textOf(numInputOf(s, 1)->wText), "0");
    EXPECT_EQ(textOf(numInputOf(s, 2)->wText), "10");
    EXPECT_EQ(data<NumInputData>(s, 1)->value, 0) << "nothing is reported at creation";
    EXPECT_EQ(data<NumInputData>(s, 2)->value, 10);
    destroy(s);
}

TEST_F(Items, NumberKeepsItsFrameItsFormAndTheControlRecord) {
    xt::Screen s;
    s.add(nullptr, NumInput, 1, xt::numInputData(3, 9, -9, 6));
    show(s);
    const auto recs = records(s, 1);
    ASSERT_EQ(recs.size(), 3u);
    Widget frame = recs[0]->widget, inner = recs[1]->widget;
    EXPECT_EQ(recs[0]->widgetKind, WIDGET_PLAIN);
    EXPECT_EQ(recs[1]->widgetKind, WIDGET_PLAIN);
    EXPECT_EQ(recs[2]->widgetKind, WIDGET_NUMINPUT);
    EXPECT_EQ(recs[2]->widget, nullptr) << "the control record carries no widget";
    ASSERT_TRUE(XtIsSubclass(frame, xmFrameWidgetClass));
    EXPECT_STREQ(XtName(frame), "frame");
    EXPECT_EQ(XtParent(frame), form());
    EXPECT_STREQ(XtName(inner), "form");
    EXPECT_EQ(XtParent(inner), frame);

    const GuiNumInput *input = numInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    EXPECT_STREQ(XtName(input->wText), "text");
    EXPECT_STREQ(XtName(input->wUp), "button");
    EXPECT_STREQ(XtName(input->wDown), "button");
    EXPECT_EQ(XtParent(input->wText), inner);
    EXPECT_EQ(input->iMax, 9);
    EXPECT_EQ(input->iMin, -9);
    EXPECT_EQ(input->iWidth, 0);
    EXPECT_EQ(input->bWrap, 1);
    short columns = 0;
    XtVaGetValues(input->wText, XmNcolumns, &columns, nullptr);
    EXPECT_EQ(columns, 6);

    const xt::Geometry text = xt::geometry(input->wText), up = xt::geometry(input->wUp),
                       down = xt::geometry(input->wDown), box = xt::geometry(inner);
    EXPECT_LE(up.y + up.height, down.y + 1) << "up above down";
    EXPECT_EQ(up.x + up.width, box.width) << "the buttons hang on the right edge";
    EXPECT_EQ(down.x + down.width, box.width);
    EXPECT_EQ(text.x + text.width, box.width - 15);
    destroy(s);
}

TEST_F(Items, ClickingTheArrowsWritesEachNewValueAndWrapsAtTheEnds) {
    xt::Screen s;
    s.add(nullptr, NumInput, 1, xt::numInputData(5, 10, 1));
    show(s);
    const GuiNumInput *input = numInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    auto *value = &data<NumInputData>(s, 1)->value;

    xt::click(input->wUp);
    EXPECT_EQ(textOf(input->wText), "6");
    EXPECT_EQ(*value, 6);
    xt::click(input->wDown);
    xt::click(input->wDown);
    EXPECT_EQ(*value, 4);

    *value = 0; /* whatever the item holds, the next change overwrites it */
    for (int i = 0; i < 6; ++i) xt::click(input->wUp);
    EXPECT_EQ(textOf(input->wText), "10");
    EXPECT_EQ(*value, 10);
    xt::click(input->wUp);
    EXPECT_EQ(textOf(input->wText), "1") << "past the maximum the value goes on at the minimum";
    EXPECT_EQ(*value, 1);
    destroy(s);
}

TEST_F(Items, TypingWritesEachChangeAndLeavingTheFieldWritesTheCheckedValue) {
    xt::Screen s;
    showNumbers(s, xt::numInputData(5, 10, 1), xt::numInputData(1, 10, 1));
    Widget field = numInputOf(s, 1)->wText, other = numInputOf(s, 2)->wText;
    auto *value = &data<NumInputData>(s, 1)->value;

    retype(field, "7");
    EXPECT_EQ(*value, 7);
    xt::focus(other);
    EXPECT_EQ(textOf(field), "7");
    EXPECT_EQ(*value, 7);

    retype(field, "42");
    EXPECT_EQ(*value, 42) << "the value follows the typing";
    xt::focus(other);
    EXPECT_EQ(textOf(field), "10") << "leaving the field pulls the value into the range";
    EXPECT_EQ(*value, 10);
    EXPECT_EQ(data<NumInputData>(s, 2)->value, 1) << "the other item is untouched";
    destroy(s);
}

/* ---- Date items --------------------------------------------------------------------------- */

TEST_F(Items, DateZeroShowsTodayAndTheItemThenHoldsTodaysDate) {
    xt::Screen s;
    s.add(nullptr, DateInput, 1, xt::dateInputData(0));
    const items::ShownDate before = items::shownDateOf(TimeNow());
    show(s);
    const items::ShownDate after = items::shownDateOf(TimeNow());
    if (!(before == after)) GTEST_SKIP() << "the date changed during the test";

    ASSERT_TRUE(hasTrace("Cannot get OrlTime - falling back to TimeNow()"))
        << "no server offset is configured, so today is the local date";
    const GuiDateInput *input = dateInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(items::shownDate(input), after);
    const int32_t date = data<DateInputData>(s, 1)->date;
    EXPECT_NE(date, 0);
    EXPECT_EQ(items::shownDateOf(date), after);
    int32_t shown = 0;
    GuiDateInputGetTimeT(&shown, const_cast<GuiDateInput *>(input));
    EXPECT_EQ(date, shown) << "the item holds what the fields show";
    EXPECT_GE(countTrace("Change date in plg screen"), 1);
    destroy(s);
}

TEST_F(Items, DateLaysOutDayMonthYearAndItsButtonsInOneForm) {
    xt::Screen s;
    s.add(nullptr, DateInput, 1, xt::dateInputData(items::dateTime(2023, 7, 4)));
    show(s);
    EXPECT_TRUE(hasTrace("Can't find parent use toplevel"));
    EXPECT_TRUE(hasTrace("Create date widgets"));
    const auto recs = records(s, 1);
    ASSERT_EQ(recs.size(), 4u);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(recs[i]->widgetKind, WIDGET_PLAIN) << i;
    EXPECT_EQ(recs[3]->widgetKind, WIDGET_DATEINPUT);
    EXPECT_EQ(recs[3]->widget, nullptr);
    Widget box = recs[0]->widget;
    ASSERT_TRUE(XtIsSubclass(box, xmFormWidgetClass));
    EXPECT_STREQ(XtName(box), "form");
    EXPECT_EQ(XtParent(box), form());
    for (int i : {1, 2}) {
        EXPECT_STREQ(XtName(recs[i]->widget), "/");
        EXPECT_TRUE(XtIsSubclass(recs[i]->widget, xmLabelWidgetClass));
    }

    const GuiDateInput *input = dateInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(items::shownDate(input), (items::ShownDate{"04", "Jul", "2023"}));
    Widget row[] = {input->wDay, recs[1]->widget, input->wMonth, recs[2]->widget, input->wYear};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(XtParent(row[i]), box);
        if (i == 0) continue;
        const xt::Geometry left = xt::geometry(row[i - 1]);
        EXPECT_EQ(xt::geometry(row[i]).x, left.x + left.width) << i << " follows its left neighbour";
    }
    for (Widget field : {input->wDay, input->wMonth, input->wYear}) EXPECT_STREQ(XtName(field), "input");
    EXPECT_STREQ(XtName(input->wUp), "up");
    EXPECT_STREQ(XtName(input->wDown), "down");
    const xt::Geometry year = xt::geometry(input->wYear), up = xt::geometry(input->wUp),
                       down = xt::geometry(input->wDown);
    EXPECT_EQ(up.x, year.x + year.width);
    EXPECT_EQ(down.x, up.x);
    EXPECT_LT(up.y, down.y);
    EXPECT_EQ(data<DateInputData>(s, 1)->date, items::dateTime(2023, 7, 4));
    destroy(s);
}

TEST_F(Items, SteppingTheDayWritesTheNewDateIntoTheItem) {
    xt::Screen s;
    s.add(nullptr, DateInput, 1, xt::dateInputData(items::dateTime(2024, 2, 28) + 13 * 3600));
    show(s);
    const GuiDateInput *input = dateInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    auto *date = &data<DateInputData>(s, 1)->date;
    EXPECT_EQ(*date, items::dateTime(2024, 2, 28)) << "the initial report gives the day's start";

    clearTraces();
    xt::click(input->wUp);
    EXPECT_EQ(textOf(input->wDay), "29");
    EXPECT_EQ(*date, items::dateTime(2024, 2, 29));
    EXPECT_TRUE(hasTrace("Change date in plg screen"));
    xt::click(input->wUp);
    EXPECT_EQ(*date, items::dateTime(2024, 2, 29)) << "February 2024 has 29 days";
    xt::click(input->wDown);
    xt::click(input->wDown);
    EXPECT_EQ(*date, items::dateTime(2024, 2, 27));
    destroy(s);
}

/* ---- Time items ---------------------------------------------------------------------------- */

TEST_F(Items, TimeInAGroupBoxLivesInTheBoxsFormAndWritesItsChanges) {
    xt::Screen s;
    void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData("When"));
    s.add(box, TimeInput, 2, xt::timeInputData(items::timeOfDay(9, 5)));
    show(s);
    const auto recs = records(s, 2);
    ASSERT_EQ(recs.size(), 3u);
    EXPECT_EQ(recs[0]->widgetKind, WIDGET_PLAIN);
    EXPECT_STREQ(XtName(recs[1]->widget), ":");
    EXPECT_EQ(recs[2]->widgetKind, WIDGET_TIMEINPUT);
    EXPECT_EQ(XtParent(recs[0]->widget), s.item(1)->guiData->childParent);
    EXPECT_FALSE(hasTrace("Can't find parent use toplevel"));

    const GuiTimeInput *input = timeInputOf(s, 2);
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(textOf(input->wHours), "09");
    EXPECT_EQ(textOf(input->wMinutes), "05");
    EXPECT_EQ(XtParent(input->wHours), recs[0]->widget);
    auto *time = &data<TimeInputData>(s, 2)->time;
    EXPECT_EQ(*time, items::timeOfDay(9, 5));

    clearTraces();
    xt::click(input->wUp);
    EXPECT_EQ(textOf(input->wHours), "10");
    EXPECT_EQ(*time, items::timeOfDay(10, 5));
    EXPECT_TRUE(hasTrace("Change time in plg screen to " + std::to_string(items::timeOfDay(10, 5))));

    retype(input->wMinutes, "45");
    xt::click(input->wDown); /* leaves the minutes field, then steps it down */
    EXPECT_EQ(textOf(input->wMinutes), "44");
    EXPECT_EQ(*time, items::timeOfDay(10, 44));
    destroy(s);
}

TEST_F(Items, TimeZeroShowsTheTimeNowAndTheItemThenHoldsIt) {
    xt::Screen s;
    s.add(nullptr, TimeInput, 1, xt::timeInputData(0));
    show(s);
    const GuiTimeInput *input = timeInputOf(s, 1);
    ASSERT_NE(input, nullptr);
    KxTimeStruct now{};
    TimeToUTCBreakdownStruct(&now, TimeNow());
    const int32_t hours = std::atoi(textOf(input->wHours).c_str());
    const int32_t minutes = std::atoi(textOf(input->wMinutes).c_str());
    EXPECT_LE((now.iHours * 60 + now.iMinutes - hours * 60 - minutes + 1440) % 1440, 1)
        << "shown " << hours << ":" << minutes;
    EXPECT_EQ(data<TimeInputData>(s, 1)->time, items::timeOfDay(hours, minutes));
    destroy(s);
}

/* ---- The handlers and the item data ---------------------------------------------------------- */

TEST_F(Items, HandlersWriteIntoDataOfAnyTagButNeverIntoARecordOfAnotherShape) {
    xt::Screen s;
    void *grid = column(s);
    s.add(grid, DateInput, 1, xt::dateInputData(items::dateTime(2022, 5, 10)));
    s.add(grid, NumInput, 2, xt::numInputData(4, 10, 1));
    show(s);
    const GuiDateInput *date = dateInputOf(s, 1);
    const GuiNumInput *number = numInputOf(s, 2);
    ASSERT_NE(date, nullptr);
    ASSERT_NE(number, nullptr);

    /* The client replaces the item data while the screen is shown. */
    ScreenItem *dateItem = s.item(1);
    ObjReleaseInternal(&dateItem->itemData);
    dateItem->itemData = xt::timeInputData(0); /* another tag, the same shape */
    ScreenItem *numberItem = s.item(2);
    ObjReleaseInternal(&numberItem->itemData);
    numberItem->itemData = xt::labelData("a label"); /* another shape */

    xt::click(date->wUp);
    EXPECT_EQ(data<TimeInputData>(s, 1)->time, items::dateTime(2022, 5, 11));
    xt::click(number->wUp);
    EXPECT_EQ(textOf(number->wText), "5");
    EXPECT_STREQ(data<LabelData>(s, 2)->text, "a label") << "a text is not overwritten";
    destroy(s);
}

} // namespace
