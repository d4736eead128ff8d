// SPDX-License-Identifier: Apache-2.0
// A small application for the tests of the virtual set: reports each callback in the log and does
// what its arguments ask for.
#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <poll.h>
#include <unistd.h>

#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <Elementary.h>
#include <X11/Xlib.h>
#include <glib.h>

#include "app.h"
#include "device_power.h"
#include "dlog.h"
#include "feedback.h"
#include "runtime_info.h"
#include "utilx.h"
#include "vconf.h"

namespace {

struct Probe {
    std::vector<std::string> options;
    std::vector<Evas_Object*> windows;  // deleted by the toolkit or by this program
    int launches = 0;

    bool has(const std::string& option) const {
        for (const std::string& one : options) {
            if (one == option) {
                return true;
            }
        }
        return false;
    }
};

void say(const std::string& text) {
    __dlog_print(LOG_ID_MAIN, DLOG_INFO, "PROBE", "%s", text.c_str());
}

// Logs last: it is constructed before the log's own statics and so destroyed after them.
struct Farewell {
    Farewell() = default;
    Farewell(const Farewell&) = delete;
    Farewell& operator=(const Farewell&) = delete;
    ~Farewell() {
        if (enabled) {
            say("farewell");
        }
    }
    bool enabled = false;
};
Farewell farewell;

// Drawing sends requests to the X server.
void stopDrawing() {
    for (Eina_List* at = ecore_evas_ecore_evas_list_get(); at != nullptr;
         at = eina_list_remove_list(at, at)) {
        auto* drawn = static_cast<Ecore_Evas*>(eina_list_data_get(at));
        evas_sync(ecore_evas_get(drawn));
        ecore_evas_manual_render_set(drawn, EINA_TRUE);
    }
}

// Logs "at rest" after a few turns of the main loop, when pending work is done.
Eina_Bool comeToRest(void* data) {
    auto* turns = static_cast<int*>(data);
    if (--*turns > 0) {
        ecore_job_add([](void*) {}, nullptr);
        return ECORE_CALLBACK_RENEW;
    }
    say("at rest");
    return ECORE_CALLBACK_CANCEL;
}

// Blocks in the callback until the X server has died, so that the main loop cannot notice it.
void waitForServersEnd(bool askIt) {
    auto* display = static_cast<Display*>(ecore_x_display_get());
    pollfd connection = {ConnectionNumber(display), 0, 0};
    stopDrawing();
    say("waiting for the server's end");
    poll(&connection, 1, -1);
    if (askIt) {
        XSync(display, False);
        say("a dead server answered");
    }
}

void onKey(void* data, Evas*, Evas_Object*, void* info) {
    const auto* event = static_cast<Evas_Event_Key_Down*>(info);
    say(std::string("key down ") + event->key + " " + event->keyname);
    const auto* probe = static_cast<Probe*>(data);
    if (probe->has("ask-dead-server")) {
        waitForServersEnd(true);
    } else if (probe->has("outlive-server-at-work")) {
        ecore_job_add([](void*) { waitForServersEnd(false); }, nullptr);
    }
}

// DATA is the probe or null.
void onKeyUp(void* data, Evas*, Evas_Object*, void* info) {
    const auto* event = static_cast<Evas_Event_Key_Up*>(info);
    say(std::string("key up ") + event->key + " " + event->keyname);
    const auto* probe = static_cast<Probe*>(data);
    if (probe != nullptr && probe->has("rest")) {
        static int turns = 4;
        stopDrawing();
        ecore_idle_enterer_add(comeToRest, &turns);
    }
}

void forget(void* data, Evas*, Evas_Object* window, void*) {
    auto& windows = static_cast<Probe*>(data)->windows;
    windows.erase(std::remove(windows.begin(), windows.end(), window), windows.end());
}

void onFocusIn(void*, Evas_Object*, void*) {
    say("window focused");
}

Evas_Object* openWindow(Probe* probe, const char* title) {
    Evas_Object* window = elm_win_util_standard_add("probe", title);
    elm_win_autodel_set(window, EINA_TRUE);
    evas_object_resize(window, 320, 180);
    evas_object_event_callback_add(window, EVAS_CALLBACK_KEY_DOWN, onKey, probe);
    evas_object_event_callback_add(window, EVAS_CALLBACK_KEY_UP, onKeyUp, probe);
    if (ecore_x_display_get() != nullptr) {
        evas_object_smart_callback_add(window, "focus,in", onFocusIn, nullptr);
    }
    evas_object_event_callback_add(window, EVAS_CALLBACK_DEL, forget, probe);
    evas_object_show(window);
    return window;
}

void onFocused(void*, Evas_Object*, void*) {
    say("button focused");
}

void onUnfocused(void*, Evas_Object*, void*) {
    say("button unfocused");
}

void onClicked(void*, Evas_Object*, void*) {
    say("button clicked");
}

char* accessText(void*, Evas_Object*) {
    say("access text asked");
    return strdup("press me");
}

void addButton(Evas_Object* window) {
    Evas_Object* button = elm_button_add(window);
    elm_object_text_set(button, "press me");
    elm_win_resize_object_add(window, button);
    elm_access_info_cb_set(button, static_cast<Elm_Access_Info_Type>(0), accessText, nullptr);
    evas_object_smart_callback_add(button, "focused", onFocused, nullptr);
    evas_object_smart_callback_add(button, "unfocused", onUnfocused, nullptr);
    evas_object_smart_callback_add(button, "clicked", onClicked, nullptr);
    evas_object_event_callback_add(button, EVAS_CALLBACK_KEY_UP, onKeyUp, nullptr);
    evas_object_show(button);
    elm_object_focus_set(button, EINA_TRUE);
}

gboolean stepWindows(gpointer data) {
    auto* probe = static_cast<Probe*>(data);
    static int step = 0;
    switch (step++) {
        case 0:
            say("hiding the upper window");
            evas_object_hide(probe->windows[1]);
            return G_SOURCE_CONTINUE;
        case 1:
            say("hiding the lower window");
            evas_object_hide(probe->windows[0]);
            return G_SOURCE_CONTINUE;
        case 2:
            say("showing the lower window");
            evas_object_show(probe->windows[0]);
            return G_SOURCE_CONTINUE;
        default:
            say("leaving");
            elm_exit();
            return G_SOURCE_REMOVE;
    }
}

gboolean throwLater(gpointer) {
    throw std::runtime_error("thrown by a GLib source");
}

void throwInJob(void*) {
    throw std::runtime_error("thrown by the toolkit's loop");
}

[[noreturn]] void outliveEveryLimit() {
    say("stalling");
    while (true) {
        pause();
    }
}

gboolean sayFired(gpointer) {
    say("a GLib source fired");
    return G_SOURCE_REMOVE;
}

gboolean leave(gpointer) {
    elm_exit();
    return G_SOURCE_REMOVE;
}

int onPoweroff(int state, void*) {
    say("poweroff " + std::to_string(state));
    return 0;
}

void onWakeup(int state, void*) {
    say("wakeup " + std::to_string(state));
}

void onVconf(keynode_t*, void* data) {
    say("vconf changed");
    if (static_cast<Probe*>(data)->has("throw-notice")) {
        throw std::runtime_error("thrown by a notice");
    }
}

void onRuntime(runtime_info_key_e key, void*) {
    say("runtime " + std::to_string(key) + " changed");
}

void onLanguage(app_event_info_h info, void* data) {
    say(std::string("language changed, event is data: ") +
        (static_cast<void*>(info) == data ? "yes" : "no"));
}

void onLowMemory(app_event_info_h, void*) {
    say("low memory");
}

void describeDescriptors() {
    for (const int descriptor : {1, 2}) {
        char target[512] = {};
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        const ssize_t length = readlink(link.c_str(), target, sizeof target - 1);
        say("descriptor " + std::to_string(descriptor) + ": " + (length > 0 ? target : "free"));
    }
}

// Counts the threads of the process that watch its main loop.
void countWatchdogs(const std::string& when) {
    int count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "comm");
        std::string name;
        count += std::getline(file, name) && name == "stall-watchdog" ? 1 : 0;
    }
    say(when + ": " + std::to_string(count) + " watchdog");
}

