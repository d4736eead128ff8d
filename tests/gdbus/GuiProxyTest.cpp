// SPDX-License-Identifier: Apache-2.0
// The program's calls to the daemon.
#include <memory>
#include <thread>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>

#include "BusTest.h"
#include "common/Exception.h"
#include "gdbus/GuiProxy.h"
#include "gdbus/Proxy.h"

namespace test {
namespace {

using ZOLT::GuiProxy;

const char* const ABSENT = "Failed to find GUI proxy object";
const char* const ADDED = "Object /zolt/gui added";
const char* const REMOVED = "Removing object /zolt/gui";
const char* const EXISTS = "Object already exists";

// The text and code of the exception that CALL ends with, or nothing.
std::string failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const ZOLT::Exception& exception) {
        EXPECT_EQ(exception.code(), -1);
        return exception.what();
    }
    return "";
}

// The proxy that the one object of the tree holds. The caller owns the reference.
ZOLTGUI* attachedProxy() {
    GDBusInterface* found = nullptr;
    const int id = ZOLT::Proxy::signup(
        [&](GDBusObject* object) {
            g_clear_object(&found);
            found = ZOLT::Proxy::getInterface(object, GUI_INTERFACE);
        },
        [](GDBusObject*) {});
    ZOLT::Proxy::unregister(id);
    return found != nullptr ? ZOLT_GUI(found) : nullptr;
}

// How many handlers of the program are connected. GLib counts them only when it blocks them.
unsigned handlersOf(ZOLTGUI* proxy) {
    auto* handler = reinterpret_cast<gpointer>(&GuiProxy::sendEvent);
    const unsigned count = g_signal_handlers_block_matched(proxy, G_SIGNAL_MATCH_FUNC, 0, 0,
                                                           nullptr, handler, nullptr);
    g_signal_handlers_unblock_matched(proxy, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr, handler, nullptr);
    return count;
}

using GuiProxyOnTheBus = EventsTest;

// With a service that has the object, and a proxy attached to it.
class GuiProxyAttached : public GuiProxyOnTheBus {
  protected:
    void SetUp() override {
        GuiProxyOnTheBus::SetUp();
        service = std::make_unique<FakeService>();
        service->list(GUI_TREE);
        service->own();
        proxy = std::make_unique<GuiProxy>();
        ASSERT_TRUE(logged(ADDED));
    }
    void TearDown() override {
        proxy.reset();
        service.reset();
        GuiProxyOnTheBus::TearDown();
    }

    std::unique_ptr<FakeService> service;
    std::unique_ptr<GuiProxy> proxy;
};

struct VoidCall {
    const char* method;
    void (GuiProxy::*call)();
    const char* prefix;
};

const VoidCall VOID_CALLS[] = {
    {"requestPincode", &GuiProxy::requestPincode, "Failed to request pincode: "},
    {"requestPincodeVerification", &GuiProxy::requestPincodeVerification,
     "Failed to request pincode verification: "},
    {"requestShopInfoList", &GuiProxy::requestShopInfoList, "Failed to request shop info list: "},
    {"applicationCancelled", &GuiProxy::applicationCancelled,
     "Failed inform that application quited: "},
    {"unregister", &GuiProxy::unregister, "Failed to unregister: "},
    {"deleteRegistrationInfo", &GuiProxy::deleteRegistrationInfo,
     "Failed to delete registration info: "},
};

struct TextCall {
    const char* method;
    std::string (GuiProxy::*call)();
    const char* prefix;
};

const TextCall TEXT_CALLS[] = {
    {"getPincode", &GuiProxy::getPincode, "Failed to get pincode: "},
    {"getShopInfoList", &GuiProxy::getShopInfoList, "Failed to get shop list: "},
    {"getRegisteredShopInfo", &GuiProxy::getRegisteredShopInfo,
     "Failed to get registered shop info: "},
};

struct TruthCall {
    const char* method;
    bool (GuiProxy::*call)();
    const char* prefix;
};

