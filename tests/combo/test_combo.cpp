/* test_combo.cpp - the combo box under real input: its drop-down, its selection, its list. */
#include "xharness.h"
#include <Xm/Form.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <functional>
#include <iterator>
#include <string>
#include <tuple>
#include <vector>
#include "kx.h"
#include "xcontrols/guicombo.h"

namespace xt {
namespace {

/* What a combo shows and has reported: the selected position, the field's text, the calls. */
using Choice = std::tuple<int, std::string, int>;
std::string item(int i) { return "Item " + std::to_string(i); }

/* The screen form holds a small form, the combo's parent (the drop-down goes into the
** screen form, under or over it), and a button where the drop-down opens, created after
** it so that only a raise puts the drop-down on top. */
class Combo : public XTest {
protected:
    struct Options {
        int items = 5, visible = 5;
        bool userEntry = false, below = true, labelLeft = true;
    };
    void TearDown() override {
        if (combo_ != nullptr) GuiDestroyCombo(combo_);
        XTest::TearDown();
    }
    GuiCombo *makeCombo(const Options &o) {
        holder_ = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), XmNtopAttachment,
                                          XmATTACH_FORM, XmNtopOffset, o.below ? 10 : 200,
                                          XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, 10,
                                          nullptr);
        combo_ = GuiCreateComboAndWidgets(holder_, form(), "Choice", o.labelLeft, o.below,
                                          o.visible, o.userEntry);
        XtVaCreateManagedWidget("under", xmPushButtonWidgetClass, form(), XmNleftAttachment,
                                XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                                o.below ? XmNtopAttachment : XmNbottomAttachment,
                                XmATTACH_WIDGET, o.below ? XmNtopWidget : XmNbottomWidget,
                                holder_, nullptr);
        for (int i = 1; i <= o.items; ++i) GuiAddToComboList(combo_, item(i).c_str());
        GuiAddComboCallback(
            combo_, [](GuiCombo *, void *n) { return ++*static_cast<int *>(n), 0; }, &calls_);
        return combo_;
    }
    GuiCombo *makeCombo() { return makeCombo(Options{}); }
    Widget dropDown() const { return XtParent(combo_->wList); }
    /* The drop-down's window is mapped and lies over all of its siblings in the form. */
    bool dropDownOnTop() const {
        Window root, parent, *children = nullptr;
        unsigned n = 0;
        if (!isViewable(dropDown()) || !isViewable(combo_->wList) ||
            !XQueryTree(display(), XtWindow(form()), &root, &parent, &children, &n))
            return false;
        const bool top = n > 0 && children[n - 1] == XtWindow(dropDown());
        XFree(children);
        return top;
    }
    bool dropDownHidden() const {
        return !isMapped(dropDown()) && !isMapped(combo_->wList) && combo_->bListShown == 0;
    }
    bool waitOpen() { return pumpUntil([this] { return dropDownOnTop(); }); }
    bool waitClosed() { return pumpUntil([this] { return dropDownHidden(); }); }
    bool clickOpen() { return click(combo_->wButton), waitOpen(); }
    std::string text() const {
        char *s = GuiGetComboSelection(combo_);
        std::string out = s ? s : "<null>";
        MemFreeInternal(&s);
        return out;
    }
    int selected() const { return GuiGetComboItemNumberSelected(combo_); }
    Choice choice() const { return {selected(), text(), calls_}; }
    Widget focused() const { return XmGetFocusWidget(shell()); }
    void clickItem(int position) {
        Position x = 0, y = 0;
        Dimension w = 0, h = 0;
        ASSERT_TRUE(XmListPosToBounds(combo_->wList, position, &x, &y, &w, &h));
        click(combo_->wList, x + w / 2, y + h / 2);
    }
    int listValue(const char *resource) const {
        int value = 0;
        XtVaGetValues(combo_->wList, resource, &value, nullptr);
        return value;
    }
    /* The label and the drop-down sit where the flags say, the field is editable only when
    ** asked, the button shows its arrow. */
    void checkLayout(const Options &o) {
        makeCombo(o);
        realize();
        Geometry label = geometry(XtNameToWidget(holder_, "comboLabel"));
        Geometry frame = geometry(XtNameToWidget(holder_, "comboFrame"));
        Geometry list = geometry(dropDown()), holder = geometry(holder_);
        EXPECT_EQ(label.x < frame.x, o.labelLeft);
        EXPECT_LT(label.height, holder.height) << "the label is not stretched";
        EXPECT_EQ(list.x, holder.x);
        EXPECT_EQ(list.width, holder.width);
        EXPECT_EQ(o.below ? list.y : list.y + list.height,
                  o.below ? holder.y + holder.height : holder.y);
        Boolean editable = !o.userEntry;
        unsigned char type = 0;
        XtVaGetValues(combo_->wText, XmNeditable, &editable, nullptr);
        XtVaGetValues(combo_->wButton, XmNlabelType, &type, nullptr);
        EXPECT_EQ(editable != 0, o.userEntry);
        EXPECT_EQ(type, XmPIXMAP);
        EXPECT_FALSE(hasTrace("Failed to create combo pixmap"));
        EXPECT_FALSE(isMapped(dropDown())) << "Xt never maps the drop-down";
        focus(combo_->wButton);
        key(XK_space);
        EXPECT_TRUE(waitOpen()) << "a keyboard activation opens a fresh combo";
        EXPECT_EQ(focused(), combo_->wList);
    }
    /* Clicks on the button open and close the drop-down; a keyboard activation after the
    ** closing click does nothing. */
    void checkToggle() {
        ASSERT_TRUE(clickOpen()) << "the first click opens it on top of its siblings";
        EXPECT_EQ(focused(), combo_->wList);
        click(combo_->wButton);
        ASSERT_TRUE(waitClosed()) << "a second click closes it";
        EXPECT_EQ(focused(), combo_->wButton);
        key(XK_space);
        pump();
        EXPECT_TRUE(dropDownHidden()) << "nor does the closing click reopen it";
        EXPECT_TRUE(clickOpen()) << "the next click opens it again";
    }
    GuiCombo *combo_ = nullptr;
    Widget holder_ = nullptr;
    int calls_ = 0;
};

