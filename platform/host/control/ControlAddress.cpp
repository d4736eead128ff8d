// SPDX-License-Identifier: Apache-2.0
// Opens the control socket as server or client.
#include "host/control/ControlAddress.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace host {

namespace {

constexpr const char* NAME = "control.sock";
constexpr int BACKLOG = 8;

using Operation = int (*)(int, const sockaddr*, socklen_t);

int socketWith(Operation operation, const std::string& folder) {
    const int directory = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) {
        return -1;
    }
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", directory,
                  NAME);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool done =
        descriptor >= 0 &&
        operation(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    const int reason = errno;
    close(directory);
    if (!done && descriptor >= 0) {
        close(descriptor);
    }
    errno = reason;
    return done ? descriptor : -1;
}

}  // namespace

int connectToControlSocket(const std::string& folder) {
    return socketWith(&connect, folder);
}

int listenAtControlSocket(const std::string& folder) {
    const int other = connectToControlSocket(folder);
    if (other >= 0) {
        close(other);
        errno = EADDRINUSE;  // a set that runs in this folder answers there
        return -1;
    }
    removeControlSocket(folder);  // left behind by a set that has crashed
    const int descriptor = socketWith(&bind, folder);
    if (descriptor >= 0 && listen(descriptor, BACKLOG) < 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

void removeControlSocket(const std::string& folder) {
    unlink((folder + "/" + NAME).c_str());
}

}  // namespace host
