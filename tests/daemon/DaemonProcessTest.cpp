// SPDX-License-Identifier: Apache-2.0
// The daemon as a process, through the generated proxies.
#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "generated-code.h"
#include "support/PrivateBus.h"
#include "support/TestSupport.h"

namespace standin {
namespace {

using Events = std::vector<std::tuple<int, int>>;
using support::StandInDaemon;

const char* const FAST = "[daemon]\ndelay=1\n[requestPincodeVerification]\ndelay=1\n";
const char* const DOCUMENT =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rsp stat=\"ok\">"
    "<list level=\"1\" name=\"Chain\" is_fix=\"Y\" is_sub=\"Y\">"
    "<sub_list name=\"Orchard TV Centre\" code=\"03\" /></list>"
    "<list level=\"2\" name=\"Shop\" is_fix=\"Y\" is_sub=\"N\">"
    "<sub_list name=\"Marble Arch\" code=\"0301\" /></list></rsp>";

void turn() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

// A client of the daemon on the bus at ADDRESS.
class Client {
  public:
    explicit Client(const std::string& address) {
        m_connection = g_dbus_connection_new_for_address_sync(
            address.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        m_proxy = zolt_gui_proxy_new_sync(m_connection, G_DBUS_PROXY_FLAGS_NONE,
                                          StandInDaemon::busName(), "/zolt/gui", nullptr, nullptr);
        g_signal_connect(m_proxy, "send-event", G_CALLBACK(onEvent), this);
    }
    ~Client() {
        g_object_unref(m_proxy);
        g_object_unref(m_connection);
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    ZOLTGUI* proxy() const { return m_proxy; }
    GDBusConnection* connection() const { return m_connection; }

    using VoidCall = gboolean (*)(ZOLTGUI*, GCancellable*, GError**);
    using TextCall = gboolean (*)(ZOLTGUI*, gchar**, GCancellable*, GError**);
    using TruthCall = gboolean (*)(ZOLTGUI*, gboolean*, GCancellable*, GError**);

    // Each returns the reply or the error's message; a boolean reply is "yes" or "no".
    std::string call(VoidCall method) const {
        GError* error = nullptr;
        method(m_proxy, nullptr, &error);
        return outcome(error, "");
    }
    std::string call(TextCall method) const {
        GError* error = nullptr;
        gchar* reply = nullptr;
        method(m_proxy, &reply, nullptr, &error);
        const std::string text = reply != nullptr ? reply : "";
        g_free(reply);
        return outcome(error, text);
    }
    std::string call(TruthCall method) const {
        GError* error = nullptr;
        gboolean reply = FALSE;
        method(m_proxy, &reply, nullptr, &error);
        return outcome(error, reply != FALSE ? "yes" : "no");
    }
    std::string registerShop(const std::string& document) const {
        GError* error = nullptr;
        zolt_gui_call_request_registration_shop_info_sync(m_proxy, document.c_str(), nullptr,
                                                          &error);
        return outcome(error, "");
    }
    bool waitForEvents(size_t count) const {
        return support::waitUntil([&] { return events.size() >= count; }, support::DEADLINE, turn);
    }

    // A proxy keeps calling the owner it knows until it is notified of a change.
    bool waitForOwner(bool present) const {
        return support::waitUntil(
            [&] {
                gchar* owner = g_dbus_proxy_get_name_owner(G_DBUS_PROXY(m_proxy));
                const bool known = owner != nullptr;
                g_free(owner);
                return known == present;
            },
            support::DEADLINE, turn);
    }

    Events events;

  private:
    static void onEvent(ZOLTGUI* /*proxy*/, gint event, gint reason, gpointer data) {
        static_cast<Client*>(data)->events.emplace_back(event, reason);
    }
    static std::string outcome(GError* error, const std::string& reply) {
        if (error == nullptr) {
            return reply;
        }
        std::string message = error->message;
        g_error_free(error);
        return message;
    }

    GDBusConnection* m_connection = nullptr;  // one reference each, released in the destructor
    ZOLTGUI* m_proxy = nullptr;
};

class DaemonProcess : public ::testing::Test {
  protected:
    void start(const std::string& scenario) {
        daemon = std::make_unique<StandInDaemon>(scenario);
        daemon->start();
        client = std::make_unique<Client>(bus.address());
    }
    std::string dataFile(const std::string& name) const {
        return daemon->folder().file("data/" + name);
    }

    support::PrivateBus bus;
    std::unique_ptr<StandInDaemon> daemon;
    std::unique_ptr<Client> client;
};

TEST_F(DaemonProcess, PlaysTheOrdinaryRegistrationFromThePinToTheEnd) {
    start(std::string(FAST) + "[requestShopInfoList]\ndelay=0\n");
    EXPECT_EQ(client->call(zolt_gui_call_request_pincode_sync), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "no");
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "48201573");
    EXPECT_EQ(client->call(zolt_gui_call_request_pincode_verification_sync), "");
    ASSERT_TRUE(client->waitForEvents(2));
    EXPECT_EQ(client->call(zolt_gui_call_request_shop_info_list_sync), "");
    ASSERT_TRUE(client->waitForEvents(3));
    EXPECT_NE(client->call(zolt_gui_call_get_shop_info_list_sync).find("United Kingdom"),
              std::string::npos);
    const std::string document =
        "<rsp><list level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"Y\">"
        "<sub_list name=\"United Kingdom\" code=\"01\"/></list>"
        "<list level=\"2\" name=\"Region\" is_fix=\"Y\" is_sub=\"Y\">"
        "<sub_list name=\"Northern Ireland\" code=\"0106\"/></list>"
        "<list level=\"3\" name=\"City\" is_fix=\"Y\" is_sub=\"Y\">"
        "<sub_list name=\"Belfast\" code=\"010601\"/></list>"
        "<list level=\"4\" name=\"Shop\" is_fix=\"Y\" is_sub=\"N\">"
        "<sub_list name=\"Halden Electric, Donegall Place\" code=\"01060101\"/></list></rsp>";
    EXPECT_EQ(client->registerShop(document), "");
    ASSERT_TRUE(client->waitForEvents(4));
    EXPECT_EQ(client->events, (Events{{0, 0}, {0, 1}, {0, 2}, {0, 3}}));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "yes");
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), document);
}

