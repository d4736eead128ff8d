// SPDX-License-Identifier: Apache-2.0
// The virtual set's own lines in the television's log, under the tag VIRTUAL_SET.
#pragma once

#include <string>

namespace host {

// Any thread may call these.
void logInfo(const std::string& text);
void logWarning(const std::string& text);
void logError(const std::string& text);

}  // namespace host
