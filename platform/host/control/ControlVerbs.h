// SPDX-License-Identifier: Apache-2.0
// What a control program may ask of a running set.
#pragma once

#include <string>
#include <vector>

#include "host/control/ControlUsage.h"
#include "host/control/ControlledApplication.h"

namespace host {

// Does what WORDS, a verb and its arguments, ask. What the program's callbacks throw passes
// through.
ControlReply obey(ControlledApplication* application, const std::vector<std::string>& words);

}  // namespace host
