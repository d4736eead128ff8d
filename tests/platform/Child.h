// SPDX-License-Identifier: Apache-2.0
// A process that a test starts and that never outlives it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace platform_test {

using Environment = std::vector<std::pair<std::string, std::string>>;

class Child {
  public:
    // Starts PROGRAM with ARGUMENTS; its standard output and error go to the file OUTPUT.
    // Descriptors above 2 are closed but for KEEP.
    Child(const std::string& program, const std::vector<std::string>& arguments,
          const Environment& environment, const std::string& output, int keep = -1);

    // Kills it when it still runs.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t id() const { return m_id; }
    void send(int signal) const;

    // Waits for its end and gives its exit status, or 128 and the signal that ended it; -1 when it
    // has not ended within a minute.
    int wait();

  private:
    bool hasEnded();

    pid_t m_id;
    bool m_running = true;
    int m_status = 0;
};

// Runs a program to its end.
struct Outcome {
    int status;
    std::string output;
};
Outcome runToEnd(const std::string& program, const std::vector<std::string>& arguments,
                 const Environment& environment, const std::string& output);

}  // namespace platform_test
