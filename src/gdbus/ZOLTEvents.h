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
    // With EVENT_STEP_DONE.
    REASON_PINCODE_READY = 0,
    REASON_PINCODE_VERIFIED = 1,
    REASON_SHOP_LIST_READY = 2,
    REASON_REGISTRATION_DONE = 3,
    REASON_DEREGISTRATION_DONE = 4,
    // With EVENT_CLOSE_GUI.
    REASON_NETWORK_UNSTABLE = 5,
    REASON_NO_NETWORK = 6,
    REASON_NO_SERVER = 7,
    REASON_PIN_TIME_EXPIRED = 8,
    REASON_NOT_FOUND_IN_LAN = 9,
    REASON_CLOSE_REQUESTED = 10,
    REASON_CLOSE_REQUESTED_AGAIN = 11,
    // With EVENT_STEP_DONE.
    REASON_REGISTRATION_INFO_DELETED = 12,
};

}  // namespace ZOLT
