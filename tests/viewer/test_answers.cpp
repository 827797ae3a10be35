/* test_answers.cpp - the answer document: every value that the library writes into item
** data while a screen is shown, read back as JSON. */
#include <nlohmann/json.hpp>

#include "viewerfixture.h"

namespace {

using nlohmann::ordered_json;

/* Replaces a pool string of a record, as the library's handlers do. */
void storeText(char **slot, const char *text) {
    MemFreeInternal(slot);
    *slot = StrDuplicateIntoPool(text, MemGetDefaultPoolId());
}

TEST_F(LoaderTest, AnswersKeepTheirExactFormat) {
    load(R"({"jobId": 42, "items": [{"type": "Label", "id": 1, "data": {"text": "Name:"}},
      {"type": "EditBox", "id": 2, "data": {"rows": 1, "text": "first"}},
      {"type": "selectionItem", "id": 3, "data": {"label": "Verify"}}]})");
    // Typed in a Latin-1 locale: the bytes that are not UTF-8 come out as U+FFFD.
    storeText(&data<EditBoxData>(2)->text, "Nightly \"full\" \xe9t\xe9");
    data<SelectionItemData>(3)->set = 1;
    EXPECT_EQ(screenfile::answers(screen.tree(), 42, 9), R"({
  "jobId": 42,
  "closedBy": 9,
  "values": {
    "2": {
      "type": "EditBox",
      "text": "Nightly \"full\" )" "\xef\xbf\xbdt\xef\xbf\xbd" R"("
    },
    "3": {
      "type": "selectionItem",
      "set": true
    }
  }
})");
    // Nothing to answer: the job alone.
    EXPECT_EQ(ordered_json::parse(screenfile::answers(nullptr, 3)),
              ordered_json::parse(R"({"jobId": 3, "closedBy": null, "values": {}})"));
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
      {"type": "TimeInput", "id": 11, "data": {"time": "22:30"}}, {"type": "ChangePassword", "id": 12},
      {"type": "GetPasswordBox", "id": 13, "data": {"keyArg": 7}}, {"type": "PushButton", "id": 14},
      {"type": "EditBox", "id": 3, "data": {"text": "a second item with id 3"}},
      {"type": "EditBox", "id": 15, "data": null}, {"type": 15, "id": 16}]})");
    // What the handlers write while the user works the screen.
    storeText(&data<EditBoxData>(3)->text, "second");
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
    KxDateStruct april{2026, 4, 1, 0};
    int32_t date = 0;
    ASSERT_TRUE(TimeFromDate(&date, &april));
    ordered_json expected = ordered_json::parse(R"({"jobId": 42, "closedBy": null, "values": {
        "3": {"type": "EditBox", "text": "second"},
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
        "12": {"type": "ChangePassword", "newPassword": "s3cret", "confirmation": "s3cre"},
        "13": {"type": "GetPasswordBox", "encrypted": ""}}})");
    expected["values"]["10"]["date"] = date;
    expected["values"]["13"]["encrypted"] = box->encrypted;
    ordered_json got = ordered_json::parse(screenfile::answers(screen.tree(), 42));
    EXPECT_EQ(got, expected) << got.dump(2);
    // The password box answers only the encrypted text, never what was typed.
    EXPECT_EQ(got.dump().find("hidden"), std::string::npos);
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
