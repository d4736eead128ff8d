// SPDX-License-Identifier: Apache-2.0
// The socket of a running set, whatever the length of its folder's name.
#pragma once

#include <string>

namespace host {

// Both return a descriptor that the caller closes, or -1 with errno set. They address the socket
// through the folder's descriptor, because a socket's address is limited to 107 characters.
int listenAtControlSocket(const std::string& folder);
int connectToControlSocket(const std::string& folder);

void removeControlSocket(const std::string& folder);

}  // namespace host
