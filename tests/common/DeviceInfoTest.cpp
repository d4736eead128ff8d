// SPDX-License-Identifier: Apache-2.0
// What the program reads from the television, and what happens when a value is missing.
#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include <boost/date_time/gregorian/greg_day.hpp>
#include <boost/date_time/gregorian/greg_month.hpp>
#include <boost/date_time/gregorian/greg_year.hpp>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/DeviceInfo.h"
#include "common/Thrown.h"
#include "common/systemcalls/SystemCalls.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::Handout;
using support::Network;
using support::NetworkProfile;
using support::ScriptedPlatform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

namespace ZOLT {

namespace {

constexpr char DUID_KEY[] = "db/comss/duid";

// Error codes of the value interfaces, and numbers that have no name there.
const int REFUSALS[] = {-22, -12, -5, 1, INT_MIN, INT_MAX};

// Error codes of the connection interface.
const int CONNECTION_ERRORS[] = {
    CONNECTION_ERROR_OUT_OF_MEMORY,
    CONNECTION_ERROR_INVALID_OPERATION,
    CONNECTION_ERROR_INVALID_PARAMETER,
    CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED,
    CONNECTION_ERROR_NOW_IN_PROGRESS,
    CONNECTION_ERROR_OPERATION_FAILED,
    CONNECTION_ERROR_ITERATOR_END,
    CONNECTION_ERROR_NO_CONNECTION,
    CONNECTION_ERROR_ALREADY_EXISTS,
    CONNECTION_ERROR_OPERATION_ABORTED,
    CONNECTION_ERROR_DHCP_FAILED,
    CONNECTION_ERROR_INVALID_KEY,
    CONNECTION_ERROR_NO_REPLY,
    CONNECTION_ERROR_NO_KEYWORD,
    CONNECTION_ERROR_TCP_RST,
    CONNECTION_ERROR_TCP_SYN_TIMEOUT,
    CONNECTION_ERROR_NETWORK_MONITOR_FAILURE,
    CONNECTION_ERROR_OFFLINE,
    CONNECTION_ERROR_INVALID_GATEWAY,
    CONNECTION_ERROR_INVALID_MACADDRESS,
    1,
    INT_MIN,
    INT_MAX,
};

const std::string LONG_TEXT(1000000, 'x');

void changed(runtime_info_key_e /*key*/, void* /*data*/) {}

NetworkProfile profile(int type) {
    NetworkProfile made;
    made.type = type;
    return made;
}

NetworkProfile nullProfile() {
    NetworkProfile made;
    made.null = true;
    return made;
}

class DeviceInfoTest : public testing::Test {
  protected:
    void SetUp() override {
        platform.reset();
        DeviceInfo::m_duid.clear();
    }

    bool progress(const std::string& message) const {
        return platform.hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, message);
    }
    bool warned(const std::string& message) const {
        return platform.hasLine(LOG_ID_SYSTEM, DLOG_WARN, message);
    }

    // A network with these profiles.
    void connectWith(const std::vector<NetworkProfile>& profiles) {
        Network network;
        network.profiles = profiles;
        platform.setNetwork(network);
    }

    // Expects that getNetworkMAC fails with TEXT, logs it, and releases everything.
    void expectNoMac(const std::string& text) {
        platform.clearLog();
        EXPECT_EQ(thrownBy([this] { info.getNetworkMAC(); }), text);
        EXPECT_EQ(platform.messages(LOG_ID_SYSTEM, DLOG_WARN).back(), text);
        EXPECT_EQ(platform.findLine(text)->function, "getNetworkMAC");
        EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 0);
        EXPECT_EQ(platform.outstanding(Handout::Connection), 0);
    }

    ScriptedPlatform& platform = ScriptedPlatform::get();
    SystemCalls systemCalls;
    DeviceInfo info{&systemCalls};
};

TEST_F(DeviceInfoTest, OnlyTheUseModeOneIsShopMode) {
    platform.setRuntimeInfo(59, 1);
    EXPECT_TRUE(info.inShopMode());
    EXPECT_TRUE(progress("TV mode is shop mode"));
    EXPECT_FALSE(progress("TV mode is not shop mode"));
    for (const int mode : {0, 2, -1, 257, INT_MIN, INT_MAX}) {
        platform.setRuntimeInfo(59, mode);
        platform.clearLog();
        EXPECT_FALSE(info.inShopMode());
        EXPECT_TRUE(progress("TV mode is not shop mode"));
        EXPECT_FALSE(progress("TV mode is shop mode"));
    }
}

