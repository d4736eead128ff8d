// SPDX-License-Identifier: Apache-2.0
// Reading, searching and writing documents, and the text of each failure.
#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>

#include <unistd.h>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlmemory.h>

#include "common/Exception.h"
#include "common/LibXml.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using ZOLT::Exception;
using ZOLT::LibXml;

namespace {

const char DOCUMENT[] =
    "<?xml version=\"1.0\"?>\n"
    "<a x='1'>\n  <b n='one' e=''>text<c/><c/><d/></b>\n  <b n='two'/><!-- note --></a>";

void expectFailure(const std::string& text, const std::function<void()>& call) {
    try {
        call();
        ADD_FAILURE() << "nothing thrown, expected: " << text;
    } catch (const Exception& e) {
        EXPECT_EQ(e.what(), text);
        EXPECT_EQ(e.code(), ZOLT::GENERIC_ERROR);
    }
}

std::string nameOf(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

class LibXmlTest : public testing::Test {
  protected:
    void SetUp() override { support::ScriptedPlatform::get().reset(); }
};

TEST_F(LibXmlTest, SameDocumentComesFromTextBufferAndFile) {
    const support::TemporaryFolder folder;
    const LibXml text{std::string(DOCUMENT)};
    const LibXml buffer(DOCUMENT, sizeof DOCUMENT - 1);
    LibXml file;
    file.parseFile(folder.write("a.xml", DOCUMENT));
    for (const LibXml* xml : {&text, &buffer, static_cast<const LibXml*>(&file)}) {
        ASSERT_NE(xml->doc(), nullptr);
        EXPECT_EQ(nameOf(xml->getRootElement()), "a");
    }
}

TEST_F(LibXmlTest, EmptyObjectHasNoDocument) {
    LibXml xml;
    EXPECT_EQ(xml.doc(), nullptr);
    EXPECT_EQ(xml.getRootElement(), nullptr);
    expectFailure("No Node under \"/a\" path", [&] { xml.xPath("/a"); });
}

TEST_F(LibXmlTest, TextThatIsNoDocumentSaysSoWithTheText) {
    expectFailure("Input XML is empty", [] { LibXml xml{std::string()}; });
    for (const std::string text :
         {"<a>", "x", "<a></b>", " ", "<a x='1' x='2'/>", "%s%d", "<a>\x01</a>"}) {
        expectFailure("Failed to parse XML: invalid input [" + text + "]",
                      [&] { LibXml xml(text); });
    }
}

TEST_F(LibXmlTest, BufferThatIsNoDocumentSaysSo) {
    const char* text = "Failed to parse XML from memory: invalid input";
    expectFailure(text, [] { LibXml xml("<a>", 3); });
    expectFailure(text, [] { LibXml xml("", 0); });
    expectFailure(text, [] { LibXml xml(nullptr, 5); });
    expectFailure(text, [] { LibXml xml("<a/>", -1); });
    expectFailure(text, [] { LibXml xml("<a/>", INT_MIN); });
    expectFailure(text, [] { LibXml xml(nullptr, 0); });
}

TEST_F(LibXmlTest, BufferIsReadToItsSizeOnly) {
    const LibXml xml("<a/><broken", 4);
    EXPECT_EQ(nameOf(xml.getRootElement()), "a");
}

TEST_F(LibXmlTest, BufferIsNeverTheFileThatItsBaseNames) {
    const support::TemporaryFolder folder;
    folder.write("noname.xml", "<file/>");
    char before[4096];
    ASSERT_NE(getcwd(before, sizeof before), nullptr);
    ASSERT_EQ(chdir(folder.path().c_str()), 0);
    const LibXml xml("<memory/>", 9);
    ASSERT_EQ(chdir(before), 0);
    EXPECT_EQ(nameOf(xml.getRootElement()), "memory");
    EXPECT_STREQ(reinterpret_cast<const char*>(xml.doc()->URL), "noname.xml");
}

TEST_F(LibXmlTest, FileThatIsNoDocumentSaysSoWithThePath) {
    const support::TemporaryFolder folder;
    LibXml xml;
    for (const std::string& path :
         {folder.file("absent"), folder.write("broken", "<a>"), folder.write("empty", ""),
          folder.path(), std::string(), std::string(100000, 'p')}) {
        expectFailure("Failed to parse XML, file does not exist or is invalid: " + path,
                      [&] { xml.parseFile(path); });
        EXPECT_EQ(xml.doc(), nullptr);
    }
}

TEST_F(LibXmlTest, ParsingAgainReplacesTheDocument) {
    LibXml xml(std::string("<a/>"));
    xml.parseString("<b/>");
    EXPECT_EQ(nameOf(xml.xPath("/b")), "b");
    expectFailure("Failed to parse XML: invalid input [<c>]", [&] { xml.parseString("<c>"); });
    EXPECT_EQ(xml.doc(), nullptr);
    xml.parseString("<d/>");
    EXPECT_EQ(nameOf(xml.getRootElement()), "d");
    const support::TemporaryFolder folder;
    xml.parseFile(folder.write("e.xml", "<e/>"));
    EXPECT_EQ(nameOf(xml.xPath("/e")), "e");
    xml.parseMemory("<f/>", 4);
    EXPECT_EQ(nameOf(xml.xPath("/f")), "f");
}

TEST_F(LibXmlTest, EmptyTextIsRefusedBeforeTheFormerDocumentGoes) {
    LibXml xml(std::string("<a/>"));
    expectFailure("Input XML is empty", [&] { xml.parseString(""); });
    EXPECT_EQ(nameOf(xml.xPath("/a")), "a");
}

TEST_F(LibXmlTest, DocumentOfALongTextIsReadWhole) {
    const std::string text(5 << 20, 't');
    LibXml xml("<a n='" + text + "'>" + text + "</a>");
    EXPECT_EQ(xml.getAttribute(xml.getRootElement(), "n"), text);
    EXPECT_EQ(xml.getContent(xml.getRootElement()), text);
}

// How many allocations of libxml2 succeed before one fails; below 0 none fails.
long allocationsLeft = -1;

void* failingMalloc(size_t size) {
    return allocationsLeft-- == 0 ? nullptr : std::malloc(size);
}

void useMalloc(xmlMallocFunc function) {
    xmlMemSetup(std::free, function, std::realloc, strdup);
}

// Expects that ACTION, given an object with a document, throws TEXT when the allocation after
// SPARED others fails.
void expectFailureWithoutMemory(const std::string& text, long spared,
                                const std::function<void(LibXml& xml)>& action) {
    LibXml xml;
    xml.create("");
    xml.addRootNode("root");
    allocationsLeft = spared;
    useMalloc(failingMalloc);
    expectFailure(text, [&] { action(xml); });
    useMalloc(std::malloc);
    EXPECT_LT(allocationsLeft, 0);
}

long allocationsOfAParse(const std::string& text) {
    allocationsLeft = 1000000;
    useMalloc(failingMalloc);
    xmlDocPtr document = xmlParseDoc(reinterpret_cast<const xmlChar*>(text.c_str()));
    useMalloc(std::malloc);
    xmlFreeDoc(document);
    return 1000000 - allocationsLeft;
}

TEST_F(LibXmlTest, DocumentWithoutAContextIsFreedOnce) {
    const std::string text = "<a/>";
    LibXml warm(text);
    const long count = allocationsOfAParse(text);
    {
        LibXml xml;
        allocationsLeft = count;
        useMalloc(failingMalloc);
        expectFailure("Failed to create new XPath context", [&] { xml.parseString(text); });
        EXPECT_EQ(xml.doc(), nullptr);
        allocationsLeft = count;
        expectFailure("Failed to create new XPath context", [&] { LibXml other(text); });
        useMalloc(std::malloc);
    }
}

TEST_F(LibXmlTest, WritingWithoutMemorySaysWhatCouldNotBeMade) {
    expectFailureWithoutMemory("Failed to create new XML document tree", 0,
                               [](LibXml& xml) { xml.create(""); });
    expectFailureWithoutMemory("Failed to add root node in XML document tree", 0,
                               [](LibXml& xml) { xml.addRootNode("r"); });
    expectFailureWithoutMemory("Failed to add child node in XML document tree", 0, [](LibXml& xml) {
        xml.addChildNode(xml.getRootElement(), "c", "text");
    });
    // A node and its name are one allocation each.
    const auto addData = [](LibXml& xml) {
        xml.addChildCDATANode(xml.getRootElement(), "data", "text");
    };
    expectFailureWithoutMemory("Failed to create parent node for CDATA in XML document tree", 0,
                               addData);
    expectFailureWithoutMemory("Failed to create CDATA child node in XML document tree", 2,
                               addData);
}

TEST_F(LibXmlTest, SerialisingWithoutMemorySaysWhatCouldNotBeMadeAndLeavesTheTextAlone) {
    std::string out = "former";
    const auto write = [&out](LibXml& xml) { xml.toString(out); };
    expectFailureWithoutMemory("Failed to create buffer with xmlBufferCreate().", 0, write);
    // The buffer is two allocations.
    expectFailureWithoutMemory("Failed to create output buffer with xmlOutputBufferCreateBuffer().",
                               2, write);
    EXPECT_EQ(out, "former");
}

// How many blocks of memory libxml2 holds.
long held = 0;

void* heldMalloc(size_t size) {
    void* piece = failingMalloc(size);
    held += piece != nullptr ? 1 : 0;
    return piece;
}

void* heldRealloc(void* old, size_t size) {
    held += old == nullptr ? 1 : 0;
    return std::realloc(old, size);
}

char* heldStrdup(const char* text) {
    ++held;
    return strdup(text);
}

void heldFree(void* piece) {
    held -= piece != nullptr ? 1 : 0;
    std::free(piece);
}

// How many more blocks there are after ACTION.
long leftBy(const std::function<void()>& action) {
    allocationsLeft = -1;
    xmlMemSetup(heldFree, heldMalloc, heldRealloc, heldStrdup);
    action();  // the library keeps some memory after its first use
    held = 0;
    action();
    useMalloc(std::malloc);
    return held;
}

TEST_F(LibXmlTest, EachFoundPathKeepsItsResultForGoodAndNothingElseDoes) {
    const auto find = [](int times) {
        return [times] {
            LibXml xml{std::string(DOCUMENT)};
            for (int time = 0; time < times; ++time) {
                xml.xPath("/a/b");
            }
        };
    };
    const long ofOne = leftBy(find(1));
    EXPECT_GT(ofOne, 0);
    EXPECT_EQ(leftBy(find(3)), 3 * ofOne);
    EXPECT_EQ(leftBy([] {
                  LibXml xml{std::string(DOCUMENT)};
                  EXPECT_THROW(xml.xPath("/z"), Exception);
                  xml.xPathCountNodes("/a/b");
                  EXPECT_THROW(xml.xPathCountNodes("/z"), Exception);
                  xml.xPathChildrenCount("/a/b", "c", 0);
                  EXPECT_THROW(xml.xPathChildrenCount("/z", "c", 0), Exception);
                  xml.xPathNodeValue("/a/b", "n", 0);
                  EXPECT_THROW(xml.xPathNodeValue("/z", "n", 0), Exception);
              }),
              0);
}

TEST_F(LibXmlTest, ADocumentThatCannotBeWrittenKeepsItsBufferForGood) {
    EXPECT_GT(leftBy([] {
                  std::string out;
                  EXPECT_THROW(LibXml().toString(out), Exception);
              }),
              0);
    EXPECT_EQ(leftBy([] {
                  LibXml xml{std::string(DOCUMENT)};
                  std::string out;
                  xml.toString(out);
              }),
              0);
}

// The same with an allocation that fails after SPARED others.
long leftWithoutMemoryBy(long spared, const std::function<void(LibXml& xml)>& action) {
    return leftBy([&] {
        LibXml xml;
        xml.create("");
        xml.addRootNode("root");
        allocationsLeft = spared;
        EXPECT_THROW(action(xml), Exception);
        EXPECT_LT(allocationsLeft, 0);
    });
}

TEST_F(LibXmlTest, ABufferThatCannotBeWrittenToStaysForGoodToo) {
    EXPECT_GT(leftWithoutMemoryBy(2,
                                  [](LibXml& xml) {
                                      std::string out;
                                      xml.toString(out);
                                  }),
              0);
}

TEST_F(LibXmlTest, NodeWhoseDataCouldNotBeMadeIsNotInTheDocumentAndDoesNotStay) {
    EXPECT_EQ(leftWithoutMemoryBy(2,
                                  [](LibXml& xml) {
                                      xmlNode* root = xml.getRootElement();
                                      try {
                                          xml.addChildCDATANode(root, "data", "text");
                                      } catch (const Exception&) {
                                          EXPECT_EQ(root->children, nullptr);
                                          throw;
                                      }
                                  }),
              0);
}

TEST_F(LibXmlTest, BrokenInputPrintsNothing) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    const auto misuse = [] {
        EXPECT_THROW(LibXml xml{std::string("<a><b></a>")}, Exception);
        EXPECT_THROW(LibXml().parseFile("/absent/file.xml"), Exception);
        LibXml xml(std::string("<a/>"));
        EXPECT_THROW(xml.xPath("///["), Exception);
        EXPECT_THROW(LibXml().xPath("/a"), Exception);
        xmlGenericError(xmlGenericErrorContext, "message without a structure\n");
    };
    misuse();
    std::thread(misuse).join();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LibXmlTest, PathGivesItsFirstNode) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.getAttribute(xml.xPath("/a/b"), "n"), "one");
    EXPECT_EQ(xml.getAttribute(xml.xPath("//b[2]"), "n"), "two");
}

