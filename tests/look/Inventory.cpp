// SPDX-License-Identifier: Apache-2.0
// What stands on a screen: its texts, controls, icons, the ring of the focus and the card of a
// popup, with their places.
#include "look/Inventory.h"

#include <cstring>

#include "look/Geometry.h"

namespace look {

namespace {

// What the walk knows on its way to an object.
struct Path {
    Evas_Object* edje = nullptr;
    Evas_Object* control = nullptr;
    Evas_Object* scroller = nullptr;
    Evas_Object* icon = nullptr;
    bool inRow = false;
};

std::string typeOf(const Evas_Object* object) {
    const char* type = evas_object_type_get(object);
    return type != nullptr ? type : "";
}

bool isWidget(const std::string& type) {
    return type.compare(0, 4, "elm_") == 0;
}

std::string groupOf(const Evas_Object* edje) {
    const char* group = nullptr;
    edje_object_file_get(edje, nullptr, &group);
    return group != nullptr ? group : "";
}

// Whether WIDGET takes the focus and so can be pressed. The toolkit counts the icon in a button as
// focusable, so the look of the button counts as well. Checker reports a look that is wrong once
// the focus gets there.
bool canBePressed(const Evas_Object* widget) {
    const char* const face =
        edje_object_part_state_get(elm_layout_edje_get(widget), "face", nullptr);
    return elm_object_focus_allow_get(widget) != EINA_FALSE &&
           (face == nullptr || std::strcmp(face, "blocked") != 0);
}

std::string partOf(const Evas_Object* edje, const Evas_Object* object) {
    if (edje == nullptr) {
        return "";
    }
    for (const char* part :
         {"title", "text1", "text2", "shop1", "shopname", "SoftwareVersion", "RegistrationInfo",
          "elm.text", "elm.text.title", "leftText", "rightText", "leftText_RTL", "rightText_RTL"}) {
        if (edje_object_part_exists(edje, part) &&
            edje_object_part_object_get(edje, part) == object) {
            return part;
        }
    }
    return "";
}

Role roleOf(const Text& text) {
    if (text.part == "title" || text.part == "elm.text.title") {
        return Role::TITLE;
    }
    if (text.control != nullptr) {
        return Role::CONTROL;
    }
    for (const char* part : {"text2", "shop1", "shopname", "SoftwareVersion"}) {
        if (text.part == part) {
            return Role::SECONDARY;
        }
    }
    return Role::BODY;
}

// Drawings of the theme that mean something: the arrow of the drop-down, the tick of a picked
// row and of a chosen value, the drawing of a screen, where a list stands, and the arc that turns.
constexpr const char* DRAWINGS[] = {
    "arrow",       "mark",           "shop1.mark",      "shopname.mark", "hero.lines",
    "hero.accent", "hero.lines.rtl", "hero.accent.rtl", "bar.handle",    "arc"};

// The arrows of the program, by the names of its icons.
bool isArrow(const Evas_Object* icon) {
    const char* group = nullptr;
    elm_image_file_get(icon, nullptr, &group);
    const std::string drawn = group != nullptr ? group : "";
    for (const char* arrow : {"i_previous", "i_next", "i_go", "i_go_r"}) {
        if (drawn.find("/" + std::string(arrow) + "/") != std::string::npos) {
            return true;
        }
    }
    return false;
}

// Whether all clippers of OBJECT are visible and it is not empty.
bool isLit(const Evas_Object* object) {
    for (const Evas_Object* clip = evas_object_clip_get(object); clip != nullptr;
         clip = evas_object_clip_get(clip)) {
        if (!evas_object_visible_get(clip)) {
            return false;
        }
    }
    return !boxOf(object).empty();
}

class Walk {
  public:
    Walk(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary, Inventory& found)
        : m_scene(scene),
          m_vocabulary(vocabulary),
          m_found(found),
          m_popup(harness.popup()),
          m_picture{0, 0, harness.mode().width, harness.mode().height} {
        for (Evas_Object* top = evas_object_bottom_get(harness.canvas()); top != nullptr;
             top = evas_object_above_get(top)) {
            visit(top, Path(), m_popup == nullptr);
        }
    }

  private:
    void visit(Evas_Object* object, Path path, bool listed) {
        if (!evas_object_visible_get(object)) {
            return;
        }
        const Box clip = clipOf(object, m_picture);
        if (clip.empty()) {
            return;
        }
        listed = listed || object == m_popup;
        const std::string type = typeOf(object);
        if (listed) {
            noteWidget(object, type, clip, path);
        }
        if (type == "edje") {
            noteGroup(object, clip, path, listed);
        } else if (listed && (type == "text" || type == "textblock")) {
            noteText(object, type == "text", clip, path);
        }
        Eina_List* members = evas_object_smart_members_get(object);
        void* member = nullptr;
        EINA_LIST_FREE(members, member) {
            visit(static_cast<Evas_Object*>(member), path, listed);
        }
    }

