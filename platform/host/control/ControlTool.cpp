// SPDX-License-Identifier: Apache-2.0
// The control program: sends one request to a running set, or answers it from a description file.
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

#include "host/base/SetFolder.h"
#include "host/control/ControlAddress.h"
#include "host/control/ControlUsage.h"
#include "host/control/ControlWords.h"
#include "host/control/DescriptionVerbs.h"

namespace {

using host::CONTROL_FAILED;
using host::CONTROL_USAGE_ERROR;

int complain(int status, const std::string& text) {
    std::fprintf(stderr, "virtual-set-control: %s\n", text.c_str());
    return status;
}

void printUsage() {
    std::printf(
        "usage: virtual-set-control [--set DIR] VERB [ARGUMENT...]\n"
        "       virtual-set-control --description FILE describe | get GROUP KEY |"
        " set GROUP KEY VALUE\n"
        "Talks to the set that runs in DIR (VIRTUAL_SET_DIR, or the working directory), or reads\n"
        "and changes the description FILE without a running set.\n"
        "Verbs:\n%s"
        "Exit status: 0 done, 1 failed or no set runs there, 2 usage error.\n",
        host::controlHelp().c_str());
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

int report(const host::ControlReply& reply) {
    if (reply.status != host::CONTROL_DONE) {
        return complain(reply.status, reply.text);
    }
    if (!reply.text.empty()) {
        std::printf("%s%s", reply.text.c_str(), reply.text.back() == '\n' ? "" : "\n");
    }
    return host::CONTROL_DONE;
}

int reportLine(const std::string& line) {
    if (line.size() < 2) {
        return complain(CONTROL_FAILED, "the set ended before it answered");
    }
    return report({line.front() - '0', host::unescapeWord(line.substr(2))});
}

int askFile(const std::string& path, const std::vector<std::string>& words) {
    std::vector<std::string> remarks;
    const host::ControlReply reply = host::runVerbOnFile(path, words, &remarks);
    for (const std::string& remark : remarks) {
        complain(reply.status, remark);
    }
    return report(reply);
}

int askSet(const std::string& folder, const std::vector<std::string>& words) {
    const int descriptor = host::connectToControlSocket(folder);
    if (descriptor < 0) {
        return complain(CONTROL_FAILED, "no set runs in " + folder + ": " + std::strerror(errno));
    }
    const bool sent = sendAll(descriptor, host::joinWords(words) + "\n");
    const std::string answer = sent ? receiveLine(descriptor) : "";
    close(descriptor);
    return reportLine(answer);
}

struct Choice {
    std::string folder = host::SetFolder::path();
    std::string description;  // empty: ask the running set
};

// Removes the options from the front of WORDS. Returns the error, or an empty text.
std::string takeOptions(std::vector<std::string>* words, Choice* choice) {
    while (!words->empty() && words->front().compare(0, 1, "-") == 0) {
        const std::string option = words->front();
        if (option != "--set" && option != "--description") {
            return "unknown option " + option;
        }
        if (words->size() < 2 || (*words)[1].empty()) {
            return option + (option == "--set" ? " takes a folder" : " takes a file");
        }
        (option == "--set" ? choice->folder : choice->description) = (*words)[1];
        words->erase(words->begin(), words->begin() + 2);
    }
    return "";
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && (words.front() == "--help" || words.front() == "-h")) {
        printUsage();
        return host::CONTROL_DONE;
    }
    Choice choice;
    std::string error = takeOptions(&words, &choice);
    if (error.empty() && words.empty()) {
        error = "a verb is missing; --help prints the verbs";
    }
    if (error.empty()) {
        error = host::usageError(words);
    }
    if (!error.empty()) {
        return complain(CONTROL_USAGE_ERROR, error);
    }
    return choice.description.empty() ? askSet(choice.folder, words)
                                      : askFile(choice.description, words);
}
