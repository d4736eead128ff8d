// SPDX-License-Identifier: Apache-2.0
// GLib's default main context inside the toolkit's main loop.
#include <cstdlib>
#include <string>
#include <vector>

#include <unistd.h>

#include <Ecore.h>
#include <glib-unix.h>
#include <glib.h>
#include <gtest/gtest.h>

#include "host/toolkit/MainLoopBridge.h"

namespace platform_test {

namespace {

std::string s_order;

gboolean fromGlib(gpointer text) {
    s_order += static_cast<const char*>(text);
    return G_SOURCE_REMOVE;
}

gboolean quitFromGlib(gpointer) {
    ecore_main_loop_quit();
    return G_SOURCE_REMOVE;
}

Eina_Bool fromToolkit(void* text) {
    s_order += static_cast<const char*>(text);
    return ECORE_CALLBACK_CANCEL;
}

gboolean onReadable(gint descriptor, GIOCondition, gpointer) {
    char byte = 0;
    if (read(descriptor, &byte, 1) == 1) {
        s_order += byte;
    }
    ecore_main_loop_quit();
    return G_SOURCE_REMOVE;
}

Eina_Bool onToolkitReadable(void*, Ecore_Fd_Handler* handler) {
    char byte = 0;
    if (read(ecore_main_fd_handler_fd_get(handler), &byte, 1) == 1) {
        s_order += byte;
    }
    ecore_main_loop_quit();
    return ECORE_CALLBACK_CANCEL;
}

gboolean addTimer(gpointer) {
    ecore_timer_add(
        0.001,
        [](void*) -> Eina_Bool {
            ecore_main_loop_quit();
            return ECORE_CALLBACK_CANCEL;
        },
        nullptr);
    return G_SOURCE_REMOVE;
}

int s_before = 0;
int s_after = 0;

char* text(const char* literal) {
    return const_cast<char*>(literal);
}

}  // namespace

class MainLoopBridge : public ::testing::Test {
  protected:
    MainLoopBridge() {
        s_order.clear();
        // No system bus is needed here, and the toolkit prints pages of errors without one.
        setenv("EINA_LOG_LEVEL", "0", 1);
        ecore_init();
        host::MainLoopBridge::install();
    }
    ~MainLoopBridge() override {
        host::MainLoopBridge::remove();
        ecore_shutdown();
    }
};

TEST_F(MainLoopBridge, TimeoutsOfBothLoopsFireInTheOrderOfTheirTimes) {
    g_timeout_add(10, fromGlib, text("a"));
    ecore_timer_add(0.2, fromToolkit, text("b"));
    g_timeout_add(400, fromGlib, text("c"));
    g_timeout_add(600, quitFromGlib, nullptr);
    ecore_main_loop_begin();
    EXPECT_EQ(s_order, "abc");
}

TEST_F(MainLoopBridge, DescriptorsOfGlibWakeTheLoop) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    g_unix_fd_add(ends[0], G_IO_IN, onReadable, nullptr);
    ASSERT_EQ(write(ends[1], "x", 1), 1);
    ecore_main_loop_begin();
    EXPECT_EQ(s_order, "x");
    close(ends[0]);
    close(ends[1]);
}

TEST_F(MainLoopBridge, DescriptorsOfTheToolkitStillWakeTheLoop) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    ecore_main_fd_handler_add(ends[0], ECORE_FD_READ, onToolkitReadable, nullptr, nullptr, nullptr);
    ASSERT_EQ(write(ends[1], "y", 1), 1);
    ecore_main_loop_begin();
    EXPECT_EQ(s_order, "y");
    close(ends[0]);
    close(ends[1]);
}

TEST_F(MainLoopBridge, ATimerThatAGlibSourceAddsFires) {
    g_idle_add(addTimer, nullptr);
    ecore_main_loop_begin();
}

TEST_F(MainLoopBridge, TellsOfEachWait) {
    s_before = 0;
    s_after = 0;
    host::MainLoopBridge::setNotices([] { ++s_before; }, [] { ++s_after; });
    g_timeout_add(20, quitFromGlib, nullptr);
    ecore_main_loop_begin();
    host::MainLoopBridge::setNotices(nullptr, nullptr);
    EXPECT_GT(s_before, 0);
    EXPECT_EQ(s_before, s_after);
}

}  // namespace platform_test
