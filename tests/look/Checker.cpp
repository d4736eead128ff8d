// SPDX-License-Identifier: Apache-2.0
// Holds one picture of a screen against the bars.
#include "look/Checker.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <regex>
#include <unordered_map>

#include "gui/ScreenParts.h"
#include "look/Catalogue.h"

namespace look {

namespace {

constexpr double ROUNDING = 0.03;  // of a contrast

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.2f", value);
    return text;
}

std::string hex(Pixel pixel) {
    char text[16];
    std::snprintf(text, sizeof(text), "#%06x", pixel & 0xffffff);
    return text;
}

std::string described(const Text& text) {
    constexpr std::size_t MOST = 60;
    return std::string(wordOf(text.kind)) + " \"" + text.words.substr(0, MOST) +
           (text.words.size() > MOST ? "…" : "") + "\" at " + text.box.words();
}

// Makes an object invisible for as long as this lives, in a way that its owner does not notice.
class LeftOut {
  public:
    explicit LeftOut(Evas_Object* object) { leaveOut(object); }
    ~LeftOut() {
        for (const Colour& colour : m_colours) {
            evas_object_color_set(colour.object, colour.red, colour.green, colour.blue,
                                  colour.alpha);
        }
    }
    LeftOut(const LeftOut&) = delete;
    LeftOut& operator=(const LeftOut&) = delete;

  private:
    struct Colour {
        Evas_Object* object;
        int red, green, blue, alpha;
    };

    // Only what is drawn itself: a group would hand its colour on to its parts for good.
    void leaveOut(Evas_Object* object) {
        const std::string type = evas_object_type_get(object);
        if (type == "image" || type == "text" || type == "textblock" || type == "rectangle" ||
            type == "vectors") {
            Colour colour{object, 0, 0, 0, 0};
            evas_object_color_get(object, &colour.red, &colour.green, &colour.blue, &colour.alpha);
            m_colours.push_back(colour);
            evas_object_color_set(object, 0, 0, 0, 0);
            return;
        }
        Eina_List* members = evas_object_smart_members_get(object);
        void* member = nullptr;
        EINA_LIST_FREE(members, member) {
            // A rectangle inside is a clipper of others more often than a drawing.
            auto* part = static_cast<Evas_Object*>(member);
            if (std::string(evas_object_type_get(part)) != "rectangle") {
                leaveOut(part);
            }
        }
    }

    std::vector<Colour> m_colours;
};

// The colours of an area with how often each comes, near ones taken together.
class Colours {
  public:
    void add(Pixel pixel) {
        Sum& sum = m_sums[(pixel >> 3) & 0x1f1f1f];
        ++sum.count;
        for (int place = 0; place < 3; ++place) {
            sum.parts[static_cast<std::size_t>(place)] += (pixel >> (8 * place)) & 255;
        }
        ++m_count;
    }
    // The commonest.
    Pixel main() const {
        const Sum* best = nullptr;
        for (const auto& [key, sum] : m_sums) {
            best = best == nullptr || sum.count > best->count ? &sum : best;
        }
        return best != nullptr ? best->mean() : 0;
    }
    // The one nearest to COLOUR by contrast; one that hardly comes at all is left out.
    Pixel nearest(Pixel colour) const {
        Pixel worst = 0;
        double least = 100.0;
        for (const auto& [key, sum] : m_sums) {
            const double contrast = contrastOf(sum.mean(), colour);
            if (sum.count * 500 >= m_count && contrast < least) {
                least = contrast;
                worst = sum.mean();
            }
        }
        return worst;
    }
    bool empty() const { return m_count == 0; }

  private:
    struct Sum {
        long count = 0;
        std::array<long, 3> parts{};
        Pixel mean() const {
            Pixel pixel = 0xff;
            for (std::size_t place = 3; place-- > 0;) {
                pixel = (pixel << 8) | static_cast<Pixel>(parts[place] / count);
            }
            return pixel;
        }
    };
    std::unordered_map<Pixel, Sum> m_sums;
    long m_count = 0;
};

bool isRead(const Text& text) {
    return text.role != Role::Secondary && text.kind != Kind::Mark;
}

std::string keyOf(const Text& text) {
    return text.part + "/" + coreOf(text.words);
}

}  // namespace

Sizes sizesOf(const Inventory& inventory) {
    Sizes sizes;
    for (const Text& text : inventory.texts) {
        sizes[keyOf(text)] = text.size;
    }
    return sizes;
}

