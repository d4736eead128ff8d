// SPDX-License-Identifier: Apache-2.0
// What the program may ask about the television it runs on.
#include "common/DeviceInfo.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>

#include <boost/algorithm/string/case_conv.hpp>

#include "common/Exception.h"
#include "common/File.h"
#include "common/Logger.h"
#include "common/NetworkConnection.h"
#include "common/systemcalls/ISystemCalls.h"
#include "factory_data.h"
#include "net_connection.h"
#include "time_util.h"

namespace ZOLT {

namespace {

constexpr int SHOP_MODE = 1;
constexpr int WIDTH_OF_21_9_PANEL = 2560;
constexpr char DUID_KEY[] = "db/comss/duid";

struct Free {
    void operator()(char* text) const { std::free(text); }
};
// A text of the platform.
using Text = std::unique_ptr<char, Free>;

struct DestroyConnection {
    void operator()(void* handle) const { connection_destroy(handle); }
};
using Connection = std::unique_ptr<void, DestroyConnection>;

struct DestroyIterator {
    void operator()(void* iterator) const { connection_destroy_profile_iterator(iterator); }
};
using ProfileIterator = std::unique_ptr<void, DestroyIterator>;

Connection makeConnection() {
    connection_h handle = nullptr;
    if (connection_create(&handle) != CONNECTION_ERROR_NONE) {
        throw Exception("Failed to init network API", GENERIC_ERROR);
    }
    return Connection(handle);
}

ProfileIterator makeProfileIterator(const Connection& connection) {
    connection_profile_iterator_h iterator = nullptr;
    if (connection_get_profile_iterator(connection.get(), CONNECTION_ITERATOR_TYPE_REGISTERED,
                                        &iterator) != CONNECTION_ERROR_NONE) {
        throw Exception("Failed to init network API", GENERIC_ERROR);
    }
    return ProfileIterator(iterator);
}

// The type of the first Wi-Fi or Ethernet profile, or of the last profile when there is neither.
connection_profile_type_e findProfileType(const Connection& connection) {
    const auto iterator = makeProfileIterator(connection);
    auto type = CONNECTION_PROFILE_TYPE_CELLULAR;
    bool seen = false;
    while (type != CONNECTION_PROFILE_TYPE_WIFI && type != CONNECTION_PROFILE_TYPE_ETHERNET &&
           connection_profile_iterator_has_next(iterator.get())) {
        connection_profile_h profile = nullptr;
        int result = connection_profile_iterator_next(iterator.get(), &profile);
        if (result == CONNECTION_ERROR_NONE && profile != nullptr) {
            seen = true;
            result = connection_profile_get_type(profile, &type);
        }
        if (result != CONNECTION_ERROR_NONE) {
            throw Exception("Failed to init network API", GENERIC_ERROR);
        }
    }
    if (!seen) {
        throw Exception("Failed to init network API", GENERIC_ERROR);
    }
    return type;
}

// FIELD counted from BASE, in the calendar's type. A value beyond that type must fail there like
// other values out of range, and must not wrap into the range.
unsigned short calendarNumber(int field, int base) {
    return static_cast<unsigned short>(std::clamp<int64_t>(int64_t{field} + base, 0, 0xFFFF));
}

boost::posix_time::ptime toPtime(const tm& time) {
    return {boost::gregorian::date(calendarNumber(time.tm_year, 1900),
                                   calendarNumber(time.tm_mon, 1), calendarNumber(time.tm_mday, 0)),
            boost::posix_time::time_duration(time.tm_hour, time.tm_min, time.tm_sec)};
}

}  // namespace

std::string DeviceInfo::m_duid;
std::mutex DeviceInfo::m_duidLock;
int DeviceInfo::m_imageType = DeviceInfo::IMAGE_RELEASE;

DeviceInfo::DeviceInfo(ISystemCalls* systemCalls) : m_systemCalls(systemCalls) {
    ZOLT_TRACE();
}

bool DeviceInfo::inShopMode() {
    ZOLT_TRACE();
    int mode = 0;
    const int result =
        m_systemCalls->runtimeInfoGetValueInt(RUNTIME_INFO_KEY_SYSTEM_USE_MODE, &mode);
    if (result != 0) {
        throw Exception("Failed to retrieve TV System Use Mode: %d", result, GENERIC_ERROR);
    }
    if (mode == SHOP_MODE) {
        ZOLT_DEBUG("TV mode is shop mode");
        return true;
    }
    ZOLT_DEBUG("TV mode is not shop mode");
    return false;
}

void DeviceInfo::setShopMode(bool on) {
    ZOLT_TRACE();
    ZOLT_DEBUG("Device Info set UseMode");
    const int result = m_systemCalls->systemSettingsSetValueInt(
        SYSTEM_SETTINGS_KEY_SUPPORT_USE_MODE, static_cast<int>(on));
    if (result != 0) {
        ZOLT_WARN("Failed to set the value of SystemUseMode, %d", result);
    }
    // Deliberately also after a failure: the line tells which mode was requested.
    ZOLT_DEBUG("Support/UseMode set successful: %i", static_cast<int>(on));
}

void DeviceInfo::getLanguageStringValue(char** value) {
    ZOLT_TRACE();
    const int result = m_systemCalls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_LANGUAGE, value);
    // Most platforms refuse a null output themselves; one that does not has returned no language.
    const bool answered = result == 0 && value != nullptr;
    if (answered && *value != nullptr && **value != '\0') {
        return;
    }
    if (answered) {
        // The caller gets an exception and not the empty text.
        std::free(*value);
        *value = nullptr;
    }
    throw Exception("Failed to retrieve language value, %d", result, GENERIC_ERROR);
}