TEST_F(DaemonProcess, SaysThatTheSetIsInShopMode) {
    start(FAST);
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_mode_sync), "yes");
}

TEST_F(DaemonProcess, KeepsARegistrationOverARestartUntilItIsEnded) {
    start(std::string("[daemon]\nshops=two-levels\ndelay=1\n"));
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), "null");
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_TRUE(support::fileExists(dataFile("registered")));
    EXPECT_EQ(support::readFile(dataFile("registered.xml")), DOCUMENT);

    EXPECT_EQ(daemon->stop(), 0);
    ASSERT_TRUE(client->waitForOwner(false));
    daemon->start();
    ASSERT_TRUE(client->waitForOwner(true));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "yes");
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), DOCUMENT);

    EXPECT_EQ(client->call(zolt_gui_call_unregister_sync), "");
    ASSERT_TRUE(client->waitForEvents(2));
    EXPECT_EQ(client->events, (Events{{0, 3}, {0, 4}}));
    EXPECT_FALSE(support::fileExists(dataFile("registered")));
    EXPECT_FALSE(support::fileExists(dataFile("registered.xml")));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "no");
}

TEST_F(DaemonProcess, DeletesTheRegistrationOnRequest) {
    start("[daemon]\nshops=two-levels\ndelay=1\n");
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->call(zolt_gui_call_delete_registration_info_sync), "");
    ASSERT_TRUE(client->waitForEvents(2));
    EXPECT_EQ(client->events.back(), std::make_tuple(0, 12));
    EXPECT_FALSE(support::fileExists(dataFile("registered")));
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), "null");
}

