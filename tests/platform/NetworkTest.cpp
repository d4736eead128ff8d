// SPDX-License-Identifier: Apache-2.0
// The network of the set: the machine's, and one that is made up.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <gtest/gtest.h>

#include "PrivateSet.h"
#include "host/description/Network.h"
#include "net_connection.h"
#include "runtime_info.h"

namespace platform_test {

namespace fs = std::filesystem;

class Network : public PrivateSet {
  protected:
    void device(const std::string& name, const std::string& type) const {
        fs::create_directories(file("net/" + name + "/device"));
        support::writeFile(file("net/" + name + "/type"), type + "\n");
        support::writeFile(file("net/" + name + "/address"),
                           "02:00:00:00:00:0" + name.substr(4) + "\n");
    }

    host::NetworkSources sources() const {
        return {file("net"), file("route"), file("resolv.conf")};
    }
};

TEST_F(Network, OnlyEthernetAndWirelessDevicesAreConnections) {
    device("eth-1", "1");
    device("wla-2", "1");
    fs::create_directory(file("net/wla-2/wireless"));
    device("ifb-5", "1");
    fs::remove(file("net/ifb-5/device"));
    device("loo-3", "772");
    device("bri-4", "1");
    fs::create_directory(file("net/bri-4/bridge"));
    const host::Network network = host::Network::machine(sources());
    ASSERT_EQ(network.interfaces.size(), 2U);
    EXPECT_EQ(network.interfaces[0].name, "eth-1");
    EXPECT_FALSE(network.interfaces[0].wireless);
    EXPECT_EQ(network.interfaces[0].mac, "02:00:00:00:00:01");
    EXPECT_TRUE(network.interfaces[1].wireless);
    EXPECT_EQ(network.typeName(), "disconnected");  // none has an address
}

TEST_F(Network, TheDefaultRouteWithTheLowestMetricLeadsTheList) {
    device("eth-1", "1");
    device("eth-2", "1");
    support::writeFile(file("route"),
                       "Iface Destination Gateway Flags RefCnt Use Metric Mask MTU Window IRTT\n"
                       "eth-1 00000000 010200C0 0003 0 0 600 00000000 0 0 0\n"
                       "eth-2 00000000 020200C0 0003 0 0 100 00000000 0 0 0\n"
                       "eth-1 000200C0 00000000 0001 0 0 100 00FFFFFF 0 0 0\n");
    const host::Network network = host::Network::machine(sources());
    ASSERT_EQ(network.interfaces.size(), 2U);
    EXPECT_EQ(network.interfaces[0].name, "eth-2");
    EXPECT_TRUE(network.interfaces[0].isDefault);
    EXPECT_EQ(network.interfaces[0].gateway, "192.0.2.2");
    EXPECT_EQ(network.interfaces[1].gateway, "192.0.2.1");
    EXPECT_FALSE(network.interfaces[1].isDefault);
}

TEST_F(Network, NameServersStandInTheOrderOfTheResolver) {
    support::writeFile(
        file("resolv.conf"),
        "# nameserver 203.0.113.1\nsearch x\nnameserver 192.0.2.7\nnameserver 2001:db8::1\n");
    EXPECT_EQ(host::Network::machine(sources()).nameServers,
              (std::vector<std::string>{"192.0.2.7", "2001:db8::1"}));
}

TEST_F(Network, AMachineThatTellsNothingIsDisconnected) {
    const host::Network network = host::Network::machine(sources());
    EXPECT_TRUE(network.interfaces.empty());
    EXPECT_EQ(network.used(), nullptr);
    EXPECT_EQ(network.typeName(), "disconnected");
}

// What the system itself reports.
std::string firstAddressOf(const std::string& name) {
    ifaddrs* all = nullptr;
    EXPECT_EQ(getifaddrs(&all), 0);
    std::string text;
    for (const ifaddrs* entry = all; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET &&
            name == entry->ifa_name && text.empty()) {
            text = inet_ntoa(reinterpret_cast<const sockaddr_in*>(entry->ifa_addr)->sin_addr);
        }
    }
    freeifaddrs(all);
    return text;
}

TEST_F(Network, TheMachinesOwnAddressesAreFound) {
    const host::Network network = host::Network::current();
    for (const auto& device : network.interfaces) {
        EXPECT_NE(device.name, "lo");
        EXPECT_EQ(device.address, firstAddressOf(device.name));
    }
}

class Connection : public Network {
  protected:
    Connection() { describe("[Network]\nType=wired\nAddress=192.0.2.20\nConfiguration=static\n"); }
    ~Connection() override {
        if (m_handle != nullptr) {
            connection_destroy(m_handle);
        }
    }

    connection_h handle() {
        if (m_handle == nullptr) {
            EXPECT_EQ(connection_create(&m_handle), CONNECTION_ERROR_NONE);
        }
        return m_handle;
    }

    connection_profile_h profile() {
        connection_profile_iterator_h iterator = nullptr;
        EXPECT_EQ(connection_get_profile_iterator(handle(), CONNECTION_ITERATOR_TYPE_REGISTERED,
                                                  &iterator),
                  CONNECTION_ERROR_NONE);
        connection_profile_h found = nullptr;
        EXPECT_EQ(connection_profile_iterator_next(iterator, &found), CONNECTION_ERROR_NONE);
        EXPECT_EQ(connection_destroy_profile_iterator(iterator), CONNECTION_ERROR_NONE);
        return found;
    }

    static std::string released(char* text) {
        const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
        return text != nullptr ? text : "(null)";
    }

  private:
    connection_h m_handle = nullptr;
};

