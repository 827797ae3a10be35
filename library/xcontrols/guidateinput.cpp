/* guidateinput.cpp - the date input: month names, stepping, checks and the report. */
#include "xcontrols/guidateinput.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "guicommon.h"
#include "guiinputkit.h"
#include "guiservertime.h"
#include "xcontrols/guisetupdown.h"

namespace {

constexpr int32_t kMsgBadMonth = 524;
constexpr xc::ServerTimeTraces kServerTimeTraces{503, 504};
constexpr int32_t kFirstYear = 1900;
constexpr int32_t kLastYear = 3000;
constexpr int32_t kYearWidth = 0;
constexpr int32_t kDayWidth = 2;
constexpr int32_t kMonths = 12;

/* Month names by number, 0 being the name of a bad month; read once, kept for good. */
struct MonthName {
    const char *fallback;
    int32_t msgNo;
};
constexpr std::array<MonthName, kMonths + 1> kMonthNames{{
    {"BAD", 757}, {"Jan", 758}, {"Feb", 759}, {"Mar", 760}, {"Apr", 761},
    {"May", 762}, {"Jun", 763}, {"Jul", 764}, {"Aug", 765}, {"Sep", 766},
    {"Oct", 767}, {"Nov", 768}, {"Dec", 769},
}};
std::array<const char *, kMonths + 1> gMonthNames{};
bool gMonthNamesFilled = false;

void fillMonthNames() {
    if (gMonthNamesFilled) return;
    for (std::size_t i = 0; i < kMonthNames.size(); ++i)
        gMonthNames[i] = LocaleGetString(kMonthNames[i].fallback, kMonthNames[i].msgNo);
    gMonthNamesFilled = true;
}

int32_t monthOf(const GuiDateInput *input) {
    XtPointer stored = nullptr;
    XtVaGetValues(input->wMonth, XmNuserData, &stored, nullptr);
    return static_cast<int32_t>(reinterpret_cast<intptr_t>(stored));
}

void storeMonth(const GuiDateInput *input, int32_t month) {
    XtVaSetValues(input->wMonth, XmNuserData, reinterpret_cast<XtPointer>(intptr_t{month}),
                  nullptr);
}

void writeMonthName(const GuiDateInput *input, int32_t month) {
    XmTextSetString(input->wMonth, const_cast<char *>(gMonthNames[month]));
}

/* The month named by `text`: the whole name first, else the first letter, ignoring
** case; 0 when no name fits. */
int32_t parseMonth(const char *text) {
    for (int32_t month = 1; month <= kMonths; ++month)
        if (StrCompareNoCase(text, gMonthNames[month]) == 0) return month;
    for (int32_t month = 1; month <= kMonths; ++month)
        if (StrCompareRangeNoCase(text, gMonthNames[month], 1) == 0) return month;
    return 0;
}

} // namespace

int32_t xc::longestMonthName() {
    fillMonthNames();
    int32_t longest = 0;
    for (int32_t month = 1; month <= kMonths; ++month)
        longest = std::max(longest, StrSize(gMonthNames[month]) - 1);
    return longest;
}

namespace {

int32_t daysInShownMonth(const GuiDateInput *input) {
    return TimeDaysInMonth(monthOf(input), xc::fieldNumber(input->wYear));
}

/* Pulls a day that the shown month lacks back to its last day. */
void checkDay(const GuiDateInput *input) {
    GuiSetUpDownValue(input->wDay, GUI_UPDOWN_VALIDATE, 1, daysInShownMonth(input), kDayWidth);
}

void stepMonth(const GuiDateInput *input, int32_t direction) {
    int32_t month = monthOf(input);
    if (direction == GUI_UPDOWN_UP) {
        ++month;
    } else if (direction == GUI_UPDOWN_DOWN) {
        --month;
    } else {
        char *text = XmTextGetString(input->wMonth);
        if (int32_t parsed = parseMonth(text)) month = parsed;
        XtFree(text);
    }
    month = month > kMonths ? kMonths : month < 1 ? 1 : month;
    /* The number first: the report that the new text triggers must already see it. */
    storeMonth(input, month);
    writeMonthName(input, month);
}

void step(GuiDateInput *input, int32_t direction) {
    if (input->wCurrent == input->wDay) {
        GuiSetUpDownValue(input->wDay, direction, 1, daysInShownMonth(input), kDayWidth);
    } else if (input->wCurrent == input->wMonth) {
        stepMonth(input, direction);
        checkDay(input);
    } else {
        GuiSetUpDownValue(input->wYear, direction, kFirstYear, kLastYear, kYearWidth);
        checkDay(input);
    }
    xc::highlightField(input->wCurrent, XmHIGHLIGHT_SELECTED);
}

void destroyNow(void *record);
using Stepper = xc::FieldStepper<GuiDateInput, step, GuiDateInputGetTimeT, destroyNow>;

std::array<xc::InputHook, 11> hooksOf(const GuiDateInput *input) {
    return {{{input->wUp, XmNarmCallback, Stepper::onArm},
             {input->wDown, XmNarmCallback, Stepper::onArm},
             {input->wYear, XmNlosingFocusCallback, Stepper::onLosingFocus},
             {input->wMonth, XmNlosingFocusCallback, Stepper::onLosingFocus},
             {input->wDay, XmNlosingFocusCallback, Stepper::onLosingFocus},
             {input->wYear, XmNfocusCallback, Stepper::onFocus},
             {input->wMonth, XmNfocusCallback, Stepper::onFocus},
             {input->wDay, XmNfocusCallback, Stepper::onFocus},
             {input->wDay, XmNvalueChangedCallback, Stepper::onValueChanged},
             {input->wMonth, XmNvalueChangedCallback, Stepper::onValueChanged},
             {input->wYear, XmNvalueChangedCallback, Stepper::onValueChanged}}};
}

void destroyNow(void *record) {
    auto *input = static_cast<GuiDateInput *>(record);
    xc::destroyControl(input, hooksOf(input),
                       {input->wYear, input->wMonth, input->wDay, input->wUp, input->wDown});
}

} // namespace

