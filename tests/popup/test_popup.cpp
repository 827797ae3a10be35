/* test_popup.cpp - popup menus opened and answered with real clicks and keys. */
#include "xharness.h"
#include <Xm/DrawingA.h>
#include <Xm/RowColumn.h>
#include "guipopup.h"
#include "kx.h"
namespace {
using namespace xt;
constexpr uint32_t kTagItem = 0x5e1ec7edu;
constexpr const char *kDoubled = "Avoiding LessTif's double-popdown bug";
class PopupTest : public XTest {
protected:
    void SetUp() override {
        XTest::SetUp();
        ListCreateFromPool(&list_, 0, MemGetDefaultPoolId());
        for (void *&item : items_) {
            ObjCreateInternal(&item, sizeof(char *), kTagItem, "p;", 0, MemGetDefaultPoolId());
            *static_cast<const char **>(item) = kLabels[&item - items_];
            ListAddLastItem(list_, item);
        }
        makeClient();
        realize();
    }
    void TearDown() override {
        ObjReleaseInternal(&list_);
        for (void *&item : items_) ObjReleaseInternal(&item);
        XTest::TearDown();
    }
    /* The client's window, whose right button asks for the menu. */
    void makeClient() {
        client_ = XtVaCreateManagedWidget("client", xmDrawingAreaWidgetClass, form(), XtNwidth, 600,
                                          XtNheight, 400, nullptr);
        XtAddEventHandler(client_, ButtonPressMask, False, onPress, this);
    }
    /* The client's right-button handler. */
    static void onPress(Widget w, XtPointer self, XEvent *event, Boolean *) {
        auto *test = static_cast<PopupTest *>(self);
        if (event->xbutton.button != 3) return;
        test->press_ = *event;
        GuiPopupCreateMenu(w, event, onEntry, test->title_, self, test->list_);
    }
    static void onEntry(Widget, XtPointer self, XtPointer data) {
        Widget button = static_cast<XmRowColumnCallbackStruct *>(data)->widget;
        XtPointer item = nullptr;
        XtVaGetValues(button, XmNuserData, &item, nullptr);
        static_cast<PopupTest *>(self)->chosen_ += *static_cast<const char **>(item);
    }
    static void onPopDown(void *count) { ++*static_cast<int *>(count); }
    /* The client's children: the menus' "dummy" widgets. */
    Cardinal dummies(WidgetList *children = nullptr) const {
        WidgetList list = nullptr;
        Cardinal count = 0;
        XtVaGetValues(client_, XmNchildren, &list, XmNnumChildren, &count, nullptr);
        if (children != nullptr) *children = list;
        return count;
    }
    /* The menu built last under the client. */
    GuiPopupMenu *newestMenu() const {
        WidgetList children = nullptr;
        const Cardinal count = dummies(&children);
        if (count == 0) return nullptr;
        XtPointer menu = nullptr;
        XtVaGetValues(XtNameToWidget(children[count - 1], "shell.rowcol"), XmNuserData, &menu,
                      nullptr);
        return static_cast<GuiPopupMenu *>(menu);
    }
    int32_t references() const {
        int32_t sum = 0;
        for (void *item : items_) sum += ObjGetRefCount(item);
        return sum;
    }
    /* Pumps until the pop-down function ran `calls` times, no menu is left and every item
    ** was given back. */
    bool allGone(const int &popDowns, int calls) {
        return pumpUntil(
            [&] { return popDowns >= calls && references() == 6 && dummies() == 0; },
            5000);
    }
    static constexpr const char *kLabels[3] = {"One", "Two", "Three"};
    void *list_ = nullptr, *items_[3] = {};
    Widget client_ = nullptr;
    const char *title_ = "Actions";
    XEvent press_{};
    std::string chosen_;
};
struct AnswerRow {
    const char *name, *title;
    bool click;                      /* open with a click, else keep the button down */
    void (*answer)(GuiPopupMenu *);  /* with the menu up */
    const char *chosen;
};
TEST_F(PopupTest, AMenuOpensAnswersGoesAndGivesItsItemsBack) {
    const AnswerRow rows[] = {
        {"click, then click Two", "Actions", true, [](GuiPopupMenu *m) { click(m->pButtons[1]); },
         "Two"},
        {"click, then click elsewhere", nullptr, true,
         [](GuiPopupMenu *m) { click(XtParent(XtParent(m->wShell)), 590, 390); }, ""},
        {"click, then Escape", "Actions", true, [](GuiPopupMenu *) { key(XK_Escape); }, ""},
        {"held down onto Three", nullptr, false,
         [](GuiPopupMenu *m) { movePointer(m->pButtons[2]); releasePointer(3); }, "Three"},
    };
    for (const AnswerRow &row : rows) {
        SCOPED_TRACE(row.name);
        int popDowns = 0;
        GuiPopupAddPopDownCallback(onPopDown, &popDowns);
        chosen_.clear();
        title_ = row.title;
        movePointer(client_, 40, 40);
        pressPointer(3);
        if (row.click) releasePointer(3);
        pump(50);
        GuiPopupMenu *menu = newestMenu();
        ASSERT_NE(menu, nullptr);
        EXPECT_TRUE(isViewable(menu->wShell)) << "the menu is up";
        EXPECT_EQ(references(), 9) << "each item held once by the list, once by its button";
        WidgetList children = nullptr;
        XtVaGetValues(menu->wRowColumn, XmNchildren, &children, nullptr);
        EXPECT_EQ(children[0], row.title ? menu->wTitle : menu->pButtons[0]);
        EXPECT_EQ(menu->wSeparator != nullptr, row.title != nullptr);
        EXPECT_EQ(menu->iButtons, 3);
        row.answer(menu);
        EXPECT_TRUE(allGone(popDowns, 1));
        EXPECT_EQ(chosen_, row.chosen);
        pumpFor(300);
        EXPECT_EQ(popDowns, 1) << "once, for the next menu only";
    }
    EXPECT_EQ(countTrace("GUI have 3 menu items"), 4);
    EXPECT_EQ(countTrace("GUI add Three to menu"), 4);
    EXPECT_EQ(countTrace(kDoubled), 0);
}
TEST_F(PopupTest, ARepeatedPopDownIsRecognisedByItsMenuAndSerialsWrapAfterAThousand) {
    int popDowns = 0;
    GuiPopupAddPopDownCallback(onPopDown, &popDowns);
    click(client_, 40, 40, 3);
    GuiPopupMenu *first = newestMenu();
    ASSERT_NE(first, nullptr);
    const int32_t second = first->iSerial % 1000 + 1;
    /* First down, a second menu up and down, the first up and down again: all before
    ** the first's destroy can run. */
    XtUnmanageChild(first->wRowColumn);
    GuiPopupCreateMenu(client_, &press_, nullptr, nullptr, nullptr, list_);
    XtUnmanageChild(newestMenu()->wRowColumn);
    XtManageChild(first->wRowColumn);
    XtUnmanageChild(first->wRowColumn);
    EXPECT_TRUE(allGone(popDowns, 1));
    EXPECT_EQ(countTrace(kDoubled), 1);
    EXPECT_EQ(popDowns, 1);

    int32_t serial = second, last = 0;
    do {
        last = serial;
        GuiPopupCreateMenu(client_, &press_, nullptr, nullptr, nullptr, nullptr);
        serial = newestMenu()->iSerial;
        XtUnmanageChild(newestMenu()->wRowColumn);
    } while (serial == last + 1 && serial <= 1000);
    EXPECT_EQ((std::pair<int32_t, int32_t>{last, serial}), (std::pair<int32_t, int32_t>{1000, 1}));
    EXPECT_TRUE(allGone(popDowns, 1));
}
TEST_F(PopupTest, AMenuGoesWithItsParent) {
    for (bool poppedDown : {false, true}) {
        SCOPED_TRACE(poppedDown ? "destroy pending" : "menu up");
        int popDowns = 0;
        GuiPopupAddPopDownCallback(onPopDown, &popDowns);
        click(client_, 40, 40, 3);
        if (poppedDown) key(XK_Escape);
        XtDestroyWidget(client_);
        makeClient();
        EXPECT_TRUE(allGone(popDowns, 1));
        pumpFor(300);
        EXPECT_EQ(popDowns, 1);
    }
}
} // namespace
