// SPDX-License-Identifier: Apache-2.0
// The process's locale and the texts of its message catalogue.
#pragma once

#include <string>

namespace ZOLT {

class DeviceInfo;

// Locales are process-wide, so all calls come from the main thread. Every failure is a
// ZOLT::Exception.
class Translator {
  public:
    // DEVICEINFO is not owned. Without it setLocale(nullptr) fails.
    Translator(std::string defaultLocale, DeviceInfo* deviceInfo);

    // Makes DOMAIN the process's text domain, with its catalogues under PATH.
    void enableLocales(std::string domain, std::string path);

    // The text for the message ID in the language of the process or, where its catalogue has none,
    // in the default one; ID itself without either. A translation that begins with the whole id
    // counts as none. Owned by gettext.
    char* getText(const char* id);

    // Sets the process's locale, from the television's language if LOCALE is null.
    void setLocale(char* locale);

  private:
    std::string m_defaultLocale;
    DeviceInfo* m_deviceInfo;  // owned by the application
};

}  // namespace ZOLT
