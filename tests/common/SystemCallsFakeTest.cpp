// SPDX-License-Identifier: Apache-2.0
// Which system calls are faked, and which still reach the television.
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Exception.h"
#include "common/FailingCall.h"
#include "common/ZoltConfig.h"
#include "common/systemcalls/SystemCallsFactory.h"
#include "common/systemcalls/SystemCallsFake.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace ZOLT {

namespace {

using Values = std::map<std::string, std::string>;

// Counts the notices of all subscriptions, which pass its address as their data.
int notices = 0;

void changed(runtime_info_key_e /*key*/, void* data) {
    ++*static_cast<int*>(data);
}

int poweredOff(int /*state*/, void* data) {
    ++*static_cast<int*>(data);
    return 0;
}

void wokenUp(int /*state*/, void* data) {
    ++*static_cast<int*>(data);
}

class SystemCallsFakeTest : public testing::Test {
  protected:
    void SetUp() override { platform.reset(); }
    void TearDown() override { ZoltConfig::deinitialize(); }

    // The program's configuration holds these values and no other; the log starts afresh.
    void configure(const Values& values) {
        std::string xml = "<config>";
        for (const auto& [key, value] : values) {
            xml.append("<item name=\"").append(key).append("\">").append(value).append("</item>");
        }
        ZoltConfig::deinitialize();
        ZoltConfig::initialize(folder.write("config.xml", xml + "</config>"));
        ZoltConfig::load();
        platform.clearLog();
        platform.clearCalls();
    }

