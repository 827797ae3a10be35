/* test_password.cpp - the password entry and the password items, with real typing. */
#include <algorithm>
#include "plgscreen.h"
#include <Xm/Text.h>
#include <cstring>
#include "guipwdentry.h"
#include "../core/kxtest.h"
#include "screenfile.h"
#include <nlohmann/json.hpp>
namespace {
using namespace xt;
/* Bytes of the blocks that MemFreeSecret freed so far; none but zeros is left in them. */
bool allWiped(const std::string &bytes) { return bytes.find_first_not_of('\0') == std::string::npos; }
/* What the field shows: asterisks only. */
std::string shown(Widget field) {
    char *text = XmTextGetString(field);
    std::string copy = text ? text : "";
    XtFree(text);
    return copy;
}
std::string password(Widget field) {
    char *copy = nullptr;
    GuiGetPassword(&copy, field);
    std::string text = copy ? copy : "(null)";
    MemFreeSecret(&copy);
    return text;
}
/* The block of the stored password: the first field of the record in XmNuserData. */
const char *stored(Widget field) {
    XtPointer record = nullptr;
    XtVaGetValues(field, XmNuserData, &record, nullptr);
    return record ? *static_cast<const char *const *>(record) : nullptr;
}
class PasswordTest : public PlgScreenTest {
protected:
    Widget newEntry() {
        Widget field = XmCreateTextField(form(), const_cast<char *>("input"), nullptr, 0);
        XtManageChild(field);
        GuiCreatePasswordEntry(field);
        if (!XtIsRealized(shell())) realize();
        pump();
        focus(field);
        return field;
    }
    /* No captured trace line holds any of the texts. */
    void expectNoTraceHolds(std::initializer_list<std::string> secrets) const {
        for (const TraceLine &t : traces())
            for (const std::string &secret : secrets)
                EXPECT_EQ(t.text.find(secret), std::string::npos) << t.text;
    }
};
struct EditRow {
    const char *name;
    void (*edit)(Widget field);
    const char *shown, *stored;
};
TEST_F(PasswordTest, EditsKeepAsterisksInTheFieldAndThePasswordBeside) {
    const EditRow rows[] = {
        {"typing", [](Widget) { type("sec"); }, "***", "sec"},
        {"insertion by program",
         [](Widget f) { XmTextFieldInsert(f, 0, const_cast<char *>("Pa5te")); }, "*****", "Pa5te"},
        {"backspace after the second of four",
         [](Widget) { type("abcd"); key(XK_Home); key(XK_Right); key(XK_Right); key(XK_BackSpace); },
         "*", "a"},
        {"select all and type",
         [](Widget f) { type("abcd"); XmTextFieldSetSelection(f, 0, 4, CurrentTime); type("x"); },
         "*", "abcdx"},
        {"set on an empty field", [](Widget f) { GuiSetPassword(f, "Eight8ch"); }, "********",
         "Eight8ch"},
        {"set over a typed one",
         [](Widget f) { type("old"); GuiSetPassword(f, "Eight8ch"); }, "********", "Eight8ch"},
    };
    for (const EditRow &row : rows) {
        Widget field = newEntry();
        EXPECT_EQ(password(field), "(null)") << row.name << ": before anything was typed";
        row.edit(field);
        pump();
        EXPECT_EQ(shown(field), row.shown) << row.name;
        EXPECT_EQ(password(field), row.stored) << row.name;
        XtDestroyWidget(field);
        pump();
    }
    EXPECT_TRUE(hasTrace("GuiGetPassword()"));
    expectNoTraceHolds({"sec", "Pa5te", "abcd", "Eight8ch"});
    EXPECT_EQ(xErrorCount(), 0);
}
TEST_F(PasswordTest, EveryPasswordThatGoesIsWiped) {
    kxtest::FreedSecrets frees;
    Widget field = newEntry();
    type("abcd");
    EXPECT_EQ(frees.bytes.size(), 2u + 3 + 4) << "a, ab and abc, each wiped as it was replaced";
    key(XK_Home); key(XK_Right); key(XK_Right); key(XK_BackSpace);
    const char *block = stored(field);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(std::memcmp(block, "a\0\0\0\0", 5), 0) << "the cut-off part is overwritten";
    GuiSetPassword(field, "new");
    EXPECT_EQ(frees.bytes.size(), 9u + 5) << "the cut block, replaced by GuiSetPassword";
    XtDestroyWidget(field);
    pump();
    EXPECT_EQ(frees.bytes.size(), 14u + 4) << "the set password, when the field goes";
    EXPECT_TRUE(allWiped(frees.bytes));
}
/* A box's id, key argument, what is typed, and the clear text of the encryption that it
** then stores (null: nothing is stored). */
struct BoxRow { int32_t id; intptr_t key; const char *typed, *expected; };
constexpr const char *kScreen = R"({"items": [{"type": "RowColManager", "id": 100, "children": [
    {"type": "ChangePassword", "id": 1},
    {"type": "ChangePassword", "id": 5, "answerClearText": true},
    {"type": "GetPasswordBox", "id": 2, "data": {"columns": 12, "keyArg": 7}},
    {"type": "GetPasswordBox", "id": 3, "data": {"columns": 12, "keyArg": 0}},
    {"type": "GetPasswordBox", "id": 4, "data": {"columns": 12, "keyArg": 7}}]}]})";
