// SPDX-License-Identifier: Apache-2.0
// Reads the machine's interfaces, routes and name servers.
#include "host/description/Network.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <system_error>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "host/description/Description.h"

namespace host {

namespace {

namespace fs = std::filesystem;

std::string firstLine(const fs::path& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

std::string printed(const sockaddr* address) {
    if (address == nullptr) {
        return "";
    }
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void* raw = nullptr;
    if (address->sa_family == AF_INET) {
        raw = &reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
    } else if (address->sa_family == AF_INET6) {
        raw = &reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
    }
    if (raw == nullptr || inet_ntop(address->sa_family, raw, text.data(), text.size()) == nullptr) {
        return "";
    }
    return text.data();
}

// True for wired and wireless devices. A bridge only joins other devices.
bool isEthernet(const fs::path& device) {
    constexpr const char* ethernet = "1";
    std::error_code failure;
    return firstLine(device / "type") == ethernet && !fs::exists(device / "bridge", failure);
}

std::vector<NetworkInterface> devices(const std::string& folder) {
    std::vector<NetworkInterface> found;
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(folder, failure)) {
        const fs::path& device = entry.path();
        if (isEthernet(device)) {
            NetworkInterface made;
            made.name = device.filename().string();
            made.wireless = fs::exists(device / "wireless", failure);
            made.mac = firstLine(device / "address");
            made.isHardware = fs::exists(device / "device", failure);
            found.push_back(made);
        }
    }
    return found;
}

void take(const ifaddrs& entry, NetworkInterface* device) {
    if ((entry.ifa_flags & IFF_UP) == 0 || entry.ifa_addr == nullptr) {
        return;
    }
    if (entry.ifa_addr->sa_family == AF_INET && device->address.empty()) {
        device->address = printed(entry.ifa_addr);
        device->mask = printed(entry.ifa_netmask);
    }
    if (entry.ifa_addr->sa_family == AF_INET6 && device->address6.empty()) {
        device->address6 = printed(entry.ifa_addr);
    }
}

void addAddresses(std::vector<NetworkInterface>* found) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        return;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, &freeifaddrs);
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        for (NetworkInterface& device : *found) {
            if (device.name == entry->ifa_name) {
                take(*entry, &device);
            }
        }
    }
}

// The kernel writes an address in the table of routes as a hexadecimal number in the machine's byte
// order.
std::string addressFromHex(const std::string& text) {
    in_addr raw{};
    std::istringstream stream(text);
    stream >> std::hex >> raw.s_addr;
    std::array<char, INET_ADDRSTRLEN> shown{};
    return stream && inet_ntop(AF_INET, &raw, shown.data(), shown.size()) != nullptr ? shown.data()
                                                                                     : "";
}

void addRoutes(const std::string& path, std::vector<NetworkInterface>* found) {
    std::ifstream file(path);
    std::string line;
    long best = -1;
    std::getline(file, line);  // names of the columns
    while (std::getline(file, line)) {
        std::istringstream columns(line);
        std::string name;
        std::string destination;
        std::string gateway;
        std::string flags;
        long count = 0;
        long use = 0;
        long metric = 0;
        columns >> name >> destination >> gateway >> flags >> count >> use >> metric;
        if (!columns || destination != "00000000") {
            continue;
        }
        for (NetworkInterface& device : *found) {
            if (device.name == name && device.gateway.empty()) {
                device.gateway = addressFromHex(gateway);
            }
        }
        if (best < 0 || metric < best) {
            best = metric;
            for (NetworkInterface& device : *found) {
                device.isDefault = device.name == name;
            }
        }
    }
}

// Virtual devices without an address are not connections.
void dropIdle(std::vector<NetworkInterface>* found) {
    found->erase(std::remove_if(found->begin(), found->end(),
                                [](const NetworkInterface& device) {
                                    return !device.isHardware && !device.isDefault &&
                                           device.address.empty();
                                }),
                 found->end());
}

std::vector<std::string> nameServersIn(const std::string& path) {
    std::vector<std::string> servers;
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string word;
        std::string server;
        if (words >> word >> server && word == "nameserver") {
            servers.push_back(server);
        }
    }
    return servers;
}

