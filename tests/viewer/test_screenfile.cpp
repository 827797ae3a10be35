/* test_screenfile.cpp - loading screen files into screen definition trees: every item
** type into its record, nesting, attachments, actions, and messages for bad files. */
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "kx.h"
#include "loaderfixture.h"
#include "screens.h"

namespace {

const char *kEveryType = R"({
  "jobId": 7, "title": "Every type", "width": 500, "height": 400,
  "items": [
    {"type": "GroupBox", "id": 1, "data": {"title": "Options"}},
    {"type": "TabManager", "id": 2, "data": {"unused": 3},
     "children": [{"type": "TabPage", "id": 3, "data": {"title": "First"}}]},
    {"type": "ComboBox", "id": 4,
     "data": {"selected": 2, "typedText": "Full", "userEntry": true, "columns": 12},
     "children": [{"type": "ComboItem", "id": 5, "data": {"text": "Full"}}]},
    {"type": "ListBox", "id": 6, "data": {"multiple": true},
     "children": [{"type": "ListItem", "id": 7, "data": {"text": "Disk", "selected": true}}]},
    {"type": "selectionItem", "id": 9, "data": {"label": "Verify", "set": true}},
    {"type": "RadioManager", "id": 10,
     "children": [{"type": "RadioButton", "id": 11, "data": {"label": "Tape", "set": 1}}]},
    {"type": "PushButton", "id": 12, "data": {"label": "OK"}},
    {"type": "EditBox", "id": 13, "data": {"maxLength": 64, "columns": 30, "rows": 1, "text": "/srv"}},
    {"type": "NumInput", "id": 14, "data": {"value": 30, "maximum": 365, "minimum": -1, "columns": 4}},
    {"type": "Label", "id": 19, "data": {"text": "Hello"}},
    {"type": "RowColManager", "id": 20, "data": {"columns": 3}},
    {"type": "DateInput", "id": 21, "data": {"date": 1774915200}},
    {"type": "TimeInput", "id": 22, "data": {"time": 63000}},
    {"type": "ChangePassword", "id": 23, "data": {"newPassword": null, "confirmation": "x"}},
    {"type": "GetPasswordBox", "id": 24,
     "data": {"columns": 16, "keyArg": 1234567890123, "encrypted": null}},
    {"type": "StackedTabManager", "id": 25},
    {"type": "ExtendedListBox", "id": 26, "data": {"multiple": false, "width": 10, "visible": 5}}
  ]
})";

