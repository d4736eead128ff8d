// SPDX-License-Identifier: Apache-2.0
// Screens as the flow makes them: with the buttons that lead on and back.
#include "gui/FlowScreens.h"

#include "gui/EventHandler.h"

namespace ZOLT::GUI {

namespace {

// The button that leads on.
struct WayOn {
    const char* part;  // where it stands beside a button that leads back; alone it has its own part
    const char* text;
    Evas_Smart_Cb callback;
};

constexpr WayOn REGISTER = {"regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested};
constexpr WayOn NEXT = {"nextBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested};
constexpr WayOn CONFIRM = {"nextBtn", "SID_REGISTER",
                           EventHandler::registrationConfirmationScreenRequested};
constexpr WayOn CLOSE = {nullptr, "SID_OK", EventHandler::goBackRequested};

void addSingle(Screen& screen, const WayOn& on, bool reachable) {
    screen.addButton("singleBtn", on.text, on.callback, nullptr, reachable, reachable);
}

// ON within reach takes the focus.
void addPair(Screen& screen, const WayOn& on, bool backReachable, bool onReachable) {
    screen.addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested, nullptr,
                     backReachable, false);
    screen.addButton(on.part, on.text, on.callback, nullptr, onReachable, onReachable);
}

}  // namespace

std::unique_ptr<ShopListScreen> makeShopListScreen(std::string& name,
                                                   std::queue<std::string>& chosenValues, int width,
                                                   int height,
                                                   const std::string& registeredShopName,
                                                   bool first) {
    auto screen =
        std::make_unique<ShopListScreen>(name, chosenValues, width, height, registeredShopName);
    if (first) {
        addSingle(*screen, NEXT, false);
    } else {
        addPair(*screen, NEXT, true, false);
    }
    return screen;
}

void showChoice(ShopListScreen& screen, const Shop& shop, bool first) {
    screen.modifyButtonText("selectBtn", shop.name.c_str());
    screen.removeButtons();
    const WayOn& on = shop.hasSubs ? NEXT : CONFIRM;
    if (first) {
        addSingle(screen, on, true);
    } else {
        addPair(screen, on, true, true);
    }
}

std::unique_ptr<RegistrationInfoScreen> makeInformationScreen(std::vector<ShopList>& levels,
                                                              int width, int height) {
    auto screen = std::make_unique<RegistrationInfoScreen>(levels, width, height);
    addSingle(*screen, CLOSE, true);
    return screen;
}

std::unique_ptr<RegistrationInfoScreen> makeConfirmationScreen(std::vector<ShopList>& levels,
                                                               int width, int height,
                                                               bool fromShopList) {
    auto screen = std::make_unique<RegistrationInfoScreen>(levels, width, height);
    if (fromShopList) {
        addPair(*screen, REGISTER, true, true);
    } else {
        addSingle(*screen, REGISTER, true);
    }
    return screen;
}

void blockConfirmation(RegistrationInfoScreen& screen, bool fromShopList) {
    if (fromShopList) {
        addPair(screen, REGISTER, false, false);
    } else {
        addSingle(screen, REGISTER, false);
    }
}

}  // namespace ZOLT::GUI
