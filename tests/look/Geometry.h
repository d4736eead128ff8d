// SPDX-License-Identifier: Apache-2.0
// Where objects stand in the picture.
#pragma once

#include <Evas.h>

#include "look/Box.h"

namespace look {

// The geometry of OBJECT, without the maps that turn it.
Box plainBoxOf(const Evas_Object* object);
// Where OBJECT stands in the picture, whatever map turns it.
Box boxOf(const Evas_Object* object);
// Whether a map places OBJECT or one of its parents.
bool isTurned(const Evas_Object* object);
// What its clippers leave of OBJECT in PICTURE; empty when one of them hides all.
Box clipOf(const Evas_Object* object, const Box& picture);

}  // namespace look
