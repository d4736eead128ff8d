// SPDX-License-Identifier: Apache-2.0
// Subscriptions to the daemon's objects.
#include <string>
#include <vector>

#include "BusTest.h"
#include "gdbus/Proxy.h"
#include "generated-code.h"

namespace test {
namespace {

using ZOLT::Proxy;

// A subscription that records its callbacks and ends with its scope.
class Subscriber {
  public:
    Subscriber()
        : m_id(Proxy::signup([this](GDBusObject* object) { note(added, object); },
                             [this](GDBusObject* object) { note(removed, object); })) {}
    ~Subscriber() { end(); }
    Subscriber(const Subscriber&) = delete;
    Subscriber& operator=(const Subscriber&) = delete;

    int id() const { return m_id; }
    void end() {
        if (m_id >= 0) {
            Proxy::unregister(m_id);
            m_id = -1;
        }
    }

    std::vector<std::string> added;
    std::vector<std::string> removed;

  private:
    static void note(std::vector<std::string>& list, GDBusObject* object) {
        EXPECT_TRUE(ZOLT_IS_OBJECT(object));
        list.emplace_back(g_dbus_object_get_object_path(object));
    }

    int m_id;
};

using Paths = std::vector<std::string>;

const char* const UNREACHABLE = "unix:path=/nonexistent/bus";

class ProxyOnTheBus : public BusTest {};

TEST_F(ProxyOnTheBus, NoCallbackRunsUntilAnObjectIsReported) {
    FakeService service;
    service.own();
    Subscriber subscriber;
    EXPECT_GE(subscriber.id(), 0);
    settle(service);
    EXPECT_EQ(subscriber.added, Paths{});
    service.add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return !subscriber.added.empty(); }));
    EXPECT_EQ(subscriber.added, Paths{"/zolt/gui"});
    EXPECT_EQ(subscriber.removed, Paths{});
}

TEST_F(ProxyOnTheBus, ASubscriptionWithoutADaemonIsValid) {
    Subscriber subscriber;
    EXPECT_GE(subscriber.id(), 0);
    EXPECT_EQ(subscriber.added, Paths{});
    FakeService service;
    service.list(GUI_TREE);
    service.own();
    EXPECT_TRUE(turnUntil([&] { return !subscriber.added.empty(); }));
    EXPECT_EQ(subscriber.added, Paths{"/zolt/gui"});
}

TEST_F(ProxyOnTheBus, ObjectsThatAreThereAreReportedBeforeTheSubscriptionReturns) {
    FakeService service;
    service.list(GUI_TREE);
    service.own();
    const Subscriber subscriber;
    EXPECT_EQ(subscriber.added, Paths{"/zolt/gui"});
}

TEST_F(ProxyOnTheBus, ANewSubscriptionReportsThePresentObjectsToAllSubscribers) {
    FakeService service;
    service.list(GUI_TREE);
    service.own();
    const Subscriber first;
    const Subscriber second;
    EXPECT_EQ(second.id(), first.id() + 1);
    EXPECT_EQ(first.added, (Paths{"/zolt/gui", "/zolt/gui"}));
    EXPECT_EQ(second.added, Paths{"/zolt/gui"});
}

TEST_F(ProxyOnTheBus, SubscribersAreCalledInTheOrderOfTheirIds) {
    FakeService service;
    service.own();
    std::string order;
    const auto note = [&order](char name) {
        return [&order, name](GDBusObject*) { order += name; };
    };
    const int first = Proxy::signup(note('a'), note('A'));
    const int second = Proxy::signup(note('b'), note('B'));
    service.add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return order == "ab"; })) << order;
    service.remove("/zolt/gui", GUI_INTERFACE);
    EXPECT_TRUE(turnUntil([&] { return order == "abAB"; })) << order;
    Proxy::unregister(first);
    Proxy::unregister(second);
}

TEST_F(ProxyOnTheBus, ASubscriberMayEndItsSubscriptionInsideACallback) {
    FakeService service;
    service.own();
    int id = -1;
    int calls = 0;
    id = Proxy::signup(
        [&](GDBusObject*) {
            ++calls;
            Proxy::unregister(id);
        },
        [](GDBusObject*) {});
    const Subscriber other;
    service.add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return !other.added.empty(); }));
    EXPECT_EQ(calls, 1);
}

TEST_F(ProxyOnTheBus, ADaemonThatGoesTakesItsObjectsAndBringsThemBack) {
    Subscriber subscriber;
    {
        FakeService service;
        service.list(GUI_TREE);
        service.own();
        EXPECT_TRUE(turnUntil([&] { return subscriber.added.size() == 1; }));
        platform().clearLog();
    }
    EXPECT_TRUE(turnUntil([&] { return subscriber.removed.size() == 1; }));
    EXPECT_TRUE(turnUntil([&] { return logged("Owner name: (null)"); }));
    FakeService again;
    again.list(GUI_TREE);
    again.own();
    EXPECT_TRUE(turnUntil([&] { return subscriber.added.size() == 2; }));
    const auto lines = platform().messages(LOG_ID_SYSTEM, DLOG_DEBUG);
    EXPECT_EQ(lines.back().rfind("Owner name: :1.", 0), 0U) << lines.back();
}

