// SPDX-License-Identifier: Apache-2.0
// A second shop list in one run: what remains of the first, and that no pointer into it dangles.
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "flow/FlowFixture.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using ZOLT::GUI::ControllerProbe;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::SelectionPopup;
using ZOLT::GUI::ShopListScreen;

namespace flow {
namespace {

const std::vector<Level> FIRST = {
    {"Country", {{"North", "01"}, {"South", "02"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}}}};
// Other names for the codes of the first, and one more of each.
const std::vector<Level> SECOND = {
    {"Land", {{"Nord", "01"}, {"Sued", "02"}, {"West", "03"}}},
    {"Laden", {{"A1", "0101"}, {"A2", "0102"}, {"B1", "0201"}, {"C1", "0301"}, {"C2", "0302"}}}};

// The address sanitizer reports any use of a deleted shop.
class SecondShopListTest : public FlowFixture {
  protected:
    static void push(Evas_Object* button) {
        evas_object_smart_callback_call(button, "clicked", nullptr);
        settle();
    }
    std::vector<std::string> below(const std::string& name) {
        std::vector<std::string> names;
        for (const ZOLT::Shop* shop : ControllerProbe::parser(*m_flow).getSubs(name)) {
            names.push_back(shop->name);
        }
        return names;
    }
    // To the first list's lower level, with "North" chosen.
    void chooseNorth() {
        start();
        serve(FIRST);
        choose("North");
        click(EventHandler::nextSelectionScreenRequested);
    }
    // The texts of the rows, drawn anew.
    static std::vector<std::string> rowsOf(const SelectionPopup& popup) {
        elm_genlist_realized_items_update(popup.m_list);
        settle();
        std::vector<std::string> rows;
        for (Elm_Object_Item* item = elm_genlist_first_item_get(popup.m_list); item != nullptr;
             item = elm_genlist_item_next_get(item)) {
            char* const text =
                SelectionPopup::itemGetLabel(elm_object_item_data_get(item), nullptr, "elm.text");
            rows.emplace_back(text);
            free(text);
        }
        return rows;
    }
};

TEST_F(SecondShopListTest, LevelNumbersContinueAndTheListsAreThoseOfTheSecond) {
    start();
    serve(FIRST);
    EXPECT_EQ(2U, ControllerProbe::parser(*m_flow).getAmountOfLevels());
    serve(SECOND);
    EXPECT_EQ(4U, ControllerProbe::parser(*m_flow).getAmountOfLevels());
    ASSERT_EQ(2U, ControllerProbe::parser(*m_flow).getShopList().size());
    EXPECT_EQ("Land", ControllerProbe::parser(*m_flow).getShopList()[0].name);
    EXPECT_EQ(8U, ControllerProbe::parser(*m_flow).getShops().size());
    EXPECT_EQ(3U, history().size());
}

TEST_F(SecondShopListTest, TheEntriesOfTheFirstStayUnderTheirNamesAndCodes) {
    start();
    serve(FIRST);
    serve(SECOND);
    EXPECT_THAT(below("Root"), ElementsAre("North", "South", "West"));
    EXPECT_THAT(below("North"), ElementsAre("N1", "N2"));
    EXPECT_THAT(below("Nord"), ElementsAre("A1", "A2"));
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("North", "South", "West"));
    EXPECT_THAT(rowsOf(*popup<SelectionPopup>()), ElementsAre("North", "South", "West"));
}

TEST_F(SecondShopListTest, AnEntryOfTheFirstLeadsToItsOwnChildrenAndToTheSecondsLevel) {
    start();
    serve(FIRST);
    serve(SECOND);
    choose("North");
    EXPECT_EQ("SID_NEXT*!", describe("singleBtn"));
    push(button("singleBtn"));
    EXPECT_EQ(1U, level());
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
    const auto headings = childrenOf(layoutOf(screen()), "selectText");
    EXPECT_EQ("Laden", textOf(headings.back()));
    choose("N2");
    push(button("nextBtn"));
    ASSERT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_THAT(chosen(), ElementsAre("N2", "North"));
    push(button("regBtn"));
    const std::string sent = daemon().registrationDocument();
    EXPECT_THAT(sent, HasSubstr(R"(name="Laden")"));
    EXPECT_THAT(sent, HasSubstr(R"(<sub_list name="N2" code="0102" />)"));
    EXPECT_THAT(sent, HasSubstr(R"(<sub_list name="North" code="01" />)"));
}

TEST_F(SecondShopListTest, TheChosenShopsOfTheFirstAreNamedOnTheScreensOfTheSecond) {
    chooseNorth();
    serve(SECOND);
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), ElementsAre("North"));
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
    choose("West");
    push(button("singleBtn"));
    EXPECT_THAT(chosen(), ElementsAre("West", "North"));
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("C1", "C2"));
    click(EventHandler::popupHideRequested);
    push(button("prevBtn"));
    EXPECT_THAT(chosen(), IsEmpty());
    EXPECT_EQ("", textOf(layoutOf(screen()), "shop1"));
}

