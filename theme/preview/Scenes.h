// SPDX-License-Identifier: Apache-2.0
// Every screen and popup of the program by a short name, for looking at the theme and for testing
// it.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "Stage.h"

namespace ZOLT::Preview {

struct Scene {
    const char* group;
    bool hasEnlarged;  // the program then loads another group in enlarged mode
    std::function<void(Stage&)> set;
};

const std::map<std::string, Scene>& scenes();

/// The layout group that the program loads for SCENE.
std::string groupOf(const Scene& scene, bool enlarge);

}  // namespace ZOLT::Preview
