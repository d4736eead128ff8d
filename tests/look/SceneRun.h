// SPDX-License-Identifier: Apache-2.0
// Runs the checks of one scene in one mode. One per process: it starts the toolkit.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "look/FocusWalk.h"
#include "look/GlyphMeter.h"
#include "look/Inventory.h"
#include "look/LiveChange.h"
#include "look/Options.h"
#include "look/Report.h"
#include "support/BufferToolkit.h"
#include "support/TestSupport.h"

namespace look {

class SceneRun {
  public:
    explicit SceneRun(const Options& options);

    // Runs the checks of ITEM and adds their results to REPORT.
    void examine(const Item& item, Report& report);

  private:
    // The folder with the catalogue of LANGUAGE; makes the made-up ones when the first is needed.
    const std::string& cataloguesOf(const std::string& language);
    void apply(const Mode& mode);
    const Snapshot& freshScreen(const Item& item, const Mode& mode);
    void changeLanguage(const Item& item, Report& report);
    const Vocabulary& vocabulary(const std::string& language);
    Sizes ordinarySizes(const Item& item);
    void look(const Item& item, Report& report);
    void compareMirrored(const Item& item, Report& report);
    void keep(ScreenHarness& harness, const Scene& scene, std::size_t number,
              const Frame& picture) const;

    const Options& m_options;
    support::BufferToolkit m_toolkit;
    support::TemporaryFolder m_folder;
    std::unique_ptr<GlyphMeter> m_glyphs;
    std::vector<std::string> m_ids;
    std::map<std::string, Vocabulary> m_vocabularies;
    std::string m_madeUp;                     // folder of the made-up languages, once there are any
    std::size_t m_freshScene = 0;             // that of m_fresh
    std::map<std::string, Snapshot> m_fresh;  // by mode
};

}  // namespace look
