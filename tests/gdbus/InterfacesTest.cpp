// SPDX-License-Identifier: Apache-2.0
// What the generated layer says on the wire.
#include <string>
#include <tuple>
#include <vector>

#include "BusTest.h"
#include "gdbus/ZOLTEvents.h"
#include "generated-code.h"

namespace test {
namespace {

std::string arguments(GDBusArgInfo** list) {
    std::string text;
    for (GDBusArgInfo** item = list; item != nullptr && *item != nullptr; ++item) {
        text += std::string(text.empty() ? "" : ", ") + (*item)->name + " " + (*item)->signature;
    }
    return text;
}

std::vector<std::string> methodsOf(const GDBusInterfaceInfo* info) {
    std::vector<std::string> lines;
    for (GDBusMethodInfo** method = info->methods; *method != nullptr; ++method) {
        lines.push_back(std::string((*method)->name) + "(" + arguments((*method)->in_args) +
                        ") -> (" + arguments((*method)->out_args) + ")");
    }
    return lines;
}

std::vector<std::string> signalsOf(const GDBusInterfaceInfo* info) {
    std::vector<std::string> lines;
    for (GDBusSignalInfo** signal = info->signals; *signal != nullptr; ++signal) {
        lines.push_back(std::string((*signal)->name) + "(" + arguments((*signal)->args) + ")");
    }
    return lines;
}

ZOLTGUI* newProxy() {
    GError* error = nullptr;
    ZOLTGUI* proxy = zolt_gui_proxy_new_for_bus_sync(
        G_BUS_TYPE_SYSTEM, G_DBUS_PROXY_FLAGS_DO_NOT_AUTO_START, "org.tizen.GDBus.ZoltContent",
        "/zolt/gui", nullptr, &error);
    EXPECT_EQ(error, nullptr);
    return proxy;
}

TEST(Interfaces, GuiHasItsTwelveMethodsInOrder) {
    const GDBusInterfaceInfo* info = zolt_gui_interface_info();
    EXPECT_STREQ(info->name, "org.tizen.GDBus.ZoltContent.GUI");
    EXPECT_EQ(methodsOf(info), (std::vector<std::string>{
                                   "requestPincode() -> ()",
                                   "getPincode() -> (pincode s)",
                                   "requestPincodeVerification() -> ()",
                                   "checkShopRegistration() -> (registred b)",
                                   "requestShopInfoList() -> ()",
                                   "getShopInfoList() -> (shopList s)",
                                   "requestRegistrationShopInfo(shopConf s) -> ()",
                                   "getRegisteredShopInfo() -> (shopConf s)",
                                   "checkShopMode() -> (shopMode b)",
                                   "applicationCancelled() -> ()",
                                   "unregister() -> ()",
                                   "deleteRegistrationInfo() -> ()",
                               }));
    EXPECT_EQ(signalsOf(info), std::vector<std::string>{"sendEvent(event i, reason i)"});
}

TEST(Interfaces, ScreenSaverHasItsFourMethodsAndTwoSignals) {
    const GDBusInterfaceInfo* info = zolt_screen_saver_interface_info();
    EXPECT_STREQ(info->name, "org.tizen.GDBus.ZoltContent.ScreenSaver");
    EXPECT_EQ(methodsOf(info), (std::vector<std::string>{
                                   "ready() -> ()",
                                   "getTimeOffset() -> (timeOffset s)",
                                   "sendLog(startTime s, endTime s) -> ()",
                                   "sendErrorLog(errorCode s, errorMessage s) -> ()",
                               }));
    EXPECT_EQ(signalsOf(info),
              (std::vector<std::string>{"sendRequest(event i)", "setContentPath(path s)"}));
}

TEST(Interfaces, NeitherHasPropertiesOrAnnotations) {
    for (const GDBusInterfaceInfo* info :
         {zolt_gui_interface_info(), zolt_screen_saver_interface_info()}) {
        EXPECT_EQ(info->properties, nullptr);
        EXPECT_EQ(info->annotations, nullptr);
        for (GDBusMethodInfo** method = info->methods; *method != nullptr; ++method) {
            EXPECT_EQ((*method)->annotations, nullptr) << (*method)->name;
        }
    }
}

TEST(Interfaces, AnInterfaceNameLeadsToItsProxyType) {
    const auto typeOf = [](const char* name) {
        return zolt_object_manager_client_get_proxy_type(nullptr, "/zolt/gui", name, nullptr);
    };
    EXPECT_EQ(typeOf(GUI_INTERFACE), ZOLT_TYPE_GUI_PROXY);
    EXPECT_EQ(typeOf(SCREEN_SAVER_INTERFACE), ZOLT_TYPE_SCREEN_SAVER_PROXY);
    EXPECT_EQ(typeOf(nullptr), ZOLT_TYPE_OBJECT_PROXY);
    EXPECT_EQ(typeOf("org.example.Unknown"), G_TYPE_DBUS_PROXY);
}

TEST(Interfaces, EventsAndReasonsHaveTheirNumbers) {
    EXPECT_EQ(ZOLT::EVENT_STEP_DONE, 0);
    EXPECT_EQ(ZOLT::EVENT_CLOSE_GUI, 1);
    const std::vector<int> reasons = {ZOLT::REASON_PINCODE_READY,
                                      ZOLT::REASON_PINCODE_VERIFIED,
                                      ZOLT::REASON_SHOP_LIST_READY,
                                      ZOLT::REASON_REGISTRATION_DONE,
                                      ZOLT::REASON_DEREGISTRATION_DONE,
                                      ZOLT::REASON_NETWORK_UNSTABLE,
                                      ZOLT::REASON_NO_NETWORK,
                                      ZOLT::REASON_NO_SERVER,
                                      ZOLT::REASON_PIN_TIME_EXPIRED,
                                      ZOLT::REASON_NOT_FOUND_IN_LAN,
                                      ZOLT::REASON_CLOSE_REQUESTED,
                                      ZOLT::REASON_CLOSE_REQUESTED_AGAIN,
                                      ZOLT::REASON_REGISTRATION_INFO_DELETED};
    EXPECT_EQ(reasons, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

class InterfacesOnTheBus : public BusTest {};

TEST_F(InterfacesOnTheBus, AnEmptyShopListOrTheWordNullIsASuccessHere) {
    FakeService service;
    service.own();
    ZOLTGUI* proxy = newProxy();
    for (const std::string text : {"", "null"}) {
        service.answer("getShopInfoList", "('" + text + "',)");
        gchar* reply = nullptr;
        GError* error = nullptr;
        EXPECT_TRUE(zolt_gui_call_get_shop_info_list_sync(proxy, &reply, nullptr, &error));
        EXPECT_EQ(error, nullptr);
        EXPECT_EQ(reply, text);
        g_free(reply);
    }
    g_object_unref(proxy);
}

TEST_F(InterfacesOnTheBus, AnEventOutsideTheKnownNumbersIsDeliveredUnchanged) {
    FakeService service;
    service.own();
    ZOLTGUI* proxy = newProxy();
    std::vector<std::tuple<int, int>> events;
    const auto onEvent = +[](ZOLTGUI*, gint event, gint reason, gpointer data) {
        static_cast<std::vector<std::tuple<int, int>>*>(data)->emplace_back(event, reason);
    };
    g_signal_connect(proxy, "send-event", G_CALLBACK(onEvent), &events);
    settle(service);
    service.sendEvent(2, 0);
    service.sendEvent(0, 5);
    service.sendEvent(-1, 2147483647);
    settle(service);
    EXPECT_EQ(events, (std::vector<std::tuple<int, int>>{{2, 0}, {0, 5}, {-1, 2147483647}}));
    g_object_unref(proxy);
}

}  // namespace
}  // namespace test
