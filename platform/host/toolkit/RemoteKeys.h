// SPDX-License-Identifier: Apache-2.0
// Makes a computer's keyboard a remote control.
#pragma once

#include <Ecore.h>

namespace host {

// While it lives, Escape reaches the program as the remote's "XF86Back", and a grabbed key does not
// take the focus away for as long as it is held: an X server does that, a television does not.
// Ecore has to be initialised.
class RemoteKeys {
  public:
    RemoteKeys();
    ~RemoteKeys();
    RemoteKeys(const RemoteKeys&) = delete;
    RemoteKeys& operator=(const RemoteKeys&) = delete;

  private:
    Ecore_Event_Filter* m_filter;  // deleted by this class
};

}  // namespace host
