// SPDX-License-Identifier: Apache-2.0
// A set's folder of a test's own.
#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace platform_test {

// Iterates GLib's default main context until CONDITION holds. False when it does not in time.
bool waitFor(const std::function<bool()>& condition);

// The content of a file; empty when it does not exist.
std::string contentsOf(const std::string& path);

// An empty folder, which VIRTUAL_SET_DIR names during the test.
class PrivateSet : public ::testing::Test {
  protected:
    PrivateSet();

    const std::string& folder() const { return m_folder.path(); }
    std::string file(const std::string& name) const { return m_folder.file(name); }
    void describe(const std::string& text) const { m_folder.write("set.ini", text); }
    std::string log() const { return contentsOf(file("zolt.log")); }

  private:
    support::TemporaryFolder m_folder;
    support::ScopedEnvironment m_set;
};

}  // namespace platform_test
