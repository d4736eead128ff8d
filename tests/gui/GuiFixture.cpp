// SPDX-License-Identifier: Apache-2.0
// Base of the tests of screens: real widgets on the toolkit's buffer engine, and keys fed to them.
#include "gui/GuiFixture.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <memory>

#include <libintl.h>

#include <Ecore.h>

#include "common/ZoltConfig.h"
#include "gui/Controller.h"
#include "gui/EventHandler.h"
#include "gui/ScreenParts.h"
#include "gui/Speech.h"
#include "gui/ToolkitLoop.h"
#include "support/BufferToolkit.h"

namespace support {

namespace {

using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;

const auto* const toolkit = ::testing::AddGlobalTestEnvironment(
    new BufferToolkit(std::string(ZOLT_TEST_THEME_FOLDER) + "/gui.edj"));

std::string joined(const std::vector<std::string>& lines) {
    std::string all;
    for (const std::string& line : lines) {
        all += "  " + line + "\n";
    }
    return all;
}

std::string text(const char* characters) {
    return characters != nullptr ? characters : "";
}

}  // namespace

void GuiFixture::SetUp() {
    platform().reset();
    forgetSpeech();
    m_settings = {{"LayoutPath", ZOLT_TEST_THEME_FOLDER},
                  {"SourceVersion", "1.2.3"},
                  {"ShopRegistrationFilePath", m_folder.file("registered")}};
    writeConfiguration();
    ZOLT::GUI::Controller::Enlarge = 0;
    ZOLT::GUI::Controller::m_currentLabelText.clear();
    ZOLT::GUI::Controller::m_wasLabelRead = false;
    ZOLT::GUI::EventHandler::m_keyUnfocused = false;
    ZOLT::GUI::EventHandler::m_focusState = ZOLT::GUI::FOCUS_STATE_NONE;
    platform().clearLog();
    platform().clearCalls();
}

void GuiFixture::TearDown() {
    settle();
    std::vector<std::string> warnings;
    for (const LogLine& line : platform().log()) {
        if (line.priority >= DLOG_WARN) {
            EXPECT_EQ(LOG_ID_SYSTEM, line.buffer) << line.message;
            EXPECT_EQ(DLOG_WARN, line.priority) << line.message;
            warnings.push_back(line.message);
        }
    }
    std::sort(warnings.begin(), warnings.end());
    std::sort(m_announced.begin(), m_announced.end());
    EXPECT_EQ(joined(warnings), joined(m_announced)) << "lines at warning priority";
    if (m_translated) {
        unsetenv("LANGUAGE");
        std::setlocale(LC_ALL, "C");
    }
    elm_config_mirrored_set(EINA_FALSE);
    ZoltConfig::deinitialize();
}

void GuiFixture::announceWarning(const std::string& message, int count) {
    m_announced.insert(m_announced.end(), static_cast<std::size_t>(count), message);
}

bool GuiFixture::logged(const std::string& message) {
    return platform().hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, message);
}

int GuiFixture::entered(const std::string& function, const std::string& file) {
    const std::vector<LogLine> lines = platform().log();
    return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const LogLine& line) {
        return line.priority == DLOG_INFO && line.function == function &&
               (file.empty() || line.file == file);
    }));
}

void GuiFixture::configure(const std::string& key, const std::string& value) {
    for (auto& setting : m_settings) {
        if (setting.first == key) {
            setting.second = value;
        }
    }
    writeConfiguration();
}

void GuiFixture::writeConfiguration() {
    std::string document = "<config>";
    for (const auto& [key, value] : m_settings) {
        document.append("<item name=\"").append(key).append("\">").append(value).append("</item>");
    }
    ZoltConfig::deinitialize();
    ZoltConfig::initialize(m_folder.write("config.xml", document + "</config>"));
    ZoltConfig::load();
}

std::string GuiFixture::themeFolder() {
    return ZOLT_TEST_THEME_FOLDER;
}

void GuiFixture::translate(const std::vector<std::pair<std::string, std::string>>& catalogue) {
    std::string source = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
    for (const auto& [id, words] : catalogue) {
        source.append("msgid \"").append(id).append("\"\nmsgstr \"").append(words).append("\"\n");
    }
    const std::string input = m_folder.write("ZOLT.po", source);
    const std::string output = m_folder.write("xx/LC_MESSAGES/ZOLT.mo", "");
    ASSERT_EQ(0, runProgram({"msgfmt", "-o", output, input}).status);
    // The variable chooses the catalogue in any locale but "C".
    m_translated = true;
    setenv("LANGUAGE", "xx", 1);
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "C.UTF-8"));
    bindtextdomain("ZOLT", m_folder.path().c_str());
    bind_textdomain_codeset("ZOLT", "UTF-8");
}

Evas_Object* GuiFixture::windowOf(const Screen& screen) {
    return support::windowOf(screen);
}

Evas_Object* GuiFixture::layoutOf(const Screen& screen) {
    return support::layoutOf(screen);
}

Evas_Object* GuiFixture::widgetOf(const Popup& popup) {
    return support::widgetOf(popup);
}

Evas_Object* GuiFixture::backgroundOf(const Popup& popup) {
    return support::backgroundOf(popup);
}

std::string GuiFixture::textOf(Evas_Object* object, const char* part) {
    return text(elm_object_part_text_get(object, part));
}

Evas_Object* GuiFixture::partOf(Evas_Object* object, const char* part) {
    return elm_object_part_content_get(object, part);
}

std::string GuiFixture::styleOf(Evas_Object* object) {
    return text(elm_object_style_get(object));
}

