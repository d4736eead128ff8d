// SPDX-License-Identifier: Apache-2.0
// Reading and rewriting key files safely among processes.
#include "host/KeyFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host {

namespace {

class FileLock {
  public:
    explicit FileLock(const std::string& path)
        : m_descriptor(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {
        while (m_descriptor >= 0 && flock(m_descriptor, LOCK_EX) < 0 && errno == EINTR) {
        }
    }
    ~FileLock() {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

  private:
    int m_descriptor;
};

bool writeAll(int descriptor, const char* data, std::size_t length) {
    while (length > 0) {
        const ssize_t written = write(descriptor, data, length);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            data += written;
            length -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

bool replaceFile(const std::string& path, const char* data, std::size_t length) {
    std::string draft = path + ".XXXXXX";
    const int descriptor = mkstemp(draft.data());
    if (descriptor < 0) {
        return false;
    }
    const bool complete = writeAll(descriptor, data, length) && fchmod(descriptor, 0644) == 0;
    close(descriptor);
    if (complete && std::rename(draft.c_str(), path.c_str()) == 0) {
        return true;
    }
    const int reason = errno;
    unlink(draft.c_str());
    errno = reason;
    return false;
}

// A description may be a link to a file elsewhere; the file changes, the link stays.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::string(real.get()) : path;
}

}  // namespace

KeyFilePtr readKeyFile(const std::string& path, std::string* failure) {
    KeyFilePtr file(g_key_file_new());
    GError* error = nullptr;
    if (g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, &error) !=
            0 ||
        g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT) != 0) {
        g_clear_error(&error);
        return file;
    }
    *failure = path + ": " + error->message;
    g_clear_error(&error);
    return nullptr;
}

bool changeKeyFile(const std::string& path, BrokenFile broken,
                   const std::function<void(GKeyFile*)>& change, std::string* failure) {
    const std::string real = resolved(path);
    const FileLock lock(real + ".lock");
    std::string unreadable;
    KeyFilePtr file = readKeyFile(real, &unreadable);
    if (!file && broken == BrokenFile::Keep) {
        *failure = unreadable;
        return false;
    }
    if (!file) {
        file.reset(g_key_file_new());
    }
    change(file.get());
    gsize length = 0;
    const std::unique_ptr<gchar, decltype(&g_free)> data(
        g_key_file_to_data(file.get(), &length, nullptr), &g_free);
    if (replaceFile(real, data.get(), length)) {
        return true;
    }
    *failure = real + ": " + std::strerror(errno);
    return false;
}

}  // namespace Host
