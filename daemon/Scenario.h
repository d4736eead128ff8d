// SPDX-License-Identifier: Apache-2.0
// What the daemon plays: the delays, results and faults of each method.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "gdbus/ZOLTEvents.h"

namespace standin {

// The arguments of one sendEvent. Unknown numbers are allowed.
struct Event {
    int event = 0;
    int reason = 0;
};

struct TimedEvent {
    int delayMs = 0;
    Event event;
};

enum class ReplyType { NOTHING, TEXT, TRUTH };

// A method of the daemon with its ordinary reply and event.
struct Method {
    const char* name;
    ReplyType reply;
    std::optional<int> success;  // reason of the event that follows, for a method that starts work
};

// All twelve, in the order of the interface.
const std::vector<Method>& methods();
// Null for an unknown name.
const Method* findMethod(const std::string& name);

// How a method differs from its ordinary behaviour.
struct MethodScript {
    int skip = 0;                      // the number of calls before the script applies
    int first = 0;                     // the number of calls to which the script applies; 0: all
    std::optional<int> delayMs;        // from the reply to the event
    bool silent = false;               // no event follows
    bool hold = false;                 // its events are held until they are released
    std::optional<Event> outcome;      // event instead of the success
    std::optional<std::string> reply;  // value of the reply
    int replyDelayMs = 0;              // from the call to the reply
    std::string error;                 // name of a D-Bus error instead of the reply
    std::string errorMessage = "Told to fail by the scenario";
    bool noReply = false;            // neither a reply nor an event, ever
    bool abort = false;              // the process dies in the call
    bool wrongType = false;          // the reply carries an integer, whatever the method promises
    std::vector<TimedEvent> events;  // further ones, counted from the reply
};

struct Scenario {
    int delayMs = 800;
    int verificationMs = 3000;
    std::string shopListFile;  // absolute
    std::string shopList;      // its content
    bool foundInLan = true;
    bool hold = false;  // every event is held until it is released
    std::string pincode = "48201573";
    bool pincodeExpires = false;
    std::vector<TimedEvent> startEvents;          // counted from the moment the name is owned
    std::map<std::string, MethodScript> scripts;  // by the method's name

    // The ordinary delay from METHOD's reply to its event.
    int delayOf(const std::string& method) const;
    // The script for the call number CALL, counted from 1, of METHOD.
    MethodScript scriptFor(const std::string& method, int call) const;
};

}  // namespace standin
