/* guicombowidgets.cpp - builds the widgets of a stand-alone combo box and its arrow. */
#include "xcontrols/guicombo.h"

#include <Xm/Form.h>
#include <Xm/Frame.h>
#include <Xm/Label.h>
#include <Xm/List.h>
#include <Xm/PushB.h>
#include <Xm/TextF.h>
#include <X11/xpm.h>

#include <initializer_list>

#include "guicommon.h"

namespace {

constexpr int32_t kTracePixmapFailed = 502;
constexpr int32_t kTraceNoParent = 530;
constexpr int32_t kTraceForeignListParent = 531;

/* The drop button's picture: a black arrow pointing down over a short bar. */
const char *const kComboArrow[] = {
    "7 9 2 1",
    "  c #c0c0c0",
    ". c black",
    "  ...  ",
    "  ...  ",
    "  ...  ",
    ".......",
    " ..... ",
    "  ...  ",
    "   .   ",
    "       ",
    " ..... ",
};

Widget topmost(Widget w) {
    while (XtParent(w) != nullptr) w = XtParent(w);
    return w;
}

/* The picture is made in the colours of the application's top-level widget. The
** pixmap lives as long as the button's display: it is never freed. */
void setArrowPicture(Widget button) {
    Widget top = topmost(button);
    XpmAttributes attrs{};
    XtVaGetValues(top, XtNcolormap, &attrs.colormap, XtNdepth, &attrs.depth, nullptr);
    if (XtIsShell(top)) XtVaGetValues(top, XtNvisual, &attrs.visual, nullptr);
    /* A shell that inherits its parent's visual reports none: that is the default one. */
    if (attrs.visual == nullptr) attrs.visual = DefaultVisualOfScreen(XtScreen(button));
    attrs.valuemask = XpmVisual | XpmColormap | XpmDepth | XpmCloseness;
    attrs.closeness = 40000;

    Display *dpy = XtDisplay(button);
    Pixmap arrow = 0;
    const int status = XpmCreatePixmapFromData(dpy, RootWindowOfScreen(XtScreen(button)),
                                               const_cast<char **>(kComboArrow), &arrow,
                                               nullptr, &attrs);
    if (status != XpmSuccess) {
        xc::trace(kTracePixmapFailed, 0, "Failed to create combo pixmap");
        return;
    }
    XtVaSetValues(button, XtNwidth, 14, XtNheight, 14, XmNlabelType, XmPIXMAP,
                  XmNlabelPixmap, arrow, nullptr);
}

Widget makeManaged(Widget (*create)(Widget, String, ArgList, Cardinal), Widget parent,
                   const char *name, ArgList args, Cardinal count) {
    Widget w = create(parent, const_cast<char *>(name), args, count);
    XtManageChild(w);
    return w;
}

/* The sunken frame with the text field and the drop button side by side. */
Widget makeEntry(Widget parent, bool editable, Widget *text, Widget *button) {
    Arg frameArgs[] = {{XmNshadowThickness, 2}, {XmNshadowType, XmSHADOW_IN}};
    Widget frame = makeManaged(XmCreateFrame, parent, "comboFrame", frameArgs, 2);
    Arg formArgs[] = {{XmNresizePolicy, XmRESIZE_GROW}};
    Widget form = makeManaged(XmCreateForm, frame, "ComboForm", formArgs, 1);
    Arg textArgs[] = {{XmNhighlightThickness, 0}, {XmNshadowThickness, 0},
                      {XmNmarginHeight, 2},       {XmNmarginWidth, 3},
                      {XmNeditable, editable}};
    *text = makeManaged(XmCreateTextField, form, "QZ_serverSelectionInput", textArgs, 5);
    Arg buttonArgs[] = {{XmNhighlightThickness, 0}, {XmNshadowThickness, 2},
                        {XmNlabelType, XmPIXMAP}};
    *button = makeManaged(XmCreatePushButton, form, "comboButton", buttonArgs, 3);
    setArrowPicture(*button);
    return frame;
}

/* The label beside the frame; only its left and right edges are attached, so that it
** keeps its own height whatever the parent's. */
void placeLabel(Widget label, Widget frame, bool labelLeft) {
    if (labelLeft) {
        XtVaSetValues(label, XmNleftAttachment, XmATTACH_FORM, nullptr);
        XtVaSetValues(frame, XmNleftWidget, label, XmNleftOffset, 5, XmNleftAttachment,
                      XmATTACH_WIDGET, nullptr);
    } else {
        XtVaSetValues(label, XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, frame,
                      XmNleftOffset, 5, XmNrightAttachment, XmATTACH_NONE, nullptr);
    }
}

/* The field keeps its natural width; the button takes the field's height. */
void placeEntry(Widget text, Widget button) {
    XtVaSetValues(text, XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM,
                  XmNleftAttachment, XmATTACH_FORM, nullptr);
    XtVaSetValues(button, XmNtopAttachment, XmATTACH_OPPOSITE_WIDGET, XmNtopWidget, text,
                  XmNbottomAttachment, XmATTACH_OPPOSITE_WIDGET, XmNbottomWidget, text,
                  XmNleftAttachment, XmATTACH_WIDGET, XmNleftWidget, text, nullptr);
}

/* The drop-down takes the parent's left and right edges and hangs from its bottom edge
** or stands on its top edge; Xt never maps it, the combo does. */
Widget makeDropDown(Widget listParent, Widget parent, bool below, int32_t visibleItems) {
    Arg args[10];
    Cardinal n = 0;
    if (below) {
        XtSetArg(args[n], XmNbottomAttachment, XmATTACH_NONE); ++n;
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_WIDGET); ++n;
        XtSetArg(args[n], XmNtopWidget, parent); ++n;
    } else {
        XtSetArg(args[n], XmNtopAttachment, XmATTACH_NONE); ++n;
        XtSetArg(args[n], XmNbottomAttachment, XmATTACH_WIDGET); ++n;
        XtSetArg(args[n], XmNbottomWidget, parent); ++n;
    }
    XtSetArg(args[n], XmNmappedWhenManaged, False); ++n;
    XtSetArg(args[n], XmNvisibleItemCount, visibleItems); ++n;
    XtSetArg(args[n], XmNlistSizePolicy, XmRESIZE_IF_POSSIBLE); ++n;
    XtSetArg(args[n], XmNleftAttachment, XmATTACH_OPPOSITE_WIDGET); ++n;
    XtSetArg(args[n], XmNleftWidget, parent); ++n;
    XtSetArg(args[n], XmNrightAttachment, XmATTACH_OPPOSITE_WIDGET); ++n;
    XtSetArg(args[n], XmNrightWidget, parent); ++n;
    return makeManaged(XmCreateScrolledList, listParent, "QZ_serverSelectionInput", args, n);
}

