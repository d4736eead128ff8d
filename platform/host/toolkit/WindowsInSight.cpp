// SPDX-License-Identifier: Apache-2.0
// Derives from its windows whether the program is in the foreground.
#include "host/toolkit/WindowsInSight.h"

#include <utility>
#include <vector>

#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <Elementary.h>

#include "host/base/HostLog.h"
#include "host/toolkit/ToolkitWindows.h"

namespace host {

namespace {

constexpr const char* SEEN = "virtual-set,seen";

// Called once for each window, when it first becomes visible.
void prepare(Ecore_Evas* canvas) {
    static int here = 0;
    ecore_evas_data_set(canvas, SEEN, &here);
    // A television has no pointer.
    if (ecore_x_display_get() != nullptr) {
        ecore_x_window_cursor_show(static_cast<Ecore_X_Window>(ecore_evas_window_get(canvas)),
                                   EINA_FALSE);
    }
}

bool isInSight(const ToolkitWindow& entry) {
    // Some engines leave a canvas visible whose window the program has hidden.
    if (evas_object_visible_get(entry.window) == EINA_FALSE) {
        return false;
    }
    const bool seen = ecore_evas_data_get(entry.canvas, SEEN) != nullptr;
    if (ecore_evas_visibility_get(entry.canvas) == 0) {
        // The window was just shown and the window manager has not mapped it yet. The program must
        // not count as hidden while one screen replaces another.
        return !seen;
    }
    if (!seen) {
        prepare(entry.canvas);
    }
    return ecore_evas_iconified_get(entry.canvas) == EINA_FALSE;
}

}  // namespace

WindowsInSight::WindowsInSight(std::function<void()> changed)
    : m_changed(std::move(changed)),
      m_idle(ecore_idle_enterer_add(onIdle, this)),
      m_request(
          ECORE_X_EVENT_WINDOW_DELETE_REQUEST != 0
              ? ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DELETE_REQUEST, onDeleteRequest, this)
              : nullptr) {}

WindowsInSight::~WindowsInSight() {
    ecore_idle_enterer_del(m_idle);
    if (m_request != nullptr) {
        ecore_event_handler_del(m_request);
    }
}

Eina_Bool WindowsInSight::onIdle(void* self) {
    static_cast<WindowsInSight*>(self)->look();
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool WindowsInSight::onDeleteRequest(void* self, int, void*) {
    static_cast<WindowsInSight*>(self)->m_closedFromOutside = true;
    return ECORE_CALLBACK_PASS_ON;
}

void WindowsInSight::look() {
    const std::vector<ToolkitWindow> windows = toolkitWindows();
    bool inSight = false;
    for (const ToolkitWindow& entry : windows) {
        inSight = isInSight(entry) || inSight;
    }
    m_seen = m_seen || inSight;
    if (windows.empty() && m_closedFromOutside) {
        m_closedFromOutside = false;
        logInfo("The last window was closed");
        elm_exit();
    }
    if (m_seen && inSight != m_inSight) {
        m_inSight = inSight;
        m_changed();
    }
}

}  // namespace host