Checker::Checker(Stage& stage, Easel& easel, Report& report, const Sizes* ordinary)
    : m_stage(stage), m_easel(easel), m_report(report), m_ordinary(ordinary) {}

bool Checker::ask(const std::string& name, bool good, const std::string& detail) {
    m_report.check(name, good, detail);
    return good;
}

void Checker::look(Inventory& inventory, const Frame& picture) {
    m_report.countPicture();
    checkContrastMode(picture);
    findInk(inventory, picture);
    for (Text& text : inventory.texts) {
        checkFit(text);
        checkWords(text);
        checkSize(text);
        checkOrder(text);
    }
    checkPlaces(inventory);
    checkOverlap(inventory);
    checkEdges(inventory, picture);
    for (const Control& control : inventory.controls) {
        if (!control.active) {
            m_outOfReach.insert(control.object);
        }
        ask("focus", control.object != m_stage.focused() || m_outOfReach.count(control.object) == 0,
            control.type + " at " + control.box.words() + " looked out of reach and is not");
    }
}

// High contrast is a look of its own, which the screen answers with as a whole.
void Checker::checkContrastMode(const Frame& picture) {
    if (!m_stage.mode().contrast) {
        return;
    }
    // It is made of black, white and yellow; the ordinary look is blue through and through.
    const Box whole = picture.whole();
    long blue = 0;
    for (int y = whole.top; y < whole.bottom; ++y) {
        for (int x = whole.left; x < whole.right; ++x) {
            const Pixel there = picture.at(x, y);
            blue += static_cast<int>(there & 255U) > static_cast<int>((there >> 16U) & 255U) + 8;
        }
    }
    const double share =
        100.0 * static_cast<double>(blue) / (static_cast<double>(whole.width()) * whole.height());
    ask("contrast", share < 1.0, number(share) + " % of the picture has the ordinary colours");
    const Evas_Object* layout = elm_layout_edje_get(support::layoutOf(m_stage.screen()));
    for (const char* part : {"background", "title"}) {
        const char* state = edje_object_part_state_get(layout, part, nullptr);
        ask("contrast", state != nullptr && std::string(state) == "contrast",
            std::string(part) + " does not answer to high contrast");
    }
}

void Checker::findInk(Inventory& inventory, const Frame& picture) {
    std::vector<Drawn> texts;
    for (Text& text : inventory.texts) {
        texts.push_back({text.object, text.box.with(text.natural), &text.ink});
    }
    leaveOut(texts, picture, [&](std::size_t place, const Frame& without) {
        const Text& text = inventory.texts[place];
        // Of a line that is scrolled half away, the rims of its letters may be all that shows.
        if (text.scroller != nullptr &&
            (text.box.top < text.clip.top || text.box.bottom > text.clip.bottom)) {
            return;
        }
        ask("clipped", !text.ink.empty(), described(text) + " does not show");
        checkContrast("contrast", described(text), picture, without, text.ink,
                      m_stage.mode().contrast ? 7.0 : 4.5);
    });
    std::vector<Drawn> icons;
    for (Icon& icon : inventory.icons) {
        icons.push_back({icon.object, icon.box, &icon.ink});
    }
    leaveOut(icons, picture, [&](std::size_t place, const Frame& without) {
        const Icon& icon = inventory.icons[place];
        ask("edges", !icon.ink.empty(), "the icon at " + icon.box.words() + " does not show");
        if (!icon.layered) {
            checkContrast("edges", "icon at " + icon.box.words(), picture, without, icon.ink,
                          m_stage.mode().contrast ? 4.5 : 3.0);
        }
    });
    m_stage.draw();
}

// All that stand clear of one another are left out at once, since to draw takes longer than to
// look; the others one by one.
void Checker::leaveOut(const std::vector<Drawn>& things, const Frame& picture,
                       const std::function<void(std::size_t, const Frame&)>& look) {
    const int margin = static_cast<int>(std::lround(pixels(4)));
    std::vector<std::size_t> alone;
    std::vector<std::size_t> together;
    std::vector<Box> areas;
    for (std::size_t one = 0; one < things.size(); ++one) {
        const Box area = things[one].box.grown(margin);
        bool clear = true;
        for (std::size_t other = 0; other < things.size(); ++other) {
            clear = clear && (other == one || !area.meets(things[other].box.grown(margin)));
        }
        (clear ? together : alone).push_back(one);
        if (clear) {
            areas.push_back(area);
        }
    }
    if (!together.empty()) {
        std::vector<std::unique_ptr<LeftOut>> leftOut;
        leftOut.reserve(together.size());
        for (const std::size_t one : together) {
            leftOut.push_back(std::make_unique<LeftOut>(things[one].object));
        }
        const Frame without = m_stage.draw();
        if (picture.differsOnlyIn(without, areas)) {
            for (std::size_t place = 0; place < together.size(); ++place) {
                *things[together[place]].ink = picture.differenceIn(without, areas[place]);
                look(together[place], without);
            }
        } else {
            alone.insert(alone.end(), together.begin(), together.end());
        }
    }
    for (const std::size_t one : alone) {
        const LeftOut leftOut(things[one].object);
        const Frame without = m_stage.draw();
        *things[one].ink = picture.differenceTo(without);
        look(one, without);
    }
}

