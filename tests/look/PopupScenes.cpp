// SPDX-License-Identifier: Apache-2.0
// Scenes of messages, questions and waiting popups.
#include "gui/MainMenuRegisteredScreen.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/Popup.h"
#include "look/SceneSources.h"

namespace look {

namespace {

using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;

std::function<void(ScreenHarness&)> popup(const std::function<Popup*(Screen&)>& make,
                                          bool focusFirst) {
    return [=](ScreenHarness& harness) {
        Popup* made = make(harness.screen());
        made->show();
        if (focusFirst) {
            made->focusButton("button1");
        }
    };
}

std::function<void(ScreenHarness&)> failure(ZOLT::ZOLTEventsReasonType reason) {
    return popup(
        [=](Screen& screen) {
            return screen.addNetworkFailurePopup(ZOLT::ZOLTEventsType::EVENT_CLOSE_GUI, reason);
        },
        true);
}

std::function<void(ScreenHarness&)> loading(const char* text) {
    return popup([=](Screen& screen) { return screen.addLoadingPopup(text); }, false);
}

}  // namespace

void addPopupScenes(std::vector<Scene>& all) {
    const auto unregistered = simple<ZOLT::GUI::MainMenuUnregisteredScreen>();
    const auto registered = simple<ZOLT::GUI::MainMenuRegisteredScreen>();
    all.push_back({"popup-deregistered",
                   registered,
                   popup(
                       [](Screen& screen) {
                           return screen.addMessagePopup("COM_SID_DEREGISTERED_SUCCESSFULLY");
                       },
                       true),
                   {},
                   {}});
    // A message holds its text and not the id: it is centred by markup around it.
    all.back().keeps = {"COM_SID_DEREGISTERED_SUCCESSFULLY"};
    using ZOLT::ZOLTEventsReasonType;
    const struct {
        const char* name;
        ZOLTEventsReasonType reason;
        const char* text;
    } failures[] = {
        {"unstable", ZOLTEventsReasonType::REASON_NETWORK_UNSTABLE,
         "SID_INTERNET_CONNECTION_NOT_STABLE_MSG"},
        {"no-network", ZOLTEventsReasonType::REASON_NO_NETWORK,
         "COM_CANNOT_CONNECT_TO_THE_NETWORK"},
        {"no-server", ZOLTEventsReasonType::REASON_NO_SERVER, "COM_CANNOT_CONNECT_TO_SERVER"},
        {"pin-expired", ZOLTEventsReasonType::REASON_PIN_TIME_EXPIRED,
         "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED"},
        {"not-found", ZOLTEventsReasonType::REASON_NOT_FOUND_IN_LAN,
         "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK"}};
    for (const auto& [name, reason, text] : failures) {
        all.push_back({std::string("popup-") + name, unregistered, failure(reason), {}, {}});
        all.back().keeps = {text};
    }
    all.push_back({"popup-connecting",
                   unregistered,
                   loading("SID_CONNECTING_TO_NETWORK_SERVER"),
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"popup-searching",
                   unregistered,
                   loading("TV_SID_SEARCHING_FOR_REGISTRATION_INFORMATION_WAIT"),
                   {},
                   {},
                   /*waits*/ true});
    all.push_back({"popup-deregistration",
                   registered,
                   popup([](Screen& screen) { return screen.addDeregistrationPopup(); }, false),
                   {},
                   {}});
    all.back().keeps = {"TV_SID_ARE_YOU_SURE_YOU_WANT_TO_DEREGISTER"};
    all.push_back(
        {"popup-deletion",
         registered,
         popup([](Screen& screen) { return screen.RegistrationInfoDeletionPopup(); }, false),
         {},
         {}});
    all.back().keeps = {"TV_SID_SURE_CHANGE_REGISTRATION_INFO_DELETED"};
    all.push_back({"popup-completed",
                   confirmation(twoRows(), true),
                   popup([](Screen& screen) { return screen.addCompletionPopup(); }, true),
                   namesOf(twoRows()),
                   {SHOP_CODE}});
    all.back().keeps = {"COM_SID_REGISTRATION_COMPLETED_CHECK_STATUS"};
    // What a function holds goes with the scene that holds the function, which the checks do not
    // see.
}  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

}  // namespace look
