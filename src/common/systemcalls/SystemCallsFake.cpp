// SPDX-License-Identifier: Apache-2.0
// System calls of which some are faked, for televisions that lack a service.
#include "common/systemcalls/SystemCallsFake.h"

#include <cstdio>

#include "common/Logger.h"
#include "common/ZoltConfig.h"

// The trace line of a faked value. Its text is fixed, so it does not come from the signature.
#define FAKE_TRACE(call) ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "Called SystemCallsFake::" call)

namespace ZOLT {

namespace {

// Read for each call, so a changed configuration takes effect with the next call.
bool faked(const char* configurationKey) {
    return ZoltConfig::is(configurationKey, "1");
}

// A null output is ignored and the call succeeds: the fakes fail only for lack of memory.
int giveNumber(int number, int* value) {
    if (value != nullptr) {
        *value = number;
    }
    return 0;
}

// The same for a text. The caller releases *VALUE with free, as it does with one of the television.
int giveText(const char* text, char** value) {
    if (value == nullptr) {
        return 0;
    }
    if (asprintf(value, "%s", text) < 0) {
        *value = nullptr;
        return -1;
    }
    return 0;
}

}  // namespace

void SystemCallsFake::setWirelessIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    if (faked("FakeWirelessIpChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setWirelessIpChangedCb(cb, data);
}

void SystemCallsFake::setWiredIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    if (faked("FakeWiredIpChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setWiredIpChangedCb(cb, data);
}

void SystemCallsFake::setNetworkTypeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    if (faked("FakeNetworkTypeChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setNetworkTypeChangedCb(cb, data);
}

void SystemCallsFake::unsetWirelessIpChangedCb() {
    if (faked("FakeWirelessIpChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetWirelessIpChangedCb();
}

void SystemCallsFake::unsetWiredIpChangedCb() {
    if (faked("FakeWiredIpChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetWiredIpChangedCb();
}

void SystemCallsFake::unsetNetworkTypeChangedCb() {
    if (faked("FakeNetworkTypeChangedCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetNetworkTypeChangedCb();
}

void SystemCallsFake::setResetCb(int (*cb)(int, void*), void* data) {
    if (faked("FakeResetCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setResetCb(cb, data);
}

void SystemCallsFake::unsetResetCb(int (*cb)(int, void*)) {
    if (faked("FakeResetCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetResetCb(cb);
}

void SystemCallsFake::setShopModeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    if (faked("FakeShopModeCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setShopModeChangedCb(cb, data);
}

void SystemCallsFake::unsetShopModeChangedCb() {
    if (faked("FakeShopModeCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetShopModeChangedCb();
}

void SystemCallsFake::setLanguageChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) {
    if (faked("FakeLanguageCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setLanguageChangedCb(cb, data);
}

void SystemCallsFake::unsetLanguageChangedCb() {
    if (faked("FakeLanguageCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetLanguageChangedCb();
}

int SystemCallsFake::runtimeInfoGetValueInt(runtime_info_key_e key, int* value) {
    if (key == RUNTIME_INFO_KEY_SYSTEM_USE_MODE && faked("FakeUseMode")) {
        FAKE_TRACE("runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE)");
        return giveNumber(1, value);
    }
    return SystemCalls::runtimeInfoGetValueInt(key, value);
}

int SystemCallsFake::runtimeInfoGetValueString(runtime_info_key_e key, char** value) {
    if (key == RUNTIME_INFO_KEY_LANGUAGE && faked("FakeLanguage")) {
        FAKE_TRACE("runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE)");
        return giveText("en_US.utf8", value);
    }
    if (key == RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE && faked("FakeMenuLanguage")) {
        FAKE_TRACE("runtimeInfoGetValueString(RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE)");
        return giveText("ko", value);
    }
    return SystemCalls::runtimeInfoGetValueString(key, value);
}

// The keys of the two screen fakes are not those of the panel that DeviceInfo asks for, so its
// answers stay the real ones. Deliberate: the layouts are made for the real panel.
int SystemCallsFake::systemInfoGetValueInt(system_info_key_e key, int* value) {
    if (key == SYSTEM_INFO_KEY_SCREEN_HEIGHT && faked("FakeScreenHeight")) {
        FAKE_TRACE("systemInfoGetValueInt(SYSTEM_INFO_KEY_SCREEN_HEIGHT)");
        return giveNumber(1080, value);
    }
    if (key == SYSTEM_INFO_KEY_SCREEN_WIDTH && faked("FakeScreenWidth")) {
        FAKE_TRACE("systemInfoGetValueInt(SYSTEM_INFO_KEY_SCREEN_WIDTH)");
        return giveNumber(1920, value);
    }
    return SystemCalls::systemInfoGetValueInt(key, value);
}

int SystemCallsFake::systemInfoGetValueString(system_info_key_e key, char** value) {
    if (key == SYSTEM_INFO_KEY_MODEL && faked("FakeModel")) {
        FAKE_TRACE("systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL)");
        return giveText("MODEL", value);
    }
    return SystemCalls::systemInfoGetValueString(key, value);
}

int SystemCallsFake::systemSettingsGetValueString(system_settings_key_e key, char** value) {
    if (key == SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE && faked("FakeCountryCode")) {
        FAKE_TRACE("systemSettingsGetValueString(SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE)");
        return giveText("kor", value);
    }
    return SystemCalls::systemSettingsGetValueString(key, value);
}

int SystemCallsFake::systemSettingsSetValueInt(system_settings_key_e key, int value) {
    if (key == SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE && faked("FakeSetUseMode")) {
        FAKE_TRACE("systemSettingsSetValueInt(SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE)");
        return 0;
    }
    return SystemCalls::systemSettingsSetValueInt(key, value);
}

void SystemCallsFake::setWakeUpCb(void (*cb)(int, void*), void* data) {
    if (faked("FakeWakeupCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::setWakeUpCb(cb, data);
}

void SystemCallsFake::unsetWakeUpCb(void (*cb)(int, void*)) {
    if (faked("FakeWakeupCb")) {
        ZOLT_TRACE();
        return;
    }
    SystemCalls::unsetWakeUpCb(cb);
}

}  // namespace ZOLT
