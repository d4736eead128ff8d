// SPDX-License-Identifier: Apache-2.0
// What a key does to each class of popup. Apart from the base class, which must not know its
// derived classes.
#define ZOLT_LOG_FILE "Popup.cpp"
#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/LoadingPopup.h"
#include "gui/Popup.h"

namespace ZOLT::GUI {

void Popup::onKeyPress(void* data, Evas* /*canvas*/, Evas_Object* object, void* eventInfo) {
    ZOLT_TRACE();
    if (eventInfo == nullptr) {
        ZOLT_WARN("Incorrect callback call - no event info");
        return;
    }
    if (dynamic_cast<LoadingPopup*>(static_cast<Popup*>(data)) != nullptr) {
        ZOLT_DEBUG("Return on Key Press for Loading Popup");
        return;
    }
    const auto* event = static_cast<Evas_Event_Key_Up*>(eventInfo);
    if (event->key != nullptr && std::string("XF86Back") == event->key) {
        EventHandler::popupHideRequested(data, object, eventInfo);
    }
}

}  // namespace ZOLT::GUI
