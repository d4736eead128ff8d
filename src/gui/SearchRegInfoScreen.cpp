// SPDX-License-Identifier: Apache-2.0
// Waits while registration information is searched for.
#include "gui/SearchRegInfoScreen.h"

#include "common/Logger.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

SearchRegInfoScreen::SearchRegInfoScreen(int width, int height)
    : Screen("SearchRegInfoRequesting", m_layoutName, "WaitingWindow", width, height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    // Nothing is spoken here, unlike on the screen that waits for a PIN.
    fillWaiting("SID_CONTENT_SEARCH_REG_INFO", "SID_PLEASE_WAIT_DOT_KR_DIFF");
}

SearchRegInfoScreen::~SearchRegInfoScreen() {
    ZOLT_TRACE();
}

}  // namespace ZOLT::GUI
