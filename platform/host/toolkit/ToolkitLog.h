// SPDX-License-Identifier: Apache-2.0
// Leads what the toolkit and GLib have to say into the television's log.
#pragma once

namespace host {

// A program on the set has closed its standard error, where they would write otherwise.
void redirectToolkitLog();

}  // namespace host
