// SPDX-License-Identifier: Apache-2.0
// The entry of the process and its life cycle in the application framework.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "common/DeviceInfo.h"
#include "common/Exception.h"
#include "common/ZoltConfig.h"
#include "flow/ControllerProbe.h"
#include "flow/FlowFixture.h"
#include "gui/Handle.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using ZOLT::GUI::Controller;
using ZOLT::GUI::ControllerProbe;

// The program's main, renamed because the tests have their own.
int zolt_main(int argc, char** argv);

namespace flow {
namespace {

constexpr const char* COUNTER = "memory/zolt/zolt_screensaver_blocking";

// The program closes the standard streams, so it gets its own and the test keeps the real ones.
class OwnStreams {
  public:
    OwnStreams() : m_output(stdout), m_errors(stderr) {
        stdout = openHigh();
        stderr = openHigh();
    }
    ~OwnStreams() { giveBack(); }
    OwnStreams(const OwnStreams&) = delete;
    OwnStreams& operator=(const OwnStreams&) = delete;

    // Restores the streams of the test. May be called again.
    void giveBack() {
        if (stdout == m_output) {
            return;
        }
        m_closed = isNull(fileno(stdout)) && isNull(fileno(stderr));
        fclose(stdout);
        fclose(stderr);
        stdout = m_output;
        stderr = m_errors;
    }
    // Whether both wrote to /dev/null when they were restored.
    bool wereClosed() const { return m_closed; }

  private:
    static FILE* openHigh() {
        const int descriptor = fcntl(STDERR_FILENO, F_DUPFD, 500);
        return fdopen(descriptor, "w");
    }
    static bool isNull(int descriptor) {
        std::error_code none;
        const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
        return std::filesystem::read_symlink(link, none) == "/dev/null";
    }

    FILE* m_output;
    FILE* m_errors;
    bool m_closed = false;
};

// Prints as libraries do by default. Returns whether all of it succeeds and nothing is written into
// a file that was opened just before.
bool printingIsHarmless() {
    const int file = open("opened-later", O_RDWR | O_CREAT, 0600);
    const int second = open("opened-last", O_RDWR | O_CREAT, 0600);
    bool harmless = file > STDERR_FILENO && second > STDERR_FILENO;
    harmless = std::printf("out\n") == 4 && std::fflush(stdout) == 0 && harmless;
    harmless = std::fprintf(stderr, "err\n") == 4 && std::fflush(stderr) == 0 && harmless;
    harmless = (std::cout << "out" << std::endl).good() && harmless;
    harmless = (std::cerr << "err" << std::endl).good() && harmless;
    harmless = write(STDOUT_FILENO, "out\n", 4) == 4 && harmless;
    harmless = write(STDERR_FILENO, "err\n", 4) == 4 && harmless;
    g_log_default_handler("flow", G_LOG_LEVEL_WARNING, "a warning", nullptr);
    g_log_default_handler("flow", G_LOG_LEVEL_MESSAGE, "a message", nullptr);
    eina_log_print_cb_set(eina_log_print_cb_stderr, nullptr);
    EINA_LOG_CRIT("an error");
    return harmless && lseek(file, 0, SEEK_END) == 0 && lseek(second, 0, SEEK_END) == 0;
}

class MainTest : public FlowFixture {
  protected:
    using Callbacks = ui_app_lifecycle_callback_s;

    void SetUp() override {
        FlowFixture::SetUp();
        m_before = std::filesystem::current_path();
        std::filesystem::current_path(m_folder.path());
        platform().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, std::string("C.UTF-8"));
        platform().setVconf(COUNTER, 5);
        ZoltConfig::deinitialize();
        writeConfiguration("registered");
        platform().clearLog();
        platform().clearCalls();
    }
    void TearDown() override {
        std::filesystem::current_path(m_before);
        FlowFixture::TearDown();
    }

    void writeConfiguration(const std::string& registrationFile) {
        m_folder.write("config.xml", "<config><i name=\"LayoutPath\">" + themeFolder() +
                                         "</i><i name=\"SourceVersion\">1.2.3</i>"
                                         "<i name=\"ShopRegistrationFilePath\">" +
                                         registrationFile +
                                         "</i><i name=\"DefaultLang\">C.UTF-8</i>"
                                         "<i name=\"LocalesPath\">locale</i>"
                                         "<i name=\"FakeSystemCalls\">0</i></config>");
    }

