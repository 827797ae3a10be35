// Many screens in a row: random definitions (bad types, bad data, dangling ids, deep nesting)
// created, updated and freed never crash, raise X errors or leave pool blocks behind.
#include "plgscreen.h"
#include <random>
namespace xt {
namespace {
#define XT_SHAPE(type, name, Data) {type, GUI_TAG_##name, GUI_##name##_SIGNATURE, sizeof(Data)}
const struct DataShape { uint32_t type, tag; const char *signature; uint32_t size; } kShapes[] = {
    XT_SHAPE(GroupBox, GROUPBOX, GroupBoxData), XT_SHAPE(ComboBox, COMBOBOX, ComboBoxData),
    XT_SHAPE(ComboItem, COMBOITEM, ComboItemData), XT_SHAPE(ListBox, LISTBOX, ListBoxData),
    XT_SHAPE(ExtendedListBox, EXTLISTBOX, ExtendedListBoxData),
    XT_SHAPE(ListItem, LISTITEM, ListItemData),
    XT_SHAPE(selectionItem, SELECTION, SelectionItemData),
    XT_SHAPE(RadioManager, RADIOMANAGER, RadioManagerData),
    XT_SHAPE(RadioButton, RADIOBUTTON, RadioButtonData),
    XT_SHAPE(PushButton, PUSHBUTTON, PushButtonData),
    XT_SHAPE(EditBox, EDITBOX, EditBoxData), XT_SHAPE(NumInput, NUMINPUT, NumInputData),
    XT_SHAPE(Label, LABEL, LabelData), XT_SHAPE(RowColManager, ROWCOL, RowColManagerData),
    XT_SHAPE(DateInput, DATEINPUT, DateInputData), XT_SHAPE(TimeInput, TIMEINPUT, TimeInputData),
    XT_SHAPE(ChangePassword, CHANGEPASSWORD, ChangePasswordData),
    XT_SHAPE(GetPasswordBox, GETPASSWORD, GetPasswordBoxData),
    XT_SHAPE(TabPage, TABPAGE, TabPageData), XT_SHAPE(TabManager, TABMANAGER, TabManagerData),
    XT_SHAPE(StackedTabManager, TABMANAGER, TabManagerData)};
#undef XT_SHAPE
/* Item data of `shape`: every 's' field a text, every 'i' field a small number. */
void *makeData(const DataShape &shape, std::mt19937 &rng) {
    char *field = static_cast<char *>(newObject(shape.tag, shape.signature, shape.size));
    for (size_t offset = 0, k = 0; shape.signature[k]; k += 2) {
        if (shape.signature[k] == 'i') {
            offset = (offset + 3) & ~size_t(3);
            *reinterpret_cast<int32_t *>(field + offset) = static_cast<int32_t>(rng() % 5);
            offset += 4;
        } else {
            offset = (offset + 7) & ~size_t(7);
            if (shape.signature[k] == 's')
                *reinterpret_cast<char **>(field + offset) = poolText("text");
            offset += 8;
        }
    }
    return field;
}
/* Up to `count` items of random types (unknown codes too), data (the right shape, another
** type's, none), flags, attachments and actions; ids from a small range, so that duplicates
** and dangling references are common. */
void randomScreen(std::mt19937 &rng, Screen &s, int count) {
    static const uint32_t unknown[] = {0, 8, 15, 16, 17, 18, 27, 99, 0xffffffffu};
    const size_t shapes = sizeof kShapes / sizeof kShapes[0];
    auto pick = [&](size_t n) { return n ? rng() % n : 0; };
    auto number = [&](size_t n, int32_t from = 0) { return static_cast<int32_t>(pick(n)) + from; };
    std::vector<void *> nodes;
    for (int i = 0; i < count; ++i) {
        void *parent = nodes.empty() || pick(4) == 0 ? nullptr : nodes[pick(nodes.size())];
        if (!nodes.empty() && pick(10) == 0) parent = nodes.back(); /* deep chains */
        const size_t shape = pick(shapes);
        const bool known = pick(6) != 0;
        const uint32_t type = known ? kShapes[shape].type : unknown[pick(9)];
        const size_t kind = pick(6);
        void *d = kind == 0 || (!known && kind != 1) ? nullptr
                  : makeData(kShapes[kind == 1 ? pick(shapes) : shape], rng);
        const int32_t id = static_cast<int32_t>(pick(count + 3));
        nodes.push_back(s.add(parent, type, id, d));
        itemOf(nodes.back())->hidden = pick(4) == 0;
        itemOf(nodes.back())->disabled = pick(5) == 0 ? static_cast<int32_t>(pick(3)) : 0;
        if (pick(3) == 0) {
            s.attachNone(id);
            for (int side = 0; side < 4; ++side)
                if (pick(2))
                    s.attach(id, side, number(5), number(101), number(count + 3), number(41, -20));
        }
        for (size_t a = pick(4); a > 0; --a)
            s.addAction(id, static_cast<int32_t>(pick(count + 3)), static_cast<int32_t>(pick(10)));
    }
}
using Stress = PlgScreenTest;
TEST_F(Stress, RandomDefinitionsNeverCrashRaiseXErrorsOrLeak) {
    const uint32_t seed = 20261122;
    std::mt19937 rng(seed);
    const int errorsBefore = xErrorCount();
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " round " + std::to_string(round));
        if (round == 150) realize(); /* half into an unrealized form, half into a shown one */
        Screen shown, patch, next;
        randomScreen(rng, shown, 1 + round % 40);
        randomScreen(rng, patch, 1 + round % 7);
        randomScreen(rng, next, 1 + round % 25);
        oScreenDef screen = record(shown, round);
        update(screen, patch, 1);
        update(screen, next, 0);
        if (round % 20 == 0) pump(1);
        GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
        ASSERT_EQ(xErrorCount(), errorsBefore);
    }
}
TEST_F(Stress, DeepNestingIsBuiltAndFreed) {
    Screen s;
    void *parent = nullptr;
    for (int depth = 0; depth < 60; ++depth)
        parent = s.add(parent, GroupBox, depth, groupBoxData("level"));
    s.add(parent, Label, 1000, labelData("bottom"));
    show(s, 1);
    EXPECT_TRUE(isViewable(outer(s, 1000)));
    destroy(s);
}
} // namespace
} // namespace xt
