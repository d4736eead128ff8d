// SPDX-License-Identifier: Apache-2.0
// Checks a registration document against the shop list that was served.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace standin {

// Returns the first error of the registration document DOCUMENT, or nothing if it is valid. A valid
// document has the levels of SERVED from the top down to an entry without children, one entry of
// SERVED in each, each code two characters longer than the one above it, and all attributes as
// served except is_sub of the last level, which is "N". An entry has children when SERVED holds one
// whose code is its code and two more characters.
std::optional<std::string> registrationFault(const std::string& document,
                                             const std::string& served);

}  // namespace standin
