// SPDX-License-Identifier: Apache-2.0
// The fixture of every test of the link: a private bus, and an empty log.
#include "BusTest.h"

#include "gdbus/GuiProxy.h"

namespace test {
namespace {

void startBus() {
    static const support::PrivateBus bus;
}

}  // namespace

void turn() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

bool turnUntil(const std::function<bool()>& condition) {
    return support::waitUntil(condition, support::DEADLINE, turn);
}

void BusTest::SetUp() {
    startBus();
    m_connection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    ASSERT_NE(m_connection, nullptr);
    // The bus may end before this process does.
    g_dbus_connection_set_exit_on_close(m_connection, FALSE);
    platform().reset();
}

void BusTest::TearDown() {
    turn();
    g_clear_object(&m_connection);
}

bool BusTest::logged(const std::string& message) {
    return platform().hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, message);
}

bool BusTest::warned(const std::string& message) {
    return platform().hasLine(LOG_ID_SYSTEM, DLOG_WARN, message);
}

void BusTest::settle(FakeService& service) {
    // Signals of one sender arrive in order, so all others have arrived when this one has.
    GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    bool arrived = false;
    const auto onMark = [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                           GVariant*, gpointer data) { *static_cast<bool*>(data) = true; };
    const guint subscription = g_dbus_connection_signal_subscribe(
        connection, nullptr, "org.example.Mark", "Mark", nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        onMark, &arrived, nullptr);
    // After a round trip the bus knows the subscription.
    GVariant* id = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "GetId", nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    g_variant_unref(id);
    service.emit("/mark", "org.example.Mark", "Mark", "()");
    EXPECT_TRUE(turnUntil([&] { return arrived; }));
    g_dbus_connection_signal_unsubscribe(connection, subscription);
    g_object_unref(connection);
}

void EventsTest::SetUp() {
    BusTest::SetUp();
    ZOLT::GuiProxy::m_sendEventCallback = [this](int event, int reason) {
        events.emplace_back(event, reason);
    };
}

void EventsTest::TearDown() {
    ZOLT::GuiProxy::m_sendEventCallback = nullptr;
    BusTest::TearDown();
}

BusWithDaemon::BusWithDaemon() {
    g_dbus_connection_set_exit_on_close(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr), FALSE);
    service.list(GUI_TREE);
    service.own();
}

}  // namespace test
