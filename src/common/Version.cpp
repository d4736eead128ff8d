// SPDX-License-Identifier: Apache-2.0
// Writes the application's identity to the log.
#include "common/Version.h"

#include "common/Logger.h"
#include "common/ZoltConfig.h"

void Version::printVersion(std::string appName) {
    ZOLT_TRACE();
    ZOLT_DEBUG("Compilation timestamp:\t%s", __DATE__ " " __TIME__);
    ZOLT_DEBUG("Version:\t\t\t%s", ("ZOLT-" + ZoltConfig::get("SourceVersion")).c_str());
    ZOLT_DEBUG("AppName:\t\t\t%s", appName.c_str());
}
