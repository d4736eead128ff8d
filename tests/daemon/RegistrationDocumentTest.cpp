// SPDX-License-Identifier: Apache-2.0
// Which registration documents the daemon accepts.
#include <string>

#include <gtest/gtest.h>

#include "daemon/ShopListDocument.h"

namespace standin {
namespace {

const char* const SERVED =
    "<rsp stat=\"ok\">"
    "<list level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"Y\">"
    "<sub_list name=\"R&amp;D\" code=\"01\"/><sub_list name=\"Malta\" code=\"02\"/>"
    "<sub_list name=\"Head office\" code=\"03\"/></list>"
    "<list level=\"2\" name=\"City\" is_fix=\"N\" is_sub=\"maybe\">"
    "<sub_list name=\"Lab\" code=\"0101\"/><sub_list name=\"Valletta\" code=\"0201\"/></list>"
    "</rsp>";

std::string level(const std::string& attributes, const std::string& entries) {
    return "<list " + attributes + ">" + entries + "</list>";
}

std::string document(const std::string& levels) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><rsp stat=\"ok\">" + levels + "</rsp>";
}

const char* const COUNTRY = "level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"Y\"";
const char* const CITY = "level=\"2\" name=\"City\" is_fix=\"N\" is_sub=\"N\"";
const char* const MALTA = "<sub_list name=\"Malta\" code=\"02\" />";
const char* const VALLETTA = "<sub_list name=\"Valletta\" code=\"0201\" />";

std::string fault(const std::string& text) {
    return registrationFault(text, SERVED).value_or("");
}

TEST(RegistrationDocument, AChainFromTheTopIsRight) {
    EXPECT_EQ(fault(document(level(COUNTRY, MALTA) + level(CITY, VALLETTA))), "");
}

TEST(RegistrationDocument, AnEntryAtTheTopThatHasNoChildrenIsRight) {
    EXPECT_EQ(fault(document(level("level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"",
                                   "<sub_list name=\"Head office\" code=\"03\" />"))),
              "");
}

TEST(RegistrationDocument, ACodeAtTheTopMayHaveAnyLength) {
    const std::string served = document(level(COUNTRY, "<sub_list name=\"Malta\" code=\"M\"/>") +
                                        level("level=\"2\" name=\"City\" is_fix=\"N\" is_sub=\"Y\"",
                                              "<sub_list name=\"Valletta\" code=\"M01\"/>"));
    EXPECT_EQ(registrationFault(document(level(COUNTRY, "<sub_list name=\"Malta\" code=\"M\"/>") +
                                         level(CITY, "<sub_list name=\"Valletta\" code=\"M01\"/>")),
                                served),
              std::nullopt);
}

TEST(RegistrationDocument, EveryDepartureIsNamed) {
    struct Case {
        std::string text;
        const char* fault;
    };
    const Case cases[] = {
        {"", "it is not well-formed XML"},
        {"<rsp>", "it is not well-formed XML"},
        {"<!DOCTYPE rsp [<!ENTITY a \"b\">]><rsp/>", "it is not well-formed XML"},
        {"<rsq/>", "<rsq> in the place of <rsp>"},
        {document(""), "it has no level"},
        {document("<lists/>"), "<lists> in the place of <list>"},
        {document(level("level=\"1\" name=\"Country\" is_fix=\"Y\"", MALTA)),
         "<list> without \"is_sub\""},
        {document(level("level=\"x\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"", MALTA)),
         "level \"x\" is not a number"},
        {document(level(COUNTRY, MALTA)), "level 1: is_sub is \"Y\" and must be \"N\""},
        {document(level("level=\"2\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"", MALTA)),
         "level 1: level is \"2\" and must be \"1\""},
        {document(level("level=\"1\" name=\"Land\" is_fix=\"Y\" is_sub=\"N\"", MALTA)),
         "level 1: name is \"Land\" and must be \"Country\""},
        {document(level("level=\"1\" name=\"Country\" is_fix=\"N\" is_sub=\"N\"", MALTA)),
         "level 1: is_fix is \"N\" and must be \"Y\""},
        {document(level("level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"",
                        std::string(MALTA) + MALTA)),
         "level 1: 2 entries in the place of one"},
        {document(level("level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"",
                        "<sub_list name=\"Malta\" code=\"01\"/>")),
         "level 1: there is no \"Malta\" with code \"01\""},
        {document(level("level=\"1\" name=\"Country\" is_fix=\"Y\" is_sub=\"N\"", MALTA)),
         "it ends at \"Malta\", which has children"},
        {document(level(COUNTRY, "<sub_list name=\"R&amp;D\" code=\"01\"/>") +
                  level(CITY, VALLETTA)),
         "code \"0201\" is not \"01\" and two characters"},
        {document(level("level=\"2\" name=\"City\" is_fix=\"N\" is_sub=\"N\"", VALLETTA)),
         "level 1: level is \"2\" and must be \"1\""},
        {document(level(COUNTRY, MALTA) +
                  level("level=\"2\" name=\"City\" is_fix=\"N\" is_sub=\"maybe\"", VALLETTA)),
         "level 2: is_sub is \"maybe\" and must be \"N\""},
        {document(level(COUNTRY, MALTA) + level(CITY, VALLETTA) + level(CITY, VALLETTA)),
         "it has more levels than the shop list"},
        {document(level(COUNTRY, "<sub_list name=\"Malta\"/>")), "<sub_list> without \"code\""},
    };
    for (const Case& entry : cases) {
        EXPECT_EQ(fault(entry.text), entry.fault) << entry.text;
    }
}

TEST(RegistrationDocument, NoDocumentFitsAListThatCannotBeRead) {
    const std::string text = document(level(COUNTRY, MALTA) + level(CITY, VALLETTA));
    EXPECT_EQ(registrationFault(text, "null"),
              "the shop list served cannot be read: it is not well-formed XML");
}

}  // namespace
}  // namespace standin
