// Plugin screens against raw Motif: build plus layout, and teardown, of screens of 250,
// 1000 and 4000 items in a realized, shown form, and the library's memory per item (the
// blocks it keeps for the screen, with the base runtime's headers, from the pool accounting).
//
// The baseline creates the identical widget tree in the cheapest order Motif allows:
// children created unmanaged, constraints set before managing, one XtManageChildren per
// parent; it tears down with one XtUnmanageChildren and a destroy per top-level frame.
#include <X11/Shell.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "screens.h"

namespace {

/* The mix: blocks of ten items, a group box holding a two-column grid of eight labels;
** blocks stand in four columns by position, each under the block above it. */
constexpr int kItemsPerBlock = 10;
constexpr int kLabelsPerBlock = 8;
constexpr int kBlockColumns = 4;
const char *kLabelText = "Label text";

double seconds() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

/* The screen of `blocks` blocks, built as a client does. */
void buildTree(xt::Screen &s, int blocks) {
    for (int b = 0; b < blocks; ++b) {
        const int32_t id = b * kItemsPerBlock + 1;
        void *box = s.add(nullptr, GroupBox, id, xt::groupBoxData("Block"));
        void *grid = s.add(box, RowColManager, id + 1, xt::rowColData(2));
        for (int l = 0; l < kLabelsPerBlock; ++l) s.add(grid, Label, id + 2 + l, xt::labelData(kLabelText));
        s.attachNone(id);
        s.attach(id, ATTACH_LEFT, ATTACH_POSITION, (b % kBlockColumns) * 25, 0, 0);
        if (b >= kBlockColumns)
            s.attach(id, ATTACH_TOP, ATTACH_ITEM, 0, id - kBlockColumns * kItemsPerBlock, 4);
    }
}

/* ---- The baseline: the same widgets, made by hand in the cheapest order ------------- */

Widget createLabel(Widget parent, const char *text, bool title) {
    XmString s = XmStringCreateLtoR(const_cast<char *>(text), const_cast<char *>(XmSTRING_DEFAULT_CHARSET));
    Arg args[3];
    Cardinal n = 0;
    XtSetArg(args[n], XmNlabelString, s), ++n;
    if (title) XtSetArg(args[n], XmNchildType, XmFRAME_TITLE_CHILD), ++n;
    else XtSetArg(args[n], XmNalignment, XmALIGNMENT_BEGINNING), ++n;
    Widget w = XtCreateWidget("label", xmLabelWidgetClass, parent, args, n);
    XmStringFree(s);
    return w;
}

/* The baseline's two halves stay out of line, so that a profiler shows their cost beside
** GuiCreatePlgScreen and GuiFreeScreenDefAndWidgets. */
[[gnu::noinline]] std::vector<Widget> buildBaseline(Widget top, int blocks) {
    std::vector<Widget> frames;
    for (int b = 0; b < blocks; ++b) {
        Widget frame = XtVaCreateWidget("frame", xmFrameWidgetClass, top, XmNmarginWidth, 5,
                                        XmNmarginHeight, 5, nullptr);
        Widget title = createLabel(frame, "Block", true);
        Widget inner = XtCreateWidget("form", xmFormWidgetClass, frame, nullptr, 0);
        Widget grid = XtVaCreateWidget("rowcol", xmFormWidgetClass, inner, XmNmarginHeight, 20,
                                       XmNmarginWidth, 20, nullptr);
        Widget labels[kLabelsPerBlock];
        int colWidth[2] = {0, 0}, rowHeight[kLabelsPerBlock / 2] = {0};
        for (int l = 0; l < kLabelsPerBlock; ++l) {
            labels[l] = createLabel(grid, kLabelText, false);
            Dimension w, h;
            XtVaGetValues(labels[l], XtNwidth, &w, XtNheight, &h, nullptr);
            colWidth[l % 2] = std::max(colWidth[l % 2], w + 5);
            rowHeight[l / 2] = std::max(rowHeight[l / 2], h + 5);
        }
        int y = 0;
        for (int l = 0; l < kLabelsPerBlock; ++l) {
            XtVaSetValues(labels[l], XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                          XmNleftOffset, l % 2 ? colWidth[0] + 20 : 0, XmNtopOffset, y, nullptr);
            if (l % 2) y += rowHeight[l / 2];
        }
        if (b >= kBlockColumns)
            XtVaSetValues(frame, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition,
                          (b % kBlockColumns) * 25, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget,
                          frames[b - kBlockColumns], XmNtopOffset, 4, nullptr);
        else
            XtVaSetValues(frame, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition,
                          (b % kBlockColumns) * 25, nullptr);
        XtManageChildren(labels, kLabelsPerBlock);
        XtManageChild(grid);
        Widget frameChildren[] = {title, inner};
        XtManageChildren(frameChildren, 2);
        /* A frame managed unrealized into a realized form is placed before it has laid
        ** out its children, and stays one pixel square; realized first, it has its size. */
        XtRealizeWidget(frame);
        frames.push_back(frame);
    }
    XtManageChildren(frames.data(), static_cast<Cardinal>(frames.size()));
    return frames;
}

[[gnu::noinline]] void destroyBaseline(std::vector<Widget> &frames) {
    XtUnmanageChildren(frames.data(), static_cast<Cardinal>(frames.size()));
    for (Widget f : frames) XtDestroyWidget(f);
    frames.clear();
}

/* ---- Measuring ----------------------------------------------------------------------- */

/* Where the blocks' frames stand once the build has settled: the library and the
** baseline must show the same thing for their times to compare. */
using Layout = std::vector<std::array<int, 4>>;

Layout layoutOf(const std::vector<Widget> &frames) {
    Layout layout;
    for (Widget f : frames) {
        Position x, y;
        Dimension w, h;
        XtVaGetValues(f, XtNx, &x, XtNy, &y, XtNwidth, &w, XtNheight, &h, nullptr);
        layout.push_back({x, y, w, h});
    }
    return layout;
}

struct Times {
    double build = 0, teardown = 0;
    Layout layout;
};

void settle(Display *dpy, XtAppContext app) {
    XSync(dpy, False);
    while (XtAppPending(app)) XtAppProcessEvent(app, XtIMAll);
}

Times runLibrary(Widget top, XtAppContext app, int blocks, double *bytesPerItem) {
    xt::Screen screen;
    buildTree(screen, blocks);
    const int64_t before = MemPoolFootprint(MemGetDefaultPoolId());
    Times t;
    double start = seconds();
    GuiCreatePlgScreen(top, screen.tree(), 1);
    XSync(XtDisplay(top), False);
    t.build = seconds() - start;
    *bytesPerItem = static_cast<double>(MemPoolFootprint(MemGetDefaultPoolId()) - before) /
                    (blocks * kItemsPerBlock);
    settle(XtDisplay(top), app);
    std::vector<Widget> frames;
    for (int b = 0; b < blocks; ++b) frames.push_back(xt::outerWidget(screen.item(b * kItemsPerBlock + 1)));
    t.layout = layoutOf(frames);
    /* The client keeps its own reference on the definition, as a screen record does, so
    ** that the teardown measured is the widgets' and not the release of client data. */
    void *clientRef = screen.tree();
    ObjIncRefCount(clientRef);
    start = seconds();
    GuiFreeScreenDefAndWidgets(screen.slot());
    XSync(XtDisplay(top), False);
    t.teardown = seconds() - start;
    ObjReleaseInternal(&clientRef);
    settle(XtDisplay(top), app);
    return t;
}

Times runBaseline(Widget top, XtAppContext app, int blocks) {
    Times t;
    double start = seconds();
    std::vector<Widget> frames = buildBaseline(top, blocks);
    XSync(XtDisplay(top), False);
    t.build = seconds() - start;
    settle(XtDisplay(top), app);
    t.layout = layoutOf(frames);
    start = seconds();
    destroyBaseline(frames);
    XSync(XtDisplay(top), False);
    t.teardown = seconds() - start;
    settle(XtDisplay(top), app);
    return t;
}

/* The best of the runs: what is left when the machine's other work stays out of the way. */
double best(const std::vector<double> &v) { return *std::min_element(v.begin(), v.end()); }

/* The median of the ratios of runs made side by side: a run of the library and a run of
** the baseline right after each other see the same machine, so their ratio stays steady
** while the machine's speed wanders between rounds. */
double medianRatio(const std::vector<double> &library, const std::vector<double> &baseline) {
    std::vector<double> ratios;
    for (size_t i = 0; i < library.size(); ++i) ratios.push_back(library[i] / baseline[i]);
    std::sort(ratios.begin(), ratios.end());
    const size_t n = ratios.size();
    return n % 2 ? ratios[n / 2] : (ratios[n / 2 - 1] + ratios[n / 2]) / 2;
}

} // namespace