TEST_F(LibXmlTest, PathWithoutNodesSaysSo) {
    LibXml xml{std::string(DOCUMENT)};
    const std::string nested = std::string(100000, '(') + "/a" + std::string(100000, ')');
    for (const std::string& path :
         {std::string("/rsp/list"), std::string(), std::string("///["), std::string("count(//b)"),
          std::string("'text'"), std::string("b"), std::string(100000, 'a'), nested}) {
        expectFailure("No Node under \"" + path + "\" path", [&] { xml.xPath(path); });
        expectFailure("Node under \"" + path + "\" path is empty",
                      [&] { xml.xPathCountNodes(path); });
        expectFailure("Node \"" + path + "@n\" is empty",
                      [&] { xml.xPathChildrenCount(path, "n", 0); });
        expectFailure("Node \"" + path + "@n\" is empty",
                      [&] { xml.xPathNodeValue(path, "n", 0); });
    }
}

TEST_F(LibXmlTest, NodesOfAPathAreCounted) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.xPathCountNodes("/a/b"), 2);
    EXPECT_EQ(xml.xPathCountNodes("/a"), 1);
    expectFailure("Node under \"/z\" path is empty", [&] { xml.xPathCountNodes("/z"); });
}

TEST_F(LibXmlTest, ChildrenOfOneNodeAreCountedByName) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.xPathChildrenCount("/a/b", "c", 0), 2);
    EXPECT_EQ(xml.xPathChildrenCount("/a/b", "c", 1), 0);
    EXPECT_EQ(xml.xPathChildrenCount("/a/b", "C", 0), 0);
    EXPECT_EQ(xml.xPathChildrenCount("/a/b", "", 0), 0);
    expectFailure("Node \"/z@c\" is empty", [&] { xml.xPathChildrenCount("/z", "c", 0); });
}

