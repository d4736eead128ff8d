// SPDX-License-Identifier: Apache-2.0
// Jobs of the thread pool: when they run, in which order, and how they end.
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/Exception.h"
#include "common/ThreadPool.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using support::waitUntil;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

namespace ZOLT {

// Replaces the start of a thread.
class ThreadPoolStart {
  public:
    // The numbers that dump shows, in the order of a job's life.
    static constexpr int STATUSES[] = {ThreadPool::JOB_WAITING, ThreadPool::JOB_RUNNING,
                                       ThreadPool::JOB_FINISHED, ThreadPool::JOB_DONE};

    using MakeThread = boost::thread (*)(const std::function<void()>& body);

    explicit ThreadPoolStart(MakeThread makeThread) : m_before(ThreadPool::s_makeThread) {
        ThreadPool::s_makeThread = makeThread;
    }
    ~ThreadPoolStart() { ThreadPool::s_makeThread = m_before; }
    ThreadPoolStart(const ThreadPoolStart&) = delete;
    ThreadPoolStart& operator=(const ThreadPoolStart&) = delete;

  private:
    MakeThread m_before;
};

namespace {

// Jobs wait here until it is opened. Waiting is no interruption point.
class Gate {
  public:
    void open() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_open = true;
        m_condition.notify_all();
    }
    void wait() {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_condition.wait(lock, [this] { return m_open; });
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_open = false;  // guarded by m_mutex
};

// Sleeps, at an interruption point, for longer than any test takes.
void sleepForLong() {
    boost::this_thread::sleep(boost::posix_time::hours(1));
}

// Runs ACTION when the thread that asks for it ends.
void atThreadExit(std::function<void()> action) {
    struct AtExit {
        AtExit() = default;
        AtExit(const AtExit&) = delete;
        AtExit& operator=(const AtExit&) = delete;
        ~AtExit() {
            if (run) {
                run();
            }
        }
        std::function<void()> run;
    };
    static thread_local AtExit exit;
    exit.run = std::move(action);
}

// What dump logs about a job.
struct Entry {
    std::string queue;
    int status = -1;
    int worker = -2;
    std::string counter;
};

constexpr int WAITING = 0;
constexpr int RUNNING = 1;
constexpr int DONE = 3;

class ThreadPoolTest : public testing::Test {
  protected:
    void SetUp() override {
        platform.reset();
        s_startsToFail = 0;
    }

    // The job with this number as dump logs it, if it is still in the pool.
    std::optional<Entry> entry(int id) {
        const size_t before = platform.log().size();
        ThreadPool::dump();
        const auto log = platform.log();
        for (size_t index = before; index < log.size(); ++index) {
            const auto& text = log[index].message;
            const auto idAt = text.find(", id: " + std::to_string(id) + ", ");
            if (log[index].function != "dump" || idAt == std::string::npos) {
                continue;
            }
            const auto statusAt = text.find(", status: ");
            const auto counterAt = text.find(", counter: ");
            const auto workerAt = text.find(", worker: ");
            return Entry{text.substr(12, statusAt - 12), std::stoi(text.substr(statusAt + 10)),
                         std::stoi(text.substr(workerAt + 10)), text.substr(counterAt + 11)};
        }
        return std::nullopt;
    }

    bool hasStatus(int id, int status) {
        const auto found = entry(id);
        return found && found->status == status;
    }

    // Whether the job has ended; it may still be in the pool.
    bool ended(int id) {
        const auto found = entry(id);
        return !found || found->status == DONE;
    }

    // The part that all lines about a job share.
    static std::string about(int id, const Entry& job) {
        return "worker: " + std::to_string(job.worker) + " job: " + std::to_string(id) +
               " queue: " + job.queue + ", counter: " + job.counter;
    }

    bool waitUntilRunning(int id) {
        return waitUntil([&] { return hasStatus(id, RUNNING); });
    }
    bool waitUntilEnded(int id) {
        return waitUntil([&] { return ended(id); });
    }

    bool warned(const std::string& message) const {
        return platform.hasLine(LOG_ID_SYSTEM, DLOG_WARN, message);
    }
    bool progress(const std::string& message) const {
        return platform.hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, message);
    }

    // Fails s_startsToFail times, then starts threads again.
    static boost::thread makeThreadOrFail(const std::function<void()>& body) {
        if (s_startsToFail > 0) {
            --s_startsToFail;
            throw boost::thread_resource_error(EAGAIN, "no thread");
        }
        return boost::thread(body);
    }

