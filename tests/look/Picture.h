// SPDX-License-Identifier: Apache-2.0
// Pictures as files.
#pragma once

#include <string>

#include <Evas.h>

#include "look/Frame.h"

namespace look {

class Picture {
  public:
    Picture() = delete;

    // Writes FRAME in the format that the end of FILE names. CANVAS lends its hand and stays as it
    // is. Throws std::runtime_error when the file cannot be written.
    static void save(Evas* canvas, const Frame& frame, const std::string& file);
};

}  // namespace look
