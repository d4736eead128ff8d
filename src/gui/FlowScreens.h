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

// A level with the name NAME, for the rest see ShopListScreen. FIRST tells that no level leads back
// from it. The way on takes no focus before a shop has been chosen.
std::unique_ptr<ShopListScreen> makeShopListScreen(std::string& name,
                                                   std::queue<std::string>& chosenValues, int width,
                                                   int height,
                                                   const std::string& registeredShopName,
                                                   bool first);
// Makes SHOP the choice on SCREEN, which opens the way on.
void showChoice(ShopListScreen& screen, const Shop& shop, bool first);

// The present registration. Keeps nothing of LEVELS; neither does the next.
std::unique_ptr<RegistrationInfoScreen> makeInformationScreen(std::vector<ShopList>& levels,
                                                              int width, int height);
// The registration to be confirmed. FROMSHOPLIST tells that a level leads back from it.
std::unique_ptr<RegistrationInfoScreen> makeConfirmationScreen(std::vector<ShopList>& levels,
                                                               int width, int height,
                                                               bool fromShopList);
// Puts the buttons of SCREEN, which have been removed, back out of the focus's reach, while the
// request runs.
void blockConfirmation(RegistrationInfoScreen& screen, bool fromShopList);

}  // namespace ZOLT::GUI
