// SPDX-License-Identifier: Apache-2.0
// The set's network as a connection with profiles. Each handle is a snapshot of the time when it
// was created.
#include "net_connection.h"

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "host/base/Text.h"
#include "host/description/Network.h"

namespace {

struct Connection;

struct Profile {
    const Connection* connection;
    host::NetworkInterface device;
};

struct Connection {
    host::Network network;
    std::deque<Profile> profiles;
};

struct Iterator {
    std::vector<Profile*> profiles;
    std::size_t position;
};

connection_profile_type_e profileType(const host::NetworkInterface& device) {
    return device.wireless ? CONNECTION_PROFILE_TYPE_WIFI : CONNECTION_PROFILE_TYPE_ETHERNET;
}

connection_type_e connectionType(const host::NetworkInterface& device) {
    return device.wireless ? CONNECTION_TYPE_WIFI : CONNECTION_TYPE_ETHERNET;
}

bool isFamily(connection_address_family_e family) {
    return family == CONNECTION_ADDRESS_FAMILY_IPV4 || family == CONNECTION_ADDRESS_FAMILY_IPV6;
}

int copyTo(const std::string& text, char** result) {
    if (text.empty()) {
        return CONNECTION_ERROR_OPERATION_FAILED;
    }
    *result = host::copyForCaller(text);
    return CONNECTION_ERROR_NONE;
}

// A text of the profile that only IPv4 has.
int copyOfProfile(connection_profile_h profile, connection_address_family_e family,
                  std::string host::NetworkInterface::*text, char** result) {
    if (profile == nullptr || result == nullptr || !isFamily(family)) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    if (family != CONNECTION_ADDRESS_FAMILY_IPV4) {
        return CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED;
    }
    return copyTo(static_cast<Profile*>(profile)->device.*text, result);
}

}  // namespace

extern "C" {

int connection_create(connection_h* connection) {
    if (connection == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    auto* made = new Connection{host::Network::current(), {}};
    for (const host::NetworkInterface& device : made->network.interfaces) {
        made->profiles.push_back({made, device});
    }
    *connection = made;
    return CONNECTION_ERROR_NONE;
}

int connection_destroy(connection_h connection) {
    if (connection == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    delete static_cast<Connection*>(connection);
    return CONNECTION_ERROR_NONE;
}

int connection_get_type(connection_h connection, connection_type_e* type) {
    if (connection == nullptr || type == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    const host::NetworkInterface* used = static_cast<Connection*>(connection)->network.used();
    *type = used == nullptr ? CONNECTION_TYPE_DISCONNECTED : connectionType(*used);
    return CONNECTION_ERROR_NONE;
}

int connection_get_ip_address(connection_h connection, connection_address_family_e family,
                              char** address) {
    if (connection == nullptr || address == nullptr || !isFamily(family)) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    const host::NetworkInterface* used = static_cast<Connection*>(connection)->network.used();
    if (used == nullptr) {
        return CONNECTION_ERROR_NO_CONNECTION;
    }
    return copyTo(family == CONNECTION_ADDRESS_FAMILY_IPV4 ? used->address : used->address6,
                  address);
}

int connection_get_mac_address(connection_h connection, connection_type_e type, char** address) {
    if (connection == nullptr || address == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    if (type != CONNECTION_TYPE_WIFI && type != CONNECTION_TYPE_ETHERNET) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    for (const auto& device : static_cast<Connection*>(connection)->network.interfaces) {
        if (connectionType(device) == type) {
            return copyTo(device.mac, address);
        }
    }
    return CONNECTION_ERROR_OPERATION_FAILED;
}

int connection_get_profile_iterator(connection_h connection, connection_iterator_type_e type,
                                    connection_profile_iterator_h* iterator) {
    if (connection == nullptr || iterator == nullptr ||
        (type != CONNECTION_ITERATOR_TYPE_REGISTERED &&
         type != CONNECTION_ITERATOR_TYPE_CONNECTED)) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    auto* made = new Iterator{{}, 0};
    for (Profile& profile : static_cast<Connection*>(connection)->profiles) {
        if (type == CONNECTION_ITERATOR_TYPE_REGISTERED || !profile.device.address.empty()) {
            made->profiles.push_back(&profile);
        }
    }
    *iterator = made;
    return CONNECTION_ERROR_NONE;
}

bool connection_profile_iterator_has_next(connection_profile_iterator_h iterator) {
    const auto* walk = static_cast<Iterator*>(iterator);
    return walk != nullptr && walk->position < walk->profiles.size();
}

int connection_profile_iterator_next(connection_profile_iterator_h iterator,
                                     connection_profile_h* profile) {
    if (iterator == nullptr || profile == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    if (!connection_profile_iterator_has_next(iterator)) {
        return CONNECTION_ERROR_ITERATOR_END;
    }
    auto* walk = static_cast<Iterator*>(iterator);
    *profile = walk->profiles[walk->position++];
    return CONNECTION_ERROR_NONE;
}

int connection_destroy_profile_iterator(connection_profile_iterator_h iterator) {
    if (iterator == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    delete static_cast<Iterator*>(iterator);
    return CONNECTION_ERROR_NONE;
}

int connection_profile_get_type(connection_profile_h profile, connection_profile_type_e* type) {
    if (profile == nullptr || type == nullptr) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    *type = profileType(static_cast<Profile*>(profile)->device);
    return CONNECTION_ERROR_NONE;
}

int connection_profile_get_dns_address(connection_profile_h profile, int order,
                                       connection_address_family_e family, char** address) {
    if (profile == nullptr || address == nullptr || order < 1 || !isFamily(family)) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    const bool wantsSix = family == CONNECTION_ADDRESS_FAMILY_IPV6;
    int count = 0;
    for (const auto& server : static_cast<Profile*>(profile)->connection->network.nameServers) {
        const bool isSix = server.find(':') != std::string::npos;
        if (isSix == wantsSix && ++count == order) {
            return copyTo(server, address);
        }
    }
    return CONNECTION_ERROR_OPERATION_FAILED;
}

int connection_profile_get_gateway_address(connection_profile_h profile,
                                           connection_address_family_e family, char** address) {
    return copyOfProfile(profile, family, &host::NetworkInterface::gateway, address);
}

int connection_profile_get_subnet_mask(connection_profile_h profile,
                                       connection_address_family_e family, char** mask) {
    return copyOfProfile(profile, family, &host::NetworkInterface::mask, mask);
}

int connection_profile_get_ip_config_type(connection_profile_h profile,
                                          connection_address_family_e family,
                                          connection_ip_config_type_e* type) {
    if (profile == nullptr || type == nullptr || !isFamily(family)) {
        return CONNECTION_ERROR_INVALID_PARAMETER;
    }
    const host::NetworkInterface& device = static_cast<Profile*>(profile)->device;
    if (device.address.empty()) {
        *type = CONNECTION_IP_CONFIG_TYPE_NONE;
    } else {
        *type =
            device.isDynamic ? CONNECTION_IP_CONFIG_TYPE_DYNAMIC : CONNECTION_IP_CONFIG_TYPE_STATIC;
    }
    return CONNECTION_ERROR_NONE;
}

}  // extern "C"
