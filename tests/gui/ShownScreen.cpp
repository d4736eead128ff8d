// SPDX-License-Identifier: Apache-2.0
// A flow whose only screen is the one under test, so that callbacks find it.
#include "gui/ShownScreen.h"

#include <gio/gio.h>

#include "support/PrivateBus.h"

namespace support {

namespace {

struct RunningBus {
    RunningBus() {
        // The bus ends before the connection that GLib keeps for the process. Without this GLib
        // would end the process then.
        GDBusConnection* const shared = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
        g_dbus_connection_set_exit_on_close(shared, FALSE);
        g_object_unref(shared);
    }

    PrivateBus bus;
};

}  // namespace

ShownScreen::ShownScreen(ZOLT::GUI::Screen* screen) {
    static const RunningBus bus;
    m_flow = std::make_unique<ZOLT::GUI::Controller>(nullptr);
    screen->show();
    m_flow->historyAppend(screen);
}

ShownScreen::~ShownScreen() = default;

}  // namespace support
