// Many screens in a row: create, update and free cycles leave the pools as they were,
// and random definitions (bad types, bad data, dangling ids, deep nesting) never crash.
#include "xharness.h"
#include <random>
#include "screens.h"

namespace {

/* Item data of the right shape for each type, with texts where the type has them. */
struct DataShape {
    uint32_t type;
    uint32_t tag;
    const char *signature;
    uint32_t size;
};

const DataShape kShapes[] = {
    {GroupBox, GUI_TAG_GROUPBOX, GUI_GROUPBOX_SIGNATURE, sizeof(GroupBoxData)},
    {ComboBox, GUI_TAG_COMBOBOX, GUI_COMBOBOX_SIGNATURE, sizeof(ComboBoxData)},
    {ComboItem, GUI_TAG_COMBOITEM, GUI_COMBOITEM_SIGNATURE, sizeof(ComboItemData)},
    {ListBox, GUI_TAG_LISTBOX, GUI_LISTBOX_SIGNATURE, sizeof(ListBoxData)},
    {ExtendedListBox, GUI_TAG_EXTLISTBOX, GUI_EXTLISTBOX_SIGNATURE, sizeof(ExtendedListBoxData)},
    {ListItem, GUI_TAG_LISTITEM, GUI_LISTITEM_SIGNATURE, sizeof(ListItemData)},
    {selectionItem, GUI_TAG_SELECTION, GUI_SELECTION_SIGNATURE, sizeof(SelectionItemData)},
    {RadioManager, GUI_TAG_RADIOMANAGER, GUI_RADIOMANAGER_SIGNATURE, sizeof(RadioManagerData)},
    {RadioButton, GUI_TAG_RADIOBUTTON, GUI_RADIOBUTTON_SIGNATURE, sizeof(RadioButtonData)},
    {PushButton, GUI_TAG_PUSHBUTTON, GUI_PUSHBUTTON_SIGNATURE, sizeof(PushButtonData)},
    {EditBox, GUI_TAG_EDITBOX, GUI_EDITBOX_SIGNATURE, sizeof(EditBoxData)},
    {NumInput, GUI_TAG_NUMINPUT, GUI_NUMINPUT_SIGNATURE, sizeof(NumInputData)},
    {Label, GUI_TAG_LABEL, GUI_LABEL_SIGNATURE, sizeof(LabelData)},
    {RowColManager, GUI_TAG_ROWCOL, GUI_ROWCOL_SIGNATURE, sizeof(RowColManagerData)},
    {DateInput, GUI_TAG_DATEINPUT, GUI_DATEINPUT_SIGNATURE, sizeof(DateInputData)},
    {TimeInput, GUI_TAG_TIMEINPUT, GUI_TIMEINPUT_SIGNATURE, sizeof(TimeInputData)},
    {ChangePassword, GUI_TAG_CHANGEPASSWORD, GUI_CHANGEPASSWORD_SIGNATURE, sizeof(ChangePasswordData)},
    {GetPasswordBox, GUI_TAG_GETPASSWORD, GUI_GETPASSWORD_SIGNATURE, sizeof(GetPasswordBoxData)},
    {TabPage, GUI_TAG_TABPAGE, GUI_TABPAGE_SIGNATURE, sizeof(TabPageData)},
    {TabManager, GUI_TAG_TABMANAGER, GUI_TABMANAGER_SIGNATURE, sizeof(TabManagerData)},
    {StackedTabManager, GUI_TAG_TABMANAGER, GUI_TABMANAGER_SIGNATURE, sizeof(TabManagerData)},
};

/* A filled item data object of `shape`: every 's' field gets a text, every 'i' field a
** small number. */
void *makeData(const DataShape &shape, std::mt19937 &rng) {
    void *h = xt::newObject(shape.tag, shape.signature, shape.size);
    char *field = static_cast<char *>(h);
    size_t offset = 0;
    for (const char *k = shape.signature; *k; k += 2) {
        if (*k == 'i') {
            offset = (offset + 3) & ~size_t(3);
            *reinterpret_cast<int32_t *>(field + offset) = static_cast<int32_t>(rng() % 5);
            offset += 4;
        } else {
            offset = (offset + 7) & ~size_t(7);
            if (*k == 's') *reinterpret_cast<char **>(field + offset) = xt::poolText("text");
            offset += 8;
        }
    }
    return h;
}

const DataShape *shapeOf(uint32_t type) {
    for (const DataShape &s : kShapes)
        if (s.type == type) return &s;
    return nullptr;
}

class RandomScreens {
public:
    explicit RandomScreens(uint32_t seed) : rng_(seed) {}

    /* Fills `s` with up to `count` items of random types, data, flags, attachments and
    ** actions; ids come from a small range so that duplicates and dangling references
    ** are common. */
    void fill(xt::Screen &s, int count) {
        std::vector<void *> nodes;
        for (int i = 0; i < count; ++i) {
            void *parent = nodes.empty() || pick(4) == 0 ? nullptr : nodes[pick(nodes.size())];
            if (!nodes.empty() && pick(10) == 0) parent = nodes.back(); /* deep chains */
            uint32_t type = randomType();
            int32_t id = static_cast<int32_t>(pick(count + 3));
            void *node = s.add(parent, type, id, randomData(type));
            nodes.push_back(node);
            ScreenItem *item = xt::itemOf(node);
            item->hidden = pick(4) == 0;
            item->disabled = pick(5) == 0 ? static_cast<int32_t>(pick(3)) : 0;
            if (pick(3) == 0) randomAttachments(s, id, count);
            for (int a = pick(4); a > 0; --a)
                s.addAction(id, static_cast<int32_t>(pick(count + 3)), static_cast<int32_t>(pick(10)));
        }
    }

private:
    size_t pick(size_t n) { return n ? rng_() % n : 0; }

