// SPDX-License-Identifier: Apache-2.0
// Chooses the real or the fake system calls.
#include "common/systemcalls/SystemCallsFactory.h"

#include "common/Logger.h"
#include "common/ZoltConfig.h"
#include "common/systemcalls/SystemCalls.h"
#include "common/systemcalls/SystemCallsFake.h"

namespace ZOLT {

ISystemCalls* SystemCallsFactory::getSystemCalls() {
    ZOLT_TRACE();
    if (ZoltConfig::getInt("FakeSystemCalls") != 0) {
        ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "Use fake system calls");
        return new SystemCallsFake();
    }
    ZOLT_LOG(LOG_ID_MAIN, DLOG_DEBUG, "Use usual system calls");
    return new SystemCalls();
}

}  // namespace ZOLT
