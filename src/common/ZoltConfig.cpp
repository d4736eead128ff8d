// SPDX-License-Identifier: Apache-2.0
// Reads the configuration file and answers for its keys.
#include "common/ZoltConfig.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include <libxml/tree.h>

#include "common/LibXml.h"
#include "common/Logger.h"

std::map<std::string, std::string> ZoltConfig::m_storage;
std::string ZoltConfig::m_configFilePath;

namespace {

struct XmlFree {
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlFree>;

// Thrown here, because the text that the C++ library has for a null differs between its versions.
std::string toString(const XmlText& text) {
    if (text == nullptr) {
        throw std::logic_error("basic_string::_S_construct null not valid");
    }
    return reinterpret_cast<const char*>(text.get());
}

}  // namespace

void ZoltConfig::initialize(std::string path) {
    ZOLT_TRACE();
    if (!m_storage.empty()) {
        ZOLT_WARN("Zolt Config is already initialized!");
        return;
    }
    m_configFilePath = std::move(path);
}

void ZoltConfig::load() {
    ZOLT_TRACE();
    loadConfiguration();
}

void ZoltConfig::loadConfiguration() {
    ZOLT_TRACE();
    ZOLT::LibXml xml;
    xml.parseFile(m_configFilePath);
    for (xmlNode* node = xml.getRootElement()->children; node != nullptr; node = node->next) {
        if (node->type != XML_ELEMENT_NODE) {
            continue;
        }
        const XmlText name(xmlGetProp(node, reinterpret_cast<const xmlChar*>("name")));
        const XmlText content(xmlNodeGetContent(node));
        m_storage[toString(name)] = toString(content);
    }
}

std::string ZoltConfig::get(std::string key) {
    return m_storage.at(key);
}

int ZoltConfig::getInt(std::string key) {
    return std::stoi(m_storage.at(key));
}

unsigned long long ZoltConfig::getUll(std::string key) {
    return std::stoull(m_storage.at(key));
}

bool ZoltConfig::is(std::string key, std::string expected) {
    return m_storage.at(key) == expected;
}

void ZoltConfig::deinitialize() {
    ZOLT_TRACE();
    m_configFilePath.clear();
    m_storage.clear();
}
