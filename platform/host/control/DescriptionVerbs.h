// SPDX-License-Identifier: Apache-2.0
// The control verbs that read or change a description: that of a running set, or any file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/control/ControlUsage.h"
#include "host/description/DescriptionFile.h"

namespace host {

// "describe": one line for each value, "GROUP KEY=VALUE", in the order of the fields, and at the
// end "Language Direction=ltr" or "=rtl". In VALUE a backslash, a newline and a carriage return are
// written as \\, \n and \r.
ControlReply describe(const DescriptionValues& values);

// "get GROUP KEY"
ControlReply getValue(const DescriptionValues& values, const std::vector<std::string>& words);

// "set GROUP KEY VALUE". WRITE throws std::runtime_error when it cannot be done.
ControlReply setValue(const std::vector<std::string>& words,
                      const std::function<void(Field, const std::string&)>& write);

// Carries out WORDS for the description file PATH, without a running set. REMARKS receives the
// file's bad values and unknown keys.
ControlReply runVerbOnFile(const std::string& path, const std::vector<std::string>& words,
                           std::vector<std::string>* remarks);

}  // namespace host
