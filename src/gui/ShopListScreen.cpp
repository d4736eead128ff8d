// SPDX-License-Identifier: Apache-2.0
// One level of the shop hierarchy, with the drop-down in which its shop is picked.
#include "gui/ShopListScreen.h"

#include <memory>

#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Modes.h"
#include "gui/SelectionPopup.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

constexpr char SELECT_ID[] = "TV_SID_SELECT_M_MSG";

Evas_Object* appendHeading(Evas_Object* layout, const char* text) {
    Evas_Object* label = Screen::createLabel(layout, text, "subHeadingStyle");
    followLanguage(label);
    elm_layout_box_append(layout, "selectText", label);
    evas_object_show(label);
    return label;
}

// Deliberately writes all values to the same part, so only the last one remains, which was chosen
// first.
void showChosenValues(Evas_Object* layout, std::queue<std::string>& values) {
    while (!values.empty()) {
        const char* part = modes::mirrored() ? "shopname" : "shop1";
        elm_object_part_text_set(layout, part, values.front().c_str());
        values.pop();
    }
}

void addDropDown(Evas_Object* layout) {
    Evas_Object* dropDown = elm_hoversel_add(layout);
    elm_hoversel_hover_parent_set(dropDown, layout);
    elm_object_style_set(dropDown, "c_dropdown_black");
    setTranslatable(dropDown, nullptr, SELECT_ID);
    evas_object_show(dropDown);
    evas_object_smart_callback_add(dropDown, "clicked", EventHandler::selectionPopupRequested,
                                   nullptr);
    evas_object_smart_callback_add(dropDown, "focused", EventHandler::focusedItemCb, nullptr);
    evas_object_smart_callback_add(dropDown, "unfocused", EventHandler::unfocusedItemCb, nullptr);
    evas_object_event_callback_add(dropDown, EVAS_CALLBACK_KEY_UP, EventHandler::onKeyPress,
                                   nullptr);
    elm_layout_signal_emit(dropDown, "edc,align,left", "");
    followContrast(dropDown);
    elm_object_part_content_set(layout, "selectBtn", dropDown);
    evas_object_show(dropDown);
    elm_object_focus_allow_set(dropDown, EINA_TRUE);
    elm_object_focus_set(dropDown, EINA_TRUE);
}

// Removes the shops named NAME from SHOPS. Deliberately skips the shop after a removed one: of two
// neighbours with that name the second stays.
void removeNamed(std::set<Shop*, Shop::ShopComp>& shops, const std::string& name) {
    auto place = shops.begin();
    while (place != shops.end()) {
        if ((*place)->name == name) {
            place = shops.erase(place);
            if (place == shops.end()) {
                return;
            }
        }
        ++place;
    }
}

}  // namespace

ShopListScreen::ShopListScreen(std::string& listName, std::queue<std::string>& chosenValues,
                               int width, int height, std::string registeredShopName)
    : Screen("ShopListScreen", m_layoutName,
             modes::enlarged() ? "ShopListWindowEnlarge" : "ShopListWindow", width, height),
      m_screenWidth(width),
      m_screenHeight(height),
      m_registeredShopName(registeredShopName) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    appendHeading(m_layout, SELECT_ID);
    evas_object_size_hint_padding_set(appendHeading(m_layout, " "), 5, 5, 0, 0);
    appendHeading(m_layout, listName.c_str());
    showChosenValues(m_layout, chosenValues);
    addDropDown(m_layout);
}

ShopListScreen::~ShopListScreen() {
    ZOLT_TRACE();
}

Popup* ShopListScreen::addSelectionPopup(std::set<Shop*, Shop::ShopComp>& shops) {
    ZOLT_TRACE();
    auto popup =
        std::make_unique<SelectionPopup>(m_layout, "c_popup_right", m_screenWidth, m_screenHeight);
    popup->prepare();
    popup->setTitle(SELECT_ID);
    popup->addButton("SID_OK", EventHandler::selectionPopupShopChosen, nullptr,
                     iconName("i_ok_done_allow"));
    popup->addButton("SID_CANCEL", EventHandler::popupHideRequested, nullptr,
                     iconName("i_close_cancel"));
    removeNamed(shops, m_registeredShopName);
    popup->fillList(shops);
    m_popup = popup.release();
    return m_popup;
}

void ShopListScreen::removeButtons() {
    ZOLT_TRACE();
    for (const char* part : {"nextBtn", "prevBtn", "singleBtn"}) {
        elm_object_part_content_set(m_layout, part, nullptr);
    }
}

}  // namespace ZOLT::GUI
