// SPDX-License-Identifier: Apache-2.0
// Writes lines to the log service of the machine.
#pragma once

#include <string>

namespace host {

// Connects to the service itself, since syslog() does not report whether a line has arrived. Any
// thread may call it.
class SystemJournal {
  public:
    SystemJournal() = delete;

    // LEVEL is one of syslog's. Returns 0 or a negative error number.
    static int write(int level, const std::string& text);
};

}  // namespace host