TEST_F(LibXmlTest, ValueIsTheAttributeOrWithoutANameTheContent) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.xPathNodeValue("/a/b", "n", 0), "one");
    EXPECT_EQ(xml.xPathNodeValue("/a/b", "n", 1), "two");
    EXPECT_EQ(xml.xPathNodeValue("/a/b", "", 0), "text");
    EXPECT_EQ(xml.xPathNodeValue("/a/b/@n", "", 0), "one");
    EXPECT_EQ(xml.xPathNodeValue("/a/b", "absent", 0), "");
    expectFailure("Node \"/z@n\" is empty", [&] { xml.xPathNodeValue("/z", "n", 0); });
    expectFailure("Node \"/z@\" is empty", [&] { xml.xPathNodeValue("/z", "", 0); });
}

TEST_F(LibXmlTest, IndexOutsideTheResultFindsNothing) {
    LibXml xml{std::string(DOCUMENT)};
    for (const int index : {-2147483647 - 1, -1, 2, 2147483647}) {
        EXPECT_EQ(xml.xPathChildrenCount("/a/b", "c", index), 0);
        EXPECT_EQ(xml.xPathNodeValue("/a/b", "n", index), "");
        EXPECT_EQ(xml.xPathNodeValue("/a/b", "", index), "");
    }
}

