// SPDX-License-Identifier: Apache-2.0
// The list popup in which one shop of a level is picked.
#include "gui/SelectionPopup.h"

#include <cstdio>
#include <cstring>

#include "common/Exception.h"
#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Screen.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

// Marks EVENT as handled, so that the toolkit's own handlers skip it. Keeps flags that are already
// set.
void hold(Evas_Event_Key_Down& event) {
    event.event_flags = static_cast<Evas_Event_Flags>(event.event_flags | EVAS_EVENT_FLAG_ON_HOLD);
}

void fill(Evas_Object* object) {
    evas_object_size_hint_weight_set(object, 1.0, 1.0);
    evas_object_size_hint_align_set(object, -1.0, -1.0);
}

// A hidden spacer that sets the minimum width of the table, and so of the popup.
void packSpacer(Evas_Object* table) {
    Evas_Object* spacer = Screen::createLabel(table, "ZOLT_CONTENT_SPACER", "default");
    fill(spacer);
    evas_object_resize(spacer, 600, 0);
    elm_table_pack(table, spacer, 0, 9, 1, 1);
    evas_object_hide(spacer);
}

}  // namespace

SelectionPopup::SelectionPopup(Evas_Object* parent, const char* style, int width, int height)
    : Popup(parent, style, width, height),
      m_itemsCount(0),
      m_position(0),
      m_selectedItem(nullptr),
      m_previousItem(nullptr),
      m_box(nullptr),
      m_selectedShop(nullptr),
      m_previousShop(nullptr),
      m_shopSelected(false),
      m_region{},
      m_focusJob(nullptr),
      m_rowAtKeyDown(NO_ROW) {
    ZOLT_TRACE();
    elm_win_focus_highlight_style_set(m_popup, "default");
}

SelectionPopup::~SelectionPopup() {
    ZOLT_TRACE();
    if (m_focusJob != nullptr && !toolkitLost()) {
        ecore_job_del(m_focusJob);
    }
    leaveList();
}

void SelectionPopup::leaveList() {
    if (m_list != nullptr) {
        evas_object_smart_callback_del_full(m_list, "realized", onRowDrawn, this);
        evas_object_smart_callback_del_full(m_list, "unfocused", onListLeft, this);
        evas_object_event_callback_del_full(m_list, EVAS_CALLBACK_KEY_DOWN, onListKeyDown, this);
        evas_object_event_callback_del_full(m_list, EVAS_CALLBACK_KEY_UP, onListKeyUp, this);
    }
    m_list = nullptr;
}

void SelectionPopup::prepare() {
    ZOLT_TRACE();
    m_selectedShop = nullptr;
    m_previousShop = nullptr;
    m_shopSelected = false;

    m_box = elm_box_add(m_popup);
    fill(m_box);
    elm_object_content_set(m_popup, m_box);
    evas_object_show(m_box);

    Evas_Object* table = elm_table_add(m_box);
    elm_table_homogeneous_set(table, EINA_TRUE);
    evas_object_show(table);

    leaveList();
    m_list = elm_genlist_add(table);
    fill(m_list);
    elm_genlist_select_mode_set(m_list, ELM_OBJECT_SELECT_MODE_ALWAYS);
    evas_object_smart_callback_add(m_list, "realized", onRowDrawn, this);
    evas_object_smart_callback_add(m_list, "unfocused", onListLeft, this);
    evas_object_event_callback_add(m_list, EVAS_CALLBACK_KEY_DOWN, onListKeyDown, this);
    evas_object_event_callback_priority_add(m_list, EVAS_CALLBACK_KEY_UP,
                                            EVAS_CALLBACK_PRIORITY_BEFORE, onListKeyUp, this);
    elm_table_pack(table, m_list, 0, 0, 1, 11);
    elm_object_focus_allow_set(m_list, EINA_TRUE);
    elm_object_focus_set(m_list, EINA_TRUE);
    evas_object_show(m_list);
    evas_object_event_callback_add(m_list, EVAS_CALLBACK_KEY_UP,
                                   EventHandler::selectionPopupListOnKeyPress, nullptr);

    packSpacer(table);
    elm_box_pack_end(m_box, table);
}