    static std::atomic<int> s_startsToFail;
    ScriptedPlatform& platform = ScriptedPlatform::get();
};

std::atomic<int> ThreadPoolTest::s_startsToFail{0};

TEST_F(ThreadPoolTest, JobWithoutAPoolIsRefused) {
    try {
        ThreadPool::add([] {}, "");
        FAIL() << "nothing thrown";
    } catch (const Exception& exception) {
        EXPECT_STREQ(exception.what(), "ThreadPool is not launched");
        EXPECT_EQ(exception.code(), GENERIC_ERROR);
    }
}

TEST_F(ThreadPoolTest, EverythingElseWithoutAPoolDoesNothing) {
    ThreadPool::dump();
    ThreadPool::removeQueue("queue");
    ThreadPool::interrupt(0);
    ThreadPool::interrupt("queue");
    ThreadPool::join("queue");
    ThreadPool::join();
    EXPECT_FALSE(ThreadPool::running("queue"));
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                ElementsAre("Thread queue is not running"));
}

TEST_F(ThreadPoolTest, SecondPoolIsRefusedAndTheFirstGoesOn) {
    const ThreadPool pool;
    try {
        const ThreadPool second;
        FAIL() << "nothing thrown";
    } catch (const Exception& exception) {
        EXPECT_STREQ(exception.what(), "ThreadPool already launched");
        EXPECT_EQ(exception.code(), GENERIC_ERROR);
    }
    EXPECT_EQ(platform.countLines("Called ZOLT::ThreadPool::ThreadPool()"), 1);
    std::atomic<bool> ran{false};
    ThreadPool::add([&] { ran = true; }, "");
    EXPECT_TRUE(waitUntil([&] { return ran.load(); }));
}

TEST_F(ThreadPoolTest, StoppedPoolTakesNoJobAndMayBeStoppedAgain) {
    ThreadPool pool;
    pool.stop();
    EXPECT_THROW(ThreadPool::add([] {}, ""), Exception);
    pool.stop();
}

TEST_F(ThreadPoolTest, SecondStopOfAnOldPoolTakesTheNextOneAwayAndAThirdMayFollow) {
    ThreadPool old;
    old.stop();
    const ThreadPool next;
    old.stop();
    EXPECT_THROW(ThreadPool::add([] {}, ""), Exception);
    // Two masters wait on one condition variable: each must wake for its own jobs and its own end.
    const ThreadPool third;
    for (int round = 0; round < 20; ++round) {
        EXPECT_TRUE(waitUntilEnded(ThreadPool::add([] {}, "queue")));
    }
}

TEST_F(ThreadPoolTest, JobIsStartedAndJoinedWithItsLines) {
    const ThreadPool pool;
    Gate gate;
    const int id = ThreadPool::add([&] { gate.wait(); }, "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    const auto job = entry(id);
    ASSERT_TRUE(job);
    EXPECT_EQ(job->worker, 0);
    EXPECT_EQ(job->queue, "queue");
    EXPECT_TRUE(progress("Started " + about(id, *job)));
    EXPECT_FALSE(progress("Joined " + about(id, *job)));
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return progress("Joined " + about(id, *job)); }));
    EXPECT_EQ(platform.findLine("Joined " + about(id, *job))->function, "master");
    EXPECT_EQ(platform.findLine("Started " + about(id, *job))->function, "master");
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
}

