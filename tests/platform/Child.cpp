// SPDX-License-Identifier: Apache-2.0
// Starting and ending a test's processes.
#include "Child.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "PrivateSet.h"

namespace platform_test {

namespace {

[[noreturn]] void become(const std::string& program, const std::vector<std::string>& arguments,
                         const Environment& environment, const std::string& output, int keep) {
    // A test that is killed takes its processes along.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    for (int descriptor = 3; descriptor < 256; ++descriptor) {
        if (descriptor != keep) {
            close(descriptor);
        }
    }
    std::vector<char*> words = {const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
    }
    words.push_back(nullptr);
    execvp(program.c_str(), words.data());
    _exit(127);
}

}  // namespace

Child::Child(const std::string& program, const std::vector<std::string>& arguments,
             const Environment& environment, const std::string& output, int keep)
    : m_id(fork()) {
    if (m_id == 0) {
        become(program, arguments, environment, output, keep);
    }
}

Child::~Child() {
    if (m_running && !hasEnded()) {
        kill(m_id, SIGKILL);
        waitpid(m_id, nullptr, 0);
    }
}

void Child::send(int signal) const {
    kill(m_id, signal);
}

bool Child::hasEnded() {
    if (m_running && waitpid(m_id, &m_status, WNOHANG) == m_id) {
        m_running = false;
    }
    return !m_running;
}

int Child::wait() {
    if (!waitFor([this] { return hasEnded(); })) {
        return -1;
    }
    return WIFEXITED(m_status) ? WEXITSTATUS(m_status) : 128 + WTERMSIG(m_status);
}

Outcome runToEnd(const std::string& program, const std::vector<std::string>& arguments,
                 const Environment& environment, const std::string& output) {
    Child child(program, arguments, environment, output);
    const int status = child.wait();
    return {status, contentsOf(output)};
}

}  // namespace platform_test
