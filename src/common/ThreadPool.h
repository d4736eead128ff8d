// SPDX-License-Identifier: Apache-2.0
// Runs pieces of work off the main loop.
#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <vector>

#include <boost/thread/latch.hpp>
#include <boost/thread/thread.hpp>

namespace ZOLT {

// At most one launched pool, reached through static operations that any thread may call; without
// one all of them but add do nothing. It runs up to 15 jobs side by side, each on a thread of its
// own; jobs of one queue run one after another in the order in which they were added. Exceptions of
// a job are logged and go no further.
class ThreadPool {
  public:
    // Throws Exception when there is a pool already, which stays unharmed.
    ThreadPool();
    // Does not wait for running jobs: call join() first, so that none outlives the pool.
    ~ThreadPool();  // NOLINT(bugprone-exception-escape)
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    // Ends the master thread; jobs that wait never run. add throws from here on, also when another
    // pool has been launched since an earlier stop.
    void stop();

    // Takes a job and returns its number. An empty QUEUE makes a job without a queue. Throws
    // Exception when there is no pool. A job may call it. The destructors of what a job captures
    // must not call the pool.
    static int add(std::function<void()> job, std::string queue);
    // Writes one line for each job.
    static void dump();
    // Cancels the waiting jobs of a queue.
    static void removeQueue(std::string queue);
    // Interrupts a running job at its next interruption point, as Boost.Thread defines them.
    static void interrupt(int id);
    // The same for the first running job of a queue.
    static void interrupt(const std::string& queue);
    // Waits for the first running job of a queue. A job must not wait for itself.
    static void join(const std::string& queue);
    // Cancels all waiting jobs and waits for all running ones.
    static void join();
    static bool running(const std::string& queue);

  private:
    // Lets a test make the start of a thread fail.
    friend class ThreadPoolStart;

    enum Status { JOB_WAITING = 0, JOB_RUNNING = 1, JOB_FINISHED = 2, JOB_DONE = 3 };

    struct Job {
        // Takes the next number. An empty QUEUE makes a job without a queue.
        Job(std::function<void()> function, const std::string& queue, std::string counter);
        void operator()();

        std::function<void()> m_function;
        std::string m_queue;
        std::string m_counter;  // how many jobs were added up to this one, for the log
        bool m_named;           // the caller gave a queue
        bool m_removable;       // false while a caller waits in join
        int m_status;           // a Status
        int m_id;
        int m_worker;           // -1 until started
        std::mutex m_mutex;     // held by the worker for the whole of the run
        boost::latch m_locked;  // opened by the worker when it has locked m_mutex
        int m_joiners;          // how many wait in join

        static int m_count;
    };

    void master();
    void worker(Job& job);
    // Starts the job's thread in its slot. False when the system cannot create one.
    bool start(Job& job);
    // Releases the jobs when the pool is destroyed.
    void clear();

    // These three are called with m_mutex held.
    static Job* findRunning(const std::string& queue);
    static void interrupt(const Job& job);
    static Job* hold(Job& job);
    // Waits for a held job and releases it.
    static void join(Job& job);

    std::vector<boost::thread> m_workers;  // by worker number
    std::list<Job> m_jobs;                 // in order of arrival, with those that have ended
    boost::thread m_master;
    bool m_running;

    static ThreadPool* m_self;
    // Guards all of the above and every job's status, m_removable and m_joiners. May be taken while
    // a job's own mutex is held; never the other way round.
    static std::mutex m_mutex;
    // Only a master waits on it. There may be two, after the second stop of an old pool, so all are
    // woken.
    static std::condition_variable m_cv;

    // Makes the thread of a job; a boost::thread unless a test has put something else here.
    static boost::thread (*s_makeThread)(const std::function<void()>& body);
};

}  // namespace ZOLT