std::string DeviceInfo::getLanguageCode() {
    ZOLT_TRACE();
    char* value = nullptr;
    const int result =
        m_systemCalls->runtimeInfoGetValueString(RUNTIME_INFO_KEY_SYSTEM_MENU_LANGUAGE, &value);
    const Text text(value);
    if (result != 0 || !text) {
        throw Exception("Failed to retrieve language code value, %d", result, GENERIC_ERROR);
    }
    const std::string language = text.get();
    return language.substr(0, language.find('_'));
}

std::string DeviceInfo::getCountryCode() {
    ZOLT_TRACE();
    char* value = nullptr;
    const int result = m_systemCalls->systemSettingsGetValueString(
        SYSTEM_SETTINGS_KEY_TV_COUNTRY_IOS_ALPHA_2_CODE, &value);
    const Text text(value);
    if (result != 0 || !text || *text == '\0') {
        throw Exception("Failed to retrieve country code value, %d", result, GENERIC_ERROR);
    }
    return text.get();
}

std::string DeviceInfo::getDUID() {
    ZOLT_TRACE();
    // The cache is tested and copied under the lock, because the notice may write it on another
    // thread at the same time. The lock is not held while the id is read, because that locks it
    // too.
    std::unique_lock<std::mutex> lock(m_duidLock);
    if (m_duid.empty()) {
        lock.unlock();
        refreshDUID(nullptr, nullptr);
        vconf_notify_key_changed(DUID_KEY, refreshDUID, nullptr);
        lock.lock();
    }
    return m_duid;
}

void DeviceInfo::refreshDUID(keynode_t* /*node*/, void* /*data*/) {
    ZOLT_TRACE();
    const std::lock_guard<std::mutex> guard(m_duidLock);
    const Text text(vconf_get_str(DUID_KEY));
    if (!text) {
        throw Exception("Could not retrieve DUID", GENERIC_ERROR);
    }
    m_duid = text.get();
}

std::string DeviceInfo::getModelId() {
    ZOLT_TRACE();
    char* value = nullptr;
    const int result = m_systemCalls->systemInfoGetValueString(SYSTEM_INFO_KEY_MODEL, &value);
    const Text text(value);
    if (result != 0 || !text) {
        throw Exception("Failed to retrieve model ID: %d", result, GENERIC_ERROR);
    }
    return text.get();
}

