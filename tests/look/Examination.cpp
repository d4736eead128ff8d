// SPDX-License-Identifier: Apache-2.0
// Looks at one scene in one mode from every side. One for each process: it starts the toolkit.
#include "look/Examination.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "common/ZoltConfig.h"
#include "look/Catalogue.h"
#include "look/Mirror.h"
#include "look/Picture.h"
#include "look/Turning.h"

namespace look {

namespace {

bool isMadeUp(const std::string& language) {
    const auto& all = Catalogue::madeUp();
    return std::find(all.begin(), all.end(), language) != all.end();
}

// The widget that has the focus keeps it, whatever arrow is pressed. No theme can do that.
void spoilArrows(Stage& stage) {
    Evas_Object* const widget = stage.focused();
    for (const Elm_Focus_Direction direction :
         {ELM_FOCUS_UP, ELM_FOCUS_DOWN, ELM_FOCUS_LEFT, ELM_FOCUS_RIGHT}) {
        elm_object_focus_next_object_set(widget, widget, direction);
    }
}

// A key stops CIRCLE, as on a screen whose loop has other things to do.
void spoilCircle(Stage& stage, Evas_Object* circle) {
    evas_object_event_callback_add(
        evas_focus_get(stage.canvas()), EVAS_CALLBACK_KEY_DOWN,
        [](void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
            elm_layout_signal_emit(static_cast<Evas_Object*>(data), "stop_pulse", "elm");
        },
        circle);
}

}  // namespace

Examination::Examination(const Options& options, const std::string& madeUp)
    : m_options(options), m_madeUp(madeUp), m_toolkit(options.themeFolder + "/gui.edj") {
    m_toolkit.SetUp();
    const std::string configuration = m_folder.write(
        "config.xml", "<config><item name=\"LayoutPath\">" + options.themeFolder +
                          "</item><item name=\"SourceVersion\">1.2.3</item></config>");
    ZoltConfig::initialize(configuration);
    ZoltConfig::load();
    m_easel = std::make_unique<Easel>();
    for (const auto& [id, text] : Catalogue::read(options.catalogues, "en")) {
        m_ids.push_back(id);
    }
}

void Examination::makeUpLanguages() {
    Catalogue::makeUp(m_madeUp, m_options.catalogues, *m_easel);
}

void Examination::apply(const Mode& mode) const {
    mode.apply(isMadeUp(mode.language) ? m_madeUp : m_options.catalogues);
}

const Vocabulary& Examination::vocabulary(const std::string& language) {
    const auto known = m_vocabularies.find(language);
    return known != m_vocabularies.end() ? known->second
                                         : m_vocabularies.emplace(language, m_ids).first->second;
}

Report Examination::examine(const Item& item) {
    const Scene& scene = scenes()[item.scene];
    Report report;
    report.enter(scene.name, item.mode.name(), item.mode.language);
    look(item, report);
    // One language in one set of colours is enough: where things stand is not their choice.
    if (m_options.states && item.mode.language == "en" && !item.mode.contrast &&
        item.mode.direction == Direction::OfLanguage) {
        report.enterState("mirrored");
        compareMirrored(item, report);
    }
    return report;
}

Sizes Examination::ordinarySizes(const Item& item) {
    Mode ordinary = item.mode;
    ordinary.enlarged = false;
    apply(ordinary);
    const Scene& scene = scenes()[item.scene];
    Stage stage(scene, ordinary);
    return sizesOf(Inventory(stage, scene, vocabulary(ordinary.language)));
}

void Examination::look(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    Sizes ordinary;
    if (item.mode.enlarged) {
        ordinary = ordinarySizes(item);
    }
    apply(item.mode);
    const Vocabulary& words = vocabulary(item.mode.language);
    Stage stage(scene, item.mode);
    if (m_options.spoil == Spoil::Arrows) {
        spoilArrows(stage);
    } else if (m_options.spoil == Spoil::Worker) {
        std::_Exit(EXIT_FAILURE);
    }
    Checker checker(stage, *m_easel, report, item.mode.enlarged ? &ordinary : nullptr);
    if (m_options.states) {
        std::size_t number = 0;
        Tour tour(stage, scene, words, &checker, report,
                  [&](Stage& shown, const std::string& /*state*/, const Frame& picture) {
                      keep(shown, scene, number++, picture);
                  });
        tour.go();
    } else {
        Inventory inventory(stage, scene, words);
        const Frame picture = stage.draw().copy();
        keep(stage, scene, 0, picture);
        checker.look(inventory, picture);
    }
    if (scene.waits && m_options.states) {
        const Inventory inventory(stage, scene, words);
        if (m_options.spoil == Spoil::Circle) {
            spoilCircle(stage, inventory.circles.at(0).object);
        }
        Turning(stage, inventory, report).check();
    }
}

void Examination::compareMirrored(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    std::vector<Mirror> both;
    for (const Direction direction : {Direction::LeftToRight, Direction::RightToLeft}) {
        Mode mode = item.mode;
        mode.direction = direction;
        apply(mode);
        const Vocabulary& words = vocabulary(mode.language);
        Stage stage(scene, mode);
        const Inventory inventory(stage, scene, words);
        const Frame picture = stage.draw().copy();
        Report forgotten;  // each of the two is looked at elsewhere
        Tour tour(stage, scene, words, nullptr, forgotten, nullptr);
        tour.go();
        both.emplace_back(inventory, picture, tour.ways(), mode);
    }
    both[0].compare(both[1], report);
}

void Examination::keep(Stage& stage, const Scene& scene, std::size_t number,
                       const Frame& picture) const {
    if (m_options.pictures.empty()) {
        return;
    }
    const std::string name = m_options.pictures + "/" + scene.name + "." + stage.mode().name() +
                             (number > 0 ? "." + std::to_string(number) : "");
    const int smallWidth = 640;
    Picture::save(stage.canvas(), picture, name + ".png");
    Picture::save(stage.canvas(), picture.reduced(std::max(1, picture.width() / smallWidth)),
                  name + ".small.jpg");
}

}  // namespace look