void Checker::checkContrast(const std::string& name, const std::string& what, const Frame& picture,
                            const Frame& without, const Box& ink, double least) {
    if (ink.empty()) {
        return;
    }
    int most = 0;
    for (int y = ink.top; y < ink.bottom; ++y) {
        for (int x = ink.left; x < ink.right; ++x) {
            most = std::max(most, distanceOf(picture.at(x, y), without.at(x, y)));
        }
    }
    // Thin strokes have few pixels of their full colour, so the nearest to it count as well.
    Colours core;
    Colours behind;
    const Box around = ink.grown(2).common(picture.whole());
    for (int y = around.top; y < around.bottom; ++y) {
        for (int x = around.left; x < around.right; ++x) {
            const Pixel there = without.at(x, y);
            behind.add(there);
            if (distanceOf(picture.at(x, y), there) * 10 >= most * 7) {
                core.add(picture.at(x, y));
            }
        }
    }
    const Pixel colour = core.main();
    const Pixel worst = behind.nearest(colour);
    const double contrast = contrastOf(colour, worst);
    ask(name, contrast >= least - ROUNDING,
        what + ": " + hex(colour) + " on " + hex(worst) + " is " + number(contrast) +
            ":1, wanted " + number(least));
}

void Checker::checkFit(Text& text) {
    text.fit = fitOf(text);
    m_report.countText(wordOf(text.kind), wordOf(text.fit));
    const bool mayEnd = text.kind == Kind::Name;
    ask("clipped", text.fit != Fit::Cut && (mayEnd || text.fit != Fit::Ellipsis),
        described(text) + ": " + wordOf(text.fit) + ", asks for " + text.natural.words() +
            ", may show in " + text.clip.words() + ", ink " + text.ink.words());
    if (mayEnd && text.fit != Fit::Fits) {
        m_report.note(described(text) + ": " + wordOf(text.fit));
    }
}

void Checker::checkWords(const Text& text) {
    static const std::regex id("(TV_|COM_|SID_)[A-Z0-9_]{3,}|ZOLT_CONTENT_SPACER");
    ask("ids", text.kind != Kind::Stranger, described(text) + ": neither a translation nor a name");
    if (text.kind == Kind::Name) {
        return;
    }
    // A text that a catalogue lacks is its id, which only the catalogue can mend: what becomes of
    // the screen then is told.
    const bool hasId = std::regex_search(text.words, id);
    if (m_stage.mode().language == Catalogue::lacking()) {
        m_report.note(described(text) + (hasId ? ": an id, " : ": a text, ") + wordOf(text.fit));
    } else {
        ask("ids", !hasId, described(text) + ": an id");
    }
    for (const char* rest : {"<br", "&amp;", "&lt;", "%s", "\xEF\xBF\xBD"}) {
        ask("ids", text.words.find(rest) == std::string::npos, described(text) + ": has " + rest);
    }
    int place = 0;
    Eina_Unicode before = 0;
    while (const Eina_Unicode letter = eina_unicode_utf8_next_get(text.words.c_str(), &place)) {
        if (letter > ' ') {
            ask("ids", m_easel.draws(text.font, before, letter),
                described(text) + ": no font has letter " + std::to_string(letter));
        }
        before = letter;
    }
}

void Checker::checkSize(const Text& text) {
    const double at1080 = text.size / m_stage.mode().scale();
    const double factor = m_stage.mode().enlarged ? 1.2 : 1.0;
    const double least = text.role == Role::Title       ? 48.0
                         : text.role == Role::Secondary ? 26.0
                         : text.kind == Kind::Mark      ? 24.0
                                                        : 30.0;
    ask("size", at1080 >= least * factor - 0.2,
        described(text) + ": " + number(at1080) + " px at 1080 lines, wanted " +
            number(least * factor));
    if (m_ordinary == nullptr) {
        return;
    }
    const auto ordinary = m_ordinary->find(keyOf(text));
    if (ordinary != m_ordinary->end()) {
        ask("size", text.size >= ordinary->second * 1.19,
            described(text) + ": enlarged to " + number(text.size) + " from " +
                number(ordinary->second));
    }
    if (isRead(text)) {
        const double capital = at1080 * m_easel.capitalHeight(text.font);
        ask("size", capital >= 38.0 - 0.2,
            described(text) + ": capitals of " + number(capital) + " px at 1080 lines, wanted 38");
    }
}