    // Runs the program with LIFE instead of the framework's main loop, and returns its status.
    static int run(const std::function<int(Callbacks&, void*)>& life) {
        OwnStreams streams;
        platform().setAppMain([&](int, char**, Callbacks* callbacks, void* data) {
            streams.giveBack();  // the program has closed its own, but failures must be printed
            s_streamsWereClosed = streams.wereClosed();
            return life(*callbacks, data);
        });
        const int status = callMain();
        ZOLT::GUI::setToolkitLost(false);  // the tests still use the toolkit
        return status;
    }
    static int callMain() {
        char name[] = "zolt-hub";
        char* arguments[] = {name, nullptr};
        return zolt_main(1, arguments);
    }
    // Deletes the screens before an exception is thrown. After one the program leaves its widgets
    // to the end of the process, but this process continues.
    static void dropScreens() {
        auto& history = ControllerProbe::history(*Controller::m_self);
        for (; !history.empty(); history.pop_back()) {
            delete history.back();
        }
    }
    // The same with an ordinary start and end around BODY.
    static int runOrdinary(const std::function<void(Callbacks&, void*)>& body) {
        return run([&body](Callbacks& callbacks, void* data) {
            EXPECT_TRUE(callbacks.create(data));
            callbacks.app_control(nullptr, data);
            callbacks.resume(data);
            body(callbacks, data);
            settle();
            callbacks.terminate(data);
            return 0;
        });
    }
    static std::vector<std::string> warnings() {
        return platform().messages(LOG_ID_SYSTEM, DLOG_WARN);
    }
    // Which of FUNCTIONS wrote lines since the log was cleared, line by line.
    static std::vector<std::string> order(const std::vector<std::string>& functions) {
        std::vector<std::string> found;
        for (const auto& line : platform().log()) {
            if (std::find(functions.begin(), functions.end(), line.function) != functions.end()) {
                found.push_back(line.function);
            }
        }
        return found;
    }
    static int counter() { return platform().vconfInt(COUNTER).value_or(-100); }

    static bool s_streamsWereClosed;  // whether the last run closed its streams before its loop

  private:
    std::filesystem::path m_before;
};

bool MainTest::s_streamsWereClosed = false;

TEST_F(MainTest, AnOrdinaryRunReturnsZeroAndRestoresTheCounter) {
    EXPECT_EQ(0, runOrdinary([](Callbacks&, void*) { EXPECT_EQ(6, counter()); }));
    EXPECT_EQ(5, counter());
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_INFO),
                ElementsAre("ZOLT GUI application: Initializing", "ZOLT GUI application: Starting",
                            "ZOLT GUI application: Closing"));
    EXPECT_THAT(callsSince(), ElementsAre("applicationCancelled"));
    EXPECT_EQ(nullptr, Controller::m_self);
}

TEST_F(MainTest, TheStandardStreamsAreClosedWhileTheProgramRuns) {
    run([](Callbacks&, void*) { return 0; });
    EXPECT_TRUE(s_streamsWereClosed);
}

