// SPDX-License-Identifier: Apache-2.0
// What stands on a screen: its texts, controls, icons, the ring of the focus and the card of a
// popup, with their places.
#include "look/Inventory.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>

#include <libintl.h>

namespace look {

namespace {

constexpr char VERSION[] = "1.2.3";  // that of the configuration that the screens read

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

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

Box plainBoxOf(const Evas_Object* object) {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object, &x, &y, &width, &height);
    return {x, y, x + width, y + height};
}

// The box around BOX once the map of HOLDER has moved its corners.
Box mapped(const Box& box, const Evas_Object* holder) {
    const Box whole = plainBoxOf(holder);
    const Evas_Map* map = evas_object_map_get(holder);
    if (map == nullptr || whole.empty()) {
        return box;
    }
    double corners[4][2];
    for (int corner = 0; corner < 4; ++corner) {
        int x = 0;
        int y = 0;
        evas_map_point_coord_get(map, corner, &x, &y, nullptr);
        corners[corner][0] = x;
        corners[corner][1] = y;
    }
    Box result;
    for (const int x : {box.left, box.right}) {
        for (const int y : {box.top, box.bottom}) {
            const double across = static_cast<double>(x - whole.left) / whole.width();
            const double down = static_cast<double>(y - whole.top) / whole.height();
            double place[2];
            for (int axis = 0; axis < 2; ++axis) {
                place[axis] = corners[0][axis] + across * (corners[1][axis] - corners[0][axis]) +
                              down * (corners[3][axis] - corners[0][axis]);
            }
            const int left = static_cast<int>(std::lround(place[0]));
            const int top = static_cast<int>(std::lround(place[1]));
            const Box point{left, top, left + 1, top + 1};
            result = result.empty() ? point : result.with(point);
        }
    }
    return {result.left, result.top, result.right - 1, result.bottom - 1};
}

bool isTurned(const Evas_Object* object) {
    for (const Evas_Object* at = object; at != nullptr; at = evas_object_smart_parent_get(at)) {
        if (evas_object_map_enable_get(at)) {
            return true;
        }
    }
    return false;
}

// What the clippers leave of a picture; empty when one of them hides all.
Box clipOf(const Evas_Object* object, const Box& picture) {
    Box clip = picture;
    for (const Evas_Object* at = evas_object_clip_get(object); at != nullptr;
         at = evas_object_clip_get(at)) {
        int alpha = 255;
        evas_object_color_get(at, nullptr, nullptr, nullptr, &alpha);
        if (!evas_object_visible_get(at) || alpha == 0) {
            return {};
        }
        clip = clip.common(plainBoxOf(at));
    }
    return clip;
}

// Whether WIDGET takes the focus and with it OK. The toolkit counts the icon in a button as one
// that could take it, so a button is asked for its look, too; a look that lies is told when the
// focus comes.
bool canBePressed(const Evas_Object* widget) {
    const char* const face =
        edje_object_part_state_get(elm_layout_edje_get(widget), "face", nullptr);
    return elm_object_focus_allow_get(widget) != EINA_FALSE &&
           (face == nullptr || std::strcmp(face, "blocked") != 0);
}

std::string withoutMarkup(const std::string& markup) {
    char* plain = evas_textblock_text_markup_to_utf8(nullptr, markup.c_str());
    std::string text(plain != nullptr ? plain : "");
    std::free(plain);
    return text;
}

// Without blanks at either end and without marks of direction.
std::string trimmed(std::string text) {
    for (const char* mark : {"\xE2\x80\x8E", "\xE2\x80\x8F", "\xC2\xA0", "\xE2\x80\xA9"}) {
        for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
            text.replace(at, std::strlen(mark), std::strlen(mark) == 2 ? " " : "");
        }
    }
    const auto first = text.find_first_not_of(" \n\t");
    const auto last = text.find_last_not_of(" \n\t");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::string withoutColon(const std::string& text) {
    std::string rest = trimmed(text);
    if (!rest.empty() && rest.front() == ':') {
        rest = trimmed(rest.substr(1));
    }
    if (!rest.empty() && rest.back() == ':') {
        rest = trimmed(rest.substr(0, rest.size() - 1));
    }
    return rest;
}

std::string withoutEntities(std::string text) {
    const std::pair<const char*, const char*> entities[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}};
    for (const auto& [entity, letter] : entities) {
        for (auto at = text.find(entity); at != std::string::npos; at = text.find(entity, at + 1)) {
            text.replace(at, std::strlen(entity), letter);
        }
    }
    return text;
}

bool isName(const std::string& words, const Scene& scene) {
    constexpr std::size_t LEAST = 16;  // a row that cuts a name keeps more than that
    for (const std::string& name : scene.names) {
        for (const std::string& form :
             {trimmed(name), trimmed(withoutMarkup(name)), trimmed(withoutEntities(name))}) {
            if (words == form || (words.size() >= LEAST && startsWith(form, words))) {
                return true;
            }
        }
    }
    return false;
}