// A code is read from left to right, whatever stands around it.
void Checker::checkOrder(const Text& text) {
    if (text.kind != Kind::Code || std::string(evas_object_type_get(text.object)) != "textblock") {
        return;
    }
    Evas_Textblock_Cursor* cursor = evas_object_textblock_cursor_new(text.object);
    int last = -1;
    bool ordered = true;
    for (int place = 0; place < eina_unicode_utf8_get_len(text.words.c_str()); ++place) {
        int x = 0;
        evas_textblock_cursor_pos_set(cursor, place);
        evas_textblock_cursor_char_geometry_get(cursor, &x, nullptr, nullptr, nullptr);
        ordered = ordered && x > last;
        last = x;
    }
    evas_textblock_cursor_free(cursor);
    ask("mirror", ordered, described(text) + ": its characters are not in order");
}

Box Checker::safeArea() const {
    const Mode& mode = m_stage.mode();
    // A pixel is left for rounding.
    const int side = static_cast<int>(std::floor(pixels(96))) - 1;
    const int edge = static_cast<int>(std::floor(pixels(54))) - 1;
    return {side, edge, mode.width - side, mode.height - edge};
}

void Checker::checkPlaces(const Inventory& inventory) {
    const Box safe = safeArea();
    for (const Text& text : inventory.texts) {
        if (!text.ink.empty()) {
            ask("safe", safe.holds(text.ink), described(text) + ": ink " + text.ink.words());
        }
    }
    for (const auto* list : {&inventory.controls, &inventory.holders, &inventory.circles}) {
        for (const Control& control : *list) {
            const Box seen = control.box.common(control.clip);
            ask("safe", seen.empty() ? control.row : safe.holds(seen),
                control.type + " at " + control.box.words());
        }
    }
    for (const Icon& icon : inventory.icons) {
        ask("safe", icon.ink.empty() || safe.holds(icon.ink), "icon at " + icon.ink.words());
    }
    ask("clipped",
        std::any_of(inventory.texts.begin(), inventory.texts.end(),
                    [](const Text& text) { return text.role == Role::Title; }),
        "there is no title");
    for (const Control& control : inventory.controls) {
        ask("clipped",
            control.type != "elm_button" ||
                std::any_of(inventory.texts.begin(), inventory.texts.end(),
                            [&](const Text& text) { return text.control == control.object; }),
            control.type + " at " + control.box.words() + " has no words");
    }
    for (const Control& control : inventory.controls) {
        ask("controls", control.box.height() >= static_cast<int>(std::floor(pixels(64))),
            control.type + " at " + control.box.words() + " is " +
                std::to_string(control.box.height()) + " px high, wanted " + number(pixels(64)));
    }
    for (const Card& card : inventory.cards) {
        ask("card", safe.holds(card.box), "card at " + card.box.words());
        if (card.message) {
            const Mode& mode = m_stage.mode();
            const int across = std::abs(card.box.left + card.box.right - mode.width);
            const int down = std::abs(card.box.top + card.box.bottom - mode.height);
            ask("card", across <= 4 && down <= 4,
                "card at " + card.box.words() + " is not in the middle");
        }
    }
}

