// SPDX-License-Identifier: Apache-2.0
// The texts that the toolkit's objects draw.
#pragma once

#include <string>

#include <Evas.h>

namespace host {

// What OBJECT itself draws as text, without markup; empty when it draws none.
std::string drawnText(Evas_Object* object);

// The texts that WIDGET shows or would show if it were scrolled, in one line: the texts of a label
// separated by spaces, labels by commas.
std::string textsWithin(Evas_Object* widget);

}  // namespace host
