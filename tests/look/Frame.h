// SPDX-License-Identifier: Apache-2.0
// The pixels of a picture, and how they differ from those of another.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "look/Box.h"

namespace look {

using Pixel = std::uint32_t;  // 0xAARRGGBB

// Contrast of two colours, from 1 to 21, by relative luminance.
double contrastOf(Pixel one, Pixel other);
// The largest difference of a colour part, from 0 to 255.
int distanceOf(Pixel one, Pixel other);

// What a window shows: a copy, or a view of pixels that somebody else keeps.
class Frame {
  public:
    Frame() = default;
    // A view, which is good until the window is drawn again.
    Frame(int width, int height, const void* pixels);

    Frame copy() const;
    bool empty() const { return m_pixels == nullptr; }

    int width() const { return m_width; }
    int height() const { return m_height; }
    Box whole() const { return {0, 0, m_width, m_height}; }
    Pixel at(int x, int y) const {
        return m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                        static_cast<std::size_t>(x)];
    }
    const Pixel* row(int y) const {
        return &m_pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width)];
    }

    // How many pixels in AREA differ from those of OTHER by a contrast of at least LEAST.
    int changedPixels(const Frame& other, const Box& area, double least) const;
    // The smallest box around all pixels that differ from OTHER by more than the eye overlooks.
    Box differenceTo(const Frame& other) const { return differenceIn(other, whole()); }
    // The same within AREA.
    Box differenceIn(const Frame& other, const Box& area) const;
    // Whether all pixels that differ from OTHER lie in one of AREAS.
    bool differsOnlyIn(const Frame& other, const std::vector<Box>& areas) const;
    // Which share of the pixels of AREA differ by more than LEAST in a colour part from those of
    // AREA_OF_OTHER in OTHER, where both overlap when laid on one another; TURNED holds the second
    // up to a mirror.
    double shareThatDiffers(const Box& area, const Frame& other, const Box& areaOfOther,
                            bool turned, int least) const;
    // The same picture with fewer pixels: FACTOR by FACTOR of them become one.
    Frame reduced(int factor) const;

  private:
    int m_width = 0;
    int m_height = 0;
    const Pixel* m_pixels = nullptr;
    std::shared_ptr<std::vector<Pixel>> m_kept;  // holds m_pixels; null for a view
};

}  // namespace look
