// SPDX-License-Identifier: Apache-2.0
// A system bus of a test's own, and the stand-in daemon on it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace support {

// A dbus-daemon with a configuration, an address and a folder of its own. For as long as it lives,
// DBUS_SYSTEM_BUS_ADDRESS names it, so that G_BUS_TYPE_SYSTEM leads to it in this process and in
// those started from here. It ends with this object, and at the latest with the thread that made
// it.
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

// The folder of one set and the stand-in daemon that plays for it.
class StandInDaemon {
  public:
    // Makes the folder with a configuration and, if SCENARIO is not empty, a scenario of that
    // content. Starts nothing yet.
    explicit StandInDaemon(const std::string& scenario = "");

    // Starts the daemon on the bus that the environment names and waits until it owns its name.
    // Throws std::runtime_error when it does not come up.
    void start();
    // Asks it to end and waits for that. Returns its exit status.
    int stop();
    // Ends it the hard way.
    void kill();
    Program& program() { return *m_program; }

    // What makes a bus start it.
    static const char* busName();
    std::string command() const;

    void setScenario(const std::string& scenario) const;
    const TemporaryFolder& folder() const { return m_folder; }
    // The lines of its journal without their times.
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
