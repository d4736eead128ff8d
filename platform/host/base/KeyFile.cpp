// SPDX-License-Identifier: Apache-2.0
// Reads and rewrites key files while other processes do the same.
#include "host/base/KeyFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace host {

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

// PATH may be a symbolic link: its target is rewritten and the link stays.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? std::string(real.get()) : path;
}

KeyFilePtr readOrReplace(const std::string& path, BrokenFile broken) {
    try {
        return readKeyFile(path);
    } catch (const std::runtime_error&) {
        if (broken == BrokenFile::KEEP) {
            throw;
        }
    }
    return KeyFilePtr(g_key_file_new());
}

}  // namespace

KeyFilePtr readKeyFile(const std::string& path) {
    KeyFilePtr file(g_key_file_new());
    GError* error = nullptr;
    g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_KEEP_COMMENTS, &error);
    const std::unique_ptr<GError, decltype(&g_error_free)> owner(error, &g_error_free);
    if (!owner || g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT) != FALSE) {
        return file;
    }
    throw std::runtime_error(path + ": " + error->message);
}

void changeKeyFile(const std::string& path, BrokenFile broken,
                   const std::function<void(GKeyFile*)>& change) {
    const std::string real = resolved(path);
    const FileLock lock(real + ".lock");
    const KeyFilePtr file = readOrReplace(real, broken);
    change(file.get());
    gsize length = 0;
    const std::unique_ptr<gchar, decltype(&g_free)> data(
        g_key_file_to_data(file.get(), &length, nullptr), &g_free);
    if (!replaceFile(real, data.get(), length)) {
        throw std::runtime_error(real + ": " + std::strerror(errno));
    }
}

}  // namespace host
