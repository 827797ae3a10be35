/* test_combo.cpp - the combo box under real input: its drop-down, its selection, its list. */
#include "xharness.h"
#include <X11/IntrinsicP.h>
#include <Xm/Form.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <functional>
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

/* The combo's parent is a small form in the screen form, which holds the drop-down and a
** button where it opens, created after it so that only a raise puts the drop-down on top. */
class Combo : public XTest {
protected:
    struct Options { bool userEntry = false, below = true, labelLeft = true; };
    void TearDown() override {
        if (combo_ != nullptr) GuiDestroyCombo(combo_);
        XTest::TearDown();
    }
    GuiCombo *makeCombo(const Options &o) {
        holder_ = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), XmNtopAttachment,
                                          XmATTACH_FORM, XmNtopOffset, o.below ? 10 : 200,
                                          XmNleftAttachment, XmATTACH_FORM, XmNleftOffset, 10,
                                          nullptr);
        combo_ = GuiCreateComboAndWidgets(holder_, form(), "Choice", o.labelLeft, o.below, 5,
                                          o.userEntry);
        XtVaCreateManagedWidget("under", xmPushButtonWidgetClass, form(), XmNleftAttachment,
                                XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                                o.below ? XmNtopAttachment : XmNbottomAttachment,
                                XmATTACH_WIDGET, o.below ? XmNtopWidget : XmNbottomWidget,
                                holder_, nullptr);
        for (int i = 1; i <= 5; ++i) GuiAddToComboList(combo_, item(i).c_str());
        GuiAddComboCallback(
            combo_, [](GuiCombo *, void *n) { return ++*static_cast<int *>(n), 0; }, &calls_);
        return combo_;
    }
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
    int listValue(const char *resource) const {
        int value = 0;
        XtVaGetValues(combo_->wList, resource, &value, nullptr);
        return value;
    }
    GuiCombo *combo_ = nullptr;
    Widget holder_ = nullptr;
    int calls_ = 0;
};