TEST_F(ThreadPoolTest, NumberAndCounterGoUpTogether) {
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "");
    const int second = ThreadPool::add([&] { gate.wait(); }, "");
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(std::stoi(entry(second)->counter), std::stoi(entry(first)->counter) + 1);
    gate.open();
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, FirstJobOfAProcessHasNumberZeroAndCounterOne) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            const ThreadPool pool;
            Gate gate;
            const int id = ThreadPool::add([&] { gate.wait(); }, "");
            const bool good = id == 0 && entry(id)->counter == "1";
            gate.open();
            ThreadPool::join();
            std::_Exit(good ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ThreadPoolTest, SixteenthJobWaitsForAFreeSlotAndTakesIt) {
    const ThreadPool pool;
    std::vector<Gate> gates(16);
    std::vector<int> ids;
    ids.reserve(gates.size());
    for (auto& gate : gates) {
        ids.push_back(ThreadPool::add([&gate] { gate.wait(); }, ""));
    }
    for (int job = 0; job < 15; ++job) {
        ASSERT_TRUE(waitUntilRunning(ids[job]));
        EXPECT_EQ(entry(ids[job])->worker, job);
    }
    EXPECT_EQ(entry(ids[15])->status, WAITING);
    EXPECT_EQ(entry(ids[15])->worker, -1);
    gates[9].open();
    ASSERT_TRUE(waitUntilRunning(ids[15]));
    EXPECT_EQ(entry(ids[15])->worker, 9);
    for (auto& gate : gates) {
        gate.open();
    }
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, NewJobTakesTheLowestFreeSlot) {
    const ThreadPool pool;
    std::vector<Gate> gates(11);
    std::vector<int> ids;
    for (int job = 0; job < 10; ++job) {
        ids.push_back(ThreadPool::add([&gate = gates[job]] { gate.wait(); }, ""));
        ASSERT_TRUE(waitUntilRunning(ids.back()));
    }
    gates[7].open();
    ASSERT_TRUE(waitUntilEnded(ids[7]));
    gates[4].open();
    ASSERT_TRUE(waitUntilEnded(ids[4]));
    const int next = ThreadPool::add([&] { gates[10].wait(); }, "");
    ASSERT_TRUE(waitUntilRunning(next));
    EXPECT_EQ(entry(next)->worker, 4);
    for (auto& gate : gates) {
        gate.open();
    }
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, JobsWithoutAQueueRunSideBySide) {
    const ThreadPool pool;
    Gate first;
    Gate second;
    // Each waits for the other, so neither ends alone.
    const int one = ThreadPool::add(
        [&] {
            first.open();
            second.wait();
        },
        "");
    const int two = ThreadPool::add(
        [&] {
            second.open();
            first.wait();
        },
        "");
    EXPECT_TRUE(waitUntilEnded(one));
    EXPECT_TRUE(waitUntilEnded(two));
}

TEST_F(ThreadPoolTest, JobsOfAQueueNeverOverlapAndKeepTheirOrder) {
    const ThreadPool pool;
    std::atomic<int> inside{0};
    std::atomic<bool> overlapped{false};
    std::vector<int> order;
    std::vector<int> expected;
    int last = 0;
    for (int job = 0; job < 200; ++job) {
        expected.push_back(job);
        last = ThreadPool::add(
            [&, job] {
                overlapped = overlapped || ++inside != 1;
                order.push_back(job);
                std::this_thread::yield();
                --inside;
            },
            "queue");
    }
    EXPECT_TRUE(waitUntilEnded(last));
    EXPECT_FALSE(overlapped);
    EXPECT_EQ(order, expected);
}

TEST_F(ThreadPoolTest,
       QueueHoldsBackItsSecondJobAlsoWhenBothWereThereFirstAndAnUnnamedOneMayOvertake) {
    const ThreadPoolStart starts(makeThreadOrFail);
    // No thread starts until all three jobs wait, so the master meets them in one walk.
    s_startsToFail = 1000;
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "queue");
    const int second = ThreadPool::add([] {}, "queue");
    EXPECT_TRUE(waitUntil([this] { return !platform.messages(LOG_ID_SYSTEM, DLOG_WARN).empty(); }));
    EXPECT_TRUE(hasStatus(first, WAITING));
    EXPECT_TRUE(hasStatus(second, WAITING));
    s_startsToFail = 0;
    const int third = ThreadPool::add([] {}, "");
    EXPECT_TRUE(waitUntilEnded(third));
    EXPECT_TRUE(hasStatus(first, RUNNING));
    EXPECT_TRUE(hasStatus(second, WAITING));
    gate.open();
    EXPECT_TRUE(waitUntilEnded(second));
}

TEST_F(ThreadPoolTest, QueuesDoNotHoldBackEachOther) {
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "one");
    const int other = ThreadPool::add([] {}, "two");
    EXPECT_TRUE(waitUntilEnded(other));
    EXPECT_TRUE(hasStatus(first, RUNNING));
    gate.open();
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, JobWithoutAQueueIsCalledUnnamedAndIsInNoQueue) {
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "");
    const int second = ThreadPool::add([&] { gate.wait(); }, "");
    ASSERT_TRUE(waitUntilRunning(first));
    ASSERT_TRUE(waitUntilRunning(second));
    EXPECT_EQ(entry(first)->queue, "Unnamed");
    EXPECT_FALSE(ThreadPool::running("Unnamed"));
    ThreadPool::interrupt("Unnamed");
    ThreadPool::join("Unnamed");
    EXPECT_TRUE(hasStatus(first, RUNNING));
    gate.open();
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, QueueThatIsCalledUnnamedIsAQueueLikeAnyOther) {
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "Unnamed");
    const int second = ThreadPool::add([] {}, "Unnamed");
    const int free = ThreadPool::add([] {}, "");
    EXPECT_TRUE(waitUntilEnded(free));
    EXPECT_TRUE(hasStatus(first, RUNNING));
    EXPECT_TRUE(hasStatus(second, WAITING));
    EXPECT_TRUE(ThreadPool::running("Unnamed"));
    gate.open();
    EXPECT_TRUE(waitUntilEnded(second));
}

