// SPDX-License-Identifier: Apache-2.0
// The network of the set: the machine's own, or a made-up one from the description.
#pragma once

#include <string>
#include <vector>

namespace host {

struct NetworkInterface {
    std::string name;
    bool wireless = false;
    bool isHardware = true;  // not a virtual device of the kernel
    bool isDefault = false;  // has the default route
    bool isDynamic = true;   // its address has a lease
    std::string address;     // IPv4, empty when it has none
    std::string mask;
    std::string address6;
    std::string gateway;
    std::string mac;
};

// The system's files about its interfaces; a test uses its own files.
struct NetworkSources {
    std::string devices = "/sys/class/net";
    std::string routes = "/proc/net/route";
    std::string resolver = "/etc/resolv.conf";
};

struct Network {
    // The interface in use first. Without loopback and bridges.
    std::vector<NetworkInterface> interfaces;
    std::vector<std::string> nameServers;

    // "wired", "wireless" or "disconnected".
    std::string typeName() const;

    // The interface in use, or null.
    const NetworkInterface* used() const;

    // As the description says. Any thread.
    static Network current();

    // The machine's.
    static Network machine(const NetworkSources& sources);
};

}  // namespace host
