/* test_screenfile.cpp - loading screen files into screen definition trees: every item
** type into its record, nesting, attachments, actions, and messages for bad files. */
#include <fstream>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "viewerfixture.h"

namespace {

const char *kEveryType = R"({"jobId": 7, "title": "Every type", "width": 500, "height": 400,
  "items": [{"type": "GroupBox", "id": 1},
    {"type": "TabManager", "id": 2, "children": [{"type": "TabPage", "id": 3}]},
    {"type": "ComboBox", "id": 4, "data": {"userEntry": true},
     "children": [{"type": "ComboItem", "id": 5}]},
    {"type": "ListBox", "id": 6, "children": [{"type": "ListItem", "id": 7}]},
    {"type": "selectionItem", "id": 9}, {"type": "PushButton", "id": 12},
    {"type": "RadioManager", "id": 10,
     "children": [{"type": "RadioButton", "id": 11, "data": {"label": "Tape", "set": 1}}]},
    {"type": "EditBox", "id": 13, "data": {"text": "/srv"}},
    {"type": "NumInput", "id": 14, "data": {"minimum": -1}}, {"type": "Label", "id": 19},
    {"type": "RowColManager", "id": 20}, {"type": "DateInput", "id": 21, "data": {"date": 1774915200}},
    {"type": "TimeInput", "id": 22, "data": {"time": 63000}},
    {"type": "ChangePassword", "id": 23, "data": {"newPassword": null, "confirmation": "x"}},
    {"type": "GetPasswordBox", "id": 24, "data": {"keyArg": 1234567890123, "encrypted": null}},
    {"type": "StackedTabManager", "id": 25},
    {"type": "ExtendedListBox", "id": 26, "data": {"multiple": false}},
    {"type": "DateInput", "id": 30, "data": {"date": "2026-03-31"}},
    {"type": "DateInput", "id": 31, "data": {"date": "now"}},
    {"type": "TimeInput", "id": 32, "data": {"time": "17:30"}},
    {"type": "TimeInput", "id": 33, "data": {"time": "08:05:09"}},
    {"type": "TimeInput", "id": 34, "data": {"time": "00:00"}},
    {"type": "TimeInput", "id": 35, "data": {"time": "now"}},
    {"type": "Label", "id": 40, "hidden": true, "disabled": 1, "data": null},
    {"type": "EditBox", "id": 41, "hidden": false, "disabled": false},
    {"type": 15, "id": 42}, {"type": 1, "id": 43, "data": {"title": "raw"}},
    {"type": 0, "id": 44, "data": null}]})";

TEST_F(LoaderTest, EveryItemTypeLoadsIntoItsRecord) {
    load(kEveryType);
    EXPECT_EQ(std::make_tuple(screen.jobId, screen.title, screen.width, screen.height),
              std::make_tuple(7, std::string("Every type"), 500, 400));
    EXPECT_TRUE(screen.warnings.empty());
    struct Row { int32_t id; uint32_t type, tag; const char *signature; };
#define ROW(id, type, record) {id, type, GUI_TAG_##record, GUI_##record##_SIGNATURE}
    const Row rows[] = {
        ROW(1, GroupBox, GROUPBOX), ROW(2, TabManager, TABMANAGER), ROW(3, TabPage, TABPAGE),
        ROW(4, ComboBox, COMBOBOX), ROW(5, ComboItem, COMBOITEM), ROW(6, ListBox, LISTBOX),
        ROW(7, ListItem, LISTITEM), ROW(9, selectionItem, SELECTION),
        ROW(10, RadioManager, RADIOMANAGER), ROW(11, RadioButton, RADIOBUTTON),
        ROW(12, PushButton, PUSHBUTTON), ROW(13, EditBox, EDITBOX), ROW(14, NumInput, NUMINPUT),
        ROW(19, Label, LABEL), ROW(20, RowColManager, ROWCOL), ROW(21, DateInput, DATEINPUT),
        ROW(22, TimeInput, TIMEINPUT), ROW(23, ChangePassword, CHANGEPASSWORD),
        ROW(24, GetPasswordBox, GETPASSWORD), ROW(25, StackedTabManager, TABMANAGER),
        ROW(26, ExtendedListBox, EXTLISTBOX),
        ROW(41, EditBox, EDITBOX), // data left out: the type's record, all zero
        ROW(43, GroupBox, GROUPBOX)}; // a type by its code
#undef ROW
    for (const Row &row : rows) {
        SCOPED_TRACE("item " + std::to_string(row.id));
        ScreenItem *it = item(row.id);
        ASSERT_NE(it, nullptr);
        EXPECT_EQ(it->itemType, row.type);
        EXPECT_TRUE(ObjIsOfKind(it->itemData, row.tag, row.signature));
        EXPECT_EQ(std::make_tuple(it->hidden, it->disabled, it->attachments, it->actions),
                  std::make_tuple(0, 0, nullptr, nullptr));
    }
    // Data null, or a code without a record: no record at all.
    for (int32_t id : {40, 42, 44}) EXPECT_EQ(item(id)->itemData, nullptr) << id;
    EXPECT_EQ(std::make_pair(item(40)->hidden, item(40)->disabled), std::make_pair(1, 1));
}

