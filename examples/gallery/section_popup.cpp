/* section_popup.cpp - the gallery's job chart: a picture larger than its window in a
** scrolled drawing area, a context menu on its right button and tooltips on its parts. */
#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrollBar.h>

#include <cstdio>
#include <string>

#include "gallery.h"
#include "kx.h"
#include "xcontrols/guipopup.h"
#include "xcontrols/guiscrollda.h"
#include "xcontrols/guitooltip.h"

namespace {

constexpr int kJobs = 40;
constexpr int kRowHeight = 24;
constexpr int kHours = 24;
constexpr int kHourWidth = 60;
constexpr int kNameWidth = 70;
constexpr int kWindowWidth = 280, kWindowHeight = 560;

/* The chart's record and what its painter needs beside it. */
GuiScrollRecord gChart;
Widget gStatus = nullptr;
std::string gChosen; /* the entry chosen from the menu now open, if any */

/* The text may hold line breaks. */
void setLabel(Widget label, const std::string &text) {
    XmString s = XmStringCreateLtoR(const_cast<char *>(text.c_str()),
                                    const_cast<char *>(XmFONTLIST_DEFAULT_TAG));
    XtVaSetValues(label, XmNlabelString, s, nullptr);
    XmStringFree(s);
}

/* The colour of a job state by name, black when the colour map has no room. */
unsigned long colourNamed(const char *name) {
    Display *dpy = XtDisplay(gChart.wDrawingArea);
    const int screen = DefaultScreen(dpy);
    XColor shown, exact;
    return XAllocNamedColor(dpy, DefaultColormap(dpy, screen), name, &shown, &exact)
               ? shown.pixel
               : BlackPixel(dpy, screen);
}

/* Job j runs from hour start to hour end; earlier jobs are done, later ones scheduled. */
struct Job {
    int start, end;
    unsigned long colour;
};
Job jobAt(int j) {
    static const unsigned long done = colourNamed("SeaGreen"), running = colourNamed("Orange"),
                               scheduled = colourNamed("SteelBlue");
    const int start = (j * 7) % 18;
    const int end = start + 2 + (j * 5) % 6;
    return {start, end, j < 14 ? done : j < 20 ? running : scheduled};
}

void drawText(Display *dpy, Window w, GC gc, int x, int y, const std::string &text) {
    XDrawString(dpy, w, gc, x, y, text.c_str(), static_cast<int>(text.size()));
}

/* One chart row at window row y: the job's name, its bar and the hour lines. */
void drawJob(Display *d, Window w, GC gc, int j, int y) {
    const Job job = jobAt(j);
    const int left = kNameWidth - gChart.iHorzPos;
    XSetForeground(d, gc, job.colour);
    XFillRectangle(d, w, gc, left + job.start * kHourWidth, y + 5, (job.end - job.start) * kHourWidth,
                   kRowHeight - 10);
    XSetForeground(d, gc, BlackPixel(d, DefaultScreen(d)));
    char name[16];
    std::snprintf(name, sizeof name, "Job %02d", j + 1);
    drawText(d, w, gc, 6 - gChart.iHorzPos, y + 16, name);
    XDrawLine(d, w, gc, 0, y + kRowHeight - 1, gChart.iPictureWidth, y + kRowHeight - 1);
}

void drawHourLines(Display *dpy, Window w, GC gc, int height) {
    for (int h = 0; h <= kHours; ++h) {
        const int x = kNameWidth + h * kHourWidth - gChart.iHorzPos;
        XDrawLine(dpy, w, gc, x, 0, x, height);
        if (h % 3 == 0) drawText(dpy, w, gc, x + 3, 12 - gChart.iVertPos, std::to_string(h) + ":00");
    }
}

/* The painter: the rows in view (or only those from..to), under the library's clip. */
void drawChart(GuiScrollRecord *chart, int32_t partial, int32_t from, int32_t to) {
    Display *dpy = XtDisplay(chart->wDrawingArea);
    Window w = XtWindow(chart->wDrawingArea);
    Dimension height = 0;
    XtVaGetValues(chart->wDrawingArea, XmNheight, &height, nullptr);
    if (!partial) {
        from = 0;
        to = height;
    }
    const int header = kRowHeight - chart->iVertPos; /* the first job row's window y */
    for (int j = 0; j < kJobs; ++j) {
        const int y = header + j * kRowHeight;
        if (y + kRowHeight > from && y < to) drawJob(dpy, w, chart->gc, j, y);
    }
    drawHourLines(dpy, w, chart->gc, height);
}

void repaint(Widget, XtPointer, XtPointer) {
    drawChart(&gChart, 0, 0, 0);
}

void resize(Widget, XtPointer, XtPointer) {
    GuiSizeScrollbars(&gChart);
}

/* The context menu's entries move the chart; the bar follows the new position. */
void jumpTo(int32_t position) {
    GuiScrollVert(&gChart, position);
    XtVaSetValues(gChart.wVertScrollBar, XmNvalue, position, nullptr);
}

void onEntry(Widget, XtPointer, XtPointer data) {
    XtPointer item = nullptr;
    XtVaGetValues(static_cast<XmRowColumnCallbackStruct *>(data)->widget, XmNuserData, &item, nullptr);
    gChosen = *static_cast<const char **>(item);
    Dimension height = 0;
    XtVaGetValues(gChart.wDrawingArea, XmNheight, &height, nullptr);
    const int32_t bottom = gChart.iPictureHeight - height;
    jumpTo(gChosen == "First job" ? 0 : gChosen == "Last job" ? bottom : bottom / 2);
}

/* The library tells when the menu has gone, chosen from or not. */
void onMenuGone(void *) {
    setLabel(gStatus, "Menu closed: " +
                          (gChosen.empty() ? std::string("nothing chosen") : "went to \"" + gChosen + "\"") +
                          "\nRight-click the chart for it again");
    gChosen.clear();
}

/* The menu's entries: base-runtime objects whose first field is the label, made once. */
void *menuItems() {
    static void *items = nullptr;
    if (items != nullptr) return items;
    ListCreateFromPool(&items, 0, MemGetDefaultPoolId());
    for (const char *label : {"First job", "Middle job", "Last job"}) {
        void *item = nullptr;
        ObjCreateInternal(&item, sizeof(char *), 0x6a0b1e75u, "p;", 0, MemGetDefaultPoolId());
        *static_cast<const char **>(item) = label;
        ListPushLastItemInternal(items, &item);
    }
    return items;
}

void onPress(Widget area, XtPointer, XEvent *event, Boolean *) {
    if (event->xbutton.button != Button3) return;
    GuiPopupAddPopDownCallback(onMenuGone, nullptr);
    GuiPopupCreateMenu(area, event, onEntry, "Go to", nullptr, menuItems());
}

Widget addBar(Widget area, const char *name, unsigned char orientation) {
    const bool vertical = orientation == XmVERTICAL;
    return XtVaCreateManagedWidget(
        name, xmScrollBarWidgetClass, area, XmNorientation, orientation, XmNincrement, 8,
        XmNtopAttachment, vertical ? XmATTACH_FORM : XmATTACH_WIDGET, XmNtopWidget,
        gChart.wDrawingArea, XmNleftAttachment, vertical ? XmATTACH_WIDGET : XmATTACH_FORM,
        XmNleftWidget, gChart.wDrawingArea, XmNwidth, vertical ? 16 : kWindowWidth, XmNheight,
        vertical ? kWindowHeight : 16, nullptr);
}

} // namespace

