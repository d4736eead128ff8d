// SPDX-License-Identifier: Apache-2.0
// The toolkit's settings on a set that is driven by a remote control.
#include "host/toolkit/Toolkit.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include <Efreet.h>

#include <Ecore_X.h>
#include <Elementary.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"
#include "host/description/Description.h"

namespace host {

namespace {

// Selects the icons of the toolkit's own theme; no public header declares the name. Otherwise the
// toolkit searches the desktop's icon themes, with helper processes.
constexpr const char* OWN_ICONS = "_Elementary_Icon_Theme";

// The screen for which themes are designed.
constexpr double DESIGN_WIDTH = 1920.0;
constexpr double DESIGN_HEIGHT = 1080.0;

// What is as wide as the screen fits on an upright one, too.
double scaleOfScreen() {
    return std::min(Description::number(Field::SCREEN_WIDTH) / DESIGN_WIDTH,
                    Description::number(Field::SCREEN_HEIGHT) / DESIGN_HEIGHT);
}

bool needsDisplay() {
    const std::string engine = SetFolder::variable("ELM_ENGINE", "");
    const std::string kind = SetFolder::variable("ELM_DISPLAY", "x11");
    return kind == "x11" && engine.find("buffer") == std::string::npos;
}

// None of these settings is saved: the user's own settings of the toolkit stay as they are.
void applySettings() {
    elm_config_scale_set(scaleOfScreen());
    elm_config_icon_theme_set(OWN_ICONS);
    elm_config_finger_size_set(1);
    elm_config_focus_highlight_enabled_set(EINA_TRUE);
    elm_config_focus_highlight_animate_set(EINA_FALSE);
    elm_config_focus_move_policy_set(ELM_FOCUS_MOVE_POLICY_KEY_ONLY);
    // A focused list shows its focused row, and only OK selects.
    elm_config_first_item_focus_on_first_focusin_set(EINA_TRUE);
    elm_config_item_select_on_focus_disabled_set(EINA_TRUE);
    elm_config_softcursor_mode_set(ELM_SOFTCURSOR_MODE_OFF);
    elm_config_cursor_engine_only_set(EINA_TRUE);
    elm_config_scroll_bounce_enabled_set(EINA_FALSE);
    elm_config_scroll_thumbscroll_enabled_set(EINA_FALSE);
    elm_config_context_menu_disabled_set(EINA_TRUE);
    elm_config_magnifier_enable_set(EINA_FALSE);
    elm_config_atspi_mode_set(EINA_FALSE);
    elm_config_access_set(EINA_FALSE);
}

}  // namespace

Toolkit::Toolkit(int argc, char** argv) {
    // Without this X server, which the environment names, the toolkit would try other engines.
    if (needsDisplay()) {
        m_display = ecore_x_init(nullptr) > 0;
        if (!m_display) {
            logError("The X server of the set cannot be reached: DISPLAY=" +
                     SetFolder::variable("DISPLAY", ""));
            return;
        }
    }
    // The toolkit's index of installed applications would be made by a helper process that outlives
    // this one.
    efreet_cache_disable();
    m_ready = elm_init(argc, argv) > 0;
    if (!m_ready) {
        logError("The toolkit does not start");
        return;
    }
    applySettings();
}

void Toolkit::close() {
    if (m_ready) {
        elm_shutdown();
        m_ready = false;
    }
    if (m_display) {
        ecore_x_shutdown();
        m_display = false;
    }
}

}  // namespace host
