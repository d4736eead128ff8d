// SPDX-License-Identifier: Apache-2.0
// A rectangle of pixels.
#pragma once

#include <algorithm>
#include <string>

namespace look {

// From LEFT and TOP up to but not including RIGHT and BOTTOM.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    int width() const { return right - left; }
    int height() const { return bottom - top; }
    bool empty() const { return right <= left || bottom <= top; }
    bool holds(const Box& other) const {
        return left <= other.left && top <= other.top && right >= other.right &&
               bottom >= other.bottom;
    }
    bool meets(const Box& other) const { return !common(other).empty(); }
    Box common(const Box& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    Box with(const Box& other) const {
        return empty() ? other
                       : Box{std::min(left, other.left), std::min(top, other.top),
                             std::max(right, other.right), std::max(bottom, other.bottom)};
    }
    // Wider by MARGIN on every side.
    Box grown(int margin) const {
        return {left - margin, top - margin, right + margin, bottom + margin};
    }
    // Where it stands in a mirror image of a picture of this width.
    Box mirrored(int pictureWidth) const {
        return {pictureWidth - right, top, pictureWidth - left, bottom};
    }
    std::string words() const {
        return std::to_string(left) + "," + std::to_string(top) + "-" + std::to_string(right) +
               "," + std::to_string(bottom);
    }
};

}  // namespace look
