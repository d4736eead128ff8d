// SPDX-License-Identifier: Apache-2.0
// The toolkit without a display, for the tests of one process.
#include "support/BufferToolkit.h"

#include <cstdlib>

#include <Efreet.h>

#include <Elementary.h>

namespace support {

void BufferToolkit::SetUp() {
    for (const char* folder : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME",
                               "XDG_RUNTIME_DIR", "ELM_HOME_DIR"}) {
        setenv(folder, m_home.path().c_str(), 1);
    }
    for (const char* stray : {"DISPLAY", "WAYLAND_DISPLAY", "LANGUAGE", "LANG", "LC_ALL"}) {
        unsetenv(stray);
    }
    setenv("ELM_ENGINE", "buffer", 1);
    // Otherwise a thread may still draw into the buffer of a window that a test has destroyed.
    setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1);
    // Only the fonts of the virtual set.
    setenv("FONTCONFIG_FILE", ZOLT_TEST_FONTS, 1);
    setenv("EINA_LOG_BACKTRACE", "-1", 1);
    setenv("EINA_LOG_LEVEL", "0", 0);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    // A helper process that outlives the test would build the index of installed applications.
    efreet_cache_disable();
    elm_init(0, nullptr);
    // As on a television: a list with the focus shows it on a row, and only OK selects.
    elm_config_focus_move_policy_set(ELM_FOCUS_MOVE_POLICY_KEY_ONLY);
    elm_config_first_item_focus_on_first_focusin_set(EINA_TRUE);
    elm_config_item_select_on_focus_disabled_set(EINA_TRUE);
    // Icons come from the theme only: searching the desktop's would start helper processes.
    elm_config_icon_theme_set("_Elementary_Icon_Theme");
    elm_theme_overlay_add(nullptr, m_theme.c_str());
}

void BufferToolkit::TearDown() {
    elm_shutdown();
}

}  // namespace support
