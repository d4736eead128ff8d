// SPDX-License-Identifier: Apache-2.0
// Shows the choices that lead to a shop, and the shop's code.
#pragma once

#include <string>
#include <vector>

#include "common/ShopListParser.h"
#include "gui/Screen.h"

namespace ZOLT::GUI {

class RegistrationInfoScreen : public Screen {
  public:
    // RECORDS holds one level each, from the top down, with the chosen shop as its first; nothing
    // of it is kept. WIDTH and HEIGHT are the screen's size in pixels.
    RegistrationInfoScreen(std::vector<ShopList>& records, int width, int height);
    ~RegistrationInfoScreen() override;

    static constexpr char SHOP_CODE_ID[] = "TV_SID_SHOP_CODE";
    // What stands before the shop's code, in the language of this moment. No widget can translate
    // it, since it is composed: it is asked for again when the language changes.
    static std::string shopCodeLabel();

    // Deletes the two buttons of the lower edge; a single button stays.
    void removeButtons();
};

}  // namespace ZOLT::GUI
