// SPDX-License-Identifier: Apache-2.0
// The control verbs: their arguments, what they do, and the reply to a control program.
#pragma once

#include <string>
#include <vector>

namespace host {

// The exit statuses of the control program.
constexpr int CONTROL_DONE = 0;
constexpr int CONTROL_FAILED = 1;
constexpr int CONTROL_USAGE_ERROR = 2;

struct ControlReply {
    int status;
    std::string text;  // the answer, or the reason of a failure
};

// The names of all verbs, in the order of the help.
std::vector<std::string> controlVerbs();

// The verbs and their arguments, one line each.
std::string controlHelp();

// Empty when WORDS are a verb with a valid number of arguments; otherwise the error.
std::string usageError(const std::vector<std::string>& words);

}  // namespace host
