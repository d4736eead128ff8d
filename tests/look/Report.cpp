// SPDX-License-Identifier: Apache-2.0
// Counts checks and keeps the failures.
#include "look/Report.h"

#include <cstdio>

namespace look {

namespace {

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char one : text) {
        if (one == '"' || one == '\\') {
            result += '\\';
        }
        if (static_cast<unsigned char>(one) >= 0x20) {
            result += one;
        }
    }
    return result + "\"";
}

template <typename Items, typename Word>
std::string joined(const Items& items, const Word& word) {
    std::string all;
    for (const auto& item : items) {
        all += (all.empty() ? "\n    " : ",\n    ") + word(item);
    }
    return all;
}

std::string tenths(double seconds) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f", seconds);
    return text;
}

}  // namespace

void Report::enter(const std::string& scene, const std::string& mode, const std::string& language) {
    m_scene = scene;
    m_mode = mode;
    m_state.clear();
    m_languages.insert(language);
}

void Report::check(const std::string& name, bool good, const std::string& detail) {
    Count& count = m_checks[name];
    ++count.asked;
    if (!good) {
        ++count.failed;
        m_failures.push_back({name, m_scene, m_mode, m_state, detail});
    }
}

void Report::countText(const std::string& kind, const std::string& fit) {
    ++m_texts[kind + " " + fit];
}

void Report::note(const std::string& line) {
    m_notes.push_back(m_scene + " " + m_mode + ": " + line);
}

std::string Report::words(std::size_t most, double seconds) const {
    std::string all;
    std::map<std::string, std::size_t> told;
    for (const Failure& one : m_failures) {
        if (++told[one.check] <= most) {
            all += "FAILED " + one.check + ": " + one.scene +
                   (one.state.empty() ? "" : " [" + one.state + "]") + " " + one.mode + ": " +
                   one.detail + "\n";
        }
    }
    for (const auto& [name, count] : told) {
        if (count > most) {
            all += "... and " + std::to_string(count - most) + " more of " + name + "\n";
        }
    }
    long texts = 0;
    long checks = 0;
    for (const auto& [kind, count] : m_texts) {
        texts += count;
    }
    for (const auto& [name, count] : m_checks) {
        checks += count.asked;
        char line[80];
        std::snprintf(line, sizeof(line), "  %-9s %9ld checks %6ld failures\n", name.c_str(),
                      count.asked, count.failed);
        all += line;
    }
    for (const auto& [kind, count] : m_texts) {
        all += "  texts: " + kind + " " + std::to_string(count) + "\n";
    }
    all += std::to_string(m_pictures) + " pictures, " + std::to_string(texts) + " texts, " +
           std::to_string(m_languages.size()) + " languages, " + std::to_string(checks) +
           " checks, " + std::to_string(m_failures.size()) + " failures, " + tenths(seconds) +
           " s\n";
    return all;
}

std::string Report::json(double seconds) const {
    std::string all = "{\n  \"pictures\": " + std::to_string(m_pictures) +
                      ",\n  \"seconds\": " + tenths(seconds) + ",\n  \"languages\": [";
    all += joined(m_languages, [](const std::string& name) { return quoted(name); });
    all += "],\n  \"checks\": {";
    all += joined(m_checks, [](const auto& entry) {
        return quoted(entry.first) + ": [" + std::to_string(entry.second.asked) + ", " +
               std::to_string(entry.second.failed) + "]";
    });
    all += "},\n  \"texts\": {";
    all += joined(m_texts, [](const auto& entry) {
        return quoted(entry.first) + ": " + std::to_string(entry.second);
    });
    all += "},\n  \"notes\": [";
    all += joined(m_notes, [](const std::string& line) { return quoted(line); });
    all += "],\n  \"failures\": [";
    all += joined(m_failures, [](const Failure& one) {
        return "{\"check\": " + quoted(one.check) + ", \"scene\": " + quoted(one.scene) +
               ", \"mode\": " + quoted(one.mode) + ", \"state\": " + quoted(one.state) +
               ", \"detail\": " + quoted(one.detail) + "}";
    });
    return all + "]\n}\n";
}

}  // namespace look
