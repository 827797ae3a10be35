/* guisetupdown.cpp - one step or one range check of the number in a text field. */
#include "xcontrols/guisetupdown.h"

#include <cstdio>

#include "guicommon.h"
#include "guiinputkit.h"

namespace {

constexpr int32_t kMsgSetUpDown = 202;
constexpr int kBellVolume = 100;
constexpr int32_t kWidestFilling = 4;

/* The number of digits to fill to: widths outside 0 to 3 give the widest filling. */
int filledDigits(int32_t width) {
    return width >= 0 && width < kWidestFilling ? width : kWidestFilling;
}

} // namespace

extern "C" XC_API void GuiSetUpDownValue(Widget wText, int32_t iDirection, int32_t iMin,
                                         int32_t iMax, int32_t iWidth) {
    xc::trace(kMsgSetUpDown, 1, "GuiSetUpDownValue()");
    if (!xc::haveWidgets(__func__, {{wText, xc::WidgetRole::TextInput}})) return;

    /* Wide enough that stepping past the ends of the 32-bit range cannot overflow. */
    int64_t value = xc::fieldNumber(wText);
    if (iDirection == GUI_UPDOWN_UP) ++value;
    else if (iDirection == GUI_UPDOWN_DOWN) --value;

    bool clamped = false;
    if (value < iMin) {
        value = iMin;
        XBell(XtDisplay(wText), kBellVolume);
        clamped = true;
    }
    if (value > iMax) {
        value = iMax;
        XBell(XtDisplay(wText), kBellVolume);
        clamped = true;
    }
    if (iDirection == GUI_UPDOWN_VALIDATE && !clamped) return;

    char text[24];
    std::snprintf(text, sizeof text, "%0*d", filledDigits(iWidth), static_cast<int>(value));
    XtVaSetValues(wText, XmNvalue, text, nullptr);
}
