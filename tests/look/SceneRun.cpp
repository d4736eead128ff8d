// SPDX-License-Identifier: Apache-2.0
// Runs the checks of one scene in one mode. One per process: it starts the toolkit.
#include "look/SceneRun.h"

#include <algorithm>

#include <libintl.h>

#include "common/ZoltConfig.h"
#include "look/Catalogue.h"
#include "look/MirrorCheck.h"
#include "look/Picture.h"
#include "look/SpinnerCheck.h"
#include "look/Words.h"

namespace look {

namespace {

bool isMadeUp(const std::string& language) {
    const auto& all = Catalogue::madeUp();
    return std::find(all.begin(), all.end(), language) != all.end();
}

// What the ids stand for in the language of the moment, as the words of an inventory are.
std::vector<std::string> translations(const std::vector<std::string>& ids) {
    std::vector<std::string> texts;
    texts.reserve(ids.size());
    for (const std::string& id : ids) {
        texts.push_back(coreOf(withoutMarkup(dgettext("ZOLT", id.c_str()))));
    }
    return texts;
}

// The widget that has the focus keeps it, whatever arrow is pressed.
void breakArrows(ScreenHarness& harness) {
    Evas_Object* const widget = harness.focused();
    for (const Elm_Focus_Direction direction :
         {ELM_FOCUS_UP, ELM_FOCUS_DOWN, ELM_FOCUS_LEFT, ELM_FOCUS_RIGHT}) {
        elm_object_focus_next_object_set(widget, widget, direction);
    }
}

// A key stops SPINNER, as if the main loop were busy.
void breakSpinner(ScreenHarness& harness, Evas_Object* spinner) {
    evas_object_event_callback_add(
        evas_focus_get(harness.canvas()), EVAS_CALLBACK_KEY_DOWN,
        [](void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*event*/) {
            elm_layout_signal_emit(static_cast<Evas_Object*>(data), "stop_pulse", "elm");
        },
        spinner);
}

}  // namespace

SceneRun::SceneRun(const Options& options)
    : m_options(options), m_toolkit(options.themeFolder + "/gui.edj") {
    m_toolkit.SetUp();
    const std::string configuration = m_folder.write(
        "config.xml", "<config><item name=\"LayoutPath\">" + options.themeFolder +
                          "</item><item name=\"SourceVersion\">1.2.3</item></config>");
    ZoltConfig::initialize(configuration);
    ZoltConfig::load();
    m_glyphs = std::make_unique<GlyphMeter>();
    for (const auto& [id, text] : Catalogue::read(options.catalogues, "en")) {
        m_ids.push_back(id);
    }
}

const std::string& SceneRun::cataloguesOf(const std::string& language) {
    if (!isMadeUp(language)) {
        return m_options.catalogues;
    }
    if (m_madeUp.empty()) {
        m_madeUp = m_folder.path();
        Catalogue::makeUp(m_madeUp, m_options.catalogues, *m_glyphs);
    }
    return m_madeUp;
}

void SceneRun::apply(const Mode& mode) {
    mode.apply(cataloguesOf(mode.language));
}

const Vocabulary& SceneRun::vocabulary(const std::string& language) {
    const auto known = m_vocabularies.find(language);
    return known != m_vocabularies.end() ? known->second
                                         : m_vocabularies.emplace(language, m_ids).first->second;
}

void SceneRun::examine(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    if (!item.from.empty()) {
        report.enter(scene.name, item.mode.name() + " after " + item.from, item.mode.language);
        changeLanguage(item, report);
        return;
    }
    report.enter(scene.name, item.mode.name(), item.mode.language);
    look(item, report);
    // One language in one set of colours is enough: they do not decide where things stand.
    if (m_options.states && item.mode.language == "en" && !item.mode.contrast &&
        item.mode.direction == Direction::OF_LANGUAGE) {
        report.enterState("mirrored");
        compareMirrored(item, report);
    }
}

const Snapshot& SceneRun::freshScreen(const Item& item, const Mode& mode) {
    if (m_freshScene != item.scene) {
        m_fresh.clear();
        m_freshScene = item.scene;
    }
    const auto known = m_fresh.find(mode.name());
    if (known != m_fresh.end()) {
        return known->second;
    }
    const Scene& scene = scenes()[item.scene];
    apply(mode);
    ScreenHarness harness(scene, mode);
    return m_fresh[mode.name()] = Snapshot(harness, scene, vocabulary(mode.language));
}

// The program sets the direction when it makes a screen, so one that is shown keeps its own.
void SceneRun::changeLanguage(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    Mode before = item.mode;
    before.language = item.from;
    before.direction = before.mirrored() ? Direction::RIGHT_TO_LEFT : Direction::LEFT_TO_RIGHT;
    Mode after = before;
    after.language = item.mode.language;
    const Snapshot& fresh = freshScreen(item, after);
    apply(before);
    std::vector<std::string> ids = scene.keeps;
    if (before.mirrored()) {
        ids.insert(ids.end(), scene.keepsMirrored.begin(), scene.keepsMirrored.end());
    }
    std::vector<std::string> kept = translations(ids);
    ScreenHarness harness(scene, before);
    harness.changeLanguage(item.mode, cataloguesOf(item.mode.language));
    const std::vector<std::string> renewed = translations(ids);
    kept.insert(kept.end(), renewed.begin(), renewed.end());
    Snapshot(harness, scene, vocabulary(item.mode.language)).compare(fresh, kept, report);
    report.countPicture();
}

Sizes SceneRun::ordinarySizes(const Item& item) {
    Mode ordinary = item.mode;
    ordinary.enlarged = false;
    apply(ordinary);
    const Scene& scene = scenes()[item.scene];
    ScreenHarness harness(scene, ordinary);
    return sizesOf(Inventory(harness, scene, vocabulary(ordinary.language)));
}

void SceneRun::look(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    Sizes ordinary;
    if (item.mode.enlarged) {
        ordinary = ordinarySizes(item);
    }
    apply(item.mode);
    const Vocabulary& words = vocabulary(item.mode.language);
    ScreenHarness harness(scene, item.mode);
    if (m_options.defect == Defect::ARROWS) {
        breakArrows(harness);
    }
    Checker checker(harness, *m_glyphs, report, item.mode.enlarged ? &ordinary : nullptr);
    if (m_options.states) {
        std::size_t number = 0;
        FocusWalk walk(harness, scene, words, &checker, report,
                       [&](ScreenHarness& shown, const std::string& /*state*/,
                           const Frame& picture) { keep(shown, scene, number++, picture); });
        walk.go();
    } else {
        Inventory inventory(harness, scene, words);
        const Frame picture = harness.draw().copy();
        keep(harness, scene, 0, picture);
        checker.look(inventory, picture);
    }
    if (scene.waits && m_options.states) {
        const Inventory inventory(harness, scene, words);
        if (m_options.defect == Defect::SPINNER) {
            breakSpinner(harness, inventory.spinners.at(0).object);
        }
        SpinnerCheck(harness, inventory, report).check();
    }
}

void SceneRun::compareMirrored(const Item& item, Report& report) {
    const Scene& scene = scenes()[item.scene];
    std::vector<MirrorCheck> both;
    for (const Direction direction : {Direction::LEFT_TO_RIGHT, Direction::RIGHT_TO_LEFT}) {
        Mode mode = item.mode;
        mode.direction = direction;
        apply(mode);
        const Vocabulary& words = vocabulary(mode.language);
        ScreenHarness harness(scene, mode);
        const Inventory inventory(harness, scene, words);
        const Frame picture = harness.draw().copy();
        Report unused;  // each of the two screens is checked by other items
        FocusWalk walk(harness, scene, words, nullptr, unused, nullptr);
        walk.go();
        both.emplace_back(inventory, picture, walk.ways(), mode);
    }
    both[0].compare(both[1], report);
}

void SceneRun::keep(ScreenHarness& harness, const Scene& scene, std::size_t number,
                    const Frame& picture) const {
    if (m_options.pictures.empty()) {
        return;
    }
    const std::string name = m_options.pictures + "/" + scene.name + "." + harness.mode().name() +
                             (number > 0 ? "." + std::to_string(number) : "");
    const int smallWidth = 640;
    Picture::save(harness.canvas(), picture, name + ".png");
    Picture::save(harness.canvas(), picture.reduced(std::max(1, picture.width() / smallWidth)),
                  name + ".small.jpg");
}

}  // namespace look
