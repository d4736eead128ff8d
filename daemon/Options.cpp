// SPDX-License-Identifier: Apache-2.0
// The daemon's command line.
#include "daemon/Options.h"

#include <getopt.h>

namespace standin {
namespace {

const option OPTIONS[] = {
    {"set", required_argument, nullptr, 's'}, {"scenario", required_argument, nullptr, 'c'},
    {"check", no_argument, nullptr, 'k'},     {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'v'},   {nullptr, 0, nullptr, 0}};

// FOUND is getopt's result for the argument WORD.
void apply(Options& options, int found, const std::string& word) {
    switch (found) {
        case 's':
            options.setFolder = optarg;
            break;
        case 'c':
            options.scenarioFile = optarg;
            break;
        case 'k':
            options.checkOnly = true;
            break;
        case 'h':
            options.showHelp = true;
            break;
        case 'v':
            options.showVersion = true;
            break;
        case ':':
            throw UsageError(word + " needs a value");
        default:
            throw UsageError("unknown option: " + word);
    }
}

}  // namespace

Options parseOptions(int argc, char** argv) {
    Options options;
    opterr = 0;
    optind = 0;  // resets getopt, so that a second call works
    // The plus sign keeps getopt from reordering the arguments, so that WORD is the one it has
    // parsed.
    for (int word = 1, found = 0; (found = getopt_long(argc, argv, "+:", OPTIONS, nullptr)) != -1;
         word = optind) {
        apply(options, found, argv[word]);
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
    return "Usage: zolt-daemon --set DIR [--scenario FILE] [--check]\n"
           "Plays the content service's daemon for the set that lives in DIR.\n"
           "\n"
           "  --set DIR        the set's folder, with its config.xml\n"
           "  --scenario FILE  the scenario to play; else DIR/scenario.ini, else the ordinary\n"
           "                   behaviour\n"
           "  --check          read both, report errors in them, and exit\n"
           "  --version        print the version and exit\n"
           "  --help           print this text and exit\n";
}

}  // namespace standin
