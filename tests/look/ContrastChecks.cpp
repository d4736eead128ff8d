// SPDX-License-Identifier: Apache-2.0
// Contrast: what a text or an icon looks like against what is behind it.
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <unordered_map>

#include "gui/ScreenParts.h"
#include "look/Checker.h"
#include "look/CheckerWords.h"

namespace look {

namespace {

std::string hex(Pixel pixel) {
    char text[16];
    std::snprintf(text, sizeof(text), "#%06x", pixel & 0xffffff);
    return text;
}

// Makes an object invisible during its lifetime. The owner of the object does not notice.
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

    // Only primitives: a group would give its colour to its parts for good.
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
            // A rectangle in a group is mostly a clipper.
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

}  // namespace

// The whole screen changes its colours in high contrast.
void Checker::checkContrastMode(const Frame& picture) {
    if (!m_harness.mode().contrast) {
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
    check("contrast", share < 1.0, number(share) + " % of the picture has the ordinary colours");
    const Evas_Object* layout = elm_layout_edje_get(support::layoutOf(m_harness.screen()));
    for (const char* part : {"background", "title"}) {
        const char* state = edje_object_part_state_get(layout, part, nullptr);
        check("contrast", state != nullptr && std::string(state) == "contrast",
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
        check("clipped", !text.ink.empty(), described(text) + " does not show");
        checkContrast("contrast", described(text), picture, without, text.ink,
                      m_harness.mode().contrast ? 7.0 : 4.5);
    });
    std::vector<Drawn> icons;
    for (Icon& icon : inventory.icons) {
        icons.push_back({icon.object, icon.box, &icon.ink});
    }
    leaveOut(icons, picture, [&](std::size_t place, const Frame& without) {
        const Icon& icon = inventory.icons[place];
        check("edges", !icon.ink.empty(), "the icon at " + icon.box.words() + " does not show");
        if (!icon.layered) {
            checkContrast("edges", "icon at " + icon.box.words(), picture, without, icon.ink,
                          m_harness.mode().contrast ? 4.5 : 3.0);
        }
    });
    m_harness.draw();
}

// Things that do not overlap are left out together, since drawing is the slow part; the others one
// by one.
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
        const Frame without = m_harness.draw();
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
        const Frame without = m_harness.draw();
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
    check(name, contrast >= least - CONTRAST_TOLERANCE,
          what + ": " + hex(colour) + " on " + hex(worst) + " is " + number(contrast) +
              ":1, expected " + number(least));
}

}  // namespace look
