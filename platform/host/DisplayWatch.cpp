// SPDX-License-Identifier: Apache-2.0
// Watches the connection to the X server for its end.
#include "host/DisplayWatch.h"

#include <unistd.h>

#include <fcntl.h>

#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <glib-unix.h>

#include "host/HostLog.h"

namespace Host {

namespace {

gboolean hangUp(gint, GIOCondition, gpointer) {
    logError("The X server of the set is gone");
    return G_SOURCE_REMOVE;
}

}  // namespace

DisplayWatch::DisplayWatch() {
    auto* display = static_cast<Display*>(ecore_x_display_get());
    if (display == nullptr) {
        return;
    }
    m_descriptor = fcntl(ConnectionNumber(display), F_DUPFD_CLOEXEC, 0);
    m_source = g_unix_fd_add(m_descriptor, static_cast<GIOCondition>(G_IO_HUP | G_IO_ERR), hangUp,
                             nullptr);
}

DisplayWatch::~DisplayWatch() {
    if (m_descriptor >= 0) {
        g_source_remove(m_source);
        close(m_descriptor);
    }
}

}  // namespace Host
