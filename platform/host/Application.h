// SPDX-License-Identifier: Apache-2.0
// The life of the one application that runs on the virtual set.
#pragma once

#include <vector>

#include <Ecore.h>

#include "app.h"
#include "host/Toolkit.h"
#include "host/WindowsInSight.h"

namespace Host {

class Application {
  public:
    // CALLBACKS has to outlive this object.
    Application(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks,
                void* userData);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Runs to the end of the main loop. Returns a value of app_error_e.
    int run();

    // What the control program may ask for: all is done when they return.
    void launchAgain();
    void goToBackground();
    void comeToForeground();

  private:
    static void onStart(void* self);
    void start();
    int loop();
    void watchDescription();
    void followSight();
    void call(void (*callback)(void*));

    const ui_app_lifecycle_callback_s& m_callbacks;
    void* const m_userData;  // belongs to the program
    Toolkit m_toolkit;
    const WindowsInSight* m_windows = nullptr;  // lives as long as the main loop
    std::vector<unsigned> m_watches;
    bool m_launched = false;
    bool m_resumed = false;
    bool m_background = false;  // by wish of the control program
};

}  // namespace Host
