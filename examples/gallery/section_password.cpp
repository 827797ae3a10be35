/* section_password.cpp - the gallery's password entries: fields that show asterisks, with
** a note beside each that tells how much the entry keeps (never what). */
#include <Xm/Label.h>
#include <Xm/RowColumn.h>
#include <Xm/TextF.h>

#include <cstring>
#include <string>

#include "gallery.h"
#include "kx.h"
#include "xcontrols/guipwdentry.h"

namespace {

void setLabel(Widget label, const std::string &text) {
    XmString s = XmStringCreateLocalized(const_cast<char *>(text.c_str()));
    XtVaSetValues(label, XmNlabelString, s, nullptr);
    XmStringFree(s);
}

/* Counts the characters that the entry keeps; the copy is wiped at once. */
void showKept(Widget field, XtPointer note, XtPointer) {
    char *password = nullptr;
    GuiGetPassword(&password, field);
    const size_t kept = password ? std::strlen(password) : 0;
    MemFreeSecret(&password);
    setLabel(static_cast<Widget>(note), std::to_string(kept) + " characters kept");
}

/* One row of the grid: caption, password field, note. Returns the field. */
Widget addPasswordRow(Widget grid, const char *caption) {
    Widget label = XtVaCreateManagedWidget("caption", xmLabelWidgetClass, grid, nullptr);
    setLabel(label, caption);
    Widget field = XtVaCreateManagedWidget("input", xmTextFieldWidgetClass, grid, XmNcolumns, 20,
                                           XmNshadowThickness, 2, XmNmarginHeight, 2,
                                           XmNmarginWidth, 3, nullptr);
    Widget note = XtVaCreateManagedWidget("note", xmLabelWidgetClass, grid, nullptr);
    setLabel(note, "type to see the count");
    GuiCreatePasswordEntry(field);
    XtAddCallback(field, XmNvalueChangedCallback, showKept, note);
    return field;
}

} // namespace

namespace gallery {

void buildPasswordSection(Widget area) {
    Widget grid = XtVaCreateManagedWidget(
        "grid", xmRowColumnWidgetClass, area, XmNorientation, XmHORIZONTAL, XmNpacking,
        XmPACK_COLUMN, XmNnumColumns, 2, XmNentryAlignment, XmALIGNMENT_BEGINNING,
        XmNisAligned, True, XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
        nullptr);
    addPasswordRow(grid, "Password");
    GuiSetPassword(addPasswordRow(grid, "Set by the program"), "secret12");
}

} // namespace gallery