TEST_F(SecondShopListTest, TheChosenShopsOfTheFirstStayAfterTwoMoreLists) {
    chooseNorth();
    choose("N1");
    click(EventHandler::registrationConfirmationScreenRequested);
    serve(FIRST);
    serve(SECOND);
    EXPECT_THAT(chosen(), ElementsAre("N1", "North"));
    EXPECT_EQ("North", textOf(layoutOf(screen()), "shop1"));
    EXPECT_EQ(6U, ControllerProbe::parser(*m_flow).getAmountOfLevels());
}

TEST_F(SecondShopListTest, APopupBelowTheSecondsScreenKeepsItsRows) {
    start();
    serve(FIRST);
    click(EventHandler::selectionPopupRequested);
    draw(windowOf(screen()));
    auto* const old = popup<SelectionPopup>();
    m_flow->callbackManager(0, 12);
    serve(SECOND);
    ASSERT_EQ(old, history().at(2)->getPopup());
    EXPECT_THAT(rowsOf(*old), ElementsAre("North", "South"));
    draw(windowOf(*history().at(2)));
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(nullptr, popup());
}

TEST_F(SecondShopListTest, GoingBackToTheFirstsScreenDestroysItsPopup) {
    start();
    serve(FIRST);
    choose("South");
    m_flow->callbackManager(0, 12);
    serve(SECOND);
    click(EventHandler::goBackRequested);
    click(EventHandler::goBackRequested);
    ASSERT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(nullptr, popup());
    announceWarning("Currently shown screen is not a ShopList screen");
    push(button("singleBtn"));
    EXPECT_THAT(chosen(), IsEmpty());
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("North", "South", "West"));
}

TEST_F(SecondShopListTest, NextOnTheFirstsScreenIsDroppedAndActsOnlyOnTheScreenOnTop) {
    start();
    serve(FIRST);
    choose("South");
    m_flow->callbackManager(0, 12);
    Evas_Object* const next = partOf(layoutOf(*history().at(1)), "singleBtn");
    serve(SECOND);
    choose("West");
    push(next);
    EXPECT_THAT(chosen(), IsEmpty());
    push(button("singleBtn"));
    EXPECT_THAT(chosen(), ElementsAre("West"));
    EXPECT_EQ(1U, level());
}

TEST_F(SecondShopListTest, NextOnAPopupOfTheFirstGoesOnWithItsPick) {
    start();
    serve(FIRST);
    choose("South");
    daemon().answer("getShopInfoList", document(SECOND));
    m_flow->prepareShopList();
    push(button("singleBtn"));
    EXPECT_THAT(chosen(), ElementsAre("South"));
    EXPECT_EQ("South", textOf(layoutOf(screen()), "shop1"));
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("S1", "S2"));
}