// With the process's own streams, on a platform that redirects nothing.
TEST_F(MainTest, PrintingAfterTheStreamsAreClosedIsSafe) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            bool harmless = false;
            platform().setAppMain([&harmless](int, char**, Callbacks*, void*) {
                harmless = printingIsHarmless();
                return 0;
            });
            callMain();
            std::_Exit(harmless ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(MainTest, TheFlagFileIsThereBeforeTheLoopAndStaysEmptyAfterTheEnd) {
    run([](Callbacks&, void*) {
        EXPECT_TRUE(support::fileExists("service-cond-flag"));
        return 0;
    });
    EXPECT_EQ("", support::readFile("service-cond-flag"));
}

TEST_F(MainTest, AFlagFileThatCannotBeWrittenDoesNotStopTheProgram) {
    std::filesystem::create_directory("service-cond-flag");
    announceWarning("Cannot open file, path is: service-cond-flag");
    EXPECT_EQ(0, run([](Callbacks&, void*) { return 0; }));
}

TEST_F(MainTest, FiveEventHandlersAreAddedInTheirOrder) {
    void* context = nullptr;
    run([&context](Callbacks&, void* data) {
        context = data;
        return 0;
    });
    const auto handlers = platform().eventHandlers();
    ASSERT_EQ(5U, handlers.size());
    const app_event_type_e order[] = {APP_EVENT_LOW_BATTERY, APP_EVENT_LOW_MEMORY,
                                      APP_EVENT_DEVICE_ORIENTATION_CHANGED,
                                      APP_EVENT_LANGUAGE_CHANGED, APP_EVENT_REGION_FORMAT_CHANGED};
    for (size_t index = 0; index < handlers.size(); ++index) {
        EXPECT_EQ(order[index], handlers[index].type);
        const bool language = handlers[index].type == APP_EVENT_LANGUAGE_CHANGED;
        EXPECT_EQ(language, handlers[index].callback != nullptr);
        EXPECT_EQ(language ? context : nullptr, handlers[index].data);
    }
}

TEST_F(MainTest, AFrameworkThatFailsAtOnceIsOneWarningAndStatusZero) {
    announceWarning("ui_app_main() is failed, error code = -22");
    EXPECT_EQ(0, run([](Callbacks&, void*) { return -22; }));
    EXPECT_EQ(5, counter());
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_INFO),
                Contains("ZOLT GUI application: Closing"));
}

TEST_F(MainTest, AnExceptionIsOneWarningAndStatusOne) {
    announceWarning("Exception caught: broken");
    EXPECT_EQ(1, run([](Callbacks&, void*) -> int {
                  throw ZOLT::Exception("broken", ZOLT::GENERIC_ERROR);
              }));
    EXPECT_EQ(5, counter());
    EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_INFO),
                testing::Not(Contains("ZOLT GUI application: Closing")));
}

TEST_F(MainTest, AStandardExceptionIsTheSame) {
    announceWarning("Exception caught: range");
    EXPECT_EQ(1, run([](Callbacks&, void*) -> int { throw std::out_of_range("range"); }));
}

TEST_F(MainTest, AnythingElseThatIsThrownIsStatusOneToo) {
    announceWarning("Unknow exception caught");
    EXPECT_EQ(1, run([](Callbacks&, void*) -> int { throw 5; }));
    EXPECT_EQ(5, counter());
}

TEST_F(MainTest, AnExceptionEndsTheThreadPoolAndThenTheFlow) {
    announceWarning("Exception caught: broken");
    EXPECT_EQ(1, run([](Callbacks& callbacks, void* data) -> int {
                  callbacks.create(data);
                  callbacks.app_control(nullptr, data);
                  EXPECT_NE(nullptr, Controller::m_self);
                  dropScreens();
                  platform().clearLog();
                  throw std::runtime_error("broken");
              }));
    EXPECT_EQ(nullptr, Controller::m_self);
    EXPECT_THAT(order({"~ThreadPool", "~Controller"}), ElementsAre("~ThreadPool", "~Controller"));
}

// --- the start

TEST_F(MainTest, TheStartLoadsConfigurationVersionDeviceAndLanguage) {
    EXPECT_EQ(0, run([](Callbacks& callbacks, void* data) {
                  ZOLT::DeviceInfo::m_imageType = 7;
                  EXPECT_TRUE(callbacks.create(data));
                  EXPECT_EQ("1.2.3", ZoltConfig::get("SourceVersion"));
                  EXPECT_EQ(ZOLT::DeviceInfo::IMAGE_RELEASE, ZOLT::DeviceInfo::m_imageType);
                  EXPECT_EQ(nullptr, Controller::m_self);
                  return 0;
              }));
    EXPECT_TRUE(logged("Version:\t\t\tZOLT-1.2.3"));
    EXPECT_TRUE(logged("AppName:\t\t\tZOLT GUI"));
    EXPECT_TRUE(platform().hasLine(LOG_ID_MAIN, DLOG_DEBUG, "Use usual system calls"));
    EXPECT_TRUE(logged("Language set successfully to [C.UTF-8]"));
    EXPECT_EQ(1, entered("setUILocales"));
}

