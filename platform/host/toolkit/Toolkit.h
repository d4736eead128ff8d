// SPDX-License-Identifier: Apache-2.0
// Starts the toolkit and makes it that of a television.
#pragma once

namespace host {

class Toolkit {
  public:
    // Starts the toolkit; isReady tells whether that worked.
    Toolkit(int argc, char** argv);
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    bool isReady() const { return m_ready; }

    // Shuts the toolkit down. Not called when an exception goes through: the program's own windows
    // are destroyed by the unwinding, after this object, and need the toolkit until then.
    void close();

  private:
    bool m_display = false;  // a connection to the X server is held
    bool m_ready = false;
};

}  // namespace host
