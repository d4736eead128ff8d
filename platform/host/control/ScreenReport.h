// SPDX-License-Identifier: Apache-2.0
// Describes as text what is on the screen.
#pragma once

#include <string>

namespace host {

// The program's windows, the one that has the keyboard first, and under each what it shows, in the
// order in which it is drawn. A line each:
//
//     KIND X,Y WIDTHxHEIGHT [focusable] [focus] [selected] ["TEXT"]
//
// indented by its depth. KIND is window, the toolkit's name of a widget such as button, popup or
// genlist, row for a row of a list, or text for a piece of text as it is drawn. A window's text is
// its title. Coordinates are in pixels of the screen. Quotes and backslashes in a text have a
// backslash before them, and the end of a line is \n.
std::string screenReport();

}  // namespace host
