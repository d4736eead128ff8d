// SPDX-License-Identifier: Apache-2.0
// The television's own clock.
#pragma once

#include <time.h>

// The set keeps local time; UTC is derived from it.
class CTimeUtil {
  public:
    // Local time of the set in seconds since 1970-01-01 00:00 local time.
    static time_t GetCurrentTime();

    // Breaks SECONDS down without applying a time zone.
    static void Unsigned_gmtime_r(const time_t* seconds, struct tm* result);

    // Turns local time into UTC in place.
    static void ConvertToUTCTime(struct tm* time);
};