std::string DeviceInfo::getServerType() {
    ZOLT_TRACE();
    // Aligned for any type, because the platform writes a structure of its own here.
    alignas(std::max_align_t) std::array<unsigned char, FACTORY_DATA_RECORD_SIZE> record{};
    const int type = GetData(FACTORY_DATA_SERVER_TYPE, record.data());
    if (type != FACTORY_DATA_TYPE_SERVER_RECORD) {
        // A television whose record cannot be read must not use the operating server.
        ZOLT_WARN("Unknown info struct type: %i", type);
        return "DevelopmentServer";
    }
    int32_t server = 0;
    std::memcpy(&server, record.data(), sizeof server);
    if (server == 0) {
        ZOLT_DEBUG("Server Type: operating");
        return "OperatingServer";
    }
    ZOLT_DEBUG("Server Type: development");
    return "DevelopmentServer";
}

bool DeviceInfo::is219TVSupported() {
    ZOLT_TRACE();
    int width = 0;
    const int result = m_systemCalls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, &width);
    if (result != 0) {
        throw Exception("Unable to retrieve if the 21:9 TV is supported or not, %d", result,
                        GENERIC_ERROR);
    }
    ZOLT_DEBUG("width = %d", width);
    const bool supported = width == WIDTH_OF_21_9_PANEL;
    if (!supported) {
        ZOLT_DEBUG("This TV doesn't support 21:9 resolution");
    }
    return supported;
}

int DeviceInfo::getScreenHeight() {
    ZOLT_TRACE();
    int height = 0;
    const int result = m_systemCalls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_HEIGHT, &height);
    if (result != 0) {
        throw Exception("Unable to retrieve screen height, %d", result, GENERIC_ERROR);
    }
    ZOLT_DEBUG("Device Info screen height get success: %i", height);
    return height;
}

int DeviceInfo::getScreenWidth() {
    ZOLT_TRACE();
    int width = 0;
    const int result = m_systemCalls->systemInfoGetValueInt(SYSTEM_INFO_KEY_PANEL_WIDTH, &width);
    if (result != 0) {
        throw Exception("Unable to retrieve screen width, %d", result, GENERIC_ERROR);
    }
    ZOLT_DEBUG("Device Info screen width get success: %i", width);
    return width;
}

std::string DeviceInfo::getStringRuntimeInfo(runtime_info_key_e key, std::string name) {
    ZOLT_TRACE();
    char* value = nullptr;
    const int result = m_systemCalls->runtimeInfoGetValueString(key, &value);
    const Text text(value);
    if (result == 0 && text) {
        return text.get();
    }
    const std::string message = "Failed to retrieve " + name + " : " + std::to_string(result);
    // The message goes in as a format without a directive, so the exception logs that it has one
    // value too many and says "Out of memory". Deliberate: callers recognise the failure by that
    // text.
    throw Exception(message.c_str(), 1, GENERIC_ERROR);
}

std::string DeviceInfo::getWiredIp() {
    ZOLT_TRACE();
    return getStringRuntimeInfo(RUNTIME_INFO_KEY_WIRED_IP, "wired IP");
}

std::string DeviceInfo::getWirelessIp() {
    ZOLT_TRACE();
    return getStringRuntimeInfo(RUNTIME_INFO_KEY_WIRELESS_IP, "wireless IP");
}

std::string DeviceInfo::getNetworkType() {
    ZOLT_TRACE();
    return getStringRuntimeInfo(RUNTIME_INFO_KEY_NETWORK_TYPE, "network type");
}

bool DeviceInfo::isWiredNetworkType() {
    ZOLT_TRACE();
    const auto type = getStringRuntimeInfo(RUNTIME_INFO_KEY_NETWORK_TYPE, "network type");
    return boost::algorithm::to_lower_copy(type) == "wired";
}

std::string DeviceInfo::getLocalHostIP() {
    ZOLT_TRACE();
    return NetworkConnection::IGetIPAddress();
}

