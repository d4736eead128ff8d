// SPDX-License-Identifier: Apache-2.0
// What reaches the television through the system calls, and what its refusals cause.
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/latch.hpp>
#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Thrown.h"
#include "common/systemcalls/SystemCalls.h"
#include "support/ScriptedPlatform.h"

using support::ScriptedPlatform;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace ZOLT {

// Replaces the sleep of setResetCb: records its length and how many attempts were logged before it,
// and returns at once.
class SystemCallsSleep {
  public:
    SystemCallsSleep() : m_before(SystemCalls::s_sleepUntil) {
        s_seconds.clear();
        s_linesBefore.clear();
        SystemCalls::s_sleepUntil = note;
    }
    ~SystemCallsSleep() { SystemCalls::s_sleepUntil = m_before; }
    SystemCallsSleep(const SystemCallsSleep&) = delete;
    SystemCallsSleep& operator=(const SystemCallsSleep&) = delete;

    // The lengths of all sleeps, to the nearest second.
    static const std::vector<long>& seconds() { return s_seconds; }
    static const std::vector<size_t>& linesBefore() { return s_linesBefore; }

  private:
    static void note(const boost::system_time& until) {
        const auto left = until - boost::get_system_time();
        s_seconds.push_back(static_cast<long>((left.total_milliseconds() + 500) / 1000));
        s_linesBefore.push_back(ScriptedPlatform::get().messages(LOG_ID_MAIN, DLOG_DEBUG).size());
    }

    static std::vector<long> s_seconds;
    static std::vector<size_t> s_linesBefore;
    void (*m_before)(const boost::system_time&);
};

std::vector<long> SystemCallsSleep::s_seconds;
std::vector<size_t> SystemCallsSleep::s_linesBefore;

namespace {

void changed(runtime_info_key_e /*key*/, void* data) {
    ++*static_cast<int*>(data);
}

int poweredOff(int state, void* data) {
    *static_cast<int*>(data) = state;
    return 0;
}

void wokenUp(int state, void* data) {
    *static_cast<int*>(data) = state;
}

class SystemCallsTest : public testing::Test {
  protected:
    void SetUp() override { platform.reset(); }

    ScriptedPlatform& platform = ScriptedPlatform::get();
    std::unique_ptr<ISystemCalls> calls = std::make_unique<SystemCalls>();
    int data = 0;
};

using Set = void (ISystemCalls::*)(void (*)(runtime_info_key_e, void*), void*);
using Unset = void (ISystemCalls::*)();

struct Notice {
    int key;
    const char* name;
    Set set;
    Unset unset;
    const char* unsetName;
};

const Notice NOTICES[] = {
    {181, "Wireless IP", &ISystemCalls::setWirelessIpChangedCb,
     &ISystemCalls::unsetWirelessIpChangedCb, "unsetWirelessIpChangedCb"},
    {187, "Wired IP", &ISystemCalls::setWiredIpChangedCb, &ISystemCalls::unsetWiredIpChangedCb,
     "unsetWiredIpChangedCb"},
    {191, "Network type", &ISystemCalls::setNetworkTypeChangedCb,
     &ISystemCalls::unsetNetworkTypeChangedCb, "unsetNetworkTypeChangedCb"},
    {0, "Language", &ISystemCalls::setLanguageChangedCb, &ISystemCalls::unsetLanguageChangedCb,
     "unsetLanguageChangedCb"},
    {59, "TV System Use Mode", &ISystemCalls::setShopModeChangedCb,
     &ISystemCalls::unsetShopModeChangedCb, "unsetShopModeChangedCb"},
};

TEST_F(SystemCallsTest, EachNoticeIsSubscribedUnderItsOwnKeyWithCallbackAndData) {
    for (const auto& notice : NOTICES) {
        platform.clearCalls();
        data = 0;
        (calls.get()->*notice.set)(changed, &data);
        EXPECT_THAT(platform.calls(),
                    ElementsAre("runtime_info_set_changed_cb(" + std::to_string(notice.key) + ")"));
        EXPECT_TRUE(platform.fireRuntimeInfoChanged(static_cast<runtime_info_key_e>(notice.key)));
        EXPECT_EQ(data, 1) << notice.name;
    }
}

TEST_F(SystemCallsTest, EachNoticeIsUnsubscribedUnderItsOwnKey) {
    for (const auto& notice : NOTICES) {
        (calls.get()->*notice.set)(changed, &data);
        platform.clearCalls();
        (calls.get()->*notice.unset)();
        EXPECT_THAT(platform.calls(), ElementsAre("runtime_info_unset_changed_cb(" +
                                                  std::to_string(notice.key) + ")"));
        EXPECT_FALSE(platform.hasRuntimeInfoCallback(static_cast<runtime_info_key_e>(notice.key)));
    }
}

// Error codes of the value and notice interfaces, and numbers that have no name there.
const int REFUSALS[] = {RUNTIME_INFO_ERROR_INVALID_PARAMETER,
                        RUNTIME_INFO_ERROR_OUT_OF_MEMORY,
                        RUNTIME_INFO_ERROR_IO_ERROR,
                        SYSTEM_INFO_ERROR_INVALID_PARAMETER,
                        SYSTEM_INFO_ERROR_OUT_OF_MEMORY,
                        SYSTEM_INFO_ERROR_IO_ERROR,
                        SYSTEM_SETTINGS_ERROR_INVALID_PARAMETER,
                        SYSTEM_SETTINGS_ERROR_OUT_OF_MEMORY,
                        SYSTEM_SETTINGS_ERROR_IO_ERROR,
                        1,
                        5,
                        INT_MIN,
                        INT_MAX};

TEST_F(SystemCallsTest, ObjectHoldsNothingButItsTableOfOperations) {
    EXPECT_EQ(sizeof(SystemCalls), sizeof(void*));
}

// The place of OPERATION in the table of virtual operations, in bytes.
template <typename Operation>
std::ptrdiff_t placeOf(Operation operation) {
    static_assert(sizeof operation >= sizeof(std::ptrdiff_t));
    std::ptrdiff_t place = 0;
    std::memcpy(&place, &operation, sizeof place);
    return place;
}

TEST_F(SystemCallsTest, OperationsStandInTheOrderOfTheirTable) {
    using I = ISystemCalls;
    const std::ptrdiff_t places[] = {
        placeOf(&I::setWirelessIpChangedCb),
        placeOf(&I::setWiredIpChangedCb),
        placeOf(&I::setNetworkTypeChangedCb),
        placeOf(&I::unsetWirelessIpChangedCb),
        placeOf(&I::unsetWiredIpChangedCb),
        placeOf(&I::unsetNetworkTypeChangedCb),
        placeOf(&I::setResetCb),
        placeOf(&I::unsetResetCb),
        placeOf(&I::setShopModeChangedCb),
        placeOf(&I::unsetShopModeChangedCb),
        placeOf(&I::setLanguageChangedCb),
        placeOf(&I::unsetLanguageChangedCb),
        placeOf(&I::runtimeInfoGetValueInt),
        placeOf(&I::runtimeInfoGetValueString),
        placeOf(&I::systemInfoGetValueInt),
        placeOf(&I::systemInfoGetValueString),
        placeOf(&I::systemSettingsGetValueString),
        placeOf(&I::systemSettingsSetValueInt),
        placeOf(&I::setWakeUpCb),
        placeOf(&I::unsetWakeUpCb),
    };
    const auto first = places[0];
    for (size_t index = 0; index < std::size(places); ++index) {
        EXPECT_EQ(places[index] - first, static_cast<std::ptrdiff_t>(index * sizeof(void*)))
            << index;
    }
}

TEST_F(SystemCallsTest, NullCallbackAndNullDataAreThePlatformsToJudge) {
    calls->setLanguageChangedCb(nullptr, nullptr);
    calls->setResetCb(nullptr, nullptr);
    calls->unsetResetCb(nullptr);
    calls->setWakeUpCb(nullptr, nullptr);
    calls->unsetWakeUpCb(nullptr);
    EXPECT_THAT(
        platform.calls(),
        ElementsAre("runtime_info_set_changed_cb(0)", "device_power_subscribe_poweroff()",
                    "device_power_unsubscribe_poweroff()", "device_power_subscribe_wakeup()",
                    "device_power_unsubscribe_wakeup()"));
    platform.answer("runtime_info_set_changed_cb", RUNTIME_INFO_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(thrownBy([&] { calls->setLanguageChangedCb(nullptr, nullptr); }),
              "Failed to set Changed callback for: Language");
}

TEST_F(SystemCallsTest, RefusedNoticeThrowsWithItsName) {
    for (const int code : REFUSALS) {
        platform.answer("runtime_info_set_changed_cb", code);
        for (const auto& notice : NOTICES) {
            EXPECT_EQ(thrownBy([&] { (calls.get()->*notice.set)(changed, &data); }),
                      std::string("Failed to set Changed callback for: ") + notice.name);
        }
    }
}

TEST_F(SystemCallsTest, RefusedEndOfANoticeIsOnlyLogged) {
    for (const int code : REFUSALS) {
        platform.answer("runtime_info_unset_changed_cb", code);
        for (const auto& notice : NOTICES) {
            platform.clearLog();
            EXPECT_NO_THROW((calls.get()->*notice.unset)());
            EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                        ElementsAre("Exception Caught"));
            const auto line = platform.findLine("Exception Caught");
            ASSERT_TRUE(line);
            EXPECT_EQ(line->file, "SystemCalls.cpp");
            EXPECT_EQ(line->function, notice.unsetName);
        }
    }
}

TEST_F(SystemCallsTest, RefusedEndOfANoticeIsLoggedAfterTheTracesOfBothOperations) {
    platform.answer("runtime_info_unset_changed_cb", -1);
    calls->unsetWiredIpChangedCb();
    EXPECT_THAT(platform.messages(),
                ElementsAre("Called virtual void ZOLT::SystemCalls::unsetWiredIpChangedCb()",
                            testing::StartsWith("Called void ZOLT::SystemCalls::unsetChangedCb("),
                            "Exception Caught"));
}

TEST_F(SystemCallsTest, UnknownFailureAtTheEndOfANoticeIsLoggedWithTheOperationsName) {
    platform.whenCalled("runtime_info_unset_changed_cb", [] { throw 1; });
    for (const auto& notice : NOTICES) {
        platform.clearLog();
        EXPECT_NO_THROW((calls.get()->*notice.unset)());
        const std::string text = std::string("Exception Caught: Unable to ") + notice.unsetName;
        EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG), ElementsAre(text));
        EXPECT_EQ(platform.findLine(text)->function, notice.unsetName);
    }
}

