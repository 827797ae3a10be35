/* rawscreen.cpp - the benchmark's baseline: the widgets the library makes for a screen,
** built by hand in raw Motif in the cheapest order Motif allows (children created
** unmanaged, each container managing its children in one call once they are complete).
** The controls' behaviour (handlers, values the controls write later) is left out. */
#include <X11/IntrinsicP.h>
#include <X11/CompositeP.h>
#include <Xm/DragDrop.h>
#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <Xm/ScrolledW.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <map>
#include <string>

#include "screenparts.h"

namespace bench {
namespace {

class Args {
public:
    Args &add(const char *name, XtArgVal value) {
        Arg a;
        XtSetArg(a, const_cast<char *>(name), value);
        args_.push_back(a);
        return *this;
    }
    template <typename T>
    Args &add(const char *name, T *value) {
        return add(name, reinterpret_cast<XtArgVal>(value));
    }
    Widget create(const char *name, WidgetClass cls, Widget parent) {
        return XtCreateWidget(name, cls, parent, args_.data(), static_cast<Cardinal>(args_.size()));
    }
private:
    std::vector<Arg> args_;
};

/* Compound strings and colours made once per screen, as a hand-written client would. */
class Resources {
public:
    explicit Resources(Widget w) : widget_(w) {}
    ~Resources() {
        for (auto &s : strings_) XmStringFree(s.second);
    }
    XmString text(const std::string &t) {
        XmString &s = strings_[t];
        if (s == nullptr) s = XmStringCreateLtoR(const_cast<char *>(t.c_str()), const_cast<char *>(XmSTRING_DEFAULT_CHARSET));
        return s;
    }
    Pixel colour(const char *name) {
        static std::map<std::string, Pixel> known;
        auto it = known.find(name);
        if (it != known.end()) return it->second;
        XColor exact, screen;
        XAllocNamedColor(XtDisplay(widget_), DefaultColormapOfScreen(XtScreen(widget_)), name, &screen, &exact);
        return known[name] = screen.pixel;
    }
private:
    Widget widget_;
    std::map<std::string, XmString> strings_;
};

/* Manages every child of a container in one call and lets it lay them out once, as Xt
** does for an unrealized container just before it realizes it. */
void finish(Widget w) {
    auto *composite = reinterpret_cast<CompositeWidget>(w);
    const Cardinal n = composite->composite.num_children;
    if (n == 0) return;
    XtManageChildren(composite->composite.children, n);
    XtWidgetProc changeManaged = reinterpret_cast<CompositeWidgetClass>(XtClass(w))->composite_class.change_managed;
    if (changeManaged != nullptr) changeManaged(w);
}

/* The grid of the library's layout pass: cells in rows of `columns`, each column as wide
** and each row as high as its largest cell plus a margin of 5, columns 20 apart. */
void placeGrid(const std::vector<Widget> &cells, int columns) {
    columns = std::clamp<int>(columns, 1, std::max<int>(1, static_cast<int>(cells.size())));
    const size_t rows = (cells.size() + columns - 1) / columns;
    std::vector<int> widths(columns, 0), heights(rows, 0);
    for (size_t i = 0; i < cells.size(); ++i) {
        Dimension w = 0, h = 0;
        XtVaGetValues(cells[i], XtNwidth, &w, XtNheight, &h, nullptr);
        widths[i % columns] = std::max(widths[i % columns], w + 5);
        heights[i / columns] = std::max(heights[i / columns], h + 5);
    }
    int x = 0, y = 0;
    for (size_t i = 0; i < cells.size(); ++i) {
        XtVaSetValues(cells[i], XmNtopAttachment, XmATTACH_FORM, XmNleftAttachment, XmATTACH_FORM,
                      XmNleftOffset, x, XmNtopOffset, y, nullptr);
        x += widths[i % columns] + 20;
        if (static_cast<int>(i % columns) + 1 == columns) x = 0, y += heights[i / columns];
    }
}

class RawBuilder {
public:
    RawBuilder(Widget form, std::vector<Widget> &outers) : res_(form), outers_(outers) {}

