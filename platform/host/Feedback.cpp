// SPDX-License-Identifier: Apache-2.0
// The interface sounds through the machine's sound system, or in the log where there is none.
#include "feedback.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include <canberra.h>

#include "host/Description.h"
#include "host/HostLog.h"
#include "host/SetFolder.h"

namespace {

using Host::Description;
using Host::Field;

struct Sound {
    feedback_pattern_e pattern;
    const char* name;
};

constexpr std::array<Sound, 5> kSounds = {{
    {FEEDBACK_PATTERN_MOVE, "move"},
    {FEEDBACK_PATTERN_BACK, "back"},
    {FEEDBACK_PATTERN_BLOCKED, "blocked"},
    {FEEDBACK_PATTERN_SELECT, "select"},
    {FEEDBACK_PATTERN_POPUP, "popup"},
}};

const Sound* find(feedback_pattern_e pattern) {
    for (const Sound& sound : kSounds) {
        if (sound.pattern == pattern) {
            return &sound;
        }
    }
    return nullptr;
}

// Plays on a thread of its own, because the first contact with a sound system may take seconds and
// a key has to answer at once. The thread and what it uses live until the process is gone: waiting
// for a sound system that hangs would keep the set from ending.
class Player {
  public:
    static Player& only() {
        static auto* player = new Player;
        return *player;
    }

    void play(const Sound& sound) {
        const std::lock_guard<std::mutex> lock(m_guard);
        // Sounds that come late are worse than none.
        if (m_waiting.size() < kMostWaiting) {
            m_waiting.push_back(&sound);
            m_news.notify_one();
        }
    }

  private:
    static constexpr std::size_t kMostWaiting = 4;

    Player() {
        std::thread([this] { run(); }).detach();
    }

    [[noreturn]] void run() {
        while (true) {
            std::unique_lock<std::mutex> lock(m_guard);
            m_news.wait(lock, [this] { return !m_waiting.empty(); });
            const Sound* sound = m_waiting.front();
            m_waiting.pop_front();
            lock.unlock();
            sounded(*sound);
        }
    }

    void sounded(const Sound& sound) {
        std::string outcome = "off";
        const int volume = Description::number(Field::SoundVolume);
        if (Description::flag(Field::SoundEnabled) && volume > 0) {
            outcome = start(sound, volume);
        }
        Host::logInfo("Sound " + std::to_string(sound.pattern) + " " + sound.name + ": " + outcome);
    }

    std::string start(const Sound& sound, int volume) {
        if (!m_tried) {
            m_tried = true;
            m_failure = ca_context_create(&m_context);
            if (m_failure == CA_SUCCESS) {
                m_failure = ca_context_open(m_context);
            }
        }
        if (m_failure == CA_SUCCESS) {
            m_failure = playFile(sound, volume);
        }
        return m_failure == CA_SUCCESS ? "played"
                                       : std::string("no sound system, ") + ca_strerror(m_failure);
    }

    int playFile(const Sound& sound, int volume) {
        const std::string folder =
            Host::SetFolder::variable("VIRTUAL_SET_SOUNDS", VIRTUAL_SET_SOUNDS);
        const std::string path = folder + "/" + sound.name + ".wav";
        // Decibels: half the scale is about half as loud to the ear.
        const std::string level = std::to_string((volume - 100) / 5);
        return ca_context_play(m_context, 0, CA_PROP_MEDIA_FILENAME, path.c_str(),
                               CA_PROP_MEDIA_ROLE, "event", CA_PROP_EVENT_DESCRIPTION, sound.name,
                               CA_PROP_CANBERRA_VOLUME, level.c_str(), nullptr);
    }

    std::mutex m_guard;  // guards m_waiting
    std::condition_variable m_news;
    std::deque<const Sound*> m_waiting;

    // Of the thread alone. The context is never released.
    ca_context* m_context = nullptr;
    bool m_tried = false;
    // Once there is no sound system there is none for the rest of the process.
    int m_failure = CA_SUCCESS;
};

bool s_initialized = false;

}  // namespace

extern "C" {

int feedback_initialize(void) {
    s_initialized = true;
    return FEEDBACK_ERROR_NONE;
}

int feedback_play(feedback_pattern_e pattern) {
    if (!s_initialized) {
        return FEEDBACK_ERROR_NOT_INITIALIZED;
    }
    const Sound* sound = find(pattern);
    if (sound == nullptr) {
        return FEEDBACK_ERROR_INVALID_PARAMETER;
    }
    Player::only().play(*sound);
    return FEEDBACK_ERROR_NONE;
}

int feedback_deinitialize(void) {
    if (!s_initialized) {
        return FEEDBACK_ERROR_NOT_INITIALIZED;
    }
    s_initialized = false;
    return FEEDBACK_ERROR_NONE;
}

}  // extern "C"
