/* guiscreenlayout.cpp - the layout pass: form attachments, visibility, sensitivity and
** the row-and-column grid. */
#include <Xm/Form.h>
#include <X11/IntrinsicP.h>
#include <X11/CompositeP.h>

#include <algorithm>
#include <cstdint>

#include "guiscreenitem.h"

namespace xc::screen {
namespace {

constexpr int kSizeMargin = 5;
constexpr int kColumnGap = 20;
constexpr int kCentrePosition = 50;
/* Motif takes int offsets but places widgets at 16-bit positions: an offset beyond them
** cannot place anything and would overflow the form's own sums. */
constexpr int64_t kMaxOffset = 32767;

int clampedOffset(int64_t offset) {
    return static_cast<int>(std::clamp(offset, -kMaxOffset, kMaxOffset));
}

struct SideResources {
    const char *attachment;
    const char *offset;
    const char *position;
    const char *widget;
};

const SideResources kSides[4] = {
    {XmNleftAttachment, XmNleftOffset, XmNleftPosition, XmNleftWidget},
    {XmNrightAttachment, XmNrightOffset, XmNrightPosition, XmNrightWidget},
    {XmNtopAttachment, XmNtopOffset, XmNtopPosition, XmNtopWidget},
    {XmNbottomAttachment, XmNbottomOffset, XmNbottomPosition, XmNbottomWidget},
};

/* The outer widget of the item `refId` when it can serve as an attachment of `self`:
** it exists, is not `self` and lies in the same form. */
Widget referenceWidget(const ItemIndex &index, Widget self, int32_t refId) {
    Widget ref = outerWidget(index.find(refId));
    if (ref == nullptr || ref == self) return nullptr;
    if (XtParent(ref) != XtParent(self)) {
        trace(211, 0, "Attachment item %ld is not in the same form", static_cast<long>(refId));
        return nullptr;
    }
    return ref;
}

/* Lays out an unrealized container the way Xt does just before it realizes one: every
** composite of the subtree, innermost first, places its managed children and so takes
** its own size. */
void settle(Widget w) {
    if (!XtIsComposite(w)) return;
    auto *composite = reinterpret_cast<CompositeWidget>(w);
    bool anyManaged = false;
    for (Cardinal i = 0; i < composite->composite.num_children; ++i) {
        settle(composite->composite.children[i]);
        anyManaged = anyManaged || XtIsManaged(composite->composite.children[i]);
    }
    XtWidgetProc changeManaged =
        reinterpret_cast<CompositeWidgetClass>(XtClass(w))->composite_class.change_managed;
    if (anyManaged && changeManaged != nullptr) changeManaged(w);
}

/* The size of a grid child. A container built in this pass has not laid out its own
** children yet (Xt would do it only when realizing it, after the grid has placed it),
** so its children are managed and laid out first. */
void measure(Widget w, Dimension *width, Dimension *height) {
    if (XtIsComposite(w) && !XtIsRealized(w)) {
        manageQueuedWithin(w);
        settle(w);
    }
    Args size;
    size.add(XtNwidth, reinterpret_cast<XtArgVal>(width)).add(XtNheight, reinterpret_cast<XtArgVal>(height));
    XtGetValues(w, size.list(), size.count());
}

void addSide(Args &args, const ItemIndex &index, Widget outer, int side, const ScreenAttachment *a) {
    const SideResources &r = kSides[side];
    if (a == nullptr) {
        args.add(r.offset, 0).add(r.attachment, XmATTACH_NONE);
        return;
    }
    switch (a->kind) {
    case ATTACH_POSITION:
        args.add(r.offset, clampedOffset(a->offset)).add(r.attachment, XmATTACH_POSITION)
            .add(r.position, a->position);
        break;
    case ATTACH_ITEM:
        if (Widget ref = referenceWidget(index, outer, a->itemId))
            args.add(r.offset, clampedOffset(a->offset)).add(r.attachment, XmATTACH_WIDGET)
                .add(r.widget, reinterpret_cast<XtArgVal>(ref));
        break;
    case ATTACH_CENTRE:
        if (side == ATTACH_LEFT || side == ATTACH_TOP) {
            Dimension width = 0, height = 0;
            measure(outer, &width, &height);
            const Dimension size = side == ATTACH_LEFT ? width : height;
            args.add(r.attachment, XmATTACH_POSITION).add(r.position, kCentrePosition)
                .add(r.offset, clampedOffset(int64_t{a->offset} - size / 2));
        }
        break;
    default:
        break;
    }
}

void applyAttachments(const ItemIndex &index, const ScreenItem *item, Widget outer) {
    if (item->attachments == nullptr) return;
    Args args;
    for (int side = ATTACH_LEFT; side <= ATTACH_BOTTOM; ++side)
        addSide(args, index, outer, side, item->attachments[side]);
    XtSetValues(outer, args.list(), args.count());
}

/* A grid child: the item and its outer widget. */
struct Cell {
    const ScreenItem *item;
    Widget widget;
};

/* The grid children: the children of the manager that have an outer widget. A child
** without one takes no cell. The layout pass goes bottom-up, so a child that holds items
** of its own has its inner grids and attachments in place when it is measured. */
PoolVector<Cell> gridCells(void *node) {
    PoolVector<Cell> cells;
    for (void *child = TreeNodeFirstChild(node); child != nullptr; TreeNextSibling(&child, child)) {
        const ScreenItem *item = itemOf(child);
        if (Widget w = outerWidget(item)) cells.push_back({item, w});
    }
    return cells;
}

void layoutGrid(void *node, const ScreenItem *item, const ItemIndex &index) {
    auto *data = dataOf<RowColManagerData>(item, GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE);
    if (data == nullptr) return;
    PoolVector<Cell> cells = gridCells(node);
    // More columns than cells would only add empty ones (and a huge count would size an
    // allocation by itself).
    const int64_t cellCount = std::max<int64_t>(1, static_cast<int64_t>(cells.size()));
    const int columns = static_cast<int>(std::clamp<int64_t>(data->columns, 1, cellCount));
    const int rows = static_cast<int>((cells.size() + columns - 1) / columns);
    PoolVector<int32_t> rowHeights(rows, 0), columnWidths(columns, 0);

    for (size_t i = 0; i < cells.size(); ++i) {
        const int row = static_cast<int>(i) / columns, column = static_cast<int>(i) % columns;
        Dimension width = 0, height = 0;
        measure(cells[i].widget, &width, &height);
        width = static_cast<Dimension>(width + kSizeMargin);
        height = static_cast<Dimension>(height + kSizeMargin);
        trace(212, 0, "For row %ld col %ld item is %ld wide by %ld high", static_cast<long>(row),
              static_cast<long>(column), static_cast<long>(width), static_cast<long>(height));
        if (height > rowHeights[row]) rowHeights[row] = height;
        if (width > columnWidths[column]) columnWidths[column] = width;
    }

    int x = 0, y = 0;
    for (size_t i = 0; i < cells.size(); ++i) {
        const int row = static_cast<int>(i) / columns, column = static_cast<int>(i) % columns;
        Args place;
        place.add(XmNtopAttachment, XmATTACH_FORM).add(XmNbottomAttachment, XmATTACH_NONE)
            .add(XmNleftAttachment, XmATTACH_FORM).add(XmNrightAttachment, XmATTACH_NONE)
            .add(XmNleftOffset, x).add(XmNtopOffset, y);
        XtSetValues(cells[i].widget, place.list(), place.count());
        trace(213, 0, "For row %ld col %ld place at %ld %ld", static_cast<long>(row),
              static_cast<long>(column), static_cast<long>(x), static_cast<long>(y));
        /* A child's own attachments win over its cell, as if it were laid out after it. */
        applyAttachments(index, cells[i].item, cells[i].widget);
        x += columnWidths[column] + kColumnGap;
        if (column + 1 == columns) {
            x = 0;
            y += rowHeights[row];
        }
    }
}

} // namespace

void applyVisibility(const ScreenItem *item, Widget outer) {
    if (outer == nullptr) return;
    if (item->hidden == 1) unmapWidget(outer);
    else mapWidget(outer);
    XtSetSensitive(outer, item->disabled == 1 ? False : True);
}

int layoutNode(void *index, void *node) {
    ScreenItem *item = itemOf(node);
    if (item == nullptr) return 1;
    if (Widget outer = outerWidget(item)) {
        applyAttachments(*static_cast<const ItemIndex *>(index), item, outer);
        applyVisibility(item, outer);
    }
    if (item->itemType == RowColManager) layoutGrid(node, item, *static_cast<const ItemIndex *>(index));
    return 1;
}

} // namespace xc::screen
