// SPDX-License-Identifier: Apache-2.0
// The life of an application on the virtual set, as a process of its own.
#include <csignal>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ProbeSet.h"
#include "host/control/ControlUsage.h"

namespace platform_test {

namespace {

using Lines = std::vector<std::string>;

// What the probe logged from create on.
Lines afterStart(const Lines& lines) {
    Lines rest;
    bool created = false;
    for (const std::string& line : lines) {
        created = created || line.compare(0, 6, "create") == 0;
        if (created) {
            rest.push_back(line);
        }
    }
    return rest;
}

}  // namespace

using Lifecycle = ProbeSet;

TEST_F(Lifecycle, RunsFromCreateOverAppControlAndResumeToTerminate) {
    start({"leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_EQ(afterStart(said()), (Lines{"create, scale 1.000000", "app control 1", "resume",
                                         "terminate", "ui_app_main returned 0"}));
}

TEST_F(Lifecycle, TheLogSaysThatThisIsAVirtualSet) {
    start({"leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_TRUE(logHas("This is a virtual set"));
}

TEST_F(Lifecycle, TheToolkitStartsNoHelperThatOutlivesTheSet) {
    start({"leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_NE(access(file(".ecore").c_str(), F_OK), 0);
}

TEST_F(Lifecycle, TheScaleFollowsTheHeightOfTheSet) {
    describe("[Screen]\nWidth=1280\nHeight=720\n");
    start({"leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_TRUE(logHas("create, scale 0.666667"));
}

TEST_F(Lifecycle, SourcesOfGlibFireInTheMainLoop) {
    start({"source"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_TRUE(logHas("a GLib source fired"));
}

TEST_F(Lifecycle, PausesWithTheLastVisibleWindowAndResumesWithTheFirst) {
    start({"windows"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_EQ(afterStart(said()),
              (Lines{"create, scale 1.000000", "app control 1", "resume", "hiding the upper window",
                     "hiding the lower window", "pause", "showing the lower window", "resume",
                     "leaving", "terminate", "ui_app_main returned 0"}));
}

TEST_F(Lifecycle, AnApplicationThatRefusesItsCreationDoesNotRun) {
    start({"refuse"});
    EXPECT_EQ(probeStatus(), 3);
    EXPECT_EQ(afterStart(said()),
              (Lines{"create, scale 1.000000", "ui_app_main returned -17760255"}));
}

TEST_F(Lifecycle, ASignalDuringTheCreationEndsTheApplicationAfterItsFirstLaunch) {
    start({"raise-in-create"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_EQ(afterStart(said()), (Lines{"create, scale 1.000000", "app control 1", "resume",
                                         "terminate", "ui_app_main returned 0"}));
}

TEST_F(Lifecycle, ExceptionsOfEveryKindOfCallbackReachTheCaller) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"throw-create", "caught thrown by create"},
        {"throw-launch", "caught thrown by app control"},
        {"throw-source", "caught thrown by a GLib source"},
        {"throw-job", "caught thrown by the toolkit's loop"}};
    for (const auto& [option, line] : cases) {
        start({option});
        EXPECT_EQ(probeStatus(), 1) << option;
        EXPECT_EQ(said().back(), line);
        EXPECT_THAT(said(), testing::Not(testing::Contains("terminate"))) << option;
    }
}

TEST_F(Lifecycle, AnExceptionOfAChangeNoticeReachesTheCaller) {
    start({"throw-notice"});
    ASSERT_TRUE(logHas("PROBE: resume"));
    describe("[Accessibility]\nFocusZoom=1\n");
    EXPECT_EQ(probeStatus(), 1);
    EXPECT_EQ(said().back(), "caught thrown by a notice");
}

TEST_F(Lifecycle, AnExceptionOfTerminateReachesTheCaller) {
    start({"leave", "throw-terminate"});
    EXPECT_EQ(probeStatus(), 1);
    EXPECT_EQ(said().back(), "caught thrown by terminate");
}

TEST_F(Lifecycle, AnExceptionWithAWindowOpenEndsInOrder) {
    start({"window", "throw-source"});
    EXPECT_EQ(probeStatus(), 1);
    EXPECT_EQ(said().back(), "caught thrown by a GLib source");
}

TEST_F(Lifecycle, TerminationSignalsEndTheMainLoopInOrder) {
    for (const int signal : {SIGTERM, SIGINT}) {
        start({});
        ASSERT_TRUE(logHas("PROBE: resume", signal == SIGTERM ? 1 : 2));
        probe().signal(signal);
        EXPECT_EQ(probeStatus(), 0);
        EXPECT_EQ(said().back(), "ui_app_main returned 0");
    }
}

TEST_F(Lifecycle, WithoutItsDisplayTheApplicationDoesNotRun) {
    start({}, {{"ELM_ENGINE", ""}, {"ELM_DISPLAY", "x11"}, {"DISPLAY", ":0.no-such-server"}});
    EXPECT_EQ(probeStatus(), 3);
    EXPECT_EQ(said().back(), "ui_app_main returned -17760255");
    EXPECT_TRUE(logHas("The X server of the set cannot be reached"));
}

TEST_F(Lifecycle, AChangedDescriptionReachesTheRunningApplication) {
    start({});
    ASSERT_TRUE(logHas("PROBE: resume"));
    describe("[Language]\nLanguage=ar_EG.utf8\n[Accessibility]\nFocusZoom=1\n");
    EXPECT_TRUE(logHas("language changed, event is data: yes"));
    EXPECT_TRUE(logHas("runtime 0 changed"));
    EXPECT_TRUE(logHas("vconf changed"));
    EXPECT_EQ(quit(), 0);
}

using Watchdog = ProbeSet;

// The loop turns normally until the control program starts the stall, and even a slow machine does
// that within the limit.
TEST_F(Watchdog, AbortsAProcessWhoseMainLoopDoesNotTurnForTheTimeOfTheDescription) {
    describe("[Framework]\nStallSeconds=3\n");
    start({"stall"});
    ASSERT_TRUE(logHas("PROBE: resume"));
    control({"app-control"});
    EXPECT_EQ(probeStatus(), 128 + SIGABRT);
    EXPECT_EQ(said().back(), "stalling");
    EXPECT_TRUE(logHas("The main loop has not turned for 3 seconds: the process is aborted"));
}

TEST_F(Watchdog, TheEnvironmentOverridesTheTimeOfTheDescription) {
    describe("[Framework]\nStallSeconds=3600\n");
    start({"stall"}, {{"VIRTUAL_SET_STALL_SECONDS", "3"}});
    ASSERT_TRUE(logHas("PROBE: resume"));
    control({"app-control"});
    EXPECT_EQ(probeStatus(), 128 + SIGABRT);
    EXPECT_TRUE(logHas("The main loop has not turned for 3 seconds: the process is aborted"));
}

TEST_F(Watchdog, HasEndedBeforeTheProgramTakesItsTimeToTerminate) {
    start({"watchdog", "leave"});
    EXPECT_EQ(probeStatus(), 0);
    EXPECT_THAT(said(), testing::IsSupersetOf({"at launch: 1 watchdog", "at the end: 0 watchdog"}));
}

class Control : public ProbeSet {
  protected:
    void startAndWait(const std::vector<std::string>& options) {
        start(options);
        ASSERT_TRUE(logHas("PROBE: resume"));
    }
};

TEST_F(Control, PingTellsTheProcess) {
    startAndWait({});
    const support::ProgramResult answer = control({"ping"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "process " + std::to_string(probe().pid()) + "\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, PauseAndResumeAreDeliveredOnce) {
    startAndWait({});
    EXPECT_EQ(control({"pause"}).status, 0);
    EXPECT_EQ(control({"pause"}).status, 0);
    EXPECT_EQ(control({"resume"}).status, 0);
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(afterStart(said()),
              (Lines{"create, scale 1.000000", "app control 1", "resume", "pause", "resume",
                     "terminate", "ui_app_main returned 0"}));
}

TEST_F(Control, AnotherAppControlBringsTheApplicationBack) {
    startAndWait({});
    EXPECT_EQ(control({"pause"}).status, 0);
    EXPECT_EQ(control({"app-control"}).status, 0);
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(afterStart(said()),
              (Lines{"create, scale 1.000000", "app control 1", "resume", "pause", "app control 2",
                     "resume", "terminate", "ui_app_main returned 0"}));
}

TEST_F(Control, DeliversLowMemoryPowerOffAndWakeUp) {
    startAndWait({});
    EXPECT_EQ(control({"low-memory"}).status, 0);
    EXPECT_EQ(control({"poweroff", "2"}).status, 0);
    EXPECT_EQ(control({"wakeup"}).status, 0);
    EXPECT_THAT(said(), testing::IsSupersetOf({"low memory", "poweroff 2", "wakeup 1"}));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, ChangesTheLanguageBeforeItAnswers) {
    startAndWait({});
    EXPECT_EQ(control({"language", "ar_EG.utf8"}).status, 0);
    EXPECT_THAT(said(), testing::Contains("language changed, event is data: yes"));
    EXPECT_EQ(control({"get", "Language", "Language"}).output, "ar_EG.utf8\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, ASeparateMenuLanguageFollowsTheLanguage) {
    describe("[Language]\nMenuLanguage=de_DE.utf8\n");
    startAndWait({});
    EXPECT_EQ(control({"language", "ko_KR.utf8"}).status, 0);
    EXPECT_EQ(control({"get", "Language", "MenuLanguage"}).output, "ko_KR.utf8\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, SetsAnyValueOfTheDescription) {
    startAndWait({});
    EXPECT_EQ(control({"set", "Accessibility", "FocusZoom", "1"}).status, 0);
    EXPECT_THAT(said(), testing::Contains("vconf changed"));
    EXPECT_EQ(control({"set", "Set", "Model", "two words\tand a tab"}).status, 0);
    EXPECT_EQ(control({"get", "Set", "Model"}).output, "two words\tand a tab\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, WrongQuestionsAreAnsweredClearly) {
    startAndWait({});
    EXPECT_EQ(control({"dance"}).status, 2);
    EXPECT_EQ(control({"pause", "now"}).status, 2);
    EXPECT_EQ(control({"set", "Set"}).status, 2);
    EXPECT_EQ(control({"language", "klingon"}).status, 2);
    EXPECT_EQ(control({"poweroff", "x"}).status, 2);
    EXPECT_EQ(control({"--fast"}).status, 2);
    EXPECT_EQ(control({}).status, 2);
    const support::ProgramResult unknown = control({"get", "Set", "Colour"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "virtual-set-control: a set has no value Set Colour\n");
    const support::ProgramResult bad = control({"set", "Screen", "Width", "x"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.errors, "virtual-set-control: Screen Width has to be a number from 1 to 16384\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, ARunningSetDescribesItself) {
    describe("[Screen]\nWidth=1280\nHeight=720\n[Language]\nOrientation=rtl\n");
    startAndWait({});
    const std::string all = control({"describe"}).output;
    EXPECT_EQ(all.find("Screen Width=1280\nScreen Height=720\n"), 0) << all;
    EXPECT_THAT(all, testing::HasSubstr("\nLanguage Direction=rtl\n"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, EveryVerbOfTheHelpHasAnAction) {
    startAndWait({});
    const std::map<std::string, std::vector<std::string>> arguments = {
        {"language", {"en_US.utf8"}},
        {"set", {"Set", "Model", "M"}},
        {"get", {"Set", "Model"}},
        {"advance", {"1"}},
    };
    for (const std::string& verb : host::controlVerbs()) {
        std::vector<std::string> words = {verb};
        const auto more = arguments.find(verb);
        if (more != arguments.end()) {
            words.insert(words.end(), more->second.begin(), more->second.end());
        }
        if (verb != "quit") {
            EXPECT_EQ(control(words).status, 0) << verb;
        }
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, TheClockIsPutForwardByWholeSecondsOnly) {
    startAndWait({});
    for (const char* seconds : {"-1", "soon", "1.5", ""}) {
        EXPECT_EQ(control({"advance", seconds}).status, 2) << seconds;
    }
    EXPECT_EQ(control({"advance", "0"}).status, 0);
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, WhereNoSetRunsTheProgramSaysSo) {
    const support::ProgramResult answer = control({"ping"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(
        answer.errors.compare(0, 38, "virtual-set-control: no set runs in " + folder(), 0, 38), 0);
}

TEST_F(Control, ASetThatHasEndedLeavesNoSocket) {
    startAndWait({});
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(control({"ping"}).status, 1);
    EXPECT_NE(access(file("control.sock").c_str(), F_OK), 0);
}

TEST_F(Control, ASetTakesOverTheSocketOfOneThatCrashed) {
    startAndWait({});
    probe().signal(SIGKILL);
    EXPECT_EQ(probeStatus(), 128 + SIGKILL);
    start({});
    ASSERT_TRUE(logHas("PROBE: resume", 2));
    EXPECT_EQ(control({"ping"}).status, 0);
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, ASecondSetInTheSameFolderLeavesTheFirstItsSocket) {
    startAndWait({});
    const auto second = startProgram({PLATFORM_PROBE, "leave"}, {{"VIRTUAL_SET_DIR", folder()},
                                                                 {"HOME", folder()},
                                                                 {"XDG_RUNTIME_DIR", folder()},
                                                                 {"ELM_ENGINE", "buffer"},
                                                                 {"ELM_DISPLAY", "buffer"}});
    EXPECT_TRUE(second->wait());
    EXPECT_EQ(second->status(), 0);
    EXPECT_TRUE(logHas("The control socket cannot be opened"));
    EXPECT_EQ(control({"ping"}).output, "process " + std::to_string(probe().pid()) + "\n");
    EXPECT_EQ(quit(), 0);
}

TEST_F(Control, AnExceptionOfTheProgramTellsTheClientThatTheSetEnded) {
    startAndWait({"throw-again"});
    const support::ProgramResult answer = control({"app-control"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(probeStatus(), 1);
    EXPECT_EQ(said().back(), "caught thrown by app control");
}

// Runs the probe in FOLDER, which it makes, and asks it by the control program.
class ControlElsewhere : public ProbeSet {
  protected:
    void runIn(const std::string& folder) {
        std::filesystem::create_directories(folder);
        support::writeFile(folder + "/set.ini", "[Set]\nModel=M 1\n");
        start({}, {{"VIRTUAL_SET_DIR", folder}});
        ASSERT_TRUE(waitFor([&] {
            return contentsOf(folder + "/zolt.log").find("PROBE: resume") != std::string::npos;
        }));
        EXPECT_EQ(ask(folder, {"get", "Set", "Model"}), "M 1\n");
        EXPECT_EQ(ask(folder, {"set", "Accessibility", "FocusZoom", "1"}), "");
        // A change by another process is noticed by the watch of the file.
        support::writeFile(folder + "/set.ini", "[Accessibility]\nFocusZoom=2\n");
        EXPECT_TRUE(waitFor([&] {
            const std::string log = contentsOf(folder + "/zolt.log");
            return log.find("vconf changed", log.find("vconf changed") + 1) != std::string::npos;
        }));
        EXPECT_EQ(ask(folder, {"quit"}), "");
        EXPECT_EQ(probeStatus(), 0);
    }

  private:
    std::string ask(const std::string& folder, const std::vector<std::string>& words) const {
        std::vector<std::string> command = {CONTROL_PROGRAM, "--set", folder};
        command.insert(command.end(), words.begin(), words.end());
        return support::runProgram(command).output;
    }
};

TEST_F(ControlElsewhere, TheNameOfTheFolderMayBeLong) {
    const std::string part = "/" + std::string(60, 'x');
    runIn(folder() + part + part + part + part);
}

TEST_F(ControlElsewhere, TheNameOfTheFolderMayHoldEveryPrintableCharacter) {
    std::string name = "/\u00e9";
    for (char character = ' '; character <= '~'; ++character) {
        name += character != '/' ? std::string(1, character) : "";
    }
    runIn(folder() + name);
}

}  // namespace platform_test