TEST_F(DeviceInfoTest, UseModeThatCannotBeReadThrowsWithTheCode) {
    for (const int code : REFUSALS) {
        platform.answer("runtime_info_get_value_int", code);
        EXPECT_EQ(thrownBy([this] { info.inShopMode(); }),
                  "Failed to retrieve TV System Use Mode: " + std::to_string(code));
    }
}

TEST_F(DeviceInfoTest, ShopModeIsSetWithItsTwoLines) {
    info.setShopMode(true);
    EXPECT_EQ(platform.systemSettingInt(19), 1);
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                ElementsAre("Device Info set UseMode", "Support/UseMode set successful: 1"));
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
    info.setShopMode(false);
    EXPECT_EQ(platform.systemSettingInt(19), 0);
    EXPECT_TRUE(progress("Support/UseMode set successful: 0"));
}

TEST_F(DeviceInfoTest, ShopModeThatCannotBeSetWritesFailureAndSuccess) {
    for (const int code : REFUSALS) {
        platform.answer("system_settings_set_value_int", code);
        platform.clearLog();
        EXPECT_NO_THROW(info.setShopMode(true));
        EXPECT_THAT(
            platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
            ElementsAre("Failed to set the value of SystemUseMode, " + std::to_string(code)));
        EXPECT_THAT(platform.messages(),
                    ElementsAre(StartsWith("Called "), "Device Info set UseMode",
                                StartsWith("Failed to set the value of SystemUseMode, "),
                                "Support/UseMode set successful: 1"));
    }
}

TEST_F(DeviceInfoTest, LanguageIsTheCallersToFree) {
    char* language = nullptr;
    info.getLanguageStringValue(&language);
    EXPECT_STREQ(language, "en_US.utf8");
    std::free(language);
    EXPECT_THAT(platform.calls(), ElementsAre("runtime_info_get_value_string(0)"));
}

TEST_F(DeviceInfoTest, LanguageThatFailsOrIsNullOrEmptyThrows) {
    char* language = nullptr;
    platform.setRuntimeInfo(0, "");
    EXPECT_EQ(thrownBy([&] { info.getLanguageStringValue(&language); }),
              "Failed to retrieve language value, 0");
    EXPECT_EQ(language, nullptr);
    platform.setRuntimeInfo(0, std::nullopt);
    EXPECT_EQ(thrownBy([&] { info.getLanguageStringValue(&language); }),
              "Failed to retrieve language value, 0");
    for (const int code : REFUSALS) {
        platform.answer("runtime_info_get_value_string", code);
        EXPECT_EQ(thrownBy([&] { info.getLanguageStringValue(&language); }),
                  "Failed to retrieve language value, " + std::to_string(code));
    }
}

TEST_F(DeviceInfoTest, LanguageWithoutAPlaceThrows) {
    EXPECT_EQ(thrownBy([&] { info.getLanguageStringValue(nullptr); }),
              "Failed to retrieve language value, -22");
    platform.acceptNullPlaces(true);
    EXPECT_EQ(thrownBy([&] { info.getLanguageStringValue(nullptr); }),
              "Failed to retrieve language value, 0");
}

TEST_F(DeviceInfoTest, TextsOfAnyLengthComeUnchanged) {
    for (const int key : {0, 34, 181, 187, 191}) {
        platform.setRuntimeInfo(key, LONG_TEXT);
    }
    platform.setSystemSetting(323, LONG_TEXT);
    platform.setSystemInfo(0, LONG_TEXT);
    platform.setVconf(DUID_KEY, LONG_TEXT);
    char* language = nullptr;
    info.getLanguageStringValue(&language);
    EXPECT_EQ(language, LONG_TEXT);
    std::free(language);
    EXPECT_EQ(info.getLanguageCode(), LONG_TEXT);
    EXPECT_EQ(info.getCountryCode(), LONG_TEXT);
    EXPECT_EQ(info.getModelId(), LONG_TEXT);
    EXPECT_EQ(info.getDUID(), LONG_TEXT);
    EXPECT_EQ(info.getWiredIp(), LONG_TEXT);
    EXPECT_EQ(info.getWirelessIp(), LONG_TEXT);
    EXPECT_EQ(info.getNetworkType(), LONG_TEXT);
    EXPECT_FALSE(info.isWiredNetworkType());
}