const TruthCall TRUTH_CALLS[] = {
    {"checkShopRegistration", &GuiProxy::checkShopRegistration,
     "Failed to check shop registration: "},
    {"checkShopMode", &GuiProxy::checkShopMode, "Failed to get shop mode: "},
};

// Calls ACT for each of the twelve operations with its D-Bus name, its prefix and itself.
void forEachCall(GuiProxy& proxy, const std::function<void(const std::string&, const std::string&,
                                                           const std::function<void()>&)>& act) {
    for (const VoidCall& entry : VOID_CALLS) {
        act(entry.method, entry.prefix, [&] { (proxy.*entry.call)(); });
    }
    for (const TextCall& entry : TEXT_CALLS) {
        act(entry.method, entry.prefix, [&] { (proxy.*entry.call)(); });
    }
    for (const TruthCall& entry : TRUTH_CALLS) {
        act(entry.method, entry.prefix, [&] { (proxy.*entry.call)(); });
    }
    act("requestRegistrationShopInfo",
        "Failed to request registration: ", [&] { proxy.requestRegistrationShopInfo("<rsp/>"); });
}

TEST_F(GuiProxyAttached, ACallWithoutResultReachesItsMethod) {
    std::vector<std::string> expected;
    for (const VoidCall& entry : VOID_CALLS) {
        service->answer(entry.method, "()");
        (*proxy.*entry.call)();
        expected.push_back(std::string(entry.method) + "()");
    }
    EXPECT_EQ(service->calls(), expected);
}

TEST_F(GuiProxyAttached, ATextComesBackAsTheDaemonSentIt) {
    for (const TextCall& entry : TEXT_CALLS) {
        service->answer(entry.method, "('<rsp> \"가\" & more',)");
        EXPECT_EQ((*proxy.*entry.call)(), "<rsp> \"가\" & more") << entry.method;
    }
}

TEST_F(GuiProxyAttached, ATruthComesBackAsTheDaemonSentIt) {
    for (const TruthCall& entry : TRUTH_CALLS) {
        service->answer(entry.method, "(true,)");
        EXPECT_TRUE((*proxy.*entry.call)()) << entry.method;
        service->answer(entry.method, "(false,)");
        EXPECT_FALSE((*proxy.*entry.call)()) << entry.method;
    }
}

TEST_F(GuiProxyAttached, ARegistrationDocumentGoesOutAsItStandsBeItEmptyOrLongOrNoText) {
    service->answer("requestRegistrationShopInfo", "()");
    const auto received = [this](const std::string& document) {
        proxy->requestRegistrationShopInfo(document);
        return service->calls().back();
    };
    for (const std::string& document : {std::string("<rsp stat=\"ok\">R&amp;D</rsp>"),
                                        std::string(), std::string(4000000, 'x')}) {
        EXPECT_EQ(received(document), "requestRegistrationShopInfo('" + document + "',)");
    }
    // The bus carries neither a text with a zero byte in it nor one that is not UTF-8: GLib logs an
    // error and sends something else.
    EXPECT_EQ(received(std::string("a\0b", 3)), "requestRegistrationShopInfo('a',)");
    EXPECT_NO_THROW(proxy->requestRegistrationShopInfo("\xFF\xFE"));
}

TEST_F(GuiProxyAttached, ATextMayBeEmptyOrLong) {
    const std::string longest(4000000, 'x');
    for (const TextCall& entry : TEXT_CALLS) {
        service->answer(entry.method, "('" + longest + "',)");
        EXPECT_EQ((*proxy.*entry.call)(), longest) << entry.method;
    }
    service->answer("getPincode", "('',)");
    EXPECT_EQ(proxy->getPincode(), "");
    EXPECT_TRUE(logged("Received pincode "));
}

