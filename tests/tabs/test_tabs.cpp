/* test_tabs.cpp - tab holders under real pointer input, their pixels, their changes, and
** tab managers of plugin screens. */
#include "plgscreen.h"
#include <Xm/Form.h>
#include <string>
#include <vector>
#include "guimakegcsandfonts.h"
#include "guibmploader.h"
#include "xcontrols/guitabs.h"
namespace {
using namespace xt;
using Titles = std::vector<std::string>;
int widthOf(const std::string &title) {
    XmString s = XmStringCreateLtoR(const_cast<char *>(title.c_str()), const_cast<char *>(XmFONTLIST_DEFAULT_TAG));
    const int w = XmStringWidth(fontlist, s);
    XmStringFree(s);
    return w;
}
Pixel foreground(GC gc) {
    XGCValues v;
    XGetGCValues(display(), gc, GCForeground, &v);
    return v.foreground;
}
/* The pixels of a rectangle of the widget's window. */
std::vector<Pixel> pixels(Widget w, int x, int y, int width, int height) {
    XImage *image = XGetImage(display(), XtWindow(w), x, y, width, height, AllPlanes, ZPixmap);
    std::vector<Pixel> out;
    for (int j = 0; j < height; ++j)
        for (int i = 0; i < width; ++i) out.push_back(XGetPixel(image, i, j));
    XDestroyImage(image);
    return out;
}
bool holds(const std::vector<Pixel> &p, Pixel v) { return std::find(p.begin(), p.end(), v) != p.end(); }
class Tabs : public PlgScreenTest {
protected:
    void SetUp() override {
        static Widget keeper = nullptr; /* the shared GCs and font list live as long as it */
        if (keeper == nullptr) {
            keeper = XtVaAppCreateShell("keeper", "XcTest", topLevelShellWidgetClass, display(), nullptr);
            GuiInitLoadBmps(keeper);
            GuiCreateGcsAndFonts(keeper);
        }
        PlgScreenTest::SetUp();
    }
    /* A holder in a form of a fixed size, shown. */
    GuiTabs *make(const Titles &titles, bool stacked, int width = 400) {
        holder_ = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), XmNwidth, width, XmNheight, 200,
                                          XmNresizePolicy, XmRESIZE_NONE, nullptr);
        std::vector<char *> t;
        for (const std::string &s : titles) t.push_back(const_cast<char *>(s.c_str()));
        tabs_ = stacked ? GuiCreateStackingTabs(holder_, static_cast<int32_t>(t.size()), t.data())
                        : GuiCreateTabs(holder_, static_cast<int32_t>(t.size()), t.data());
        GuiAddTabCallback(tabs_, [](Widget w, void *self, int32_t *selected) {
            static_cast<Tabs *>(self)->calls_.push_back({w, *selected});
        }, this);
        if (!XtIsRealized(shell())) realize();
        pump();
        return tabs_;
    }
    const GuiTab &tab(int number) const { return tabs_->pTabs[number - 1]; }
    void pointAt(int number) const {
        const GuiTab &t = tab(number);
        movePointer(tabs_->wTabDa, (t.iLeftX + t.iRightX) / 2, (t.iTopY + t.iBottomY) / 2);
    }
    void pressAndRelease(int pressed, int released) {
        pointAt(pressed);
        pressPointer();
        pointAt(released);
        releasePointer();
        pump();
    }
    int numberOf(Widget page) const {
        for (int i = 0; i < tabs_->iCapacity; ++i)
            if (tabs_->pTabs[i].wPage == page) return i + 1;
        return 0;
    }
    /* Only the selected tab's page is viewable and sensitive. */
    bool onlyPageOf(int number) const {
        for (int i = 1; i <= tabs_->iNumTabs; ++i)
            if ((i == number) != (isViewable(tab(i).wPage) && XtIsSensitive(tab(i).wPage))) return false;
        return true;
    }
