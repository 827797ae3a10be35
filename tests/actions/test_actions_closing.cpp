// The client ends the screen from inside its close callback, whichever item's actions
// reached the CLOSE: nothing may touch the freed screen afterwards (no crash, no X error,
// no leak), and the actions after the CLOSE do not run.
#include "actionscreen.h"

#include "xcontrols/guicombo.h"

#include <utility>

namespace xt {
namespace {

class Closing : public ActionTest {
protected:
    /* A column with the button that CLOSE aims at (4), label 5 that an action after the
    ** CLOSE would hide, and the item under test added by `build` (its id is 1). */
    template <typename Build>
    void showClosingScreen(Screen &s, Build build) {
        void *col = column(s);
        s.add(col, PushButton, 4, pushButtonData("OK"));
        s.addAction(4, 4, ACTION_CLOSE); /* a button with actions keeps the job */
        s.add(col, Label, 5, labelData("five"));
        build(s, col);
        show(s, 77);
        closeCalls().clear(); /* some items run their actions at creation */
        screenToFree() = s.slot();
        clearTraces();
    }
    /* The CLOSE then HIDE 5 of an item. */
    static void closeThenHide(Screen &s, int32_t id) {
        s.addAction(id, 4, ACTION_CLOSE);
        s.addAction(id, 5, ACTION_HIDE);
    }
    void expectClosedOnce(Screen &s) {
        EXPECT_EQ(s.tree(), nullptr) << "the client freed the screen";
        ASSERT_EQ(closeCalls().size(), 1u);
        EXPECT_EQ(closeCalls()[0].jobId, 77);
        EXPECT_EQ(closeCalls()[0].flag, 1);
        EXPECT_FALSE(hasTrace("Process HIDE action")) << "nothing runs after the CLOSE";
        pumpFor(100);
        WidgetList children = nullptr;
        Cardinal count = 0;
        XtVaGetValues(form(), XmNchildren, &children, XmNnumChildren, &count, nullptr);
        EXPECT_EQ(count, 0u) << "every widget of the screen is gone";
    }
};

TEST_P(Closing, FromAToggle) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        s.add(col, selectionItem, 1, selectionData("Close when on", 0));
        closeThenHide(s, 1);
    });
    click(outer(s, 1));
    expectClosedOnce(s);
}

TEST_P(Closing, FromARadioButton) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        void *radio = s.add(col, RadioManager, 2, radioManagerData());
        s.add(radio, RadioButton, 3, radioButtonData("Stay", 1));
        s.add(radio, RadioButton, 1, radioButtonData("Close", 0));
        closeThenHide(s, 1);
    });
    click(value(s, 1));
    expectClosedOnce(s);
}

TEST_P(Closing, FromAListEntry) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        void *list = s.add(col, ListBox, 2, listBoxData(0));
        s.add(list, ListItem, 3, listItemData("stay"));
        s.add(list, ListItem, 1, listItemData("close"));
        s.add(list, ListItem, 6, listItemData("after"));
        closeThenHide(s, 1);
        s.addAction(6, 5, ACTION_HIDE);
    });
    clickEntry(value(s, 2), 2);
    expectClosedOnce(s);
}

TEST_P(Closing, FromAnExtendedListEntry) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        void *list = s.add(col, ListBox, 2, listBoxData(1));
        s.add(list, ListItem, 1, listItemData("close"));
        s.add(list, ListItem, 6, listItemData("after"));
        closeThenHide(s, 1);
        s.addAction(6, 5, ACTION_HIDE);
    });
    clickEntry(value(s, 2), 1);
    expectClosedOnce(s);
}

GuiCombo *comboOf(const Screen &s) { return static_cast<GuiCombo *>(lastRecord(s.item(2))->combo); }

/* Opens the drop-down of combo box 2 and clicks the entry at `position`. */
void pickFromDropDown(const Screen &s, int position) {
    GuiCombo *combo = comboOf(s);
    click(combo->wButton);
    ASSERT_TRUE(pumpUntil([&] { return isViewable(combo->wList); }));
    clickEntry(combo->wList, position);
}

/* A combo box (2) of six entries, more than its drop-down shows; entry 1 is "Close". */
void closingCombo(Screen &s, void *col, int32_t selected, int32_t userEntry) {
    void *combo = s.add(col, ComboBox, 2, comboBoxData(selected, userEntry));
    s.add(combo, ComboItem, 1, comboItemData("Close"));
    for (int i = 0; i < 5; ++i) s.add(combo, ComboItem, 10 + i, comboItemData("Stay"));
}

TEST_P(Closing, FromAComboEntryPickedWithThePointer) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        closingCombo(s, col, 2, 0);
        closeThenHide(s, 1);
    });
    pickFromDropDown(s, 1);
    expectClosedOnce(s);
}

TEST_P(Closing, FromAComboEntryReachedWithTheUpKey) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        closingCombo(s, col, 3, 0);
        closeThenHide(s, 1);
    });
    GuiCombo *combo = comboOf(s);
    focus(combo->wText);
    key(XK_Up); /* entry 3 to 2 */
    ASSERT_TRUE(closeCalls().empty());
    key(XK_Up); /* entry 1: close */
    expectClosedOnce(s);
}

/* The chosen text runs the combo box's own actions, whose CLOSE lets the client free the
** screen and the combo with it while the combo is still taking the choice: the combo
** must not touch its handle afterwards. */
TEST_P(Closing, FromTheComboBoxItselfWhenAnEntryIsPicked) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        closingCombo(s, col, 2, 0);
        closeThenHide(s, 2);
    });
    pickFromDropDown(s, 3);
    expectClosedOnce(s);
}

TEST_P(Closing, FromTheComboBoxItselfWhenTheUserTypes) {
    Screen s;
    showClosingScreen(s, [](Screen &s, void *col) {
        closingCombo(s, col, 0, 1);
        closeThenHide(s, 2);
    });
    GuiCombo *combo = comboOf(s);
    focus(combo->wText);
    type("x");
    expectClosedOnce(s);
    type("yz"); /* keys after the screen went reach nothing of it */
}

/* A CLOSE that an item runs while the screen is built (a toggle reporting its first
** state, where inverted is still CLOSE; a combo box taking its first choice) reaches the
** client once the screen stands: the client frees it there and nothing is left behind. */
TEST_P(Closing, DuringTheBuildOnceTheScreenStands) {
    using Build = void (*)(Screen &, void *);
    const std::pair<const char *, Build> rows[] = {
        {"toggle", [](Screen &s, void *col) { s.add(col, selectionItem, 1, selectionData("off", 0)); }},
        {"combo", [](Screen &s, void *col) { closingCombo(s, col, 1, 0); }},
    };
    for (const auto &[name, build] : rows) {
        SCOPED_TRACE(name);
        Screen s;
        void *col = column(s);
        s.add(col, PushButton, 4, pushButtonData("OK"));
        s.addAction(4, 4, ACTION_CLOSE);
        build(s, col);
        s.addAction(1, 4, ACTION_CLOSE);
        s.add(col, Label, 5, labelData("built after the CLOSE"));
        closeCalls().clear();
        screenToFree() = s.slot();
        show(s, 77);
        expectClosedOnce(s);
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, Closing, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);

} // namespace
} // namespace xt
