// SPDX-License-Identifier: Apache-2.0
// The short sounds: which pattern each plays, and what a failing feedback service does.
#include <stdexcept>

#include "gui/AUIPlayer.h"
#include "gui/GuiFixture.h"

namespace {

using namespace ZOLT::GUI;
using Strings = std::vector<std::string>;

class AUIPlayerTest : public support::GuiFixture {
  protected:
    AUIPlayer m_player;
};

TEST_F(AUIPlayerTest, EachSoundPlaysItsPatternAndPattern44IsUnused) {
    for (AUISoundType type :
         {AUI_SOUND_MOVE, AUI_SOUND_BACK, AUI_SOUND_BLOCKED, AUI_SOUND_SELECT, AUI_SOUND_POPUP}) {
        EXPECT_EQ(0, m_player.play(type));
    }
    EXPECT_EQ((std::vector<int>{40, 41, 42, 43, 45}), platform().playedPatterns());
}

TEST_F(AUIPlayerTest, EverySoundOpensAndClosesTheFeedbackService) {
    EXPECT_EQ(0, m_player.play(AUI_SOUND_POPUP));
    EXPECT_EQ((Strings{"feedback_initialize()", "feedback_play(45)", "feedback_deinitialize()"}),
              platform().calls());
    EXPECT_TRUE(logged("Playing AUI sound [AUISoundType: 4], feedback_pattern_e type: 45"));
}

TEST_F(AUIPlayerTest, AnUnknownSoundThrowsAndTheServiceIsNotTouched) {
    try {
        m_player.play(static_cast<AUISoundType>(5));
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ("map::at", error.what());
    }
    EXPECT_TRUE(platform().calls().empty());
}

TEST_F(AUIPlayerTest, AFailedInitializationIsReturnedAndNothingIsPlayed) {
    announceWarning("Feedback initialize error: -7");
    platform().answer("feedback_initialize", -7);
    EXPECT_EQ(-7, m_player.play(AUI_SOUND_MOVE));
    EXPECT_EQ(Strings{"feedback_initialize()"}, platform().calls());
}

TEST_F(AUIPlayerTest, AFailedPlaybackIsReturnedAndTheServiceStaysInitialised) {
    announceWarning("Feedback playback error: -8");
    platform().answer("feedback_play", -8);
    EXPECT_EQ(-8, m_player.play(AUI_SOUND_MOVE));
    EXPECT_EQ((Strings{"feedback_initialize()", "feedback_play(40)"}), platform().calls());
}

TEST_F(AUIPlayerTest, AFailedDeinitializationIsReturnedAfterTheSoundWasPlayed) {
    announceWarning("Feedback deinitialize error: -9");
    platform().answer("feedback_deinitialize", -9);
    EXPECT_EQ(-9, m_player.play(AUI_SOUND_MOVE));
    EXPECT_EQ(std::vector<int>{40}, platform().playedPatterns());
}

}  // namespace