TEST_F(LoaderTest, EveryItemTypeLoadsIntoItsRecordWithTagAndSignature) {
    load(kEveryType);
    EXPECT_EQ(screen.jobId, 7);
    EXPECT_EQ(screen.title, "Every type");
    EXPECT_EQ(screen.width, 500);
    EXPECT_EQ(screen.height, 400);
    EXPECT_TRUE(screen.warnings.empty());

    struct Expected { int32_t id; uint32_t type; uint32_t tag; const char *signature; };
    const Expected expected[] = {
        {1, GroupBox, GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE},
        {2, TabManager, GUI_TAG_TABMANAGER, GUI_TABMANAGER_SIGNATURE},
        {3, TabPage, GUI_TAG_TABPAGE, GUI_TABPAGE_SIGNATURE},
        {4, ComboBox, GUI_TAG_COMBOBOX, GUI_COMBOBOX_SIGNATURE},
        {5, ComboItem, GUI_TAG_COMBOITEM, GUI_COMBOITEM_SIGNATURE},
        {6, ListBox, GUI_TAG_LISTBOX, GUI_LISTBOX_SIGNATURE},
        {7, ListItem, GUI_TAG_LISTITEM, GUI_LISTITEM_SIGNATURE},
        {9, selectionItem, GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE},
        {10, RadioManager, GUI_TAG_RADIOMANAGER, GUI_RADIOMANAGER_SIGNATURE},
        {11, RadioButton, GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE},
        {12, PushButton, GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE},
        {13, EditBox, GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE},
        {14, NumInput, GUI_TAG_NUMINPUT, GUI_NUMINPUT_SIGNATURE},
        {19, Label, GUI_TAG_LABEL, GUI_LABEL_SIGNATURE},
        {20, RowColManager, GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE},
        {21, DateInput, GUI_TAG_DATEINPUT, GUI_DATEINPUT_SIGNATURE},
        {22, TimeInput, GUI_TAG_TIMEINPUT, GUI_TIMEINPUT_SIGNATURE},
        {23, ChangePassword, GUI_TAG_CHANGEPASSWORD, GUI_CHANGEPASSWORD_SIGNATURE},
        {24, GetPasswordBox, GUI_TAG_GETPASSWORD, GUI_GETPASSWORD_SIGNATURE},
        {25, StackedTabManager, GUI_TAG_TABMANAGER, GUI_TABMANAGER_SIGNATURE},
        {26, ExtendedListBox, GUI_TAG_EXTLISTBOX, GUI_EXTLISTBOX_SIGNATURE},
    };
    for (const Expected &e : expected) {
        SCOPED_TRACE("item " + std::to_string(e.id));
        ScreenItem *it = item(e.id);
        ASSERT_NE(it, nullptr);
        EXPECT_TRUE(ObjIsA(it, GUI_TAG_SCREEN_ITEM));
        EXPECT_STREQ(ObjGetSignature(it), GUI_SCREEN_ITEM_SIGNATURE);
        EXPECT_EQ(it->itemType, e.type);
        EXPECT_EQ(ObjGetTag(it->itemData), e.tag);
        EXPECT_STREQ(ObjGetSignature(it->itemData), e.signature);
        EXPECT_EQ(it->attachments, nullptr);
        EXPECT_EQ(it->actions, nullptr);
        EXPECT_EQ(it->hidden, 0);
        EXPECT_EQ(it->disabled, 0);
        EXPECT_EQ(it->guiData, nullptr);
    }
}

TEST_F(LoaderTest, DataFieldsHoldTheValuesOfTheFile) {
    load(kEveryType);
    EXPECT_STREQ(data<GroupBoxData>(1)->title, "Options");
    EXPECT_EQ(data<TabManagerData>(2)->unused, 3);
    EXPECT_STREQ(data<TabPageData>(3)->title, "First");
    auto *combo = data<ComboBoxData>(4);
    EXPECT_EQ(combo->selected, 2);
    EXPECT_STREQ(combo->typedText, "Full");
    EXPECT_EQ(combo->userEntry, 1);
    EXPECT_EQ(combo->columns, 12);
    EXPECT_STREQ(data<ComboItemData>(5)->text, "Full");
    EXPECT_EQ(data<ListBoxData>(6)->multiple, 1);
    EXPECT_STREQ(data<ListItemData>(7)->text, "Disk");
    EXPECT_EQ(data<ListItemData>(7)->selected, 1);
    EXPECT_STREQ(data<SelectionItemData>(9)->label, "Verify");
    EXPECT_EQ(data<SelectionItemData>(9)->set, 1);
    EXPECT_EQ(data<RadioManagerData>(10)->unused, 0);
    EXPECT_STREQ(data<RadioButtonData>(11)->label, "Tape");
    EXPECT_EQ(data<RadioButtonData>(11)->set, 1);
    EXPECT_STREQ(data<PushButtonData>(12)->label, "OK");
    auto *edit = data<EditBoxData>(13);
    EXPECT_EQ(edit->maxLength, 64);
    EXPECT_EQ(edit->columns, 30);
    EXPECT_EQ(edit->rows, 1);
    EXPECT_STREQ(edit->text, "/srv");
    auto *num = data<NumInputData>(14);
    EXPECT_EQ(num->value, 30);
    EXPECT_EQ(num->maximum, 365);
    EXPECT_EQ(num->minimum, -1);
    EXPECT_EQ(num->columns, 4);
    EXPECT_STREQ(data<LabelData>(19)->text, "Hello");
    EXPECT_EQ(data<RowColManagerData>(20)->columns, 3);
    EXPECT_EQ(data<DateInputData>(21)->date, 1774915200);
    EXPECT_EQ(data<TimeInputData>(22)->time, 63000);
    EXPECT_EQ(data<ChangePasswordData>(23)->newPassword, nullptr);
    EXPECT_STREQ(data<ChangePasswordData>(23)->confirmation, "x");
    auto *pwd = data<GetPasswordBoxData>(24);
    EXPECT_EQ(pwd->columns, 16);
    EXPECT_EQ(pwd->keyArg, static_cast<intptr_t>(1234567890123));
    EXPECT_EQ(pwd->encrypted, nullptr);
    auto *ext = data<ExtendedListBoxData>(26);
    EXPECT_EQ(ext->multiple, 0);
    EXPECT_EQ(ext->width, 10);
    EXPECT_EQ(ext->visible, 5);
}

