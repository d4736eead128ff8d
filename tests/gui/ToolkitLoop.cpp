// SPDX-License-Identifier: Apache-2.0
// Runs the toolkit's main loop and feeds keys to it.
#include "gui/ToolkitLoop.h"

#include <Ecore.h>
#include <Ecore_Evas.h>

namespace support {

namespace {

unsigned int nextTimestamp() {
    static unsigned int timestamp = 0;
    return ++timestamp;
}

}  // namespace

void ToolkitLoop::settle() {
    // A job may schedule further jobs; a few more rounds are enough for them.
    for (int round = 0; round < 5; ++round) {
        bool reached = false;
        ecore_job_add([](void* data) { *static_cast<bool*>(data) = true; }, &reached);
        while (!reached) {
            ecore_main_loop_iterate();
        }
    }
}

void ToolkitLoop::activate(Evas_Object* window) {
    // A window of the buffer engine has the keyboard from the start and sends its widgets no event
    // for it.
    Ecore_Evas* frame = ecore_evas_ecore_evas_get(evas_object_evas_get(window));
    ecore_evas_focus_set(frame, EINA_FALSE);
    settle();
    ecore_evas_focus_set(frame, EINA_TRUE);
    settle();
}

void ToolkitLoop::keyDown(Evas_Object* object, const std::string& key) {
    evas_event_feed_key_down(evas_object_evas_get(object), key.c_str(), key.c_str(), nullptr,
                             nullptr, nextTimestamp(), nullptr);
}

void ToolkitLoop::keyUp(Evas_Object* object, const std::string& key) {
    evas_event_feed_key_up(evas_object_evas_get(object), key.c_str(), key.c_str(), nullptr, nullptr,
                           nextTimestamp(), nullptr);
}

}  // namespace support
