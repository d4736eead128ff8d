// SPDX-License-Identifier: Apache-2.0
// Compares watched values when the set's files or the network change.
#include "host/notices/ChangeWatch.h"

#include <array>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

#include <glib-unix.h>
#include <glib.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"
#include "host/description/Description.h"

namespace host {

namespace {

namespace fs = std::filesystem;

struct Watched {
    std::function<std::string()> read;
    std::function<void()> notify;
    std::string last;
};

// Never destroyed: notices may come until the process ends.
struct Board {
    std::mutex guard;  // guards the members below
    unsigned lastId = 0;
    std::map<unsigned, Watched> watched;
    std::set<std::string> folders;  // already watched
    int inotify = -1;
    bool network = false;
};

Board& board() {
    static auto* only = new Board;
    return *only;
}

void drain(int descriptor) {
    alignas(inotify_event) std::array<char, 8192> room{};
    while (::read(descriptor, room.data(), room.size()) > 0) {
    }
}

void watchFolder(Board* state, const std::string& folder) {
    if (!state->folders.insert(folder).second) {
        return;
    }
    // Watches the folder, not the file: a file that is replaced by a rename is another file. Links
    // are created, never written.
    constexpr unsigned mask = IN_CREATE | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
    if (inotify_add_watch(state->inotify, folder.c_str(), mask) < 0) {
        logWarning("Changes of files in " + folder + " will not be noticed while the set runs");
    }
}

// FILE may be a link, also to a link: each link can be replaced and the target can be written.
void watchFile(Board* state, fs::path file) {
    constexpr int mostLinks = 40;  // the kernel's own limit
    std::error_code noLink;
    for (int links = 0; links <= mostLinks && !noLink; ++links) {
        watchFolder(state, file.parent_path().string());
        // Not normalized: the folder may itself be reached over a link, so only the kernel can
        // resolve "..".
        file = file.parent_path() / fs::read_symlink(file, noLink);
    }
}

void followLinks(Board* state) {
    if (state->inotify >= 0) {
        watchFile(state, SetFolder::description());
        watchFile(state, SetFolder::keptValues());
    }
}

gboolean changed(gint descriptor, GIOCondition, gpointer) {
    drain(descriptor);
    {
        // A link may have another target now.
        const std::lock_guard<std::mutex> lock(board().guard);
        followLinks(&board());
    }
    Description::reload();
    ChangeWatch::look();
    return G_SOURCE_CONTINUE;
}

void watchFiles(Board* state) {
    if (state->inotify < 0) {
        state->inotify = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (state->inotify < 0) {
            return;
        }
        g_unix_fd_add(state->inotify, G_IO_IN, changed, nullptr);
    }
    followLinks(state);
}

void watchNetwork(Board* state) {
    if (std::exchange(state->network, true)) {
        return;
    }
    const int descriptor =
        socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE;
    if (descriptor < 0 ||
        bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) < 0) {
        if (descriptor >= 0) {
            close(descriptor);
        }
        return;  // without netlink, as in a sandbox, the network does not change
    }
    g_unix_fd_add(descriptor, G_IO_IN, changed, nullptr);
}

// The NOTIFY of ID when its value has changed, otherwise an empty function.
std::function<void()> noticeOf(unsigned id) {
    Board& state = board();
    std::function<std::string()> read;
    {
        const std::lock_guard<std::mutex> lock(state.guard);
        const auto found = state.watched.find(id);
        if (found == state.watched.end()) {
            return nullptr;  // an earlier notice has removed it
        }
        read = found->second.read;
    }
    std::string now = read();
    const std::lock_guard<std::mutex> lock(state.guard);
    const auto found = state.watched.find(id);
    if (found == state.watched.end() || found->second.last == now) {
        return nullptr;
    }
    found->second.last = std::move(now);
    return found->second.notify;
}

}  // namespace

unsigned ChangeWatch::add(std::function<std::string()> read, std::function<void()> notify) {
    std::string now = read();
    Board& state = board();
    const std::lock_guard<std::mutex> lock(state.guard);
    watchFiles(&state);
    watchNetwork(&state);
    state.watched[++state.lastId] = {std::move(read), std::move(notify), std::move(now)};
    return state.lastId;
}

void ChangeWatch::remove(unsigned id) {
    Board& state = board();
    const std::lock_guard<std::mutex> lock(state.guard);
    state.watched.erase(id);
}

void ChangeWatch::look() {
    std::vector<unsigned> ids;
    {
        const std::lock_guard<std::mutex> lock(board().guard);
        for (const auto& entry : board().watched) {
            ids.push_back(entry.first);
        }
    }
    for (const unsigned id : ids) {
        if (const auto notify = noticeOf(id)) {
            notify();
        }
    }
}

}  // namespace host
