// SPDX-License-Identifier: Apache-2.0
// Makes a computer's keyboard act as a remote control.
#pragma once

#include <Ecore.h>

namespace host {

// While it lives, the program sees Escape as the remote control's "XF86Back". A grabbed key does
// not take the focus away while it is held down: an X server does that, a television does not.
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
