// SPDX-License-Identifier: Apache-2.0
// The object "/zolt/gui" on the bus and what its methods do.
#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

#include "daemon/Journal.h"
#include "daemon/Registration.h"
#include "daemon/Scenario.h"
#include "daemon/Timers.h"
#include "generated-code.h"

namespace standin {

constexpr const char* BUS_NAME = "org.tizen.GDBus.ZoltContent";
constexpr const char* MANAGER_PATH = "/zolt";
constexpr const char* GUI_PATH = "/zolt/gui";
// The error that refuses a registration document.
constexpr const char* INVALID_DOCUMENT = "org.tizen.GDBus.ZoltContent.Error.InvalidDocument";

// Answers the program's calls and sends the events that follow. Works on GLib's default main loop.
class Service {
  public:
    // Exports the objects on CONNECTION. Create it before the name is owned.
    Service(GDBusConnection* connection, const Scenario& scenario, const Registration& registration,
            Journal& journal);
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    // Schedules the events that the scenario counts from the moment when the name is owned.
    void start();

    // Sends the event that has been held longest.
    void releaseNext();

  private:
    struct Call;

    static gboolean onCall(ZOLTGUI* object, GDBusMethodInvocation* invocation, gpointer data);
    static gboolean onRegistration(ZOLTGUI* object, GDBusMethodInvocation* invocation,
                                   const gchar* document, gpointer data);

    void take(const Call& call);
    void answer(const Call& call);
    void reply(const Call& call);
    void replyText(const Call& call, const std::string& text);
    void replyTruth(const Call& call, bool truth);
    void replyWrongType(const Call& call);
    void refuse(const Call& call, const std::string& error, const std::string& message);

    std::string textFor(const std::string& method);
    bool truthFor(const std::string& method) const;

    // Schedules the events of a call that has been answered.
    void follow(const Call& call);
    void leave();
    Event resultOf(const Call& call) const;
    // Does the work that the reason SUCCESS reports and returns its event.
    Event finish(int success, const std::string& document);
    void work(int success, const std::string& document);
    void plan(const TimedEvent& timed, const std::string& cause, bool held);
    // Runs ACTION, which sends an event caused by CAUSE, after the delay or when it is released.
    void schedule(int delayMs, const std::string& cause, bool held, std::function<void()> action);
    void send(Event event);

    const Scenario m_scenario;
    const Registration m_registration;
    Journal& m_journal;
    GDBusObjectManagerServer* m_manager;  // one reference, released in the destructor
    ZOLTGUI* m_gui;                       // likewise
    // The last reply of getShopInfoList, before the first one the scenario's list. A registration
    // has to match it.
    std::string m_served;
    // Whether the PIN has been verified: the shop list then comes from the server and not from a
    // set in the local network.
    bool m_pincodeVerified = false;
    Timers m_replies;
    Timers m_events;
};

}  // namespace standin
