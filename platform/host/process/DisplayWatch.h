// SPDX-License-Identifier: Apache-2.0
// Notices that the X server of the set has died.
#pragma once

#include <Ecore.h>
#include <glib.h>

namespace host {

// Comes out of the main loop when the X server is gone.
struct DisplayLost {};

// The toolkit goes on turning its main loop, at full load, when its X server is gone. While this
// object lives, the main loop is left by an exception in place of that: before the toolkit notices,
// so that the program can still take leave of everybody else. From then on any request to the dead
// server ends the process.
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