TEST_F(SystemCallsTest, NamedEndOfANoticeThrowsWithItsName) {
    platform.answer("runtime_info_unset_changed_cb", -1);
    SystemCalls direct;
    EXPECT_EQ(thrownBy([&] { direct.unsetChangedCb(RUNTIME_INFO_KEY_LANGUAGE, "any"); }),
              "Failed to unset Changed callback for: any");
}

TEST_F(SystemCallsTest, NameOfANoticeMayBeEmptyOrLongOrLookLikeAFormat) {
    platform.answer("runtime_info_set_changed_cb", -1);
    platform.answer("runtime_info_unset_changed_cb", -1);
    SystemCalls direct;
    for (const std::string& name :
         {std::string(), std::string(1000000, 'n'), std::string("%s %d")}) {
        EXPECT_EQ(
            thrownBy([&] { direct.setChangedCb(changed, RUNTIME_INFO_KEY_LANGUAGE, name, &data); }),
            "Failed to set Changed callback for: " + name);
        EXPECT_EQ(thrownBy([&] { direct.unsetChangedCb(RUNTIME_INFO_KEY_LANGUAGE, name); }),
                  "Failed to unset Changed callback for: " + name);
    }
}

TEST_F(SystemCallsTest, ResetNoticeOfAReadyServiceTakesOneAttemptAndNoSleep) {
    const SystemCallsSleep sleep;
    calls->setResetCb(poweredOff, &data);
    EXPECT_THAT(platform.messages(LOG_ID_MAIN, DLOG_DEBUG),
                ElementsAre("PowerOff callback subscribe [0] times with result [0]"));
    EXPECT_THAT(SystemCallsSleep::seconds(), IsEmpty());
    EXPECT_TRUE(platform.firePoweroff(7));
    EXPECT_EQ(data, 7);
}

