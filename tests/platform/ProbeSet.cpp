// SPDX-License-Identifier: Apache-2.0
// Starts the probe application and reads what it says.
#include "ProbeSet.h"

#include <iostream>
#include <sstream>

namespace platform_test {

namespace {

int occurrences(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

}  // namespace

std::unique_ptr<support::Program> startProgram(const std::vector<std::string>& command,
                                               const Environment& environment) {
    std::vector<std::string> words = {"setpriv", "--pdeathsig", "KILL"};
    words.insert(words.end(), command.begin(), command.end());
    return std::make_unique<support::Program>(words, support::ProgramOptions{"", environment, ""});
}

void ProbeSet::TearDown() {
    if (HasFailure()) {
        std::cerr << log() << contentsOf(file("stderr.log"));
    }
}

void ProbeSet::start(const std::vector<std::string>& options, const Environment& more) {
    Environment environment = more;
    environment.insert({{"VIRTUAL_SET_DIR", folder()},
                        {"HOME", folder()},
                        {"XDG_RUNTIME_DIR", folder()},
                        {"EINA_LOG_LEVEL", "1"},
                        {"EINA_LOG_BACKTRACE", "-1"},
                        {"ELM_ENGINE", "buffer"},
                        {"ELM_DISPLAY", "buffer"},
                        {"CANBERRA_DRIVER", "null"}});
    std::vector<std::string> command = {PLATFORM_PROBE};
    command.insert(command.end(), options.begin(), options.end());
    m_probe = startProgram(command, environment);
}

bool ProbeSet::logHas(const std::string& text, int count) const {
    return waitFor([&] { return occurrences(log(), text) >= count; });
}

std::vector<std::string> ProbeSet::said() const {
    static const std::string TAG = " PROBE: ";
    std::vector<std::string> lines;
    std::istringstream stream(log());
    std::string line;
    while (std::getline(stream, line)) {
        const auto at = line.find(TAG);
        if (at != std::string::npos) {
            lines.push_back(line.substr(at + TAG.size()));
        }
    }
    return lines;
}

support::ProgramResult ProbeSet::control(const std::vector<std::string>& words) const {
    std::vector<std::string> command = {CONTROL_PROGRAM, "--set", folder()};
    command.insert(command.end(), words.begin(), words.end());
    return support::runProgram(command);
}

int ProbeSet::probeStatus() {
    waitFor([this] { return !m_probe->running(); });
    return m_probe->status();
}

int ProbeSet::quit() {
    control({"quit"});
    return probeStatus();
}

}  // namespace platform_test
