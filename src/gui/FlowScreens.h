// SPDX-License-Identifier: Apache-2.0
// Screens as the flow makes them: with the buttons that lead on and back.
#pragma once

#include <memory>
#include <queue>
#include <string>
#include <vector>

#include "common/ShopListParser.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"

namespace ZOLT::GUI {

// A level with the name NAME, for the rest see ShopListScreen. If FIRST, it has no previous button.
// The next button takes no focus before a shop has been chosen.
std::unique_ptr<ShopListScreen> makeShopListScreen(std::string& name,
                                                   std::queue<std::string>& chosenValues, int width,
                                                   int height,
                                                   const std::string& registeredShopName,
                                                   bool first);
// Makes SHOP the choice on SCREEN, which makes the next button reachable.
void showChoice(ShopListScreen& screen, const Shop& shop, bool first);

// The present registration. Like the next function, it keeps no pointer into LEVELS.
std::unique_ptr<RegistrationInfoScreen> makeInformationScreen(std::vector<ShopList>& levels,
                                                              int width, int height);
// The registration to be confirmed. With FROMSHOPLIST its previous button goes back to a level.
std::unique_ptr<RegistrationInfoScreen> makeConfirmationScreen(std::vector<ShopList>& levels,
                                                               int width, int height,
                                                               bool fromShopList);
// Puts the buttons of SCREEN back after they were removed, but unable to take the focus while the
// request runs.
void blockConfirmation(RegistrationInfoScreen& screen, bool fromShopList);

}  // namespace ZOLT::GUI