TEST_F(DeviceInfoTest, LanguageCodeEndsAtTheFirstUnderscore) {
    const std::pair<const char*, const char*> cases[] = {
        {"en_US.utf8", "en"}, {"ko", "ko"}, {"zh_Hant_TW", "zh"}, {"_x", ""}, {"", ""}};
    for (const auto& [menu, code] : cases) {
        platform.setRuntimeInfo(34, menu);
        EXPECT_EQ(info.getLanguageCode(), code) << menu;
    }
}

TEST_F(DeviceInfoTest, LanguageCodeThatFailsOrIsNullThrows) {
    platform.setRuntimeInfo(34, std::nullopt);
    EXPECT_EQ(thrownBy([this] { info.getLanguageCode(); }),
              "Failed to retrieve language code value, 0");
    for (const int code : REFUSALS) {
        platform.answer("runtime_info_get_value_string", code);
        EXPECT_EQ(thrownBy([this] { info.getLanguageCode(); }),
                  "Failed to retrieve language code value, " + std::to_string(code));
    }
}

TEST_F(DeviceInfoTest, CountryCodeComesFromTheSettings) {
    platform.setSystemSetting(323, "KR");
    EXPECT_EQ(info.getCountryCode(), "KR");
    EXPECT_THAT(platform.calls(), ElementsAre("system_settings_get_value_string(323)"));
}

TEST_F(DeviceInfoTest, CountryCodeThatFailsOrIsNullOrEmptyThrows) {
    for (const std::optional<std::string>& value : {std::optional<std::string>(""), {}}) {
        platform.setSystemSetting(323, value);
        EXPECT_EQ(thrownBy([this] { info.getCountryCode(); }),
                  "Failed to retrieve country code value, 0");
    }
    for (const int code : REFUSALS) {
        platform.answer("system_settings_get_value_string", code);
        EXPECT_EQ(thrownBy([this] { info.getCountryCode(); }),
                  "Failed to retrieve country code value, " + std::to_string(code));
    }
}

TEST_F(DeviceInfoTest, FirstDeviceIdIsReadAndThenWatched) {
    EXPECT_EQ(info.getDUID(), "DUID0123456789");
    EXPECT_THAT(platform.calls(), ElementsAre("vconf_get_str(db/comss/duid)",
                                              "vconf_notify_key_changed(db/comss/duid)"));
}

TEST_F(DeviceInfoTest, SecondDeviceIdComesFromTheCacheAlone) {
    info.getDUID();
    platform.setVconf(DUID_KEY, "other");
    platform.clearCalls();
    EXPECT_EQ(info.getDUID(), "DUID0123456789");
    EXPECT_EQ(DeviceInfo(&systemCalls).getDUID(), "DUID0123456789");
    EXPECT_THAT(platform.calls(), IsEmpty());
}

TEST_F(DeviceInfoTest, NoticeOfANewDeviceIdFreshensTheCache) {
    info.getDUID();
    platform.setVconf(DUID_KEY, "fresh");
    EXPECT_TRUE(platform.fireVconfChanged(DUID_KEY));
    EXPECT_EQ(info.getDUID(), "fresh");
}

TEST_F(DeviceInfoTest, MissingDeviceIdThrowsAndIsNotWatched) {
    platform.setVconf(DUID_KEY, std::nullopt);
    EXPECT_EQ(thrownBy([this] { info.getDUID(); }), "Could not retrieve DUID");
    EXPECT_FALSE(platform.hasVconfCallback(DUID_KEY));
    platform.setVconf(DUID_KEY, "late");
    EXPECT_EQ(info.getDUID(), "late");
    EXPECT_TRUE(platform.hasVconfCallback(DUID_KEY));
}

TEST_F(DeviceInfoTest, DeviceIdThatIsLostKeepsTheCacheAndTheNoticeThrows) {
    info.getDUID();
    platform.setVconf(DUID_KEY, std::nullopt);
    EXPECT_EQ(thrownBy([this] { platform.fireVconfChanged(DUID_KEY); }), "Could not retrieve DUID");
    EXPECT_EQ(info.getDUID(), "DUID0123456789");
}

