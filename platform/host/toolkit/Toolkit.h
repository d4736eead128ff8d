// SPDX-License-Identifier: Apache-2.0
// Starts the toolkit with the settings of a television.
#pragma once

namespace host {

class Toolkit {
  public:
    // Starts the toolkit; isReady returns whether that succeeded.
    Toolkit(int argc, char** argv);
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    bool isReady() const { return m_ready; }

    // Shuts the toolkit down. Not called for an exception: stack unwinding destroys the program's
    // windows after this object, and they need the toolkit until then.
    void close();

  private:
    bool m_display = false;  // a connection to the X server is held
    bool m_ready = false;
};

}  // namespace host
