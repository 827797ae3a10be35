// Plugin screens against raw Motif: build plus layout, and teardown, of a screen of blocks
// of labels and of a mixed screen as a real plugin sends (nested grids, edit, combo and
// list boxes, toggles, radio buttons, push buttons, number, date and time inputs), in a
// realized, shown form; the library's memory per item (the blocks it keeps for the
// screen, with the base runtime's headers, from the pool accounting); and whether the
// library's cost scales linearly.
//
// The baseline (rawscreen.cpp) builds the identical widgets in the cheapest order Motif
// allows and must end with every item's outer widget where the library puts it.
//
// Run with --instructions under `valgrind --tool=callgrind --instr-atstart=no`, it counts
// the client's instructions of each phase at 1000 items instead, one dump per phase
// (tools/run-bench.sh reads them).
#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <Xm/Form.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "benchkit.h"
#include "screenparts.h"

namespace {

using bench::seconds;
using bench::settle;

using bench::Kind;
using bench::Part;

/* ---- The screens ---------------------------------------------------------------------- */

Part leaf(Kind kind) { return {kind, {}}; }
Part groupBox(Part content) { return {Kind::GroupBox, {std::move(content)}}; }
Part grid(std::vector<Part> cells) { return {Kind::Grid, std::move(cells)}; }

/* A group box holding a two-column grid of eight labels: 10 items. */
Part labelBlock() { return groupBox(grid(std::vector<Part>(8, leaf(Kind::Label)))); }

/* Grids in group boxes three deep, with every kind of control: 50 items. */
Part mixedBlock() {
    Part inner = groupBox(grid({leaf(Kind::Label), leaf(Kind::Edit), leaf(Kind::Label), leaf(Kind::Number),
                                leaf(Kind::Label), leaf(Kind::Date), leaf(Kind::Label), leaf(Kind::Time)}));
    Part middle = groupBox(grid({inner, leaf(Kind::Label), leaf(Kind::MultiLineEdit), leaf(Kind::Combo),
                                 leaf(Kind::Toggle), leaf(Kind::Toggle)}));
    return groupBox(grid({middle, leaf(Kind::Label), leaf(Kind::List), leaf(Kind::Radio), leaf(Kind::Button),
                          leaf(Kind::Number), leaf(Kind::Label), leaf(Kind::Button), leaf(Kind::List)}));
}

/* `depth` grids, each holding a label and the next grid. */
Part gridChain(int depth) {
    Part chain = grid({leaf(Kind::Label)});
    for (int d = 1; d < depth; ++d) chain = grid({leaf(Kind::Label), chain});
    return chain;
}

/* ---- Measuring ------------------------------------------------------------------------ */

bool gCounting = false; /* --instructions: count instructions under callgrind */

/* One timed phase, ended once the X server has done what it was asked; when counting,
** also the phase's instructions, dumped under its name. */
class Phase {
public:
    explicit Phase(std::string name) : name_(std::move(name)) {
        if (gCounting) CALLGRIND_START_INSTRUMENTATION;
        start_ = seconds();
    }
    double end(Widget w) {
        XSync(XtDisplay(w), False);
        const double elapsed = seconds() - start_;
        if (gCounting) {
            CALLGRIND_DUMP_STATS_AT(name_.c_str());
            CALLGRIND_STOP_INSTRUMENTATION;
        }
        return elapsed;
    }
private:
    std::string name_;
    double start_ = 0;
};

/* Where every item's outer widget stands once the build has settled, and its class for
** the message when the library and the baseline differ. */
struct Layout {
    std::vector<std::array<int, 4>> boxes;
    std::vector<const char *> classes;
};

Layout layoutOf(const std::vector<Widget> &outers) {
    Layout layout;
    for (Widget w : outers) {
        Position x, y;
        Dimension width, height;
        XtVaGetValues(w, XtNx, &x, XtNy, &y, XtNwidth, &width, XtNheight, &height, nullptr);
        layout.boxes.push_back({x, y, width, height});
        layout.classes.push_back(XtClass(w)->core_class.class_name);
    }
    return layout;
}

/* Empty when the layouts are the same; else the first difference. */
std::string difference(const Layout &library, const Layout &motif) {
    if (library.boxes.empty()) return "the library's screen has no outer widgets";
    if (library.boxes.size() != motif.boxes.size())
        return std::to_string(library.boxes.size()) + " outer widgets against " + std::to_string(motif.boxes.size());
    for (size_t i = 0; i < library.boxes.size(); ++i) {
        if (library.boxes[i] == motif.boxes[i]) continue;
        char text[200];
        const auto &l = library.boxes[i], &m = motif.boxes[i];
        std::snprintf(text, sizeof text, "outer widget %zu (%s): library %d,%d %dx%d, motif %d,%d %dx%d", i,
                      library.classes[i], l[0], l[1], l[2], l[3], m[0], m[1], m[2], m[3]);
        return text;
    }
    return {};
}

struct Times {
    double build = 0, teardown = 0;
    Layout layout;
};

Times runLibrary(Widget form, const char *screenName, const Part &block, int count, double *bytesPerItem = nullptr) {
    xt::Screen screen;
    bench::defineScreen(screen, block, count);
    const int64_t before = MemPoolFootprint(MemGetDefaultPoolId());
    Times t;
    Phase build(std::string(screenName) + " library build");
    GuiCreatePlgScreen(form, screen.tree(), 1);
    t.build = build.end(form);
    if (bytesPerItem)
        *bytesPerItem = static_cast<double>(MemPoolFootprint(MemGetDefaultPoolId()) - before) /
                        (count * bench::itemCount(block));
    settle(form);
    t.layout = layoutOf(bench::libraryOuters(screen));
    /* The client keeps its own reference on the definition, as a screen record does, so
    ** that the teardown measured is the widgets' and not the release of client data. */
    void *clientRef = screen.tree();
    ObjIncRefCount(clientRef);
    Phase teardown(std::string(screenName) + " library teardown");
    GuiFreeScreenDefAndWidgets(screen.slot());
    t.teardown = teardown.end(form);
    ObjReleaseInternal(&clientRef);
    settle(form);
    return t;
}

Times runMotif(Widget form, const char *screenName, const Part &block, int count) {
    Times t;
    Phase build(std::string(screenName) + " motif build");
    bench::RawScreen raw = bench::buildRawScreen(form, block, count);
    t.build = build.end(form);
    settle(form);
    t.layout = layoutOf(raw.outers);
    Phase teardown(std::string(screenName) + " motif teardown");
    bench::destroyRawScreen(raw);
    t.teardown = teardown.end(form);
    settle(form);
    return t;
}

double best(const std::vector<double> &v) { return *std::min_element(v.begin(), v.end()); }

/* The median of the ratios of runs made side by side: a run of the library and a run of
** the baseline right after each other see the same machine, so their ratio stays steady
** while the machine's speed wanders between rounds. */
double medianRatio(const std::vector<double> &a, const std::vector<double> &b) {
    std::vector<double> ratios;
    for (size_t i = 0; i < a.size(); ++i) ratios.push_back(a[i] / b[i]);
    std::sort(ratios.begin(), ratios.end());
    const size_t n = ratios.size();
    return n % 2 ? ratios[n / 2] : (ratios[n / 2 - 1] + ratios[n / 2]) / 2;
}

/* Fewer rounds for larger screens, so that the whole benchmark stays within a minute,
** but never fewer than five: the median of fewer follows the machine's load. */
int roundsFor(int items) { return std::clamp(15000 / items, 5, 15); }

const char *verdict(bool met) { return met ? "met" : "NOT met"; }

/* ---- The comparison with raw Motif ---------------------------------------------------- */

constexpr double kSizeBudget = 5; /* seconds of one library round before a larger size */

struct SizeResult {
    int items = 0;
    double libraryBuild = 0, libraryTeardown = 0; /* best run, seconds */
    double motifBuild = 0, motifTeardown = 0;
};

/* Prints one row per size; returns the library's best times, and whether every size met
** the goal (same layout, ratios <= 1.25, at most 512 bytes per item). */
std::vector<SizeResult> compare(Widget form, const char *name, const Part &block, const std::vector<int> &sizes,
                                bool *ok) {
    std::vector<SizeResult> results;
    const int perBlock = bench::itemCount(block);
    for (int items : sizes) {
        /* A library whose cost grows faster than its screen would take minutes more. */
        if (!results.empty() && results.back().libraryBuild + results.back().libraryTeardown > kSizeBudget) {
            std::printf("%-7s %6d skipped: the library took over %.0f s at %d items\n", name, items, kSizeBudget,
                        results.back().items);
            *ok = false;
            break;
        }
        const int count = std::max(1, items / perBlock);
        std::vector<double> lb, lt, mb, mt;
        double bytes = 0;
        std::string differs;
        for (int r = 0; r < roundsFor(items); ++r) {
            /* Each goes first in every other round, so that neither gains from the order. */
            Times motif, lib;
            if (r % 2 == 0) motif = runMotif(form, name, block, count), lib = runLibrary(form, name, block, count, &bytes);
            else lib = runLibrary(form, name, block, count, &bytes), motif = runMotif(form, name, block, count);
            if (differs.empty()) differs = difference(lib.layout, motif.layout);
            lb.push_back(lib.build), lt.push_back(lib.teardown), mb.push_back(motif.build), mt.push_back(motif.teardown);
        }
        const double buildRatio = medianRatio(lb, mb), teardownRatio = medianRatio(lt, mt);
        std::printf("%-7s %6d %10.1f %10.1f %6.2f %10.1f %10.1f %6.2f %8.0f\n", name, count * perBlock, best(lb) * 1e3,
                    best(mb) * 1e3, buildRatio, best(lt) * 1e3, best(mt) * 1e3, teardownRatio, bytes);
        if (!differs.empty()) std::printf("        the layouts differ, no comparison: %s\n", differs.c_str());
        *ok = *ok && differs.empty() && buildRatio <= 1.25 && teardownRatio <= 1.25 && bytes <= 512;
        results.push_back({count * perBlock, best(lb), best(lt), best(mb), best(mt)});
    }
    return results;
}

/* ---- Scaling checks --------------------------------------------------------------------- */

/* Motif's own cost per item grows with the screen (its form orders children by their
** attachments, its traversal and drop-site lists grow), and the baseline pays it as the
** library does; what the library adds must not grow, so the growth is judged against the
** baseline's growth, which is printed beside it. */
void checkPerItem(const char *what, const SizeResult &small, const SizeResult &large,
                  double SizeResult::*library, double SizeResult::*motif) {
    auto growth = [&](double SizeResult::*side) {
        return (large.*side / large.items) / (small.*side / small.items);
    };
    const double own = growth(library) / growth(motif);
    std::printf("scaling: %s per item at %d / at %d items: library %.2f, raw Motif %.2f; the library's "
                "own growth %.2f (goal <= 1.30) %s\n", what, large.items, small.items, growth(library),
                growth(motif), own, verdict(own <= 1.30));
}

void checkGridChain(Widget form) {
    std::vector<double> builds;
    for (int r = 0; r < 3; ++r) builds.push_back(runLibrary(form, "chain", gridChain(20), 1).build);
    std::printf("scaling: a chain of 20 nested grids builds in %.1f ms (goal < 50 ms) %s\n", best(builds) * 1e3,
                verdict(best(builds) < 0.050));
}

void checkGridOfBoxes(Widget form) {
    constexpr int kBoxes = 4000;
    const Part box = groupBox(leaf(Kind::Label));
    const Part boxGrid = grid(std::vector<Part>(kBoxes, box));
    std::vector<double> inGrid, byPosition;
    for (int r = 0; r < 3; ++r) {
        inGrid.push_back(runLibrary(form, "grid", boxGrid, 1).build);
        byPosition.push_back(runLibrary(form, "position", box, kBoxes).build);
    }
    const double ratio = medianRatio(inGrid, byPosition);
    std::printf("scaling: a grid of %d group boxes / the same by position: %.2f (goal <= 1.30) %s\n", kBoxes, ratio,
                verdict(ratio <= 1.30));
}

/* One counted run of each side of both screens at 1000 items, after an uncounted one
** that warms Xt's and Motif's caches. */
void countInstructions(Widget form) {
    for (auto [name, block] : {std::pair<const char *, Part>{"blocks", labelBlock()}, {"mixed", mixedBlock()}}) {
        const int count = 1000 / bench::itemCount(block);
        for (bool counted : {false, true}) {
            gCounting = counted;
            runLibrary(form, name, block, count);
            runMotif(form, name, block, count);
        }
    }
    gCounting = false;
}

} // namespace

