// SPDX-License-Identifier: Apache-2.0
// One level of the shop hierarchy: its heading, its drop-down, and what the drop-down offers.
#include <memory>

#include "gui/Controller.h"
#include "gui/GuiFixture.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"
#include "gui/ShownScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;
using Strings = std::vector<std::string>;

class ShopListScreenTest : public support::GuiFixture {
  protected:
    std::unique_ptr<ShopListScreen> screenOf(const Strings& chosen = {},
                                             const std::string& registered = "",
                                             const std::string& level = "Area") {
        std::string name = level;
        for (const std::string& value : chosen) {
            m_chosen.push(value);
        }
        return std::make_unique<ShopListScreen>(name, m_chosen, 1920, 1080, registered);
    }

    // The rows of a popup for shops named NAMES, with the codes "00", "01" and so on.
    Strings offered(const Strings& names, const std::string& registered) {
        const auto screen = screenOf({}, registered);
        std::vector<Shop> shops(names.size());
        std::set<Shop*, Shop::ShopComp> set;
        for (std::size_t index = 0; index < names.size(); ++index) {
            shops[index].name = names[index];
            shops[index].code = "0" + std::to_string(index);
            set.insert(&shops[index]);
        }
        auto& popup = dynamic_cast<SelectionPopup&>(*screen->addSelectionPopup(set));
        Strings rows;
        for (Elm_Object_Item* row = elm_genlist_first_item_get(popup.m_list); row != nullptr;
             row = elm_genlist_item_next_get(row)) {
            rows.push_back(static_cast<Shop*>(elm_object_item_data_get(row))->name);
        }
        EXPECT_EQ(rows.size(), set.size());
        EXPECT_EQ(rows.size(), popup.m_itemsCount);
        return rows;
    }

    std::queue<std::string> m_chosen;
};

TEST_F(ShopListScreenTest, HasItsTitleAndAHeadingOfThreeLabels) {
    translate({{"TV_SID_SELECT_M_MSG", "Select"}, {"COM_SID_ZOLT_CONTENT", "The program"}});
    const auto screen = screenOf({}, "", "Area");
    EXPECT_STREQ("ShopListScreen", elm_win_title_get(windowOf(*screen)));
    EXPECT_EQ("ShopListWindow", groupOf(layoutOf(*screen)));
    EXPECT_EQ("The program", textOf(layoutOf(*screen), "title"));
    const auto labels = childrenOf(layoutOf(*screen), "selectText");
    ASSERT_EQ(3U, labels.size());
    EXPECT_EQ("Select", textOf(labels[0]));
    EXPECT_EQ(" ", textOf(labels[1]));
    EXPECT_EQ("Area", textOf(labels[2]));
    for (Evas_Object* label : labels) {
        EXPECT_EQ("subHeadingStyle", styleOf(label));
        EXPECT_TRUE(evas_object_visible_get(label));
    }
    int left = 0;
    int right = 0;
    int top = -1;
    int bottom = -1;
    evas_object_size_hint_padding_get(labels[1], &left, &right, &top, &bottom);
    EXPECT_EQ((std::vector<int>{5, 5, 0, 0}), (std::vector<int>{left, right, top, bottom}));
}

TEST_F(ShopListScreenTest, InEnlargedModeItHasAGroupOfItsOwn) {
    Controller::Enlarge = 1;
    const auto screen = screenOf();
    EXPECT_EQ("ShopListWindowEnlarge", groupOf(layoutOf(*screen)));
    EXPECT_DOUBLE_EQ(1.2, elm_object_scale_get(layoutOf(*screen)));
}

TEST_F(ShopListScreenTest, WithNothingChosenNoValueIsShown) {
    const auto screen = screenOf();
    EXPECT_EQ("", textOf(layoutOf(*screen), "shop1"));
    EXPECT_EQ("", textOf(layoutOf(*screen), "shopname"));
}

TEST_F(ShopListScreenTest, TheLastOfThreeChosenValuesIsShownAndTheQueueIsEmptied) {
    const auto screen = screenOf({"Third", "Second", "First"});
    EXPECT_EQ("First", textOf(layoutOf(*screen), "shop1"));
    EXPECT_EQ("", textOf(layoutOf(*screen), "shopname"));
    EXPECT_TRUE(m_chosen.empty());
}