TEST_F(DeviceInfoTest, EmptyDeviceIdIsNoCacheAndIsAskedForAgain) {
    platform.setVconf(DUID_KEY, "");
    EXPECT_EQ(info.getDUID(), "");
    EXPECT_EQ(info.getDUID(), "");
    EXPECT_EQ(platform.countCalls("vconf_get_str"), 2);
    EXPECT_EQ(platform.countCalls("vconf_notify_key_changed"), 2);
}

TEST_F(DeviceInfoTest, DeviceIdThatCannotBeWatchedIsGivenAllTheSame) {
    for (const int code : {-1, 1, INT_MIN}) {
        DeviceInfo::m_duid.clear();
        platform.answer("vconf_notify_key_changed", code);
        EXPECT_EQ(info.getDUID(), "DUID0123456789");
    }
    EXPECT_FALSE(platform.hasVconfCallback(DUID_KEY));
}

TEST_F(DeviceInfoTest, DeviceIdMayChangeOnAnotherThreadWhileItIsRead) {
    info.getDUID();
    std::atomic<bool> stop{false};
    std::thread notices([&] {
        while (!stop) {
            platform.fireVconfChanged(DUID_KEY);
        }
    });
    for (int round = 0; round < 500; ++round) {
        EXPECT_EQ(info.getDUID(), "DUID0123456789");
    }
    stop = true;
    notices.join();
}

TEST_F(DeviceInfoTest, ModelMayBeEmpty) {
    EXPECT_EQ(info.getModelId(), "TV-55");
    platform.setSystemInfo(0, "");
    EXPECT_EQ(info.getModelId(), "");
}

TEST_F(DeviceInfoTest, ModelThatFailsOrIsNullThrows) {
    platform.setSystemInfo(0, std::nullopt);
    EXPECT_EQ(thrownBy([this] { info.getModelId(); }), "Failed to retrieve model ID: 0");
    for (const int code : REFUSALS) {
        platform.answer("system_info_get_value_string", code);
        EXPECT_EQ(thrownBy([this] { info.getModelId(); }),
                  "Failed to retrieve model ID: " + std::to_string(code));
    }
}

TEST_F(DeviceInfoTest, ServerRecordOfZeroIsTheOperatingServer) {
    platform.setFactoryRecord(2, 0);
    EXPECT_EQ(info.getServerType(), "OperatingServer");
    EXPECT_THAT(platform.calls(), ElementsAre("GetData(517)"));
    EXPECT_TRUE(progress("Server Type: operating"));
}

TEST_F(DeviceInfoTest, AnyOtherServerRecordIsTheDevelopmentServer) {
    for (const int record : {1, -1, 256, 0x01000000, INT_MIN, INT_MAX}) {
        platform.setFactoryRecord(2, record);
        platform.clearLog();
        EXPECT_EQ(info.getServerType(), "DevelopmentServer");
        EXPECT_TRUE(progress("Server Type: development"));
    }
}

TEST_F(DeviceInfoTest, UnknownServerRecordIsTheDevelopmentServerWithAWarning) {
    for (const int type : {1, 0, -1, 3, INT_MIN, INT_MAX}) {
        platform.setFactoryRecord(type, 0);
        EXPECT_EQ(info.getServerType(), "DevelopmentServer");
        EXPECT_TRUE(warned("Unknown info struct type: " + std::to_string(type)));
    }
}

TEST_F(DeviceInfoTest, ServerRecordIsReadIntoAClearedBufferOf1008Bytes) {
    info.getServerType();
    const auto buffer = platform.factoryBuffer();
    EXPECT_EQ(buffer.size(), 1008U);
    EXPECT_TRUE(std::all_of(buffer.begin(), buffer.end(), [](int byte) { return byte == 0; }));
}

TEST_F(DeviceInfoTest, OnlyAWidthOf2560Is21To9) {
    platform.setSystemInfo(380, 2560);
    EXPECT_TRUE(info.is219TVSupported());
    EXPECT_TRUE(progress("width = 2560"));
    EXPECT_FALSE(progress("This TV doesn't support 21:9 resolution"));
    for (const int width : {2559, 2561, 3840, 1920, 0, -2560, INT_MIN, INT_MAX}) {
        platform.setSystemInfo(380, width);
        platform.clearLog();
        EXPECT_FALSE(info.is219TVSupported()) << width;
        EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                    ElementsAre("width = " + std::to_string(width),
                                "This TV doesn't support 21:9 resolution"));
    }
}

