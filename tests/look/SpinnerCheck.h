// SPDX-License-Identifier: Apache-2.0
// Checks the spinner of a waiting screen: it turns evenly, and keys neither stop it nor give it the
// focus.
#pragma once

#include "look/Inventory.h"
#include "look/Report.h"
#include "look/ScreenHarness.h"

namespace look {

class SpinnerCheck {
  public:
    SpinnerCheck(ScreenHarness& harness, const Inventory& inventory, Report& report);

    void check();

  private:
    // The angle of what turns in CIRCLE, in degrees; false when nothing does.
    static bool angleOf(Evas_Object* spinner, double& degrees);
    void checkEvenness(Evas_Object* spinner);
    void checkKeys(Evas_Object* spinner);

    ScreenHarness& m_harness;
    const Inventory& m_inventory;
    Report& m_report;
};

}  // namespace look
