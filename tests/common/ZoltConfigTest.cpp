// SPDX-License-Identifier: Apache-2.0
// The table of settings and the file that it is read from.
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "common/Exception.h"
#include "common/ZoltConfig.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;

namespace {

class ZoltConfigTest : public testing::Test {
  protected:
    void SetUp() override {
        ZoltConfig::deinitialize();
        ScriptedPlatform::get().reset();
    }
    void TearDown() override { ZoltConfig::deinitialize(); }

    void load(const std::string& document) {
        ZoltConfig::initialize(folder.write("config.xml", document));
        ZoltConfig::load();
    }
    // Loads a file with one item, "key".
    void loadValue(const std::string& value) { load("<c><i name=\"key\">" + value + "</i></c>"); }

    template <typename Error, typename Call>
    static void expectError(const std::string& text, Call call) {
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (const Error& e) {
            EXPECT_EQ(std::string(e.what()), text);
        }
    }

    support::TemporaryFolder folder;
};

TEST_F(ZoltConfigTest, DirectChildrenOfTheRootAreTheSettings) {
    load(
        "<?xml version=\"1.0\"?><any> text <!-- comment -->\n"
        "<one name=\"first\">1</one><other name=\"second\"> two <b name=\"inner\">x</b>"
        "<![CDATA[<&>]]></other></any>");
    EXPECT_EQ(ZoltConfig::get("first"), "1");
    EXPECT_EQ(ZoltConfig::get("second"), " two x<&>");
    EXPECT_THROW(ZoltConfig::get("inner"), std::out_of_range);
}

TEST_F(ZoltConfigTest, EmptyAndEndlessKeysAndValuesAreKept) {
    const std::string longest(1 << 20, 'k');
    load("<c><i name=\"\">empty</i><i name=\"" + longest + "\">" + longest + "</i></c>");
    EXPECT_EQ(ZoltConfig::get(""), "empty");
    EXPECT_EQ(ZoltConfig::get(longest), longest);
    EXPECT_TRUE(ZoltConfig::is(longest, longest));
    EXPECT_FALSE(ZoltConfig::is(longest, ""));
    EXPECT_THROW(ZoltConfig::getInt(longest), std::invalid_argument);
}

TEST_F(ZoltConfigTest, LaterValueOfAKeyWins) {
    load("<c><i name=\"key\">1</i><i name=\"key\">2</i></c>");
    EXPECT_EQ(ZoltConfig::get("key"), "2");
}

TEST_F(ZoltConfigTest, ItemWithoutTextIsStoredAsAnEmptyText) {
    load("<c><i name=\"key\"/></c>");
    EXPECT_EQ(ZoltConfig::get("key"), "");
    expectError<std::invalid_argument>("stoi", [] { ZoltConfig::getInt("key"); });
    expectError<std::invalid_argument>("stoull", [] { ZoltConfig::getUll("key"); });
    EXPECT_TRUE(ZoltConfig::is("key", ""));
}

TEST_F(ZoltConfigTest, NumberEndsAtTheFirstCharacterThatIsNoDigit) {
    loadValue("12abc");
    EXPECT_EQ(ZoltConfig::getInt("key"), 12);
    EXPECT_EQ(ZoltConfig::getUll("key"), 12U);
}

TEST_F(ZoltConfigTest, ExtremeNumbersAreRead) {
    load(
        "<c><i name=\"min\">-2147483648</i><i name=\"max\">2147483647</i>"
        "<i name=\"zero\">0</i><i name=\"ull\">18446744073709551615</i></c>");
    EXPECT_EQ(ZoltConfig::getInt("min"), -2147483647 - 1);
    EXPECT_EQ(ZoltConfig::getInt("max"), 2147483647);
    EXPECT_EQ(ZoltConfig::getInt("zero"), 0);
    EXPECT_EQ(ZoltConfig::getUll("zero"), 0U);
    EXPECT_EQ(ZoltConfig::getUll("ull"), 18446744073709551615ULL);
}

TEST_F(ZoltConfigTest, NumbersAreDecimalWithBlanksAndASignBeforeThem) {
    load("<c><i name=\"a\"> \n+12 </i><i name=\"b\">010</i><i name=\"c\">-1</i></c>");
    EXPECT_EQ(ZoltConfig::getInt("a"), 12);
    EXPECT_EQ(ZoltConfig::getUll("a"), 12U);
    EXPECT_EQ(ZoltConfig::getInt("b"), 10);
    EXPECT_EQ(ZoltConfig::getUll("b"), 10U);
    EXPECT_EQ(ZoltConfig::getUll("c"), 18446744073709551615ULL) << "as the C library has it";
}

TEST_F(ZoltConfigTest, NumberOutOfRangeThrows) {
    load(
        "<c><i name=\"int\">2147483648</i><i name=\"below\">-2147483649</i>"
        "<i name=\"ull\">18446744073709551616</i></c>");
    expectError<std::out_of_range>("stoi", [] { ZoltConfig::getInt("int"); });
    expectError<std::out_of_range>("stoi", [] { ZoltConfig::getInt("below"); });
    expectError<std::out_of_range>("stoi", [] { ZoltConfig::getInt("ull"); });
    expectError<std::out_of_range>("stoull", [] { ZoltConfig::getUll("ull"); });
}

TEST_F(ZoltConfigTest, TextThatIsNoNumberThrows) {
    loadValue("x12");
    expectError<std::invalid_argument>("stoi", [] { ZoltConfig::getInt("key"); });
    expectError<std::invalid_argument>("stoull", [] { ZoltConfig::getUll("key"); });
}

TEST_F(ZoltConfigTest, ComparisonIsExact) {
    load("<c><i name=\"a\">01</i><i name=\"b\">1 </i><i name=\"c\">1</i></c>");
    EXPECT_FALSE(ZoltConfig::is("a", "1"));
    EXPECT_FALSE(ZoltConfig::is("b", "1"));
    EXPECT_TRUE(ZoltConfig::is("c", "1"));
}

TEST_F(ZoltConfigTest, AbsentKeyThrowsFromEveryReader) {
    loadValue("1");
    expectError<std::out_of_range>("map::at", [] { ZoltConfig::get("absent"); });
    expectError<std::out_of_range>("map::at", [] { ZoltConfig::getInt("absent"); });
    expectError<std::out_of_range>("map::at", [] { ZoltConfig::getUll("absent"); });
    expectError<std::out_of_range>("map::at", [] { ZoltConfig::is("absent", "1"); });
    expectError<std::out_of_range>("map::at", [] { ZoltConfig::get(""); });
}

TEST_F(ZoltConfigTest, SecondInitializeAfterALoadWarnsAndKeepsThePath) {
    loadValue("1");
    ZoltConfig::initialize(folder.write("other.xml", "<c><i name=\"key\">2</i></c>"));
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_WARN,
                                                "Zolt Config is already initialized!"));
    ZoltConfig::load();
    EXPECT_EQ(ZoltConfig::get("key"), "1");
}