TEST_F(Combo, LabelLeftDropDownBelow) { checkLayout(Options{}); }
TEST_F(Combo, LabelRightDropDownAboveUserEntry) { checkLayout({5, 5, true, false, false}); }
TEST_F(Combo, ButtonClicksToggleTheDropDown) {
    makeCombo();
    realize();
    checkToggle();
}
TEST_F(Combo, ButtonClicksToggleTheDropDownOfAComboMadeAfterRealize) {
    realize();
    makeCombo();
    pump();
    checkToggle();
}
/* Program calls on an unrealized combo, then a pointer choice once it is realized. */
TEST_F(Combo, PointerChoiceSetsTextClosesAndFocusesTheButton) {
    makeCombo();
    GuiChangeComboSelection(combo_, 2, 1);
    GuiComboSetDefaultSelection(combo_, 1);
    EXPECT_EQ(choice(), (Choice{1, item(1), 2}));
    realize();
    pump();
    EXPECT_TRUE(dropDownHidden()) << "realizing does not show the drop-down";
    ASSERT_TRUE(clickOpen());
    clickItem(3);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(choice(), (Choice{3, item(3), 3}));
    EXPECT_EQ(focused(), combo_->wButton);
}
TEST_F(Combo, KeyboardBrowseKeepsTheDropDownOpenUntilReturn) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    key(XK_Down);
    const int first = selected();
    ASSERT_GE(first, 1) << "browsing selects as it moves";
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{first + 1, item(first + 1), 2}));
    EXPECT_TRUE(dropDownOnTop()) << "a keyboard browse leaves it open";
    key(XK_Return);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(focused(), combo_->wButton);
    ASSERT_TRUE(clickOpen());
    focus(combo_->wText);
    EXPECT_TRUE(waitClosed()) << "the focus leaving the list closes it";
}
/* Up and Down in the field step through the list without opening it. */
TEST_F(Combo, UpAndDownStepThroughTheList) {
    makeCombo();
    realize();
    focus(combo_->wText);
    EXPECT_EQ(choice(), (Choice{0, "", 0})) << "items added after creation select nothing";
    const std::pair<std::vector<KeySym>, Choice> rows[] = {
        {{XK_Down}, {1, item(1), 1}},
        {{XK_Up}, {5, item(5), 1}},
        {{XK_Down, XK_Up}, {1, item(1), 2}},          /* a repeated choice is reported */
        {{XK_Up, XK_Down}, {0, item(5), 1}},          /* past the end: none, the text stays */
        {{XK_Up, XK_Down, XK_Down}, {1, item(1), 2}}};
    for (const auto &[keys, expected] : rows) {
        GuiChangeComboSelection(combo_, -1, 0);
        GuiComboSetEmpty(combo_);
        calls_ = 0;
        for (KeySym k : keys) key(k);
        EXPECT_EQ(choice(), expected) << "after " << keys.size() << " keys";
        EXPECT_EQ(focused(), combo_->wText);
        EXPECT_TRUE(dropDownHidden());
    }
}
/* Program calls one after the other: what each shows and reports, and the list's length. */
TEST_F(Combo, ProgramCallsChangeTheSelectionAndTheList) {
    makeCombo();
    realize();
    focus(combo_->wText);
    GuiCombo *&c = combo_;
    auto replace = [&c](std::vector<std::string> texts, int notify) {
        std::vector<char *> p;
        for (std::string &t : texts) p.push_back(t.data());
        GuiReplaceComboList(c, static_cast<int32_t>(p.size()), p.data(), notify);
    };
    struct Row { const char *what; std::function<int()> call; Choice expected; int items; };
    const Row rows[] = {
        {"quiet change", [&] { return GuiChangeComboSelection(c, 5, 0), 1; }, {5, "", 0}, 5},
        {"quiet select", [&] { return GuiComboSelectItem(c, "Item 4", 0); }, {4, item(4), 0}, 5},
        {"select", [&] { return GuiComboSelectItem(c, "Item 2", 1); }, {2, item(2), 1}, 5},
        {"unlisted", [&] { return 1 - GuiComboSelectItem(c, "None", 1); }, {2, item(2), 0}, 5},
        {"set text", [&] { return GuiComboSetText(c, "x"), GuiComboSetText(c, nullptr), 1; },
         {2, "x", 0}, 5},
        {"set empty", [&] { return GuiComboSetEmpty(c), 1; }, {2, "", 0}, 5},
        {"quiet default", [&] { return GuiComboSetDefaultSelection(c, 0), 1; }, {1, item(1), 0},
         5},
        {"Down after it", [&] { return key(XK_Down), 1; }, {2, item(2), 1}, 5},
        {"default", [&] { return GuiComboSelectDefault(c), 1; }, {1, item(1), 1}, 5},
        {"add a twin", [&] { return GuiAddToComboList(c, "Item 2"), 1; }, {1, item(1), 0}, 6},
        {"remove the first twin", [&] {
             GuiRemoveFromComboList(c, "Item 2");
             GuiRemoveFromComboList(c, "None");
             return GuiComboSelectItem(c, "Item 2", 0);
         }, {5, item(2), 0}, 5},
        {"replace keeping it", [&] { return replace({"A", "Item 2"}, 1), 1; }, {2, item(2), 1}, 2},
        {"replace quietly", [&] { return replace({"A", "B"}, 0), 1; }, {1, "", 0}, 2},
        {"replace", [&] { return GuiComboSetText(c, "gone"), replace({"A"}, 1), 1; }, {1, "A", 1},
         1},
        {"replace with none", [&] { return replace({}, 1), 1; }, {0, "", 0}, 0},
        {"select in none", [&] {
             GuiComboSetText(c, "kept");
             GuiChangeComboSelection(c, 1, 1);
             return GuiChangeComboSelection(c, 0, 1), 1;
         }, {0, "kept", 0}, 0},
    };
    for (const Row &row : rows) {
        calls_ = 0;
        EXPECT_EQ(row.call(), 1) << row.what;
        EXPECT_EQ(choice(), row.expected) << row.what;
        EXPECT_EQ(listValue(XmNitemCount), row.items) << row.what;
        EXPECT_LE(listValue(XmNtopItemPosition), 1) << row.what << ": a short list never scrolls";
    }
}
TEST_F(Combo, ALongListScrollsToShowTheChoiceWithContext) {
    makeCombo({20, 5, false, true, true});
    realize();
    for (auto [position, top] : {std::pair{10, 9}, {18, 15}, {20, 16}, {1, 1}}) {
        GuiChangeComboSelection(combo_, position, 1);
        pump();
        EXPECT_EQ(selected(), position);
        EXPECT_EQ(listValue(XmNtopItemPosition), top) << "selecting " << position;
    }
}
/* Typing replaces the text only while user entry is on; the button only while sensitive. */
TEST_F(Combo, UserInputIsIgnoredWhileSwitchedOff) {
    makeCombo({5, 5, true, true, true});
    realize();
    GuiChangeComboSelection(combo_, 2, 1);
    focus(combo_->wText);
    type("free text");
    EXPECT_EQ(choice(), (Choice{2, "free text", 1})) << "focus selected the old text";
    GuiDisableComboUserEntry(combo_);
    type("x");
    GuiEnableComboUserEntry(combo_);
    type("!");
    EXPECT_EQ(text(), "free text!");
    GuiComboSetSensitive(combo_, 0);
    EXPECT_TRUE(XtIsSensitive(combo_->wList) && !XtIsSensitive(combo_->wText));
    click(combo_->wButton);
    EXPECT_TRUE(dropDownHidden());
    GuiComboSetSensitive(combo_, 1);
    EXPECT_TRUE(clickOpen());
}
/* A caller that builds its own widgets fills the list before handing it over. */
TEST_F(Combo, ManagedListThatHoldsItemsShowsTheFirst) {
    auto make = [this](const char *name, WidgetClass cls) {
        return XtVaCreateManagedWidget(name, cls, form(), nullptr);
    };
    Widget list = XmCreateScrolledList(form(), const_cast<char *>("list"), nullptr, 0);
    for (int i = 1; i <= 3; ++i) {
        XmString s = XmStringCreateLocalized(const_cast<char *>(item(i).c_str()));
        XmListAddItem(list, s, 0);
        XmStringFree(s);
    }
    combo_ = GuiManageCombo(make("t", xmTextFieldWidgetClass), make("b", xmPushButtonWidgetClass),
                            list);
    EXPECT_EQ(choice(), (Choice{1, item(1), 0}));
}
TEST_F(Combo, DestroyingAnOpenComboTakesItsWidgets) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    GuiDestroyCombo(combo_);
    combo_ = nullptr;
    pump();
    EXPECT_EQ(XtNameToWidget(holder_, "comboFrame"), nullptr);
}
/* Combos built and destroyed again and again leave their parents as they found them. */
TEST_F(Combo, ACycleOfFiftyCombosLeavesNoWidgetBehind) {
    auto children = [](Widget w) {
        Cardinal n = 0;
        XtVaGetValues(w, XmNnumChildren, &n, nullptr);
        return n;
    };
    auto create = [](Widget (*make)(Widget, String, ArgList, Cardinal), Widget parent) {
        return make(parent, const_cast<char *>("w"), nullptr, 0);
    };
    realize();
    Widget holder = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), nullptr);
    const Cardinal before = children(form());
    const std::function<GuiCombo *()> makers[] = {
        [&] { return GuiCreateComboAndWidgets(holder, form(), "Choice", 1, 1, 5, 0); },
        [&] {
            return GuiManageCombo(create(XmCreateTextField, holder),
                                  create(XmCreatePushButton, holder),
                                  create(XmCreateScrolledList, form()));
        }};
    for (const auto &make : makers) {
        for (int i = 0; i < 50; ++i) GuiDestroyCombo(make());
        pump();
        EXPECT_EQ(children(holder), 0u) << &make - makers;
        EXPECT_EQ(children(form()), before) << &make - makers;
    }
}
/* A client that destroys the combo from its selection callback, reached through a program
** call from an Xt timer: outside the event dispatch Xt destroys the widgets at once, so
** the call must not return into the freed list (valgrind sees it) nor call the client again. */
TEST_F(Combo, DestroyFromTheCallbackOfAProgramCallInATimer) {
    struct Closer { void (*operation)(GuiCombo *); GuiCombo *combo; int lateCalls; };
    void (*const operations[])(GuiCombo *) = {
        [](GuiCombo *c) { GuiChangeComboSelection(c, 2, 1); },
        [](GuiCombo *c) { GuiComboSelectItem(c, "Item 3", 1); },
        [](GuiCombo *c) {
            char item[] = "New A", *texts[] = {item};
            GuiReplaceComboList(c, 1, texts, 1);
        },
        [](GuiCombo *c) { GuiComboSetDefaultSelection(c, 1); }};
    realize();
    for (const auto &operation : operations) {
        Closer closer{operation, makeCombo(), 0};
        combo_ = nullptr;
        GuiAddComboCallback(closer.combo, [](GuiCombo *, void *data) {
            auto *self = static_cast<Closer *>(data);
            if (self->combo == nullptr) return ++self->lateCalls, 0;
            GuiDestroyCombo(self->combo);
            return self->combo = nullptr, 0;
        }, &closer);
        XtAppAddTimeOut(app(), 0, [](XtPointer data, XtIntervalId *) {
            auto *self = static_cast<Closer *>(data);
            self->operation(self->combo);
        }, &closer);
        const auto row = &operation - operations;
        EXPECT_TRUE(pumpUntil([&] { return closer.combo == nullptr; })) << "row " << row;
        EXPECT_EQ(closer.lateCalls, 0) << "row " << row;
    }
}
TEST_F(Combo, NullHandlesAreTracedNotFollowed) {
    GuiChangeComboSelection(nullptr, 1, 1);
    EXPECT_EQ(GuiGetComboSelection(nullptr), nullptr);
    EXPECT_EQ(GuiManageCombo(nullptr, nullptr, nullptr), nullptr);
    GuiDestroyCombo(nullptr);
    EXPECT_TRUE(hasTrace("GuiChangeComboSelection: null argument"));
    EXPECT_TRUE(hasTrace("GuiDestroyCombo((nil))"));
}

} // namespace
} // namespace xt
