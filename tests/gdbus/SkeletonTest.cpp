// SPDX-License-Identifier: Apache-2.0
// Both sides of the generated layer talk to one another: skeletons answer, proxies call.
#include <cstdlib>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "BusTest.h"
#include "generated-code.h"

namespace test {
namespace {

constexpr const char* BUS_NAME = "org.tizen.GDBus.ZoltContent";
constexpr const char* MANAGER_PATH = "/zolt";
constexpr const char* OBJECT_PATH = "/zolt/both";

using Texts = std::vector<std::string>;

// What an asynchronous call came back with. Give its notify and itself to the call.
class Answer {
  public:
    Answer() = default;
    ~Answer() { g_clear_object(&m_result); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    static void notify(GObject* /*source*/, GAsyncResult* result, gpointer data) {
        static_cast<Answer*>(data)->m_result = static_cast<GAsyncResult*>(g_object_ref(result));
    }
    // Dispatches until it is there.
    GAsyncResult* wait() {
        EXPECT_TRUE(turnUntil([this] { return m_result != nullptr; }));
        return m_result;
    }

  private:
    GAsyncResult* m_result = nullptr;
};

// The message of ERROR, which is freed, or nothing.
std::string taken(GError* error) {
    std::string message = error != nullptr ? error->message : "";
    g_clear_error(&error);
    return message;
}

std::string taken(gchar* text) {
    std::string copy = text != nullptr ? text : "(null)";
    g_free(text);
    return copy;
}

// One connection serves an object with both skeletons, another has the proxies. Both are dispatched
// by the test's thread, so only calls that do not block can be made between them.
class Skeletons : public BusTest {
  protected:
    void SetUp() override {
        BusTest::SetUp();
        m_connection = g_dbus_connection_new_for_address_sync(
            std::getenv("DBUS_SYSTEM_BUS_ADDRESS"),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        ASSERT_NE(m_connection, nullptr);
        object = zolt_object_skeleton_new(OBJECT_PATH);
        zolt_object_skeleton_set_gui(object, gui);
        zolt_object_skeleton_set_screen_saver(object, saver);
        m_server = g_dbus_object_manager_server_new(MANAGER_PATH);
        g_dbus_object_manager_server_export(m_server, G_DBUS_OBJECT_SKELETON(object));
        g_dbus_object_manager_server_set_connection(m_server, m_connection);
        GVariant* owned = g_dbus_connection_call_sync(
            m_connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
            "RequestName", g_variant_new("(su)", BUS_NAME, 4U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
            nullptr, nullptr);
        ASSERT_NE(owned, nullptr);
        g_variant_unref(owned);
        // Proxies do not load properties, since that would ask this thread.
        guiProxy = zolt_gui_proxy_new_for_bus_sync(G_BUS_TYPE_SYSTEM, NO_PROPERTIES, BUS_NAME,
                                                   OBJECT_PATH, nullptr, nullptr);
        saverProxy = zolt_screen_saver_proxy_new_for_bus_sync(
            G_BUS_TYPE_SYSTEM, NO_PROPERTIES, BUS_NAME, OBJECT_PATH, nullptr, nullptr);
        ASSERT_NE(guiProxy, nullptr);
        ASSERT_NE(saverProxy, nullptr);
    }

    void TearDown() override {
        g_clear_object(&guiProxy);
        g_clear_object(&saverProxy);
        g_dbus_object_manager_server_set_connection(m_server, nullptr);
        g_dbus_connection_close_sync(m_connection, nullptr, nullptr);
        g_clear_object(&m_server);
        g_clear_object(&m_connection);
        g_clear_object(&object);
        g_clear_object(&gui);
        g_clear_object(&saver);
        BusTest::TearDown();
    }

    static constexpr auto NO_PROPERTIES = G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES;
    // One reference each, released in TearDown, as are those of the rest.
    ZOLTGUI* gui = zolt_gui_skeleton_new();
    ZOLTScreenSaver* saver = zolt_screen_saver_skeleton_new();
    ZOLTObjectSkeleton* object = nullptr;
    ZOLTGUI* guiProxy = nullptr;
    ZOLTScreenSaver* saverProxy = nullptr;

  private:
    GDBusConnection* m_connection = nullptr;
    GDBusObjectManagerServer* m_server = nullptr;
};

// A method without arguments, its signal on the skeleton and its four forms.
template <typename Side>
struct PlainMethod {
    const char* signal;
    void (*call)(Side*, GCancellable*, GAsyncReadyCallback, gpointer);
    gboolean (*finish)(Side*, GAsyncResult*, GError**);
    void (*complete)(Side*, GDBusMethodInvocation*);
};

template <typename Side, typename Given, typename Taken>
struct AskingMethod {
    const char* signal;
    void (*call)(Side*, GCancellable*, GAsyncReadyCallback, gpointer);
    gboolean (*finish)(Side*, Taken*, GAsyncResult*, GError**);
    void (*complete)(Side*, GDBusMethodInvocation*, Given);
    Given reply;
};

template <typename Side>
gboolean completePlain(Side* skeleton, GDBusMethodInvocation* invocation, gpointer method) {
    static_cast<const PlainMethod<Side>*>(method)->complete(skeleton, invocation);
    return TRUE;
}

template <typename Side, typename Given, typename Taken>
gboolean completeAsking(Side* skeleton, GDBusMethodInvocation* invocation, gpointer data) {
    const auto* method = static_cast<const AskingMethod<Side, Given, Taken>*>(data);
    method->complete(skeleton, invocation, method->reply);
    return TRUE;
}

template <typename Side>
void expectPlain(Side* skeleton, Side* proxy, PlainMethod<Side> method) {
    g_signal_connect(skeleton, method.signal, G_CALLBACK(completePlain<Side>), &method);
    Answer answer;
    method.call(proxy, nullptr, Answer::notify, &answer);
    GError* error = nullptr;
    EXPECT_TRUE(method.finish(proxy, answer.wait(), &error)) << method.signal;
    EXPECT_EQ(taken(error), "") << method.signal;
    g_signal_handlers_disconnect_by_data(skeleton, &method);
}

template <typename Side, typename Given, typename Taken>
Taken replyTo(Side* skeleton, Side* proxy, AskingMethod<Side, Given, Taken> method) {
    const auto handler = completeAsking<Side, Given, Taken>;
    g_signal_connect(skeleton, method.signal, G_CALLBACK(handler), &method);
    Answer answer;
    method.call(proxy, nullptr, Answer::notify, &answer);
    Taken reply{};
    GError* error = nullptr;
    EXPECT_TRUE(method.finish(proxy, &reply, answer.wait(), &error)) << method.signal;
    EXPECT_EQ(taken(error), "") << method.signal;
    g_signal_handlers_disconnect_by_data(skeleton, &method);
    return reply;
}

#define PLAIN(side, stem, signal) \
    { signal, side##_call_##stem, side##_call_##stem##_finish, side##_complete_##stem }
#define ASKING(side, stem, signal, reply) \
    { signal, side##_call_##stem, side##_call_##stem##_finish, side##_complete_##stem, reply }

TEST_F(Skeletons, GuiMethodsWithoutAResultReachTheirHandlersAndComeBack) {
    const PlainMethod<ZOLTGUI> methods[] = {
        PLAIN(zolt_gui, request_pincode, "handle-request-pincode"),
        PLAIN(zolt_gui, request_pincode_verification, "handle-request-pincode-verification"),
        PLAIN(zolt_gui, request_shop_info_list, "handle-request-shop-info-list"),
        PLAIN(zolt_gui, application_cancelled, "handle-application-cancelled"),
        PLAIN(zolt_gui, unregister, "handle-unregister"),
        PLAIN(zolt_gui, delete_registration_info, "handle-delete-registration-info"),
    };
    for (const auto& method : methods) {
        expectPlain(gui, guiProxy, method);
    }
}

TEST_F(Skeletons, GuiQuestionsComeBackWithWhatTheirHandlersGave) {
    using Asking = AskingMethod<ZOLTGUI, const gchar*, gchar*>;
    const Asking methods[] = {
        ASKING(zolt_gui, get_pincode, "handle-get-pincode", "1234"),
        ASKING(zolt_gui, get_shop_info_list, "handle-get-shop-info-list", ""),
        ASKING(zolt_gui, get_registered_shop_info, "handle-get-registered-shop-info", "<rsp/>"),
    };
    for (const auto& method : methods) {
        EXPECT_EQ(taken(replyTo(gui, guiProxy, method)), method.reply) << method.signal;
    }
    using Checking = AskingMethod<ZOLTGUI, gboolean, gboolean>;
    const Checking checks[] = {
        ASKING(zolt_gui, check_shop_registration, "handle-check-shop-registration", TRUE),
        ASKING(zolt_gui, check_shop_registration, "handle-check-shop-registration", FALSE),
        ASKING(zolt_gui, check_shop_mode, "handle-check-shop-mode", TRUE),
        ASKING(zolt_gui, check_shop_mode, "handle-check-shop-mode", FALSE),
    };
    for (const auto& check : checks) {
        EXPECT_EQ(replyTo(gui, guiProxy, check), check.reply) << check.signal;
    }
}

TEST_F(Skeletons, TheRegistrationDocumentReachesItsHandler) {
    const auto handler = +[](ZOLTGUI* skeleton, GDBusMethodInvocation* invocation,
                             const gchar* document, gpointer data) -> gboolean {
        *static_cast<std::string*>(data) = document;
        zolt_gui_complete_request_registration_shop_info(skeleton, invocation);
        return TRUE;
    };
    std::string document;
    g_signal_connect(gui, "handle-request-registration-shop-info", G_CALLBACK(handler), &document);
    Answer answer;
    zolt_gui_call_request_registration_shop_info(guiProxy, "<rsp stat=\"ok\"/>", nullptr,
                                                 Answer::notify, &answer);
    EXPECT_TRUE(
        zolt_gui_call_request_registration_shop_info_finish(guiProxy, answer.wait(), nullptr));
    EXPECT_EQ(document, "<rsp stat=\"ok\"/>");
}

TEST_F(Skeletons, ScreenSaverMethodsReachTheirHandlersAndComeBack) {
    expectPlain<ZOLTScreenSaver>(saver, saverProxy,
                                 PLAIN(zolt_screen_saver, ready, "handle-ready"));
    using Asking = AskingMethod<ZOLTScreenSaver, const gchar*, gchar*>;
    const Asking offset =
        ASKING(zolt_screen_saver, get_time_offset, "handle-get-time-offset", "+09:00");
    EXPECT_EQ(taken(replyTo(saver, saverProxy, offset)), "+09:00");
}

// Handles a method with two texts and notes them; DATA is Texts.
template <void (*complete)(ZOLTScreenSaver*, GDBusMethodInvocation*)>
gboolean noteTwo(ZOLTScreenSaver* skeleton, GDBusMethodInvocation* invocation, const gchar* first,
                 const gchar* second, gpointer data) {
    static_cast<Texts*>(data)->insert(static_cast<Texts*>(data)->end(), {first, second});
    complete(skeleton, invocation);
    return TRUE;
}

TEST_F(Skeletons, LogsOfTheScreenSaverReachTheirHandlersWithBothTexts) {
    Texts texts;
    const auto onLog = noteTwo<zolt_screen_saver_complete_send_log>;
    const auto onErrorLog = noteTwo<zolt_screen_saver_complete_send_error_log>;
    g_signal_connect(saver, "handle-send-log", G_CALLBACK(onLog), &texts);
    g_signal_connect(saver, "handle-send-error-log", G_CALLBACK(onErrorLog), &texts);
    Answer log;
    zolt_screen_saver_call_send_log(saverProxy, "start", "end", nullptr, Answer::notify, &log);
    EXPECT_TRUE(zolt_screen_saver_call_send_log_finish(saverProxy, log.wait(), nullptr));
    Answer errorLog;
    zolt_screen_saver_call_send_error_log(saverProxy, "7", "", nullptr, Answer::notify, &errorLog);
    EXPECT_TRUE(zolt_screen_saver_call_send_error_log_finish(saverProxy, errorLog.wait(), nullptr));
    EXPECT_EQ(texts, (Texts{"start", "end", "7", ""}));
}

TEST_F(Skeletons, AMethodWithoutAHandlerIsAnsweredAsNotImplemented) {
    Answer pincode;
    zolt_gui_call_get_pincode(guiProxy, nullptr, Answer::notify, &pincode);
    gchar* reply = nullptr;
    GError* error = nullptr;
    EXPECT_FALSE(zolt_gui_call_get_pincode_finish(guiProxy, &reply, pincode.wait(), &error));
    EXPECT_EQ(taken(error),
              "GDBus.Error:org.freedesktop.DBus.Error.UnknownMethod: Method getPincode is not "
              "implemented on interface org.tizen.GDBus.ZoltContent.GUI");
    EXPECT_EQ(reply, nullptr);
    Answer ready;
    zolt_screen_saver_call_ready(saverProxy, nullptr, Answer::notify, &ready);
    error = nullptr;
    EXPECT_FALSE(zolt_screen_saver_call_ready_finish(saverProxy, ready.wait(), &error));
    EXPECT_EQ(taken(error),
              "GDBus.Error:org.freedesktop.DBus.Error.UnknownMethod: Method ready is not "
              "implemented on interface org.tizen.GDBus.ZoltContent.ScreenSaver");
}

TEST_F(Skeletons, AnyPropertyIsRefused) {
    Answer answer;
    g_dbus_proxy_call(G_DBUS_PROXY(guiProxy), "org.freedesktop.DBus.Properties.Get",
                      g_variant_new("(ss)", GUI_INTERFACE, "Any"), G_DBUS_CALL_FLAGS_NONE, -1,
                      nullptr, Answer::notify, &answer);
    GError* error = nullptr;
    EXPECT_EQ(g_dbus_proxy_call_finish(G_DBUS_PROXY(guiProxy), answer.wait(), &error), nullptr);
    EXPECT_NE(taken(error), "");
}

TEST_F(Skeletons, EmittedSignalsReachTheProxiesUnchanged) {
    using Numbers = std::vector<std::tuple<int, int>>;
    Numbers events;
    std::vector<int> requests;
    Texts paths;
    const auto onEvent = +[](ZOLTGUI*, gint event, gint reason, gpointer data) {
        static_cast<Numbers*>(data)->emplace_back(event, reason);
    };
    const auto onRequest = +[](ZOLTScreenSaver*, gint event, gpointer data) {
        static_cast<std::vector<int>*>(data)->push_back(event);
    };
    const auto onPath = +[](ZOLTScreenSaver*, const gchar* path, gpointer data) {
        static_cast<Texts*>(data)->emplace_back(path);
    };
    g_signal_connect(guiProxy, "send-event", G_CALLBACK(onEvent), &events);
    g_signal_connect(saverProxy, "send-request", G_CALLBACK(onRequest), &requests);
    g_signal_connect(saverProxy, "set-content-path", G_CALLBACK(onPath), &paths);
    zolt_gui_emit_send_event(gui, 1, 9);
    zolt_gui_emit_send_event(gui, G_MININT, G_MAXINT);
    zolt_screen_saver_emit_send_request(saver, G_MININT);
    const std::string longest(1000000, 'p');
    zolt_screen_saver_emit_set_content_path(saver, "");
    zolt_screen_saver_emit_set_content_path(saver, longest.c_str());
    EXPECT_TRUE(turnUntil([&] { return paths.size() == 2; }));
    EXPECT_EQ(events, (Numbers{{1, 9}, {G_MININT, G_MAXINT}}));
    EXPECT_EQ(requests, std::vector<int>{G_MININT});
    EXPECT_EQ(paths, (Texts{"", longest}));
}

TEST_F(Skeletons, AnObjectGivesItsInterfacesUntilTheyAreTakenAway) {
    ZOLTObject* tree = ZOLT_OBJECT(object);
    EXPECT_EQ(zolt_object_peek_gui(tree), gui);
    EXPECT_EQ(zolt_object_peek_screen_saver(tree), saver);
    ZOLTGUI* ownGui = zolt_object_get_gui(tree);
    ZOLTScreenSaver* ownSaver = zolt_object_get_screen_saver(tree);
    EXPECT_EQ(ownGui, gui);
    EXPECT_EQ(ownSaver, saver);
    zolt_object_skeleton_set_gui(object, nullptr);
    zolt_object_skeleton_set_screen_saver(object, nullptr);
    EXPECT_EQ(zolt_object_peek_gui(tree), nullptr);
    EXPECT_EQ(zolt_object_get_screen_saver(tree), nullptr);
    g_object_unref(ownGui);
    g_object_unref(ownSaver);
}

// The types of the one object's interfaces as MANAGER has them.
void expectTypedProxies(GDBusObjectManager* manager) {
    ASSERT_NE(manager, nullptr);
    EXPECT_TRUE(ZOLT_IS_OBJECT_MANAGER_CLIENT(manager));
    GDBusObject* found = g_dbus_object_manager_get_object(manager, OBJECT_PATH);
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(ZOLT_IS_OBJECT_PROXY(found));
    EXPECT_TRUE(ZOLT_IS_GUI_PROXY(zolt_object_peek_gui(ZOLT_OBJECT(found))));
    EXPECT_TRUE(ZOLT_IS_SCREEN_SAVER_PROXY(zolt_object_peek_screen_saver(ZOLT_OBJECT(found))));
    g_object_unref(found);
    g_object_unref(manager);
}

TEST_F(Skeletons, AnObjectManagerMadeInTheBackgroundHasTypedProxies) {
    GDBusConnection* connection = g_dbus_proxy_get_connection(G_DBUS_PROXY(guiProxy));
    constexpr auto NO_FLAGS = G_DBUS_OBJECT_MANAGER_CLIENT_FLAGS_NONE;
    Answer plain;
    zolt_object_manager_client_new(connection, NO_FLAGS, BUS_NAME, MANAGER_PATH, nullptr,
                                   Answer::notify, &plain);
    expectTypedProxies(zolt_object_manager_client_new_finish(plain.wait(), nullptr));
    Answer forBus;
    zolt_object_manager_client_new_for_bus(G_BUS_TYPE_SYSTEM, NO_FLAGS, BUS_NAME, MANAGER_PATH,
                                           nullptr, Answer::notify, &forBus);
    expectTypedProxies(zolt_object_manager_client_new_for_bus_finish(forBus.wait(), nullptr));
}

TEST_F(Skeletons, ProxiesMadeInTheBackgroundAreThoseOfTheLayer) {
    GDBusConnection* connection = g_dbus_proxy_get_connection(G_DBUS_PROXY(guiProxy));
    Answer answers[4];
    zolt_gui_proxy_new(connection, NO_PROPERTIES, BUS_NAME, OBJECT_PATH, nullptr, Answer::notify,
                       &answers[0]);
    zolt_gui_proxy_new_for_bus(G_BUS_TYPE_SYSTEM, NO_PROPERTIES, BUS_NAME, OBJECT_PATH, nullptr,
                               Answer::notify, &answers[1]);
    zolt_screen_saver_proxy_new(connection, NO_PROPERTIES, BUS_NAME, OBJECT_PATH, nullptr,
                                Answer::notify, &answers[2]);
    zolt_screen_saver_proxy_new_for_bus(G_BUS_TYPE_SYSTEM, NO_PROPERTIES, BUS_NAME, OBJECT_PATH,
                                        nullptr, Answer::notify, &answers[3]);
    GObject* proxies[] = {
        G_OBJECT(zolt_gui_proxy_new_finish(answers[0].wait(), nullptr)),
        G_OBJECT(zolt_gui_proxy_new_for_bus_finish(answers[1].wait(), nullptr)),
        G_OBJECT(zolt_screen_saver_proxy_new_finish(answers[2].wait(), nullptr)),
        G_OBJECT(zolt_screen_saver_proxy_new_for_bus_finish(answers[3].wait(), nullptr)),
        G_OBJECT(zolt_gui_proxy_new_sync(connection, NO_PROPERTIES, BUS_NAME, OBJECT_PATH, nullptr,
                                         nullptr)),
        G_OBJECT(zolt_screen_saver_proxy_new_sync(connection, NO_PROPERTIES, BUS_NAME, OBJECT_PATH,
                                                  nullptr, nullptr)),
        G_OBJECT(zolt_object_proxy_new(connection, OBJECT_PATH)),
    };
    const GType types[] = {ZOLT_TYPE_GUI_PROXY,          ZOLT_TYPE_GUI_PROXY,
                           ZOLT_TYPE_SCREEN_SAVER_PROXY, ZOLT_TYPE_SCREEN_SAVER_PROXY,
                           ZOLT_TYPE_GUI_PROXY,          ZOLT_TYPE_SCREEN_SAVER_PROXY,
                           ZOLT_TYPE_OBJECT_PROXY};
    for (size_t index = 0; index < std::size(proxies); ++index) {
        ASSERT_NE(proxies[index], nullptr) << index;
        EXPECT_EQ(G_OBJECT_TYPE(proxies[index]), types[index]) << index;
        g_object_unref(proxies[index]);
    }
}

// Blocking calls need a service that answers on a thread of its own.
class BlockingForms : public BusTest {
  protected:
    void SetUp() override {
        BusTest::SetUp();
        service = std::make_unique<FakeService>();
        service->list(std::string("{'") + OBJECT_PATH + "': {'" + GUI_INTERFACE + "': {}, '" +
                      SCREEN_SAVER_INTERFACE + "': {}}}");
        service->own();
        saver = zolt_screen_saver_proxy_new_for_bus_sync(G_BUS_TYPE_SYSTEM,
                                                         G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES,
                                                         BUS_NAME, OBJECT_PATH, nullptr, nullptr);
        ASSERT_NE(saver, nullptr);
    }
    void TearDown() override {
        g_clear_object(&saver);
        service.reset();
        BusTest::TearDown();
    }

    std::unique_ptr<FakeService> service;
    ZOLTScreenSaver* saver = nullptr;  // one reference, released in TearDown
};

TEST_F(BlockingForms, ScreenSaverCallsReachTheirMethods) {
    service->answer("ready", "()");
    service->answer("getTimeOffset", "('-03:30',)");
    service->answer("sendLog", "()");
    service->answer("sendErrorLog", "()");
    gchar* offset = nullptr;
    EXPECT_TRUE(zolt_screen_saver_call_ready_sync(saver, nullptr, nullptr));
    EXPECT_TRUE(zolt_screen_saver_call_get_time_offset_sync(saver, &offset, nullptr, nullptr));
    EXPECT_EQ(taken(offset), "-03:30");
    EXPECT_TRUE(zolt_screen_saver_call_send_log_sync(saver, "a", "b", nullptr, nullptr));
    EXPECT_TRUE(zolt_screen_saver_call_send_error_log_sync(saver, "c", "d", nullptr, nullptr));
    EXPECT_EQ(service->calls(),
              (Texts{"ready()", "getTimeOffset()", "sendLog('a', 'b')", "sendErrorLog('c', 'd')"}));
}

TEST_F(BlockingForms, AnObjectManagerHasTypedProxies) {
    GDBusConnection* connection = g_dbus_proxy_get_connection(G_DBUS_PROXY(saver));
    constexpr auto NO_FLAGS = G_DBUS_OBJECT_MANAGER_CLIENT_FLAGS_NONE;
    expectTypedProxies(zolt_object_manager_client_new_sync(connection, NO_FLAGS, BUS_NAME,
                                                           MANAGER_PATH, nullptr, nullptr));
    expectTypedProxies(zolt_object_manager_client_new_for_bus_sync(
        G_BUS_TYPE_SYSTEM, NO_FLAGS, BUS_NAME, MANAGER_PATH, nullptr, nullptr));
}

TEST(Layer, TypesHaveTheirNames) {
    const std::tuple<GType, const char*> types[] = {
        {ZOLT_TYPE_GUI, "ZOLTGUI"},
        {ZOLT_TYPE_GUI_PROXY, "ZOLTGUIProxy"},
        {ZOLT_TYPE_GUI_SKELETON, "ZOLTGUISkeleton"},
        {ZOLT_TYPE_SCREEN_SAVER, "ZOLTScreenSaver"},
        {ZOLT_TYPE_SCREEN_SAVER_PROXY, "ZOLTScreenSaverProxy"},
        {ZOLT_TYPE_SCREEN_SAVER_SKELETON, "ZOLTScreenSaverSkeleton"},
        {ZOLT_TYPE_OBJECT, "ZOLTObject"},
        {ZOLT_TYPE_OBJECT_PROXY, "ZOLTObjectProxy"},
        {ZOLT_TYPE_OBJECT_SKELETON, "ZOLTObjectSkeleton"},
        {ZOLT_TYPE_OBJECT_MANAGER_CLIENT, "ZOLTObjectManagerClient"},
    };
    for (const auto& [type, name] : types) {
        EXPECT_STREQ(g_type_name(type), name);
    }
}

// The names of all signals of TYPE in the order of their making.
Texts signalsOf(GType type) {
    gpointer interface = g_type_default_interface_ref(type);
    guint count = 0;
    guint* ids = g_signal_list_ids(type, &count);
    Texts names;
    for (guint index = 0; index < count; ++index) {
        names.emplace_back(g_signal_name(ids[index]));
    }
    g_free(ids);
    g_type_default_interface_unref(interface);
    return names;
}

TEST(Layer, SkeletonSignalsHaveTheirNames) {
    EXPECT_EQ(signalsOf(ZOLT_TYPE_GUI),
              (Texts{"handle-request-pincode", "handle-get-pincode",
                     "handle-request-pincode-verification", "handle-check-shop-registration",
                     "handle-request-shop-info-list", "handle-get-shop-info-list",
                     "handle-request-registration-shop-info", "handle-get-registered-shop-info",
                     "handle-check-shop-mode", "handle-application-cancelled", "handle-unregister",
                     "handle-delete-registration-info", "send-event"}));
    EXPECT_EQ(signalsOf(ZOLT_TYPE_SCREEN_SAVER),
              (Texts{"handle-ready", "handle-get-time-offset", "handle-send-log",
                     "handle-send-error-log", "send-request", "set-content-path"}));
}

TEST(Layer, ObjectsHaveAPropertyForEachInterface) {
    // GLib keeps the properties of interfaces in a pool that its first object class makes.
    gpointer objects = g_type_class_ref(G_TYPE_OBJECT);
    gpointer interface = g_type_default_interface_ref(ZOLT_TYPE_OBJECT);
    for (const char* name : {"gui", "screen-saver"}) {
        EXPECT_NE(g_object_interface_find_property(interface, name), nullptr) << name;
    }
    g_type_default_interface_unref(interface);
    g_type_class_unref(objects);
}

TEST(Layer, ThereAreNoPropertiesToOverride) {
    gpointer type = g_type_class_ref(ZOLT_TYPE_GUI_SKELETON);
    EXPECT_EQ(zolt_gui_override_properties(G_OBJECT_CLASS(type), 5), 4U);
    EXPECT_EQ(zolt_screen_saver_override_properties(G_OBJECT_CLASS(type), 5), 4U);
    g_type_class_unref(type);
}

}  // namespace
}  // namespace test