int main(int argc, char **argv) {
    Widget form = bench::openForm("BenchScreen", argc, argv);
    if (form == nullptr) return 2;
    Widget shell = XtParent(form);
    if (bench::countInstructionsOnly(argc, argv, form, countInstructions)) return 0;
    /* Times are the best run's; ratios the median of the runs' own ratios. */
    std::printf("%-7s %6s %10s %10s %6s %10s %10s %6s %8s\n", "screen", "items", "build ms", "motif ms", "ratio",
                "teardown", "motif ms", "ratio", "B/item");
    bool ok = true;
    if (argc > 2 && std::strcmp(argv[1], "--size") == 0) { /* one size alone, for a profiler */
        compare(form, "mixed", mixedBlock(), {std::atoi(argv[2])}, &ok);
        XtDestroyWidget(shell);
        return 0;
    }
    compare(form, "blocks", labelBlock(), {250, 1000, 4000}, &ok);
    const std::vector<SizeResult> mixed = compare(form, "mixed", mixedBlock(), {250, 1000, 4000, 16000}, &ok);
    std::printf("goal (same layout, wall-clock ratios <= 1.25, <= 512 bytes per item): %s\n", verdict(ok));
    checkPerItem("mixed build", mixed[1], mixed.back(), &SizeResult::libraryBuild, &SizeResult::motifBuild);
    checkPerItem("mixed teardown", mixed[1], mixed.back(), &SizeResult::libraryTeardown, &SizeResult::motifTeardown);
    checkGridChain(form);
    checkGridOfBoxes(form);
    XtDestroyWidget(shell);
    return 0;
}