TEST_F(SecondShopListTest, ARowOfTheFirstCanStillBePickedAndConfirmed) {
    start();
    serve(FIRST);
    click(EventHandler::selectionPopupRequested);
    daemon().answer("getShopInfoList", document(SECOND));
    m_flow->prepareShopList();
    Elm_Object_Item* const row = elm_genlist_first_item_get(popup<SelectionPopup>()->m_list);
    elm_genlist_item_selected_set(row, EINA_TRUE);
    settle();
    click(EventHandler::selectionPopupShopChosen);
    EXPECT_EQ("North", textOf(button("selectBtn")));
    EXPECT_EQ("SID_NEXT*!", describe("singleBtn"));
    click(EventHandler::selectionPopupRequested);
    EXPECT_EQ("North", popup<SelectionPopup>()->m_selectedShop->name);
}

TEST_F(SecondShopListTest, ASecondOfOneShopIsConfirmedAboveThePopupOfTheFirst) {
    start();
    serve(FIRST);
    choose("South");
    auto* const old = popup<SelectionPopup>();
    serve(ONE_SHOP);
    ASSERT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    EXPECT_THAT(chosen(), ElementsAre("Only"));
    ASSERT_EQ(old, history().at(1)->getPopup());
    EXPECT_EQ("South", old->m_selectedShop->name);
    push(button("regBtn"));
    EXPECT_THAT(daemon().registrationDocument(), HasSubstr(R"(name="Only" code="01")"));
}

// An entry that is alone on the top level is in none of the parser's sets.
TEST_F(SecondShopListTest, TheOnlyShopOfTheFirstStaysAmongTheChosenOnes) {
    start();
    serve(ONE_SHOP);
    EXPECT_THAT(chosen(), ElementsAre("Only"));
    serve(SECOND);
    EXPECT_THAT(chosen(), ElementsAre("Only"));
    EXPECT_EQ("Only", textOf(layoutOf(screen()), "shop1"));
}

// The document is made from the parser's current levels.
TEST_F(SecondShopListTest, AShopOfTheFirstThatIsTooDeepForTheSecondCannotBeRegistered) {
    chooseNorth();
    choose("N1");
    daemon().answer("getShopInfoList", document(ONE_SHOP));
    m_flow->prepareShopList();
    EXPECT_THROW(click(EventHandler::registrationConfirmationScreenRequested), std::out_of_range);
}

TEST_F(SecondShopListTest, AfterASecondThatCannotBeReadTheDropDownOffersTheFirst) {
    chooseNorth();
    daemon().answer("getShopInfoList", "null");
    announceWarning("Exception caught during event handling: Shop list is empty ");
    m_flow->callbackManager(0, 2);
    EXPECT_EQ("SID_INTERNET_CONNECTION_NOT_STABLE_MSG", labelText());
    EXPECT_THAT(ControllerProbe::parser(*m_flow).getShopList(), IsEmpty());
    EXPECT_EQ(0U, level());
    EXPECT_THAT(chosen(), ElementsAre("North"));
    click(EventHandler::selectionPopupRequested);
    EXPECT_THAT(offered(), ElementsAre("North", "South"));
    EXPECT_THAT(rowsOf(*popup<SelectionPopup>()), ElementsAre("North", "South"));
}

TEST_F(SecondShopListTest, ManyListsInOneRunOfferTheNamesOfAll) {
    start();
    serve(FIRST);
    for (int time = 0; time < 20; ++time) {
        serve(time % 2 == 0 ? SECOND : FIRST);
    }
    EXPECT_EQ(42U, ControllerProbe::parser(*m_flow).getAmountOfLevels());
    EXPECT_THAT(below("Root"), ElementsAre("North", "South", "West"));
    choose("West");
    push(button("singleBtn"));
    EXPECT_EQ(5U, history().size());
}

}  // namespace
}  // namespace flow
