// SPDX-License-Identifier: Apache-2.0
// Power notices, key grabs without a display, and event handlers.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app.h"
#include "device_power.h"
#include "host/notices/PowerNotices.h"
#include "utilx.h"

namespace platform_test {

namespace {

std::vector<std::string> s_notices;

int onPoweroff(int state, void* data) {
    s_notices.push_back("off " + std::to_string(state) + " " + static_cast<const char*>(data));
    return 0;
}

void onWakeup(int state, void* data) {
    s_notices.push_back("on " + std::to_string(state) + " " + static_cast<const char*>(data));
}

int unsubscribeItself(int, void*) {
    return device_power_unsubscribe_poweroff(unsubscribeItself);
}

}  // namespace

TEST(DevicePower, SubscribersHearOfPowerOffAndWakeUp) {
    s_notices.clear();
    char name[] = "a";
    ASSERT_EQ(device_power_subscribe_poweroff(onPoweroff, name), 0);
    ASSERT_EQ(device_power_subscribe_wakeup(onWakeup, name), 0);
    host::poweroffSubscribers().notify(3);
    host::wakeupSubscribers().notify(4);
    EXPECT_EQ(s_notices, (std::vector<std::string>{"off 3 a", "on 4 a"}));
    EXPECT_EQ(device_power_unsubscribe_poweroff(onPoweroff), 0);
    EXPECT_EQ(device_power_unsubscribe_wakeup(onWakeup), 0);
    host::poweroffSubscribers().notify(5);
    host::wakeupSubscribers().notify(5);
    EXPECT_EQ(s_notices.size(), 2U);
}

TEST(DevicePower, WhatIsNotSubscribedCannotBeUnsubscribed) {
    EXPECT_LT(device_power_unsubscribe_poweroff(onPoweroff), 0);
    EXPECT_LT(device_power_unsubscribe_wakeup(onWakeup), 0);
    EXPECT_LT(device_power_subscribe_poweroff(nullptr, nullptr), 0);
    EXPECT_LT(device_power_subscribe_wakeup(nullptr, nullptr), 0);
}

TEST(DevicePower, ASubscriberMayUnsubscribeDuringTheNotice) {
    ASSERT_EQ(device_power_subscribe_poweroff(unsubscribeItself, nullptr), 0);
    host::poweroffSubscribers().notify(1);
    EXPECT_LT(device_power_unsubscribe_poweroff(unsubscribeItself), 0);
}

TEST(KeyGrab, FailsWithoutDisplayWindowOrKey) {
    int display = 0;
    EXPECT_NE(utilx_grab_key(nullptr, 1, "1", TOP_POSITION_GRAB), 0);
    EXPECT_NE(utilx_grab_key(&display, 0, "1", TOP_POSITION_GRAB), 0);
    EXPECT_NE(utilx_grab_key(&display, 1, nullptr, TOP_POSITION_GRAB), 0);
    EXPECT_NE(utilx_grab_key(&display, 1, "1", 7), 0);
}

TEST(EventHandlers, ANullCallbackMayBeRegistered) {
    app_event_handler_h handler = nullptr;
    EXPECT_EQ(ui_app_add_event_handler(&handler, APP_EVENT_LOW_BATTERY, nullptr, nullptr), 0);
    EXPECT_NE(handler, nullptr);
    EXPECT_NE(ui_app_add_event_handler(nullptr, APP_EVENT_LOW_BATTERY, nullptr, nullptr), 0);
    EXPECT_NE(
        ui_app_add_event_handler(&handler, static_cast<app_event_type_e>(9), nullptr, nullptr), 0);
}

}  // namespace platform_test
