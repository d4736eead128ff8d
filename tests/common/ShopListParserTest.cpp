// SPDX-License-Identifier: Apache-2.0
// Shop documents: levels, parents, leftovers, and the way back into a document.
#include <algorithm>
#include <csignal>
#include <functional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/DeletedBlocks.h"
#include "common/Exception.h"
#include "common/LibXml.h"
#include "common/ShopListParser.h"
#include "support/ScriptedPlatform.h"

using support::DeletedBlocks;
using support::ScriptedPlatform;
using ZOLT::Exception;
using ZOLT::Shop;
using ZOLT::ShopList;
using ZOLT::ShopListParser;

namespace {

const char WARNING[] = "Could not parse XML node. Continuing...";

std::string entry(const std::string& name, const std::string& code) {
    return "<sub_list name=\"" + name + "\" code=\"" + code + "\" />";
}

std::string list(const std::string& level, const std::string& name, const std::string& entries) {
    return "<list level=\"" + level + "\" name=\"" + name + "\" is_fix=\"Y\" is_sub=\"S\">" +
           entries + "</list>";
}

std::string document(const std::string& lists) {
    return "<rsp stat=\"ok\">" + lists + "</rsp>";
}

// A document with a list for each text of LISTS, which holds codes with blanks between them. An
// entry's name is "n" and its code.
std::string documentOfCodes(const std::vector<std::string>& lists) {
    std::string text;
    for (size_t i = 0; i < lists.size(); ++i) {
        std::istringstream codes(lists[i]);
        std::string entries;
        for (std::string code; codes >> code;) {
            entries += entry("n" + code, code);
        }
        text += list(std::to_string(i + 1), "L" + std::to_string(i), entries);
    }
    return document(text);
}

std::string codesOf(const ShopListParser::Shops& shops) {
    std::string text;
    for (const Shop* shop : shops) {
        text += (text.empty() ? "" : " ") + shop->code;
    }
    return text;
}

// Each entry as CODE, with "+" if it has children, "<PARENT" and "@" position of its list; then the
// sets of children that are not empty, the top ones first.
std::string dump(ShopListParser& parser) {
    std::ostringstream text;
    std::string sets;
    if (!parser.getSubs("").empty()) {
        sets = " | Root: " + codesOf(parser.getSubs(""));
    }
    for (const Shop* shop : parser.getShops()) {
        text << (text.tellp() > 0 ? " " : "") << shop->code << (shop->hasSubs ? "+" : "")
             << (shop->parent == nullptr ? "" : "<" + shop->parent->code) << "@" << shop->level;
        const auto& subs = parser.getSubs(shop->name);
        if (!subs.empty()) {
            sets += " | " + shop->name + ": " + codesOf(subs);
        }
    }
    return text.str() + sets;
}

// The lists in order: document's level, name, the two texts, and the codes.
std::string dumpLists(const std::vector<ShopList>& lists) {
    std::string text;
    for (const ShopList& level : lists) {
        text += std::to_string(level.level) + " " + level.name + " " + level.isFix + " " +
                level.isSub + ":";
        for (const Shop* shop : level.shops) {
            text += " " + shop->code + "=" + shop->name;
        }
        text += "\n";
    }
    return text;
}

Shop* find(ShopListParser& parser, const std::string& code) {
    Shop key;
    key.code = code;
    const auto found = parser.getShops().find(&key);
    return found == parser.getShops().end() ? nullptr : *found;
}

void expectFailure(const std::string& text, const std::function<void()>& call) {
    try {
        call();
        ADD_FAILURE() << "nothing thrown, expected: " << text;
    } catch (const Exception& e) {
        EXPECT_EQ(e.what(), text);
    }
}

class ShopListParserTest : public testing::Test {
  protected:
    void SetUp() override { ScriptedPlatform::get().reset(); }

