// SPDX-License-Identifier: Apache-2.0
// Actions that run later, after a delay or when they are released.
#include "daemon/Timers.h"

#include <utility>

#include <glib.h>

namespace standin {

// Belongs to its source, which deletes it.
struct Timers::Timer {
    Timers& owner;
    std::function<void()> action;
    unsigned source = 0;
};

Timers::~Timers() {
    cancel();
}

void Timers::hold(std::function<void()> action) {
    m_held.push_back(std::move(action));
}

bool Timers::releaseNext() {
    if (m_held.empty()) {
        return false;
    }
    const std::function<void()> action = std::move(m_held.front());
    m_held.pop_front();
    action();
    return true;
}

void Timers::after(int delayMs, std::function<void()> action) {
    auto* timer = new Timer{*this, std::move(action)};
    timer->source =
        g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(delayMs), fire, timer, release);
    m_sources.insert(timer->source);
}

size_t Timers::cancel() {
    const std::set<unsigned> due = std::exchange(m_sources, {});
    for (const unsigned source : due) {
        g_source_remove(source);
    }
    return due.size() + std::exchange(m_held, {}).size();
}

int Timers::fire(void* data) {
    auto* timer = static_cast<Timer*>(data);
    timer->owner.m_sources.erase(timer->source);
    timer->action();
    return G_SOURCE_REMOVE;
}

void Timers::release(void* data) {
    delete static_cast<Timer*>(data);
}

}  // namespace standin
