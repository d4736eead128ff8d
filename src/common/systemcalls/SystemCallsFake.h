// SPDX-License-Identifier: Apache-2.0
// System calls of which some are faked, for televisions that lack a service.
#pragma once

#include "common/systemcalls/SystemCalls.h"

namespace ZOLT {

// Each fake has a configuration key of its own and applies while its value is "1"; everything else
// goes to the television. An absent key throws std::out_of_range. A faked subscription is dropped.
class SystemCallsFake : public SystemCalls {
  public:
    void setWirelessIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void setWiredIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void setNetworkTypeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void unsetWirelessIpChangedCb() override;
    void unsetWiredIpChangedCb() override;
    void unsetNetworkTypeChangedCb() override;
    void setResetCb(int (*cb)(int, void*), void* data) override;
    void unsetResetCb(int (*cb)(int, void*)) override;
    void setShopModeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void unsetShopModeChangedCb() override;
    void setLanguageChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void unsetLanguageChangedCb() override;
    int runtimeInfoGetValueInt(runtime_info_key_e key, int* value) override;
    int runtimeInfoGetValueString(runtime_info_key_e key, char** value) override;
    int systemInfoGetValueInt(system_info_key_e key, int* value) override;
    int systemInfoGetValueString(system_info_key_e key, char** value) override;
    int systemSettingsGetValueString(system_settings_key_e key, char** value) override;
    int systemSettingsSetValueInt(system_settings_key_e key, int value) override;
    void setWakeUpCb(void (*cb)(int, void*), void* data) override;
    void unsetWakeUpCb(void (*cb)(int, void*)) override;
};

}  // namespace ZOLT
