// SPDX-License-Identifier: Apache-2.0
// The television's C interfaces for tests: records every call, and answers as the test has set.
#include "support/ScriptedPlatform.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <utility>

#include "factory_data.h"
#include "time_util.h"
#include "ui_orientation.h"
#include "utilx.h"

namespace support {

namespace {

constexpr int ERROR_NO_VALUE = -1;
constexpr int ERROR_BAD_HANDLE = -22;
constexpr int ERROR_BAD_PARAMETER = -22;

struct Connection : ScriptedPlatform::Object {};

struct ProfileIterator : ScriptedPlatform::Object {
    size_t next = 0;
};

}  // namespace

}  // namespace support

// Handles of the USB interface are these objects themselves.
struct usb_device {
    std::optional<std::string> path;
};

struct usb_device_list : support::ScriptedPlatform::Object {
    std::deque<usb_device> devices;
    size_t position = 0;  // of the device that was returned last
};

namespace support {

template <typename Callback>
struct Subscription {
    Callback callback = nullptr;
    void* data = nullptr;
};

struct ScriptedPlatform::State {
    using Texts = std::map<int, std::optional<std::string>>;

    std::vector<LogLine> log;
    std::function<void(const LogLine& line)> logAction;
    std::vector<std::string> calls;
    std::map<std::string, int> fixedAnswers;
    std::map<std::string, std::deque<int>> queuedAnswers;
    std::map<std::string, std::function<void()>> actions;
    std::map<std::string, std::function<void()>> actionsAfter;

    std::map<std::string, int> vconfInts = {
        {"memory/zolt/zolt_screensaver_blocking", 0},
        {"db/menu/system/accessibility/focuszoom", 0},
        {"db/menu/system/accessibility/highcontrast", 0},
    };
    std::map<std::string, std::optional<std::string>> vconfTexts = {
        {"db/comss/duid", "DUID0123456789"}};
    std::map<int, int> runtimeInts = {{RUNTIME_INFO_KEY_SYSTEM_USE_MODE, 0}};
    Texts runtimeTexts = {
        {RUNTIME_INFO_KEY_LANGUAGE, "en_US.utf8"},
        {RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE, "en_US.utf8"},
        {RUNTIME_INFO_KEY_WIRELESS_IP, "192.168.0.11"},
        {RUNTIME_INFO_KEY_WIRED_IP, "192.168.0.10"},
        {RUNTIME_INFO_KEY_NETWORK_TYPE, "wired"},
    };
    std::map<int, int> systemInts = {
        {SYSTEM_INFO_KEY_SCREEN_HEIGHT, 1080},
        {SYSTEM_INFO_KEY_SCREEN_WIDTH, 1920},
        {SYSTEM_INFO_KEY_PANEL_WIDTH, 1920},
        {SYSTEM_INFO_KEY_PANEL_HEIGHT, 1080},
    };
    Texts systemTexts = {{SYSTEM_INFO_KEY_MODEL, "TV-55"}};
    Texts settingTexts = {{SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, "US"}};
    std::map<int, int> settingInts;
    int orientation = 0;
    int factoryType = FACTORY_DATA_TYPE_SERVER_RECORD;
    int factoryInteger = 0;
    std::vector<unsigned char> factoryBuffer;
    bool acceptsNullPlaces = false;
    time_t clock = 1463128402;  // 2016-05-13 08:33:22
    long secondsAheadOfUtc = 0;
    std::optional<tm> brokenDownTime;
    std::vector<std::optional<std::string>> usbMountPaths;
    Network network;

    std::map<int, Subscription<runtime_info_changed_cb>> runtimeCallbacks;
    std::map<std::string, Subscription<vconf_callback_fn>> vconfCallbacks;
    Subscription<device_power_poweroff_cb> poweroff;
    Subscription<device_power_wakeup_cb> wakeup;
    std::vector<EventHandlerEntry> eventHandlers;
    AppMain appMain;
    std::vector<KeyGrab> grabs;
    std::map<std::string, int> grabResults;
    std::vector<int> patterns;

