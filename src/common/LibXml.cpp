// SPDX-License-Identifier: Apache-2.0
// All XML of the program goes through here.
#include "common/LibXml.h"

#include <memory>

#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlsave.h>
#include <libxml/xpathInternals.h>

#include "common/Exception.h"
#include "common/Logger.h"

namespace ZOLT {

namespace {

struct XmlDeleter {
    void operator()(xmlChar* text) const { xmlFree(text); }
    void operator()(xmlNode* node) const { xmlFreeNode(node); }
    void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};
using XmlText = std::unique_ptr<xmlChar, XmlDeleter>;
using XmlNode = std::unique_ptr<xmlNode, XmlDeleter>;
using XPathResult = std::unique_ptr<xmlXPathObject, XmlDeleter>;

const xmlChar* toXml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

const xmlChar* toXml(const std::string& text) {
    return toXml(text.c_str());
}

// libxml2's own prototype has nothing but an ellipsis after the context.
void dropMessage(void*, const char*, ...) {}

void dropError(void*, xmlErrorPtr) {}

// By default libxml2 prints errors on standard error, which the program has closed. It keeps these
// functions for each thread.
void silenceErrors() {
    static thread_local bool silent = false;
    if (!silent) {
        xmlInitParser();
        xmlSetGenericErrorFunc(nullptr, dropMessage);
        xmlSetStructuredErrorFunc(nullptr, dropError);
        silent = true;
    }
}

XPathResult evaluate(const std::string& expression, xmlXPathContextPtr context) {
    return XPathResult(xmlXPathEvalExpression(toXml(expression), context));
}

bool hasNodes(const XPathResult& result) {
    return result != nullptr && result->nodesetval != nullptr && result->nodesetval->nodeNr > 0;
}

// Null for an index beyond the node set: callers pass it unchecked.
xmlNode* nodeAt(const XPathResult& result, int index) {
    const bool inside = index >= 0 && index < result->nodesetval->nodeNr;
    return inside ? result->nodesetval->nodeTab[index] : nullptr;
}

// Null for a namespace too, which stands in a node set although it is no node.
xmlNode* firstChild(const xmlNode* node) {
    return node == nullptr || node->type == XML_NAMESPACE_DECL ? nullptr : node->children;
}

}  // namespace

LibXml::LibXml() {
    silenceErrors();
}

LibXml::LibXml(const std::string& text) : LibXml() {
    parseString(text);
}

LibXml::LibXml(const char* buffer, int size) : LibXml() {
    parseMemory(buffer, size);
}

LibXml::~LibXml() {
    release();
}

void LibXml::release() {
    xmlFreeDoc(m_doc);
    m_doc = nullptr;
    xmlXPathFreeContext(m_xPathContext);
    m_xPathContext = nullptr;
}

// Takes ownership of DOCUMENT. Clears the pointer if no context can be made, so that the document
// is not freed twice.
void LibXml::adopt(xmlDocPtr document) {
    m_doc = document;
    m_xPathContext = xmlXPathNewContext(m_doc);
    if (m_xPathContext == nullptr) {
        release();
        throw Exception("Failed to create new XPath context", GENERIC_ERROR);
    }
}

void LibXml::parseString(const std::string& text) {
    ZOLT_TRACE();
    if (text.empty()) {
        throw Exception("Input XML is empty", GENERIC_ERROR);
    }
    release();
    xmlDocPtr document = xmlParseDoc(toXml(text));
    if (document == nullptr) {
        throw Exception("Failed to parse XML: invalid input [%s]", text, GENERIC_ERROR);
    }
    adopt(document);
}

void LibXml::parseFile(const std::string& path) {
    ZOLT_TRACE();
    release();
    xmlDocPtr document = xmlParseFile(path.c_str());
    if (document == nullptr) {
        throw Exception("Failed to parse XML, file does not exist or is invalid: %s", path,
                        GENERIC_ERROR);
    }
    adopt(document);
}

void LibXml::parseMemory(const char* buffer, int size) {
    ZOLT_TRACE();
    release();
    xmlDocPtr document = xmlReadMemory(buffer, size, "noname.xml", nullptr, 0);
    if (document == nullptr) {
        throw Exception("Failed to parse XML from memory: invalid input", GENERIC_ERROR);
    }
    adopt(document);
}

xmlDocPtr LibXml::doc() const {
    return m_doc;
}

xmlNode* LibXml::getRootElement() const {
    return xmlDocGetRootElement(m_doc);
}

xmlNode* LibXml::xPath(std::string expression) {
    XPathResult result = evaluate(expression, m_xPathContext);
    if (!hasNodes(result)) {
        throw Exception("No Node under \"%s\" path", expression, GENERIC_ERROR);
    }
    return result.release()->nodesetval->nodeTab[0];
}

int LibXml::xPathCountNodes(std::string expression) {
    const XPathResult result = evaluate(expression, m_xPathContext);
    if (!hasNodes(result)) {
        throw Exception("Node under \"%s\" path is empty", expression, GENERIC_ERROR);
    }
    return result->nodesetval->nodeNr;
}

int LibXml::xPathChildrenCount(std::string expression, std::string child, int index) {
    const XPathResult result = evaluate(expression, m_xPathContext);
    if (!hasNodes(result)) {
        throw Exception("Node \"%s\" is empty", expression + "@" + child, GENERIC_ERROR);
    }
    int count = 0;
    for (xmlNode* node = firstChild(nodeAt(result, index)); node != nullptr; node = node->next) {
        count += xmlStrcmp(node->name, toXml(child)) == 0 ? 1 : 0;
    }
    return count;
}

std::string LibXml::xPathNodeValue(std::string expression, std::string attribute, int index) {
    const XPathResult result = evaluate(expression, m_xPathContext);
    if (!hasNodes(result)) {
        throw Exception("Node \"%s\" is empty", expression + "@" + attribute, GENERIC_ERROR);
    }
    xmlNode* node = nodeAt(result, index);
    const XmlText text(attribute.empty() ? xmlNodeGetContent(node)
                                         : xmlGetProp(node, toXml(attribute)));
    std::string value;
    xmlCharToString(text.get(), value);
    return value;
}

std::string LibXml::xPathNodeValueIfExist(std::string expression, std::string attribute, int index,
                                          std::string fallback) {
    try {
        return xPathNodeValue(expression, attribute, index);
    } catch (const Exception&) {
        return fallback;
    }
}

std::string LibXml::getAttribute(xmlNode* node, const char* name) {
    const XmlText text(xmlGetProp(node, toXml(name)));
    if (text == nullptr) {
        throw Exception("Failed to get attribute: %s", name, GENERIC_ERROR);
    }
    std::string value;
    xmlCharToString(text.get(), value);
    return value;
}

std::string LibXml::getAttribute(xmlNode* node, const char* name, std::string fallback) {
    try {
        return getAttribute(node, name);
    } catch (const Exception&) {
        return fallback;
    }
}

std::string LibXml::getContent(xmlNode* node) {
    const XmlText text(xmlNodeGetContent(node));
    if (text == nullptr) {
        throw Exception("Failed to get content of node", GENERIC_ERROR);
    }
    std::string value;
    xmlCharToString(text.get(), value);
    return value;
}

void LibXml::xmlCharToString(unsigned char* text, std::string& out) {
    out = text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

void LibXml::create(std::string) {
    ZOLT_TRACE();
    release();
    m_doc = xmlNewDoc(toXml("1.0"));
    if (m_doc == nullptr) {
        throw Exception("Failed to create new XML document tree", GENERIC_ERROR);
    }
}

xmlNode* LibXml::addRootNode(std::string name) {
    ZOLT_TRACE();
    XmlNode node(m_doc == nullptr ? nullptr : xmlNewNode(nullptr, toXml(name)));
    if (node == nullptr) {
        throw Exception("Failed to add root node in XML document tree", GENERIC_ERROR);
    }
    const XmlNode former(xmlDocSetRootElement(m_doc, node.get()));
    return node.release();
}

xmlNode* LibXml::addChildNode(xmlNode* parent, std::string name, std::string content) {
    ZOLT_TRACE();
    xmlNode* node = xmlNewChild(parent, nullptr, toXml(name), toXml(content));
    if (node == nullptr) {
        throw Exception("Failed to add child node in XML document tree", GENERIC_ERROR);
    }
    return node;
}

xmlNode* LibXml::addChildCDATANode(xmlNode* parent, std::string name, std::string content) {
    ZOLT_TRACE();
    XmlNode node(xmlNewNode(nullptr, toXml(name)));
    if (node == nullptr) {
        throw Exception("Failed to create parent node for CDATA in XML document tree",
                        GENERIC_ERROR);
    }
    xmlNode* block = xmlNewCDataBlock(m_doc, toXml(content), static_cast<int>(content.size()));
    if (block == nullptr) {
        throw Exception("Failed to create CDATA child node in XML document tree", GENERIC_ERROR);
    }
    xmlAddChild(node.get(), block);
    xmlAddChild(parent, node.get());
    return node.release();
}

void LibXml::setAttribute(xmlNode* node, const char* name, const char* value) {
    ZOLT_TRACE();
    if (node == nullptr) {
        return;  // libxml2 would make an attribute that nobody owns
    }
    if (xmlHasProp(node, toXml(name)) != nullptr) {
        xmlSetProp(node, toXml(name), toXml(value));
    } else {
        xmlNewProp(node, toXml(name), toXml(value));
    }
}

// A failure deliberately leaves the buffer allocated: an output buffer that was not closed may
// still write into it.
void LibXml::toString(std::string& out) {
    ZOLT_TRACE();
    xmlBufferPtr buffer = xmlBufferCreate();
    if (buffer == nullptr) {
        throw Exception("Failed to create buffer with xmlBufferCreate().", GENERIC_ERROR);
    }
    xmlOutputBufferPtr output = xmlOutputBufferCreateBuffer(buffer, nullptr);
    if (output == nullptr) {
        throw Exception("Failed to create output buffer with xmlOutputBufferCreateBuffer().",
                        GENERIC_ERROR);
    }
    if (xmlSaveFormatFileTo(output, m_doc, "utf-8", 1) == -1) {
        throw Exception("Failed to save XML to buffer with xmlSaveFormatFileTo().", GENERIC_ERROR);
    }
    std::string(reinterpret_cast<const char*>(xmlBufferContent(buffer)),
                static_cast<size_t>(xmlBufferLength(buffer)))
        .swap(out);
    xmlBufferFree(buffer);
}

}  // namespace ZOLT