/* One field of each kind (the records' fields are found by name, so one of a kind shows
** that kind's conversion), and dates and times written as text. */
TEST_F(LoaderTest, DataFieldsHoldTheValuesOfTheFile) {
    load(kEveryType);
    KxDateStruct day{2026, 3, 31, 0};
    int32_t midnight = 0;
    ASSERT_TRUE(TimeFromDate(&midnight, &day));
    const std::pair<int64_t, int64_t> numbers[] = {
        {data<NumInputData>(14)->minimum, -1}, {data<ComboBoxData>(4)->userEntry, 1},
        {data<RadioButtonData>(11)->set, 1}, {data<ExtendedListBoxData>(26)->multiple, 0},
        {data<EditBoxData>(41)->rows, 0},
        {data<GetPasswordBoxData>(24)->keyArg, 1234567890123},
        {data<DateInputData>(21)->date, 1774915200}, {data<TimeInputData>(22)->time, 63000},
        {data<DateInputData>(30)->date, midnight}, {data<DateInputData>(31)->date, 0},
        {data<TimeInputData>(32)->time, 17 * 3600 + 30 * 60},
        {data<TimeInputData>(33)->time, 8 * 3600 + 5 * 60 + 9},
        // 0 would mean "now": midnight is the next day's, which shows as 00:00 all the same.
        {data<TimeInputData>(34)->time, 24 * 3600}, {data<TimeInputData>(35)->time, 0}};
    for (size_t i = 0; i < std::size(numbers); ++i)
        EXPECT_EQ(numbers[i].first, numbers[i].second) << "number " << i;
    EXPECT_STREQ(data<EditBoxData>(13)->text, "/srv");
    EXPECT_STREQ(data<GroupBoxData>(43)->title, "raw");
    EXPECT_EQ(data<ChangePasswordData>(23)->newPassword, nullptr);
}

TEST_F(LoaderTest, ChildrenNestInFileOrder) {
    load(R"({"items": [
      {"type": "GroupBox", "id": 1, "data": {"title": "Where"}, "children": [
        {"type": "RowColManager", "id": 2, "data": {"columns": 2}, "children": [
          {"type": "Label", "id": 3, "data": {"text": "Path"}},
          {"type": "EditBox", "id": 4},
          {"type": "Label", "id": 5, "data": {"text": "Host"}}]}]},
      {"type": "PushButton", "id": 6, "data": {"label": "OK"}, "children": null}]})");
    std::vector<std::pair<int32_t, int32_t>> idAndParent; // in pre-order
    TreeWalk(screen.tree(), [](void *ctx, void *node) {
        ScreenItem *parent = screenfile::itemOf(TreeNodeParent(node));
        static_cast<decltype(idAndParent) *>(ctx)->push_back(
            {screenfile::itemOf(node)->itemId, parent ? parent->itemId : 0});
        return 1;
    }, &idAndParent, 0);
    EXPECT_EQ(idAndParent, (decltype(idAndParent){{1, 0}, {2, 1}, {3, 2}, {4, 2}, {5, 2}, {6, 0}}));
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
    // Absent or null: the builder's own attachments; empty: four null sides, all detached.
    EXPECT_EQ(item(2)->attachments, nullptr);
    EXPECT_EQ(item(4)->attachments, nullptr);
    using Side = std::tuple<int32_t, int32_t, int32_t, int32_t>; // kind, position, item, offset
    const Side none{-1, 0, 0, 0};
    const std::tuple<int32_t, int32_t, Side> rows[] = {
        {1, ATTACH_LEFT, {ATTACH_POSITION, 10, 0, 4}}, {1, ATTACH_RIGHT, none},
        {1, ATTACH_TOP, {ATTACH_ITEM, 0, 2, 5}}, {1, ATTACH_BOTTOM, {ATTACH_CENTRE, 0, 0, -3}},
        {3, ATTACH_LEFT, none}, {3, ATTACH_RIGHT, none}, {3, ATTACH_TOP, none},
        {3, ATTACH_BOTTOM, none}, {5, ATTACH_RIGHT, {9, 1, 2, 3}}};
    for (const auto &[id, side, expected] : rows) {
        ASSERT_NE(item(id)->attachments, nullptr) << id;
        const ScreenAttachment *a = item(id)->attachments[side];
        const Side got = a ? Side{a->kind, a->position, a->itemId, a->offset} : none;
        EXPECT_EQ(got, expected)
            << "item " << id << " side " << side;
    }
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
    std::vector<std::pair<int32_t, int32_t>> got; // target, kind
    ListWalk(item(1)->actions, [](void *ctx, void *element) {
        auto *a = static_cast<ScreenAction *>(ListElementItem(element));
        EXPECT_TRUE(ObjIsOfKind(a, GUI_TAG_ACTION, GUI_ACTION_SIGNATURE));
        static_cast<decltype(got) *>(ctx)->push_back({a->targetId, a->kind});
        return 1;
    }, &got);
    EXPECT_EQ(got, (decltype(got){{5, ACTION_HIDE}, {6, ACTION_SHOW}, {7, ACTION_ALLOW_INPUT},
                                  {8, ACTION_DISALLOW_INPUT}, {9, ACTION_SET}, {10, ACTION_CLEAR},
                                  {11, 5}, {1, ACTION_CLOSE}}));
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

