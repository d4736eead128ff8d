// SPDX-License-Identifier: Apache-2.0
// The daemon's command line.
#include "daemon/Options.h"

#include <getopt.h>

namespace standin {
namespace {

const option OPTIONS[] = {{"set", required_argument, nullptr, 's'},
                          {"scenario", required_argument, nullptr, 'c'},
                          {"help", no_argument, nullptr, 'h'},
                          {"version", no_argument, nullptr, 'v'},
                          {nullptr, 0, nullptr, 0}};

void apply(Options& options, int found, char** argv) {
    switch (found) {
        case 's':
            options.setFolder = optarg;
            break;
        case 'c':
            options.scenarioFile = optarg;
            break;
        case 'h':
            options.showHelp = true;
            break;
        case 'v':
            options.showVersion = true;
            break;
        case ':':
            throw UsageError(std::string(argv[optind - 1]) + " needs a value");
        default:
            throw UsageError(std::string("unknown option: ") + argv[optind - 1]);
    }
}

}  // namespace

Options parseOptions(int argc, char** argv) {
    Options options;
    opterr = 0;
    optind = 0;  // starts the scan anew, also on a second call
    for (int found = 0; (found = getopt_long(argc, argv, ":", OPTIONS, nullptr)) != -1;) {
        apply(options, found, argv);
    }
    if (optind < argc) {
        throw UsageError(std::string("unexpected argument: ") + argv[optind]);
    }
    if (options.setFolder.empty() && !options.showHelp && !options.showVersion) {
        throw UsageError("--set DIR is missing");
    }
    return options;
}

std::string helpText() {
    return "Usage: zolt-daemon --set DIR [--scenario FILE]\n"
           "Plays the content service's daemon for the set that lives in DIR.\n"
           "\n"
           "  --set DIR        the set's folder, with its config.xml\n"
           "  --scenario FILE  the course to play; else DIR/scenario.ini, else the ordinary one\n"
           "  --version        print the version and exit\n"
           "  --help           print this text and exit\n";
}

}  // namespace standin
