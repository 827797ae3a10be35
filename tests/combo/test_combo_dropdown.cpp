/* test_combo_dropdown.cpp - opening, closing and choosing in the combo's drop-down. */
#include "combofixture.h"

#include <cstdio>

#include <X11/xpm.h>
#include <Xm/Label.h>

namespace xt {
namespace {

using ComboDropDown = ComboTest;

Cardinal childCount(Widget composite) {
    Cardinal count = 0;
    XtVaGetValues(composite, XmNnumChildren, &count, nullptr);
    return count;
}

TEST_F(ComboDropDown, BuiltWidgetsSitBesideTheLabelWithTheArrowPicture) {
    makeCombo();
    realize();
    Widget frame = XtNameToWidget(holder_, "comboFrame");
    Widget label = XtNameToWidget(holder_, "comboLabel");
    ASSERT_NE(frame, nullptr);
    ASSERT_NE(label, nullptr);
    EXPECT_LT(geometry(label).x, geometry(frame).x) << "label left of the frame";
    EXPECT_LT(geometry(label).height, geometry(holder_).height) << "not stretched";
    EXPECT_EQ(XtParent(XtParent(combo_->wText)), frame);
    EXPECT_STREQ(XtName(combo_->wText), "QZ_serverSelectionInput");
    EXPECT_STREQ(XtName(combo_->wList), "QZ_serverSelectionInput");
    EXPECT_EQ(XtParent(dropDown()), form()) << "the drop-down lives in the list parent";

    Pixmap arrow = XmUNSPECIFIED_PIXMAP;
    unsigned char type = 0;
    XtVaGetValues(combo_->wButton, XmNlabelPixmap, &arrow, XmNlabelType, &type, nullptr);
    EXPECT_EQ(type, XmPIXMAP);
    EXPECT_NE(arrow, XmUNSPECIFIED_PIXMAP);
    EXPECT_FALSE(hasTrace("Failed to create combo pixmap"));

    Boolean editable = True;
    XtVaGetValues(combo_->wText, XmNeditable, &editable, nullptr);
    EXPECT_FALSE(editable) << "no user entry asked for";

    EXPECT_FALSE(isMapped(dropDown())) << "Xt never maps the drop-down";
    EXPECT_EQ(geometry(dropDown()).x, geometry(holder_).x);
    EXPECT_EQ(geometry(dropDown()).width, geometry(holder_).width);
    EXPECT_EQ(geometry(dropDown()).y, geometry(holder_).y + geometry(holder_).height);
}

TEST_F(ComboDropDown, LabelRightAndDropDownAboveFollowTheFlags) {
    Options o;
    o.labelLeft = false;
    o.below = false;
    o.userEntry = true;
    makeCombo(o);
    realize();
    Widget frame = XtNameToWidget(holder_, "comboFrame");
    Widget label = XtNameToWidget(holder_, "comboLabel");
    EXPECT_GE(geometry(label).x, geometry(frame).x + geometry(frame).width);
    Geometry list = geometry(dropDown());
    EXPECT_EQ(list.y + list.height, geometry(holder_).y) << "stands on the parent's top edge";
    Boolean editable = False;
    XtVaGetValues(combo_->wText, XmNeditable, &editable, nullptr);
    EXPECT_TRUE(editable);

    EXPECT_TRUE(clickOpen());
}

TEST_F(ComboDropDown, ButtonClicksToggleTheDropDownOverTheWidgetsUnderIt) {
    makeCombo();
    realize();

    ASSERT_TRUE(clickOpen()) << "the first click opens the drop-down on top of its siblings";
    EXPECT_EQ(combo_->bListShown, 1);
    EXPECT_EQ(focused(), combo_->wList);

    click(combo_->wButton);
    ASSERT_TRUE(waitClosed()) << "a second click closes it";
    EXPECT_EQ(focused(), combo_->wButton);
    EXPECT_EQ(combo_->bMayOpen, 0);

    key(XK_space);
    pump();
    EXPECT_TRUE(dropDownHidden()) << "a keyboard activation after the closing click does nothing";

    EXPECT_TRUE(clickOpen()) << "the next click opens it again";
}

TEST_F(ComboDropDown, ComboManagedAfterRealizeTogglesToo) {
    realize();
    makeCombo();
    pump();
    ASSERT_TRUE(clickOpen());
    click(combo_->wButton);
    EXPECT_TRUE(waitClosed());
    pump();
    EXPECT_TRUE(dropDownHidden()) << "the closing click must not reopen it";
}

TEST_F(ComboDropDown, KeyboardActivationOpensAFreshCombo) {
    makeCombo();
    realize();
    focus(combo_->wButton);
    ASSERT_EQ(focused(), combo_->wButton);
    key(XK_space);
    EXPECT_TRUE(waitOpen());
    EXPECT_EQ(focused(), combo_->wList);
}

TEST_F(ComboDropDown, PointerChoiceSetsTextClosesAndFocusesTheButton) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    calls_ = 0;