Kind kindOf(const std::string& words, const Scene& scene, const Vocabulary& vocabulary) {
    const std::string core = withoutColon(words);
    if (core.empty()) {
        return Kind::Mark;
    }
    for (const std::string& code : scene.codes) {
        if (core == code) {
            return Kind::Code;
        }
    }
    if (vocabulary.has(trimmed(words)) || vocabulary.has(core)) {
        return Kind::Ours;
    }
    if (isName(trimmed(words), scene) || isName(core, scene)) {
        return Kind::Name;
    }
    return Kind::Stranger;
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
        return Role::Title;
    }
    if (text.control != nullptr) {
        return Role::Control;
    }
    for (const char* part : {"text2", "shop1", "shopname", "SoftwareVersion"}) {
        if (text.part == part) {
            return Role::Secondary;
        }
    }
    return Role::Body;
}

// The last value of KEY in a style, such as "font_size"; what stands in quotes inside is left out.
std::string styleValue(const std::string& style, const std::string& key) {
    std::string value;
    const std::string sought = " " + key + "=";
    const std::string padded = " " + style;
    for (auto at = padded.find(sought); at != std::string::npos; at = padded.find(sought, at + 1)) {
        const auto start = at + sought.size();
        value = padded.substr(start, padded.find_first_of(" '", start) - start);
    }
    return value;
}

// The default format of a textblock, with what the widget has laid over it.
std::string formatOf(const Evas_Object* block) {
    std::string format;
    const Evas_Textblock_Style* styles[] = {evas_object_textblock_style_get(block),
                                            evas_object_textblock_style_user_peek(block)};
    for (const Evas_Textblock_Style* style : styles) {
        const char* text = style != nullptr ? evas_textblock_style_get(style) : nullptr;
        const char* start = text != nullptr ? std::strstr(text, "DEFAULT='") : nullptr;
        if (start != nullptr) {
            start += std::strlen("DEFAULT='");
            const char* end = std::strchr(start, '\'');
            format += std::string(" ") + std::string(start, end != nullptr ? end - start : 0);
        }
    }
    return format;
}

int linesOf(const Evas_Object* block) {
    int lines = 0;
    while (evas_object_textblock_line_number_geometry_get(block, lines, nullptr, nullptr, nullptr,
                                                          nullptr)) {
        ++lines;
    }
    return lines;
}

// The number that TEXT begins with, or OTHERWISE.
double numberIn(const std::string& text, double otherwise) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return end != text.c_str() ? number : otherwise;
}

// Measures a block without its ellipsis, in the same width.
void measureBlock(Text& text) {
    const std::string format = formatOf(text.object);
    text.font = styleValue(format, "font");
    text.size = numberIn(styleValue(format, "font_size"), 0.0) * evas_object_scale_get(text.object);
    const std::string ellipsis = styleValue(format, "ellipsis");
    const bool mayEnd = numberIn(ellipsis, -1.0) >= 0.0;
    const Box plain = plainBoxOf(text.object);
    text.lines = linesOf(text.object);
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(text.object, &width, &height);

    Evas_Object* free = evas_object_textblock_add(evas_object_evas_get(text.object));
    Evas_Textblock_Style* style = evas_textblock_style_new();
    evas_textblock_style_set(
        style,
        ("DEFAULT='" + format + " ellipsis=-1.0' br='\n' b='+ font_weight=Bold' tab='\t'").c_str());
    evas_object_textblock_style_set(free, style);
    evas_object_scale_set(free, evas_object_scale_get(text.object));
    evas_object_textblock_text_markup_set(free, evas_object_textblock_text_markup_get(text.object));
    evas_object_resize(free, plain.width(), 100 * std::max(1, plain.height()));
    int freeWidth = 0;
    int freeHeight = 0;
    evas_object_textblock_size_formatted_get(free, &freeWidth, &freeHeight);
    const int freeLines = linesOf(free);
    evas_object_del(free);
    evas_textblock_style_free(style);

    text.ellipsis = mayEnd && (text.lines < freeLines || width + 2 < freeWidth);
    text.natural = {text.box.left, text.box.top, text.box.left + freeWidth,
                    text.box.top + freeHeight};
}

void measureLine(Text& text) {
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    evas_object_text_font_get(text.object, &font, &size);
    text.font = font != nullptr ? font : "";
    text.size = size * evas_object_scale_get(text.object);

    Evas_Object* free = evas_object_text_add(evas_object_evas_get(text.object));
    evas_object_text_font_set(free, font, size);
    evas_object_scale_set(free, evas_object_scale_get(text.object));
    evas_object_text_text_set(free, evas_object_text_text_get(text.object));
    const Box natural = plainBoxOf(free);
    evas_object_del(free);
    const bool mayEnd = evas_object_text_ellipsis_get(text.object) >= 0.0;
    text.ellipsis = mayEnd && natural.width() > text.box.width() + 1;
    text.natural = {text.box.left, text.box.top, text.box.left + natural.width(),
                    text.box.top + natural.height()};
}