TEST_F(DaemonProcess, KeepsTheDocumentBesideARegistrationFileElsewhereAndInTheDataFolder) {
    const support::TemporaryFolder elsewhere;
    daemon = std::make_unique<StandInDaemon>("[daemon]\nshops=two-levels\ndelay=1\n");
    daemon->folder().write("config.xml", "<c><i name=\"ShopRegistrationFilePath\">" +
                                             elsewhere.file("deep/flag") + "</i></c>");
    daemon->start();
    client = std::make_unique<Client>(bus.address());
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_TRUE(support::fileExists(elsewhere.file("deep/flag")));
    EXPECT_EQ(support::readFile(elsewhere.file("deep/registered.xml")), DOCUMENT);
    EXPECT_EQ(support::readFile(dataFile("registered.xml")), DOCUMENT);
    EXPECT_EQ(client->call(zolt_gui_call_unregister_sync), "");
    ASSERT_TRUE(client->waitForEvents(2));
    EXPECT_FALSE(support::fileExists(elsewhere.file("deep/flag")));
    EXPECT_FALSE(support::fileExists(elsewhere.file("deep/registered.xml")));
    EXPECT_FALSE(support::fileExists(dataFile("registered.xml")));
}

TEST_F(DaemonProcess, RefusesAWrongDocumentWithItsOwnErrorAndKeepsNothing) {
    start("[daemon]\nshops=two-levels\ndelay=1\n");
    std::string wrong = DOCUMENT;
    wrong.replace(wrong.find("0301"), 4, "0302");
    EXPECT_EQ(client->registerShop(wrong),
              "GDBus.Error:org.tizen.GDBus.ZoltContent.Error.InvalidDocument: The registration "
              "document is refused: level 2: there is no \"Marble Arch\" with code \"0302\"");
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->events, (Events{{0, 3}})) << "no event followed the wrong one";
}

TEST_F(DaemonProcess, TakesARegistrationFromTheListThatItServedLast) {
    const support::TemporaryFolder lists;
    const std::string list =
        lists.write("list.xml",
                    "<rsp stat=\"ok\"><list level=\"1\" name=\"Chain\" is_fix=\"Y\" is_sub=\"Y\">"
                    "<sub_list name=\"Orchard TV Centre\" code=\"03\"/></list>"
                    "<list level=\"2\" name=\"Shop\" is_fix=\"Y\" is_sub=\"N\">"
                    "<sub_list name=\"Marble Arch\" code=\"0301\"/></list></rsp>");
    start("[daemon]\nshops=one-shop\ndelay=1\n[getShopInfoList]\nfirst=1\nreply-file=" + list +
          "\n");
    const std::string refusal = client->registerShop(DOCUMENT);
    EXPECT_NE(refusal.find("InvalidDocument"), std::string::npos) << "nothing was served yet";
    EXPECT_NE(client->call(zolt_gui_call_get_shop_info_list_sync).find("Marble Arch"),
              std::string::npos);
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_NE(client->call(zolt_gui_call_get_shop_info_list_sync).find("Harbour Electric"),
              std::string::npos);
    EXPECT_EQ(client->registerShop(DOCUMENT), refusal);
}

TEST_F(DaemonProcess, KeepsNothingOfARegistrationThatItCannotWriteWhole) {
    start("[daemon]\nshops=two-levels\ndelay=1\n");
    daemon->folder().write("data/registered/in-the-way", "");
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->events, (Events{{1, 5}}));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "no");
    EXPECT_FALSE(support::fileExists(dataFile("registered.xml")));
}

TEST_F(DaemonProcess, HasNoShopToTellWhenTheDocumentKeptIsNoText) {
    start(FAST);
    daemon->folder().write("data/registered.xml", "caf\xe9");
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), "null");
    EXPECT_EQ(daemon->count("fault " + dataFile("registered.xml") + " is not UTF-8"), 1);
}

