// SPDX-License-Identifier: Apache-2.0
// The numbers that the daemon's sendEvent signal carries.
#pragma once

namespace ZOLT {

enum ZOLTEventsType {
    EVENT_STEP_DONE = 0,  // a step of the flow has finished; the reason tells which
    EVENT_CLOSE_GUI = 1,  // a failure, or a request to close
};

// One numbering for both types of event.
enum ZOLTEventsReasonType {
    REASON_PINCODE_READY = 0,
    REASON_PINCODE_VERIFIED = 1,
    REASON_SHOP_LIST_READY = 2,
    REASON_REGISTRATION_DONE = 3,
    REASON_DEREGISTRATION_DONE = 4,
    REASON_NETWORK_UNSTABLE = 5,
    REASON_NO_NETWORK = 6,
    REASON_NO_SERVER = 7,
    REASON_PIN_TIME_EXPIRED = 8,
    REASON_NOT_FOUND_IN_LAN = 9,
    REASON_CLOSE_REQUESTED = 10,
    REASON_CLOSE_REQUESTED_AGAIN = 11,
    REASON_REGISTRATION_INFO_DELETED = 12,
};

// What is known of a reason.
struct ReasonFacts {
    ZOLTEventsReasonType reason;
    ZOLTEventsType event;  // the type of event that carries it
    const char* name;
    const char* failureText;  // translation id of what the person reads; null if it is no failure
};

// Every reason, in the order of the numbers.
inline constexpr ReasonFacts REASONS[] = {
    {REASON_PINCODE_READY, EVENT_STEP_DONE, "REASON_PINCODE_READY", nullptr},
    {REASON_PINCODE_VERIFIED, EVENT_STEP_DONE, "REASON_PINCODE_VERIFIED", nullptr},
    {REASON_SHOP_LIST_READY, EVENT_STEP_DONE, "REASON_SHOP_LIST_READY", nullptr},
    {REASON_REGISTRATION_DONE, EVENT_STEP_DONE, "REASON_REGISTRATION_DONE", nullptr},
    {REASON_DEREGISTRATION_DONE, EVENT_STEP_DONE, "REASON_DEREGISTRATION_DONE", nullptr},
    {REASON_NETWORK_UNSTABLE, EVENT_CLOSE_GUI, "REASON_NETWORK_UNSTABLE",
     "SID_INTERNET_CONNECTION_NOT_STABLE_MSG"},
    {REASON_NO_NETWORK, EVENT_CLOSE_GUI, "REASON_NO_NETWORK", "COM_CANNOT_CONNECT_TO_THE_NETWORK"},
    {REASON_NO_SERVER, EVENT_CLOSE_GUI, "REASON_NO_SERVER", "COM_CANNOT_CONNECT_TO_SERVER"},
    {REASON_PIN_TIME_EXPIRED, EVENT_CLOSE_GUI, "REASON_PIN_TIME_EXPIRED",
     "COM_MAPP_SID_PIN_ENTRY_TIME_LIMIT_EXPIRED"},
    {REASON_NOT_FOUND_IN_LAN, EVENT_CLOSE_GUI, "REASON_NOT_FOUND_IN_LAN",
     "TV_SID_UNABLE_TO_FIND_REGISTRATION_INFORMATION_IN_THE_LOCAL_NETWORK"},
    {REASON_CLOSE_REQUESTED, EVENT_CLOSE_GUI, "REASON_CLOSE_REQUESTED", nullptr},
    {REASON_CLOSE_REQUESTED_AGAIN, EVENT_CLOSE_GUI, "REASON_CLOSE_REQUESTED_AGAIN", nullptr},
    {REASON_REGISTRATION_INFO_DELETED, EVENT_STEP_DONE, "REASON_REGISTRATION_INFO_DELETED",
     nullptr},
};

// The facts of REASON, or null for a number that is no reason.
constexpr const ReasonFacts* findReason(int reason) {
    for (const ReasonFacts& facts : REASONS) {
        if (facts.reason == reason) {
            return &facts;
        }
    }
    return nullptr;
}

}  // namespace ZOLT
