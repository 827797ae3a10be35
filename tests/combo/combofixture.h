/* combofixture.h - a combo box on the test screen, with probes for its drop-down. */
#ifndef XC_TEST_COMBOFIXTURE_H
#define XC_TEST_COMBOFIXTURE_H

#include "xharness.h"

#include <Xm/Form.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

#include <ostream>
#include <string>

#include "kx.h"
#include "xcontrols/guicombo.h"

namespace xt {

/* What a combo shows and has reported: the selected position, the text field's text and
** the number of callback calls. */
struct Choice {
    int selected;
    std::string text;
    int calls;
    bool operator==(const Choice &o) const {
        return selected == o.selected && text == o.text && calls == o.calls;
    }
};

inline void PrintTo(const Choice &c, std::ostream *os) {
    *os << "{selected " << c.selected << ", text \"" << c.text << "\", calls " << c.calls
        << "}";
}

/* The screen form holds, from top to bottom: a small form that is the combo's parent
** (its drop-down goes into the screen form, under or over it), and a push button
** "under" that lies where the drop-down opens, created after it so that only a raise
** puts the drop-down on top. */
class ComboTest : public XTest {
protected:
    struct Options {
        int items = 5;
        int visible = 5;
        bool userEntry = false;
        bool below = true;
        bool labelLeft = true;
    };

    void TearDown() override {
        if (combo_ != nullptr) GuiDestroyCombo(combo_);
        combo_ = nullptr;
        XTest::TearDown();
    }

    /* Builds the combo (and the widget under it) and fills in `items` items
    ** "Item 1" ... "Item N". */
    GuiCombo *makeCombo(const Options &o) {
        holder_ = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), XmNtopAttachment,
                                          XmATTACH_FORM, XmNtopOffset, o.below ? 10 : 200,
                                          XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, 10,
                                          nullptr);
        combo_ = GuiCreateComboAndWidgets(holder_, form(), "Choice", o.labelLeft ? 1 : 0,
                                          o.below ? 1 : 0, o.visible, o.userEntry ? 1 : 0);
        under_ = XtVaCreateManagedWidget(
            "under", xmPushButtonWidgetClass, form(), XmNleftAttachment, XmATTACH_FORM,
            XmNleftOffset, 10, XmNrightAttachment, XmATTACH_FORM, XmNrightOffset, 10,
            o.below ? XmNtopAttachment : XmNbottomAttachment, XmATTACH_WIDGET,
            o.below ? XmNtopWidget : XmNbottomWidget, holder_, nullptr);
        for (int i = 1; i <= o.items; ++i) GuiAddToComboList(combo_, itemText(i).c_str());
        GuiAddComboCallback(combo_, countCall, &calls_);
        return combo_;
    }
    GuiCombo *makeCombo() { return makeCombo(Options{}); }

    static std::string itemText(int i) { return "Item " + std::to_string(i); }

    static int countCall(GuiCombo *, void *counter) {
        ++*static_cast<int *>(counter);
        return 0;
    }

    Widget dropDown() const { return XtParent(combo_->wList); }

    /* The drop-down's window is mapped and lies over all of its siblings. */
    bool dropDownOnTop() const {
        if (!isViewable(dropDown()) || !isViewable(combo_->wList)) return false;
        Window root, parent, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(display(), XtWindow(dropDown()), &root, &parent, &children, &count))
            return false;
        if (children) XFree(children);
        if (!XQueryTree(display(), parent, &root, &parent, &children, &count)) return false;
        const bool top = count > 0 && children[count - 1] == XtWindow(dropDown());
        XFree(children);
        return top;
    }

    bool dropDownHidden() const {
        return !isMapped(dropDown()) && !isMapped(combo_->wList) && combo_->bListShown == 0;
    }

    bool waitOpen() { return pumpUntil([this] { return dropDownOnTop(); }); }
    bool waitClosed() { return pumpUntil([this] { return dropDownHidden(); }); }

    /* Clicks the drop button and waits for the drop-down to open. */
    bool clickOpen() {
        click(combo_->wButton);
        return waitOpen();
    }

    std::string text() const {
        char *s = GuiGetComboSelection(combo_);
        std::string out = s ? s : "<null>";
        MemFreeInternal(&s);
        return out;
    }

    int selected() const { return GuiGetComboItemNumberSelected(combo_); }

    Choice choice() const { return {selected(), text(), calls_}; }

    Widget focused() const { return XmGetFocusWidget(shell()); }

    /* Clicks the list item at `position` (it must be visible). */
    void clickItem(int position) {
        Position x = 0, y = 0;
        Dimension w = 0, h = 0;
        ASSERT_TRUE(XmListPosToBounds(combo_->wList, position, &x, &y, &w, &h));
        click(combo_->wList, x + w / 2, y + h / 2);
    }

    int topItem() const {
        int top = 0;
        XtVaGetValues(combo_->wList, XmNtopItemPosition, &top, nullptr);
        return top;
    }
    int bottomItem() const {
        int visible = 0;
        XtVaGetValues(combo_->wList, XmNvisibleItemCount, &visible, nullptr);
        return topItem() + visible - 1;
    }
    int itemCount() const {
        int count = 0;
        XtVaGetValues(combo_->wList, XmNitemCount, &count, nullptr);
        return count;
    }

    GuiCombo *combo_ = nullptr;
    Widget holder_ = nullptr;
    Widget under_ = nullptr;
    int calls_ = 0;
};

} // namespace xt

#endif
