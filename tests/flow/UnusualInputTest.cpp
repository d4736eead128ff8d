// SPDX-License-Identifier: Apache-2.0
// A daemon that sends unusual PINs, documents and names.
#include <cstdlib>
#include <map>
#include <memory>
#include <stdexcept>

#include <gmock/gmock.h>

#include "common/Exception.h"
#include "common/ShopListParser.h"
#include "flow/FlowFixture.h"
#include "gui/MainMenuUnregisteredScreen.h"
#include "gui/PinDisplayingScreen.h"
#include "gui/PinRequestingScreen.h"
#include "gui/RegistrationInfoScreen.h"
#include "gui/ShopListScreen.h"
#include "gui/Speech.h"

using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::EventHandler;
using ZOLT::GUI::SelectionPopup;
using ZOLT::GUI::ShopListScreen;

namespace flow {
namespace {

constexpr const char* UNSTABLE = "SID_INTERNET_CONNECTION_NOT_STABLE_MSG";
constexpr const char* CAUGHT = "Exception caught during event handling: ";
constexpr const char* NO_FIRST_SHOP =
    "out_of_range: vector::_M_range_check: __n (which is 0) >= this->size() (which is 0)";
constexpr size_t ROW_LIMIT = 63;     // bytes of a name in a row of the drop-down
constexpr size_t PIECE_LIMIT = 255;  // bytes of a piece of the registration's document

std::string repeated(const std::string& text, size_t count) {
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

// TEXT as the program writes it into markup and into documents.
std::string encoded(const std::string& text) {
    static const std::map<char, std::string> entities = {
        {'&', "&amp;"}, {'"', "&quot;"}, {'\'', "&apos;"}, {'<', "&lt;"}, {'>', "&gt;"}};
    std::string all;
    for (const char character : text) {
        const auto entity = entities.find(character);
        all += entity == entities.end() ? std::string(1, character) : entity->second;
    }
    return all;
}

// A document whose names may hold any character.
std::string encodedDocument(std::vector<Level> levels) {
    for (Level& level : levels) {
        level.name = encoded(level.name);
        for (auto& [name, code] : level.entries) {
            name = encoded(name);
        }
    }
    return document(levels);
}

// The registration document as the program sends it: one entry a level, and every piece cut at the
// size of its buffer.
std::string sentDocument(const std::vector<Level>& levels) {
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><rsp stat="ok">)";
    for (size_t index = 0; index < levels.size(); ++index) {
        const auto& [name, code] = levels[index].entries.at(0);
        const std::string isSub = index + 1 == levels.size() ? "N" : "Y";
        const std::string list = "<list level=\"" + std::to_string(index + 1) + "\" name=\"" +
                                 encoded(levels[index].name) + R"(" is_fix="Y" is_sub=")" + isSub +
                                 "\">";
        const std::string entry =
            "<sub_list name=\"" + encoded(name) + "\" code=\"" + code + "\" />";
        text += list.substr(0, PIECE_LIMIT) + entry.substr(0, PIECE_LIMIT) + "</list>";
    }
    return text + "</rsp>";
}

std::string endsAt(size_t size) {
    const std::string number = std::to_string(size);
    return std::string("basic_string::at: __n (which is ")
        .append(number)
        .append(") >= this->size() (which is ")
        .append(number)
        .append(")");
}

std::string unreadable(const std::string& document) {
    return "Failed to parse XML: invalid input [" + document + "]";
}

// Levels below each other, each with one entry. Codes grow by two characters a level.
std::vector<Level> chain(size_t depth) {
    std::vector<Level> levels;
    std::string code;
    for (size_t index = 1; index <= depth; ++index) {
        code += "01";
        levels.push_back({"L" + std::to_string(index), {{std::to_string(index), code}}});
    }
    levels.back().entries.front().first = "Z";
    return levels;
}

class UnusualInputTest : public FlowFixture {
  protected:
    // A new flow on its menu, which replaces the earlier one.
    void restart(bool registered = false) {
        m_flow.reset();
        start(registered);
        callsSince();
        platform().clearLog();
    }
    void serveEncoded(const std::vector<Level>& levels) {
        daemon().answer("getShopInfoList", encodedDocument(levels));
        event(0, 2);
    }

