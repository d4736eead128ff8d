// SPDX-License-Identifier: Apache-2.0
// A television that answers as a test has set and records all calls.
#pragma once

#include <ctime>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "app.h"
#include "device_power.h"
#include "dlog.h"
#include "feedback.h"
#include "net_connection.h"
#include "runtime_info.h"
#include "system_info.h"
#include "system_settings.h"
#include "usb.h"
#include "vconf.h"

namespace support {

// One call of __dlog_print. A line in the program's form "FILE: FUNCTION(LINE) > MESSAGE" is taken
// apart; of any other line the whole text is the message, and line is 0.
struct LogLine {
    int buffer = 0;
    int priority = 0;
    std::string tag;
    std::string file;
    std::string function;
    int line = 0;
    std::string message;
    std::string text;  // the unparsed text
};

// One profile of the network connection. A text without a value reads as null with result 0.
struct NetworkProfile {
    int type = CONNECTION_PROFILE_TYPE_ETHERNET;
    std::optional<std::string> dns = "192.168.0.2";
    std::optional<std::string> gateway = "192.168.0.1";
    std::optional<std::string> mask = "255.255.255.0";
    int ipConfigType = CONNECTION_IP_CONFIG_TYPE_DYNAMIC;
    bool null = false;  // the iterator returns a null profile instead
};

// The network that the connection interface reports.
struct Network {
    int type = CONNECTION_TYPE_ETHERNET;
    std::optional<std::string> ip = "192.168.0.10";
    std::optional<std::string> mac = "00:11:22:33:44:55";
    std::vector<NetworkProfile> profiles = {NetworkProfile{}};
};

// One call of utilx_grab_key.
struct KeyGrab {
    void* display = nullptr;
    unsigned int window = 0;
    std::string key;
    int mode = 0;
};

// One call of ui_app_add_event_handler.
struct EventHandlerEntry {
    app_event_type_e type = APP_EVENT_LOW_MEMORY;
    app_event_cb callback = nullptr;
    void* data = nullptr;
};

// The kinds of objects that the platform hands out and that must be released.
enum class Handout { Connection, ProfileIterator, UsbDeviceList };

// The one television of a test program. Call reset() in each fixture's SetUp: it makes a television
// of 1920x1080 in English on which every call returns 0. All operations may be called on any
// thread. Calls that are not about the log are kept in order; the log is kept on its own. With the
// environment variable ZOLT_ECHO_LOG set, log lines also go to standard error.
class ScriptedPlatform {
  public:
    // Never destroyed, and usable before main and after it.
    static ScriptedPlatform& get();

    // Clears log, calls, answers, callbacks and handles, and restores the default television.
    void reset();

    // --- the log
    std::vector<LogLine> log() const;
    // Messages of one buffer and priority in order.
    std::vector<std::string> messages(log_id_t buffer, int priority) const;
    // All messages in order.
    std::vector<std::string> messages() const;
    bool hasLine(log_id_t buffer, int priority, const std::string& message) const;
    // How often exactly this message was written, with any buffer and priority.
    int countLines(const std::string& message) const;
    // The first line with this message.
    std::optional<LogLine> findLine(const std::string& message) const;
    void clearLog();
    // ACTION runs after each line, on the thread that wrote it and without a lock held.
    void whenLogged(std::function<void(const LogLine& line)> action);

    // --- the calls
    // Each as text, such as "vconf_set_int(memory/zolt/zolt_screensaver_blocking, 1)". Handles,
    // callbacks and output arguments are left out: "connection_get_mac_address(3)".
    std::vector<std::string> calls() const;
    // The calls of one function, such as "vconf_get_int".
    std::vector<std::string> calls(const std::string& function) const;
    int countCalls(const std::string& function) const;
    void clearCalls();

    // --- result codes
    // FUNCTION returns CODE until reset. With a code other than 0 the function does nothing and
    // leaves its output arguments unchanged. For usb_get_connected_device_number, GetData and
    // ua_UI_orientation_get, CODE is the result itself.
    void answer(const std::string& function, int code);
    // FUNCTION returns these codes one after the other, then what it returned before.
    void answers(const std::string& function, const std::vector<int>& codes);
    // Whether a null output argument is accepted: the call then returns as usual without a value.
    // Otherwise it returns -22, its code for a bad parameter.
    void acceptNullPlaces(bool accept);
    // ACTION runs at each call of FUNCTION before it returns, without a lock held. It may throw.
    void whenCalled(const std::string& function, std::function<void()> action);
    // The same after its work is done. It may not throw.
    void whenAnswered(const std::string& function, std::function<void()> action);

    // --- values; std::nullopt removes a value: a text then reads as null with result 0
    void setVconf(const std::string& key, int value);
    void setVconf(const std::string& key, const std::optional<std::string>& value);
    // The current value of an integer key.
    std::optional<int> vconfInt(const std::string& key) const;
    void setRuntimeInfo(int key, int value);
    void setRuntimeInfo(int key, const std::optional<std::string>& value);
    void setSystemInfo(int key, int value);
    void setSystemInfo(int key, const std::optional<std::string>& value);
    void setSystemSetting(int key, const std::optional<std::string>& value);
    // The value that was last written with system_settings_set_value_int.
    std::optional<int> systemSettingInt(int key) const;
    void setOrientation(int orientation);
    // The type that GetData answers and the first integer that it puts into the buffer.
    void setFactoryRecord(int type, int firstInteger);
    // The buffer of the last call of GetData.
    std::vector<unsigned char> factoryBuffer() const;
    // The broken-down time, whatever the seconds are; std::nullopt uses the calendar again.
    void setBrokenDownTime(const std::optional<tm>& time);
    // Local time of the television in seconds, and its difference to UTC.
    void setClock(time_t localSeconds, long secondsAheadOfUtc);
    void setUsbMountPaths(const std::vector<std::optional<std::string>>& paths);
    void setNetwork(const Network& network);

    // --- callbacks; firing one that is not set does nothing and returns false
    bool fireRuntimeInfoChanged(runtime_info_key_e key);
    bool hasRuntimeInfoCallback(runtime_info_key_e key) const;
    bool fireVconfChanged(const std::string& key);
    bool hasVconfCallback(const std::string& key) const;
    bool firePoweroff(int state);
    bool fireWakeup(int state);
    // Calls every handler of this event with EVENT as the platform's information.
    bool fireAppEvent(app_event_type_e type, void* event);

    // --- the application framework
    using AppMain = std::function<int(int argc, char** argv, ui_app_lifecycle_callback_s* callbacks,
                                      void* data)>;
    // What ui_app_main does, called without a lock held. Without one it returns its result code.
    void setAppMain(AppMain appMain);
    std::vector<EventHandlerEntry> eventHandlers() const;

    // --- keys and sounds
    std::vector<KeyGrab> grabs() const;
    // The result of grabbing one key; other keys follow answer("utilx_grab_key", ...).
    void setGrabResult(const std::string& key, int result);
    // Patterns of all calls of feedback_play, whatever it returned.
    std::vector<int> playedPatterns() const;

    // --- what was handed out
    int handedOut(Handout kind) const;
    // How many of them have not been released.
    int outstanding(Handout kind) const;

    // --- for the C functions only
    struct Object {
        virtual ~Object() = default;
        Handout kind = Handout::Connection;
    };
    struct State;
    State& lockedState(std::unique_lock<std::mutex>& lock);

  private:
    ScriptedPlatform();

    mutable std::mutex m_mutex;  // guards m_state
    std::unique_ptr<State> m_state;
};

}  // namespace support
