// Per-item updates against raw Motif: the cost of each updated item on screens of 100,
// 1000 and 4000 items (it must not grow with the screen: the shown item is found through
// the library's index, not a walk), and the same widgets changed by hand in raw Motif.
//
// Each screen is made of blocks: a group box holding a grid of three labels, three
// toggles and two one-line edit boxes (10 items). An update changes one label, one toggle
// and one edit box in each of 10 blocks spread over the screen. Texts are digits, so that
// no widget changes size and Motif's relayout stays out of the measure.
//
// Run with --instructions under `valgrind --tool=callgrind --instr-atstart=no`, it counts
// the client's instructions of one update at 4000 items by the library ("update library")
// and by hand ("update motif"), one dump each (tools/run-bench.sh reads them).
#include <Xm/Text.h>
#include <Xm/ToggleB.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "benchkit.h"
#include "screens.h"

namespace {

using bench::seconds;
using bench::settle;

constexpr int kBlockItems = 10;
constexpr int kBlocksUpdated = 10;
constexpr int kUpdatesPerSample = 20;

/* The ids of a block's items: box, grid, labels 2..4, toggles 5..7, edit boxes 8..9. */
int32_t blockId(int block, int offset) { return block * kBlockItems + offset + 1; }

void defineScreen(xt::Screen &s, int blocks) {
    for (int b = 0; b < blocks; ++b) {
        void *box = s.add(nullptr, GroupBox, blockId(b, 0), xt::groupBoxData("block"));
        void *grid = s.add(box, RowColManager, blockId(b, 1), xt::rowColData(2));
        for (int i = 2; i < 5; ++i) s.add(grid, Label, blockId(b, i), xt::labelData("10000"));
        for (int i = 5; i < 8; ++i) s.add(grid, selectionItem, blockId(b, i), xt::selectionData("10000", 0));
        for (int i = 8; i < 10; ++i) s.add(grid, EditBox, blockId(b, i), xt::editBoxData(0, 8, 1, "10000"));
    }
}

/* The blocks that an update changes, spread evenly over the screen. */
std::vector<int> updatedBlocks(int blocks) {
    std::vector<int> chosen;
    for (int i = 0; i < kBlocksUpdated; ++i) chosen.push_back(i * blocks / kBlocksUpdated);
    return chosen;
}

/* The update tree of round `round`: new texts and toggle states in the chosen blocks. */
void defineUpdate(xt::Screen &u, const std::vector<int> &blocks, int round) {
    const std::string text = std::to_string(10000 + round % 2 * 11111);
    for (int b : blocks) {
        u.add(nullptr, Label, blockId(b, 2), xt::labelData(text.c_str()));
        u.add(nullptr, selectionItem, blockId(b, 5), xt::selectionData(text.c_str(), round % 2));
        u.add(nullptr, EditBox, blockId(b, 8), xt::editBoxData(0, 8, 1, text.c_str()));
    }
}

/* The same changes made by hand on the shown widgets. */
void updateByHand(const xt::Screen &s, const std::vector<int> &blocks, int round) {
    const std::string text = std::to_string(10000 + round % 2 * 11111);
    for (int b : blocks) {
        XmString label = XmStringCreateLtoR(const_cast<char *>(text.c_str()), XmSTRING_DEFAULT_CHARSET);
        XtVaSetValues(xt::valueWidget(s.item(blockId(b, 2))), XmNlabelString, label, nullptr);
        XtVaSetValues(xt::valueWidget(s.item(blockId(b, 5))), XmNlabelString, label, XmNset, round % 2, nullptr);
        XmStringFree(label);
        XmTextSetString(xt::valueWidget(s.item(blockId(b, 8))), const_cast<char *>(text.c_str()));
    }
}

struct Shown {
    xt::Screen screen;
    oScreenDef record{};
    std::vector<int> blocks;
};

void show(Widget form, Shown &shown, int items) {
    defineScreen(shown.screen, items / kBlockItems);
    ObjIncRefCount(shown.screen.tree()); /* the record's reference, as a client keeps it */
    shown.record = {1, 0, 0, 0, form, shown.screen.tree()};
    GuiCreatePlgScreen(form, shown.screen.tree(), 1);
    shown.blocks = updatedBlocks(items / kBlockItems);
    settle(form);
}

void hide(Widget form, Shown &shown) {
    GuiFreeScreenDefAndWidgets(&shown.record.oPluginScreenDef);
    settle(form);
}

/* One update by the library; the update tree is made before and released after. */
void updateByLibrary(Shown &shown, int round) {
    xt::Screen update;
    defineUpdate(update, shown.blocks, round);
    oUpdateScreen u{update.tree(), 0, 0, nullptr};
    GuiUpdatePlgScreen(&shown.record, &u, 1);
}

/* Seconds per updated item, library and by hand, over one sample of updates each. */
std::pair<double, double> sample(Widget form, Shown &shown, int &round) {
    std::vector<xt::Screen> updates(kUpdatesPerSample);
    for (int i = 0; i < kUpdatesPerSample; ++i) defineUpdate(updates[i], shown.blocks, round + i);
    double start = seconds();
    for (int i = 0; i < kUpdatesPerSample; ++i) {
        oUpdateScreen u{updates[i].tree(), 0, 0, nullptr};
        GuiUpdatePlgScreen(&shown.record, &u, 1);
    }
    XSync(XtDisplay(form), False);
    const double library = seconds() - start;
    settle(form);
    start = seconds();
    for (int i = 0; i < kUpdatesPerSample; ++i) updateByHand(shown.screen, shown.blocks, round + i);
    XSync(XtDisplay(form), False);
    const double motif = seconds() - start;
    settle(form);
    round += kUpdatesPerSample;
    const double perItem = kUpdatesPerSample * kBlocksUpdated * 3.0;
    return {library / perItem, motif / perItem};
}

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

void countInstructions(Widget form) {
    Shown shown;
    show(form, shown, 4000);
    int round = 0;
    for (bool counted : {false, true}) { /* the first warms the caches and builds the index */
        if (counted) CALLGRIND_START_INSTRUMENTATION;
        updateByLibrary(shown, round++);
        if (counted) CALLGRIND_DUMP_STATS_AT("update library");
        updateByHand(shown.screen, shown.blocks, round++);
        if (counted) {
            CALLGRIND_DUMP_STATS_AT("update motif");
            CALLGRIND_STOP_INSTRUMENTATION;
        }
    }
    hide(form, shown);
}

} // namespace