    // The exception that the callback of a button throws.
    static std::string thrownBy(void (*callback)(void*, Evas_Object*, void*)) {
        try {
            click(callback);
        } catch (const ZOLT::Exception& exception) {
            return exception.what();
        } catch (const std::out_of_range& exception) {
            return std::string("out_of_range: ") + exception.what();
        }
        return "";
    }
    // Checks that an event ended with CAUSE in the log and the failure popup on the same screen.
    void expectFailure(std::string cause) {
        const std::string type = "out_of_range: ";
        if (cause.compare(0, type.size(), type) == 0) {
            cause.erase(0, type.size());
        }
        EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN), ElementsAre(CAUGHT + cause));
        const support::LogLine line =
            platform().findLine(CAUGHT + cause).value_or(support::LogLine());
        EXPECT_EQ("Controller.cpp: callbackManager(" + std::to_string(line.line) + ") > " + CAUGHT +
                      cause,
                  line.text);
        ASSERT_NE(nullptr, popup());
        EXPECT_TRUE(popup()->getVisible());
        EXPECT_EQ(std::string("<align=center>") + UNSTABLE + "</align>",
                  textOf(partOf(widgetOf(*popup()))));
        EXPECT_EQ(UNSTABLE, labelText());
        platform().clearLog();
    }

    // The text of PART, which interprets markup, as it is displayed.
    static std::string seen(Evas_Object* widget, const char* part = "elm.text") {
        const Evas_Object* const block =
            edje_object_part_object_get(elm_layout_edje_get(widget), part);
        const auto cursor = [block](auto move) {
            std::unique_ptr<Evas_Textblock_Cursor, decltype(&evas_textblock_cursor_free)> made(
                evas_object_textblock_cursor_new(block), evas_textblock_cursor_free);
            move(made.get());
            return made;
        };
        const auto first = cursor(evas_textblock_cursor_paragraph_first);
        const auto last = cursor(evas_textblock_cursor_paragraph_last);
        const std::unique_ptr<char, decltype(&std::free)> text(
            evas_textblock_cursor_range_text_get(first.get(), last.get(),
                                                 EVAS_TEXTBLOCK_TEXT_PLAIN),
            std::free);
        return text != nullptr ? text.get() : "";
    }
    Evas_Object* heading() { return childrenOf(layoutOf(screen()), "selectText").at(2); }
    // The first row that the drop-down shows.
    std::string firstRow() {
        click(EventHandler::selectionPopupRequested);
        draw(widgetOf(*popup()));
        const char* const text = elm_object_item_part_text_get(
            elm_genlist_first_item_get(popup<SelectionPopup>()->m_list), "elm.text");
        return text != nullptr ? text : "(none)";
    }
    std::string chosenValue() {
        return textOf(layoutOf(screen()), "shop1") + textOf(layoutOf(screen()), "shopname");
    }
    // Left and right text of each row of the table of choices, as displayed.
    std::vector<std::pair<std::string, std::string>> rows() {
        const bool mirrored = screen().getIfMirrored();
        std::vector<std::pair<std::string, std::string>> all;
        Eina_List* list = elm_box_children_get(partOf(partOf(layoutOf(screen()), "scroller")));
        void* row = nullptr;
        EINA_LIST_FREE(list, row) {
            auto* const label = static_cast<Evas_Object*>(row);
            all.emplace_back(seen(label, mirrored ? "leftText_RTL" : "leftText"),
                             seen(label, mirrored ? "rightText_RTL" : "rightText"));
        }
        return all;
    }
    // The names of the levels and shops in the sent document, from the top.
    std::vector<std::string> sentNames() {
        std::vector<std::string> names;
        ZOLT::ShopListParser parser;
        for (ZOLT::ShopList& level :
             parser.parseRegisteredShopXML(daemon().registrationDocument())) {
            names.push_back(level.name);
            names.push_back(level.shops.at(0)->name);
            level.clean();
        }
        return names;
    }
};

// --- the PIN

