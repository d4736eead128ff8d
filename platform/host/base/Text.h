// SPDX-License-Identifier: Apache-2.0
// Handing texts over the C interfaces.
#pragma once

#include <string>

namespace host {

// A copy that the caller releases with free, as the television's interfaces promise.
char* copyForCaller(const std::string& text);

}  // namespace host
