// SPDX-License-Identifier: Apache-2.0
// The list popup in which one shop of a level is picked.
#pragma once

#include <set>

#include "common/ShopListParser.h"
#include "gui/Popup.h"

namespace ZOLT::GUI {

// Remembers the picked and the confirmed row, so that a popup opened again after hide looks as it
// did before. OK cannot be reached until a row is picked.
class SelectionPopup : public Popup {
  public:
    SelectionPopup(Evas_Object* parent, const char* style, int width, int height);
    ~SelectionPopup() override;

    // Makes the list. Called once, before the buttons are added.
    void prepare();

    // Appends a row for each of SHOPS, which must outlive the popup's widgets.
    void fillList(std::set<Shop*, Shop::ShopComp>& shops);

    void show() override;

    // This popup has no text: always throws ZOLT::Exception.
    void setText(const char* text, const char* style) override;
    void addButton(const char* text, Evas_Smart_Cb callback, void* data, char* icon) override;

    // Text of a row: DATA is its Shop. The name is cut at 63 bytes. Parts other than the two text
    // parts get an empty text. The caller frees the result.
    static char* itemGetLabel(void* data, Evas_Object* object, const char* part);

    // Undoes a pick that was not confirmed. Called before a popup is shown again.
    void restoreSelectedItemSetting();

    // Remembers SHOP as the confirmed one, and the scroll position of the list.
    void setPreviouslySelectedShop(Shop* shop);

    // Public for the button and key callbacks, which change it.
    unsigned int m_itemsCount;
    unsigned int m_position;          // index of the row that has the focus
    Elm_Object_Item* m_selectedItem;  // belongs to the list
    Elm_Object_Item* m_previousItem;  // the confirmed row; belongs to the list
    Evas_Object* m_box;               // belongs to the popup widget
    Handle m_list;                    // belongs to the box
    Shop* m_selectedShop;             // belongs to the parser, as all shops
    Shop* m_previousShop;             // the confirmed shop
    bool m_shopSelected;              // whether a row was ever picked
    struct {
        int x, y, width, height;
    } m_region;  // the list's scroll position at the confirmation

  private:
    // Gives the focus to the first row if the list has the focus. This must wait: the toolkit draws
    // the rows, and decides which widget of the popup has the focus, only after the popup has been
    // shown, and a row that is not drawn cannot take the focus.
    static void onRowDrawn(void* data, Evas_Object* list, void* item);
    static void focusFirstRow(void* data);

    // Newer toolkits choose a focus themselves when a popup is shown, and the list scrolls to the
    // row that they choose. Moves the focus and the list back to the picked row.
    void returnToSelection();

    // Removes this object's callbacks from the list, which may be deleted after this object, and
    // forgets the list.
    void leaveList();

    static constexpr int NO_ROW = -1;
    static void onListKeyDown(void* data, Evas* evas, Evas_Object* list, void* eventInfo);
    static void onListKeyUp(void* data, Evas* evas, Evas_Object* list, void* eventInfo);
    static void onListLeft(void* data, Evas_Object* list, void* eventInfo);
    static void onButtonKeyDown(void* data, Evas* evas, Evas_Object* button, void* eventInfo);
    // Gives the focus to the first button that may have it.
    void focusFirstButton();
    // The index of the row that has the focus, or NO_ROW.
    int focusedRow() const;

    Ecore_Job* m_focusJob;  // deleted here, or by the toolkit once it has run
    int m_rowAtKeyDown;     // the focused row at the last key-down, or NO_ROW
};

}  // namespace ZOLT::GUI