TEST_F(DeviceInfoTest, ScreenSizeIsThePanels) {
    platform.setSystemInfo(380, 1280);
    platform.setSystemInfo(381, 720);
    EXPECT_EQ(info.getScreenWidth(), 1280);
    EXPECT_EQ(info.getScreenHeight(), 720);
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                ElementsAre("Device Info screen width get success: 1280",
                            "Device Info screen height get success: 720"));
    for (const int size : {0, -1, INT_MIN, INT_MAX}) {
        platform.setSystemInfo(380, size);
        platform.setSystemInfo(381, size);
        EXPECT_EQ(info.getScreenWidth(), size);
        EXPECT_EQ(info.getScreenHeight(), size);
        EXPECT_TRUE(progress("Device Info screen width get success: " + std::to_string(size)));
        EXPECT_TRUE(progress("Device Info screen height get success: " + std::to_string(size)));
    }
}

TEST_F(DeviceInfoTest, SizeThatCannotBeReadThrowsWithTheCode) {
    for (const int code : REFUSALS) {
        const std::string number = std::to_string(code);
        platform.answer("system_info_get_value_int", code);
        EXPECT_EQ(thrownBy([this] { info.getScreenWidth(); }),
                  "Unable to retrieve screen width, " + number);
        EXPECT_EQ(thrownBy([this] { info.getScreenHeight(); }),
                  "Unable to retrieve screen height, " + number);
        EXPECT_EQ(thrownBy([this] { info.is219TVSupported(); }),
                  "Unable to retrieve if the 21:9 TV is supported or not, " + number);
    }
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG), IsEmpty());
}

TEST_F(DeviceInfoTest, AddressesAndNetworkTypeComeFromTheRuntimeInformation) {
    platform.setRuntimeInfo(187, "10.0.0.1");
    platform.setRuntimeInfo(181, "10.0.0.2");
    platform.setRuntimeInfo(191, "");
    EXPECT_EQ(info.getWiredIp(), "10.0.0.1");
    EXPECT_EQ(info.getWirelessIp(), "10.0.0.2");
    EXPECT_EQ(info.getNetworkType(), "");
}

TEST_F(DeviceInfoTest, WiredIsWiredInAnyCase) {
    for (const char* type : {"wired", "WIRED", "Wired"}) {
        platform.setRuntimeInfo(191, type);
        EXPECT_TRUE(info.isWiredNetworkType()) << type;
    }
    for (const char* type : {"wireless", "wired ", "wire", ""}) {
        platform.setRuntimeInfo(191, type);
        EXPECT_FALSE(info.isWiredNetworkType()) << type;
    }
}

TEST_F(DeviceInfoTest, RuntimeTextThatFailsOrIsNullSaysOutOfMemory) {
    const std::function<void()> getters[] = {
        [this] { info.getWiredIp(); }, [this] { info.getWirelessIp(); },
        [this] { info.getNetworkType(); }, [this] { info.isWiredNetworkType(); }};
    for (const int key : {181, 187, 191}) {
        platform.setRuntimeInfo(key, std::nullopt);
    }
    for (const int code : {0, -5, -12, -22, INT_MIN, INT_MAX}) {
        platform.answer("runtime_info_get_value_string", code);
        for (const auto& getter : getters) {
            platform.clearLog();
            EXPECT_EQ(thrownBy(getter), "Out of memory");
            EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
                        ElementsAre(StartsWith("Caught exception: ")));
        }
    }
}

TEST_F(DeviceInfoTest, NameOfARuntimeTextMayBeEmptyOrLongOrLookLikeAFormat) {
    platform.answer("runtime_info_get_value_string", -5);
    const auto failureOf = [this](const std::string& name) {
        return thrownBy([&] { info.getStringRuntimeInfo(RUNTIME_INFO_KEY_WIRED_IP, name); });
    };
    EXPECT_EQ(failureOf(""), "Out of memory");
    EXPECT_EQ(failureOf(LONG_TEXT), "Out of memory");
    // With a directive in the name the format takes the value.
    EXPECT_EQ(failureOf("%d"), "Failed to retrieve 1 : -5");
    EXPECT_EQ(failureOf("%"), "Out of memory");
}

