// SPDX-License-Identifier: Apache-2.0
// Moves the focus with the arrow keys to everything on a screen that can take it, and checks the
// picture of each state.
#include "look/FocusWalk.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <set>

namespace look {

namespace {

constexpr const char* ARROWS[] = {"Up", "Down", "Left", "Right"};
constexpr int MOST_PRESSES = 6;
constexpr double RING_CONTRAST = 3.0;

std::string typeOf(const Evas_Object* object) {
    return evas_object_type_get(object);
}

void toEnd(Evas_Object* scroller, bool down) {
    int width = 0;
    int height = 0;
    elm_scroller_child_size_get(scroller, &width, &height);
    elm_scroller_region_show(scroller, 0, down ? std::max(0, height - 1) : 0, 1, 1);
}

}  // namespace

FocusWalk::FocusWalk(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary,
                     Checker* checker, Report& report, Keep keep)
    : m_harness(harness),
      m_scene(scene),
      m_vocabulary(vocabulary),
      m_checker(checker),
      m_report(report),
      m_keep(std::move(keep)) {}

void FocusWalk::go() {
    Evas_Object* const opening = m_harness.focused();
    const std::vector<Evas_Object*> widgets = focusable();
    m_anyFocusable = !widgets.empty();
    const bool opens = std::find(widgets.begin(), widgets.end(), opening) != widgets.end();
    m_report.enterState("opening");
    m_report.check("reach", opens || !m_anyFocusable,
                   "nothing that can take the focus has it when the screen opens");
    if (!opens) {
        arrive(nullptr, "");
        return;
    }
    std::deque<Evas_Object*> waiting = {opening};
    arrive(opening, "");
    while (!waiting.empty()) {
        Evas_Object* const from = waiting.front();
        waiting.pop_front();
        explore(from);
        for (const auto& [arrow, to] : m_leads[from]) {
            if (to != nullptr && m_leads.count(to) == 0 &&
                std::find(waiting.begin(), waiting.end(), to) == waiting.end()) {
                waiting.push_back(to);
            }
        }
    }
    checkReach(widgets, opening);
    checkRings();
    for (Evas_Object* widget : widgets) {
        if (typeOf(widget) == "elm_genlist") {
            visitRows(widget);
        } else if (typeOf(widget) == "elm_scroller") {
            visitEnds(widget);
        }
    }
}

// The widgets that take the focus when it is given to them. The toolkit's own list also has some
// that never take it.
std::vector<Evas_Object*> FocusWalk::focusable() {
    Evas_Object* const before = m_harness.focused();
    const Inventory inventory(m_harness, m_scene, m_vocabulary);
    std::vector<Evas_Object*> widgets;
    for (const auto* list : {&inventory.controls, &inventory.holders}) {
        for (const Control& control : *list) {
            if (control.row) {
                continue;
            }
            if (control.object != before) {
                elm_object_focus_set(control.object, EINA_TRUE);
            }
            if (control.object == before || m_harness.focused() == control.object) {
                widgets.push_back(control.object);
            }
            std::string name = control.type;
            for (const Text& text : inventory.texts) {
                if (text.control == control.object) {
                    name = coreOf(text.words);
                }
            }
            m_names[control.object] = name;
        }
    }
    if (before != nullptr && m_harness.focused() != before) {
        m_harness.focus(before);
    }
    return widgets;
}

std::string FocusWalk::nameOf(Evas_Object* widget) {
    if (widget == nullptr) {
        return "nothing";
    }
    const auto known = m_names.find(widget);
    return known != m_names.end() ? known->second : typeOf(widget);
}

void FocusWalk::arrive(Evas_Object* widget, const std::string& more) {
    const std::string name = nameOf(widget) + more;
    m_report.enterState(name);
    Inventory inventory(m_harness, m_scene, m_vocabulary);
    const Frame picture = m_harness.draw().copy();
    const std::size_t expected = m_anyFocusable ? 1 : 0;
    std::string rings;
    for (const Ring& ring : inventory.rings) {
        rings += " " + ring.box.words();
    }
    m_report.check("focus", inventory.rings.size() == expected,
                   std::to_string(inventory.rings.size()) + " rings, expected " +
                       std::to_string(expected) + ":" + rings);
    const Box ring = inventory.rings.empty() ? Box() : inventory.rings.front().box;
    const Control* control = widget != nullptr ? inventory.controlOf(widget) : nullptr;
    if (!ring.empty()) {
        m_report.check("focus", picture.whole().holds(ring),
                       "the ring at " + ring.words() + " leaves the screen");
        if (control != nullptr) {
            // A list shows its focus on a row.
            const bool list = control->type == "elm_genlist";
            const int rounding = 2;
            m_report.check(
                "focus",
                list
                    ? control->box.grown(static_cast<int>(std::lround(m_harness.mode().pixels(14))))
                          .holds(ring)
                    : ring.grown(rounding).holds(control->box),
                "the ring at " + ring.words() + " is not at " + control->type + " at " +
                    control->box.words());
        }
    }
    if (m_checker != nullptr) {
        m_checker->look(inventory, picture);
    }
    if (m_keep) {
        m_keep(m_harness, name, picture);
    }
    if (widget != nullptr && more.empty()) {
        m_stops[widget] = {name, picture, ring};
    }
}

void FocusWalk::prepare(Evas_Object* from, const std::string& arrow) {
    if (m_harness.focused() != from) {
        m_harness.focus(from);
    }
    const bool down = arrow == "Down";
    if (typeOf(from) == "elm_scroller") {
        toEnd(from, down);
        m_harness.settle();
    } else if (typeOf(from) == "elm_genlist") {
        Elm_Object_Item* row =
            down ? elm_genlist_last_item_get(from) : elm_genlist_first_item_get(from);
        if (row != nullptr) {
            elm_genlist_item_show(row, ELM_GENLIST_ITEM_SCROLLTO_IN);
            m_harness.settle();
            elm_object_item_focus_set(row, EINA_TRUE);
            m_harness.settle();
        }
    }
}

void FocusWalk::explore(Evas_Object* from) {
    for (const char* arrow : ARROWS) {
        prepare(from, arrow);
        m_harness.press(arrow);
        Evas_Object* const to = m_harness.focused();
        m_leads[from][arrow] = to;
        m_ways[{nameOf(from), arrow}] = nameOf(to);
        if (to != nullptr && m_stops.count(to) == 0) {
            arrive(to, "");
        }
    }
}

void FocusWalk::checkReach(const std::vector<Evas_Object*>& widgets, Evas_Object* opening) {
    m_report.enterState("arrows");
    for (Evas_Object* widget : widgets) {
        m_report.check("reach", m_stops.count(widget) != 0,
                       nameOf(widget) + " is not reached from " + nameOf(opening));
    }
    for (const auto& [from, stop] : m_stops) {
        std::map<Evas_Object*, int> presses = {{from, 0}};
        std::deque<Evas_Object*> waiting = {from};
        while (!waiting.empty()) {
            Evas_Object* const at = waiting.front();
            waiting.pop_front();
            for (const auto& [arrow, to] : m_leads[at]) {
                if (to != nullptr && presses.emplace(to, presses[at] + 1).second) {
                    waiting.push_back(to);
                }
            }
        }
        for (const auto& [to, other] : m_stops) {
            const auto found = presses.find(to);
            m_report.check("reach", found != presses.end() && found->second <= MOST_PRESSES,
                           "from " + stop.name + " to " + other.name + ": " +
                               (found != presses.end() ? std::to_string(found->second) + " presses"
                                                       : "no way"));
        }
    }
}

void FocusWalk::checkRings() {
    if (m_stops.size() == 1) {
        checkOnlyRing(m_stops.begin()->first);
        return;
    }
    for (const auto& [widget, stop] : m_stops) {
        for (const auto& [other, otherStop] : m_stops) {
            if (other != widget) {
                checkRing(stop.name, stop.picture, otherStop.picture, stop.ring);
                break;
            }
        }
    }
}

// The only widget of a screen never loses the focus, so the theme is asked to draw it without.
void FocusWalk::checkOnlyRing(Evas_Object* widget) {
    if (m_harness.focused() != widget) {
        m_harness.focus(widget);
    }
    const Stop& stop = m_stops[widget];
    elm_layout_signal_emit(widget, "elm,action,unfocus", "elm");
    m_harness.settle();
    const Frame without = m_harness.draw().copy();
    elm_layout_signal_emit(widget, "elm,action,focus", "elm");
    m_harness.settle();
    checkRing(stop.name, stop.picture, without, stop.ring);
}

void FocusWalk::checkRing(const std::string& name, const Frame& with, const Frame& without,
                          const Box& ring) {
    if (ring.empty()) {
        return;  // reported already
    }
    m_report.enterState(name);
    const int line = static_cast<int>(std::lround(m_harness.mode().pixels(2)));
    const int least = 2 * line * (ring.width() + ring.height() - 4 * line);
    // The ring itself, and not the face inside it, which may change as well.
    const Box inside = ring.grown(-static_cast<int>(std::lround(m_harness.mode().pixels(8))));
    const int changed = with.changedPixels(without, ring.grown(line), RING_CONTRAST) -
                        with.changedPixels(without, inside, RING_CONTRAST);
    m_report.check("focus", changed >= least,
                   "the focus at " + ring.words() + " changes " + std::to_string(changed) +
                       " pixels clearly, expected " + std::to_string(least));
}

void FocusWalk::visitRows(Evas_Object* list) {
    const unsigned count = elm_genlist_items_count(list);
    if (count == 0) {
        return;
    }
    Frame first;
    Frame second;
    Box ring;
    // The list does not scroll between the first row and the second.
    std::set<unsigned> rows = {0, std::min(1U, count - 1), count / 2, count - 1};
    for (const unsigned row : rows) {
        m_harness.focus(list);
        Elm_Object_Item* item = elm_genlist_nth_item_get(list, row);
        elm_genlist_item_show(item, ELM_GENLIST_ITEM_SCROLLTO_IN);
        m_harness.settle();
        elm_object_item_focus_set(item, EINA_TRUE);
        m_harness.settle();
        arrive(list, " row " + std::to_string(row + 1));
        if (row == 0) {
            first = m_harness.draw().copy();
            const Inventory inventory(m_harness, m_scene, m_vocabulary);
            ring = inventory.rings.empty() ? Box() : inventory.rings.front().box;
        } else if (row == 1) {
            second = m_harness.draw().copy();
        }
    }
    if (!second.empty()) {
        checkRing(nameOf(list) + " row 1", first, second, ring);
    }
}

void FocusWalk::visitEnds(Evas_Object* scroller) {
    int shown = 0;
    int whole = 0;
    elm_scroller_region_get(scroller, nullptr, nullptr, nullptr, &shown);
    elm_scroller_child_size_get(scroller, nullptr, &whole);
    if (whole <= shown) {
        return;
    }
    m_harness.focus(scroller);
    for (const bool down : {false, true}) {
        toEnd(scroller, down);
        m_harness.settle();
        arrive(scroller, down ? " at its end" : " at its start");
    }
}

}  // namespace look