    /* Builds the part in `where` and returns its outer widget, complete and laid out. */
    Widget build(Widget where, const Part &part) {
        switch (part.kind) {
        case Kind::GroupBox: return groupBox(where, part);
        case Kind::Grid: return grid(where, part);
        case Kind::Label: return label(where);
        case Kind::Edit: return outer(textArgs(40, 20, 1).add(XmNvalue, "text").create("text", xmTextWidgetClass, where));
        case Kind::MultiLineEdit: return multiLineEdit(where);
        case Kind::Combo: return combo(where);
        case Kind::List: return list(where);
        case Kind::Toggle: return outer(toggle(where, "toggle", "Option", true));
        case Kind::Radio: return radio(where);
        case Kind::Button:
            return outer(Args().add(XmNlabelString, res_.text("Apply")).add(XmNhighlightThickness, 0)
                             .add(XmNshadowThickness, 2).create("pushb", xmPushButtonWidgetClass, where));
        case Kind::Number: return number(where);
        case Kind::Date: return clock(where, true);
        case Kind::Time: return clock(where, false);
        }
        return nullptr;
    }

private:
    Widget outer(Widget w) {
        outers_.push_back(w);
        return w;
    }

    /* A label's text is its own: its string is made for it and freed at once. */
    Widget label(Widget where) {
        const std::string text = labelText(++labels_);
        XmString s = XmStringCreateLtoR(const_cast<char *>(text.c_str()), const_cast<char *>(XmSTRING_DEFAULT_CHARSET));
        Widget w = Args().add(XmNalignment, XmALIGNMENT_BEGINNING).add(XmNlabelString, s)
                       .create("label", xmLabelWidgetClass, where);
        XmStringFree(s);
        return outer(w);
    }

    Widget groupBox(Widget where, const Part &part) {
        Widget frame = outer(Args().add(XmNmarginWidth, 5).add(XmNmarginHeight, 5).create("frame", xmFrameWidgetClass, where));
        Args().add(XmNchildType, XmFRAME_TITLE_CHILD).add(XmNlabelString, res_.text("Block"))
            .create("label", xmLabelWidgetClass, frame);
        Widget form = XtCreateWidget("form", xmFormWidgetClass, frame, nullptr, 0);
        for (const Part &child : part.children) build(form, child);
        finish(form);
        finish(frame);
        return frame;
    }

    Widget grid(Widget where, const Part &part) {
        Widget form = outer(Args().add(XmNmarginHeight, 20).add(XmNmarginWidth, 20).create("rowcol", xmFormWidgetClass, where));
        std::vector<Widget> cells;
        for (const Part &child : part.children) cells.push_back(build(form, child));
        placeGrid(cells, 2);
        finish(form);
        return form;
    }

    Args textArgs(int maxLength, int columns, int rows) {
        Args args;
        args.add(XmNrows, rows).add(XmNcolumns, columns).add(XmNmaxLength, maxLength).add(XmNhighlightThickness, 0)
            .add(XmNshadowThickness, 2).add(XmNmarginHeight, 2).add(XmNmarginWidth, 3)
            .add(XmNbackground, res_.colour("white"));
        return args;
    }

    static Args scrolledWindowArgs() {
        Args args;
        args.add(XmNscrollingPolicy, XmAPPLICATION_DEFINED).add(XmNvisualPolicy, XmVARIABLE)
            .add(XmNscrollBarDisplayPolicy, XmSTATIC).add(XmNshadowThickness, 0);
        return args;
    }

    Widget multiLineEdit(Widget where) {
        Widget window = outer(scrolledWindowArgs().create("textSW", xmScrolledWindowWidgetClass, where));
        textArgs(200, 30, 3).add(XmNeditMode, XmMULTI_LINE_EDIT).create("text", xmTextWidgetClass, window);
        finish(window);
        return window;
    }

    /* A sunken frame and the form inside it: the box of a combo box or a number. */
    Widget insetFrame(Widget where, Widget *form) {
        Widget frame = outer(Args().add(XmNshadowThickness, 2).add(XmNshadowType, XmSHADOW_IN)
                                 .create("frame", xmFrameWidgetClass, where));
        *form = XtCreateWidget("form", xmFormWidgetClass, frame, nullptr, 0);
        return frame;
    }

    std::vector<XmString> entries(Kind kind) {
        std::vector<XmString> items;
        for (int i = 0; i < entryCount(kind); ++i) items.push_back(res_.text(entryText(kind, i)));
        return items;
    }

