// SPDX-License-Identifier: Apache-2.0
// Processes that look at scenes side by side, each with a toolkit of its own.
#include "look/Crew.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "look/Examination.h"
#include "look/Scene.h"

namespace look {

namespace {

constexpr char END[] = ".\n";         // of an answer
constexpr int ITEMS_OF_A_LIFE = 400;  // the toolkit never gives back all that it takes

void writeAll(int place, const std::string& text) {
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(place, text.data() + done, text.size() - done);
        if (count <= 0) {
            throw std::runtime_error("a pipe is closed");
        }
        done += static_cast<std::size_t>(count);
    }
}

bool endsAnswer(const std::string& text) {
    return text == END ||
           (text.size() > 2 && text.compare(text.size() - 3, 3, std::string("\n") + END) == 0);
}

}  // namespace

Crew::Crew(const Options& options, const std::string& madeUp)
    : m_options(options), m_madeUp(madeUp) {
    // The toolkit starts in children only: it would not live through a fork.
    const pid_t child = fork();
    if (child == 0) {
        int status = 1;
        try {
            Examination(m_options, m_madeUp).makeUpLanguages();
            status = 0;
        } catch (const std::exception& exception) {
            std::fprintf(stderr, "look-check: %s\n", exception.what());
        }
        _exit(status);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("the made-up languages could not be made");
    }
}

Crew::Worker Crew::start(const std::vector<Item>& items) {
    int orders[2];
    int answers[2];
    if (pipe(orders) != 0 || pipe(answers) != 0) {
        throw std::runtime_error("no pipe");
    }
    Worker worker;
    worker.pid = fork();
    if (worker.pid < 0) {
        throw std::runtime_error("no process");
    }
    if (worker.pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        close(orders[1]);
        close(answers[0]);
        // A pipe of another worker that stayed open here would keep its reader waiting.
        for (const Worker& other : m_workers) {
            close(other.orders);
            close(other.answers);
        }
        serve(items, orders[0], answers[1]);
    }
    close(orders[0]);
    close(answers[1]);
    worker.orders = orders[1];
    worker.answers = answers[0];
    return worker;
}

void Crew::serve(const std::vector<Item>& items, int orders, int answers) {
    int status = 0;
    try {
        Examination examination(m_options, m_madeUp);
        std::size_t place = 0;
        while (read(orders, &place, sizeof(place)) == static_cast<ssize_t>(sizeof(place))) {
            writeAll(answers, examination.examine(items.at(place)).lines() + END);
        }
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "look-check: %s\n", exception.what());
        status = 1;
    }
    // Nothing of the parent's is to be run down here.
    _exit(status);
}

void Crew::order(Worker& worker, std::size_t item) {
    worker.item = item;
    worker.text.clear();
    writeAll(worker.orders, std::string(reinterpret_cast<const char*>(&item), sizeof(item)));
}

void Crew::dismiss(Worker& worker) {
    close(worker.orders);
    close(worker.answers);
    waitpid(worker.pid, nullptr, 0);
}

bool Crew::listen(Worker& worker, bool& dead) {
    char buffer[65536];
    const ssize_t count = read(worker.answers, buffer, sizeof(buffer));
    dead = count <= 0;
    if (dead) {
        return false;
    }
    worker.text.append(buffer, static_cast<std::size_t>(count));
    return endsAnswer(worker.text);
}

Report Crew::work(const std::vector<Item>& items) {
    signal(SIGPIPE, SIG_IGN);
    const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
    const std::size_t wanted = std::min(m_options.jobs > 0 ? m_options.jobs : cores,
                                        std::max<std::size_t>(1, items.size()));
    Report report;
    std::size_t next = 0;
    std::vector<int> lives;
    while (m_workers.size() < wanted && next < items.size()) {
        m_workers.push_back(start(items));
        lives.push_back(1);
        order(m_workers.back(), next++);
    }
    while (!m_workers.empty()) {
        std::vector<pollfd> places;
        for (const Worker& worker : m_workers) {
            places.push_back({worker.answers, POLLIN, 0});
        }
        if (poll(places.data(), places.size(), -1) < 0) {
            continue;
        }
        for (std::size_t one = places.size(); one-- > 0;) {
            if (places[one].revents == 0) {
                continue;
            }
            Worker& worker = m_workers[one];
            bool dead = false;
            if (!listen(worker, dead) && !dead) {
                continue;
            }
            if (dead) {
                const Item& item = items[worker.item];
                report.enter(scenes()[item.scene].name, item.mode.name(), item.mode.language);
                report.check("worker", false, "the process that drew this has died");
            } else {
                std::istringstream lines(worker.text);
                for (std::string line; std::getline(lines, line);) {
                    report.addLine(line);
                }
            }
            if (next < items.size() && !dead && lives[one] < ITEMS_OF_A_LIFE) {
                ++lives[one];
                order(worker, next++);
                continue;
            }
            dismiss(worker);
            m_workers.erase(m_workers.begin() + static_cast<std::ptrdiff_t>(one));
            lives.erase(lives.begin() + static_cast<std::ptrdiff_t>(one));
            if (next < items.size()) {
                m_workers.push_back(start(items));
                lives.push_back(1);
                order(m_workers.back(), next++);
            }
        }
    }
    return report;
}

}  // namespace look
