// SPDX-License-Identifier: Apache-2.0
// Makes a call of the C or C++ library, or of OpenSSL, fail on demand.
#pragma once

namespace support {

enum class LibraryCall { Malloc, Strdup, Asprintf, New, NewArray, SetLocale, NewBio };

// While it lives, the call after SPARED others of its kind that this thread makes fails as it does
// when memory is short: with null, with -1 or with std::bad_alloc. Only calls from the program's
// and the tests' own code count, not those from inside a shared library. One at a time on a thread.
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
