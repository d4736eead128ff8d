// SPDX-License-Identifier: Apache-2.0
// What stands on a screen: its texts, controls, icons, the ring of the focus and the card of a
// popup, with their places.
#pragma once

#include <set>
#include <string>
#include <vector>

#include <Elementary.h>

#include "look/Box.h"
#include "look/Frame.h"
#include "look/Scene.h"
#include "look/Stage.h"

namespace look {

// Whose words a text holds.
enum class Kind {
    Ours,      // a translation, alone or composed
    Name,      // what others have named
    Code,      // to be read character by character
    Mark,      // blanks and colons between others
    Stranger,  // none of these: nothing of the kind should be on a screen
};

// What a text is for.
enum class Role { Title, Control, Body, Secondary };

// How a text takes the room that it has.
enum class Fit { Fits, Wraps, Ellipsis, Cut };

const char* wordOf(Kind kind);
const char* wordOf(Fit fit);

struct Text {
    Evas_Object* object = nullptr;
    std::string words;  // as a person reads them
    Kind kind = Kind::Stranger;
    Role role = Role::Body;
    std::string part;  // of the group that draws it; empty if unknown
    std::string font;
    double size = 0.0;  // pixels
    Box box;
    Box clip;               // what of it may show at most
    Box natural;            // the room that it would take, from its corner on
    bool ellipsis = false;  // whether one is drawn
    int lines = 1;
    bool turned = false;             // a map places it, so that clips do not tell
    Evas_Object* control = nullptr;  // the control or the row that it names
    Evas_Object* scroller = nullptr;
    Box ink;
    Fit fit = Fit::Fits;
};

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
    bool stretches = false;  // how high it is tells how many lines others have
};

struct Ring {
    Evas_Object* object = nullptr;
    Box box;
};

struct Card {
    Box box;
    bool message = false;  // to be read in the middle of the screen
};

// The texts of ours in the language of the moment.
class Vocabulary {
  public:
    // IDS are those of the catalogues.
    explicit Vocabulary(const std::vector<std::string>& ids);
    // Whether TEXT, without markup, is one of ours or composed of one.
    bool has(const std::string& text) const;

  private:
    std::set<std::string> m_texts;
};

// Of a screen with a popup, only the popup's things are noted: what is dimmed is not for reading.
// The objects are the screen's own, good until something changes on it.
struct Inventory {
    Inventory(Stage& stage, const Scene& scene, const Vocabulary& vocabulary);

    std::vector<Text> texts;
    std::vector<Control> controls;  // buttons, drop-downs, and the rows of lists
    std::vector<Control> holders;   // lists and scrollers
    std::vector<Control> circles;
    std::vector<Icon> icons;
    std::vector<Ring> rings;
    std::vector<Card> cards;

    // The control of this widget or null.
    const Control* controlOf(const Evas_Object* widget) const;
};

// Where OBJECT stands in the picture, whatever turns it round on the way.
Box boxOf(const Evas_Object* object);
// WORDS without blanks, colons and marks of direction at their ends: the same in either direction.
std::string coreOf(const std::string& words);
// How TEXT takes its room, once its ink is known. May depend on how far its scroller has gone.
Fit fitOf(const Text& text);

}  // namespace look