TEST_F(ThreadPoolTest, EmptyJobWritesALineAndEnds) {
    const ThreadPool pool;
    const int id = ThreadPool::add(nullptr, "queue");
    EXPECT_TRUE(waitUntilEnded(id));
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN), ElementsAre("nullptr called"));
    EXPECT_EQ(platform.findLine("nullptr called")->function, "operator()");
}

TEST_F(ThreadPoolTest, ExceptionOfAJobIsLoggedAndTheJobIsDone) {
    const ThreadPool pool;
    Gate gate;
    const int id = ThreadPool::add(
        [&] {
            gate.wait();
            throw std::runtime_error("broken");
        },
        "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    const auto job = *entry(id);
    gate.open();
    EXPECT_TRUE(waitUntilEnded(id));
    // The double colon is part of the line.
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
                ElementsAre("Exception (worker: " + std::to_string(job.worker) +
                            " job: " + std::to_string(id) +
                            " queue: queue, counter:: " + job.counter + "): broken"));
}

TEST_F(ThreadPoolTest, AnythingElseThatAJobThrowsIsLoggedAsUnknown) {
    const ThreadPool pool;
    Gate gate;
    const int id = ThreadPool::add(
        [&] {
            gate.wait();
            throw 1;
        },
        "");
    ASSERT_TRUE(waitUntilRunning(id));
    const auto job = *entry(id);
    gate.open();
    EXPECT_TRUE(waitUntilEnded(id));
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
                ElementsAre("Caught unknown exception in " + about(id, job)));
}

TEST_F(ThreadPoolTest, InterruptByNumberEndsAJobAtItsInterruptionPoint) {
    const ThreadPool pool;
    const int id = ThreadPool::add(sleepForLong, "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    const auto job = *entry(id);
    ThreadPool::interrupt(id);
    EXPECT_TRUE(waitUntilEnded(id));
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN),
                ElementsAre("Interrupted " + about(id, job)));
}

TEST_F(ThreadPoolTest, InterruptByQueueEndsItsRunningJobAndTheNextOneRuns) {
    const ThreadPool pool;
    const int first = ThreadPool::add(sleepForLong, "queue");
    const int second = ThreadPool::add([] {}, "queue");
    ASSERT_TRUE(waitUntilRunning(first));
    const auto job = *entry(first);
    ThreadPool::interrupt("queue");
    EXPECT_TRUE(waitUntilEnded(first));
    EXPECT_TRUE(waitUntilEnded(second));
    EXPECT_TRUE(progress("Interrupting: queue, counter: " + job.counter));
    EXPECT_TRUE(warned("Interrupted " + about(first, job)));
}

TEST_F(ThreadPoolTest, InterruptDoesNothingToAJobThatDoesNotRun) {
    const ThreadPool pool;
    Gate gate;
    std::atomic<bool> ran{false};
    const int first = ThreadPool::add([&] { gate.wait(); }, "queue");
    const int second = ThreadPool::add(
        [&] {
            boost::this_thread::interruption_point();
            ran = true;
        },
        "queue");
    ASSERT_TRUE(waitUntilRunning(first));
    ThreadPool::interrupt(second);
    ThreadPool::interrupt(second + 1000);
    ThreadPool::interrupt("other");
    gate.open();
    EXPECT_TRUE(waitUntilEnded(second));
    EXPECT_TRUE(ran);
    ThreadPool::interrupt(second);
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
}

TEST_F(ThreadPoolTest, InterruptedJobWithoutAnInterruptionPointRunsOn) {
    const ThreadPool pool;
    Gate gate;
    std::atomic<bool> finished{false};
    const int id = ThreadPool::add(
        [&] {
            gate.wait();
            finished = true;
        },
        "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    ThreadPool::interrupt(id);
    EXPECT_TRUE(ThreadPool::running("queue"));
    gate.open();
    EXPECT_TRUE(waitUntilEnded(id));
    EXPECT_TRUE(finished);
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN), IsEmpty());
}