TEST_F(GuiProxyAttached, AnErrorMayHaveAnEmptyOrALongMessageOrLookLikeAFormat) {
    for (const std::string& message :
         {std::string(), std::string(100000, 'm'), std::string("%s %n 100%")}) {
        service->fail("getPincode", "org.example.Error.No", message);
        EXPECT_EQ(failureOf([&] { proxy->getPincode(); }),
                  "Failed to get pincode: GDBus.Error:org.example.Error.No: " + message);
    }
}

TEST_F(GuiProxyAttached, AnErrorBecomesAnExceptionWithTheCallsOwnPrefix) {
    forEachCall(*proxy, [&](const std::string& method, const std::string& prefix,
                            const std::function<void()>& call) {
        service->fail(method, "org.example.Error.No", "not today");
        EXPECT_EQ(failureOf(call), prefix + "GDBus.Error:org.example.Error.No: not today");
    });
    EXPECT_EQ(service->calls().size(), 12U) << "no call is repeated";
}

TEST_F(GuiProxyAttached, AReplyOfAnotherTypeBecomesAnException) {
    forEachCall(*proxy, [&](const std::string& method, const std::string& prefix,
                            const std::function<void()>& call) {
        service->answer(method, "(1, 2)");
        EXPECT_EQ(failureOf(call).rfind(prefix, 0), 0U) << method;
    });
}

TEST_F(GuiProxyAttached, AfterAnErrorTheNextCallGoesOutAsIfNothingHadHappened) {
    service->fail("getPincode", "org.example.Error.No", "not today");
    EXPECT_NE(failureOf([&] { proxy->getPincode(); }), "");
    service->answer("getPincode", "('12345678',)");
    EXPECT_EQ(proxy->getPincode(), "12345678");
}

TEST_F(GuiProxyAttached, ThePincodeIsLogged) {
    service->answer("getPincode", "('12345678',)");
    proxy->getPincode();
    const auto line = platform().findLine("Received pincode 12345678");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->file, "GuiProxy.cpp");
    EXPECT_EQ(line->function, "getPincode");
}

TEST_F(GuiProxyAttached, AShopListThatIsEmptyOrTheWordNullIsAFailure) {
    for (const char* reply : {"('',)", "('null',)"}) {
        service->answer("getShopInfoList", reply);
        EXPECT_EQ(failureOf([&] { proxy->getShopInfoList(); }), "Shop list is empty ") << reply;
    }
}

TEST_F(GuiProxyAttached, AReplyThatCarriesNoStringAtAllIsAnEmptyShopList) {
    // Without an interface description the proxy accepts a reply of any type.
    ZOLTGUI* attached = attachedProxy();
    g_dbus_proxy_set_interface_info(G_DBUS_PROXY(attached), nullptr);
    g_object_unref(attached);
    service->answer("getShopInfoList", "()");
    EXPECT_EQ(failureOf([&] { proxy->getShopInfoList(); }), "Shop list is empty ");
    service->answer("getRegisteredShopInfo", "()");
    EXPECT_EQ(proxy->getRegisteredShopInfo(), "");
}

TEST_F(GuiProxyAttached, AShopListThatMerelyBeginsWithNullIsADocument) {
    for (const std::string reply : {"nullify", "null ", "nul", "Null"}) {
        service->answer("getShopInfoList", "('" + reply + "',)");
        EXPECT_EQ(proxy->getShopInfoList(), reply);
    }
}

TEST_F(GuiProxyAttached, TheRegisteredShopMayBeTheWordNullOrEmpty) {
    for (const std::string reply : {"null", ""}) {
        service->answer("getRegisteredShopInfo", "('" + reply + "',)");
        EXPECT_EQ(proxy->getRegisteredShopInfo(), reply);
    }
}

TEST_F(GuiProxyAttached, ALateReplyIsWaitedFor) {
    GDBusMessage* held = nullptr;
    std::mutex mutex;
    service->handle("getPincode", [&](GDBusMessage* call) {
        const std::lock_guard<std::mutex> lock(mutex);
        held = static_cast<GDBusMessage*>(g_object_ref(call));
    });
    std::thread late([&] {
        support::waitUntil([&] {
            const std::lock_guard<std::mutex> lock(mutex);
            return held != nullptr;
        });
        service->reply(held, "('87654321',)");
    });
    EXPECT_EQ(proxy->getPincode(), "87654321");
    late.join();
    g_object_unref(held);
}

