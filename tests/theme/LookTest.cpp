// SPDX-License-Identifier: Apache-2.0
// Measures the screens as they are drawn: what must be inside the safe area, large enough, apart,
// and lit.
#include <cmath>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include <Elementary.h>
#include <gtest/gtest.h>

#include "Scenes.h"
#include "support/BufferToolkit.h"

namespace {

using ZOLT::Preview::groupOf;
using ZOLT::Preview::Look;
using ZOLT::Preview::Scene;
using ZOLT::Preview::scenes;
using ZOLT::Preview::Stage;

struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool holds(const Box& other) const {
        return left <= other.left && top <= other.top && right >= other.right &&
               bottom >= other.bottom;
    }
    bool meets(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

std::ostream& operator<<(std::ostream& out, const Box& box) {
    return out << box.left << "," << box.top << " to " << box.right << "," << box.bottom;
}

Box boxOf(Evas_Object* object) {
    int x = 0, y = 0, width = 0, height = 0;
    evas_object_geometry_get(object, &x, &y, &width, &height);
    return {x, y, x + width, y + height};
}

// Calls VISIT for OBJECT and all that it is made of, as far as it shows.
void walk(Evas_Object* object, const std::function<void(Evas_Object*)>& visit) {
    if (!evas_object_visible_get(object)) {
        return;
    }
    visit(object);
    Eina_List* members = evas_object_smart_members_get(object);
    for (const Eina_List* at = members; at != nullptr; at = eina_list_next(at)) {
        walk(static_cast<Evas_Object*>(eina_list_data_get(at)), visit);
    }
    eina_list_free(members);
}

std::vector<Evas_Object*> shown(Stage& stage, const std::vector<std::string>& types) {
    std::vector<Evas_Object*> found;
    Evas* canvas = evas_object_evas_get(stage.window());
    for (Evas_Object* top = evas_object_bottom_get(canvas); top != nullptr;
         top = evas_object_above_get(top)) {
        walk(top, [&](Evas_Object* object) {
            for (const std::string& type : types) {
                if (type == evas_object_type_get(object)) {
                    found.push_back(object);
                }
            }
        });
    }
    return found;
}

std::string fileGroup(Evas_Object* edje) {
    const char* file = nullptr;
    const char* group = nullptr;
    edje_object_file_get(edje, &file, &group);
    return group == nullptr ? "" : group;
}

Evas_Object* edjeOf(Stage& stage, const std::string& groupStart) {
    for (Evas_Object* edje : shown(stage, {"edje"})) {
        if (fileGroup(edje).rfind(groupStart, 0) == 0) {
            return edje;
        }
    }
    return nullptr;
}

Box partBox(Evas_Object* edje, const char* part) {
    int x = 0, y = 0, width = 0, height = 0;
    edje_object_part_geometry_get(edje, part, &x, &y, &width, &height);
    const Box whole = boxOf(edje);
    return {whole.left + x, whole.top + y, whole.left + x + width, whole.top + y + height};
}

struct Case {
    int width;
    int height;
    bool mirrored;
    bool enlarge;
};

void PrintTo(const Case& look, std::ostream* out) {
    *out << look.width << "x" << look.height << (look.mirrored ? " from right to left" : "")
         << (look.enlarge ? " enlarged" : "");
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info) {
    const Case& look = info.param;
    return "At" + std::to_string(look.width) + "x" + std::to_string(look.height) +
           (look.mirrored ? "FromRightToLeft" : "") + (look.enlarge ? "Enlarged" : "");
}

const auto* const toolkit =
    ::testing::AddGlobalTestEnvironment(new support::BufferToolkit(ZOLT_TEST_THEME));

class ScreenLook : public ::testing::TestWithParam<Case> {
  protected:
    void SetUp() override {
        m_look.theme = ZOLT_TEST_THEME;
        m_look.width = GetParam().width;
        m_look.height = GetParam().height;
        m_look.mirrored = GetParam().mirrored;
        m_look.enlarge = GetParam().enlarge;
        elm_config_scale_set(scale());
        elm_config_mirrored_set(m_look.mirrored);
    }

    double scale() const { return GetParam().height / 1080.0; }

    // The area that no set cuts off; a pixel is left for rounding.
    Box safeArea() const {
        const int side = static_cast<int>(std::floor(96 * scale())) - 1;
        const int edge = static_cast<int>(std::floor(54 * scale())) - 1;
        return {side, edge, m_look.width - side, m_look.height - edge};
    }

    void eachScene(const std::function<void(Stage&)>& look) {
        for (const auto& [name, scene] : scenes()) {
            SCOPED_TRACE(name);
            Stage stage(m_look, groupOf(scene, m_look.enlarge));
            scene.set(stage);
            stage.open();
            Stage::calculate(stage);
            look(stage);
        }
    }

    Look m_look;
};

TEST_P(ScreenLook, EverythingThatMattersStandsInsideTheSafeArea) {
    eachScene([this](Stage& stage) {
        const std::vector<std::string> kinds = {"elm_button", "elm_hoversel", "elm_genlist",
                                                "elm_scroller", "elm_progressbar"};
        for (Evas_Object* widget : shown(stage, kinds)) {
            EXPECT_TRUE(safeArea().holds(boxOf(widget)))
                << evas_object_type_get(widget) << " " << boxOf(widget);
        }
        Evas_Object* layout = elm_layout_edje_get(stage.layout());
        for (const char* text : {"title", "text1", "text2", "shop1", "shopname", "SoftwareVersion",
                                 "RegistrationInfo", "pinCodeVal", "selectText"}) {
            if (edje_object_part_exists(layout, text)) {
                EXPECT_TRUE(safeArea().holds(partBox(layout, text)))
                    << text << " " << partBox(layout, text);
            }
        }
    });
}

TEST_P(ScreenLook, TheCardOfAPopupStandsWhollyInsideTheSafeArea) {
    int cards = 0;
    eachScene([&](Stage& stage) {
        Evas_Object* base = edjeOf(stage, "elm/popup/base/");
        if (base != nullptr) {
            ++cards;
            EXPECT_TRUE(safeArea().holds(partBox(base, "face"))) << partBox(base, "face");
        }
    });
    EXPECT_GE(cards, 5);
}

TEST_P(ScreenLook, TheCardOfAMessageStandsInTheMiddleOfTheScreen) {
    eachScene([this](Stage& stage) {
        Evas_Object* base = edjeOf(stage, "elm/popup/base/c_popup_bottom");
        if (base != nullptr) {
            const Box card = partBox(base, "face");
            EXPECT_NEAR(card.left + card.right, m_look.width, 4);
            EXPECT_NEAR(card.top + card.bottom, m_look.height, 4);
        }
    });
}

TEST_P(ScreenLook, ControlsAreHighEnoughToBeSeenFromAfar) {
    eachScene([this](Stage& stage) {
        for (Evas_Object* control : shown(stage, {"elm_button", "elm_hoversel"})) {
            const Box box = boxOf(control);
            EXPECT_GE(box.bottom - box.top, std::floor(64 * scale())) << box;
        }
        for (Evas_Object* row : shown(stage, {"edje"})) {
            if (fileGroup(row).rfind("elm/genlist/item", 0) == 0) {
                const Box box = boxOf(row);
                EXPECT_GE(box.bottom - box.top, std::floor(64 * scale())) << box;
            }
        }
    });
}

TEST_P(ScreenLook, ControlsOfAScreenDoNotMeet) {
    eachScene([](Stage& stage) {
        if (stage.popup() != nullptr) {
            return;  // a popup lies over the screen
        }
        const auto controls = shown(stage, {"elm_button", "elm_hoversel", "elm_scroller"});
        for (size_t i = 0; i < controls.size(); ++i) {
            for (size_t j = i + 1; j < controls.size(); ++j) {
                EXPECT_FALSE(boxOf(controls[i]).meets(boxOf(controls[j])))
                    << boxOf(controls[i]) << " and " << boxOf(controls[j]);
            }
        }
    });
}

// Relative luminance of a colour of the screen, from 0 to 1.
double luminance(unsigned pixel) {
    const auto linear = [](unsigned value) {
        const double part = value / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear((pixel >> 16) & 255) + 0.7152 * linear((pixel >> 8) & 255) +
           0.0722 * linear(pixel & 255);
}

double contrast(unsigned one, unsigned other) {
    const double first = luminance(one) + 0.05;
    const double second = luminance(other) + 0.05;
    return first > second ? first / second : second / first;
}

TEST_P(ScreenLook, TheFocusIsARingAndALightFaceThatDifferFromTheScreen) {
    const Scene& scene = scenes().at("unregistered");
    Stage stage(m_look, groupOf(scene, m_look.enlarge));
    scene.set(stage);
    stage.open();
    Stage::calculate(stage);
    Evas_Object* focused = elm_object_part_content_get(stage.layout(), "newRegBtn");
    const Box box = boxOf(focused);
    const Box drawn = partBox(elm_layout_edje_get(focused), "ring");
    EXPECT_TRUE(drawn.holds(box)) << drawn << " around " << box;

    const int middle = (box.left + box.right) / 2;
    const unsigned around = stage.pixel(middle, drawn.top - static_cast<int>(20 * scale()));
    int lit = 0;
    for (int y = drawn.top; y < box.top; ++y) {
        lit += contrast(stage.pixel(middle, y), around) >= 3.0 ? 1 : 0;
    }
    EXPECT_GE(lit, std::floor(2 * scale())) << "lines of the ring that stand out";
    const Box other = boxOf(elm_object_part_content_get(stage.layout(), "cancelBtn"));
    const int inside = static_cast<int>(8 * scale());
    EXPECT_GE(
        contrast(stage.pixel(middle, box.top + inside), stage.pixel(middle, other.top + inside)),
        3.0);
}

TEST_P(ScreenLook, APopupWithoutAButtonShowsNoRingAroundTheScreen) {
    const Scene& scene = scenes().at("loading");
    Stage stage(m_look, groupOf(scene, m_look.enlarge));
    scene.set(stage);
    stage.open();
    Stage::calculate(stage);
    Evas_Object* ring = edjeOf(stage, "elm/focus_highlight/top/default");
    if (ring != nullptr) {
        const char* state = edje_object_part_state_get(ring, "ring", nullptr);
        const Box around = boxOf(ring);
        EXPECT_TRUE(std::string(state) == "default" || around.bottom - around.top < 700 * scale())
            << state << " " << around;
    }
}

TEST_P(ScreenLook, HighContrastChangesTheBackgroundAndTheTitle) {
    m_look.contrast = true;
    const Scene& scene = scenes().at("waiting");
    Stage stage(m_look, groupOf(scene, m_look.enlarge));
    scene.set(stage);
    stage.open();
    Stage::calculate(stage);
    EXPECT_EQ(stage.pixel(m_look.width / 2, m_look.height - 4) & 0xffffff, 0U);
    Evas_Object* layout = elm_layout_edje_get(stage.layout());
    for (const char* part : {"background", "accent", "title", "text1", "text2"}) {
        EXPECT_STREQ(edje_object_part_state_get(layout, part, nullptr), "contrast") << part;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Look, ScreenLook,
    ::testing::Values(Case{1280, 720, false, false}, Case{1280, 720, true, false},
                      Case{1280, 720, false, true}, Case{1280, 720, true, true},
                      Case{1920, 1080, false, false}, Case{1920, 1080, true, false},
                      Case{1920, 1080, false, true}, Case{1920, 1080, true, true},
                      Case{3840, 2160, false, false}, Case{3840, 2160, true, true}),
    nameOf);

}  // namespace
