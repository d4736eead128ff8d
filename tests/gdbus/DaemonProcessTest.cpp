// SPDX-License-Identifier: Apache-2.0
// The program's calls to a real daemon process that dies and comes back.
#include <tuple>
#include <vector>

#include "BusTest.h"
#include "common/Exception.h"
#include "gdbus/GuiProxy.h"

namespace test {
namespace {

using ZOLT::GuiProxy;

const char* const ADDED = "Object /zolt/gui added";
const char* const REMOVED = "Removing object /zolt/gui";

using GuiProxyWithTheDaemon = EventsTest;

TEST_F(GuiProxyWithTheDaemon, ARequestIsTakenAtOnceAndItsResultComesAsAnEvent) {
    support::StandInDaemon daemon("[daemon]\ndelay=1\nshops=one-shop\n");
    daemon.start();
    GuiProxy proxy;
    proxy.requestShopInfoList();
    EXPECT_TRUE(turnUntil([&] { return !events.empty(); }));
    EXPECT_EQ(events.front(), std::make_tuple(0, 2));
    EXPECT_NE(proxy.getShopInfoList().find("Harbour Electric"), std::string::npos);
}

TEST_F(GuiProxyWithTheDaemon, ADaemonThatDiesInACallAndIsStartedAgainAnswersTheNextOne) {
    support::StandInDaemon daemon("[daemon]\ndelay=1\n[getPincode]\nabort=true\nfirst=1\n");
    daemon.start();
    GuiProxy proxy;
    EXPECT_THROW(proxy.getPincode(), ZOLT::Exception);
    EXPECT_TRUE(turnUntil([&] { return platform().countLines(REMOVED) == 1; }));
    daemon.start();
    EXPECT_TRUE(turnUntil([&] { return platform().countLines(ADDED) == 2; }));
    EXPECT_EQ(proxy.getPincode(), "48201573");
    proxy.requestPincode();
    EXPECT_TRUE(turnUntil([&] { return !events.empty(); }));
    EXPECT_EQ(events.size(), 1U);
}

}  // namespace
}  // namespace test