public:
    struct Call { Widget w; int32_t selected; };
    void (*end_)(Tabs *) = nullptr;
    GuiTabs *tabs_ = nullptr;
    Widget holder_ = nullptr;
    std::vector<Call> calls_;
};
/* Plain tabs abut from x 10 on one row whatever the width; stacking tabs wrap and their
** rows spread to the width, the selected row drawn last next to the page. */
TEST_F(Tabs, RowsOfPlainAndStackingTabs) {
    const Titles titles{"First tab", "Second", "Third one here"};
    const int w0 = widthOf(titles[0]), w1 = widthOf(titles[1]), w2 = widthOf(titles[2]);
    make(titles, false, 120);
    EXPECT_EQ(std::vector<int>({tab(1).iLeftX, tab(1).iRightX, tab(2).iRightX, tab(3).iRightX, tab(3).iRow}),
              std::vector<int>({10, w0 + 30, w0 + w1 + 50, w0 + w1 + w2 + 70, 0}));
    int offset = 0;
    XtVaGetValues(tabs_->wPageForm, XmNtopOffset, &offset, nullptr);
    EXPECT_EQ(offset, 23 + 30);
    EXPECT_TRUE(holds(pixels(tabs_->wTabDa, 100, 28, 1, 1), foreground(gcTop))) << "the page frame's top line";
    GuiDestroyTabs(tabs_);
    XtDestroyWidget(holder_);

    const int W = 10 + (w0 + 20) + (w1 + 20) + (w2 + 20) / 2; /* the third wraps */
    make(titles, true, W + 15);
    const int extra = (W - (w0 + 20) - (w1 + 20) - 12) / 2;
    EXPECT_EQ(std::vector<int>({tab(1).iRightX, tab(2).iLeftX, tab(2).iRightX, tab(3).iLeftX, tab(3).iRightX}),
              std::vector<int>({w0 + 30 + extra, w0 + 34 + extra, W, 10, W + 2}));
    EXPECT_EQ(std::vector<int>({tab(1).iRow, tab(3).iRow, tab(1).iTopY, tab(3).iTopY}),
              std::vector<int>({0, 2, 28, 5}));
    XtVaGetValues(tabs_->wPageForm, XmNtopOffset, &offset, nullptr);
    EXPECT_EQ(offset, 23 * 2 + 30);
    EXPECT_TRUE(holds(pixels(tabs_->wTabDa, W - 10, 51, 1, 1), foreground(gcTop)));
    GuiDestroyTabs(tabs_);
    XtDestroyWidget(holder_);
    make({titles[2]}, true, w2); /* one tab wider than its row: one row, spread */
    XtVaGetValues(tabs_->wPageForm, XmNtopOffset, &offset, nullptr);
    EXPECT_TRUE(tab(1).iRightX == w2 - 15 + 2 && offset == 23 + 30);
}
/* What the pointer selects: only a release on the tab pressed, only another tab, only an
** enabled one; GuiSelectTab selects any without a call. */
TEST_F(Tabs, PointerSelectsEnabledTabsOnly) {
    make({"One", "Two", "Three"}, false);
    GuiDisableTab(tabs_, 3);
    const Pixel black = foreground(gcBlack), grey = foreground(gcBot);
    const GuiTab &t3 = tab(3);
    const std::vector<Pixel> title3 = pixels(tabs_->wTabDa, t3.iLeftX + 4, t3.iTopY + 6, t3.iRightX - t3.iLeftX - 8, 16);
    EXPECT_TRUE(holds(title3, grey) && !holds(title3, black)) << "a disabled title is drawn grey";
    struct Row { const char *what; int pressed, released, selected, calls; };
    const Row rows[] = {
        {"press on one, release on another", 1, 2, 1, 0}, {"release on the selected", 1, 1, 1, 0},
        {"click another", 2, 2, 2, 1}, {"click a disabled one", 3, 3, 2, 1}, {"back to the first", 1, 1, 1, 2}};
    for (const Row &r : rows) {
        pressAndRelease(r.pressed, r.released);
        EXPECT_EQ(GuiGetSelectedTab(tabs_), r.selected) << r.what;
        EXPECT_EQ(static_cast<int>(calls_.size()), r.calls) << r.what;
        EXPECT_TRUE(onlyPageOf(r.selected)) << r.what;
    }
    EXPECT_EQ(calls_[0].w, tabs_->wTabDa);
    EXPECT_EQ(calls_[0].selected, 2);
    GuiSelectTab(tabs_, 3);
    pump();
    EXPECT_TRUE(GuiGetSelectedTab(tabs_) == 3 && onlyPageOf(3) && calls_.size() == 2u);
}
/* Hiding the selected tab selects the first shown one; hiding all unmanages the pages. */
TEST_F(Tabs, HidingTheSelectedTab) {
    make({"One", "Two", "Three"}, false);
    const int selected[] = {2, 3, 3};
    for (int index = 0; index < 3; ++index) {
        GuiTabSetTabVisible(tabs_, index, 1);
        EXPECT_EQ(GuiGetSelectedTab(tabs_), selected[index]) << "hidden up to index " << index;
        EXPECT_EQ(XtIsManaged(tabs_->wPageForm) != 0, index < 2) << "hidden up to index " << index;
    }
}
/* Adding and deleting by position (records never move); sizing to the titles. */
TEST_F(Tabs, AddingDeletingAndSizing) {
    make({"One", "Two", "Three"}, false);
    char *more[] = {const_cast<char *>("Four"), const_cast<char *>("Five")};
    EXPECT_EQ(GuiAddTabsToExistingTabHolder(tabs_, more, 2), 3);
    EXPECT_TRUE(tabs_->iNumTabs == 5 && tabs_->iCapacity == 5 && tab(5).iNumber == 5 &&
                !XtIsSensitive(tab(4).wPage) && !XtIsSensitive(tab(5).wPage));
    int32_t last[] = {4, 3}, first[] = {0};
    EXPECT_EQ(GuiDeleteTabsFromExistingTabHolder(tabs_, last, 2, 0), 3);
    EXPECT_EQ(std::string(tab(3).pszTitle), "Three");
    GuiSelectTab(tabs_, 2);
    EXPECT_EQ(GuiDeleteTabsFromExistingTabHolder(tabs_, first, 1, 1), 2);
    EXPECT_TRUE(tab(1).pszTitle == nullptr && GuiGetSelectedTab(tabs_) == 1);
    EXPECT_EQ(GuiAddTabsToExistingTabHolder(tabs_, more, 1), 2) << "the array is used again";
    EXPECT_TRUE(tabs_->iNumTabs == 3 && tabs_->iCapacity == 3 && std::string(tab(3).pszTitle) == "Four");
    EXPECT_EQ(GuiDeleteTabsFromExistingTabHolder(tabs_, nullptr, 1, 0), 3);
    XtVaSetValues(holder_, XmNresizePolicy, XmRESIZE_ANY, nullptr);
    GuiTabSizeToTitles(tabs_);
    pump();
    Dimension width = 0;
    XtVaGetValues(tabs_->wTabDa, XmNwidth, &width, nullptr);
    EXPECT_EQ(width, widthOf("") + widthOf("Two") + widthOf("Four") + 3 * 25);
}
/* Only the last expose event of a run (count 0) redraws. */
TEST_F(Tabs, ExposeWithCountDoesNotRedraw) {
    make({"One"}, false);
    for (int count : {2, 0}) {
        clearTraces();
        XEvent e{};
        e.xexpose = XExposeEvent{Expose, 0, True, display(), XtWindow(tabs_->wTabDa), 0, 0, 10, 10, count};
        XSendEvent(display(), XtWindow(tabs_->wTabDa), False, ExposureMask, &e);
        pump();
        EXPECT_EQ(countTrace("TAB redraw for GuiTabDaExposeCB"), count == 0) << "count " << count;
    }
}
/* A holder ends from its own callback, or with its widgets, and leaves nothing behind. */
TEST_F(Tabs, EndsFromItsOwnCallbackOrWithItsWidgets) {
    struct Row { void (*end)(Tabs *); bool formStays; };
    const Row rows[] = {{[](Tabs *t) { GuiDestroyTabs(t->tabs_); }, true},
                        {[](Tabs *t) { XtDestroyWidget(t->holder_); }, false}};
    for (const Row &r : rows) {
        make({"One", "Two"}, true);
        end_ = r.end;
        GuiAddTabCallback(tabs_, [](Widget, void *self, int32_t *) {
            static_cast<Tabs *>(self)->end_(static_cast<Tabs *>(self));
        }, this);
        pressAndRelease(2, 2);
        if (r.formStays) XtDestroyWidget(holder_);
        pump();
    }
}
/* A tab manager's pages are its TabPage children in tree order (a page without data is
** titled empty); the items under a page are built in that page's form; teardown ends the
** holder, as does the client destroying the screen's form first. */
TEST_F(Tabs, TabManagerOfAPluginScreen) {
    for (bool clientFirst : {false, true}) {
        xt::Screen s;
        void *manager = s.add(nullptr, TabManager, 1, newData<TabManagerData>(GUI_TAG_TABMANAGER, GUI_TABMANAGER_SIGNATURE));
        for (int32_t id : {2, 3, 4}) {
            auto *page = id == 3 ? nullptr : newData<TabPageData>(GUI_TAG_TABPAGE, GUI_TABPAGE_SIGNATURE);
            if (page) page->title = poolText(id == 2 ? "General" : "More");
            s.add(manager, TabPage, id, page);
        }
        s.add(s.node(3), EditBox, 5, editBoxData(10, 10, 1, "inside"));
        show(s);
        tabs_ = static_cast<GuiTabs *>(lastRecord(s.item(1))->tabs);
        ASSERT_NE(tabs_, nullptr);
        EXPECT_EQ(std::vector<std::string>({tab(1).pszTitle, tab(2).pszTitle, tab(3).pszTitle}),
                  std::vector<std::string>({"General", "", "More"}));
        EXPECT_EQ(XtParent(outer(s, 5)), s.item(3)->guiData->childParent);
        EXPECT_EQ(numberOf(XtParent(s.item(3)->guiData->childParent)), 2);
        pressAndRelease(2, 2);
        EXPECT_TRUE(onlyPageOf(2) && isViewable(outer(s, 5)));
        if (clientFirst) XtDestroyWidget(form());
        EXPECT_TRUE(clientFirst == (lastRecord(s.item(1))->tabs == nullptr));
        destroy(s);
    }
}
} // namespace
