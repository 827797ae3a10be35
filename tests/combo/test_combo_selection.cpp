/* test_combo_selection.cpp - the combo's selection: keys, scrolling, list changes. */
#include "combofixture.h"

#include <cstdio>

namespace xt {
namespace {

using ComboSelection = ComboTest;

/* Puts the keyboard focus into the text field and forgets the calls so far. */
class ComboKeys : public ComboTest {
protected:
    void SetUp() override {
        ComboTest::SetUp();
        makeCombo();
        realize();
        focus(combo_->wText);
        ASSERT_EQ(focused(), combo_->wText);
        calls_ = 0;
    }
};

TEST_F(ComboKeys, ItemsAddedAfterCreationLeaveNothingSelected) {
    EXPECT_EQ(selected(), 0);
    EXPECT_EQ(text(), "");
}

TEST_F(ComboKeys, DownWithNothingSelectedSelectsTheFirstItem) {
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{1, itemText(1), 1}));
    EXPECT_EQ(focused(), combo_->wText) << "the keys do not move the focus";
    EXPECT_TRUE(dropDownHidden()) << "the keys do not open the drop-down";
}

TEST_F(ComboKeys, UpWithNothingSelectedSelectsTheLastItem) {
    key(XK_Up);
    EXPECT_EQ(choice(), (Choice{5, itemText(5), 1}));
}

TEST_F(ComboKeys, UpOnTheFirstItemChoosesItAgain) {
    key(XK_Down);
    key(XK_Up);
    EXPECT_EQ(choice(), (Choice{1, itemText(1), 2})) << "the repeated choice is reported";
}

TEST_F(ComboKeys, DownPastTheLastItemSelectsNoneThenTheFirst) {
    key(XK_Up);
    ASSERT_EQ(selected(), 5);
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{0, itemText(5), 1})) << "the field keeps the last text";
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{1, itemText(1), 2}));
}

TEST_F(ComboSelection, ALongListScrollsToShowTheChoiceWithContext) {
    Options o;
    o.items = 20;
    o.visible = 5;
    makeCombo(o);
    realize();
    struct Case { int position, top, bottom; };
    for (Case c : {Case{10, 9, 13}, Case{18, 15, 19}, Case{20, 16, 20}, Case{1, 1, 5}}) {
        GuiChangeComboSelection(combo_, c.position, 1);
        pump();
        EXPECT_EQ(selected(), c.position);
        EXPECT_EQ(text(), itemText(c.position));
        EXPECT_EQ(topItem(), c.top) << "selecting " << c.position;
        EXPECT_EQ(bottomItem(), c.bottom) << "selecting " << c.position;
    }
}

TEST_F(ComboSelection, AShortListIsNeverScrolled) {
    Options o;
    o.items = 5;
    o.visible = 5;
    makeCombo(o);
    realize();
    for (int position : {5, 3, 4}) {
        GuiChangeComboSelection(combo_, position, 0);
        EXPECT_EQ(topItem(), 1);
        EXPECT_EQ(selected(), position);
    }
    EXPECT_EQ(text(), "") << "without notification the text field is left alone";
    EXPECT_EQ(calls_, 0);
}

TEST_F(ComboSelection, AnEmptyListSelectsNothingAndCallsNothing) {
    Options o;
    o.items = 0;
    makeCombo(o);
    realize();
    GuiComboSetText(combo_, "kept");
    GuiChangeComboSelection(combo_, 1, 1);
    GuiChangeComboSelection(combo_, 0, 1);
    EXPECT_EQ(choice(), (Choice{0, "kept", 0}));
}

TEST_F(ComboSelection, ReplacingKeepsAStillOfferedChoiceWithOneCall) {
    makeCombo();
    GuiChangeComboSelection(combo_, 3, 1);
    calls_ = 0;
    char a[] = "New A", b[] = "Item 3", c[] = "New C";
    char *texts[] = {a, b, c};
    GuiReplaceComboList(combo_, 3, texts, 1);
    EXPECT_EQ(itemCount(), 3);
    EXPECT_EQ(choice(), (Choice{2, "Item 3", 1}));
}