    std::map<void*, std::unique_ptr<Object>> objects;
    std::map<Handout, int> handedOut;

    // Records a call and returns its result code, by default OTHERWISE.
    int call(const std::string& function, const std::string& arguments = "", int otherwise = 0) {
        calls.push_back(function + "(" + arguments + ")");
        auto& queue = queuedAnswers[function];
        if (!queue.empty()) {
            const int code = queue.front();
            queue.pop_front();
            return code;
        }
        const auto fixed = fixedAnswers.find(function);
        return fixed == fixedAnswers.end() ? otherwise : fixed->second;
    }

    // The result code for a null output argument.
    int nullPlace() const { return acceptsNullPlaces ? 0 : ERROR_BAD_PARAMETER; }

    template <typename T>
    T* handOut(Handout kind) {
        auto object = std::make_unique<T>();
        object->kind = kind;
        ++handedOut[kind];
        T* raw = object.get();
        objects[raw] = std::move(object);
        return raw;
    }

    // The object of HANDLE, or null if it was never handed out or is released.
    template <typename T>
    T* find(void* handle) {
        const auto found = objects.find(handle);
        return found == objects.end() ? nullptr : dynamic_cast<T*>(found->second.get());
    }

    template <typename T>
    int takeBack(void* handle) {
        if (find<T>(handle) == nullptr) {
            return ERROR_BAD_HANDLE;
        }
        objects.erase(handle);
        return 0;
    }

    NetworkProfile* profile(void* handle) {
        for (auto& entry : network.profiles) {
            if (&entry == handle) {
                return &entry;
            }
        }
        return nullptr;
    }
};

namespace {

using State = ScriptedPlatform::State;

// The state with its lock held for as long as this object lives.
class Locked {
  public:
    Locked() : m_state(ScriptedPlatform::get().lockedState(m_lock)) {}
    ~Locked() {
        if (m_lock.owns_lock()) {
            m_lock.unlock();
        }
        if (m_after) {
            m_after();
        }
    }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    State* operator->() { return &m_state; }
    State& operator*() { return m_state; }
    void unlock() { m_lock.unlock(); }

    int call(const std::string& function, const std::string& arguments = "", int otherwise = 0) {
        const auto found = m_state.actions.find(function);
        if (found != m_state.actions.end()) {
            const auto action = found->second;
            m_lock.unlock();
            action();
            m_lock.lock();
        }
        const auto after = m_state.actionsAfter.find(function);
        if (after != m_state.actionsAfter.end()) {
            m_after = after->second;
        }
        return m_state.call(function, arguments, otherwise);
    }

  private:
    std::unique_lock<std::mutex> m_lock;
    State& m_state;
    std::function<void()> m_after;
};

int giveText(const std::optional<std::string>& text, char** value) {
    *value = text ? strdup(text->c_str()) : nullptr;
    return 0;
}

template <typename Map, typename Key, typename Value>
int giveInt(const State& state, const Map& values, const Key& key, Value* value) {
    if (value == nullptr) {
        return state.nullPlace();
    }
    const auto found = values.find(key);
    if (found == values.end()) {
        return ERROR_NO_VALUE;
    }
    *value = found->second;
    return 0;
}

template <typename Map, typename Key>
int giveTextOf(const State& state, const Map& values, const Key& key, char** value) {
    if (value == nullptr) {
        return state.nullPlace();
    }
    const auto found = values.find(key);
    return found == values.end() ? ERROR_NO_VALUE : giveText(found->second, value);
}

LogLine parsed(int buffer, int priority, const char* tag, const std::string& text) {
    LogLine line{buffer, priority, tag == nullptr ? "" : tag, "", "", 0, text, text};
    const auto colon = text.find(": ");
    const auto end = text.find(") > ");
    if (colon == std::string::npos || end == std::string::npos || end < colon) {
        return line;
    }
    const auto bracket = text.rfind('(', end);
    if (bracket == std::string::npos || bracket < colon) {
        return line;
    }
    const std::string digits = text.substr(bracket + 1, end - bracket - 1);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
        return line;
    }
    line.file = text.substr(0, colon);
    line.function = text.substr(colon + 2, bracket - colon - 2);
    line.line = static_cast<int>(std::strtol(digits.c_str(), nullptr, 10));
    line.message = text.substr(end + 4);
    return line;
}

}  // namespace

