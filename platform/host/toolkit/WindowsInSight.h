// SPDX-License-Identifier: Apache-2.0
// Reports whether any of the program's windows is visible.
#pragma once

#include <functional>

#include <Ecore.h>

namespace host {

// Checks the windows each time the main loop becomes idle.
class WindowsInSight {
  public:
    // CHANGED is called when the result of anyInSight has changed.
    explicit WindowsInSight(std::function<void()> changed);
    ~WindowsInSight();
    WindowsInSight(const WindowsInSight&) = delete;
    WindowsInSight& operator=(const WindowsInSight&) = delete;

    // Also true until the first window has been shown: a program that starts is not in the
    // background.
    bool anyInSight() const { return m_inSight; }

  private:
    static Eina_Bool onIdle(void* self);
    static Eina_Bool onDeleteRequest(void* self, int type, void* event);
    void look();

    std::function<void()> m_changed;
    Ecore_Idle_Enterer* m_idle;      // deleted by this class
    Ecore_Event_Handler* m_request;  // deleted by this class
    bool m_inSight = true;
    bool m_seen = false;               // a window has been in sight
    bool m_closedFromOutside = false;  // the window manager has asked a window to close
};

}  // namespace host
