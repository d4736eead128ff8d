// SPDX-License-Identifier: Apache-2.0
// What the program may ask about the television it runs on.
#pragma once

#include <ctime>
#include <mutex>
#include <string>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "runtime_info.h"
#include "vconf.h"

namespace ZOLT {

class ISystemCalls;

// Getters over the system calls and a few other interfaces of the TV. Unless stated otherwise, an
// operation runs on the main loop and throws Exception when the TV does not answer.
class DeviceInfo {
  public:
    enum ImageType { IMAGE_RELEASE = 0, IMAGE_DEBUG = 1, IMAGE_PERF = 2 };

    // SYSTEMCALLS is not owned and must outlive the object.
    explicit DeviceInfo(ISystemCalls* systemCalls);

    bool inShopMode();
    // A failure is logged and never thrown; the log line of success is written in any case.
    void setShopMode(bool on);

    // Sets *VALUE to the language as a locale's name, which the caller releases with free.
    void getLanguageStringValue(char** value);
    // The menu language up to its first "_".
    std::string getLanguageCode();
    std::string getCountryCode();
    // The device id. The first call reads it and subscribes to its changes.
    std::string getDUID();
    std::string getModelId();
    // "OperatingServer" or "DevelopmentServer"; never throws.
    std::string getServerType();

    // True for a panel of exactly 2560 pixels across.
    bool is219TVSupported();
    // The panel's size in pixels.
    int getScreenHeight();
    int getScreenWidth();

    // The text of KEY. NAME is meant for the failure's message, which nevertheless reads "Out of
    // memory" unless NAME holds a "%".
    std::string getStringRuntimeInfo(runtime_info_key_e key, std::string name);
    std::string getWiredIp();
    std::string getWirelessIp();
    std::string getNetworkType();
    bool isWiredNetworkType();
    // The address of the present connection, empty when there is none.
    std::string getLocalHostIP();
    // The hardware address of the network device of the first Wi-Fi or Ethernet profile.
    std::string getNetworkMAC();
    // True, or the exception of getNetworkMAC: it never answers false.
    bool isMACReady();

    // CALLBACK may be called on any thread.
    void setWiredIpChangedCb(void (*callback)(runtime_info_key_e, void*), void* data);
    void setWirelessIpChangedCb(void (*callback)(runtime_info_key_e, void*), void* data);
    void setNetworkTypeChangedCb(void (*callback)(runtime_info_key_e, void*), void* data);
    // Deliberately ends the wireless subscription only: callers rely on further wired notices.
    void unsetWiredIpChangedCb();
    void unsetWirelessIpChangedCb();
    void unsetNetworkTypeChangedCb();

    // Local time of the set, broken down.
    tm getLocalTimeTm();
    // Both throw what Boost's calendar throws for an invalid date.
    boost::posix_time::ptime getUTCTime();
    boost::posix_time::ptime getLocalTime();

    // The kind of firmware image, an ImageType, by the flag file that exists. Does not store it.
    static int setImageType();

    static std::string m_duid;
    static std::mutex m_duidLock;  // held while m_duid is written
    static int m_imageType;        // an ImageType, set once at start

  private:
    static void refreshDUID(keynode_t* node, void* data);

    ISystemCalls* m_systemCalls;  // not owned: the application's data deletes it
};

}  // namespace ZOLT