TEST_F(MainTest, AMissingConfigurationEndsTheProgramWithStatusOne) {
    std::filesystem::remove("config.xml");
    EXPECT_EQ(1, run([](Callbacks& callbacks, void* data) {
                  callbacks.create(data);
                  return 0;
              }));
    EXPECT_THAT(warnings(), Contains(testing::StartsWith("Exception caught: ")));
    EXPECT_EQ(5, counter());
    platform().clearLog();
}

TEST_F(MainTest, ALanguageThatCannotBeSetEndsTheProgramWithStatusOne) {
    platform().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, std::string("xx_XX.nowhere"));
    announceWarning("Exception caught: Unable to set the language");
    EXPECT_EQ(1, run([](Callbacks& callbacks, void* data) {
                  callbacks.create(data);
                  return 0;
              }));
}

TEST_F(MainTest, AStartWithoutDataEndsTheProgramWithStatusOne) {
    announceWarning("Exception caught: No application data");
    EXPECT_EQ(1, run([](Callbacks& callbacks, void*) {
                  callbacks.create(nullptr);
                  return 0;
              }));
}

TEST_F(MainTest, ALaunchWithoutARegistrationShowsItsMenu) {
    runOrdinary([](Callbacks&, void*) { EXPECT_EQ(1, entered("showMainMenuUnregisteredScreen")); });
}

TEST_F(MainTest, ALaunchWithARegistrationShowsItsMenu) {
    m_folder.write("registered", "");
    runOrdinary([](Callbacks&, void*) { EXPECT_EQ(1, entered("showMainMenuRegisteredScreen")); });
}

TEST_F(MainTest, ALaunchWithoutDataIsRefused) {
    announceWarning("Bad app function call");
    EXPECT_EQ(0, run([](Callbacks& callbacks, void*) {
                  callbacks.app_control(nullptr, nullptr);
                  return 0;
              }));
}

TEST_F(MainTest, ASecondLaunchBuildsTheNewFlowBeforeTheOldOneIsDestroyedAndClearsSelf) {
    EXPECT_EQ(0, runOrdinary([](Callbacks& callbacks, void* data) {
                  platform().clearLog();
                  callbacks.app_control(nullptr, data);
                  EXPECT_THAT(order({"Controller", "~Controller", "~MainMenuUnregisteredScreen",
                                     "initialize"}),
                              ElementsAre("Controller", "~Controller",
                                          "~MainMenuUnregisteredScreen", "initialize"));
                  EXPECT_EQ(nullptr, Controller::m_self);
              }));
    EXPECT_THAT(callsSince(), ElementsAre("applicationCancelled"));
}

// --- the language

TEST_F(MainTest, ALanguageChangeReadsTheEventsOwnArgument) {
    runOrdinary([](Callbacks&, void* data) {
        platform().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, std::string("ko_KR.utf8"));
        EXPECT_TRUE(platform().fireAppEvent(APP_EVENT_LANGUAGE_CHANGED, data));
        EXPECT_EQ(2, entered("setUILocales"));
    });
}

TEST_F(MainTest, ALanguageChangeWithoutInformationEndsTheProgramWithStatusOne) {
    announceWarning("Exception caught: No application data");
    EXPECT_EQ(1, run([](Callbacks& callbacks, void* data) {
                  callbacks.create(data);
                  platform().fireAppEvent(APP_EVENT_LANGUAGE_CHANGED, nullptr);
                  return 0;
              }));
}

// --- the counter

TEST_F(MainTest, TheCounterFollowsPauseAndResume) {
    runOrdinary([](Callbacks& callbacks, void* data) {
        EXPECT_EQ(6, counter());
        callbacks.pause(data);
        EXPECT_EQ(5, counter());
        callbacks.resume(data);
        EXPECT_EQ(6, counter());
    });
    EXPECT_EQ(5, counter());
    EXPECT_TRUE(logged("calling Pause"));
    EXPECT_TRUE(logged("calling Resume"));
    EXPECT_TRUE(logged("calling Terminate"));
}

