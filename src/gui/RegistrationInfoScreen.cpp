// SPDX-License-Identifier: Apache-2.0
// Shows the choices that lead to a shop, and the shop's code.
#include "gui/RegistrationInfoScreen.h"

#include <string>

#include "common/Logger.h"
#include "common/Utils.h"
#include "gui/EventHandler.h"
#include "gui/Modes.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

Evas_Object* createScroller(Evas_Object* window) {
    Evas_Object* scroller = elm_scroller_add(window);
    elm_scroller_bounce_set(scroller, EINA_TRUE, EINA_FALSE);
    elm_scroller_policy_set(scroller, ELM_SCROLLER_POLICY_OFF, ELM_SCROLLER_POLICY_AUTO);
    elm_scroller_propagate_events_set(scroller, EINA_TRUE);
    evas_object_size_hint_align_set(scroller, -1.0, -1.0);
    evas_object_size_hint_weight_set(scroller, 1.0, 1.0);
    return scroller;
}

Evas_Object* createBox(Evas_Object* scroller) {
    Evas_Object* box = elm_box_add(scroller);
    elm_box_padding_set(box, 0, 0);
    evas_object_size_hint_weight_set(box, 0.5, 0.0);
    return box;
}

Evas_Object* createRow(Evas_Object* box) {
    Evas_Object* row = elm_label_add(box);
    elm_object_style_set(row, "RegistrationRecord");
    evas_object_size_hint_align_set(row, -1.0, -1.0);
    evas_object_size_hint_weight_set(row, 1.0, 1.0);
    return row;
}

// In a right-to-left user interface LEFTTEXTRTL is used instead of LEFTTEXT.
void setRowTexts(Evas_Object* row, const std::string& leftText, const std::string& leftTextRtl,
                 const std::string& rightText) {
    if (modes::mirrored()) {
        elm_object_part_text_set(row, "leftText_RTL", leftTextRtl.c_str());
    } else {
        elm_object_part_text_set(row, "leftText", leftText.c_str());
    }
    const char* rightPart = modes::mirrored() ? "rightText_RTL" : "rightText";
    elm_object_part_text_set(row, rightPart, rightText.c_str());
}

// A record without a shop, which no registration document has, gets a row without a value.
const Shop* shopOf(const ShopList& record) {
    return record.shops.empty() ? nullptr : record.shops.front();
}

Evas_Object* createLevelRow(Evas_Object* box, const ShopList& record) {
    const Shop* shop = shopOf(record);
    const std::string level = Utils::htmlEncode(record.name);
    const std::string name = shop != nullptr ? Utils::htmlEncode(shop->name) : std::string();
    Evas_Object* row = createRow(box);
    setRowTexts(row, level + " :", ": " + level, name);
    return row;
}

Evas_Object* createShopCodeRow(Evas_Object* box, const Shop& shop) {
    // Deliberately, the colon does not change its side with the reading direction, and the code is
    // not encoded: the document holds the code as it is shown.
    const std::string leftText = RegistrationInfoScreen::shopCodeLabel();
    Evas_Object* row = createRow(box);
    setRowTexts(row, leftText, leftText, shop.code);
    evas_object_smart_callback_add(row, "language,changed", EventHandler::languageChanged,
                                   RegistrationInfoScreen::SHOP_CODE_ID);
    return row;
}

void packRow(Evas_Object* box, Evas_Object* row) {
    elm_box_pack_end(box, row);
    // A widget loads its theme group anew when its scale changes, and then needs this again.
    followContrast(row);
    evas_object_show(row);
}

}  // namespace

RegistrationInfoScreen::RegistrationInfoScreen(std::vector<ShopList>& records, int width,
                                               int height)
    : Screen("RegistrationInfoScreen", m_layoutName,
             modes::enlarged() ? "RegistrationInfoWindowEnlarge" : "RegistrationInfoWindow", width,
             height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    Evas_Object* scroller = createScroller(m_window);
    Evas_Object* box = createBox(scroller);
    for (const ShopList& record : records) {
        Evas_Object* row = createLevelRow(box, record);
        if (modes::enlarged()) {
            ZOLT_DEBUG("Enlarge Mode ON");
            elm_object_scale_set(row, modes::ENLARGED_SCALE);
        }
        packRow(box, row);
    }
    const Shop* shop = records.empty() ? nullptr : shopOf(records.back());
    if (shop != nullptr) {
        Evas_Object* row = createShopCodeRow(box, *shop);
        if (modes::enlarged()) {
            ZOLT_DEBUG("Enlarge Mode ON");
            elm_object_scale_set(row, modes::ENLARGED_SCALE);
        }
        packRow(box, row);
    }
    elm_object_content_set(scroller, box);
    elm_object_part_content_set(m_layout, "scroller", scroller);
    followContrast(scroller);  // only now, because the layout has set its scale
    evas_object_smart_callback_add(scroller, "unfocused", EventHandler::unfocusedItemCb, nullptr);
    evas_object_smart_callback_add(scroller, "focused", EventHandler::focusedItemCb, nullptr);
    // Key-down, while buttons use key-up: the scroller moves its content before the key is
    // released.
    evas_object_event_callback_add(scroller, EVAS_CALLBACK_KEY_DOWN, EventHandler::onKeyPress,
                                   nullptr);
}

std::string RegistrationInfoScreen::shopCodeLabel() {
    return std::string(translated(SHOP_CODE_ID)) + " :";
}

RegistrationInfoScreen::~RegistrationInfoScreen() {
    ZOLT_TRACE();
}

void RegistrationInfoScreen::removeButtons() {
    ZOLT_TRACE();
    for (const char* part : {"prevBtn", "regBtn"}) {
        elm_object_part_content_set(m_layout, part, nullptr);
    }
}

}  // namespace ZOLT::GUI
