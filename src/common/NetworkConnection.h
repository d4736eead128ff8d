// SPDX-License-Identifier: Apache-2.0
// A short-lived view of the present network connection.
#pragma once

#include <string>

#include "net_connection.h"

namespace ZOLT {

// Holds a connection and one of its profiles for as long as it lives. An object may have neither:
// its getters then return empty values. Used on the thread that made it.
class NetworkConnection {
  public:
    // Never throws an Exception: what fails is logged.
    NetworkConnection();
    virtual ~NetworkConnection();
    NetworkConnection(const NetworkConnection&) = delete;
    NetworkConnection& operator=(const NetworkConnection&) = delete;

    // Throws Exception.
    void CreateHandle();
    void DestroyHandle();
    // Looks for a registered profile of a type that a connection can have, and leaves the last one
    // seen in *PROFILE. Ends the process when PROFILE itself is null. Throws Exception.
    void FindProfile(void** profile);
    // Takes the connection's type, or while nothing is connected the profile's. Throws Exception.
    void FindConnectionType();

    // Throws Exception.
    connection_type_e GetConnectionTypeByHandle();
    // Throws Exception, also for a profile that is neither Wi-Fi nor Ethernet.
    connection_type_e GetConnectionTypeByProfile();
    connection_type_e GetConnectionType();

    // Each returns an empty text, and logs a line, when the TV does not answer. Addresses are IPv4,
    // the name server is the first.
    std::string GetMacAddress();
    std::string GetIPAddress();
    std::string GetDNSAddress();
    std::string GetGatewayAddress();
    std::string GetSubnetMaskAddress();
    // CONNECTION_IP_CONFIG_TYPE_NONE when the TV does not answer.
    connection_ip_config_type_e GetIPConfigType();

    // Writes the name of a connection_error_e into the log.
    static void PrintConnectionError(int error);

    // Each makes an object, asks it once and deletes it.
    static connection_type_e IGetConnectionType();
    static std::string IGetMacAddress();
    static std::string IGetIPAddress();
    static std::string IGetDNSAddress();
    static std::string IGetGatewayAddress();
    static std::string IGetSubnetMaskAddress();
    static connection_ip_config_type_e IGetIPConfigType();

  private:
    connection_h m_Handle;           // DestroyHandle destroys it
    connection_profile_h m_Profile;  // belongs to the connection
    connection_type_e m_ConnectionType;
};

}  // namespace ZOLT