TEST_F(UnusualInputTest, APinOfFewerThanEightCharactersShowsAnUnstableConnection) {
    for (const char* pin : {"", "1", "<b>", "1234567"}) {
        SCOPED_TRACE(pin);
        daemon().answer("getPincode", pin);
        restart();
        click(EventHandler::pinRequestingScreenRequested);
        callsSince();
        event(0, 0);
        EXPECT_TRUE(logged(std::string("Received pincode ") + pin));
        EXPECT_TRUE(shows<ZOLT::GUI::PinRequestingScreen>());
        EXPECT_EQ(2U, history().size());
        EXPECT_EQ(0, entered("RemoveProgressBar"));
        EXPECT_THAT(callsSince(), ElementsAre("checkShopRegistration", "getPincode"));
        expectFailure(endsAt(std::string(pin).size()));
    }
}

TEST_F(UnusualInputTest, AWholePinIsShownAndEightCharactersAreSpoken) {
    translate({{"TV_SID_PIN_CODE", "PIN"}, {"SID_CANCEL", "Stop"}});
    const struct {
        std::string pin;
        std::string seen;
        std::string spoken;
    } pins[] = {
        {"12345678", "12345678", "1, 2, 3, 4, 5, 6, 7, 8"},
        {"123456789", "123456789", "1, 2, 3, 4, 5, 6, 7, 8"},
        {repeated("90ab", 16), repeated("90ab", 16), "9, 0, a, b, 9, 0, a, b"},
        {"<b>1</b>2&3 <", "<b>1</b>2&3 <", "<, b, >, 1, <, /, b, >"},
        {"<br>12345", "<br>12345", "<, b, r, >, 1, 2, 3, 4"},
        {"<color=#ff0000ff>1", "<color=#ff0000ff>1", "<, c, o, l, o, r, =, #"},
        {"12&amp;45678", "12&amp;45678", "1, 2, &, a, m, p, ;, 4"},
        {"'\"`%s%n\\$", "'\"`%s%n\\$", "', \", `, %, s, %, n, \\"},
        // Labels translate a text that equals an id.
        {"SID_CANCEL", "Stop", "S, I, D, _, C, A, N, C"},
    };
    for (const int orientation : {0, 1}) {
        platform().setOrientation(orientation);
        for (const auto& [pin, shown, spoken] : pins) {
            SCOPED_TRACE(pin);
            daemon().answer("getPincode", pin);
            restart();
            event(0, 0);
            EXPECT_TRUE(logged("Received pincode " + pin));
            ASSERT_TRUE(shows<ZOLT::GUI::PinDisplayingScreen>());
            EXPECT_EQ(nullptr, popup());
            const auto labels = childrenOf(layoutOf(screen()), "pinCodeVal");
            ASSERT_EQ(3U, labels.size());
            EXPECT_EQ(shown, seen(labels[orientation == 1 ? 0 : 2]));
            EXPECT_EQ("PIN, " + spoken, labelText());
            const support::SpeechBinding speech = support::speechOf(button("cancelBtnEnlarge"));
            const std::unique_ptr<char, decltype(&std::free)> heard(
                speech.callback(const_cast<char*>(speech.data.c_str()), nullptr), std::free);
            EXPECT_EQ("PIN, " + spoken + ", Stop", std::string(heard.get()));
        }
    }
}

// --- the registered document

// The exception of each reader of the registered document; "" if it accepts the document.
struct Registered {
    std::string document;
    std::string onInformation;
    std::string onPin;
    std::string onList;
};

const std::vector<Registered>& registeredDocuments() {
    static const std::string broken = "<rsp><list";
    static const std::string noList = "No Node under \"/rsp/list\" path";
    static const std::vector<Registered> all = {
        {"null", unreadable("null"), unreadable("null"), ""},
        {"", "Input XML is empty", "Input XML is empty", ""},
        {broken, unreadable(broken), unreadable(broken), unreadable(broken)},
        {"<rsp/>", noList, noList, noList},
        {document({{"Country", {}}}), "", NO_FIRST_SHOP, NO_FIRST_SHOP},
        {document(chain(200)), "", "", ""},
    };
    return all;
}

const std::vector<Level> TWO_LEVELS = {
    {"Country", {{"North", "01"}, {"South", "02"}}},
    {"Store", {{"N1", "0101"}, {"N2", "0102"}, {"S1", "0201"}, {"S2", "0202"}}}};

