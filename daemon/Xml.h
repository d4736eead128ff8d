// SPDX-License-Identifier: Apache-2.0
// Reads XML as far as the daemon's documents need it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <libxml/tree.h>

namespace standin {

// One parsed document. Never accesses the network and prints nothing.
class XmlDocument {
  public:
    explicit XmlDocument(const std::string& text);
    ~XmlDocument();
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    // Null if the text is not well formed or declares entities, which can expand without bounds.
    // Belongs to the document.
    xmlNode* root() const;

  private:
    xmlDoc* m_document;  // freed in the destructor; may be null
};

// The child elements of NODE in document order.
std::vector<xmlNode*> elementsOf(const xmlNode* node);
std::string elementName(const xmlNode* node);
std::optional<std::string> attribute(xmlNode* node, const char* name);
std::string content(xmlNode* node);

// The whole of a file. Throws UsageError when it cannot be read.
std::string readText(const std::string& path);

}  // namespace standin
