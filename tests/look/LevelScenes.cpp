// SPDX-License-Identifier: Apache-2.0
// Scenes of one level of the shop list and of its selection popup.
#include <queue>

#include "gui/FlowScreens.h"
#include "gui/SelectionPopup.h"
#include "look/SceneSources.h"

namespace look {

namespace {

using ZOLT::GUI::Popup;
using ZOLT::GUI::Screen;
using ZOLT::GUI::ShopListScreen;

// A level that is called NAME. CHOSEN is what has been chosen on the levels before.
MakeScreen level(const std::string& name, const Names& chosen, bool first) {
    return [=](ScreenHarness& harness) -> Screen* {
        std::string given = name;
        std::queue<std::string> values;
        for (const std::string& value : chosen) {
            values.push(value);
        }
        return ZOLT::GUI::makeShopListScreen(given, values, harness.mode().width,
                                             harness.mode().height, "", first)
            .release();
    };
}

MakeScreen firstLevel(const std::string& name) {
    return level(name, {}, true);
}

MakeScreen laterLevel(const std::string& name, const Names& chosen) {
    return level(name, chosen, false);
}

// The confirmed choice of a shop.
std::function<void(ScreenHarness&)> pick(const std::string& name, bool first, bool last) {
    return [=](ScreenHarness& harness) {
        ZOLT::Shop shop;
        shop.name = name;
        shop.hasSubs = !last;
        ZOLT::GUI::showChoice(dynamic_cast<ShopListScreen&>(harness.screen()), shop, first);
    };
}

std::function<void(ScreenHarness&)> choose(const Names& names, int downs = 0, bool select = false) {
    return [=](ScreenHarness& harness) {
        auto shops = harness.shops(names);
        dynamic_cast<ShopListScreen&>(harness.screen()).addSelectionPopup(shops)->show();
        harness.settle();
        for (int press = 0; press < downs; ++press) {
            harness.press("Down");
        }
        if (select) {
            harness.press("Return");
        }
    };
}

Names numbered(int count) {
    Names names;
    for (int number = 1; number <= count; ++number) {
        names.push_back("Shop number " + std::to_string(number));
    }
    return names;
}

// The row of a long list is reached as a held key reaches it, without a look at each on the way.
std::function<void(ScreenHarness&)> chooseFar(const Names& names, int row) {
    return [=](ScreenHarness& harness) {
        auto shops = harness.shops(names);
        auto& screen = dynamic_cast<ShopListScreen&>(harness.screen());
        Popup* popup = screen.addSelectionPopup(shops);
        popup->show();
        harness.settle();
        Evas_Object* list = dynamic_cast<ZOLT::GUI::SelectionPopup&>(*popup).m_list;
        Elm_Object_Item* item = elm_genlist_nth_item_get(list, static_cast<unsigned>(row));
        elm_genlist_item_show(item, ELM_GENLIST_ITEM_SCROLLTO_IN);
        harness.settle();
        elm_object_item_focus_set(item, EINA_TRUE);
    };
}

Names with(const Names& some, const Names& more) {
    Names all = some;
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

}  // namespace

void addLevelScenes(std::vector<Scene>& all) {
    const std::string& busan = shopNames()[1];
    const std::string region = "Korea South Eastern Region, Gyeongsang Province and Ulsan";
    all.push_back({"level-first", firstLevel("Country"), nullptr, {"Country"}, {}});
    all.push_back({"level-first-picked",
                   firstLevel("Country"),
                   pick("Korea", true, false),
                   {"Country", "Korea"},
                   {},
                   false,
                   false});
    all.push_back({"level-later", laterLevel("Shop", {region}), nullptr, {"Shop", region}, {}});
    all.push_back({"level-later-picked",
                   laterLevel("Shop", {region}),
                   pick(busan, false, false),
                   {"Shop", region, busan},
                   {},
                   false,
                   false});
    all.push_back({"level-last",
                   laterLevel("Shop", {region}),
                   pick(busan, false, true),
                   {"Shop", region, busan},
                   {}});
    Names ten;
    for (int number = 1; number <= 10; ++number) {
        ten.push_back("Chosen value number " + std::to_string(number));
    }
    all.push_back({"level-ten-values",
                   laterLevel("Shop", ten),
                   nullptr,
                   with({"Shop"}, ten),
                   {},
                   false,
                   false});
    for (std::size_t place = 0; place < oddNames().size(); ++place) {
        const std::string& odd = oddNames()[place];
        all.push_back({"level-odd-" + std::to_string(place + 1),
                       laterLevel(odd, {odd}),
                       pick(odd, false, true),
                       {odd},
                       {},
                       false,
                       false});
    }
    all.push_back(
        {"level-empty-names", laterLevel("", {""}), pick("", false, true), {""}, {}, false, false});

    const auto shop = laterLevel("Shop", {region});
    const Names base = {"Shop", region};
    all.push_back({"selection", shop, choose(shopNames()), with(base, shopNames()), {}});
    all.push_back({"selection-made",
                   shop,
                   choose(shopNames(), 1, true),
                   with(base, shopNames()),
                   {},
                   false,
                   false});
    all.push_back({"selection-empty", shop, choose({}), base, {}, false, false});
    all.push_back(
        {"selection-one", shop, choose({"Seoul"}), with(base, {"Seoul"}), {}, false, false});
    const Names many = numbered(500);
    all.push_back(
        {"selection-500-middle", shop, chooseFar(many, 250), with(base, many), {}, false, false});
    all.push_back(
        {"selection-500-end", shop, chooseFar(many, 499), with(base, many), {}, false, false});
    all.push_back(
        {"selection-odd", shop, choose(oddNames()), with(base, oddNames()), {}, false, false});
}

}  // namespace look
