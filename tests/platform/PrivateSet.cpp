// SPDX-License-Identifier: Apache-2.0
// Makes and removes the folder of a test's set.
#include "PrivateSet.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <glib.h>

namespace platform_test {

namespace {

gboolean stayAwake(gpointer) {
    return G_SOURCE_CONTINUE;
}

}  // namespace

bool waitFor(const std::function<bool()>& condition) {
    const gint64 deadline = g_get_monotonic_time() + G_TIME_SPAN_MINUTE;
    const guint tick = g_timeout_add(5, stayAwake, nullptr);
    bool holds = condition();
    while (!holds && g_get_monotonic_time() < deadline) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_remove(tick);
    return holds;
}

std::string contentsOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeTo(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

PrivateSet::PrivateSet() {
    std::string path = (std::filesystem::temp_directory_path() / "virtual-set-XXXXXX").string();
    if (mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("no folder for the test's set");
    }
    m_folder = path;
    setenv("VIRTUAL_SET_DIR", m_folder.c_str(), 1);
    for (const char* variable :
         {"VIRTUAL_SET_FILE", "VIRTUAL_SET_LOG", "VIRTUAL_SET_STALL_SECONDS"}) {
        unsetenv(variable);
    }
}

PrivateSet::~PrivateSet() {
    unsetenv("VIRTUAL_SET_DIR");
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

}  // namespace platform_test
