// SPDX-License-Identifier: Apache-2.0
// The set's registration on disk.
#include "daemon/Registration.h"

#include <cerrno>
#include <stdexcept>

#include <glib.h>
#include <glib/gstdio.h>

#include "daemon/Xml.h"

namespace standin {
namespace {

void writeText(const std::string& path, const std::string& text) {
    gchar* folder = g_path_get_dirname(path.c_str());
    g_mkdir_with_parents(folder, 0755);
    g_free(folder);
    GError* error = nullptr;
    if (g_file_set_contents(path.c_str(), text.data(), static_cast<gssize>(text.size()), &error) ==
        FALSE) {
        const std::string reason = error->message;
        g_error_free(error);
        throw std::runtime_error(reason);
    }
}

void removeFile(const std::string& path) {
    if (g_unlink(path.c_str()) != 0 && errno != ENOENT) {
        throw std::runtime_error("cannot remove " + path + ": " + g_strerror(errno));
    }
}

}  // namespace

bool Registration::exists() const {
    return g_file_test(m_set.documentFile.c_str(), G_FILE_TEST_IS_REGULAR) != FALSE;
}

std::string Registration::document() const {
    if (!exists()) {
        return "null";
    }
    std::string text = readText(m_set.documentFile);
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) == FALSE) {
        throw std::runtime_error(m_set.documentFile + " is not UTF-8");
    }
    return text;
}

void Registration::store(const std::string& document) const {
    try {
        writeText(m_set.documentFile, document);
        if (m_set.documentCopy != m_set.documentFile) {
            writeText(m_set.documentCopy, document);
        }
        writeText(m_set.registrationFile, "registered\n");
    } catch (const std::runtime_error&) {
        for (const std::string& path : files()) {
            g_unlink(path.c_str());
        }
        throw;
    }
}

void Registration::remove() const {
    for (const std::string& path : files()) {
        removeFile(path);
    }
}

// The registration file comes first: without it the set is unregistered, even if other files
// remain.
std::vector<std::string> Registration::files() const {
    return {m_set.registrationFile, m_set.documentFile, m_set.documentCopy};
}

}  // namespace standin