/* Label, drop-down and field as the flags say, made before and after realize; a key opens
** a fresh combo on top, a click closes it and neither the key after that click nor a click
** while insensitive opens it again; destroying it open takes its widgets. */
TEST_F(Combo, LabelDropDownAndTheButtonThatTogglesIt) {
    for (const Options &o : {Options{}, Options{true, false, false}}) {
        makeCombo(o);
        if (!XtIsRealized(shell())) realize();
        pump();
        Geometry label = geometry(XtNameToWidget(holder_, "comboLabel"));
        Geometry frame = geometry(XtNameToWidget(holder_, "comboFrame"));
        Geometry list = geometry(dropDown()), holder = geometry(holder_);
        Boolean editable = !o.userEntry;
        unsigned char type = 0;
        XtVaGetValues(combo_->wText, XmNeditable, &editable, nullptr);
        XtVaGetValues(combo_->wButton, XmNlabelType, &type, nullptr);
        EXPECT_EQ(std::make_tuple(label.x < frame.x, list.x, list.width, editable != 0, type),
                  std::make_tuple(o.labelLeft, holder.x, holder.width, o.userEntry, XmPIXMAP));
        EXPECT_EQ(o.below ? list.y : list.y + list.height,
                  o.below ? holder.y + holder.height : holder.y);
        EXPECT_LT(label.height, holder.height) << "the label is not stretched";
        EXPECT_FALSE(hasTrace("Failed to create combo pixmap"));
        focus(combo_->wButton);
        key(XK_space);
        EXPECT_TRUE(waitOpen()) << "a keyboard activation opens a fresh combo";
        EXPECT_EQ(focused(), combo_->wList);
        click(combo_->wButton);
        ASSERT_TRUE(waitClosed()) << "a click closes it";
        EXPECT_EQ(focused(), combo_->wButton);
        key(XK_space);
        pump();
        EXPECT_TRUE(dropDownHidden()) << "nor does the closing click reopen it";
        GuiComboSetSensitive(combo_, 0);
        EXPECT_TRUE(XtIsSensitive(combo_->wList) && !XtIsSensitive(combo_->wText));
        click(combo_->wButton);
        EXPECT_TRUE(dropDownHidden()) << "an insensitive button does not open it";
        GuiComboSetSensitive(combo_, 1);
        EXPECT_TRUE(clickOpen()) << "the next click opens it again";
        GuiDestroyCombo(combo_);
        combo_ = nullptr;
        pump();
        EXPECT_EQ(XtNameToWidget(holder_, "comboFrame"), nullptr);
    }
}
/* Program calls on an unrealized combo; once realized, a pointer choice sets the text,
** closes the drop-down and focuses the button; a keyboard browse selects as it moves and
** leaves the drop-down open until Return. */
TEST_F(Combo, PointerChoiceClosesKeyboardBrowseWaitsForReturn) {
    makeCombo({});
    GuiChangeComboSelection(combo_, 2, 1);
    GuiComboSetDefaultSelection(combo_, 1);
    EXPECT_EQ(choice(), (Choice{1, item(1), 2}));
    realize();
    pump();
    EXPECT_TRUE(dropDownHidden()) << "realizing does not show the drop-down";
    ASSERT_TRUE(clickOpen());
    click(combo_->wList);  // the middle one of five items
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(choice(), (Choice{3, item(3), 3}));
    EXPECT_EQ(focused(), combo_->wButton);
    ASSERT_TRUE(clickOpen());
    key(XK_Down);
    const int first = selected();
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{first + 1, item(first + 1), 5}));
    EXPECT_TRUE(dropDownOnTop()) << "a keyboard browse leaves it open";
    key(XK_Return);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(focused(), combo_->wButton);
}
/* Up and Down in the field (from no choice), typing and program calls one after the
** other: what each shows and reports, and the list's length; the drop-down stays shut.
** A long list then scrolls to show the choice with a row of context. */
TEST_F(Combo, KeysTypingAndProgramCallsChangeTheSelectionAndTheList) {
    makeCombo({});
    realize();
    focus(combo_->wText);
    GuiCombo *&c = combo_;
    auto press = [&c](std::initializer_list<KeySym> keys) {
        GuiChangeComboSelection(c, -1, 0);
        GuiComboSetEmpty(c);
        for (KeySym k : keys) key(k);
    };
    auto replace = [&c](std::vector<std::string> texts, int notify) {
        std::vector<char *> p;
        for (std::string &t : texts) p.push_back(t.data());
        GuiReplaceComboList(c, static_cast<int32_t>(p.size()), p.data(), notify);
    };
    struct Row { const char *what; std::function<void()> call; Choice expected; int items; };
    const Row rows[] = {
        {"items added after creation", [] {}, {0, "", 0}, 5},
        {"Down", [&] { press({XK_Down}); }, {1, item(1), 1}, 5},
        {"Up", [&] { press({XK_Up}); }, {5, item(5), 1}, 5},
        {"a repeated choice", [&] { press({XK_Down, XK_Up}); }, {1, item(1), 2}, 5},
        {"past the end", [&] { press({XK_Up, XK_Down}); }, {0, item(5), 1}, 5},
        {"quiet change", [&] { GuiChangeComboSelection(c, 3, 0); }, {3, item(5), 0}, 5},
        {"quiet select", [&] { GuiComboSelectItem(c, "Item 4", 0); }, {4, item(4), 0}, 5},
        {"set text", [&] { GuiComboSetText(c, "x"); }, {4, "x", 0}, 5},
        {"typed over while user entry is on", [&] {
             GuiEnableComboUserEntry(c);
             focus(c->wButton);
             focus(c->wText);
             type("free");
             GuiDisableComboUserEntry(c);
             type("x");
         }, {4, "free", 0}, 5},
        {"quiet default", [&] { GuiComboSetDefaultSelection(c, 0); }, {1, item(1), 0}, 5},
        {"default", [&] { GuiComboSelectDefault(c); }, {1, item(1), 1}, 5},
        {"add a twin, remove the first", [&] {
             GuiAddToComboList(c, "Item 2");
             GuiRemoveFromComboList(c, "Item 2");
             GuiRemoveFromComboList(c, "None");
             EXPECT_EQ(GuiComboSelectItem(c, "Item 2", 0), 1);
         }, {5, item(2), 0}, 5},
        {"replace keeping it", [&] { replace({"A", "Item 2"}, 1); }, {2, item(2), 1}, 2},
        {"replace", [&] { replace({"A"}, 1); }, {1, "A", 1}, 1},
        {"replace with none", [&] { replace({}, 1); }, {0, "", 0}, 0},
    };
    for (const Row &row : rows) {
        calls_ = 0;
        row.call();
        EXPECT_EQ(choice(), row.expected) << row.what;
        EXPECT_EQ(listValue(XmNitemCount), row.items) << row.what;
        EXPECT_LE(listValue(XmNtopItemPosition), 1) << row.what << ": a short list never scrolls";
        EXPECT_TRUE(focused() == c->wText && dropDownHidden()) << row.what;
    }
    for (int i = 1; i <= 20; ++i) GuiAddToComboList(c, item(i).c_str());
    for (auto [position, top] : {std::pair{10, 9}, {18, 15}, {20, 16}, {1, 1}}) {
        GuiChangeComboSelection(c, position, 1);
        EXPECT_EQ(listValue(XmNtopItemPosition), top) << "selecting " << position;
    }
}
/* Combos built and destroyed again and again leave their parents as they found them; a
** caller's own list that holds an item shows it. */
TEST_F(Combo, ACycleOfFiftyCombosLeavesNoWidgetBehind) {
    auto children = [](Widget w) {
        return reinterpret_cast<CompositeWidget>(w)->composite.num_children;
    };
    String name = const_cast<char *>("w");
    realize();
    Widget holder = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), nullptr);
    const Cardinal before = children(form());
    const std::function<GuiCombo *()> makers[] = {
        [&] { return GuiCreateComboAndWidgets(holder, form(), "Choice", 1, 1, 5, 0); },
        [&] {
            Widget list = XmCreateScrolledList(form(), name, nullptr, 0);
            XmString first = XmStringCreateLocalized(const_cast<char *>("Item 1"));
            XmListAddItem(list, first, 0);
            XmStringFree(first);
            return GuiManageCombo(XmCreateTextField(holder, name, nullptr, 0),
                                  XmCreatePushButton(holder, name, nullptr, 0), list);
        }};
    for (const auto &make : makers) {
        const auto row = &make - makers;
        for (int i = 0; i < 50; ++i) {
            combo_ = make();
            EXPECT_EQ(choice(), (Choice{row, row ? item(1) : "", 0})) << row;
            GuiDestroyCombo(combo_);
        }
        combo_ = nullptr;
        pump();
        EXPECT_EQ(children(holder), 0u) << row;
        EXPECT_EQ(children(form()), before) << row;
    }
    GuiDestroyCombo(nullptr);
}
/* A client destroys the combo from its callback, run by a program call in an Xt timer where
** Xt destroys at once: the call must not return into the freed list nor call it again. */
TEST_F(Combo, DestroyFromTheCallbackOfAProgramCallInATimer) {
    struct Closer { void (*operation)(GuiCombo *); GuiCombo *combo; };
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
        Closer closer{operation, makeCombo({})};
        combo_ = nullptr;
        GuiAddComboCallback(closer.combo, [](GuiCombo *, void *data) {
            auto *self = static_cast<Closer *>(data);
            EXPECT_NE(self->combo, nullptr) << "called after the destroy";
            GuiDestroyCombo(self->combo);
            return self->combo = nullptr, 0;
        }, &closer);
        XtAppAddTimeOut(app(), 0, [](XtPointer data, XtIntervalId *) {
            auto *self = static_cast<Closer *>(data);
            self->operation(self->combo);
        }, &closer);
        EXPECT_TRUE(pumpUntil([&] { return closer.combo == nullptr; })) << &operation - operations;
    }
}
} // namespace
} // namespace xt
