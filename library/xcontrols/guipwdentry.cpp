/* guipwdentry.cpp - the password entry: asterisks in the field, the password in a pool
** block beside it that is overwritten whenever it goes. */
#include <Xm/Text.h>
#include <Xm/TextF.h>

#include <cstring>
#include <utility>

#include "guipwdentry.h"

#include "guicommon.h"
#include "guiinputkit.h"

namespace xc {
namespace {

constexpr const char *kComponent = "GUIPWD";

/* The field that GuiSetPassword is writing asterisks into: that write must not reach
** the stored password, which is already the new one. */
Widget gBeingSet = nullptr;

/* What an entry keeps beside its field, in the field's XmNuserData: the password, a
** string of the object, which the base runtime wipes when the object goes. The destroy
** callback holds the record itself, so that the end of the entry touches no widget (Xt
** may have freed the field's relatives already when the callback runs). */
struct Entry {
    char *password;
};
constexpr uint32_t kTagEntry = 0xc9a2be90u;
constexpr const char *kEntrySignature = "s;";

Entry *entryOf(Widget w) {
    XtPointer stored = nullptr;
    XtVaGetValues(w, XmNuserData, &stored, nullptr);
    return objectAs<Entry>(stored, kTagEntry, kEntrySignature);
}

char *storedPassword(Widget w) {
    Entry *entry = entryOf(w);
    return entry ? entry->password : nullptr;
}

/* Puts `password` (a pool block, or null) in place of the stored one, which is wiped. */
void replaceStored(Widget w, char *password) {
    Entry *entry = entryOf(w);
    char *old = password;
    if (entry != nullptr) old = std::exchange(entry->password, password);
    MemFreeSecret(&old);
}

/* A new pool block: `head` (null: empty) followed by the `tailLength` bytes of `tail`. */
char *joined(const char *head, const char *tail, size_t tailLength) {
    const size_t headLength = head ? std::strlen(head) : 0;
    auto *joint = static_cast<char *>(MemAllocateFromPool(headLength + tailLength + 1, pool()));
    if (joint == nullptr) return nullptr;
    if (headLength > 0) std::memcpy(joint, head, headLength);
    if (tailLength > 0) std::memcpy(joint + headLength, tail, tailLength);
    joint[headLength + tailLength] = '\0';
    return joint;
}

/* Typing or pasting: the characters go to the end of the stored password and the field
** gets asterisks instead. Without memory for the longer password the change is refused,
** so that the field never shows more characters than are stored. */
void appendInserted(Widget w, XmTextVerifyCallbackStruct *change) {
    XmTextBlock text = change->text;
    const size_t length = static_cast<size_t>(text->length);
    char *password = joined(storedPassword(w), text->ptr, length);
    if (password == nullptr) {
        change->doit = False;
        return;
    }
    replaceStored(w, password);
    std::memset(text->ptr, '*', length);
}

/* Backspace, delete or cut: the field loses everything from the start of the deletion
** to its end (the position of a character in the field says nothing about which
** character of the password it stands for once the user moved the insertion point), and
** the stored password is cut at the same place, its cut-off part overwritten at once. */
void cutStored(Widget w, XmTextVerifyCallbackStruct *change) {
    change->endPos = XmTextGetLastPosition(w);
    char *password = storedPassword(w);
    const size_t length = password ? std::strlen(password) : 0;
    const auto start = static_cast<size_t>(change->startPos < 0 ? 0 : change->startPos);
    if (start < length) MemZero(password + start, length - start);
}

void onModifyVerify(Widget w, XtPointer, XtPointer callData) {
    auto *change = static_cast<XmTextVerifyCallbackStruct *>(callData);
    if (change == nullptr || w == gBeingSet) return;
    XmTextBlock text = change->text;
    if (text != nullptr && text->ptr != nullptr && text->length > 0 && text->ptr[0] != '\0')
        appendInserted(w, change);
    else
        cutStored(w, change);
}

void onDestroy(Widget, XtPointer entry, XtPointer) { ObjReleaseInternal(&entry); }

/* `length` asterisks in a new pool block. */
char *asterisks(size_t length) {
    auto *stars = static_cast<char *>(MemAllocateFromPool(length + 1, pool()));
    if (stars == nullptr) return nullptr;
    std::memset(stars, '*', length);
    stars[length] = '\0';
    return stars;
}

} // namespace
} // namespace xc

using namespace xc;

extern "C" {

XC_API void GuiCreatePasswordEntry(Widget wText) {
    if (!haveWidgets("GuiCreatePasswordEntry", {{wText, WidgetRole::TextInput}})) return;
    if (entryOf(wText) != nullptr) return; /* an entry already */
    Entry *entry = nullptr;
    if (!ObjCreateInternal(&entry, sizeof(Entry), kTagEntry, kEntrySignature, 0, pool())) {
        traceAs(kComponent, 2, -1, "GuiCreatePasswordEntry: out of memory");
        return;
    }
    XtVaSetValues(wText, XmNuserData, static_cast<XtPointer>(entry), nullptr);
    XtAddCallback(wText, XmNmodifyVerifyCallback, onModifyVerify, nullptr);
    XtAddCallback(wText, XmNdestroyCallback, onDestroy, entry);
}

XC_API void GuiSetPassword(Widget wText, const char *pszPassword) {
    if (!haveWidgets("GuiSetPassword", {{wText, WidgetRole::TextInput}})) return;
    if (entryOf(wText) == nullptr) {
        traceAs(kComponent, 3, 0, "GuiSetPassword: not a password entry");
        return;
    }
    const char *given = pszPassword ? pszPassword : "";
    char *password = StrDuplicateIntoPool(given, pool());
    char *stars = asterisks(std::strlen(given));
    if (password == nullptr || stars == nullptr) {
        MemFreeSecret(&password);
        MemFreeInternal(&stars);
        return;
    }
    replaceStored(wText, password);
    Widget outer = gBeingSet; /* a value-changed callback may set another entry */
    gBeingSet = wText;
    XmTextSetString(wText, stars);
    gBeingSet = outer;
    MemFreeInternal(&stars);
}

XC_API char *GuiGetPassword(char **ppszPassword, Widget wText) {
    traceAs(kComponent, 1, 4, "GuiGetPassword()");
    if (ppszPassword == nullptr) return nullptr;
    *ppszPassword = wText ? StrDuplicateIntoPool(storedPassword(wText), pool()) : nullptr;
    return *ppszPassword;
}

} // extern "C"
