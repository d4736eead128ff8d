// SPDX-License-Identifier: Apache-2.0
// Reads a scenario from a key file.
#include "daemon/ScenarioFile.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include <gio/gio.h>

#include "daemon/Options.h"
#include "daemon/SetFolder.h"
#include "daemon/Xml.h"

namespace standin {
namespace {

constexpr int LONGEST_DELAY_MS = 24 * 60 * 60 * 1000;
constexpr const char* DEFAULT_SHOPS = "retail";

std::string strip(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t");
    const auto end = text.find_last_not_of(" \t");
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

int parseInt(const std::string& text) {
    gint64 value = 0;
    if (g_ascii_string_to_signed(text.c_str(), 10, G_MININT, G_MAXINT, &value, nullptr) == FALSE) {
        throw UsageError("\"" + text + "\" is not a number");
    }
    return static_cast<int>(value);
}

int parseDelay(const std::string& text) {
    const int delay = parseInt(text);
    if (delay < 0 || delay > LONGEST_DELAY_MS) {
        throw UsageError("\"" + text + "\" is not a time in milliseconds");
    }
    return delay;
}

int parseCount(const std::string& text) {
    const int count = parseInt(text);
    if (count < 0) {
        throw UsageError("\"" + text + "\" is not a count");
    }
    return count;
}

bool parseTruth(const std::string& text) {
    if (text != "true" && text != "false") {
        throw UsageError("\"" + text + "\" is neither true nor false");
    }
    return text == "true";
}

int parseEventType(const std::string& text) {
    if (text == "EVENT_STEP_DONE") {
        return ZOLT::EVENT_STEP_DONE;
    }
    return text == "EVENT_CLOSE_GUI" ? ZOLT::EVENT_CLOSE_GUI : parseInt(text);
}

int parseReason(const std::string& text) {
    const auto* found =
        std::find_if(std::begin(ZOLT::REASONS), std::end(ZOLT::REASONS),
                     [&](const ZOLT::ReasonFacts& facts) { return text == facts.name; });
    return found != std::end(ZOLT::REASONS) ? found->reason : parseInt(text);
}

int usualEvent(int reason) {
    const ZOLT::ReasonFacts* const facts = ZOLT::findReason(reason);
    return facts != nullptr ? facts->event : ZOLT::EVENT_STEP_DONE;
}

TimedEvent parseTimedEvent(const std::string& item) {
    const size_t colon = item.find(':');
    if (colon == std::string::npos) {
        throw UsageError("\"" + item + "\" is not of the form MS:EVENT");
    }
    return {parseDelay(strip(item.substr(0, colon))), parseEvent(item.substr(colon + 1))};
}

std::vector<TimedEvent> parseEvents(const std::string& text) {
    std::vector<TimedEvent> events;
    for (size_t begin = 0; begin < text.size();) {
        const size_t end = std::min(text.find(';', begin), text.size());
        const std::string item = strip(text.substr(begin, end - begin));
        if (!item.empty()) {
            events.push_back(parseTimedEvent(item));
        }
        begin = end + 1;
    }
    return events;
}

// Throws for a text that the bus does not carry.
std::string validText(const std::string& text) {
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) == FALSE) {
        throw UsageError("the text is not UTF-8");
    }
    return text;
}

struct Folders {
    std::string scenario;   // what paths in the file are relative to
    std::string shopLists;  // the lists that are found by name
};

std::string shopListFile(const std::string& value, const Folders& folders) {
    const bool isName = value.find_first_of("/.") == std::string::npos;
    return isName ? absolutePath(value + ".xml", folders.shopLists)
                  : absolutePath(value, folders.scenario);
}

// One value of the file and its place in the scenario.
struct Assignment {
    Scenario& scenario;
    MethodScript& script;  // of METHOD
    const Method* method;  // null for a group that is not a method
    const std::string& value;
    const Folders& folders;
};

void requireEvent(const Assignment& at) {
    if (!at.method->success) {
        throw UsageError("no event follows this method");
    }
}

void setOutcome(const Assignment& at) {
    requireEvent(at);
    at.script.silent = at.value == "none";
    if (!at.script.silent) {
        at.script.outcome = parseEvent(at.value);
    }
}

void setReply(const Assignment& at, const std::string& reply) {
    if (at.method->reply == ReplyType::NOTHING) {
        throw UsageError("this method replies with no value");
    }
    if (at.method->reply == ReplyType::TRUTH) {
        parseTruth(reply);
    }
    at.script.reply = validText(reply);
}

void setError(const Assignment& at) {
    if (g_dbus_is_error_name(at.value.c_str()) == FALSE) {
        throw UsageError("\"" + at.value + "\" is not the name of a D-Bus error");
    }
    at.script.error = at.value;
}

struct Key {
    const char* name;
    void (*assign)(const Assignment& at);
};

const Key DAEMON_KEYS[] = {
    {"delay", [](const Assignment& at) { at.scenario.delayMs = parseDelay(at.value); }},
    {"shops",
     [](const Assignment& at) { at.scenario.shopListFile = shopListFile(at.value, at.folders); }},
    {"hold", [](const Assignment& at) { at.scenario.hold = parseTruth(at.value); }},
    {"found-in-lan", [](const Assignment& at) { at.scenario.foundInLan = parseTruth(at.value); }},
    {"events", [](const Assignment& at) { at.scenario.startEvents = parseEvents(at.value); }},
};

const Key PINCODE_KEYS[] = {
    {"code", [](const Assignment& at) { at.scenario.pincode = at.value; }},
    {"expires", [](const Assignment& at) { at.scenario.pincodeExpires = parseTruth(at.value); }},
};

const Key METHOD_KEYS[] = {
    {"skip", [](const Assignment& at) { at.script.skip = parseCount(at.value); }},
    {"first", [](const Assignment& at) { at.script.first = parseCount(at.value); }},
    {"delay",
     [](const Assignment& at) {
         requireEvent(at);
         at.script.delayMs = parseDelay(at.value);
     }},
    {"hold", [](const Assignment& at) { at.script.hold = parseTruth(at.value); }},
    {"outcome", setOutcome},
    {"events", [](const Assignment& at) { at.script.events = parseEvents(at.value); }},
    {"reply", [](const Assignment& at) { setReply(at, at.value); }},
    {"reply-file",
     [](const Assignment& at) {
         setReply(at, readText(absolutePath(at.value, at.folders.scenario)));
     }},
    {"reply-delay", [](const Assignment& at) { at.script.replyDelayMs = parseDelay(at.value); }},
    {"error", setError},
    {"error-message", [](const Assignment& at) { at.script.errorMessage = at.value; }},
    {"no-reply", [](const Assignment& at) { at.script.noReply = parseTruth(at.value); }},
    {"abort", [](const Assignment& at) { at.script.abort = parseTruth(at.value); }},
    {"wrong-type", [](const Assignment& at) { at.script.wrongType = parseTruth(at.value); }},
};

template <size_t Count>
void assign(const Key (&keys)[Count], const std::string& name, const Assignment& at) {
    const auto* key = std::find_if(std::begin(keys), std::end(keys),
                                   [&](const Key& entry) { return name == entry.name; });
    if (key == std::end(keys)) {
        throw UsageError("unknown key");
    }
    key->assign(at);
}

void assignValue(Scenario& scenario, const Folders& folders, const std::string& group,
                 const std::string& key, const std::string& value) {
    const Method* method = findMethod(group);
    MethodScript unused;
    const Assignment at{scenario, method != nullptr ? scenario.scripts[group] : unused, method,
                        value, folders};
    if (group == "daemon") {
        assign(DAEMON_KEYS, key, at);
    } else if (group == "pincode") {
        assign(PINCODE_KEYS, key, at);
    } else {
        assign(METHOD_KEYS, key, at);
    }
}

bool isGroup(const std::string& name) {
    return name == "daemon" || name == "pincode" || findMethod(name) != nullptr;
}

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
using Texts = std::unique_ptr<gchar*, decltype(&g_strfreev)>;

// Throws GLib's message.
void throwIfSet(GError* error, const std::string& where) {
    if (error != nullptr) {
        const std::string text = where + ": " + error->message;
        g_error_free(error);
        throw UsageError(text);
    }
}

std::string valueOf(GKeyFile* file, const char* group, const char* key) {
    GError* error = nullptr;
    gchar* text = g_key_file_get_string(file, group, key, &error);
    throwIfSet(error, "bad value");
    std::string value = text;
    g_free(text);
    return value;
}

void readGroup(GKeyFile* file, const char* group, const std::string& path, const Folders& folders,
               Scenario& scenario) {
    const Texts keys(g_key_file_get_keys(file, group, nullptr, nullptr), g_strfreev);
    if (!isGroup(group)) {
        throw UsageError(path + ": unknown group [" + group + "]");
    }
    for (gchar** key = keys.get(); *key != nullptr; ++key) {
        try {
            assignValue(scenario, folders, group, *key, valueOf(file, group, *key));
        } catch (const UsageError& error) {
            throw UsageError(path + ": [" + group + "] " + *key + ": " + error.what());
        }
    }
}

void readFile(const std::string& path, const std::string& shopListFolder, Scenario& scenario) {
    const KeyFile file(g_key_file_new(), g_key_file_unref);
    GError* error = nullptr;
    g_key_file_load_from_file(file.get(), path.c_str(), G_KEY_FILE_NONE, &error);
    throwIfSet(error, path);
    const Folders folders{absolutePath("..", path), shopListFolder};
    const Texts groups(g_key_file_get_groups(file.get(), nullptr), g_strfreev);
    for (gchar** group = groups.get(); *group != nullptr; ++group) {
        readGroup(file.get(), *group, path, folders, scenario);
    }
}

}  // namespace

Event parseEvent(const std::string& text) {
    const size_t slash = text.find('/');
    if (slash == std::string::npos) {
        const int reason = parseReason(strip(text));
        return {usualEvent(reason), reason};
    }
    return {parseEventType(strip(text.substr(0, slash))),
            parseReason(strip(text.substr(slash + 1)))};
}

Scenario loadScenario(const std::string& file, const std::string& shopListFolder) {
    Scenario scenario;
    scenario.shopListFile = shopListFile(DEFAULT_SHOPS, {"", shopListFolder});
    if (!file.empty()) {
        readFile(file, shopListFolder, scenario);
    }
    scenario.shopList = validText(readText(scenario.shopListFile));
    return scenario;
}

}  // namespace standin