// DATA is not const because the kernel's macros do not accept const memory.
void readAddressMessages(char* data, std::size_t length, std::set<std::string>* permanent,
                         bool* done) {
    auto left = static_cast<unsigned>(length);
    for (auto* head = reinterpret_cast<nlmsghdr*>(data); NLMSG_OK(head, left);
         head = NLMSG_NEXT(head, left)) {
        if (head->nlmsg_type == NLMSG_DONE || head->nlmsg_type == NLMSG_ERROR) {
            *done = true;
            return;
        }
        if (head->nlmsg_type != RTM_NEWADDR) {
            continue;
        }
        const auto* message = reinterpret_cast<const ifaddrmsg*>(NLMSG_DATA(head));
        std::array<char, IF_NAMESIZE> name{};
        if ((message->ifa_flags & IFA_F_PERMANENT) != 0 &&
            if_indextoname(message->ifa_index, name.data()) != nullptr) {
            permanent->insert(name.data());
        }
    }
}

// Names of the interfaces whose IPv4 address never expires: it is static and has no lease.
std::set<std::string> withPermanentAddress() {
    std::set<std::string> permanent;
    const int descriptor = socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE);
    if (descriptor < 0) {
        return permanent;
    }
    struct {
        nlmsghdr head;
        ifaddrmsg message;
    } request{};
    request.head.nlmsg_len = NLMSG_LENGTH(sizeof request.message);
    request.head.nlmsg_type = RTM_GETADDR;
    request.head.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    request.message.ifa_family = AF_INET;
    const timeval patience{1, 0};
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    bool done = send(descriptor, &request, request.head.nlmsg_len, 0) < 0;
    alignas(nlmsghdr) std::array<char, 16384> room{};
    while (!done) {
        const ssize_t length = recv(descriptor, room.data(), room.size(), 0);
        if (length <= 0) {
            break;
        }
        readAddressMessages(room.data(), static_cast<std::size_t>(length), &permanent, &done);
    }
    close(descriptor);
    return permanent;
}

bool comesFirst(const NetworkInterface& one, const NetworkInterface& other) {
    if (one.isDefault != other.isDefault) {
        return one.isDefault;
    }
    if (one.address.empty() != other.address.empty()) {
        return !one.address.empty();
    }
    return one.name < other.name;
}

Network described(const std::string& type) {
    Network network;
    if (type == "none") {
        return network;
    }
    NetworkInterface only;
    only.wireless = type == "wireless";
    only.name = only.wireless ? "wlan0" : "eth0";
    only.isDefault = true;
    only.isDynamic = Description::text(Field::NETWORK_CONFIGURATION) == "dynamic";
    only.address = Description::text(Field::NETWORK_ADDRESS);
    only.mask = Description::text(Field::NETWORK_MASK);
    only.gateway = Description::text(Field::NETWORK_GATEWAY);
    only.mac = Description::text(Field::NETWORK_MAC);
    network.interfaces.push_back(only);
    network.nameServers = Description::list(Field::NETWORK_NAME_SERVERS);
    return network;
}

}  // namespace

Network Network::machine(const NetworkSources& sources) {
    Network network;
    network.interfaces = devices(sources.devices);
    addAddresses(&network.interfaces);
    addRoutes(sources.routes, &network.interfaces);
    dropIdle(&network.interfaces);
    const std::set<std::string> permanent = withPermanentAddress();
    for (NetworkInterface& device : network.interfaces) {
        device.isDynamic = permanent.count(device.name) == 0;
    }
    std::sort(network.interfaces.begin(), network.interfaces.end(), comesFirst);
    network.nameServers = nameServersIn(sources.resolver);
    return network;
}

Network Network::current() {
    const std::string type = Description::text(Field::NETWORK_TYPE);
    return type == "auto" ? machine({}) : described(type);
}

const NetworkInterface* Network::used() const {
    return interfaces.empty() || interfaces.front().address.empty() ? nullptr : &interfaces.front();
}

std::string Network::typeName() const {
    if (used() == nullptr) {
        return "disconnected";
    }
    return used()->wireless ? "wireless" : "wired";
}

}  // namespace host
