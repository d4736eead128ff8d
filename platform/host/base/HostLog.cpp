// SPDX-License-Identifier: Apache-2.0
// The virtual set's own lines in the log.
#include "host/base/HostLog.h"

#include "dlog.h"

namespace host {

namespace {

void write(log_priority priority, const std::string& text) {
    __dlog_print(LOG_ID_SYSTEM, priority, "VIRTUAL_SET", "%s", text.c_str());
}

}  // namespace

void logInfo(const std::string& text) {
    write(DLOG_INFO, text);
}

void logWarning(const std::string& text) {
    write(DLOG_WARN, text);
}

void logError(const std::string& text) {
    write(DLOG_ERROR, text);
}

}  // namespace host
