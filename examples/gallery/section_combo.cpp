/* section_combo.cpp - the gallery's combo boxes: the label left or right of the field,
** the drop-down below or above it, the field read-only or open to typing. */
#include <Xm/Form.h>
#include <Xm/Label.h>

#include <cstdio>
#include <initializer_list>

#include "gallery.h"
#include "xcontrols/guicombo.h"

namespace {

constexpr int kVisibleItems = 4;
constexpr int kColumnGap = 36;
/* Room between the rows for a drop-down that opens upwards over the row above. */
constexpr int kRowGap = 44;

struct Sample {
    const char *label;
    bool labelLeft;
    bool below;
    bool userEntry;
    std::initializer_list<const char *> items;
    int choice;          /* 1-based item shown at start; 0: the typed text instead */
    const char *typed;
};

const Sample kSamples[2][2] = {
    {
        {"Schedule", true, true, false,
         {"Daily", "Weekly", "Monthly", "Quarterly", "Yearly", "On demand"}, 2, nullptr},
        {"Priority", true, false, true, {"Low", "Normal", "High", "Urgent"}, 2, nullptr},
    },
    {
        {"Server", false, true, true, {"alpha.local", "beta.local", "gamma.local"}, 0,
         "delta.local"},
        {"Keep for", false, false, false, {"7 days", "30 days", "90 days", "1 year"}, 3,
         nullptr},
    },
};

const char *describe(const Sample &s) {
    static char text[96];
    std::snprintf(text, sizeof text, "label %s, drop-down %s, %s", s.labelLeft ? "left" : "right",
                  s.below ? "below" : "above", s.userEntry ? "typing allowed" : "read-only");
    return text;
}

/* A combo with its caption under it; returns the caption, the cell's lowest widget. */
Widget addSample(Widget column, Widget above, const Sample &s) {
    Widget holder = XtVaCreateManagedWidget(
        "combo", xmFormWidgetClass, column, XmNleftAttachment, XmATTACH_FORM,
        XmNtopAttachment, above ? XmATTACH_WIDGET : XmATTACH_FORM, XmNtopWidget, above,
        XmNtopOffset, above ? kRowGap : 0, nullptr);
    GuiCombo *combo = GuiCreateComboAndWidgets(holder, column, s.label, s.labelLeft ? 1 : 0,
                                               s.below ? 1 : 0, kVisibleItems,
                                               s.userEntry ? 1 : 0);
    for (const char *item : s.items) GuiAddToComboList(combo, item);
    if (s.choice > 0) GuiChangeComboSelection(combo, s.choice, 1);
    GuiComboSetText(combo, s.typed);

    XmString caption = XmStringCreateLocalized(const_cast<char *>(describe(s)));
    Widget label = XtVaCreateManagedWidget(
        "caption", xmLabelWidgetClass, column, XmNlabelString, caption, XmNleftAttachment,
        XmATTACH_FORM, XmNtopAttachment, XmATTACH_WIDGET, XmNtopWidget, holder, XmNtopOffset,
        4, nullptr);
    XmStringFree(caption);
    /* Created after the caption and the next row, the drop-down still opens over them:
    ** the combo raises it when it opens. */
    return label;
}

} // namespace

namespace gallery {

/* Two columns of two rows; each column is the Form that its combos' drop-downs live in. */
void buildComboSection(Widget area) {
    Widget left = nullptr;
    for (const auto &samples : kSamples) {
        Widget column = XtVaCreateWidget(
            "column", xmFormWidgetClass, area, XmNtopAttachment, XmATTACH_FORM,
            XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget, left,
            XmNleftOffset, left ? kColumnGap : 0, nullptr);
        Widget above = nullptr;
        for (const auto &sample : samples) above = addSample(column, above, sample);
        XtManageChild(column);
        left = column;
    }
}

} // namespace gallery