TEST_F(UnusualInputTest, ABadRegistrationThrowsFromTheInformationButtonAndTheMenuRemains) {
    for (const Registered& registered : registeredDocuments()) {
        SCOPED_TRACE(registered.document.substr(0, 80));
        daemon().answer("getRegisteredShopInfo", registered.document);
        restart(true);
        EXPECT_EQ(registered.onInformation,
                  thrownBy(EventHandler::registrationInformationScreenRequested));
        EXPECT_EQ(registered.onInformation.empty(), shows<ZOLT::GUI::RegistrationInfoScreen>());
        EXPECT_EQ(registered.onInformation.empty() ? 2U : 1U, history().size());
        EXPECT_EQ(nullptr, popup());
        EXPECT_THAT(callsSince(), ElementsAre("getRegisteredShopInfo"));
    }
}

TEST_F(UnusualInputTest, WithABadRegistrationARegisteredTVShowsNoPin) {
    daemon().answer("getPincode", "12345678");
    daemon().setRegistered(true);
    for (const Registered& registered : registeredDocuments()) {
        SCOPED_TRACE(registered.document.substr(0, 80));
        daemon().answer("getRegisteredShopInfo", registered.document);
        restart();
        click(EventHandler::pinRequestingScreenRequested);
        event(0, 0);
        if (registered.onPin.empty()) {
            EXPECT_TRUE(shows<ZOLT::GUI::PinDisplayingScreen>());
            continue;
        }
        EXPECT_TRUE(shows<ZOLT::GUI::PinRequestingScreen>());
        EXPECT_THAT(callsSince(), ElementsAre("requestPincode", "checkShopRegistration",
                                              "getPincode", "getRegisteredShopInfo"));
        expectFailure(registered.onPin);
    }
}

TEST_F(UnusualInputTest, WithABadRegistrationTheMenuLeadsToNoList) {
    for (const Registered& registered : registeredDocuments()) {
        SCOPED_TRACE(registered.document.substr(0, 80));
        daemon().answer("getRegisteredShopInfo", registered.document);
        restart();
        serve(TWO_LEVELS);
        EXPECT_EQ(0U, level());
        if (registered.onList.empty()) {
            EXPECT_TRUE(shows<ShopListScreen>());
            continue;
        }
        EXPECT_EQ(1U, history().size());
        EXPECT_THAT(callsSince(), ElementsAre("getShopInfoList", "getRegisteredShopInfo"));
        expectFailure(registered.onList);
    }
}

TEST_F(UnusualInputTest, ABadRegistrationThrowsFromTheButtonsThatGoDownAndBack) {
    for (const Registered& registered : registeredDocuments()) {
        SCOPED_TRACE(registered.document.substr(0, 80));
        const size_t shown = registered.onList.empty() ? 1 : 0;
        daemon().answer("getRegisteredShopInfo", "");
        restart();
        serve(TWO_LEVELS);
        choose("South");
        daemon().answer("getRegisteredShopInfo", registered.document);
        EXPECT_EQ(registered.onList, thrownBy(EventHandler::nextSelectionScreenRequested));
        EXPECT_EQ(2U + shown, history().size());
        EXPECT_EQ(nullptr, popup());
        EXPECT_EQ(1U, level());
        EXPECT_THAT(chosen(), ElementsAre("South"));
        EXPECT_EQ(registered.onList, thrownBy(EventHandler::prevSelectionScreenRequested));
        EXPECT_TRUE(shows<ShopListScreen>());
        EXPECT_EQ(2U + 2 * shown, history().size());
        EXPECT_EQ(0U, level());
        EXPECT_THAT(chosen(), IsEmpty());
    }
}

TEST_F(UnusualInputTest, ARegistrationWithoutAShopHasARowWithoutAValueAndNoCode) {
    daemon().answer("getRegisteredShopInfo", document({{"Country", {}}}));
    restart(true);
    click(EventHandler::registrationInformationScreenRequested);
    EXPECT_THAT(rows(), ElementsAre(std::make_pair("Country :", "")));
}

