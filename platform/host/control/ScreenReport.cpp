// SPDX-License-Identifier: Apache-2.0
// Walks the program's windows and writes a line for each object that shows something.
#include "host/control/ScreenReport.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <Elementary.h>

#include "host/toolkit/ToolkitWindows.h"
#include "host/toolkit/WidgetTexts.h"

// Exported by the toolkit but not declared in its headers. Unlike the public
// elm_object_focus_allow_get it does not report a button as focusable because its icon is.
extern "C" Eina_Bool elm_widget_can_focus_get(const Evas_Object* widget);

namespace host {

namespace {

constexpr const char* WIDGET_PREFIX = "elm_";

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '\n') {
            result += "\\n";
            continue;
        }
        if (character == '"' || character == '\\') {
            result += '\\';
        }
        result += character;
    }
    return result + '"';
}

std::string orNothing(const char* text) {
    return text != nullptr ? text : "";
}

// Whether OBJECT and its clippers are shown. Its parents have been checked before.
bool isDrawn(const Evas_Object* object) {
    for (const Evas_Object* at = object; at != nullptr; at = evas_object_clip_get(at)) {
        int alpha = 0;
        evas_object_color_get(at, nullptr, nullptr, nullptr, &alpha);
        if (evas_object_visible_get(at) == EINA_FALSE || alpha == 0) {
            return false;
        }
    }
    return true;
}

class Report {
  public:
    explicit Report(Evas_Object* window)
        : m_window(window),
          m_hasKeyboard(elm_win_focus_get(window) != EINA_FALSE),
          m_focused(elm_object_focused_object_get(window)) {
        m_depth = 0;
        addLine("window", window, m_hasKeyboard ? " focus" : "",
                orNothing(elm_win_title_get(window)));
        m_depth = 1;
        Evas* canvas = evas_object_evas_get(window);
        for (Evas_Object* object = evas_object_bottom_get(canvas); object != nullptr;
             object = evas_object_above_get(object)) {
            walk(object);
        }
    }

    bool hasKeyboard() const { return m_hasKeyboard; }
    const std::string& text() const { return m_text; }

  private:
    void walk(Evas_Object* object) {
        int width = 0;
        int height = 0;
        evas_object_geometry_get(object, nullptr, nullptr, &width, &height);
        if (!isDrawn(object) || width == 0 || height == 0) {
            return;
        }
        const int depth = m_depth;
        addObject(object, orNothing(evas_object_type_get(object)));
        Eina_List* members = evas_object_smart_members_get(object);
        void* member = nullptr;
        EINA_LIST_FREE(members, member) {
            walk(static_cast<Evas_Object*>(member));
        }
        m_depth = depth;
    }

    void addObject(Evas_Object* object, const std::string& type) {
        // A part may hold an empty text object.
        if (const std::string text = drawnText(object); !text.empty()) {
            addLine("text", object, "", text);
        } else if (object != m_window && type.rfind(WIDGET_PREFIX, 0) == 0) {
            addLine(type.substr(std::strlen(WIDGET_PREFIX)), object, stateOf(object));
            ++m_depth;
            if (type == "elm_genlist") {
                addRows(object);
            }
        }
    }

    std::string stateOf(const Evas_Object* widget) const {
        return std::string(elm_widget_can_focus_get(widget) != EINA_FALSE ? " focusable" : "") +
               (widget == m_focused ? " focus" : "");
    }

    void addRows(Evas_Object* list) {
        Eina_List* items = elm_genlist_realized_items_get(list);
        void* entry = nullptr;
        EINA_LIST_FREE(items, entry) {
            auto* item = static_cast<Elm_Object_Item*>(entry);
            std::string state = elm_object_item_focus_get(item) != EINA_FALSE ? " focus" : "";
            state += elm_genlist_item_selected_get(item) != EINA_FALSE ? " selected" : "";
            addLine("row", elm_object_item_track(item), state,
                    orNothing(elm_object_item_part_text_get(item, "elm.text")));
            elm_object_item_untrack(item);
        }
    }

    void addLine(const std::string& kind, const Evas_Object* object, const std::string& state,
                 const std::string& text = "") {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        evas_object_geometry_get(object, &x, &y, &width, &height);
        m_text += std::string(2 * static_cast<std::size_t>(m_depth), ' ') + kind + " " +
                  std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
                  std::to_string(height) + state + (text.empty() ? "" : " " + quoted(text)) + "\n";
    }

    Evas_Object* m_window;  // belongs to the program, as all objects here
    bool m_hasKeyboard;
    Evas_Object* m_focused;
    int m_depth = 0;  // of the next line
    std::string m_text;
};

}  // namespace

std::string screenReport() {
    std::vector<Report> reports;
    for (const ToolkitWindow& entry : toolkitWindows()) {
        reports.emplace_back(entry.window);
    }
    std::stable_partition(reports.begin(), reports.end(),
                          [](const Report& report) { return report.hasKeyboard(); });
    std::string text;
    for (const Report& report : reports) {
        text += report.text();
    }
    return text;
}

}  // namespace host
