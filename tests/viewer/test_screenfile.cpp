/* test_screenfile.cpp - loading screen files into screen definition trees (records, nesting,
** attachments, actions, refusals with their place) and the answer document read back. */
#include <fstream>
#include <sstream>
#include <vector>

#include <nlohmann/json.hpp>

#include "viewerfixture.h"

namespace {

using nlohmann::ordered_json;

/* One field of each kind (fields are found by name, so one of a kind shows that kind's
** conversion), types by name and by code, and dates and times written as text. */
TEST_F(LoaderTest, ItemsAndTheirDataHoldTheValuesOfTheFile) {
    load(R"({"jobId": 7, "title": "Kinds", "width": 500, "height": 400, "items": [
      {"type": "NumInput", "id": 1, "data": {"minimum": -1}},
      {"type": "ComboBox", "id": 2, "data": {"userEntry": true}},
      {"type": "EditBox", "id": 3, "data": {"text": "/srv"}}, {"type": 1, "id": 4},
      {"type": "GetPasswordBox", "id": 5, "data": {"keyArg": 1234567890123}},
      {"type": "ChangePassword", "id": 6, "data": {"newPassword": null}},
      {"type": "DateInput", "id": 7, "data": {"date": 1774915200}},
      {"type": "DateInput", "id": 8, "data": {"date": "2026-03-31"}},
      {"type": "DateInput", "id": 9, "data": {"date": "now"}},
      {"type": "TimeInput", "id": 10, "data": {"time": "08:05:09"}},
      {"type": "TimeInput", "id": 11, "data": {"time": "00:00"}},
      {"type": "Label", "id": 12, "hidden": true, "disabled": 1, "data": null},
      {"type": 15, "id": 13, "children": null}]})");
    EXPECT_EQ(std::make_tuple(screen.jobId, screen.title, screen.width, screen.height),
              std::make_tuple(7, std::string("Kinds"), 500, 400));
    KxDateStruct day{2026, 3, 31, 0};
    int32_t midnight = 0;
    ASSERT_TRUE(TimeFromDate(&midnight, &day));
    const std::pair<int64_t, int64_t> numbers[] = {
        {data<NumInputData>(1)->minimum, -1}, {data<ComboBoxData>(2)->userEntry, 1},
        {data<EditBoxData>(3)->rows, 0}, {data<GetPasswordBoxData>(5)->keyArg, 1234567890123},
        {data<DateInputData>(7)->date, 1774915200}, {data<DateInputData>(8)->date, midnight},
        {data<DateInputData>(9)->date, 0}, {data<TimeInputData>(10)->time, 8 * 3600 + 309},
        // 0 would mean "now": midnight is the next day's, which shows as 00:00 all the same.
        {data<TimeInputData>(11)->time, 24 * 3600}, {item(4)->itemType, GroupBox},
        {item(12)->hidden + item(12)->disabled, 2}, {item(3)->hidden + item(3)->disabled, 0}};
    for (size_t i = 0; i < std::size(numbers); ++i)
        EXPECT_EQ(numbers[i].first, numbers[i].second) << "number " << i;
    EXPECT_STREQ(data<EditBoxData>(3)->text, "/srv");
    EXPECT_TRUE(ObjIsOfKind(item(4)->itemData, GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE));
    EXPECT_EQ(data<ChangePasswordData>(6)->newPassword, nullptr);
    // Data null, or a code without a record: no record at all.
    EXPECT_TRUE(!item(12)->itemData && !item(13)->itemData);
}

