// SPDX-License-Identifier: Apache-2.0
// Looks for a window on each canvas of the process.
#include "host/toolkit/ToolkitWindows.h"

#include <cstring>

namespace host {

namespace {

Evas_Object* windowOn(Evas* canvas) {
    for (Evas_Object* object = evas_object_bottom_get(canvas); object != nullptr;
         object = evas_object_above_get(object)) {
        const char* type = evas_object_type_get(object);
        if (type != nullptr && std::strcmp(type, "elm_win") == 0) {
            return object;
        }
    }
    return nullptr;
}

}  // namespace

std::vector<ToolkitWindow> toolkitWindows() {
    std::vector<ToolkitWindow> found;
    Eina_List* canvases = ecore_evas_ecore_evas_list_get();
    void* entry = nullptr;
    EINA_LIST_FREE(canvases, entry) {
        auto* canvas = static_cast<Ecore_Evas*>(entry);
        Evas_Object* window = windowOn(ecore_evas_get(canvas));
        if (window != nullptr) {
            found.push_back({canvas, window});
        }
    }
    return found;
}

}  // namespace host