TEST_F(GuiProxyAttached, NoReplyWithinTheTimeOutBecomesAnException) {
    service->handle("getPincode", [](GDBusMessage*) {});
    ZOLTGUI* attached = attachedProxy();
    g_dbus_proxy_set_default_timeout(G_DBUS_PROXY(attached), 50);
    EXPECT_EQ(failureOf([&] { proxy->getPincode(); }),
              "Failed to get pincode: Timeout was reached");
    g_object_unref(attached);
}

TEST_F(GuiProxyAttached, ADaemonThatDiesInACallBecomesAnExceptionAtOnce) {
    service->handle("getPincode", [this](GDBusMessage*) { service->die(); });
    EXPECT_EQ(failureOf([&] {
                  proxy->getPincode();
              }).rfind("Failed to get pincode: GDBus.Error:org.freedesktop.DBus.Error.NoReply", 0),
              0U);
    EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
    EXPECT_EQ(failureOf([&] { proxy->getPincode(); }), ABSENT);
}

TEST_F(GuiProxyAttached, EventsReachTheCallbackUnchanged) {
    service->sendEvent(0, 2);
    service->sendEvent(1, 7);
    service->sendEvent(2, -5);
    service->sendEvent(G_MININT, G_MAXINT);
    settle(*service);
    EXPECT_EQ(events, (Events{{0, 2}, {1, 7}, {2, -5}, {G_MININT, G_MAXINT}}));
}

TEST_F(GuiProxyAttached, AnEventIsTracedWithItsValues) {
    service->sendEvent(1, 9);
    settle(*service);
    // gcc and clang print the type of the first parameter differently.
    EXPECT_THAT(platform().messages(LOG_ID_MAIN, DLOG_INFO),
                testing::Contains(testing::AllOf(
                    testing::StartsWith("Called static void ZOLT::GuiProxy::sendEvent("),
                    testing::EndsWith(", 1, 9)"))));
}

TEST_F(GuiProxyAttached, EventsThatArriveDuringACallComeAfterIt) {
    service->handle("requestPincode", [this](GDBusMessage* call) {
        service->sendEvent(0, 0);
        service->reply(call, "()");
    });
    proxy->requestPincode();
    EXPECT_EQ(events, Events{});
    settle(*service);
    EXPECT_EQ(events, (Events{{0, 0}}));
}

TEST_F(GuiProxyAttached, ASignalOfTheScreenSaverIsDroppedWithoutEffect) {
    service->add("/zolt/screensaver", std::string("{'") + SCREEN_SAVER_INTERFACE + "': {}}");
    settle(*service);
    service->emit("/zolt/screensaver", SCREEN_SAVER_INTERFACE, "sendRequest", "(1,)");
    service->emit("/zolt/screensaver", SCREEN_SAVER_INTERFACE, "setContentPath", "('/x',)");
    settle(*service);
    EXPECT_EQ(events, Events{});
    service->answer("getPincode", "('1',)");
    EXPECT_EQ(proxy->getPincode(), "1");
}

TEST_F(GuiProxyAttached, AnEventWithoutACallbackThrows) {
    GuiProxy::m_sendEventCallback = nullptr;
    EXPECT_THROW(GuiProxy::sendEvent(nullptr, 0, 0), std::bad_function_call);
}

TEST_F(GuiProxyAttached, ASecondReportOfTheObjectKeepsTheFirstProxy) {
    ZOLTGUI* attached = attachedProxy();  // a new subscription reports the object anew
    EXPECT_TRUE(logged(EXISTS));
    EXPECT_EQ(handlersOf(attached), 1U);
    g_object_unref(attached);
    service->sendEvent(0, 2);
    settle(*service);
    EXPECT_EQ(events, (Events{{0, 2}}));
}

