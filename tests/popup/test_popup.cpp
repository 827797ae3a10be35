/* test_popup.cpp - popup menus opened and answered with real clicks and keys. */
#include "xharness.h"
#include <Xm/DrawingA.h>
#include <Xm/RowColumn.h>
#include "../core/kxtest.h"
#include "guipopup.h"
namespace {
using namespace xt;
constexpr const char *kDoubled = "Avoiding LessTif's double-popdown bug";
constexpr const char *kLabels[3] = {"One", "Two", "Three"};
void *gList = nullptr, *gItems[3];
const char *gTitle = nullptr;
XEvent gPress;
std::string gChosen;
int gPopDowns = 0;
/* The client: its window's right button asks for a menu, and a choice is written down. */
void onEntry(Widget, XtPointer, XtPointer data) {
    XtPointer item = nullptr;
    XtVaGetValues(static_cast<XmRowColumnCallbackStruct *>(data)->widget, XmNuserData, &item, nullptr);
    gChosen += *static_cast<const char **>(item);
}
void onPress(Widget w, XtPointer, XEvent *event, Boolean *) {
    gPress = *event;
    if (event->xbutton.button == 3) GuiPopupCreateMenu(w, event, onEntry, gTitle, nullptr, gList);
}
class PopupTest : public XTest {
protected:
    void SetUp() override {
        XTest::SetUp();
        ListCreateFromPool(&gList, 0, MemGetDefaultPoolId());
        for (int i = 0; i < 3; ++i) { /* held by the list alone */
            void *item = gItems[i] = kxtest::make(0x5e1ec7ed, "p;", 8);
            *static_cast<const char **>(item) = kLabels[i];
            ListPushLastItemInternal(gList, &item);
        }
        realize();
    }
    void TearDown() override {
        ObjReleaseInternal(&gList);
        XTest::TearDown();
    }
    static void countPopDowns() {
        gPopDowns = 0;
        GuiPopupAddPopDownCallback([](void *) { ++gPopDowns; }, nullptr);
    }
    void newClient() {
        client_ = XtVaCreateManagedWidget("client", xmDrawingAreaWidgetClass, form(), XtNwidth,
                                          600, XtNheight, 400, nullptr);
        XtAddEventHandler(client_, ButtonPressMask, False, onPress, nullptr);
        countPopDowns();
    }
    /* The menu built last: its "dummy" is the client's last child. */
    GuiPopupMenu *newestMenu() const {
        WidgetList dummies = nullptr;
        Cardinal n = 0;
        XtVaGetValues(client_, XmNchildren, &dummies, XmNnumChildren, &n, nullptr);
        XtPointer menu = nullptr;
        if (n > 0) XtVaGetValues(XtNameToWidget(dummies[n - 1], "shell.rowcol"), XmNuserData, &menu, nullptr);
        return static_cast<GuiPopupMenu *>(menu);
    }
    static int32_t references() {
        return ObjGetRefCount(gItems[0]) + ObjGetRefCount(gItems[1]) + ObjGetRefCount(gItems[2]);
    }
    /* Pumps until no menu is left (under a client still there), every item was given back
    ** and the pop-down function ran; then once more for the delay, in which it must not
    ** run again. */
    void expectAllGone(bool clientThere = true) {
        EXPECT_TRUE(pumpUntil([&] { return gPopDowns > 0 && references() == 3; }, 5000));
        EXPECT_TRUE(!clientThere || pumpUntil([&] { return !XtNameToWidget(client_, "dummy"); }));
        pumpFor(300);
        EXPECT_EQ(gPopDowns, 1) << "once, for the next menu only";
    }
    Widget client_ = nullptr;
};
struct AnswerRow {
    const char *name, *title;
    bool click; /* open with a click, else keep the button down */
    void (*answer)(GuiPopupMenu *, Widget client);
    const char *chosen;
    bool clientGoes;
};
TEST_F(PopupTest, AMenuOpensAnswersGoesAndGivesItsItemsBack) {
    const AnswerRow rows[] = {
        {"click, click Two", "Actions", true, [](GuiPopupMenu *m, Widget) { click(m->pButtons[1]); }, "Two", false},
        {"click, click elsewhere", nullptr, true, [](GuiPopupMenu *, Widget c) { click(c, 590, 390); }, "", false},
        {"click, Escape", "Actions", true, [](GuiPopupMenu *, Widget) { key(XK_Escape); }, "", false},
        {"held down onto Three", nullptr, false,
         [](GuiPopupMenu *m, Widget) { movePointer(m->pButtons[2]); releasePointer(3); }, "Three", false},
        {"parent destroyed, menu up", nullptr, true, [](GuiPopupMenu *, Widget c) { XtDestroyWidget(c); },
         "", true},
        {"parent destroyed, menu going", nullptr, true,
         [](GuiPopupMenu *, Widget c) { key(XK_Escape); XtDestroyWidget(c); }, "", true},
    };
    for (const AnswerRow &row : rows) {
        SCOPED_TRACE(row.name);
        newClient();
        gChosen.clear();
        gTitle = row.title;
        movePointer(client_, 40, 40);
        pressPointer(3);
        if (row.click) releasePointer(3);
        GuiPopupMenu *menu = newestMenu();
        ASSERT_NE(menu, nullptr);
        EXPECT_TRUE(isViewable(menu->wShell)) << "the menu is up";
        EXPECT_EQ(references(), 6) << "each item held by the list and its button";
        WidgetList entries = nullptr;
        XtVaGetValues(menu->wRowColumn, XmNchildren, &entries, nullptr);
        EXPECT_EQ((std::vector<Widget>{entries[0], menu->wSeparator}),
                  (std::vector<Widget>{row.title ? menu->wTitle : menu->pButtons[0],
                                       row.title ? entries[1] : nullptr}));
        row.answer(menu, client_);
        expectAllGone(!row.clientGoes);
        EXPECT_EQ(gChosen, row.chosen);
        if (!row.clientGoes) XtDestroyWidget(client_);
    }
    EXPECT_EQ((std::vector<int>{countTrace("GUI have 3 menu items"), countTrace("GUI add Three to menu"),
                                countTrace(kDoubled)}),
              (std::vector<int>{6, 6, 0}));
}
TEST_F(PopupTest, ARepeatedPopDownIsRecognisedByItsMenuAndSerialsWrapAfterAThousand) {
    newClient();
    click(client_, 40, 40, 3);
    GuiPopupMenu *first = newestMenu();
    ASSERT_NE(first, nullptr);
    int32_t serial = first->iSerial % 1000 + 1, last = 0;
    /* The first down, a second menu up and down, the first up and down again: all before
    ** the first one's destroy can run. */
    XtUnmanageChild(first->wRowColumn);
    GuiPopupCreateMenu(client_, &gPress, nullptr, nullptr, nullptr, gList);
    XtUnmanageChild(newestMenu()->wRowColumn);
    XtManageChild(first->wRowColumn);
    XtUnmanageChild(first->wRowColumn);
    expectAllGone();
    EXPECT_EQ(countTrace(kDoubled), 1);
    do {
        last = serial;
        GuiPopupCreateMenu(client_, &gPress, nullptr, nullptr, nullptr, nullptr);
        serial = newestMenu()->iSerial;
        XtUnmanageChild(newestMenu()->wRowColumn);
    } while (serial == last + 1 && serial <= 1000);
    EXPECT_EQ((std::vector<int32_t>{last, serial}), (std::vector<int32_t>{1000, 1}));
    countPopDowns();
    expectAllGone();
}
} // namespace