TEST_F(DaemonProcess, TellsARegistrationThatItCannotWriteAsAnUnstableNetwork) {
    daemon = std::make_unique<StandInDaemon>("[daemon]\nshops=two-levels\ndelay=1\n");
    daemon->folder().write("config.xml",
                           "<c><i name=\"ShopRegistrationFilePath\">/proc/none/flag</i></c>");
    daemon->start();
    client = std::make_unique<Client>(bus.address());
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->events, (Events{{1, 5}}));
}

TEST_F(DaemonProcess, WritesOneLineForEachCallReplyErrorAndEvent) {
    start("[daemon]\nshops=two-levels\ndelay=1\n[getPincode]\nerror=org.example.Error.No\n");
    client->call(zolt_gui_call_request_pincode_sync);
    ASSERT_TRUE(client->waitForEvents(1));
    client->call(zolt_gui_call_get_pincode_sync);
    client->registerShop(DOCUMENT);
    ASSERT_TRUE(client->waitForEvents(2));
    client->registerShop("two\nlines \\");
    client->call(zolt_gui_call_get_shop_info_list_sync);
    client->call(zolt_gui_call_application_cancelled_sync);
    const pid_t process = daemon->program().pid();
    daemon->stop();
    const std::string refused =
        "error requestRegistrationShopInfo org.tizen.GDBus.ZoltContent.Error.InvalidDocument The "
        "registration document is refused: it is not well-formed XML";
    std::vector<std::string> lines = daemon->journal();
    ASSERT_EQ(lines.size(), 18U);
    EXPECT_EQ(lines[0], "process " + std::to_string(process));
    lines.erase(lines.begin());
    EXPECT_EQ(lines[12].rfind("reply getShopInfoList ", 0), 0U);
    lines.erase(lines.begin() + 12);
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "start org.tizen.GDBus.ZoltContent", "call requestPincode",
                         "reply requestPincode", "event 0 0", "call getPincode",
                         "error getPincode org.example.Error.No Told to fail by the scenario",
                         std::string("call requestRegistrationShopInfo ") + DOCUMENT,
                         "reply requestRegistrationShopInfo", "event 0 3",
                         "call requestRegistrationShopInfo two\\nlines \\\\", refused,
                         "call getShopInfoList", "call applicationCancelled",
                         "reply applicationCancelled", "cancelled 0", "end asked to end"}));
}

TEST_F(DaemonProcess, StampsEachLineWithTheTime) {
    start(FAST);
    const std::string text = support::readFile(daemon->folder().file("daemon.log"));
    const std::string time = text.substr(0, text.find(' '));
    EXPECT_EQ(time.size(), std::string("2016-05-13T08:33:22.123Z").size()) << text;
    EXPECT_EQ(time.back(), 'Z');
}

TEST_F(DaemonProcess, DropsWhatIsDueWhenTheUserLeaves) {
    start("[daemon]\ndelay=3600000\n[requestShopInfoList]\ndelay=1\n");
    client->call(zolt_gui_call_request_pincode_sync);
    client->call(zolt_gui_call_application_cancelled_sync);
    EXPECT_TRUE(daemon->waitFor("cancelled 1"));
}

TEST_F(DaemonProcess, HoldsEveryEventUntilItIsReleased) {
    start("[daemon]\nhold=true\ndelay=1\n[requestPincode]\nevents=1:7\n");
    client->call(zolt_gui_call_request_pincode_sync);
    EXPECT_TRUE(daemon->waitFor("held requestPincode", 2));
    daemon->program().signal(SIGUSR1);
    EXPECT_TRUE(daemon->waitFor("event 1 7"));
    EXPECT_EQ(daemon->count("event 0 0"), 0);
    daemon->program().signal(SIGUSR1);
    EXPECT_TRUE(daemon->waitFor("event 0 0"));
    daemon->program().signal(SIGUSR1);
    EXPECT_TRUE(daemon->waitFor("nothing-due"));
    client->call(zolt_gui_call_request_pincode_sync);
    client->call(zolt_gui_call_application_cancelled_sync);
    EXPECT_TRUE(daemon->waitFor("cancelled 2"));
}

