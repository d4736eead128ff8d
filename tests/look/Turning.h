// SPDX-License-Identifier: Apache-2.0
// Watches the circle of a waiting screen: it turns evenly and leaves the keys alone.
#pragma once

#include "look/Inventory.h"
#include "look/Report.h"
#include "look/Stage.h"

namespace look {

class Turning {
  public:
    Turning(Stage& stage, const Inventory& inventory, Report& report);

    void check();

  private:
    // The angle of what turns in CIRCLE, in degrees; false when nothing does.
    static bool angleOf(Evas_Object* circle, double& degrees);
    void checkEvenness(Evas_Object* circle);
    void checkKeys(Evas_Object* circle);

    Stage& m_stage;
    const Inventory& m_inventory;
    Report& m_report;
};

}  // namespace look
