// SPDX-License-Identifier: Apache-2.0
// The first screen of a TV that is not registered.
#include "gui/MainMenuUnregisteredScreen.h"

#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

MainMenuUnregisteredScreen::MainMenuUnregisteredScreen(int width, int height)
    : Screen("MainMenuUnregisteredScreen", m_layoutName, "MainMenuUnregisteredWindow", width,
             height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    // Only the direction icon follows the reading direction; the layout orders the buttons.
    fillMenu({
        {"newRegBtn", "TV_SID_NEW_REGISTRATION", "i_create_account",
         EventHandler::pinRequestingScreenRequested},
        {"existRegBtn", "TV_SID_EXISTING_REGISTRATION", getIfMirrored() ? "i_go_r" : "i_go",
         EventHandler::displayShopsFromLANRequested},
        {"cancelBtn", "SID_CANCEL", "i_close_cancel", EventHandler::quitRequested},
    });
}

MainMenuUnregisteredScreen::~MainMenuUnregisteredScreen() {
    ZOLT_TRACE();
}

}  // namespace ZOLT::GUI