    Widget combo(Widget where) {
        Widget form = nullptr;
        Widget frame = insetFrame(where, &form);
        Widget button = Args().add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_FORM)
                            .add(XmNrightAttachment, XmATTACH_FORM).add(XmNhighlightThickness, 0)
                            .add(XmNshadowThickness, 2).create("button", xmPushButtonWidgetClass, form);
        Args().add(XmNtopAttachment, XmATTACH_FORM).add(XmNleftAttachment, XmATTACH_FORM)
            .add(XmNrightAttachment, XmATTACH_WIDGET).add(XmNrightWidget, button).add(XmNeditable, False)
            .add(XmNhighlightThickness, 0).add(XmNshadowThickness, 0).add(XmNmarginHeight, 2).add(XmNmarginWidth, 3)
            .add(XmNbackground, res_.colour("white")).create("text", xmTextFieldWidgetClass, form);
        finish(form);
        finish(frame);
        /* The drop-down hangs under the box in the item's parent form, never mapped. */
        Widget window = scrolledWindowArgs().add(XmNleftAttachment, XmATTACH_OPPOSITE_WIDGET).add(XmNleftWidget, frame)
                            .add(XmNrightAttachment, XmATTACH_OPPOSITE_WIDGET).add(XmNrightWidget, frame)
                            .add(XmNtopAttachment, XmATTACH_WIDGET).add(XmNtopWidget, frame)
                            .add(XtNmappedWhenManaged, False).create("listSW", xmScrolledWindowWidgetClass, where);
        std::vector<XmString> items = entries(Kind::Combo);
        Args().add(XmNvisibleItemCount, 4).add(XtNmappedWhenManaged, False).add(XmNhighlightThickness, 0)
            .add(XmNitems, items.data()).add(XmNitemCount, static_cast<int>(items.size()))
            .add(XmNbackground, res_.colour("white")).create("list", xmListWidgetClass, window);
        finish(window);
        return frame;
    }

    Widget list(Widget where) {
        Widget window = outer(scrolledWindowArgs().create("listSW", xmScrolledWindowWidgetClass, where));
        std::vector<XmString> items = entries(Kind::List);
        Args().add(XmNvisibleItemCount, 4).add(XmNitems, items.data()).add(XmNitemCount, static_cast<int>(items.size()))
            .add(XmNselectedItems, items.data()).add(XmNselectedItemCount, 1)
            .add(XmNbackground, res_.colour("white")).create("list", xmListWidgetClass, window);
        finish(window);
        return window;
    }

    Widget toggle(Widget where, const char *name, const std::string &label, bool set) {
        Args args;
        args.add(XmNlabelString, res_.text(label)).add(XmNselectColor, res_.colour("red"));
        if (set) args.add(XmNset, True);
        return args.create(name, xmToggleButtonWidgetClass, where);
    }

    Widget radio(Widget where) {
        Widget box = outer(XmCreateRadioBox(where, const_cast<char *>("radiobox"), nullptr, 0));
        for (int i = 0; i < entryCount(Kind::Radio); ++i)
            outer(toggle(box, "radiobutton", entryText(Kind::Radio, i), i == 0));
        finish(box);
        return box;
    }

    /* An arrow button showing a sign (the benchmark loads no arrow pictures). */
    Widget arrow(Args args, Widget form, const char *name, const char *sign) {
        return args.add(XmNhighlightThickness, 0).add(XmNshadowThickness, 2).add(XmNmarginWidth, 0)
            .add(XmNmarginHeight, 0).add(XmNlabelString, res_.text(sign)).create(name, xmPushButtonWidgetClass, form);
    }

    Widget number(Widget where) {
        Widget form = nullptr;
        Widget frame = insetFrame(where, &form);
        Args().add(XmNleftAttachment, XmATTACH_FORM).add(XmNrightAttachment, XmATTACH_FORM).add(XmNrightOffset, 15)
            .add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_FORM).add(XmNcolumns, 6)
            .add(XmNvalue, "5").add(XmNhighlightThickness, 0).add(XmNshadowThickness, 0).add(XmNmarginHeight, 2)
            .add(XmNmarginWidth, 3).add(XmNcursorPositionVisible, False).add(XmNbackground, res_.colour("white"))
            .create("text", xmTextFieldWidgetClass, form);
        arrow(Args().add(XmNrightAttachment, XmATTACH_FORM).add(XmNtopAttachment, XmATTACH_FORM)
                  .add(XmNbottomAttachment, XmATTACH_POSITION).add(XmNbottomPosition, 50), form, "button", "+");
        arrow(Args().add(XmNrightAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_FORM)
                  .add(XmNtopAttachment, XmATTACH_POSITION).add(XmNtopPosition, 50), form, "button", "-");
        finish(form);
        finish(frame);
        return frame;
    }

