// SPDX-License-Identifier: Apache-2.0
// The set's registration on disk.
#pragma once

#include <string>
#include <vector>

#include "daemon/SetFolder.h"

namespace standin {

// The registration outlives the daemon: it is what the files say at each moment.
class Registration {
  public:
    explicit Registration(const SetFolder& set) : m_set(set) {}

    // Whether a document is kept.
    bool exists() const;
    // The document kept, or "null". Throws std::runtime_error when it cannot be read, or is no text
    // that the bus carries.
    std::string document() const;
    // Keeps DOCUMENT and then writes the registration file, so that a set that counts as registered
    // always has its document. Throws std::runtime_error when a file cannot be written; none of
    // them is then left.
    void store(const std::string& document) const;
    // Removes all that store wrote. Nothing to remove is fine. Throws std::runtime_error when a
    // file stays.
    void remove() const;

  private:
    std::vector<std::string> files() const;

    SetFolder m_set;
};

}  // namespace standin
