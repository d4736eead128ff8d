// SPDX-License-Identifier: Apache-2.0
// Asks an action what it throws.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "common/Exception.h"

namespace ZOLT {

// The text of the Exception that ACTION throws, or a note that there was none.
template <typename Action>
std::string thrownBy(Action action) {
    try {
        action();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), GENERIC_ERROR);
        return exception.what();
    }
    return "(nothing thrown)";
}

}  // namespace ZOLT