TEST_F(LoaderTest, AttachmentsAndActionsAreKeptAsWritten) {
    load(R"({"items": [{"type": "Label", "id": 1, "attach": {
        "left": {"kind": "position", "position": 10, "offset": 4},
        "top": {"kind": "item", "item": 2, "offset": 5}, "right": null,
        "bottom": {"kind": "centre", "offset": -3}}},
      {"type": "PushButton", "id": 2, "actions": [{"kind": "HIDE", "target": 5},
        {"kind": 5, "target": 11}, {"kind": "CLOSE", "target": 1}]},
      {"type": "Label", "id": 3, "attach": {}, "actions": []},
      {"type": "Label", "id": 4, "attach": null, "actions": null}, {"type": "Label", "id": 5,
       "attach": {"right": {"kind": 9, "position": 1, "item": 2, "offset": 3}}}]})");
    // Absent or null: the builder's own attachments; empty: four null sides, all detached.
    EXPECT_TRUE(!item(2)->attachments && !item(4)->attachments);
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
        EXPECT_EQ((a ? Side{a->kind, a->position, a->itemId, a->offset} : none), expected)
            << "item " << id << " side " << side;
    }
    std::vector<std::pair<int32_t, int32_t>> got; // target, kind
    ListWalk(item(2)->actions, [](void *ctx, void *element) {
        auto *a = static_cast<ScreenAction *>(ListElementItem(element));
        EXPECT_TRUE(ObjIsOfKind(a, GUI_TAG_ACTION, GUI_ACTION_SIGNATURE));
        static_cast<decltype(got) *>(ctx)->push_back({a->targetId, a->kind});
        return 1;
    }, &got);
    EXPECT_EQ(got, (decltype(got){{5, ACTION_HIDE}, {11, 5}, {1, ACTION_CLOSE}}));
    ASSERT_TRUE(ObjIsA(item(3)->actions, KX_TAG_LIST));
    EXPECT_EQ(ListCount(item(3)->actions), 0);
    EXPECT_EQ(item(4)->actions, nullptr);
}

TEST_F(LoaderTest, SuspiciousReferencesLoadWithWarnings) {
    load(R"({"items": [{"type": "PushButton", "id": 1, "actions": [{"kind": "HIDE", "target": 99}]},
      {"type": "Label", "id": 1, "attach": {"top": {"kind": "item", "item": 42}}}]})");
    EXPECT_EQ(screen.warnings, (std::vector<std::string>{
        "items[1].id: id 1 is also used by items[0].id; actions and attachments find the first",
        "items[0].actions[0].target: no item has id 99",
        "items[1].attach.top.item: no item has id 42"}));
}

/* One row per check of the loader; the fuzzer and the viewer's hostile files prove that
** every other refusal names a place too. */
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
        {R"("type": "label")", ".type: unknown item type \"label\" (did you mean \"Label\"?)"},
        {R"("id": 1)", ": missing field \"type\""},
        {R"("type": "GroupBox", "id": 1, "children": [{"type": "Label", "id": 2},
             {"type": "RowColManager", "id": 3, "data": {"columns": 1.5}}])",
         ".children[1].data.columns: expected an integer, got a number with a fraction"},
        {R"("type": 15, "id": 1, "data": {})",
         ".data: item type code 15 has no item data record; leave \"data\" out or null"},
        {R"("type": "GroupBox", "id": 1, "data": {"title": "a", "title": "b"})",
         ".data.title: duplicate field"},
        {R"("type": "DateInput", "id": 1, "data": {"date": "2026-02-30"})",
         ".data.date: expected a date as \"YYYY-MM-DD\", \"now\" or seconds, got \"2026-02-30\""},
        {R"("type": "TimeInput", "id": 1, "data": {"time": "25:00"})", ".data.time: expected a "
         "time as \"HH:MM\", \"HH:MM:SS\", \"now\" or seconds, got \"25:00\""},
        {R"("type": "Label", "id": 1, "attach": {"middle": null})",
         ".attach.middle: unknown attachment side; sides are left, right, top, bottom"},
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
    const std::string manyItems = R"({"items": [)" +
        repeated(screenfile::kMaxItems, R"({"type": "Label", "id": 1},)") + R"({"type": 2}]})";
    const std::string nesting = ": nested deeper than 160 arrays and objects";
    const std::pair<std::string, std::string> cases[] = {
        {R"({"items": [], "x": 1e400})",
         "line 1, column 20: the number 1e400 is beyond the range of a double"},
        {"{\"items\": [],\n \"x\": " + std::string(1000, '7') + "}",
         "line 2, column 7: the number 777777777777777777777777... is beyond the range of a double"},
        {std::string("{\"items\": []}\0garbage", 22),
         "line 1, column 14: a NUL byte; a screen file is text"},
        {R"({"items": )" + repeated(200000, "[") + repeated(200000, "]") + "}",
         "items" + repeated(159, "[0]") + nesting},
        {groupChain(12000), "items[0]" + repeated(79, ".children[0]") + nesting},
        {groupChain(screenfile::kMaxItemDepth + 1), "items[0]" +
             repeated(screenfile::kMaxItemDepth, ".children[0]") +
             ": items nested deeper than 64 levels"},
        {manyItems, "items[5000]: more than 5000 items in the screen"},
        {R"({"items": [{"type": "Label", "id": 1, "data": {"text": ")" + std::string(4097, 'x') +
             "\"}}]}", "items[0].data.text: a text of 4097 bytes; texts are at most 4096"},
        {"{\"items\": [], \"" + std::string(4097, 'k') + "\": 1}",
         "top level: a text of 4097 bytes; texts are at most 4096"}};
    for (const auto &[text, error] : cases) EXPECT_EQ(refuse(text), error) << text.substr(0, 80);
    load(groupChain(screenfile::kMaxItemDepth));
}

