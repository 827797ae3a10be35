// The layout pass on a real display: attachments, the row-and-column grid, visibility and
// sensitivity, read back from the widgets after Motif has laid them out.
#include "xharness.h"
#include <array>
#include <X11/Xresource.h>
#include <Xm/Form.h>
#include "screens.h"

namespace {

using xt::geometry;
using xt::outerWidget;

class Layout : public xt::XTest {
protected:
    /* A form named `name` filling the screen form: resources can then be given to the
    ** widgets built inside it alone. */
    Widget namedForm(const char *name) {
        Widget w = XmCreateForm(form(), const_cast<char *>(name), nullptr, 0);
        XtVaSetValues(w, XmNleftAttachment, XmATTACH_FORM, XmNrightAttachment, XmATTACH_FORM,
                      XmNtopAttachment, XmATTACH_FORM, XmNbottomAttachment, XmATTACH_FORM, nullptr);
        XtManageChild(w);
        return w;
    }
    void resource(const char *spec, const char *value) {
        XrmDatabase db = XtDatabase(xt::display());
        XrmPutStringResource(&db, spec, value);
    }
    void show(xt::Screen &s, Widget parent) {
        GuiCreatePlgScreen(parent, s.tree(), 7);
        if (!XtIsRealized(shell())) realize();
        xt::pump();
    }
    void free(xt::Screen &s) { GuiFreeScreenDefAndWidgets(s.slot()); }

    /* A row-column manager (id 1, `columns`) holding `n` labels with ids 11, 12, ... */
    void grid(xt::Screen &s, int columns, int n) {
        void *rc = s.add(nullptr, RowColManager, 1, xt::rowColData(columns));
        for (int i = 0; i < n; ++i) s.add(rc, Label, 11 + i, xt::labelData("cell"));
    }
    Widget cell(xt::Screen &s, int i) { return outerWidget(s.item(11 + i)); }
};

TEST_F(Layout, SevenChildrenInThreeColumnsMakeThreeRows) {
    xt::Screen s;
    grid(s, 3, 7);
    show(s, form());
    auto g0 = geometry(cell(s, 0));
    const int colStep = g0.width + 5 + 20, rowStep = g0.height + 5;
    for (int i = 0; i < 7; ++i) {
        auto g = geometry(cell(s, i));
        EXPECT_EQ(g.x - g0.x, (i % 3) * colStep) << "child " << i;
        EXPECT_EQ(g.y - g0.y, (i / 3) * rowStep) << "child " << i;
    }
    EXPECT_TRUE(hasTrace("For row 2 col 0 place at 0 " + std::to_string(2 * rowStep)));
    free(s);
}

TEST_F(Layout, ColumnCountZeroStacksChildrenInOneColumn) {
    xt::Screen s;
    grid(s, 0, 4);
    show(s, form());
    auto g0 = geometry(cell(s, 0));
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(geometry(cell(s, i)).x, g0.x);
        EXPECT_EQ(geometry(cell(s, i)).y - g0.y, i * (g0.height + 5));
    }
    free(s);
}

TEST_F(Layout, FirstChildOf100By30PutsTheNextAtY35) {
    resource("*sized*label.width", "100");
    resource("*sized*label.height", "30");
    resource("*sized*label.recomputeSize", "False");
    xt::Screen s;
    grid(s, 1, 2);
    show(s, namedForm("sized"));
    auto first = geometry(cell(s, 0)), second = geometry(cell(s, 1));
    ASSERT_EQ(first.width, 100);
    ASSERT_EQ(first.height, 30);
    EXPECT_EQ(second.y - first.y, 35);
    EXPECT_TRUE(hasTrace("For row 0 col 0 item is 105 wide by 35 high"));
    EXPECT_TRUE(hasTrace("For row 1 col 0 place at 0 35"));
    free(s);
}

TEST_F(Layout, HiddenChildIsUnmappedAndKeepsItsCell) {
    xt::Screen s;
    grid(s, 1, 3);
    s.item(12)->hidden = 1;
    show(s, form());
    auto g0 = geometry(cell(s, 0));
    EXPECT_FALSE(xt::isMapped(cell(s, 1)));
    EXPECT_TRUE(xt::isViewable(cell(s, 0)));
    EXPECT_TRUE(xt::isViewable(cell(s, 2)));
    EXPECT_EQ(geometry(cell(s, 2)).y - g0.y, 2 * (g0.height + 5));
    free(s);
}

