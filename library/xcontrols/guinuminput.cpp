/* guinuminput.cpp - the number input: stepping, auto-repeat, wrap, validation, report. */
#include "xcontrols/guinuminput.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "guicommon.h"
#include "guiinputkit.h"

namespace {

constexpr int32_t kMsgRemoveTimer = 436;
constexpr int kBellVolume = 100;

/* Delays of a held button: the longer it is held, the faster it steps. */
constexpr unsigned long kFirstDelayMs = 200;
constexpr unsigned long kFasterDelayMs = 100;
constexpr unsigned long kFastestDelayMs = 50;
constexpr int32_t kFasterAbove = 4;
constexpr int32_t kFastestAbove = 19;

/* Every number input rings and times on the display and context of the first one. */
Display *gDisplay = nullptr;
XtAppContext gAppContext = nullptr;

GuiNumInput *inputOf(XtPointer data) { return static_cast<GuiNumInput *>(data); }

unsigned long repeatDelay(int32_t repeatCount) {
    if (repeatCount > kFastestAbove) return kFastestDelayMs;
    if (repeatCount > kFasterAbove) return kFasterDelayMs;
    return kFirstDelayMs;
}

void writeValue(const GuiNumInput *input, int32_t value) {
    /* A negative width fills nothing; filling is cut to what the buffer holds. */
    constexpr int32_t kMaxFilling = 30;
    const int32_t width = input->iWidth < 0 ? 0 : std::min(input->iWidth, kMaxFilling);
    char text[kMaxFilling + 2];
    if (width != 0) std::snprintf(text, sizeof text, "%0*ld", width, static_cast<long>(value));
    else std::snprintf(text, sizeof text, "%ld", static_cast<long>(value));
    XtVaSetValues(input->wText, XmNvalue, text, nullptr);
}

void stopRepeat(GuiNumInput *input) {
    if (input->idTimer == 0) return;
    xc::trace(kMsgRemoveTimer, 1, "Remove Timer %d", static_cast<int>(input->idTimer));
    XtRemoveTimeOut(input->idTimer);
    input->idTimer = 0;
}

void onRepeatUp(XtPointer data, XtIntervalId *);
void onRepeatDown(XtPointer data, XtIntervalId *);

/* The next repeated step; a timer still pending is replaced, never left behind. */
void startRepeat(GuiNumInput *input, XtTimerCallbackProc repeat, unsigned long delayMs) {
    if (input->idTimer != 0) XtRemoveTimeOut(input->idTimer);
    input->idTimer = XtAppAddTimeOut(gAppContext, delayMs, repeat, input);
}

/* One step towards `button` (wUp or wDown), or a range check when it is neither. Writing
** the value runs the report, whose callback may destroy the input: callers hold a
** ControlScope. */
void step(GuiNumInput *input, Widget button) {
    ++input->iRepeatCount;
    const unsigned long delayMs = repeatDelay(input->iRepeatCount);
    const int32_t shown = xc::fieldNumber(input->wText);
    const bool wraps = input->bWrap == 1;
    int32_t next = shown;

    if (button == input->wUp) {
        if (shown < input->iMax || wraps) {
            next = shown < input->iMax ? shown + 1 : input->iMin;
            startRepeat(input, onRepeatUp, delayMs);
        } else {
            XBell(gDisplay, kBellVolume);
        }
    } else if (button == input->wDown) {
        if (shown > input->iMin || wraps) {
            next = shown > input->iMin ? shown - 1 : input->iMax;
            startRepeat(input, onRepeatDown, delayMs);
        } else {
            XBell(gDisplay, kBellVolume);
        }
    } else if (shown < input->iMin) {
        next = input->iMin;
    } else if (shown > input->iMax) {
        next = input->iMax;
    }

    if (next != shown) writeValue(input, next);
}

void destroyNow(void *record);

/* Steps from the control's own code, where the report may destroy the input. */
void guardedStep(GuiNumInput *input, Widget button) {
    xc::ControlScope scope(input, destroyNow);
    step(input, button);
}

/* A fired timer is gone: forget its id before stepping, so that only a pending timer is
** ever removed. */
void onRepeatUp(XtPointer data, XtIntervalId *) {
    GuiNumInput *input = inputOf(data);
    input->idTimer = 0;
    guardedStep(input, input->wUp);
}

void onRepeatDown(XtPointer data, XtIntervalId *) {
    GuiNumInput *input = inputOf(data);
    input->idTimer = 0;
    guardedStep(input, input->wDown);
}

void onArm(Widget button, XtPointer data, XtPointer) { guardedStep(inputOf(data), button); }

void onDisarm(Widget, XtPointer data, XtPointer) {
    GuiNumInput *input = inputOf(data);
    stopRepeat(input);
    input->iRepeatCount = 0;
}

void onLosingFocus(Widget text, XtPointer data, XtPointer) {
    xc::ControlScope scope(data, destroyNow);
    step(inputOf(data), nullptr);
    if (!scope.alive()) return;
    XtVaSetValues(text, XmNcursorPositionVisible, False, nullptr);
    char *value = XmTextGetString(text);
    XtVaSetValues(text, XmNvalue, value, nullptr);
    XtFree(value);
}

void onFocus(Widget text, XtPointer, XtPointer) {
    XtVaSetValues(text, XmNcursorPositionVisible, True, nullptr);
}

void onValueChanged(Widget text, XtPointer data, XtPointer) {
    GuiNumInput *input = inputOf(data);
    xc::ControlScope scope(input, destroyNow);
    if (input->fnCallback == nullptr || !scope.alive()) return;
    int32_t value = xc::fieldNumber(text);
    input->fnCallback(text, input->pClientData, &value);
}

std::array<xc::InputHook, 7> hooksOf(const GuiNumInput *input) {
    return {{{input->wUp, XmNarmCallback, onArm},
             {input->wDown, XmNarmCallback, onArm},
             {input->wUp, XmNdisarmCallback, onDisarm},
             {input->wDown, XmNdisarmCallback, onDisarm},
             {input->wText, XmNlosingFocusCallback, onLosingFocus},
             {input->wText, XmNfocusCallback, onFocus},
             {input->wText, XmNvalueChangedCallback, onValueChanged}}};
}

void destroyNow(void *record) {
    auto *input = static_cast<GuiNumInput *>(record);
    stopRepeat(input);
    xc::destroyControl(input, hooksOf(input), {input->wText, input->wUp, input->wDown});
}

/* Hides the field's cursor and writes the initial value in one change of resources: the
** text field redraws and updates its input method at each change. */
void writeInitial(Widget text, int32_t value) {
    char decimal[16];
    std::snprintf(decimal, sizeof decimal, "%ld", static_cast<long>(value));
    XtVaSetValues(text, XmNcursorPositionVisible, False, XmNvalue, decimal, nullptr);
}

} // namespace

