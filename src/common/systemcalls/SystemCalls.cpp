// SPDX-License-Identifier: Apache-2.0
// The system calls as the television itself answers them.
#include "common/systemcalls/SystemCalls.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/thread.hpp>

#include "common/Exception.h"
#include "common/Logger.h"
#include "device_power.h"

namespace ZOLT {

namespace {

constexpr int RESET_ATTEMPTS = 10;
constexpr int SECONDS_BETWEEN_ATTEMPTS = 10;

// Ends a subscription; log lines carry OPERATION as the function. Never throws: it runs during
// shutdown, which a failure must not stop.
void unsetQuietly(SystemCalls& calls, runtime_info_key_e key, const char* name,
                  const char* operation) {
    try {
        calls.unsetChangedCb(key, name);
    } catch (const Exception&) {
        Logger::write(LOG_ID_SYSTEM, DLOG_DEBUG, __FILE__, operation, __LINE__, "Exception Caught");
    } catch (...) {
        Logger::write(LOG_ID_SYSTEM, DLOG_DEBUG, __FILE__, operation, __LINE__,
                      "Exception Caught: Unable to %s", operation);
    }
}

}  // namespace

void (*SystemCalls::s_sleepUntil)(const boost::system_time& time) = boost::this_thread::sleep;

void SystemCalls::setChangedCb(void (*cb)(runtime_info_key_e, void*), runtime_info_key_e key,
                               std::string name, void* data) {
    ZOLT_TRACE();
    if (runtime_info_set_changed_cb(key, cb, data) != RUNTIME_INFO_ERROR_NONE) {
        throw Exception("Failed to set Changed callback for: %s", name, GENERIC_ERROR);
    }
}

void SystemCalls::unsetChangedCb(runtime_info_key_e key, std::string name) {
    ZOLT_TRACE();
    if (runtime_info_unset_changed_cb(key) != RUNTIME_INFO_ERROR_NONE) {
        throw Exception("Failed to unset Changed callback for: %s", name, GENERIC_ERROR);
    }
}

void SystemCalls::setWirelessIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    setChangedCb(cb, RUNTIME_INFO_KEY_WIRELESS_IP, "Wireless IP", data);
}

void SystemCalls::setWiredIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    setChangedCb(cb, RUNTIME_INFO_KEY_WIRED_IP, "Wired IP", data);
}

void SystemCalls::setNetworkTypeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    setChangedCb(cb, RUNTIME_INFO_KEY_NETWORK_TYPE, "Network type", data);
}

void SystemCalls::unsetWirelessIpChangedCb() {
    ZOLT_TRACE();
    unsetQuietly(*this, RUNTIME_INFO_KEY_WIRELESS_IP, "Wireless IP", __func__);
}

void SystemCalls::unsetWiredIpChangedCb() {
    ZOLT_TRACE();
    unsetQuietly(*this, RUNTIME_INFO_KEY_WIRED_IP, "Wired IP", __func__);
}

void SystemCalls::unsetNetworkTypeChangedCb() {
    ZOLT_TRACE();
    unsetQuietly(*this, RUNTIME_INFO_KEY_NETWORK_TYPE, "Network type", __func__);
}

void SystemCalls::setResetCb(int (*cb)(int, void*), void* data) {
    ZOLT_TRACE();
    int result = 0;
    for (int attempt = 0; attempt < RESET_ATTEMPTS; ++attempt) {
        result = device_power_subscribe_poweroff(cb, data);
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "PowerOff callback subscribe [%d] times with result [%d]",
                 attempt, result);
        if (result == 0) {
            return;
        }
        s_sleepUntil(boost::get_system_time() +
                     boost::posix_time::seconds(SECONDS_BETWEEN_ATTEMPTS));
    }
    // Only a negative code is a failure: some power services return a positive one and subscribe
    // nevertheless.
    if (result < 0) {
        throw Exception("Failed to set TV reset callback: %d", result, GENERIC_ERROR);
    }
}

void SystemCalls::unsetResetCb(int (*cb)(int, void*)) {
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "Called SystemCalls::unsetResetCb()");
    if (device_power_unsubscribe_poweroff(cb) != 0) {
        // Always 1 and never the platform's code: log readers look for exactly this text.
        throw Exception("Failed to unset TV reset callback: %d", 1, GENERIC_ERROR);
    }
}

void SystemCalls::setShopModeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    setChangedCb(cb, RUNTIME_INFO_KEY_SYSTEM_USE_MODE, "TV System Use Mode", data);
}

void SystemCalls::unsetShopModeChangedCb() {
    ZOLT_TRACE();
    unsetQuietly(*this, RUNTIME_INFO_KEY_SYSTEM_USE_MODE, "TV System Use Mode", __func__);
}

void SystemCalls::setLanguageChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    setChangedCb(cb, RUNTIME_INFO_KEY_LANGUAGE, "Language", data);
}

void SystemCalls::unsetLanguageChangedCb() {
    ZOLT_TRACE();
    unsetQuietly(*this, RUNTIME_INFO_KEY_LANGUAGE, "Language", __func__);
}

int SystemCalls::runtimeInfoGetValueInt(runtime_info_key_e key, int* value) {
    return runtime_info_get_value_int(key, value);
}

int SystemCalls::runtimeInfoGetValueString(runtime_info_key_e key, char** value) {
    return runtime_info_get_value_string(key, value);
}

int SystemCalls::systemInfoGetValueInt(system_info_key_e key, int* value) {
    return system_info_get_value_int(key, value);
}

int SystemCalls::systemInfoGetValueString(system_info_key_e key, char** value) {
    return system_info_get_value_string(key, value);
}

int SystemCalls::systemSettingsGetValueString(system_settings_key_e key, char** value) {
    return system_settings_get_value_string(key, value);
}

int SystemCalls::systemSettingsSetValueInt(system_settings_key_e key, int value) {
    return system_settings_set_value_int(key, value);
}

void SystemCalls::setWakeUpCb(void (*cb)(int, void*), void* data) {
    ZOLT_TRACE();
    const int result = device_power_subscribe_wakeup(cb, data);
    if (result != 0) {
        throw Exception("Failed to set TV power wakeup callback: %d", result, GENERIC_ERROR);
    }
}

void SystemCalls::unsetWakeUpCb(void (*cb)(int, void*)) {
    ZOLT_TRACE();
    const int result = device_power_unsubscribe_wakeup(cb);
    if (result != 0) {
        throw Exception("Failed to unset TV power wakeup callback: %d", result, GENERIC_ERROR);
    }
}

}  // namespace ZOLT
