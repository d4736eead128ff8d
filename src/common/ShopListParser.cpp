// SPDX-License-Identifier: Apache-2.0
// Reads, links and writes the shop hierarchy.
#include "common/ShopListParser.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <stack>

#include "common/Exception.h"
#include "common/LibXml.h"
#include "common/Logger.h"
#include "common/Utils.h"

namespace ZOLT {

namespace {

constexpr char LISTS_PATH[] = "/rsp/list";
constexpr char TOP_KEY[] = "Root";
constexpr size_t CODE_STEP = 2;  // how many characters each level adds to a code

xmlNode* nextElement(xmlNode* node) {
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->next;
    }
    return node;
}

void readAttributes(LibXml& xml, xmlNode* node, ShopList& list) {
    list.name = xml.getAttribute(node, "name");
    list.level = std::stoi(xml.getAttribute(node, "level"));
    list.isFix = xml.getAttribute(node, "is_fix");
    list.isSub = xml.getAttribute(node, "is_sub");
}

std::unique_ptr<Shop> readShop(LibXml& xml, xmlNode* node, int level) {
    auto shop = std::make_unique<Shop>();
    shop->name = xml.getAttribute(node, "name");
    shop->code = xml.getAttribute(node, "code");
    shop->level = level;
    return shop;
}

// The length wraps for a code of one character, which makes its prefix the whole code.
bool isChildCode(const std::string& code, const std::string& parent) {
    return code.compare(0, code.size() - CODE_STEP, parent) == 0;
}

}  // namespace

void ShopList::clean() {
    while (!shops.empty()) {
        delete shops.back();
        shops.pop_back();
    }
}

ShopListParser::~ShopListParser() {
    if (!m_shopLists.empty() || !m_shops.empty()) {
        clean();
    }
}

void ShopListParser::parseShopListXML(std::string document) {
    ZOLT_TRACE();
    LibXml xml(document);
    int index = 0;
    for (xmlNode* node = nextElement(xml.xPath(LISTS_PATH)); node != nullptr;
         node = nextElement(node->next)) {
        try {
            appendList(xml, node, index);
            ++m_amountOfLevels;
            ++index;
        } catch (const Exception&) {
            ZOLT_WARN("Could not parse XML node. Continuing...");
        }
    }
    linkShops();
}

// The shops of a list that is left out halfway are retired: m_shops has them already.
void ShopListParser::appendList(LibXml& xml, xmlNode* node, int index) {
    ShopList list;
    auto place = m_shops.end();  // documents are mostly sorted: a hint for the next
    try {
        readAttributes(xml, node, list);
        for (xmlNode* child = nextElement(node->children); child != nullptr;
             child = nextElement(child->next)) {
            std::unique_ptr<Shop> shop = readShop(xml, child, index);
            list.shops.push_back(shop.get());
            place = m_shops.insert(place, shop.release());
        }
        m_shopLists.push_back(list);
    } catch (...) {
        retire(list.shops);
        throw;
    }
}

// Visits all entries in the order of their codes, in which a parent comes directly before its
// children.
void ShopListParser::linkShops() {
    if (m_shops.empty()) {
        return;
    }
    auto current = m_shops.begin();
    auto next = std::next(current);
    while (next != m_shops.end()) {
        const size_t currentLength = (*current)->code.size();
        const size_t nextLength = (*next)->code.size();
        if (isChildCode((*next)->code, (*current)->code)) {
            linkChild(*current, *next);
            ++next;
        } else if (nextLength > currentLength + CODE_STEP) {
            // Goes down to the last child. If a level of the code is missing that is current
            // itself, and the loop never ends. The fence makes such a loop defined, so the compiler
            // must not remove it.
            std::atomic_signal_fence(std::memory_order_seq_cst);
            current = std::prev(next);
        } else if (nextLength > currentLength) {
            ++next;  // its parent is missing, so it is not linked
        } else {
            linkBeside(*current, *next);
            current = next++;
        }
    }
}

void ShopListParser::linkChild(Shop* parent, Shop* child) {
    parent->hasSubs = true;
    child->parent = parent;
    child->hasSubs = false;
    if (parent->parent == nullptr) {
        m_subs[TOP_KEY].insert(parent);
    }
    Shops& subs = m_subs[parent->name];
    subs.insert(subs.end(), child);
}

