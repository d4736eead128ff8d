// SPDX-License-Identifier: Apache-2.0
// Subscriptions to the daemon's objects over one shared object manager client.
#include "gdbus/Proxy.h"

#include <map>
#include <utility>
#include <vector>

#include "common/Logger.h"
#include "generated-code.h"

namespace ZOLT {
namespace {

using ObjectCallback = std::function<void(GDBusObject*)>;

constexpr const char* BUS_NAME = "org.tizen.GDBus.ZoltContent";
constexpr const char* MANAGER_PATH = "/zolt";

// Both maps always hold the same ids.
std::map<int, ObjectCallback> objectAddedCallbacks;
std::map<int, ObjectCallback> objectRemovedCallbacks;
std::vector<gulong> managerSignalIds;
// One reference, released in Proxy::unregister.
GDBusObjectManager* objectManager = nullptr;
// Ids are never used again, not even after the connection has ended.
int nextSubscriptionId = 0;

// Also called without a manager, on purpose: GLib complains about the null instance and gives the
// id 0, so that a failed connection leaves three zeros behind.
void connectManagerSignals() {
    managerSignalIds.push_back(g_signal_connect(objectManager, "notify::name-owner",
                                                G_CALLBACK(Proxy::onNameOwner), nullptr));
    managerSignalIds.push_back(
        g_signal_connect(objectManager, "object-added", G_CALLBACK(Proxy::onObjectAdded), nullptr));
    managerSignalIds.push_back(g_signal_connect(objectManager, "object-removed",
                                                G_CALLBACK(Proxy::onObjectRemoved), nullptr));
}

void reportPresentObjects() {
    GList* objects = g_dbus_object_manager_get_objects(objectManager);
    for (GList* item = objects; item != nullptr; item = item->next) {
        Proxy::onObjectAdded(objectManager, G_DBUS_OBJECT(ZOLT_OBJECT(item->data)), nullptr);
    }
    g_list_free_full(objects, g_object_unref);
}

// Calls every callback in the order of the ids. Looks up the next id after each call, since a
// callback may subscribe or unsubscribe.
void callAll(const std::map<int, ObjectCallback>& callbacks, GDBusObject* object) {
    for (auto entry = callbacks.begin(); entry != callbacks.end();) {
        const int id = entry->first;
        const ObjectCallback callback = entry->second;
        callback(object);
        entry = callbacks.upper_bound(id);
    }
}

bool hasName(GDBusInterface* candidate, const std::string& name) {
    // A proxy of an interface that the generated layer does not know carries no description.
    const GDBusInterfaceInfo* info = g_dbus_interface_get_info(candidate);
    return info != nullptr && name == info->name;
}

}  // namespace

int Proxy::signup(std::function<void(GDBusObject*)> added,
                  std::function<void(GDBusObject*)> removed) {
    ZOLT_TRACE();
    if (objectManager == nullptr) {
        GError* error = nullptr;
        objectManager = zolt_object_manager_client_new_for_bus_sync(
            G_BUS_TYPE_SYSTEM, G_DBUS_OBJECT_MANAGER_CLIENT_FLAGS_NONE, BUS_NAME, MANAGER_PATH,
            nullptr, &error);
        if (error != nullptr) {
            ZOLT_WARN("Failed to create object manager client: %s", error->message);
            g_error_free(error);
        }
        connectManagerSignals();
    }
    if (objectManager == nullptr) {
        return -1;
    }
    objectAddedCallbacks[nextSubscriptionId] = std::move(added);
    objectRemovedCallbacks[nextSubscriptionId] = std::move(removed);
    reportPresentObjects();
    return nextSubscriptionId++;
}

void Proxy::unregister(int id) {
    ZOLT_TRACE();
    objectAddedCallbacks.erase(id);
    objectRemovedCallbacks.erase(id);
    if (!objectAddedCallbacks.empty()) {
        return;
    }
    // Without a manager these are calls on a null instance that GLib refuses with a complaint; an
    // id of 0, left by a failed connection, is refused likewise.
    for (const gulong signalId : managerSignalIds) {
        g_signal_handler_disconnect(objectManager, signalId);
    }
    managerSignalIds.clear();
    g_object_unref(objectManager);
    objectManager = nullptr;
}

GDBusInterface* Proxy::getInterface(GDBusObject* object, const std::string& name) {
    ZOLT_TRACE();
    // GLib reads the object's class before it tests for null.
    if (object == nullptr) {
        return nullptr;
    }
    GDBusInterface* match = nullptr;
    GList* interfaces = g_dbus_object_get_interfaces(object);
    for (GList* item = interfaces; item != nullptr; item = item->next) {
        if (hasName(G_DBUS_INTERFACE(item->data), name)) {
            match = G_DBUS_INTERFACE(item->data);
            break;
        }
        g_object_unref(item->data);
    }
    // The references of the interfaces behind the match are kept on purpose: the walk ends there
    // and releases no more.
    g_list_free(interfaces);
    return match;
}

void Proxy::onObjectAdded(GDBusObjectManager* /*manager*/, GDBusObject* object, gpointer /*data*/) {
    ZOLT_TRACE();
    callAll(objectAddedCallbacks, object);
}

void Proxy::onObjectRemoved(GDBusObjectManager* /*manager*/, GDBusObject* object,
                            gpointer /*data*/) {
    ZOLT_TRACE();
    callAll(objectRemovedCallbacks, object);
}

void Proxy::onNameOwner(GObject* object, GParamSpec* /*property*/, gpointer /*data*/) {
    ZOLT_TRACE();
    gchar* owner =
        g_dbus_object_manager_client_get_name_owner(G_DBUS_OBJECT_MANAGER_CLIENT(object));
    ZOLT_DEBUG("Owner name: %s", owner != nullptr ? owner : "(null)");
    g_free(owner);
}

}  // namespace ZOLT
