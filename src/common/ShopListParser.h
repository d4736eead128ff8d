// SPDX-License-Identifier: Apache-2.0
// The shop hierarchy: its entries, its levels, and the parser that builds and writes them.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include <libxml/tree.h>

namespace ZOLT {

class LibXml;

// One entry of the hierarchy.
struct Shop {
    // Orders by code, byte by byte, the shorter first: a parent sorts directly before its children,
    // and entries of one code are the same entry to a set.
    struct ShopComp {
        bool operator()(const Shop* left, const Shop* right) const {
            return left->code.compare(right->code) < 0;
        }
    };

    std::string name;        // what the user sees, and the key for the entry's children
    std::string code;        // the parent's code and two more characters
    Shop* parent = nullptr;  // not owned; null for a top entry and for one without a known parent
    bool hasSubs = false;
    int level = 0;  // position of the entry's list among the parser's lists, from 0
};

// One level of the hierarchy. Copying copies the pointers, and the destructor frees nothing: the
// holder of the last copy calls clean.
struct ShopList {
    // Deletes the shops.
    void clean();

    std::string name;
    int level = -1;            // the document's own number for it
    std::string isFix;         // kept as text
    std::string isSub;         // kept as text
    std::vector<Shop*> shops;  // in document order, duplicates included
};

// Turns the daemon's shop documents into levels and entries, finds each entry's parent by its code,
// and writes a chosen entry back out. Used on the main thread.
//
// Documents have the form
//   <rsp><list level="N" name="T" is_fix="T" is_sub="T"><sub_list name="T" code="T"/>...</list>...
// where only the path "/rsp/list" is looked up by name. Throws ZOLT::Exception for a document that
// cannot be parsed, and std::invalid_argument or std::out_of_range for a level that is not a number
// or too large.
class ShopListParser {
  public:
    using Shops = std::set<Shop*, Shop::ShopComp>;

    ShopListParser() = default;
    ~ShopListParser();
    ShopListParser(const ShopListParser&) = delete;
    ShopListParser& operator=(const ShopListParser&) = delete;

    // Adds a shop list document to the model. A list that lacks an attribute, or has an entry that
    // does, is left out with a warning. What was built stays when an exception leaves, unlinked.
    // Deliberately never returns if a code is more than two characters longer than the one that
    // sorts before it: the daemon is trusted to send every level of a code.
    void parseShopListXML(std::string document);

    std::vector<ShopList>& getShopList() { return m_shopLists; }
    Shops& getShops() { return m_shops; }

    // The children of the entries named NAME, or the top entries for an empty name or "Root".
    // Always a valid set, empty if there are none.
    Shops& getSubs(std::string name);

    // How many lists were ever parsed; clean does not lower it.
    unsigned int getAmountOfLevels() { return m_amountOfLevels; }

    // Names shops that the next clean must not delete: those to which other objects still point and
    // which may be in no set of getSubs. Null entries are allowed.
    void keep(const std::deque<Shop*>& shops);

    // Forgets lists and shops. Deletes every Shop but those in the sets that getSubs gives, those
    // named to keep, and the parents of both.
    void clean();

    // The document that registers SHOP: one level with one entry for each step from the top to it.
    // A null SHOP gives a document without a level. Texts between markup are cut at 255 bytes.
    // Throws std::out_of_range for a shop whose level is not among the parser's lists.
    std::string getRegistrationXml(Shop* shop);

    // Reads a document of that form; nothing is linked. The shops belong to the caller, who frees
    // them with ShopList::clean; their level is -1.
    std::vector<ShopList> parseRegisteredShopXML(std::string document);

  private:
    void appendList(LibXml& xml, xmlNode* node, int index);
    void linkShops();
    void linkChild(Shop* parent, Shop* child);
    void linkBeside(const Shop* neighbour, Shop* shop);
    void retire(std::vector<Shop*>& shops);
    void deleteUnreachable();

    std::vector<ShopList> m_shopLists;  // owns the shops
    Shops m_shops;                      // every entry, unique by code
    std::map<std::string, Shops> m_subs;
    unsigned int m_amountOfLevels = 0;

    // Shops that no list owns any more but that can still be reached. The sets of m_subs outlive
    // clean and are ordered by the codes of their shops; the rows of every popup, also of one that
    // a screen deep in the history still shows, come from these sets. A list that was left out has
    // its shops here too until the next clean, because m_shops has them.
    std::vector<std::unique_ptr<Shop>> m_retired;
    std::unordered_set<const Shop*> m_kept;  // what keep named for the next clean
};

}  // namespace ZOLT
