// SPDX-License-Identifier: Apache-2.0
// A daemon in the test's own process that sends what a test tells it to.
#include "FakeService.h"

#include <cstdlib>
#include <stdexcept>

namespace test {
namespace {

constexpr const char* BUS_NAME = "org.tizen.GDBus.ZoltContent";
constexpr const char* MANAGER_INTERFACE = "org.freedesktop.DBus.ObjectManager";

GVariant* parse(const std::string& text, const char* type = nullptr) {
    GError* error = nullptr;
    GVariant* value = g_variant_parse(type != nullptr ? G_VARIANT_TYPE(type) : nullptr,
                                      text.c_str(), nullptr, nullptr, &error);
    if (value == nullptr) {
        const std::string reason = error->message;
        g_error_free(error);
        throw std::runtime_error(text + ": " + reason);
    }
    return value;
}

[[noreturn]] void fail(GError* error) {
    const std::string reason = error->message;
    g_error_free(error);
    throw std::runtime_error(reason);
}

}  // namespace

const char* const GUI_INTERFACE = "org.tizen.GDBus.ZoltContent.GUI";
const char* const SCREEN_SAVER_INTERFACE = "org.tizen.GDBus.ZoltContent.ScreenSaver";
const char* const GUI_INTERFACES = "{'org.tizen.GDBus.ZoltContent.GUI': {}}";
const char* const GUI_TREE = "{'/zolt/gui': {'org.tizen.GDBus.ZoltContent.GUI': {}}}";

FakeService::FakeService() {
    GError* error = nullptr;
    m_connection = g_dbus_connection_new_for_address_sync(
        std::getenv("DBUS_SYSTEM_BUS_ADDRESS"),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, &error);
    if (m_connection == nullptr) {
        test::fail(error);
    }
    list("{}");
    m_filter = g_dbus_connection_add_filter(m_connection, onMessage, this, nullptr);
}

FakeService::~FakeService() {
    g_dbus_connection_remove_filter(m_connection, m_filter);
    g_dbus_connection_close_sync(m_connection, nullptr, nullptr);
    g_object_unref(m_connection);
}

void FakeService::callBus(const char* method, GVariant* arguments) {
    GError* error = nullptr;
    GVariant* answer = g_dbus_connection_call_sync(
        m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (answer == nullptr) {
        test::fail(error);
    }
    g_variant_unref(answer);
}

void FakeService::own() {
    callBus("RequestName", g_variant_new("(su)", BUS_NAME, 4U));
}

void FakeService::release() {
    callBus("ReleaseName", g_variant_new("(s)", BUS_NAME));
}

void FakeService::die() {
    // Without waiting, since a handler on the worker thread may call this.
    g_dbus_connection_close(m_connection, nullptr, nullptr, nullptr);
}

void FakeService::list(const std::string& objects) {
    answer("GetManagedObjects", "(@a{oa{sa{sv}}} " + objects + ",)");
}

void FakeService::add(const std::string& path, const std::string& interfaces) {
    emit("/zolt", MANAGER_INTERFACE, "InterfacesAdded",
         "(objectpath '" + path + "', @a{sa{sv}} " + interfaces + ")");
}

void FakeService::remove(const std::string& path, const std::string& interfaceName) {
    emit("/zolt", MANAGER_INTERFACE, "InterfacesRemoved",
         "(objectpath '" + path + "', ['" + interfaceName + "'])");
}

void FakeService::answer(const std::string& method, const std::string& body) {
    handle(method, [this, body](GDBusMessage* call) { reply(call, body); });
}

void FakeService::fail(const std::string& method, const std::string& error,
                       const std::string& message) {
    handle(method, [this, error, message](GDBusMessage* call) {
        send(g_dbus_message_new_method_error_literal(call, error.c_str(), message.c_str()));
    });
}

void FakeService::handle(const std::string& method, const Handler& handler) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_handlers[method] = handler;
}

void FakeService::reply(GDBusMessage* call, const std::string& body) {
    GDBusMessage* message = g_dbus_message_new_method_reply(call);
    GVariant* value = parse(body);
    g_dbus_message_set_body(message, value);
    g_variant_unref(value);
    send(message);
}

void FakeService::emit(const std::string& path, const std::string& interfaceName,
                       const std::string& signal, const std::string& body) {
    GVariant* value = parse(body);
    g_dbus_connection_emit_signal(m_connection, nullptr, path.c_str(), interfaceName.c_str(),
                                  signal.c_str(), value, nullptr);
    g_variant_unref(value);
}

void FakeService::sendEvent(int event, int reason) {
    emit("/zolt/gui", GUI_INTERFACE, "sendEvent",
         "(" + std::to_string(event) + ", " + std::to_string(reason) + ")");
}

std::vector<std::string> FakeService::calls() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_calls;
}

void FakeService::send(GDBusMessage* message) {
    g_dbus_connection_send_message(m_connection, message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                   nullptr);
    g_object_unref(message);
}

bool FakeService::take(GDBusMessage* message) {
    const std::string method = g_dbus_message_get_member(message);
    Handler handler;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (method != "GetManagedObjects") {
            GVariant* body = g_dbus_message_get_body(message);
            gchar* arguments = body != nullptr ? g_variant_print(body, FALSE) : g_strdup("()");
            m_calls.push_back(method + arguments);
            g_free(arguments);
        }
        const auto found = m_handlers.find(method);
        if (found == m_handlers.end()) {
            return false;
        }
        handler = found->second;
    }
    handler(message);
    return true;
}

GDBusMessage* FakeService::onMessage(GDBusConnection* /*connection*/, GDBusMessage* message,
                                     gboolean incoming, gpointer data) {
    const bool isCall = g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL;
    if (incoming == FALSE || !isCall || !static_cast<FakeService*>(data)->take(message)) {
        return message;
    }
    g_object_unref(message);
    return nullptr;
}

}  // namespace test