std::string DeviceInfo::getNetworkMAC() {
    ZOLT_TRACE();
    ZOLT_DEBUG("Getting MAC address");
    const std::map<connection_profile_type_e, connection_type_e> connectionTypes = {
        {CONNECTION_PROFILE_TYPE_WIFI, CONNECTION_TYPE_WIFI},
        {CONNECTION_PROFILE_TYPE_ETHERNET, CONNECTION_TYPE_ETHERNET},
    };
    try {
        const auto connection = makeConnection();
        const auto profileType = findProfileType(connection);
        auto type = CONNECTION_TYPE_DISCONNECTED;
        try {
            type = connectionTypes.at(profileType);
        } catch (const std::exception& exception) {
            ZOLT_WARN("%s", exception.what());
        }
        if (type == CONNECTION_TYPE_DISCONNECTED) {
            throw Exception("Network is not connected, Unable to get MAC address", GENERIC_ERROR);
        }
        char* address = nullptr;
        const int result = connection_get_mac_address(connection.get(), type, &address);
        const Text text(address);
        if (result != CONNECTION_ERROR_NONE || !text) {
            throw Exception("Unable to get MAC address", GENERIC_ERROR);
        }
        return text.get();
    } catch (const Exception& exception) {
        ZOLT_WARN("%s", exception.what());
        throw;
    }
}

bool DeviceInfo::isMACReady() {
    ZOLT_TRACE();
    const auto address = getNetworkMAC();
    ZOLT_DEBUG("MAC ready: %s", address.c_str());
    return true;
}

void DeviceInfo::setWiredIpChangedCb(void (*callback)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    m_systemCalls->setWiredIpChangedCb(callback, data);
}

void DeviceInfo::setWirelessIpChangedCb(void (*callback)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    m_systemCalls->setWirelessIpChangedCb(callback, data);
}

void DeviceInfo::setNetworkTypeChangedCb(void (*callback)(runtime_info_key_e, void*), void* data) {
    ZOLT_TRACE();
    m_systemCalls->setNetworkTypeChangedCb(callback, data);
}

void DeviceInfo::unsetWiredIpChangedCb() {
    ZOLT_TRACE();
    // Ends the wireless subscription only, as the header says.
    m_systemCalls->unsetWirelessIpChangedCb();
}

void DeviceInfo::unsetWirelessIpChangedCb() {
    ZOLT_TRACE();
    m_systemCalls->unsetWirelessIpChangedCb();
}

void DeviceInfo::unsetNetworkTypeChangedCb() {
    ZOLT_TRACE();
    m_systemCalls->unsetNetworkTypeChangedCb();
}

tm DeviceInfo::getLocalTimeTm() {
    ZOLT_TRACE();
    const time_t now = CTimeUtil::GetCurrentTime();
    tm time{};
    // Despite its name this gives local time, because the TV's clock counts local time.
    CTimeUtil::Unsigned_gmtime_r(&now, &time);
    return time;
}

boost::posix_time::ptime DeviceInfo::getUTCTime() {
    ZOLT_TRACE();
    tm time = getLocalTimeTm();
    CTimeUtil::ConvertToUTCTime(&time);
    return toPtime(time);
}

boost::posix_time::ptime DeviceInfo::getLocalTime() {
    ZOLT_TRACE();
    return toPtime(getLocalTimeTm());
}

int DeviceInfo::setImageType() {
    ZOLT_TRACE();
    if (File::exists(ZOLT_IMAGE_TYPE_DIR "/release")) {
        ZOLT_DEBUG("Current image type - RELEASE");
        return IMAGE_RELEASE;
    }
    if (File::exists(ZOLT_IMAGE_TYPE_DIR "/debug")) {
        ZOLT_DEBUG("Current image type - DEBUG");
        return IMAGE_DEBUG;
    }
    if (File::exists(ZOLT_IMAGE_TYPE_DIR "/perf")) {
        ZOLT_DEBUG("Current image type - PERF");
        return IMAGE_PERF;
    }
    ZOLT_DEBUG("No file found - use default image type - RELEASE");
    return IMAGE_RELEASE;
}

}  // namespace ZOLT