TEST_F(ShopListScreenTest, RightToLeftTheValueIsInItsOwnPart) {
    platform().setOrientation(1);
    const auto screen = screenOf({"Second", "First"});
    EXPECT_EQ("", textOf(layoutOf(*screen), "shop1"));
    EXPECT_EQ("First", textOf(layoutOf(*screen), "shopname"));
}

TEST_F(ShopListScreenTest, TheDropDownHasItsStyleAndTheFocus) {
    const auto screen = screenOf();
    Evas_Object* dropDown = partOf(layoutOf(*screen), "selectBtn");
    ASSERT_NE(nullptr, dropDown);
    EXPECT_EQ("TV_SID_SELECT_M_MSG", textOf(dropDown));
    EXPECT_EQ("c_dropdown_black", styleOf(dropDown));
    EXPECT_EQ(layoutOf(*screen), elm_hoversel_hover_parent_get(dropDown));
    EXPECT_TRUE(evas_object_visible_get(dropDown));
    screen->show();
    activate(*screen);
    EXPECT_EQ(dropDown, focusedIn(dropDown));
}

TEST_F(ShopListScreenTest, TheDropDownGetsTheSignalForItsTextOnce) {
    const support::ToolkitWatch toolkit;
    const auto screen = screenOf();
    EXPECT_EQ(std::vector<Evas_Object*>{partOf(layoutOf(*screen), "selectBtn")},
              toolkit.callsOf(R"(elm_layout_signal_emit("edc,align,left", ""))"));
}

TEST_F(ShopListScreenTest, OkOnTheDropDownOpensTheListOnce) {
    auto* screen = screenOf().release();
    const support::ShownScreen flow(screen);
    activate(*screen);
    Evas_Object* dropDown = partOf(layoutOf(*screen), "selectBtn");
    platform().clearLog();
    press(dropDown, "Return");
    EXPECT_EQ(1, entered("selectionPopupRequested"));
    ASSERT_NE(nullptr, dynamic_cast<SelectionPopup*>(screen->getPopup()));
    EXPECT_TRUE(screen->getPopup()->getVisible());
}

TEST_F(ShopListScreenTest, TheDropDownCallsBackForItsFocusAndItsKeys) {
    const auto screen = screenOf();
    screen->addButton(
        "singleBtn", "SID_NEXT", [](void*, Evas_Object*, void*) {}, nullptr, true, false);
    screen->show();
    activate(*screen);
    draw(layoutOf(*screen));
    Evas_Object* dropDown = partOf(layoutOf(*screen), "selectBtn");
    elm_object_focus_set(partOf(layoutOf(*screen), "singleBtn"), EINA_TRUE);
    settle();
    platform().clearLog();
    elm_object_focus_set(dropDown, EINA_TRUE);
    settle();
    EXPECT_GE(entered("focusedItemCb"), 1);
    elm_object_focus_set(partOf(layoutOf(*screen), "singleBtn"), EINA_TRUE);
    settle();
    EXPECT_GE(entered("unfocusedItemCb"), 1);
    elm_object_focus_set(dropDown, EINA_TRUE);
    settle();
    platform().clearLog();
    press(dropDown, "XF86Red");
    EXPECT_EQ(1, entered("onKeyPress"));
}

TEST_F(ShopListScreenTest, AllItsButtonsCanBeRemoved) {
    const auto screen = screenOf();
    for (const char* part : {"nextBtn", "prevBtn", "singleBtn"}) {
        screen->addButton(
            part, "SID_NEXT", [](void*, Evas_Object*, void*) {}, nullptr, true, false);
    }
    screen->removeButtons();
    for (const char* part : {"nextBtn", "prevBtn", "singleBtn"}) {
        EXPECT_EQ(nullptr, partOf(layoutOf(*screen), part)) << part;
    }
    EXPECT_NE(nullptr, partOf(layoutOf(*screen), "selectBtn"));
    screen->removeButtons();
}

