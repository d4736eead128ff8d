// SPDX-License-Identifier: Apache-2.0
// Texts that callers of the C interfaces release.
#include "host/base/Text.h"

#include <cstring>

namespace host {

char* copyForCaller(const std::string& text) {
    return strdup(text.c_str());
}

}  // namespace host
