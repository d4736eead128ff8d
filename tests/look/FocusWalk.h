// SPDX-License-Identifier: Apache-2.0
// Moves the focus with the arrow keys to everything on a screen that can take it, and checks the
// picture of each state.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "look/Checker.h"

namespace look {

class FocusWalk {
  public:
    using Keep =
        std::function<void(ScreenHarness& harness, const std::string& state, const Frame& picture)>;
    // Where an arrow leads from a widget, both by name.
    using Ways = std::map<std::pair<std::string, std::string>, std::string>;

    // CHECKER and KEEP may be null; each gets every picture.
    FocusWalk(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary,
              Checker* checker, Report& report, Keep keep);

    void go();
    const Ways& ways() const { return m_ways; }

  private:
    struct Stop {
        std::string name;
        Frame picture;
        Box ring;
    };

    std::vector<Evas_Object*> focusable();
    std::string nameOf(Evas_Object* widget);
    void arrive(Evas_Object* widget, const std::string& more);
    void explore(Evas_Object* from);
    // Puts a list or a scroller where ARROW leads out of it.
    void prepare(Evas_Object* from, const std::string& arrow);
    void visitRows(Evas_Object* list);
    void visitEnds(Evas_Object* scroller);
    void checkReach(const std::vector<Evas_Object*>& widgets, Evas_Object* opening);
    void checkRings();
    void checkRing(const std::string& name, const Frame& with, const Frame& without,
                   const Box& ring);
    void checkOnlyRing(Evas_Object* widget);

    ScreenHarness& m_harness;
    const Scene& m_scene;
    const Vocabulary& m_vocabulary;
    Checker* m_checker;
    Report& m_report;
    Keep m_keep;
    bool m_anyFocusable = false;
    std::map<Evas_Object*, Stop> m_stops;
    std::map<Evas_Object*, std::map<std::string, Evas_Object*>> m_leads;
    std::map<Evas_Object*, std::string> m_names;
    Ways m_ways;
};

}  // namespace look
