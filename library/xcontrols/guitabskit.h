/* guitabskit.h - what the tab holder's source files share: the tab layout pass, the
** redraw, page sensitivity and the making of tabs (private). */
#ifndef XC_GUITABSKIT_H
#define XC_GUITABSKIT_H

#include "guicommon.h"
#include "xcontrols/guitabs.h"

namespace xc::tabs {

/* The trace number of the "TAB redraw for ..." lines. */
constexpr int32_t kTraceRedraw = 1310;

/* The compound strings of the tab titles that one layout pass made, by tab index (null
** for a hidden tab), freed when the object goes. Without memory for the table the
** strings are freed at once and the titles are measured but not drawn. */
class TitleStrings {
public:
    explicit TitleStrings(int32_t count);
    ~TitleStrings();
    TitleStrings(const TitleStrings &) = delete;
    TitleStrings &operator=(const TitleStrings &) = delete;
    void keep(int32_t index, XmString s);
    XmString at(int32_t index) const { return strings_ ? strings_[index] : nullptr; }
private:
    int32_t count_;
    XmString *strings_;
};

/* The title's width on the shared font list (0 without one). */
int titleWidth(XmString title);

/* The tab layout pass: places every shown tab in use (left and right x, row) for a usable
** width `width` (plain tabs never wrap), gives the selected tab's row the number 0 and
** returns the number of rows. `strings`, made for the tabs in use, receives the titles'
** compound strings. */
int layoutTabs(GuiTabs *tabs, TitleStrings &strings, int width);

/* Redraws the drawing area when it has a window. */
void redraw(GuiTabs *tabs);
/* The same after the trace "TAB redraw for <caller>". */
void redrawFor(GuiTabs *tabs, const char *caller);

/* Only the selected tab's page is sensitive. */
void setPageSensitivity(GuiTabs *tabs);

/* Fills the record of the tab at `index`: enabled, shown, a copy of the title (an empty
** one for null; none when memory runs out, which draws as empty) and a new managed
** "tabPage" frame in the page form, insensitive unless `index` is 0. */
void makeTab(GuiTabs *tabs, int32_t index, const char *title);

/* A new managed, empty "tabPage" frame filling the page form. */
Widget makePage(Widget pageForm);

/* A zero-filled array of `count` tab records from the default pool, or null. */
GuiTab *allocateTabs(int32_t count);

} // namespace xc::tabs

#endif