TEST_F(DaemonProcess, HoldsTheEventsOfOneMethodAndSendsThoseOfTheOthers) {
    start("[daemon]\ndelay=1\n[requestPincode]\nhold=true\nfirst=1\n");
    client->call(zolt_gui_call_request_pincode_sync);
    EXPECT_TRUE(daemon->waitFor("held requestPincode"));
    client->call(zolt_gui_call_request_shop_info_list_sync);
    ASSERT_TRUE(client->waitForEvents(1));
    daemon->program().signal(SIGUSR1);
    ASSERT_TRUE(client->waitForEvents(2));
    client->call(zolt_gui_call_request_pincode_sync);
    ASSERT_TRUE(client->waitForEvents(3));
    EXPECT_EQ(client->events, (Events{{0, 2}, {0, 0}, {0, 0}}));
    EXPECT_EQ(daemon->count("held requestPincode"), 1);
}

TEST_F(DaemonProcess, DoesNotFindASetInTheLocalNetworkWhenTold) {
    start("[daemon]\ndelay=1\nfound-in-lan=false\n[requestPincodeVerification]\ndelay=1\n");
    client->call(zolt_gui_call_request_shop_info_list_sync);
    ASSERT_TRUE(client->waitForEvents(1));
    client->call(zolt_gui_call_request_pincode_verification_sync);
    ASSERT_TRUE(client->waitForEvents(2));
    client->call(zolt_gui_call_request_shop_info_list_sync);
    ASSERT_TRUE(client->waitForEvents(3));
    EXPECT_EQ(client->events, (Events{{1, 9}, {0, 1}, {0, 2}})) << "a verified PIN needs no LAN";
    client->call(zolt_gui_call_application_cancelled_sync);
    client->call(zolt_gui_call_request_shop_info_list_sync);
    ASSERT_TRUE(client->waitForEvents(4));
    EXPECT_EQ(client->events.back(), std::make_tuple(1, 9)) << "the next user starts without a PIN";
}

TEST_F(DaemonProcess, LetsThePinExpireWhenTold) {
    start(std::string(FAST) + "[pincode]\nexpires=true\ncode=007\n");
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "007");
    client->call(zolt_gui_call_request_pincode_verification_sync);
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->events, (Events{{1, 8}}));
}

TEST_F(DaemonProcess, FailsAStepWithTheReasonToldAndDoesNotDoItsWork) {
    start(
        "[daemon]\nshops=two-levels\ndelay=1\n"
        "[requestRegistrationShopInfo]\noutcome=REASON_NO_SERVER\n[requestPincode]\noutcome=2/"
        "99\n");
    EXPECT_EQ(client->registerShop(DOCUMENT), "");
    ASSERT_TRUE(client->waitForEvents(1));
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "no");
    client->call(zolt_gui_call_request_pincode_sync);
    ASSERT_TRUE(client->waitForEvents(2));
    EXPECT_EQ(client->events, (Events{{1, 7}, {2, 99}}));
}

TEST_F(DaemonProcess, SendsFurtherEventsAtTheirTimes) {
    start(
        "[daemon]\ndelay=1\n[requestPincode]\noutcome=none\nevents=1:0/0; 2:1/10\n"
        "[applicationCancelled]\nevents=1:12\n");
    client->call(zolt_gui_call_request_pincode_sync);
    ASSERT_TRUE(client->waitForEvents(2));
    client->call(zolt_gui_call_application_cancelled_sync);
    ASSERT_TRUE(client->waitForEvents(3));
    EXPECT_EQ(client->events, (Events{{0, 0}, {1, 10}, {0, 12}}));
}

TEST_F(DaemonProcess, SendsEventsAfterItsStartWhenTold) {
    daemon = std::make_unique<StandInDaemon>("[daemon]\nevents=1:1/10\n");
    daemon->start();
    EXPECT_TRUE(daemon->waitFor("event 1 10"));
}

TEST_F(DaemonProcess, AnswersWithAnErrorWhenTold) {
    start("[checkShopMode]\nerror=org.example.Error.No\nerror-message=closed today\n");
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_mode_sync),
              "GDBus.Error:org.example.Error.No: closed today");
}