TEST_F(DeviceInfoTest, LocalAddressIsTheConnections) {
    EXPECT_EQ(info.getLocalHostIP(), "192.168.0.10");
    EXPECT_EQ(platform.outstanding(Handout::Connection), 0);
    platform.answer("connection_create", CONNECTION_ERROR_OUT_OF_MEMORY);
    EXPECT_EQ(info.getLocalHostIP(), "");
}

TEST_F(DeviceInfoTest, NoticesAreForwarded) {
    info.setWiredIpChangedCb(changed, nullptr);
    info.setWirelessIpChangedCb(changed, nullptr);
    info.setNetworkTypeChangedCb(changed, nullptr);
    info.unsetWirelessIpChangedCb();
    info.unsetNetworkTypeChangedCb();
    EXPECT_THAT(
        platform.calls(),
        ElementsAre("runtime_info_set_changed_cb(187)", "runtime_info_set_changed_cb(181)",
                    "runtime_info_set_changed_cb(191)", "runtime_info_unset_changed_cb(181)",
                    "runtime_info_unset_changed_cb(191)"));
}

TEST_F(DeviceInfoTest, EndOfTheWiredNoticeEndsTheWirelessOneAndLeavesTheWiredOne) {
    info.setWiredIpChangedCb(changed, nullptr);
    info.setWirelessIpChangedCb(changed, nullptr);
    info.unsetWiredIpChangedCb();
    EXPECT_TRUE(platform.hasRuntimeInfoCallback(RUNTIME_INFO_KEY_WIRED_IP));
    EXPECT_FALSE(platform.hasRuntimeInfoCallback(RUNTIME_INFO_KEY_WIRELESS_IP));
}

TEST_F(DeviceInfoTest, RefusedNoticePassesItsExceptionOn) {
    platform.answer("runtime_info_set_changed_cb", -1);
    EXPECT_EQ(thrownBy([this] { info.setWiredIpChangedCb(changed, nullptr); }),
              "Failed to set Changed callback for: Wired IP");
    EXPECT_EQ(thrownBy([this] { info.setWirelessIpChangedCb(changed, nullptr); }),
              "Failed to set Changed callback for: Wireless IP");
    EXPECT_EQ(thrownBy([this] { info.setNetworkTypeChangedCb(nullptr, nullptr); }),
              "Failed to set Changed callback for: Network type");
}

TEST_F(DeviceInfoTest, NoticesCarryTheirDataUnchanged) {
    const auto note = [](runtime_info_key_e key, void* data) { *static_cast<int*>(data) = key; };
    int wired = 0;
    int wireless = 0;
    int type = 0;
    info.setWiredIpChangedCb(note, &wired);
    info.setWirelessIpChangedCb(note, &wireless);
    info.setNetworkTypeChangedCb(note, &type);
    for (const auto key :
         {RUNTIME_INFO_KEY_WIRED_IP, RUNTIME_INFO_KEY_WIRELESS_IP, RUNTIME_INFO_KEY_NETWORK_TYPE}) {
        EXPECT_TRUE(platform.fireRuntimeInfoChanged(key));
    }
    EXPECT_EQ(wired, 187);
    EXPECT_EQ(wireless, 181);
    EXPECT_EQ(type, 191);
}

TEST_F(DeviceInfoTest, MacIsThatOfTheFirstWirelessOrWiredProfile) {
    connectWith({profile(0), nullProfile(), profile(1), profile(2)});
    EXPECT_EQ(info.getNetworkMAC(), "00:11:22:33:44:55");
    EXPECT_THAT(
        platform.calls(),
        ElementsAre("connection_create()", "connection_get_profile_iterator(0)",
                    "connection_profile_iterator_has_next()", "connection_profile_iterator_next()",
                    "connection_profile_get_type()", "connection_profile_iterator_has_next()",
                    "connection_profile_iterator_next()", "connection_profile_iterator_has_next()",
                    "connection_profile_iterator_next()", "connection_profile_get_type()",
                    "connection_destroy_profile_iterator()", "connection_get_mac_address(1)",
                    "connection_destroy()"));
    EXPECT_TRUE(progress("Getting MAC address"));
    EXPECT_EQ(platform.outstanding(Handout::ProfileIterator), 0);
    EXPECT_EQ(platform.outstanding(Handout::Connection), 0);
}

TEST_F(DeviceInfoTest, MacOfAnEthernetProfileIsAskedOfTheEthernet) {
    connectWith({profile(2)});
    info.getNetworkMAC();
    EXPECT_EQ(platform.countCalls("connection_get_mac_address"), 1);
    EXPECT_THAT(platform.calls("connection_get_mac_address"),
                ElementsAre("connection_get_mac_address(3)"));
}

