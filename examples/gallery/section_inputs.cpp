/* section_inputs.cpp - the gallery's number, date and time inputs: text fields with an
** up and a down button, each row showing what its control last reported. */
#include <Xm/ArrowB.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>

#include <cstdio>
#include <string>

#include "gallery.h"
#include "kx.h"
#include "xcontrols/guidateinput.h"
#include "xcontrols/guimakegcsandfonts.h"
#include "xcontrols/guinuminput.h"
#include "xcontrols/guitimeinput.h"

namespace {

constexpr int kCaptionWidth = 150;
constexpr int kRowGap = 10;
constexpr int kSeparatorTop = 5;

void setLabel(Widget label, const std::string &text) {
    XmString s = XmStringCreateLocalized(const_cast<char *>(text.c_str()));
    XtVaSetValues(label, XmNlabelString, s, nullptr);
    XmStringFree(s);
}

/* An up or down button as the plugin screens make them: the shared picture on a push
** button, or a plain arrow when the picture could not be loaded. */
Widget stepButton(Widget parent, const char *name, bool up) {
    const Pixmap picture = up ? upPixmap : downPixmap;
    if (picture == 0)
        return XtVaCreateManagedWidget(name, xmArrowButtonWidgetClass, parent, XmNarrowDirection,
                                       up ? XmARROW_UP : XmARROW_DOWN, XmNwidth, 16, XmNheight,
                                       12, nullptr);
    return XtVaCreateManagedWidget(name, xmPushButtonWidgetClass, parent, XmNlabelType, XmPIXMAP,
                                   XmNlabelPixmap, picture, XmNlabelInsensitivePixmap, picture,
                                   XmNhighlightThickness, 0, XmNshadowThickness, 2, nullptr);
}

/* Stacks both buttons at the right of `left`: up on top, down at the bottom. */
void addStepButtons(Widget form, Widget left, Widget *up, Widget *down) {
    *up = stepButton(form, "up", true);
    *down = stepButton(form, "down", false);
    XtVaSetValues(*up, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, left,
                  XmNtopAttachment, XmATTACH_FORM, XmNtopOffset, 2, nullptr);
    XtVaSetValues(*down, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, left,
                  XmNbottomAttachment, XmATTACH_FORM, XmNbottomOffset, 2, nullptr);
}

/* A text field at the right of `left` (at the form's edge for none). */
Widget addField(Widget form, Widget left, short columns, short maxLength) {
    return XtVaCreateManagedWidget(
        "input", xmTextFieldWidgetClass, form, XmNcolumns, columns, XmNmaxLength, maxLength,
        XmNshadowThickness, 2, XmNmarginHeight, 2, XmNmarginWidth, 3, XmNtopAttachment,
        XmATTACH_FORM, XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget,
        left, nullptr);
}

/* A "/" or ":" between two fields; the label shows its own name. */
Widget addSeparator(Widget form, Widget left, const char *text) {
    return XtVaCreateManagedWidget(text, xmLabelWidgetClass, form, XmNtopAttachment,
                                   XmATTACH_FORM, XmNtopOffset, kSeparatorTop, XmNleftAttachment,
                                   XmATTACH_WIDGET, XmNleftWidget, left, nullptr);
}

/* One row of the section: a caption, the control's holder and a label for its reports.
** Returns the holder; `report` gets the report label. */
Widget addRow(Widget area, Widget above, const char *caption, Widget *report) {
    auto attachTop = [above](Arg *args) {
        XtSetArg(args[0], XmNtopAttachment, above ? XmATTACH_WIDGET : XmATTACH_FORM);
        XtSetArg(args[1], XmNtopWidget, above);
        XtSetArg(args[2], XmNtopOffset, above ? kRowGap : 0);
    };
    Arg top[3];
    attachTop(top);
    Widget label = XtCreateManagedWidget("caption", xmLabelWidgetClass, area, top, 3);
    setLabel(label, caption);
    XtVaSetValues(label, XmNwidth, kCaptionWidth, XmNalignment, XmALIGNMENT_BEGINNING,
                  XmNrecomputeSize, False, XmNleftAttachment, XmATTACH_FORM, nullptr);
    Widget holder = XtCreateManagedWidget("holder", xmFormWidgetClass, area, top, 3);
    XtVaSetValues(holder, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, label, nullptr);
    *report = XtCreateManagedWidget("report", xmLabelWidgetClass, area, top, 3);
    XtVaSetValues(*report, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, holder,
                  XmNleftOffset, 16, nullptr);
    return holder;
}

void showNumber(Widget, void *report, int32_t *value) {
    setLabel(static_cast<Widget>(report), "reported " + std::to_string(*value));
}

void showDate(GuiDateInput *, void *report, int32_t *time) {
    KxTimeStruct local{};
    TimeToBreakdownStruct(&local, *time);
    char text[64];
    std::snprintf(text, sizeof text, "reported %04d-%02d-%02d", local.iYear, local.iMonth,
                  local.iDay);
    setLabel(static_cast<Widget>(report), text);
}

void showTime(GuiTimeInput *, void *report, int32_t *time) {
    KxTimeStruct utc{};
    TimeToUTCBreakdownStruct(&utc, *time);
    char text[64];
    std::snprintf(text, sizeof text, "reported %02d:%02d UTC", utc.iHours, utc.iMinutes);
    setLabel(static_cast<Widget>(report), text);
}

/* A number in a sunken frame with its buttons hanging on the right edge. */
Widget addNumberInput(Widget area, Widget above, const char *caption, int32_t max, int32_t min,
                      int32_t initial, int32_t width, int32_t wrap) {
    Widget report = nullptr;
    Widget holder = addRow(area, above, caption, &report);
    Widget frame = XtVaCreateManagedWidget("frame", xmFrameWidgetClass, holder,
                                           XmNshadowThickness, 2, XmNshadowType, XmSHADOW_IN,
                                           nullptr);
    Widget form = XtVaCreateManagedWidget("form", xmFormWidgetClass, frame, nullptr);
    Widget text = XtVaCreateManagedWidget(
        "text", xmTextFieldWidgetClass, form, XmNcolumns, 4, XmNhighlightThickness, 0,
        XmNshadowThickness, 0, XmNmarginHeight, 2, XmNmarginWidth, 3, XmNleftAttachment,
        XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
        nullptr);
    Widget up = stepButton(form, "button", true);
    Widget down = stepButton(form, "button", false);
    XtVaSetValues(text, XmNrightAttachment, XmATTACH_WIDGET, XmNrightWidget, up, nullptr);
    XtVaSetValues(up, XmNrightAttachment, XmATTACH_FORM, XmNtopAttachment, XmATTACH_FORM,
                  XmNbottomAttachment, XmATTACH_POSITION, XmNbottomPosition, 50, nullptr);
    XtVaSetValues(down, XmNrightAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                  XmNtopAttachment, XmATTACH_POSITION, XmNtopPosition, 50, XmNleftAttachment,
                  XmATTACH_OPPOSITE_WIDGET, XmNleftWidget, up, nullptr);
    GuiNumInput *input = GuiManageNumInput(text, up, down, max, min, initial, width, wrap);
    GuiAddNumInputCallback(input, showNumber, report);
    setLabel(report, "hold a button to repeat");
    return holder;
}

/* Day / month / year with the buttons at the right, showing today as the server sees it. */
Widget addDateInput(Widget area, Widget above) {
    Widget report = nullptr;
    Widget form = addRow(area, above, "Date (day/month/year)", &report);
    Widget day = addField(form, nullptr, 2, 2);
    Widget month = addField(form, addSeparator(form, day, "/"), 4, 4);
    Widget year = addField(form, addSeparator(form, month, "/"), 4, 4);
    Widget up = nullptr, down = nullptr;
    addStepButtons(form, year, &up, &down);
    GuiDateInput *input = GuiManageDateInput(year, month, day, up, down);
    GuiAddDateInputCallback(input, showDate, report);
    GuiDateInputSetNow(input);
    return form;
}

/* Hours : minutes with the buttons at the right, limited to office hours. */
Widget addTimeInput(Widget area, Widget above) {
    Widget report = nullptr;
    Widget form = addRow(area, above, "Time 08:00 to 18:30", &report);
    Widget hours = addField(form, nullptr, 2, 2);
    Widget minutes = addField(form, addSeparator(form, hours, ":"), 2, 2);
    Widget up = nullptr, down = nullptr;
    addStepButtons(form, minutes, &up, &down);
    GuiTimeInput *input = GuiManageTimeInput(hours, minutes, up, down);
    GuiTimeInputSetMinTime(input, 8, 0);
    GuiTimeInputSetMaxTime(input, 18, 30);
    GuiAddTimeInputCallback(input, showTime, report);
    GuiTimeInputSet(input, 9, 30);
    return form;
}

} // namespace

namespace gallery {

void buildInputsSection(Widget area) {
    Widget row = addNumberInput(area, nullptr, "Copies 1 to 10, wraps", 10, 1, 3, 0, 1);
    row = addNumberInput(area, row, "Retries 0 to 20, 3 digits", 20, 0, 5, 3, 0);
    row = addDateInput(area, row);
    addTimeInput(area, row);
}

} // namespace gallery
