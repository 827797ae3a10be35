/* test_scrollda.cpp - the scrolled drawing area under real clicks on its scroll bars, its
** pixels read back from the server. */
#include "xharness.h"
#include <Xm/DrawingA.h>
#include <Xm/ScrollBar.h>
#include <X11/Xutil.h>
#include <cstdlib>
#include "guiscrollda.h"
namespace {
using namespace xt;
using Ints = std::vector<int>;
constexpr int kWidth = 300, kHeight = 200;
std::vector<Ints> gDraws; /* partial flag, from, to */
bool gMarked = false;     /* paint with the mark bit: what the library had repainted */
/* A picture pixel tells its picture row and column, and whether it was painted marked. */
unsigned long pixelOf(int row, int column, bool marked) {
    return (marked ? 0x800000ul : 0) | (static_cast<unsigned long>(row & 0x7ff) << 12) | (column & 0xfff);
}
/* The client's painter paints the whole window from the record's positions, and leaves
** the rest to the clip. */
void paint(GuiScrollRecord *scroll, int32_t partial, int32_t from, int32_t to) {
    gDraws.push_back({partial, from, to});
    Display *dpy = XtDisplay(scroll->wDrawingArea);
    XImage *image = XCreateImage(dpy, DefaultVisual(dpy, 0), 24, ZPixmap, 0,
                                 static_cast<char *>(std::malloc(kWidth * kHeight * 4)), kWidth, kHeight, 32, 0);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            XPutPixel(image, x, y, pixelOf(y + scroll->iVertPos, x + scroll->iHorzPos, gMarked));
    XPutImage(dpy, XtWindow(scroll->wDrawingArea), scroll->gc, image, 0, 0, 0, 0, kWidth, kHeight);
    XDestroyImage(image);
}
class ScrollTest : public XTest {
protected:
    void SetUp() override {
        XTest::SetUp();
        area_ = XtVaCreateManagedWidget("area", xmDrawingAreaWidgetClass, form(), XmNwidth, kWidth, XmNheight,
                                        kHeight, XmNresizePolicy, XmRESIZE_NONE, nullptr);
        Widget vbar = XtVaCreateManagedWidget("vbar", xmScrollBarWidgetClass, form(), XmNheight, kHeight,
                                              XmNincrement, 10, XmNleftAttachment, XmATTACH_WIDGET,
                                              XmNleftWidget, area_, nullptr);
        Widget hbar = XtVaCreateManagedWidget("hbar", xmScrollBarWidgetClass, form(), XmNwidth, kWidth,
                                              XmNincrement, 10, XmNorientation, XmHORIZONTAL, XmNtopAttachment,
                                              XmATTACH_WIDGET, XmNtopWidget, area_, nullptr);
        realize();
        scroll_ = {area_, vbar, hbar, 1000, 1000, 7, 7, paint, XCreateGC(display(), XtWindow(area_), 0, nullptr)};
        GuiAddScrollCallbacks(vbar, hbar, &scroll_);
        GuiSizeScrollbars(&scroll_);
        XtAddCallback(area_, XmNresizeCallback, [](Widget, XtPointer scroll, XtPointer) {
            GuiSizeScrollbars(static_cast<GuiScrollRecord *>(scroll));
        }, &scroll_);
    }
    void TearDown() override {
        XFreeGC(display(), scroll_.gc);
        XTest::TearDown();
    }
    /* Window pixel (x, y) is the picture pixel that it should show, marked or not. */
    bool shows(int x, int y, bool marked) const {
        XImage *image = XGetImage(display(), XtWindow(area_), x, y, 1, 1, AllPlanes, ZPixmap);
        const bool ok = XGetPixel(image, 0, 0) == pixelOf(y + scroll_.iVertPos, x + scroll_.iHorzPos, marked);
        XDestroyImage(image);
        return ok;
    }
    Widget area_ = nullptr;
    GuiScrollRecord scroll_{};
};
/* A user's scroll, and then: the draw calls, the position, and the band of window rows
** (or columns, sideways) that was repainted; the rest was copied. */
struct ScrollRow {
    const char *name;
    void (*act)(GuiScrollRecord *);
    std::vector<Ints> draws;
    int32_t position;
    bool vertical;
    int repaintedFrom, repaintedTo;
};
TEST_F(ScrollTest, ScrollsCopyWhatStaysAndRepaintOnlyWhatCameIntoView) {
    const ScrollRow rows[] = {
        {"down arrow", [](GuiScrollRecord *s) { click(s->wVertScrollBar, 8, kHeight - 5); }, {{1, 190, 200}}, 10,
         true, 190, 200},
        {"up arrow", [](GuiScrollRecord *s) { click(s->wVertScrollBar, 8, 5); }, {{1, 0, 10}}, 0, true, 0, 10},
        {"right arrow", [](GuiScrollRecord *s) { click(s->wHorzScrollBar, kWidth - 5, 8); }, {{0, 0, 0}}, 10,
         false, 290, 300},
        {"page down", [](GuiScrollRecord *s) { click(s->wVertScrollBar, 8, kHeight - 30); }, {{0, 0, 0}}, 200,
         true, 0, 200},
        {"a jump longer than the window", [](GuiScrollRecord *s) { GuiScrollVert(s, s->iVertPos + 500); },
         {{1, 0, 200}}, 700, true, 0, 200},
        {"back by 150", [](GuiScrollRecord *s) { GuiScrollVert(s, s->iVertPos - 150); }, {{1, 0, 150}}, 550,
         true, 0, 150},
    };
    for (const ScrollRow &row : rows) {
        SCOPED_TRACE(row.name);
        gMarked = false;
        paint(&scroll_, 0, 0, 0);
        gMarked = true;
        gDraws.clear();
        row.act(&scroll_);
        pump();
        EXPECT_EQ(gDraws, row.draws);
        EXPECT_EQ(row.vertical ? scroll_.iVertPos : scroll_.iHorzPos, row.position);
        for (int i = 0; i < (row.vertical ? kHeight : kWidth); ++i) {
            const bool repainted = i >= row.repaintedFrom && i < row.repaintedTo;
            ASSERT_TRUE(row.vertical ? shows(5, i, repainted) : shows(i, 5, repainted)) << "at " << i;
        }
    }
}
TEST_F(ScrollTest, BarsFitTheWindowAndThePicture) {
    const struct {
        const char *name;
        int32_t picture, window, barValue;
        Ints bar; /* maximum, value, slider, page increment */
        int32_t position;
    } rows[] = {
        {"a picture larger than the window", 1000, 200, 0, {1000, 0, 200, 200}, 40},
        {"a bar value past the end is clamped", 1000, 200, 900, {1000, 800, 200, 200}, 40},
        {"the window grown past the picture", 250, 300, 0, {250, 0, 250, 300}, 0},
        {"no picture", 0, 200, 0, {1, 0, 1, 1}, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        scroll_.iVertPos = 40;
        scroll_.iPictureHeight = row.picture;
        Widget bar = scroll_.wVertScrollBar;
        XtVaSetValues(bar, XmNmaximum, 2000, XmNvalue, row.barValue, nullptr);
        gDraws.clear();
        XtVaSetValues(area_, XmNheight, row.window, nullptr); /* its resize callback sizes the bars */
        GuiSizeScrollbars(&scroll_);
        pump();
        Ints got(4);
        XtVaGetValues(bar, XmNmaximum, &got[0], XmNvalue, &got[1], XmNsliderSize, &got[2], XmNpageIncrement,
                      &got[3], nullptr);
        EXPECT_EQ(got, row.bar);
        EXPECT_EQ(scroll_.iVertPos, row.position);
        EXPECT_EQ(gDraws.empty(), row.position == 40) << "the whole window repainted on a reset";
    }
}
} // namespace
