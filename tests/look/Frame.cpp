// SPDX-License-Identifier: Apache-2.0
// The pixels of a picture, and how they differ from those of another.
#include "look/Frame.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace look {

namespace {

constexpr int OVERLOOKED = 12;  // of 255

std::array<double, 256> makeLinear() {
    std::array<double, 256> linear{};
    for (std::size_t value = 0; value < linear.size(); ++value) {
        const double part = static_cast<double>(value) / 255.0;
        linear[value] = part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    }
    return linear;
}

double luminance(Pixel pixel) {
    static const std::array<double, 256> linear = makeLinear();
    return 0.2126 * linear[(pixel >> 16) & 255] + 0.7152 * linear[(pixel >> 8) & 255] +
           0.0722 * linear[pixel & 255];
}

int part(Pixel pixel, int shift) {
    return static_cast<int>((pixel >> shift) & 255);
}

}  // namespace

double contrastOf(Pixel one, Pixel other) {
    const double first = luminance(one) + 0.05;
    const double second = luminance(other) + 0.05;
    return first > second ? first / second : second / first;
}

int distanceOf(Pixel one, Pixel other) {
    int most = 0;
    for (const int shift : {0, 8, 16}) {
        most = std::max(most, std::abs(part(one, shift) - part(other, shift)));
    }
    return most;
}

Frame::Frame(int width, int height, const void* pixels)
    : m_width(width), m_height(height), m_pixels(static_cast<const Pixel*>(pixels)) {}

Frame Frame::copy() const {
    Frame made = *this;
    const std::size_t count =
        static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height);
    made.m_kept = std::make_shared<std::vector<Pixel>>(m_pixels, m_pixels + count);
    made.m_pixels = made.m_kept->data();
    return made;
}

int Frame::changedPixels(const Frame& other, const Box& area, double least) const {
    const Box seen = area.common(whole());
    int changed = 0;
    for (int y = seen.top; y < seen.bottom; ++y) {
        for (int x = seen.left; x < seen.right; ++x) {
            const Pixel mine = at(x, y);
            const Pixel others = other.at(x, y);
            changed += mine != others && contrastOf(mine, others) >= least ? 1 : 0;
        }
    }
    return changed;
}

Box Frame::differenceIn(const Frame& other, const Box& area) const {
    Box box;
    const Box seen = area.common(whole());
    if (seen.empty()) {
        return box;
    }
    const std::size_t bytes = static_cast<std::size_t>(seen.width()) * sizeof(Pixel);
    for (int y = seen.top; y < seen.bottom; ++y) {
        const Pixel* mine = row(y);
        const Pixel* others = other.row(y);
        if (std::memcmp(mine + seen.left, others + seen.left, bytes) == 0) {
            continue;
        }
        int left = seen.left;
        int right = seen.right;
        while (left < right && distanceOf(mine[left], others[left]) <= OVERLOOKED) {
            ++left;
        }
        while (right > left && distanceOf(mine[right - 1], others[right - 1]) <= OVERLOOKED) {
            --right;
        }
        if (left < right) {
            box = box.with({left, y, right, y + 1});
        }
    }
    return box;
}

bool Frame::differsOnlyIn(const Frame& other, const std::vector<Box>& areas) const {
    const std::size_t bytes = static_cast<std::size_t>(m_width) * sizeof(Pixel);
    for (int y = 0; y < m_height; ++y) {
        if (std::memcmp(row(y), other.row(y), bytes) == 0) {
            continue;
        }
        for (int x = 0; x < m_width; ++x) {
            if (distanceOf(at(x, y), other.at(x, y)) <= OVERLOOKED) {
                continue;
            }
            const Box point{x, y, x + 1, y + 1};
            const auto holding = std::find_if(areas.begin(), areas.end(),
                                              [&](const Box& area) { return area.holds(point); });
            if (holding == areas.end()) {
                return false;
            }
            x = holding->right - 1;  // the rest of this line of the area is its own
        }
    }
    return true;
}

double Frame::shareThatDiffers(const Box& area, const Frame& other, const Box& areaOfOther,
                               bool turned, int least) const {
    const int width = std::min(area.width(), areaOfOther.width());
    const int height = std::min(area.height(), areaOfOther.height());
    int different = 0;
    int seen = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int there = turned ? areaOfOther.right - 1 - x : areaOfOther.left + x;
            if (!whole().holds(
                    {area.left + x, area.top + y, area.left + x + 1, area.top + y + 1}) ||
                !other.whole().holds(
                    {there, areaOfOther.top + y, there + 1, areaOfOther.top + y + 1})) {
                continue;
            }
            ++seen;
            if (distanceOf(at(area.left + x, area.top + y), other.at(there, areaOfOther.top + y)) >
                least) {
                ++different;
            }
        }
    }
    return seen > 0 ? static_cast<double>(different) / seen : 0.0;
}

Frame Frame::reduced(int factor) const {
    std::vector<Pixel> pixels;
    const int width = m_width / factor;
    const int height = m_height / factor;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::array<int, 3> sums{};
            for (int line = 0; line < factor; ++line) {
                for (int column = 0; column < factor; ++column) {
                    const Pixel pixel = at(x * factor + column, y * factor + line);
                    sums[0] += part(pixel, 16);
                    sums[1] += part(pixel, 8);
                    sums[2] += part(pixel, 0);
                }
            }
            Pixel mean = 0xff;
            for (const int sum : sums) {
                mean = (mean << 8) | static_cast<Pixel>(sum / (factor * factor));
            }
            pixels.push_back(mean);
        }
    }
    return Frame(width, height, pixels.data()).copy();
}

}  // namespace look