ScriptedPlatform::ScriptedPlatform() : m_state(std::make_unique<State>()) {}

ScriptedPlatform& ScriptedPlatform::get() {
    // Never destroyed: objects of a test program may log before and after main.
    static auto* platform = new ScriptedPlatform();
    return *platform;
}

ScriptedPlatform::State& ScriptedPlatform::lockedState(std::unique_lock<std::mutex>& lock) {
    lock = std::unique_lock<std::mutex>(m_mutex);
    return *m_state;
}

void ScriptedPlatform::reset() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    *m_state = State();
}

std::vector<LogLine> ScriptedPlatform::log() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->log;
}

std::vector<std::string> ScriptedPlatform::messages(log_id_t buffer, int priority) const {
    std::vector<std::string> found;
    for (const auto& line : log()) {
        if (line.buffer == buffer && line.priority == priority) {
            found.push_back(line.message);
        }
    }
    return found;
}

std::vector<std::string> ScriptedPlatform::messages() const {
    std::vector<std::string> found;
    for (const auto& line : log()) {
        found.push_back(line.message);
    }
    return found;
}

bool ScriptedPlatform::hasLine(log_id_t buffer, int priority, const std::string& message) const {
    const auto found = messages(buffer, priority);
    return std::find(found.begin(), found.end(), message) != found.end();
}

int ScriptedPlatform::countLines(const std::string& message) const {
    const auto all = messages();
    return static_cast<int>(std::count(all.begin(), all.end(), message));
}

std::optional<LogLine> ScriptedPlatform::findLine(const std::string& message) const {
    for (const auto& line : log()) {
        if (line.message == message) {
            return line;
        }
    }
    return std::nullopt;
}

void ScriptedPlatform::clearLog() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->log.clear();
}

void ScriptedPlatform::whenLogged(std::function<void(const LogLine& line)> action) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->logAction = std::move(action);
}

std::vector<std::string> ScriptedPlatform::calls() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->calls;
}

std::vector<std::string> ScriptedPlatform::calls(const std::string& function) const {
    std::vector<std::string> found;
    for (const auto& call : calls()) {
        if (call.rfind(function + "(", 0) == 0) {
            found.push_back(call);
        }
    }
    return found;
}

int ScriptedPlatform::countCalls(const std::string& function) const {
    return static_cast<int>(calls(function).size());
}

void ScriptedPlatform::clearCalls() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->calls.clear();
}

void ScriptedPlatform::answer(const std::string& function, int code) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->fixedAnswers[function] = code;
}

void ScriptedPlatform::answers(const std::string& function, const std::vector<int>& codes) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->queuedAnswers[function].assign(codes.begin(), codes.end());
}

void ScriptedPlatform::acceptNullPlaces(bool accept) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->acceptsNullPlaces = accept;
}

void ScriptedPlatform::whenCalled(const std::string& function, std::function<void()> action) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->actions[function] = std::move(action);
}

void ScriptedPlatform::whenAnswered(const std::string& function, std::function<void()> action) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->actionsAfter[function] = std::move(action);
}

void ScriptedPlatform::setVconf(const std::string& key, int value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->vconfInts[key] = value;
}

void ScriptedPlatform::setVconf(const std::string& key, const std::optional<std::string>& value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->vconfTexts[key] = value;
}

std::optional<int> ScriptedPlatform::vconfInt(const std::string& key) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_state->vconfInts.find(key);
    return found == m_state->vconfInts.end() ? std::nullopt : std::optional<int>(found->second);
}

void ScriptedPlatform::setRuntimeInfo(int key, int value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->runtimeInts[key] = value;
}