void destroyCompanion(Widget, XtPointer companion, XtPointer) {
    XtDestroyWidget(static_cast<Widget>(companion));
}

/* The combo destroys its list last (the scrolled window goes with it, Motif's doing):
** the frame around the field and the label follow it, so that a combo takes all that
** was built for it. */
void destroyWithList(Widget list, std::initializer_list<Widget> companions) {
    for (Widget companion : companions)
        XtAddCallback(list, XmNdestroyCallback, destroyCompanion, companion);
}

} // namespace

extern "C" XC_API GuiCombo *GuiCreateComboAndWidgets(Widget parent, Widget listParent,
                                                     const char *labelText, int32_t labelLeft,
                                                     int32_t listBelow, int32_t visibleItems,
                                                     int32_t userEntry) {
    if (parent == nullptr || listParent == nullptr) {
        xc::trace(kTraceNoParent, 1, "GuiCreateComboAndWidgets without a parent");
        return nullptr;
    }
    if (XtParent(parent) != listParent)
        xc::trace(kTraceForeignListParent, 1,
                  "Combo list parent does not hold the combo's parent");
    Widget text = nullptr, button = nullptr;
    Widget frame = makeEntry(parent, userEntry == 1, &text, &button);
    Widget label = nullptr;
    {
        xc::XmStr title(labelText != nullptr ? labelText : "");
        Arg labelArgs[] = {{XmNlabelString, reinterpret_cast<XtArgVal>(
                                                static_cast<XmString>(title))}};
        label = makeManaged(XmCreateLabel, parent, "comboLabel", labelArgs, 1);
    }
    placeLabel(label, frame, labelLeft == 1);
    placeEntry(text, button);
    Widget list = makeDropDown(listParent, parent, listBelow == 1, visibleItems);
    destroyWithList(list, {frame, label});
    return GuiManageCombo(text, button, list);
}
