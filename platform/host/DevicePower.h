// SPDX-License-Identifier: Apache-2.0
// The other side of the power notices: what makes them.
#pragma once

namespace Host {

// Tell every subscriber, in the order of subscription, on the calling thread.
void announcePoweroff(int state);
void announceWakeup(int state);

}  // namespace Host
