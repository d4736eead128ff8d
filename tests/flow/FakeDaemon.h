// SPDX-License-Identifier: Apache-2.0
// A daemon in the test's own process that answers as the test says.
#pragma once

#include <string>
#include <vector>

#include "gdbus/FakeService.h"

namespace flow {

// Starts the private bus of this process, if that has not happened yet.
void startBus();

// Owns the daemon's name with the object "/zolt/gui" from construction to destruction. Takes every
// request; texts are empty and the set is not registered until a test says otherwise.
class FakeDaemon {
  public:
    FakeDaemon();

    // METHOD, one that gives a text, gives this one from now on.
    void answer(const std::string& method, const std::string& text);
    // METHOD gives this tuple, in the notation of values, which may be of a type that is not its
    // own.
    void answerTuple(const std::string& method, const std::string& tuple) {
        m_service.answer(method, tuple);
    }
    void setRegistered(bool registered);
    // METHOD fails with a D-Bus error of this text from now on.
    void fail(const std::string& method, const std::string& message);
    void emit(int event, int reason) { m_service.sendEvent(event, reason); }

    // The names of the methods called since the construction or since the last takeCalls.
    std::vector<std::string> takeCalls();
    // The document of the last requestRegistrationShopInfo.
    std::string registrationDocument();

  private:
    test::FakeService m_service;
    size_t m_taken = 0;  // calls that were given out
};

}  // namespace flow
