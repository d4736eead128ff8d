// SPDX-License-Identifier: Apache-2.0
// The table of control verbs.
#include "host/ControlVerbs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <regex>
#include <system_error>

#include <unistd.h>

#include <Elementary.h>

#include "host/Application.h"
#include "host/ApplicationEvents.h"
#include "host/ChangeWatch.h"
#include "host/ControlWords.h"
#include "host/Description.h"
#include "host/DevicePower.h"
#include "host/HostLog.h"
#include "host/ScreenReport.h"

namespace Host {

namespace {

using Words = std::vector<std::string>;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWronglyAsked = 2;

ControlReply done() {
    return {kDone, ""};
}

// Rewrites one value and lets every notice of it out before the control program hears of it.
ControlReply change(Field field, const std::string& value) {
    const std::string failure = Description::write(field, value);
    if (!failure.empty()) {
        return {kFailed, failure};
    }
    Description::reload();
    ChangeWatch::look();
    return done();
}

ControlReply unknownValue(const Words& words) {
    return {kWronglyAsked, "a set has no value " + words[1] + " " + words[2]};
}

ControlReply setValue(Application*, const Words& words) {
    Field field = Field::Count;
    return Description::find(words[1], words[2], &field) ? change(field, words[3])
                                                         : unknownValue(words);
}

ControlReply getValue(Application*, const Words& words) {
    Field field = Field::Count;
    return Description::find(words[1], words[2], &field)
               ? ControlReply{kDone, Description::text(field)}
               : unknownValue(words);
}

ControlReply language(Application*, const Words& words) {
    static const std::regex form("[a-z]{2,3}_[A-Z]{2}(\\.[A-Za-z0-9-]+)?(@[a-z]+)?");
    if (!std::regex_match(words[1], form)) {
        return {kWronglyAsked, words[1] + " is no language such as ar_EG.utf8"};
    }
    // The person at the set changes one thing: a menu language that was described apart follows.
    if (Description::isGiven(Field::MenuLanguage)) {
        const std::string failure = Description::write(Field::MenuLanguage, words[1]);
        if (!failure.empty()) {
            return {kFailed, failure};
        }
    }
    return change(Field::Language, words[1]);
}

// The optional last word of a power notice.
bool stateOf(const Words& words, int* state) {
    if (words.size() < 2) {
        return true;
    }
    const std::string& text = words[1];
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, *state);
    return result.ec == std::errc() && result.ptr == end;
}

ControlReply announce(const Words& words, void (*notice)(int)) {
    int state = 1;
    if (!stateOf(words, &state)) {
        return {kWronglyAsked, words[1] + " is no number"};
    }
    notice(state);
    return done();
}

ControlReply poweroff(Application*, const Words& words) {
    return announce(words, announcePoweroff);
}

ControlReply wakeup(Application*, const Words& words) {
    return announce(words, announceWakeup);
}

ControlReply pause(Application* application, const Words&) {
    application->goToBackground();
    return done();
}

ControlReply resume(Application* application, const Words&) {
    application->comeToForeground();
    return done();
}

ControlReply appControl(Application* application, const Words&) {
    application->launchAgain();
    return done();
}

ControlReply lowMemory(Application*, const Words&) {
    deliverEvent(APP_EVENT_LOW_MEMORY);
    return done();
}

ControlReply lowBattery(Application*, const Words&) {
    deliverEvent(APP_EVENT_LOW_BATTERY);
    return done();
}

ControlReply quit(Application*, const Words&) {
    elm_exit();
    return done();
}

ControlReply ping(Application*, const Words&) {
    return {kDone, "process " + std::to_string(getpid())};
}

ControlReply look(Application*, const Words&) {
    return {kDone, screenReport()};
}

ControlReply help(Application*, const Words&) {
    return {kDone, controlHelp()};
}

struct Verb {
    const char* name;
    const char* arguments;
    std::size_t least;  // number of arguments
    std::size_t most;
    ControlReply (*act)(Application*, const Words&);
    const char* meaning;
};

constexpr std::array<Verb, 14> kVerbs = {{
    {"ping", "", 0, 0, ping, "tells the process of the set"},
    {"pause", "", 0, 0, pause, "puts the program out of sight"},
    {"resume", "", 0, 0, resume, "brings it back"},
    {"app-control", "", 0, 0, appControl, "launches the program once more"},
    {"low-memory", "", 0, 0, lowMemory, "says that memory runs short"},
    {"low-battery", "", 0, 0, lowBattery, "says that the battery runs short"},
    {"poweroff", "[STATE]", 0, 1, poweroff, "says that the set goes off"},
    {"wakeup", "[STATE]", 0, 1, wakeup, "says that the set has woken up"},
    {"language", "LL_CC.utf8", 1, 1, language, "changes the set's language"},
    {"set", "GROUP KEY VALUE", 3, 3, setValue, "changes a value of the set's description"},
    {"get", "GROUP KEY", 2, 2, getValue, "tells a value of the set's description"},
    {"look", "", 0, 0, look, "tells what is on the screen: windows, widgets, rows and texts"},
    {"quit", "", 0, 0, quit, "ends the program"},
    {"help", "", 0, 0, help, "tells the verbs"},
}};

}  // namespace

std::string controlHelp() {
    std::string text;
    for (const Verb& verb : kVerbs) {
        std::string line = std::string("  ") + verb.name + " " + verb.arguments;
        line.resize(std::max<std::size_t>(line.size() + 1, 26), ' ');
        text += line + verb.meaning + "\n";
    }
    return text;
}

ControlReply obey(Application* application, const std::vector<std::string>& words) {
    const std::string name = words.empty() ? "" : words.front();
    for (const Verb& verb : kVerbs) {
        if (name != verb.name) {
            continue;
        }
        const std::size_t count = words.size() - 1;
        if (count < verb.least || count > verb.most) {
            return {kWronglyAsked,
                    name + " takes " + (*verb.arguments != '\0' ? verb.arguments : "no argument")};
        }
        logInfo("Control: " + joinWords(words));
        return verb.act(application, words);
    }
    return {kWronglyAsked, "there is no verb " + name + "; help tells them"};
}

}  // namespace Host
