// SPDX-License-Identifier: Apache-2.0
// What the control program may ask of the application.
#pragma once

namespace host {

// Every operation has been carried out, callbacks included, when it returns.
class ControlledApplication {
  public:
    ControlledApplication() = default;
    virtual ~ControlledApplication() = default;
    ControlledApplication(const ControlledApplication&) = delete;
    ControlledApplication& operator=(const ControlledApplication&) = delete;

    virtual void launchAgain() = 0;
    virtual void goToBackground() = 0;
    virtual void comeToForeground() = 0;
};

}  // namespace host