TEST_F(MainTest, ASecondPauseChangesNothingAndLogsThat) {
    runOrdinary([](Callbacks& callbacks, void* data) {
        callbacks.pause(data);
        platform().clearLog();
        platform().clearCalls();
        callbacks.pause(data);
        EXPECT_TRUE(logged("Vconf is already changed-------------------Current vconf is: 5"));
        EXPECT_THAT(platform().calls("vconf_set_int"), IsEmpty());
    });
    EXPECT_EQ(5, counter());
}

TEST_F(MainTest, RaisingAndLoweringLogTheCounter) {
    run([](Callbacks&, void*) { return 0; });
    const auto lines = platform().messages(LOG_ID_SYSTEM, DLOG_DEBUG);
    EXPECT_THAT(lines, ElementsAre("increasing Vconf", "current vconf is: 5", "Decreasing Vconf",
                                   "current vconf is: 6"));
}

TEST_F(MainTest, ACounterThatCannotBeReadIsWrittenFromMinusOne) {
    platform().answer("vconf_get_int", -1);
    run([](Callbacks&, void*) { return 0; });
    EXPECT_THAT(platform().calls("vconf_set_int"),
                ElementsAre(std::string("vconf_set_int(") + COUNTER + ", 0)",
                            std::string("vconf_set_int(") + COUNTER + ", -2)"));
}

TEST_F(MainTest, ACounterAtAnIntegerLimitWrapsAroundAndBack) {
    for (const int start : {INT_MAX, INT_MIN, -1}) {
        platform().setVconf(COUNTER, start);
        platform().clearLog();
        const int raised = start == INT_MAX ? INT_MIN : start + 1;
        run([raised](Callbacks&, void*) {
            EXPECT_EQ(raised, counter());
            return 0;
        });
        EXPECT_EQ(start, counter());
        EXPECT_THAT(platform().messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                    ElementsAre("increasing Vconf", "current vconf is: " + std::to_string(start),
                                "Decreasing Vconf", "current vconf is: " + std::to_string(raised)));
    }
}

// Lowering from the smallest integer, which is possible only if another process has set the
// counter.
TEST_F(MainTest, ACounterThatOthersHaveSetToTheSmallestIsLoweredToTheLargest) {
    run([](Callbacks&, void*) {
        platform().setVconf(COUNTER, INT_MIN);
        return 0;
    });
    EXPECT_EQ(INT_MAX, counter());
}

// --- the end

TEST_F(MainTest, ATerminationWithoutDataWarnsAndLeavesTheCounterRaised) {
    announceWarning("Bad app function call");
    run([](Callbacks& callbacks, void*) {
        callbacks.terminate(nullptr);
        EXPECT_EQ(6, counter());
        return 0;
    });
    EXPECT_EQ(5, counter());
}

TEST_F(MainTest, ATerminationNotifiesTheDaemonThenEndsTheLoopThenDestroysTheFlow) {
    EXPECT_EQ(0, runOrdinary([](Callbacks&, void*) { platform().clearLog(); }));
    EXPECT_THAT(order({"cancel", "applicationCancelled", "terminate", "~Controller"}),
                ElementsAre("cancel", "applicationCancelled", "terminate", "~Controller"));
}

TEST_F(MainTest, ATerminationBeforeTheFirstLaunchOnlyLowersTheCounter) {
    EXPECT_EQ(0, run([](Callbacks& callbacks, void* data) {
                  callbacks.create(data);
                  callbacks.terminate(data);
                  EXPECT_EQ(5, counter());
                  return 0;
              }));
    EXPECT_THAT(callsSince(), IsEmpty());
}

TEST_F(MainTest, ATerminationThatTheDaemonRejectsEndsWithStatusOne) {
    daemon().fail("applicationCancelled", "gone");
    EXPECT_EQ(1, runOrdinary([](Callbacks&, void*) { dropScreens(); }));
    ASSERT_EQ(1U, warnings().size());
    EXPECT_THAT(warnings()[0],
                testing::StartsWith("Exception caught: Failed inform that application quited: "));
    EXPECT_EQ(nullptr, Controller::m_self);
    EXPECT_EQ(5, counter());
    platform().clearLog();
}

}  // namespace
}  // namespace flow