TEST_F(PasswordTest, ItemsKeepClearTextOrEncryption) {
    screenfile::Loaded screen;
    std::string error;
    ASSERT_TRUE(screenfile::parse(kScreen, screen, error)) << error;
    GuiCreatePlgScreen(form(), screen.tree(), 42);
    realize();
    pump();
    auto item = [&](int32_t id) { return itemOf(findNode(screen.tree(), id)); };
    auto box = [&](int32_t id) { return static_cast<GetPasswordBoxData *>(item(id)->itemData); };
    auto *change = static_cast<ChangePasswordData *>(item(1)->itemData);
    ASSERT_EQ(widgetCount(item(1)), 3);
    {
        kxtest::FreedSecrets frees;
        focus(XtNameToWidget(outerWidget(item(1)), "input"));
        type("N");
        EXPECT_STREQ(change->newPassword, "N");
        EXPECT_EQ(change->confirmation, nullptr) << "not typed into yet";
        type("w");
        EXPECT_STREQ(change->newPassword, "Nw");
        EXPECT_EQ(frees.bytes, std::string(4, '\0')) << "the entry's and the item data's N";
    }
    for (int32_t id : {1, 5}) {
        focus(valueWidget(item(id)));
        type("Nw");
    }
    EXPECT_STREQ(change->confirmation, "Nw");
    focus(valueWidget(item(4)));
    type("Qq");
    key(XK_BackSpace);
    key(XK_BackSpace); /* cleared: the encryption of the empty text */
    const BoxRow boxes[] = {{2, 7, "K3y", "K3y"}, {3, 0, "Zz9", nullptr}, {4, 7, "", ""}};
    for (const BoxRow &b : boxes) {
        focus(valueWidget(item(b.id)));
        type(b.typed);
        if (b.expected == nullptr) {
            EXPECT_EQ(box(b.id)->encrypted, nullptr) << "box " << b.id;
            continue;
        }
        ASSERT_NE(box(b.id)->encrypted, nullptr) << "box " << b.id;
        char *clear = SecurityDecryptPassword(box(b.id)->encrypted, b.key);
        EXPECT_STREQ(clear, b.expected) << "box " << b.id;
        MemFreeSecret(&clear);
        EXPECT_EQ(shown(valueWidget(item(b.id))), std::string(std::strlen(b.expected), '*'));
    }
    /* Answers: clear text only where the file asked for it, the box encrypted. */
    auto values = nlohmann::json::parse(screenfile::answers(screen.tree(), 42))["values"];
    EXPECT_EQ(values["1"], nlohmann::json({{"type", "ChangePassword"}, {"passwordsMatch", true}}));
    EXPECT_EQ(values["5"]["newPassword"], nullptr);
    EXPECT_EQ(values["5"]["passwordsMatch"], false);
    EXPECT_EQ(values["5"]["confirmation"], "Nw");
    EXPECT_EQ(values["2"]["encrypted"], box(2)->encrypted);
    EXPECT_TRUE(hasTrace("got new password value"));
    expectNoTraceHolds({"Nw", "K3y", "Zz9", "Qq", box(2)->encrypted});
    void *tree = screen.take();
    static std::vector<const void *> wiped; /* the item data's clear texts go with the tree */
    MemSetFreedSecretHook([](void *, const void *block, size_t) { wiped.push_back(block); }, nullptr);
    const void *clearTexts[] = {change->newPassword, change->confirmation};
    GuiFreeScreenDefAndWidgets(&tree);
    MemSetFreedSecretHook(nullptr, nullptr);
    for (const void *text : clearTexts) EXPECT_NE(std::find(wiped.begin(), wiped.end(), text), wiped.end());
    EXPECT_EQ(xErrorCount(), 0);
}
} // namespace