    ScriptedPlatform& platform = ScriptedPlatform::get();
    support::TemporaryFolder folder;
    SystemCallsFake fake;
};

struct Number {
    const char* configurationKey;
    int platformKey;
    int (*ask)(ISystemCalls& calls, int key, int* value);
    int faked;
    const char* line;
    const char* call;
};

int askRuntimeInt(ISystemCalls& calls, int key, int* value) {
    return calls.runtimeInfoGetValueInt(static_cast<runtime_info_key_e>(key), value);
}

int askSystemInt(ISystemCalls& calls, int key, int* value) {
    return calls.systemInfoGetValueInt(static_cast<system_info_key_e>(key), value);
}

const Number NUMBERS[] = {
    {"FakeUseMode", 59, askRuntimeInt, 1,
     "Called SystemCallsFake::runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE)",
     "runtime_info_get_value_int(59)"},
    {"FakeScreenHeight", 353, askSystemInt, 1080,
     "Called SystemCallsFake::systemInfoGetValueInt(SYSTEM_INFO_KEY_SCREEN_HEIGHT)",
     "system_info_get_value_int(353)"},
    {"FakeScreenWidth", 354, askSystemInt, 1920,
     "Called SystemCallsFake::systemInfoGetValueInt(SYSTEM_INFO_KEY_SCREEN_WIDTH)",
     "system_info_get_value_int(354)"},
};

struct Text {
    const char* configurationKey;
    int platformKey;
    int (*ask)(ISystemCalls& calls, int key, char** value);
    const char* faked;
    const char* line;
    const char* call;
};

int askRuntimeText(ISystemCalls& calls, int key, char** value) {
    return calls.runtimeInfoGetValueString(static_cast<runtime_info_key_e>(key), value);
}

int askSystemText(ISystemCalls& calls, int key, char** value) {
    return calls.systemInfoGetValueString(static_cast<system_info_key_e>(key), value);
}

int askSettingText(ISystemCalls& calls, int key, char** value) {
    return calls.systemSettingsGetValueString(static_cast<system_settings_key_e>(key), value);
}

const Text TEXTS[] = {
    {"FakeLanguage", 0, askRuntimeText, "en_US.utf8",
     "Called SystemCallsFake::runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE)",
     "runtime_info_get_value_string(0)"},
    {"FakeMenuLanguage", 34, askRuntimeText, "ko",
     "Called SystemCallsFake::runtimeInfoGetValueString(RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE)",
     "runtime_info_get_value_string(34)"},
    {"FakeModel", 0, askSystemText, "MODEL",
     "Called SystemCallsFake::systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL)",
     "system_info_get_value_string(0)"},
    {"FakeCountryCode", 323, askSettingText, "kor",
     "Called SystemCallsFake::systemSettingsGetValueString("
     "SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE)",
     "system_settings_get_value_string(323)"},
};

TEST_F(SystemCallsFakeTest, FakedNumbersComeWithTheirLineAndWithoutThePlatform) {
    for (const auto& number : NUMBERS) {
        configure({{number.configurationKey, "1"}});
        int value = -7;
        EXPECT_EQ(number.ask(fake, number.platformKey, &value), 0);
        EXPECT_EQ(value, number.faked) << number.configurationKey;
        EXPECT_THAT(platform.messages(), ElementsAre(number.line));
        EXPECT_TRUE(platform.hasLine(LOG_ID_MAIN, DLOG_INFO, number.line));
        EXPECT_THAT(platform.calls(), IsEmpty());
    }
}

TEST_F(SystemCallsFakeTest, NumbersAreRealForEveryValueButOne) {
    for (const auto& number : NUMBERS) {
        platform.setRuntimeInfo(number.platformKey, 33);
        platform.setSystemInfo(number.platformKey, 33);
        for (const char* configured : {"0", "2", "01", "1 ", ""}) {
            configure({{number.configurationKey, configured}});
            int value = -7;
            EXPECT_EQ(number.ask(fake, number.platformKey, &value), 0);
            EXPECT_EQ(value, 33) << number.configurationKey << "=" << configured;
            EXPECT_THAT(platform.calls(), ElementsAre(number.call));
            EXPECT_THAT(platform.messages(), IsEmpty());
        }
    }
}

TEST_F(SystemCallsFakeTest, FakedTextsAreTheCallersToFree) {
    for (const auto& text : TEXTS) {
        configure({{text.configurationKey, "1"}});
        char* value = nullptr;
        EXPECT_EQ(text.ask(fake, text.platformKey, &value), 0);
        EXPECT_STREQ(value, text.faked) << text.configurationKey;
        std::free(value);
        EXPECT_THAT(platform.messages(), ElementsAre(text.line));
        EXPECT_TRUE(platform.hasLine(LOG_ID_MAIN, DLOG_INFO, text.line));
        EXPECT_THAT(platform.calls(), IsEmpty());
    }
}

TEST_F(SystemCallsFakeTest, TextsAreRealForEveryValueButOne) {
    for (const auto& text : TEXTS) {
        platform.setRuntimeInfo(text.platformKey, "real");
        platform.setSystemInfo(text.platformKey, "real");
        platform.setSystemSetting(text.platformKey, "real");
        for (const char* configured : {"0", "2"}) {
            configure({{text.configurationKey, configured}});
            char* value = nullptr;
            EXPECT_EQ(text.ask(fake, text.platformKey, &value), 0);
            EXPECT_STREQ(value, "real") << text.configurationKey;
            std::free(value);
            EXPECT_THAT(platform.calls(), ElementsAre(text.call));
            EXPECT_THAT(platform.messages(), IsEmpty());
        }
    }
}

TEST_F(SystemCallsFakeTest, ValueThatIsSetIsDroppedWhenFaked) {
    configure({{"FakeSetUseMode", "1"}});
    EXPECT_EQ(fake.systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 5), 0);
    EXPECT_THAT(platform.calls(), IsEmpty());
    EXPECT_TRUE(platform.hasLine(
        LOG_ID_MAIN, DLOG_INFO,
        "Called SystemCallsFake::systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE)"));

    configure({{"FakeSetUseMode", "0"}});
    EXPECT_EQ(fake.systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 5), 0);
    EXPECT_THAT(platform.calls(), ElementsAre("system_settings_set_value_int(19, 5)"));
}

TEST_F(SystemCallsFakeTest, KeyWithoutAFakeReachesThePlatformWithoutReadingTheConfiguration) {
    // The configuration is empty, so reading it would throw.
    platform.setRuntimeInfo(1, 11);
    platform.setSystemInfo(380, 2560);
    platform.setRuntimeInfo(181, "10.0.0.1");
    platform.setSystemInfo(1, "one");
    platform.setSystemSetting(1, "two");
    int number = 0;
    EXPECT_EQ(askRuntimeInt(fake, 1, &number), 0);
    EXPECT_EQ(number, 11);
    EXPECT_EQ(askSystemInt(fake, 380, &number), 0);
    EXPECT_EQ(number, 2560);
    for (const auto ask : {askRuntimeText, askSystemText, askSettingText}) {
        char* text = nullptr;
        EXPECT_EQ(ask(fake, ask == askRuntimeText ? 181 : 1, &text), 0);
        EXPECT_NE(text, nullptr);
        std::free(text);
    }
    EXPECT_EQ(fake.systemSettingsSetValueInt(static_cast<system_settings_key_e>(1), 2), 0);
    EXPECT_EQ(platform.systemSettingInt(1), 2);
}

