// SPDX-License-Identifier: Apache-2.0
// Runs pieces of work off the main loop.
#include "common/ThreadPool.h"

#include <exception>
#include <iterator>
#include <set>
#include <utility>

#include "common/Exception.h"
#include "common/Logger.h"

namespace ZOLT {

namespace {

constexpr int WORKERS = 15;
constexpr char UNNAMED_QUEUE[] = "Unnamed";

std::set<int> allWorkerNumbers() {
    std::set<int> numbers;
    for (int number = 0; number < WORKERS; ++number) {
        numbers.insert(numbers.end(), number);
    }
    return numbers;
}

}  // namespace

ThreadPool* ThreadPool::m_self = nullptr;
std::mutex ThreadPool::m_mutex;
std::condition_variable ThreadPool::m_cv;
int ThreadPool::Job::m_count = 0;
boost::thread (*ThreadPool::s_makeThread)(const std::function<void()>& body) =
    [](const std::function<void()>& body) { return boost::thread(body); };

ThreadPool::Job::Job(std::function<void()> function, const std::string& queue, std::string counter)
    : m_function(std::move(function)),
      m_queue(queue.empty() ? UNNAMED_QUEUE : queue),
      m_counter(std::move(counter)),
      m_named(!queue.empty()),
      m_removable(true),
      m_status(JOB_WAITING),
      m_id(m_count++),
      m_worker(-1),
      m_locked(1),
      m_joiners(0) {}

void ThreadPool::Job::operator()() {
    ZOLT_TRACE();
    if (!m_function) {
        ZOLT_WARN("nullptr called");
        return;
    }
    m_function();
}

ThreadPool::ThreadPool() : m_running(true) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_self != nullptr) {
        throw Exception("ThreadPool already launched", GENERIC_ERROR);
    }
    ZOLT_TRACE();
    m_workers = std::vector<boost::thread>(WORKERS);
    m_master = boost::thread([this] { master(); });
    m_self = this;
}

// A join throws in a thread that joins itself, and no job destroys the pool that it runs in.
// NOLINTNEXTLINE(bugprone-exception-escape)
ThreadPool::~ThreadPool() {
    ZOLT_TRACE();
    stop();
    clear();
}

void ThreadPool::stop() {
    ZOLT_TRACE();
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_running = false;
        m_cv.notify_all();
        // Deliberately also when another pool has been launched since: after the second stop of an
        // old pool add throws.
        m_self = nullptr;
    }
    if (m_master.joinable()) {
        m_master.join();
    }
}

void ThreadPool::clear() {
    // Jobs that a thread still uses when the pool is destroyed. They are never freed, so that a job
    // that outlives its pool, against the rule, ends on valid memory.
    static auto* const abandoned = new std::list<Job>();
    const std::lock_guard<std::mutex> guard(m_mutex);
    while (!m_jobs.empty()) {
        auto& job = m_jobs.front();
        if (job.m_status == JOB_RUNNING || !job.m_removable) {
            // The thread must have entered worker before the pool is destroyed. A job that is done
            // does not use the condition variable any more, which may be destroyed by its end.
            job.m_locked.wait();
            job.m_status = JOB_DONE;
            abandoned->splice(abandoned->end(), m_jobs, m_jobs.begin());
            continue;
        }
        // The thread of a finished job may not have unlocked the job's mutex yet.
        if (job.m_status == JOB_FINISHED && m_workers[job.m_worker].joinable()) {
            m_workers[job.m_worker].join();
        }
        m_jobs.pop_front();
    }
}

int ThreadPool::add(std::function<void()> job, std::string queue) {
    ZOLT_TRACE_VALUES(1, 2, queue.c_str());
    static int count = 0;
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_self == nullptr) {
        throw Exception("ThreadPool is not launched", GENERIC_ERROR);
    }
    ++count;
    m_self->m_jobs.emplace_back(std::move(job), queue, std::to_string(count));
    m_cv.notify_all();
    return m_self->m_jobs.back().m_id;
}

