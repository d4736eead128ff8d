// SPDX-License-Identifier: Apache-2.0
// Checks the spinner of a waiting screen: it turns evenly, and keys neither stop it nor give it the
// focus.
#include "look/SpinnerCheck.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace look {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double FRAME = 1.0 / 60;  // seconds
constexpr int FRAMES = 6;           // between two measurements
constexpr int LOOKS = 30;
constexpr double EVEN = 0.1;

double forward(double degrees) {
    return degrees < 0 ? degrees + 360.0 : degrees;
}

}  // namespace

SpinnerCheck::SpinnerCheck(ScreenHarness& harness, const Inventory& inventory, Report& report)
    : m_harness(harness), m_inventory(inventory), m_report(report) {}

void SpinnerCheck::check() {
    m_report.enterState("turning");
    m_report.check("still", m_inventory.spinners.size() == 1,
                   std::to_string(m_inventory.spinners.size()) + " spinners, expected 1");
    for (const Control& spinner : m_inventory.spinners) {
        checkEvenness(spinner.object);
        checkKeys(spinner.object);
    }
}

bool SpinnerCheck::angleOf(Evas_Object* spinner, double& degrees) {
    if (evas_object_map_enable_get(spinner)) {
        const Evas_Map* map = evas_object_map_get(spinner);
        int x[2] = {0, 0};
        int y[2] = {0, 0};
        for (int corner = 0; corner < 2; ++corner) {
            evas_map_point_coord_get(map, corner, &x[corner], &y[corner], nullptr);
        }
        degrees = std::atan2(y[1] - y[0], x[1] - x[0]) * 180.0 / PI;
        return true;
    }
    Eina_List* members = evas_object_smart_members_get(spinner);
    bool found = false;
    void* member = nullptr;
    EINA_LIST_FREE(members, member) {
        found = found || angleOf(static_cast<Evas_Object*>(member), degrees);
    }
    return found;
}

void SpinnerCheck::checkEvenness(Evas_Object* spinner) {
    std::vector<double> steps;
    double before = 0.0;
    Frame first;
    for (int look = 0; look < LOOKS; ++look) {
        for (int frame = 0; frame < FRAMES; ++frame) {
            m_harness.pass(FRAME);
        }
        const Frame picture = m_harness.draw();
        double degrees = 0.0;
        if (!angleOf(spinner, degrees)) {
            m_report.check("still", false, "nothing in the spinner turns");
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
    // One step of each round may be late.
    const double rounds = usual * static_cast<double>(steps.size()) / 360.0;
    m_report.check("still", static_cast<double>(late) <= rounds + 1,
                   std::to_string(late) + " steps are uneven");
}

void SpinnerCheck::checkKeys(Evas_Object* spinner) {
    Evas_Object* const before = m_harness.focused();
    for (const char* key : {"Up", "Down", "Left", "Right", "Return"}) {
        m_harness.press(key);
        Evas_Object* const focused = m_harness.focused();
        m_report.check("still", focused == before && focused != spinner,
                       std::string(key) + " moves the focus");
    }
    double earlier = 0.0;
    double later = 0.0;
    // The angle changes when a frame is drawn.
    m_harness.draw();
    angleOf(spinner, earlier);
    for (int frame = 0; frame < FRAMES; ++frame) {
        m_harness.pass(FRAME);
    }
    m_harness.draw();
    angleOf(spinner, later);
    m_report.check("still", earlier < later || later < earlier, "keys stop the spinner");
}

}  // namespace look
