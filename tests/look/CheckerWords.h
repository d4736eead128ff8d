// SPDX-License-Identifier: Apache-2.0
// What the checks say about a value and a text, and how exact a contrast is.
#pragma once

#include <string>

#include "look/TextMeasure.h"

namespace look {

constexpr double CONTRAST_TOLERANCE = 0.03;

// VALUE with two places after the point.
std::string number(double value);
// Kind, words and place of TEXT.
std::string described(const Text& text);

}  // namespace look
