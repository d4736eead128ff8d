// SPDX-License-Identifier: Apache-2.0
// The lifecycle of the one application that runs on the virtual set.
#pragma once

#include <vector>

#include <Ecore.h>

#include "app.h"
#include "host/control/ControlledApplication.h"
#include "host/toolkit/Toolkit.h"
#include "host/toolkit/WindowsInSight.h"

namespace host {

class Application : public ControlledApplication {
  public:
    // CALLBACKS has to outlive this object.
    Application(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks,
                void* userData);
    ~Application() override;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Runs to the end of the main loop. Returns a value of app_error_e.
    int run();

    void launchAgain() override;
    void goToBackground() override;
    void comeToForeground() override;

  private:
    static void onStart(void* self);
    void start();
    int loop();
    void watchDescription();
    void updateForeground();
    void call(void (*callback)(void*));

    const ui_app_lifecycle_callback_s& m_callbacks;
    void* const m_userData;  // belongs to the program
    Toolkit m_toolkit;
    const WindowsInSight* m_windows = nullptr;  // lives as long as the main loop
    std::vector<unsigned> m_watches;
    bool m_launched = false;
    bool m_resumed = false;
    bool m_background = false;  // by request of the control program
};

// Starts the toolkit and runs the application to its end. Returns a value of app_error_e. CALLBACKS
// has to stay valid until then.
int runApplication(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks,
                   void* userData);

}  // namespace host
