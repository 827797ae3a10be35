/* guitabs.cpp - the tab holder: its making, its input, its operations and its end. */
#include "xcontrols/guitabs.h"

#include <Xm/DrawingA.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>

#include "guiinputkit.h"
#include "guitabskit.h"

namespace xc::tabs {
namespace {

constexpr int32_t kTraceBadCreate = 1301;
constexpr int32_t kTraceBadTab = 1302;
constexpr int32_t kTraceDestroy = 1303;

/* The tab under the last button press, one for all holders: a release selects a tab
** only where the press began. */
int32_t gPressedTab = 0;

Pixel backgroundOf(Widget w) {
    Pixel background = 0;
    XtVaGetValues(w, XmNbackground, &background, nullptr);
    return background;
}

/* A tab number or index that names no record is traced; the operation does nothing. */
GuiTab *tabAt(GuiTabs *tabs, int32_t index, const char *function) {
    if (!haveHandle(tabs, function)) return nullptr;
    if (index >= 0 && index < tabs->iCapacity) return &tabs->pTabs[index];
    trace(kTraceBadTab, 0, "%s: no tab at index %ld", function, static_cast<long>(index));
    return nullptr;
}

/* The first enabled, shown tab whose box holds the point strictly inside. */
GuiTab *tabHit(GuiTabs *tabs, int x, int y) {
    for (int32_t i = 0; i < tabs->iNumTabs; ++i) {
        GuiTab &tab = tabs->pTabs[i];
        if (tab.bEnabled == 1 && tab.bHidden == 0 && tab.iLeftX < x && x < tab.iRightX &&
            tab.iTopY < y && y < tab.iBottomY)
            return &tab;
    }
    return nullptr;
}

void destroyNow(void *record);

void onDrawingAreaInput(Widget, XtPointer client, XtPointer call) {
    auto *tabs = static_cast<GuiTabs *>(client);
    const XEvent *event = static_cast<XmDrawingAreaCallbackStruct *>(call)->event;
    if (event == nullptr || (event->type != ButtonPress && event->type != ButtonRelease)) return;
    const GuiTab *hit = tabHit(tabs, event->xbutton.x, event->xbutton.y);
    if (event->type == ButtonPress) {
        if (hit != nullptr) gPressedTab = hit->iNumber;
        return;
    }
    if (hit == nullptr || hit->iNumber != gPressedTab || hit->iNumber == tabs->iSelected) return;
    tabs->iSelected = hit->iNumber;
    trace(kTraceRedraw, 0, "TAB redraw for GuiTabDaInputCB");
    /* The client may destroy the holder from its callback: it goes when this returns. */
    ControlScope scope(tabs, destroyNow);
    if (tabs->fnCallback != nullptr) tabs->fnCallback(tabs->wTabDa, tabs->pClientData, &tabs->iSelected);
    if (!scope.alive()) return;
    redraw(tabs);
    setPageSensitivity(tabs);
}

/* Only the last of a run of expose events redraws: one redraw paints the whole area. */
void onDrawingAreaExpose(Widget w, XtPointer client, XtPointer call) {
    const XEvent *event = static_cast<XmDrawingAreaCallbackStruct *>(call)->event;
    if (XtIsRealized(w) && (event == nullptr || event->xexpose.count == 0))
        redrawFor(static_cast<GuiTabs *>(client), "GuiTabDaExposeCB");
}

void onDrawingAreaResize(Widget w, XtPointer client, XtPointer) {
    if (XtIsRealized(w)) redrawFor(static_cast<GuiTabs *>(client), "GuiTabRedrawCB");
}

/* The client destroyed the drawing area, or a widget holding it: the holder goes too. */
void onDrawingAreaDestroyed(Widget, XtPointer client, XtPointer) {
    ControlScope::destroyWhenIdle(client, destroyNow);
}

struct DrawingAreaHook {
    const char *name;
    XtCallbackProc proc;
};

const DrawingAreaHook kHooks[] = {
    {XmNinputCallback, onDrawingAreaInput},
    {XmNresizeCallback, onDrawingAreaResize},
    {XmNexposeCallback, onDrawingAreaExpose},
    {XmNdestroyCallback, onDrawingAreaDestroyed},
};

/* Every record ever made, those beyond the tabs in use included, owns a page and a
** title. A widget that is already going (its parent destroyed by the client) is left to
** Xt. */
void destroyNow(void *record) {
    auto *tabs = static_cast<GuiTabs *>(record);
    for (const DrawingAreaHook &hook : kHooks) XtRemoveCallback(tabs->wTabDa, hook.name, hook.proc, tabs);
    for (int32_t i = 0; i < tabs->iCapacity; ++i) {
        GuiTab &tab = tabs->pTabs[i];
        if (tab.wPage != nullptr) {
            unmapWidget(tab.wPage);
            XtDestroyWidget(tab.wPage);
        }
        MemFreeInternal(&tab.pszTitle);
    }
    XtDestroyWidget(tabs->wTabDa);
    MemFreeInternal(&tabs->pTabs);
    MemFreeInternal(&tabs);
}

void placePageForm(Widget pageForm, Pixel background) {
    XtVaSetValues(pageForm, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                  XmNbottomAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM,
                  XmNleftOffset, 10, XmNrightOffset, 10, XmNbottomOffset, 10, XmNtopOffset, 30,
                  XmNbackground, background, XmNshadowThickness, 0, XmNresizePolicy,
                  XmRESIZE_ANY, nullptr);
    XtManageChild(pageForm);
}

Widget makeDrawingArea(Widget parent, Pixel background, GuiTabs *tabs) {
    Widget da = XtVaCreateManagedWidget(
        "tabDa", xmDrawingAreaWidgetClass, parent, XmNleftAttachment, XmATTACH_FORM,
        XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM,
        XmNbottomAttachment, XmATTACH_FORM, XmNbackground, background, nullptr);
    for (const DrawingAreaHook &hook : kHooks) XtAddCallback(da, hook.name, hook.proc, tabs);
    return da;
}

bool validCreation(Widget parent, int32_t count, char **titles, const char *function) {
    if (parent != nullptr && count >= 0 && (titles != nullptr || count == 0)) return true;
    trace(kTraceBadCreate, -1, "%s: needs a parent, a count of 0 or more and the titles", function);
    return false;
}

GuiTabs *createHolder(Widget parent, int32_t count, char **titles, int32_t stacking,
                      const char *function) {
    if (!validCreation(parent, count, titles, function)) return nullptr;
    auto *tabs = allocateRecord<GuiTabs>(function);
    GuiTab *records = tabs ? allocateTabs(count) : nullptr;
    if (records == nullptr) {
        MemFreeInternal(&tabs);
        return nullptr;
    }
    const Pixel background = backgroundOf(parent);
    Dimension width = 0;
    XtVaGetValues(parent, XmNwidth, &width, nullptr);
    *tabs = GuiTabs{count, count, 1, nullptr, records, nullptr, nullptr, nullptr, stacking};
    tabs->wPageForm = XmCreateForm(parent, const_cast<char *>("form"), nullptr, 0);
    for (int32_t i = 0; i < count; ++i) makeTab(tabs, i, titles[i]);
    {
        TitleStrings strings(count); /* the layout fills in the tab positions only */
        layoutTabs(tabs, strings, width - 20);
    }
    placePageForm(tabs->wPageForm, background);
    tabs->wTabDa = makeDrawingArea(parent, background, tabs);
    return tabs;
}

} // namespace

Widget makePage(Widget pageForm) {
    return XtVaCreateManagedWidget(
        "tabPage", xmFrameWidgetClass, pageForm, XmNleftAttachment, XmATTACH_FORM,
        XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
        XmNtopAttachment, XmATTACH_FORM, XmNbackground, backgroundOf(XtParent(pageForm)),
        XmNshadowThickness, 0, nullptr);
}

void makeTab(GuiTabs *tabs, int32_t index, const char *title) {
    GuiTab &tab = tabs->pTabs[index];
    tab = GuiTab{index + 1, 1, 0, 0, 0, 0, 0, 0, nullptr, makePage(tabs->wPageForm)};
    if (index != 0) XtSetSensitive(tab.wPage, False);
    tab.pszTitle = StrDuplicateIntoPool(title != nullptr ? title : "", pool());
}

GuiTab *allocateTabs(int32_t count) {
    return static_cast<GuiTab *>(allocateRecord(sizeof(GuiTab) * static_cast<size_t>(count), "tab records"));
}

void setPageSensitivity(GuiTabs *tabs) {
    for (int32_t i = 0; i < tabs->iNumTabs; ++i)
        XtSetSensitive(tabs->pTabs[i].wPage, tabs->pTabs[i].iNumber == tabs->iSelected);
}

} // namespace xc::tabs