std::string GuiFixture::groupOf(Evas_Object* layout) {
    const char* file = nullptr;
    const char* group = nullptr;
    elm_layout_file_get(layout, &file, &group);
    return text(group);
}

std::string GuiFixture::iconOf(Evas_Object* button) {
    Evas_Object* icon = partOf(button, "icon");
    if (icon == nullptr) {
        return "none";
    }
    // The theme keeps an icon as a group "elm/icon/NAME/default".
    const char* group = nullptr;
    elm_image_file_get(icon, nullptr, &group);
    const std::string path = text(group);
    const std::string::size_type start = sizeof("elm/icon/") - 1;
    return path.size() > start ? path.substr(start, path.rfind('/') - start) : "";
}

std::vector<Evas_Object*> GuiFixture::childrenOf(Evas_Object* layout, const char* part) {
    // This constant of the toolkit means that the part is not changed.
    auto* box =
        const_cast<Evas_Object*>(edje_object_part_object_get(elm_layout_edje_get(layout), part));
    std::vector<Evas_Object*> children;
    void* child = nullptr;
    Eina_List* list = evas_object_box_children_get(box);
    EINA_LIST_FREE(list, child) {
        children.push_back(static_cast<Evas_Object*>(child));
    }
    return children;
}

bool GuiFixture::looksFocused(Evas_Object* button) {
    return text(edje_object_part_state_get(elm_layout_edje_get(button), "ring", nullptr)) ==
           "focused";
}

Evas_Object* GuiFixture::focusedIn(Evas_Object* object) {
    return elm_object_focused_object_get(elm_object_top_widget_get(object));
}

void GuiFixture::noteEvent(Evas_Object* object, Evas_Callback_Type event, const std::string& name,
                           std::vector<std::string>& order) {
    struct Note {
        std::string name;
        std::vector<std::string>& order;
    };
    // Kept to the end of the process: a deleted object may still send events.
    static std::vector<std::unique_ptr<Note>> notes;
    notes.push_back(std::make_unique<Note>(Note{name, order}));
    evas_object_event_callback_add(
        object, event,
        [](void* data, Evas* /*canvas*/, Evas_Object* /*object*/, void* /*eventInfo*/) {
            const auto* note = static_cast<Note*>(data);
            note->order.push_back(note->name);
        },
        notes.back().get());
}

Box GuiFixture::geometryOf(const Evas_Object* object) {
    Box box;
    evas_object_geometry_get(object, &box.x, &box.y, &box.width, &box.height);
    return box;
}

Box GuiFixture::minimumOf(const Evas_Object* object) {
    Box box;
    evas_object_size_hint_min_get(object, &box.width, &box.height);
    return box;
}

Box GuiFixture::maximumOf(const Evas_Object* object) {
    Box box;
    evas_object_size_hint_max_get(object, &box.width, &box.height);
    return box;
}

void GuiFixture::activate(const Screen& screen) {
    ToolkitLoop::activate(windowOf(screen));
}

void GuiFixture::press(Evas_Object* object, const std::string& key) {
    keyDown(object, key);
    keyUp(object, key);
}

void GuiFixture::keyDown(Evas_Object* object, const std::string& key) {
    feedKeyDown(object, key);
    settle();
}

void GuiFixture::keyUp(Evas_Object* object, const std::string& key) {
    feedKeyUp(object, key);
    settle();
}

void GuiFixture::feedKeyDown(Evas_Object* object, const std::string& key) {
    ToolkitLoop::keyDown(object, key);
}

void GuiFixture::feedKeyUp(Evas_Object* object, const std::string& key) {
    ToolkitLoop::keyUp(object, key);
}

void GuiFixture::settle() {
    ToolkitLoop::settle();
}

void GuiFixture::draw(Evas_Object* object) {
    Evas* canvas = evas_object_evas_get(object);
    int frames = 0;
    const Evas_Event_Cb count = [](void* data, Evas* /*canvas*/, void* /*eventInfo*/) {
        ++*static_cast<int*>(data);
    };
    evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_POST, count, &frames);
    for (int wanted = 1; wanted <= 2; ++wanted) {
        evas_damage_rectangle_add(canvas, 0, 0, 1, 1);
        EXPECT_TRUE(turnUntil([&] { return frames >= wanted; }));
        settle();
    }
    evas_event_callback_del_full(canvas, EVAS_CALLBACK_RENDER_POST, count, &frames);
}

bool GuiFixture::turnUntil(const std::function<bool()>& predicate) {
    return waitUntil(predicate, DEADLINE, [] { ecore_main_loop_iterate(); });
}

bool GuiFixture::endsMainLoop(const std::function<void()>& action) {
    struct Run {
        const std::function<void()>& action;
        bool ranOn = false;
    } run{action};
    ecore_job_add([](void* data) { static_cast<Run*>(data)->action(); }, &run);
    // A loop that is about to end runs no more timers.
    Ecore_Timer* timer = ecore_timer_add(
        0.01,
        [](void* data) -> Eina_Bool {
            static_cast<Run*>(data)->ranOn = true;
            ecore_main_loop_quit();
            return ECORE_CALLBACK_RENEW;
        },
        &run);
    ecore_main_loop_begin();
    ecore_timer_del(timer);
    return !run.ranOn;
}

bool GuiFixture::takesFocus(Evas_Object* widget) {
    Evas_Object* before = focusedIn(widget);
    if (before == widget) {
        return true;
    }
    elm_object_focus_set(widget, EINA_TRUE);
    settle();
    const bool taken = focusedIn(widget) == widget;
    if (before != nullptr) {
        elm_object_focus_set(before, EINA_TRUE);
        settle();
    }
    return taken;
}

}  // namespace support
