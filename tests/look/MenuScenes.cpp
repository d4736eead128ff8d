// SPDX-License-Identifier: Apache-2.0
// Scenes of the menus, the waiting screens and the screen of the PIN.
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/RegistrationChangeScreen.h"
#include "gui/SearchRegInfoScreen.h"
#include "look/SceneSources.h"

namespace look {

namespace {

using ZOLT::GUI::Screen;

MakeScreen pin(const std::string& code, const std::string& registration) {
    return [=](ScreenHarness& harness) -> Screen* {
        return new ZOLT::GUI::PinDisplayingScreen(code, registration, harness.mode().width,
                                                  harness.mode().height);
    };
}

}  // namespace

void addMenuScenes(std::vector<Scene>& all) {
    const auto unregistered = simple<ZOLT::GUI::MainMenuUnregisteredScreen>();
    const auto registered = simple<ZOLT::GUI::MainMenuRegisteredScreen>();
    all.push_back({"unregistered", unregistered, nullptr, {}, {}});
    all.push_back({"registered", registered, nullptr, {}, {}});
    all.push_back({"change", simple<ZOLT::GUI::RegistrationChangeScreen>(), nullptr, {}, {}});
    all.push_back({"pin-waiting",
                   simple<ZOLT::GUI::PinRequestingScreen>(),
                   nullptr,
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"search-waiting",
                   simple<ZOLT::GUI::SearchRegInfoScreen>(),
                   nullptr,
                   {},
                   {},
                   /*waits*/ true});
    const std::size_t pins = all.size();
    const std::string present = "Seoul Gangnam Flagship : KR-SEL-0417";
    all.push_back({"pin", pin("12345678", ""), nullptr, {}, {"12345678"}});
    all.push_back({"pin-registered",
                   pin("12345678", present),
                   nullptr,
                   {present},
                   {"12345678"},
                   false,
                   false});
    all.push_back({"pin-nine", pin("123456789", ""), nullptr, {}, {"123456789"}, false, false});
    all.push_back({"pin-markup", pin("12<b>&4;8", ""), nullptr, {}, {"12<b>&4;8"}, false, false});
    for (std::size_t place = 0; place < oddNames().size(); ++place) {
        const std::string odd = oddNames()[place] + " : " + SHOP_CODE;
        // The screen takes what others have named as it is, and the toolkit reads it as markup.
        all.push_back({"pin-odd-" + std::to_string(place + 1),
                       pin("12345678", odd),
                       nullptr,
                       {odd},
                       {"12345678"},
                       false,
                       false});
    }
    for (std::size_t place = pins; place < all.size(); ++place) {
        // Right to left, the label has a mark before its text, and the two are no id.
        all[place].keepsMirrored = {"TV_SID_PIN_CODE"};
    }
}

}  // namespace look
