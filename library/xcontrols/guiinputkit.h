/* guiinputkit.h - pieces that the input controls share: the combo box and the date,
** time and number inputs (private). */
#ifndef XC_GUIINPUTKIT_H
#define XC_GUIINPUTKIT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <Xm/Text.h>
#include <Xm/Xm.h>

#include "xcontrols/guisetupdown.h"

namespace xc {

/* One callback that an input control hangs on one of the caller's widgets. */
struct InputHook {
    Widget widget;
    const char *callbackName;
    XtCallbackProc proc;
};

/* Adds the hooks in order, each with `data` as client data. */
void addHooks(const InputHook *hooks, std::size_t count, XtPointer data);
template <std::size_t N>
void addHooks(const std::array<InputHook, N> &hooks, XtPointer data) {
    addHooks(hooks.data(), N, data);
}

/* The end of a control: takes its hooks off (so that nothing reaches the record while
** its widgets are still being destroyed: a focus move, a late disarm), destroys the
** widgets in the order given and frees the record. On a widget that is going already,
** with a form that holds it, only the focus hooks are taken off: input events no longer
** reach it. */
void destroyControl(void *record, const InputHook *hooks, std::size_t count,
                    std::initializer_list<Widget> widgets);
template <std::size_t N>
void destroyControl(void *record, const std::array<InputHook, N> &hooks,
                    std::initializer_list<Widget> widgets) {
    destroyControl(record, hooks.data(), N, widgets);
}

/* XtSetSensitive on the widgets in the order given (non-zero flag: sensitive). */
void setSensitive(std::initializer_list<Widget> widgets, int32_t sensitive);

/* Marks a stretch of a control's own code that calls out: a field write runs the
** caller's value callbacks, a list selection the client's selection callback, and any
** of them may destroy the control. The destroy then waits until the outermost stretch
** of that control ends, so that its code never runs on a freed record and Motif never
** returns into a widget destroyed under it (outside an event dispatch Xt destroys
** widgets at once). After every call out the stretch asks alive() and stops when the
** control is to go; a doomed control calls its client no more. */
class ControlScope {
public:
    using Destroyer = void (*)(void *record);
    ControlScope(void *record, Destroyer destroy);
    ~ControlScope();
    ControlScope(const ControlScope &) = delete;
    ControlScope &operator=(const ControlScope &) = delete;

    /* False once the control was asked to go while its code runs. */
    bool alive() const;

    /* Destroys the control now, or, while code of it is running, when its outermost
    ** scope ends. */
    static void destroyWhenIdle(void *record, Destroyer destroy);

    /* True while code of any control runs. */
    static bool anyOpen();
    /* Has `fn` called once, when the outermost scope of all ends (after the destroys
    ** that waited for it): work that may free controls waits for it. */
    static void whenAllClosed(void (*fn)());

private:
    void *record_;
    Destroyer destroy_;
    bool destroyRequested_ = false;
    ControlScope *outer_;
};

/* The classes of widget that a control accepts in one place; the library's own
** builders pass exactly these. */
enum class WidgetRole {
    TextField,  /* XmTextField */
    TextInput,  /* XmTextField or XmText */
    StepButton, /* XmPushButton or XmArrowButton: anything else has no arm callback */
    PushButton, /* XmPushButton */
    List,       /* XmList */
};
struct NeededWidget {
    Widget widget;
    WidgetRole role;
};

/* False, with a trace naming `function`, when a widget that a control needs is null or
** of a class its role does not accept. */
bool haveWidgets(const char *function, std::initializer_list<NeededWidget> widgets);
/* haveWidgets for an input made of text fields (TextInput) and an up and a down button
** (StepButton), none of them given twice. */
bool haveStepperWidgets(const char *function, std::initializer_list<Widget> fields, Widget up,
                        Widget down);
/* False, with a trace naming `function`, when an operation is given a null handle or
** out pointer. */
bool haveHandle(const void *handle, const char *function);

/* The field's text read with atoi (text that is no number counts as 0). */
int32_t fieldNumber(Widget field);

/* Sets a control's value callback pair (fields fnCallback and pClientData). */
template <typename Input, typename Callback>
void setCallback(Input *input, Callback callback, void *clientData, const char *function) {
    if (!haveHandle(input, function)) return;
    input->fnCallback = callback;
    input->pClientData = clientData;
}

/* Stores atoi of one of the control's fields at `out` and returns 1; 0 when the
** control or `out` is null. */
template <typename Input>
int readField(int32_t *out, const Input *input, Widget Input::*field, const char *function) {
    if (!haveHandle(input, function) || !haveHandle(out, function)) return 0;
    *out = fieldNumber(input->*field);
    return 1;
}

/* A zero-filled control record from the default pool, or null with a trace naming
** `function` when memory runs out. */
void *allocateRecord(std::size_t size, const char *function);
template <typename T>
T *allocateRecord(const char *function) {
    return static_cast<T *>(allocateRecord(sizeof(T), function));
}

/* Highlights a whole text field (mode XmHIGHLIGHT_SELECTED) or takes the highlight off
** (XmHIGHLIGHT_NORMAL). */
void highlightField(Widget field, XmHighlightMode mode);
/* The focus went to `focused`: it becomes `*current` and carries the highlight. */
void moveHighlight(Widget *current, Widget focused);

/* Writes the value with at least two digits ("%02ld"). */
void writeTwoDigits(Widget field, long value);

/* The callbacks of a control made of text fields and an up and a down button that step
** the field focused last (the date and time inputs). `Input` has the fields wUp,
** wCurrent, fnCallback and pClientData; `step` moves or checks input->wCurrent in a
** direction of GuiSetUpDownValue; `timeOf` gives the shown value as a time; `destroy`
** ends the control (see ControlScope). */
template <typename Input, void (*step)(Input *, int32_t), int (*timeOf)(int32_t *, Input *),
          ControlScope::Destroyer destroy>
struct FieldStepper {
    static Input *inputOf(XtPointer data) { return static_cast<Input *>(data); }

    static void onArm(Widget button, XtPointer data, XtPointer) {
        Input *input = inputOf(data);
        ControlScope scope(input, destroy);
        step(input, button == input->wUp ? GUI_UPDOWN_UP : GUI_UPDOWN_DOWN);
    }
    static void onLosingFocus(Widget, XtPointer data, XtPointer) {
        ControlScope scope(data, destroy);
        step(inputOf(data), GUI_UPDOWN_VALIDATE);
    }
    static void onFocus(Widget field, XtPointer data, XtPointer) {
        moveHighlight(&inputOf(data)->wCurrent, field);
    }
    /* Every change of any field is reported, typed or written, until the control is
    ** to go. */
    static void onValueChanged(Widget, XtPointer data, XtPointer) {
        Input *input = inputOf(data);
        ControlScope scope(input, destroy);
        if (input->fnCallback == nullptr || !scope.alive()) return;
        int32_t time = 0;
        timeOf(&time, input);
        input->fnCallback(input, input->pClientData, &time);
    }
};

/* The length of the longest month name that date inputs show (the locale's names, read
** once): what a month field must hold for a user to type any of them. */
int32_t longestMonthName();

} // namespace xc

#endif
