// SPDX-License-Identifier: Apache-2.0
// The language of the set's menus and the reading direction.
#pragma once

#include <string>

#include "host/description/DescriptionFile.h"

namespace host {

// The menu language of the description, or the set's language when none is given.
std::string menuLanguage(const DescriptionValues& values);

// True when LANGUAGE, such as "ar_EG.utf8", is written from right to left.
bool isRightToLeft(const std::string& language);

// The direction of the set's screens: the described one, or that of the set's language.
bool readsRightToLeft(const DescriptionValues& values);

}  // namespace host