TEST_F(LoaderTest, DatesAndTimesMayBeWrittenAsText) {
    load(R"({"items": [
      {"type": "DateInput", "id": 1, "data": {"date": "2026-03-31"}},
      {"type": "DateInput", "id": 2, "data": {"date": "now"}},
      {"type": "TimeInput", "id": 3, "data": {"time": "17:30"}},
      {"type": "TimeInput", "id": 4, "data": {"time": "08:05:09"}},
      {"type": "TimeInput", "id": 5, "data": {"time": "00:00"}},
      {"type": "TimeInput", "id": 6, "data": {"time": "now"}}]})");
    KxDateStruct day{2026, 3, 31, 0};
    int32_t midnight = 0;
    ASSERT_TRUE(TimeFromDate(&midnight, &day));
    EXPECT_EQ(data<DateInputData>(1)->date, midnight);
    EXPECT_EQ(data<DateInputData>(2)->date, 0);
    EXPECT_EQ(data<TimeInputData>(3)->time, 17 * 3600 + 30 * 60);
    EXPECT_EQ(data<TimeInputData>(4)->time, 8 * 3600 + 5 * 60 + 9);
    // 0 would mean "now": midnight is the next day's, which shows as 00:00 all the same.
    EXPECT_EQ(data<TimeInputData>(5)->time, 24 * 3600);
    EXPECT_EQ(data<TimeInputData>(6)->time, 0);
}

TEST_F(LoaderTest, ChildrenNestInFileOrder) {
    load(R"({"items": [
      {"type": "GroupBox", "id": 1, "data": {"title": "Where"}, "children": [
        {"type": "RowColManager", "id": 2, "data": {"columns": 2}, "children": [
          {"type": "Label", "id": 3, "data": {"text": "Path"}},
          {"type": "EditBox", "id": 4},
          {"type": "Label", "id": 5, "data": {"text": "Host"}}]}]},
      {"type": "PushButton", "id": 6, "data": {"label": "OK"}, "children": null}]})");
    void *tree = screen.tree();
    EXPECT_EQ(TreeNodeCount(tree), 6);
    void *group = TreeFirstNode(tree);
    EXPECT_EQ(xt::itemOf(group)->itemId, 1);
    void *button = group;
    ASSERT_TRUE(TreeNextSibling(&button, button));
    EXPECT_EQ(xt::itemOf(button)->itemId, 6);
    EXPECT_FALSE(TreeNodeHasParent(button));

    void *rowcol = TreeNodeFirstChild(group);
    EXPECT_EQ(xt::itemOf(rowcol)->itemId, 2);
    EXPECT_EQ(TreeNodeChildCount(group), 1);
    ASSERT_EQ(TreeNodeChildCount(rowcol), 3);
    std::vector<int32_t> order;
    for (void *child = TreeNodeFirstChild(rowcol); child; TreeNextSibling(&child, child)) {
        order.push_back(xt::itemOf(child)->itemId);
        EXPECT_EQ(TreeNodeParent(child), rowcol);
    }
    EXPECT_EQ(order, (std::vector<int32_t>{3, 4, 5}));
}

