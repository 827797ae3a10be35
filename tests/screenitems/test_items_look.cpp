// How number, date and time items look on a shown screen, with signs on the arrow buttons
// and then with the button pictures: the geometry that makes them usable (fields side by
// side, arrow buttons apart and inside their form).
#include "plgscreen.h"
#include "guibmploader.h"
#include "guimakegcsandfonts.h"
namespace xt {
namespace {
using Look = PlgScreenTest;
/* Neither button covers the other, and both lie inside their form. */
void expectApart(Widget up, Widget down) {
    const Geometry u = geometry(up), d = geometry(down), holder = geometry(XtParent(up));
    EXPECT_TRUE(u.y >= 0 && u.y + u.height <= d.y && d.y + d.height <= holder.height) << XtName(up);
}
TEST_F(Look, ArrowsShowSignsThenThePicturesAndStayUsable) {
    if (upPixmap != 0 || downPixmap != 0) GTEST_SKIP() << "the pictures are already loaded";
    for (bool withPictures : {false, true}) {
        SCOPED_TRACE(withPictures ? "pictures" : "signs");
        if (withPictures) GuiInitLoadBmps(form());
        if (withPictures) GuiCreateGcsAndFonts(form());
        Screen s;
        void *grid = s.add(nullptr, RowColManager, 100, rowColData(2));
        s.add(grid, Label, 1, labelData("Copies"));
        s.add(grid, NumInput, 2, numInputData(3, 10, 1, 4));
        s.add(grid, Label, 3, labelData("Start date"));
        s.add(grid, DateInput, 4, dateInputData(dateTime(2025, 11, 30)));
        s.add(grid, Label, 5, labelData("Start time"));
        s.add(grid, TimeInput, 6, timeInputData(timeOfDay(23, 45)));
        show(s);
        const auto *number = numInputOf(s, 2);
        const auto *date = dateInputOf(s, 4);
        const auto *time = timeInputOf(s, 6);
        ASSERT_TRUE(number && date && time);
        for (Widget up : {number->wUp, date->wUp, time->wUp}) {
            unsigned char type = 0;
            Pixmap shown = 0;
            XtVaGetValues(up, XmNlabelType, &type, XmNlabelPixmap, &shown, nullptr);
            EXPECT_EQ(type, withPictures ? XmPIXMAP : XmSTRING) << XtName(up);
            EXPECT_TRUE(!withPictures || shown == upPixmap) << XtName(up);
        }
        expectApart(number->wUp, number->wDown);
        expectApart(date->wUp, date->wDown);
        expectApart(time->wUp, time->wDown);
        const Geometry text = geometry(number->wText);
        EXPECT_LE(text.x + text.width, geometry(number->wUp).x) << "the buttons cover the text";
        click(time->wUp);
        EXPECT_EQ(textOf(time->wHours), "23") << "the hours stop at 23";
        click(time->wDown);
        EXPECT_EQ(data<TimeInputData>(s, 6)->time, timeOfDay(22, 45));
        destroy(s);
    }
}
} // namespace
} // namespace xt