TEST_F(SystemCallsFakeTest, KeyOfAnotherKindReachesThePlatformWithoutReadingTheConfiguration) {
    // The numbers of the fakes, but of another interface or with the other type.
    platform.setRuntimeInfo(19, 2);
    platform.setSystemInfo(59, 3);
    int number = 0;
    EXPECT_EQ(askRuntimeInt(fake, 19, &number), 0);
    EXPECT_EQ(number, 2);
    EXPECT_EQ(askSystemInt(fake, 59, &number), 0);
    EXPECT_EQ(number, 3);
    EXPECT_NE(askRuntimeInt(fake, 0, &number), 0);
    char* text = nullptr;
    EXPECT_NE(askRuntimeText(fake, 59, &text), 0);
    EXPECT_NE(askSystemText(fake, 34, &text), 0);
    EXPECT_NE(askSettingText(fake, 0, &text), 0);
}

TEST_F(SystemCallsFakeTest, FakedValueAcceptsANullOutput) {
    for (const auto& number : NUMBERS) {
        configure({{number.configurationKey, "1"}});
        EXPECT_EQ(number.ask(fake, number.platformKey, nullptr), 0) << number.configurationKey;
        EXPECT_THAT(platform.messages(), ElementsAre(number.line));
    }
    for (const auto& text : TEXTS) {
        configure({{text.configurationKey, "1"}});
        EXPECT_EQ(text.ask(fake, text.platformKey, nullptr), 0) << text.configurationKey;
        EXPECT_THAT(platform.messages(), ElementsAre(text.line));
    }
}

TEST_F(SystemCallsFakeTest, RealValueWithANullOutputIsThePlatformsToRefuse) {
    for (const auto& number : NUMBERS) {
        configure({{number.configurationKey, "0"}});
        EXPECT_EQ(number.ask(fake, number.platformKey, nullptr), -22) << number.configurationKey;
    }
    for (const auto& text : TEXTS) {
        configure({{text.configurationKey, "0"}});
        EXPECT_EQ(text.ask(fake, text.platformKey, nullptr), -22) << text.configurationKey;
    }
}

TEST_F(SystemCallsFakeTest, FakedTextThatCannotBeAllocatedAnswersMinusOneAndNull) {
    for (const auto& text : TEXTS) {
        configure({{text.configurationKey, "1"}});
        char unset = '\0';
        char* value = &unset;
        const support::FailingCall scarcity(support::LibraryCall::Asprintf);
        EXPECT_EQ(text.ask(fake, text.platformKey, &value), -1) << text.configurationKey;
        EXPECT_EQ(value, nullptr);
        EXPECT_THAT(platform.messages(), ElementsAre(text.line));
    }
}

TEST_F(SystemCallsFakeTest, RefusalOfARealValueIsReturnedAsItIs) {
    for (const int code : {-22, -12, -5, 1}) {
        for (const char* function :
             {"runtime_info_get_value_int", "runtime_info_get_value_string",
              "system_info_get_value_int", "system_info_get_value_string",
              "system_settings_get_value_string", "system_settings_set_value_int"}) {
            platform.answer(function, code);
        }
        for (const auto& number : NUMBERS) {
            configure({{number.configurationKey, "0"}});
            int value = -7;
            EXPECT_EQ(number.ask(fake, number.platformKey, &value), code);
            EXPECT_EQ(value, -7);
        }
        for (const auto& text : TEXTS) {
            configure({{text.configurationKey, "0"}});
            char* value = nullptr;
            EXPECT_EQ(text.ask(fake, text.platformKey, &value), code);
            EXPECT_EQ(value, nullptr);
        }
        configure({{"FakeSetUseMode", "0"}});
        EXPECT_EQ(fake.systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 5), code);
    }
}

TEST_F(SystemCallsFakeTest, ConfigurationIsReadAtEachCall) {
    int number = 0;
    platform.setRuntimeInfo(59, 4);
    configure({{"FakeUseMode", "0"}});
    askRuntimeInt(fake, 59, &number);
    EXPECT_EQ(number, 4);
    configure({{"FakeUseMode", "1"}});
    askRuntimeInt(fake, 59, &number);
    EXPECT_EQ(number, 1);
}

struct Subscription {
    const char* configurationKey;
    const char* setName;
    const char* unsetName;
    void (*set)(ISystemCalls& calls);
    void (*unset)(ISystemCalls& calls);
    const char* setCall;
    const char* unsetCall;
};

