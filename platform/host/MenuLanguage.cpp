// SPDX-License-Identifier: Apache-2.0
// Menu language and reading direction.
#include "host/MenuLanguage.h"

#include "host/Description.h"
#include "ui_orientation.h"

namespace Host {

std::string menuLanguage() {
    const std::string given = Description::text(Field::MenuLanguage);
    return given.empty() ? Description::text(Field::Language) : given;
}

bool isRightToLeft(const std::string& language) {
    const std::string code = language.substr(0, language.find_first_of("_.@-"));
    return code == "ar" || code == "fa" || code == "he" || code == "ur";
}

}  // namespace Host

extern "C" int ua_UI_orientation_get(void) {
    const std::string given = Host::Description::text(Host::Field::Orientation);
    if (given == "auto") {
        return Host::isRightToLeft(Host::Description::text(Host::Field::Language)) ? 1 : 0;
    }
    return given == "rtl" ? 1 : 0;
}
