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

// Called for a request to the dead server. The toolkit would continue without the answer and crash,
// so the process exits without cleanup.
[[noreturn]] void endNow(Display*, void*) {
    logError("The X server of the set is gone: the process ends here");
    _exit(1);
}

// Xlib calls it before endNow. The toolkit's handler would run static destructors, and the
// destructor of the program's thread pool would wait for a thread that was never told to end.
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

// The toolkit reads from the server before each wait and would notice an end since the last wait
// itself.
Eina_Bool leaveIfGone(void* descriptor) {
    pollfd connection = {*static_cast<int*>(descriptor), 0, 0};
    if (poll(&connection, 1, 0) > 0) {
        leaveLoop();
    }
    return ECORE_CALLBACK_RENEW;
}

// The main loop's original wait, and the connection to check after it, before the toolkit reads.
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
