// SPDX-License-Identifier: Apache-2.0
// Grabs keys of the remote control for one window.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    TOP_POSITION_GRAB = 0x20000,
    SHARED_GRAB = 0x40000,
    EXCLUSIVE_GRAB = 0x100000
} utilx_grab_mode_e;

// Grabs the key named KEY (an X keysym name) for WINDOW on the X display DISPLAY. Returns 0, or a
// non-zero value when there is no such key, window or display.
int utilx_grab_key(void* display, unsigned int window, const char* key, int mode);

#ifdef __cplusplus
}
#endif
