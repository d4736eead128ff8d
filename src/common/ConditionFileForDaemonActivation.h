// SPDX-License-Identifier: Apache-2.0
// The flag file whose presence lets the daemon's unit start.
#pragma once

#include <string>

#include "common/File.h"

namespace ZOLT {

class ConditionFileForDaemonActivation {
  public:
    explicit ConditionFileForDaemonActivation(std::string path);

    // Leaves the flag on the disk: the daemon outlives the application.
    virtual ~ConditionFileForDaemonActivation() = default;

    // Writes the empty flag file. False, with a line in the log, if that fails.
    bool create();

    // False if there was no flag file to remove.
    bool remove();

  private:
    File m_file;
};

}  // namespace ZOLT
