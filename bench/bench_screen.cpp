// Plugin screens against raw Motif: build plus layout, and teardown, of screens of 250,
// 1000 and 4000 items in a realized, shown form, and the library's memory per item.
//
// The baseline creates the identical widget tree in the cheapest order Motif allows:
// children created unmanaged, constraints set before managing, one XtManageChildren per
// parent; it tears down with one XtUnmanageChildren and a destroy per top-level frame.
#include <X11/Shell.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>

#include <algorithm>
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

struct Times {
    double build = 0, teardown = 0;
};

void settle(Display *dpy, XtAppContext app) {
    XSync(dpy, False);
    while (XtAppPending(app)) XtAppProcessEvent(app, XtIMAll);
}

Times runLibrary(Widget top, XtAppContext app, int blocks, double *bytesPerItem) {
    xt::Screen screen;
    buildTree(screen, blocks);
    const int64_t before = MemPoolLiveBytes(MemGetDefaultPoolId());
    Times t;
    double start = seconds();
    GuiCreatePlgScreen(top, screen.tree(), 1);
    XSync(XtDisplay(top), False);
    t.build = seconds() - start;
    *bytesPerItem = static_cast<double>(MemPoolLiveBytes(MemGetDefaultPoolId()) - before) /
                    (blocks * kItemsPerBlock);
    settle(XtDisplay(top), app);
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
    start = seconds();
    destroyBaseline(frames);
    XSync(XtDisplay(top), False);
    t.teardown = seconds() - start;
    settle(XtDisplay(top), app);
    return t;
}

/* The best of the runs: what is left when the machine's other work stays out of the way. */
double best(const std::vector<double> &v) { return *std::min_element(v.begin(), v.end()); }

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

    /* Arguments: the number of runs per size (9), and optionally one size to run alone
    ** (for a profiler, which needs no other sizes). */
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 9;
    std::vector<int> sizes{250, 1000, 4000};
    if (argc > 2) sizes = {std::max(kItemsPerBlock, std::atoi(argv[2]))};
    std::printf("%-6s %12s %12s %8s %12s %12s %8s %10s\n", "items", "build ms", "motif ms", "ratio",
                "teardown ms", "motif ms", "ratio", "bytes/item");
    bool ok = true;
    for (int items : sizes) {
        const int blocks = items / kItemsPerBlock;
        std::vector<double> lb, lt, bb, bt;
        double bytes = 0;
        for (int r = 0; r < runs; ++r) {
            Times base = runBaseline(form, app, blocks);
            Times lib = runLibrary(form, app, blocks, &bytes);
            bb.push_back(base.build), bt.push_back(base.teardown);
            lb.push_back(lib.build), lt.push_back(lib.teardown);
        }
        const double buildRatio = best(lb) / best(bb), teardownRatio = best(lt) / best(bt);
        std::printf("%-6d %12.1f %12.1f %8.2f %12.1f %12.1f %8.2f %10.0f\n", items, best(lb) * 1e3,
                    best(bb) * 1e3, buildRatio, best(lt) * 1e3, best(bt) * 1e3, teardownRatio, bytes);
        ok = ok && buildRatio <= 1.25 && teardownRatio <= 1.25 && bytes <= 512;
    }
    std::printf("goal (ratios <= 1.25, <= 512 bytes per item): %s\n", ok ? "met" : "NOT met");
    XtDestroyWidget(shell);
    return 0;
}
