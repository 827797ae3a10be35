// How number, date and time items look on a shown screen, with the button pictures and
// before they are loaded: a rendered picture to look at, and the geometry that makes it
// usable (fields side by side, arrow buttons apart and inside their form).
#include "itemsfixture.h"

#include <Xm/Form.h>

#include <cstdlib>
#include <filesystem>

#include "guibmploader.h"
#include "guimakegcsandfonts.h"

namespace {

using items::textOf;

class Look : public items::ItemsTest {
protected:
    /* Labels and the three items in a two-column grid. */
    static void fill(xt::Screen &s) {
        void *grid = s.add(nullptr, RowColManager, 100, xt::rowColData(2));
        s.add(grid, Label, 1, xt::labelData("Copies"));
        s.add(grid, NumInput, 2, xt::numInputData(3, 10, 1, 4));
        s.add(grid, Label, 3, xt::labelData("Start date"));
        s.add(grid, DateInput, 4, xt::dateInputData(items::dateTime(2025, 11, 30)));
        s.add(grid, Label, 5, xt::labelData("Start time"));
        s.add(grid, TimeInput, 6, xt::timeInputData(items::timeOfDay(23, 45)));
    }

    static std::string pictureDir() {
        const char *dir = std::getenv("XC_SNAPSHOT_DIR");
        return dir ? dir : std::filesystem::temp_directory_path().string();
    }

    /* Neither button covers the other, and both lie inside their form. */
    static void expectApart(Widget up, Widget down) {
        const xt::Geometry u = xt::geometry(up), d = xt::geometry(down),
                           holder = xt::geometry(XtParent(up));
        EXPECT_LE(u.y + u.height, d.y) << "the up button covers the down button";
        EXPECT_GE(u.y, 0);
        EXPECT_LE(d.y + d.height, holder.height);
    }

    /* The item's widgets keep apart; one click on each arrow changes the value. */
    void expectUsable(const xt::Screen &s) {
        const GuiNumInput *number = numInputOf(s, 2);
        const GuiDateInput *date = dateInputOf(s, 4);
        const GuiTimeInput *time = timeInputOf(s, 6);
        ASSERT_NE(number, nullptr);
        ASSERT_NE(date, nullptr);
        ASSERT_NE(time, nullptr);
        expectApart(number->wUp, number->wDown);
        expectApart(date->wUp, date->wDown);
        expectApart(time->wUp, time->wDown);
        const xt::Geometry text = xt::geometry(number->wText), arrow = xt::geometry(number->wUp);
        EXPECT_LE(text.x + text.width, arrow.x) << "the number's buttons cover its text";

        xt::click(number->wUp);
        EXPECT_EQ(data<NumInputData>(s, 2)->value, 4);
        xt::click(date->wDown);
        EXPECT_EQ(data<DateInputData>(s, 4)->date, items::dateTime(2025, 11, 29));
        xt::click(time->wUp);
        EXPECT_EQ(textOf(time->wHours), "23") << "the hours stop at 23";
        xt::click(time->wDown);
        EXPECT_EQ(data<TimeInputData>(s, 6)->time, items::timeOfDay(22, 45));
    }
};

TEST_F(Look, WithoutPicturesTheArrowsShowSigns) {
    if (upPixmap != 0 || downPixmap != 0) GTEST_SKIP() << "the pictures are already loaded";
    xt::Screen s;
    fill(s);
    show(s);
    ASSERT_TRUE(xt::snapshot(shell(), pictureDir() + "/screen-inputs-signs.png"));
    unsigned char type = 0;
    XtVaGetValues(numInputOf(s, 2)->wUp, XmNlabelType, &type, nullptr);
    EXPECT_EQ(type, XmSTRING);
    expectUsable(s);
    destroy(s);
}

TEST_F(Look, WithThePicturesTheArrowsShowThem) {
    GuiInitLoadBmps(form());
    GuiCreateGcsAndFonts(form());
    ASSERT_NE(upPixmap, 0u);
    ASSERT_NE(downPixmap, 0u);
    xt::Screen s;
    fill(s);
    show(s);
    ASSERT_TRUE(xt::snapshot(shell(), pictureDir() + "/screen-inputs.png"));
    for (Widget button : {numInputOf(s, 2)->wUp, dateInputOf(s, 4)->wUp, timeInputOf(s, 6)->wUp}) {
        Pixmap shown = 0;
        XtVaGetValues(button, XmNlabelPixmap, &shown, nullptr);
        EXPECT_EQ(shown, upPixmap) << XtName(button);
    }
    expectUsable(s);
    destroy(s);
}

} // namespace
