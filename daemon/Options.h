// SPDX-License-Identifier: Apache-2.0
// The daemon's command line.
#pragma once

#include <stdexcept>
#include <string>

namespace standin {

// A usage error: reported on one line, exit status 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    std::string setFolder;     // --set
    std::string scenarioFile;  // --scenario, empty if not given
    bool checkOnly = false;    // --check
    bool showHelp = false;
    bool showVersion = false;
};

// Throws UsageError.
Options parseOptions(int argc, char** argv);

std::string helpText();

}  // namespace standin