void ScriptedPlatform::setRuntimeInfo(int key, const std::optional<std::string>& value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->runtimeTexts[key] = value;
}

void ScriptedPlatform::setSystemInfo(int key, int value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->systemInts[key] = value;
}

void ScriptedPlatform::setSystemInfo(int key, const std::optional<std::string>& value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->systemTexts[key] = value;
}

void ScriptedPlatform::setSystemSetting(int key, const std::optional<std::string>& value) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->settingTexts[key] = value;
}

std::optional<int> ScriptedPlatform::systemSettingInt(int key) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_state->settingInts.find(key);
    return found == m_state->settingInts.end() ? std::nullopt : std::optional<int>(found->second);
}

void ScriptedPlatform::setOrientation(int orientation) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->orientation = orientation;
}

void ScriptedPlatform::setFactoryRecord(int type, int firstInteger) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->factoryType = type;
    m_state->factoryInteger = firstInteger;
}

std::vector<unsigned char> ScriptedPlatform::factoryBuffer() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->factoryBuffer;
}

void ScriptedPlatform::setBrokenDownTime(const std::optional<tm>& time) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->brokenDownTime = time;
}

void ScriptedPlatform::setClock(time_t localSeconds, long secondsAheadOfUtc) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->clock = localSeconds;
    m_state->secondsAheadOfUtc = secondsAheadOfUtc;
}

void ScriptedPlatform::setUsbMountPaths(const std::vector<std::optional<std::string>>& paths) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->usbMountPaths = paths;
}

void ScriptedPlatform::setNetwork(const Network& network) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->network = network;
}

bool ScriptedPlatform::fireRuntimeInfoChanged(runtime_info_key_e key) {
    Locked state;
    const auto subscription = state->runtimeCallbacks[key];
    state.unlock();
    if (subscription.callback == nullptr) {
        return false;
    }
    subscription.callback(key, subscription.data);
    return true;
}

bool ScriptedPlatform::hasRuntimeInfoCallback(runtime_info_key_e key) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_state->runtimeCallbacks.find(key);
    return found != m_state->runtimeCallbacks.end() && found->second.callback != nullptr;
}

bool ScriptedPlatform::fireVconfChanged(const std::string& key) {
    Locked state;
    const auto subscription = state->vconfCallbacks[key];
    state.unlock();
    if (subscription.callback == nullptr) {
        return false;
    }
    subscription.callback(nullptr, subscription.data);
    return true;
}

bool ScriptedPlatform::hasVconfCallback(const std::string& key) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_state->vconfCallbacks.find(key);
    return found != m_state->vconfCallbacks.end() && found->second.callback != nullptr;
}

bool ScriptedPlatform::firePoweroff(int value) {
    Locked state;
    const auto subscription = state->poweroff;
    state.unlock();
    if (subscription.callback == nullptr) {
        return false;
    }
    subscription.callback(value, subscription.data);
    return true;
}

bool ScriptedPlatform::fireWakeup(int value) {
    Locked state;
    const auto subscription = state->wakeup;
    state.unlock();
    if (subscription.callback == nullptr) {
        return false;
    }
    subscription.callback(value, subscription.data);
    return true;
}

bool ScriptedPlatform::fireAppEvent(app_event_type_e type, void* event) {
    bool fired = false;
    for (const auto& handler : eventHandlers()) {
        if (handler.type == type && handler.callback != nullptr) {
            handler.callback(static_cast<app_event_info_h>(event), handler.data);
            fired = true;
        }
    }
    return fired;
}

void ScriptedPlatform::setAppMain(AppMain appMain) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->appMain = std::move(appMain);
}

std::vector<EventHandlerEntry> ScriptedPlatform::eventHandlers() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->eventHandlers;
}

std::vector<KeyGrab> ScriptedPlatform::grabs() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->grabs;
}

void ScriptedPlatform::setGrabResult(const std::string& key, int result) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_state->grabResults[key] = result;
}

std::vector<int> ScriptedPlatform::playedPatterns() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_state->patterns;
}