TEST_F(SystemCallsTest, ResetNoticeWaitsForAServiceThatAnswersOnTheFourthAttempt) {
    const SystemCallsSleep sleep;
    platform.answers("device_power_subscribe_poweroff", {-1, -2, 5, 0});
    calls->setResetCb(poweredOff, &data);
    EXPECT_THAT(platform.messages(LOG_ID_MAIN, DLOG_DEBUG),
                ElementsAre("PowerOff callback subscribe [0] times with result [-1]",
                            "PowerOff callback subscribe [1] times with result [-2]",
                            "PowerOff callback subscribe [2] times with result [5]",
                            "PowerOff callback subscribe [3] times with result [0]"));
    EXPECT_THAT(SystemCallsSleep::seconds(), ElementsAre(10, 10, 10));
}

TEST_F(SystemCallsTest, ResetNoticeGivesUpAfterTheTenthAttemptAndItsSleep) {
    const SystemCallsSleep sleep;
    platform.answer("device_power_subscribe_poweroff", -1);
    EXPECT_EQ(thrownBy([&] { calls->setResetCb(poweredOff, &data); }),
              "Failed to set TV reset callback: -1");
    EXPECT_EQ(platform.countCalls("device_power_subscribe_poweroff"), 10);
    const auto lines = platform.messages(LOG_ID_MAIN, DLOG_DEBUG);
    ASSERT_THAT(lines, SizeIs(10));
    for (size_t attempt = 0; attempt < lines.size(); ++attempt) {
        EXPECT_EQ(lines[attempt], "PowerOff callback subscribe [" + std::to_string(attempt) +
                                      "] times with result [-1]");
    }
    EXPECT_THAT(SystemCallsSleep::seconds(), SizeIs(10));
    EXPECT_THAT(SystemCallsSleep::seconds(), Each(10));
    EXPECT_THAT(SystemCallsSleep::linesBefore(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(SystemCallsTest, ResetNoticeAcceptsTheSmallestAndTheLargestCode) {
    const SystemCallsSleep sleep;
    platform.answer("device_power_subscribe_poweroff", INT_MIN);
    EXPECT_EQ(thrownBy([&] { calls->setResetCb(poweredOff, &data); }),
              "Failed to set TV reset callback: -2147483648");
    EXPECT_TRUE(
        platform.hasLine(LOG_ID_MAIN, DLOG_DEBUG,
                         "PowerOff callback subscribe [9] times with result [-2147483648]"));
    platform.answer("device_power_subscribe_poweroff", INT_MAX);
    EXPECT_NO_THROW(calls->setResetCb(poweredOff, &data));
}

TEST_F(SystemCallsTest, ResetNoticeReportsTheLastResultOfAll) {
    const SystemCallsSleep sleep;
    platform.answers("device_power_subscribe_poweroff", {-1, -1, -1, -1, -1, -1, -1, -1, -1, -38});
    EXPECT_EQ(thrownBy([&] { calls->setResetCb(poweredOff, &data); }),
              "Failed to set TV reset callback: -38");
    platform.answers("device_power_subscribe_poweroff", {5, 5, 5, 5, 5, 5, 5, 5, 5, -1});
    EXPECT_EQ(thrownBy([&] { calls->setResetCb(poweredOff, &data); }),
              "Failed to set TV reset callback: -1");
    platform.answers("device_power_subscribe_poweroff", {-1, -1, -1, -1, -1, -1, -1, -1, -1, 5});
    EXPECT_NO_THROW(calls->setResetCb(poweredOff, &data));
}

TEST_F(SystemCallsTest, ResetNoticeOfAServiceThatAlwaysAnswersAPositiveCodeIsNoFailure) {
    const SystemCallsSleep sleep;
    platform.answer("device_power_subscribe_poweroff", 5);
    EXPECT_NO_THROW(calls->setResetCb(poweredOff, &data));
    EXPECT_EQ(platform.countCalls("device_power_subscribe_poweroff"), 10);
    EXPECT_THAT(SystemCallsSleep::seconds(), SizeIs(10));
}

TEST_F(SystemCallsTest, SleepOfTheResetNoticeIsAnInterruptionPoint) {
    platform.answer("device_power_subscribe_poweroff", -1);
    boost::latch asked(1);
    platform.whenCalled("device_power_subscribe_poweroff", [&asked] { asked.try_count_down(); });
    bool interrupted = false;
    boost::thread thread([&] {
        try {
            calls->setResetCb(poweredOff, &data);
        } catch (const boost::thread_interrupted&) {
            interrupted = true;
        }
    });
    asked.wait();
    thread.interrupt();
    thread.join();
    EXPECT_TRUE(interrupted);
    EXPECT_EQ(platform.countCalls("device_power_subscribe_poweroff"), 1);
}

TEST_F(SystemCallsTest, EndOfTheResetNoticeIsPassedOnAfterItsFixedLine) {
    calls->setResetCb(poweredOff, &data);
    platform.clearLog();
    platform.clearCalls();
    calls->unsetResetCb(poweredOff);
    EXPECT_THAT(platform.calls(), ElementsAre("device_power_unsubscribe_poweroff()"));
    EXPECT_THAT(platform.messages(), ElementsAre("Called SystemCalls::unsetResetCb()"));
    EXPECT_TRUE(platform.hasLine(LOG_ID_MAIN, DLOG_INFO, "Called SystemCalls::unsetResetCb()"));
    EXPECT_FALSE(platform.firePoweroff(1));
}

TEST_F(SystemCallsTest, RefusedEndOfTheResetNoticeAlwaysThrowsWithOne) {
    for (const int code : {-38, -1, 5, INT_MIN, INT_MAX}) {
        platform.answer("device_power_unsubscribe_poweroff", code);
        EXPECT_EQ(thrownBy([&] { calls->unsetResetCb(poweredOff); }),
                  "Failed to unset TV reset callback: 1");
    }
}

TEST_F(SystemCallsTest, WakeUpNoticeIsPassedOnBothWays) {
    calls->setWakeUpCb(wokenUp, &data);
    EXPECT_TRUE(platform.fireWakeup(3));
    EXPECT_EQ(data, 3);
    calls->unsetWakeUpCb(wokenUp);
    EXPECT_FALSE(platform.fireWakeup(4));
    EXPECT_THAT(platform.calls(), ElementsAre("device_power_subscribe_wakeup()",
                                              "device_power_unsubscribe_wakeup()"));
}

TEST_F(SystemCallsTest, RefusedWakeUpNoticeThrowsWithThePlatformsCode) {
    for (const int code : {-5, -1, 5, INT_MIN, INT_MAX}) {
        platform.answer("device_power_subscribe_wakeup", code);
        platform.answer("device_power_unsubscribe_wakeup", code);
        EXPECT_EQ(thrownBy([&] { calls->setWakeUpCb(wokenUp, &data); }),
                  "Failed to set TV power wakeup callback: " + std::to_string(code));
        EXPECT_EQ(thrownBy([&] { calls->unsetWakeUpCb(wokenUp); }),
                  "Failed to unset TV power wakeup callback: " + std::to_string(code));
    }
}

TEST_F(SystemCallsTest, ValuesComeFromThePlatformWithoutALogLine) {
    platform.setRuntimeInfo(59, 4);
    platform.setSystemInfo(380, 2560);
    int number = 0;
    char* text = nullptr;
    EXPECT_EQ(calls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &number), 0);
    EXPECT_EQ(number, 4);
    EXPECT_EQ(calls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, &number), 0);
    EXPECT_EQ(number, 2560);
    EXPECT_EQ(calls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE, &text), 0);
    EXPECT_STREQ(text, "en_US.utf8");
    std::free(text);
    EXPECT_EQ(calls->systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL, &text), 0);
    EXPECT_STREQ(text, "TV-55");
    std::free(text);
    EXPECT_EQ(
        calls->systemSettingsGetValueString(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, &text),
        0);
    EXPECT_STREQ(text, "US");
    std::free(text);
    EXPECT_EQ(calls->systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 9), 0);
    EXPECT_EQ(platform.systemSettingInt(19), 9);
    EXPECT_THAT(platform.calls(),
                ElementsAre("runtime_info_get_value_int(59)", "system_info_get_value_int(380)",
                            "runtime_info_get_value_string(0)", "system_info_get_value_string(0)",
                            "system_settings_get_value_string(323)",
                            "system_settings_set_value_int(19, 9)"));
    EXPECT_THAT(platform.messages(), IsEmpty());
}

