/* section_tabs.cpp - the gallery's tab holders: plain tabs on one row beside stacking
** tabs that wrap into rows, each page with a line that names it. */
#include <Xm/Form.h>
#include <Xm/Label.h>

#include <string>

#include "gallery.h"
#include "xcontrols/guitabs.h"

namespace {

/* A fixed-size form for a holder, right of `left` (null: at the section's left edge). */
Widget holderForm(Widget area, Widget left, int width) {
    return XtVaCreateManagedWidget(
        "holder", xmFormWidgetClass, area, XmNwidth, width, XmNheight, 150, XmNtopAttachment,
        XmATTACH_FORM, XmNleftAttachment, left ? XmATTACH_WIDGET : XmATTACH_FORM, XmNleftWidget,
        left, XmNleftOffset, left ? 16 : 0, nullptr);
}

void fillPages(GuiTabs *tabs, char **titles, int count) {
    for (int i = 0; i < count; ++i) {
        const std::string text = std::string("The page of \"") + titles[i] + "\"";
        XmString s = XmStringCreateLocalized(const_cast<char *>(text.c_str()));
        XtVaCreateManagedWidget("note", xmLabelWidgetClass, GuiGetTabWidgetAtIndex(tabs, i),
                                XmNlabelString, s, nullptr);
        XmStringFree(s);
    }
}

} // namespace

namespace gallery {

void buildTabsSection(Widget area) {
    char *plain[] = {const_cast<char *>("General"), const_cast<char *>("Schedule"),
                     const_cast<char *>("Advanced")};
    Widget left = holderForm(area, nullptr, 300);
    GuiTabs *tabs = GuiCreateTabs(left, 3, plain);
    fillPages(tabs, plain, 3);

    char *stacked[] = {const_cast<char *>("Files"),    const_cast<char *>("Compression"),
                       const_cast<char *>("Verify"),   const_cast<char *>("Notifications"),
                       const_cast<char *>("Retention"), const_cast<char *>("Logs")};
    GuiTabs *rows = GuiCreateStackingTabs(holderForm(area, left, 300), 6, stacked);
    fillPages(rows, stacked, 6);
    GuiDisableTab(rows, 6);
    GuiSelectTab(rows, 2);
}

} // namespace gallery