void Checker::checkOverlap(const Inventory& inventory) {
    const auto& texts = inventory.texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        for (std::size_t j = i + 1; j < texts.size(); ++j) {
            ask("overlap", !texts[i].ink.meets(texts[j].ink),
                described(texts[i]) + " and " + described(texts[j]) + ": inks " +
                    texts[i].ink.words() + " and " + texts[j].ink.words());
        }
        for (const Icon& icon : inventory.icons) {
            ask("overlap", !texts[i].ink.meets(icon.ink),
                described(texts[i]) + " and the icon at " + icon.ink.words());
        }
        const Control* control =
            texts[i].control != nullptr ? inventory.controlOf(texts[i].control) : nullptr;
        if (control != nullptr && !texts[i].ink.empty()) {
            ask("overlap", control->box.holds(texts[i].ink),
                described(texts[i]) + ": ink " + texts[i].ink.words() + " leaves its " +
                    control->type + " at " + control->box.words());
        }
        for (const Card& card : inventory.cards) {
            ask("overlap", texts[i].ink.empty() || card.box.holds(texts[i].ink),
                described(texts[i]) + ": ink " + texts[i].ink.words() + " leaves the card at " +
                    card.box.words());
        }
    }
    const auto& controls = inventory.controls;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        for (std::size_t j = i + 1; j < controls.size(); ++j) {
            const Box one = controls[i].box.common(controls[i].clip);
            const Box other = controls[j].box.common(controls[j].clip);
            ask("overlap", !one.meets(other),
                controls[i].type + " at " + one.words() + " and " + controls[j].type + " at " +
                    other.words());
        }
        for (const Control& holder : inventory.holders) {
            ask("overlap", controls[i].row || !controls[i].box.meets(holder.box),
                controls[i].type + " at " + controls[i].box.words() + " and " + holder.type +
                    " at " + holder.box.words());
        }
        for (const Text& text : texts) {
            ask("overlap",
                text.control == controls[i].object ||
                    !controls[i].box.common(controls[i].clip).meets(text.ink),
                controls[i].type + " at " + controls[i].box.words() + " and " + described(text));
        }
    }
}

void Checker::checkEdges(const Inventory& inventory, const Frame& picture) {
    for (const Control& control : inventory.controls) {
        if (control.row || !control.active) {
            continue;
        }
        Box around = control.box;
        for (const Ring& ring : inventory.rings) {
            around = ring.box.holds(control.box) ? ring.box : around;
        }
        checkEdge(control.type, picture, control.box, around);
    }
    for (const Card& card : inventory.cards) {
        checkEdge("card", picture, card.box, card.box);
    }
    // A list has no edge of its own: it fills the card of its popup.
    for (const Control& holder : inventory.holders) {
        if (holder.type == "elm_scroller") {
            Box around = holder.box;
            for (const Ring& ring : inventory.rings) {
                around = ring.box.holds(holder.box) ? ring.box : around;
            }
            checkEdge(holder.type, picture, holder.box, around);
        }
    }
}

// The best line along the border, from AROUND to a little inside BOX, must stand out from what is
// next to AROUND along most of its way. Corners are left out: they are round.
void Checker::checkEdge(const std::string& what, const Frame& picture, const Box& box,
                        const Box& around) {
    const double least = m_stage.mode().contrast ? 4.5 : 3.0;
    const int inside = static_cast<int>(std::lround(pixels(6)));
    // Nearer to it than another control, whose ring may be that far out.
    const std::array<int, 3> beyond = {static_cast<int>(std::lround(pixels(4))),
                                       static_cast<int>(std::lround(pixels(8))),
                                       static_cast<int>(std::lround(pixels(12)))};
    const int corner = static_cast<int>(std::lround(pixels(24)));
    const int reach = box.left - around.left;
    double best = 0.0;
    for (int line = -reach; line <= inside; ++line) {
        long along = 0;
        long clear = 0;
        // STEPX and STEPY lead from the point at the outer border to what is beyond it.
        const auto sample = [&](int x, int y, int borderX, int borderY, int stepX, int stepY) {
            if (!picture.whole().holds({x, y, x + 1, y + 1})) {
                return;
            }
            double contrast = 0.0;
            for (const int distance : beyond) {
                const int otherX = borderX + stepX * distance;
                const int otherY = borderY + stepY * distance;
                if (picture.whole().holds({otherX, otherY, otherX + 1, otherY + 1})) {
                    contrast = std::max(contrast,
                                        contrastOf(picture.at(x, y), picture.at(otherX, otherY)));
                }
            }
            ++along;
            clear += contrast >= least - ROUNDING ? 1 : 0;
        };
        for (int x = box.left + corner; x < box.right - corner; x += 2) {
            sample(x, box.top + line, x, around.top, 0, -1);
            sample(x, box.bottom - 1 - line, x, around.bottom - 1, 0, 1);
        }
        for (int y = box.top + corner; y < box.bottom - corner; y += 2) {
            sample(box.left + line, y, around.left, y, -1, 0);
            sample(box.right - 1 - line, y, around.right - 1, y, 1, 0);
        }
        if (along > 0) {
            best = std::max(best, static_cast<double>(clear) / static_cast<double>(along));
        }
    }
    ask("edges", best >= 0.9,
        what + " at " + box.words() + ": its edge stands out by " + number(least) + ":1 along " +
            number(best * 100) + " % only");
}

}  // namespace look