TEST_F(ProxyOnTheBus, TheLastSubscriberTakesTheConnectionAway) {
    FakeService service;
    service.own();
    Subscriber first;
    Subscriber second;
    first.end();
    service.add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return second.added.size() == 1; }));
    EXPECT_EQ(first.added, Paths{});
    second.end();
    service.add("/zolt/other", GUI_INTERFACES);
    settle(service);
    EXPECT_EQ(second.added, Paths{"/zolt/gui"});
}

TEST_F(ProxyOnTheBus, AnUnknownIdEndsNothing) {
    FakeService service;
    service.own();
    const Subscriber subscriber;
    for (const int id : {-1, subscriber.id() + 1000, G_MININT, G_MAXINT}) {
        Proxy::unregister(id);
    }
    service.add("/zolt/gui", GUI_INTERFACES);
    EXPECT_TRUE(turnUntil([&] { return !subscriber.added.empty(); }));
}

TEST_F(ProxyOnTheBus, TheFirstIdOfAProcessIsZeroAndTheNextIsOneAlsoAfterItsEnd) {
    IN_OWN_PROCESS({
        {
            const Subscriber first;
            EXPECT_EQ(first.id(), 0);
        }
        const Subscriber second;
        EXPECT_EQ(second.id(), 1);
    });
}

// The interface NAME of a service's only object, which has INTERFACES.
GDBusInterface* interfaceIn(const std::string& interfaces, const std::string& name) {
    FakeService service;
    service.list("{'/zolt/gui': " + interfaces + "}");
    service.own();
    GDBusInterface* found = nullptr;
    int objects = 0;
    const int id = Proxy::signup(
        [&](GDBusObject* object) {
            ++objects;
            found = Proxy::getInterface(object, name);
        },
        [](GDBusObject*) {});
    EXPECT_EQ(objects, 1);
    Proxy::unregister(id);
    return found;
}

TEST_F(ProxyOnTheBus, AnObjectWithoutInterfacesGivesNone) {
    EXPECT_EQ(interfaceIn("@a{sa{sv}} {}", GUI_INTERFACE), nullptr);
}

TEST_F(ProxyOnTheBus, AnInterfaceIsFoundAmongOthersAndBelongsToTheCaller) {
    GDBusInterface* found = interfaceIn(
        "{'org.tizen.GDBus.ZoltContent.ScreenSaver': {}, 'org.tizen.GDBus.ZoltContent.GUI': {}, "
        "'org.example.Unknown': {}}",
        GUI_INTERFACE);
    ASSERT_NE(found, nullptr);
    EXPECT_TRUE(ZOLT_IS_GUI_PROXY(found));
    g_object_unref(found);
}

TEST_F(ProxyOnTheBus, AnInterfaceIsFoundByItsWholeNameOnly) {
    const std::string whole = GUI_INTERFACE;
    for (const std::string& name : {whole.substr(0, whole.size() - 1), whole + "2", whole + '\0',
                                    std::string(), std::string(1000000, 'x')}) {
        EXPECT_EQ(interfaceIn(GUI_INTERFACES, name), nullptr) << name.substr(0, 80);
    }
}

TEST_F(ProxyOnTheBus, NoObjectHasNoInterface) {
    EXPECT_EQ(Proxy::getInterface(nullptr, GUI_INTERFACE), nullptr);
}

TEST_F(ProxyOnTheBus, InterfacesUpToTheMatchAreReleasedAndThoseBehindItAreNot) {
    FakeService service;
    service.list(
        "{'/zolt/gui': {'org.example.A': {}, 'org.example.B': {}, "
        "'org.tizen.GDBus.ZoltContent.ScreenSaver': {}, "
        "'org.tizen.GDBus.ZoltContent.GUI': {}}}");
    service.own();
    const auto look = [](GDBusObject* object) {
        GList* interfaces = g_dbus_object_get_interfaces(object);
        EXPECT_EQ(g_list_length(interfaces), 4U);
        std::vector<guint> before;
        for (GList* item = interfaces; item != nullptr; item = item->next) {
            before.push_back(G_OBJECT(item->data)->ref_count);
        }
        GDBusInterface* found = Proxy::getInterface(object, GUI_INTERFACE);
        guint kept = 0;
        size_t index = 0;
        for (GList* item = interfaces; item != nullptr; item = item->next, ++index) {
            kept = item->data == found ? 1 : kept;
            EXPECT_EQ(G_OBJECT(item->data)->ref_count, before[index] + kept) << index;
        }
        EXPECT_EQ(kept, 1U);
        g_object_unref(found);
        g_list_free_full(interfaces, g_object_unref);
    };
    Proxy::unregister(Proxy::signup(look, [](GDBusObject*) {}));
}