int main(int argc, char **argv) {
    Widget form = bench::openForm("BenchUpdate", argc, argv);
    if (form == nullptr) return 2;
    Widget shell = XtParent(form);
    if (bench::countInstructionsOnly(argc, argv, form, countInstructions)) return 0;
    std::printf("%6s %14s %14s %6s\n", "items", "library us/it", "motif us/it", "ratio");
    std::vector<double> perItem;
    for (int items : {100, 1000, 4000}) {
        Shown shown;
        show(form, shown, items);
        int round = 0;
        updateByLibrary(shown, round++); /* builds the index, as any first update does */
        std::vector<double> library, motif;
        for (int r = 0; r < 15; ++r) {
            auto [l, m] = sample(form, shown, round);
            library.push_back(l), motif.push_back(m);
        }
        hide(form, shown);
        perItem.push_back(median(library));
        std::printf("%6d %14.2f %14.2f %6.2f\n", items, median(library) * 1e6, median(motif) * 1e6,
                    median(library) / median(motif));
    }
    const double growth = perItem.back() / perItem.front();
    std::printf("cost per updated item at 4000 / at 100 items: %.2f (goal <= 1.50) %s\n", growth,
                growth <= 1.5 ? "met" : "NOT met");
    XtDestroyWidget(shell);
    return 0;
}
