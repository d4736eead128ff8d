// SPDX-License-Identifier: Apache-2.0
// Reads XML as far as the daemon's documents need it.
#include "daemon/Xml.h"

#include <glib.h>
#include <libxml/parser.h>

#include "daemon/Options.h"

namespace standin {
namespace {

const xmlChar* toXml(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

std::string takeText(xmlChar* text) {
    std::string result = text != nullptr ? reinterpret_cast<const char*>(text) : "";
    xmlFree(text);
    return result;
}

}  // namespace

XmlDocument::XmlDocument(const std::string& text)
    : m_document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                               XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING)) {}

XmlDocument::~XmlDocument() {
    xmlFreeDoc(m_document);
}

xmlNode* XmlDocument::root() const {
    if (m_document == nullptr || m_document->intSubset != nullptr) {
        return nullptr;
    }
    return xmlDocGetRootElement(m_document);
}

std::vector<xmlNode*> elementsOf(const xmlNode* node) {
    std::vector<xmlNode*> elements;
    for (xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) {
            elements.push_back(child);
        }
    }
    return elements;
}

std::string elementName(const xmlNode* node) {
    return reinterpret_cast<const char*>(node->name);
}

std::optional<std::string> attribute(xmlNode* node, const char* name) {
    xmlChar* value = xmlGetProp(node, toXml(name));
    if (value == nullptr) {
        return std::nullopt;
    }
    return takeText(value);
}

std::string content(xmlNode* node) {
    return takeText(xmlNodeGetContent(node));
}

std::string readText(const std::string& path) {
    gchar* text = nullptr;
    gsize length = 0;
    GError* error = nullptr;
    if (g_file_get_contents(path.c_str(), &text, &length, &error) == FALSE) {
        const std::string reason = error->message;
        g_error_free(error);
        throw UsageError(reason);
    }
    std::string result(text, length);
    g_free(text);
    return result;
}

}  // namespace standin