    void noteWidget(Evas_Object* object, const std::string& type, const Box& clip, Path& path) {
        const Control control{object, type,  boxOf(object),
                              clip,   false, isWidget(type) && canBePressed(object)};
        if (type == "elm_button" || type == "elm_hoversel") {
            m_found.controls.push_back(control);
            path.control = object;
        } else if (type == "elm_genlist" || type == "elm_scroller") {
            m_found.holders.push_back(control);
            path.scroller = object;
        } else if (type == "elm_progressbar") {
            m_found.spinners.push_back(control);
        } else if (type == "elm_icon") {
            m_found.icons.push_back(
                {object, path.control, boxOf(object), {}, false, isArrow(object)});
            path.icon = object;
        }
    }

    void noteGroup(Evas_Object* edje, const Box& clip, Path& path, bool listed) {
        path.edje = edje;
        const std::string group = groupOf(edje);
        if (edje_object_part_exists(edje, "ring") != EINA_FALSE) {
            const char* state = edje_object_part_state_get(edje, "ring", nullptr);
            const auto* ring = edje_object_part_object_get(edje, "ring");
            if (state != nullptr && std::string(state) == "focused" &&
                evas_object_visible_get(ring) && !clipOf(ring, m_picture).empty()) {
                m_found.rings.push_back({const_cast<Evas_Object*>(ring), boxOf(ring)});
            }
        }
        if (!listed) {
            return;
        }
        // The tree of levels points to the next level.
        const bool levels = startsWith(group, "ShopListWindow");
        for (const char* part : DRAWINGS) {
            const bool hero = startsWith(part, "hero.");
            const bool bar = startsWith(part, "bar.");
            auto* const drawing = const_cast<Evas_Object*>(edje_object_part_object_get(edje, part));
            // A tick may be scrolled away with its row.
            const bool away = path.scroller != nullptr && drawing != nullptr &&
                              !clipOf(drawing, m_picture).holds(boxOf(drawing));
            if (drawing != nullptr && evas_object_visible_get(drawing) && isLit(drawing) && !away) {
                m_found.icons.push_back(
                    {drawing, path.control, boxOf(drawing), {}, hero, hero && levels, bar});
            }
        }
        if (startsWith(group, "elm/genlist/item")) {
            path.control = edje;
            path.inRow = true;
            m_found.controls.push_back({edje, "row", boxOf(edje), clip, true, true});
        }
        if (startsWith(group, "elm/popup/base/")) {
            m_found.cards.push_back({boxOf(edje_object_part_object_get(edje, "face")),
                                     group == "elm/popup/base/c_popup_bottom"});
        }
    }

    void noteText(Evas_Object* object, bool line, const Box& clip, const Path& path) {
        Text text;
        text.object = object;
        const char* words = line ? evas_object_text_text_get(object)
                                 : evas_object_textblock_text_markup_get(object);
        text.words = line ? std::string(words != nullptr ? words : "")
                          : withoutMarkup(words != nullptr ? words : "");
        text.box = boxOf(object);
        text.clip = clip;
        // A text that is clipped away is a fault unless it is scrolled away.
        if (trimmed(text.words).empty() ||
            (path.scroller != nullptr && text.box.common(clip).empty())) {
            return;
        }
        text.turned = isTurned(object);
        text.control = path.control;
        text.scroller = path.scroller;
        text.part = partOf(path.edje, object);
        text.kind = kindOf(text.words, m_scene, m_vocabulary);
        text.role = roleOf(text);
        if (line) {
            measureLine(text);
        } else {
            measureBlock(text);
        }
        m_found.texts.push_back(text);
    }

    const Scene& m_scene;
    const Vocabulary& m_vocabulary;
    Inventory& m_found;
    Evas_Object* m_popup;
    Box m_picture;
};

}  // namespace

Inventory::Inventory(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary) {
    Walk(harness, scene, vocabulary, *this);
}

const Control* Inventory::controlOf(const Evas_Object* widget) const {
    for (const auto* list : {&controls, &holders}) {
        for (const Control& control : *list) {
            if (control.object == widget) {
                return &control;
            }
        }
    }
    return nullptr;
}

}  // namespace look