TEST_F(UnusualInputTest, ARegistrationTwoHundredLevelsDeepIsShownToItsEnd) {
    const std::vector<Level> levels = chain(200);
    const std::string code = levels.back().entries.front().second;
    daemon().answer("getRegisteredShopInfo", document(levels));
    daemon().answer("getPincode", "12345678");
    daemon().setRegistered(true);
    restart(true);
    event(0, 0);
    EXPECT_EQ("Z : " + code, textOf(layoutOf(screen()), "RegistrationInfo"));
    click(EventHandler::registrationInformationScreenRequested);
    const auto shown = rows();
    ASSERT_EQ(201U, shown.size());
    for (size_t index = 0; index < levels.size(); ++index) {
        EXPECT_EQ(levels[index].name + " :", shown[index].first);
        EXPECT_EQ(levels[index].entries.front().first, shown[index].second);
    }
    EXPECT_EQ(std::make_pair(std::string("TV_SID_SHOP_CODE :"), code), shown.back());
}

// --- the depth of a list

TEST_F(UnusualInputTest, AChainAsDeepAsADocumentHoldsIsConfirmedAndSentToItsEnd) {
    const std::vector<Level> levels = chain(113);
    restart();
    serve(levels);
    ASSERT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
    const auto shown = rows();
    ASSERT_EQ(114U, shown.size());
    EXPECT_EQ(std::make_pair(std::string("L1 :"), std::string("1")), shown.front());
    EXPECT_EQ(std::make_pair(std::string("L113 :"), std::string("Z")), shown[112]);
    EXPECT_EQ(levels.back().entries.front().second, shown.back().second);
    click(EventHandler::shopRegistrationRequested);
    EXPECT_EQ(sentDocument(levels), daemon().registrationDocument());
}

TEST_F(UnusualInputTest, ADeeperChainIsCutAndShowsAnUnstableConnection) {
    for (const size_t depth : {114U, 200U}) {
        const std::vector<Level> levels = chain(depth);
        restart();
        serve(levels);
        EXPECT_TRUE(shows<ZOLT::GUI::MainMenuUnregisteredScreen>());
        EXPECT_EQ(depth, chosen().size());
        EXPECT_EQ(depth - 1, level());
        EXPECT_EQ(0U, initialLevel());
        expectFailure(unreadable(sentDocument(levels)));
    }
}

TEST_F(UnusualInputTest, ADeeperChainBelowAnEntryThrowsFromTheConfirmationButton) {
    std::vector<Level> levels = chain(200);
    levels.front().entries.push_back({"South", "02"});
    restart();
    serve(levels);
    choose("1");
    EXPECT_EQ("Z", textOf(button("selectBtn")));
    EXPECT_EQ(unreadable(sentDocument(levels)),
              thrownBy(EventHandler::registrationConfirmationScreenRequested));
    EXPECT_TRUE(shows<ShopListScreen>());
    EXPECT_EQ(2U, history().size());
    EXPECT_EQ(1U, level());
    EXPECT_THAT(chosen(), ElementsAre("Z"));
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
}

// --- names

// NAME, and how a part for a single line shows it: markup unchanged, entities decoded.
struct Name {
    const char* name;
    const char* line;
};

constexpr Name plain(const char* name) {
    return {name, name};
}

const Name NAMES[] = {
    {"<b>Big</b><br/><color=#ff0000ff>Red</color>", "<b>Big</b><br/><color=#ff0000ff>Red</color>"},
    {"A &amp; B &lt;i&gt;", "A & B <i>"},
    plain("A & B"),
    plain("It's \"here\" `now` \u2018a\u2019 \u201cb\u201d \u201ec\u201c \u00abd\u00bb"),
    plain("\u05d7\u05e0\u05d5\u05ea 12 (\u05de\u05e8\u05db\u05d6)"),
    plain("Corner \u0645\u062a\u062c\u0631 12"),
    plain("Corner Shop (12)"),
};

