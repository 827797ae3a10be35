/* guiinputkit.cpp - pieces that the input controls share. */
#include "guiinputkit.h"

#include <algorithm>

#include <utility>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>
#include <X11/IntrinsicP.h>
#include <Xm/ArrowB.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>

#include "guicommon.h"

namespace xc {

namespace {

constexpr int32_t kMsgNoWidget = 540;
constexpr int32_t kMsgNullArgument = 541;
constexpr int32_t kMsgOutOfMemory = 542;
constexpr int32_t kMsgWrongClass = 543;
constexpr int32_t kMsgTwice = 544;

ControlScope *gInnermostScope = nullptr;
void (*gWhenAllClosed)() = nullptr;

bool fitsRole(Widget w, WidgetRole role) {
    switch (role) {
    case WidgetRole::TextField: return XtIsSubclass(w, xmTextFieldWidgetClass);
    case WidgetRole::TextInput:
        return XtIsSubclass(w, xmTextFieldWidgetClass) || XtIsSubclass(w, xmTextWidgetClass);
    case WidgetRole::StepButton:
        return XtIsSubclass(w, xmPushButtonWidgetClass) ||
               XtIsSubclass(w, xmArrowButtonWidgetClass);
    case WidgetRole::PushButton: return XtIsSubclass(w, xmPushButtonWidgetClass);
    case WidgetRole::List: return XtIsSubclass(w, xmListWidgetClass);
    }
    return false;
}

} // namespace

ControlScope::ControlScope(void *record, Destroyer destroy)
    : record_(record), destroy_(destroy), outer_(gInnermostScope) {
    gInnermostScope = this;
}

ControlScope::~ControlScope() {
    gInnermostScope = outer_;
    if (destroyRequested_) destroy_(record_);
    if (gInnermostScope == nullptr && gWhenAllClosed != nullptr) std::exchange(gWhenAllClosed, nullptr)();
}

bool ControlScope::anyOpen() { return gInnermostScope != nullptr; }

void ControlScope::whenAllClosed(void (*fn)()) { gWhenAllClosed = fn; }

bool ControlScope::alive() const {
    for (const ControlScope *scope = this; scope != nullptr; scope = scope->outer_)
        if (scope->record_ == record_ && scope->destroyRequested_) return false;
    return true;
}

void ControlScope::destroyWhenIdle(void *record, Destroyer destroy) {
    ControlScope *outermost = nullptr;
    for (ControlScope *scope = gInnermostScope; scope != nullptr; scope = scope->outer_)
        if (scope->record_ == record) outermost = scope;
    if (outermost != nullptr) outermost->destroyRequested_ = true;
    else destroy(record);
}

void addHooks(const InputHook *hooks, std::size_t count, XtPointer data) {
    for (std::size_t i = 0; i < count; ++i)
        XtAddCallback(hooks[i].widget, hooks[i].callbackName, hooks[i].proc, data);
}

namespace {

/* Whether Xt may still call `hook` on a widget that is going already (being destroyed
** with something that holds it): Motif moves the focus off a focused field as it goes.
** The other hooks answer input events, which a going widget never gets again; taking
** each of them off would cost a lookup of its list's name, a tenth of the widget's
** whole destroy. */
bool reachableWhileGoing(const InputHook &hook) {
    return std::strcmp(hook.callbackName, XmNfocusCallback) == 0 ||
           std::strcmp(hook.callbackName, XmNlosingFocusCallback) == 0;
}

} // namespace

void destroyControl(void *record, const InputHook *hooks, std::size_t count,
                    std::initializer_list<Widget> widgets) {
    for (std::size_t i = 0; i < count; ++i)
        if (!hooks[i].widget->core.being_destroyed || reachableWhileGoing(hooks[i]))
            XtRemoveCallback(hooks[i].widget, hooks[i].callbackName, hooks[i].proc, record);
    for (Widget w : widgets) XtDestroyWidget(w);
    MemFreeInternal(&record);
}

void setSensitive(std::initializer_list<Widget> widgets, int32_t sensitive) {
    for (Widget w : widgets) XtSetSensitive(w, sensitive != 0);
}

bool haveWidgets(const char *function, std::initializer_list<NeededWidget> widgets) {
    for (const NeededWidget &needed : widgets) {
        if (needed.widget == nullptr) {
            trace(kMsgNoWidget, -1, "%s: a widget is missing", function);
            return false;
        }
        if (!fitsRole(needed.widget, needed.role)) {
            trace(kMsgWrongClass, -1, "%s: %s is of the wrong class (%s)", function,
                  XtName(needed.widget), XtClass(needed.widget)->core_class.class_name);
            return false;
        }
    }
    return true;
}

bool haveStepperWidgets(const char *function, std::initializer_list<Widget> fields, Widget up,
                        Widget down) {
    for (Widget field : fields)
        if (!haveWidgets(function, {{field, WidgetRole::TextInput}})) return false;
    if (!haveWidgets(function, {{up, WidgetRole::StepButton}, {down, WidgetRole::StepButton}}))
        return false;
    /* The control destroys each of its widgets: one given twice would be destroyed twice. */
    std::vector<Widget> all(fields);
    all.push_back(up);
    all.push_back(down);
    std::sort(all.begin(), all.end());
    if (std::adjacent_find(all.begin(), all.end()) == all.end()) return true;
    trace(kMsgTwice, -1, "%s: a widget is given twice", function);
    return false;
}

bool haveHandle(const void *handle, const char *function) {
    if (handle != nullptr) return true;
    trace(kMsgNullArgument, -1, "%s: null argument", function);
    return false;
}

void *allocateRecord(std::size_t size, const char *function) {
    void *record = MemAllocateFromPool(size, pool());
    if (record == nullptr) trace(kMsgOutOfMemory, -1, "%s: out of memory", function);
    else MemZero(record, size);
    return record;
}

void highlightField(Widget field, XmHighlightMode mode) {
    XmTextSetHighlight(field, 0, XmTextGetMaxLength(field), mode);
}

void moveHighlight(Widget *current, Widget focused) {
    highlightField(*current, XmHIGHLIGHT_NORMAL);
    *current = focused;
    highlightField(*current, XmHIGHLIGHT_SELECTED);
}

int32_t fieldNumber(Widget field) {
    char *text = XmTextGetString(field);
    int32_t value = text ? std::atoi(text) : 0;
    XtFree(text);
    return value;
}

void writeTwoDigits(Widget field, long value) {
    char text[24];
    std::snprintf(text, sizeof text, "%02ld", value);
    XmTextSetString(field, text);
}

} // namespace xc
