/* guiscreendef.cpp - plugin screens: the entry points, the create dispatch and the
** close callback. */
#include <new>

#include "guiinputkit.h"
#include "guiscreenitem.h"

extern "C" {
XC_API int32_t glJobId = 0;
}

namespace xc::screen {
namespace {

GuiPlgCloseFn gClose = nullptr;
void *gCloseValue = nullptr;

/* ---- The create dispatch ------------------------------------------------------------ */

struct ItemKind {
    uint32_t type;
    const char *trace;
    Builder build; /* null: the item is an entry or page that its parent builds */
};

constexpr ItemKind kItemKinds[] = {
    {GroupBox, "Create a GroupBox", buildGroupBox},
    {TabManager, "Create a TabManager", buildPlainTabManager},
    {TabPage, "Create a TabPage", nullptr},
    {ComboBox, "Create a ComboBox", buildComboBox},
    {ComboItem, "Create a ComboItem", nullptr},
    {ListBox, "Create a ListBox", buildListBox},
    {ListItem, "Create a ListItem", nullptr},
    {selectionItem, "Create a selectionItem", buildSelectionItem},
    {RadioManager, "Create a RadioManager", buildRadioManager},
    {RadioButton, "Create a RadioButton", nullptr},
    {PushButton, "Create a PushButton", buildPushButton},
    {EditBox, "Create a EditBox", buildEditBox},
    {NumInput, "Create a NumInput", buildNumInput},
    {Label, "Create a Label", buildLabel},
    {RowColManager, "Create a Row Col Manager", buildRowColManager},
    {DateInput, "Create a Date Input", buildDateInput},
    {TimeInput, "Create a Time Input", buildTimeInput},
    {ChangePassword, "Create a Change password control", buildChangePassword},
    {GetPasswordBox, "Create a GetPasswordBox", buildGetPasswordBox},
    {StackedTabManager, "Create a Stacked TabManager", buildStackedTabManager},
    {ExtendedListBox, "Create an extended ListBox", buildListBox},
};

const ItemKind *kindOf(uint32_t type) {
    for (const ItemKind &k : kItemKinds)
        if (k.type == type) return &k;
    return nullptr;
}

int holdsWidgets(void *, void *element) {
    auto *rec = asRecord(ListElementItem(element));
    const bool empty = rec == nullptr || (rec->widget == nullptr && rec->combo == nullptr &&
                                          rec->tabs == nullptr && rec->numInput == nullptr &&
                                          rec->dateInput == nullptr && rec->timeInput == nullptr);
    return empty ? 1 : 0; /* 0 stops the walk: the item holds widgets */
}

/* The release pass; counts the items whose records still hold widgets or controls of an
** earlier build that nobody tore down. */
int releaseGuiData(void *stale, void *node) {
    ScreenItem *item = itemOf(node);
    if (item == nullptr) return 1;
    if (oGuiData *gui = guiDataOf(item))
        if (!ListWalk(gui->widgetList, holdsWidgets, nullptr)) ++*static_cast<long *>(stale);
    ObjReleaseInternal(&item->guiData);
    return 1;
}

/* The create walk builds into `parent` and fills the index for the layout pass. */
struct CreateWalk {
    Widget parent;
    ItemIndex *index;
};

int createNode(void *ctx, void *node) {
    const auto *walk = static_cast<const CreateWalk *>(ctx);
    ScreenItem *item = itemOf(node);
    if (item != nullptr) walk->index->add(node, item);
    const ItemKind *kind = item ? kindOf(item->itemType) : nullptr;
    if (kind == nullptr) {
        trace(101, 1, "unknown screen item");
        return 1;
    }
    trace(102, 0, "%s", kind->trace);
    if (kind->build) kind->build(walk->parent, node);
    watchWidgets(node, item);
    return 1;
}

/* ---- The close callback ----------------------------------------------------------------
** A CLOSE that an item runs while an entry point builds or updates the screen (a toggle
** or a combo box reporting its first state) is held until the entry point has finished,
** and one that a control's callback runs (a combo's selection made by a program call)
** until the control's code has returned: the client frees the screen from the callback,
** which must not happen under the build or under a control that is still working. */

int gEntryDepth = 0;
bool gClosePending = false;
int32_t gPendingJob = 0;

void callClose(int32_t jobId) {
    void *flag = nullptr;
    ObjBooleanCreate(&flag, 1);
    if (gClose) gClose(jobId, flag);
    ObjReleaseInternal(&flag);
}

} // namespace

/* Runs the create and layout passes with the manage calls of the builders batched. */
void buildScreen(Widget parent, void *tree) {
    DropSiteBatch dropSites(parent);
    BuildBatch batch;
    ItemIndex index(tree, ItemIndex::FilledByCaller{});
    CreateWalk walk{parent, &index};
    TreeWalk(tree, createNode, &walk, 0);
    index.finish();
    TreeWalkPostOrder(tree, layoutNode, &index);
    batch.finish();
}

/* Calls the close callback held back, once nothing of the library that the client may
** free is running any more. */
void releaseHeldClose() {
    if (!gClosePending || gEntryDepth > 0) return;
    if (ControlScope::anyOpen()) {
        ControlScope::whenAllClosed(releaseHeldClose);
        return;
    }
    gClosePending = false;
    callClose(gPendingJob);
}

void requestClose(int32_t jobId) {
    if (gEntryDepth == 0 && !ControlScope::anyOpen()) {
        callClose(jobId);
        return;
    }
    trace(112, 0, "Close for job %ld held until the screen stands", static_cast<long>(jobId));
    if (!gClosePending) gPendingJob = jobId;
    gClosePending = true;
    releaseHeldClose();
}

} // namespace xc::screen

