// SPDX-License-Identifier: Apache-2.0
// Notices that the X server of the set has died.
#pragma once

#include <Ecore.h>
#include <glib.h>

namespace host {

// Leaves the main loop when the X server has died.
struct DisplayLost {};

// Without its X server the toolkit keeps its main loop running, at full load. While this object
// lives, DisplayLost ends the main loop before the toolkit notices, so that the program can still
// shut down in order. From then on any request to the dead server ends the process.
class DisplayWatch {
  public:
    DisplayWatch();
    ~DisplayWatch();
    DisplayWatch(const DisplayWatch&) = delete;
    DisplayWatch& operator=(const DisplayWatch&) = delete;

  private:
    int m_descriptor = -1;  // a copy of the toolkit's connection, closed by this class
    guint m_source = 0;
    Ecore_Idle_Enterer* m_enterer = nullptr;
};

}  // namespace host
