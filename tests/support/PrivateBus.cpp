// SPDX-License-Identifier: Apache-2.0
// A private system bus for a test, and the stand-in daemon on it.
#include "support/PrivateBus.h"

#include <algorithm>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace support {
namespace {

constexpr const char* BUS_NAME = "org.tizen.GDBus.ZoltContent";
constexpr const char* START_LINE = "start org.tizen.GDBus.ZoltContent";

std::string busConfiguration(const std::string& folder) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=)" +
           folder + R"(/socket</listen>
  <servicedir>)" +
           folder + R"(/services</servicedir>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace

PrivateBus::PrivateBus(const std::map<std::string, std::string>& activated) {
    const std::string configuration = m_folder.write("bus.conf", busConfiguration(m_folder.path()));
    m_folder.write("services/.keep", "");
    for (const auto& [name, command] : activated) {
        std::ostringstream file;
        file << "[D-BUS Service]\nName=" << name << "\nExec=" << command << '\n';
        m_folder.write("services/" + name + ".service", file.str());
    }
    // Ends the bus if the test crashes.
    m_program = std::make_unique<Program>(std::vector<std::string>{
        "setpriv", "--pdeathsig", "TERM", "dbus-daemon", "--config-file=" + configuration,
        "--nofork", "--print-address=1"});
    const bool up = waitUntil([this] {
        return m_program->output().find('\n') != std::string::npos || !m_program->running();
    });
    const std::vector<std::string> lines = linesOf(m_program->output());
    if (!up || lines.empty()) {
        throw std::runtime_error("the bus does not come up: " + m_program->errors());
    }
    m_address = lines.front();
    m_environment = std::make_unique<ScopedEnvironment>("DBUS_SYSTEM_BUS_ADDRESS", m_address);
}

PrivateBus::~PrivateBus() {
    stop();
}

void PrivateBus::stop() {
    m_program->stop();
}

StandInDaemon::StandInDaemon(const std::string& scenario) {
    m_folder.write(
        "config.xml",
        "<config><item name=\"ShopRegistrationFilePath\">data/registered</item></config>");
    if (!scenario.empty()) {
        setScenario(scenario);
    }
}

void StandInDaemon::setScenario(const std::string& scenario) const {
    m_folder.write("scenario.ini", scenario);
}

void StandInDaemon::start() {
    const int before = count(START_LINE);
    m_program = std::make_unique<Program>(std::vector<std::string>{
        "setpriv", "--pdeathsig", "TERM", ZOLT_DAEMON_PROGRAM, "--set", m_folder.path()});
    waitUntil([&] { return count(START_LINE) > before || !m_program->running(); });
    if (count(START_LINE) == before) {
        throw std::runtime_error("the daemon does not come up: " + m_program->errors());
    }
}

int StandInDaemon::stop() {
    m_program->stop();
    return m_program->status();
}

void StandInDaemon::kill() {
    m_program->signal(SIGKILL);
    m_program->wait();
}

const char* StandInDaemon::busName() {
    return BUS_NAME;
}

std::string StandInDaemon::command() const {
    return std::string(ZOLT_DAEMON_PROGRAM) + " --set " + m_folder.path();
}

std::vector<std::string> StandInDaemon::journal() const {
    const std::string path = m_folder.file("daemon.log");
    if (!fileExists(path)) {
        return {};
    }
    std::vector<std::string> lines = linesOf(readFile(path));
    for (std::string& line : lines) {
        line.erase(0, line.find(' ') + 1);
    }
    return lines;
}

int StandInDaemon::count(const std::string& line) const {
    const std::vector<std::string> lines = journal();
    return static_cast<int>(std::count(lines.begin(), lines.end(), line));
}

bool StandInDaemon::waitFor(const std::string& line, int count,
                            const std::function<void()>& turn) const {
    return waitUntil([&] { return this->count(line) >= count; }, DEADLINE, turn);
}

}  // namespace support
