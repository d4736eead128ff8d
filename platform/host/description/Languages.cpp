// SPDX-License-Identifier: Apache-2.0
// Menu language and reading direction.
#include "host/description/Languages.h"

namespace host {

std::string menuLanguage(const DescriptionValues& values) {
    const std::string& given = values.text(Field::MENU_LANGUAGE);
    return given.empty() ? values.text(Field::LANGUAGE) : given;
}

bool isRightToLeft(const std::string& language) {
    const std::string code = language.substr(0, language.find_first_of("_.@-"));
    return code == "ar" || code == "fa" || code == "he" || code == "ur";
}

bool readsRightToLeft(const DescriptionValues& values) {
    const std::string& given = values.text(Field::ORIENTATION);
    return given == "auto" ? isRightToLeft(values.text(Field::LANGUAGE)) : given == "rtl";
}

}  // namespace host