    clickItem(3);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(text(), itemText(3));
    EXPECT_EQ(selected(), 3);
    EXPECT_EQ(focused(), combo_->wButton);
    EXPECT_EQ(calls_, 1);
}

TEST_F(ComboDropDown, KeyboardBrowseKeepsTheDropDownOpenUntilReturn) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    ASSERT_EQ(focused(), combo_->wList);
    calls_ = 0;

    key(XK_Down);
    const int first = selected();
    ASSERT_GE(first, 1) << "browsing selects as it moves";
    EXPECT_EQ(text(), itemText(first));
    key(XK_Down);
    EXPECT_EQ(selected(), first + 1);
    EXPECT_EQ(text(), itemText(first + 1));
    EXPECT_EQ(calls_, 2);
    EXPECT_TRUE(dropDownOnTop()) << "a keyboard browse leaves it open";

    key(XK_Return);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(focused(), combo_->wButton);
    EXPECT_EQ(text(), itemText(first + 1));
}

TEST_F(ComboDropDown, FocusLeavingTheListClosesIt) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    focus(combo_->wText);
    EXPECT_TRUE(waitClosed());
}

TEST_F(ComboDropDown, ComboBuiltUnrealizedOpensOnceRealized) {
    makeCombo();
    GuiChangeComboSelection(combo_, 2, 1);
    GuiComboSetDefaultSelection(combo_, 1);
    EXPECT_EQ(text(), itemText(1));
    realize();
    pump();
    EXPECT_FALSE(isMapped(dropDown())) << "realizing does not show the drop-down";
    EXPECT_FALSE(isMapped(combo_->wList));

    EXPECT_TRUE(clickOpen());
    clickItem(2);
    EXPECT_TRUE(waitClosed());
    EXPECT_EQ(text(), itemText(2));
}

TEST_F(ComboDropDown, DestroyingAnOpenComboTracesAndTakesItsWidgets) {
    makeCombo();
    realize();
    ASSERT_TRUE(clickOpen());
    GuiCombo *gone = combo_;
    combo_ = nullptr;
    clearTraces();
    GuiDestroyCombo(gone);
    pump();
    EXPECT_EQ(XtNameToWidget(holder_, "comboFrame"), nullptr);
    ASSERT_EQ(traces().size(), 1u);
    EXPECT_EQ(traces()[0].msgNo, 8);
    EXPECT_EQ(traces()[0].level, 1);
    char expected[64];
    std::snprintf(expected, sizeof expected, "GuiDestroyCombo(%p)", static_cast<void *>(gone));
    EXPECT_EQ(traces()[0].text, expected);
}

/* Combos built and destroyed again and again leave their parents as they found them. */
TEST_F(ComboDropDown, ACycleOfFiftyCombosLeavesNoWidgetBehind) {
    struct Row {
        const char *maker;
        GuiCombo *(*make)(Widget holder, Widget listParent);
    };
    const Row rows[] = {
        {"GuiCreateComboAndWidgets",
         [](Widget holder, Widget listParent) {
             return GuiCreateComboAndWidgets(holder, listParent, "Choice", 1, 1, 5, 0);
         }},
        {"GuiManageCombo of a scrolled list", [](Widget holder, Widget listParent) {
             return GuiManageCombo(XmCreateTextField(holder, const_cast<char *>("t"), nullptr, 0),
                                   XmCreatePushButton(holder, const_cast<char *>("b"), nullptr, 0),
                                   XmCreateScrolledList(listParent, const_cast<char *>("l"),
                                                        nullptr, 0));
         }},
    };
    realize();
    Widget holder = XtVaCreateManagedWidget("holder", xmFormWidgetClass, form(), nullptr);
    const Cardinal before = childCount(form());
    for (const Row &row : rows) {
        for (int i = 0; i < 50; ++i) GuiDestroyCombo(row.make(holder, form()));
        pump();
        EXPECT_EQ(childCount(holder), 0u) << row.maker;
        EXPECT_EQ(childCount(form()), before) << row.maker;
    }
}

} // namespace
} // namespace xt
