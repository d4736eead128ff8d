// SPDX-License-Identifier: Apache-2.0
// Gives tests access to the private state of the flow.
#pragma once

#include <deque>

#include "gui/Controller.h"

namespace ZOLT::GUI {

struct ControllerProbe {
    static std::deque<Screen*>& history(Controller& flow) { return flow.m_history; }
    static std::deque<Shop*>& chosen(Controller& flow) { return flow.m_chosenShops; }
    static uint32_t& level(Controller& flow) { return flow.m_currentLevel; }
    static uint32_t& initialLevel(Controller& flow) { return flow.m_initialLevel; }
    static ShopListParser& parser(Controller& flow) { return flow.m_shopListParser; }
};

}  // namespace ZOLT::GUI
