// SPDX-License-Identifier: Apache-2.0
// Finding the program's windows, which the toolkit does not list.
#pragma once

#include <vector>

#include <Ecore_Evas.h>
#include <Evas.h>

namespace host {

struct ToolkitWindow {
    Ecore_Evas* canvas;   // belongs to the toolkit
    Evas_Object* window;  // belongs to the program
};

// Every window of the program that has a canvas now, in no particular order.
std::vector<ToolkitWindow> toolkitWindows();

}  // namespace host
