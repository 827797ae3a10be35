// List boxes and combo boxes under real pointer and key input: which entries the item
// data records as chosen, and whose actions run.
#include "actionscreen.h"

#include <Xm/TextF.h>
#include <Xm/Screen.h>

#include <string>

#include "xcontrols/guicombo.h"

namespace xt {
namespace {

using Lists = ActionTest;

/* A list box (40) of three entries 41 "one", 42 "two", 43 "three", each hiding its own
** label (5, 6, 8), in a column. */
void listScreen(Screen &s, uint32_t type, void *listData) {
    void *col = column(s);
    void *list = s.add(col, type, 40, listData);
    s.add(list, ListItem, 41, listItemData("one"));
    s.add(list, ListItem, 42, listItemData("two"));
    s.add(list, ListItem, 43, listItemData("three"));
    s.add(col, Label, 5, labelData("five"));
    s.add(col, Label, 6, labelData("six"));
    s.add(col, Label, 8, labelData("eight"));
    s.addAction(41, 5, ACTION_HIDE);
    s.addAction(42, 6, ACTION_HIDE);
    s.addAction(43, 8, ACTION_HIDE);
}

/* A widget's width in pixels, whatever its unit type. */
int pixelWidth(Widget w) {
    XWindowAttributes a{};
    XGetWindowAttributes(XtDisplay(w), XtWindow(w), &a);
    return a.width;
}

int32_t selectedFlag(const Screen &s, int32_t id) {
    return static_cast<ListItemData *>(s.item(id)->itemData)->selected;
}

TEST_P(Lists, BrowseSelectionRecordsTheNewEntryAndRunsOnlyItsActions) {
    Screen s;
    listScreen(s, ListBox, listBoxData(0));
    show(s);
    Widget list = value(s, 40);
    ASSERT_EQ(widgetCount(s.item(40)), 2);
    EXPECT_EQ(outer(s, 40), XtParent(list)) << "the scrolled window is the outer widget";
    unsigned char policy = 0;
    XtVaGetValues(list, XmNselectionPolicy, &policy, nullptr);
    EXPECT_EQ(policy, XmBROWSE_SELECT);

    clickEntry(list, 1);
    EXPECT_EQ(selectedFlag(s, 41), 1);
    EXPECT_TRUE(hiddenItem(s, 5));
    EXPECT_TRUE(hasTrace("do actions for 1"));

    clearTraces();
    clickEntry(list, 2);
    EXPECT_EQ(selectedFlag(s, 41), 0) << "the old entry is no longer selected";
    EXPECT_EQ(selectedFlag(s, 42), 1);
    EXPECT_TRUE(hiddenItem(s, 6));
    EXPECT_TRUE(hiddenItem(s, 5)) << "deselection runs nothing, not even an inverse";
    EXPECT_EQ(actionTraces(), 1);
    EXPECT_TRUE(hasTrace("item 1 not selected"));
    EXPECT_TRUE(hasTrace("item 2 selected"));

    clearTraces();
    clickEntry(list, 2);
    EXPECT_TRUE(hasTrace("item 2 selected"));
    EXPECT_FALSE(hasTraceContaining("do actions for"));
    EXPECT_EQ(actionTraces(), 0);
    EXPECT_EQ(selectedFlag(s, 42), 1);
    destroy(s);
}

TEST_P(Lists, ExtendedSelectionWithControlClickSelectsTwoEntries) {
    Screen s;
    listScreen(s, ListBox, listBoxData(1));
    show(s);
    Widget list = value(s, 40);
    unsigned char policy = 0;
    XtVaGetValues(list, XmNselectionPolicy, &policy, nullptr);
    EXPECT_EQ(policy, XmEXTENDED_SELECT);
    clickEntry(list, 1);
    clickEntry(list, 3, XK_Control_L);
    EXPECT_EQ(selectedFlag(s, 41), 1);
    EXPECT_EQ(selectedFlag(s, 42), 0);
    EXPECT_EQ(selectedFlag(s, 43), 1);
    EXPECT_TRUE(hiddenItem(s, 5));
    EXPECT_TRUE(shownItem(s, 6));
    EXPECT_TRUE(hiddenItem(s, 8));
    EXPECT_EQ(countTrace("do actions for 1"), 1) << "entry 1 stayed selected: not run twice";
    EXPECT_EQ(countTrace("do actions for 3"), 1);

    clickEntry(list, 2); /* a plain click selects that one alone */
    EXPECT_EQ(selectedFlag(s, 41), 0);
    EXPECT_EQ(selectedFlag(s, 42), 1);
    EXPECT_EQ(selectedFlag(s, 43), 0);
    destroy(s);
}

TEST_P(Lists, EntriesSelectedInTheDataAreSelectedWithoutRunningActions) {
    Screen s;
    listScreen(s, ListBox, listBoxData(1));
    static_cast<ListItemData *>(s.item(42)->itemData)->selected = 1;
    static_cast<ListItemData *>(s.item(43)->itemData)->selected = 1;
    show(s);
    Widget list = value(s, 40);
    EXPECT_FALSE(XmListPosSelected(list, 1));
    EXPECT_TRUE(XmListPosSelected(list, 2));
    EXPECT_TRUE(XmListPosSelected(list, 3));
    EXPECT_EQ(actionTraces(), 0);
    EXPECT_TRUE(shownItem(s, 6));
    destroy(s);
}

TEST_P(Lists, EntriesWithoutTextAreSkippedAndDoNotShiftPositions) {
    Screen s;
    void *col = column(s);
    void *listNode = s.add(col, ListBox, 40, listBoxData(0));
    s.add(listNode, ListItem, 41, listItemData("first"));
    s.add(listNode, ListItem, 42, listItemData(nullptr));
    s.add(listNode, ComboItem, 44, comboItemData("another type"));
    s.add(listNode, ListItem, 43, listItemData("second"));
    s.add(col, Label, 8, labelData("eight"));
    s.addAction(42, 8, ACTION_DISALLOW_INPUT);
    s.addAction(43, 8, ACTION_HIDE);
    show(s);
    Widget list = value(s, 40);
    int count = 0;
    XtVaGetValues(list, XmNitemCount, &count, nullptr);
    EXPECT_EQ(count, 2);
    EXPECT_NE(s.item(42)->guiData, nullptr) << "every child gets its GUI data";
    EXPECT_NE(s.item(44)->guiData, nullptr);
    clickEntry(list, 2);
    EXPECT_EQ(selectedFlag(s, 43), 1);
    EXPECT_EQ(selectedFlag(s, 42), 0);
    EXPECT_TRUE(hiddenItem(s, 8)) << "position 2 is the entry after the one without text";
    EXPECT_TRUE(enabledItem(s, 8));
    destroy(s);
}

TEST_P(Lists, AnExtendedListBoxOfWidthTenIs1320HundredthsOfAFontUnitWide) {
    Screen s;
    listScreen(s, ExtendedListBox, extendedListBoxData(0, 10, 2));
    show(s);
    Widget list = value(s, 40), window = outer(s, 40);
    unsigned char unit = 0, sizePolicy = 0;
    int visible = 0;
    XtVaGetValues(list, XmNunitType, &unit, XmNlistSizePolicy, &sizePolicy, XmNvisibleItemCount,
                  &visible, nullptr);
    EXPECT_EQ(unit, Xm100TH_FONT_UNITS);
    EXPECT_EQ(sizePolicy, XmCONSTANT);
    EXPECT_EQ(visible, 2);
    /* The scrolled list takes the width as a whole, scroll bar included (in pixels: the
    ** screen's font unit times 13.2); the list inside is narrower by the scroll bar. */
    int fontUnit = 0;
    XtVaGetValues(XmGetXmScreen(XtScreen(list)), XmNhorizontalFontUnit, &fontUnit, nullptr);
    ASSERT_GT(fontUnit, 0);
    EXPECT_EQ(pixelWidth(window), 1320 * fontUnit / 100);
    EXPECT_LT(pixelWidth(list), pixelWidth(window));
    clickEntry(list, 2);
    EXPECT_EQ(selectedFlag(s, 42), 1);
    EXPECT_TRUE(hiddenItem(s, 6));
    destroy(s);
}

/* ---- Combo boxes ----------------------------------------------------------------------- */

using Combos = ActionTest;

/* A combo box (60) of entries 61 "Red", 62 "Green", 63 "Blue", each hiding its own label
** (5, 6, 8); the combo box itself disables label 7. The labels come first, so that the
** actions that run at creation reach them. */
void comboScreen(Screen &s, int32_t selected, int32_t userEntry) {
    void *col = column(s);
    for (int id : {5, 6, 7, 8}) s.add(col, Label, id, labelData("label"));
    void *combo = s.add(col, ComboBox, 60, comboBoxData(selected, userEntry));
    s.add(combo, ComboItem, 61, comboItemData("Red"));
    s.add(combo, ComboItem, 62, comboItemData("Green"));
    s.add(combo, ComboItem, 63, comboItemData("Blue"));
    s.addAction(61, 5, ACTION_HIDE);
    s.addAction(62, 6, ACTION_HIDE);
    s.addAction(63, 8, ACTION_HIDE);
    s.addAction(60, 7, ACTION_DISALLOW_INPUT);
}

GuiCombo *comboOf(const Screen &s, int32_t id) {
    return static_cast<GuiCombo *>(lastRecord(s.item(id))->combo);
}

ComboBoxData *comboData(const Screen &s, int32_t id) {
    return static_cast<ComboBoxData *>(s.item(id)->itemData);
}

std::string typedText(const Screen &s, int32_t id) {
    const char *text = comboData(s, id)->typedText;
    return text ? text : "<null>";
}

std::string fieldText(GuiCombo *combo) {
    char *text = XmTextFieldGetString(combo->wText);
    std::string out = text ? text : "";
    XtFree(text);
    return out;
}

bool editable(GuiCombo *combo) {
    Boolean on = False;
    XtVaGetValues(combo->wText, XmNeditable, &on, nullptr);
    return on == True;
}

/* Undoes what the combo box's own actions did at creation, so that a later run shows. */
void allowInputAgain(const Screen &s, int32_t id) {
    s.item(id)->disabled = 0;
    XtSetSensitive(outerWidget(s.item(id)), True);
}

TEST_P(Combos, TheStoredEntryIsChosenAtCreationAndRunsItsActions) {
    Screen s;
    comboScreen(s, 2, 0);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(widgetCount(s.item(60)), 4);
    EXPECT_EQ(lastRecord(s.item(60))->widgetKind, WIDGET_COMBO);
    EXPECT_EQ(fieldText(combo), "Green");
    EXPECT_EQ(GuiGetComboItemNumberSelected(combo), 2);
    EXPECT_EQ(comboData(s, 60)->selected, 2);
    EXPECT_EQ(typedText(s, 60), "Green");
    EXPECT_TRUE(hiddenItem(s, 6));
    EXPECT_TRUE(shownItem(s, 5));
    EXPECT_TRUE(disabledItem(s, 7)) << "the text change ran the combo box's own actions";
    EXPECT_TRUE(hasTrace("Combo item selected now 2"));
    EXPECT_FALSE(editable(combo));
    destroy(s);
}

TEST_P(Combos, PickingAnEntryWithThePointerRunsItsActionsAndRecordsItsPosition) {
    Screen s;
    comboScreen(s, 1, 0);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    ASSERT_TRUE(hiddenItem(s, 5));
    allowInputAgain(s, 7);

    clearTraces();
    click(combo->wButton);
    ASSERT_TRUE(pumpUntil([&] { return isViewable(combo->wList); }));
    clickEntry(combo->wList, 3);
    ASSERT_TRUE(pumpUntil([&] { return !isMapped(XtParent(combo->wList)); }))
        << "the pick closes the drop-down";
    EXPECT_EQ(fieldText(combo), "Blue");
    EXPECT_EQ(comboData(s, 60)->selected, 3);
    EXPECT_EQ(typedText(s, 60), "Blue");
    EXPECT_TRUE(hiddenItem(s, 8));
    EXPECT_TRUE(shownItem(s, 6)) << "only the chosen entry's actions";
    EXPECT_TRUE(disabledItem(s, 7));
    EXPECT_EQ(countTrace("Combo item selected now 3"), 1);
    destroy(s);
}

TEST_P(Combos, UpAndDownInTheFieldChooseEntriesAsThePointerDoes) {
    Screen s;
    comboScreen(s, 1, 0);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    focus(combo->wText);
    clearTraces();
    key(XK_Down);
    EXPECT_EQ(fieldText(combo), "Green");
    EXPECT_EQ(comboData(s, 60)->selected, 2);
    EXPECT_TRUE(hiddenItem(s, 6));
    key(XK_Down);
    EXPECT_EQ(comboData(s, 60)->selected, 3);
    EXPECT_TRUE(hiddenItem(s, 8));
    key(XK_Up);
    EXPECT_EQ(comboData(s, 60)->selected, 2);
    EXPECT_EQ(typedText(s, 60), "Green");
    EXPECT_EQ(countTrace("Combo item selected now 2"), 2);
    destroy(s);
}

TEST_P(Combos, TypedTextIsStoredAndRunsTheComboBoxsOwnActions) {
    Screen s;
    comboScreen(s, 1, 1);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    ASSERT_TRUE(editable(combo));
    allowInputAgain(s, 7);

    focus(combo->wText); /* selects the whole text, which the first key replaces */
    clearTraces();
    std::string typed;
    for (const char *c : {"B", "l", "u", "e"}) {
        type(c);
        typed += c;
        EXPECT_EQ(fieldText(combo), typed);
        EXPECT_EQ(typedText(s, 60), typed);
    }
    EXPECT_TRUE(disabledItem(s, 7));
    EXPECT_EQ(countTrace("Process DISALLOW INPUT action"), 4) << "once per keystroke";
    EXPECT_EQ(comboData(s, 60)->selected, 1) << "typing chooses no entry";
    EXPECT_FALSE(hasTraceContaining("Combo item selected")) << "even a text equal to an entry";
    EXPECT_TRUE(shownItem(s, 8));
    destroy(s);
}

TEST_P(Combos, ASelectionOutOfRangeWithoutUserEntryChoosesTheFirstEntry) {
    for (int32_t stored : {0, -3, 4}) {
        SCOPED_TRACE(stored);
        Screen s;
        comboScreen(s, stored, 0);
        show(s);
        GuiCombo *combo = comboOf(s, 60);
        EXPECT_EQ(fieldText(combo), "Red");
        EXPECT_EQ(GuiGetComboItemNumberSelected(combo), 1);
        EXPECT_EQ(comboData(s, 60)->selected, 1);
        EXPECT_TRUE(hiddenItem(s, 5));
        destroy(s);
        clearTraces();
    }
}

TEST_P(Combos, WithUserEntryAndNoStoredSelectionTheFieldStartsEmpty) {
    Screen s;
    comboScreen(s, 0, 1);
    show(s);
    GuiCombo *combo = comboOf(s, 60);
    EXPECT_EQ(fieldText(combo), "");
    EXPECT_EQ(typedText(s, 60), "");
    EXPECT_EQ(comboData(s, 60)->selected, 0);
    EXPECT_EQ(GuiGetComboItemNumberSelected(combo), 0) << "no entry is selected";
    EXPECT_FALSE(hasTraceContaining("Combo item selected"));
    for (int id : {5, 6, 8}) EXPECT_TRUE(shownItem(s, id)) << id;
    destroy(s);
}

TEST_P(Combos, EntriesWithoutTextOrOfOtherTypesDoNotCount) {
    Screen s;
    void *col = column(s);
    s.add(col, Label, 8, labelData("eight"));
    void *combo = s.add(col, ComboBox, 60, comboBoxData(2, 0));
    s.add(combo, ComboItem, 61, comboItemData("Red"));
    s.add(combo, ComboItem, 62, comboItemData(nullptr));
    s.add(combo, ListItem, 64, listItemData("a list entry"));
    s.add(combo, ComboItem, 63, comboItemData("Blue"));
    s.addAction(63, 8, ACTION_HIDE);
    show(s);
    GuiCombo *c = comboOf(s, 60);
    int count = 0;
    XtVaGetValues(c->wList, XmNitemCount, &count, nullptr);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(fieldText(c), "Blue");
    EXPECT_TRUE(hiddenItem(s, 8));
    EXPECT_NE(s.item(62)->guiData, nullptr);
    EXPECT_NE(s.item(64)->guiData, nullptr);
    destroy(s);
}

INSTANTIATE_TEST_SUITE_P(BothWays, Lists, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);
INSTANTIATE_TEST_SUITE_P(BothWays, Combos, ::testing::Values(Shown::AfterBuild, Shown::BeforeBuild),
                         shownName);

} // namespace
} // namespace xt
