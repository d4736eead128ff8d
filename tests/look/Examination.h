// SPDX-License-Identifier: Apache-2.0
// Looks at one scene in one mode from every side. One for each process: it starts the toolkit.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "look/Easel.h"
#include "look/Inventory.h"
#include "look/Options.h"
#include "look/Report.h"
#include "look/Tour.h"
#include "support/BufferToolkit.h"
#include "support/TestSupport.h"

namespace look {

class Examination {
  public:
    // MADEUP is the folder of the languages that are made up.
    Examination(const Options& options, const std::string& madeUp);

    // What comes out of ITEM.
    Report examine(const Item& item);
    // Writes the made-up languages.
    void makeUpLanguages();

  private:
    void apply(const Mode& mode) const;
    const Vocabulary& vocabulary(const std::string& language);
    Sizes ordinarySizes(const Item& item);
    void look(const Item& item, Report& report);
    void compareMirrored(const Item& item, Report& report);
    void keep(Stage& stage, const Scene& scene, std::size_t number, const Frame& picture) const;

    const Options& m_options;
    const std::string m_madeUp;
    support::BufferToolkit m_toolkit;
    support::TemporaryFolder m_folder;
    std::unique_ptr<Easel> m_easel;
    std::vector<std::string> m_ids;
    std::map<std::string, Vocabulary> m_vocabularies;
};

}  // namespace look
