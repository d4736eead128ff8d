// SPDX-License-Identifier: Apache-2.0
// Scenes of the table of a registration.
#include <memory>

#include "common/ShopListParser.h"
#include "gui/EventHandler.h"
#include "gui/RegistrationInfoScreen.h"
#include "look/SceneSources.h"

namespace look {

namespace {

using ZOLT::Shop;
using ZOLT::ShopList;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::Screen;

Rows manyRows(std::size_t count) {
    Rows rows;
    for (std::size_t row = 0; row < count; ++row) {
        rows.emplace_back("Level " + std::to_string(row + 1),
                          shopNames()[row % shopNames().size()]);
    }
    return rows;
}

Rows oddRows() {
    Rows rows;
    for (const std::string& name : oddNames()) {
        rows.emplace_back(name, name);
    }
    rows.emplace_back("", "");
    return rows;
}

ZOLT::GUI::RegistrationInfoScreen* table(ScreenHarness& harness, const Rows& rows) {
    std::vector<ShopList> records;
    std::vector<std::unique_ptr<Shop>> shops;
    for (const auto& [levelName, shopName] : rows) {
        shops.push_back(std::make_unique<Shop>());
        shops.back()->name = shopName;
        shops.back()->code = SHOP_CODE;
        ShopList record;
        record.name = levelName;
        record.shops = {shops.back().get()};
        records.push_back(record);
    }
    return new ZOLT::GUI::RegistrationInfoScreen(records, harness.mode().width,
                                                 harness.mode().height);
}

MakeScreen information(const Rows& rows) {
    return [=](ScreenHarness& harness) -> Screen* {
        auto* screen = table(harness, rows);
        screen->addButton("singleBtn", "SID_OK", EventHandler::goBackRequested, nullptr, true,
                          true);
        return screen;
    };
}

void scrollToEnd(ScreenHarness& harness) {
    for (int press = 0; press < 3; ++press) {
        harness.press("Up");
    }
    for (int press = 0; press < 60; ++press) {
        Evas_Object* before = harness.focused();
        if (before == nullptr || std::string(evas_object_type_get(before)) != "elm_scroller") {
            break;
        }
        harness.press("Down");
    }
}

}  // namespace

const Rows& twoRows() {
    static const Rows rows = {{"Country", "Korea"}, {"Shop", "Seoul Gangnam Flagship"}};
    return rows;
}

Names namesOf(const Rows& rows) {
    Names names;
    for (const auto& [left, right] : rows) {
        names.push_back(left);
        names.push_back(right);
    }
    return names;
}

MakeScreen confirmation(const Rows& rows, bool fromShopList) {
    return [=](ScreenHarness& harness) -> Screen* {
        auto* screen = table(harness, rows);
        if (fromShopList) {
            screen->addButton("prevBtn", "SID_PREVIOUS", EventHandler::prevSelectionScreenRequested,
                              nullptr, true, false);
            screen->addButton("regBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                              nullptr, true, true);
        } else {
            screen->addButton("singleBtn", "SID_REGISTER", EventHandler::shopRegistrationRequested,
                              nullptr, true, true);
        }
        return screen;
    };
}

void addTableScenes(std::vector<Scene>& all) {
    const Rows four = manyRows(4);
    const Rows twelve = manyRows(12);
    all.push_back(
        {"information-2", information(twoRows()), nullptr, namesOf(twoRows()), {SHOP_CODE}});
    all.push_back(
        {"information-4", information(four), nullptr, namesOf(four), {SHOP_CODE}, false, false});
    all.push_back({"information-12",
                   information(twelve),
                   nullptr,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"information-12-end",
                   information(twelve),
                   scrollToEnd,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.back().scrolled = true;
    all.push_back({"information-none", information({}), nullptr, {}, {}, false, false});
    all.push_back({"confirmation-2",
                   confirmation(twoRows(), true),
                   nullptr,
                   namesOf(twoRows()),
                   {SHOP_CODE}});
    all.push_back({"confirmation-single",
                   confirmation(twoRows(), false),
                   nullptr,
                   namesOf(twoRows()),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"confirmation-12",
                   confirmation(twelve, true),
                   nullptr,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.push_back({"confirmation-12-end",
                   confirmation(twelve, true),
                   scrollToEnd,
                   namesOf(twelve),
                   {SHOP_CODE},
                   false,
                   false});
    all.back().scrolled = true;
    all.push_back({"information-odd",
                   information(oddRows()),
                   nullptr,
                   namesOf(oddRows()),
                   {SHOP_CODE},
                   false,
                   false});
}

}  // namespace look
