// SPDX-License-Identifier: Apache-2.0
// A set on which the probe application runs as a process.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "PrivateSet.h"
#include "support/TestSupport.h"

namespace platform_test {

using Environment = std::map<std::string, std::string>;

// Starts a program that ends with this process at the latest.
std::unique_ptr<support::Program> startProgram(const std::vector<std::string>& command,
                                               const Environment& environment);

class ProbeSet : public PrivateSet {
  protected:
    // Shows what the probe has left behind when a test has failed.
    void TearDown() override;

    // Starts the probe with OPTIONS. MORE takes precedence over the usual environment, in which the
    // probe draws into memory.
    void start(const std::vector<std::string>& options, const Environment& more = {});

    // Waits until the log has TEXT at least COUNT times.
    bool logHas(const std::string& text, int count = 1) const;

    // What the probe itself has said so far, one entry a line, without the head.
    std::vector<std::string> said() const;

    // Asks the running set through the control program.
    support::ProgramResult control(const std::vector<std::string>& words) const;

    // Waits for the probe's end and gives its exit status, or 128 and the signal that ended it; -1
    // when it has not ended in time.
    int probeStatus();

    // Ends the probe through the control program and gives its exit status.
    int quit();

    support::Program& probe() { return *m_probe; }

  private:
    std::unique_ptr<support::Program> m_probe;
};

}  // namespace platform_test