int ScriptedPlatform::handedOut(Handout kind) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto found = m_state->handedOut.find(kind);
    return found == m_state->handedOut.end() ? 0 : found->second;
}

int ScriptedPlatform::outstanding(Handout kind) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return static_cast<int>(
        std::count_if(m_state->objects.begin(), m_state->objects.end(),
                      [kind](const auto& entry) { return entry.second->kind == kind; }));
}

}  // namespace support

using support::Connection;
using support::Handout;
using support::Locked;
using support::ProfileIterator;
using support::ScriptedPlatform;

// --- log

int __dlog_print(log_id_t id, int priority, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* made = nullptr;
    const int length = vasprintf(&made, format, arguments);
    va_end(arguments);
    if (length < 0) {
        return length;
    }
    const std::string text = made;
    std::free(made);

    static const bool echo = std::getenv("ZOLT_ECHO_LOG") != nullptr;
    if (echo) {
        std::fprintf(stderr, "%d %d %s\n", id, priority, text.c_str());
    }
    const auto line = support::parsed(id, priority, tag, text);
    Locked state;
    state->log.push_back(line);
    const auto action = state->logAction;
    state.unlock();
    if (action) {
        action(line);
    }
    return length;
}

// --- vconf

int vconf_get_int(const char* key, int* value) {
    Locked state;
    const int code = state.call("vconf_get_int", key);
    return code != 0 ? code : support::giveInt(*state, state->vconfInts, key, value);
}

int vconf_set_int(const char* key, int value) {
    Locked state;
    const int code = state.call("vconf_set_int", std::string(key) + ", " + std::to_string(value));
    if (code == 0) {
        state->vconfInts[key] = value;
    }
    return code;
}

char* vconf_get_str(const char* key) {
    Locked state;
    char* value = nullptr;
    if (state.call("vconf_get_str", key) == 0) {
        support::giveTextOf(*state, state->vconfTexts, key, &value);
    }
    return value;
}

int vconf_notify_key_changed(const char* key, vconf_callback_fn callback, void* user_data) {
    Locked state;
    const int code = state.call("vconf_notify_key_changed", key);
    if (code == 0) {
        state->vconfCallbacks[key] = {callback, user_data};
    }
    return code;
}

int vconf_ignore_key_changed(const char* key, vconf_callback_fn /*callback*/) {
    Locked state;
    const int code = state.call("vconf_ignore_key_changed", key);
    if (code == 0) {
        state->vconfCallbacks.erase(key);
    }
    return code;
}

// --- runtime information, system information, system settings

int runtime_info_get_value_int(runtime_info_key_e key, int* value) {
    Locked state;
    const int code = state.call("runtime_info_get_value_int", std::to_string(key));
    return code != 0 ? code : support::giveInt(*state, state->runtimeInts, key, value);
}

int runtime_info_get_value_string(runtime_info_key_e key, char** value) {
    Locked state;
    const int code = state.call("runtime_info_get_value_string", std::to_string(key));
    return code != 0 ? code : support::giveTextOf(*state, state->runtimeTexts, key, value);
}

int runtime_info_set_changed_cb(runtime_info_key_e key, runtime_info_changed_cb callback,
                                void* user_data) {
    Locked state;
    const int code = state.call("runtime_info_set_changed_cb", std::to_string(key));
    if (code == 0) {
        state->runtimeCallbacks[key] = {callback, user_data};
    }
    return code;
}

int runtime_info_unset_changed_cb(runtime_info_key_e key) {
    Locked state;
    const int code = state.call("runtime_info_unset_changed_cb", std::to_string(key));
    if (code == 0) {
        state->runtimeCallbacks.erase(key);
    }
    return code;
}

int system_info_get_value_int(system_info_key_e key, int* value) {
    Locked state;
    const int code = state.call("system_info_get_value_int", std::to_string(key));
    return code != 0 ? code : support::giveInt(*state, state->systemInts, key, value);
}