TEST_F(SystemCallsTest, CodeOfAFailedValueIsReturnedAsItIs) {
    for (const int code : REFUSALS) {
        for (const char* function :
             {"runtime_info_get_value_int", "runtime_info_get_value_string",
              "system_info_get_value_int", "system_info_get_value_string",
              "system_settings_get_value_string", "system_settings_set_value_int"}) {
            platform.answer(function, code);
        }
        int number = 7;
        char* text = nullptr;
        EXPECT_EQ(calls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &number), code);
        EXPECT_EQ(calls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE, &text), code);
        EXPECT_EQ(calls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, &number), code);
        EXPECT_EQ(calls->systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL, &text), code);
        EXPECT_EQ(calls->systemSettingsGetValueString(
                      SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, &text),
                  code);
        EXPECT_EQ(calls->systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, 1), code);
        EXPECT_EQ(number, 7);
        EXPECT_EQ(text, nullptr);
    }
    EXPECT_THAT(platform.messages(), IsEmpty());
}

TEST_F(SystemCallsTest, NullOutputForAValueIsThePlatformsToRefuse) {
    constexpr int REFUSED = RUNTIME_INFO_ERROR_INVALID_PARAMETER;
    EXPECT_EQ(calls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, nullptr), REFUSED);
    EXPECT_EQ(calls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE, nullptr), REFUSED);
    EXPECT_EQ(calls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, nullptr), REFUSED);
    EXPECT_EQ(calls->systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL, nullptr), REFUSED);
    EXPECT_EQ(calls->systemSettingsGetValueString(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE,
                                                  nullptr),
              REFUSED);
}

