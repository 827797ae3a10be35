/* guiscreeninputs.cpp - builders of date, time and number items, and the handlers that
** write the values the user sets back into the item data. */
#include <Xm/Form.h>
#include <Xm/Label.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <cstdio>

#include "guidateinput.h"
#include "guimakegcsandfonts.h"
#include "guinuminput.h"
#include "guitimeinput.h"

#include "guiinputkit.h"
#include "guiscreenitem.h"

namespace xc::screen {
namespace {

/* ---- Handlers ----------------------------------------------------------------------------
** The controls report every change; the value goes into the first field of the item
** data whatever its tag, but only when that field is a word. */

constexpr const char *kFirstWord = "i;";

void onDate(GuiDateInput *, void *node, int32_t *date) {
    trace(1201, 0, "Change date in plg screen");
    if (auto *data = untaggedDataOf<DateInputData>(itemOf(node), kFirstWord))
        data->date = *date;
}

void onTime(GuiTimeInput *, void *node, int32_t *time) {
    trace(1202, 0, "Change time in plg screen to %ld", static_cast<long>(*time));
    if (auto *data = untaggedDataOf<TimeInputData>(itemOf(node), kFirstWord))
        data->time = *time;
}

void onNumber(Widget, void *node, int32_t *value) {
    if (auto *data = untaggedDataOf<NumInputData>(itemOf(node), kFirstWord)) data->value = *value;
}

/* The operations of the date or the time control that its builder uses. */
template <typename Input, typename Handler>
struct ClockControl {
    void (*addCallback)(Input *, Handler, void *);
    void (*setTimeT)(Input *, int32_t);
    void (*setNow)(Input *);
};

constexpr ClockControl<GuiDateInput, GuiDateInputCallback> kDateControl{
    GuiAddDateInputCallback, GuiDateInputSetTimeT, GuiDateInputSetNow};
constexpr ClockControl<GuiTimeInput, GuiTimeInputCallback> kTimeControl{
    GuiAddTimeInputCallback, GuiTimeInputSetTimeT, GuiTimeInputSetNow};

/* Registers the handler, then shows the item's value (0: now): the handler is there
** first, so that what the control shows at once is also what the item holds. */
template <typename Input, typename Handler>
void startClock(const ClockControl<Input, Handler> &control, Input *input, Handler handler,
                void *node, int32_t value) {
    if (input == nullptr) return;
    control.addCallback(input, handler, node);
    if (value != 0) control.setTimeT(input, value);
    else control.setNow(input);
}

/* ---- Widgets -------------------------------------------------------------------------------- */

/* Left side: on the form's edge, or after `leftOf`. */
void attachLeft(Args &args, Widget leftOf) {
    if (leftOf == nullptr) args.add(XmNleftAttachment, XmATTACH_FORM);
    else args.add(XmNleftAttachment, XmATTACH_WIDGET).add(XmNleftWidget, reinterpret_cast<XtArgVal>(leftOf));
}

/* An arrow button with the shared picture; before the pictures are loaded (0) it shows
** a plain sign instead, since a label of pixmap 0 draws from no drawable. The label
** fills the button up to its shadow: the arrow pictures are 11 by 7, so a button is 15
** wide, the room that a number's text field leaves at the right, and two of them stack
** beside a field of one line. */
Widget createArrow(Widget form, const char *name, Pixmap picture, const char *sign, Args &args) {
    XmStr text(picture == 0 ? sign : nullptr);
    args.add(XmNhighlightThickness, 0).add(XmNshadowThickness, 2).add(XmNmarginWidth, 0)
        .add(XmNmarginHeight, 0);
    if (picture != 0)
        args.add(XmNlabelType, XmPIXMAP).add(XmNlabelPixmap, picture)
            .add(XmNlabelInsensitivePixmap, picture);
    else
        args.add(XmNlabelString, reinterpret_cast<XtArgVal>(static_cast<XmString>(text)));
    Widget button = XmCreatePushButton(form, const_cast<char *>(name), args.list(), args.count());
    queueManage(button);
    return button;
}

/* The form of a date or time item, holding its fields in one row. */
Widget createFieldRow(Widget where) {
    Args args;
    Widget form = createHidden(where, "form", xmFormWidgetClass, args);
    queueManage(form);
    return form;
}

/* A field of a date or time: `maxLength` characters, `columns` wide, after `leftOf`. */
Widget createField(Widget form, int32_t maxLength, int32_t columns, Widget leftOf) {
    Args args;
    args.add(XmNshadowThickness, 2).add(XmNmaxLength, maxLength).add(XmNcolumns, columns)
        .add(XmNmarginHeight, 2).add(XmNmarginWidth, 3).add(XmNtopAttachment, XmATTACH_FORM);
    attachLeft(args, leftOf);
    Widget field = XmCreateTextField(form, const_cast<char *>("input"), args.list(), args.count());
    queueManage(field);
    return field;
}

/* The sign between two fields; a label shows its name when it is given no text. */
Widget createSeparator(Widget form, const char *sign, Widget leftOf) {
    Args args;
    args.add(XmNtopAttachment, XmATTACH_FORM).add(XmNtopOffset, 5);
    attachLeft(args, leftOf);
    Widget label = XmCreateLabel(form, const_cast<char *>(sign), args.list(), args.count());
    queueManage(label);
    return label;
}

/* The up and down buttons of a date or time, one above the other after the last field.
** The down button hangs under the up button, so that the form grows to hold both when
** they are taller than the fields, instead of letting one cover the other. */
void createSteppers(Widget form, Widget leftOf, Widget *up, Widget *down) {
    Args upArgs;
    upArgs.add(XmNtopAttachment, XmATTACH_FORM).add(XmNtopOffset, 2);
    attachLeft(upArgs, leftOf);
    *up = createArrow(form, "up", upPixmap, "+", upArgs);
    Args downArgs;
    downArgs.add(XmNbottomAttachment, XmATTACH_FORM).add(XmNbottomOffset, 2)
        .add(XmNtopAttachment, XmATTACH_WIDGET).add(XmNtopWidget, reinterpret_cast<XtArgVal>(*up));
    attachLeft(downArgs, leftOf);
    *down = createArrow(form, "down", downPixmap, "-", downArgs);
}

/* The number's text field; it starts with the value only when the value is in range
** (the number control writes it in any case). */
Widget createNumberText(Widget form, const NumInputData *data) {
    char value[sizeof "-2147483648"];
    Args args;
    args.add(XmNleftAttachment, XmATTACH_FORM).add(XmNrightAttachment, XmATTACH_FORM)
        .add(XmNrightOffset, 15).add(XmNtopAttachment, XmATTACH_FORM)
        .add(XmNbottomAttachment, XmATTACH_FORM);
    if (data->columns > 0) args.add(XmNcolumns, data->columns);
    if (data->minimum <= data->value && data->value <= data->maximum) {
        std::snprintf(value, sizeof value, "%ld", static_cast<long>(data->value));
        args.add(XmNvalue, reinterpret_cast<XtArgVal>(value));
    }
    args.add(XmNhighlightThickness, 0).add(XmNshadowThickness, 0).add(XmNmarginHeight, 2)
        .add(XmNmarginWidth, 3).add(XmNcursorPositionVisible, False).addColour(XmNbackground, form, "white");
    Widget text = XmCreateTextField(form, const_cast<char *>("text"), args.list(), args.count());
    queueManage(text);
    return text;
}

/* The number's buttons on the form's right edge: up in the upper half, down below. */
void createNumberArrows(Widget form, Widget *up, Widget *down) {
    Args upArgs;
    upArgs.add(XmNrightAttachment, XmATTACH_FORM).add(XmNtopAttachment, XmATTACH_FORM)
        .add(XmNbottomAttachment, XmATTACH_POSITION).add(XmNbottomPosition, 50);
    *up = createArrow(form, "button", upPixmap, "+", upArgs);
    Args downArgs;
    downArgs.add(XmNrightAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_FORM)
        .add(XmNtopAttachment, XmATTACH_POSITION).add(XmNtopPosition, 50);
    *down = createArrow(form, "button", downPixmap, "-", downArgs);
}

} // namespace

void buildDateInput(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<DateInputData>(itemOf(node), GUI_TAG_DATEINPUT, GUI_DATEINPUT_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node, 1203, "Can't find parent use toplevel");
    trace(1204, 0, "Create date widgets");

    Widget form = createFieldRow(where);
    Widget day = createField(form, 2, 2, nullptr);
    Widget firstSlash = createSeparator(form, "/", day);
    const int32_t monthName = longestMonthName();
    Widget month = createField(form, monthName, std::max(4, monthName), firstSlash);
    Widget secondSlash = createSeparator(form, "/", month);
    Widget year = createField(form, 4, 4, secondSlash);
    Widget up = nullptr, down = nullptr;
    createSteppers(form, year, &up, &down);

    GuiWidgetRecord *rec = newRecord(nullptr, WIDGET_DATEINPUT);
    GuiDateInput *input = GuiManageDateInput(year, month, day, up, down);
    if (rec) rec->dateInput = input;
    startClock(kDateControl, input, GuiDateInputCallback{onDate}, node, data->date);

    addWidget(gui, form);
    addWidget(gui, firstSlash);
    addWidget(gui, secondSlash);
    appendControl(gui, &rec);
}

void buildTimeInput(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<TimeInputData>(itemOf(node), GUI_TAG_TIMEINPUT, GUI_TIMEINPUT_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Widget form = createFieldRow(where);
    Widget hours = createField(form, 2, 2, nullptr);
    Widget colon = createSeparator(form, ":", hours);
    Widget minutes = createField(form, 2, 2, colon);
    Widget up = nullptr, down = nullptr;
    createSteppers(form, minutes, &up, &down);

    GuiWidgetRecord *rec = newRecord(nullptr, WIDGET_TIMEINPUT);
    GuiTimeInput *input = GuiManageTimeInput(hours, minutes, up, down);
    if (rec) rec->timeInput = input;
    startClock(kTimeControl, input, GuiTimeInputCallback{onTime}, node, data->time);

    addWidget(gui, form);
    addWidget(gui, colon);
    appendControl(gui, &rec);
}

void buildNumInput(Widget parent, void *node) {
    oGuiData *gui = createGuiData(node);
    auto *data = dataOf<NumInputData>(itemOf(node), GUI_TAG_NUMINPUT, GUI_NUMINPUT_SIGNATURE);
    if (gui == nullptr || data == nullptr) return;
    Widget where = whereToBuild(parent, node);

    Widget form = nullptr;
    Widget frame = createInsetFrame(where, &form);
    Widget text = createNumberText(form, data);
    Widget up = nullptr, down = nullptr;
    createNumberArrows(form, &up, &down);

    GuiWidgetRecord *rec = newRecord(nullptr, WIDGET_NUMINPUT);
    /* Past either end the value goes on at the other. */
    GuiNumInput *input = GuiManageNumInput(text, up, down, data->maximum, data->minimum,
                                           data->value, 0, 1);
    if (rec) rec->numInput = input;
    if (input != nullptr) GuiAddNumInputCallback(input, onNumber, node);

    addWidget(gui, frame);
    addWidget(gui, form);
    appendControl(gui, &rec);
}

} // namespace xc::screen