TEST_F(ZoltConfigTest, SecondInitializeBeforeALoadReplacesThePathSilently) {
    ZoltConfig::initialize(folder.file("absent.xml"));
    loadValue("1");
    EXPECT_EQ(ZoltConfig::get("key"), "1");
    EXPECT_EQ(ScriptedPlatform::get().countLines("Zolt Config is already initialized!"), 0);
}

TEST_F(ZoltConfigTest, SecondLoadOverwritesAndForgetsNothing) {
    load("<c><i name=\"kept\">1</i><i name=\"changed\">1</i></c>");
    support::writeFile(folder.file("config.xml"), "<c><i name=\"changed\">2</i></c>");
    ZoltConfig::load();
    EXPECT_EQ(ZoltConfig::get("kept"), "1");
    EXPECT_EQ(ZoltConfig::get("changed"), "2");
}

TEST_F(ZoltConfigTest, DeinitializeStartsOverWithAnEmptyTable) {
    load("<c><i name=\"first\">1</i></c>");
    ZoltConfig::deinitialize();
    EXPECT_THROW(ZoltConfig::get("first"), std::out_of_range);
    load("<c><i name=\"second\">2</i></c>");
    EXPECT_EQ(ZoltConfig::get("second"), "2");
    EXPECT_THROW(ZoltConfig::get("first"), std::out_of_range);
    EXPECT_EQ(ScriptedPlatform::get().countLines("Zolt Config is already initialized!"), 0);
}

TEST_F(ZoltConfigTest, MissingOrBrokenFileThrowsWithItsPath) {
    const std::string start = "Failed to parse XML, file does not exist or is invalid: ";
    ZoltConfig::initialize(folder.file("absent.xml"));
    expectError<ZOLT::Exception>(start + folder.file("absent.xml"), [] { ZoltConfig::load(); });
    for (const char* broken : {"", "<c>", "no markup", "<c><i name=\"key\">1</c>"}) {
        ZoltConfig::initialize(folder.write("config.xml", broken));
        expectError<ZOLT::Exception>(start + folder.file("config.xml"), [] { ZoltConfig::load(); });
    }
    const std::string endless(100000, 'p');
    ZoltConfig::initialize(endless);
    expectError<ZOLT::Exception>(start + endless, [] { ZoltConfig::load(); });
    ZoltConfig::deinitialize();
    expectError<ZOLT::Exception>(start, [] { ZoltConfig::load(); });
    ZoltConfig::initialize("");
    expectError<ZOLT::Exception>(start, [] { ZoltConfig::load(); });
}

TEST_F(ZoltConfigTest, ElementWithoutANameThrowsAndWhatWasReadStays) {
    expectError<std::logic_error>("basic_string::_S_construct null not valid", [this] {
        load("<c><i name=\"before\">1</i><i>2</i><i name=\"after\">3</i></c>");
    });
    EXPECT_EQ(ZoltConfig::get("before"), "1");
    EXPECT_THROW(ZoltConfig::get("after"), std::out_of_range);
    EXPECT_THROW(ZoltConfig::get(""), std::out_of_range);
}

TEST_F(ZoltConfigTest, FileWithoutItemsGivesAnEmptyTable) {
    load("<c/>");
    EXPECT_THROW(ZoltConfig::get("key"), std::out_of_range);
}

}  // namespace
