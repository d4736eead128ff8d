// SPDX-License-Identifier: Apache-2.0
// The toolkit without a display, for the tests of one process.
#pragma once

#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace support {

// Starts the toolkit on its buffer engine once for all tests of the process, with the settings of a
// television, and with a home folder of its own, because it stores settings. Give it to
// AddGlobalTestEnvironment.
class BufferToolkit : public ::testing::Environment {
  public:
    // THEME: the file whose styles and icons all widgets take.
    explicit BufferToolkit(std::string theme) : m_theme(std::move(theme)) {}
    void SetUp() override;
    void TearDown() override;

  private:
    TemporaryFolder m_home;
    std::string m_theme;
};

}  // namespace support
