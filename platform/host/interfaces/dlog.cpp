// SPDX-License-Identifier: Apache-2.0
// The television's log, written to a file, the system's journal or standard error.
#include "dlog.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <syslog.h>
#include <unistd.h>

#include "host/base/SetFolder.h"
#include "host/base/SystemJournal.h"

namespace {

constexpr const char* JOURNAL = "journal";
constexpr const char* STANDARD_ERROR = "-";

const char* bufferName(log_id_t id) {
    static constexpr std::array<const char*, 4> NAMES = {"main", "radio", "system", "apps"};
    const auto index = static_cast<std::size_t>(id);
    return index < NAMES.size() ? NAMES[index] : "main";
}

char letter(int priority) {
    static constexpr std::array<char, 9> LETTERS = {'?', 'D', 'V', 'D', 'I', 'W', 'E', 'F', 'S'};
    const auto index = static_cast<std::size_t>(priority);
    return index < LETTERS.size() ? LETTERS[index] : '?';
}

int syslogLevel(int priority) {
    static constexpr std::array<int, 9> LEVELS = {LOG_INFO,  LOG_INFO, LOG_DEBUG,
                                                  LOG_DEBUG, LOG_INFO, LOG_WARNING,
                                                  LOG_ERR,   LOG_CRIT, LOG_DEBUG};
    const auto index = static_cast<std::size_t>(priority);
    return index < LEVELS.size() ? LEVELS[index] : LOG_INFO;
}

__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments) {
    std::array<char, 512> room{};
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(room.data(), room.size(), format, arguments);
    std::string text;
    if (length < 0) {
        text = format;
    } else if (static_cast<std::size_t>(length) < room.size()) {
        text.assign(room.data(), static_cast<std::size_t>(length));
    } else {
        std::vector<char> more(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(more.data(), more.size(), format, again);
        text.assign(more.data(), static_cast<std::size_t>(length));
    }
    va_end(again);
    return text;
}

// Each call gives one line, and no message can send control codes to a terminal that shows the log.
std::string escaped(const std::string& text) {
    std::string line;
    line.reserve(text.size());
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\n') {
            line += "\\n";
        } else if (character == '\r') {
            line += "\\r";
        } else if ((byte < 0x20 && character != '\t') || byte == 0x7f) {
            std::array<char, 8> code{};
            std::snprintf(code.data(), code.size(), "\\x%02x", static_cast<unsigned>(byte));
            line += code.data();
        } else {
            line += character;
        }
    }
    return line;
}

std::string head(log_id_t id, int priority, const char* tag) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    std::array<char, 32> when{};
    std::strftime(when.data(), when.size(), "%m-%d %H:%M:%S", &local);
    std::array<char, 96> line{};
    std::snprintf(line.data(), line.size(), "%s.%03ld %5ld %5ld %s %c ", when.data(),
                  now.tv_nsec / 1000000, static_cast<long>(getpid()),
                  static_cast<long>(syscall(SYS_gettid)), bufferName(id), letter(priority));
    return std::string(line.data()) + tag + ": ";
}

bool isClosed(int descriptor) {
    return fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
}

bool isNull(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISCHR(status.st_mode) &&
           status.st_rdev == makedev(1, 3);
}

void occupy(int descriptor, const char* path) {
    int opened = open(path, O_WRONLY | O_CREAT | O_APPEND, 0644);
    if (opened < 0) {
        opened = open("/dev/null", O_WRONLY);
    }
    if (opened >= 0 && opened != descriptor) {
        dup2(opened, descriptor);
        close(opened);
    }
}

// A program may close its standard streams. The next pipe or socket would get the free numbers, and
// code that writes to descriptor 2 by number would write into it. Descriptor 2 becomes a file,
// also where the program has put it on /dev/null, which keeps the last messages of an aborted
// process.
void occupyStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO}) {
        if (isClosed(descriptor)) {
            occupy(descriptor, "/dev/null");
        }
    }
    if (isClosed(STDERR_FILENO) || isNull(STDERR_FILENO)) {
        occupy(STDERR_FILENO, host::SetFolder::file("stderr.log").c_str());
    }
}

// The descriptor of the log file, opened anew when the environment names another one. Never closed
// at the end of the process: a static destructor may still log.
class LogFile {
  public:
    static int descriptor(const std::string& path) {
        static std::mutex guard;  // guards the two below
        static std::string* openPath = new std::string;
        static int open_ = -1;
        const std::lock_guard<std::mutex> lock(guard);
        if (open_ < 0 || *openPath != path) {
            const int next = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
            if (open_ >= 0) {
                close(open_);
            }
            open_ = next;
            *openPath = path;
        }
        return open_;
    }
};

int writeLine(int descriptor, const std::string& line) {
    ssize_t written = -1;
    do {
        written = write(descriptor, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    return written < 0 ? -errno : static_cast<int>(written);
}

}  // namespace

extern "C" int __dlog_print(log_id_t id, int priority, const char* tag, const char* format, ...) {
    if (format == nullptr) {
        return -EINVAL;
    }
    va_list arguments;
    va_start(arguments, format);
    const std::string message = escaped(formatted(format, arguments));
    va_end(arguments);
    const char* name = tag != nullptr ? tag : "";

    occupyStandardDescriptors();
    const std::string target = host::SetFolder::variable("VIRTUAL_SET_LOG", "zolt.log");
    if (target == JOURNAL) {
        const std::string line =
            std::string(bufferName(id)) + " " + letter(priority) + " " + name + ": " + message;
        const int failure = host::SystemJournal::write(syslogLevel(priority), line);
        return failure < 0 ? failure : static_cast<int>(message.size());
    }
    const int descriptor = target == STANDARD_ERROR
                               ? STDERR_FILENO
                               : LogFile::descriptor(host::SetFolder::file(target));
    return descriptor < 0 ? -EIO : writeLine(descriptor, head(id, priority, name) + message + "\n");
}