TEST_F(DaemonProcess, AnswersLateWhenTold) {
    start("[getPincode]\nreply-delay=30\n");
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "48201573");
}

TEST_F(DaemonProcess, NeverAnswersWhenTold) {
    start("[getPincode]\nno-reply=true\n");
    g_dbus_proxy_set_default_timeout(G_DBUS_PROXY(client->proxy()), 50);
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "Timeout was reached");
    EXPECT_TRUE(daemon->waitFor("no-reply getPincode"));
    EXPECT_TRUE(daemon->program().running());
}

TEST_F(DaemonProcess, DiesInACallWhenToldAndCountsOnAfterARestart) {
    start("[getPincode]\nabort=true\nfirst=1\n");
    EXPECT_NE(client->call(zolt_gui_call_get_pincode_sync).find("NoReply"), std::string::npos);
    EXPECT_TRUE(daemon->program().wait());
    EXPECT_EQ(daemon->program().status(), 128 + SIGABRT);
    ASSERT_TRUE(client->waitForOwner(false));
    daemon->start();
    ASSERT_TRUE(client->waitForOwner(true));
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "48201573");
}

TEST_F(DaemonProcess, AnswersWithAnyTextWhenTold) {
    start(
        "[getShopInfoList]\nreply=<rsp><list\n[getRegisteredShopInfo]\nreply=\n"
        "[checkShopRegistration]\nreply=true\n");
    EXPECT_EQ(client->call(zolt_gui_call_get_shop_info_list_sync), "<rsp><list");
    EXPECT_EQ(client->call(zolt_gui_call_get_registered_shop_info_sync), "");
    EXPECT_EQ(client->call(zolt_gui_call_check_shop_registration_sync), "yes");
}

TEST_F(DaemonProcess, AnswersWithAWrongTypeWhenTold) {
    start("[getPincode]\nwrong-type=true\n");
    EXPECT_NE(client->call(zolt_gui_call_get_pincode_sync).find("(i)"), std::string::npos);
}

TEST_F(DaemonProcess, ListsOneObjectWithOneInterface) {
    start(FAST);
    GError* error = nullptr;
    GDBusObjectManager* manager = zolt_object_manager_client_new_sync(
        client->connection(), G_DBUS_OBJECT_MANAGER_CLIENT_FLAGS_NONE, StandInDaemon::busName(),
        "/zolt", nullptr, &error);
    ASSERT_EQ(error, nullptr);
    GList* objects = g_dbus_object_manager_get_objects(manager);
    ASSERT_EQ(g_list_length(objects), 1U);
    EXPECT_STREQ(g_dbus_object_get_object_path(G_DBUS_OBJECT(objects->data)), "/zolt/gui");
    GList* interfaces = g_dbus_object_get_interfaces(G_DBUS_OBJECT(objects->data));
    EXPECT_EQ(g_list_length(interfaces), 1U);
    EXPECT_TRUE(ZOLT_IS_GUI(interfaces->data));
    g_list_free_full(interfaces, g_object_unref);
    g_list_free_full(objects, g_object_unref);
    g_object_unref(manager);
}

TEST_F(DaemonProcess, EndsCleanlyOnBothSignalsOfAUser) {
    for (const int signal : {SIGTERM, SIGINT}) {
        StandInDaemon other(FAST);
        other.start();
        other.program().signal(signal);
        EXPECT_TRUE(other.program().wait());
        EXPECT_EQ(other.program().status(), 0);
        EXPECT_EQ(other.journal().back(), "end asked to end");
    }
}

TEST_F(DaemonProcess, EndsWithTheBus) {
    start(FAST);
    client.reset();
    bus.stop();
    EXPECT_TRUE(daemon->program().wait());
    EXPECT_EQ(daemon->program().status(), 0);
    EXPECT_EQ(daemon->journal().back(), "end the bus has gone");
}