    static Args after(Widget leftOf) {
        Args args;
        if (leftOf == nullptr) args.add(XmNleftAttachment, XmATTACH_FORM);
        else args.add(XmNleftAttachment, XmATTACH_WIDGET).add(XmNleftWidget, leftOf);
        return args;
    }

    static Widget field(Widget form, int maxLength, int columns, Widget leftOf) {
        return after(leftOf).add(XmNshadowThickness, 2).add(XmNmaxLength, maxLength).add(XmNcolumns, columns)
            .add(XmNmarginHeight, 2).add(XmNmarginWidth, 3).add(XmNtopAttachment, XmATTACH_FORM)
            .create("input", xmTextFieldWidgetClass, form);
    }

    static Widget separator(Widget form, const char *sign, Widget leftOf) {
        return after(leftOf).add(XmNtopAttachment, XmATTACH_FORM).add(XmNtopOffset, 5)
            .create(sign, xmLabelWidgetClass, form);
    }

    /* A date (day / month / year) or a time (hours : minutes) and its two steppers. */
    Widget clock(Widget where, bool date) {
        Widget form = outer(XtCreateWidget("form", xmFormWidgetClass, where, nullptr, 0));
        Widget last = field(form, 2, 2, nullptr);
        last = field(form, 2, date ? 4 : 2, separator(form, date ? "/" : ":", last));
        if (date) last = field(form, 4, 4, separator(form, "/", last));
        Widget up = arrow(after(last).add(XmNtopAttachment, XmATTACH_FORM).add(XmNtopOffset, 2), form, "up", "+");
        arrow(after(last).add(XmNbottomAttachment, XmATTACH_FORM).add(XmNbottomOffset, 2)
                  .add(XmNtopAttachment, XmATTACH_WIDGET).add(XmNtopWidget, up), form, "down", "-");
        finish(form);
        return form;
    }

    Resources res_;
    std::vector<Widget> &outers_;
    int labels_ = 0; /* labels built so far */
};

} // namespace

/* The text widgets are drop sites: Motif's registry of drop sites is updated once per
** build and teardown, not once per widget (which costs quadratic time).
** Out of line, so that a profiler shows their cost beside the library's entry points. */
[[gnu::noinline]] RawScreen buildRawScreen(Widget form, const Part &block, int count) {
    RawScreen screen;
    RawBuilder builder(form, screen.outers);
    XmDropSiteStartUpdate(form);
    for (int b = 0; b < count; ++b) {
        Widget top = builder.build(form, block);
        if (b >= kColumns)
            XtVaSetValues(top, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition, (b % kColumns) * (100 / kColumns),
                          XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, screen.tops[b - kColumns], XmNtopOffset, 4,
                          nullptr);
        else
            XtVaSetValues(top, XmNleftAttachment, XmATTACH_POSITION, XmNleftPosition, (b % kColumns) * (100 / kColumns),
                          nullptr);
        /* Realized before it is managed into the realized form, so that the form places
        ** it at its size. */
        XtRealizeWidget(top);
        screen.tops.push_back(top);
    }
    XtManageChildren(screen.tops.data(), static_cast<Cardinal>(screen.tops.size()));
    XmDropSiteEndUpdate(form);
    return screen;
}

[[gnu::noinline]] void destroyRawScreen(RawScreen &screen) {
    if (screen.tops.empty()) return;
    Widget form = XtParent(screen.tops.front());
    XmDropSiteStartUpdate(form);
    XtUnmanageChildren(screen.tops.data(), static_cast<Cardinal>(screen.tops.size()));
    for (Widget w : screen.tops) XtDestroyWidget(w);
    XmDropSiteEndUpdate(form);
    screen.tops.clear();
    screen.outers.clear();
}

} // namespace bench