extern "C" {

XC_API GuiNumInput *GuiManageNumInput(Widget wText, Widget wUp, Widget wDown, int32_t iMax,
                                      int32_t iMin, int32_t iInitial, int32_t iWidth,
                                      int32_t bWrap) {
    if (!xc::haveStepperWidgets(__func__, {wText}, wUp, wDown)) return nullptr;
    if (gDisplay == nullptr) {
        gDisplay = XtDisplay(wText);
        gAppContext = XtWidgetToApplicationContext(wText);
    }
    auto *input = xc::allocateRecord<GuiNumInput>(__func__);
    if (input == nullptr) return nullptr;
    *input = GuiNumInput{wText, wUp, wDown, iMax, iMin, iInitial, iWidth, bWrap,
                         nullptr, nullptr, 0, 0};

    writeInitial(wText, iInitial);
    xc::addHooks(hooksOf(input), input);
    return input;
}

XC_API void GuiAddNumInputCallback(GuiNumInput *pInput, GuiNumInputCallback fnCallback,
                                   void *pClientData) {
    xc::setCallback(pInput, fnCallback, pClientData, __func__);
}

XC_API int GuiNumInputSet(GuiNumInput *pInput, int32_t iValue) {
    if (!xc::haveHandle(pInput, __func__)) return 0;
    if (iValue > pInput->iMax || iValue < pInput->iMin) return 0;
    char text[16];
    std::snprintf(text, sizeof text, "%ld", static_cast<long>(iValue));
    xc::ControlScope scope(pInput, destroyNow);
    XtVaSetValues(pInput->wText, XmNvalue, text, nullptr);
    if (scope.alive()) step(pInput, nullptr);
    return 1;
}

XC_API int GuiNumInputGetValue(int32_t *piValue, GuiNumInput *pInput) {
    if (!xc::haveHandle(pInput, __func__) || !xc::haveHandle(piValue, __func__)) return 0;
    xc::ControlScope scope(pInput, destroyNow);
    step(pInput, nullptr);
    *piValue = xc::fieldNumber(pInput->wText);
    return 1;
}

XC_API void GuiNumInputChangeRange(GuiNumInput *pInput, int32_t iMin, int32_t iMax) {
    if (!xc::haveHandle(pInput, __func__)) return;
    pInput->iMin = iMin;
    pInput->iMax = iMax;
    guardedStep(pInput, nullptr);
}

XC_API void GuiNumInputSetSensitive(GuiNumInput *pInput, int32_t bSensitive) {
    if (!xc::haveHandle(pInput, __func__)) return;
    xc::setSensitive({pInput->wText, pInput->wUp, pInput->wDown}, bSensitive);
}

XC_API void GuiNumInputDestroy(GuiNumInput *pInput) {
    if (!xc::haveHandle(pInput, __func__)) return;
    /* A button destroyed while held is never disarmed: its timer goes at once, even when
    ** the rest waits for the input's own code to finish. */
    stopRepeat(pInput);
    xc::ControlScope::destroyWhenIdle(pInput, destroyNow);
}

} // extern "C"
