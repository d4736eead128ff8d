// SPDX-License-Identifier: Apache-2.0
// One level of the shop hierarchy, with the drop-down in which its shop is picked.
#pragma once

#include <queue>
#include <set>
#include <string>

#include "common/ShopListParser.h"
#include "gui/Screen.h"

namespace ZOLT::GUI {

class ShopListScreen : public Screen {
  public:
    // LISTNAME is the name of the level. CHOSENVALUES holds what was chosen at the earlier levels
    // and is emptied. WIDTH and HEIGHT are the screen's size in pixels. REGISTEREDSHOPNAME is the
    // shop that the TV is registered to now, or empty.
    ShopListScreen(std::string& listName, std::queue<std::string>& chosenValues, int width,
                   int height, std::string registeredShopName);
    ~ShopListScreen() override;

    // Makes the popup that offers SHOPS, hidden, and removes the registered shop from SHOPS. An
    // earlier popup is not destroyed, only no longer referenced. The screen owns the result.
    Popup* addSelectionPopup(std::set<Shop*, Shop::ShopComp>& shops);

    // Deletes the navigation buttons.
    void removeButtons();

  protected:
    int m_screenWidth;
    int m_screenHeight;
    std::string m_registeredShopName;
};

}  // namespace ZOLT::GUI
