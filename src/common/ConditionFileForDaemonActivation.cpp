// SPDX-License-Identifier: Apache-2.0
// Makes and removes the daemon's flag file.
#include "common/ConditionFileForDaemonActivation.h"

#include "common/DeviceInfo.h"
#include "common/Logger.h"

namespace ZOLT {

namespace {

// The systemd unit that starts only while the flag file exists. Documentation only: no code uses
// it.
[[maybe_unused]] const std::string SERVICE_UNIT = "zolt-hub.service";

}  // namespace

ConditionFileForDaemonActivation::ConditionFileForDaemonActivation(std::string path)
    : m_file(path) {
    ZOLT_TRACE();
    if (DeviceInfo::m_imageType != 0) {
        ZOLT_DEBUG("Path to flag file is : %s", path.c_str());
    }
}

bool ConditionFileForDaemonActivation::create() {
    ZOLT_TRACE();
    return m_file.save("");
}

bool ConditionFileForDaemonActivation::remove() {
    ZOLT_TRACE();
    return m_file.remove();
}

}  // namespace ZOLT