void SelectionPopup::fillList(std::set<Shop*, Shop::ShopComp>& shops) {
    ZOLT_TRACE();
    Elm_Genlist_Item_Class* itemClass = elm_genlist_item_class_new();
    itemClass->item_style = "c_list_texticon";
    itemClass->func.text_get = itemGetLabel;
    itemClass->func.content_get = nullptr;
    itemClass->func.state_get = nullptr;
    itemClass->func.del = nullptr;
    for (Shop* shop : shops) {
        elm_genlist_item_append(m_list, itemClass, shop, nullptr, ELM_GENLIST_ITEM_NONE,
                                EventHandler::selectionPopupItemSelectionCb, shop);
    }
    elm_genlist_item_class_free(itemClass);
    m_itemsCount = static_cast<unsigned int>(shops.size());
}

void SelectionPopup::show() {
    ZOLT_TRACE();
    m_visible = true;
    rememberFocus();
    if (m_selectedShop == nullptr) {
        ZOLT_DEBUG("No Shop is selected now so deactivate OK button");
        deactivateButton("button1");
        elm_object_focus_set(m_list, EINA_TRUE);
    } else {
        ZOLT_DEBUG("Selected Item is getting focused");
        elm_object_item_focus_set(m_selectedItem, EINA_TRUE);
    }
    evas_object_show(m_background);
    evas_object_show(m_popup);
    returnToSelection();
}

void SelectionPopup::returnToSelection() {
    if (m_selectedItem == nullptr) {
        return;
    }
    if (m_selectedItem == m_previousItem) {
        elm_scroller_region_show(m_list, m_region.x, m_region.y, m_region.width, m_region.height);
    }
    elm_object_item_focus_set(m_selectedItem, EINA_TRUE);
}

void SelectionPopup::setText(const char* /*text*/, const char* /*style*/) {
    ZOLT_TRACE();
    throw Exception("SelectionPopup::setText - method not implemented", GENERIC_ERROR);
}

void SelectionPopup::addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) {
    ZOLT_TRACE();
    Evas_Object* button =
        Screen::createButton(m_popup, text, callback, data, icon, "c_button_icontext");
    appendButton(button);
    leaveSizeToPart(button);
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_DOWN, onButtonKeyDown, nullptr);
}

// Nothing is below the buttons, but the toolkit sometimes wraps around and moves the focus to the
// list.
void SelectionPopup::onButtonKeyDown(void* /*data*/, Evas* /*evas*/, Evas_Object* /*button*/,
                                     void* eventInfo) {
    auto* const event = static_cast<Evas_Event_Key_Down*>(eventInfo);
    if (event->key != nullptr && std::strcmp(event->key, "Down") == 0) {
        hold(*event);
    }
}

void SelectionPopup::onRowDrawn(void* data, Evas_Object* list, void* item) {
    auto* const popup = static_cast<SelectionPopup*>(data);
    if (item == elm_genlist_first_item_get(list) && popup->m_focusJob == nullptr) {
        evas_object_smart_callback_del_full(list, "realized", onRowDrawn, data);
        popup->m_focusJob = ecore_job_add(focusFirstRow, data);
    }
}

void SelectionPopup::focusFirstRow(void* data) {
    auto* const popup = static_cast<SelectionPopup*>(data);
    popup->m_focusJob = nullptr;
    if (popup->m_popup != nullptr && popup->m_visible && popup->m_selectedShop == nullptr) {
        elm_object_item_focus_set(elm_genlist_first_item_get(popup->m_list), EINA_TRUE);
    }
}

