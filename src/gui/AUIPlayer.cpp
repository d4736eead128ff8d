// SPDX-License-Identifier: Apache-2.0
// The short sounds that answer keys, buttons and popups.
#include "gui/AUIPlayer.h"

#include <map>

#include "common/Logger.h"
#include "feedback.h"

namespace ZOLT::GUI {

namespace {

struct SoundPattern {
    AUISoundType type;
    int pattern;
};

// The numbers are those of the feedback service; 44 has no sound for us.
constexpr SoundPattern SOUND_PATTERNS[] = {{AUI_SOUND_MOVE, 40},
                                           {AUI_SOUND_BACK, 41},
                                           {AUI_SOUND_BLOCKED, 42},
                                           {AUI_SOUND_SELECT, 43},
                                           {AUI_SOUND_POPUP, 45}};

std::map<AUISoundType, feedback_pattern_e> fillPatterns() {
    std::map<AUISoundType, feedback_pattern_e> filled;
    for (const SoundPattern& entry : SOUND_PATTERNS) {
        filled[entry.type] = static_cast<feedback_pattern_e>(entry.pattern);
    }
    return filled;
}

const std::map<AUISoundType, feedback_pattern_e> PATTERNS = fillPatterns();

}  // namespace

int AUIPlayer::play(AUISoundType type) {
    ZOLT_TRACE();
    const feedback_pattern_e pattern = PATTERNS.at(type);
    int result = feedback_initialize();
    if (result != 0) {
        ZOLT_WARN("Feedback initialize error: %d", result);
        return result;
    }
    ZOLT_DEBUG("Playing AUI sound [AUISoundType: %d], feedback_pattern_e type: %d",
               static_cast<int>(type), static_cast<int>(pattern));
    result = feedback_play(pattern);
    if (result != 0) {
        // The service stays initialised on purpose: the next sound initialises it again.
        ZOLT_WARN("Feedback playback error: %d", result);
        return result;
    }
    result = feedback_deinitialize();
    if (result != 0) {
        ZOLT_WARN("Feedback deinitialize error: %d", result);
    }
    return result;
}

}  // namespace ZOLT::GUI