TEST_F(ThreadPoolTest, RemovedQueueLosesItsWaitingJobsAndKeepsTheRunningOne) {
    const ThreadPool pool;
    Gate gate;
    std::atomic<int> ran{0};
    const int running = ThreadPool::add(
        [&] {
            gate.wait();
            ++ran;
        },
        "queue");
    ASSERT_TRUE(waitUntilRunning(running));
    const int waiting = ThreadPool::add([&] { ran += 100; }, "queue");
    ThreadPool::removeQueue("queue");
    EXPECT_TRUE(ended(waiting));
    EXPECT_TRUE(hasStatus(running, RUNNING));
    gate.open();
    const int later = ThreadPool::add([&] { ++ran; }, "queue");
    EXPECT_TRUE(waitUntilEnded(later));
    EXPECT_EQ(ran, 2);
}

TEST_F(ThreadPoolTest, RemovingAQueueLeavesOthersAlone) {
    const ThreadPoolStart starts(makeThreadOrFail);
    s_startsToFail = 1000000;
    const ThreadPool pool;
    const int removed = ThreadPool::add([] {}, "Unnamed");
    const int other = ThreadPool::add([] {}, "other");
    const int unnamed = ThreadPool::add([] {}, "");
    ThreadPool::removeQueue("Unnamed");
    EXPECT_TRUE(ended(removed));
    EXPECT_TRUE(hasStatus(other, WAITING));
    EXPECT_TRUE(hasStatus(unnamed, WAITING));
}

TEST_F(ThreadPoolTest, JoinOfAQueueWaitsForItsRunningJob) {
    const ThreadPool pool;
    Gate gate;
    std::atomic<bool> finished{false};
    const int id = ThreadPool::add(
        [&] {
            gate.wait();
            finished = true;
        },
        "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    const auto job = *entry(id);
    const std::string joining = "Joining thread queue, counter: " + job.counter + "...";
    const std::string joined = "Joined queue, counter: " + job.counter + "...";
    std::thread opener([&] {
        waitUntil([&] { return progress(joining); });
        EXPECT_FALSE(progress(joined));
        gate.open();
    });
    ThreadPool::join("queue");
    EXPECT_TRUE(finished);
    EXPECT_FALSE(ThreadPool::running("queue"));
    opener.join();
    EXPECT_TRUE(progress(joined));
    EXPECT_EQ(platform.findLine(joined)->function, "join");
}

TEST_F(ThreadPoolTest, JoinOfAQueueWithoutARunningJobReturnsAtOnceAlsoWhenJobsWait) {
    const ThreadPoolStart starts(makeThreadOrFail);
    s_startsToFail = 1000000;
    const ThreadPool pool;
    const int waiting = ThreadPool::add([] {}, "queue");
    ThreadPool::join("queue");
    ThreadPool::join("other");
    EXPECT_TRUE(hasStatus(waiting, WAITING));
    EXPECT_FALSE(ThreadPool::running("queue"));
}

TEST_F(ThreadPoolTest, JobThatSomebodyJoinsStaysUntilAllHaveSeenItsEnd) {
    Gate gate;
    Gate secondMayGo;
    std::atomic<int> joined{0};
    std::string counter;  // all of this outlives the pool, whose threads log
    const ThreadPool pool;
    const int id = ThreadPool::add([&] { gate.wait(); }, "queue");
    ASSERT_TRUE(waitUntilRunning(id));
    counter = "queue, counter: " + entry(id)->counter + "...";
    platform.whenLogged([&](const support::LogLine& line) {
        if (line.message == "Joined " + counter && ++joined == 2) {
            secondMayGo.wait();
        }
    });
    std::thread first([] { ThreadPool::join("queue"); });
    std::thread second([] { ThreadPool::join("queue"); });
    EXPECT_TRUE(waitUntil([&] { return platform.countLines("Joining thread " + counter) == 2; }));
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return joined == 2; }));
    // Each job that ends makes the master look for jobs to remove.
    for (int round = 0; round < 5; ++round) {
        EXPECT_TRUE(waitUntilEnded(ThreadPool::add([] {}, "")));
    }
    EXPECT_TRUE(hasStatus(id, DONE));
    secondMayGo.open();
    first.join();
    second.join();
    EXPECT_TRUE(waitUntil([&] {
        ThreadPool::add([] {}, "");
        return !entry(id);
    }));
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, JoinOfEverythingCancelsWhatWaitsAndWaitsForWhatRuns) {
    const ThreadPool pool;
    Gate gate;
    std::atomic<int> finished{0};
    std::atomic<bool> cancelledRan{false};
    const int first = ThreadPool::add(
        [&] {
            gate.wait();
            ++finished;
        },
        "queue");
    const int second = ThreadPool::add(
        [&] {
            gate.wait();
            ++finished;
        },
        "");
    ASSERT_TRUE(waitUntilRunning(first));
    ASSERT_TRUE(waitUntilRunning(second));
    ThreadPool::add([&] { cancelledRan = true; }, "queue");
    std::thread opener([&] {
        waitUntil([&] {
            return platform.hasLine(
                LOG_ID_SYSTEM, DLOG_DEBUG,
                "Joining thread queue, counter: " + entry(first)->counter + "...");
        });
        gate.open();
    });
    ThreadPool::join();
    EXPECT_EQ(finished, 2);
    opener.join();
    EXPECT_TRUE(waitUntilEnded(second));
    EXPECT_FALSE(cancelledRan);
}

