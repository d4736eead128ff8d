// SPDX-License-Identifier: Apache-2.0
// Lines for the log service of the machine.
#pragma once

#include <string>

namespace host {

// Speaks to the service itself, since the C library's way to it does not tell whether a line has
// arrived. Any thread may call it.
class SystemJournal {
  public:
    SystemJournal() = delete;

    // Hands TEXT over with a LEVEL of syslog's. Returns 0 or a negative error number.
    static int write(int level, const std::string& text);
};

}  // namespace host
