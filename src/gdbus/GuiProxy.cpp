// SPDX-License-Identifier: Apache-2.0
// Calls of the daemon's methods, with its failures turned into exceptions.
#include "gdbus/GuiProxy.h"

#include <cstring>

#include "common/Exception.h"
#include "common/Logger.h"
#include "gdbus/Proxy.h"

namespace ZOLT {
namespace {

constexpr const char* GUI_PATH = "/zolt/gui";
constexpr const char* GUI_INTERFACE = "org.tizen.GDBus.ZoltContent.GUI";
constexpr int CALL_TIMEOUT_MS = 100000;

bool isGuiObject(GDBusObject* object) {
    // GLib crashes when asked for the path of a null object.
    return object != nullptr && std::strcmp(g_dbus_object_get_object_path(object), GUI_PATH) == 0;
}

// Makes one call of the daemon: METHOD with ARGUMENTS, which begin with the proxy. A failure
// becomes an Exception with PREFIX before the text of the error.
template <typename Method, typename... Arguments>
void checked(const char* prefix, Method method, Arguments... arguments) {
    GError* error = nullptr;
    method(arguments..., nullptr, &error);
    if (error != nullptr) {
        const std::string text = std::string(prefix) + error->message;
        g_error_free(error);
        throw Exception(text.c_str(), GENERIC_ERROR);
    }
}

// The same for a method that answers with a text. A reply that carries no string counts as an empty
// one, since a std::string cannot be built from null.
template <typename Method>
std::string checkedText(const char* prefix, Method method, ZOLTGUI* proxy) {
    struct Reply {
        Reply() = default;
        ~Reply() { g_free(text); }
        Reply(const Reply&) = delete;
        Reply& operator=(const Reply&) = delete;
        gchar* text = nullptr;
    } reply;
    checked(prefix, method, proxy, &reply.text);
    return reply.text != nullptr ? reply.text : "";
}

// The same for a method that answers with a truth value.
template <typename Method>
bool checkedTruth(const char* prefix, Method method, ZOLTGUI* proxy) {
    gboolean reply = FALSE;
    checked(prefix, method, proxy, &reply);
    return reply != FALSE;
}

}  // namespace

std::function<void(int, int)> GuiProxy::m_sendEventCallback;

GuiProxy::GuiProxy() {
    ZOLT_TRACE();
    signup();
}

GuiProxy::~GuiProxy() {
    ZOLT_TRACE();
    Proxy::unregister(m_subscriptionId);
    disconnectSignals();
    m_proxy = nullptr;
}

void GuiProxy::signup() {
    ZOLT_TRACE();
    const std::function<void(GDBusObject*)> added = [this](GDBusObject* object) {
        onObjectAdded(object);
    };
    const std::function<void(GDBusObject*)> removed = [this](GDBusObject* object) {
        onObjectRemoved(object);
    };
    m_subscriptionId = Proxy::signup(added, removed);
}

ZOLTGUI* GuiProxy::getProxy() {
    ZOLT_TRACE();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_subscriptionId < 0) {
        signup();
    }
    if (m_proxy == nullptr) {
        throw Exception("Failed to find GUI proxy object", GENERIC_ERROR);
    }
    return m_proxy;
}

void GuiProxy::onObjectAdded(GDBusObject* object) {
    ZOLT_TRACE();
    if (m_proxy != nullptr) {
        ZOLT_DEBUG("Object already exists");
        return;
    }
    if (!isGuiObject(object)) {
        return;
    }
    // Null if the object lacks the interface. GLib refuses the two calls below on a null instance
    // with a complaint, and the object then counts as absent.
    GDBusInterface* interface = Proxy::getInterface(object, GUI_INTERFACE);
    m_proxy = interface != nullptr ? ZOLT_GUI(interface) : nullptr;
    g_dbus_proxy_set_default_timeout(reinterpret_cast<GDBusProxy*>(m_proxy), CALL_TIMEOUT_MS);
    m_signalIds.push_back(
        g_signal_connect(m_proxy, "send-event", G_CALLBACK(GuiProxy::sendEvent), nullptr));
    ZOLT_DEBUG("Object /zolt/gui added");
}

void GuiProxy::onObjectRemoved(GDBusObject* object) {
    ZOLT_TRACE();
    if (!isGuiObject(object)) {
        return;
    }
    disconnectSignals();
    m_proxy = nullptr;
    ZOLT_DEBUG("Removing object /zolt/gui");
}

void GuiProxy::disconnectSignals() {
    for (const unsigned long signalId : m_signalIds) {
        g_signal_handler_disconnect(m_proxy, signalId);
    }
    m_signalIds.clear();
}

void GuiProxy::sendEvent(ZOLTGUI* /*proxy*/, gint event, gint reason) {
    ZOLT_TRACE_VALUES(2, 2, event, 3, reason);
    m_sendEventCallback(event, reason);
}

void GuiProxy::requestPincode() {
    ZOLT_TRACE();
    checked("Failed to request pincode: ", zolt_gui_call_request_pincode_sync, getProxy());
}

std::string GuiProxy::getPincode() {
    ZOLT_TRACE();
    std::string pincode =
        checkedText("Failed to get pincode: ", zolt_gui_call_get_pincode_sync, getProxy());
    ZOLT_DEBUG("Received pincode %s", pincode.c_str());
    return pincode;
}

void GuiProxy::requestPincodeVerification() {
    ZOLT_TRACE();
    checked("Failed to request pincode verification: ",
            zolt_gui_call_request_pincode_verification_sync, getProxy());
}

bool GuiProxy::checkShopRegistration() {
    ZOLT_TRACE();
    return checkedTruth("Failed to check shop registration: ",
                        zolt_gui_call_check_shop_registration_sync, getProxy());
}

void GuiProxy::requestShopInfoList() {
    ZOLT_TRACE();
    checked("Failed to request shop info list: ", zolt_gui_call_request_shop_info_list_sync,
            getProxy());
}

std::string GuiProxy::getShopInfoList() {
    ZOLT_TRACE();
    std::string shopList =
        checkedText("Failed to get shop list: ", zolt_gui_call_get_shop_info_list_sync, getProxy());
    // A daemon without a list may answer with success.
    if (shopList.empty() || shopList == "null") {
        throw Exception("Shop list is empty ", GENERIC_ERROR);
    }
    return shopList;
}

void GuiProxy::requestRegistrationShopInfo(const std::string& shopConf) {
    ZOLT_TRACE();
    checked("Failed to request registration: ", zolt_gui_call_request_registration_shop_info_sync,
            getProxy(), shopConf.c_str());
}

std::string GuiProxy::getRegisteredShopInfo() {
    ZOLT_TRACE();
    return checkedText("Failed to get registered shop info: ",
                       zolt_gui_call_get_registered_shop_info_sync, getProxy());
}

bool GuiProxy::checkShopMode() {
    ZOLT_TRACE();
    return checkedTruth("Failed to get shop mode: ", zolt_gui_call_check_shop_mode_sync,
                        getProxy());
}

void GuiProxy::applicationCancelled() {
    ZOLT_TRACE();
    // Log readers look for this wording, mistakes included.
    checked("Failed inform that application quited: ", zolt_gui_call_application_cancelled_sync,
            getProxy());
}

void GuiProxy::unregister() {
    ZOLT_TRACE();
    checked("Failed to unregister: ", zolt_gui_call_unregister_sync, getProxy());
}

void GuiProxy::deleteRegistrationInfo() {
    ZOLT_TRACE();
    checked("Failed to delete registration info: ", zolt_gui_call_delete_registration_info_sync,
            getProxy());
}

}  // namespace ZOLT
