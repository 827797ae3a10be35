// List boxes and combo boxes under real pointer and key input: which entries the item
// data records as chosen, and whose actions run.
#include "plgscreen.h"
namespace xt {
namespace {
using Lists = ShownBothWays;
/* List 40 of entries 41 "one", 42 "two", 43 "three" hiding labels 5, 6, 8; entry 42 may
** have no text, and a combo entry (44) may sit among them. */
void listScreen(Screen &s, uint32_t type, void *listData, bool gaps = false) {
    void *col = column(s);
    void *list = s.add(col, type, 40, listData);
    const int32_t entries[][2] = {{41, 5}, {42, 6}, {43, 8}};
    for (const auto &e : entries) {
        const char *text = e[0] == 41 ? "one" : e[0] == 42 ? "two" : "three";
        s.add(list, ListItem, e[0], listItemData(gaps && e[0] == 42 ? nullptr : text));
        if (gaps && e[0] == 42) s.add(list, ComboItem, 44, comboItemData("another type"));
        s.add(col, Label, e[1], labelData("label"));
        s.addAction(e[0], e[1], ACTION_HIDE);
    }
}
int32_t selectedFlag(const Screen &s, int32_t id) { return data<ListItemData>(s, id)->selected; }
unsigned char policyOf(Widget list) {
    unsigned char policy = 0;
    XtVaGetValues(list, XmNselectionPolicy, &policy, nullptr);
    return policy;
}
/* Entry 42 has no text: it is skipped and the third entry is at position 2. */
TEST_P(Lists, BrowseSelectionRecordsTheNewEntryAndRunsOnlyItsActions) {
    Screen s;
    listScreen(s, ListBox, listBoxData(0), true);
    show(s);
    Widget list = value(s, 40);
    int count = 0;
    XtVaGetValues(list, XmNitemCount, &count, nullptr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(policyOf(list), XmBROWSE_SELECT);
    clickEntry(list, 1);
    EXPECT_TRUE(selectedFlag(s, 41) == 1 && hiddenItem(s, 5));
    for (int round = 0; round < 2; ++round) {
        clearTraces();
        clickEntry(list, 2);
        EXPECT_EQ(selectedFlag(s, 41), 0) << "the old entry is no longer selected";
        EXPECT_EQ(selectedFlag(s, 43), 1);
        EXPECT_TRUE(hiddenItem(s, 8) && hiddenItem(s, 5)) << "deselection runs no inverse";
        EXPECT_EQ(actionTraces(), round == 0) << "the selected entry again runs nothing";
    }
    destroy(s);
}
TEST_P(Lists, ExtendedSelectionKeepsTheStoredEntriesAndControlClickAddsOne) {
    Screen s;
    listScreen(s, ListBox, listBoxData(1));
    data<ListItemData>(s, 42)->selected = 1;
    show(s);
    Widget list = value(s, 40);
    EXPECT_EQ(policyOf(list), XmEXTENDED_SELECT);
    for (int pos : {1, 2, 3}) EXPECT_EQ(XmListPosSelected(list, pos), pos == 2) << pos;
    EXPECT_EQ(actionTraces(), 0) << "selected from the data without running actions";
    clickEntry(list, 1);
    clickEntry(list, 3, XK_Control_L);
    for (int32_t id : {41, 42, 43}) EXPECT_EQ(selectedFlag(s, id), id != 42) << id;
    EXPECT_TRUE(hiddenItem(s, 5) && shownItem(s, 6) && hiddenItem(s, 8));
    EXPECT_EQ(countTrace("do actions for 1"), 1) << "entry 1 stayed selected: not run twice";
    destroy(s);
}
using Combos = ShownBothWays;
/* Labels 5..8, then combo box 60 of 61 "Red", 62 "Green", 63 "Blue" hiding 5, 6, 8; the
** combo box itself disables 7. An entry without text and a list entry may sit among them. */
void comboScreen(Screen &s, int32_t selected, int32_t userEntry, bool gaps = false) {
    void *col = column(s);
    for (int id : {5, 6, 7, 8}) s.add(col, Label, id, labelData("label"));
    void *combo = s.add(col, ComboBox, 60, comboBoxData(selected, userEntry));
    const char *names[] = {"Red", "Green", "Blue"};
    for (int i = 0; i < 3; ++i) {
        s.add(combo, ComboItem, 61 + i, comboItemData(names[i]));
        if (gaps && i == 0) s.add(combo, ComboItem, 64, comboItemData(nullptr));
        if (gaps && i == 0) s.add(combo, ListItem, 65, listItemData("a list entry"));
    }
    for (int32_t id : {61, 62, 63}) s.addAction(id, id == 63 ? 8 : id - 56, ACTION_HIDE);
    s.addAction(60, 7, ACTION_DISALLOW_INPUT);
}
ComboBoxData *comboData(const Screen &s) { return data<ComboBoxData>(s, 60); }
std::string typedText(const Screen &s) {
    return comboData(s)->typedText ? comboData(s)->typedText : "<null>";
}
/* Undoes what the combo box's own actions did at creation, so that a later run shows. */
void allowInputAgain(const Screen &s) {
    s.item(7)->disabled = 0;
    XtSetSensitive(outer(s, 7), True);
}
/* Entries without text or of another type (the row with gaps) do not count. */
TEST_P(Combos, TheStoredEntryIsChosenAtCreationOrTheFirstOrNoneForAUserEntry) {
    struct Row {
        int32_t stored, userEntry;
        const char *text;
        int32_t chosen, hides;
        bool gaps;
    } rows[] = {
        {2, 0, "Green", 2, 6, false}, {0, 0, "Red", 1, 5, false}, {4, 0, "Red", 1, 5, false},
        {0, 1, "", 0, 0, false}, {3, 0, "Blue", 3, 8, true}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.stored);
        Screen s;
        comboScreen(s, row.stored, row.userEntry, row.gaps);
        show(s);
        GuiCombo *combo = comboOf(s, 60);
        int count = 0;
        XtVaGetValues(combo->wList, XmNitemCount, &count, nullptr);
        EXPECT_EQ(count, 3);
        EXPECT_TRUE(textOf(combo->wText) == row.text && typedText(s) == row.text);
        EXPECT_EQ(comboData(s)->selected, row.chosen);
        for (int id : {5, 6, 8}) EXPECT_EQ(hiddenItem(s, id), id == row.hides) << id;
        EXPECT_TRUE(disabledItem(s, 7) || row.chosen == 0) << "the choice runs the combo's own";
        Boolean editable = False;
        XtVaGetValues(combo->wText, XmNeditable, &editable, nullptr);
        EXPECT_EQ(editable, row.userEntry);
        destroy(s);
    }
}
TEST_P(Combos, ThePointerAndTheUpAndDownKeysChooseEntriesAndRunTheirActions) {
    Screen s;
    comboScreen(s, 1, 0);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    allowInputAgain(s);
    click(combo->wButton);
    ASSERT_TRUE(pumpUntil([&] { return isViewable(combo->wList); }));
    clickEntry(combo->wList, 3);
    ASSERT_TRUE(pumpUntil([&] { return !isMapped(XtParent(combo->wList)); }))
        << "the pick closes the drop-down";
    EXPECT_EQ(textOf(combo->wText), "Blue");
    EXPECT_TRUE(comboData(s)->selected == 3 && typedText(s) == "Blue");
    EXPECT_TRUE(hiddenItem(s, 8) && shownItem(s, 6) && disabledItem(s, 7));
    focus(combo->wText);
    key(XK_Up);
    EXPECT_TRUE(comboData(s)->selected == 2 && typedText(s) == "Green" && hiddenItem(s, 6));
    key(XK_Down);
    EXPECT_EQ(comboData(s)->selected, 3);
    destroy(s);
}
TEST_P(Combos, TypedTextIsStoredAndRunsTheComboBoxsOwnActions) {
    Screen s;
    comboScreen(s, 1, 1);
    show(s);
    allowInputAgain(s);
    focus(comboOf(s, 60)->wText); /* selects the whole text, which the first key replaces */
    clearTraces();
    type("Blue");
    EXPECT_EQ(typedText(s), "Blue");
    EXPECT_TRUE(disabledItem(s, 7));
    EXPECT_EQ(countTrace("Process DISALLOW INPUT action"), 4) << "once per keystroke";
    EXPECT_EQ(comboData(s)->selected, 1) << "typing chooses no entry, even an entry's text";
    EXPECT_TRUE(shownItem(s, 8));
    destroy(s);
}
XT_BOTH_WAYS(Lists, AfterBuild);
XT_BOTH_WAYS(Combos, AfterBuild);
} // namespace
} // namespace xt
