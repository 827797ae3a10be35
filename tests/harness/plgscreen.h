/* plgscreen.h - the plugin-screen fixture: a screen shown one of the ways a client shows
** it, the client's close callback, and probes of what the items show. */
#ifndef XC_TEST_PLGSCREEN_H
#define XC_TEST_PLGSCREEN_H
#include "xharness.h"
#include <Xm/List.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>
#include <memory>
#include "guidateinput.h"
#include "guinuminput.h"
#include "guitimeinput.h"
#include "screens.h"
#include "xcontrols/guicombo.h"
namespace xt {
/* When the shell gets its windows: after the screen is built into the still unrealized
** form, before (the screen goes into a form already shown), or never. */
enum class Shown { AfterBuild, BeforeBuild, Never };
inline std::string shownName(const ::testing::TestParamInfo<Shown> &info) {
    return info.param == Shown::AfterBuild ? "AfterBuild"
           : info.param == Shown::BeforeBuild ? "BuiltIntoShownForm" : "Unrealized";
}
struct CloseCall { int32_t jobId, flag; }; /* flag: ObjBooleanGet during the call */
inline std::string textOf(Widget field) {
    std::unique_ptr<char, decltype(&XtFree)> text(XmTextFieldGetString(field), XtFree);
    return text ? text.get() : "";
}
/* Clicks a list entry, after a pause so that two clicks never make a double click. */
inline void clickEntry(Widget list, int position, KeySym modifier = NoSymbol) {
    pumpFor(static_cast<int>(XtGetMultiClickTime(display())) + 50);
    Position x = 0, y = 0;
    Dimension w = 0, h = 0;
    ASSERT_TRUE(XmListPosToBounds(list, position, &x, &y, &w, &h)) << "entry " << position;
    if (modifier == NoSymbol) click(list, x + w / 2, y + h / 2);
    else clickWith(modifier, list, x + w / 2, y + h / 2);
}
inline Widget outer(const Screen &s, int32_t id) { return outerWidget(s.item(id)); }
inline Widget value(const Screen &s, int32_t id) { return valueWidget(s.item(id)); }
template <typename T> T *data(const Screen &s, int32_t id) {
    return static_cast<T *>(s.item(id)->itemData);
}
/* The control of an item, kept in its last widget record; null when it has none. */
template <typename T, void *GuiWidgetRecord::*M> T *control(const Screen &s, int32_t id) {
    GuiWidgetRecord *rec = lastRecord(s.item(id));
    return rec ? static_cast<T *>(rec->*M) : nullptr;
}
constexpr auto numInputOf = &control<GuiNumInput, &GuiWidgetRecord::numInput>;
constexpr auto dateInputOf = &control<GuiDateInput, &GuiWidgetRecord::dateInput>;
constexpr auto timeInputOf = &control<GuiTimeInput, &GuiWidgetRecord::timeInput>;
constexpr auto comboOf = &control<GuiCombo, &GuiWidgetRecord::combo>;
/* The names of watched widgets in the order they are destroyed. */
struct GoneList {
    std::vector<std::string> names;
    static void note(Widget w, XtPointer list, XtPointer) {
        static_cast<GoneList *>(list)->names.push_back(XtName(w));
    }
    void watch(Widget w) { if (w) XtAddCallback(w, XmNdestroyCallback, note, this); }
    void watchItem(const Screen &s, int32_t id) { /* every widget of the item */
        ListWalk(s.item(id)->guiData->widgetList, [](void *list, void *element) {
            static_cast<GoneList *>(list)->watch(
                static_cast<GuiWidgetRecord *>(ListElementItem(element))->widget);
            return 1;
        }, this);
    }
};
/* Shown/hidden, enabled/disabled: the record and the widget agree. */
inline bool shownItem(const Screen &s, int32_t id, bool shown = true) {
    return s.item(id)->hidden == !shown && isMapped(outer(s, id)) == shown;
}
inline bool hiddenItem(const Screen &s, int32_t id) { return shownItem(s, id, false); }
inline bool enabledItem(const Screen &s, int32_t id, bool enabled = true) {
    return s.item(id)->disabled == !enabled && (XtIsSensitive(outer(s, id)) != 0) == enabled;
}
inline bool disabledItem(const Screen &s, int32_t id) { return enabledItem(s, id, false); }
inline bool toggleOn(const Screen &s, int32_t id) { return XmToggleButtonGetState(value(s, id)); }
class PlgScreenTest : public XTest, public ::testing::WithParamInterface<Shown> {
protected:
    void SetUp() override {
        XTest::SetUp();
        closeCalls().clear();
        screenToFree() = nullptr;
        InitPluginScreens(recordClose, nullptr);
    }
    void TearDown() override {
        InitPluginScreens(nullptr, nullptr);
        XTest::TearDown();
    }
    /* Builds the screen for `job`; on the display afterwards unless the test never shows. */
    void show(Screen &s, int32_t job = 42, bool shown = true) {
        GuiCreatePlgScreen(form(), s.tree(), job);
        if (shown && !XtIsRealized(shell())) realize();
        if (shown) pump();
    }
    static void destroy(Screen &s) { GuiFreeScreenDefAndWidgets(s.slot()); }
    /* Builds `s` as a client does: its screen record holds a reference on the tree. */
    oScreenDef record(Screen &s, int32_t job = 31) {
        ObjIncRefCount(s.tree());
        GuiCreatePlgScreen(form(), s.tree(), job);
        return {job, 0, 0, 0, form(), s.tree()};
    }
    /* A whole-screen (items 0) or per-item (1) update of the screen with the tree of `s`. */
    static int update(oScreenDef &screen, const Screen &s, int32_t items, void *cookie = nullptr) {
        oUpdateScreen u{s.tree(), 0, 0, cookie};
        return GuiUpdatePlgScreen(&screen, &u, items);
    }
    /* When screenToFree() names a tree slot, the close callback ends that screen as a
    ** client does, from inside the call. */
    static std::vector<CloseCall> &closeCalls() { static std::vector<CloseCall> c; return c; }
    static void **&screenToFree() { static void **slot = nullptr; return slot; }
    static int recordClose(int32_t jobId, void *flag) {
        closeCalls().push_back({jobId, ObjBooleanGet(flag)});
        if (screenToFree() != nullptr) GuiFreeScreenDefAndWidgets(screenToFree());
        return 1;
    }
    /* Trace lines that report carrying out an action ("Process ... action"). */
    int actionTraces() const {
        int n = 0;
        for (const TraceLine &t : traces())
            n += t.text.rfind("Process ", 0) == 0 && t.text.find(" action") != std::string::npos;
        return n;
    }
    /* Focuses the field, deletes what it holds with the keyboard and types `text`. */
    static void retype(Widget field, const char *text) {
        focus(field);
        key(XK_End);
        for (std::size_t i = textOf(field).size(); i > 0; --i) key(XK_BackSpace);
        type(text);
    }
};
/* A test run both ways a client shows a screen: SetUp shows the shell first when asked. */
class ShownBothWays : public PlgScreenTest {
protected:
    void SetUp() override {
        PlgScreenTest::SetUp();
        if (GetParam() == Shown::BeforeBuild) realize();
    }
};
/* A one-column grid (item 100) that keeps the items of a test apart on the display. */
inline void *column(Screen &s) { return s.add(nullptr, RowColManager, 100, rowColData(1)); }
} // namespace xt
#define XT_BOTH_WAYS(suite, first) INSTANTIATE_TEST_SUITE_P(Ways, suite, \
    ::testing::Values(xt::Shown::first, xt::Shown::BeforeBuild), xt::shownName)
#endif