int main(int argc, char **argv) {
    XtAppContext app;
    Widget shell = XtVaOpenApplication(&app, "BenchScreen", nullptr, 0, &argc, argv, nullptr,
                                       topLevelShellWidgetClass, XtNwidth, 1200, XtNheight, 900, nullptr);
    if (shell == nullptr) return 2;
    Widget form = XmCreateForm(shell, const_cast<char *>("screen"), nullptr, 0);
    XtManageChild(form);
    XtRealizeWidget(shell);
    settle(XtDisplay(shell), app);

    /* Arguments: the number of runs per size (15), and optionally one size to run alone
    ** (for a profiler, which needs no other sizes). Times are the best run's; ratios the
    ** median of the runs' own ratios. */
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 15;
    std::vector<int> sizes{250, 1000, 4000};
    if (argc > 2) sizes = {std::max(kItemsPerBlock, std::atoi(argv[2]))};
    std::printf("%-6s %12s %12s %8s %12s %12s %8s %10s\n", "items", "build ms", "motif ms", "ratio",
                "teardown ms", "motif ms", "ratio", "bytes/item");
    bool ok = true;
    for (int items : sizes) {
        const int blocks = items / kItemsPerBlock;
        std::vector<double> lb, lt, bb, bt;
        double bytes = 0;
        bool sameLayout = true;
        for (int r = 0; r < runs; ++r) {
            /* Each goes first in every other round, so that neither gains from the order. */
            Times base, lib;
            if (r % 2 == 0) {
                base = runBaseline(form, app, blocks);
                lib = runLibrary(form, app, blocks, &bytes);
            } else {
                lib = runLibrary(form, app, blocks, &bytes);
                base = runBaseline(form, app, blocks);
            }
            sameLayout = sameLayout && lib.layout == base.layout;
            bb.push_back(base.build), bt.push_back(base.teardown);
            lb.push_back(lib.build), lt.push_back(lib.teardown);
        }
        const double buildRatio = medianRatio(lb, bb), teardownRatio = medianRatio(lt, bt);
        std::printf("%-6d %12.1f %12.1f %8.2f %12.1f %12.1f %8.2f %10.0f%s\n", items, best(lb) * 1e3,
                    best(bb) * 1e3, buildRatio, best(lt) * 1e3, best(bt) * 1e3, teardownRatio, bytes,
                    sameLayout ? "" : "  (the layouts differ: no comparison)");
        ok = ok && sameLayout && buildRatio <= 1.25 && teardownRatio <= 1.25 && bytes <= 512;
    }
    std::printf("goal (same layout, ratios <= 1.25, <= 512 bytes per item): %s\n", ok ? "met" : "NOT met");
    XtDestroyWidget(shell);
    return 0;
}
