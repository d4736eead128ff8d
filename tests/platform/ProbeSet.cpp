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

void ProbeSet::TearDown() {
    if (HasFailure()) {
        std::cerr << log() << contentsOf(file("stderr.log"));
    }
}

void ProbeSet::start(const std::vector<std::string>& wishes, const Environment& more) {
    Environment environment = {{"VIRTUAL_SET_DIR", folder()}, {"HOME", folder()},
                               {"XDG_RUNTIME_DIR", folder()}, {"EINA_LOG_LEVEL", "1"},
                               {"EINA_LOG_BACKTRACE", "-1"},  {"ELM_ENGINE", "buffer"},
                               {"ELM_DISPLAY", "buffer"},     {"CANBERRA_DRIVER", "null"}};
    environment.insert(environment.end(), more.begin(), more.end());
    m_probe = std::make_unique<Child>(PLATFORM_PROBE, wishes, environment, file("probe.out"));
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

Outcome ProbeSet::control(const std::vector<std::string>& words) const {
    std::vector<std::string> arguments = {"--set", folder()};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return runToEnd(CONTROL_PROGRAM, arguments, {}, file("control.out"));
}

int ProbeSet::quit() {
    control({"quit"});
    return m_probe->wait();
}

}  // namespace platform_test
