// SPDX-License-Identifier: Apache-2.0
// Owner of one XML document and its XPath context; turns libxml2's null results into exceptions.
#pragma once

#include <string>

#include <libxml/tree.h>
#include <libxml/xpath.h>

namespace ZOLT {

// Every failure is a ZOLT::Exception. One object is used by one thread. Nodes that an operation
// returns belong to the document: they die with the object, or when it parses or creates another
// document. Operations that take a node accept null, which counts as a node without
// attributes, content and document.
class LibXml {
  public:
    // An empty object, for a later parse or create.
    LibXml();

    // Parses the text, as parseString does.
    explicit LibXml(const std::string& text);

    // Parses the buffer, as parseMemory does.
    LibXml(const char* buffer, int size);

    ~LibXml();
    LibXml(const LibXml&) = delete;
    LibXml& operator=(const LibXml&) = delete;

    // A failed parse leaves the object empty. An empty text is refused before anything is changed.
    void parseString(const std::string& text);
    void parseFile(const std::string& path);
    void parseMemory(const char* buffer, int size);

    xmlDocPtr doc() const;

    // Null without a document.
    xmlNode* getRootElement() const;

    // The first node that EXPRESSION selects; throws if there is none. Each call that finds one
    // deliberately leaves libxml2's result object allocated: it may own the node.
    xmlNode* xPath(std::string expression);

    // How many nodes EXPRESSION selects, at least 1; throws if there is none.
    int xPathCountNodes(std::string expression);

    // How many children of the node at INDEX of the selected ones are named CHILD; 0 where there is
    // no such index. Throws if no node is selected.
    int xPathChildrenCount(std::string expression, std::string child, int index);

    // The attribute of the node at INDEX of the selected ones, or its content where ATTRIBUTE is
    // empty. Empty if there is no such attribute or index; throws if no node is selected.
    std::string xPathNodeValue(std::string expression, std::string attribute, int index);

    // The same, with FALLBACK for a failure.
    std::string xPathNodeValueIfExist(std::string expression, std::string attribute, int index,
                                      std::string fallback);

    // The attribute's value, which may be empty; throws, or gives FALLBACK, if it is missing.
    std::string getAttribute(xmlNode* node, const char* name);
    std::string getAttribute(xmlNode* node, const char* name, std::string fallback);

    std::string getContent(xmlNode* node);

    // A null TEXT gives an empty OUT.
    void xmlCharToString(unsigned char* text, std::string& out);

    // Starts a new document, which has no XPath context. The argument is not used.
    void create(std::string name);

    // Makes a node the document's root; a former root is freed with all that is under it.
    xmlNode* addRootNode(std::string name);

    // CONTENT is XML text: an entity reference in it stays one.
    xmlNode* addChildNode(xmlNode* parent, std::string name, std::string content);

    // Adds a node that holds CONTENT as a CDATA block. Without a PARENT the node belongs to the
    // caller.
    xmlNode* addChildCDATANode(xmlNode* parent, std::string name, std::string content);

    // Sets or adds the attribute.
    void setAttribute(xmlNode* node, const char* name, const char* value);

    // Serialises the document, indented, in UTF-8. OUT is untouched on failure.
    void toString(std::string& out);

  private:
    void adopt(xmlDocPtr document);
    void release();

    xmlDocPtr m_doc = nullptr;                    // freed by this class
    xmlXPathContextPtr m_xPathContext = nullptr;  // of m_doc, freed by this class
};

}  // namespace ZOLT