extern "C" {

XC_API GuiDateInput *GuiManageDateInput(Widget wYear, Widget wMonth, Widget wDay, Widget wUp,
                                        Widget wDown) {
    if (!xc::haveStepperWidgets(__func__, {wYear, wMonth, wDay}, wUp, wDown)) return nullptr;
    fillMonthNames();
    auto *input = xc::allocateRecord<GuiDateInput>(__func__);
    if (input == nullptr) return nullptr;
    *input = GuiDateInput{wYear, wMonth, wDay, wUp, wDown, wDay, nullptr, nullptr};
    xc::addHooks(hooksOf(input), input);
    return input;
}

XC_API void GuiAddDateInputCallback(GuiDateInput *pInput, GuiDateInputCallback fnCallback,
                                    void *pClientData) {
    xc::setCallback(pInput, fnCallback, pClientData, __func__);
}

XC_API void GuiDateInputDestroy(GuiDateInput *pInput) {
    if (!xc::haveHandle(pInput, __func__)) return;
    xc::ControlScope::destroyWhenIdle(pInput, destroyNow);
}

XC_API void GuiDateInputSet(GuiDateInput *pInput, int32_t iYear, int32_t iMonth, int32_t iDay) {
    if (!xc::haveHandle(pInput, __func__)) return;
    if (iMonth < 0 || iMonth > kMonths) {
        xc::trace(kMsgBadMonth, -1, "No such month %d", static_cast<int>(iMonth));
        iMonth = 0;
    }
    xc::ControlScope scope(pInput, destroyNow);
    xc::writeTwoDigits(pInput->wYear, iYear);
    if (!scope.alive()) return;
    /* The name first: the report it triggers still sees the old number. */
    writeMonthName(pInput, iMonth);
    if (!scope.alive()) return;
    storeMonth(pInput, iMonth);
    xc::writeTwoDigits(pInput->wDay, iDay);
}

XC_API void GuiDateInputSetTimeT(GuiDateInput *pInput, int32_t tTime) {
    if (!xc::haveHandle(pInput, __func__)) return;
    KxTimeStruct local{};
    TimeToBreakdownStruct(&local, tTime);
    GuiDateInputSet(pInput, local.iYear, local.iMonth, local.iDay);
}

XC_API void GuiDateInputSetNow(GuiDateInput *pInput) {
    if (!xc::haveHandle(pInput, __func__)) return;
    GuiDateInputSetTimeT(pInput, xc::serverTimeNow(kServerTimeTraces));
}

XC_API int GuiDateInputGetTimeT(int32_t *pTime, GuiDateInput *pInput) {
    if (!xc::haveHandle(pInput, __func__) || !xc::haveHandle(pTime, __func__)) return 0;
    KxDateStruct date{};
    date.iYear = xc::fieldNumber(pInput->wYear);
    date.iMonth = monthOf(pInput);
    date.iDay = xc::fieldNumber(pInput->wDay);
    return TimeFromDate(pTime, &date);
}

XC_API int GuiDateInputGetYear(int32_t *piYear, GuiDateInput *pInput) {
    return xc::readField(piYear, pInput, &GuiDateInput::wYear, __func__);
}

XC_API int GuiDateInputGetMonth(int32_t *piMonth, GuiDateInput *pInput) {
    if (!xc::haveHandle(pInput, __func__) || !xc::haveHandle(piMonth, __func__)) return 0;
    *piMonth = monthOf(pInput);
    return 1;
}

XC_API int GuiDateInputGetDay(int32_t *piDay, GuiDateInput *pInput) {
    return xc::readField(piDay, pInput, &GuiDateInput::wDay, __func__);
}

XC_API void GuiDateInputSetSensitive(GuiDateInput *pInput, int32_t bSensitive) {
    if (!xc::haveHandle(pInput, __func__)) return;
    xc::setSensitive({pInput->wDay, pInput->wMonth, pInput->wYear, pInput->wUp, pInput->wDown},
                     bSensitive);
}

} // extern "C"
