// SPDX-License-Identifier: Apache-2.0
// The virtual set's clock: the machine's, shifted by the offset of the description.
#include "time_util.h"

#include "host/description/Description.h"

time_t CTimeUtil::GetCurrentTime() {
    const time_t utc = time(nullptr) + host::Description::number(host::Field::CLOCK_OFFSET);
    tm local{};
    localtime_r(&utc, &local);
    return utc + local.tm_gmtoff;
}

void CTimeUtil::Unsigned_gmtime_r(const time_t* seconds, struct tm* result) {
    gmtime_r(seconds, result);
}

void CTimeUtil::ConvertToUTCTime(struct tm* time) {
    tm local = *time;
    local.tm_isdst = -1;
    const time_t utc = mktime(&local);
    gmtime_r(&utc, time);
}