TEST_F(UnusualInputTest, ANameIsCompleteInTheListOnEveryScreenAndInTheDocument) {
    for (const int orientation : {0, 1}) {
        platform().setOrientation(orientation);
        for (const Name& entry : NAMES) {
            SCOPED_TRACE(entry.name + std::to_string(orientation));
            const std::string name = entry.name;
            const std::string line = entry.line;
            const auto left = [orientation](const std::string& text) {
                return orientation == 1 ? ": " + text : text + " :";
            };
            restart();
            serveEncoded({{name + "1", {{name + "A", "01"}, {"South", "02"}}},
                          {name + "2", {{name + "B", "0101"}, {name + "C", "0102"}}}});
            EXPECT_EQ(line + "1", textOf(heading()));
            EXPECT_EQ(line + "A", firstRow());
            choose(name + "A");
            EXPECT_EQ(line + "A", textOf(button("selectBtn")));
            click(EventHandler::nextSelectionScreenRequested);
            EXPECT_EQ(line + "A", chosenValue());
            EXPECT_EQ("", textOf(layoutOf(screen()), orientation == 1 ? "shop1" : "shopname"));
            EXPECT_EQ(line + "2", textOf(heading()));
            choose(name + "C");
            click(EventHandler::registrationConfirmationScreenRequested);
            EXPECT_THAT(rows(), ElementsAre(std::make_pair(left(name + "1"), name + "A"),
                                            std::make_pair(left(name + "2"), name + "C"),
                                            std::make_pair("TV_SID_SHOP_CODE :", "0102")));
            click(EventHandler::shopRegistrationRequested);
            EXPECT_THAT(sentNames(), ElementsAre(name + "1", name + "A", name + "2", name + "C"));
            EXPECT_EQ("SID_CONNECTING_TO_NETWORK_SERVER", labelText());
        }
    }
}

TEST_F(UnusualInputTest, TheNameOfTheRegisteredShopIsShownWhole) {
    daemon().answer("getPincode", "12345678");
    daemon().setRegistered(true);
    for (const int orientation : {0, 1}) {
        platform().setOrientation(orientation);
        for (const Name& entry : NAMES) {
            SCOPED_TRACE(entry.name + std::to_string(orientation));
            const std::string name = entry.name;
            daemon().answer("getRegisteredShopInfo",
                            encodedDocument({{name + "1", {{name, "01"}}}}));
            restart(true);
            event(0, 0);
            EXPECT_EQ(std::string(entry.line) + " : 01",
                      textOf(layoutOf(screen()), "RegistrationInfo"));
            EXPECT_EQ("TV_SID_PIN_CODE, 1, 2, 3, 4, 5, 6, 7, 8", labelText());
            click(EventHandler::registrationInformationScreenRequested);
            EXPECT_THAT(rows(),
                        ElementsAre(std::make_pair(
                                        orientation == 1 ? ": " + name + "1" : name + "1 :", name),
                                    std::make_pair("TV_SID_SHOP_CODE :", "01")));
            serveEncoded({{"Store", {{"First", "01"}, {name, "02"}, {"Last", "03"}}}});
            click(EventHandler::selectionPopupRequested);
            EXPECT_THAT(offered(), ElementsAre("Last"));
        }
    }
}

TEST_F(UnusualInputTest, ALevelWithoutANameHasAHeadingWithoutOne) {
    // In a catalogue the empty id has a text, the header, which must not be shown.
    translate({{"TV_SID_SELECT_M_MSG", "Select"}});
    restart();
    serve({{"", {{"North", "01"}, {"South", "02"}}}});
    EXPECT_EQ("", textOf(heading()));
}

TEST_F(UnusualInputTest, AShopNamedAsTheAnswerOfAnUnregisteredTVIsNotOffered) {
    for (const char* none : {"", "null"}) {
        daemon().answer("getRegisteredShopInfo", none);
        restart();
        serve({{"Country", {{"A", "01"}, {none, "02"}, {"C", "03"}}}, {"Store", {{"A1", "0101"}}}});
        ASSERT_TRUE(shows<ShopListScreen>());
        click(EventHandler::selectionPopupRequested);
        EXPECT_THAT(offered(), ElementsAre("A", "C"));
    }
}

// --- long names

// Both limits are inside a character if it has several bytes.
const std::string LONG_NAMES[] = {
    repeated("x", 10000),
    "a" + repeated("\u20ac", 3333),
    repeated("\u05e9", 5000),
    repeated("&", 10000),
};