using namespace xc::screen;

namespace {

/* Runs an entry point's work; the library's containers may run out of memory, and no
** exception may leave the C boundary. */
template <typename Work>
int guarded(const char *entry, Work &&work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc &) {
        xc::trace(110, -1, "%s: out of memory", entry);
        return 0;
    }
}

/* An entry point's work, with a CLOSE that it runs held until the outermost one ends. */
template <typename Work>
int entered(const char *entry, Work &&work) noexcept {
    ++gEntryDepth;
    const int result = guarded(entry, work);
    --gEntryDepth;
    releaseHeldClose();
    return result;
}

} // namespace

extern "C" {

XC_API void InitPluginScreens(GuiPlgCloseFn fnClose, void *pClientValue) {
    gClose = fnClose;
    gCloseValue = pClientValue;
}

XC_API int GuiCreatePlgScreen(Widget parent, void *hScreenDef, int32_t jobId) {
    glJobId = jobId;
    if (parent == nullptr) {
        xc::trace(111, -1, "No parent widget for the screen");
        return 1;
    }
    entered("GuiCreatePlgScreen", [&] {
        long stale = 0;
        TreeWalk(hScreenDef, releaseGuiData, &stale, 0);
        if (stale > 0)
            xc::trace(113, 0, "Screen created again over %ld items whose widgets still stand", stale);
        buildScreen(parent, hScreenDef);
        return 1;
    });
    return 1;
}

XC_API int GuiUpdatePlgScreen(oScreenDef *pScreen, oUpdateScreen *pUpdate, int32_t perItem) {
    if (pScreen == nullptr || pUpdate == nullptr) return 0;
    glJobId = pScreen->jobId;
    if (!perItem && pScreen->parentWidget == nullptr) {
        xc::trace(111, -1, "No parent widget for the screen");
        return 0;
    }
    return entered("GuiUpdatePlgScreen", [&] {
        return perItem ? updateItems(pScreen, pUpdate) : updateWholeScreen(pScreen, pUpdate);
    });
}

XC_API void GuiFreeScreenDef(void *phScreenDef) {
    if (phScreenDef == nullptr) return;
    forgetShownIndex(*static_cast<void **>(phScreenDef));
    ObjReleaseInternal(phScreenDef);
}

XC_API void GuiFreeScreenDefAndWidgets(void *phScreenDef) {
    void **slot = static_cast<void **>(phScreenDef);
    if (slot == nullptr || *slot == nullptr) return;
    xc::trace(109, 0, "Destroy the widgets making up the screen");
    guarded("GuiFreeScreenDefAndWidgets", [&] {
        destroyScreenWidgets(*slot);
        return 1;
    });
    GuiFreeScreenDef(slot);
}

} // extern "C"