int system_info_get_value_string(system_info_key_e key, char** value) {
    Locked state;
    const int code = state.call("system_info_get_value_string", std::to_string(key));
    return code != 0 ? code : support::giveTextOf(*state, state->systemTexts, key, value);
}

int system_settings_get_value_string(system_settings_key_e key, char** value) {
    Locked state;
    const int code = state.call("system_settings_get_value_string", std::to_string(key));
    return code != 0 ? code : support::giveTextOf(*state, state->settingTexts, key, value);
}

int system_settings_set_value_int(system_settings_key_e key, int value) {
    Locked state;
    const int code = state.call("system_settings_set_value_int",
                                std::to_string(key) + ", " + std::to_string(value));
    if (code == 0) {
        state->settingInts[key] = value;
    }
    return code;
}

// --- power

int device_power_subscribe_poweroff(device_power_poweroff_cb callback, void* user_data) {
    Locked state;
    const int code = state.call("device_power_subscribe_poweroff");
    if (code == 0) {
        state->poweroff = {callback, user_data};
    }
    return code;
}

int device_power_unsubscribe_poweroff(device_power_poweroff_cb /*callback*/) {
    Locked state;
    const int code = state.call("device_power_unsubscribe_poweroff");
    if (code == 0) {
        state->poweroff = {};
    }
    return code;
}

int device_power_subscribe_wakeup(device_power_wakeup_cb callback, void* user_data) {
    Locked state;
    const int code = state.call("device_power_subscribe_wakeup");
    if (code == 0) {
        state->wakeup = {callback, user_data};
    }
    return code;
}

int device_power_unsubscribe_wakeup(device_power_wakeup_cb /*callback*/) {
    Locked state;
    const int code = state.call("device_power_unsubscribe_wakeup");
    if (code == 0) {
        state->wakeup = {};
    }
    return code;
}

// --- application framework

int ui_app_main(int argc, char** argv, ui_app_lifecycle_callback_s* callback, void* user_data) {
    Locked state;
    const int code = state.call("ui_app_main");
    const auto appMain = state->appMain;
    state.unlock();
    return code == 0 && appMain ? appMain(argc, argv, callback, user_data) : code;
}

int ui_app_add_event_handler(app_event_handler_h* handler, app_event_type_e event_type,
                             app_event_cb callback, void* user_data) {
    Locked state;
    const int code = state.call("ui_app_add_event_handler", std::to_string(event_type));
    if (code == 0) {
        state->eventHandlers.push_back({event_type, callback, user_data});
        // Never read: only tells the caller that a handler is there.
        *handler = static_cast<app_event_handler_h>(static_cast<void*>(&ScriptedPlatform::get()));
    }
    return code;
}

// --- sounds, keys, reading direction

int feedback_initialize(void) {
    Locked state;
    return state.call("feedback_initialize");
}

int feedback_play(feedback_pattern_e pattern) {
    Locked state;
    state->patterns.push_back(pattern);
    return state.call("feedback_play", std::to_string(pattern));
}

int feedback_deinitialize(void) {
    Locked state;
    return state.call("feedback_deinitialize");
}

int utilx_grab_key(void* display, unsigned int window, const char* key, int mode) {
    Locked state;
    state->grabs.push_back({display, window, key, mode});
    const int code = state.call("utilx_grab_key", std::string(key) + ", " + std::to_string(mode));
    const auto result = state->grabResults.find(key);
    return result == state->grabResults.end() ? code : result->second;
}

int ua_UI_orientation_get(void) {
    Locked state;
    return state.call("ua_UI_orientation_get", "", state->orientation);
}

// --- factory data and clock

int GetData(int id, void* buffer) {
    Locked state;
    const int type = state.call("GetData", std::to_string(id), state->factoryType);
    auto* bytes = static_cast<unsigned char*>(buffer);
    state->factoryBuffer.assign(bytes, bytes + FACTORY_DATA_RECORD_SIZE);
    // The platform may write the whole record.
    std::memset(bytes, 0xA5, FACTORY_DATA_RECORD_SIZE);
    std::memcpy(buffer, &state->factoryInteger, sizeof state->factoryInteger);
    return type;
}