// SHOP stands on the level of NEIGHBOUR, which sorts before it, or on a higher one. Deliberately
// never puts the entry that sorts first under the top key; only a child of its own does. The
// screens rely on that.
void ShopListParser::linkBeside(const Shop* neighbour, Shop* shop) {
    Shop* parent = neighbour->parent;
    size_t steps = (neighbour->code.size() - shop->code.size()) / CODE_STEP;
    for (; steps > 0 && parent != nullptr; --steps) {
        parent = parent->parent;
    }
    shop->parent = parent;
    m_subs[parent == nullptr ? TOP_KEY : parent->name].insert(shop);
}

ShopListParser::Shops& ShopListParser::getSubs(std::string name) {
    ZOLT_TRACE();
    return m_subs[name.empty() ? TOP_KEY : name];
}

void ShopListParser::keep(const std::deque<Shop*>& shops) {
    m_kept.insert(shops.begin(), shops.end());
}

void ShopListParser::clean() {
    ZOLT_TRACE();
    while (!m_shopLists.empty()) {
        retire(m_shopLists.back().shops);
        m_shopLists.pop_back();
    }
    m_shops.clear();
    deleteUnreachable();
}

void ShopListParser::retire(std::vector<Shop*>& shops) {
    for (; !shops.empty(); shops.pop_back()) {
        m_retired.emplace_back(shops.back());
    }
}

void ShopListParser::deleteUnreachable() {
    std::unordered_set<const Shop*> reachable;
    const auto addWithParents = [&reachable](const Shop* shop) {
        for (; shop != nullptr && reachable.insert(shop).second; shop = shop->parent) {
        }
    };
    for (const auto& [name, shops] : m_subs) {
        std::for_each(shops.begin(), shops.end(), addWithParents);
    }
    std::for_each(m_kept.begin(), m_kept.end(), addWithParents);
    m_kept.clear();
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(),
                                   [&reachable](const std::unique_ptr<Shop>& shop) {
                                       return reachable.count(shop.get()) == 0;
                                   }),
                    m_retired.end());
}

std::string ShopListParser::getRegistrationXml(Shop* shop) {
    ZOLT_TRACE();
    std::stack<std::string> pieces;  // from the document's end to its start
    pieces.push("</rsp>");
    for (const Shop* entry = shop; entry != nullptr; entry = entry->parent) {
        const ShopList& list = m_shopLists.at(static_cast<size_t>(entry->level));
        // By code, not by pointer: what is registered has no levels below it.
        const std::string isSub = entry->code == shop->code ? "N" : list.isSub;
        pieces.push("</list>");
        pieces.push(Utils::formatString("<sub_list name=\"%s\" code=\"%s\" />",
                                        Utils::htmlEncode(entry->name).c_str(),
                                        entry->code.c_str()));
        pieces.push(Utils::formatString(
            "<list level=\"%d\" name=\"%s\" is_fix=\"%s\" is_sub=\"%s\">", list.level,
            Utils::htmlEncode(list.name).c_str(), list.isFix.c_str(), isSub.c_str()));
    }
    pieces.push("<?xml version=\"1.0\" encoding=\"UTF-8\"?><rsp stat=\"ok\">");

    std::string document;
    for (; !pieces.empty(); pieces.pop()) {
        document += pieces.top();
    }
    return document;
}

std::vector<ShopList> ShopListParser::parseRegisteredShopXML(std::string document) {
    ZOLT_TRACE();
    LibXml xml(document);
    std::vector<ShopList> lists;
    try {
        for (xmlNode* node = nextElement(xml.xPath(LISTS_PATH)); node != nullptr;
             node = nextElement(node->next)) {
            ShopList& list = lists.emplace_back();
            readAttributes(xml, node, list);
            for (xmlNode* child = nextElement(node->children); child != nullptr;
                 child = nextElement(child->next)) {
                list.shops.push_back(nullptr);
                list.shops.back() = readShop(xml, child, -1).release();
            }
        }
    } catch (...) {
        std::for_each(lists.begin(), lists.end(), [](ShopList& list) { list.clean(); });
        throw;
    }
    return lists;
}

}  // namespace ZOLT
