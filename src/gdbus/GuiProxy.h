// SPDX-License-Identifier: Apache-2.0
// The program's typed handle on the daemon's object "/zolt/gui".
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "generated-code.h"

namespace ZOLT {

// One blocking member function for each method of the daemon. Every failure is an Exception: no
// bus, no daemon, an error reply, or no reply within 100000 milliseconds. The daemon may go and
// come back at any time; the next call after its return reaches it again. Main thread only.
class GuiProxy {
  public:
    // Subscribes to the daemon's objects. If that fails, every later call tries again.
    GuiProxy();
    ~GuiProxy();
    GuiProxy(const GuiProxy&) = delete;
    GuiProxy& operator=(const GuiProxy&) = delete;

    // Requests: the daemon replies at once, and the result comes as an event.
    void requestPincode();
    void requestPincodeVerification();
    void requestShopInfoList();
    void requestRegistrationShopInfo(const std::string& shopConf);
    void unregister();
    void deleteRegistrationInfo();

    // Answers that the daemon holds ready.
    std::string getPincode();
    bool checkShopRegistration();
    // The shop list document. Also throws if the daemon has none: an empty reply or "null".
    std::string getShopInfoList();
    // The registered shop's document, or what the daemon replies without one.
    std::string getRegisteredShopInfo();
    bool checkShopMode();

    // Tells the daemon that the user has left.
    void applicationCancelled();

    // Receives event and reason of each sendEvent of the daemon, inside the signal's handler. Set
    // it before the first event: an empty one throws std::bad_function_call.
    static std::function<void(int, int)> m_sendEventCallback;

    // Handler of the signal "send-event".
    static void sendEvent(ZOLTGUI* proxy, gint event, gint reason);

  private:
    void signup();
    // The proxy to call. Throws while the daemon's object is absent. Not owned by the caller.
    ZOLTGUI* getProxy();
    void onObjectAdded(GDBusObject* object);
    void onObjectRemoved(GDBusObject* object);
    void disconnectSignals();

    // Holds the reference that Proxy::getInterface gave and is never released, on purpose: one
    // proxy stays behind for each disappearance of the daemon.
    ZOLTGUI* m_proxy = nullptr;
    std::vector<unsigned long> m_signalIds;
    int m_subscriptionId = -1;
    // Guards the test and the retry of the subscription in getProxy. The retry can run the
    // callbacks while it is held, so these do not lock it.
    std::mutex m_mutex;
};

}  // namespace ZOLT
