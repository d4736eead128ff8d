// SPDX-License-Identifier: Apache-2.0
// Follows the TV's language. A text without a translation is shown in the default language.
#include "common/Translator.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

#include <libintl.h>

#include "common/DeviceInfo.h"
#include "common/Exception.h"
#include "common/Logger.h"

namespace ZOLT {

namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Free>;

// Throws for a null LOCALE, with which the C library would only return the current one.
void switchLocale(const char* locale) {
    if (locale == nullptr || std::setlocale(LC_ALL, locale) == nullptr) {
        throw Exception("Unable to set the language", GENERIC_ERROR);
    }
}

Text currentLocale() {
    const char* locale = std::setlocale(LC_ALL, nullptr);
    Text copy(locale == nullptr ? nullptr : strdup(locale));
    if (copy == nullptr) {
        throw Exception("Unable to allocate memory", GENERIC_ERROR);
    }
    return copy;
}

// Null if the language cannot be read for any reason, including a missing configuration key of the
// fakes or a null DeviceInfo: the caller only learns that there is none.
Text languageOf(DeviceInfo* deviceInfo) {
    char* language = nullptr;
    try {
        if (deviceInfo != nullptr) {
            deviceInfo->getLanguageStringValue(&language);
        }
    } catch (const std::exception&) {
        return nullptr;
    }
    return Text(language);
}

}  // namespace

Translator::Translator(std::string defaultLocale, DeviceInfo* deviceInfo)
    : m_defaultLocale(std::move(defaultLocale)), m_deviceInfo(deviceInfo) {
    ZOLT_TRACE();
}

void Translator::enableLocales(std::string domain, std::string path) {
    ZOLT_TRACE();
    bindtextdomain(domain.c_str(), path.c_str());
    textdomain(domain.c_str());
}

char* Translator::getText(const char* id) {
    ZOLT_TRACE();
    char* translated = gettext(id);  // null for a null id, which cannot be compared
    if (translated == nullptr || std::strncmp(translated, id, std::strlen(id)) != 0) {
        return translated;
    }
    const Text locale = currentLocale();
    switchLocale(m_defaultLocale.c_str());
    translated = gettext(id);
    switchLocale(locale.get());
    return translated;
}

void Translator::setLocale(char* locale) {
    ZOLT_TRACE();
    if (locale != nullptr) {
        switchLocale(locale);
        return;
    }
    const Text language = languageOf(m_deviceInfo);
    switchLocale(language.get());
    ZOLT_DEBUG("Language set successfully to [%s]", language.get());
}

}  // namespace ZOLT
