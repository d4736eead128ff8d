// SPDX-License-Identifier: Apache-2.0
// Watches the connection to the X server for its end.
#include "host/process/DisplayWatch.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <glib-unix.h>

#include "host/base/HostLog.h"

namespace host {

namespace {

// A request to the dead server. The toolkit would work on without the answer and crash, so nothing
// is run any more, no destructor either.
[[noreturn]] void endNow(Display*, void*) {
    logError("The X server of the set is gone: the process ends here");
    _exit(1);
}

// Called before the one above. The toolkit's own would end the process with its destructors, and
// that of the thread pool's condition waits for its master thread, which nobody has told.
int endOnError(Display* display) {
    endNow(display, nullptr);
}

[[noreturn]] void leaveLoop() {
    logError("The X server of the set is gone: the main loop ends");
    throw DisplayLost();
}

gboolean onHangUp(gint, GIOCondition, gpointer) {
    leaveLoop();
}

// Before it waits, the toolkit reads what has come from the server, and an end that came since the
// last wait would be its own to find.
Eina_Bool leaveIfGone(void* descriptor) {
    pollfd connection = {*static_cast<int*>(descriptor), 0, 0};
    if (poll(&connection, 1, 0) > 0) {
        leaveLoop();
    }
    return ECORE_CALLBACK_RENEW;
}

// What waits for the main loop, and the connection that is looked at when it has waited: the
// toolkit reads next.
Ecore_Select_Function s_waitOfLoop = nullptr;
int s_watched = -1;

int waitAndLook(int count, fd_set* readable, fd_set* writable, fd_set* others, timeval* timeout) {
    const int ready = s_waitOfLoop(count, readable, writable, others, timeout);
    leaveIfGone(&s_watched);
    return ready;
}

}  // namespace

DisplayWatch::DisplayWatch() {
    auto* display = static_cast<Display*>(ecore_x_display_get());
    if (display == nullptr) {
        return;
    }
    XSetIOErrorHandler(endOnError);
    XSetIOErrorExitHandler(display, endNow, nullptr);
    m_descriptor = fcntl(ConnectionNumber(display), F_DUPFD_CLOEXEC, 0);
    m_source = g_unix_fd_add_full(G_PRIORITY_HIGH, m_descriptor,
                                  static_cast<GIOCondition>(G_IO_HUP | G_IO_ERR), onHangUp, nullptr,
                                  nullptr);
    m_enterer = ecore_idle_enterer_before_add(leaveIfGone, &m_descriptor);
    s_watched = m_descriptor;
    s_waitOfLoop = reinterpret_cast<Ecore_Select_Function>(ecore_main_loop_select_func_get());
    ecore_main_loop_select_func_set(waitAndLook);
}

DisplayWatch::~DisplayWatch() {
    if (m_descriptor >= 0) {
        ecore_main_loop_select_func_set(s_waitOfLoop);
        ecore_idle_enterer_del(m_enterer);
        g_source_remove(m_source);
        close(m_descriptor);
    }
}

}  // namespace host