time_t CTimeUtil::GetCurrentTime() {
    Locked state;
    state.call("CTimeUtil::GetCurrentTime");
    return state->clock;
}

void CTimeUtil::Unsigned_gmtime_r(const time_t* seconds, struct tm* result) {
    Locked state;
    state.call("CTimeUtil::Unsigned_gmtime_r", std::to_string(*seconds));
    if (state->brokenDownTime) {
        *result = *state->brokenDownTime;
        return;
    }
    gmtime_r(seconds, result);
}

void CTimeUtil::ConvertToUTCTime(struct tm* time) {
    Locked state;
    state.call("CTimeUtil::ConvertToUTCTime");
    if (state->brokenDownTime) {
        return;
    }
    const time_t seconds = timegm(time) - state->secondsAheadOfUtc;
    gmtime_r(&seconds, time);
}

// --- USB storage

int usb_get_connected_device_number(int device_class) {
    Locked state;
    return state.call("usb_get_connected_device_number", std::to_string(device_class),
                      static_cast<int>(state->usbMountPaths.size()));
}

int usb_device_get_device_list(int device_class, usb_device_list_h* list) {
    Locked state;
    const int code = state.call("usb_device_get_device_list", std::to_string(device_class));
    if (code != 0) {
        return code;
    }
    auto* made = state->handOut<usb_device_list>(Handout::UsbDeviceList);
    for (const auto& path : state->usbMountPaths) {
        made->devices.push_back({path});
    }
    *list = made;
    return 0;
}

usb_device_h usb_device_list_get_first(usb_device_list_h list) {
    Locked state;
    state.call("usb_device_list_get_first");
    auto* found = state->find<usb_device_list>(list);
    if (found == nullptr || found->devices.empty()) {
        return nullptr;
    }
    found->position = 0;
    return &found->devices.front();
}

// Like the television's list this one remembers a position, and advances by one for each call.
usb_device_h usb_device_list_get_next(usb_device_list_h list) {
    Locked state;
    state.call("usb_device_list_get_next");
    auto* found = state->find<usb_device_list>(list);
    if (found == nullptr || found->position + 1 >= found->devices.size()) {
        return nullptr;
    }
    return &found->devices[++found->position];
}

const char* usb_device_get_mountpath(usb_device_h device) {
    Locked state;
    state.call("usb_device_get_mountpath");
    return device->path ? device->path->c_str() : nullptr;
}

int usb_device_free_device_list(usb_device_list_h list) {
    Locked state;
    const int code = state.call("usb_device_free_device_list");
    return code != 0 ? code : state->takeBack<usb_device_list>(list);
}

// --- network connection

namespace {

using TextOfProfile = std::optional<std::string> support::NetworkProfile::*;

int profileText(const char* function, const std::string& arguments, connection_profile_h profile,
                TextOfProfile text, char** value) {
    Locked state;
    const int code = state.call(function, arguments);
    if (code != 0) {
        return code;
    }
    const auto* found = state->profile(profile);
    return found == nullptr ? support::ERROR_BAD_HANDLE : support::giveText(found->*text, value);
}

}  // namespace

int connection_create(connection_h* connection) {
    Locked state;
    const int code = state.call("connection_create");
    if (code == 0) {
        *connection = state->handOut<Connection>(Handout::Connection);
    }
    return code;
}

int connection_destroy(connection_h connection) {
    Locked state;
    const int code = state.call("connection_destroy");
    return code != 0 ? code : state->takeBack<Connection>(connection);
}

int connection_get_type(connection_h connection, connection_type_e* type) {
    Locked state;
    const int code = state.call("connection_get_type");
    if (code != 0) {
        return code;
    }
    if (state->find<Connection>(connection) == nullptr) {
        return support::ERROR_BAD_HANDLE;
    }
    *type = static_cast<connection_type_e>(state->network.type);
    return 0;
}

