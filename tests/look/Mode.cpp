// SPDX-License-Identifier: Apache-2.0
// The settings of a set under which a screen is drawn.
#include "look/Mode.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <stdexcept>

#include <libintl.h>

#include <Elementary.h>

#include "gui/Controller.h"
#include "support/ScriptedPlatform.h"

namespace look {

namespace {

constexpr double DESIGN_WIDTH = 1920.0;
constexpr double DESIGN_HEIGHT = 1080.0;

bool writtenFromRight(const std::string& language) {
    for (const char* one : {"ar", "fa", "he", "ur"}) {
        if (language.substr(0, language.find('_')) == one) {
            return true;
        }
    }
    return false;
}

}  // namespace

double Mode::scale() const {
    return std::min(width / DESIGN_WIDTH, height / DESIGN_HEIGHT);
}

bool Mode::mirrored() const {
    return direction == Direction::RIGHT_TO_LEFT ||
           (direction == Direction::OF_LANGUAGE && writtenFromRight(language));
}

std::string Mode::name() const {
    return std::to_string(width) + "x" + std::to_string(height) + "-" + language +
           (mirrored() ? "-rtl" : "") + (contrast ? "-contrast" : "") +
           (enlarged ? "-enlarged" : "");
}

void Mode::apply(const std::string& catalogues) const {
    auto& set = support::ScriptedPlatform::get();
    set.reset();
    set.setOrientation(mirrored() ? 1 : 0);
    set.setVconf("db/menu/system/accessibility/highcontrast", contrast ? 1 : 0);
    ZOLT::GUI::Controller::Enlarge = enlarged ? 1 : 0;
    elm_config_scale_set(scale());
    elm_config_mirrored_set(mirrored() ? EINA_TRUE : EINA_FALSE);
    useLanguage(catalogues);
}

void Mode::useLanguage(const std::string& catalogues) const {
    setenv("LANGUAGE", language.c_str(), 1);
    // Any locale but the plain C one lets the variable choose the catalogue, and only a change of
    // the locale makes the library look at the variable again.
    std::setlocale(LC_ALL, "C");
    if (std::setlocale(LC_ALL, "C.UTF-8") == nullptr) {
        throw std::runtime_error("there is no locale C.UTF-8");
    }
    bindtextdomain("ZOLT", catalogues.c_str());
    bind_textdomain_codeset("ZOLT", "UTF-8");
}

}  // namespace look
