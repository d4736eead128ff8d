// SPDX-License-Identifier: Apache-2.0
// Processes that look at scenes side by side, each with a toolkit of its own.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "look/Options.h"
#include "look/Report.h"

namespace look {

class Crew {
  public:
    // MADEUP is the folder of the languages that are made up; it is filled here.
    Crew(const Options& options, const std::string& madeUp);

    // Looks at all ITEMS and returns what came out of them. An item whose process dies is a
    // failure, and the others go on.
    Report work(const std::vector<Item>& items);

  private:
    struct Worker {
        pid_t pid = -1;
        int orders = -1;   // written here
        int answers = -1;  // read here
        std::size_t item = 0;
        std::string text;  // of an answer that is not whole yet
    };

    Worker start(const std::vector<Item>& items);
    [[noreturn]] void serve(const std::vector<Item>& items, int orders, int answers);
    void order(Worker& worker, std::size_t item);
    static void dismiss(Worker& worker);
    // Whether the answer is whole; false as well when there will be none.
    static bool listen(Worker& worker, bool& dead);

    const Options& m_options;
    const std::string m_madeUp;
    std::vector<Worker> m_workers;
};

}  // namespace look
