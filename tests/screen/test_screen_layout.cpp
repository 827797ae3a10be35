// The layout pass on a real display: attachments, the row-and-column grid, visibility and
// sensitivity, read back from the widgets after Motif has laid them out.
#include "plgscreen.h"
#include <Xm/Form.h>
namespace xt {
namespace {
using Layout = PlgScreenTest;
/* A grid (1) of `columns` holding `n` labels 11, 12, ... */
void grid(Screen &s, int columns, int n) {
    void *rc = s.add(nullptr, RowColManager, 1, rowColData(columns));
    for (int i = 0; i < n; ++i) s.add(rc, Label, 11 + i, labelData("cell"));
}
TEST_F(Layout, GridCellsGoRowByRowAndHiddenCellsKeepTheirPlace) {
    const struct { int columns, n, hidden; bool realizedFirst; } rows[] = {
        {3, 7, 0, false}, {0, 4, 0, false}, {1, 3, 12, false}, {2, 4, 14, true}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.columns);
        if (row.realizedFirst) realize();
        Screen s;
        grid(s, row.columns, row.n);
        if (row.hidden) s.item(row.hidden)->hidden = 1;
        show(s);
        const int columns = row.columns ? row.columns : 1;
        const Geometry g0 = geometry(outer(s, 11));
        for (int i = 0; i < row.n; ++i) {
            const Geometry g = geometry(outer(s, 11 + i));
            EXPECT_EQ(g.x - g0.x, (i % columns) * (g0.width + 25)) << i;
            EXPECT_EQ(g.y - g0.y, (i / columns) * (g0.height + 5)) << i;
            EXPECT_EQ(isViewable(outer(s, 11 + i)), 11 + i != row.hidden) << i;
        }
        destroy(s);
    }
}
/* Motif's form attaches a child with no horizontal (vertical) attachment to its left (top)
** edge; an attachment to a missing item leaves that side as the grid set it. */
TEST_F(Layout, NullSidesAndMissingTargetsLeaveTheGridsPlacement) {
    Screen s;
    grid(s, 2, 4);
    s.attachNone(14); /* placed at row 1, column 1; its null sides follow */
    s.attach(13, ATTACH_LEFT, ATTACH_ITEM, 0, 999, 7);
    show(s);
    unsigned char right = 0, bottom = 0;
    XtVaGetValues(outer(s, 14), XmNrightAttachment, &right, XmNbottomAttachment, &bottom, nullptr);
    EXPECT_TRUE(right == XmATTACH_NONE && bottom == XmATTACH_NONE);
    EXPECT_EQ(geometry(outer(s, 14)).x, geometry(outer(s, 11)).x);
    EXPECT_EQ(geometry(outer(s, 14)).y, geometry(outer(s, 11)).y);
    EXPECT_EQ(geometry(outer(s, 13)).x, geometry(outer(s, 11)).x) << "the grid's left side stays";
    EXPECT_EQ(geometry(outer(s, 13)).y, geometry(outer(s, 11)).y) << "its null top side is reset";
    destroy(s);
}
TEST_F(Layout, AttachByPositionAndToTheFirstItemOfAnId) {
    Screen s;
    s.add(nullptr, Label, 5, labelData("first five"));
    void *secondFive = s.add(nullptr, Label, 5, labelData("second five"));
    s.add(nullptr, Label, 6, labelData("under the first"));
    s.attach(5, ATTACH_LEFT, ATTACH_POSITION, 10, 0, 0);
    s.attach(6, ATTACH_TOP, ATTACH_ITEM, 0, 5, 4);
    ScreenAttachment low{ATTACH_POSITION, 50, 0, 0};
    std::array<ScreenAttachment *, 4> lowSides{nullptr, nullptr, &low, nullptr};
    itemOf(secondFive)->attachments = lowSides.data();
    show(s);
    const Geometry first = geometry(outer(s, 5));
    EXPECT_EQ(first.x, geometry(form()).width / 10);
    EXPECT_EQ(geometry(outer(s, 6)).y, first.y + first.height + 4);
    destroy(s);
}
/* The pass goes bottom-up: a grid measures children laid out already, so one nested grid
** writes one measuring and one placing line per child (3 and 3); a chain of 20 grids
** puts its innermost label where the outermost grid starts; a group box centred on the
** form is measured at its real size, its children included. */
TEST_F(Layout, NestedGridsAreLaidOutOnceAndContainersCentredAtTheirSize) {
    realize();
    Screen s;
    void *top = s.add(nullptr, RowColManager, 1, rowColData(1));
    void *inner = s.add(top, RowColManager, 2, rowColData(1));
    s.add(inner, Label, 3, labelData("three"));
    s.add(inner, Label, 4, labelData("four"));
    void *chain = s.add(nullptr, RowColManager, 10, rowColData(1));
    for (int depth = 1; depth < 20; ++depth)
        chain = s.add(chain, RowColManager, 10 + depth, rowColData(1));
    s.add(chain, Label, 30, labelData("innermost"));
    void *box = s.add(nullptr, GroupBox, 40, groupBoxData("Centred"));
    s.add(box, Label, 41, labelData("a label wider than the title"));
    s.attach(40, ATTACH_LEFT, ATTACH_CENTRE, 0, 0, 0);
    s.attach(10, ATTACH_TOP, ATTACH_ITEM, 0, 1, 10);
    clearTraces();
    show(s);
    int measured = 0, placed = 0;
    for (const TraceLine &line : traces()) {
        const bool row = line.text.rfind("For row", 0) == 0;
        measured += row && line.text.find("wide by") != std::string::npos;
        placed += row && line.text.find("place at") != std::string::npos;
    }
    EXPECT_EQ(measured, 3 + 20);
    EXPECT_EQ(placed, 3 + 20);
    int gridX, gridY, labelX, labelY;
    rootPosition(outer(s, 10), &gridX, &gridY);
    rootPosition(outer(s, 30), &labelX, &labelY);
    EXPECT_TRUE(labelX == gridX && labelY == gridY && isViewable(outer(s, 30)));
    EXPECT_EQ(geometry(outer(s, 10)).width, geometry(outer(s, 30)).width);
    int offset = 0;
    XtVaGetValues(outer(s, 40), XmNleftOffset, &offset, nullptr);
    EXPECT_EQ(offset, -(geometry(outer(s, 40)).width / 2));
    EXPECT_GT(geometry(outer(s, 40)).width, geometry(outer(s, 41)).width);
    destroy(s);
}
/* Containers in a grid are measured with their own content laid out: a group box and a
** nested grid take their real size, and the next row starts below them. */
using GridOfContainers = ShownBothWays;
TEST_P(GridOfContainers, NextRowStartsBelowTheContainersRealSize) {
    Screen s;
    void *top = s.add(nullptr, RowColManager, 1, rowColData(1));
    s.add(s.add(top, GroupBox, 2, groupBoxData("Box")), Label, 3, labelData("inside the box"));
    void *inner = s.add(top, RowColManager, 4, rowColData(2));
    for (int i = 0; i < 4; ++i) s.add(inner, Label, 40 + i, labelData("inner cell"));
    s.add(top, Label, 5, labelData("last row"));
    show(s);
    const Geometry box = geometry(outer(s, 2)), grid = geometry(outer(s, 4));
    EXPECT_GT(box.height, 30) << "the box holds its title and its label";
    EXPECT_EQ(grid.y, box.y + box.height + 5);
    EXPECT_GE(grid.height, 2 * geometry(outer(s, 43)).height) << "two rows of cells";
    EXPECT_EQ(geometry(outer(s, 5)).y, grid.y + grid.height + 5);
    EXPECT_TRUE(isViewable(outer(s, 43)));
    destroy(s);
}
XT_BOTH_WAYS(GridOfContainers, AfterBuild);
} // namespace
} // namespace xt
