// SPDX-License-Identifier: Apache-2.0
// Where the list of scenes comes from, and what several kinds of scenes share.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "look/Scene.h"
#include "look/ScreenHarness.h"

namespace look {

using Names = std::vector<std::string>;
using Rows = std::vector<std::pair<std::string, std::string>>;  // of a registration
using MakeScreen = std::function<ZOLT::GUI::Screen*(ScreenHarness&)>;

// Each adds its scenes to ALL.
void addMenuScenes(std::vector<Scene>& all);
void addLevelScenes(std::vector<Scene>& all);
void addTableScenes(std::vector<Scene>& all);
void addPopupScenes(std::vector<Scene>& all);

// Thirteen shops: short and long, in several scripts, with signs that mean something in markup.
const Names& shopNames();
// Names as no tidy person would enter them.
const Names& oddNames();
inline constexpr char SHOP_CODE[] = "KR-SEL-0417";

// The rows of a short registration.
const Rows& twoRows();
Names namesOf(const Rows& rows);
// The screen that asks for the confirmation of a registration.
MakeScreen confirmation(const Rows& rows, bool fromShopList);

// A screen that needs nothing but its size.
template <typename ScreenType>
MakeScreen simple() {
    return [](ScreenHarness& harness) -> ZOLT::GUI::Screen* {
        return new ScreenType(harness.mode().width, harness.mode().height);
    };
}

}  // namespace look