namespace gallery {

void buildPopupSection(Widget area) {
    Display *dpy = XtDisplay(area);
    gChart.wDrawingArea = XtVaCreateManagedWidget(
        "chart", xmDrawingAreaWidgetClass, area, XmNwidth, kWindowWidth, XmNheight, kWindowHeight,
        XmNbackground, WhitePixel(dpy, DefaultScreen(dpy)), XmNresizePolicy, XmRESIZE_NONE,
        XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM, nullptr);
    Widget vbar = addBar(area, "vbar", XmVERTICAL);
    Widget hbar = addBar(area, "hbar", XmHORIZONTAL);
    gStatus = XtVaCreateManagedWidget("status", xmLabelWidgetClass, area, XmNtopAttachment,
                                      XmATTACH_WIDGET, XmNtopWidget, hbar, XmNtopOffset, 6,
                                      XmNleftAttachment, XmATTACH_FORM, XmNalignment,
                                      XmALIGNMENT_BEGINNING, nullptr);
    setLabel(gStatus, "Right-click the chart for a menu,\nrest the pointer for a tip");
    gChart.iPictureWidth = kNameWidth + kHours * kHourWidth + 10;
    gChart.iPictureHeight = (kJobs + 1) * kRowHeight;
    gChart.fnDraw = drawChart;
    gChart.gc = XCreateGC(dpy, DefaultRootWindow(dpy), 0, nullptr);
    if (XFontStruct *font = XLoadQueryFont(dpy, "fixed")) XSetFont(dpy, gChart.gc, font->fid);
    gChart.wVertScrollBar = vbar;
    gChart.wHorzScrollBar = hbar;
    GuiAddScrollCallbacks(vbar, hbar, &gChart);
    GuiSizeScrollbars(&gChart);
    XtAddCallback(gChart.wDrawingArea, XmNexposeCallback, repaint, nullptr);
    XtAddCallback(gChart.wDrawingArea, XmNresizeCallback, resize, nullptr);
    XtAddEventHandler(gChart.wDrawingArea, ButtonPressMask, False, onPress, nullptr);
    GuiAddTip(gChart.wDrawingArea, "Forty jobs of a day");
    GuiAddTip(vbar, "Scrolls the jobs");
    GuiAddTip(hbar, "Scrolls the hours");
}

} // namespace gallery
