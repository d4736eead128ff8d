// SPDX-License-Identifier: Apache-2.0
// What stands on a screen: its texts, controls, icons, the ring of the focus and the card of a
// popup, with their places.
#pragma once

#include <string>
#include <vector>

#include <Elementary.h>

#include "look/Box.h"
#include "look/Scene.h"
#include "look/ScreenHarness.h"
#include "look/TextMeasure.h"
#include "look/Words.h"

namespace look {

struct Control {
    Evas_Object* object = nullptr;
    std::string type;
    Box box;
    Box clip;
    bool row = false;    // of a list
    bool active = true;  // one that cannot take the focus cannot be pressed either
};

struct Icon {
    Evas_Object* object = nullptr;
    Evas_Object* control = nullptr;
    Box box;
    Box ink;
    bool layered = false;    // another one of other colours lies over it
    bool directed = false;   // it points to where the writing goes
    bool stretches = false;  // its height depends on the number of lines of other texts
};

struct Ring {
    Evas_Object* object = nullptr;
    Box box;
};

struct Card {
    Box box;
    bool message = false;  // to be read in the middle of the screen
};

// With a popup on the screen, only what the popup holds is listed: the rest is dimmed. The objects
// belong to the screen and are valid until something changes on it.
struct Inventory {
    Inventory(ScreenHarness& harness, const Scene& scene, const Vocabulary& vocabulary);

    std::vector<Text> texts;
    std::vector<Control> controls;  // buttons, drop-downs, and the rows of lists
    std::vector<Control> holders;   // lists and scrollers
    std::vector<Control> spinners;
    std::vector<Icon> icons;
    std::vector<Ring> rings;
    std::vector<Card> cards;

    // The control of this widget or null.
    const Control* controlOf(const Evas_Object* widget) const;
};

}  // namespace look
