// SPDX-License-Identifier: Apache-2.0
// The server's side of the control socket.
#include "host/control/ControlServer.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

#include <glib-unix.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"
#include "host/control/ControlAddress.h"
#include "host/control/ControlWords.h"

namespace host {

namespace {

// More than any request. A client that sends more is disconnected.
constexpr std::size_t MOST_BYTES = 65536;

}  // namespace

ControlServer::ControlServer(Handler handler)
    : m_handler(std::move(handler)),
      m_folder(SetFolder::path()),
      m_listener(listenAtControlSocket(m_folder)) {
    if (m_listener < 0) {
        logWarning("The control socket cannot be opened: " + std::string(std::strerror(errno)));
        return;
    }
    m_source = g_unix_fd_add(m_listener, G_IO_IN, onConnect, this);
}

ControlServer::~ControlServer() {
    while (!m_clients.empty()) {
        const auto client = m_clients.begin();
        g_source_remove(client->second.source);
        close(client->first);
        m_clients.erase(client);
    }
    if (m_listener >= 0) {
        g_source_remove(m_source);
        removeControlSocket(m_folder);
        close(m_listener);
    }
}

gboolean ControlServer::onConnect(gint descriptor, GIOCondition, gpointer self) {
    auto* server = static_cast<ControlServer*>(self);
    const int accepted = accept4(descriptor, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (accepted >= 0) {
        Client& client = server->m_clients[accepted];
        client = {server, accepted, 0, ""};
        client.source = g_unix_fd_add(
            accepted, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR), onData, &client);
    }
    return G_SOURCE_CONTINUE;
}

gboolean ControlServer::onData(gint descriptor, GIOCondition, gpointer data) {
    auto* client = static_cast<Client*>(data);
    ControlServer* server = client->server;
    if (server->receive(client)) {
        return G_SOURCE_CONTINUE;
    }
    server->drop(descriptor);
    return G_SOURCE_REMOVE;
}

// Returns false when the client is finished.
bool ControlServer::receive(Client* client) {
    std::array<char, 4096> room{};
    const ssize_t count = recv(client->descriptor, room.data(), room.size(), 0);
    if (count < 0) {
        return errno == EAGAIN || errno == EINTR;
    }
    client->received.append(room.data(), static_cast<std::size_t>(count));
    const std::size_t end = client->received.find('\n');
    if (end == std::string::npos) {
        return count > 0 && client->received.size() < MOST_BYTES;
    }
    answer(client->descriptor, client->received.substr(0, end));
    return false;
}

void ControlServer::answer(int descriptor, const std::string& line) {
    const ControlReply reply = m_handler(splitWords(line));
    const std::string text = std::to_string(reply.status) + " " + escapeWord(reply.text) + "\n";
    // MSG_NOSIGNAL: a client that has disconnected must not end the process.
    if (send(descriptor, text.data(), text.size(), MSG_NOSIGNAL) < 0) {
        logWarning("A control program disconnected before its reply");
    }
}

void ControlServer::drop(int descriptor) {
    m_clients.erase(descriptor);
    close(descriptor);
}

}  // namespace host
