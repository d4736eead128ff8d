// SPDX-License-Identifier: Apache-2.0
// The set on an X server with a window manager.
#include <csignal>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ProbeSet.h"

namespace platform_test {

class Display : public ProbeSet {
  protected:
    void SetUp() override {
        // -noreset: a server that resets when its last client leaves would disconnect the next one.
        m_server = startProgram({"Xvfb", "-displayfd", "1", "-screen", "0", "640x360x24",
                                 "-nolisten", "tcp", "-noreset"},
                                {});
        ASSERT_TRUE(waitFor([this] { return m_server->output().find('\n') != std::string::npos; }));
        m_name = ":" + firstWord(m_server->output());
        m_manager =
            startProgram({"matchbox-window-manager", "-use_titlebar", "no"}, {{"DISPLAY", m_name}});
        ASSERT_TRUE(waitFor([this] {
            return tool("xprop", {"-root", "_NET_SUPPORTING_WM_CHECK"}).output.find("window id") !=
                   std::string::npos;
        }));
    }

    void TearDown() override {
        ProbeSet::TearDown();
        // The manager first, or it reports a lost server.
        m_manager.reset();
        m_server.reset();
    }

    support::ProgramResult tool(const std::string& program,
                                const std::vector<std::string>& arguments) const {
        std::vector<std::string> command = {program};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return support::runProgram(command, {"", {{"DISPLAY", m_name}}, ""});
    }

    // Starts the probe and waits until its window has the keyboard.
    void startProbe(std::vector<std::string> options) {
        options.emplace_back("window");
        start(options,
              {{"DISPLAY", m_name}, {"ELM_DISPLAY", "x11"}, {"ELM_ENGINE", "software_x11"}});
        ASSERT_TRUE(logHas("PROBE: resume"));
        ASSERT_TRUE(logHas("PROBE: window focused"));
        ASSERT_TRUE(waitFor([this] {
            m_window = firstWord(tool("xdotool", {"getwindowfocus"}).output);
            return tool("xdotool", {"getwindowname", m_window}).output == "lower\n";
        }));
    }

    // True when the probe's process sleeps in the kernel, not when it only waits for the CPU.
    bool sleeps() {
        std::ifstream stat("/proc/" + std::to_string(probe().pid()) + "/stat");
        const std::string line{std::istreambuf_iterator<char>(stat), {}};
        const std::string::size_type name = line.rfind(") ");
        return name != std::string::npos && line[name + 2] == 'S';
    }

    // Ends the server between two requests, once the probe with these OPTIONS has received a key
    // and logged SIGN.
    void expectAnOrderlyEnd(const std::vector<std::string>& options, const std::string& sign) {
        startProbe(options);
        tool("xdotool", {"key", "a"});
        ASSERT_TRUE(logHas(sign));
        ASSERT_TRUE(waitFor([this] { return sleeps(); }));
        server().signal(SIGKILL);
        EXPECT_NE(probeStatus(), -1);
        EXPECT_TRUE(logHas("The X server of the set is gone: the main loop ends"));
        EXPECT_THAT(said(), testing::Contains("terminate"));
    }

    static std::string firstWord(const std::string& text) {
        return text.substr(0, text.find_first_of(" \n"));
    }

    const std::string& window() const { return m_window; }
    const std::string& displayName() const { return m_name; }
    support::Program& server() { return *m_server; }