TEST_F(ProxyOnTheBus, ObjectsAreReportedInTheOrderOfTheirListAndReleased) {
    FakeService service;
    service.list("{'/zolt/a': " + std::string(GUI_INTERFACES) + ", '/zolt/b': " + GUI_INTERFACES +
                 ", '/zolt/c': " + GUI_INTERFACES + "}");
    service.own();
    std::vector<GDBusObject*> objects;
    const int first =
        Proxy::signup([&](GDBusObject* object) { objects.push_back(object); }, [](GDBusObject*) {});
    ASSERT_EQ(objects.size(), 3U);
    std::vector<guint> counts;
    counts.reserve(objects.size());
    for (GDBusObject* object : objects) {
        counts.push_back(G_OBJECT(object)->ref_count);
    }
    const std::vector<GDBusObject*> inOrder = objects;
    const Subscriber second;
    EXPECT_EQ(objects, (std::vector<GDBusObject*>{inOrder[0], inOrder[1], inOrder[2], inOrder[0],
                                                  inOrder[1], inOrder[2]}));
    for (size_t index = 0; index < inOrder.size(); ++index) {
        EXPECT_EQ(G_OBJECT(inOrder[index])->ref_count, counts[index]) << index;
    }
    Proxy::unregister(first);
}

TEST_F(ProxyOnTheBus, AnInterfaceThatTheLayerDoesNotKnowMatchesNoName) {
    EXPECT_EQ(interfaceIn("{'org.example.Unknown': {}}", "org.example.Unknown"), nullptr);
}

class ProxyWithoutBus : public BusTest {
  protected:
    // The bus must not have been reached before in the process under test.
    void SetUp() override { platform().reset(); }
    void TearDown() override {}
};

TEST_F(ProxyWithoutBus, ASubscriptionFailsWithTheReasonInTheLogAndCallsNobody) {
    IN_OWN_PROCESS({
        const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", UNREACHABLE);
        int calls = 0;
        const auto count = [&calls](GDBusObject*) { ++calls; };
        EXPECT_EQ(Proxy::signup(count, count), -1);
        EXPECT_TRUE(
            warned("Failed to create object manager client: Could not connect: No such file "
                   "or directory"));
        Proxy::onObjectAdded(nullptr, nullptr, nullptr);
        Proxy::onObjectRemoved(nullptr, nullptr, nullptr);
        EXPECT_EQ(calls, 0);
    });
}

TEST_F(ProxyWithoutBus, AFailedSubscriptionMayBeTriedAgainAndUsesUpNoId) {
    IN_OWN_PROCESS({
        {
            const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", UNREACHABLE);
            const Subscriber failed;
            EXPECT_EQ(failed.id(), -1);
        }
        const BusWithDaemon daemon;
        const Subscriber subscriber;
        EXPECT_EQ(subscriber.id(), 0);
        EXPECT_EQ(subscriber.added, Paths{"/zolt/gui"});
    });
}

// Counts GLib's complaints about calls on a null instance; the rest of its log is dropped.
GLogWriterOutput countComplaint(GLogLevelFlags level, const GLogField* /*fields*/, gsize /*count*/,
                                gpointer data) {
    *static_cast<int*>(data) += (level & G_LOG_LEVEL_CRITICAL) != 0 ? 1 : 0;
    return G_LOG_WRITER_HANDLED;
}

TEST_F(ProxyWithoutBus, EndingASubscriptionThatNeverWasLeavesTheProcessRunning) {
    IN_OWN_PROCESS({
        const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", UNREACHABLE);
        int complaints = 0;
        g_log_set_writer_func(countComplaint, &complaints, nullptr);
        Proxy::unregister(-1);
        EXPECT_EQ(complaints, 1) << "the absent manager is released";
        const Subscriber failed;
        EXPECT_EQ(complaints, 4) << "three handlers are connected to it";
        Proxy::unregister(-1);
        EXPECT_EQ(complaints, 8) << "they are disconnected, and it is released";
        Proxy::unregister(-1);
        EXPECT_EQ(complaints, 9) << "their ids are forgotten";
    });
}

TEST_F(ProxyWithoutBus, TheFailedConnectionsOfEarlierTriesDoNotDisturbTheEndOfALaterOne) {
    IN_OWN_PROCESS({
        {
            const support::ScopedEnvironment address("DBUS_SYSTEM_BUS_ADDRESS", UNREACHABLE);
            const Subscriber failed;
        }
        const support::PrivateBus bus;
        g_dbus_connection_set_exit_on_close(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr),
                                            FALSE);
        FakeService service;
        service.own();
        Subscriber subscriber;
        subscriber.end();
        service.add("/zolt/gui", GUI_INTERFACES);
        settle(service);
        EXPECT_EQ(subscriber.added, Paths{});
    });
}

}  // namespace
}  // namespace test