TEST_F(DaemonProcess, EndsWithStatusOneWhenItsNameIsTakenAndLeavesTheOtherAlone) {
    start(FAST);
    const auto second =
        support::runProgram({ZOLT_DAEMON_PROGRAM, "--set", daemon->folder().path()});
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.errors, "zolt-daemon: the name org.tizen.GDBus.ZoltContent is taken\n");
    EXPECT_EQ(daemon->journal().size(), 2U);
    EXPECT_EQ(client->call(zolt_gui_call_get_pincode_sync), "48201573");
}

TEST_F(DaemonProcess, EndsWithStatusOneWithoutABus) {
    const StandInDaemon set;
    support::ProgramOptions options;
    options.environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/nonexistent/bus";
    const auto result =
        support::runProgram({ZOLT_DAEMON_PROGRAM, "--set", set.folder().path()}, options);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors,
              "zolt-daemon: no system bus: Could not connect: No such file or directory\n");
}

// The bus starts what its service file says, which is filled in here as the launcher does it.
std::string commandFromTemplate(const std::string& folder) {
    std::string text = support::readFile(ZOLT_SERVICE_TEMPLATE);
    const auto fill = [&text](const std::string& name, const std::string& value) {
        text.replace(text.find(name), name.size(), value);
    };
    fill("@ZOLT_DAEMON@", ZOLT_DAEMON_PROGRAM);
    fill("@ZOLT_SET_DIR@", folder);
    const std::string key = "\nExec=";
    const size_t begin = text.find(key) + key.size();
    return text.substr(begin, text.find('\n', begin) - begin);
}

TEST(DaemonActivation, TheFirstCallStartsTheDaemonAndTheNextOneAfterItsDeathDoesSoAgain) {
    const StandInDaemon set("[getPincode]\nabort=true\nfirst=1\n");
    const std::string command = commandFromTemplate(set.folder().path());
    EXPECT_EQ(command, set.command());
    const support::PrivateBus bus({{StandInDaemon::busName(), command}});
    const Client client(bus.address());
    EXPECT_EQ(client.call(zolt_gui_call_check_shop_mode_sync), "yes");
    EXPECT_NE(client.call(zolt_gui_call_get_pincode_sync).find("NoReply"), std::string::npos);
    ASSERT_TRUE(client.waitForOwner(false));
    EXPECT_EQ(client.call(zolt_gui_call_get_pincode_sync), "48201573");
    EXPECT_EQ(set.count("start org.tizen.GDBus.ZoltContent"), 2);
}

// WORD as the bus reads it back from a service file: quoted as for a shell, and then escaped as a
// value of a key file.
std::string wordOfServiceFile(const std::string& word) {
    std::string text = "'";
    for (const char character : word) {
        if (character == '\'') {
            text += "'\\\\''";
        } else {
            text += character == '\\' ? "\\\\" : std::string(1, character);
        }
    }
    return text + "'";
}

std::string everyPrintableCharacter() {
    std::string name = "\u00e9";
    for (char character = ' '; character <= '~'; ++character) {
        name += character != '/' ? std::string(1, character) : "";
    }
    return name;
}

TEST(DaemonActivation, TheNameOfTheSetsFolderMayHoldEveryPrintableCharacter) {
    const support::TemporaryFolder above;
    const std::string set = above.file(everyPrintableCharacter());
    support::writeFile(set + "/config.xml",
                       "<c><i name=\"ShopRegistrationFilePath\">data/registered</i></c>");
    support::writeFile(set + "/scenario.ini",
                       "[daemon]\nshops=two-levels\ndelay=1\n[getPincode]\nreply-file=pin\n");
    support::writeFile(set + "/pin", "1234");
    const support::PrivateBus bus(
        {{StandInDaemon::busName(), commandFromTemplate(wordOfServiceFile(set))}});
    const Client client(bus.address());
    EXPECT_EQ(client.call(zolt_gui_call_get_pincode_sync), "1234");
    EXPECT_EQ(client.registerShop(DOCUMENT), "");
    ASSERT_TRUE(client.waitForEvents(1));
    EXPECT_EQ(client.events, (Events{{0, 3}}));
    EXPECT_EQ(support::readFile(set + "/data/registered.xml"), DOCUMENT);
    EXPECT_TRUE(support::fileExists(set + "/daemon.log"));
}

