// SPDX-License-Identifier: Apache-2.0
// Interface to the television's values and notices, which fakes can implement too.
#pragma once

#include "runtime_info.h"
#include "system_info.h"
#include "system_settings.h"

namespace ZOLT {

// Other libraries rely on the order of the virtual operations.
// Values: each returns the platform's code, 0 on success; the caller releases a text with free.
// Callbacks may run on any thread, and each notice has one callback.
class ISystemCalls {
  public:
    virtual void setWirelessIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) = 0;
    virtual void setWiredIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) = 0;
    virtual void setNetworkTypeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) = 0;
    virtual void unsetWirelessIpChangedCb() = 0;
    virtual void unsetWiredIpChangedCb() = 0;
    virtual void unsetNetworkTypeChangedCb() = 0;
    virtual void setResetCb(int (*cb)(int, void*), void* data) = 0;
    virtual void unsetResetCb(int (*cb)(int, void*)) = 0;
    virtual void setShopModeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) = 0;
    virtual void unsetShopModeChangedCb() = 0;
    virtual void setLanguageChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) = 0;
    virtual void unsetLanguageChangedCb() = 0;
    virtual int runtimeInfoGetValueInt(runtime_info_key_e key, int* value) = 0;
    virtual int runtimeInfoGetValueString(runtime_info_key_e key, char** value) = 0;
    virtual int systemInfoGetValueInt(system_info_key_e key, int* value) = 0;
    virtual int systemInfoGetValueString(system_info_key_e key, char** value) = 0;
    virtual int systemSettingsGetValueString(system_settings_key_e key, char** value) = 0;
    virtual int systemSettingsSetValueInt(system_settings_key_e key, int value) = 0;
    virtual void setWakeUpCb(void (*cb)(int, void*), void* data) = 0;
    virtual void unsetWakeUpCb(void (*cb)(int, void*)) = 0;
    virtual ~ISystemCalls() = default;
};

}  // namespace ZOLT
