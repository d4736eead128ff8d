// SPDX-License-Identifier: Apache-2.0
// Offers a new registration or a look at the present one.
#include "gui/RegistrationChangeScreen.h"

#include "common/Logger.h"
#include "gui/EventHandler.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

RegistrationChangeScreen::RegistrationChangeScreen(int width, int height)
    : Screen("RegistrationChangeScreen", m_layoutName, "RegChangeWindow", width, height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    // Only the direction icon follows the reading direction; the layout orders the buttons.
    fillMenu({
        {"reRegBtn", "COM_RE_REGISTRATION", "i_create_account",
         EventHandler::reRegistrationRequested},
        {"regInfoBtn", "COM_REGISTRATION_INFORMATION", getIfMirrored() ? "i_go_r" : "i_go",
         EventHandler::registrationInformationScreenRequested},
        {"cancelBtn", "SID_CANCEL", "i_close_cancel", EventHandler::quitRequested},
    });
}

RegistrationChangeScreen::~RegistrationChangeScreen() {
    ZOLT_TRACE();
}

}  // namespace ZOLT::GUI
