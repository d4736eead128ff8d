// SPDX-License-Identifier: Apache-2.0
// Notices that the X server of the set has died.
#pragma once

#include <glib.h>

namespace Host {

// The toolkit goes on turning its main loop, at full load, when its X server is gone. While this
// object lives, the process ends in place of that.
class DisplayWatch {
  public:
    DisplayWatch();
    ~DisplayWatch();
    DisplayWatch(const DisplayWatch&) = delete;
    DisplayWatch& operator=(const DisplayWatch&) = delete;

  private:
    int m_descriptor = -1;  // a copy of the toolkit's connection, closed by this class
    guint m_source = 0;
};

}  // namespace Host