    uint32_t randomType() {
        static const uint32_t extra[] = {0, 8, 15, 16, 17, 18, 27, 99, 0xffffffffu};
        if (pick(6) == 0) return extra[pick(sizeof extra / sizeof extra[0])];
        return kShapes[pick(sizeof kShapes / sizeof kShapes[0])].type;
    }

    /* Mostly the right data, sometimes another type's data or none at all. */
    void *randomData(uint32_t type) {
        switch (pick(6)) {
        case 0: return nullptr;
        case 1: return makeData(kShapes[pick(sizeof kShapes / sizeof kShapes[0])], rng_);
        default: {
            const DataShape *shape = shapeOf(type);
            return shape ? makeData(*shape, rng_) : nullptr;
        }
        }
    }

    void randomAttachments(xt::Screen &s, int32_t id, int count) {
        s.attachNone(id);
        for (int side = 0; side < 4; ++side)
            if (pick(2))
                s.attach(id, side, static_cast<int32_t>(pick(5)), static_cast<int32_t>(pick(101)),
                         static_cast<int32_t>(pick(count + 3)), static_cast<int32_t>(pick(41)) - 20);
    }

    std::mt19937 rng_;
};

class Stress : public xt::XTest {};

/* A screen of every family built so far, with actions and attachments between items. */
void sampleScreen(xt::Screen &s, const char *title) {
    void *box = s.add(nullptr, GroupBox, 1, xt::groupBoxData(title));
    void *grid = s.add(box, RowColManager, 2, xt::rowColData(3));
    for (int i = 0; i < 7; ++i) s.add(grid, Label, 10 + i, xt::labelData("cell"));
    s.add(nullptr, Label, 3, xt::labelData("below"));
    s.attach(3, ATTACH_TOP, ATTACH_ITEM, 0, 1, 5);
    s.attach(1, ATTACH_LEFT, ATTACH_CENTRE, 0, 0, 0);
    s.addAction(3, 1, ACTION_HIDE);
}

TEST_F(Stress, TwoHundredCyclesOfCreateUpdateAndFreeLeakNothing) {
    realize();
    for (int cycle = 0; cycle < 200; ++cycle) {
        auto *first = new xt::Screen, *second = new xt::Screen;
        sampleScreen(*first, "first");
        sampleScreen(*second, "second");
        oScreenDef screen{cycle, 0, 0, 0, form(), first->tree()};
        ObjIncRefCount(first->tree());
        GuiCreatePlgScreen(form(), first->tree(), cycle);

        oUpdateScreen whole{second->tree(), 0, 0, nullptr};
        ASSERT_EQ(GuiUpdatePlgScreen(&screen, &whole, 0), 1);
        delete first;
        delete second; /* the screen record keeps the new tree alive */

        xt::Screen patch;
        patch.add(nullptr, Label, 12, xt::labelData("patched"));
        patch.add(nullptr, GroupBox, 1, xt::groupBoxData("patched"));
        patch.addAction(12, 3, ACTION_SHOW);
        oUpdateScreen items{patch.tree(), 0, 0, nullptr};
        ASSERT_EQ(GuiUpdatePlgScreen(&screen, &items, 1), 1);

        GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
        ASSERT_EQ(screen.oPluginScreenDef, nullptr);
        if (cycle % 50 == 0) xt::pump(1);
    }
    EXPECT_EQ(poolGrowth(), 0);
}

TEST_F(Stress, RandomDefinitionsNeverCrashRaiseXErrorsOrLeak) {
    const uint32_t seed = 20261122;
    RandomScreens random(seed);
    const int errorsBefore = xt::xErrorCount();
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " round " + std::to_string(round));
        if (round == 150) realize(); /* half into an unrealized form, half into a shown one */
        xt::Screen shown, patch, next;
        random.fill(shown, 1 + round % 40);
        random.fill(patch, 1 + round % 7);
        random.fill(next, 1 + round % 25);

        oScreenDef screen{round, 0, 0, 0, form(), shown.tree()};
        ObjIncRefCount(shown.tree());
        GuiCreatePlgScreen(form(), shown.tree(), round);
        oUpdateScreen items{patch.tree(), 0, 0, nullptr};
        GuiUpdatePlgScreen(&screen, &items, 1);
        oUpdateScreen whole{next.tree(), 0, 0, nullptr};
        GuiUpdatePlgScreen(&screen, &whole, 0);
        if (round % 20 == 0) xt::pump(1);
        GuiFreeScreenDefAndWidgets(&screen.oPluginScreenDef);
        ASSERT_EQ(xt::xErrorCount(), errorsBefore);
    }
}

TEST_F(Stress, DeepNestingIsBuiltAndFreed) {
    xt::Screen s;
    void *parent = nullptr;
    for (int depth = 0; depth < 60; ++depth)
        parent = s.add(parent, GroupBox, depth, xt::groupBoxData("level"));
    s.add(parent, Label, 1000, xt::labelData("bottom"));
    GuiCreatePlgScreen(form(), s.tree(), 1);
    realize();
    EXPECT_TRUE(xt::isViewable(xt::outerWidget(s.item(1000))));
    GuiFreeScreenDefAndWidgets(s.slot());
}

} // namespace