using namespace xc::tabs;

extern "C" {

XC_API GuiTabs *GuiCreateTabs(Widget parent, int32_t count, char **titles) {
    return createHolder(parent, count, titles, 0, __func__);
}

XC_API GuiTabs *GuiCreateStackingTabs(Widget parent, int32_t count, char **titles) {
    return createHolder(parent, count, titles, 1, __func__);
}

XC_API void GuiAddTabCallback(GuiTabs *tabs, GuiTabCallback fn, void *pClientData) {
    xc::setCallback(tabs, fn, pClientData, __func__);
}

XC_API void GuiEnableTab(GuiTabs *tabs, int32_t number) {
    if (GuiTab *tab = tabAt(tabs, number - 1, __func__)) {
        tab->bEnabled = 1;
        redrawFor(tabs, __func__);
    }
}

XC_API void GuiDisableTab(GuiTabs *tabs, int32_t number) {
    if (GuiTab *tab = tabAt(tabs, number - 1, __func__)) {
        tab->bEnabled = 0;
        redrawFor(tabs, __func__);
    }
}

XC_API void GuiSelectTab(GuiTabs *tabs, int32_t number) {
    if (tabAt(tabs, number - 1, __func__) == nullptr) return;
    tabs->iSelected = number;
    redrawFor(tabs, __func__);
    setPageSensitivity(tabs);
}

XC_API int32_t GuiGetSelectedTab(GuiTabs *tabs) {
    return xc::haveHandle(tabs, __func__) ? tabs->iSelected : 0;
}

XC_API void GuiTabSetTabVisible(GuiTabs *tabs, int32_t index, int32_t hide) {
    GuiTab *tab = tabAt(tabs, index, __func__);
    if (tab == nullptr) return;
    tab->bHidden = hide;
    if (hide != 1 || tab->iNumber != tabs->iSelected) return;
    for (int32_t i = 0; i < tabs->iNumTabs; ++i) {
        if (tabs->pTabs[i].bHidden == 0) {
            GuiSelectTab(tabs, tabs->pTabs[i].iNumber);
            return;
        }
    }
    XtUnmanageChild(tabs->wPageForm);
}

XC_API Widget GuiGetTabWidgetAtIndex(GuiTabs *tabs, int32_t index) {
    GuiTab *tab = tabAt(tabs, index, __func__);
    return tab ? tab->wPage : nullptr;
}

XC_API void GuiDestroyTabs(GuiTabs *tabs) {
    xc::trace(kTraceDestroy, 1, "GuiDestroyTabs(%p)", static_cast<void *>(tabs));
    if (tabs != nullptr) xc::ControlScope::destroyWhenIdle(tabs, destroyNow);
}

} // extern "C"
