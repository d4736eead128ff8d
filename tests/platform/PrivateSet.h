// SPDX-License-Identifier: Apache-2.0
// A set's folder of a test's own.
#pragma once

#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace platform_test {

// Iterates GLib's default main context until CONDITION holds. False when it does not within a
// minute.
bool waitFor(const std::function<bool()>& condition);

std::string contentsOf(const std::string& path);
void writeTo(const std::string& path, const std::string& text);

// An empty folder, which VIRTUAL_SET_DIR names during the test.
class PrivateSet : public ::testing::Test {
  protected:
    PrivateSet();
    ~PrivateSet() override;

    const std::string& folder() const { return m_folder; }
    std::string file(const std::string& name) const { return m_folder + "/" + name; }
    void describe(const std::string& text) const { writeTo(file("set.ini"), text); }
    std::string log() const { return contentsOf(file("zolt.log")); }

  private:
    std::string m_folder;
};

}  // namespace platform_test
