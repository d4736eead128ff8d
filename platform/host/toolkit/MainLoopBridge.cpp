// SPDX-License-Identifier: Apache-2.0
// One wait for the descriptors and timeouts of both main loops.
#include "host/toolkit/MainLoopBridge.h"

#include <cerrno>
#include <ctime>
#include <tuple>
#include <vector>

#include <poll.h>
#include <sys/select.h>

#include <Ecore.h>
#include <glib.h>

namespace host {

namespace {

MainLoopBridge::Notice s_before = nullptr;
MainLoopBridge::Notice s_after = nullptr;
Ecore_Select_Function s_original = nullptr;  // belongs to Ecore

void notify(MainLoopBridge::Notice notice) {
    if (notice != nullptr) {
        notice();
    }
}

// Holds the default context for one wait, whether that ends by return or by an exception.
class ContextHold {
  public:
    ContextHold() : m_context(g_main_context_default()) {
        m_held = g_main_context_acquire(m_context) != 0;
    }
    ~ContextHold() {
        if (m_held) {
            g_main_context_release(m_context);
        }
    }
    ContextHold(const ContextHold&) = delete;
    ContextHold& operator=(const ContextHold&) = delete;

    GMainContext* context() const { return m_context; }
    bool held() const { return m_held; }

  private:
    GMainContext* m_context;  // belongs to GLib
    bool m_held;
};

// The three descriptor sets of a select call.
struct Sets {
    int count;
    fd_set* read;
    fd_set* write;
    fd_set* except;
};

bool has(const fd_set* set, int descriptor) {
    return set != nullptr && FD_ISSET(descriptor, set);
}

std::vector<GPollFD> polled(const Sets& sets) {
    std::vector<GPollFD> polls;
    for (int descriptor = 0; descriptor < sets.count; ++descriptor) {
        unsigned events = 0;
        events |= has(sets.read, descriptor) ? static_cast<unsigned>(G_IO_IN) : 0U;
        events |= has(sets.write, descriptor) ? static_cast<unsigned>(G_IO_OUT) : 0U;
        events |= has(sets.except, descriptor) ? static_cast<unsigned>(G_IO_PRI) : 0U;
        if (events != 0) {
            polls.push_back({descriptor, static_cast<gushort>(events), 0});
        }
    }
    return polls;
}

void clear(const Sets& sets) {
    for (fd_set* set : {sets.read, sets.write, sets.except}) {
        if (set != nullptr) {
            FD_ZERO(set);
        }
    }
}

int mark(fd_set* set, const GPollFD& answer, GIOCondition asked, unsigned answers) {
    if (set == nullptr || (answer.events & asked) == 0 || (answer.revents & answers) == 0) {
        return 0;
    }
    FD_SET(answer.fd, set);
    return 1;
}

// Converts the result of poll into that of select.
int answered(const Sets& sets, const std::vector<GPollFD>& polls, std::size_t own) {
    clear(sets);
    int ready = 0;
    for (std::size_t index = 0; index < own; ++index) {
        const GPollFD& answer = polls[index];
        if ((answer.revents & G_IO_NVAL) != 0) {
            errno = EBADF;
            return -1;
        }
        ready += mark(sets.read, answer, G_IO_IN, G_IO_IN | G_IO_HUP | G_IO_ERR);
        ready += mark(sets.write, answer, G_IO_OUT, G_IO_OUT | G_IO_ERR);
        ready += mark(sets.except, answer, G_IO_PRI, G_IO_PRI);
    }
    return ready;
}

// The shorter of a select call's timeout and GLib's in milliseconds; null means forever.
const timespec* shorter(const timeval* timeout, int milliseconds, timespec* room) {
    if (timeout == nullptr && milliseconds < 0) {
        return nullptr;
    }
    const timespec glib{milliseconds / 1000, milliseconds % 1000 * 1000000L};
    const timespec own =
        timeout == nullptr ? glib : timespec{timeout->tv_sec, timeout->tv_usec * 1000L};
    const bool glibFirst = milliseconds >= 0 &&
                           std::tie(glib.tv_sec, glib.tv_nsec) < std::tie(own.tv_sec, own.tv_nsec);
    *room = glibFirst ? glib : own;
    return room;
}

// Appends what GLib waits for and returns its timeout.
int query(GMainContext* context, int priority, std::vector<GPollFD>* polls) {
    const std::size_t own = polls->size();
    int timeout = -1;
    int room = 16;
    int needed = 0;
    while (true) {
        polls->resize(own + static_cast<std::size_t>(room));
        needed = g_main_context_query(context, priority, &timeout, polls->data() + own, room);
        if (needed <= room) {
            break;
        }
        room = needed;
    }
    polls->resize(own + static_cast<std::size_t>(needed));
    return timeout;
}

int waitFor(std::vector<GPollFD>* polls, const timespec* timeout) {
    static_assert(sizeof(GPollFD) == sizeof(pollfd), "GLib keeps its form equal to the system's");
    notify(s_before);
    const int result =
        ppoll(reinterpret_cast<pollfd*>(polls->data()), polls->size(), timeout, nullptr);
    const int reason = errno;
    notify(s_after);
    errno = reason;
    return result;
}

int selectBoth(int count, fd_set* read, fd_set* write, fd_set* except, timeval* timeout) {
    const Sets sets{count, read, write, except};
    const ContextHold hold;
    if (!hold.held()) {
        // Another thread iterates GLib's context, so this loop does not have to.
        notify(s_before);
        const int result = s_original(count, read, write, except, timeout);
        notify(s_after);
        return result;
    }
    std::vector<GPollFD> polls = polled(sets);
    const std::size_t own = polls.size();
    int priority = 0;
    g_main_context_prepare(hold.context(), &priority);
    const int glibTimeout = query(hold.context(), priority, &polls);
    timespec room{};
    const int result = waitFor(&polls, shorter(timeout, glibTimeout, &room));
    const int reason = errno;
    if (result < 0) {
        for (GPollFD& poll : polls) {
            poll.revents = 0;
        }
    }
    const bool glibReady = g_main_context_check(hold.context(), priority, polls.data() + own,
                                                static_cast<gint>(polls.size() - own)) != 0;
    const int ready = answered(sets, polls, own);
    const int outcome = errno;
    if (glibReady) {
        g_main_context_dispatch(hold.context());
    }
    errno = result < 0 ? reason : outcome;
    return result < 0 ? -1 : ready;
}

}  // namespace

void MainLoopBridge::install() {
    if (ecore_main_loop_select_func_get() != selectBoth) {
        s_original = ecore_main_loop_select_func_get();
        ecore_main_loop_select_func_set(selectBoth);
    }
}

void MainLoopBridge::remove() {
    if (ecore_main_loop_select_func_get() == selectBoth) {
        ecore_main_loop_select_func_set(s_original);
    }
}

void MainLoopBridge::setNotices(Notice before, Notice after) {
    s_before = before;
    s_after = after;
}

}  // namespace host