TEST(DaemonCommandLine, TellsItsVersionAndItsUse) {
    const auto version = support::runProgram({ZOLT_DAEMON_PROGRAM, "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output.rfind("zolt-daemon ", 0), 0U);
    const auto help = support::runProgram({ZOLT_DAEMON_PROGRAM, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output.rfind("Usage: zolt-daemon --set DIR", 0), 0U);
}

TEST(DaemonCommandLine, AMistakeIsOneLineAndStatusTwo) {
    const StandInDaemon set;
    const std::string folder = set.folder().path();
    const support::TemporaryFolder empty;
    const support::TemporaryFolder broken;
    broken.write("config.xml", "<config>");
    const support::TemporaryFolder keyless;
    keyless.write("config.xml", "<config/>");
    struct Case {
        std::vector<std::string> arguments;
        std::string line;
    };
    const Case cases[] = {
        {{}, "--set DIR is missing"},
        {{"--set"}, "--set needs a value"},
        {{"--sit", folder}, "unknown option: --sit"},
        {{"-set", folder}, "unknown option: -set"},
        {{"more", "--sit"}, "unexpected argument: more"},
        {{"--set", folder, "--check", "--scenario", "/nonexistent.ini"},
         "no such scenario: /nonexistent.ini"},
        {{"--set", folder, "more"}, "unexpected argument: more"},
        {{"--set", "/nonexistent/set"}, "no such folder: /nonexistent/set"},
        {{"--set", empty.path()}, "no configuration: " + empty.file("config.xml")},
        {{"--set", broken.path()}, broken.file("config.xml") + " is not well-formed XML"},
        {{"--set", keyless.path()},
         keyless.file("config.xml") + " has no ShopRegistrationFilePath"},
        {{"--set", folder, "--scenario", "/nonexistent.ini"}, "no such scenario: /nonexistent.ini"},
    };
    for (const Case& entry : cases) {
        std::vector<std::string> arguments = {ZOLT_DAEMON_PROGRAM};
        arguments.insert(arguments.end(), entry.arguments.begin(), entry.arguments.end());
        const auto result = support::runProgram(arguments);
        EXPECT_EQ(result.status, 2) << entry.line;
        EXPECT_EQ(result.errors, "zolt-daemon: " + entry.line + "\n");
    }
}

TEST(DaemonCommandLine, ACheckNeedsNoBusAndLeavesNothingBehind) {
    const StandInDaemon set(FAST);
    support::ProgramOptions options;
    options.environment["DBUS_SYSTEM_BUS_ADDRESS"] = "unix:path=/nonexistent/bus";
    const std::vector<std::string> check = {ZOLT_DAEMON_PROGRAM, "--set", set.folder().path(),
                                            "--check"};
    EXPECT_EQ(support::runProgram(check, options).status, 0);
    EXPECT_FALSE(support::fileExists(set.folder().file("daemon.log")));
    set.setScenario("[daemon]\ndelay=soon\n");
    const auto wrong = support::runProgram(check, options);
    EXPECT_EQ(wrong.status, 2);
    EXPECT_EQ(wrong.errors, "zolt-daemon: " + set.folder().file("scenario.ini") +
                                ": [daemon] delay: \"soon\" is not a number\n");
}

TEST_F(DaemonProcess, AScenarioOnTheCommandLineGoesBeforeTheSetsOwn) {
    const StandInDaemon set("[daemon]\nevents=1:1/10\n");
    const std::string scenario = set.folder().write("other.ini", "[daemon]\nevents=1:1/11\n");
    support::Program program(
        {ZOLT_DAEMON_PROGRAM, "--set", set.folder().path(), "--scenario", scenario});
    EXPECT_TRUE(set.waitFor("event 1 11"));
    EXPECT_EQ(set.count("event 1 10"), 0);
}

}  // namespace
}  // namespace standin
