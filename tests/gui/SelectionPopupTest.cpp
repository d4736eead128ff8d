// SPDX-License-Identifier: Apache-2.0
// The list popup: its rows, what it remembers, and what has the focus.
#include <cstdlib>
#include <memory>

#include "common/Exception.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/GuiFixture.h"
#include "gui/SelectionPopup.h"
#include "gui/ShopListScreen.h"
#include "gui/ShownScreen.h"
#include "gui/ToolkitWatch.h"

namespace {

using namespace ZOLT;
using namespace ZOLT::GUI;
using Shops = std::set<Shop*, Shop::ShopComp>;

class SelectionPopupTest : public support::GuiFixture {
  protected:
    void SetUp() override {
        GuiFixture::SetUp();
        std::string name = "Level";
        std::queue<std::string> chosen;
        m_screen = new ShopListScreen(name, chosen, 1920, 1080, "");
        m_flow = std::make_unique<support::ShownScreen>(m_screen);
        activate(*m_screen);
    }
    void TearDown() override {
        m_flow.reset();
        GuiFixture::TearDown();
    }

    // A popup on the screen with COUNT shops, "Shop 0" and so on.
    SelectionPopup& open(int count = 3) {
        for (int index = 0; index < count; ++index) {
            auto shop = std::make_unique<Shop>();
            shop->name = "Shop " + std::to_string(index);
            shop->code = std::to_string(10000 + index);
            m_set.insert(shop.get());
            m_shops.push_back(std::move(shop));
        }
        return dynamic_cast<SelectionPopup&>(*m_screen->addSelectionPopup(m_set));
    }
    SelectionPopup& openAndShow(int count = 3) {
        SelectionPopup& popup = open(count);
        popup.show();
        EXPECT_TRUE(turnUntil(
            [&] { return focusedIn(popup.m_list) == popup.m_list && isMeasured(popup); }));
        draw(popup.m_list);
        return popup;
    }
    // A list measures its rows in steps, and estimates its length until all are measured.
    static bool isMeasured(const SelectionPopup& popup) {
        Elm_Object_Item* first = elm_genlist_first_item_get(popup.m_list);
        if (first == nullptr) {
            return true;
        }
        Evas_Object* row = elm_object_item_track(first);
        const int rowHeight = geometryOf(row).height;
        elm_object_item_untrack(first);
        int height = 0;
        elm_scroller_child_size_get(popup.m_list, nullptr, &height);
        return rowHeight > 0 && height == rowHeight * static_cast<int>(popup.m_itemsCount);
    }
    static std::vector<Elm_Object_Item*> rowsOf(const SelectionPopup& popup) {
        std::vector<Elm_Object_Item*> rows;
        for (Elm_Object_Item* row = elm_genlist_first_item_get(popup.m_list); row != nullptr;
             row = elm_genlist_item_next_get(row)) {
            rows.push_back(row);
        }
        return rows;
    }
    static Evas_Object* okOf(const SelectionPopup& popup) {
        return partOf(widgetOf(popup), "button1");
    }
    // Picks the row INDEX, as the OK key on it does.
    static void pick(const SelectionPopup& popup, std::size_t index) {
        elm_genlist_item_selected_set(rowsOf(popup)[index], EINA_TRUE);
        draw(popup.m_list);
    }
    static void click(Evas_Object* button) {
        evas_object_smart_callback_call(button, "clicked", nullptr);
        draw(button);
    }
    // What the drop-down of the screen does.
    void reopen() {
        EventHandler::selectionPopupRequested(nullptr, nullptr, nullptr);
        settle();
    }