TEST_F(Layout, CentreOnAnItem80WideGivesPosition50AndOffsetMinus40) {
    resource("*centred*label.width", "80");
    resource("*centred*label.recomputeSize", "False");
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("centre"));
    s.attach(1, ATTACH_LEFT, ATTACH_CENTRE, 0, 0, 0);
    Widget parent = namedForm("centred");
    show(s, parent);
    Widget w = outerWidget(s.item(1));
    unsigned char attachment = 0;
    int position = 0, offset = 0;
    XtVaGetValues(w, XmNleftAttachment, &attachment, XmNleftPosition, &position, XmNleftOffset,
                  &offset, nullptr);
    EXPECT_EQ(attachment, XmATTACH_POSITION);
    EXPECT_EQ(position, 50);
    EXPECT_EQ(offset, -40);
    EXPECT_EQ(geometry(w).x + 40, geometry(parent).width / 2);
    free(s);
}

/* Motif's form attaches a child with no horizontal (vertical) attachment to its left
** (top) edge, so "detached" reads back as an attachment to the form with offset 0. */
TEST_F(Layout, FourNullAttachmentsDetachEverySide) {
    xt::Screen s;
    grid(s, 2, 4);
    s.attachNone(14); /* the grid placed it at row 1, column 1; its own null sides follow */
    show(s, form());
    Widget w = cell(s, 3);
    unsigned char right, bottom;
    int leftOffset = -1, topOffset = -1;
    XtVaGetValues(w, XmNrightAttachment, &right, XmNbottomAttachment, &bottom, XmNleftOffset,
                  &leftOffset, XmNtopOffset, &topOffset, nullptr);
    EXPECT_EQ(right, XmATTACH_NONE);
    EXPECT_EQ(bottom, XmATTACH_NONE);
    EXPECT_EQ(leftOffset, 0);
    EXPECT_EQ(topOffset, 0);
    EXPECT_EQ(geometry(w).x, geometry(cell(s, 0)).x);
    EXPECT_EQ(geometry(w).y, geometry(cell(s, 0)).y);
    free(s);
}

TEST_F(Layout, AttachToAMissingItemLeavesThatSideAlone) {
    xt::Screen s;
    grid(s, 2, 4);
    s.attach(14, ATTACH_LEFT, ATTACH_ITEM, 0, 999, 7);
    show(s, form());
    Widget w = cell(s, 3);
    EXPECT_EQ(geometry(w).x, geometry(cell(s, 1)).x) << "the grid's left side stays";
    EXPECT_EQ(geometry(w).y, geometry(cell(s, 0)).y) << "the null top side is reset";
    free(s);
}

TEST_F(Layout, AttachToAnItemAndByPosition) {
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("first"));
    s.add(nullptr, Label, 2, xt::labelData("second"));
    s.attach(1, ATTACH_LEFT, ATTACH_POSITION, 10, 0, 0);
    s.attach(2, ATTACH_TOP, ATTACH_ITEM, 0, 1, 12);
    show(s, form());
    Widget first = outerWidget(s.item(1)), second = outerWidget(s.item(2));
    EXPECT_EQ(geometry(first).x, geometry(form()).width / 10);
    EXPECT_EQ(geometry(second).y, geometry(first).y + geometry(first).height + 12);
    free(s);
}

TEST_F(Layout, AnAttachmentToADuplicatedIdFindsTheFirstInPreOrder) {
    xt::Screen s;
    s.add(nullptr, Label, 5, xt::labelData("first five"));
    s.add(nullptr, Label, 5, xt::labelData("second five"));
    s.add(nullptr, Label, 6, xt::labelData("under the first"));
    void *secondFive = nullptr;
    TreeNextSibling(&secondFive, TreeFirstNode(s.tree()));
    xt::itemOf(secondFive)->attachments = nullptr;
    s.attach(5, ATTACH_TOP, ATTACH_POSITION, 0, 0, 10);
    s.attach(6, ATTACH_TOP, ATTACH_ITEM, 0, 5, 4);
    ScreenAttachment low{ATTACH_POSITION, 50, 0, 0};
    std::array<ScreenAttachment *, 4> lowSides{nullptr, nullptr, &low, nullptr};
    xt::itemOf(secondFive)->attachments = lowSides.data();
    show(s, form());
    Widget first = outerWidget(s.item(5)), under = outerWidget(s.item(6));
    EXPECT_EQ(geometry(under).y, geometry(first).y + geometry(first).height + 4);
    free(s);
}

