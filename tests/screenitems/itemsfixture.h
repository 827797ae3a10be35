/* itemsfixture.h - date, time and number items on a plugin screen: showing a screen,
** reaching an item's control and its widgets, and real input into them. */
#ifndef XC_TEST_ITEMSFIXTURE_H
#define XC_TEST_ITEMSFIXTURE_H

#include "xharness.h"

#include <Xm/TextF.h>

#include <cstdio>
#include <string>
#include <vector>

#include "guidateinput.h"
#include "guinuminput.h"
#include "guitimeinput.h"
#include "screens.h"

namespace items {

inline std::string textOf(Widget w) {
    char *text = XmTextFieldGetString(w);
    std::string copy = text ? text : "";
    XtFree(text);
    return copy;
}

/* Seconds of a local date and of a time of day after a UTC midnight, as the inputs
** report them. */
inline int32_t dateTime(int32_t year, int32_t month, int32_t day) {
    KxDateStruct date{year, month, day, 0};
    int32_t t = 0;
    TimeFromDate(&t, &date);
    return t;
}
inline int32_t timeOfDay(int32_t hours, int32_t minutes) {
    KxTimeOfDayStruct tod{hours, minutes, 0};
    int32_t t = 0;
    TimeFromTimeOfDay(&t, &tod);
    return t;
}

/* The local date of a time value as the date input shows it: day, month name, year. */
struct ShownDate {
    std::string day, month, year;
    bool operator==(const ShownDate &o) const {
        return day == o.day && month == o.month && year == o.year;
    }
};
inline std::ostream &operator<<(std::ostream &out, const ShownDate &d) {
    return out << d.day << "/" << d.month << "/" << d.year;
}
inline ShownDate shownDateOf(int32_t t) {
    static const char *const kMonths[] = {"BAD", "Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    KxTimeStruct local{};
    TimeToBreakdownStruct(&local, t);
    char day[8], year[8];
    std::snprintf(day, sizeof day, "%02d", local.iDay);
    std::snprintf(year, sizeof year, "%02d", local.iYear);
    return {day, kMonths[local.iMonth], year};
}
inline ShownDate shownDate(const GuiDateInput *input) {
    return {textOf(input->wDay), textOf(input->wMonth), textOf(input->wYear)};
}

class ItemsTest : public xt::XTest {
protected:
    /* Builds the screen into the test's form, realized afterwards when `shown`. */
    void show(xt::Screen &s, bool shown = true) {
        GuiCreatePlgScreen(form(), s.tree(), 7);
        if (shown && !XtIsRealized(shell())) realize();
        xt::pump();
    }
    static void destroy(xt::Screen &s) { GuiFreeScreenDefAndWidgets(s.slot()); }

    /* The control of an item, from its last widget record; null when it has none. */
    static GuiNumInput *numInputOf(const xt::Screen &s, int32_t id) {
        GuiWidgetRecord *rec = xt::lastRecord(s.item(id));
        return rec ? static_cast<GuiNumInput *>(rec->numInput) : nullptr;
    }
    static GuiDateInput *dateInputOf(const xt::Screen &s, int32_t id) {
        GuiWidgetRecord *rec = xt::lastRecord(s.item(id));
        return rec ? static_cast<GuiDateInput *>(rec->dateInput) : nullptr;
    }
    static GuiTimeInput *timeInputOf(const xt::Screen &s, int32_t id) {
        GuiWidgetRecord *rec = xt::lastRecord(s.item(id));
        return rec ? static_cast<GuiTimeInput *>(rec->timeInput) : nullptr;
    }

    template <typename T>
    static T *data(const xt::Screen &s, int32_t id) {
        return static_cast<T *>(s.item(id)->itemData);
    }

    /* The widget records of an item, first (the outer widget) to last. */
    static std::vector<GuiWidgetRecord *> records(const xt::Screen &s, int32_t id) {
        std::vector<GuiWidgetRecord *> found;
        ListWalk(s.item(id)->guiData->widgetList, collect, &found);
        return found;
    }

    /* Focuses the field, deletes what it holds with the keyboard and types `text`. */
    static void retype(Widget field, const char *text) {
        xt::focus(field);
        xt::key(XK_End);
        for (std::size_t i = textOf(field).size(); i > 0; --i) xt::key(XK_BackSpace);
        xt::type(text);
    }

private:
    static int collect(void *ctx, void *element) {
        auto *found = static_cast<std::vector<GuiWidgetRecord *> *>(ctx);
        found->push_back(static_cast<GuiWidgetRecord *>(ListElementItem(element)));
        return 1;
    }
};

} // namespace items

#endif