    std::vector<std::unique_ptr<Shop>> m_shops;
    Shops m_set;
    ShopListScreen* m_screen = nullptr;  // belongs to the flow
    std::unique_ptr<support::ShownScreen> m_flow;
};

TEST_F(SelectionPopupTest, StartsWithNothingPickedAndNothingConfirmed) {
    const SelectionPopup popup(layoutOf(*m_screen), "c_popup_right", 1920, 1080);
    EXPECT_EQ(0U, popup.m_itemsCount);
    EXPECT_EQ(0U, popup.m_position);
    EXPECT_EQ(nullptr, popup.m_selectedItem);
    EXPECT_EQ(nullptr, popup.m_previousItem);
    EXPECT_EQ(nullptr, popup.m_selectedShop);
    EXPECT_EQ(nullptr, popup.m_previousShop);
    EXPECT_FALSE(popup.m_shopSelected);
    EXPECT_EQ(nullptr, popup.m_list);
    EXPECT_EQ(0, popup.m_region.width);
}

TEST_F(SelectionPopupTest, AListFillsItAndRowsStaySelectable) {
    const SelectionPopup& popup = open();
    EXPECT_EQ(popup.m_box, partOf(widgetOf(popup)));
    EXPECT_EQ(ELM_OBJECT_SELECT_MODE_ALWAYS, elm_genlist_select_mode_get(popup.m_list));
    Evas_Object* table = elm_object_parent_widget_get(popup.m_list);
    EXPECT_TRUE(elm_table_homogeneous_get(table));
    int column = -1;
    int row = -1;
    int columns = 0;
    int rows = 0;
    elm_table_pack_get(popup.m_list, &column, &row, &columns, &rows);
    EXPECT_EQ((std::vector<int>{0, 0, 1, 11}), (std::vector<int>{column, row, columns, rows}));
}

// Counts the objects below OBJECT that show TEXT, and how many of them are visible.
void countTexts(Evas_Object* object, const std::string& text, int& found, int& visible) {
    if (elm_object_widget_check(object)) {
        const char* own = elm_object_text_get(object);
        if (own != nullptr && text == own) {
            ++found;
            visible += evas_object_visible_get(object) ? 1 : 0;
        }
    }
    Eina_Iterator* children = evas_object_smart_iterator_new(object);
    void* child = nullptr;
    EINA_ITERATOR_FOREACH(children, child) {
        countTexts(static_cast<Evas_Object*>(child), text, found, visible);
    }
    eina_iterator_free(children);
}

TEST_F(SelectionPopupTest, IsDeletedWhenAButtonOfItCannotBeMade) {
    support::ToolkitWatch toolkit;
    toolkit.refuse("elm_button_add");
    EXPECT_THROW(m_screen->addSelectionPopup(m_set), ZOLT::Exception);
    EXPECT_EQ(1, entered("~SelectionPopup"));
    EXPECT_EQ(nullptr, m_screen->getPopup());
}

// Flags that others have set on an event must stay, because later handlers read them.
TEST_F(SelectionPopupTest, AKeyThatItMarksAsHandledKeepsItsOtherFlags) {
    const SelectionPopup& popup = openAndShow();
    const Evas_Object_Event_Cb add = [](void*, Evas*, Evas_Object*, void* eventInfo) {
        auto* const event = static_cast<Evas_Event_Key_Down*>(eventInfo);
        event->event_flags =
            static_cast<Evas_Event_Flags>(event->event_flags | EVAS_EVENT_FLAG_ON_SCROLL);
    };
    int flags = 0;
    const Evas_Object_Event_Cb read = [](void* data, Evas*, Evas_Object*, void* eventInfo) {
        *static_cast<int*>(data) = static_cast<Evas_Event_Key_Down*>(eventInfo)->event_flags;
    };
    const auto heldBack = [&](Evas_Object* widget, const char* key) {
        evas_object_event_callback_priority_add(widget, EVAS_CALLBACK_KEY_DOWN,
                                                EVAS_CALLBACK_PRIORITY_BEFORE, add, nullptr);
        evas_object_event_callback_priority_add(widget, EVAS_CALLBACK_KEY_DOWN,
                                                EVAS_CALLBACK_PRIORITY_AFTER, read, &flags);
        flags = 0;
        press(widget, key);
        evas_object_event_callback_del_full(widget, EVAS_CALLBACK_KEY_DOWN, add, nullptr);
        evas_object_event_callback_del_full(widget, EVAS_CALLBACK_KEY_DOWN, read, &flags);
        return flags;
    };
    constexpr int BOTH = EVAS_EVENT_FLAG_ON_HOLD | EVAS_EVENT_FLAG_ON_SCROLL;
    EXPECT_EQ(BOTH, heldBack(popup.m_list, "Right"));
    Evas_Object* const cancel = partOf(widgetOf(popup), "button2");
    ASSERT_EQ(cancel, focusedIn(cancel));
    EXPECT_EQ(BOTH, heldBack(cancel, "Down"));
}

TEST_F(SelectionPopupTest, AHiddenSpacerSharesTheTableWithTheList) {
    const SelectionPopup& popup = openAndShow();
    int found = 0;
    int visible = 0;
    countTexts(popup.m_box, "ZOLT_CONTENT_SPACER", found, visible);
    EXPECT_EQ(1, found);
    EXPECT_EQ(0, visible);
}

TEST_F(SelectionPopupTest, HasARowForEachShopInTheOrderOfTheCodes) {
    for (const char* code : {"0203", "0201", "0202"}) {
        auto shop = std::make_unique<Shop>();
        shop->name = std::string("Named ") + code;
        shop->code = code;
        m_set.insert(shop.get());
        m_shops.push_back(std::move(shop));
    }
    const SelectionPopup& popup = open(0);
    std::vector<std::string> names;
    for (Elm_Object_Item* row : rowsOf(popup)) {
        names.push_back(static_cast<Shop*>(elm_object_item_data_get(row))->name);
        EXPECT_EQ(ELM_GENLIST_ITEM_NONE, elm_genlist_item_type_get(row));
        EXPECT_EQ(nullptr, elm_genlist_item_parent_get(row));
        EXPECT_STREQ("c_list_texticon", elm_genlist_item_item_class_get(row)->item_style);
    }
    EXPECT_EQ((std::vector<std::string>{"Named 0201", "Named 0202", "Named 0203"}), names);
    EXPECT_EQ(3U, popup.m_itemsCount);
}

TEST_F(SelectionPopupTest, AnEmptySetGivesAnEmptyList) {
    const SelectionPopup& popup = openAndShow(0);
    EXPECT_EQ(0U, popup.m_itemsCount);
    EXPECT_TRUE(rowsOf(popup).empty());
}

TEST_F(SelectionPopupTest, ItHasNoText) {
    SelectionPopup& popup = open();
    try {
        popup.setText("SID_OK", "default");
        FAIL() << "nothing was thrown";
    } catch (const Exception& error) {
        EXPECT_STREQ("SelectionPopup::setText - method not implemented", error.what());
        EXPECT_EQ(GENERIC_ERROR, error.code());
    }
}

// --- the text of a row

std::string labelOf(const std::string& name, const char* part) {
    Shop shop;
    shop.name = name;
    const std::unique_ptr<char, decltype(&std::free)> label(
        SelectionPopup::itemGetLabel(&shop, nullptr, part), std::free);
    return label != nullptr ? label.get() : "null";
}

TEST_F(SelectionPopupTest, BothTextPartsOfARowShowTheName) {
    EXPECT_EQ("A shop", labelOf("A shop", "elm.text"));
    EXPECT_EQ("A shop", labelOf("A shop", "elm.text.1"));
}

TEST_F(SelectionPopupTest, AnyOtherPartOfARowIsEmptyAndNotNull) {
    EXPECT_EQ("", labelOf("A shop", "elm.text.2"));
    EXPECT_EQ("", labelOf("A shop", "elm.text.10"));
    EXPECT_EQ("", labelOf("A shop", ""));
}

TEST_F(SelectionPopupTest, AnEmptyNameIsAnEmptyText) {
    EXPECT_EQ("", labelOf("", "elm.text"));
}

TEST_F(SelectionPopupTest, ANameOfSeventyBytesIsCutToSixtyThree) {
    EXPECT_EQ(std::string(63, 'n'), labelOf(std::string(70, 'n'), "elm.text"));
    EXPECT_EQ(std::string(63, 'n'), labelOf(std::string(63, 'n'), "elm.text"));
}

TEST_F(SelectionPopupTest, APercentSignInANameIsAPercentSign) {
    EXPECT_EQ("100 %s", labelOf("100 %s", "elm.text"));
}

TEST_F(SelectionPopupTest, ANameThatIsCutInsideACharacterDoesNoHarm) {
    auto shop = std::make_unique<Shop>();
    shop->name = "x";
    for (int count = 0; count < 40; ++count) {
        shop->name += "\xED\x95\x9C";
    }
    m_set.insert(shop.get());
    m_shops.push_back(std::move(shop));
    const SelectionPopup& popup = openAndShow(0);
    EXPECT_EQ(1U, popup.m_itemsCount);
}

// --- focus and picks

TEST_F(SelectionPopupTest, OpenedWithNothingPickedTheListHasTheFocusAndOkCannotTakeIt) {
    const SelectionPopup& popup = openAndShow();
    EXPECT_TRUE(logged("No Shop is selected now so deactivate OK button"));
    EXPECT_EQ(popup.m_list, focusedIn(popup.m_list));
    EXPECT_FALSE(takesFocus(okOf(popup)));
    EXPECT_TRUE(evas_object_visible_get(widgetOf(popup)));
    EXPECT_TRUE(evas_object_visible_get(backgroundOf(popup)));
}

TEST_F(SelectionPopupTest, PickingARowMovesTheFocusToOk) {
    const SelectionPopup& popup = openAndShow();
    pick(popup, 1);
    EXPECT_EQ(rowsOf(popup)[1], popup.m_selectedItem);
    EXPECT_EQ(m_shops[1].get(), popup.m_selectedShop);
    EXPECT_TRUE(popup.m_shopSelected);
    EXPECT_TRUE(turnUntil([&] { return focusedIn(okOf(popup)) == okOf(popup); }));
}

TEST_F(SelectionPopupTest, OpenedWithAPickItsRowTakesTheFocus) {
    SelectionPopup& popup = openAndShow();
    pick(popup, 2);
    popup.hide();
    settle();
    platform().clearLog();
    popup.show();
    settle();
    EXPECT_TRUE(logged("Selected Item is getting focused"));
    EXPECT_FALSE(logged("No Shop is selected now so deactivate OK button"));
    EXPECT_TRUE(
        turnUntil([&] { return elm_object_focused_item_get(popup.m_list) == rowsOf(popup)[2]; }));
}

TEST_F(SelectionPopupTest, ConfirmingRemembersTheShopAndTheScrollPosition) {
    SelectionPopup& popup = openAndShow(40);
    pick(popup, 30);
    elm_genlist_item_bring_in(rowsOf(popup)[30], ELM_GENLIST_ITEM_SCROLLTO_TOP);
    elm_genlist_item_show(rowsOf(popup)[30], ELM_GENLIST_ITEM_SCROLLTO_TOP);
    settle();
    popup.setPreviouslySelectedShop(m_shops[30].get());
    EXPECT_EQ(m_shops[30].get(), popup.m_previousShop);
    int x = -1;
    int y = -1;
    int width = -1;
    int height = -1;
    elm_scroller_region_get(popup.m_list, &x, &y, &width, &height);
    EXPECT_EQ(y, popup.m_region.y);
    EXPECT_EQ(width, popup.m_region.width);
    EXPECT_EQ(height, popup.m_region.height);
    EXPECT_GT(height, 0);
    EXPECT_TRUE(logged("Selected Region: " + std::to_string(x) + " " + std::to_string(y) + " " +
                       std::to_string(width) + " " + std::to_string(height)));
}

TEST_F(SelectionPopupTest, ReopenedAfterACancelledPickItShowsTheConfirmedRow) {
    SelectionPopup& popup = openAndShow(40);
    pick(popup, 30);
    elm_genlist_item_show(rowsOf(popup)[30], ELM_GENLIST_ITEM_SCROLLTO_TOP);
    settle();
    click(okOf(popup));
    const auto confirmed = popup.m_region;
    EXPECT_FALSE(popup.getVisible());
    reopen();
    pick(popup, 2);
    elm_genlist_item_show(rowsOf(popup)[2], ELM_GENLIST_ITEM_SCROLLTO_TOP);
    settle();
    click(partOf(widgetOf(popup), "button2"));
    EXPECT_FALSE(popup.getVisible());
    reopen();
    EXPECT_EQ(&popup, m_screen->getPopup());
    EXPECT_TRUE(popup.getVisible());
    EXPECT_EQ(rowsOf(popup)[30], popup.m_selectedItem);
    EXPECT_EQ(rowsOf(popup)[30], elm_genlist_selected_item_get(popup.m_list));
    for (int look = 0; look < 2; ++look) {
        int y = -1;
        elm_scroller_region_get(popup.m_list, nullptr, &y, nullptr, nullptr);
        EXPECT_EQ(confirmed.y, y);
        EXPECT_EQ(rowsOf(popup)[30], elm_object_focused_item_get(popup.m_list));
        draw(popup.m_list);
    }
    EXPECT_TRUE(logged("Setting focus m_region to previour m_region: " +
                       std::to_string(confirmed.x) + " " + std::to_string(confirmed.y) + " " +
                       std::to_string(confirmed.width) + " " + std::to_string(confirmed.height)));
}

TEST_F(SelectionPopupTest, KeysContinueFromTheRowAtWhichItWasReopened) {
    const SelectionPopup& popup = openAndShow(40);
    pick(popup, 30);
    click(okOf(popup));
    reopen();
    draw(popup.m_list);
    press(popup.m_list, "Down");
    EXPECT_EQ(rowsOf(popup)[31], elm_object_focused_item_get(popup.m_list));
    draw(popup.m_list);
    press(popup.m_list, "Return");
    EXPECT_EQ(m_shops[31].get(), popup.m_selectedShop);
}

TEST_F(SelectionPopupTest, RestoredWithNothingConfirmedItForgetsTheRowAndKeepsTheShop) {
    SelectionPopup& popup = openAndShow();
    pick(popup, 1);
    popup.hide();
    popup.restoreSelectedItemSetting();
    EXPECT_EQ(nullptr, popup.m_selectedItem);
    EXPECT_EQ(nullptr, elm_genlist_selected_item_get(popup.m_list));
    EXPECT_EQ(m_shops[1].get(), popup.m_selectedShop);
    EXPECT_TRUE(popup.m_shopSelected);
    platform().clearLog();
    popup.show();
    EXPECT_TRUE(logged("Selected Item is getting focused"));
}

TEST_F(SelectionPopupTest, ReopenedWithNothingPickedTheListHasTheFocusAndOkCannotTakeIt) {
    SelectionPopup& popup = openAndShow();
    Evas_Object* cancel = partOf(widgetOf(popup), "button2");
    elm_object_focus_set(cancel, EINA_TRUE);
    ASSERT_TRUE(turnUntil([cancel] { return focusedIn(cancel) == cancel; }));
    popup.hide();
    settle();
    platform().clearLog();
    reopen();
    EXPECT_EQ(&popup, m_screen->getPopup());
    EXPECT_EQ(nullptr, popup.m_selectedItem);
    EXPECT_TRUE(logged("No Shop is selected now so deactivate OK button"));
    EXPECT_TRUE(turnUntil([&] { return focusedIn(popup.m_list) == popup.m_list; }));
    EXPECT_FALSE(takesFocus(okOf(popup)));
}

TEST_F(SelectionPopupTest, TheListCallsBackForReleasedKeys) {
    const SelectionPopup& popup = openAndShow();
    platform().clearLog();
    keyDown(popup.m_list, "Down");
    EXPECT_EQ(0, entered("selectionPopupListOnKeyPress"));
    keyUp(popup.m_list, "Down");
    EXPECT_EQ(1, entered("selectionPopupListOnKeyPress"));
    EXPECT_EQ(1U, popup.m_position);
}

TEST_F(SelectionPopupTest, DownStaysOnItsButtonsAndUpLeadsToTheList) {
    SelectionPopup& popup = openAndShow();
    for (const char* part : {"button1", "button2"}) {
        popup.focusButton(part);
        Evas_Object* const button = partOf(widgetOf(popup), part);
        ASSERT_TRUE(turnUntil([&] { return focusedIn(button) == button; }));
        for (const char* key : {"Down", "Up"}) {
            // The popup gets the key event with its flags afterwards.
            Evas_Event_Flags left = EVAS_EVENT_FLAG_NONE;
            const Evas_Object_Event_Cb hear = [](void* data, Evas* /*canvas*/,
                                                 Evas_Object* /*object*/, void* eventInfo) {
                *static_cast<Evas_Event_Flags*>(data) =
                    static_cast<Evas_Event_Key_Down*>(eventInfo)->event_flags;
            };
            evas_object_event_callback_priority_add(button, EVAS_CALLBACK_KEY_DOWN,
                                                    EVAS_CALLBACK_PRIORITY_AFTER, hear, &left);
            press(button, key);
            evas_object_event_callback_del_full(button, EVAS_CALLBACK_KEY_DOWN, hear, &left);
            if (std::string(key) == "Down") {
                EXPECT_NE(0U, left & EVAS_EVENT_FLAG_ON_HOLD) << part;
                EXPECT_EQ(button, focusedIn(button)) << part;
            } else {
                EXPECT_EQ(popup.m_list, focusedIn(button)) << part;
            }
        }
    }
}

TEST_F(SelectionPopupTest, ItsButtonsHaveNoSizeOfTheirOwn) {
    const SelectionPopup& popup = open();
    EXPECT_EQ("c_button_icontext", styleOf(okOf(popup)));
    EXPECT_NE(500, maximumOf(okOf(popup)).width);
    EXPECT_NE(250, minimumOf(okOf(popup)).width);
}

}  // namespace
