/* guiscrollda.cpp - scrolling a picture by copying the pixels still in view and asking
** the client to paint only the strip that came into view. */
#include <Xm/ScrollBar.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "guiscrollda.h"

#include "guicommon.h"
#include "guiinputkit.h"

namespace xc {
namespace {

constexpr int32_t kMsgDummy = 630;
constexpr int32_t kMsgBadArgument = 631;

/* What tells the two directions apart; everything else is the same for both. */
struct Axis {
    int32_t GuiScrollRecord::*position;
    int32_t GuiScrollRecord::*picture;
    Widget GuiScrollRecord::*bar;
    bool vertical;
};
constexpr Axis kVertical{&GuiScrollRecord::iVertPos, &GuiScrollRecord::iPictureHeight,
                         &GuiScrollRecord::wVertScrollBar, true};
constexpr Axis kHorizontal{&GuiScrollRecord::iHorzPos, &GuiScrollRecord::iPictureWidth,
                           &GuiScrollRecord::wHorzScrollBar, false};

struct View {
    Display *display;
    ::Window id; /* 0 while the drawing area is not realized */
    int width, height;
    int extent(const Axis &axis) const { return axis.vertical ? height : width; }
    /* The band of the window from `start` along the axis, `length` thick. */
    XRectangle band(const Axis &axis, int start, int length) const {
        auto at = static_cast<short>(start);
        auto thick = static_cast<unsigned short>(length);
        return axis.vertical
                   ? XRectangle{0, at, static_cast<unsigned short>(width), thick}
                   : XRectangle{at, 0, thick, static_cast<unsigned short>(height)};
    }
};

View windowOf(const GuiScrollRecord *scroll) {
    Dimension width = 0, height = 0;
    XtVaGetValues(scroll->wDrawingArea, XtNwidth, &width, XtNheight, &height, nullptr);
    Widget area = scroll->wDrawingArea;
    return {XtDisplay(area), XtIsRealized(area) ? XtWindow(area) : 0, width, height};
}

void clear(const View &window, const XRectangle &r) {
    XClearArea(window.display, window.id, r.x, r.y, r.width, r.height, False);
}

/* Calls the painter under a clip to `r` (none: the whole window). The display and GC
** are taken before the call, so that nothing of the record is read after it. */
void paint(GuiScrollRecord *scroll, const View &window, const XRectangle *r,
           int32_t partial, int32_t from, int32_t to) {
    if (scroll->fnDraw == nullptr) return;
    GC gc = scroll->gc;
    if (r != nullptr) XSetClipRectangles(window.display, gc, 0, 0, const_cast<XRectangle *>(r), 1, Unsorted);
    scroll->fnDraw(scroll, partial, from, to);
    if (r != nullptr) XSetClipMask(window.display, gc, None);
}

void repaintWhole(GuiScrollRecord *scroll) {
    const View window = windowOf(scroll);
    if (window.id == 0) return;
    XClearArea(window.display, window.id, 0, 0, 0, 0, False);
    paint(scroll, window, nullptr, 0, 0, 0);
}

/* The rows (or columns) still in view move by the distance; the strip that came into
** view, never thicker than the window, is cleared and painted. */
void scroll(GuiScrollRecord *scroll, const Axis &axis, int32_t newPos) {
    const int32_t distance = newPos - scroll->*axis.position;
    scroll->*axis.position = newPos;
    const View window = windowOf(scroll);
    if (distance == 0 || window.id == 0) return;
    const int extent = window.extent(axis);
    const int moved = static_cast<int>(std::min<int64_t>(std::llabs(distance), extent));
    const int kept = extent - moved;
    if (kept > 0) {
        const XRectangle from = window.band(axis, distance > 0 ? moved : 0, kept);
        const XRectangle to = window.band(axis, distance > 0 ? 0 : moved, kept);
        XCopyArea(window.display, window.id, window.id, scroll->gc, from.x, from.y, from.width,
                  from.height, to.x, to.y);
    }
    const int stripStart = distance > 0 ? kept : 0;
    const XRectangle strip = window.band(axis, stripStart, moved);
    clear(window, strip);
    if (axis.vertical) paint(scroll, window, &strip, 1, stripStart, stripStart + moved);
    else paint(scroll, window, &strip, 0, 0, 0);
}

int32_t valueOf(XtPointer callData) {
    return static_cast<XmScrollBarCallbackStruct *>(callData)->value;
}

template <const Axis &axis>
void onStep(Widget, XtPointer data, XtPointer callData) {
    scroll(static_cast<GuiScrollRecord *>(data), axis, valueOf(callData));
}

template <const Axis &axis>
void onPage(Widget, XtPointer data, XtPointer callData) {
    auto *record = static_cast<GuiScrollRecord *>(data);
    record->*axis.position = valueOf(callData);
    repaintWhole(record);
}

template <const Axis &axis>
void addBarHooks(Widget bar, GuiScrollRecord *record) {
    if (bar == nullptr) return;
    const std::array<InputHook, 5> hooks{{
        {bar, XmNpageDecrementCallback, onPage<axis>},
        {bar, XmNpageIncrementCallback, onPage<axis>},
        {bar, XmNdecrementCallback, onStep<axis>},
        {bar, XmNincrementCallback, onStep<axis>},
        {bar, XmNdragCallback, onStep<axis>},
    }};
    addHooks(hooks, record);
}

/* A picture that fits shows from its start; a bar with nothing to show gets a range of
** one so that Motif accepts it. */
void sizeBar(GuiScrollRecord *record, const Axis &axis, int window) {
    Widget bar = record->*axis.bar;
    if (bar == nullptr) return;
    const int picture = std::max<int32_t>(record->*axis.picture, 0);
    int value = 0, slider = 0;
    XtVaGetValues(bar, XmNvalue, &value, XmNsliderSize, &slider, nullptr);
    if (window >= picture) {
        if (record->*axis.position != 0) {
            record->*axis.position = 0;
            repaintWhole(record);
        }
        slider = picture;
        value = 0;
    } else {
        slider = window;
    }
    value = std::min(value, picture - slider);
    if (slider != 0)
        XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, picture, XmNvalue, value,
                      XmNpageIncrement, window, XmNsliderSize, slider, nullptr);
    else
        XtVaSetValues(bar, XmNminimum, 0, XmNmaximum, 1, XmNvalue, 0, XmNpageIncrement, 1,
                      XmNsliderSize, 1, nullptr);
}

bool haveRecord(const GuiScrollRecord *record, const char *function) {
    if (record != nullptr && record->wDrawingArea != nullptr) return true;
    trace(kMsgBadArgument, -1, "%s: no scroll record or drawing area", function);
    return false;
}

} // namespace
} // namespace xc

using namespace xc;

extern "C" {

void GuiAddScrollCallbacks(Widget wVertScrollBar, Widget wHorzScrollBar,
                           GuiScrollRecord *pScroll) {
    if (!haveHandle(pScroll, "GuiAddScrollCallbacks")) return;
    pScroll->iVertPos = pScroll->iHorzPos = 0;
    addBarHooks<kVertical>(wVertScrollBar, pScroll);
    addBarHooks<kHorizontal>(wHorzScrollBar, pScroll);
}

void GuiScrollVert(GuiScrollRecord *pScroll, int32_t iNewPos) {
    if (haveRecord(pScroll, "GuiScrollVert")) scroll(pScroll, kVertical, iNewPos);
}

void GuiSizeScrollbars(GuiScrollRecord *pScroll) {
    if (!haveRecord(pScroll, "GuiSizeScrollbars")) return;
    const View window = windowOf(pScroll);
    sizeBar(pScroll, kVertical, window.height);
    sizeBar(pScroll, kHorizontal, window.width);
}

void GuiScrollDummy(void) {
    trace(kMsgDummy, 1, "stop compiler bitch");
}

} // extern "C"