TEST_F(LoaderTest, FlagsAndDataPresenceMirrorTheRecord) {
    load(R"({"items": [
      {"type": "Label", "id": 1, "hidden": true, "disabled": 1, "data": {"text": "a"}},
      {"type": "EditBox", "id": 2, "hidden": false, "disabled": false},
      {"type": "Label", "id": 3, "data": null},
      {"type": 15, "id": 4},
      {"type": 1, "id": 5, "data": {"title": "raw"}},
      {"type": 0, "id": 6, "data": null}]})");
    EXPECT_EQ(item(1)->hidden, 1);
    EXPECT_EQ(item(1)->disabled, 1);
    EXPECT_EQ(item(2)->hidden, 0);
    // Data left out: the type's record with every field zero.
    auto *edit = data<EditBoxData>(2);
    ASSERT_TRUE(ObjIsA(edit, GUI_TAG_EDITBOX));
    EXPECT_EQ(edit->rows, 0);
    EXPECT_EQ(edit->text, nullptr);
    // Data null: no record at all.
    EXPECT_EQ(item(3)->itemData, nullptr);
    // Raw codes: unknown ones have no record, known ones the type's record.
    EXPECT_EQ(item(4)->itemType, 15u);
    EXPECT_EQ(item(4)->itemData, nullptr);
    EXPECT_EQ(item(5)->itemType, static_cast<uint32_t>(GroupBox));
    EXPECT_STREQ(data<GroupBoxData>(5)->title, "raw");
    EXPECT_EQ(item(6)->itemType, 0u);
}

TEST_F(LoaderTest, AttachmentsAreSetPerSide) {
    load(R"({"items": [
      {"type": "Label", "id": 1, "data": {"text": "a"}, "attach": {
        "left": {"kind": "position", "position": 10, "offset": 4},
        "top": {"kind": "item", "item": 2, "offset": 5},
        "right": null,
        "bottom": {"kind": "centre", "offset": -3}}},
      {"type": "Label", "id": 2, "data": {"text": "b"}},
      {"type": "Label", "id": 3, "data": {"text": "c"}, "attach": {}},
      {"type": "Label", "id": 4, "data": {"text": "d"}, "attach": null},
      {"type": "Label", "id": 5, "data": {"text": "e"},
       "attach": {"right": {"kind": 9, "position": 1, "item": 2, "offset": 3}}}]})");
    ScreenAttachment **sides = item(1)->attachments;
    ASSERT_NE(sides, nullptr);
    ASSERT_NE(sides[ATTACH_LEFT], nullptr);
    EXPECT_EQ(sides[ATTACH_LEFT]->kind, ATTACH_POSITION);
    EXPECT_EQ(sides[ATTACH_LEFT]->position, 10);
    EXPECT_EQ(sides[ATTACH_LEFT]->offset, 4);
    EXPECT_EQ(sides[ATTACH_RIGHT], nullptr);
    ASSERT_NE(sides[ATTACH_TOP], nullptr);
    EXPECT_EQ(sides[ATTACH_TOP]->kind, ATTACH_ITEM);
    EXPECT_EQ(sides[ATTACH_TOP]->itemId, 2);
    EXPECT_EQ(sides[ATTACH_TOP]->offset, 5);
    ASSERT_NE(sides[ATTACH_BOTTOM], nullptr);
    EXPECT_EQ(sides[ATTACH_BOTTOM]->kind, ATTACH_CENTRE);
    EXPECT_EQ(sides[ATTACH_BOTTOM]->offset, -3);

    EXPECT_EQ(item(2)->attachments, nullptr); // absent: the builder's own attachments
    ASSERT_NE(item(3)->attachments, nullptr); // empty: four null sides, all detached
    for (int side = 0; side < 4; ++side) EXPECT_EQ(item(3)->attachments[side], nullptr);
    EXPECT_EQ(item(4)->attachments, nullptr);

    ScreenAttachment *raw = item(5)->attachments[ATTACH_RIGHT];
    ASSERT_NE(raw, nullptr);
    EXPECT_EQ(raw->kind, 9);
    EXPECT_EQ(raw->position, 1);
    EXPECT_EQ(raw->itemId, 2);
    EXPECT_EQ(raw->offset, 3);
}