TEST_F(ComboSelection, ReplacingWithoutTheChoiceFallsBackToTheFirstItem) {
    makeCombo();
    GuiChangeComboSelection(combo_, 3, 1);
    char a[] = "New A", b[] = "New B";
    char *texts[] = {a, b};

    calls_ = 0;
    GuiReplaceComboList(combo_, 2, texts, 0);
    EXPECT_EQ(choice(), (Choice{1, "", 0})) << "without notification the field stays empty";

    GuiComboSetText(combo_, "gone");
    GuiReplaceComboList(combo_, 2, texts, 1);
    EXPECT_EQ(choice(), (Choice{1, "New A", 1}));
}

TEST_F(ComboSelection, ReplacingWithNothingEmptiesListAndText) {
    makeCombo();
    GuiChangeComboSelection(combo_, 2, 1);
    calls_ = 0;
    GuiReplaceComboList(combo_, 0, nullptr, 1);
    EXPECT_EQ(itemCount(), 0);
    EXPECT_EQ(choice(), (Choice{0, "", 0}));
}

TEST_F(ComboSelection, QuietDefaultShowsTheFirstItemAndCallbacksComeBackAfter) {
    makeCombo();
    realize();
    GuiChangeComboSelection(combo_, 4, 1);
    calls_ = 0;
    GuiComboSetDefaultSelection(combo_, 0);
    EXPECT_EQ(choice(), (Choice{1, itemText(1), 0}));

    focus(combo_->wText);
    key(XK_Down);
    EXPECT_EQ(choice(), (Choice{2, itemText(2), 1})) << "the next choice is reported again";

    GuiComboSelectDefault(combo_);
    EXPECT_EQ(choice(), (Choice{1, itemText(1), 2}));
}

TEST_F(ComboSelection, TypedTextThatMatchesNoItemIsTheSelection) {
    Options o;
    o.userEntry = true;
    makeCombo(o);
    realize();
    GuiChangeComboSelection(combo_, 2, 1);
    focus(combo_->wText);
    type("free text");
    EXPECT_EQ(text(), "free text") << "focus selected the old text, typing replaced it";
    EXPECT_EQ(selected(), 2);

    GuiDisableComboUserEntry(combo_);
    type("x");
    EXPECT_EQ(text(), "free text") << "a read-only field ignores typing";
    GuiEnableComboUserEntry(combo_);
    type("!");
    EXPECT_EQ(text(), "free text!");
}

TEST_F(ComboSelection, SelectingByTextFindsOnlyListedItems) {
    makeCombo();
    EXPECT_EQ(GuiComboSelectItem(combo_, "Item 4", 0), 1);
    EXPECT_EQ(choice(), (Choice{4, "Item 4", 0})) << "shown even without notification";

    EXPECT_EQ(GuiComboSelectItem(combo_, "Item 2", 1), 1);
    EXPECT_EQ(choice(), (Choice{2, "Item 2", 1}));

    EXPECT_EQ(GuiComboSelectItem(combo_, "No such item", 1), 0);
    EXPECT_EQ(choice(), (Choice{2, "Item 2", 1})) << "nothing changed";
}

TEST_F(ComboSelection, AddAndRemoveChangeOnlyTheNamedItems) {
    makeCombo();
    GuiAddToComboList(combo_, "Item 2");
    EXPECT_EQ(itemCount(), 6);
    GuiRemoveFromComboList(combo_, "Item 2");
    EXPECT_EQ(itemCount(), 5);
    EXPECT_EQ(GuiComboSelectItem(combo_, "Item 2", 0), 1);
    EXPECT_EQ(selected(), 5) << "the first of two equal items went";
    GuiRemoveFromComboList(combo_, "No such item");
    EXPECT_EQ(itemCount(), 5);
}

TEST_F(ComboSelection, TextOperationsLeaveTheListSelectionAlone) {
    makeCombo();
    GuiChangeComboSelection(combo_, 3, 1);
    GuiComboSetText(combo_, "other");
    EXPECT_EQ(text(), "other");
    GuiComboSetText(combo_, nullptr);
    EXPECT_EQ(text(), "other");
    GuiComboSetEmpty(combo_);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(selected(), 3);
}

TEST_F(ComboSelection, InsensitiveComboIgnoresTheButtonButNotTheList) {
    makeCombo();
    realize();
    GuiComboSetSensitive(combo_, 0);
    EXPECT_FALSE(XtIsSensitive(combo_->wText));
    EXPECT_FALSE(XtIsSensitive(combo_->wButton));
    EXPECT_TRUE(XtIsSensitive(combo_->wList));
    click(combo_->wButton);
    EXPECT_TRUE(dropDownHidden());
    GuiComboSetSensitive(combo_, 1);
    EXPECT_TRUE(clickOpen());
}