    ShopListParser parser;
};

TEST_F(ShopListParserTest, ParentsFollowFromCodes) {
    const struct {
        std::vector<std::string> lists;
        const char* expected;
    } cases[] = {
        {{""}, ""},
        {{"01"}, "01@0"},
        {{"01 02 03"}, "01@0 02@0 03@0 | Root: 02 03"},
        {{"01 02", "0101 0102"}, "01+@0 0101<01@1 0102<01@1 02@0 | Root: 01 02 | n01: 0101 0102"},
        // The order of the document does not matter, that of the codes does.
        {{"0102 0101", "02 01"}, "01+@1 0101<01@0 0102<01@0 02@1 | Root: 01 02 | n01: 0101 0102"},
        // An entry that sorts first and has no child is no top entry.
        {{"01 02", "0201"}, "01@0 02+@0 0201<02@1 | Root: 02 | n02: 0201"},
        // A parent that is missing makes an orphan.
        {{"01", "0301"}, "01@0 0301@1"},
        {{"01 05", "0301 0501"}, "01@0 0301@1 05+@0 0501<05@1 | Root: 05 | n05: 0501"},
        // With a child of its own an orphan comes to stand at the top.
        {{"01", "0301", "030101"}, "01@0 0301+@1 030101<0301@2 | Root: 0301 | n0301: 030101"},
        // Down and up again over several levels.
        {{"01 02 03", "0101 0102 0201", "010101 010102 020101", "01010201"},
         "01+@0 0101+<01@1 010101<0101@2 010102+<0101@2 01010201<010102@3 0102<01@1 "
         "02+@0 0201+<02@1 020101<0201@2 03@0 | Root: 01 02 03 | n01: 0101 0102 | "
         "n0101: 010101 010102 | n010102: 01010201 | n02: 0201 | n0201: 020101"},
        // From the fourth level straight to the first, and to a level that is not there.
        {{"01", "0101", "010101", "01010101", "02"},
         "01+@0 0101+<01@1 010101+<0101@2 01010101<010101@3 02@4 | Root: 01 02 | n01: 0101 | "
         "n0101: 010101 | n010101: 01010101"},
        // A code of one character is never a child, and a step of one character makes no child.
        {{"0 1"}, "0@0 1@0 | Root: 1"},
        {{"0 001"}, "0+@0 001<0@0 | Root: 0 | n0: 001"},
        {{"01 011 012"}, "01@0 011@0 012@0"},
        {{"0101 02 1"}, "0101@0 02@0 1@0 | Root: 02 1"},
        {{"01", "0101 010", "02"}, "01+@0 010@1 0101<01@1 02@2 | Root: 01 02 | n01: 0101"},
        // Bytes are compared without a sign.
        {{"\xc3\xa9 zz"}, "zz@0 \xc3\xa9@0 | Root: \xc3\xa9"},
    };
    for (const auto& entry : cases) {
        ShopListParser fresh;
        fresh.parseShopListXML(documentOfCodes(entry.lists));
        EXPECT_EQ(dump(fresh), entry.expected);
    }
}

TEST_F(ShopListParserTest, EntryWithAnEmptyCodeIsTheParentOfCodesOfTwoCharacters) {
    parser.parseShopListXML(document(list("1", "L", entry("e", "") + entry("n01", "01"))));
    EXPECT_EQ(dump(parser), "+@0 01<@0 | Root:  | e: 01");
}

TEST_F(ShopListParserTest, EntryWithAnEmptyCodeIsNotTheParentOfACodeOfOneCharacter) {
    parser.parseShopListXML(document(list("1", "L", entry("e", "") + entry("n1", "1"))));
    EXPECT_EQ(dump(parser), "@0 1@0");
}

TEST_F(ShopListParserTest, EmptyNameAndRootAreTheSameKey) {
    parser.parseShopListXML(documentOfCodes({"01", "0101"}));
    EXPECT_EQ(&parser.getSubs(""), &parser.getSubs("Root"));
    EXPECT_EQ(codesOf(parser.getSubs("Root")), "01");
}

TEST_F(ShopListParserTest, UnknownNameHasAnEmptySetOfItsOwn) {
    EXPECT_TRUE(parser.getSubs("nobody").empty());
    EXPECT_EQ(&parser.getSubs("nobody"), &parser.getSubs("nobody"));
    EXPECT_TRUE(parser.getSubs(std::string(1 << 20, 'n')).empty());
}

TEST_F(ShopListParserTest, ParentsOfOneNameShareTheirChildren) {
    parser.parseShopListXML(document(list("1", "A", entry("same", "01") + entry("same", "02")) +
                                     list("2", "B", entry("a", "0101") + entry("b", "0201"))));
    EXPECT_EQ(codesOf(parser.getSubs("same")), "0101 0201");
}

TEST_F(ShopListParserTest, FirstEntryOfACodeWinsAndTheSecondStaysInItsList) {
    const std::string first = entry("p", "01") + entry("first", "0101") + entry("below", "010101");
    const std::string second = entry("second", "0101");
    for (const std::string& lists :
         {list("1", "A", first + second), list("1", "A", first) + list("2", "B", second)}) {
        ShopListParser fresh;
        fresh.parseShopListXML(document(lists));
        EXPECT_EQ(codesOf(fresh.getShops()), "01 0101 010101");
        EXPECT_EQ(find(fresh, "0101")->name, "first");
        EXPECT_EQ(find(fresh, "0101")->parent->name, "p");
        EXPECT_TRUE(find(fresh, "0101")->hasSubs);
        const Shop* loser = fresh.getShopList().back().shops.back();
        EXPECT_EQ(loser->name, "second");
        EXPECT_EQ(loser->parent, nullptr);
        EXPECT_FALSE(loser->hasSubs);
        fresh.clean();
    }
}

TEST_F(ShopListParserTest, BothEntriesOfACodeStandInTheirListsInTheOrderOfTheDocument) {
    parser.parseShopListXML(document(list("1", "A", entry("a", "01") + entry("b", "01")) +
                                     list("2", "B", entry("c", "01"))));
    EXPECT_EQ(dumpLists(parser.getShopList()), "1 A Y S: 01=a 01=b\n2 B Y S: 01=c\n");
    EXPECT_EQ(codesOf(parser.getShops()), "01");
}

TEST_F(ShopListParserTest, CleaningAListDeletesBothEntriesOfACode) {
    parser.parseShopListXML(document(list("1", "A", entry("a", "01") + entry("b", "01"))));
    const std::vector<Shop*> shops = parser.getShopList()[0].shops;
    ASSERT_EQ(shops.size(), 2U);
    parser.getShops().clear();
    const DeletedBlocks deleted;
    parser.getShopList()[0].clean();
    EXPECT_TRUE(deleted.has(shops[0]));
    EXPECT_TRUE(deleted.has(shops[1]));
    EXPECT_TRUE(parser.getShopList()[0].shops.empty());
}

TEST_F(ShopListParserTest, ListsComeInTheOrderOfTheDocumentWithTheirTexts) {
    parser.parseShopListXML(
        "<rsp><!-- c -->\n<list level='7' name='Land &amp; Stadt' is_fix='' is_sub='any text'>"
        "text<sub_list name='&lt;a&gt;' code='02'/><!-- c --><other code='01' name='b'>"
        "<inner/></other></list>\n<list level='-3' name='' is_fix='Y' is_sub='N'/></rsp>");
    EXPECT_EQ(dumpLists(parser.getShopList()),
              "7 Land & Stadt  any text: 02=<a> 01=b\n"
              "-3  Y N:\n");
    EXPECT_EQ(parser.getAmountOfLevels(), 2U);
}

TEST_F(ShopListParserTest, AnyElementBesideAListIsAList) {
    parser.parseShopListXML(document(list("1", "A", entry("a", "01")) +
                                     "<anything level=\"2\" name=\"B\" is_fix=\"1\" is_sub=\"2\">" +
                                     entry("b", "02") + "</anything>"));
    EXPECT_EQ(dumpLists(parser.getShopList()), "1 A Y S: 01=a\n2 B 1 2: 02=b\n");
}

TEST_F(ShopListParserTest, ElementsAheadOfTheFirstListAreNotRead) {
    parser.parseShopListXML(document("<head/>" + list("1", "A", entry("a", "01"))));
    EXPECT_EQ(parser.getShopList().size(), 1U);
    EXPECT_EQ(ScriptedPlatform::get().countLines(WARNING), 0);
}

TEST_F(ShopListParserTest, ListWithoutAnAttributeIsLeftOutWithAWarning) {
    const std::string good = list("1", "A", entry("a", "01"));
    for (const char* bad :
         {"<list name='B' is_fix='' is_sub=''/>", "<list level='2' is_fix='' is_sub=''/>",
          "<list level='2' name='B' is_sub=''/>", "<list level='2' name='B' is_fix=''/>", "<x/>",
          "<list level='2' name='B' is_fix='' is_sub=''><s name='n'/></list>",
          "<list level='2' name='B' is_fix='' is_sub=''><s code='c'/></list>"}) {
        ScriptedPlatform::get().clearLog();
        ShopListParser fresh;
        fresh.parseShopListXML(document(good + bad + list("3", "C", entry("c", "02"))));
        EXPECT_EQ(dumpLists(fresh.getShopList()), "1 A Y S: 01=a\n3 C Y S: 02=c\n") << bad;
        EXPECT_EQ(fresh.getAmountOfLevels(), 2U);
        EXPECT_EQ(find(fresh, "02")->level, 1) << "the position is not raised for a list left out";
        const auto line = ScriptedPlatform::get().findLine(WARNING).value_or(support::LogLine());
        EXPECT_EQ(line.buffer, LOG_ID_SYSTEM);
        EXPECT_EQ(line.priority, DLOG_WARN);
        EXPECT_EQ(line.file, "ShopListParser.cpp");
        EXPECT_EQ(line.function, "parseShopListXML");
        EXPECT_EQ(ScriptedPlatform::get().countLines(WARNING), 1);
    }
}

TEST_F(ShopListParserTest, EntriesOfAListThatIsLeftOutStayAmongTheShops) {
    parser.parseShopListXML(
        document(list("1", "A", entry("a", "01")) +
                 list("2", "B", entry("b", "0101") + "<sub_list name='broken'/>") +
                 list("3", "C", entry("c", "0102"))));
    EXPECT_EQ(dumpLists(parser.getShopList()), "1 A Y S: 01=a\n3 C Y S: 0102=c\n");
    EXPECT_EQ(dump(parser), "01+@0 0101<01@1 0102<01@1 | Root: 01 | a: 0101 0102");
    parser.clean();
    EXPECT_TRUE(parser.getShops().empty());
}

TEST_F(ShopListParserTest, DocumentThatCannotBeReadThrows) {
    expectFailure("Input XML is empty", [this] { parser.parseShopListXML(""); });
    expectFailure("Failed to parse XML: invalid input [<rsp>]",
                  [this] { parser.parseShopListXML("<rsp>"); });
    expectFailure("No Node under \"/rsp/list\" path",
                  [this] { parser.parseShopListXML("<rsp/>"); });
    expectFailure("No Node under \"/rsp/list\" path",
                  [this] { parser.parseShopListXML("<x><list/></x>"); });
    EXPECT_TRUE(parser.getShopList().empty());
    EXPECT_EQ(parser.getAmountOfLevels(), 0U);
}

TEST_F(ShopListParserTest, LevelThatIsNoNumberThrowsAndWhatWasBuiltStaysUnlinked) {
    const std::string good = list("1", "A", entry("a", "01") + entry("b", "0101"));
    EXPECT_THROW(parser.parseShopListXML(document(good + list("x", "B", ""))),
                 std::invalid_argument);
    EXPECT_EQ(dump(parser), "01@0 0101@0");
    EXPECT_EQ(parser.getAmountOfLevels(), 1U);
    parser.clean();
    EXPECT_THROW(parser.parseShopListXML(document(list("", "B", ""))), std::invalid_argument);
    for (const char* level : {"9223372036854775808", "2147483648", "-2147483649"}) {
        EXPECT_THROW(parser.parseShopListXML(document(list(level, "B", ""))), std::out_of_range);
    }
}

TEST_F(ShopListParserTest, LevelIsReadAsADecimalNumberUpToTheFirstOtherCharacter) {
    parser.parseShopListXML(document(list("-2147483648", "A", "") + list("2147483647", "B", "") +
                                     list(" 010abc", "C", "") + list("0x10", "D", "")));
    EXPECT_EQ(dumpLists(parser.getShopList()),
              "-2147483648 A Y S:\n2147483647 B Y S:\n10 C Y S:\n0 D Y S:\n");
}

TEST_F(ShopListParserTest, CleanForgetsListsAndShopsButNotTheCount) {
    parser.parseShopListXML(documentOfCodes({"01 02", "0101"}));
    parser.clean();
    EXPECT_TRUE(parser.getShopList().empty());
    EXPECT_TRUE(parser.getShops().empty());
    EXPECT_EQ(parser.getAmountOfLevels(), 2U);
    EXPECT_EQ(codesOf(parser.getSubs("")), "01 02") << "the sets keep their entries";
    parser.clean();
}

TEST_F(ShopListParserTest, SecondDocumentAddsToTheSetsOfTheFirst) {
    parser.parseShopListXML(documentOfCodes({"01 02", "0101"}));
    const Shop* former = *parser.getSubs("").begin();
    parser.clean();
    parser.parseShopListXML(documentOfCodes({"01 03", "0101 0102"}));
    EXPECT_EQ(parser.getAmountOfLevels(), 4U);
    EXPECT_EQ(codesOf(parser.getShops()), "01 0101 0102 03");
    EXPECT_EQ(codesOf(parser.getSubs("")), "01 02 03");
    EXPECT_EQ(codesOf(parser.getSubs("n01")), "0101 0102");
    EXPECT_EQ(*parser.getSubs("").begin(), former) << "an entry of a known code does not enter";
    EXPECT_NE(find(parser, "01"), former);
}

// The codes of those of SHOPS that CLEAN deletes.
std::string deletedBy(const std::vector<Shop*>& shops, const std::function<void()>& clean) {
    std::vector<std::string> codes;
    codes.reserve(shops.size());
    for (const Shop* shop : shops) {
        codes.push_back(shop->code);
    }
    const DeletedBlocks deleted;
    clean();
    std::string text;
    for (size_t index = 0; index < shops.size(); ++index) {
        if (deleted.has(shops[index])) {
            text += (text.empty() ? "" : " ") + codes[index];
        }
    }
    return text;
}

std::vector<Shop*> shopsOfLists(ShopListParser& parser) {
    std::vector<Shop*> shops;
    for (const ShopList& level : parser.getShopList()) {
        shops.insert(shops.end(), level.shops.begin(), level.shops.end());
    }
    return shops;
}

TEST_F(ShopListParserTest, CleanDeletesTheShopsThatNoSetHolds) {
    // The first entry has no children and the one of a known code enters nothing, so both are in
    // no set.
    parser.parseShopListXML(documentOfCodes({"01 02 02", "0201 0202"}));
    EXPECT_EQ(deletedBy(shopsOfLists(parser), [this] { parser.clean(); }), "01 02");
    EXPECT_EQ(codesOf(parser.getSubs("")), "02");
    EXPECT_EQ(codesOf(parser.getSubs("n02")), "0201 0202");
}

TEST_F(ShopListParserTest, CleanSparesTheParentsOfTheShopsInASet) {
    parser.parseShopListXML(documentOfCodes({"01", "0101"}));
    parser.clean();
    // The new "01" does not enter the set, which has one of its code, but is the parent of "0102".
    parser.parseShopListXML(documentOfCodes({"01", "0101 0102"}));
    const Shop* child = find(parser, "0102");
    const Shop* parent = child->parent;
    EXPECT_EQ(deletedBy(shopsOfLists(parser), [this] { parser.clean(); }), "0101");
    EXPECT_EQ(child->parent, parent);
    EXPECT_EQ(parent->code, "01");
}

TEST_F(ShopListParserTest, CleanSparesTheShopsThatAreNamedToKeepUntilTheNextOne) {
    parser.parseShopListXML(documentOfCodes({"01"}));
    Shop* const chosen = find(parser, "01");
    parser.keep({chosen, nullptr});
    EXPECT_EQ(deletedBy({chosen}, [this] { parser.clean(); }), "");
    parser.keep({chosen});
    EXPECT_EQ(deletedBy({chosen}, [this] { parser.clean(); }), "") << "named again";
    EXPECT_EQ(deletedBy({chosen}, [this] { parser.clean(); }), "01");
}

TEST_F(ShopListParserTest, CleanSparesTheParentsOfAShopThatIsNamedToKeep) {
    parser.parseShopListXML(documentOfCodes({"01", "0101", "010101"}));
    parser.clean();
    parser.parseShopListXML(documentOfCodes({"01", "0101", "010101"}));
    Shop* const chosen = find(parser, "010101");
    const std::vector<Shop*> line = {chosen, chosen->parent, chosen->parent->parent};
    parser.keep({chosen});
    EXPECT_EQ(deletedBy(line, [this] { parser.clean(); }), "");
    EXPECT_EQ(deletedBy(line, [this] { parser.clean(); }), "010101 0101 01");
}

TEST_F(ShopListParserTest, EntriesOfAListThatIsLeftOutGoAtTheNextClean) {
    parser.parseShopListXML(
        document(list("1", "A", entry("b", "05") + entry("b", "05") + "<sub_list name='broken'/>") +
                 list("2", "B", entry("a", "01"))));
    Shop* const left = find(parser, "05");
    ASSERT_NE(left, nullptr);
    // It takes the place of a top entry, since it does not sort first.
    EXPECT_EQ(codesOf(parser.getSubs("")), "05");
    EXPECT_EQ(deletedBy({left, find(parser, "01")}, [this] { parser.clean(); }), "01");
    parser.getSubs("").clear();
    EXPECT_EQ(deletedBy({left}, [this] { parser.clean(); }), "05");
}

TEST_F(ShopListParserTest, TheSameListReadManyTimesKeepsTheShopsOfTheFirstAndTheLast) {
    const std::string text = documentOfCodes({"01 02", "0101 0102 0201"});
    parser.parseShopListXML(text);
    EXPECT_EQ(deletedBy(shopsOfLists(parser), [this] { parser.clean(); }), "");
    for (int time = 1; time < 200; ++time) {
        parser.parseShopListXML(text);
        ASSERT_EQ(deletedBy(shopsOfLists(parser), [this] { parser.clean(); }),
                  "01 02 0101 0102 0201");
    }
    EXPECT_EQ(codesOf(parser.getSubs("")), "01 02");
    EXPECT_EQ(parser.getAmountOfLevels(), 400U);
}

// What clean deletes grows with what there is and not with its square. Each list alone may not
// make anything as long as all the lists before it move.
TEST_F(ShopListParserTest, CleanOfTwiceAsManyListsMovesNoMoreThanTwiceAsMuch) {
    const auto bytesForLists = [](int count) {
        std::string lists;
        for (int index = 0; index < count; ++index) {
            lists += list("1", "L", entry("n", std::to_string(10000 + index)));
        }
        ShopListParser fresh;
        fresh.parseShopListXML(document(lists));
        const DeletedBlocks deleted;
        fresh.clean();
        return deleted.bytes();
    };
    EXPECT_LT(bytesForLists(1000), 3 * bytesForLists(500));
}

TEST_F(ShopListParserTest, SecondDocumentWithoutCleanStartsAtListZeroAgain) {
    parser.parseShopListXML(documentOfCodes({"01", "0101"}));
    parser.parseShopListXML(documentOfCodes({"02"}));
    EXPECT_EQ(parser.getShopList().size(), 3U);
    EXPECT_EQ(find(parser, "02")->level, 0);
}

// The walk ends at the signal of a timer that counts the processor time of this process only.
[[noreturn]] void parseForAMoment(const std::string& text) {
    itimerval moment{};
    moment.it_value.tv_usec = 300000;
    std::signal(SIGPROF, SIG_DFL);
    setitimer(ITIMER_PROF, &moment, nullptr);
    ShopListParser parser;
    parser.parseShopListXML(text);
    _exit(0);
}

TEST(ShopListParserDeathTest, CodeThatSkipsALevelMakesTheWalkEndless) {
    EXPECT_EXIT(parseForAMoment(documentOfCodes({"01", "010101"})),
                testing::KilledBySignal(SIGPROF), "");
    EXPECT_EXIT(parseForAMoment(documentOfCodes({"01", "01011"})), testing::KilledBySignal(SIGPROF),
                "");
    EXPECT_EXIT(parseForAMoment(documentOfCodes({"01", "0101"})), testing::ExitedWithCode(0), "");
}

// Adds the codes below PARENT, some levels deep.
void grow(std::mt19937& random, const std::string& parent, int depth,
          std::vector<std::string>& codes) {
    const int count = std::uniform_int_distribution<>(0, 4)(random);
    for (int i = 0; i < count; ++i) {
        codes.push_back(parent + static_cast<char>('a' + i) + static_cast<char>('z' - i));
        if (depth > 1) {
            grow(random, std::string(codes.back()), depth - 1, codes);
        }
    }
}

TEST_F(ShopListParserTest, EveryEntryOfAWholeHierarchyFindsItsParent) {
    std::mt19937 random(20160513);
    for (int round = 0; round < 50; ++round) {
        std::vector<std::string> codes{"00"};
        grow(random, "", 5, codes);
        std::shuffle(codes.begin(), codes.end(), random);
        std::string text;
        for (const std::string& code : codes) {
            text += code + " ";
        }
        ShopListParser fresh;
        fresh.parseShopListXML(documentOfCodes({text}));
        ASSERT_EQ(fresh.getShops().size(), codes.size());
        for (const Shop* shop : fresh.getShops()) {
            const std::string prefix = shop->code.substr(0, shop->code.size() - 2);
            ASSERT_EQ(shop->parent == nullptr ? "" : shop->parent->code, prefix);
            const std::string owner = prefix.empty() ? "" : "n" + prefix;
            ASSERT_EQ(fresh.getSubs(owner).count(find(fresh, shop->code)),
                      shop->code == "00" ? 0U : 1U);
            ASSERT_EQ(shop->hasSubs, !fresh.getSubs(shop->name).empty());
        }
    }
}

TEST_F(ShopListParserTest, ThousandsOfEntriesAreLinked) {
    std::string levels[3];
    const auto digits = [](int n) { return std::to_string(10 + n); };
    for (int a = 0; a < 10; ++a) {
        levels[0] += entry("a" + digits(a), digits(a));
        for (int b = 0; b < 20; ++b) {
            const std::string code = digits(a) + digits(b);
            levels[1] += entry("b" + code, code);
            for (int c = 0; c < 19; ++c) {
                levels[2] += entry("c" + code + digits(c), code + digits(c));
            }
        }
    }
    parser.parseShopListXML(document(list("1", "A", levels[0]) + list("2", "B", levels[1]) +
                                     list("3", "C", levels[2])));
    EXPECT_EQ(parser.getShops().size(), 10U + 200U + 3800U);
    EXPECT_EQ(parser.getSubs("").size(), 10U);
    EXPECT_EQ(parser.getSubs("a19").size(), 20U);
    EXPECT_EQ(parser.getSubs("b1929").size(), 19U);
    EXPECT_EQ(find(parser, "192928")->parent->parent->code, "19");
}

TEST(ShopComp, OrdersByBytesAndPutsTheShorterFirst) {
    const auto less = [](const char* left, const char* right) {
        Shop a;
        Shop b;
        a.code = left;
        b.code = right;
        return Shop::ShopComp()(&a, &b);
    };
    EXPECT_TRUE(less("01", "0101"));
    EXPECT_FALSE(less("0101", "01"));
    EXPECT_TRUE(less("0199", "02"));
    EXPECT_FALSE(less("01", "01"));
    EXPECT_TRUE(less("", "0"));
    EXPECT_TRUE(less("z", "\xc3"));
}

TEST(ShopListClean, DeletesEveryShopAndAcceptsNulls) {
    ShopList level;
    EXPECT_EQ(level.level, -1);
    const std::vector<Shop*> shops = {new Shop(), nullptr, new Shop()};
    level.shops = shops;
    const DeletedBlocks deleted;
    level.clean();
    EXPECT_TRUE(deleted.has(shops[0]));
    EXPECT_TRUE(deleted.has(shops[2]));
    EXPECT_TRUE(level.shops.empty());
    level.clean();
}

// --- the registration document

const char HEAD[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rsp stat=\"ok\">";

TEST_F(ShopListParserTest, RegistrationGoesFromTheTopToTheChosenEntry) {
    parser.parseShopListXML(document(list("3", "Region", entry("North", "01")) +
                                     list("9", "Shop", entry("Corner", "0101"))));
    EXPECT_EQ(parser.getRegistrationXml(find(parser, "0101")),
              std::string(HEAD) +
                  "<list level=\"3\" name=\"Region\" is_fix=\"Y\" is_sub=\"S\">"
                  "<sub_list name=\"North\" code=\"01\" /></list>"
                  "<list level=\"9\" name=\"Shop\" is_fix=\"Y\" is_sub=\"N\">"
                  "<sub_list name=\"Corner\" code=\"0101\" /></list></rsp>");
}

TEST_F(ShopListParserTest, RegistrationOfATopEntryHasOneLevelWithoutLevelsBelow) {
    parser.parseShopListXML(documentOfCodes({"01", "0101"}));
    EXPECT_EQ(parser.getRegistrationXml(find(parser, "01")),
              std::string(HEAD) +
                  "<list level=\"1\" name=\"L0\" is_fix=\"Y\" is_sub=\"N\">"
                  "<sub_list name=\"n01\" code=\"01\" /></list></rsp>");
}

TEST_F(ShopListParserTest, NamesAreEncodedAndCodesAreNot) {
    parser.parseShopListXML(
        "<rsp><list level='1' name='A&amp;&lt;B' is_fix='&amp;' is_sub='N'>"
        "<s name='&quot;C&apos;&gt;&amp;' code='0&amp;'/></list></rsp>");
    EXPECT_EQ(parser.getRegistrationXml(find(parser, "0&")),
              std::string(HEAD) +
                  "<list level=\"1\" name=\"A&amp;&lt;B\" is_fix=\"&\" is_sub=\"N\">"
                  "<sub_list name=\"&quot;C&apos;&gt;&amp;\" code=\"0&\" /></list></rsp>");
}

TEST_F(ShopListParserTest, EveryLevelOfTheChosenCodeHasNoLevelsBelow) {
    parser.parseShopListXML(documentOfCodes({"01", "02"}));
    Shop parent;
    parent.code = "05";
    Shop child;
    child.code = "05";
    child.level = 1;
    child.parent = &parent;
    EXPECT_EQ(parser.getRegistrationXml(&child),
              std::string(HEAD) +
                  "<list level=\"1\" name=\"L0\" is_fix=\"Y\" is_sub=\"N\">"
                  "<sub_list name=\"\" code=\"05\" /></list>"
                  "<list level=\"2\" name=\"L1\" is_fix=\"Y\" is_sub=\"N\">"
                  "<sub_list name=\"\" code=\"05\" /></list></rsp>");
}

TEST_F(ShopListParserTest, EachPieceOfTheRegistrationIsCutAtTwoHundredFiftyFiveBytes) {
    const std::string name(400, 'n');
    parser.parseShopListXML(document(list("1", "A", entry(name, "01"))));
    const std::string text = parser.getRegistrationXml(find(parser, "01"));
    const std::string piece = ("<sub_list name=\"" + name).substr(0, 255);
    EXPECT_EQ(text, std::string(HEAD) + "<list level=\"1\" name=\"A\" is_fix=\"Y\" is_sub=\"N\">" +
                        piece + "</list></rsp>");
}

TEST_F(ShopListParserTest, RegistrationOfNothingIsADocumentWithoutALevel) {
    const std::string text = parser.getRegistrationXml(nullptr);
    EXPECT_EQ(text, std::string(HEAD) + "</rsp>");
    expectFailure("No Node under \"/rsp/list\" path", [&] { parser.parseRegisteredShopXML(text); });
}

TEST_F(ShopListParserTest, RegistrationOfAShopOfNoListThrows) {
    parser.parseShopListXML(documentOfCodes({"01"}));
    Shop shop;
    for (const int level : {-2147483647 - 1, -1, 1, 2147483647}) {
        shop.level = level;
        EXPECT_THROW(parser.getRegistrationXml(&shop), std::out_of_range);
    }
}

TEST_F(ShopListParserTest, RegistrationIsReadBackLevelByLevel) {
    parser.parseShopListXML(documentOfCodes({"01", "0101", "010101"}));
    std::vector<ShopList> lists =
        parser.parseRegisteredShopXML(parser.getRegistrationXml(find(parser, "010101")));
    EXPECT_EQ(dumpLists(lists),
              "1 L0 Y S: 01=n01\n2 L1 Y S: 0101=n0101\n3 L2 Y N: 010101=n010101\n");
    for (ShopList& level : lists) {
        EXPECT_EQ(level.shops[0]->level, -1);
        level.clean();
    }
}

TEST_F(ShopListParserTest, RegisteredDocumentLeavesTheModelAlone) {
    parser.parseShopListXML(documentOfCodes({"01"}));
    auto lists = parser.parseRegisteredShopXML(documentOfCodes({"02 03", "0201"}));
    EXPECT_EQ(dumpLists(lists), "1 L0 Y S: 02=n02 03=n03\n2 L1 Y S: 0201=n0201\n");
    EXPECT_EQ(dump(parser), "01@0");
    EXPECT_EQ(parser.getAmountOfLevels(), 1U);
    for (ShopList& level : lists) {
        level.clean();
    }
}

TEST_F(ShopListParserTest, RegisteredDocumentThatCannotBeReadThrows) {
    const std::string good = list("1", "A", entry("a", "01"));
    expectFailure("Input XML is empty", [this] { parser.parseRegisteredShopXML(""); });
    expectFailure("Failed to parse XML: invalid input [<]",
                  [this] { parser.parseRegisteredShopXML("<"); });
    expectFailure("Failed to get attribute: name",
                  [&] { parser.parseRegisteredShopXML(document(good + "<list/>")); });
    expectFailure("Failed to get attribute: level",
                  [&] { parser.parseRegisteredShopXML(document(good + "<l name='B'/>")); });
    expectFailure("Failed to get attribute: code", [&] {
        parser.parseRegisteredShopXML(
            document(good + list("2", "B", entry("b", "02") + "<s name='x'/>")));
    });
    EXPECT_THROW(parser.parseRegisteredShopXML(document(good + list("x", "B", ""))),
                 std::invalid_argument);
    EXPECT_THROW(parser.parseRegisteredShopXML(document(list("9223372036854775808", "B", ""))),
                 std::out_of_range);
    EXPECT_EQ(ScriptedPlatform::get().countLines(WARNING), 0);
}

}  // namespace