TEST_F(SystemCallsTest, TextsOfAnyLengthAndNumbersOfAnySizePassUnchanged) {
    for (const std::string& value : {std::string(), std::string(1000000, 'v')}) {
        platform.setRuntimeInfo(0, value);
        platform.setSystemInfo(0, value);
        platform.setSystemSetting(323, value);
        char* texts[3] = {};
        calls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE, &texts[0]);
        calls->systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL, &texts[1]);
        calls->systemSettingsGetValueString(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE,
                                            &texts[2]);
        for (char* text : texts) {
            EXPECT_EQ(text, value);
            std::free(text);
        }
    }
    for (const int value : {INT_MIN, INT_MAX}) {
        platform.setRuntimeInfo(59, value);
        platform.setSystemInfo(380, value);
        int number = 0;
        calls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &number);
        EXPECT_EQ(number, value);
        calls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, &number);
        EXPECT_EQ(number, value);
        calls->systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, value);
        EXPECT_EQ(platform.systemSettingInt(19), value);
    }
}

TEST_F(SystemCallsTest, OperationsOpenWithTheTraceOfTheirSignature) {
    calls->unsetLanguageChangedCb();
    EXPECT_TRUE(platform.hasLine(
        LOG_ID_MAIN, DLOG_INFO, "Called virtual void ZOLT::SystemCalls::unsetLanguageChangedCb()"));
}