TEST_F(ThreadPoolTest, JoinOfAJobThatHasJustBeenStartedWaitsForIt) {
    // A thread that starts late: the pool counts the job as running before its worker begins.
    const ThreadPoolStart starts([](const std::function<void()>& body) {
        return boost::thread([body] {
            for (int turn = 0; turn < 50; ++turn) {
                std::this_thread::yield();
            }
            body();
        });
    });
    const ThreadPool pool;
    for (int round = 0; round < 300; ++round) {
        std::atomic<bool> finished{false};
        std::atomic<bool> mayEnd{false};
        ThreadPool::add(
            [&] {
                while (!mayEnd) {
                    std::this_thread::yield();
                }
                finished = true;
            },
            "queue");
        ASSERT_TRUE(waitUntil([] { return ThreadPool::running("queue"); }));
        mayEnd = true;
        ThreadPool::join();
        ASSERT_TRUE(finished) << round;
    }
}

TEST_F(ThreadPoolTest, NeitherAddNorTheOthersWaitForAThreadThatIsNotScheduled) {
    // Threads do nothing until the gate opens.
    static Gate* scheduled = nullptr;
    const auto gate = std::make_unique<Gate>();
    scheduled = gate.get();
    const ThreadPoolStart starts([](const std::function<void()>& body) {
        return boost::thread([body] {
            scheduled->wait();
            body();
        });
    });
    const ThreadPool pool;
    std::atomic<int> ran{0};
    std::atomic<bool> returned{false};
    std::thread caller([&] {
        ThreadPool::add([&ran] { ++ran; }, "queue");
        waitUntil([] { return ThreadPool::running("queue"); });
        ThreadPool::add([&ran] { ++ran; }, "queue");
        ThreadPool::dump();
        ThreadPool::removeQueue("other");
        returned = true;
    });
    EXPECT_TRUE(waitUntil([&] { return returned.load(); }));
    EXPECT_EQ(ran, 0);
    gate->open();
    caller.join();
    EXPECT_TRUE(waitUntil([&] { return ran == 2; }));
}

TEST_F(ThreadPoolTest, JoinIsNoInterruptionPointAlsoBeforeTheThreadIsScheduled) {
    static Gate* scheduled = nullptr;
    static std::atomic<int> threads{0};
    const auto gate = std::make_unique<Gate>();
    scheduled = gate.get();
    threads = 0;
    // The second thread, that of the job to join, does nothing until the gate opens.
    const ThreadPoolStart starts([](const std::function<void()>& body) {
        return boost::thread([body, number = ++threads] {
            if (number == 2) {
                scheduled->wait();
            }
            body();
        });
    });
    std::atomic<bool> joined{false};
    Gate mayJoin;
    const ThreadPool pool;
    const int joiner = ThreadPool::add(
        [&] {
            mayJoin.wait();
            ThreadPool::join("late");
            joined = true;
        },
        "joiner");
    ASSERT_TRUE(waitUntilRunning(joiner));
    const int late = ThreadPool::add([] {}, "late");
    ASSERT_TRUE(waitUntilRunning(late));
    ThreadPool::interrupt(joiner);
    mayJoin.open();
    EXPECT_TRUE(waitUntil(
        [&] { return progress("Joining thread late, counter: " + entry(late)->counter + "..."); }));
    gate->open();
    EXPECT_TRUE(waitUntilEnded(joiner));
    EXPECT_TRUE(joined);
}

