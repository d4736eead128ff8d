// SPDX-License-Identifier: Apache-2.0
// Reading of a scenario from a key file.
#pragma once

#include <string>

#include "daemon/Scenario.h"

namespace standin {

// Reads FILE; an empty name gives the ordinary course. Shop lists without a path are looked for in
// SHOP_LIST_FOLDER, others beside the scenario. Throws UsageError for anything it does not
// understand, so that a misspelt key is not taken for the ordinary course.
Scenario loadScenario(const std::string& file, const std::string& shopListFolder);

// "EVENT/REASON" or "REASON", each as number or name; a reason alone goes with its usual event.
// Throws UsageError.
Event parseEvent(const std::string& text);

}  // namespace standin