TEST_F(Connection, TellsTypeAndAddresses) {
    connection_type_e type = CONNECTION_TYPE_DISCONNECTED;
    EXPECT_EQ(connection_get_type(handle(), &type), CONNECTION_ERROR_NONE);
    EXPECT_EQ(type, CONNECTION_TYPE_ETHERNET);
    char* text = nullptr;
    EXPECT_EQ(connection_get_ip_address(handle(), CONNECTION_ADDRESS_FAMILY_IPV4, &text), 0);
    EXPECT_EQ(released(text), "192.0.2.20");
    EXPECT_EQ(connection_get_mac_address(handle(), CONNECTION_TYPE_ETHERNET, &text), 0);
    EXPECT_EQ(released(text), "02:00:00:00:00:01");
    EXPECT_NE(connection_get_mac_address(handle(), CONNECTION_TYPE_WIFI, &text), 0);
    EXPECT_NE(connection_get_mac_address(handle(), CONNECTION_TYPE_DISCONNECTED, &text), 0);
    EXPECT_NE(connection_get_ip_address(handle(), CONNECTION_ADDRESS_FAMILY_IPV6, &text), 0);
}

TEST_F(Connection, AProfileOutlivesItsIterator) {
    connection_profile_h found = profile();
    connection_profile_type_e type = CONNECTION_PROFILE_TYPE_CELLULAR;
    EXPECT_EQ(connection_profile_get_type(found, &type), CONNECTION_ERROR_NONE);
    EXPECT_EQ(type, CONNECTION_PROFILE_TYPE_ETHERNET);
    char* text = nullptr;
    const auto four = CONNECTION_ADDRESS_FAMILY_IPV4;
    EXPECT_EQ(connection_profile_get_dns_address(found, 1, four, &text), 0);
    EXPECT_EQ(released(text), "192.0.2.1");
    EXPECT_NE(connection_profile_get_dns_address(found, 2, four, &text), 0);
    EXPECT_NE(connection_profile_get_dns_address(found, 0, four, &text), 0);
    EXPECT_EQ(connection_profile_get_gateway_address(found, four, &text), 0);
    EXPECT_EQ(released(text), "192.0.2.1");
    EXPECT_EQ(connection_profile_get_subnet_mask(found, four, &text), 0);
    EXPECT_EQ(released(text), "255.255.255.0");
    connection_ip_config_type_e configuration = CONNECTION_IP_CONFIG_TYPE_NONE;
    EXPECT_EQ(connection_profile_get_ip_config_type(found, four, &configuration), 0);
    EXPECT_EQ(configuration, CONNECTION_IP_CONFIG_TYPE_STATIC);
}

TEST_F(Connection, AnIteratorEnds) {
    connection_profile_iterator_h iterator = nullptr;
    ASSERT_EQ(
        connection_get_profile_iterator(handle(), CONNECTION_ITERATOR_TYPE_CONNECTED, &iterator),
        0);
    connection_profile_h found = nullptr;
    EXPECT_TRUE(connection_profile_iterator_has_next(iterator));
    EXPECT_EQ(connection_profile_iterator_next(iterator, &found), 0);
    EXPECT_FALSE(connection_profile_iterator_has_next(iterator));
    EXPECT_EQ(connection_profile_iterator_next(iterator, &found), CONNECTION_ERROR_ITERATOR_END);
    EXPECT_EQ(connection_destroy_profile_iterator(iterator), 0);
}

TEST_F(Connection, NullHandlesAreRefused) {
    char* text = nullptr;
    connection_type_e type = CONNECTION_TYPE_DISCONNECTED;
    connection_profile_type_e profileType = CONNECTION_PROFILE_TYPE_CELLULAR;
    EXPECT_EQ(connection_create(nullptr), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_destroy(nullptr), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_get_type(nullptr, &type), CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_get_ip_address(nullptr, CONNECTION_ADDRESS_FAMILY_IPV4, &text),
              CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(connection_profile_get_type(nullptr, &profileType),
              CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(
        connection_profile_get_gateway_address(nullptr, CONNECTION_ADDRESS_FAMILY_IPV4, &text),
        CONNECTION_ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(connection_profile_iterator_has_next(nullptr));
}

TEST_F(Connection, WithoutANetworkThereIsNoProfile) {
    describe("[Network]\nType=none\n");
    connection_type_e type = CONNECTION_TYPE_ETHERNET;
    EXPECT_EQ(connection_get_type(handle(), &type), 0);
    EXPECT_EQ(type, CONNECTION_TYPE_DISCONNECTED);
    char* text = nullptr;
    EXPECT_EQ(connection_get_ip_address(handle(), CONNECTION_ADDRESS_FAMILY_IPV4, &text),
              CONNECTION_ERROR_NO_CONNECTION);
    connection_profile_iterator_h iterator = nullptr;
    ASSERT_EQ(
        connection_get_profile_iterator(handle(), CONNECTION_ITERATOR_TYPE_REGISTERED, &iterator),
        0);
    EXPECT_FALSE(connection_profile_iterator_has_next(iterator));
    connection_destroy_profile_iterator(iterator);
}

TEST_F(Connection, RuntimeInformationTellsTheSameNetwork) {
    describe("[Network]\nType=wireless\nAddress=192.0.2.30\n");
    char* text = nullptr;
    EXPECT_EQ(runtime_info_get_value_string(RUNTIME_INFO_KEY_NETWORK_TYPE, &text), 0);
    EXPECT_EQ(released(text), "wireless");
    EXPECT_EQ(runtime_info_get_value_string(RUNTIME_INFO_KEY_WIRELESS_IP, &text), 0);
    EXPECT_EQ(released(text), "192.0.2.30");
    EXPECT_EQ(runtime_info_get_value_string(RUNTIME_INFO_KEY_WIRED_IP, &text), 0);
    EXPECT_EQ(released(text), "");
}

}  // namespace platform_test