TEST_F(ThreadPoolTest, RunningIsFalseForAWaitingJobAndForOneThatHasEnded) {
    const ThreadPoolStart starts(makeThreadOrFail);
    s_startsToFail = 1;
    const ThreadPool pool;
    const int waiting = ThreadPool::add([] {}, "zero");
    EXPECT_TRUE(waitUntil([&] {
        return warned("Failed to start worker: 0 job: " + std::to_string(waiting) + " queue: zero");
    }));
    EXPECT_TRUE(hasStatus(waiting, WAITING));
    EXPECT_FALSE(ThreadPool::running("zero"));
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "one");
    ASSERT_TRUE(waitUntilRunning(first));
    const auto job = *entry(first);
    EXPECT_TRUE(ThreadPool::running("one"));
    EXPECT_TRUE(progress("Thread one is running, counter: " + job.counter));
    gate.open();
    EXPECT_TRUE(waitUntilEnded(first));
    EXPECT_FALSE(ThreadPool::running("one"));
    EXPECT_TRUE(progress("Thread one is not running"));
    EXPECT_FALSE(ThreadPool::running(""));
    EXPECT_TRUE(progress("Thread  is not running"));
}

TEST_F(ThreadPoolTest, JobWhoseThreadCannotStartWaitsForTheNextWakeUp) {
    const ThreadPoolStart starts(makeThreadOrFail);
    s_startsToFail = 1;
    const ThreadPool pool;
    std::atomic<bool> ran{false};
    const int id = ThreadPool::add([&] { ran = true; }, "queue");
    const std::string line =
        "Failed to start worker: 0 job: " + std::to_string(id) + " queue: queue";
    EXPECT_TRUE(waitUntil([&] { return warned(line); }));
    EXPECT_TRUE(hasStatus(id, WAITING));
    EXPECT_FALSE(ran);
    Gate gate;
    const int next = ThreadPool::add([&] { gate.wait(); }, "");
    EXPECT_TRUE(waitUntil([&] { return ran.load(); }));
    ASSERT_TRUE(waitUntilRunning(next));
    // The first job has got the slot that stayed free.
    EXPECT_TRUE(
        progress("Started worker: 0 job: " + std::to_string(id) +
                 " queue: queue, counter: " + std::to_string(std::stoi(entry(next)->counter) - 1)));
    gate.open();
    ThreadPool::join();
}

TEST_F(ThreadPoolTest, ThreadThatIsNoneCountsAsAFailedStart) {
    const ThreadPoolStart starts([](const std::function<void()>&) { return boost::thread(); });
    const ThreadPool pool;
    ThreadPool::add([] {}, "");
    EXPECT_TRUE(waitUntil([this] {
        const auto lines = platform.messages(LOG_ID_SYSTEM, DLOG_WARN);
        return !lines.empty() && lines[0].rfind("Failed to start worker: 0 job: ", 0) == 0;
    }));
}

TEST_F(ThreadPoolTest, JobMayAddAJob) {
    const ThreadPool pool;
    std::atomic<bool> ran{false};
    ThreadPool::add([&] { ThreadPool::add([&] { ran = true; }, "queue"); }, "queue");
    EXPECT_TRUE(waitUntil([&] { return ran.load(); }));
    EXPECT_TRUE(waitUntil([] { return !ThreadPool::running("queue"); }));
}

TEST_F(ThreadPoolTest, WaitingJobsNeverRunOnceThePoolIsStopped) {
    std::atomic<bool> ran{false};
    Gate gate;
    Gate over;
    {
        ThreadPool pool;
        const int id = ThreadPool::add(
            [&] {
                atThreadExit([&over] { over.open(); });
                gate.wait();
            },
            "queue");
        ASSERT_TRUE(waitUntilRunning(id));
        ThreadPool::add([&] { ran = true; }, "queue");
        ThreadPool::add([&] { ran = true; }, "queue");
        pool.stop();
        gate.open();
        over.wait();
    }
    EXPECT_FALSE(ran);
}