TEST_F(ComboSelection, ManagedListThatHoldsItemsShowsTheFirst) {
    /* A caller that builds its own widgets fills the list before handing it over. */
    Widget field = XmCreateTextField(form(), const_cast<char *>("text"), nullptr, 0);
    Widget button = XmCreatePushButton(form(), const_cast<char *>("button"), nullptr, 0);
    Widget list = XmCreateScrolledList(form(), const_cast<char *>("list"), nullptr, 0);
    XtManageChild(field);
    XtManageChild(button);
    XtManageChild(list);
    for (int i = 1; i <= 3; ++i) {
        XmString s = XmStringCreateLtoR(const_cast<char *>(itemText(i).c_str()),
                                        const_cast<char *>(XmSTRING_DEFAULT_CHARSET));
        XmListAddItem(list, s, 0);
        XmStringFree(s);
    }
    combo_ = GuiManageCombo(field, button, list);
    ASSERT_NE(combo_, nullptr);
    EXPECT_EQ(static_cast<void *>(combo_), static_cast<void *>(&combo_->wText))
        << "the text field is the handle's first field";
    EXPECT_EQ(combo_->iDefaultPos, 1);
    EXPECT_EQ(combo_->bMayOpen, 1);
    EXPECT_EQ(combo_->bNotify, 1);
    EXPECT_EQ(text(), itemText(1));
    EXPECT_EQ(selected(), 1);
}

/* A client that destroys the combo from its selection callback, reached through a program
** call from an Xt timer: outside the event dispatch Xt destroys the widgets at once, so
** the operation must not return into the freed list (valgrind sees it) nor call the
** client again. */
struct CloseFromTimer {
    void (*operation)(GuiCombo *);
    GuiCombo *combo;
    int lateCalls;
    static int onSelect(GuiCombo *, void *data) {
        auto *self = static_cast<CloseFromTimer *>(data);
        if (self->combo == nullptr) {
            ++self->lateCalls;
            return 0;
        }
        GuiDestroyCombo(self->combo);
        self->combo = nullptr;
        return 0;
    }
    static void fire(XtPointer data, XtIntervalId *) {
        auto *self = static_cast<CloseFromTimer *>(data);
        self->operation(self->combo);
    }
};

TEST_F(ComboSelection, DestroyFromTheCallbackOfAProgramCallInATimer) {
    struct Row {
        const char *operation;
        void (*run)(GuiCombo *);
    };
    const Row rows[] = {
        {"GuiChangeComboSelection", [](GuiCombo *c) { GuiChangeComboSelection(c, 2, 1); }},
        {"GuiComboSelectItem", [](GuiCombo *c) { GuiComboSelectItem(c, "Item 3", 1); }},
        {"GuiReplaceComboList", [](GuiCombo *c) {
             char item[] = "New A";
             char *texts[] = {item};
             GuiReplaceComboList(c, 1, texts, 1);
         }},
        {"GuiComboSetDefaultSelection", [](GuiCombo *c) { GuiComboSetDefaultSelection(c, 1); }},
    };
    realize();
    for (const Row &row : rows) {
        CloseFromTimer closer{row.run, makeCombo(), 0};
        combo_ = nullptr;
        GuiAddComboCallback(closer.combo, CloseFromTimer::onSelect, &closer);
        XtAppAddTimeOut(app(), 0, CloseFromTimer::fire, &closer);
        EXPECT_TRUE(pumpUntil([&] { return closer.combo == nullptr; })) << row.operation;
        EXPECT_EQ(closer.lateCalls, 0) << row.operation;
    }
}

TEST_F(ComboSelection, NullHandlesAreTracedNotFollowed) {
    GuiChangeComboSelection(nullptr, 1, 1);
    GuiComboSetText(nullptr, "x");
    EXPECT_EQ(GuiGetComboSelection(nullptr), nullptr);
    EXPECT_EQ(GuiGetComboItemNumberSelected(nullptr), 0);
    EXPECT_EQ(GuiManageCombo(nullptr, nullptr, nullptr), nullptr);
    GuiDestroyCombo(nullptr);
    EXPECT_TRUE(hasTrace("GuiChangeComboSelection: null argument"));
    EXPECT_TRUE(hasTrace("GuiDestroyCombo((nil))"));
}

} // namespace
} // namespace xt
