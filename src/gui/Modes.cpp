// SPDX-License-Identifier: Apache-2.0
// Enlarged texts, high contrast, mirrored layout and speech. The only source of screens and popups
// that includes the flow.
#include "gui/Modes.h"

#include "gui/Controller.h"
#include "gui/Screen.h"
#include "ui_orientation.h"

namespace ZOLT::GUI::modes {

bool enlarged() {
    return Controller::Enlarge != 0;
}

bool highContrast() {
    return IsHighContrastMode() != 0;
}

bool mirrored() {
    return ua_UI_orientation_get() == 1;
}

void announce(const std::string& text) {
    Controller::m_currentLabelText = text;
    Controller::m_wasLabelRead = false;
}

}  // namespace ZOLT::GUI::modes
