// SPDX-License-Identifier: Apache-2.0
// One datagram to the log service for each line.
#include "host/base/SystemJournal.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include "host/base/SetFolder.h"

namespace host {

namespace {

// "<14>Nov 20 18:34:05 zolt[1234]: TEXT", the format of syslog().
std::string datagram(int level, const std::string& text) {
    const std::time_t now = std::time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    // English in every locale.
    static constexpr std::array<const char*, 12> MONTHS = {
        "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::array<char, 32> when{};
    std::strftime(when.data(), when.size(), "%e %H:%M:%S", &local);
    return "<" + std::to_string(LOG_USER | level) + ">" +
           MONTHS[static_cast<std::size_t>(local.tm_mon)] + " " + when.data() + " " +
           program_invocation_short_name + "[" + std::to_string(getpid()) + "]: " + text;
}

}  // namespace

int SystemJournal::write(int level, const std::string& text) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = SetFolder::variable("VIRTUAL_SET_JOURNAL", "/dev/log");
    if (path.size() >= sizeof address.sun_path) {
        return -ENAMETOOLONG;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size());
    // A socket for each line: the service may be restarted at any time.
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        return -errno;
    }
    const std::string line = datagram(level, text);
    ssize_t sent = -1;
    do {
        sent = sendto(descriptor, line.data(), line.size(), MSG_NOSIGNAL,
                      reinterpret_cast<const sockaddr*>(&address), sizeof address);
    } while (sent < 0 && errno == EINTR);
    const int reason = errno;
    close(descriptor);
    return sent < 0 ? -reason : 0;
}

}  // namespace host