TEST_F(SystemCallsTest, EveryOperationButTheSixValuesAndOneOpensWithATrace) {
    const auto traced = [this](const std::function<void()>& operation) {
        platform.clearLog();
        operation();
        const auto log = platform.log();
        return !log.empty() && log[0].buffer == LOG_ID_MAIN && log[0].priority == DLOG_INFO &&
                       log[0].message.rfind("Called virtual void ZOLT::SystemCalls::", 0) == 0
                   ? log[0].function
                   : "";
    };
    for (const auto& notice : NOTICES) {
        EXPECT_EQ(traced([&] { (calls.get()->*notice.set)(changed, &data); }),
                  std::string(notice.unsetName).substr(2));
        EXPECT_EQ(traced([&] { (calls.get()->*notice.unset)(); }), notice.unsetName);
    }
    EXPECT_EQ(traced([&] { calls->setResetCb(poweredOff, &data); }), "setResetCb");
    EXPECT_EQ(traced([&] { calls->unsetResetCb(poweredOff); }), "");
    EXPECT_EQ(traced([&] { calls->setWakeUpCb(wokenUp, &data); }), "setWakeUpCb");
    EXPECT_EQ(traced([&] { calls->unsetWakeUpCb(wokenUp); }), "unsetWakeUpCb");
    EXPECT_EQ(traced([&] { calls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_LANGUAGE, &data); }), "");
}

}  // namespace

}  // namespace ZOLT