int connection_get_ip_address(connection_h connection, connection_address_family_e family,
                              char** address) {
    Locked state;
    const int code = state.call("connection_get_ip_address", std::to_string(family));
    if (code != 0) {
        return code;
    }
    return state->find<Connection>(connection) == nullptr
               ? support::ERROR_BAD_HANDLE
               : support::giveText(state->network.ip, address);
}

int connection_get_mac_address(connection_h connection, connection_type_e type, char** address) {
    Locked state;
    const int code = state.call("connection_get_mac_address", std::to_string(type));
    if (code != 0) {
        return code;
    }
    return state->find<Connection>(connection) == nullptr
               ? support::ERROR_BAD_HANDLE
               : support::giveText(state->network.mac, address);
}

int connection_get_profile_iterator(connection_h connection, connection_iterator_type_e type,
                                    connection_profile_iterator_h* iterator) {
    Locked state;
    const int code = state.call("connection_get_profile_iterator", std::to_string(type));
    if (code != 0) {
        return code;
    }
    if (state->find<Connection>(connection) == nullptr) {
        return support::ERROR_BAD_HANDLE;
    }
    *iterator = state->handOut<ProfileIterator>(Handout::ProfileIterator);
    return 0;
}

bool connection_profile_iterator_has_next(connection_profile_iterator_h iterator) {
    Locked state;
    state.call("connection_profile_iterator_has_next");
    const auto* found = state->find<ProfileIterator>(iterator);
    return found != nullptr && found->next < state->network.profiles.size();
}

int connection_profile_iterator_next(connection_profile_iterator_h iterator,
                                     connection_profile_h* profile) {
    Locked state;
    const int code = state.call("connection_profile_iterator_next");
    if (code != 0) {
        return code;
    }
    auto* found = state->find<ProfileIterator>(iterator);
    if (found == nullptr || found->next >= state->network.profiles.size()) {
        return CONNECTION_ERROR_ITERATOR_END;
    }
    auto& entry = state->network.profiles[found->next++];
    if (profile == nullptr) {
        return state->nullPlace();
    }
    *profile = entry.null ? nullptr : &entry;
    return 0;
}

int connection_destroy_profile_iterator(connection_profile_iterator_h iterator) {
    Locked state;
    const int code = state.call("connection_destroy_profile_iterator");
    return code != 0 ? code : state->takeBack<ProfileIterator>(iterator);
}

int connection_profile_get_type(connection_profile_h profile, connection_profile_type_e* type) {
    Locked state;
    const int code = state.call("connection_profile_get_type");
    if (code != 0) {
        return code;
    }
    const auto* found = state->profile(profile);
    if (found == nullptr) {
        return support::ERROR_BAD_HANDLE;
    }
    *type = static_cast<connection_profile_type_e>(found->type);
    return 0;
}

int connection_profile_get_dns_address(connection_profile_h profile, int order,
                                       connection_address_family_e family, char** address) {
    return profileText("connection_profile_get_dns_address",
                       std::to_string(order) + ", " + std::to_string(family), profile,
                       &support::NetworkProfile::dns, address);
}

int connection_profile_get_gateway_address(connection_profile_h profile,
                                           connection_address_family_e family, char** address) {
    return profileText("connection_profile_get_gateway_address", std::to_string(family), profile,
                       &support::NetworkProfile::gateway, address);
}

int connection_profile_get_subnet_mask(connection_profile_h profile,
                                       connection_address_family_e family, char** mask) {
    return profileText("connection_profile_get_subnet_mask", std::to_string(family), profile,
                       &support::NetworkProfile::mask, mask);
}

int connection_profile_get_ip_config_type(connection_profile_h profile,
                                          connection_address_family_e family,
                                          connection_ip_config_type_e* type) {
    Locked state;
    const int code = state.call("connection_profile_get_ip_config_type", std::to_string(family));
    if (code != 0) {
        return code;
    }
    const auto* found = state->profile(profile);
    if (found == nullptr) {
        return support::ERROR_BAD_HANDLE;
    }
    *type = static_cast<connection_ip_config_type_e>(found->ipConfigType);
    return 0;
}
