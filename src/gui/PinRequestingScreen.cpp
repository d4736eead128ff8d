// SPDX-License-Identifier: Apache-2.0
// Waits while the daemon obtains a PIN.
#include "gui/PinRequestingScreen.h"

#include <string>

#include "common/Logger.h"
#include "gui/Widgets.h"

namespace ZOLT::GUI {

namespace {

constexpr char TEXT_1[] = "SID_CONNECTING_TO_NETWORK_SERVER";
constexpr char TEXT_2[] = "SID_PLEASE_WAIT_DOT_KR_DIFF";

}  // namespace

PinRequestingScreen::PinRequestingScreen(int width, int height)
    : Screen("PinRequesting", m_layoutName, "WaitingWindow", width, height) {
    ZOLT_TRACE();
    setTranslatable(m_layout, "title", "COM_SID_ZOLT_CONTENT");
    m_progress = fillWaiting(TEXT_1, TEXT_2);
    const std::string spoken = std::string(translated(TEXT_1)) + translated(TEXT_2);
    elm_access_say(spoken.c_str());
}

PinRequestingScreen::~PinRequestingScreen() {
    ZOLT_TRACE();
}

void PinRequestingScreen::RemoveProgressBar() {
    ZOLT_TRACE();
    if (m_progress != nullptr) {
        elm_layout_signal_emit(m_progress, "stop_pulse", "elm");
    }
}

}  // namespace ZOLT::GUI
