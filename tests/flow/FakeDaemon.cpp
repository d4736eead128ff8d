// SPDX-License-Identifier: Apache-2.0
// A daemon in the test's own process with answers set by the test.
#include "flow/FakeDaemon.h"

#include "support/PrivateBus.h"

namespace flow {

namespace {

struct RunningBus {
    RunningBus() {
        // The bus ends before the connection that GLib keeps for the process. Without this GLib
        // would end the process then.
        GDBusConnection* const shared = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
        g_dbus_connection_set_exit_on_close(shared, FALSE);
        g_object_unref(shared);
    }

    support::PrivateBus bus;
};

// TEXT as a tuple in GVariant text format.
std::string bodyOf(const std::string& text) {
    GVariant* const value = g_variant_ref_sink(g_variant_new("(s)", text.c_str()));
    gchar* const printed = g_variant_print(value, FALSE);
    std::string body = printed;
    g_free(printed);
    g_variant_unref(value);
    return body;
}

}  // namespace

void startBus() {
    static const RunningBus bus;
}

FakeDaemon::FakeDaemon() {
    for (const char* method : {"requestPincode", "requestPincodeVerification",
                               "requestShopInfoList", "requestRegistrationShopInfo",
                               "applicationCancelled", "unregister", "deleteRegistrationInfo"}) {
        m_service.answer(method, "()");
    }
    for (const char* method : {"getPincode", "getShopInfoList", "getRegisteredShopInfo"}) {
        answer(method, "");
    }
    setRegistered(false);
    m_service.list(test::GUI_TREE);
    m_service.own();
}

void FakeDaemon::answer(const std::string& method, const std::string& text) {
    m_service.answer(method, bodyOf(text));
}

void FakeDaemon::setRegistered(bool registered) {
    m_service.answer("checkShopRegistration", registered ? "(true,)" : "(false,)");
}

void FakeDaemon::fail(const std::string& method, const std::string& message) {
    m_service.fail(method, "org.freedesktop.DBus.Error.Failed", message);
}

std::vector<std::string> FakeDaemon::takeCalls() {
    std::vector<std::string> names;
    const std::vector<std::string> calls = m_service.calls();
    for (; m_taken < calls.size(); ++m_taken) {
        names.push_back(calls[m_taken].substr(0, calls[m_taken].find('(')));
    }
    return names;
}

std::string FakeDaemon::registrationDocument() {
    const std::string name = "requestRegistrationShopInfo";
    std::string document;
    for (const std::string& call : m_service.calls()) {
        if (call.compare(0, name.size(), name) == 0) {
            GVariant* const arguments = g_variant_parse(
                G_VARIANT_TYPE("(s)"), call.c_str() + name.size(), nullptr, nullptr, nullptr);
            const char* text = nullptr;
            g_variant_get(arguments, "(&s)", &text);
            document = text;
            g_variant_unref(arguments);
        }
    }
    return document;
}

}  // namespace flow
