// SPDX-License-Identifier: Apache-2.0
// Reading of scenarios.
#include <string>

#include <gtest/gtest.h>

#include "daemon/Options.h"
#include "daemon/ScenarioFile.h"
#include "support/TestSupport.h"

namespace standin {
namespace {

Scenario read(const std::string& text) {
    const support::TemporaryFolder folder;
    folder.write("own.xml", "<own/>");
    folder.write("reply.xml", "<reply/>");
    return loadScenario(folder.write("scenario.ini", text), ZOLT_SHOP_LIST_DIR);
}

// What the daemon says about the scenario TEXT, without the file's name.
std::string complaint(const std::string& text) {
    try {
        read(text);
    } catch (const UsageError& error) {
        const std::string line = error.what();
        const size_t end = line.find("scenario.ini: ");
        return end == std::string::npos ? line : line.substr(line.find(' ', end) + 1);
    }
    return "";
}

void expectEvent(const std::string& text, int event, int reason) {
    const Event parsed = parseEvent(text);
    EXPECT_EQ(parsed.event, event) << text;
    EXPECT_EQ(parsed.reason, reason) << text;
}

TEST(Scenario, WithoutAFileItIsTheOrdinaryCourse) {
    const Scenario scenario = loadScenario("", ZOLT_SHOP_LIST_DIR);
    EXPECT_EQ(scenario.delayOf("requestPincode"), 800);
    EXPECT_EQ(scenario.delayOf("requestPincodeVerification"), 3000);
    EXPECT_EQ(scenario.pincode.size(), 8U);
    EXPECT_FALSE(scenario.pincodeExpires);
    EXPECT_TRUE(scenario.foundInLan);
    EXPECT_NE(scenario.shopList.find("United Kingdom"), std::string::npos);
    EXPECT_TRUE(scenario.startEvents.empty());
}

TEST(Scenario, GeneralKeysAreTaken) {
    const Scenario scenario = read(
        "[daemon]\ndelay=5\nfound-in-lan=false\nshops=one-shop\nevents=10:1/10; "
        "20:REASON_NO_SERVER\n"
        "[pincode]\ncode=1 2\nexpires=true\n");
    EXPECT_EQ(scenario.delayOf("unregister"), 5);
    EXPECT_FALSE(scenario.foundInLan);
    EXPECT_NE(scenario.shopList.find("Harbour Electric"), std::string::npos);
    ASSERT_EQ(scenario.startEvents.size(), 2U);
    EXPECT_EQ(scenario.startEvents[1].delayMs, 20);
    EXPECT_EQ(scenario.startEvents[1].event.reason, 7);
    EXPECT_EQ(scenario.pincode, "1 2");
    EXPECT_TRUE(scenario.pincodeExpires);
}

TEST(Scenario, KeysOfAMethodAreTaken) {
    const Scenario scenario = read(
        "[requestPincode]\ndelay=7\noutcome=1/5\nreply-delay=9\nevents=1:0/0\nfirst=2\n"
        "[getPincode]\nreply=\n[getShopInfoList]\nreply-file=reply.xml\n"
        "[unregister]\nerror=org.example.Error.No\nerror-message=no\noutcome=none\n"
        "[checkShopMode]\nreply=false\nno-reply=true\nabort=true\nwrong-type=true\n");
    const MethodScript request = scenario.scriptFor("requestPincode", 2);
    EXPECT_EQ(request.delayMs, 7);
    EXPECT_EQ(request.outcome->reason, 5);
    EXPECT_EQ(request.replyDelayMs, 9);
    EXPECT_EQ(request.events.size(), 1U);
    EXPECT_EQ(scenario.scriptFor("getPincode", 1).reply, "");
    EXPECT_EQ(scenario.scriptFor("getShopInfoList", 1).reply, "<reply/>");
    EXPECT_EQ(scenario.scriptFor("unregister", 1).error, "org.example.Error.No");
    EXPECT_EQ(scenario.scriptFor("unregister", 1).errorMessage, "no");
    EXPECT_TRUE(scenario.scriptFor("unregister", 1).silent);
    const MethodScript mode = scenario.scriptFor("checkShopMode", 1000);
    EXPECT_EQ(mode.reply, "false");
    EXPECT_TRUE(mode.noReply && mode.abort && mode.wrongType);
}

TEST(Scenario, AScriptForTheFirstCallsEndsWithThem) {
    const Scenario scenario = read("[getPincode]\nabort=true\nfirst=2\n");
    EXPECT_TRUE(scenario.scriptFor("getPincode", 1).abort);
    EXPECT_TRUE(scenario.scriptFor("getPincode", 2).abort);
    EXPECT_FALSE(scenario.scriptFor("getPincode", 3).abort);
}

TEST(Scenario, AScriptMayLetCallsPassBeforeItBegins) {
    const Scenario scenario = read("[getPincode]\nabort=true\nskip=1\nfirst=2\n");
    EXPECT_FALSE(scenario.scriptFor("getPincode", 1).abort);
    EXPECT_TRUE(scenario.scriptFor("getPincode", 2).abort);
    EXPECT_TRUE(scenario.scriptFor("getPincode", 3).abort);
    EXPECT_FALSE(scenario.scriptFor("getPincode", 4).abort);
    EXPECT_TRUE(read("[getPincode]\nabort=true\nskip=1\n").scriptFor("getPincode", 100).abort);
}

TEST(Scenario, AShopListMayBeAFileBesideTheScenario) {
    EXPECT_EQ(read("[daemon]\nshops=own.xml\n").shopList, "<own/>");
    EXPECT_EQ(read("[daemon]\nshops=./own.xml\n").shopList, "<own/>");
}

TEST(Scenario, AnEventIsAPairOrAReason) {
    expectEvent("0/2", 0, 2);
    expectEvent("7", 1, 7);
    expectEvent("12", 0, 12);
    expectEvent("REASON_CLOSE_REQUESTED_AGAIN", 1, 11);
    expectEvent("EVENT_STEP_DONE/REASON_NO_SERVER", 0, 7);
    expectEvent(" 99 / -4 ", 99, -4);
}

TEST(Scenario, WhatIsNotUnderstoodIsRefusedWithItsPlace) {
    EXPECT_EQ(complaint("[deamon]\n"), "unknown group [deamon]");
    EXPECT_EQ(complaint("[daemon]\ndelays=1\n"), "[daemon] delays: unknown key");
    EXPECT_EQ(complaint("[daemon]\ndelay=soon\n"), "[daemon] delay: \"soon\" is not a number");
    EXPECT_EQ(complaint("[daemon]\ndelay=-1\n"),
              "[daemon] delay: \"-1\" is not a time in milliseconds");
    EXPECT_EQ(complaint("[pincode]\nexpires=yes\n"),
              "[pincode] expires: \"yes\" is neither true nor false");
    EXPECT_EQ(complaint("[getPincode]\ndelay=1\n"),
              "[getPincode] delay: no event follows this method");
    EXPECT_EQ(complaint("[requestPincode]\nreply=1\n"),
              "[requestPincode] reply: this method replies with no value");
    EXPECT_EQ(complaint("[checkShopMode]\nreply=1\n"),
              "[checkShopMode] reply: \"1\" is neither true nor false");
    EXPECT_EQ(complaint("[getPincode]\nerror=no\n"),
              "[getPincode] error: \"no\" is not the name of a D-Bus error");
    EXPECT_EQ(complaint("[requestPincode]\nevents=5\n"),
              "[requestPincode] events: \"5\" is not of the form MS:EVENT");
    EXPECT_EQ(complaint("[requestPincode]\noutcome=REASON_UNKNOWN\n"),
              "[requestPincode] outcome: \"REASON_UNKNOWN\" is not a number");
    EXPECT_NE(complaint("no key file"), "");
    EXPECT_NE(complaint("[daemon]\nshops=nowhere\n"), "");
}

}  // namespace
}  // namespace standin