TEST_F(LoaderTest, ActionsKeepTheirOrderAndCodes) {
    load(R"({"items": [
      {"type": "PushButton", "id": 1, "data": {"label": "Go"}, "actions": [
        {"kind": "HIDE", "target": 5}, {"kind": "SHOW", "target": 6},
        {"kind": "ALLOW_INPUT", "target": 7}, {"kind": "DISALLOW_INPUT", "target": 8},
        {"kind": "SET", "target": 9}, {"kind": "CLEAR", "target": 10},
        {"kind": 5, "target": 11}, {"kind": "CLOSE", "target": 1}]},
      {"type": "PushButton", "id": 2, "data": {"label": "None"}, "actions": []},
      {"type": "PushButton", "id": 3, "data": {"label": "Null"}, "actions": null}]})");
    struct Pair { int32_t target, kind; };
    std::vector<Pair> got;
    ListWalk(item(1)->actions, [](void *ctx, void *element) {
        auto *a = static_cast<ScreenAction *>(ListElementItem(element));
        EXPECT_TRUE(ObjIsA(a, GUI_TAG_ACTION));
        EXPECT_STREQ(ObjGetSignature(a), GUI_ACTION_SIGNATURE);
        static_cast<std::vector<Pair> *>(ctx)->push_back({a->targetId, a->kind});
        return 1;
    }, &got);
    const std::vector<std::pair<int32_t, int32_t>> expected = {
        {5, ACTION_HIDE}, {6, ACTION_SHOW}, {7, ACTION_ALLOW_INPUT}, {8, ACTION_DISALLOW_INPUT},
        {9, ACTION_SET}, {10, ACTION_CLEAR}, {11, 5}, {1, ACTION_CLOSE}};
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(got[i].target, expected[i].first) << "action " << i;
        EXPECT_EQ(got[i].kind, expected[i].second) << "action " << i;
    }
    ASSERT_TRUE(ObjIsA(item(2)->actions, KX_TAG_LIST));
    EXPECT_EQ(ListCount(item(2)->actions), 0);
    EXPECT_EQ(item(3)->actions, nullptr);
}

TEST_F(LoaderTest, SuspiciousReferencesLoadWithWarnings) {
    load(R"({"items": [
      {"type": "PushButton", "id": 1, "data": {"label": "Go"},
       "actions": [{"kind": "HIDE", "target": 99}]},
      {"type": "Label", "id": 1, "data": {"text": "twin"},
       "attach": {"top": {"kind": "item", "item": 42}}}]})");
    EXPECT_EQ(screen.warnings,
              (std::vector<std::string>{
                  "items[1].id: id 1 is also used by items[0].id; actions and attachments find "
                  "the first",
                  "items[0].actions[0].target: no item has id 99",
                  "items[1].attach.top.item: no item has id 42"}));
}

TEST_F(LoaderTest, SyntaxErrorsNameLineAndColumn) {
    EXPECT_EQ(refuse("{\n  \"items\": [\n    {\"type\": \"Label\", \"id\": 1,}\n  ]\n}"),
              "line 3, column 31: syntax error while parsing object key - unexpected '}'; "
              "expected string literal");
    EXPECT_EQ(refuse(""),
              "line 1, column 1: syntax error while parsing value - unexpected end of input; "
              "expected '[', '{', or a literal");
    EXPECT_EQ(refuse("{\"items\": []} x"),
              "line 1, column 15: syntax error while parsing value - invalid literal; last read: "
              "'\"items\": []} x'; expected end of input");
}