TEST_F(LibXmlTest, NamespaceInAResultIsNoParent) {
    LibXml xml(std::string("<a xmlns:p='urn:u'/>"));
    EXPECT_EQ(xml.xPathChildrenCount("/a/namespace::p", "c", 0), 0);
    EXPECT_EQ(xml.xPathNodeValue("/a/namespace::p", "", 0), "urn:u");
    EXPECT_EQ(xml.xPathNodeValue("/a/namespace::p", "n", 0), "");
}

TEST_F(LibXmlTest, FallbackStandsInForAPathWithoutNodesOnly) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.xPathNodeValueIfExist("/a/b", "n", 1, "fallback"), "two");
    EXPECT_EQ(xml.xPathNodeValueIfExist("/a/b", "absent", 0, "fallback"), "");
    EXPECT_EQ(xml.xPathNodeValueIfExist("/a/b", "n", INT_MAX, "fallback"), "");
    EXPECT_EQ(xml.xPathNodeValueIfExist("/a/b", "", 0, "fallback"), "text");
    EXPECT_EQ(xml.xPathNodeValueIfExist("/z", "n", 0, "fallback"), "fallback");
    EXPECT_EQ(xml.xPathNodeValueIfExist("", "n", 0, ""), "");
}

TEST_F(LibXmlTest, EmptyAttributeIsThere) {
    LibXml xml{std::string(DOCUMENT)};
    EXPECT_EQ(xml.getAttribute(xml.xPath("/a/b"), "e"), "");
    EXPECT_EQ(xml.getAttribute(xml.xPath("/a/b"), "e", "fallback"), "");
}

