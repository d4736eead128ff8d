// SPDX-License-Identifier: Apache-2.0
// Watches the circle of a waiting screen: it turns evenly and leaves the keys alone.
#include "look/Turning.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace look {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double FRAME = 1.0 / 60;  // seconds
constexpr int FRAMES = 6;           // between two looks
constexpr int LOOKS = 30;
constexpr double EVEN = 0.1;

double forward(double degrees) {
    return degrees < 0 ? degrees + 360.0 : degrees;
}

}  // namespace

Turning::Turning(Stage& stage, const Inventory& inventory, Report& report)
    : m_stage(stage), m_inventory(inventory), m_report(report) {}

void Turning::check() {
    m_report.enterState("turning");
    m_report.check("still", m_inventory.circles.size() == 1,
                   std::to_string(m_inventory.circles.size()) + " circles, wanted 1");
    for (const Control& circle : m_inventory.circles) {
        checkEvenness(circle.object);
        checkKeys(circle.object);
    }
}

bool Turning::angleOf(Evas_Object* circle, double& degrees) {
    if (evas_object_map_enable_get(circle)) {
        const Evas_Map* map = evas_object_map_get(circle);
        int x[2] = {0, 0};
        int y[2] = {0, 0};
        for (int corner = 0; corner < 2; ++corner) {
            evas_map_point_coord_get(map, corner, &x[corner], &y[corner], nullptr);
        }
        degrees = std::atan2(y[1] - y[0], x[1] - x[0]) * 180.0 / PI;
        return true;
    }
    Eina_List* members = evas_object_smart_members_get(circle);
    bool found = false;
    void* member = nullptr;
    EINA_LIST_FREE(members, member) {
        found = found || angleOf(static_cast<Evas_Object*>(member), degrees);
    }
    return found;
}

void Turning::checkEvenness(Evas_Object* circle) {
    std::vector<double> steps;
    double before = 0.0;
    Frame first;
    for (int look = 0; look < LOOKS; ++look) {
        for (int frame = 0; frame < FRAMES; ++frame) {
            m_stage.pass(FRAME);
        }
        const Frame picture = m_stage.draw();
        double degrees = 0.0;
        if (!angleOf(circle, degrees)) {
            m_report.check("still", false, "nothing in the circle turns");
            return;
        }
        if (look == 0) {
            first = picture.copy();
        } else {
            steps.push_back(forward(degrees - before));
            m_report.check("still", look > 1 || !picture.differenceTo(first).empty(),
                           "the picture stands still");
        }
        before = degrees;
    }
    std::vector<double> sorted = steps;
    std::sort(sorted.begin(), sorted.end());
    const double usual = sorted[sorted.size() / 2];
    m_report.check("still", usual > 1.0 && usual < 120.0,
                   "it turns by " + std::to_string(usual) + " degrees in a tenth of a second");
    // Whole pixels tell an angle to about a degree; a new round may begin a frame late.
    const double allowed = usual * EVEN + 1.5;
    for (std::size_t step = 0; step < steps.size(); ++step) {
        const double off = std::abs(steps[step] - usual);
        m_report.check("still", off <= allowed + usual / FRAMES,
                       "step " + std::to_string(step) + " is " + std::to_string(steps[step]) +
                           " degrees, others " + std::to_string(usual));
    }
    const auto late = std::count_if(steps.begin(), steps.end(),
                                    [&](double step) { return std::abs(step - usual) > allowed; });
    // A round of 360 degrees has so many steps, and one of them may be late.
    const double rounds = usual * static_cast<double>(steps.size()) / 360.0;
    m_report.check("still", static_cast<double>(late) <= rounds + 1,
                   std::to_string(late) + " steps are uneven");
}

void Turning::checkKeys(Evas_Object* circle) {
    Evas_Object* const before = m_stage.focused();
    for (const char* key : {"Up", "Down", "Left", "Right", "Return"}) {
        m_stage.press(key);
        Evas_Object* const focused = m_stage.focused();
        m_report.check("still", focused == before && focused != circle,
                       std::string(key) + " moves the focus");
    }
    double earlier = 0.0;
    double later = 0.0;
    // What turns is turned when it is drawn.
    m_stage.draw();
    angleOf(circle, earlier);
    for (int frame = 0; frame < FRAMES; ++frame) {
        m_stage.pass(FRAME);
    }
    m_stage.draw();
    angleOf(circle, later);
    m_report.check("still", earlier < later || later < earlier, "keys stop the circle");
}

}  // namespace look