// One function in spite of its length: its log lines carry its name. No wake-up is lost: whatever
// the master waits for changes under m_mutex, which it holds while it looks at the jobs and until
// it waits.
void ThreadPool::master() {
    ZOLT_TRACE();
    std::unique_lock<std::mutex> lock(m_mutex);
    while (m_running) {
        std::set<std::string> busyQueues;
        std::set<int> freeWorkers = allWorkerNumbers();

        for (auto job = m_jobs.begin(); job != m_jobs.end();) {
            if (job->m_status == JOB_DONE && job->m_removable) {
                job = m_jobs.erase(job);
                continue;
            }
            if (job->m_status == JOB_FINISHED) {
                boost::thread& thread = m_workers[job->m_worker];
                if (thread.joinable()) {
                    ZOLT_DEBUG("Joined worker: %d job: %d queue: %s, counter: %s", job->m_worker,
                               job->m_id, job->m_queue.c_str(), job->m_counter.c_str());
                    thread.join();
                }
                job->m_status = JOB_DONE;
            } else if (job->m_status == JOB_RUNNING) {
                freeWorkers.erase(job->m_worker);
                if (job->m_named) {
                    busyQueues.insert(job->m_queue);
                }
            }
            ++job;
        }

        for (auto job = m_jobs.begin(); job != m_jobs.end() && !freeWorkers.empty(); ++job) {
            if (job->m_status != JOB_WAITING ||
                (job->m_named && !busyQueues.insert(job->m_queue).second)) {
                continue;
            }
            job->m_status = JOB_RUNNING;
            job->m_worker = *freeWorkers.begin();
            if (!start(*job)) {
                ZOLT_WARN("Failed to start worker: %d job: %d queue: %s", job->m_worker, job->m_id,
                          job->m_queue.c_str());
                job->m_status = JOB_WAITING;
                continue;
            }
            ZOLT_DEBUG("Started worker: %d job: %d queue: %s, counter: %s", job->m_worker,
                       job->m_id, job->m_queue.c_str(), job->m_counter.c_str());
            freeWorkers.erase(job->m_worker);
        }

        m_cv.wait(lock);
    }
}

bool ThreadPool::start(Job& job) {
    boost::thread& thread = m_workers[job.m_worker];
    try {
        thread = s_makeThread([this, &job] { worker(job); });
    } catch (const boost::thread_resource_error&) {
        thread = boost::thread();
    }
    return thread.joinable();
}

void ThreadPool::worker(Job& job) {
    ZOLT_TRACE();
    const std::lock_guard<std::mutex> run(job.m_mutex);
    job.m_locked.count_down();
    try {
        job();
    } catch (const boost::thread_interrupted&) {
        ZOLT_WARN("Interrupted worker: %d job: %d queue: %s, counter: %s", job.m_worker, job.m_id,
                  job.m_queue.c_str(), job.m_counter.c_str());
    } catch (const std::exception& exception) {
        ZOLT_WARN("Exception (worker: %d job: %d queue: %s, counter:: %s): %s", job.m_worker,
                  job.m_id, job.m_queue.c_str(), job.m_counter.c_str(), exception.what());
    } catch (...) {
        ZOLT_WARN("Caught unknown exception in worker: %d job: %d queue: %s, counter: %s",
                  job.m_worker, job.m_id, job.m_queue.c_str(), job.m_counter.c_str());
    }
    // Under m_mutex, or the master could miss both between its look at the jobs and its wait.
    // Before the job's mutex is unlocked, so that a caller of join finds the job ended. The job
    // itself is kept until the master has joined this thread.
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (job.m_status == JOB_RUNNING) {
        job.m_status = JOB_FINISHED;
        m_cv.notify_all();
    }
}

void ThreadPool::dump() {
    ZOLT_TRACE();
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_self == nullptr) {
        return;
    }
    for (const auto& job : m_self->m_jobs) {
        ZOLT_DEBUG("Queue name: %s, status: %d, id: %d, worker: %d, counter: %s",
                   job.m_queue.c_str(), job.m_status, job.m_id, job.m_worker,
                   job.m_counter.c_str());
    }
}

