// SPDX-License-Identifier: Apache-2.0
// Entry of the process, and the life cycle callbacks of the application framework.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>

#include <Elementary.h>

#include "app.h"
#include "common/ConditionFileForDaemonActivation.h"
#include "common/DeviceInfo.h"
#include "common/Exception.h"
#include "common/Logger.h"
#include "common/ThreadPool.h"
#include "common/Translator.h"
#include "common/Version.h"
#include "common/ZoltConfig.h"
#include "common/systemcalls/ISystemCalls.h"
#include "common/systemcalls/SystemCallsFactory.h"
#include "gui/Controller.h"
#include "gui/Handle.h"
#include "vconf.h"

static const std::string configFilePath = ZOLT_CONFIG_FILE;
static const std::string daemonActivationFlagPath = ZOLT_FLAG_FILE;

// The application's context, of which there is one. Members are destroyed from last to first, so
// the screens of the controller are deleted before the objects that they use.
struct _appdata {
    const char* name = "ZOLT_GUI";
    std::unique_ptr<ZOLT::DeviceInfo> deviceInfo;       // made in _create
    std::unique_ptr<ZOLT::ISystemCalls> systemCalls;    // made in _create
    std::unique_ptr<ZOLT::GUI::Controller> controller;  // made in _app_control
};

// Calls setToolkitLost when an exception leaves the main loop, before stack unwinding deletes
// the screens.
struct LoopGuard {
    LoopGuard() = default;
    LoopGuard(const LoopGuard&) = delete;
    LoopGuard& operator=(const LoopGuard&) = delete;
    ~LoopGuard() { ZOLT::GUI::setToolkitLost(std::uncaught_exceptions() > 0); }
};

// Whether this process has added 1 to the counter that keeps the screensaver off.
static bool s_vconfRaised = false;

// Adds 1 to the counter or subtracts it. Other processes change the counter too, so no absolute
// value is written. A change by another process between our read and our write is lost, which is
// accepted.
static void zolt_set_vconf(bool raise) {
    ZOLT_TRACE();
    static constexpr const char* KEY = "memory/zolt/zolt_screensaver_blocking";
    int value = -1;
    if (raise == s_vconfRaised) {
        vconf_get_int(KEY, &value);
        ZOLT_DEBUG("Vconf is already changed-------------------Current vconf is: %d", value);
        return;
    }
    ZOLT_DEBUG("%s", raise ? "increasing Vconf" : "Decreasing Vconf");
    vconf_get_int(KEY, &value);
    ZOLT_DEBUG("current vconf is: %d", value);
    // Wraps around at the integer limits, so that adding and subtracting restores any value.
    const unsigned unit = raise ? 1U : ~0U;
    vconf_set_int(KEY, static_cast<int>(static_cast<unsigned>(value) + unit));
    s_vconfRaised = raise;
}

static void setUILocales(ZOLT::DeviceInfo* deviceInfo) {
    ZOLT_TRACE();
    char* language = nullptr;
    deviceInfo->getLanguageStringValue(&language);
    if (language == nullptr) {
        ZOLT_WARN("Unable to set the language");
        return;
    }
    elm_language_set(language);
    free(language);
}

static void enableLocales(ZOLT::DeviceInfo* deviceInfo) {
    ZOLT_TRACE();
    ZOLT::Translator translator(ZoltConfig::get("DefaultLang"), deviceInfo);
    translator.enableLocales("ZOLT", ZoltConfig::get("LocalesPath"));
    translator.setLocale(nullptr);
}

// The context that a callback's argument points at. Throws for null, which ends the program with
// status 1.
static _appdata& contextOf(void* data) {
    if (data == nullptr) {
        throw ZOLT::Exception("No application data", ZOLT::GENERIC_ERROR);
    }
    return *static_cast<_appdata*>(data);
}

static bool _create(void* data) {
    ZOLT_TRACE();
    ZoltConfig::initialize(configFilePath);
    ZoltConfig::load();
    Version::printVersion("ZOLT GUI");
    _appdata& context = contextOf(data);
    context.systemCalls.reset(ZOLT::SystemCallsFactory::getSystemCalls());
    context.deviceInfo = std::make_unique<ZOLT::DeviceInfo>(context.systemCalls.get());
    ZOLT::DeviceInfo::m_imageType = ZOLT::DeviceInfo::setImageType();
    enableLocales(context.deviceInfo.get());
    setUILocales(context.deviceInfo.get());
    return true;
}

