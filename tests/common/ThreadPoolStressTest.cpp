// SPDX-License-Identifier: Apache-2.0
// The thread pool under load: thousands of jobs, in the long run a million, over hundreds of queues
// from several threads, which also interrupt, join, cancel and ask. None is lost, none runs twice,
// and each queue keeps its order.
#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <boost/thread/thread.hpp>
#include <gtest/gtest.h>

#include "common/ThreadPool.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using support::waitUntil;

namespace ZOLT {

namespace {

constexpr int ADDERS = 4;
constexpr int QUEUES = 300;
// Of the queues from here on, waiting jobs are cancelled.
constexpr int FIRST_CANCELLED_QUEUE = 240;
constexpr int NO_QUEUE = QUEUES;
// The pool walks over all its jobs whenever one ends, so no more than these are in it.
constexpr int MOST_JOBS_AT_ONCE = 400;

std::string nameOf(int queue) {
    return queue == NO_QUEUE ? "" : "queue " + std::to_string(queue);
}

// The results of the jobs of one queue. One thread adds them, so that their order is known.
struct Account {
    int added = 0;  // touched by the adder alone
    std::atomic<int> ran{0};
    std::atomic<int> cancelled{0};  // destroyed without a run
    std::atomic<int> last{-1};      // the number of the job that ran last
    std::atomic<bool> busy{false};
};

// All accounts, and the faults that were seen.
struct Ledger {
    std::array<Account, QUEUES> queues;
    std::array<Account, ADDERS> unnamed;  // one for each adder
    std::atomic<int> overlaps{0};
    std::atomic<int> disorders{0};
    std::atomic<int> repeats{0};

    void enter() {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_left.wait(lock, [this] { return m_inside < MOST_JOBS_AT_ONCE; });
        ++m_inside;
    }
    void leave() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        --m_inside;
        m_left.notify_one();
    }
    bool isEmpty() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_inside == 0;
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_left;
    int m_inside = 0;  // jobs that the pool holds; guarded by m_mutex
};

// One job. Its destructor counts it in its account.
class Work {
  public:
    Work(Ledger& ledger, Account& account, bool ordered)
        : m_ledger(ledger), m_account(account), m_ordered(ordered), m_number(account.added++) {
        m_ledger.enter();
    }
    ~Work() {
        m_account.cancelled += m_ran ? 0 : 1;
        m_ledger.leave();
    }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

    void run() {
        m_ledger.repeats += m_ran ? 1 : 0;
        m_ran = true;
        ++m_account.ran;
        const Turn turn(*this);
        // Ends by an interrupt, by an exception, or by returning.
        boost::this_thread::interruption_point();
        if (m_number % 1000 == 999) {
            throw std::runtime_error("one in a thousand");
        }
    }

  private:
    // The time in which no other job of the queue may run.
    class Turn {
      public:
        explicit Turn(Work& work) : m_work(work) {
            if (m_work.m_ordered) {
                m_work.m_ledger.overlaps += m_work.m_account.busy.exchange(true) ? 1 : 0;
                const int last = m_work.m_account.last.exchange(m_work.m_number);
                m_work.m_ledger.disorders += last < m_work.m_number ? 0 : 1;
            }
        }
        ~Turn() {
            if (m_work.m_ordered) {
                m_work.m_account.busy = false;
            }
        }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

      private:
        Work& m_work;
    };

    Ledger& m_ledger;
    Account& m_account;
    const bool m_ordered;
    const int m_number;  // within the account
    bool m_ran = false;
};

// The master removes cancelled jobs when it wakes for something else.
void nudge() {
    ThreadPool::add([] {}, "");
}

// Calls another operation of the pool now and then.
void meddle(std::minstd_rand& random, int lastAdded) {
    const auto below = [&](unsigned number) { return static_cast<int>(random() % number); };
    const std::string queue = nameOf(below(QUEUES));
    switch (below(60)) {
        case 0:
            ThreadPool::interrupt(queue);
            break;
        case 1:
            ThreadPool::interrupt(lastAdded - below(20));
            break;
        case 2:
            ThreadPool::join(queue);
            break;
        case 3:
            ThreadPool::running(queue);
            break;
        case 4:
            ThreadPool::removeQueue(
                nameOf(FIRST_CANCELLED_QUEUE + below(QUEUES - FIRST_CANCELLED_QUEUE)));
            nudge();
            break;
        case 5:
            ScriptedPlatform::get().clearLog();
            break;
        default:
            break;
    }
}

void addJobs(Ledger& ledger, int adder, int jobs) {
    std::minstd_rand random(static_cast<unsigned>(adder) + 1);
    for (int job = adder; job < jobs; job += ADDERS) {
        const int queue = (job * 7) % (QUEUES + 100);
        const bool named = queue < QUEUES;
        Account& account = named ? ledger.queues[queue] : ledger.unnamed[adder];
        const auto work = std::make_shared<Work>(ledger, account, named);
        const int number =
            ThreadPool::add([work] { work->run(); }, nameOf(named ? queue : NO_QUEUE));
        meddle(random, number);
    }
}

TEST(ThreadPoolStress, AllJobsRunOnceAndInTheOrderOfTheirQueues) {
    static_assert(QUEUES % ADDERS == 0 && (QUEUES + 100) % ADDERS == 0,
                  "each queue is filled by one thread");
    // On every change a hundred for each queue.
    const int jobs = support::isLongRun() ? 1000000 : 40000;
    Ledger ledger;
    {
        const ThreadPool pool;
        std::vector<std::thread> adders;
        adders.reserve(ADDERS);
        for (int adder = 0; adder < ADDERS; ++adder) {
            adders.emplace_back([&ledger, adder, jobs] { addJobs(ledger, adder, jobs); });
        }
        for (auto& adder : adders) {
            adder.join();
        }
        EXPECT_TRUE(waitUntil([&ledger] {
            nudge();
            return ledger.isEmpty();
        }));
        ThreadPool::join();
    }

    EXPECT_EQ(ledger.overlaps, 0);
    EXPECT_EQ(ledger.disorders, 0);
    EXPECT_EQ(ledger.repeats, 0);
    int added = 0;
    int cancelled = 0;
    for (int queue = 0; queue < QUEUES; ++queue) {
        const Account& account = ledger.queues[queue];
        added += account.added;
        cancelled += account.cancelled;
        EXPECT_EQ(account.ran + account.cancelled, account.added) << queue;
        if (queue < FIRST_CANCELLED_QUEUE) {
            EXPECT_EQ(account.cancelled, 0) << queue;
        }
    }
    for (const Account& account : ledger.unnamed) {
        added += account.added;
        EXPECT_EQ(account.ran, account.added);
        EXPECT_EQ(account.cancelled, 0);
    }
    EXPECT_EQ(added, jobs);
    EXPECT_GT(cancelled, 0);
    ScriptedPlatform::get().clearLog();
}

}  // namespace

}  // namespace ZOLT