void ThreadPool::removeQueue(std::string queue) {
    ZOLT_TRACE_VALUES(1, 1, queue.c_str());
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_self == nullptr) {
        return;
    }
    for (auto& job : m_self->m_jobs) {
        if (job.m_named && job.m_queue == queue && job.m_status == JOB_WAITING) {
            job.m_status = JOB_DONE;
        }
    }
}

ThreadPool::Job* ThreadPool::findRunning(const std::string& queue) {
    if (m_self == nullptr) {
        return nullptr;
    }
    for (auto& job : m_self->m_jobs) {
        if (job.m_named && job.m_queue == queue && job.m_status == JOB_RUNNING) {
            return &job;
        }
    }
    return nullptr;
}

// The slot of a running job holds its thread. Both change under m_mutex only.
void ThreadPool::interrupt(const Job& job) {
    m_self->m_workers[job.m_worker].interrupt();
}

void ThreadPool::interrupt(int id) {
    ZOLT_TRACE_VALUES(1, 1, id);
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_self == nullptr) {
        return;
    }
    for (const auto& job : m_self->m_jobs) {
        if (job.m_id == id && job.m_status == JOB_RUNNING) {
            interrupt(job);
            return;
        }
    }
}

void ThreadPool::interrupt(const std::string& queue) {
    ZOLT_TRACE_VALUES(1, 1, queue.c_str());
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (const Job* job = findRunning(queue)) {
        ZOLT_DEBUG("Interrupting: %s, counter: %s", job->m_queue.c_str(), job->m_counter.c_str());
        interrupt(*job);
    }
}

bool ThreadPool::running(const std::string& queue) {
    ZOLT_TRACE_VALUES(1, 1, queue.c_str());
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (const Job* job = findRunning(queue)) {
        ZOLT_DEBUG("Thread %s is running, counter: %s", queue.c_str(), job->m_counter.c_str());
        return true;
    }
    ZOLT_DEBUG("Thread %s is not running", queue.c_str());
    return false;
}

// Several callers may wait for one job, so they are counted and the last one makes it removable.
ThreadPool::Job* ThreadPool::hold(Job& job) {
    job.m_removable = false;
    ++job.m_joiners;
    return &job;
}

void ThreadPool::join(Job& job) {
    ZOLT_DEBUG("Joining thread %s, counter: %s...", job.m_queue.c_str(), job.m_counter.c_str());
    {
        // A job runs from the moment at which its thread is made, so the worker may not have its
        // mutex yet. The wait of a latch is an interruption point, and a join is none.
        const boost::this_thread::disable_interruption uninterrupted;
        job.m_locked.wait();
    }
    job.m_mutex.lock();
    ZOLT_DEBUG("Joined %s, counter: %s...", job.m_queue.c_str(), job.m_counter.c_str());
    // Unlocked first, and the flag set under m_mutex: a removable job may be gone the next moment.
    job.m_mutex.unlock();
    const std::lock_guard<std::mutex> guard(m_mutex);
    --job.m_joiners;
    job.m_removable = job.m_joiners == 0;
}

void ThreadPool::join(const std::string& queue) {
    ZOLT_TRACE_VALUES(1, 1, queue.c_str());
    Job* job = nullptr;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        job = findRunning(queue);
        if (job == nullptr) {
            return;
        }
        hold(*job);
    }
    join(*job);
}

void ThreadPool::join() {
    ZOLT_TRACE();
    std::vector<Job*> held;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (m_self == nullptr) {
            return;
        }
        for (auto& job : m_self->m_jobs) {
            if (job.m_status == JOB_WAITING) {
                job.m_status = JOB_DONE;
            } else if (job.m_status == JOB_RUNNING) {
                held.push_back(hold(job));
            }
        }
    }
    for (Job* job : held) {
        join(*job);
    }
}

}  // namespace ZOLT
