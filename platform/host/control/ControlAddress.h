// SPDX-License-Identifier: Apache-2.0
// The socket of a running set, whatever the length of its folder's name.
#pragma once

#include <string>

namespace host {

// Both give a descriptor that the caller closes, or -1 with errno set. They go through the folder's
// descriptor, because a socket's address has room for 107 characters only.
int listenAtControlSocket(const std::string& folder);
int connectToControlSocket(const std::string& folder);

void removeControlSocket(const std::string& folder);

}  // namespace host
