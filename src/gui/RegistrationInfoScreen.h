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
    // Each of RECORDS is one level, from the top down, with the chosen shop first. No pointer into
    // RECORDS is kept. WIDTH and HEIGHT are the screen's size in pixels.
    RegistrationInfoScreen(std::vector<ShopList>& records, int width, int height);
    ~RegistrationInfoScreen() override;

    static constexpr char SHOP_CODE_ID[] = "TV_SID_SHOP_CODE";
    // The text before the shop's code, in the current language. No widget can translate it, because
    // it is composed: call this again when the language changes.
    static std::string shopCodeLabel();

    // Deletes the previous and next buttons; a single button stays.
    void removeButtons();
};

}  // namespace ZOLT::GUI
