// SPDX-License-Identifier: Apache-2.0
// The action of each control verb.
#include "host/control/ControlVerbs.h"

#include <regex>
#include <stdexcept>

#include <unistd.h>

#include <Elementary.h>

#include "host/base/HostLog.h"
#include "host/control/ControlWords.h"
#include "host/control/DescriptionVerbs.h"
#include "host/control/ScreenReport.h"
#include "host/description/Description.h"
#include "host/notices/ApplicationEvents.h"
#include "host/notices/ChangeWatch.h"
#include "host/notices/PowerNotices.h"
#include "host/toolkit/ToolkitTime.h"

namespace host {

namespace {

using Words = std::vector<std::string>;

ControlReply done() {
    return {CONTROL_DONE, ""};
}

// All subscribers have been notified when it returns.
void announceChange() {
    Description::reload();
    ChangeWatch::look();
}

ControlReply set(ControlledApplication*, const Words& words) {
    ControlReply reply = setValue(words, Description::write);
    if (reply.status == CONTROL_DONE) {
        announceChange();
    }
    return reply;
}

ControlReply get(ControlledApplication*, const Words& words) {
    return getValue(Description::values(), words);
}

ControlReply describeAll(ControlledApplication*, const Words&) {
    return describe(Description::values());
}

ControlReply language(ControlledApplication*, const Words& words) {
    static const std::regex form("[a-z]{2,3}_[A-Z]{2}(\\.[A-Za-z0-9-]+)?(@[a-z]+)?");
    if (!std::regex_match(words[1], form)) {
        return {CONTROL_USAGE_ERROR, words[1] + " is not a language such as ar_EG.utf8"};
    }
    try {
        // A person changes the language of the whole TV: a menu language of its own in the
        // description follows.
        if (Description::isGiven(Field::MENU_LANGUAGE)) {
            Description::write(Field::MENU_LANGUAGE, words[1]);
        }
        Description::write(Field::LANGUAGE, words[1]);
    } catch (const std::runtime_error& failure) {
        return {CONTROL_FAILED, failure.what()};
    }
    announceChange();
    return done();
}

template <typename Subscribers>
ControlReply announce(const Words& words, Subscribers& subscribers) {
    const auto state = words.size() > 1 ? parseNumber(words[1]) : 1;
    if (!state) {
        return {CONTROL_USAGE_ERROR, words[1] + " is not a number"};
    }
    subscribers.notify(*state);
    return done();
}

ControlReply poweroff(ControlledApplication*, const Words& words) {
    return announce(words, poweroffSubscribers());
}

ControlReply wakeup(ControlledApplication*, const Words& words) {
    return announce(words, wakeupSubscribers());
}

ControlReply pause(ControlledApplication* application, const Words&) {
    application->goToBackground();
    return done();
}

ControlReply resume(ControlledApplication* application, const Words&) {
    application->comeToForeground();
    return done();
}

ControlReply appControl(ControlledApplication* application, const Words&) {
    application->launchAgain();
    return done();
}

ControlReply lowMemory(ControlledApplication*, const Words&) {
    deliverEvent(APP_EVENT_LOW_MEMORY);
    return done();
}

ControlReply lowBattery(ControlledApplication*, const Words&) {
    deliverEvent(APP_EVENT_LOW_BATTERY);
    return done();
}

ControlReply quit(ControlledApplication*, const Words&) {
    elm_exit();
    return done();
}

ControlReply ping(ControlledApplication*, const Words&) {
    return {CONTROL_DONE, "process " + std::to_string(getpid())};
}

ControlReply look(ControlledApplication*, const Words&) {
    return {CONTROL_DONE, screenReport()};
}

ControlReply draw(ControlledApplication*, const Words&) {
    drawWindows();
    return done();
}

ControlReply advance(ControlledApplication*, const Words& words) {
    const auto seconds = parseNumber(words[1]);
    if (!seconds || *seconds < 0) {
        return {CONTROL_USAGE_ERROR, words[1] + " is not a number of seconds"};
    }
    putClockForward(*seconds);
    return done();
}

ControlReply help(ControlledApplication*, const Words&) {
    return {CONTROL_DONE, controlHelp()};
}

struct Action {
    const char* verb;
    ControlReply (*act)(ControlledApplication*, const Words&);
};

constexpr Action ACTIONS[] = {
    {"ping", ping},
    {"pause", pause},
    {"resume", resume},
    {"app-control", appControl},
    {"low-memory", lowMemory},
    {"low-battery", lowBattery},
    {"poweroff", poweroff},
    {"wakeup", wakeup},
    {"language", language},
    {"set", set},
    {"get", get},
    {"describe", describeAll},
    {"look", look},
    {"draw", draw},
    {"advance", advance},
    {"quit", quit},
    {"help", help},
};

}  // namespace

ControlReply runVerb(ControlledApplication* application, const std::vector<std::string>& words) {
    const std::string error = usageError(words);
    if (!error.empty()) {
        return {CONTROL_USAGE_ERROR, error};
    }
    logInfo("Control: " + joinWords(words));
    for (const Action& action : ACTIONS) {
        if (words.front() == action.verb) {
            return action.act(application, words);
        }
    }
    return {CONTROL_FAILED, words.front() + " is not implemented"};
}

}  // namespace host
