// SPDX-License-Identifier: Apache-2.0
// Checks a registration document against the shop list that was served.
#include "daemon/ShopListDocument.h"

#include <algorithm>
#include <stdexcept>

#include "daemon/Xml.h"

namespace standin {
namespace {

constexpr size_t CODE_STEP = 2;

struct Fault : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Entry {
    std::string name;
    std::string code;
    bool operator==(const Entry& other) const { return name == other.name && code == other.code; }
};

struct Level {
    int level = 0;
    std::string name;
    std::string isFix;
    std::string isSub;
    std::vector<Entry> entries;
};

std::string need(xmlNode* node, const char* name) {
    const std::optional<std::string> value = attribute(node, name);
    if (!value) {
        throw Fault("<" + elementName(node) + "> without \"" + name + "\"");
    }
    return *value;
}

int number(const std::string& text) {
    try {
        return std::stoi(text);
    } catch (const std::logic_error&) {
        throw Fault("level \"" + text + "\" is not a number");
    }
}

void expectName(const xmlNode* node, const char* name) {
    if (elementName(node) != name) {
        throw Fault("<" + elementName(node) + "> in the place of <" + name + ">");
    }
}

Level readLevel(xmlNode* node) {
    expectName(node, "list");
    Level level{number(need(node, "level")),
                need(node, "name"),
                need(node, "is_fix"),
                need(node, "is_sub"),
                {}};
    for (xmlNode* entry : elementsOf(node)) {
        expectName(entry, "sub_list");
        level.entries.push_back({need(entry, "name"), need(entry, "code")});
    }
    return level;
}

std::vector<Level> readLevels(const std::string& text) {
    const XmlDocument document(text);
    if (document.root() == nullptr) {
        throw Fault("it is not well-formed XML");
    }
    expectName(document.root(), "rsp");
    std::vector<Level> levels;
    for (xmlNode* node : elementsOf(document.root())) {
        levels.push_back(readLevel(node));
    }
    return levels;
}

void compare(const std::string& what, const std::string& given, const std::string& expected) {
    if (given != expected) {
        throw Fault(what + " is \"" + given + "\" and must be \"" + expected + "\"");
    }
}

void checkLevel(const Level& given, const Level& served, bool last) {
    const std::string where = "level " + std::to_string(served.level) + ": ";
    compare(where + "level", std::to_string(given.level), std::to_string(served.level));
    compare(where + "name", given.name, served.name);
    compare(where + "is_fix", given.isFix, served.isFix);
    compare(where + "is_sub", given.isSub, last ? "N" : served.isSub);
    if (given.entries.size() != 1) {
        throw Fault(where + std::to_string(given.entries.size()) + " entries in the place of one");
    }
    const Entry& entry = given.entries.front();
    if (std::find(served.entries.begin(), served.entries.end(), entry) == served.entries.end()) {
        throw Fault(where + "there is no \"" + entry.name + "\" with code \"" + entry.code + "\"");
    }
}

bool isChild(const std::string& code, const std::string& parent) {
    return code.size() == parent.size() + CODE_STEP && code.compare(0, parent.size(), parent) == 0;
}

void checkCode(const std::string& code, const std::string& parent) {
    if (!isChild(code, parent)) {
        throw Fault("code \"" + code + "\" is not \"" + parent + "\" and two characters");
    }
}

// A registration ends at a shop; an entry with children is a group of shops.
void checkEnd(const Entry& last, const std::vector<Level>& served) {
    for (const Level& level : served) {
        for (const Entry& entry : level.entries) {
            if (isChild(entry.code, last.code)) {
                throw Fault("it ends at \"" + last.name + "\", which has children");
            }
        }
    }
}

void check(const std::vector<Level>& given, const std::vector<Level>& served) {
    if (given.empty()) {
        throw Fault("it has no level");
    }
    if (given.size() > served.size()) {
        throw Fault("it has more levels than the shop list");
    }
    std::string parent;
    for (size_t index = 0; index < given.size(); ++index) {
        checkLevel(given[index], served[index], index + 1 == given.size());
        const std::string& code = given[index].entries.front().code;
        if (index > 0) {
            checkCode(code, parent);  // at the top a code may have any length
        }
        parent = code;
    }
    checkEnd(given.back().entries.front(), served);
}

std::vector<Level> readServed(const std::string& served) {
    try {
        return readLevels(served);
    } catch (const Fault& fault) {
        throw Fault(std::string("the shop list served cannot be read: ") + fault.what());
    }
}

}  // namespace

std::optional<std::string> registrationFault(const std::string& document,
                                             const std::string& served) {
    try {
        check(readLevels(document), readServed(served));
    } catch (const Fault& fault) {
        return fault.what();
    }
    return std::nullopt;
}

}  // namespace standin
