// SPDX-License-Identifier: Apache-2.0
// A daemon in the test's own process that sends what a test tells it to.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include <gio/gio.h>

namespace test {

// Has a connection of its own and answers on GIO's worker thread, so that the test's thread may
// block in a call. Has no interface description: a reply may have any type.
class FakeService {
  public:
    // Answers one call. Gets a reference to the message; runs on the worker thread.
    using Handler = std::function<void(GDBusMessage* call)>;

    FakeService();
    ~FakeService();
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    // Takes or gives up the daemon's name.
    void own();
    void release();
    // Breaks the connection, as a process that dies does.
    void die();

    // The tree that the object manager lists, as text of type a{oa{sa{sv}}}.
    void list(const std::string& objects);
    // The same as a change of the tree.
    void add(const std::string& path, const std::string& interfaces);
    void remove(const std::string& path, const std::string& interfaceName);

    // What a method answers from now on: a tuple as text, such as "('1234',)".
    void answer(const std::string& method, const std::string& body);
    void fail(const std::string& method, const std::string& error, const std::string& message);
    void handle(const std::string& method, const Handler& handler);

    void reply(GDBusMessage* call, const std::string& body);
    void emit(const std::string& path, const std::string& interfaceName, const std::string& signal,
              const std::string& body);
    void sendEvent(int event, int reason);

    // The calls of the daemon's own interfaces so far: method and arguments as text.
    std::vector<std::string> calls();

  private:
    static GDBusMessage* onMessage(GDBusConnection* connection, GDBusMessage* message,
                                   gboolean incoming, gpointer data);
    bool take(GDBusMessage* message);
    void callBus(const char* method, GVariant* arguments);
    void send(GDBusMessage* message);

    GDBusConnection* m_connection;  // one reference, released in the destructor
    guint m_filter = 0;
    std::mutex m_mutex;  // guards the next two
    std::map<std::string, Handler> m_handlers;
    std::vector<std::string> m_calls;
};

// The tree with "/zolt/gui" and its interface.
extern const char* const GUI_TREE;
extern const char* const GUI_INTERFACES;
extern const char* const GUI_INTERFACE;
extern const char* const SCREEN_SAVER_INTERFACE;

}  // namespace test
