// SPDX-License-Identifier: Apache-2.0
// Makes and removes the folder of a test's set.
#include "PrivateSet.h"

#include <cstdlib>

#include <glib.h>

namespace platform_test {

bool waitFor(const std::function<bool()>& condition) {
    return support::waitUntil(condition, support::DEADLINE,
                              [] { g_main_context_iteration(nullptr, FALSE); });
}

std::string contentsOf(const std::string& path) {
    return support::fileExists(path) ? support::readFile(path) : "";
}

PrivateSet::PrivateSet() : m_set("VIRTUAL_SET_DIR", m_folder.path()) {
    for (const char* variable :
         {"VIRTUAL_SET_FILE", "VIRTUAL_SET_LOG", "VIRTUAL_SET_STALL_SECONDS"}) {
        unsetenv(variable);
    }
}

}  // namespace platform_test
