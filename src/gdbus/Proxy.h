// SPDX-License-Identifier: Apache-2.0
// The process's one connection to the daemon's object tree.
#pragma once

#include <functional>
#include <string>

#include <gio/gio.h>

namespace ZOLT {

// Shares one object manager client among all subscribers: made with the first subscription,
// released with the last. The state is process-wide and has no lock: main thread only. Callbacks
// arrive through GLib's default main context.
class Proxy {
  public:
    Proxy() = delete;

    // Subscribes to objects that appear and disappear. Objects that are there already are reported
    // before this returns, and to every subscriber anew. Blocks until the daemon has listed them.
    // Returns the subscription's id, or -1 if there is no bus.
    static int signup(std::function<void(GDBusObject*)> added,
                      std::function<void(GDBusObject*)> removed);

    // Ends the subscription ID, and the connection with the last one. An unknown id ends nothing.
    static void unregister(int id);

    // The interface NAME of OBJECT, null if it has none or OBJECT is null. The caller owns the
    // reference.
    static GDBusInterface* getInterface(GDBusObject* object, const std::string& name);

    // Handlers of the manager's signals.
    static void onObjectAdded(GDBusObjectManager* manager, GDBusObject* object, gpointer data);
    static void onObjectRemoved(GDBusObjectManager* manager, GDBusObject* object, gpointer data);
    static void onNameOwner(GObject* object, GParamSpec* property, gpointer data);
};

}  // namespace ZOLT
