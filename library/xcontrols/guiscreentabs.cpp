/* guiscreentabs.cpp - builders of tab managers (plain and stacked) and their tab pages. */
#include <Xm/Form.h>

#include "guiscreenitem.h"
#include "xcontrols/guitabs.h"

namespace xc::screen {
namespace {

constexpr int32_t kTraceFound = 1401;
constexpr int32_t kTraceHolder = 1402;
constexpr int32_t kTracePage = 1403;

bool isPage(void *node) {
    const ScreenItem *item = itemOf(node);
    return item != nullptr && item->itemType == TabPage;
}

/* A page without item data, or with a null title, gets an empty title. */
char *pageTitle(void *node) {
    auto *data = untaggedDataOf<TabPageData>(itemOf(node), GUI_TABPAGE_SIGNATURE);
    return data != nullptr && data->title != nullptr ? data->title : const_cast<char *>("");
}

/* The holder ends by itself when the client destroys its widgets: the tabs record then
** forgets it, so that teardown finds no handle. Children are destroyed before their
** parent, so the holder is gone already and only the record is touched here. */
void forgetHolder(Widget, XtPointer clientData, XtPointer) {
    auto *rec = asRecord(clientData);
    if (rec != nullptr && rec->widgetKind == WIDGET_TABS) rec->tabs = nullptr;
}

/* Each TabPage child gets a form in its tab's page, where the items under it are built. */
void buildPages(void *node, GuiTabs *holder) {
    int32_t index = 0;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        if (!isPage(child)) continue;
        Args args;
        args.add(XmNmarginHeight, 10).add(XmNmarginWidth, 10);
        Widget form = createHidden(GuiGetTabWidgetAtIndex(holder, index++), "form", xmFormWidgetClass, args);
        queueManage(form);
        trace(kTracePage, 0, "Tab page is %p", static_cast<void *>(form));
        oGuiData *page = guiDataOf(itemOf(child));
        if (page == nullptr) continue;
        page->childParent = form;
        addWidget(page, form);
    }
}

/* The item's records: the form around the holder first (hiding the item hides all of
** it), the tabs record with the holder last. */
void buildTabManager(Widget parent, void *node, bool stacked) {
    oGuiData *gui = createGuiData(node);
    if (gui == nullptr) return;
    Widget where = whereToBuild(parent, node);
    PoolVector<char *> titles;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        createGuiData(child);
        if (isPage(child)) titles.push_back(pageTitle(child));
    }
    const auto count = static_cast<int32_t>(titles.size());
    trace(kTraceFound, 1, "Found %ld tabs", static_cast<long>(count));
    if (count == 0) return;

    Args args;
    Widget form = createHidden(where, "form", xmFormWidgetClass, args);
    queueManage(form);
    addWidget(gui, form);
    GuiTabs *holder = stacked ? GuiCreateStackingTabs(form, count, titles.data())
                              : GuiCreateTabs(form, count, titles.data());
    if (holder == nullptr) return;
    GuiTabSizeToTitles(holder);
    trace(kTraceHolder, 0, "Tab holder is %p", static_cast<void *>(form));
    GuiWidgetRecord *tabs = newRecord(nullptr, WIDGET_TABS);
    if (tabs != nullptr) {
        tabs->tabs = holder;
        XtAddCallback(form, XmNdestroyCallback, forgetHolder, tabs);
    }
    buildPages(node, holder);
    appendRecord(gui, &tabs);
}

} // namespace

void buildPlainTabManager(Widget parent, void *node) { buildTabManager(parent, node, false); }

void buildStackedTabManager(Widget parent, void *node) { buildTabManager(parent, node, true); }

} // namespace xc::screen
