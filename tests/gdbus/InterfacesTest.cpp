// SPDX-License-Identifier: Apache-2.0
// What the interface description says: the names, types and numbers of the contract with the
// daemon.
#include <string>
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

}  // namespace
}  // namespace test
