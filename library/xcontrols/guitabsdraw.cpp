/* guitabsdraw.cpp - the tab holder's look: the tab layout pass, row spreading and the
** redraw of the tabs and the page frame. */
#include <Xm/Form.h>

#include "guitabskit.h"
#include "xcontrols/guimakegcsandfonts.h"

namespace xc::tabs {
namespace {

constexpr int32_t kTraceWidth = 1311;
constexpr int32_t kTraceNoGcs = 1312;

constexpr int kFirstX = 10;      /* left edge of a row's first tab */
constexpr int kTitleRoom = 20;   /* a tab is its title's width plus this */
constexpr int kTabGap = 4;       /* between the tabs of a spread row */
constexpr int kNoWrap = 16960;   /* the usable width of plain tabs: wide enough for any row */
constexpr int kRowHeight = 23;   /* from one row band to the next */
constexpr int kMaxPasses = 3;    /* redraws in a row when drawing resizes the area */

/* Spreads tabs first..last over the width: each keeps its own width plus an equal share
** of the room left; the first keeps its left edge and the last (of several) ends at the
** width. Hidden tabs in the range take part with their last box. */
void spreadRow(GuiTabs *tabs, int32_t first, int32_t last, int width) {
    GuiTab *t = tabs->pTabs;
    const int count = last - first + 1;
    int sum = 0;
    for (int32_t i = first; i <= last; ++i) sum += t[i].iRightX - t[i].iLeftX;
    const int extra = (width - sum - kTabGap * count - kTabGap) / count;
    t[first].iRightX += extra;
    for (int32_t i = first + 1; i <= last; ++i) {
        const int own = t[i].iRightX - t[i].iLeftX;
        t[i].iLeftX = t[i - 1].iRightX + kTabGap;
        t[i].iRightX = i == last ? width : t[i].iLeftX + own + extra;
    }
}

/* ---- Drawing ---------------------------------------------------------------------- */

/* A point of a tab's outline: from its left (x1) or right (x2) edge and from the top (t)
** or bottom (b) of its row band. */
struct Point {
    bool fromRight;
    int dx;
    bool fromBottom;
    int dy;
};
struct Stroke {
    GC *gc;
    Point from, to;
};
constexpr bool L = false, R = true, T = false, B = true;

/* The first stroke, the left side, is left out right after the selected tab, whose
** raised outline stands there. */
constexpr Stroke kTabOutline[] = {
    {&gcTop, {L, 0, B, -4}, {L, 0, T, 4}}, {&gcTop, {L, 0, T, 4}, {L, 4, T, 0}},
    {&gcTop, {L, 4, T, 0}, {R, -4, T, 0}}, {&gcBot, {R, 0, B, -4}, {R, 0, T, 4}},
    {&gcTop, {R, 0, T, 4}, {R, -4, T, 0}}, {&gcBot, {R, 1, B, -4}, {R, 1, T, 5}},
};
constexpr Stroke kSelectedOutline[] = {
    {&gcTop, {L, -2, B, -2}, {L, -2, T, 2}}, {&gcTop, {L, 2, T, -2}, {R, -2, T, -2}},
    {&gcTop, {L, -2, T, 2}, {L, 2, T, -2}},  {&gcBot, {R, 2, B, -3}, {R, 2, T, 2}},
    {&gcTop, {R, 2, T, 2}, {R, -2, T, -2}},  {&gcBot, {R, 3, B, -3}, {R, 3, T, 5}},
};

/* Where one holder's redraw goes. */
struct Canvas {
    Display *dpy;
    Window win;
};

struct Band {
    int top, bottom;
};

int xOf(const GuiTab &tab, const Point &p) { return (p.fromRight ? tab.iRightX : tab.iLeftX) + p.dx; }
int yOf(const Band &band, const Point &p) { return (p.fromBottom ? band.bottom : band.top) + p.dy; }

template <size_t N>
void drawOutline(const Canvas &c, const GuiTab &tab, const Band &band, const Stroke (&strokes)[N],
                 size_t first = 0) {
    for (size_t i = first; i < N; ++i) {
        const Stroke &s = strokes[i];
        XDrawLine(c.dpy, c.win, *s.gc, xOf(tab, s.from), yOf(band, s.from), xOf(tab, s.to),
                  yOf(band, s.to));
    }
}

/* Opens the page frame's top line under the selected tab and clears the neighbours'
** sides that its raised outline covers. */
void openSelected(const Canvas &c, const GuiTab &tab, const Band &band) {
    const int x1 = tab.iLeftX, x2 = tab.iRightX;
    XClearArea(c.dpy, c.win, x1 - 1, band.bottom - 2, static_cast<unsigned>(x2 - x1 + 1), 1, False);
    XClearArea(c.dpy, c.win, x1, band.top, 5, static_cast<unsigned>(band.bottom - 4), False);
    XClearArea(c.dpy, c.win, x2 - 1, band.top, 4, static_cast<unsigned>(band.bottom - 1), False);
}

void drawPageFrame(const Canvas &c, int top, int width, int height) {
    const int right = width - 8, bottom = height - 8;
    XDrawLine(c.dpy, c.win, gcTop, 8, top, right, top);
    XDrawLine(c.dpy, c.win, gcTop, 8, top, 8, bottom);
    XDrawLine(c.dpy, c.win, gcBot, 8, bottom, right, bottom);
    XDrawLine(c.dpy, c.win, gcBot, right, top, right, bottom);
}

void drawTitle(const Canvas &c, const GuiTab &tab, XmString title, const Band &band) {
    if (title == nullptr) return;
    XmStringDraw(c.dpy, c.win, fontlist, title, tab.bEnabled == 1 ? gcBlack : gcBot,
                 static_cast<Position>(tab.iLeftX + 8), static_cast<Position>(band.bottom - 20),
                 1000, XmALIGNMENT_BEGINNING, XmSTRING_DIRECTION_L_TO_R, nullptr);
}

/* The selected tab's page shows above the drawing area; every other page is unmapped. */
void showPageOf(const GuiTabs *tabs, const GuiTab &tab, bool selected) {
    if (!selected) {
        unmapWidget(tab.wPage);
        return;
    }
    if (XtIsManaged(tabs->wPageForm)) {
        mapWidget(tabs->wPageForm);
        raiseWidget(tabs->wPageForm);
    }
    mapWidget(tab.wPage);
    raiseWidget(tab.wPage);
}

/* Draws the shown tabs of one row in index order; true when it drew any. */
bool drawRow(const Canvas &c, GuiTabs *tabs, const TitleStrings &strings, int row, const Band &band) {
    bool drew = false, afterSelected = false;
    for (int32_t i = 0; i < tabs->iNumTabs; ++i) {
        GuiTab &tab = tabs->pTabs[i];
        if (tab.bHidden != 0 || tab.iRow != row) continue;
        const bool selected = tab.iNumber == tabs->iSelected;
        drawTitle(c, tab, strings.at(i), band);
        showPageOf(tabs, tab, selected);
        if (selected) {
            drawOutline(c, tab, band, kSelectedOutline);
            openSelected(c, tab, band);
        } else {
            drawOutline(c, tab, band, kTabOutline, afterSelected ? 1 : 0);
        }
        tab.iTopY = band.top;
        tab.iBottomY = band.bottom;
        drew = true;
        afterSelected = selected;
    }
    return drew;
}

bool haveDrawingResources() {
    if (gcTop != nullptr && gcBot != nullptr && gcBlack != nullptr && fontlist != nullptr) return true;
    trace(kTraceNoGcs, 1, "Tab holder not drawn: GuiCreateGcsAndFonts was not called");
    return false;
}

/* The page form sits right under the last row band. Set only on a change: the form lays
** its children out again, which may resize the drawing area. */
void placePages(const GuiTabs *tabs, int rows) {
    const int top = kRowHeight * rows + 30;
    int current = 0;
    XtVaGetValues(tabs->wPageForm, XmNtopOffset, &current, nullptr);
    if (current != top) XtVaSetValues(tabs->wPageForm, XmNtopOffset, top, nullptr);
}

bool selectedShown(const GuiTabs *tabs) {
    const int32_t i = tabs->iSelected - 1;
    return i >= 0 && i < tabs->iNumTabs && tabs->pTabs[i].bHidden == 0;
}

/* The rows are drawn from the last one up to row 0, the selected tab's, which comes last
** next to the page; an empty row takes no room. */
void drawOnce(GuiTabs *tabs) {
    Widget da = tabs->wTabDa;
    if (!XtIsRealized(da) || !haveDrawingResources()) return;
    Dimension width = 0, height = 0;
    XtVaGetValues(da, XmNwidth, &width, XmNheight, &height, nullptr);
    TitleStrings strings(tabs->iNumTabs);
    const int rows = layoutTabs(tabs, strings, width - 15);
    if (selectedShown(tabs)) placePages(tabs, rows);

    const Canvas c{XtDisplay(da), XtWindow(da)};
    XClearWindow(c.dpy, c.win);
    drawPageFrame(c, kRowHeight * rows + 5, width, height);
    Band band{5, 30};
    bool drewPrevious = false;
    for (int row = rows; row >= 0; --row) {
        if (row != rows && drewPrevious) band = Band{band.top + kRowHeight, band.bottom + kRowHeight};
        drewPrevious = drawRow(c, tabs, strings, row, band);
    }
}

/* Redraws that drawing itself sets off (the page form moved, the area resized) are run
** after the one in progress rather than inside it. */
struct Drawing {
    const GuiTabs *tabs;
    bool again;
    Drawing *outer;
};
Drawing *gDrawing = nullptr;

} // namespace

TitleStrings::TitleStrings(int32_t count)
    : count_(count > 0 ? count : 0),
      strings_(static_cast<XmString *>(MemAllocateFromPool(sizeof(XmString) * static_cast<size_t>(count_), pool()))) {
    if (strings_ != nullptr) MemZero(strings_, sizeof(XmString) * static_cast<size_t>(count_));
}

TitleStrings::~TitleStrings() {
    for (int32_t i = 0; strings_ != nullptr && i < count_; ++i)
        if (strings_[i] != nullptr) XmStringFree(strings_[i]);
    MemFreeInternal(&strings_);
}

void TitleStrings::keep(int32_t index, XmString s) {
    if (strings_ != nullptr && index < count_) strings_[index] = s;
    else if (s != nullptr) XmStringFree(s);
}

int titleWidth(XmString title) {
    return fontlist != nullptr && title != nullptr ? XmStringWidth(fontlist, title) : 0;
}

/* Tabs abut from x 10. A tab that overflows a stacking row starts the next row, once the
** row before is spread; a tab wider than a row by itself takes a row of its own. */
int layoutTabs(GuiTabs *tabs, TitleStrings &strings, int width) {
    const int usable = tabs->bStacking == 1 ? static_cast<int16_t>(width) : kNoWrap;
    const int32_t count = tabs->iNumTabs;
    int row = 1, x = kFirstX, selectedRow = 0;
    int32_t rowStart = 0;
    bool rowUsed = false;
    for (int32_t i = 0; i < count; ++i) {
        GuiTab &tab = tabs->pTabs[i];
        if (tab.bHidden == 0) {
            XmString title = newXmString(tab.pszTitle != nullptr ? tab.pszTitle : "");
            const int w = static_cast<int16_t>(titleWidth(title));
            strings.keep(i, title);
            trace(kTraceWidth, 1, "string width for %s is %d", tab.pszTitle ? tab.pszTitle : "(null)", w);
            tab.iLeftX = x;
            x += w + kTitleRoom;
            tab.iRightX = x;
            tab.iRow = row;
            if (x <= usable) {
                rowUsed = true;
            } else if (rowUsed) {
                spreadRow(tabs, rowStart, i - 1, usable);
                tab.iRow = ++row;
                rowStart = i;
                tab.iLeftX = kFirstX;
                tab.iRightX = x = w + kFirstX + kTitleRoom;
            } else {
                spreadRow(tabs, i, i, usable);
                if (i < count - 1) {
                    ++row;
                    rowStart = i + 1; /* the next tab starts the new row */
                }
                x = kFirstX;
                rowUsed = false;
            }
            if (tab.iNumber == tabs->iSelected) selectedRow = tab.iRow;
        }
        if (i == count - 1 && row > 1) spreadRow(tabs, rowStart, i, usable);
    }
    for (int32_t i = 0; i < count; ++i)
        if (tabs->pTabs[i].iRow == selectedRow) tabs->pTabs[i].iRow = 0;
    return row;
}

void redraw(GuiTabs *tabs) {
    for (Drawing *d = gDrawing; d != nullptr; d = d->outer) {
        if (d->tabs == tabs) {
            d->again = true;
            return;
        }
    }
    Drawing self{tabs, true, gDrawing};
    gDrawing = &self;
    for (int pass = 0; self.again && pass < kMaxPasses; ++pass) {
        self.again = false;
        drawOnce(tabs);
    }
    gDrawing = self.outer;
}

void redrawFor(GuiTabs *tabs, const char *caller) {
    trace(kTraceRedraw, 0, "TAB redraw for %s", caller);
    redraw(tabs);
}

} // namespace xc::tabs
