// SPDX-License-Identifier: Apache-2.0
// The shop lists that ship with the daemon, as the program's parser reads them.
#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/ShopListParser.h"
#include "daemon/ShopListDocument.h"
#include "support/TestSupport.h"

namespace standin {
namespace {

using ZOLT::Shop;
using ZOLT::ShopList;
using ZOLT::ShopListParser;

// Checking a document against a list reads the whole list, so a large one is only sampled.
constexpr size_t DOCUMENTS_CHECKED = 20;

std::string listText(const std::string& name) {
    return support::readFile(std::string(ZOLT_SHOP_LIST_DIR) + "/" + name + ".xml");
}

class ShippedList : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        text = listText(GetParam());
        parser.parseShopListXML(text);
        for (const ShopList& list : parser.getShopList()) {
            shops.insert(shops.end(), list.shops.begin(), list.shops.end());
        }
        ASSERT_FALSE(shops.empty());
    }

    std::string text;
    ShopListParser parser;
    std::vector<Shop*> shops;
};

TEST_P(ShippedList, HasADifferentCodeForEveryEntry) {
    EXPECT_EQ(parser.getShops().size(), shops.size());
}

TEST_P(ShippedList, HasEveryEntryInItsPlace) {
    for (const Shop* shop : shops) {
        EXPECT_EQ(shop->code.size(), 2U * (static_cast<unsigned>(shop->level) + 1)) << shop->name;
        const std::string parent = shop->code.substr(0, shop->code.size() - 2);
        EXPECT_EQ(shop->parent != nullptr ? shop->parent->code : "", parent) << shop->name;
        const std::string key = shop->parent != nullptr ? shop->parent->name : "Root";
        const auto& siblings = parser.getSubs(key);
        EXPECT_NE(std::find(siblings.begin(), siblings.end(), shop), siblings.end()) << shop->name;
    }
}

TEST_P(ShippedList, OffersAllTopEntries) {
    EXPECT_EQ(parser.getSubs("").size(), parser.getShopList().front().shops.size());
}

TEST_P(ShippedList, HasADifferentNameForEveryEntryWithChildren) {
    std::set<std::string> names = {"Root"};
    std::map<std::string, int> uses;
    for (const Shop* shop : shops) {
        ++uses[shop->name];
        EXPECT_TRUE(!shop->hasSubs || names.insert(shop->name).second) << shop->name;
    }
    for (const Shop* shop : shops) {
        EXPECT_TRUE(!shop->hasSubs || uses[shop->name] == 1) << shop->name;
    }
}

TEST_P(ShippedList, YieldsADocumentForEachEntryThatComesBackWholeAndThatTheDaemonTakesFromAShop) {
    const size_t step = std::max<size_t>(1, shops.size() / DOCUMENTS_CHECKED);
    for (size_t index = 0; index < shops.size(); ++index) {
        const Shop* shop = shops[index];
        const std::string document = parser.getRegistrationXml(shops[index]);
        std::vector<ShopList> levels = parser.parseRegisteredShopXML(document);
        ASSERT_EQ(levels.size(), shop->code.size() / 2) << document;
        EXPECT_EQ(levels.back().shops.front()->name, shop->name);
        EXPECT_EQ(levels.back().shops.front()->code, shop->code);
        for (ShopList& level : levels) {
            level.clean();
        }
        if (index % step == 0) {
            const std::string refusal =
                shop->hasSubs ? "it ends at \"" + shop->name + "\", which has children" : "";
            EXPECT_EQ(registrationFault(document, text).value_or(""), refusal) << document;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, ShippedList,
                         ::testing::Values("retail", "scripts", "places", "one-shop", "two-levels"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                             return name;
                         });

TEST(ShippedLists, AreAllTested) {
    size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ZOLT_SHOP_LIST_DIR)) {
        count += entry.path().extension() == ".xml" ? 1 : 0;
    }
    EXPECT_EQ(count, 5U);
}

TEST(ShippedLists, RetailHasFourLevelsWithOneEntryAtTheTopAndChainsBelow) {
    ShopListParser parser;
    parser.parseShopListXML(listText("retail"));
    EXPECT_EQ(parser.getAmountOfLevels(), 4U);
    EXPECT_EQ(parser.getSubs("Root").size(), 1U);
    EXPECT_GT(parser.getSubs("United Kingdom").size(), 1U);
    EXPECT_EQ(parser.getSubs("Wales").size(), 1U);
    EXPECT_GT(parser.getSubs("Cardiff").size(), 1U);
    EXPECT_EQ(parser.getSubs("Northern Ireland").size(), 1U);
    EXPECT_EQ(parser.getSubs("Belfast").size(), 1U);
}

TEST(ShippedLists, PlacesHasThousandsOfEntries) {
    ShopListParser parser;
    parser.parseShopListXML(listText("places"));
    EXPECT_GT(parser.getShops().size(), 4000U);
}

}  // namespace
}  // namespace standin
