// SPDX-License-Identifier: Apache-2.0
// Reads a scenario from a key file.
#pragma once

#include <string>

#include "daemon/Scenario.h"

namespace standin {

// Reads FILE; an empty name gives the ordinary behaviour. Shop lists without a path are found in
// SHOP_LIST_FOLDER, others relative to the scenario. Throws UsageError for unknown groups, keys and
// values, so that a misspelt key is never silently ignored.
Scenario loadScenario(const std::string& file, const std::string& shopListFolder);

// "EVENT/REASON" or "REASON", each as number or name; a reason alone goes with its usual event.
// Throws UsageError.
Event parseEvent(const std::string& text);

}  // namespace standin
