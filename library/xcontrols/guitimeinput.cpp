/* guitimeinput.cpp - the time input: hours and minutes within the caller's limits. */
#include "xcontrols/guitimeinput.h"

#include <array>

#include "guicommon.h"
#include "guiinputkit.h"
#include "guiservertime.h"
#include "xcontrols/guisetupdown.h"

namespace {

constexpr xc::ServerTimeTraces kServerTimeTraces{522, 523};
constexpr int32_t kLastHour = 23;
constexpr int32_t kLastMinute = 59;
constexpr int32_t kFieldWidth = 2;

/* A limit of 0 stands for the field's default. */
int32_t limitOr(int32_t limit, int32_t fallback) { return limit != 0 ? limit : fallback; }

void step(GuiTimeInput *input, int32_t direction) {
    if (input->wCurrent == input->wHours)
        GuiSetUpDownValue(input->wHours, direction, limitOr(input->iMinHours, 0),
                          limitOr(input->iMaxHours, kLastHour), kFieldWidth);
    else
        GuiSetUpDownValue(input->wMinutes, direction, limitOr(input->iMinMinutes, 0),
                          limitOr(input->iMaxMinutes, kLastMinute), kFieldWidth);
    xc::highlightField(input->wCurrent, XmHIGHLIGHT_SELECTED);
}

void destroyNow(void *record);
using Stepper = xc::FieldStepper<GuiTimeInput, step, GuiTimeInputGetTimeT, destroyNow>;

std::array<xc::InputHook, 8> hooksOf(const GuiTimeInput *input) {
    return {{{input->wUp, XmNarmCallback, Stepper::onArm},
             {input->wDown, XmNarmCallback, Stepper::onArm},
             {input->wHours, XmNlosingFocusCallback, Stepper::onLosingFocus},
             {input->wMinutes, XmNlosingFocusCallback, Stepper::onLosingFocus},
             {input->wHours, XmNfocusCallback, Stepper::onFocus},
             {input->wMinutes, XmNfocusCallback, Stepper::onFocus},
             {input->wHours, XmNvalueChangedCallback, Stepper::onValueChanged},
             {input->wMinutes, XmNvalueChangedCallback, Stepper::onValueChanged}}};
}

void destroyNow(void *record) {
    auto *input = static_cast<GuiTimeInput *>(record);
    xc::destroyControl(input, hooksOf(input),
                       {input->wHours, input->wMinutes, input->wUp, input->wDown});
}

bool inRange(int32_t value, int32_t last) { return value >= 0 && value <= last; }

/* Both fields at once; the report of the first write may destroy the input. */
void writeBoth(GuiTimeInput *input, long hours, long minutes) {
    xc::ControlScope scope(input, destroyNow);
    xc::writeTwoDigits(input->wHours, hours);
    if (scope.alive()) xc::writeTwoDigits(input->wMinutes, minutes);
}

} // namespace

extern "C" {

XC_API GuiTimeInput *GuiManageTimeInput(Widget wHours, Widget wMinutes, Widget wUp,
                                        Widget wDown) {
    if (!xc::haveStepperWidgets(__func__, {wHours, wMinutes}, wUp, wDown)) return nullptr;
    auto *input = xc::allocateRecord<GuiTimeInput>(__func__);
    if (input == nullptr) return nullptr;
    *input = GuiTimeInput{wHours, wMinutes, wUp, wDown, wHours, nullptr, nullptr, 0, 0, 0, 0};
    xc::addHooks(hooksOf(input), input);
    return input;
}

XC_API void GuiAddTimeInputCallback(GuiTimeInput *pInput, GuiTimeInputCallback fnCallback,
                                    void *pClientData) {
    xc::setCallback(pInput, fnCallback, pClientData, __func__);
}

XC_API void GuiTimeInputDestroy(GuiTimeInput *pInput) {
    if (!xc::haveHandle(pInput, __func__)) return;
    xc::ControlScope::destroyWhenIdle(pInput, destroyNow);
}

XC_API void GuiTimeInputSetTimeT(GuiTimeInput *pInput, int32_t tTime) {
    if (!xc::haveHandle(pInput, __func__)) return;
    KxTimeStruct utc{};
    TimeToUTCBreakdownStruct(&utc, tTime);
    writeBoth(pInput, utc.iHours, utc.iMinutes);
}

XC_API void GuiTimeInputSetNow(GuiTimeInput *pInput) {
    if (!xc::haveHandle(pInput, __func__)) return;
    GuiTimeInputSetTimeT(pInput, xc::serverTimeNow(kServerTimeTraces));
}

XC_API void GuiTimeInputSet(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes) {
    if (!xc::haveHandle(pInput, __func__)) return;
    writeBoth(pInput, inRange(iHours, kLastHour) ? iHours : 0,
              inRange(iMinutes, kLastMinute) ? iMinutes : 0);
}

XC_API int GuiTimeInputGetTimeT(int32_t *pTime, GuiTimeInput *pInput) {
    if (!xc::haveHandle(pInput, __func__) || !xc::haveHandle(pTime, __func__)) return 0;
    KxTimeOfDayStruct timeOfDay{};
    timeOfDay.iHours = xc::fieldNumber(pInput->wHours);
    timeOfDay.iMinutes = xc::fieldNumber(pInput->wMinutes);
    return TimeFromTimeOfDay(pTime, &timeOfDay);
}

XC_API int GuiTimeInputGetHours(int32_t *piHours, GuiTimeInput *pInput) {
    return xc::readField(piHours, pInput, &GuiTimeInput::wHours, __func__);
}

XC_API int GuiTimeInputGetMinutes(int32_t *piMinutes, GuiTimeInput *pInput) {
    return xc::readField(piMinutes, pInput, &GuiTimeInput::wMinutes, __func__);
}

XC_API void GuiTimeInputSetSensitive(GuiTimeInput *pInput, int32_t bSensitive) {
    if (!xc::haveHandle(pInput, __func__)) return;
    xc::setSensitive({pInput->wHours, pInput->wMinutes, pInput->wUp, pInput->wDown}, bSensitive);
}

XC_API void GuiTimeInputSetMaxTime(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes) {
    if (pInput == nullptr) return;
    pInput->iMaxHours = iHours;
    pInput->iMaxMinutes = iMinutes;
}

XC_API void GuiTimeInputSetMinTime(GuiTimeInput *pInput, int32_t iHours, int32_t iMinutes) {
    if (pInput == nullptr) return;
    pInput->iMinHours = iHours;
    pInput->iMinMinutes = iMinutes;
}

} // extern "C"
