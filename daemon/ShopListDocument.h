// SPDX-License-Identifier: Apache-2.0
// The shop list that was served, and whether a registration fits it.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace standin {

// Says what is wrong with the registration document DOCUMENT, or nothing if it is right: the levels
// of SERVED from the top on down to an entry without children, each with one entry that stands
// there, each code two characters longer than the one above it, and all attributes as served but
// for is_sub of the last level, which is "N". An entry has children when SERVED holds one whose
// code is its code and two more characters.
std::optional<std::string> registrationFault(const std::string& document,
                                             const std::string& served);

}  // namespace standin