// Makes the arrows do what the sounds of the list say: Right moves to the buttons, and Down stops
// at the last row.
void SelectionPopup::onListKeyDown(void* data, Evas* /*evas*/, Evas_Object* list, void* eventInfo) {
    auto* const popup = static_cast<SelectionPopup*>(data);
    auto* const event = static_cast<Evas_Event_Key_Down*>(eventInfo);
    const std::string key = event->key != nullptr ? event->key : "";
    const int row = popup->focusedRow();
    if (popup->m_rowAtKeyDown == NO_ROW) {
        popup->m_rowAtKeyDown = row;
    }
    if (key == "Right") {
        popup->focusFirstButton();
        hold(*event);
    } else if (key == "Down" &&
               elm_object_focused_item_get(list) == elm_genlist_last_item_get(list)) {
        hold(*event);
    }
}

// The sound is chosen when an arrow key is released, assuming that it moved by one row. A held key
// has moved by many, and one that moved here from the buttons by none. So the position is set to
// the row from which one step ends on the current row.
void SelectionPopup::onListKeyUp(void* data, Evas* /*evas*/, Evas_Object* /*list*/,
                                 void* eventInfo) {
    auto* const popup = static_cast<SelectionPopup*>(data);
    const auto* const event = static_cast<Evas_Event_Key_Up*>(eventInfo);
    const std::string key = event->key != nullptr ? event->key : "";
    const int row = popup->focusedRow();
    const bool moved = row != popup->m_rowAtKeyDown;
    popup->m_rowAtKeyDown = NO_ROW;
    if (row == NO_ROW) {
        return;
    }
    if (key == "Up") {
        popup->m_position = static_cast<unsigned int>(moved ? row + 1 : row);
    } else if (key == "Down" && row > 0) {
        popup->m_position = static_cast<unsigned int>(moved ? row - 1 : row);
    }
}

void SelectionPopup::onListLeft(void* data, Evas_Object* /*list*/, void* /*eventInfo*/) {
    static_cast<SelectionPopup*>(data)->m_rowAtKeyDown = NO_ROW;
}

int SelectionPopup::focusedRow() const {
    const Elm_Object_Item* const row = elm_object_focused_item_get(m_list);
    return row != nullptr ? elm_genlist_item_index_get(row) - 1 : NO_ROW;
}

void SelectionPopup::focusFirstButton() {
    for (const char* part : {"button1", "button2"}) {
        Evas_Object* const button = elm_object_part_content_get(m_popup, part);
        elm_object_focus_set(button, EINA_TRUE);
        if (elm_object_focused_object_get(m_popup) == button) {
            return;
        }
    }
}

char* SelectionPopup::itemGetLabel(void* data, Evas_Object* /*object*/, const char* part) {
    ZOLT_TRACE();
    char label[64] = {};
    if (std::strcmp(part, "elm.text") == 0 || std::strcmp(part, "elm.text.1") == 0) {
        std::snprintf(label, sizeof(label), "%s", static_cast<Shop*>(data)->name.c_str());
    }
    return strdup(label);
}

void SelectionPopup::restoreSelectedItemSetting() {
    ZOLT_TRACE();
    if (m_selectedItem != nullptr) {
        elm_genlist_item_selected_set(m_selectedItem, EINA_FALSE);
    }
    m_selectedItem = m_previousItem;
    if (m_selectedItem == nullptr) {
        return;
    }
    ZOLT_DEBUG("Setting focus m_region to previour m_region: %d %d %d %d", m_region.x, m_region.y,
               m_region.width, m_region.height);
    elm_object_focus_allow_set(m_list, EINA_TRUE);
    elm_object_focus_set(m_list, EINA_TRUE);
    elm_scroller_region_show(m_list, m_region.x, m_region.y, m_region.width, m_region.height);
    elm_genlist_item_selected_set(m_selectedItem, EINA_TRUE);
    elm_object_item_focus_set(m_selectedItem, EINA_TRUE);
}

void SelectionPopup::setPreviouslySelectedShop(Shop* shop) {
    ZOLT_TRACE();
    m_previousShop = shop;
    elm_scroller_region_get(m_list, &m_region.x, &m_region.y, &m_region.width, &m_region.height);
    ZOLT_DEBUG("Selected Region: %d %d %d %d", m_region.x, m_region.y, m_region.width,
               m_region.height);
}

}  // namespace ZOLT::GUI
