// SPDX-License-Identifier: Apache-2.0
// The set's short interface sounds.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

typedef enum {
    FEEDBACK_PATTERN_MOVE = 40,
    FEEDBACK_PATTERN_BACK = 41,
    FEEDBACK_PATTERN_BLOCKED = 42,
    FEEDBACK_PATTERN_SELECT = 43,
    FEEDBACK_PATTERN_POPUP = 45
} feedback_pattern_e;

typedef enum {
    FEEDBACK_ERROR_NONE = 0,
    FEEDBACK_ERROR_OPERATION_FAILED = -1,
    FEEDBACK_ERROR_INVALID_PARAMETER = -22,
    FEEDBACK_ERROR_NOT_INITIALIZED = -27590655
} feedback_error_e;

int feedback_initialize(void);
int feedback_play(feedback_pattern_e pattern);
int feedback_deinitialize(void);

#ifdef __cplusplus
}
#endif