TEST_F(LibXmlTest, MissingAttributeThrowsOrGivesTheFallback) {
    LibXml xml{std::string(DOCUMENT)};
    xmlNode* node = xml.xPath("/a/b");
    expectFailure("Failed to get attribute: absent", [&] { xml.getAttribute(node, "absent"); });
    EXPECT_EQ(xml.getAttribute(node, "absent", "fallback"), "fallback");
    EXPECT_EQ(xml.getAttribute(node, "n", "fallback"), "one");
    EXPECT_EQ(xml.getAttribute(node, nullptr, "fallback"), "fallback");
    EXPECT_EQ(xml.getAttribute(nullptr, "n", "fallback"), "fallback");
    expectFailure("Failed to get attribute: ", [&] { xml.getAttribute(node, ""); });
    expectFailure("Failed to get attribute: ", [&] { xml.getAttribute(node, nullptr); });
    expectFailure("Failed to get attribute: n", [&] { xml.getAttribute(nullptr, "n"); });
    expectFailure("Failed to get attribute: n",
                  [&] { xml.getAttribute(xml.xPath("/a/text()"), "n"); });
}

TEST_F(LibXmlTest, ContentIsAllTextBelowTheNode) {
    LibXml xml(std::string("<a>1<b>2<c>3</c></b><![CDATA[<4>]]>&amp;</a>"));
    EXPECT_EQ(xml.getContent(xml.getRootElement()), "123<4>&");
    EXPECT_EQ(xml.getContent(xml.xPath("//c")), "3");
    expectFailure("Failed to get content of node", [&] { xml.getContent(nullptr); });
}

TEST_F(LibXmlTest, NullTextBecomesAnEmptyOne) {
    LibXml xml;
    std::string out = "former";
    xml.xmlCharToString(nullptr, out);
    EXPECT_EQ(out, "");
    unsigned char text[] = "text \xec\x84\x9c";
    xml.xmlCharToString(text, out);
    EXPECT_EQ(out, "text \xec\x84\x9c");
}

TEST_F(LibXmlTest, ExternalEntityIsNotRead) {
    const support::TemporaryFolder folder;
    const std::string path = folder.write("secret", "secret");
    LibXml xml("<!DOCTYPE a [<!ENTITY e SYSTEM '" + path + "'>]><a><b>&e;</b></a>");
    EXPECT_EQ(xml.getContent(xml.getRootElement()), "");
}

TEST_F(LibXmlTest, WrittenDocumentIsIndentedAndInUtf8) {
    LibXml xml;
    xml.create("not used");
    xmlNode* root = xml.addRootNode("root");
    xmlNode* child = xml.addChildNode(root, "child", "text \xec\x84\x9c");
    xml.addChildCDATANode(root, "data", "<&>");
    xml.setAttribute(child, "n", "1");
    xml.setAttribute(child, "n", "<2>");
    xml.setAttribute(child, "m", "");
    std::string out = "former";
    xml.toString(out);
    EXPECT_EQ(out,
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
              "<root>\n"
              "  <child n=\"&lt;2&gt;\" m=\"\">text \xec\x84\x9c</child>\n"
              "  <data><![CDATA[<&>]]></data>\n"
              "</root>\n");
    EXPECT_EQ(LibXml(out).xPathNodeValue("/root/data", "", 0), "<&>");
}

TEST_F(LibXmlTest, WrittenDocumentHasNoContext) {
    LibXml xml;
    xml.create("");
    xml.addRootNode("root");
    EXPECT_EQ(nameOf(xml.getRootElement()), "root");
    expectFailure("No Node under \"/root\" path", [&] { xml.xPath("/root"); });
}