TEST_F(LoaderTest, BadFilesAreRefusedWithThePlaceAndTheReason) {
    struct Case { std::string text, error; };
    std::vector<Case> cases = {
        {"{\n  \"items\": [\n    {\"type\": \"Label\", \"id\": 1,}\n  ]\n}",
         "line 3, column 31: syntax error while parsing object key - unexpected '}'; "
         "expected string literal"},
        {R"([1])", "top level: expected an object, got an array"},
        {R"({"items": [], "colour": "red"})",
         "colour: unknown field; a screen has jobId, title, width, height, items, comment"},
        {R"({"items": [], "width": -5})", "width: the integer -5 is out of range (0 to 32767)"}};
    // One item each, and the rest of the place and reason after "items[0]".
    const std::pair<std::string, std::string> items[] = {
        {R"("type": "label", "id": 1)", ".type: unknown item type \"label\" (did you mean \"Label\"?)"},
        {R"("type": true, "id": 1)", ".type: expected an item type name or code, got a boolean"},
        {R"("id": 1)", ": missing field \"type\""},
        {R"("type": "Label", "id": "one")", ".id: expected an integer, got a string"},
        {R"("type": "Label", "id": 1.5)", ".id: expected an integer, got a number with a fraction"},
        {R"("type": "Label", "id": 1, "hidden": "yes")",
         ".hidden: expected true, false or an integer, got a string"},
        {R"("type": "GroupBox", "id": 1, "children": [{"type": "Label", "id": 2},
             {"type": "RowColManager", "id": 3, "data": {"columns": "three"}}])",
         ".children[1].data.columns: expected an integer, got a string"},
        {R"("type": "GroupBox", "id": 1, "data": {"titel": "x"})",
         ".data.titel: unknown field; the data of a GroupBox has title"},
        {R"("type": "Label", "id": 1, "data": {"text": 5})",
         ".data.text: expected a string or null, got an integer"},
        {R"("type": 15, "id": 1, "data": {})",
         ".data: item type code 15 has no item data record; leave \"data\" out or null"},
        {R"("type": "GroupBox", "id": 1, "data": {"title": "a", "title": "b"})",
         ".data.title: duplicate field"},
        {R"("type": "DateInput", "id": 1, "data": {"date": "2026-02-30"})",
         ".data.date: expected a date as \"YYYY-MM-DD\", \"now\" or seconds, got \"2026-02-30\""},
        {R"("type": "TimeInput", "id": 1, "data": {"time": "25:00"})", ".data.time: expected a "
         "time as \"HH:MM\", \"HH:MM:SS\", \"now\" or seconds, got \"25:00\""},
        {R"("type": "PushButton", "id": 1, "actions": {"kind": "HIDE"})",
         ".actions: expected an array, got an object"},
        {R"("type": "Label", "id": 1, "attach": {"middle": null})",
         ".attach.middle: unknown attachment side; sides are left, right, top, bottom"},
        {R"("type": "Label", "id": 1, "attach": {"left": {"kind": "edge"}})",
         ".attach.left.kind: unknown attachment kind \"edge\" (known: centre, position, item)"},
        {R"("type": "Label", "id": 1, "attach": {"left": {"kind": "position"}})",
         ".attach.left: missing field \"position\""},
        {R"("type": "Label", "id": 1, "attach": {"left": {"kind": "centre", "position": 50}})",
         ".attach.left.position: does not apply to a centre attachment"},
        // Late in a big tree: what was built is released (the fixture's leak check).
        {R"("type": "GroupBox", "id": 1, "data": {"title": "t"}, "children": [
            {"type": "ComboBox", "id": 2, "data": {"typedText": "x"}, "children": [
              {"type": "ComboItem", "id": 3, "data": {"text": "a"}}]},
            {"type": "PushButton", "id": 4, "data": {"label": "b"},
             "actions": [{"kind": "HIDE", "target": 1}, {"kind": "SHOUT", "target": 1}],
             "attach": {"left": {"kind": "position", "position": 5}}}])",
         ".children[1].actions[1].kind: unknown action kind \"SHOUT\" (known: SHOW, HIDE, "
         "ALLOW_INPUT, DISALLOW_INPUT, SET, CLEAR, CLOSE)"}};
    for (const auto &[item, error] : items)
        cases.push_back({R"({"items": [{)" + item + "}]}", "items[0]" + error});
    for (const Case &c : cases) {
        EXPECT_EQ(refuse(c.text), c.error) << c.text;
        EXPECT_TRUE(screen.warnings.empty()) << c.text;
    }
}

