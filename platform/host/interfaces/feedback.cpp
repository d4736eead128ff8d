// SPDX-License-Identifier: Apache-2.0
// The interface sounds through the machine's sound system, or in the log where there is none.
#include "feedback.h"

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include <unistd.h>

#include <canberra.h>

#include "host/base/HostLog.h"
#include "host/base/SetFolder.h"
#include "host/description/Description.h"

namespace {

using host::Description;
using host::Field;

struct Sound {
    feedback_pattern_e pattern;
    const char* name;
};

constexpr Sound SOUNDS[] = {
#include "sounds.inc"
};

const Sound* find(feedback_pattern_e pattern) {
    for (const Sound& sound : SOUNDS) {
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
        // A sound that comes late is worse than none.
        if (m_waiting.size() < MOST_WAITING) {
            m_waiting.push_back(&sound);
            m_news.notify_one();
        }
    }

  private:
    static constexpr std::size_t MOST_WAITING = 4;

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
            playOrLog(*sound);
        }
    }

    void playOrLog(const Sound& sound) {
        std::string outcome = "off";
        const int volume = Description::number(Field::SOUND_VOLUME);
        if (Description::flag(Field::SOUND_ENABLED) && volume > 0) {
            outcome = start(sound, volume);
        }
        host::logInfo("Sound " + std::to_string(sound.pattern) + " " + sound.name + ": " + outcome);
    }

    std::string start(const Sound& sound, int volume) {
        const std::string folder =
            host::SetFolder::variable("VIRTUAL_SET_SOUNDS", VIRTUAL_SET_SOUNDS);
        const std::string path = folder + "/" + sound.name + ".wav";
        // Checked first, because without a sound system nothing would look at the file.
        if (access(path.c_str(), R_OK) != 0) {
            return "no file " + path + ", " + std::strerror(errno);
        }
        int failure = connect();
        if (failure == CA_SUCCESS) {
            failure = playFile(sound, path, volume);
            if (failure == CA_SUCCESS) {
                return "played";
            }
            if (failure == CA_ERROR_CORRUPT || failure == CA_ERROR_NOTSUPPORTED ||
                failure == CA_ERROR_TOOBIG) {
                return "no sound in " + path + ", " + ca_strerror(failure);
            }
        }
        disconnect();
        return std::string("no sound system, ") + ca_strerror(failure);
    }

    int connect() {
        if (m_context != nullptr) {
            return CA_SUCCESS;
        }
        const int failure = ca_context_create(&m_context);
        return failure == CA_SUCCESS ? ca_context_open(m_context) : failure;
    }

    // The next sound connects anew: the sound system may have been restarted, or come later.
    void disconnect() {
        if (m_context != nullptr) {
            ca_context_destroy(m_context);
            m_context = nullptr;
        }
    }

    int playFile(const Sound& sound, const std::string& path, int volume) {
        // Decibels: half the scale is about half as loud to the ear.
        const std::string level = std::to_string((volume - 100) / 5);
        return ca_context_play(m_context, 0, CA_PROP_MEDIA_FILENAME, path.c_str(),
                               CA_PROP_MEDIA_ROLE, "event", CA_PROP_EVENT_DESCRIPTION, sound.name,
                               CA_PROP_CANBERRA_VOLUME, level.c_str(), nullptr);
    }

    std::mutex m_guard;  // guards m_waiting
    std::condition_variable m_news;
    std::deque<const Sound*> m_waiting;

    // Used by the thread only; null without a connection. Never released at the end of the process.
    ca_context* m_context = nullptr;
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
