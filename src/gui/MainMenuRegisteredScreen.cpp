// SPDX-License-Identifier: Apache-2.0
// The first screen of a TV that is registered to a shop.
#include "gui/MainMenuRegisteredScreen.h"

#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

MainMenuRegisteredScreen::MainMenuRegisteredScreen(int width, int height)
    : Screen("MainMenuRegisteredWindow", m_layoutName, "MainMenuRegisteredWindow", width, height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    fillMenu({
        {"regChangeBtn", "TV_SID_REGISTRATION_CHANGE", "i_change",
         EventHandler::reRegistrationScreenRequested},
        {"deregBtn", "TV_SID_DEREGISTRATION", "i_remove_account",
         EventHandler::deregistrationPopupRequested},
        {"regInfoBtn", "COM_REGISTRATION_INFORMATION", "i_more_info",
         EventHandler::registrationInformationScreenRequested},
        {"cancelBtn", "SID_CANCEL", "i_close_cancel", EventHandler::quitRequested},
    });
}

MainMenuRegisteredScreen::~MainMenuRegisteredScreen() {
    ZOLT_TRACE();
}

}  // namespace ZOLT::GUI
