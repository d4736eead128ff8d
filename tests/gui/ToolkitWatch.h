// SPDX-License-Identifier: Apache-2.0
// Records calls to the toolkit whose effect no widget shows, and can make factories return null.
#pragma once

#include <map>
#include <string>
#include <vector>

#include <Elementary.h>

namespace support {

// Watches some of the toolkit's functions from construction to destruction: those that make a
// window, a layout, a popup, a button and a scroller, the one that starts a progress bar and the
// one that signals to a layout, which is recorded as elm_layout_signal_emit("SIGNAL", "SOURCE").
// Only one object may exist at a time.
class ToolkitWatch {
  public:
    ToolkitWatch();
    ~ToolkitWatch();
    ToolkitWatch(const ToolkitWatch&) = delete;
    ToolkitWatch& operator=(const ToolkitWatch&) = delete;

    // FUNCTION, such as "elm_popup_add", returns null from now on, as it does without memory.
    void refuse(const std::string& function) { m_refused = function; }
    // The widgets that FUNCTION was called with, in order; a window is made with none.
    std::vector<Evas_Object*> callsOf(const std::string& function) const;

    // Calls by the program itself, not by the toolkit, in order: "FUNCTION(ARGUMENTS)", with the
    // widget or item. Only of the functions that ToolkitWatch.cpp lists.
    struct Request {
        const void* object;
        std::string call;
    };
    const std::vector<Request>& requests() const { return m_requests; }
    // The requests for OBJECT.
    std::vector<std::string> requestsFor(const void* object) const;
    void note(const void* object, const std::string& call) { m_requests.push_back({object, call}); }
    // The text of OBJECT as an argument.
    static std::string pointer(const void* object);

    // Records a call; true if it must be passed on to the toolkit.
    bool take(const std::string& function, Evas_Object* widget);

  private:
    std::string m_refused;
    std::map<std::string, std::vector<Evas_Object*>> m_calls;
    std::vector<Request> m_requests;
};

}  // namespace support