TEST_F(ThreadPoolTest, JobsAreDestroyedWithThePool) {
    const auto held = std::make_shared<int>(1);
    {
        const ThreadPool pool;
        const int id = ThreadPool::add([held] {}, "queue");
        ASSERT_TRUE(waitUntilEnded(id));
        EXPECT_GE(held.use_count(), 1);
    }
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(ThreadPoolTest, JobThatOutlivesItsPoolAgainstTheRuleEndsUnharmed) {
    Gate gate;
    Gate over;
    {
        const ThreadPool pool;
        const int id = ThreadPool::add(
            [&] {
                atThreadExit([&over] { over.open(); });
                gate.wait();
                throw std::runtime_error("late");
            },
            "queue");
        ASSERT_TRUE(waitUntilRunning(id));
    }
    EXPECT_THROW(ThreadPool::add([] {}, ""), Exception);
    gate.open();
    over.wait();
    ASSERT_EQ(platform.messages(LOG_ID_SYSTEM, DLOG_WARN).size(), 1U);
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_WARN)[0], EndsWith("): late"));
}

TEST_F(ThreadPoolTest, DumpTellsOfEachJobInOrder) {
    const ThreadPool pool;
    Gate gate;
    const int first = ThreadPool::add([&] { gate.wait(); }, "queue");
    const int second = ThreadPool::add([] {}, "queue");
    ASSERT_TRUE(waitUntilRunning(first));
    const int counter = std::stoi(entry(first)->counter);
    platform.clearLog();
    ThreadPool::dump();
    EXPECT_THAT(platform.messages(LOG_ID_SYSTEM, DLOG_DEBUG),
                ElementsAre("Queue name: queue, status: 1, id: " + std::to_string(first) +
                                ", worker: 0, counter: " + std::to_string(counter),
                            "Queue name: queue, status: 0, id: " + std::to_string(second) +
                                ", worker: -1, counter: " + std::to_string(counter + 1)));
    gate.open();
    EXPECT_TRUE(waitUntilEnded(second));
}

// A dump cannot be made to meet a finished job: its master joins and marks it in one go.
TEST_F(ThreadPoolTest, StatusesAreNumberedInTheOrderOfAJobsLife) {
    EXPECT_THAT(ThreadPoolStart::STATUSES, ElementsAre(0, 1, 2, 3));
}

TEST_F(ThreadPoolTest, OperationsOpenWithATraceThatShowsQueueOrNumber) {
    // The value takes the place of the whole parameter list wherever that stands in the signature,
    // and "int" also begins the operation's own name.
    ThreadPool::removeQueue("one");
    ThreadPool::interrupt(7);
    ThreadPool::interrupt("two");
    ThreadPool::join("three");
    ThreadPool::running("four");
    ThreadPool::join();
    ThreadPool::dump();
    {
        ThreadPool pool;
        ASSERT_TRUE(waitUntil(
            [this] { return platform.countLines("Called void ZOLT::ThreadPool::master()") == 1; }));
        pool.stop();
    }
    EXPECT_THAT(
        platform.messages(LOG_ID_MAIN, DLOG_INFO),
        ElementsAre(
            "Called static void ZOLT::ThreadPool::removeQueue(\"one\")",
            "Called static void ZOLT::ThreadPool::7errupt(7)",
            "Called static void ZOLT::ThreadPool::interrupt(\"two\")",
            "Called static void ZOLT::ThreadPool::join(\"three\")",
            "Called static bool ZOLT::ThreadPool::running(\"four\")",
            "Called static void ZOLT::ThreadPool::join()",
            "Called static void ZOLT::ThreadPool::dump()", "Called ZOLT::ThreadPool::ThreadPool()",
            "Called void ZOLT::ThreadPool::master()", "Called void ZOLT::ThreadPool::stop()",
            "Called ZOLT::ThreadPool::~ThreadPool()", "Called void ZOLT::ThreadPool::stop()"));
    platform.clearLog();
    EXPECT_THROW(ThreadPool::add([] {}, "five"), Exception);
    const auto traces = platform.messages(LOG_ID_MAIN, DLOG_INFO);
    ASSERT_FALSE(traces.empty());
    // gcc and clang print the type of the first parameter differently.
    EXPECT_THAT(traces[0],
                StartsWith("Called static int ZOLT::ThreadPool::add(std::function<void"));
    EXPECT_THAT(traces[0], EndsWith(", \"five\")"));
}

TEST_F(ThreadPoolTest, PoolMayGoWhileItsJobsEnd) {
    for (int round = 0; round < 200; ++round) {
        std::atomic<int> ran{0};
        {
            const ThreadPool pool;
            for (int job = 0; job < 5; ++job) {
                ThreadPool::add([&ran] { ++ran; }, job % 2 == 0 ? "queue" : "");
            }
            ThreadPool::join();
        }
        EXPECT_LE(ran, 5);
        platform.clearLog();
    }
}

}  // namespace

}  // namespace ZOLT
