// SPDX-License-Identifier: Apache-2.0
// Sees the calls of which no widget tells afterwards, and can have the toolkit make nothing.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <Elementary.h>

namespace support {

// Watches some of the toolkit's functions from construction to destruction: those that make a
// window, a layout, a popup, a button and a scroller, the one that starts a progress bar and the
// one that signals to a layout, which is told as elm_layout_signal_emit("SIGNAL", "SOURCE"). One at
// a time.
class ToolkitWatch {
  public:
    ToolkitWatch();
    ~ToolkitWatch();
    ToolkitWatch(const ToolkitWatch&) = delete;
    ToolkitWatch& operator=(const ToolkitWatch&) = delete;

    // FUNCTION, as "elm_popup_add", gives null from here on, as it does without memory.
    void refuse(const std::string& function) { m_refused = function; }
    // The widgets that FUNCTION was called with, in order; a window is made with none.
    std::vector<Evas_Object*> callsOf(const std::string& function) const;

    // What the program itself, and not the toolkit, asked for, in order: "FUNCTION(ARGUMENTS)",
    // with the widget or item that it was asked of. Only of the functions that ToolkitWatch.cpp
    // lists.
    struct Request {
        const void* object;
        std::string call;
    };
    const std::vector<Request>& requests() const { return m_requests; }
    // The requests for OBJECT.
    std::vector<std::string> requestsFor(const void* object) const;
    void note(const void* object, const std::string& call) { m_requests.push_back({object, call}); }
    // OBJECT as an argument is written.
    static std::string pointer(const void* object);

    // Takes a call in, and tells whether the toolkit is to have it.
    bool take(const std::string& function, Evas_Object* widget);

  private:
    std::string m_refused;
    std::map<std::string, std::vector<Evas_Object*>> m_calls;
    std::vector<Request> m_requests;
};

}  // namespace support
