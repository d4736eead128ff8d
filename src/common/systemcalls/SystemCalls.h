// SPDX-License-Identifier: Apache-2.0
// The system calls as the television itself answers them.
#pragma once

#include <string>

#include <boost/thread/thread_time.hpp>

#include "common/systemcalls/ISystemCalls.h"

namespace ZOLT {

// A thin layer over the C interfaces. A subscription that fails throws Exception. Ending a
// subscription by key never throws and logs failures, because it happens during shutdown; ending
// the reset or the wake-up subscription throws, and callers rely on the difference.
class SystemCalls : public ISystemCalls {
  public:
    void setWirelessIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void setWiredIpChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void setNetworkTypeChangedCb(void (*cb)(runtime_info_key_e, void*), void* data) override;
    void unsetWirelessIpChangedCb() override;
    void unsetWiredIpChangedCb() override;
    void unsetNetworkTypeChangedCb() override;
    // Blocks for up to 100 seconds while the power service is not there yet. An interruption point
    // of Boost.Thread.
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

    // Throws Exception that holds NAME.
    void setChangedCb(void (*cb)(runtime_info_key_e, void*), runtime_info_key_e key,
                      std::string name, void* data);
    void unsetChangedCb(runtime_info_key_e key, std::string name);

  private:
    // Lets a test replace the waiting of setResetCb.
    friend class SystemCallsSleep;

    // Waits until the given time; boost::this_thread::sleep unless a test has put another here.
    static void (*s_sleepUntil)(const boost::system_time& time);
};

}  // namespace ZOLT
