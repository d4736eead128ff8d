// SPDX-License-Identifier: Apache-2.0
// The network of the set: the machine's own, or the one that the description makes up.
#pragma once

#include <string>
#include <vector>

namespace host {

struct NetworkInterface {
    std::string name;
    bool wireless = false;
    bool isHardware = true;  // a device of its own, not made up by the kernel
    bool isDefault = false;  // the way to the rest of the world leads over it
    bool isDynamic = true;   // its address has a lease
    std::string address;     // IPv4, empty when it has none
    std::string mask;
    std::string address6;
    std::string gateway;
    std::string mac;
};

// Where the system tells about its interfaces; a test gives files of its own.
struct NetworkSources {
    std::string devices = "/sys/class/net";
    std::string routes = "/proc/net/route";
    std::string resolver = "/etc/resolv.conf";
};

struct Network {
    // The interface in use first. Loopback and bridges are no part of it.
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
