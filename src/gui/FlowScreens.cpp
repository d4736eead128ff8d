// SPDX-License-Identifier: Apache-2.0
// Screens as the flow makes them: with the buttons that lead on and back.
#include "gui/FlowScreens.h"

#include "gui/EventHandler.h"

namespace ZOLT::GUI {

namespace {

// The button that goes on to the next step.
struct NextButton {
    const char* part;  // beside a previous button; a single button has its own part
    const char* text;
    Evas_Smart_Cb callback;
};

constexpr NextButton REGISTER = {"regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested};
constexpr NextButton NEXT = {"nextBtn", "SID_NEXT", EventHandler::nextSelectionScreenRequested};
constexpr NextButton CONFIRM = {"nextBtn", "SID_REGISTER",
                                EventHandler::registrationConfirmationScreenRequested};
constexpr NextButton CLOSE = {nullptr, "SID_OK", EventHandler::goBackRequested};

void addSingle(Screen& screen, const NextButton& next, bool reachable) {
    screen.addButton("singleBtn", next.text, next.callback, nullptr, reachable, reachable);
}

// A reachable next button gets the focus.
void addPair(Screen& screen, const NextButton& next, bool backReachable, bool nextReachable) {
    screen.addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested, nullptr,
                     backReachable, false);
    screen.addButton(next.part, next.text, next.callback, nullptr, nextReachable, nextReachable);
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
    const NextButton& next = shop.hasSubs ? NEXT : CONFIRM;
    if (first) {
        addSingle(screen, next, true);
    } else {
        addPair(screen, next, true, true);
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
