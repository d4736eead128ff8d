// SPDX-License-Identifier: Apache-2.0
// Chooses who answers the program's questions to the television.
#pragma once

namespace ZOLT {

class ISystemCalls;

class SystemCallsFactory {
  public:
    // What the configuration key "FakeSystemCalls" asks for. The caller owns it. Throws what
    // ZoltConfig::getInt throws.
    static ISystemCalls* getSystemCalls();
};

}  // namespace ZOLT