TEST_F(Layout, NestedGroupBoxesAreBuiltInsideEachOther) {
    xt::Screen s;
    void *outer = s.add(nullptr, GroupBox, 1, xt::groupBoxData("Outer"));
    void *inner = s.add(outer, GroupBox, 2, xt::groupBoxData("Inner"));
    s.add(inner, Label, 3, xt::labelData("deep"));
    show(s, form());
    Widget outerFrame = outerWidget(s.item(1)), innerFrame = outerWidget(s.item(2));
    EXPECT_EQ(XtParent(innerFrame), s.item(1)->guiData->childParent);
    EXPECT_EQ(XtParent(outerWidget(s.item(3))), s.item(2)->guiData->childParent);
    EXPECT_EQ(XtParent(outerFrame), form());
    EXPECT_EQ(xt::widgetCount(s.item(1)), 3);
    EXPECT_TRUE(xt::isViewable(outerWidget(s.item(3))));
    EXPECT_GT(geometry(outerFrame).width, geometry(innerFrame).width);
    free(s);
}

TEST_F(Layout, DisabledItemIsInsensitive) {
    xt::Screen s;
    s.add(nullptr, Label, 1, xt::labelData("off"));
    s.item(1)->disabled = 1;
    show(s, form());
    EXPECT_FALSE(XtIsSensitive(outerWidget(s.item(1))));
    free(s);
}

/* A screen built into a parent that is not realized yet shows its items, except the
** hidden ones, once the parent is realized; nothing reaches Xlib with window 0. */
TEST_F(Layout, ScreenBuiltBeforeRealizeShowsTheItemsThatAreNotHidden) {
    xt::Screen s;
    void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData("Box"));
    s.add(box, Label, 2, xt::labelData("shown"));
    s.add(box, Label, 3, xt::labelData("hidden"));
    s.item(3)->hidden = 1;
    s.attach(3, ATTACH_TOP, ATTACH_ITEM, 0, 2, 4);
    ASSERT_FALSE(XtIsRealized(form()));
    GuiCreatePlgScreen(form(), s.tree(), 1);
    realize();
    EXPECT_TRUE(xt::isViewable(outerWidget(s.item(1))));
    EXPECT_TRUE(xt::isViewable(outerWidget(s.item(2))));
    EXPECT_FALSE(xt::isMapped(outerWidget(s.item(3))));
    free(s);
}

TEST_F(Layout, ScreenBuiltIntoAShownFormIsLaidOutAndMapped) {
    realize();
    xt::Screen s;
    grid(s, 2, 4);
    s.item(14)->hidden = 1;
    show(s, form());
    EXPECT_TRUE(xt::isViewable(cell(s, 0)));
    EXPECT_TRUE(xt::isViewable(cell(s, 2)));
    EXPECT_FALSE(xt::isMapped(cell(s, 3)));
    EXPECT_EQ(geometry(cell(s, 2)).x, geometry(cell(s, 0)).x);
    EXPECT_GT(geometry(cell(s, 2)).y, geometry(cell(s, 0)).y);
    free(s);
}

/* Containers in a grid are measured with their own content laid out: a group box and a
** nested grid take their real size, and the next row starts below them. */
class GridOfContainers : public Layout, public ::testing::WithParamInterface<bool> {};

TEST_P(GridOfContainers, NextRowStartsBelowTheContainersRealSize) {
    if (GetParam()) realize();
    xt::Screen s;
    void *outer = s.add(nullptr, RowColManager, 1, xt::rowColData(1));
    void *box = s.add(outer, GroupBox, 2, xt::groupBoxData("Box"));
    s.add(box, Label, 3, xt::labelData("inside the box"));
    void *inner = s.add(outer, RowColManager, 4, xt::rowColData(2));
    for (int i = 0; i < 4; ++i) s.add(inner, Label, 40 + i, xt::labelData("inner cell"));
    s.add(outer, Label, 5, xt::labelData("last row"));
    show(s, form());
    auto boxG = geometry(outerWidget(s.item(2))), innerG = geometry(outerWidget(s.item(4)));
    auto lastG = geometry(outerWidget(s.item(5))), cellG = geometry(outerWidget(s.item(43)));
    EXPECT_GT(boxG.height, 30) << "the box holds its title and its label";
    EXPECT_EQ(innerG.y, boxG.y + boxG.height + 5);
    EXPECT_GE(innerG.height, 2 * cellG.height) << "the inner grid has two rows of cells";
    EXPECT_EQ(lastG.y, innerG.y + innerG.height + 5);
    EXPECT_TRUE(xt::isViewable(outerWidget(s.item(43))));
    free(s);
}

INSTANTIATE_TEST_SUITE_P(BuiltBeforeAndAfterRealize, GridOfContainers, ::testing::Values(false, true));

} // namespace
