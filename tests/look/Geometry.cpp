// SPDX-License-Identifier: Apache-2.0
// Where objects stand in the picture.
#include "look/Geometry.h"

#include <cmath>

namespace look {

namespace {

// The box around BOX once the map of HOLDER has moved its corners.
Box mapped(const Box& box, const Evas_Object* holder) {
    const Box whole = plainBoxOf(holder);
    const Evas_Map* map = evas_object_map_get(holder);
    if (map == nullptr || whole.empty()) {
        return box;
    }
    double corners[4][2];
    for (int corner = 0; corner < 4; ++corner) {
        int x = 0;
        int y = 0;
        evas_map_point_coord_get(map, corner, &x, &y, nullptr);
        corners[corner][0] = x;
        corners[corner][1] = y;
    }
    Box result;
    for (const int x : {box.left, box.right}) {
        for (const int y : {box.top, box.bottom}) {
            const double across = static_cast<double>(x - whole.left) / whole.width();
            const double down = static_cast<double>(y - whole.top) / whole.height();
            double place[2];
            for (int axis = 0; axis < 2; ++axis) {
                place[axis] = corners[0][axis] + across * (corners[1][axis] - corners[0][axis]) +
                              down * (corners[3][axis] - corners[0][axis]);
            }
            const int left = static_cast<int>(std::lround(place[0]));
            const int top = static_cast<int>(std::lround(place[1]));
            const Box point{left, top, left + 1, top + 1};
            result = result.empty() ? point : result.with(point);
        }
    }
    return {result.left, result.top, result.right - 1, result.bottom - 1};
}

}  // namespace

Box plainBoxOf(const Evas_Object* object) {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object, &x, &y, &width, &height);
    return {x, y, x + width, y + height};
}

Box boxOf(const Evas_Object* object) {
    Box box = plainBoxOf(object);
    for (const Evas_Object* at = object; at != nullptr; at = evas_object_smart_parent_get(at)) {
        if (evas_object_map_enable_get(at)) {
            box = mapped(box, at);
        }
    }
    return box;
}

bool isTurned(const Evas_Object* object) {
    for (const Evas_Object* at = object; at != nullptr; at = evas_object_smart_parent_get(at)) {
        if (evas_object_map_enable_get(at)) {
            return true;
        }
    }
    return false;
}

Box clipOf(const Evas_Object* object, const Box& picture) {
    Box clip = picture;
    for (const Evas_Object* at = evas_object_clip_get(object); at != nullptr;
         at = evas_object_clip_get(at)) {
        int alpha = 255;
        evas_object_color_get(at, nullptr, nullptr, nullptr, &alpha);
        if (!evas_object_visible_get(at) || alpha == 0) {
            return {};
        }
        clip = clip.common(plainBoxOf(at));
    }
    return clip;
}

}  // namespace look