TEST_F(UnusualInputTest, ALongNameIsCutInTheRowsOnlyAndItsDocumentCannotBeRead) {
    for (const std::string& name : LONG_NAMES) {
        SCOPED_TRACE(name.substr(0, 4));
        restart();
        serveEncoded({{name, {{name + "A", "01"}, {"South", "02"}}},
                      {"Store", {{"N1", "0101"}, {"N2", "0102"}}}});
        EXPECT_EQ(name, textOf(heading()));
        EXPECT_EQ(name.substr(0, ROW_LIMIT), firstRow());
        choose(name + "A");
        EXPECT_EQ(name + "A", textOf(button("selectBtn")));
        click(EventHandler::nextSelectionScreenRequested);
        EXPECT_EQ(name + "A", chosenValue());
        choose("N2");
        draw(layoutOf(screen()));
        EXPECT_EQ(
            unreadable(sentDocument({{name, {{name + "A", "01"}}}, {"Store", {{"N2", "0102"}}}})),
            thrownBy(EventHandler::registrationConfirmationScreenRequested));
        EXPECT_TRUE(shows<ShopListScreen>());
        EXPECT_EQ(3U, history().size());
        EXPECT_THAT(chosen(), ElementsAre("N2", name + "A"));
        EXPECT_EQ("", daemon().registrationDocument());
        EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
    }
}

TEST_F(UnusualInputTest, ASingleShopWithALongNameShowsAnUnstableConnection) {
    for (const std::string& name : LONG_NAMES) {
        for (const std::vector<Level>& levels : {std::vector<Level>{{"Store", {{name, "01"}}}},
                                                 std::vector<Level>{{name, {{"Only", "01"}}}}}) {
            SCOPED_TRACE(levels[0].name.substr(0, 4));
            restart();
            serveEncoded(levels);
            EXPECT_EQ(1U, history().size());
            EXPECT_THAT(chosen(), ElementsAre(levels[0].entries[0].first));
            expectFailure(unreadable(sentDocument(levels)));
        }
    }
}

TEST_F(UnusualInputTest, ALongNameOfTheRegisteredShopIsShownWhole) {
    daemon().answer("getPincode", "12345678");
    daemon().setRegistered(true);
    for (const std::string& name : LONG_NAMES) {
        SCOPED_TRACE(name.substr(0, 4));
        daemon().answer("getRegisteredShopInfo", encodedDocument({{name, {{name, "01"}}}}));
        restart(true);
        event(0, 0);
        draw(layoutOf(screen()));
        EXPECT_EQ(name + " : 01", textOf(layoutOf(screen()), "RegistrationInfo"));
        EXPECT_EQ("TV_SID_PIN_CODE, 1, 2, 3, 4, 5, 6, 7, 8", labelText());
        click(EventHandler::registrationInformationScreenRequested);
        draw(layoutOf(screen()));
        EXPECT_THAT(rows(), ElementsAre(std::make_pair(name + " :", name),
                                        std::make_pair("TV_SID_SHOP_CODE :", "01")));
    }
}

TEST_F(UnusualInputTest, TheLongestNamesThatADocumentHoldsAreSentWhole) {
    const struct {
        std::string level;
        std::string shop;
        bool fits;
    } cases[] = {
        {"Store", repeated("x", 225), true},     {"Store", repeated("x", 226), false},
        {"Store", repeated("&", 45), true},      {"Store", repeated("&", 46), false},
        {"Store", repeated("\u20ac", 75), true}, {"Store", repeated("\u20ac", 76), false},
        {repeated("x", 209), "Only", true},      {repeated("x", 210), "Only", false},
        {repeated("\"", 34), "Only", true},      {repeated("\"", 35), "Only", false},
        {repeated("\u05e9", 104), "Only", true}, {repeated("\u05e9", 105), "Only", false},
    };
    for (const auto& [levelName, shopName, fits] : cases) {
        const std::vector<Level> levels = {{levelName, {{shopName, "01"}}}};
        SCOPED_TRACE(testing::Message() << levelName << " " << shopName);
        restart();
        serveEncoded(levels);
        if (!fits) {
            expectFailure(unreadable(sentDocument(levels)));
            continue;
        }
        ASSERT_TRUE(shows<ZOLT::GUI::RegistrationInfoScreen>());
        EXPECT_EQ(std::make_pair(levelName + " :", shopName), rows().front());
        click(EventHandler::shopRegistrationRequested);
        EXPECT_EQ(sentDocument(levels), daemon().registrationDocument());
        EXPECT_THAT(sentNames(), ElementsAre(levelName, shopName));
    }
}

}  // namespace
}  // namespace flow
