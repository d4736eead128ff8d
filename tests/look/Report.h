// SPDX-License-Identifier: Apache-2.0
// Counts checks and keeps the failures.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace look {

struct Failure {
    std::string check;
    std::string scene;
    std::string mode;
    std::string state;
    std::string detail;
};

class Report {
  public:
    // Sets the scene and mode of the checks that follow.
    void enter(const std::string& scene, const std::string& mode, const std::string& language);
    void enterState(const std::string& state) { m_state = state; }

    // Counts one check, and keeps DETAIL unless it is GOOD.
    void check(const std::string& name, bool good, const std::string& detail);
    void countPicture() { ++m_pictures; }
    void countText(const std::string& kind, const std::string& fit);
    // Goes to the JSON report only and is no failure.
    void note(const std::string& line);

    bool good() const { return m_failures.empty(); }
    const std::vector<Failure>& failures() const { return m_failures; }
    // A summary with at most MOST failures of each check.
    std::string words(std::size_t most, double seconds) const;
    std::string json(double seconds) const;

  private:
    struct Count {
        long asked = 0;
        long failed = 0;
    };

    std::string m_scene;
    std::string m_mode;
    std::string m_state;
    long m_pictures = 0;
    std::map<std::string, Count> m_checks;
    std::map<std::string, long> m_texts;  // by kind and fit
    std::set<std::string> m_languages;
    std::vector<Failure> m_failures;
    std::vector<std::string> m_notes;
};

}  // namespace look