TEST_F(LoaderTest, WhatIsBeyondTheLimitsIsRefusedWithItsPlace) {
    std::string manyItems = R"({"items": [)";
    for (size_t i = 0; i <= screenfile::kMaxItems; ++i)
        manyItems += std::string(i ? "," : "") + R"({"type": "Label", "id": 1})";
    struct Case { std::string text, error; };
    const Case cases[] = {
        {R"({"items": [], "x": 1e400})",
         "line 1, column 20: the number 1e400 is beyond the range of a double"},
        {"{\"items\": [],\n \"x\": " + std::string(1000, '7') + "}",
         "line 2, column 7: the number 777777777777777777777777... is beyond the range of a double"},
        {std::string("{\"items\": []}\0garbage", 22), "line 1, column 14: a NUL byte; a screen file is text"},
        {R"({"items": )" + repeated(200000, "[") + repeated(200000, "]") + "}",
         "items" + repeated(159, "[0]") + ": nested deeper than 160 arrays and objects"},
        {groupChain(12000),
         "items[0]" + repeated(79, ".children[0]") + ": nested deeper than 160 arrays and objects"},
        {groupChain(screenfile::kMaxItemDepth + 1), "items[0]" +
             repeated(screenfile::kMaxItemDepth, ".children[0]") + ": items nested deeper than 64 levels"},
        {manyItems + "]}", "items[5000]: more than 5000 items in the screen"},
        {R"({"items": [{"type": "Label", "id": 1, "data": {"text": ")" + std::string(4097, 'x') + "\"}}]}",
         "items[0].data.text: a text of 4097 bytes; texts are at most 4096"},
        {"{\"items\": [], \"" + std::string(4097, 'k') + "\": 1}",
         "top level: a text of 4097 bytes; texts are at most 4096"},
    };
    for (const Case &c : cases) EXPECT_EQ(refuse(c.text), c.error) << c.text.substr(0, 80);
    load(groupChain(screenfile::kMaxItemDepth));
}

TEST_F(LoaderTest, ParsingAgainReplacesTheScreenAndTakeHandsOverTheTree) {
    load(R"({"jobId": 1, "title": "first", "items": [{"type": "Label", "id": 1}]})");
    load(R"({"jobId": 2, "items": [{"type": "Label", "id": 2}, {"type": "Label", "id": 3}]})");
    EXPECT_EQ(std::make_tuple(screen.jobId, screen.title, TreeNodeCount(screen.tree())),
              std::make_tuple(2, std::string(), 2));
    void *tree = screen.take();
    EXPECT_EQ(screen.tree(), nullptr);
    EXPECT_EQ(ObjGetRefCount(tree), 1);
    ObjReleaseInternal(&tree);
}

TEST_F(LoaderTest, TheDocumentedExamplesAreWhatTheProgramReadsAndWrites) {
    std::stringstream text;
    text << std::ifstream(XCV_SOURCE_DIR "/docs/screen-format.md").rdbuf();
    const std::string doc = text.str(), open = "```json\n";
    std::vector<std::string> blocks; // the ```json blocks of the format's page, in order
    for (size_t at = doc.find(open); at != std::string::npos; at = doc.find(open, at)) {
        at += open.size();
        blocks.push_back(doc.substr(at, doc.find("```", at) - at));
    }
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