// --- the popup

TEST_F(ShopListScreenTest, ItsPopupIsMadeHiddenWithItsTitleAndTwoButtons) {
    const auto screen = screenOf();
    std::set<Shop*, Shop::ShopComp> shops;
    const Popup* popup = screen->addSelectionPopup(shops);
    EXPECT_EQ(popup, screen->getPopup());
    EXPECT_FALSE(evas_object_visible_get(widgetOf(*popup)));
    EXPECT_EQ("c_popup_right", styleOf(widgetOf(*popup)));
    EXPECT_EQ("TV_SID_SELECT_M_MSG", textOf(widgetOf(*popup), "title,text"));
    Evas_Object* ok = partOf(widgetOf(*popup), "button1");
    Evas_Object* cancel = partOf(widgetOf(*popup), "button2");
    EXPECT_EQ("SID_OK", textOf(ok));
    EXPECT_EQ("i_ok_done_allow", iconOf(ok));
    EXPECT_EQ("SID_CANCEL", textOf(cancel));
    EXPECT_EQ("i_close_cancel", iconOf(cancel));
}

TEST_F(ShopListScreenTest, TheButtonsOfItsPopupCallBack) {
    auto* screen = screenOf().release();
    const support::ShownScreen flow(screen);
    std::set<Shop*, Shop::ShopComp> shops;
    const Popup* popup = screen->addSelectionPopup(shops);
    announceWarning("Shop is not selected");
    evas_object_smart_callback_call(partOf(widgetOf(*popup), "button1"), "clicked", nullptr);
    EXPECT_EQ(1, entered("selectionPopupShopChosen"));
    evas_object_smart_callback_call(partOf(widgetOf(*popup), "button2"), "clicked", nullptr);
    EXPECT_EQ(1, entered("popupHideRequested"));
    EXPECT_EQ(nullptr, screen->getPopup());
}

TEST_F(ShopListScreenTest, TheRegisteredShopIsNotOffered) {
    EXPECT_EQ((Strings{"A", "C"}), offered({"A", "B", "C"}, "B"));
    EXPECT_EQ((Strings{"B", "C"}), offered({"A", "B", "C"}, "A"));
    EXPECT_EQ((Strings{"A", "B"}), offered({"A", "B", "C"}, "C"));
}

TEST_F(ShopListScreenTest, ANameThatOnlyBeginsAlikeIsOffered) {
    EXPECT_EQ((Strings{"Shop 1", "shop"}), offered({"Shop 1", "shop"}, "Shop"));
}

TEST_F(ShopListScreenTest, WithoutARegisteredShopAllAreOffered) {
    EXPECT_EQ((Strings{"A", "B"}), offered({"A", "B"}, ""));
}

TEST_F(ShopListScreenTest, WithoutARegisteredShopOneWithoutANameIsNotOffered) {
    EXPECT_EQ(Strings{"A"}, offered({"", "A"}, ""));
}

TEST_F(ShopListScreenTest, TheOnlyShopBeingTheRegisteredOneLeavesAnEmptyList) {
    EXPECT_EQ(Strings{}, offered({"A"}, "A"));
}

TEST_F(ShopListScreenTest, OfTwoNeighboursWithTheRegisteredNameTheSecondStays) {
    EXPECT_EQ((Strings{"A", "B", "C"}), offered({"A", "B", "B", "C"}, "B"));
    EXPECT_EQ(Strings{"B"}, offered({"B", "B"}, "B"));
    EXPECT_EQ(Strings{"B"}, offered({"B", "B", "B"}, "B"));
    EXPECT_EQ((Strings{"A"}), offered({"B", "A", "B"}, "B"));
}

TEST_F(ShopListScreenTest, AnEarlierPopupIsReplacedAndNotDestroyed) {
    const auto screen = screenOf();
    std::set<Shop*, Shop::ShopComp> shops;
    const Popup* first = screen->addSelectionPopup(shops);
    EXPECT_NE(first, screen->addSelectionPopup(shops));
    EXPECT_NE(nullptr, widgetOf(*first));
}

}  // namespace