bool create(void* data) {
    auto* probe = static_cast<Probe*>(data);
    say("create, scale " + std::to_string(elm_config_scale_get()));
    if (probe->has("throw-create")) {
        throw std::runtime_error("thrown by create");
    }
    if (probe->has("raise-in-create")) {
        raise(SIGTERM);
    }
    if (probe->has("outlive-server-in-create")) {
        waitForServersEnd(false);
    }
    return !probe->has("refuse");
}

void grab(Evas_Object* window, const char* key) {
    const int result =
        utilx_grab_key(ecore_x_display_get(), elm_win_xwindow_get(window), key, TOP_POSITION_GRAB);
    say(std::string("grab ") + key + ": " + (result == 0 ? "done" : "refused"));
}

// A second connection counts as another client.
void grabAsAnother(Evas_Object* window, const char* key) {
    Display* display = XOpenDisplay(nullptr);
    ecore_x_sync();
    const int result = utilx_grab_key(display, elm_win_xwindow_get(window), key, TOP_POSITION_GRAB);
    say(std::string("grab ") + key + " by another: " + (result == 0 ? "done" : "refused"));
    XCloseDisplay(display);
}

// Another of the five sounds at each launch.
void playSound(int launch) {
    constexpr std::array<feedback_pattern_e, 5> patterns = {
        FEEDBACK_PATTERN_MOVE, FEEDBACK_PATTERN_BACK, FEEDBACK_PATTERN_BLOCKED,
        FEEDBACK_PATTERN_SELECT, FEEDBACK_PATTERN_POPUP};
    feedback_initialize();
    feedback_play(patterns[static_cast<std::size_t>(launch - 1) % patterns.size()]);
}