  private:
    std::unique_ptr<support::Program> m_server;
    std::unique_ptr<support::Program> m_manager;
    std::string m_name;
    std::string m_window;
};

TEST_F(Display, EscapeIsTheBackKeyOfTheRemoteDownAndUp) {
    startProbe({});
    tool("xdotool", {"key", "Escape"});
    EXPECT_TRUE(logHas("key down XF86Back XF86Back"));
    EXPECT_TRUE(logHas("key up XF86Back XF86Back"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, OtherKeysKeepTheirNames) {
    startProbe({});
    tool("xdotool", {"key", "Down"});
    EXPECT_TRUE(logHas("key down Down Down"));
    EXPECT_TRUE(logHas("key up Down Down"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, AKeyOfTheKeyboardIsGrabbedAndOneThatItDoesNotHaveIsRefused) {
    startProbe({"grab"});
    EXPECT_TRUE(logHas("grab a: done"));
    EXPECT_TRUE(logHas("grab XF86NoSuchKey: refused"));
    tool("xdotool", {"key", "a"});
    EXPECT_TRUE(logHas("key down a a"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, AGrabbedKeyDoesNotMoveTheFocus) {
    startProbe({"button", "grab"});
    ASSERT_TRUE(logHas("button focused"));
    tool("xdotool", {"key", "a", "Return"});
    EXPECT_TRUE(logHas("key up a a"));
    EXPECT_TRUE(logHas("key up Return Return"));
    EXPECT_THAT(said(), testing::Not(testing::Contains("button unfocused")));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, OneOkPressesAButton) {
    startProbe({"button"});
    tool("xdotool", {"key", "Return"});
    EXPECT_TRUE(logHas("key up Return Return"));
    EXPECT_THAT(said(), testing::Contains("button clicked").Times(1));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, WithTheScreenReaderTheFocusIsReadOnceAndEachOkPressesAButtonOnce) {
    describe("[Accessibility]\nScreenReader=true\n");
    startProbe({"button"});
    ASSERT_TRUE(logHas("Screen reader: says \"press me\""));
    tool("xdotool", {"key", "--delay", "1", "Return", "Return"});
    EXPECT_TRUE(logHas("key up Return Return", 2));
    EXPECT_THAT(said(), testing::Contains("button clicked").Times(2));
    EXPECT_THAT(said(), testing::Contains("access text asked").Times(1));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, TheScreenReaderCanBeSwitchedOnWhileTheSetRuns) {
    startProbe({"button"});
    EXPECT_EQ(control({"set", "Accessibility", "ScreenReader", "true"}).status, 0);
    EXPECT_TRUE(logHas("Screen reader: says \"press me\""));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, WhatTheProgramHasTheToolkitSayIsSpokenOnceWhileTheScreenReaderIsOn) {
    startProbe({"say"});
    ASSERT_TRUE(logHas("PROBE: had something said"));
    EXPECT_EQ(control({"set", "Accessibility", "ScreenReader", "true"}).status, 0);
    EXPECT_EQ(control({"app-control"}).status, 0);
    ASSERT_TRUE(logHas("PROBE: had something said", 2));
    EXPECT_TRUE(logHas("Screen reader: says \"launch 2\""));
    EXPECT_EQ(log().find("launch 1"), std::string::npos);
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, AKeyThatSomebodyElseHasGrabbedIsRefused) {
    startProbe({"grab-twice"});
    EXPECT_TRUE(logHas("grab b: done"));
    EXPECT_TRUE(logHas("grab b by another: refused"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, AMinimizedWindowPausesAndAnActivatedOneResumes) {
    startProbe({});
    tool("xdotool", {"windowminimize", window()});
    EXPECT_TRUE(logHas("PROBE: pause"));
    tool("xdotool", {"windowactivate", window()});
    EXPECT_TRUE(logHas("PROBE: resume", 2));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, OneWindowFollowingAnotherIsNoPause) {
    startProbe({"replace"});
    EXPECT_EQ(control({"app-control"}).status, 0);
    EXPECT_TRUE(logHas("PROBE: window focused", 2));
    EXPECT_THAT(said(), testing::Not(testing::Contains("pause")));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Display, ClosingTheLastWindowEndsTheApplication) {
    startProbe({});
    // As the close button of a window manager does.
    EXPECT_EQ(tool(PLATFORM_PROBE, {"close", window()}).status, 0);
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_EQ(said().back(), "ui_app_main returned 0");
}

TEST_F(Display, AServerThatDiesBeforeTheMainLoopWaitsEndsItAndTheApplicationIsTold) {
    expectAnOrderlyEnd({"outlive-server-at-work"}, "waiting for the server's end");
}

TEST_F(Display, AServerThatDiesWhileTheMainLoopWaitsEndsItAndTheApplicationIsTold) {
    // The loop has no events and no work left.
    expectAnOrderlyEnd({"rest"}, "at rest");
}

TEST_F(Display, AnApplicationThatEndsBeforeItsFirstLaunchIsNotTerminated) {
    // The main loop notices the dead server before it launches the application.
    start({"outlive-server-in-create"},
          {{"DISPLAY", displayName()}, {"ELM_DISPLAY", "x11"}, {"ELM_ENGINE", "software_x11"}});
    ASSERT_TRUE(logHas("PROBE: waiting for the server's end"));
    server().signal(SIGKILL);
    EXPECT_EQ(probeStatus(), 3);
    EXPECT_THAT(said(), testing::Not(testing::Contains("app control 1")));
    EXPECT_THAT(said(), testing::Not(testing::Contains("terminate")));
    EXPECT_EQ(said().back(), "ui_app_main returned -17760255");
}

TEST_F(Display, AServerThatDiesDuringARequestEndsTheProcessOnTheSpot) {
    startProbe({"ask-dead-server"});
    tool("xdotool", {"key", "a"});
    ASSERT_TRUE(logHas("waiting for the server's end"));
    server().signal(SIGKILL);
    EXPECT_EQ(probeStatus(), 1);
    EXPECT_TRUE(logHas("The X server of the set is gone: the process ends here"));
    EXPECT_EQ(said().back(), "waiting for the server's end");
}

}  // namespace platform_test
