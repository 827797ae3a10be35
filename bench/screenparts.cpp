/* screenparts.cpp - benchmark screens defined as a client defines them, and the outer
** widgets of a screen the library built. */
#include "screenparts.h"

#include <string>

namespace bench {
namespace {

constexpr int kComboEntries = 10;
constexpr int kListEntries = 5;
constexpr int kRadioButtons = 3;
constexpr int32_t kDate = 1700000000; /* a fixed day, so that every run shows the same */
constexpr int32_t kTime = 12 * 3600;

class Definer {
public:
    explicit Definer(xt::Screen &screen) : screen_(screen) {}

    /* Adds the part under `parent` (null: the top level); returns its item id. */
    int32_t add(void *parent, const Part &part) {
        const int32_t id = next_++;
        void *node = screen_.add(parent, typeOf(part.kind), id, dataOf(part.kind));
        addEntries(node, part.kind);
        for (const Part &child : part.children) add(node, child);
        return id;
    }

private:
    static uint32_t typeOf(Kind kind) {
        switch (kind) {
        case Kind::GroupBox: return GroupBox;
        case Kind::Grid: return RowColManager;
        case Kind::Label: return Label;
        case Kind::Edit:
        case Kind::MultiLineEdit: return EditBox;
        case Kind::Combo: return ComboBox;
        case Kind::List: return ListBox;
        case Kind::Toggle: return selectionItem;
        case Kind::Radio: return RadioManager;
        case Kind::Button: return PushButton;
        case Kind::Number: return NumInput;
        case Kind::Date: return DateInput;
        case Kind::Time: return TimeInput;
        }
        return Label;
    }

    void *dataOf(Kind kind) {
        switch (kind) {
        case Kind::GroupBox: return xt::groupBoxData("Block");
        case Kind::Grid: return xt::rowColData(2);
        case Kind::Label: return xt::labelData(labelText(++labels_).c_str());
        case Kind::Edit: return xt::editBoxData(40, 20, 1, "text");
        case Kind::MultiLineEdit: return xt::editBoxData(200, 30, 3);
        case Kind::Combo: return xt::comboBoxData(1, 0);
        case Kind::List: return xt::listBoxData(0);
        case Kind::Toggle: return xt::selectionData("Option", 1);
        case Kind::Radio: return xt::radioManagerData();
        case Kind::Button: return xt::pushButtonData("Apply");
        case Kind::Number: return xt::numInputData(5, 100, 0, 6);
        case Kind::Date: return xt::dateInputData(kDate);
        case Kind::Time: return xt::timeInputData(kTime);
        }
        return nullptr;
    }

    void addEntries(void *node, Kind kind) {
        for (int i = 0; i < entryCount(kind); ++i) {
            const std::string text = entryText(kind, i);
            void *data = kind == Kind::Combo  ? xt::comboItemData(text.c_str())
                         : kind == Kind::List ? xt::listItemData(text.c_str(), i == 0)
                                              : xt::radioButtonData(text.c_str(), i == 0);
            screen_.add(node, kind == Kind::Combo ? ComboItem : kind == Kind::List ? ListItem : RadioButton,
                        next_++, data);
        }
    }

    xt::Screen &screen_;
    int32_t next_ = 1;
    int labels_ = 0;
};

} // namespace

std::string labelText(int ordinal) {
    return "Label text " + std::to_string(ordinal);
}

std::string entryText(Kind kind, int index) {
    return (kind == Kind::Radio ? "Radio " : "Choice ") + std::to_string(index + 1);
}

int entryCount(Kind kind) {
    return kind == Kind::Combo ? kComboEntries : kind == Kind::List ? kListEntries
           : kind == Kind::Radio ? kRadioButtons : 0;
}

int itemCount(const Part &part) {
    int count = 1 + entryCount(part.kind);
    for (const Part &child : part.children) count += itemCount(child);
    return count;
}

void defineScreen(xt::Screen &screen, const Part &block, int count) {
    Definer definer(screen);
    std::vector<int32_t> tops;
    for (int b = 0; b < count; ++b) {
        const int32_t id = definer.add(nullptr, block);
        screen.attachNone(id);
        screen.attach(id, ATTACH_LEFT, ATTACH_POSITION, (b % kColumns) * (100 / kColumns), 0, 0);
        if (b >= kColumns) screen.attach(id, ATTACH_TOP, ATTACH_ITEM, 0, tops[b - kColumns], 4);
        tops.push_back(id);
    }
}

namespace {
int collectOuter(void *outers, void *node) {
    if (Widget w = xt::outerWidget(xt::itemOf(node))) static_cast<std::vector<Widget> *>(outers)->push_back(w);
    return 1;
}
} // namespace

std::vector<Widget> libraryOuters(const xt::Screen &screen) {
    std::vector<Widget> outers;
    TreeWalk(screen.tree(), collectOuter, &outers, 0);
    return outers;
}

} // namespace bench
