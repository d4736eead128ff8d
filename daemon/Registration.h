// SPDX-License-Identifier: Apache-2.0
// The set's registration on disk.
#pragma once

#include <string>
#include <vector>

#include "daemon/SetFolder.h"

namespace standin {

// The registration outlives the daemon: the files are read at each call.
class Registration {
  public:
    explicit Registration(const SetFolder& set) : m_set(set) {}

    // Whether a document is kept.
    bool exists() const;
    // The document kept, or "null". Throws std::runtime_error when it cannot be read, or is not
    // UTF-8, which the bus requires.
    std::string document() const;
    // Keeps DOCUMENT and then writes the registration file, so that a registered set always has its
    // document. Throws std::runtime_error when a file cannot be written; all of them are removed
    // then.
    void store(const std::string& document) const;
    // Removes the files that store writes; they may be absent. Throws std::runtime_error when one
    // cannot be removed.
    void remove() const;

  private:
    std::vector<std::string> files() const;

    SetFolder m_set;
};

}  // namespace standin
