// SPDX-License-Identifier: Apache-2.0
// The application's identity, written to the log at start.
#pragma once

#include <string>

class Version {
  public:
    Version() = delete;

    // Logs build time, version and APPNAME, one line each. The configuration must be loaded: throws
    // std::out_of_range without its key "SourceVersion".
    static void printVersion(std::string appName);
};