const Subscription SUBSCRIPTIONS[] = {
    {"FakeLanguageCb", "setLanguageChangedCb", "unsetLanguageChangedCb",
     [](ISystemCalls& calls) { calls.setLanguageChangedCb(changed, &notices); },
     [](ISystemCalls& calls) { calls.unsetLanguageChangedCb(); }, "runtime_info_set_changed_cb(0)",
     "runtime_info_unset_changed_cb(0)"},
    {"FakeShopModeCb", "setShopModeChangedCb", "unsetShopModeChangedCb",
     [](ISystemCalls& calls) { calls.setShopModeChangedCb(changed, &notices); },
     [](ISystemCalls& calls) { calls.unsetShopModeChangedCb(); }, "runtime_info_set_changed_cb(59)",
     "runtime_info_unset_changed_cb(59)"},
    {"FakeWirelessIpChangedCb", "setWirelessIpChangedCb", "unsetWirelessIpChangedCb",
     [](ISystemCalls& calls) { calls.setWirelessIpChangedCb(changed, &notices); },
     [](ISystemCalls& calls) { calls.unsetWirelessIpChangedCb(); },
     "runtime_info_set_changed_cb(181)", "runtime_info_unset_changed_cb(181)"},
    {"FakeWiredIpChangedCb", "setWiredIpChangedCb", "unsetWiredIpChangedCb",
     [](ISystemCalls& calls) { calls.setWiredIpChangedCb(changed, &notices); },
     [](ISystemCalls& calls) { calls.unsetWiredIpChangedCb(); }, "runtime_info_set_changed_cb(187)",
     "runtime_info_unset_changed_cb(187)"},
    {"FakeNetworkTypeChangedCb", "setNetworkTypeChangedCb", "unsetNetworkTypeChangedCb",
     [](ISystemCalls& calls) { calls.setNetworkTypeChangedCb(changed, &notices); },
     [](ISystemCalls& calls) { calls.unsetNetworkTypeChangedCb(); },
     "runtime_info_set_changed_cb(191)", "runtime_info_unset_changed_cb(191)"},
    {"FakeResetCb", "setResetCb", "unsetResetCb",
     [](ISystemCalls& calls) { calls.setResetCb(poweredOff, &notices); },
     [](ISystemCalls& calls) { calls.unsetResetCb(poweredOff); },
     "device_power_subscribe_poweroff()", "device_power_unsubscribe_poweroff()"},
    {"FakeWakeupCb", "setWakeUpCb", "unsetWakeUpCb",
     [](ISystemCalls& calls) { calls.setWakeUpCb(wokenUp, &notices); },
     [](ISystemCalls& calls) { calls.unsetWakeUpCb(wokenUp); }, "device_power_subscribe_wakeup()",
     "device_power_unsubscribe_wakeup()"},
};

TEST_F(SystemCallsFakeTest, AbsentConfigurationKeyThrows) {
    configure({{"Other", "1"}});
    for (const auto& entry : NUMBERS) {
        int number = 0;
        EXPECT_THROW(entry.ask(fake, entry.platformKey, &number), std::out_of_range);
    }
    for (const auto& entry : TEXTS) {
        char* text = nullptr;
        EXPECT_THROW(entry.ask(fake, entry.platformKey, &text), std::out_of_range);
    }
    EXPECT_THROW(fake.systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 1),
                 std::out_of_range);
    for (const auto& entry : SUBSCRIPTIONS) {
        EXPECT_THROW(entry.set(fake), std::out_of_range) << entry.setName;
        EXPECT_THROW(entry.unset(fake), std::out_of_range) << entry.unsetName;
    }
    EXPECT_THAT(platform.calls(), IsEmpty());
    EXPECT_THAT(platform.messages(), IsEmpty());
}

TEST_F(SystemCallsFakeTest, FakedSubscriptionIsTracedAndDropped) {
    for (const auto& entry : SUBSCRIPTIONS) {
        configure({{entry.configurationKey, "1"}});
        entry.set(fake);
        entry.unset(fake);
        EXPECT_THAT(platform.calls(), IsEmpty()) << entry.configurationKey;
        const auto lines = platform.log();
        ASSERT_EQ(lines.size(), 2U) << entry.configurationKey;
        EXPECT_EQ(lines[0].function, entry.setName);
        EXPECT_EQ(lines[1].function, entry.unsetName);
        for (const auto& line : lines) {
            EXPECT_EQ(line.file, "SystemCallsFake.cpp");
            EXPECT_EQ(line.buffer, LOG_ID_MAIN);
            EXPECT_EQ(line.priority, DLOG_INFO);
            EXPECT_EQ(line.message.rfind("Called virtual void ZOLT::SystemCallsFake::", 0), 0U);
        }
    }
}

