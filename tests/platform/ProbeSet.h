// SPDX-License-Identifier: Apache-2.0
// A set on which the probe application runs as a process.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Child.h"
#include "PrivateSet.h"

namespace platform_test {

class ProbeSet : public PrivateSet {
  protected:
    // Shows what the probe has left behind when a test has failed.
    void TearDown() override;

    // Starts the probe with WISHES. Without a DISPLAY in MORE it draws into memory.
    void start(const std::vector<std::string>& wishes, const Environment& more = {});

    // Waits until the log has TEXT at least COUNT times.
    bool logHas(const std::string& text, int count = 1) const;

    // What the probe itself has said so far, one entry a line, without the head.
    std::vector<std::string> said() const;

    // Asks the running set through the control program.
    Outcome control(const std::vector<std::string>& words) const;

    // Ends the probe through the control program and gives its exit status.
    int quit();

    Child& probe() { return *m_probe; }

  private:
    std::unique_ptr<Child> m_probe;
};

}  // namespace platform_test
