// SPDX-License-Identifier: Apache-2.0
// Redirects the messages of the toolkit and of GLib to the television's log.
#pragma once

namespace host {

// They write to standard error by default, which the program closes.
void redirectToolkitLog();

}  // namespace host
