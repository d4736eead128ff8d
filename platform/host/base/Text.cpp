// SPDX-License-Identifier: Apache-2.0
// Copies texts for callers of the C interfaces.
#include "host/base/Text.h"

#include <cstring>

namespace host {

char* copyForCaller(const std::string& text) {
    return strdup(text.c_str());
}

}  // namespace host
