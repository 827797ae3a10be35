// The client ends the screen from inside its close callback, whichever item's actions
// reached the CLOSE: nothing may touch the freed screen afterwards (no crash, no X error,
// no leak), and the actions after the CLOSE do not run.
#include "plgscreen.h"
namespace xt {
namespace {
using Closing = ShownBothWays;
using Build = void (*)(Screen &, void *);
/* A combo box (2) of six entries, more than its drop-down shows; entry 1 is "Close". */
void closingCombo(Screen &s, void *col, int32_t selected, int32_t userEntry) {
    void *combo = s.add(col, ComboBox, 2, comboBoxData(selected, userEntry));
    s.add(combo, ComboItem, 1, comboItemData("Close"));
    for (int i = 0; i < 5; ++i) s.add(combo, ComboItem, 10 + i, comboItemData("Stay"));
}
void pickFromDropDown(const Screen &s, int position) {
    GuiCombo *combo = comboOf(s, 2);
    click(combo->wButton);
    ASSERT_TRUE(pumpUntil([&] { return isViewable(combo->wList); }));
    clickEntry(combo->wList, position);
}
void listOf(Screen &s, void *col, int32_t multiple, std::initializer_list<int32_t> ids) {
    void *list = s.add(col, ListBox, 2, listBoxData(multiple));
    for (int32_t id : ids) s.add(list, ListItem, id, listItemData(id == 1 ? "close" : "stay"));
    s.addAction(6, 5, ACTION_HIDE); /* entry 6 comes after the closing one */
}
/* Item `closer` runs the CLOSE of button 4 (which keeps the job), then HIDE 5. Rows without
** input: the CLOSE an item runs while the screen is built (a toggle's first state, inverted
** still CLOSE; a combo's first choice) reaches the client once the screen stands. */
TEST_P(Closing, FromAnyItemTheClientFreesTheScreenInsideTheCall) {
    struct Row { const char *name; Build build; void (*act)(const Screen &); int32_t closer; };
    const Row rows[] = {
        {"toggle while built", [](Screen &s, void *col) {
             s.add(col, selectionItem, 1, selectionData("off", 0));
         }, nullptr, 1},
        {"combo while built", [](Screen &s, void *col) { closingCombo(s, col, 1, 0); }, nullptr,
         1},
        {"toggle", [](Screen &s, void *col) {
             s.add(col, selectionItem, 1, selectionData("Close when on", 0));
         }, [](const Screen &s) { click(outer(s, 1)); }, 1},
        {"radio button", [](Screen &s, void *col) {
             void *radio = s.add(col, RadioManager, 2, radioManagerData());
             s.add(radio, RadioButton, 3, radioButtonData("Stay", 1));
             s.add(radio, RadioButton, 1, radioButtonData("Close", 0));
         }, [](const Screen &s) { click(value(s, 1)); }, 1},
        {"list entry", [](Screen &s, void *col) { listOf(s, col, 0, {3, 1, 6}); },
         [](const Screen &s) { clickEntry(value(s, 2), 2); }, 1},
        {"extended list entry", [](Screen &s, void *col) { listOf(s, col, 1, {1, 6}); },
         [](const Screen &s) { clickEntry(value(s, 2), 1); }, 1},
        {"combo entry picked", [](Screen &s, void *col) { closingCombo(s, col, 2, 0); },
         [](const Screen &s) { pickFromDropDown(s, 1); }, 1},
        {"combo entry reached with Up", [](Screen &s, void *col) { closingCombo(s, col, 3, 0); },
         [](const Screen &s) {
             focus(comboOf(s, 2)->wText);
             key(XK_Up); /* entry 3 to 2 */
             ASSERT_TRUE(closeCalls().empty());
             key(XK_Up); /* entry 1: close */
         }, 1},
        /* The combo's own CLOSE frees the combo while it still takes the choice. */
        {"combo itself, entry picked", [](Screen &s, void *col) { closingCombo(s, col, 2, 0); },
         [](const Screen &s) { pickFromDropDown(s, 3); }, 2},
        {"combo itself, user typing", [](Screen &s, void *col) { closingCombo(s, col, 0, 1); },
         [](const Screen &s) {
             focus(comboOf(s, 2)->wText);
             type("x");
         }, 2},
        /* A program call outside event dispatch: the combo's code is still running when the
        ** CLOSE lets the client free it (valgrind sees a read of the freed widgets). */
        {"combo entry chosen by a program call in a timer",
         [](Screen &s, void *col) { closingCombo(s, col, 2, 0); }, [](const Screen &s) {
             static GuiCombo *combo;
             combo = comboOf(s, 2);
             XtAppAddTimeOut(app(), 1, [](XtPointer, XtIntervalId *) {
                 GuiChangeComboSelection(combo, 1, 1);
             }, nullptr);
             ASSERT_TRUE(pumpUntil([] { return !closeCalls().empty(); }));
         }, 1},
        {"push button", [](Screen &s, void *col) {
             s.add(col, EditBox, 1, editBoxData(0, 0, 0, "text"));
         }, [](const Screen &s) { click(outer(s, 4)); }, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Screen s;
        void *col = column(s);
        s.add(col, PushButton, 4, pushButtonData("OK"));
        s.addAction(4, 4, ACTION_CLOSE);
        row.build(s, col);
        if (row.closer) s.addAction(row.closer, 4, ACTION_CLOSE);
        if (row.closer) s.addAction(row.closer, 5, ACTION_HIDE);
        s.add(col, Label, 5, labelData("built after the item"));
        closeCalls().clear();
        screenToFree() = row.act ? nullptr : s.slot();
        clearTraces();
        show(s, 77);
        if (row.act) {
            closeCalls().clear(); /* some items run their actions at creation */
            screenToFree() = s.slot();
            clearTraces();
            row.act(s);
        }
        EXPECT_EQ(s.tree(), nullptr) << "the client freed the screen";
        ASSERT_EQ(closeCalls().size(), 1u);
        EXPECT_TRUE(closeCalls()[0].jobId == 77 && closeCalls()[0].flag == 1);
        EXPECT_TRUE(hasTrace("Destroy the widgets making up the screen"));
        EXPECT_FALSE(hasTrace("Process HIDE action")) << "nothing runs after the CLOSE";
        pumpFor(100);
        Cardinal children = 99;
        XtVaGetValues(form(), XmNnumChildren, &children, nullptr);
        EXPECT_EQ(children, 0u) << "every widget of the screen is gone";
        type("yz"); /* input after the screen went reaches nothing of it */
        click(form());
    }
}

XT_BOTH_WAYS(Closing, AfterBuild);
} // namespace
} // namespace xt