TEST_F(DeviceInfoTest, MacOfAProfileOfAnotherTypeIsNotToBeHad) {
    connectWith({profile(0), profile(3)});
    expectNoMac("Network is not connected, Unable to get MAC address");
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
                ElementsAre("map::at", "Network is not connected, Unable to get MAC address"));
    EXPECT_EQ(platform.countCalls("connection_get_mac_address"), 0);
}

TEST_F(DeviceInfoTest, MacWithoutAnyProfileFailsToInit) {
    connectWith({});
    expectNoMac("Failed to init network API");
    connectWith({nullProfile()});
    expectNoMac("Failed to init network API");
}

TEST_F(DeviceInfoTest, MacFailsToInitAtEachStepOfTheNetworkInterface) {
    for (const char* function :
         {"connection_create", "connection_get_profile_iterator",
          "connection_profile_iterator_next", "connection_profile_get_type"}) {
        for (const int code : CONNECTION_ERRORS) {
            platform.reset();
            platform.answer(function, code);
            expectNoMac("Failed to init network API");
        }
    }
}

TEST_F(DeviceInfoTest, MacOfALaterProfileFailsAsThatOfTheFirst) {
    connectWith({profile(0), profile(1)});
    platform.answers("connection_profile_iterator_next", {0, CONNECTION_ERROR_OFFLINE});
    expectNoMac("Failed to init network API");
    platform.answers("connection_profile_get_type", {0, CONNECTION_ERROR_OFFLINE});
    expectNoMac("Failed to init network API");
}

TEST_F(DeviceInfoTest, MacAfterALastProfileThatIsNullFollowsTheOneBefore) {
    connectWith({profile(0), nullProfile()});
    expectNoMac("Network is not connected, Unable to get MAC address");
}

TEST_F(DeviceInfoTest, MacThatTheConnectionDoesNotKnowThrows) {
    for (const int code : CONNECTION_ERRORS) {
        platform.answer("connection_get_mac_address", code);
        expectNoMac("Unable to get MAC address");
    }
}

TEST_F(DeviceInfoTest, MacMayBeEmptyOrLongButNotNull) {
    Network network;
    for (const std::string& mac : {std::string(), LONG_TEXT}) {
        network.mac = mac;
        platform.setNetwork(network);
        EXPECT_EQ(info.getNetworkMAC(), mac);
        EXPECT_TRUE(info.isMACReady());
        EXPECT_TRUE(progress("MAC ready: " + mac));
    }
    network.mac = std::nullopt;
    platform.setNetwork(network);
    expectNoMac("Unable to get MAC address");
}

TEST_F(DeviceInfoTest, MacIsReadyOrThrowsAndNeverFalse) {
    EXPECT_TRUE(info.isMACReady());
    EXPECT_TRUE(progress("MAC ready: 00:11:22:33:44:55"));
    platform.answer("connection_create", -38);
    EXPECT_EQ(thrownBy([this] { info.isMACReady(); }), "Failed to init network API");
}

TEST_F(DeviceInfoTest, LocalTimeIsTheClocksAndUtcIsWorkedOutFromIt) {
    platform.setClock(1463128402, 9 * 3600L);
    EXPECT_EQ(to_iso_extended_string(info.getLocalTime()), "2016-05-13T08:33:22");
    EXPECT_EQ(to_iso_extended_string(info.getUTCTime()), "2016-05-12T23:33:22");
    const tm time = info.getLocalTimeTm();
    EXPECT_EQ(time.tm_year, 116);
    EXPECT_EQ(time.tm_mon, 4);
    EXPECT_EQ(time.tm_mday, 13);
    EXPECT_EQ(time.tm_hour, 8);
    EXPECT_EQ(time.tm_min, 33);
    EXPECT_EQ(time.tm_sec, 22);
}

