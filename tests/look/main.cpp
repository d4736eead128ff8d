// SPDX-License-Identifier: Apache-2.0
// Draws every screen in memory and checks the pictures.
#include <chrono>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "look/Catalogue.h"
#include "look/Options.h"
#include "look/Report.h"
#include "look/Scene.h"
#include "look/SceneRun.h"
#include "support/TestSupport.h"

namespace {

constexpr std::size_t MAX_FAILURES_SHOWN = 25;  // of each check

int check(const look::Options& options) {
    const auto started = std::chrono::steady_clock::now();
    const auto items = options.items(look::Catalogue::languagesIn(options.catalogues));
    if (!options.pictures.empty()) {
        std::filesystem::create_directories(options.pictures);
    }
    look::SceneRun run(options);
    look::Report report;
    for (const look::Item& item : items) {
        run.examine(item, report);
    }
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - started;
    if (!options.report.empty()) {
        support::writeFile(options.report, report.json(passed.count()));
    }
    std::cout << report.words(MAX_FAILURES_SHOWN, passed.count());
    return report.good() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        const look::Options options(argc, argv);
        if (options.help) {
            std::cout << look::Options::usage();
            return 0;
        }
        if (options.namesOnly) {
            for (const look::Scene& scene : look::scenes()) {
                std::cout << scene.name << "\n";
            }
            return 0;
        }
        return check(options);
    } catch (const std::invalid_argument& exception) {
        std::cerr << "look-check: " << exception.what() << " (see --help)\n";
        return 2;
    } catch (const std::exception& exception) {
        std::cerr << "look-check: " << exception.what() << "\n";
        return 1;
    }
}