TEST_F(GuiProxyAttached, AReportOfAnotherObjectWhileAttachedSaysTheSame) {
    platform().clearLog();
    service->add("/zolt/other", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return logged(EXISTS); }));
    EXPECT_FALSE(logged(ADDED));
}

TEST_F(GuiProxyAttached, TheRemovalOfAnotherObjectChangesNothing) {
    service->add("/zolt/other", GUI_INTERFACES);
    service->remove("/zolt/other", GUI_INTERFACE);
    settle(*service);
    EXPECT_FALSE(logged(REMOVED));
    service->answer("getPincode", "('1',)");
    EXPECT_EQ(proxy->getPincode(), "1");
}

TEST_F(GuiProxyAttached, NoObjectAtAllChangesNothing) {
    ZOLT::Proxy::onObjectRemoved(nullptr, nullptr, nullptr);
    EXPECT_FALSE(logged(REMOVED));
    ZOLT::Proxy::onObjectAdded(nullptr, nullptr, nullptr);
    EXPECT_TRUE(logged(EXISTS)) << "even a null object";
    service->remove("/zolt/gui", GUI_INTERFACE);
    EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
    platform().clearLog();
    ZOLT::Proxy::onObjectAdded(nullptr, nullptr, nullptr);
    EXPECT_FALSE(logged(ADDED));
    EXPECT_FALSE(logged(EXISTS));
}

TEST_F(GuiProxyAttached, TheRemovalOfTheObjectEndsTheCallsUntilItIsBack) {
    service->remove("/zolt/gui", GUI_INTERFACE);
    EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
    forEachCall(*proxy, [&](const std::string& method, const std::string& /*prefix*/,
                            const std::function<void()>& call) {
        EXPECT_EQ(failureOf(call), ABSENT) << method;
    });
    platform().clearLog();
    service->add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return logged(ADDED); }));
    service->answer("getPincode", "('1',)");
    EXPECT_EQ(proxy->getPincode(), "1");
}

TEST_F(GuiProxyAttached, TheTimeOutIsHundredSecondsAlsoOfADaemonThatReturns) {
    ZOLTGUI* first = attachedProxy();
    EXPECT_EQ(g_dbus_proxy_get_default_timeout(G_DBUS_PROXY(first)), 100000);
    g_object_unref(first);
    service.reset();
    EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
    platform().clearLog();
    service = std::make_unique<FakeService>();
    service->list(GUI_TREE);
    service->own();
    EXPECT_TRUE(turnUntil([&] { return logged(ADDED); }));
    ZOLTGUI* attached = attachedProxy();
    EXPECT_EQ(g_dbus_proxy_get_default_timeout(G_DBUS_PROXY(attached)), 100000);
    EXPECT_EQ(handlersOf(attached), 1U);
    g_object_unref(attached);
    service->sendEvent(0, 1);
    settle(*service);
    EXPECT_EQ(events, (Events{{0, 1}}));
}

TEST_F(GuiProxyAttached, TheEndOfTheProxyDisconnectsTheSignal) {
    ZOLTGUI* attached = attachedProxy();
    EXPECT_EQ(handlersOf(attached), 1U);
    proxy.reset();
    EXPECT_EQ(handlersOf(attached), 0U);
    service->sendEvent(0, 1);
    settle(*service);
    EXPECT_EQ(events, Events{});
    g_object_unref(attached);
}

TEST_F(GuiProxyAttached, TheInterfaceOutlivesTheRemovalOfItsObject) {
    ZOLTGUI* attached = attachedProxy();
    service->remove("/zolt/gui", GUI_INTERFACE);
    EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
    EXPECT_EQ(handlersOf(attached), 0U);
    settle(*service);
    EXPECT_GE(G_OBJECT(attached)->ref_count, 2U);
    g_object_unref(attached);
}

