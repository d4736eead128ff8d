// SPDX-License-Identifier: Apache-2.0
// The stand-in for the content service's daemon: a process of its own on the system bus.
#include <cstdio>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include <gio/gio.h>
#include <glib-unix.h>

#include "daemon/Journal.h"
#include "daemon/Options.h"
#include "daemon/Registration.h"
#include "daemon/ScenarioFile.h"
#include "daemon/Service.h"
#include "daemon/SetFolder.h"

namespace {

constexpr int EXIT_FAILED = 1;
constexpr int EXIT_USAGE = 2;

struct Run {
    GMainLoop* loop = nullptr;  // released in play
    standin::Journal& journal;
    standin::Service* service = nullptr;
    int status = 0;
};

void end(Run& run, const std::string& reason) {
    run.journal.write("end", reason);
    g_main_loop_quit(run.loop);
}

void onNameAcquired(GDBusConnection* /*connection*/, const gchar* name, gpointer data) {
    auto& run = *static_cast<Run*>(data);
    run.journal.write("process", std::to_string(getpid()));
    run.journal.write("start", name);
    run.service->start();
}

void onNameLost(GDBusConnection* connection, const gchar* name, gpointer data) {
    auto& run = *static_cast<Run*>(data);
    if (connection == nullptr || g_dbus_connection_is_closed(connection) != FALSE) {
        return;  // onClosed reports it
    }
    // The journal belongs to the daemon that owns the name, so nothing is written there.
    std::fprintf(stderr, "zolt-daemon: the name %s is taken\n", name);
    run.status = EXIT_FAILED;
    g_main_loop_quit(run.loop);
}

void onClosed(GDBusConnection* /*connection*/, gboolean /*vanished*/, GError* /*error*/,
              gpointer data) {
    end(*static_cast<Run*>(data), "the bus has gone");
}

gboolean onSignal(gpointer data) {
    end(*static_cast<Run*>(data), "asked to end");
    return G_SOURCE_CONTINUE;
}

gboolean onRelease(gpointer service) {
    static_cast<standin::Service*>(service)->releaseNext();
    return G_SOURCE_CONTINUE;
}

GDBusConnection* connectToBus() {
    GError* error = nullptr;
    GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error);
    if (connection == nullptr) {
        const std::string reason = error->message;
        g_error_free(error);
        throw std::runtime_error("no system bus: " + reason);
    }
    g_dbus_connection_set_exit_on_close(connection, FALSE);
    return connection;
}

// Relative to the program, so that a build folder can be moved.
std::string shopListFolder() {
    GError* error = nullptr;
    gchar* program = g_file_read_link("/proc/self/exe", &error);
    if (program == nullptr) {
        const std::string reason = error->message;
        g_error_free(error);
        throw std::runtime_error(reason);
    }
    std::string folder = standin::absolutePath("../shop-lists", program);
    g_free(program);
    return folder;
}

int play(const standin::Options& options) {
    const standin::SetFolder set = standin::openSetFolder(options.setFolder, options.scenarioFile);
    const standin::Scenario scenario = standin::loadScenario(set.scenarioFile, shopListFolder());
    if (options.checkOnly) {
        return 0;
    }
    standin::Journal journal(set.journalFile);
    GDBusConnection* connection = connectToBus();
    Run run{g_main_loop_new(nullptr, FALSE), journal};
    {
        standin::Service service(connection, scenario, standin::Registration(set), journal);
        run.service = &service;
        g_signal_connect(connection, "closed", G_CALLBACK(onClosed), &run);
        g_unix_signal_add(SIGTERM, onSignal, &run);
        g_unix_signal_add(SIGINT, onSignal, &run);
        const guint release = g_unix_signal_add(SIGUSR1, onRelease, &service);
        const guint owner = g_bus_own_name_on_connection(connection, standin::BUS_NAME,
                                                         G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE,
                                                         onNameAcquired, onNameLost, &run, nullptr);
        g_main_loop_run(run.loop);
        if (g_dbus_connection_is_closed(connection) == FALSE) {
            // What the journal has recorded must also reach the bus.
            g_dbus_connection_flush_sync(connection, nullptr, nullptr);
            g_bus_unown_name(owner);
        }
        g_signal_handlers_disconnect_by_data(connection, &run);
        g_source_remove(release);
    }
    g_main_loop_unref(run.loop);
    g_object_unref(connection);
    return run.status;
}

int run(int argc, char** argv) {
    const standin::Options options = standin::parseOptions(argc, argv);
    if (options.showHelp) {
        std::fputs(standin::helpText().c_str(), stdout);
        return 0;
    }
    if (options.showVersion) {
        std::puts("zolt-daemon " ZOLT_VERSION);
        return 0;
    }
    return play(options);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const standin::UsageError& error) {
        std::fprintf(stderr, "zolt-daemon: %s\n", error.what());
        return EXIT_USAGE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zolt-daemon: %s\n", error.what());
        return EXIT_FAILED;
    }
}