TEST_F(DeviceInfoTest, YearBeyondTheCalendarThrows) {
    constexpr time_t YEAR_1399 = -18019152000;
    constexpr time_t YEAR_10000 = 253402300800;
    constexpr time_t YEAR_67536 = 2069049484800;  // would wrap to 2000
    // The first and the last second with a calendar year, in the years of INT_MIN and INT_MAX.
    constexpr time_t FIRST = -67768040609740800;
    constexpr time_t LAST = 67768036191676799;
    for (const time_t seconds : {YEAR_1399, YEAR_10000, YEAR_67536, FIRST, LAST}) {
        platform.setClock(seconds, 0);
        EXPECT_THROW(info.getLocalTime(), boost::gregorian::bad_year) << seconds;
        EXPECT_THROW(info.getUTCTime(), boost::gregorian::bad_year) << seconds;
    }
}

TEST_F(DeviceInfoTest, CalendarsFirstAndLastSecondAreTimes) {
    constexpr time_t FIRST = -17987443200;
    constexpr time_t LAST = 253402300799;
    platform.setClock(FIRST, 0);
    EXPECT_EQ(to_iso_extended_string(info.getLocalTime()), "1400-01-01T00:00:00");
    platform.setClock(LAST, 0);
    EXPECT_EQ(to_iso_extended_string(info.getUTCTime()), "9999-12-31T23:59:59");
}

tm day(int month, int dayOfMonth) {
    tm time{};
    time.tm_year = 116;
    time.tm_mon = month;
    time.tm_mday = dayOfMonth;
    return time;
}

TEST_F(DeviceInfoTest, MonthBeyondTheCalendarThrows) {
    for (const int month : {-1, 12, 65536, INT_MIN, INT_MAX}) {
        platform.setBrokenDownTime(day(month, 1));
        EXPECT_THROW(info.getLocalTime(), boost::gregorian::bad_month) << month;
        EXPECT_THROW(info.getUTCTime(), boost::gregorian::bad_month) << month;
    }
}

TEST_F(DeviceInfoTest, DayBeyondTheCalendarThrows) {
    for (const int dayOfMonth : {-1, 0, 30, 32, 65537, INT_MIN, INT_MAX}) {
        platform.setBrokenDownTime(day(1, dayOfMonth));
        EXPECT_THROW(info.getLocalTime(), boost::gregorian::bad_day_of_month) << dayOfMonth;
        EXPECT_THROW(info.getUTCTime(), boost::gregorian::bad_day_of_month) << dayOfMonth;
    }
    platform.setBrokenDownTime(day(1, 29));
    EXPECT_EQ(to_iso_extended_string(info.getLocalTime()), "2016-02-29T00:00:00");
}

TEST_F(DeviceInfoTest, TimesAreKeptInMicroseconds) {
    EXPECT_EQ(info.getLocalTime().time_of_day().ticks_per_second(), 1000000);
}

// Works in a folder of its own, where the flag files of the image type are.
class ImageTypeTest : public DeviceInfoTest {
  protected:
    void SetUp() override {
        DeviceInfoTest::SetUp();
        std::filesystem::current_path(folder.path());
    }
    void TearDown() override { std::filesystem::current_path(before); }

    std::filesystem::path before = std::filesystem::current_path();
    support::TemporaryFolder folder;
};

TEST_F(ImageTypeTest, ReleaseBeatsDebugAndDebugBeatsPerf) {
    for (const char* name : {"release", "debug", "perf"}) {
        folder.write(std::string("etc/") + name, "");
    }
    EXPECT_EQ(DeviceInfo::setImageType(), DeviceInfo::IMAGE_RELEASE);
    EXPECT_TRUE(progress("Current image type - RELEASE"));
    std::filesystem::remove("etc/release");
    EXPECT_EQ(DeviceInfo::setImageType(), DeviceInfo::IMAGE_DEBUG);
    EXPECT_TRUE(progress("Current image type - DEBUG"));
    std::filesystem::remove("etc/debug");
    EXPECT_EQ(DeviceInfo::setImageType(), DeviceInfo::IMAGE_PERF);
    EXPECT_TRUE(progress("Current image type - PERF"));
}

TEST_F(ImageTypeTest, NoFlagFileIsRelease) {
    EXPECT_EQ(DeviceInfo::setImageType(), DeviceInfo::IMAGE_RELEASE);
    EXPECT_TRUE(progress("No file found - use default image type - RELEASE"));
}

TEST_F(ImageTypeTest, TypeIsReturnedAndNotStored) {
    folder.write("etc/perf", "");
    EXPECT_EQ(DeviceInfo::setImageType(), 2);
    EXPECT_EQ(DeviceInfo::m_imageType, 0);
}

}  // namespace

}  // namespace ZOLT