TEST_F(GuiProxyAttached, TheInterfaceOutlivesTheProxy) {
    ZOLTGUI* attached = attachedProxy();
    proxy.reset();
    // The proxy's reference is never released; that one and ours are left.
    EXPECT_GE(G_OBJECT(attached)->ref_count, 2U);
    g_object_unref(attached);
}

TEST_F(GuiProxyOnTheBus, WithoutADaemonEveryCallSaysThatTheObjectIsMissing) {
    GuiProxy proxy;
    forEachCall(proxy, [&](const std::string& method, const std::string& /*prefix*/,
                           const std::function<void()>& call) {
        EXPECT_EQ(failureOf(call), ABSENT) << method;
    });
}

TEST_F(GuiProxyOnTheBus, AnObjectAtAnotherPathIsPassedOverInSilence) {
    FakeService service;
    service.list("{'/zolt/gui2': {'org.tizen.GDBus.ZoltContent.GUI': {}}}");
    service.own();
    GuiProxy proxy;
    EXPECT_FALSE(logged(ADDED));
    EXPECT_FALSE(logged(EXISTS));
    EXPECT_EQ(failureOf([&] { proxy.getPincode(); }), ABSENT);
}

TEST_F(GuiProxyOnTheBus, AnObjectWithoutTheInterfaceCountsAsAbsent) {
    FakeService service;
    service.list("{'/zolt/gui': {'org.example.Unknown': {}}}");
    service.own();
    {
        GuiProxy proxy;
        EXPECT_TRUE(logged(ADDED));
        EXPECT_EQ(failureOf([&] { proxy.getPincode(); }), ABSENT);
        service.remove("/zolt/gui", "org.example.Unknown");
        EXPECT_TRUE(turnUntil([&] { return logged(REMOVED); }));
        service.add("/zolt/gui", GUI_INTERFACES);
        EXPECT_TRUE(turnUntil([&] { return platform().countLines(ADDED) == 2; }));
        service.answer("getPincode", "('1',)");
        EXPECT_EQ(proxy.getPincode(), "1");
    }
}

class GuiProxyWithoutBus : public BusTest {
  protected:
    void SetUp() override { platform().reset(); }
    void TearDown() override {}
};

TEST_F(GuiProxyWithoutBus, AFailedConnectionAtStartIsTriedAgainAtEveryCall) {
    IN_OWN_PROCESS({
        std::unique_ptr<GuiProxy> proxy;
        {
            const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS",
                                                     "unix:path=/nonexistent/bus");
            proxy = std::make_unique<GuiProxy>();
            EXPECT_EQ(failureOf([&] { proxy->getPincode(); }), ABSENT);
            EXPECT_EQ(failureOf([&] { proxy->checkShopMode(); }), ABSENT);
            EXPECT_EQ(platform().countLines("Failed to create object manager client: Could not "
                                            "connect: No such file or directory"),
                      3);
        }
        BusWithDaemon daemon;
        daemon.service.answer("getPincode", "('12345678',)");
        EXPECT_EQ(proxy->getPincode(), "12345678");
        proxy.reset();
    });
}

TEST_F(GuiProxyWithoutBus, ADocumentThatTheBusRefusesForItsLengthFails) {
    IN_OWN_PROCESS({
        BusWithDaemon daemon;
        GuiProxy proxy;
        // A system bus disconnects a client that sends a message of more than 32 MiB.
        const std::string document(40U << 20U, 'x');
        EXPECT_EQ(failureOf([&] {
                      proxy.requestRegistrationShopInfo(document);
                  }).rfind("Failed to request registration: ", 0),
                  0U);
        EXPECT_NE(failureOf([&] { proxy.requestPincode(); }), "");
    });
}

TEST_F(GuiProxyWithoutBus, AProxyThatNeverConnectedMayEnd) {
    IN_OWN_PROCESS({
        const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS",
                                                 "unix:path=/nonexistent/bus");
        const GuiProxy proxy;
    });
}

}  // namespace
}  // namespace test
