// SPDX-License-Identifier: Apache-2.0
// Small helpers of the tests: private folders, files, waiting for a condition, other programs.
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace support {

// Longer than any condition takes on the slowest machine: reached only when a test has failed.
constexpr std::chrono::milliseconds DEADLINE{120000};

// Whether this is the long run (./test --long), in which no input is left out to save time.
bool isLongRun();

// Calls PREDICATE until it is true or DEADLINE is over; returns its last result. TURN, if given,
// runs between two calls, for instance to run a main loop.
bool waitUntil(const std::function<bool()>& predicate,
               std::chrono::milliseconds deadline = DEADLINE,
               const std::function<void()>& turn = nullptr);

// A new folder, removed with its content by the destructor.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return m_path; }
    // The absolute path of NAME in this folder.
    std::string file(const std::string& name) const { return m_path + "/" + name; }
    // Writes a file in this folder, with the folders above it, and returns its absolute path.
    std::string write(const std::string& name, const std::string& content) const;

  private:
    std::string m_path;
};

// The content of a file. Throws std::runtime_error when it cannot be read.
std::string readFile(const std::string& path);
// Replaces the content of a file and makes the folders above it. Throws std::runtime_error.
void writeFile(const std::string& path, const std::string& content);
bool fileExists(const std::string& path);

// Sets an environment variable for a scope; an empty optional value is not possible: use "".
class ScopedEnvironment {
  public:
    ScopedEnvironment(const std::string& name, const std::string& value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    std::string m_name;
    std::string m_before;
    bool m_wasSet = false;
};

struct ProgramOptions {
    std::string folder;                              // working folder; empty: this one's
    std::map<std::string, std::string> environment;  // added to this program's own
    std::string input;                               // standard input
};

// Another program in a process group of its own. The destructor ends the group if it still runs.
class Program {
  public:
    // Starts ARGUMENTS[0], looked for on PATH. Throws std::runtime_error.
    explicit Program(const std::vector<std::string>& arguments, const ProgramOptions& options = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    pid_t pid() const { return m_pid; }
    bool running();
    // Sends a signal to the program alone.
    void signal(int number);
    // Terminates the group, and kills it after DEADLINE.
    void stop(std::chrono::milliseconds deadline = DEADLINE);
    // Waits for the end. False when DEADLINE was over first.
    bool wait(std::chrono::milliseconds deadline = DEADLINE);
    // Exit status, or 128 and the signal's number; -1 while it runs.
    int status() const { return m_status; }
    // All that it wrote so far.
    std::string output() const;
    std::string errors() const;

  private:
    pid_t m_pid = -1;
    int m_status = -1;
    int m_output = -1;  // closed by the destructor, as is the next
    int m_errors = -1;
};

struct ProgramResult {
    int status = -1;  // exit status, 128 and the signal's number, or -1 when it did not end in time
    std::string output;
    std::string errors;
};

// Runs a program to its end.
ProgramResult runProgram(const std::vector<std::string>& arguments,
                         const ProgramOptions& options = {},
                         std::chrono::milliseconds deadline = DEADLINE);

}  // namespace support