TEST_F(SystemCallsFakeTest, SubscriptionThatIsNotFakedReachesThePlatform) {
    for (const auto& entry : SUBSCRIPTIONS) {
        configure({{entry.configurationKey, "0"}});
        entry.set(fake);
        notices = 0;
        for (const int key : {0, 59, 181, 187, 191}) {
            platform.fireRuntimeInfoChanged(static_cast<runtime_info_key_e>(key));
        }
        platform.firePoweroff(1);
        platform.fireWakeup(1);
        EXPECT_EQ(notices, 1) << entry.configurationKey;
        entry.unset(fake);
        EXPECT_THAT(platform.calls(), ElementsAre(entry.setCall, entry.unsetCall));
        for (const auto& line : platform.log()) {
            EXPECT_EQ(line.file, "SystemCalls.cpp");
        }
    }
}

TEST_F(SystemCallsFakeTest, RefusalOfARealSubscriptionPassesThrough) {
    configure({{"FakeLanguageCb", "0"}, {"FakeWakeupCb", "0"}, {"FakeResetCb", "0"}});
    platform.answer("runtime_info_set_changed_cb", -1);
    platform.answer("runtime_info_unset_changed_cb", -1);
    platform.answer("device_power_subscribe_wakeup", -1);
    platform.answer("device_power_unsubscribe_wakeup", -1);
    platform.answer("device_power_unsubscribe_poweroff", -1);
    EXPECT_THROW(fake.setLanguageChangedCb(changed, nullptr), Exception);
    EXPECT_NO_THROW(fake.unsetLanguageChangedCb());
    EXPECT_THROW(fake.setWakeUpCb(wokenUp, nullptr), Exception);
    EXPECT_THROW(fake.unsetWakeUpCb(wokenUp), Exception);
    EXPECT_THROW(fake.unsetResetCb(poweredOff), Exception);
}

class SystemCallsFactoryTest : public SystemCallsFakeTest {};

TEST_F(SystemCallsFactoryTest, ZeroGivesTheUsualSystemCallsWhateverTheOtherKeysSay) {
    for (const char* zero : {"0", "00", "-0", " 0", "0x1"}) {
        configure({{"FakeSystemCalls", zero}, {"FakeUseMode", "1"}, {"FakeLanguage", "1"}});
        const std::unique_ptr<ISystemCalls> calls(SystemCallsFactory::getSystemCalls());
        EXPECT_EQ(dynamic_cast<SystemCallsFake*>(calls.get()), nullptr) << zero;
        EXPECT_NE(dynamic_cast<SystemCalls*>(calls.get()), nullptr);
        EXPECT_TRUE(platform.hasLine(LOG_ID_MAIN, DLOG_DEBUG, "Use usual system calls"));
        EXPECT_EQ(platform.countLines("Use fake system calls"), 0);
    }
}

TEST_F(SystemCallsFactoryTest, AnyOtherNumberGivesTheFakes) {
    for (const char* number : {"1", "2", "-1", "2147483647", "-2147483648", "1abc"}) {
        configure({{"FakeSystemCalls", number}});
        const std::unique_ptr<ISystemCalls> calls(SystemCallsFactory::getSystemCalls());
        EXPECT_NE(dynamic_cast<SystemCallsFake*>(calls.get()), nullptr);
        EXPECT_TRUE(platform.hasLine(LOG_ID_MAIN, DLOG_DEBUG, "Use fake system calls"));
        EXPECT_EQ(platform.countLines("Use usual system calls"), 0);
    }
}

TEST_F(SystemCallsFactoryTest, MissingOrUnreadableSettingThrowsAfterTheTrace) {
    configure({{"Other", "1"}});
    EXPECT_THROW(SystemCallsFactory::getSystemCalls(), std::out_of_range);
    for (const std::string& number :
         {std::string("2147483648"), std::string("-2147483649"), std::string(1000000, '9')}) {
        configure({{"FakeSystemCalls", number}});
        EXPECT_THROW(SystemCallsFactory::getSystemCalls(), std::out_of_range);
    }
    for (const char* number : {"", "yes"}) {
        configure({{"FakeSystemCalls", number}});
        EXPECT_THROW(SystemCallsFactory::getSystemCalls(), std::invalid_argument);
    }
    EXPECT_EQ(platform.log().at(0).function, "getSystemCalls");
    EXPECT_THAT(platform.log().at(0).message,
                testing::EndsWith("ZOLT::SystemCallsFactory::getSystemCalls()"));
}

}  // namespace

}  // namespace ZOLT
