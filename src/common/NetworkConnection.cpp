// SPDX-License-Identifier: Apache-2.0
// A short-lived view of the present network connection.
#include "common/NetworkConnection.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>

#include "common/Exception.h"
#include "common/Logger.h"

// The failed assertion of FindProfile must end the process in every kind of build.
#undef NDEBUG
#include <cassert>

// Failures are logged as information here: a TV without a network is nothing unusual.
#define NETWORK_LOG(...) ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, __VA_ARGS__)

namespace ZOLT {

namespace {

// Cellular, Wi-Fi and Ethernet profiles come before this one.
constexpr int FIRST_UNSUITABLE_PROFILE_TYPE = 3;
constexpr int FIRST_DNS_SERVER = 1;

struct ErrorName {
    int code;
    const char* name;
};

constexpr ErrorName ERROR_NAMES[] = {
    {CONNECTION_ERROR_NONE, "CONNECTION_ERROR_NONE"},
    {CONNECTION_ERROR_OPERATION_FAILED, "CONNECTION_ERROR_OPERATION_FAILED"},
    {CONNECTION_ERROR_ITERATOR_END, "CONNECTION_ERROR_ITERATOR_END"},
    {CONNECTION_ERROR_NO_CONNECTION, "CONNECTION_ERROR_NO_CONNECTION"},
    {CONNECTION_ERROR_ALREADY_EXISTS, "CONNECTION_ERROR_ALREADY_EXISTS"},
    {CONNECTION_ERROR_OPERATION_ABORTED, "CONNECTION_ERROR_OPERATION_ABORTED"},
    {CONNECTION_ERROR_DHCP_FAILED, "CONNECTION_ERROR_DHCP_FAILED"},
    {CONNECTION_ERROR_INVALID_KEY, "CONNECTION_ERROR_INVALID_KEY"},
    {CONNECTION_ERROR_NO_REPLY, "CONNECTION_ERROR_NO_REPLY"},
    {CONNECTION_ERROR_NO_KEYWORD, "CONNECTION_ERROR_NO_KEYWORD"},
    {CONNECTION_ERROR_TCP_RST, "CONNECTION_ERROR_TCP_RST"},
    {CONNECTION_ERROR_TCP_SYN_TIMEOUT, "CONNECTION_ERROR_TCP_SYN_TIMEOUT"},
    {CONNECTION_ERROR_NETWORK_MONITOR_FAILURE, "CONNECTION_ERROR_NETWORK_MONITOR_FAILURE"},
    {CONNECTION_ERROR_OFFLINE, "CONNECTION_ERROR_OFFLINE"},
    {CONNECTION_ERROR_INVALID_GATEWAY, "CONNECTION_ERROR_INVALID_GATEWAY"},
    {CONNECTION_ERROR_INVALID_MACADDRESS, "CONNECTION_ERROR_INVALID_MACADDRESS"},
    {CONNECTION_ERROR_NOW_IN_PROGRESS, "CONNECTION_ERROR_NOW_IN_PROGRESS"},
    {CONNECTION_ERROR_INVALID_PARAMETER, "CONNECTION_ERROR_INVALID_PARAMETER"},
    {CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED,
     "CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED"},
    {CONNECTION_ERROR_INVALID_OPERATION, "CONNECTION_ERROR_INVALID_OPERATION"},
    {CONNECTION_ERROR_OUT_OF_MEMORY, "CONNECTION_ERROR_OUT_OF_MEMORY"},
};

// The copy of a text of the platform, which is released.
std::string takeText(char* text) {
    const std::unique_ptr<char, decltype(&std::free)> owned(text, std::free);
    return text;
}

}  // namespace

NetworkConnection::NetworkConnection()
    : m_Handle(nullptr), m_Profile(nullptr), m_ConnectionType(CONNECTION_TYPE_DISCONNECTED) {
    ZOLT_TRACE();
    try {
        CreateHandle();
        FindProfile(&m_Profile);
        FindConnectionType();
    } catch (const Exception& exception) {
        NETWORK_LOG("%s", exception.what());
    } catch (...) {
        NETWORK_LOG("unhandled exception");
    }
}

NetworkConnection::~NetworkConnection() {
    ZOLT_TRACE();
    DestroyHandle();
}

void NetworkConnection::CreateHandle() {
    ZOLT_TRACE();
    if (connection_create(&m_Handle) != CONNECTION_ERROR_NONE) {
        throw Exception("Failed to connection_create", GENERIC_ERROR);
    }
}

void NetworkConnection::DestroyHandle() {
    ZOLT_TRACE();
    if (m_Handle != nullptr) {
        connection_destroy(m_Handle);
        m_Handle = nullptr;
    }
}

void NetworkConnection::FindProfile(void** profile) {
    ZOLT_TRACE();
    connection_profile_iterator_h iterator = nullptr;
    if (connection_get_profile_iterator(m_Handle, CONNECTION_ITERATOR_TYPE_REGISTERED, &iterator) !=
        CONNECTION_ERROR_NONE) {
        NETWORK_LOG("Failed to Get Profile iterator");
        throw Exception("Failed to Get Profile iterator", GENERIC_ERROR);
    }
    bool found = false;
    while (!found && connection_profile_iterator_has_next(iterator)) {
        if (connection_profile_iterator_next(iterator, profile) != CONNECTION_ERROR_NONE) {
            connection_destroy_profile_iterator(iterator);
            NETWORK_LOG("Failed to Get Profile iterator");
            throw Exception("Failed to Get Profile iterator", GENERIC_ERROR);
        }
        auto type = CONNECTION_PROFILE_TYPE_CELLULAR;
        // A platform may accept a null output and give no profile: asking for its type then fails
        // as for an invalid profile.
        void* current = profile == nullptr ? nullptr : *profile;
        if (connection_profile_get_type(current, &type) != CONNECTION_ERROR_NONE) {
            connection_destroy_profile_iterator(iterator);
            NETWORK_LOG("Error : connection_profile_get_type");
            throw Exception("Error : connection_profile_get_type", GENERIC_ERROR);
        }
        found = type < FIRST_UNSUITABLE_PROFILE_TYPE;
    }
    if (profile == nullptr) {
        connection_destroy_profile_iterator(iterator);
        NETWORK_LOG("Error : m_Profile is not set");
        assert(0 && "m_Profile is not set");
    }
    // Deliberately leaks one iterator for each object: some platforms free the profile together
    // with its iterator, and the profile is used from here on.
}

void NetworkConnection::FindConnectionType() {
    ZOLT_TRACE();
    m_ConnectionType = GetConnectionTypeByHandle();
    if (m_ConnectionType == CONNECTION_TYPE_DISCONNECTED) {
        m_ConnectionType = GetConnectionTypeByProfile();
    }
}

connection_type_e NetworkConnection::GetConnectionTypeByHandle() {
    ZOLT_TRACE();
    auto type = CONNECTION_TYPE_DISCONNECTED;
    if (connection_get_type(m_Handle, &type) != CONNECTION_ERROR_NONE) {
        throw Exception("Failed to get connection type", GENERIC_ERROR);
    }
    return type;
}

connection_type_e NetworkConnection::GetConnectionTypeByProfile() {
    ZOLT_TRACE();
    auto type = CONNECTION_PROFILE_TYPE_CELLULAR;
    if (connection_profile_get_type(m_Profile, &type) != CONNECTION_ERROR_NONE) {
        throw Exception("failed getting profile type", GENERIC_ERROR);
    }
    try {
        const std::map<connection_profile_type_e, connection_type_e> connectionTypes = {
            {CONNECTION_PROFILE_TYPE_WIFI, CONNECTION_TYPE_WIFI},
            {CONNECTION_PROFILE_TYPE_ETHERNET, CONNECTION_TYPE_ETHERNET},
        };
        return connectionTypes.at(type);
    } catch (const std::out_of_range& error) {
        throw Exception(error.what(), GENERIC_ERROR);
    } catch (...) {
        throw Exception("Unknown exception occured", GENERIC_ERROR);
    }
}

connection_type_e NetworkConnection::GetConnectionType() {
    return m_ConnectionType;
}

std::string NetworkConnection::GetMacAddress() {
    ZOLT_TRACE();
    char* text = nullptr;
    const int result = connection_get_mac_address(m_Handle, m_ConnectionType, &text);
    if (result != CONNECTION_ERROR_NONE || text == nullptr) {
        NETWORK_LOG("Error connection_get_mac_address");
        return "";
    }
    return takeText(text);
}

std::string NetworkConnection::GetIPAddress() {
    ZOLT_TRACE();
    char* text = nullptr;
    const int result = connection_get_ip_address(m_Handle, CONNECTION_ADDRESS_FAMILY_IPV4, &text);
    if (result != CONNECTION_ERROR_NONE || text == nullptr) {
        NETWORK_LOG("Error connection_get_ip_address");
        return "";
    }
    return takeText(text);
}

std::string NetworkConnection::GetDNSAddress() {
    ZOLT_TRACE();
    char* text = nullptr;
    const int result = connection_profile_get_dns_address(m_Profile, FIRST_DNS_SERVER,
                                                          CONNECTION_ADDRESS_FAMILY_IPV4, &text);
    if (result != CONNECTION_ERROR_NONE || text == nullptr) {
        NETWORK_LOG("Error connection_profile_get_dns_address");
        return "";
    }
    return takeText(text);
}

std::string NetworkConnection::GetGatewayAddress() {
    ZOLT_TRACE();
    char* text = nullptr;
    const int result =
        connection_profile_get_gateway_address(m_Profile, CONNECTION_ADDRESS_FAMILY_IPV4, &text);
    if (result != CONNECTION_ERROR_NONE || text == nullptr) {
        NETWORK_LOG("Error connection_profile_get_gateway_address");
        return "";
    }
    return takeText(text);
}

std::string NetworkConnection::GetSubnetMaskAddress() {
    ZOLT_TRACE();
    char* text = nullptr;
    const int result =
        connection_profile_get_subnet_mask(m_Profile, CONNECTION_ADDRESS_FAMILY_IPV4, &text);
    if (result != CONNECTION_ERROR_NONE || text == nullptr) {
        NETWORK_LOG("Error connection_profile_get_subnet_mask");
        return "";
    }
    return takeText(text);
}

connection_ip_config_type_e NetworkConnection::GetIPConfigType() {
    ZOLT_TRACE();
    auto type = CONNECTION_IP_CONFIG_TYPE_NONE;
    // The result is deliberately unchecked: a television without one leaves "none".
    connection_profile_get_ip_config_type(m_Profile, CONNECTION_ADDRESS_FAMILY_IPV4, &type);
    return type;
}

void NetworkConnection::PrintConnectionError(int error) {
    ZOLT_TRACE();
    for (const auto& [code, name] : ERROR_NAMES) {
        if (code == error) {
            NETWORK_LOG("Connection Error : %s \n", name);
            return;
        }
    }
    NETWORK_LOG("Undefined Connection Error \n");
}

connection_type_e NetworkConnection::IGetConnectionType() {
    ZOLT_TRACE();
    return NetworkConnection().GetConnectionType();
}

std::string NetworkConnection::IGetMacAddress() {
    ZOLT_TRACE();
    return NetworkConnection().GetMacAddress();
}

std::string NetworkConnection::IGetIPAddress() {
    ZOLT_TRACE();
    return NetworkConnection().GetIPAddress();
}

std::string NetworkConnection::IGetDNSAddress() {
    ZOLT_TRACE();
    return NetworkConnection().GetDNSAddress();
}

std::string NetworkConnection::IGetGatewayAddress() {
    ZOLT_TRACE();
    return NetworkConnection().GetGatewayAddress();
}

std::string NetworkConnection::IGetSubnetMaskAddress() {
    ZOLT_TRACE();
    return NetworkConnection().GetSubnetMaskAddress();
}

connection_ip_config_type_e NetworkConnection::IGetIPConfigType() {
    ZOLT_TRACE();
    return NetworkConnection().GetIPConfigType();
}

}  // namespace ZOLT