TEST_F(LoaderTest, SemanticErrorsNameThePathAndTheReason) {
    struct Case { const char *text; const char *error; };
    const Case cases[] = {
        {R"([1])", "top level: expected an object, got an array"},
        {R"({"jobId": 1})", "top level: missing field \"items\""},
        {R"({"items": [], "colour": "red"})",
         "colour: unknown field; a screen has jobId, title, width, height, items, comment"},
        {R"({"jobId": "7", "items": []})", "jobId: expected an integer, got a string"},
        {R"({"items": {}})", "items: expected an array, got an object"},
        {R"({"items": [{"type": "Lable", "id": 1}]})", "items[0].type: unknown item type \"Lable\""},
        {R"({"items": [{"type": "label", "id": 1}]})",
         "items[0].type: unknown item type \"label\" (did you mean \"Label\"?)"},
        {R"({"items": [{"type": true, "id": 1}]})",
         "items[0].type: expected an item type name or code, got a boolean"},
        {R"({"items": [{"id": 1}]})", "items[0]: missing field \"type\""},
        {R"({"items": [{"type": "Label"}]})", "items[0]: missing field \"id\""},
        {R"({"items": [{"type": "Label", "id": "one"}]})",
         "items[0].id: expected an integer, got a string"},
        {R"({"items": [{"type": "Label", "id": 1.5}]})",
         "items[0].id: expected an integer, got a number with a fraction"},
        {R"({"items": [{"type": "Label", "id": 4294967296}]})",
         "items[0].id: the integer 4294967296 is out of range (-2147483648 to 2147483647)"},
        {R"({"items": [{"type": "Label", "id": 1, "hidden": "yes"}]})",
         "items[0].hidden: expected true, false or an integer, got a string"},
        {R"({"items": [{"type": "Label", "id": 1, "colour": "red"}]})",
         "items[0].colour: unknown field; an item has type, id, hidden, disabled, data, "
         "attach, actions, children, comment"},
        {R"({"items": [{"type": "GroupBox", "id": 1, "children": [
             {"type": "Label", "id": 2},
             {"type": "RowColManager", "id": 3, "data": {"columns": "three"}}]}]})",
         "items[0].children[1].data.columns: expected an integer, got a string"},
        {R"({"items": [{"type": "GroupBox", "id": 1, "data": {"titel": "x"}}]})",
         "items[0].data.titel: unknown field; the data of a GroupBox has title"},
        {R"({"items": [{"type": "Label", "id": 1, "data": {"text": 5}}]})",
         "items[0].data.text: expected a string or null, got an integer"},
        {R"({"items": [{"type": "Label", "id": 1, "data": "Hello"}]})",
         "items[0].data: expected an object, got a string"},
        {R"({"items": [{"type": 15, "id": 1, "data": {}}]})",
         "items[0].data: item type code 15 has no item data record; leave \"data\" out or null"},
        {R"({"items": [{"type": "GroupBox", "id": 1, "data": {"title": "a", "title": "b"}}]})",
         "items[0].data.title: duplicate field"},
        {R"({"items": [{"type": "DateInput", "id": 1, "data": {"date": "2026-02-30"}}]})",
         "items[0].data.date: expected a date as \"YYYY-MM-DD\", \"now\" or seconds, got "
         "\"2026-02-30\""},
        {R"({"items": [{"type": "TimeInput", "id": 1, "data": {"time": "25:00"}}]})",
         "items[0].data.time: expected a time as \"HH:MM\", \"HH:MM:SS\", \"now\" or seconds, "
         "got \"25:00\""},
        {R"({"items": [{"type": "PushButton", "id": 1, "actions": [
             {"kind": "HIDE", "target": 2}, {"kind": "HIDDEN", "target": 2}]}]})",
         "items[0].actions[1].kind: unknown action kind \"HIDDEN\" (known: SHOW, HIDE, "
         "ALLOW_INPUT, DISALLOW_INPUT, SET, CLEAR, CLOSE)"},
        {R"({"items": [{"type": "PushButton", "id": 1, "actions": [{"kind": "HIDE"}]}]})",
         "items[0].actions[0]: missing field \"target\""},
        {R"({"items": [{"type": "PushButton", "id": 1, "actions": {"kind": "HIDE"}}]})",
         "items[0].actions: expected an array, got an object"},
        {R"({"items": [{"type": "Label", "id": 1, "attach": {"middle": null}}]})",
         "items[0].attach.middle: unknown attachment side; sides are left, right, top, bottom"},
        {R"({"items": [{"type": "Label", "id": 1, "attach": {"left": {"kind": "edge"}}}]})",
         "items[0].attach.left.kind: unknown attachment kind \"edge\" (known: centre, "
         "position, item)"},
        {R"({"items": [{"type": "Label", "id": 1, "attach": {"left": {"kind": "position"}}}]})",
         "items[0].attach.left: missing field \"position\""},
        {R"({"items": [{"type": "Label", "id": 1, "attach": {"top": {"kind": "item"}}}]})",
         "items[0].attach.top: missing field \"item\""},
        {R"({"items": [{"type": "Label", "id": 1,
             "attach": {"left": {"kind": "centre", "position": 50}}}]})",
         "items[0].attach.left.position: does not apply to a centre attachment"},
        {R"({"items": [{"type": "Label", "id": 1, "attach": {"left": {"kind": "centre", "of": 1}}}]})",
         "items[0].attach.left.of: unknown field; an attachment has kind, position, item, offset"},
        {R"({"items": [], "width": -5})", "width: the integer -5 is out of range (0 to 32767)"},
        {R"({"items": [], "comment": 5})", "comment: expected a string, got an integer"},
        {R"({"items": [{"type": "Label", "id": 1, "comment": {}}]})",
         "items[0].comment: expected a string, got an object"},
    };
    for (const Case &c : cases) EXPECT_EQ(refuse(c.text), c.error) << c.text;
}