void launch(app_control_h request, void* data) {
    auto* probe = static_cast<Probe*>(data);
    say("app control " + std::to_string(++probe->launches) +
        (request != nullptr ? "" : " without"));
    if (probe->has("throw-launch") || (probe->has("throw-again") && probe->launches > 1)) {
        throw std::runtime_error("thrown by app control");
    }
    if (probe->launches > 1 && probe->has("replace")) {
        Evas_Object* old = probe->windows[0];
        probe->windows.push_back(openWindow(probe, "next"));
        evas_object_del(old);
        return;
    }
    if (probe->has("windows") || probe->has("window")) {
        probe->windows.push_back(openWindow(probe, "lower"));
    }
    if (probe->has("windows")) {
        probe->windows.push_back(openWindow(probe, "upper"));
        g_timeout_add(300, stepWindows, probe);
    }
    if (probe->has("button")) {
        addButton(probe->windows[0]);
    }
    if (probe->has("say")) {
        elm_access_say(("launch " + std::to_string(probe->launches)).c_str());
        say("had something said");
    }
    if (probe->has("grab")) {
        grab(probe->windows[0], "a");
        grab(probe->windows[0], "XF86NoSuchKey");
    }
    if (probe->has("grab-twice")) {
        grab(probe->windows[0], "b");
        grabAsAnother(probe->windows[0], "b");
    }
    if (probe->has("sounds")) {
        playSound(probe->launches);
    }
    if (probe->has("leave")) {
        elm_exit();
    }
    if (probe->has("stall") && probe->launches > 1) {
        outliveEveryLimit();
    }
    if (probe->has("watchdog")) {
        countWatchdogs("at launch");
    }
    if (probe->has("throw-source")) {
        g_idle_add(throwLater, nullptr);
    }
    if (probe->has("throw-job")) {
        ecore_job_add(throwInJob, nullptr);
    }
    if (probe->has("source")) {
        g_timeout_add(10, sayFired, nullptr);
        g_timeout_add(50, leave, nullptr);
    }
}

void pauseProbe(void*) {
    say("pause");
}

void resumeProbe(void*) {
    say("resume");
}

void terminateProbe(void* data) {
    say("terminate");
    while (!static_cast<Probe*>(data)->windows.empty()) {
        evas_object_del(static_cast<Probe*>(data)->windows.back());
    }
    if (static_cast<Probe*>(data)->has("watchdog")) {
        countWatchdogs("at the end");
    }
    if (static_cast<Probe*>(data)->has("throw-terminate")) {
        throw std::runtime_error("thrown by terminate");
    }
    elm_exit();
}

int runProbe(int argc, char** argv, Probe* probe) {
    ui_app_lifecycle_callback_s callbacks = {create, terminateProbe, pauseProbe, resumeProbe,
                                             launch};
    app_event_handler_h handlers[2] = {};
    ui_app_add_event_handler(&handlers[0], APP_EVENT_LANGUAGE_CHANGED, onLanguage, probe);
    ui_app_add_event_handler(&handlers[1], APP_EVENT_LOW_MEMORY, onLowMemory, probe);
    device_power_subscribe_poweroff(onPoweroff, nullptr);
    device_power_subscribe_wakeup(onWakeup, nullptr);
    vconf_notify_key_changed("db/menu/system/accessibility/focuszoom", onVconf, probe);
    vconf_notify_key_changed("db/probe/counter", onVconf, probe);
    runtime_info_set_changed_cb(RUNTIME_INFO_KEY_LANGUAGE, onRuntime, nullptr);
    const int result = ui_app_main(argc, argv, &callbacks, probe);
    say("ui_app_main returned " + std::to_string(result));
    return result == 0 ? 0 : 3;
}

// Instead of running as an application: writes a value and exits with the one that was there.
int exchangeValue(const char* key, const char* value) {
    int before = 0;
    vconf_get_int(key, &before);
    vconf_set_int(key, static_cast<int>(std::strtol(value, nullptr, 10)));
    return before;
}

// Instead of running as an application: asks a window to close, as a window manager does.
int closeWindow(const char* id) {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return 1;
    }
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = std::strtoul(id, nullptr, 10);
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, event.xclient.window, False, NoEventMask, &event);
    XSync(display, False);
    XCloseDisplay(display);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "vconf") {
        return exchangeValue(argv[2], argv[3]);
    }
    if (argc == 3 && std::string(argv[1]) == "close") {
        return closeWindow(argv[2]);
    }
    Probe probe;
    probe.options.assign(argv + 1, argv + argc);
    for (FILE* stream : {stdout, stderr}) {
        if (!probe.has("null-streams")) {
            std::fclose(stream);
        } else if (std::freopen("/dev/null", "w", stream) == nullptr) {
            return 1;
        }
    }
    say("starting");
    describeDescriptors();
    farewell.enabled = probe.has("farewell");
    try {
        return runProbe(1, argv, &probe);
    } catch (const std::exception& failure) {
        say(std::string("caught ") + failure.what());
        return 1;
    }
}
