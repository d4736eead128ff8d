// SPDX-License-Identifier: Apache-2.0
// Lets a call of the C or C++ library, or of OpenSSL, fail that would not fail by itself.
#pragma once

namespace support {

enum class LibraryCall { Malloc, Strdup, NewArray, SetLocale, NewBio };

// While it lives, the call after SPARED others of its kind that this thread makes gives null. Only
// calls from the program's and the tests' own code count, not those from inside a shared library.
// One at a time on a thread.
class FailingCall {
  public:
    explicit FailingCall(LibraryCall call, int spared = 0);
    ~FailingCall();
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;

    // Whether the call has been made and has failed.
    bool happened() const;
};

}  // namespace support
