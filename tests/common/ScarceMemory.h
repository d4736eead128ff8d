// SPDX-License-Identifier: Apache-2.0
// Lets an allocation of the program fail.
#pragma once

namespace support {

// While an object lives, asprintf fails on its thread as if no memory were left.
class ScarceTexts {
  public:
    ScarceTexts();
    ~ScarceTexts();
    ScarceTexts(const ScarceTexts&) = delete;
    ScarceTexts& operator=(const ScarceTexts&) = delete;
};

// Makes the next operator new of the program's own code on this thread fail.
void failNextNew();

}  // namespace support
