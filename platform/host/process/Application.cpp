// SPDX-License-Identifier: Apache-2.0
// Calls the program's lifecycle callbacks from the toolkit's main loop.
#include "host/process/Application.h"

#include <string>
#include <utility>

#include <unistd.h>

#include <Elementary.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"
#include "host/control/ControlServer.h"
#include "host/control/ControlVerbs.h"
#include "host/description/Description.h"
#include "host/notices/ApplicationEvents.h"
#include "host/notices/ChangeWatch.h"
#include "host/process/DisplayWatch.h"
#include "host/process/StallWatchdog.h"
#include "host/speech/ScreenReader.h"
#include "host/toolkit/MainLoopBridge.h"
#include "host/toolkit/RemoteKeys.h"
#include "host/toolkit/ToolkitLog.h"

struct app_control_s {};

namespace host {

namespace {

int stallSeconds() {
    const std::string given = SetFolder::variable("VIRTUAL_SET_STALL_SECONDS", "");
    if (!given.empty() && given.find_first_not_of("0123456789") == std::string::npos &&
        given.size() < 8) {
        return std::stoi(given);
    }
    return Description::number(Field::STALL_SECONDS);
}

void logIntroduction() {
    logInfo("This is a virtual set, process " + std::to_string(getpid()) + ", in " +
            SetFolder::path() + ": " + Description::text(Field::SCREEN_WIDTH) + "x" +
            Description::text(Field::SCREEN_HEIGHT) + ", " + Description::text(Field::LANGUAGE));
}

// Removes the bridge when the main loop ends, also by an exception.
struct BridgeHold {
    BridgeHold() { MainLoopBridge::install(); }
    ~BridgeHold() { MainLoopBridge::remove(); }
    BridgeHold(const BridgeHold&) = delete;
    BridgeHold& operator=(const BridgeHold&) = delete;
};

}  // namespace

Application::Application(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks,
                         void* userData)
    : m_callbacks(callbacks), m_userData(userData), m_toolkit(argc, argv) {}

Application::~Application() {
    for (const unsigned watch : m_watches) {
        ChangeWatch::remove(watch);
    }
}

int Application::run() {
    if (!m_toolkit.isReady()) {
        m_toolkit.close();
        return APP_ERROR_INVALID_CONTEXT;
    }
    watchDescription();
    if (!m_callbacks.create(m_userData)) {
        logError("The application has refused to be created");
        m_toolkit.close();
        return APP_ERROR_INVALID_CONTEXT;
    }
    const int result = loop();
    // Not called before the first launch: the application has created nothing yet and may not
    // expect it.
    if (m_launched) {
        call(m_callbacks.terminate);
    }
    // Shutting down on a dead X server crashes the toolkit.
    if (result == APP_ERROR_NONE) {
        m_toolkit.close();
    }
    return result;
}

// Creates what lives as long as the main loop. The watchdog ends with it, so terminate may take any
// time.
int Application::loop() {
    const BridgeHold bridge;
    const RemoteKeys keys;
    const ScreenReader reader;
    const DisplayWatch display;
    const ControlServer control(
        [this](const std::vector<std::string>& words) { return runVerb(this, words); });
    const WindowsInSight windows([this] { updateForeground(); });
    m_windows = &windows;
    Ecore_Job* first = ecore_job_add(onStart, this);
    const StallWatchdog watchdog(stallSeconds());
    try {
        elm_run();
    } catch (const DisplayLost&) {
        return APP_ERROR_INVALID_CONTEXT;
    }
    if (!m_launched) {
        ecore_job_del(first);
    }
    return APP_ERROR_NONE;
}

void Application::onStart(void* self) {
    static_cast<Application*>(self)->start();
}

void Application::start() {
    m_launched = true;
    app_control_s request;
    m_callbacks.app_control(&request, m_userData);
    m_resumed = true;
    call(m_callbacks.resume);
}

void Application::launchAgain() {
    app_control_s request;
    m_callbacks.app_control(&request, m_userData);
    comeToForeground();
}

void Application::goToBackground() {
    m_background = true;
    updateForeground();
}

void Application::comeToForeground() {
    m_background = false;
    updateForeground();
}

void Application::updateForeground() {
    const bool foreground = m_windows->anyInSight() && !m_background;
    if (!m_launched || foreground == m_resumed) {
        return;
    }
    m_resumed = foreground;
    call(foreground ? m_callbacks.resume : m_callbacks.pause);
}

void Application::call(void (*callback)(void*)) {
    if (callback != nullptr) {
        callback(m_userData);
    }
}

void Application::watchDescription() {
    const auto watch = [this](Field field, std::function<void()> notify) {
        m_watches.push_back(
            ChangeWatch::add([field] { return Description::text(field); }, std::move(notify)));
    };
    watch(Field::LANGUAGE, [] { deliverEvent(APP_EVENT_LANGUAGE_CHANGED); });
    watch(Field::COUNTRY, [] { deliverEvent(APP_EVENT_REGION_FORMAT_CHANGED); });
}

int runApplication(int argc, char** argv, const ui_app_lifecycle_callback_s& callbacks,
                   void* userData) {
    redirectToolkitLog();
    logIntroduction();
    Application application(argc, argv, callbacks, userData);
    return application.run();
}

}  // namespace host
