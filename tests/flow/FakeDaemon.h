// SPDX-License-Identifier: Apache-2.0
// A daemon in the test's own process with answers set by the test.
#pragma once

#include <string>
#include <vector>

#include "gdbus/FakeService.h"

namespace flow {

// Starts the private bus of this process, unless it runs already.
void startBus();

// Owns the daemon's name with the object "/zolt/gui" from construction to destruction. Accepts
// every request; by default texts are empty and the TV is not registered.
class FakeDaemon {
  public:
    FakeDaemon();

    // METHOD, which must return a text, returns this one from now on.
    void answer(const std::string& method, const std::string& text);
    // METHOD returns this tuple, in GVariant text format, which may be of a wrong type.
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
    size_t m_taken = 0;  // calls that takeCalls has returned
};

}  // namespace flow