TEST_F(LibXmlTest, SecondRootTakesThePlaceOfTheFirst) {
    LibXml xml;
    xml.create("");
    xml.addChildNode(xml.addRootNode("first"), "child", "");
    xml.addRootNode("second");
    EXPECT_EQ(nameOf(xml.getRootElement()), "second");
}

TEST_F(LibXmlTest, CreateLetsGoOfTheFormerDocument) {
    LibXml xml{std::string(DOCUMENT)};
    xml.create("");
    EXPECT_EQ(xml.getRootElement(), nullptr);
}

TEST_F(LibXmlTest, NodesWithoutADocumentOrParentAreRefused) {
    LibXml xml;
    expectFailure("Failed to add root node in XML document tree", [&] { xml.addRootNode("r"); });
    expectFailure("Failed to add child node in XML document tree",
                  [&] { xml.addChildNode(nullptr, "c", "text"); });
    xml.setAttribute(nullptr, "n", "v");
}

TEST_F(LibXmlTest, OnlyAnElementTakesAChildOrAnAttribute) {
    LibXml xml(std::string("<a xmlns:p='urn:u' n='1'>text</a>"));
    for (const char* path : {"/a/text()", "/a/@n", "/a/namespace::p"}) {
        xmlNode* node = xml.xPath(path);
        expectFailure("Failed to add child node in XML document tree",
                      [&] { xml.addChildNode(node, "c", "text"); });
        xml.setAttribute(node, "m", "2");
    }
    std::string out;
    xml.toString(out);
    EXPECT_NE(out.find("<a xmlns:p=\"urn:u\" n=\"1\">text</a>"), std::string::npos) << out;
}

TEST_F(LibXmlTest, NullNameAddsNoAttributeAndANullValueAnEmptyOne) {
    LibXml xml;
    xml.create("");
    xmlNode* root = xml.addRootNode("root");
    xml.setAttribute(root, nullptr, "v");
    EXPECT_EQ(root->properties, nullptr);
    xml.setAttribute(root, "n", nullptr);
    EXPECT_EQ(xml.getAttribute(root, "n", "missing"), "");
    xml.setAttribute(root, "n", "v");
    xml.setAttribute(root, "n", nullptr);
    EXPECT_EQ(xml.getAttribute(root, "n", "missing"), "");
}

TEST_F(LibXmlTest, NamesAndTextsOfAnyLengthAreWritten) {
    LibXml xml;
    xml.create("");
    const std::string longest(1 << 20, 'n');
    xmlNode* root = xml.addRootNode(longest);
    xml.setAttribute(root, longest.c_str(), longest.c_str());
    EXPECT_EQ(xml.getContent(xml.addChildNode(root, longest, longest)), longest);
    EXPECT_EQ(nameOf(root), longest);
    EXPECT_EQ(xml.getAttribute(root, longest.c_str()), longest);
    EXPECT_EQ(nameOf(xml.addChildNode(root, "", "")), "");
    EXPECT_EQ(nameOf(xml.addChildCDATANode(root, "", "")), "");
    EXPECT_EQ(nameOf(xml.addRootNode("")), "");
}

TEST_F(LibXmlTest, NewDocumentWithoutARootIsWrittenAsItsFirstLine) {
    LibXml xml;
    xml.create("");
    std::string out;
    xml.toString(out);
    EXPECT_EQ(out, "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n");
}

TEST_F(LibXmlTest, CDataNodeWithoutAParentBelongsToTheCaller) {
    LibXml xml;
    xml.create("");
    xmlNode* node = xml.addChildCDATANode(nullptr, "data", "text");
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(xml.getContent(node), "text");
    EXPECT_EQ(node->parent, nullptr);
    xmlFreeNode(node);
}

TEST_F(LibXmlTest, CDataBlockKeepsItsFullLength) {
    LibXml xml;
    xml.create("");
    const std::string content(1 << 20, 'c');
    EXPECT_EQ(xml.getContent(xml.addChildCDATANode(xml.addRootNode("r"), "data", content)),
              content);
    EXPECT_EQ(xml.getContent(xml.addChildCDATANode(xml.getRootElement(), "empty", "")), "");
}

TEST_F(LibXmlTest, NothingToWriteSaysSoAndLeavesTheTextAlone) {
    LibXml xml;
    std::string out = "former";
    expectFailure("Failed to save XML to buffer with xmlSaveFormatFileTo().",
                  [&] { xml.toString(out); });
    EXPECT_EQ(out, "former");
}

}  // namespace
