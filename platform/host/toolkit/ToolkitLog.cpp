// SPDX-License-Identifier: Apache-2.0
// Turns messages of Eina and GLib into log lines.
#include "host/toolkit/ToolkitLog.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include <Eina.h>
#include <glib.h>

#include "dlog.h"

namespace host {

namespace {

int priorityOf(Eina_Log_Level level) {
    switch (level) {
        case EINA_LOG_LEVEL_CRITICAL:
            return DLOG_FATAL;
        case EINA_LOG_LEVEL_ERR:
            return DLOG_ERROR;
        case EINA_LOG_LEVEL_WARN:
            return DLOG_WARN;
        case EINA_LOG_LEVEL_INFO:
            return DLOG_INFO;
        default:
            return DLOG_DEBUG;
    }
}

__attribute__((format(printf, 6, 0))) void fromToolkit(const Eina_Log_Domain* domain,
                                                       Eina_Log_Level level, const char* file,
                                                       const char* function, int line,
                                                       const char* format, void*,
                                                       va_list arguments) {
    std::array<char, 2048> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    __dlog_print(LOG_ID_SYSTEM, priorityOf(level), "TOOLKIT", "%s: %s: %s(%d) > %s",
                 domain->name != nullptr ? domain->name : "", file, function, line, text.data());
}

int priorityOf(GLogLevelFlags level) {
    if ((level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL)) != 0) {
        return DLOG_ERROR;
    }
    if ((level & G_LOG_LEVEL_WARNING) != 0) {
        return DLOG_WARN;
    }
    return (level & (G_LOG_LEVEL_MESSAGE | G_LOG_LEVEL_INFO)) != 0 ? DLOG_INFO : DLOG_DEBUG;
}

void fromGlib(const gchar* domain, GLogLevelFlags level, const gchar* message, gpointer) {
    // Off by default, as in GLib itself.
    if ((level & (G_LOG_LEVEL_INFO | G_LOG_LEVEL_DEBUG)) != 0 &&
        g_getenv("G_MESSAGES_DEBUG") == nullptr) {
        return;
    }
    __dlog_print(LOG_ID_SYSTEM, priorityOf(level), "GLIB", "%s: %s",
                 domain != nullptr ? domain : "", message);
}

}  // namespace

void redirectToolkitLog() {
    eina_log_print_cb_set(fromToolkit, nullptr);
    g_log_set_default_handler(fromGlib, nullptr);
}

}  // namespace host