// What the theme itself draws to be understood: the arrow of the drop-down, the tick of a picked
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

// Whether nothing that OBJECT is clipped to is out of sight, and it has a size of its own.
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
    Walk(Stage& stage, const Scene& scene, const Vocabulary& vocabulary, Inventory& found)
        : m_scene(scene),
          m_vocabulary(vocabulary),
          m_found(found),
          m_popup(stage.popup()),
          m_picture{0, 0, stage.mode().width, stage.mode().height} {
        for (Evas_Object* top = evas_object_bottom_get(stage.canvas()); top != nullptr;
             top = evas_object_above_get(top)) {
            visit(top, Path(), m_popup == nullptr);
        }
    }

  private:
    void visit(Evas_Object* object, Path path, bool wanted) {
        if (!evas_object_visible_get(object)) {
            return;
        }
        const Box clip = clipOf(object, m_picture);
        if (clip.empty()) {
            return;
        }
        wanted = wanted || object == m_popup;
        const std::string type = typeOf(object);
        if (wanted) {
            noteWidget(object, type, clip, path);
        }
        if (type == "edje") {
            noteGroup(object, clip, path, wanted);
        } else if (wanted && (type == "text" || type == "textblock")) {
            noteText(object, type == "text", clip, path);
        }
        Eina_List* members = evas_object_smart_members_get(object);
        void* member = nullptr;
        EINA_LIST_FREE(members, member) {
            visit(static_cast<Evas_Object*>(member), path, wanted);
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
            m_found.circles.push_back(control);
        } else if (type == "elm_icon") {
            m_found.icons.push_back(
                {object, path.control, boxOf(object), {}, false, isArrow(object)});
            path.icon = object;
        }
    }

    void noteGroup(Evas_Object* edje, const Box& clip, Path& path, bool wanted) {
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
        if (!wanted) {
            return;
        }
        // The tree of levels grows to where the next one is.
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
        // Words that cannot be seen are a fault, but for those that are scrolled away.
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

bool scrollsFurther(Evas_Object* scroller, bool down) {
    int y = 0;
    int height = 0;
    int whole = 0;
    elm_scroller_region_get(scroller, nullptr, &y, nullptr, &height);
    elm_scroller_child_size_get(scroller, nullptr, &whole);
    return down ? y + height < whole : y > 0;
}

}  // namespace

const char* wordOf(Kind kind) {
    switch (kind) {
        case Kind::Ours:
            return "translation";
        case Kind::Name:
            return "name";
        case Kind::Code:
            return "code";
        case Kind::Mark:
            return "mark";
        default:
            return "stranger";
    }
}

const char* wordOf(Fit fit) {
    switch (fit) {
        case Fit::Fits:
            return "fits";
        case Fit::Wraps:
            return "wraps";
        case Fit::Ellipsis:
            return "ellipsis";
        default:
            return "CUT";
    }
}

Vocabulary::Vocabulary(const std::vector<std::string>& ids) {
    for (const std::string& id : ids) {
        const std::string text = trimmed(withoutMarkup(dgettext("ZOLT", id.c_str())));
        m_texts.insert(text);
        m_texts.insert(text + " : " + VERSION);
        m_texts.insert(withoutColon(text));
    }
}

bool Vocabulary::has(const std::string& text) const {
    return m_texts.count(text) != 0;
}

Box boxOf(const Evas_Object* object) {
    Box box = plainBoxOf(object);
    for (const Evas_Object* at = object; at != nullptr; at = evas_object_smart_parent_get(at)) {
        if (evas_object_map_enable_get(at)) {
            box = mapped(box, at);
        }
    }
    return box;
}

std::string coreOf(const std::string& words) {
    return withoutColon(words);
}

Fit fitOf(const Text& text) {
    if (!text.turned && !text.ink.empty()) {
        const bool above = text.natural.top < text.clip.top && text.ink.top <= text.clip.top;
        const bool below =
            text.natural.bottom > text.clip.bottom && text.ink.bottom >= text.clip.bottom;
        const bool aside = (text.box.left < text.clip.left && text.ink.left <= text.clip.left) ||
                           (std::max(text.natural.right, text.box.right) > text.clip.right &&
                            text.ink.right >= text.clip.right);
        const bool scrolls = text.scroller != nullptr;
        if (aside || (above && !(scrolls && scrollsFurther(text.scroller, false))) ||
            (below && !(scrolls && scrollsFurther(text.scroller, true)))) {
            return Fit::Cut;
        }
    }
    if (text.ellipsis) {
        return Fit::Ellipsis;
    }
    return text.lines > 1 ? Fit::Wraps : Fit::Fits;
}

Inventory::Inventory(Stage& stage, const Scene& scene, const Vocabulary& vocabulary) {
    Walk(stage, scene, vocabulary, *this);
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