TEST_F(LoaderTest, WhatIsBeyondTheLimitsIsRefusedWithItsPlace) {
    std::string manyItems = R"({"items": [)";
    for (size_t i = 0; i <= screenfile::kMaxItems; ++i)
        manyItems += std::string(i ? "," : "") + R"({"type": "Label", "id": 1})";
    struct Case { std::string text, error; };
    const Case cases[] = {
        {R"({"items": [], "x": 1e400})", "line 1, column 20: the number 1e400 is beyond the range of a double"},
        {"{\"items\": [],\n \"x\": " + std::string(1000, '7') + "}",
         "line 2, column 7: the number 777777777777777777777777... is beyond the range of a double"},
        {std::string("{\"items\": []}\0garbage", 22), "line 1, column 14: a NUL byte; a screen file is text"},
        {R"({"items": )" + repeated(200000, "[") + repeated(200000, "]") + "}",
         "items" + repeated(159, "[0]") + ": nested deeper than 160 arrays and objects"},
        {groupChain(12000), "items[0]" + repeated(79, ".children[0]") + ": nested deeper than 160 arrays and objects"},
        {groupChain(screenfile::kMaxItemDepth + 1),
         "items[0]" + repeated(screenfile::kMaxItemDepth, ".children[0]") + ": items nested deeper than 64 levels"},
        {manyItems + "]}", "items[5000]: more than 5000 items in the screen"},
        {R"({"items": [{"type": "Label", "id": 1, "data": {"text": ")" + std::string(4097, 'x') + "\"}}]}",
         "items[0].data.text: a text of 4097 bytes; texts are at most 4096"},
        {"{\"items\": [], \"" + std::string(4097, 'k') + "\": 1}", "top level: a text of 4097 bytes; texts are at most 4096"},
    };
    for (const Case &c : cases) EXPECT_EQ(refuse(c.text), c.error) << c.text.substr(0, 80);
    load(groupChain(screenfile::kMaxItemDepth));
}

