// SPDX-License-Identifier: Apache-2.0
// The program's one way into the television's log.
#pragma once

#include <string>

#include "dlog.h"

namespace ZOLT {

// Builds and writes log lines. Has no state; any thread may call it.
class Logger {
  public:
    Logger() = delete;

    // Text of the entry trace: "Called " and SIGNATURE, the caller's pretty function string, in
    // which COUNT parameters are replaced by their values. A pair follows for each: the 1-based
    // position of the parameter as int, then its value as int, unsigned or const char*. Throws what
    // Boost.Regex throws for a parameter list that is no valid expression, and std::logic_error for
    // a null text. Once the static objects of the process are being destroyed, types stay as they
    // are.
    static std::string logger(const char* signature, int count, ...);

    // Writes build time, version and name of the application, one line each.
    static void printVersion(std::string appName, std::string version);

    // Writes one line in the form "FILE: FUNCTION(LINE) > MESSAGE". Call it through the macros
    // below.
    static void write(log_id_t buffer, log_priority priority, const char* path,
                      const char* function, int line, const char* format, ...)
        __attribute__((format(printf, 6, 7)));
};

}  // namespace ZOLT

// The source that a line names. Readers of the log know each class by one source. If a class has
// several sources, the others define this before their includes as the name of the first.
#ifndef ZOLT_LOG_FILE
#define ZOLT_LOG_FILE __FILE__
#endif

#define ZOLT_LOG(buffer, priority, ...) \
    ::ZOLT::Logger::write(buffer, priority, ZOLT_LOG_FILE, __func__, __LINE__, __VA_ARGS__)

// Progress and state.
#define ZOLT_DEBUG(...) ZOLT_LOG(LOG_ID_SYSTEM, DLOG_DEBUG, __VA_ARGS__)
// Every error: the program logs nothing above this priority.
#define ZOLT_WARN(...) ZOLT_LOG(LOG_ID_SYSTEM, DLOG_WARN, __VA_ARGS__)

// First statement of a traced function.
#define ZOLT_TRACE() \
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "%s", ::ZOLT::Logger::logger(__PRETTY_FUNCTION__, 0).c_str())
// The same with values: ZOLT_TRACE_VALUES(COUNT, position, value, ...).
#define ZOLT_TRACE_VALUES(...)             \
    ZOLT_LOG(LOG_ID_MAIN, DLOG_INFO, "%s", \
             ::ZOLT::Logger::logger(__PRETTY_FUNCTION__, __VA_ARGS__).c_str())
