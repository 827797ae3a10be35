/* actionscreen.h - plugin screens shown the two ways a client shows them, the client's
** close callback, and probes of what the items show. */
#ifndef XC_TEST_ACTIONSCREEN_H
#define XC_TEST_ACTIONSCREEN_H

#include "xharness.h"

#include <Xm/List.h>
#include <Xm/ToggleB.h>

#include <string>
#include <vector>

#include "screens.h"

namespace xt {

/* When the shell gets its windows: after the screen is built into the still unrealized
** form, or before, so that the screen is built into a form already on the display. */
enum class Shown { AfterBuild, BeforeBuild };

inline std::string shownName(const ::testing::TestParamInfo<Shown> &info) {
    return info.param == Shown::AfterBuild ? "RealizedAfterBuild" : "BuiltIntoShownForm";
}

/* What the close callback received. */
struct CloseCall {
    int32_t jobId;
    int32_t flag; /* ObjBooleanGet of the flag object, read during the call */
};

/* A one-column grid (item 100) that keeps the items of a test apart on the display. */
inline void *column(Screen &s) { return s.add(nullptr, RowColManager, 100, rowColData(1)); }

class ActionTest : public XTest, public ::testing::WithParamInterface<Shown> {
protected:
    void SetUp() override {
        XTest::SetUp();
        closeCalls().clear();
        screenToFree() = nullptr;
        InitPluginScreens(recordClose, nullptr);
        if (GetParam() == Shown::BeforeBuild) realize();
    }
    void TearDown() override {
        InitPluginScreens(nullptr, nullptr);
        XTest::TearDown();
    }

    /* Builds the screen for `job` and makes sure it is on the display. */
    void show(Screen &s, int32_t job = 42) {
        GuiCreatePlgScreen(form(), s.tree(), job);
        if (!XtIsRealized(shell())) realize();
        pump();
    }
    static void destroy(Screen &s) { GuiFreeScreenDefAndWidgets(s.slot()); }

    /* The calls of the close callback; when screenToFree() names a tree slot, the
    ** callback ends the screen as a client does, from inside the call. */
    static std::vector<CloseCall> &closeCalls() {
        static std::vector<CloseCall> calls;
        return calls;
    }
    static void **&screenToFree() {
        static void **slot = nullptr;
        return slot;
    }
    static int recordClose(int32_t jobId, void *flag) {
        closeCalls().push_back({jobId, ObjBooleanGet(flag)});
        if (screenToFree() != nullptr) GuiFreeScreenDefAndWidgets(screenToFree());
        return 1;
    }

    static Widget outer(const Screen &s, int32_t id) { return outerWidget(s.item(id)); }
    static Widget value(const Screen &s, int32_t id) { return valueWidget(s.item(id)); }
    template <typename T>
    static T *data(const Screen &s, int32_t id) {
        return static_cast<T *>(s.item(id)->itemData);
    }

    /* Visible: the record says so and the widget's window is mapped. */
    static bool shownItem(const Screen &s, int32_t id) {
        return s.item(id)->hidden == 0 && isMapped(outer(s, id));
    }
    static bool hiddenItem(const Screen &s, int32_t id) {
        return s.item(id)->hidden == 1 && !isMapped(outer(s, id));
    }
    static bool enabledItem(const Screen &s, int32_t id) {
        return s.item(id)->disabled == 0 && XtIsSensitive(outer(s, id));
    }
    static bool disabledItem(const Screen &s, int32_t id) {
        return s.item(id)->disabled == 1 && !XtIsSensitive(outer(s, id));
    }
    static bool toggleOn(const Screen &s, int32_t id) {
        return XmToggleButtonGetState(value(s, id)) == True;
    }

    /* The widget lies wholly inside its parent, so that the pointer can reach it. */
    static bool withinParent(Widget w) {
        const Geometry g = geometry(w), p = geometry(XtParent(w));
        return g.x >= 0 && g.y >= 0 && g.x + g.width <= p.width && g.y + g.height <= p.height;
    }

    /* Trace lines that report carrying out an action ("Process ... action"). */
    int actionTraces() const {
        int n = 0;
        for (const TraceLine &t : traces())
            n += t.text.rfind("Process ", 0) == 0 && t.text.find(" action") != std::string::npos;
        return n;
    }
};

/* Clicks the list entry at `position` (visible) of `list`, optionally with a
** modifier held; after a pause, so that two clicks never make a double click. */
inline void clickEntry(Widget list, int position, KeySym modifier = NoSymbol) {
    pumpFor(static_cast<int>(XtGetMultiClickTime(display())) + 50);
    Position x = 0, y = 0;
    Dimension w = 0, h = 0;
    ASSERT_TRUE(XmListPosToBounds(list, position, &x, &y, &w, &h)) << "entry " << position;
    if (modifier == NoSymbol) click(list, x + w / 2, y + h / 2);
    else clickWith(modifier, list, x + w / 2, y + h / 2);
}

} // namespace xt

#endif