TEST_F(LoaderTest, FailureLateInABigTreeReleasesWhatWasBuilt) {
    const int64_t objectsBefore = ObjLiveCount();
    std::string error;
    EXPECT_FALSE(screenfile::parse(R"({"items": [
      {"type": "GroupBox", "id": 1, "data": {"title": "t"}, "children": [
        {"type": "ComboBox", "id": 2, "data": {"typedText": "x"}, "children": [
          {"type": "ComboItem", "id": 3, "data": {"text": "a"}}]},
        {"type": "PushButton", "id": 4, "data": {"label": "b"},
         "actions": [{"kind": "HIDE", "target": 1}],
         "attach": {"left": {"kind": "position", "position": 5}}}]},
      {"type": "Label", "id": 5, "data": {"text": "c"},
       "actions": [{"kind": "SHOW", "target": 1}, {"kind": "SHOUT", "target": 1}]}]})",
                                   screen, error));
    EXPECT_EQ(error, "items[1].actions[1].kind: unknown action kind \"SHOUT\" (known: SHOW, HIDE, "
                     "ALLOW_INPUT, DISALLOW_INPUT, SET, CLEAR, CLOSE)");
    EXPECT_EQ(screen.tree(), nullptr);
    EXPECT_TRUE(screen.warnings.empty());
    EXPECT_EQ(ObjLiveCount(), objectsBefore);
}

TEST_F(LoaderTest, ParsingAgainReplacesTheScreenAndTakeHandsOverTheTree) {
    load(R"({"jobId": 1, "title": "first", "items": [{"type": "Label", "id": 1}]})");
    load(R"({"jobId": 2, "items": [{"type": "Label", "id": 2}, {"type": "Label", "id": 3}]})");
    EXPECT_EQ(screen.jobId, 2);
    EXPECT_EQ(screen.title, "");
    EXPECT_EQ(TreeNodeCount(screen.tree()), 2);

    void *tree = screen.take();
    EXPECT_EQ(screen.tree(), nullptr);
    EXPECT_EQ(ObjGetRefCount(tree), 1);
    ObjReleaseInternal(&tree);
}

/* The ```json blocks of the format's documentation, in order. */
std::vector<std::string> documentedExamples() {
    std::ifstream in(XCV_SOURCE_DIR "/docs/screen-format.md");
    std::stringstream text;
    text << in.rdbuf();
    std::vector<std::string> blocks;
    const std::string doc = text.str(), open = "```json\n", close = "```";
    for (size_t at = doc.find(open); at != std::string::npos; at = doc.find(open, at)) {
        at += open.size();
        size_t end = doc.find(close, at);
        blocks.push_back(doc.substr(at, end - at));
        at = end;
    }
    return blocks;
}

TEST_F(LoaderTest, TheDocumentedExamplesAreWhatTheProgramReadsAndWrites) {
    std::vector<std::string> blocks = documentedExamples();
    ASSERT_EQ(blocks.size(), 2u);
    load(blocks[0]);
    EXPECT_TRUE(screen.warnings.empty());
    EXPECT_EQ(item(3)->itemType, static_cast<uint32_t>(PushButton));
    // The answer sample has the shape that answers() writes.
    nlohmann::ordered_json answer = nlohmann::ordered_json::parse(blocks[1]);
    std::vector<std::string> keys;
    for (const auto &field : answer.items()) keys.push_back(field.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"jobId", "closedBy", "values"}));
    for (const auto &value : answer["values"].items())
        EXPECT_EQ(value.value().begin().key(), "type") << value.key();
}

} // namespace
