// SPDX-License-Identifier: Apache-2.0
// Small helpers of the tests: private folders, files, waiting for a condition, other programs.
#include "support/TestSupport.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

constexpr std::chrono::milliseconds PAUSE{1};

[[noreturn]] void fail(const std::string& what, int error) {
    throw std::runtime_error(what + ": " + std::generic_category().message(error));
}

int memoryFile(const std::string& content) {
    const int descriptor = memfd_create("stream", MFD_CLOEXEC);
    if (descriptor < 0) {
        fail("memfd_create", errno);
    }
    size_t written = 0;
    while (written < content.size()) {
        const ssize_t count = pwrite(descriptor, content.data() + written, content.size() - written,
                                     static_cast<off_t>(written));
        if (count < 0) {
            fail("pwrite", errno);
        }
        written += static_cast<size_t>(count);
    }
    return descriptor;
}

std::string contentOf(int descriptor) {
    std::string content;
    char block[4096];
    ssize_t count = 0;
    while ((count = pread(descriptor, block, sizeof block, static_cast<off_t>(content.size()))) >
           0) {
        content.append(block, static_cast<size_t>(count));
    }
    return content;
}

// The environment of a program as "NAME=VALUE": this program's, overridden by ADDED.
std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::map<std::string, std::string> all;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto split = text.find('=');
        if (split != std::string::npos) {
            all[text.substr(0, split)] = text.substr(split + 1);
        }
    }
    for (const auto& [name, value] : added) {
        all[name] = value;
    }
    std::vector<std::string> texts;
    texts.reserve(all.size());
    for (const auto& [name, value] : all) {
        texts.emplace_back(name).append("=").append(value);
    }
    return texts;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

bool isLongRun() {
    return std::getenv("ZOLT_LONG_TESTS") != nullptr;
}

bool waitUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline,
               const std::function<void()>& turn) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!predicate()) {
        if (std::chrono::steady_clock::now() >= end) {
            return predicate();
        }
        if (turn) {
            turn();
        }
        std::this_thread::sleep_for(PAUSE);
    }
    return true;
}

TemporaryFolder::TemporaryFolder() {
    m_path = (std::filesystem::temp_directory_path() / "zolt-test-XXXXXX").string();
    if (mkdtemp(m_path.data()) == nullptr) {
        fail("mkdtemp " + m_path, errno);
    }
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::write(const std::string& name, const std::string& content) const {
    writeFile(file(name), content);
    return file(name);
}

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    if (!stream.is_open() || stream.bad()) {
        throw std::runtime_error("cannot read " + path);
    }
    return content.str();
}

void writeFile(const std::string& path, const std::string& content) {
    const auto folder = std::filesystem::path(path).parent_path();
    if (!folder.empty()) {
        std::filesystem::create_directories(folder);
    }
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << content;
    stream.close();
    if (stream.fail()) {
        throw std::runtime_error("cannot write " + path);
    }
}

bool fileExists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

ScopedEnvironment::ScopedEnvironment(const std::string& name, const std::string& value)
    : m_name(name) {
    const char* before = std::getenv(name.c_str());
    m_wasSet = before != nullptr;
    m_before = m_wasSet ? before : "";
    setenv(name.c_str(), value.c_str(), 1);
}

ScopedEnvironment::~ScopedEnvironment() {
    if (m_wasSet) {
        setenv(m_name.c_str(), m_before.c_str(), 1);
    } else {
        unsetenv(m_name.c_str());
    }
}

Program::Program(const std::vector<std::string>& arguments, const ProgramOptions& options) {
    auto argumentTexts = arguments;
    auto environmentTexts = environmentWith(options.environment);
    auto argumentPointers = pointersTo(argumentTexts);
    auto environmentPointers = pointersTo(environmentTexts);
    const int input = memoryFile(options.input);
    m_output = memoryFile("");
    m_errors = memoryFile("");

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, m_output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, m_errors, STDERR_FILENO);
    if (!options.folder.empty()) {
        posix_spawn_file_actions_addchdir_np(&actions, options.folder.c_str());
    }
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);

    const int error = posix_spawnp(&m_pid, argumentTexts.at(0).c_str(), &actions, &attributes,
                                   argumentPointers.data(), environmentPointers.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(input);
    if (error != 0) {
        close(m_output);
        close(m_errors);
        fail("cannot start " + arguments.at(0), error);
    }
}

Program::~Program() {
    stop();
    close(m_output);
    close(m_errors);
}

bool Program::running() {
    if (m_status >= 0) {
        return false;
    }
    int status = 0;
    if (waitpid(m_pid, &status, WNOHANG) == 0) {
        return true;
    }
    m_status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return false;
}

void Program::signal(int number) {
    if (running()) {
        kill(m_pid, number);
    }
}

void Program::stop(std::chrono::milliseconds deadline) {
    if (!running()) {
        return;
    }
    kill(-m_pid, SIGTERM);
    kill(-m_pid, SIGCONT);
    if (!wait(deadline)) {
        kill(-m_pid, SIGKILL);
        wait(deadline);
    }
}

bool Program::wait(std::chrono::milliseconds deadline) {
    return waitUntil([this] { return !running(); }, deadline);
}

std::string Program::output() const {
    return contentOf(m_output);
}

std::string Program::errors() const {
    return contentOf(m_errors);
}

ProgramResult runProgram(const std::vector<std::string>& arguments, const ProgramOptions& options,
                         std::chrono::milliseconds deadline) {
    Program program(arguments, options);
    const bool ended = program.wait(deadline);
    return {ended ? program.status() : -1, program.output(), program.errors()};
}

}  // namespace support