TEST_F(LoaderTest, ParsingAgainReplacesTheScreenAndTakeHandsOverTheTree) {
    load(R"({"jobId": 1, "title": "first", "items": [{"type": "Label", "id": 1}]})");
    load(R"({"jobId": 2, "items": [{"type": "Label", "id": 2}, {"type": "Label", "id": 3}]})");
    EXPECT_EQ(std::make_tuple(screen.jobId, screen.title, TreeNodeCount(screen.tree())),
              std::make_tuple(2, std::string(), 2));
    void *tree = screen.take();
    EXPECT_TRUE(screen.tree() == nullptr && ObjGetRefCount(tree) == 1);
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
    const ordered_json answer = ordered_json::parse(blocks[1]);
    std::vector<std::string> keys;
    for (const auto &field : answer.items()) keys.push_back(field.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"jobId", "closedBy", "values"}));
    for (const auto &value : answer["values"].items())
        EXPECT_EQ(value.value().begin().key(), "type") << value.key();
}

/* Replaces a pool string of a record, as the library's handlers do. */
void storeText(char **slot, const char *text) {
    MemFreeInternal(slot);
    *slot = StrDuplicateIntoPool(text, MemGetDefaultPoolId());
}

TEST_F(LoaderTest, AnswersHoldEveryValueThatTheUserChanged) {
    load(R"({"jobId": 42, "items": [
      {"type": "GroupBox", "id": 1, "children": [{"type": "EditBox", "id": 3, "data": {"text": "a"}}]},
      {"type": "ComboBox", "id": 4, "data": {"selected": 1}, "children": [
        {"type": "ComboItem", "id": 41, "data": {"text": "Full"}},
        {"type": "ComboItem", "id": 42, "data": {"text": null}},
        {"type": "ComboItem", "id": 43, "data": {"text": "Incremental"}}]},
      {"type": "ExtendedListBox", "id": 5, "data": {"multiple": true}, "children": [
        {"type": "ListItem", "id": 51, "data": {"text": "etc"}},
        {"type": "Label", "id": 52, "data": {"text": "not an entry"}},
        {"type": "ListItem", "id": 53, "data": {"text": "home"}},
        {"type": "ListItem", "id": 54, "data": {"text": "srv"}}]},
      {"type": "ListBox", "id": 6, "children": [
        {"type": "ListItem", "id": 61, "data": {"text": "a", "selected": true}}]},
      {"type": "selectionItem", "id": 7}, {"type": "RadioManager", "id": 8, "children": [
        {"type": "RadioButton", "id": 81, "data": {"set": true}}, {"type": "RadioButton", "id": 82}]},
      {"type": "NumInput", "id": 9, "data": {"value": 30}},
      {"type": "DateInput", "id": 10, "data": {"date": "2026-04-01"}},
      {"type": "TimeInput", "id": 11, "data": {"time": "22:30"}}, {"type": "ChangePassword", "id": 12,
       "answerClearText": true},
      {"type": "GetPasswordBox", "id": 13, "data": {"keyArg": 7}}, {"type": "PushButton", "id": 14},
      {"type": "EditBox", "id": 3, "data": {"text": "a second item with id 3"}},
      {"type": "EditBox", "id": 15, "data": null}, {"type": 15, "id": 16}]})");
    // What the handlers write while the user works the screen.
    // Typed in a Latin-1 locale: the bytes that are not UTF-8 come out as U+FFFD.
    storeText(&data<EditBoxData>(3)->text, "\"second\" \xe9");
    data<ComboBoxData>(4)->selected = 2;
    storeText(&data<ComboBoxData>(4)->typedText, "Incremental");
    data<ListItemData>(51)->selected = data<ListItemData>(54)->selected = 1;
    data<ListItemData>(61)->selected = data<RadioButtonData>(81)->set = 0;
    data<SelectionItemData>(7)->set = data<RadioButtonData>(82)->set = 1;
    data<NumInputData>(9)->value = 45;
    storeText(&data<ChangePasswordData>(12)->newPassword, "s3cret");
    storeText(&data<ChangePasswordData>(12)->confirmation, "s3cre");
    auto *box = data<GetPasswordBoxData>(13);
    ASSERT_TRUE(SecurityEncryptPassword(&box->encrypted, "hidden", box->keyArg));
    ordered_json expected = ordered_json::parse(R"({"jobId": 42, "closedBy": 9, "values": {
        "3": {"type": "EditBox", "text": "\"second\" \ufffd"},
        "4": {"type": "ComboBox", "selected": 2, "typedText": "Incremental",
              "selectedText": "Incremental"},
        "5": {"type": "ExtendedListBox", "selected": [1, 3], "selectedTexts": ["etc", "srv"]},
        "51": {"type": "ListItem", "selected": true}, "53": {"type": "ListItem", "selected": false},
        "54": {"type": "ListItem", "selected": true},
        "6": {"type": "ListBox", "selected": [], "selectedTexts": []},
        "61": {"type": "ListItem", "selected": false}, "7": {"type": "selectionItem", "set": true},
        "8": {"type": "RadioManager", "selected": 82}, "81": {"type": "RadioButton", "set": false},
        "82": {"type": "RadioButton", "set": true}, "9": {"type": "NumInput", "value": 45},
        "10": {"type": "DateInput", "date": 0, "iso": "2026-04-01"},
        "11": {"type": "TimeInput", "time": 81000, "iso": "22:30"},
        "12": {"type": "ChangePassword", "newPassword": "s3cret", "confirmation": "s3cre",
               "passwordsMatch": false},
        "13": {"type": "GetPasswordBox", "encrypted": ""}}})");
    expected["values"]["10"]["date"] = data<DateInputData>(10)->date; // local midnight
    expected["values"]["13"]["encrypted"] = box->encrypted;
    // Printed with an indent of two, the password box's typed text nowhere.
    const std::string got = screenfile::answers(screen.tree(), 42, 9);
    EXPECT_EQ(got, expected.dump(2));
    EXPECT_EQ(got.find("hidden"), std::string::npos);
    // Nothing to answer: the job alone.
    EXPECT_EQ(ordered_json::parse(screenfile::answers(nullptr, 3)),
              ordered_json::parse(R"({"jobId": 3, "closedBy": null, "values": {}})"));
}

TEST_F(LoaderTest, AnswersSkipItemsWhoseDataIsNotTheirTypesRecord) {
    xt::Screen client;
    client.add(nullptr, EditBox, 1, xt::labelData("a label's record"));
    auto *edit = xt::newData<EditBoxData>(GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE);
    edit->text = xt::poolText("typed");
    client.add(nullptr, EditBox, 2, edit);
    EXPECT_EQ(ordered_json::parse(screenfile::answers(client.tree(), 5)),
              ordered_json::parse(R"({"jobId": 5, "closedBy": null,
                                      "values": {"2": {"type": "EditBox", "text": "typed"}}})"));
}

} // namespace
