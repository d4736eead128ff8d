// SPDX-License-Identifier: Apache-2.0
// The control program: carries one request to a running set and its answer back.
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include "host/ControlAddress.h"
#include "host/ControlVerbs.h"
#include "host/ControlWords.h"
#include "host/SetFolder.h"

namespace {

constexpr int kFailed = 1;
constexpr int kWronglyAsked = 2;

int complain(int status, const std::string& text) {
    std::fprintf(stderr, "virtual-set-control: %s\n", text.c_str());
    return status;
}

void printUsage() {
    std::printf(
        "usage: virtual-set-control [--set DIR] VERB [ARGUMENT...]\n"
        "Talks to the set that runs in DIR (VIRTUAL_SET_DIR, or the working directory).\n"
        "Verbs:\n%s"
        "Exit status: 0 done, 1 failed or no set runs there, 2 wrongly asked.\n",
        Host::controlHelp().c_str());
}

bool sendAll(int descriptor, const std::string& text) {
    std::size_t sent = 0;
    while (sent < text.size()) {
        const ssize_t count =
            send(descriptor, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

std::string receiveLine(int descriptor) {
    std::string line;
    std::array<char, 4096> room{};
    while (line.find('\n') == std::string::npos) {
        const ssize_t count = recv(descriptor, room.data(), room.size(), 0);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return "";
        }
        line.append(room.data(), static_cast<std::size_t>(count));
    }
    return line.substr(0, line.find('\n'));
}

int report(const std::string& line) {
    if (line.size() < 2) {
        return complain(kFailed, "the set ended before it answered");
    }
    const int status = line.front() - '0';
    const std::string text = Host::unescapeWord(line.substr(2));
    if (status != 0) {
        return complain(status, text);
    }
    if (!text.empty()) {
        std::printf("%s%s", text.c_str(), text.back() == '\n' ? "" : "\n");
    }
    return 0;
}

int ask(const std::string& folder, const std::vector<std::string>& words) {
    const int descriptor = Host::connectToControlSocket(folder);
    if (descriptor < 0) {
        return complain(kFailed, "no set runs in " + folder + ": " + std::strerror(errno));
    }
    const bool sent = sendAll(descriptor, Host::joinWords(words) + "\n");
    const std::string answer = sent ? receiveLine(descriptor) : "";
    close(descriptor);
    return report(answer);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    std::string folder = Host::SetFolder::path();
    if (!words.empty() && (words.front() == "--help" || words.front() == "-h")) {
        printUsage();
        return 0;
    }
    if (!words.empty() && words.front() == "--set") {
        if (words.size() < 2) {
            return complain(kWronglyAsked, "--set takes a folder");
        }
        folder = words[1];
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words.empty()) {
        return complain(kWronglyAsked, "a verb is missing; --help tells them");
    }
    if (words.front().compare(0, 1, "-") == 0) {
        return complain(kWronglyAsked, "there is no option " + words.front());
    }
    return ask(folder, words);
}
