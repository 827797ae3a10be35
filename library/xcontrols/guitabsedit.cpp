/* guitabsedit.cpp - changing a tab holder after it was made: adding, deleting and
** sizing tabs. */
#include "guiinputkit.h"
#include "guitabskit.h"

namespace xc::tabs {
namespace {

constexpr int32_t kTraceNoMemory = 1321;
constexpr int32_t kTraceCopyFailed = 1322;
constexpr int32_t kTraceBadAdd = 1323;
constexpr int32_t kTraceBadDelete = 1324;
constexpr int32_t kTraceDeleting = 1325;

constexpr int kSizeRoom = 25; /* a title's width plus this, per tab, when sizing */

/* A record that is made again, or that drops out of the array, gives up its page and
** title first. */
void releaseTab(GuiTab &tab) {
    if (tab.wPage != nullptr) XtDestroyWidget(tab.wPage);
    tab.wPage = nullptr;
    MemFreeInternal(&tab.pszTitle);
}

/* A copy of all `capacity` records in a new array of `total`, or null with a trace. */
GuiTab *grownRecords(const GuiTabs *tabs, int32_t total) {
    GuiTab *records = allocateTabs(total);
    if (records == nullptr) {
        trace(kTraceNoMemory, 0, "Unable to allocate memory to add tabs");
        return nullptr;
    }
    for (int32_t i = 0; i < tabs->iCapacity; ++i) {
        if (!MemCopy(&records[i], &tabs->pTabs[i], sizeof(GuiTab))) {
            trace(kTraceCopyFailed, 0, "Failure copying tabs when adding new tabs");
            MemFreeInternal(&records);
            return nullptr;
        }
    }
    return records;
}

} // namespace
} // namespace xc::tabs

using namespace xc::tabs;

extern "C" {

XC_API int32_t GuiAddTabsToExistingTabHolder(GuiTabs *tabs, char **titles, int32_t count) {
    if (!xc::haveHandle(tabs, __func__) || count < 0 || (titles == nullptr && count > 0)) {
        xc::trace(kTraceBadAdd, 0, "Unable to add tabs, invalid args");
        return -1;
    }
    const int32_t former = tabs->iNumTabs, total = former + count;
    if (total > tabs->iCapacity) {
        GuiTab *records = grownRecords(tabs, total);
        if (records == nullptr) return -1;
        MemFreeInternal(&tabs->pTabs);
        tabs->pTabs = records;
    }
    /* Records beyond the new end (deleted tabs) no longer exist. */
    for (int32_t i = total; i < tabs->iCapacity; ++i) releaseTab(tabs->pTabs[i]);
    for (int32_t i = former; i < total; ++i) {
        if (i < tabs->iCapacity) releaseTab(tabs->pTabs[i]);
        makeTab(tabs, i, titles[i - former]);
    }
    tabs->iNumTabs = tabs->iCapacity = total;
    redraw(tabs);
    return former;
}

XC_API int32_t GuiDeleteTabsFromExistingTabHolder(GuiTabs *tabs, int32_t *positions,
                                                  int32_t count, int32_t reselect) {
    if (tabs == nullptr || positions == nullptr) {
        xc::trace(kTraceBadDelete, 0, "Unable to delete tabs from array, invalid args");
        if (tabs == nullptr) return 0;
        redraw(tabs);
        return tabs->iNumTabs;
    }
    for (int32_t k = 0; k < count; ++k) {
        const int32_t p = positions[k];
        xc::trace(kTraceDeleting, 0, "Attempting to delete tab in position %d", static_cast<int>(p));
        if (p < 0 || p >= tabs->iCapacity || tabs->pTabs[p].wPage == nullptr || tabs->iNumTabs == 0)
            continue;
        GuiTab &tab = tabs->pTabs[p];
        releaseTab(tab);
        tab.wPage = makePage(tabs->wPageForm);
        --tabs->iNumTabs;
    }
    if (reselect == 1) GuiSelectTab(tabs, 1);
    redraw(tabs);
    return tabs->iNumTabs;
}

XC_API void GuiTabSizeToTitles(GuiTabs *tabs) {
    if (!xc::haveHandle(tabs, __func__)) return;
    int sum = 0;
    for (int32_t i = 0; i < tabs->iNumTabs; ++i) {
        const char *title = tabs->pTabs[i].pszTitle;
        xc::XmStr s(title != nullptr ? title : "");
        sum += titleWidth(s) + kSizeRoom;
    }
    /* A drawing area of no width is no X window. */
    if (sum > 0) XtVaSetValues(tabs->wTabDa, XtNwidth, static_cast<Dimension>(sum), nullptr);
}

} // extern "C"
