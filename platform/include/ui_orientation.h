// SPDX-License-Identifier: Apache-2.0
// The reading direction of the set's user interface.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

// 1: right to left. Any other value: left to right.
int ua_UI_orientation_get(void);

#ifdef __cplusplus
}
#endif
