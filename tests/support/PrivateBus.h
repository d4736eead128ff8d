// SPDX-License-Identifier: Apache-2.0
// A private system bus for a test, and the stand-in daemon on it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace support {

// A dbus-daemon with a configuration, an address and a folder of its own. While it exists,
// DBUS_SYSTEM_BUS_ADDRESS contains its address, so G_BUS_TYPE_SYSTEM is this bus in this process
// and in those that it starts. It ends with this object, or with the thread that made it.
class PrivateBus {
  public:
    // ACTIVATED maps names to the command lines with which the bus starts their owners. Throws
    // std::runtime_error when the bus does not come up.
    explicit PrivateBus(const std::map<std::string, std::string>& activated = {});
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    const std::string& address() const { return m_address; }
    pid_t pid() const { return m_program->pid(); }
    // Ends the bus; every connection to it breaks.
    void stop();

  private:
    TemporaryFolder m_folder;
    std::unique_ptr<Program> m_program;
    std::string m_address;
    std::unique_ptr<ScopedEnvironment> m_environment;
};

// The folder of a set and its stand-in daemon.
class StandInDaemon {
  public:
    // Makes the folder with a configuration and, if SCENARIO is not empty, a scenario of that
    // content. Starts nothing yet.
    explicit StandInDaemon(const std::string& scenario = "");

    // Starts the daemon on the bus of the environment and waits until it owns its name. Throws
    // std::runtime_error when it does not come up.
    void start();
    // Terminates it and waits for the end. Returns its exit status.
    int stop();
    // Kills it.
    void kill();
    Program& program() { return *m_program; }

    // The service with which a bus starts it.
    static const char* busName();
    std::string command() const;

    void setScenario(const std::string& scenario) const;
    const TemporaryFolder& folder() const { return m_folder; }
    // The lines of its log without their times.
    std::vector<std::string> journal() const;
    int count(const std::string& line) const;
    // Waits for COUNT such lines. TURN, if given, runs meanwhile.
    bool waitFor(const std::string& line, int count = 1,
                 const std::function<void()>& turn = nullptr) const;

  private:
    TemporaryFolder m_folder;
    std::unique_ptr<Program> m_program;
};

}  // namespace support
