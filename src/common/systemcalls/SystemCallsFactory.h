// SPDX-License-Identifier: Apache-2.0
// Chooses the real or the fake system calls.
#pragma once

namespace ZOLT {

class ISystemCalls;

class SystemCallsFactory {
  public:
    // SystemCalls, or SystemCallsFake if the configuration key "FakeSystemCalls" is not 0. The
    // caller owns the object. Throws what ZoltConfig::getInt throws.
    static ISystemCalls* getSystemCalls();
};

}  // namespace ZOLT
