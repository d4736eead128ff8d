// SPDX-License-Identifier: Apache-2.0
// Collects texts from the objects that draw them.
#include "host/toolkit/WidgetTexts.h"

#include <cstdlib>

namespace host {

namespace {

std::string orNothing(const char* text) {
    return text != nullptr ? text : "";
}

// What a look hides, such as a text that only measures another one, is not read.
void read(Evas_Object* object, std::string* found) {
    if (evas_object_visible_get(object) == EINA_FALSE) {
        return;
    }
    if (orNothing(evas_object_type_get(object)) == "elm_label" && !found->empty()) {
        *found += ",";
    }
    if (const std::string text = drawnText(object); !text.empty()) {
        *found += (found->empty() ? "" : " ") + text;
    }
    Eina_List* members = evas_object_smart_members_get(object);
    void* member = nullptr;
    EINA_LIST_FREE(members, member) {
        read(static_cast<Evas_Object*>(member), found);
    }
}

}  // namespace

std::string drawnText(Evas_Object* object) {
    const std::string type = orNothing(evas_object_type_get(object));
    std::string text;
    if (type == "text") {
        text = orNothing(evas_object_text_text_get(object));
    } else if (type == "textblock") {
        char* plain = evas_textblock_text_markup_to_utf8(
            object, evas_object_textblock_text_markup_get(object));
        text = orNothing(plain);
        std::free(plain);
    }
    return text;
}

std::string textsWithin(Evas_Object* widget) {
    std::string found;
    read(widget, &found);
    return found;
}

}  // namespace host
