// SPDX-License-Identifier: Apache-2.0
// Scenes of the table of a registration.
#include <memory>

#include "common/ShopListParser.h"
#include "gui/FlowScreens.h"
#include "look/SceneSources.h"

namespace look {

namespace {

using ZOLT::Shop;
using ZOLT::ShopList;
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

// The levels of a registration, with shops of their own.
class Levels {
  public:
    explicit Levels(const Rows& rows) {
        for (const auto& [levelName, shopName] : rows) {
            m_shops.push_back(std::make_unique<Shop>());
            m_shops.back()->name = shopName;
            m_shops.back()->code = SHOP_CODE;
            ShopList list;
            list.name = levelName;
            list.shops = {m_shops.back().get()};
            m_lists.push_back(list);
        }
    }
    std::vector<ShopList>& lists() { return m_lists; }

  private:
    std::vector<std::unique_ptr<Shop>> m_shops;
    std::vector<ShopList> m_lists;
};

MakeScreen information(const Rows& rows) {
    return [=](ScreenHarness& harness) -> Screen* {
        Levels levels(rows);
        return ZOLT::GUI::makeInformationScreen(levels.lists(), harness.mode().width,
                                                harness.mode().height)
            .release();
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
        Levels levels(rows);
        return ZOLT::GUI::makeConfirmationScreen(levels.lists(), harness.mode().width,
                                                 harness.mode().height, fromShopList)
            .release();
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
