// SPDX-License-Identifier: Apache-2.0
// Carries out the requests of control programs.
#pragma once

#include <string>
#include <vector>

#include "host/control/ControlUsage.h"
#include "host/control/ControlledApplication.h"

namespace host {

// Carries out WORDS, a verb and its arguments. Exceptions of the program's callbacks pass through.
ControlReply runVerb(ControlledApplication* application, const std::vector<std::string>& words);

}  // namespace host
