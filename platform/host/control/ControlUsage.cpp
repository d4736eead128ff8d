// SPDX-License-Identifier: Apache-2.0
// The table of control verbs.
#include "host/control/ControlUsage.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

struct Usage {
    const char* verb;
    const char* arguments;
    std::size_t least;  // number of arguments
    std::size_t most;
    const char* meaning;
};

constexpr std::array<Usage, 17> USAGES = {{
    {"ping", "", 0, 0, "prints the process ID of the program"},
    {"pause", "", 0, 0, "puts the program out of sight"},
    {"resume", "", 0, 0, "brings it back"},
    {"app-control", "", 0, 0, "launches the program once more"},
    {"low-memory", "", 0, 0, "says that memory runs short"},
    {"low-battery", "", 0, 0, "says that the battery runs short"},
    {"poweroff", "[STATE]", 0, 1, "says that the TV goes off"},
    {"wakeup", "[STATE]", 0, 1, "says that the TV has woken up"},
    {"language", "LL_CC.utf8", 1, 1, "changes the TV's language"},
    {"set", "GROUP KEY VALUE", 3, 3, "changes a value of the description"},
    {"get", "GROUP KEY", 2, 2, "prints a value of the description"},
    {"describe", "", 0, 0, "prints all values of the description"},
    {"look", "", 0, 0, "prints what is on the screen: windows, widgets, rows and texts"},
    {"draw", "", 0, 0, "draws at once what waits for the next frame"},
    {"advance", "SECONDS", 1, 1, "puts the clock of the program's timers forward"},
    {"quit", "", 0, 0, "ends the program"},
    {"help", "", 0, 0, "prints the verbs"},
}};

const Usage* find(const std::string& verb) {
    const auto* found = std::find_if(USAGES.begin(), USAGES.end(),
                                     [&](const Usage& usage) { return verb == usage.verb; });
    return found != USAGES.end() ? found : nullptr;
}

}  // namespace

std::vector<std::string> controlVerbs() {
    std::vector<std::string> verbs;
    verbs.reserve(USAGES.size());
    for (const Usage& usage : USAGES) {
        verbs.emplace_back(usage.verb);
    }
    return verbs;
}

std::string controlHelp() {
    std::string text;
    for (const Usage& usage : USAGES) {
        std::string line = std::string("  ") + usage.verb + " " + usage.arguments;
        line.resize(std::max<std::size_t>(line.size() + 1, 26), ' ');
        text += line + usage.meaning + "\n";
    }
    return text;
}

std::string usageError(const std::vector<std::string>& words) {
    const std::string verb = words.empty() ? "" : words.front();
    const Usage* usage = find(verb);
    if (usage == nullptr) {
        return "unknown verb \"" + verb + "\"; help prints the verbs";
    }
    const std::size_t count = words.size() - 1;
    if (count < usage->least || count > usage->most) {
        return verb + " takes " + (*usage->arguments != '\0' ? usage->arguments : "no argument");
    }
    return "";
}

}  // namespace host
