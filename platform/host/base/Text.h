// SPDX-License-Identifier: Apache-2.0
// Texts that the C interfaces return.
#pragma once

#include <string>

namespace host {

// A copy that the caller releases with free, as the television's interfaces specify.
char* copyForCaller(const std::string& text);

}  // namespace host
