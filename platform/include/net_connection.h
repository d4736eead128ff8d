// SPDX-License-Identifier: Apache-2.0
// The set's network connection and its profiles.
#pragma once

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef void* connection_h;
typedef void* connection_profile_h;
typedef void* connection_profile_iterator_h;

typedef enum {
    CONNECTION_TYPE_DISCONNECTED = 0,
    CONNECTION_TYPE_WIFI = 1,
    CONNECTION_TYPE_CELLULAR = 2,
    CONNECTION_TYPE_ETHERNET = 3
} connection_type_e;

typedef enum {
    CONNECTION_PROFILE_TYPE_CELLULAR = 0,
    CONNECTION_PROFILE_TYPE_WIFI = 1,
    CONNECTION_PROFILE_TYPE_ETHERNET = 2,
    CONNECTION_PROFILE_TYPE_BT = 3
} connection_profile_type_e;

typedef enum {
    CONNECTION_ITERATOR_TYPE_REGISTERED = 0,
    CONNECTION_ITERATOR_TYPE_CONNECTED = 1
} connection_iterator_type_e;

typedef enum {
    CONNECTION_ADDRESS_FAMILY_IPV4 = 0,
    CONNECTION_ADDRESS_FAMILY_IPV6 = 1
} connection_address_family_e;

typedef enum {
    CONNECTION_IP_CONFIG_TYPE_NONE = 0,
    CONNECTION_IP_CONFIG_TYPE_STATIC = 1,
    CONNECTION_IP_CONFIG_TYPE_DYNAMIC = 2,
    CONNECTION_IP_CONFIG_TYPE_AUTO = 3,
    CONNECTION_IP_CONFIG_TYPE_FIXED = 4
} connection_ip_config_type_e;

typedef enum {
    CONNECTION_ERROR_NONE = 0,
    CONNECTION_ERROR_OUT_OF_MEMORY = -12,
    CONNECTION_ERROR_INVALID_OPERATION = -38,
    CONNECTION_ERROR_INVALID_PARAMETER = -22,
    CONNECTION_ERROR_ADDRESS_FAMILY_NOT_SUPPORTED = -97,
    CONNECTION_ERROR_NOW_IN_PROGRESS = -115,
    CONNECTION_ERROR_OPERATION_FAILED = -29425663,
    CONNECTION_ERROR_ITERATOR_END = -29425662,
    CONNECTION_ERROR_NO_CONNECTION = -29425661,
    CONNECTION_ERROR_ALREADY_EXISTS = -29425660,
    CONNECTION_ERROR_OPERATION_ABORTED = -29425659,
    CONNECTION_ERROR_DHCP_FAILED = -29425658,
    CONNECTION_ERROR_INVALID_KEY = -29425657,
    CONNECTION_ERROR_NO_REPLY = -29425656,
    CONNECTION_ERROR_NO_KEYWORD = -29425655,
    CONNECTION_ERROR_TCP_RST = -29425654,
    CONNECTION_ERROR_TCP_SYN_TIMEOUT = -29425653,
    CONNECTION_ERROR_NETWORK_MONITOR_FAILURE = -29425652,
    CONNECTION_ERROR_OFFLINE = -29425651,
    CONNECTION_ERROR_INVALID_GATEWAY = -29425650,
    CONNECTION_ERROR_INVALID_MACADDRESS = -29425649
} connection_error_e;

// Every operation returns a connection_error_e as int. Texts are to be released with free.
int connection_create(connection_h* connection);
int connection_destroy(connection_h connection);
int connection_get_type(connection_h connection, connection_type_e* type);
int connection_get_ip_address(connection_h connection, connection_address_family_e family,
                              char** address);
int connection_get_mac_address(connection_h connection, connection_type_e type, char** address);

// The iterator belongs to the caller. A profile belongs to its iterator's connection and stays
// valid after the iterator is gone, until the connection is destroyed.
int connection_get_profile_iterator(connection_h connection, connection_iterator_type_e type,
                                    connection_profile_iterator_h* iterator);
bool connection_profile_iterator_has_next(connection_profile_iterator_h iterator);
int connection_profile_iterator_next(connection_profile_iterator_h iterator,
                                     connection_profile_h* profile);
int connection_destroy_profile_iterator(connection_profile_iterator_h iterator);

int connection_profile_get_type(connection_profile_h profile, connection_profile_type_e* type);

// ORDER counts name servers from 1.
int connection_profile_get_dns_address(connection_profile_h profile, int order,
                                       connection_address_family_e family, char** address);
int connection_profile_get_gateway_address(connection_profile_h profile,
                                           connection_address_family_e family, char** address);
int connection_profile_get_subnet_mask(connection_profile_h profile,
                                       connection_address_family_e family, char** mask);
int connection_profile_get_ip_config_type(connection_profile_h profile,
                                          connection_address_family_e family,
                                          connection_ip_config_type_e* type);

#ifdef __cplusplus
}
#endif
