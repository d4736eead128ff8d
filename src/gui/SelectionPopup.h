// SPDX-License-Identifier: Apache-2.0
// The list popup in which one shop of a level is picked.
#pragma once

#include <set>

#include "common/ShopListParser.h"
#include "gui/Popup.h"

namespace ZOLT::GUI {

// Remembers what was picked and what was confirmed, so that a popup opened again after a hide
// stands where it was left, and keeps OK out of reach until something is picked.
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

    // Text of a row: DATA is its Shop. The name is cut at 63 bytes; parts other than the two text
    // parts get an empty text. The caller frees the result.
    static char* itemGetLabel(void* data, Evas_Object* object, const char* part);

    // Takes back a pick that was not confirmed. Called before a popup is shown again.
    void restoreSelectedItemSetting();

    // Remembers SHOP as the confirmed one, with the place at which the list stands.
    void setPreviouslySelectedShop(Shop* shop);

    // The state is open to the button and key callbacks, which drive it.
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
    } m_region;  // where the list stood at the confirmation

  private:
    // A list that has the focus shows it on its first row. The toolkit draws rows, and settles the
    // focus among the popup's widgets, only after the popup has been shown, and a row that is not
    // drawn cannot take it: so the first row gets it as soon as it is there.
    static void onRowDrawn(void* data, Evas_Object* list, void* item);
    static void focusFirstRow(void* data);

    // Newer toolkits give a popup that comes into sight a focus of their own choice, and the list
    // follows to the row that they choose: puts both back to the picked row.
    void returnToSelection();

    // Takes this object's callbacks off the list, which may go later than this object does, and
    // lets go of it.
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

    Ecore_Job* m_focusJob;  // deleted here, or by itself once it has run
    int m_rowAtKeyDown;     // the row from which a key that is still down has led; or NO_ROW
};

}  // namespace ZOLT::GUI