// Each launch request builds a new flow. The new one is created before the old one is destroyed,
// and the old destructor then clears Controller::m_self. Deliberate: the callbacks handle this
// state.
static void _app_control(app_control_h /*appControl*/, void* data) {
    ZOLT_TRACE();
    if (data == nullptr) {
        ZOLT_WARN("Bad app function call");
        return;
    }
    _appdata& context = contextOf(data);
    context.controller = std::make_unique<ZOLT::GUI::Controller>(context.deviceInfo.get());
    context.controller->initialize();
}

static void _pause(void* /*data*/) {
    ZOLT_TRACE();
    ZOLT_DEBUG("calling Pause");
    zolt_set_vconf(false);
}

static void _resume(void* /*data*/) {
    ZOLT_TRACE();
    ZOLT_DEBUG("calling Resume");
    zolt_set_vconf(true);
}

static void _terminate(void* data) {
    ZOLT_TRACE();
    ZOLT_DEBUG("calling Terminate");
    if (data == nullptr) {
        ZOLT_WARN("Bad app function call");
        return;
    }
    zolt_set_vconf(false);
    _appdata& context = contextOf(data);
    if (!context.controller) {
        return;  // terminated before the first launch request: there is no flow to destroy
    }
    context.controller->cancel();
    context.controller->terminate();
    context.controller.reset();
}

// Deliberately reads its first argument as the context, which is right only on a platform that
// passes the registered data there for this event, as the virtual set does. According to the
// callback's type the first argument is the event's information and the second is the data: on a
// platform that follows the type, languageChangedHandler must pass on its second argument instead.
static void _lang_changed(void* data) {
    ZOLT_TRACE();
    setUILocales(contextOf(data).deviceInfo.get());
}

// _lang_changed has one parameter, so calling it through the platform's two-parameter type would be
// undefined.
static void languageChangedHandler(app_event_info_h information, void* /*data*/) {
    _lang_changed(information);
}

// Closes a standard stream as fclose does, but leaves its FILE and its descriptor in use, on
// /dev/null. Libraries print to both, among them GLib, Eina and the C library itself, and would
// otherwise write to a closed FILE, or into the next file or socket that gets the free descriptor.
static void closeStream(FILE* stream) {
    if (freopen("/dev/null", "w", stream) == nullptr) {
        ZOLT_WARN("A standard stream could not be put on /dev/null");
    }
}

// Handlers without a callback are registered on purpose and do nothing. Results are ignored.
static void addEventHandlers(app_event_handler_h (&handlers)[5], _appdata& context) {
    const struct {
        app_event_type_e type;
        app_event_cb callback;
        void* data;
    } events[] = {
        {APP_EVENT_LOW_BATTERY, nullptr, nullptr},
        {APP_EVENT_LOW_MEMORY, nullptr, nullptr},
        {APP_EVENT_DEVICE_ORIENTATION_CHANGED, nullptr, nullptr},
        {APP_EVENT_LANGUAGE_CHANGED, languageChangedHandler, &context},
        {APP_EVENT_REGION_FORMAT_CHANGED, nullptr, nullptr},
    };
    for (const auto& event : events) {
        ui_app_add_event_handler(&handlers[event.type], event.type, event.callback, event.data);
    }
}

int main(int argc, char** argv) {
    try {
        ZOLT_TRACE();
        // All output goes to the log from here on.
        closeStream(stdout);
        closeStream(stderr);
        ZOLT_LOG(LOG_ID_SYSTEM, DLOG_INFO, "ZOLT GUI application: Initializing");
        ZOLT::ConditionFileForDaemonActivation flagFile(daemonActivationFlagPath);
        flagFile.create();
        ui_app_lifecycle_callback_s lifecycle = {_create, _terminate, _pause, _resume,
                                                 _app_control};
        _appdata appdata;
        app_event_handler_h handlers[5] = {};
        addEventHandlers(handlers, appdata);
        const ZOLT::ThreadPool threadPool;  // lives as long as the main loop; gets no work here
        ZOLT_LOG(LOG_ID_SYSTEM, DLOG_INFO, "ZOLT GUI application: Starting");
        zolt_set_vconf(true);
        const LoopGuard loopGuard;
        const int result = ui_app_main(argc, argv, &lifecycle, &appdata);
        if (result != 0) {
            ZOLT_WARN("ui_app_main() is failed, error code = %d", result);
        }
        ZOLT_LOG(LOG_ID_SYSTEM, DLOG_INFO, "ZOLT GUI application: Closing");
        zolt_set_vconf(false);
    } catch (const std::exception& exception) {
        ZOLT_WARN("Exception caught: %s", exception.what());
        zolt_set_vconf(false);
        return EXIT_FAILURE;
    } catch (...) {
        ZOLT_WARN("Unknow exception caught");
        zolt_set_vconf(false);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
