/* test_screenfile.cpp - loading screen files into screen definition trees (refusals with
** their place, the limits) and the answer document read back. */
#include <nlohmann/json.hpp>

#include "viewerfixture.h"
// After gtest: the X headers define None.
#include "screencheck.h"

namespace {

using nlohmann::ordered_json;

/* Refusals name the place and the reason; a row for each check that no other test reaches
** (the fuzzer and the viewer's hostile files prove that every refusal names a place). */
TEST_F(LoaderTest, BadFilesAreRefusedWithThePlaceAndTheReason) {
    // One item each, and the rest of the place and reason after "items[0]".
    const std::pair<std::string, std::string> items[] = {
        {R"("type": "label")", ".type: unknown item type \"label\" (did you mean \"Label\"?)"},
        {R"("type": 15, "id": 1, "data": {})",
         ".data: item type code 15 has no item data record; leave \"data\" out or null"},
        {R"("type": "GroupBox", "id": 1, "data": {"title": "a", "title": "b"})",
         ".data.title: duplicate field"},
        {R"("type": "DateInput", "id": 1, "data": {"date": "2026-02-30"})",
         ".data.date: expected a date as \"YYYY-MM-DD\", \"now\" or seconds, got \"2026-02-30\""},
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
        EXPECT_EQ(errorOf(R"({"items": [{)" + item + "}]}"), "items[0]" + error) << item;
}

TEST_F(LoaderTest, WhatIsBeyondTheLimitsIsRefusedWithItsPlace) {
    const std::string manyItems = R"({"items": [)" +
        repeated(screenfile::kMaxItems, R"({"type": "Label", "id": 1},)") + R"({"type": 2}]})";
    const std::string nesting = ": nested deeper than 160 arrays and objects";
    const std::pair<std::string, std::string> cases[] = {
        {R"({"items": [], "x": 1e400})",
         "line 1, column 20: the number 1e400 is beyond the range of a double"},
        {"{\"items\": [],\n \"x\": " + std::string(1000, '7') + "}",
         "line 2, column 7: the number " + std::string(24, '7') + "... is beyond the range of a "
         "double"},
        {"{\n5\n", "line 2, column 1: syntax error while parsing object key - unexpected number "
                  "literal; expected string literal"}, // at the token, not after its line
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
    for (const auto &[text, error] : cases) EXPECT_EQ(errorOf(text), error) << text.substr(0, 80);
}

/* One problem a row, placed at the last place where `at` is written in the screen. */
TEST_F(LoaderTest, ChecksNameEveryReferenceAndNestingProblemAtItsPlace) {
    const std::string item = R"({"type": "Label", "id": 1, "attach": {"left": {"kind": "item", )";
    const std::string actions = R"({"type": "PushButton", "id": 1, "actions": [{"kind": )";
    struct Row { std::string items, at, message; };
    const Row rows[] = {
        {item + R"("item": 9}}})", R"("item")", "the left side is attached to id 9, which no item has"},
        {item + R"("item": 1}}})", R"("item")", "the left side is attached to the item itself"},
        {item + R"("item": 3}}}, {"type": "GroupBox", "id": 2, "children": [{"type": "Label", "id": 3}]})",
         R"("item")", "the left side is attached to item 3, which lies in another form: attach items "
         "to their siblings"},
        {R"({"type": "Label", "id": 4}, {"type": "Label", "id": 4})", R"("id")",
         "id 4 is also used by the item at 2:1; actions and attachments find that one"},
        {actions + R"("SHOW", "target": 9}]})", R"("target")", "the SHOW action aims at id 9, which no item has"},
        {actions + R"("CLOSE", "target": 2}]}, {"type": "Label", "id": 2})", R"("target")",
         "the CLOSE action aims at a Label, which it does nothing to: it acts on a PushButton"},
        {R"({"type": "ComboItem", "id": 1})", "{", "a ComboItem outside a ComboBox is never shown"},
        {R"({"type": "GroupBox", "id": 1, "children": [{"type": "ListItem", "id": 2}]})", "{",
         "a ListItem outside a ListBox or an ExtendedListBox is never shown"},
        {R"({"type": "ListBox", "id": 1, "children": [{"type": "RadioButton", "id": 2}]})", "{",
         "a RadioButton outside a RadioManager is never shown"},
        {R"({"type": "TabPage", "id": 1})", "{", "a TabPage outside a TabManager or a StackedTabManager "
         "is never shown"},
        {R"({"type": "RadioManager", "id": 1, "children": [{"type": "Label", "id": 2}]})", "{",
         "a Label in a RadioManager is never shown: a RadioManager shows its RadioButton items only"},
        {R"({"type": "EditBox", "id": 1, "children": [{"type": 99, "id": 2}]})", "{",
         "an EditBox holds no items: this one is built in the screen's form"},
        {R"({"type": "RowColManager", "id": 1, "children": [{"type": "Label", "id": 2, "attach": {}}]})",
         R"("attach")", "attachments take an item of a RowColManager out of the grid"}};
    for (const Row &row : rows) {
        const std::string text = "{\"items\": [\n" + row.items + "]}";
        load(text);
        const auto problems = screenfile::check(screen);
        ASSERT_EQ(problems.size(), 1u) << row.items;
        EXPECT_EQ(screenfile::describe(problems[0].place) + ": " + problems[0].message,
                  screenfile::describe({2, text.rfind(row.at) - text.find('\n')}) + ": " + row.message);
    }
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

/* The values are given in the file, as the library's handlers would leave them. */
TEST_F(LoaderTest, AnswersHoldTheValueOfEveryItem) {
    load(R"({"jobId": 42, "items": [{"type": "GroupBox", "id": 1, "children": [
        {"type": "EditBox", "id": 3}]},
      {"type": "ComboBox", "id": 4, "data": {"selected": 2, "typedText": "Incremental"},
       "children": [{"type": "ComboItem", "id": 41, "data": {"text": "Full"}},
        {"type": "ComboItem", "id": 42, "data": {"text": null}},
        {"type": "ComboItem", "id": 43, "data": {"text": "Incremental"}}]},
      {"type": "ExtendedListBox", "id": 5, "data": {"multiple": true}, "children": [
        {"type": "ListItem", "id": 51, "data": {"text": "etc", "selected": true}},
        {"type": "Label", "id": 52, "data": {"text": "not an entry"}},
        {"type": "ListItem", "id": 53, "data": {"text": "home"}},
        {"type": "ListItem", "id": 54, "data": {"text": "srv", "selected": true}}]},
      {"type": "selectionItem", "id": 7, "data": {"set": true}}, {"type": "RadioManager",
       "id": 8, "children": [{"type": "RadioButton", "id": 81},
        {"type": "RadioButton", "id": 82, "data": {"set": true}}]},
      {"type": "NumInput", "id": 9, "data": {"value": 45}},
      {"type": "DateInput", "id": 10, "data": {"date": "2026-04-01"}},
      {"type": "TimeInput", "id": 11, "data": {"time": "22:30"}},
      {"type": "ChangePassword", "id": 12, "answerClearText": true,
       "data": {"newPassword": "s3cret", "confirmation": "s3cre"}},
      {"type": "GetPasswordBox", "id": 13, "data": {"keyArg": 7}}, {"type": "PushButton", "id": 14},
      {"type": "EditBox", "id": 3, "data": {"text": "a second item with id 3"}},
      {"type": "EditBox", "id": 15, "data": null}, {"type": 15, "id": 16}]})");
    // The records are of the kinds the library checks before it reads them.
    auto *edit = data<EditBoxData>(3);
    ASSERT_TRUE(ObjIsOfKind(edit, GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE));
    // Typed in a Latin-1 locale: the bytes that are not UTF-8 come out as U+FFFD.
    MemFreeInternal(&edit->text);
    edit->text = StrDuplicateIntoPool("\"second\" \xe9", MemGetDefaultPoolId());
    auto *box = data<GetPasswordBoxData>(13);
    ASSERT_TRUE(SecurityEncryptPassword(&box->encrypted, "hidden", box->keyArg));
    ordered_json expected = ordered_json::parse(R"({"jobId": 42, "closedBy": null, "values": {
        "3": {"type": "EditBox", "text": "\"second\" \ufffd"},
        "4": {"type": "ComboBox", "selected": 2, "typedText": "Incremental",
              "selectedText": "Incremental"},
        "5": {"type": "ExtendedListBox", "selected": [1, 3], "selectedTexts": ["etc", "srv"]},
        "51": {"type": "ListItem", "selected": true}, "53": {"type": "ListItem", "selected": false},
        "54": {"type": "ListItem", "selected": true}, "7": {"type": "selectionItem", "set": true},
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
    const std::string got = screenfile::answers(screen.tree(), 42);
    EXPECT_EQ(got, expected.dump(2));
    EXPECT_EQ(got.find("hidden"), std::string::npos);
}

} // namespace
