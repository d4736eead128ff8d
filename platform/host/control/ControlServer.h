// SPDX-License-Identifier: Apache-2.0
// Answers control programs that talk to the running set.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <glib.h>

#include "host/control/ControlUsage.h"

namespace host {

// Serves the socket in the set's folder from GLib's default main context. A request is one line of
// words, each escaped as a C string and separated by tabs; the reply is the status, a space and the
// escaped text.
class ControlServer {
  public:
    // An exception of HANDLER leaves the iteration of the main context.
    using Handler = std::function<ControlReply(const std::vector<std::string>& words)>;

    explicit ControlServer(Handler handler);
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

  private:
    struct Client {
        ControlServer* server;
        int descriptor;
        guint source;
        std::string received;
    };

    static gboolean onConnect(gint descriptor, GIOCondition condition, gpointer self);
    static gboolean onData(gint descriptor, GIOCondition condition, gpointer client);
    bool receive(Client* client);
    void answer(int descriptor, const std::string& line);
    void drop(int descriptor);

    Handler m_handler;
    std::string m_folder;
    int m_listener;
    guint m_source = 0;
    std::map<int, Client> m_clients;  // by descriptor
};

}  // namespace host
