// SPDX-License-Identifier: Apache-2.0
// The interface sounds: their files, their service, and their behaviour without a sound system.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "PrivateSet.h"
#include "ProbeSet.h"
#include "feedback.h"

namespace platform_test {

namespace {

template <typename Number>
Number numberAt(const std::string& bytes, std::size_t at) {
    Number number{};
    if (at + sizeof number <= bytes.size()) {
        std::memcpy(&number, bytes.data() + at, sizeof number);
    }
    return number;
}

// The largest amplitude of the 16-bit samples of BYTES from AT on; 1 is full scale.
double peak(const std::string& bytes, std::size_t at) {
    double loudest = 0;
    for (; at + 2 <= bytes.size(); at += 2) {
        const double sample = numberAt<std::int16_t>(bytes, at) / 32768.0;
        loudest = std::max(loudest, std::abs(sample));
    }
    return loudest;
}

// Writes the sound library's configuration of a machine whose only card is a file.
void writeCard(const std::string& configuration, const std::string& card) {
    support::writeFile(configuration, "pcm.!default { type file slave.pcm { type null } file \"" +
                                          card + "\" format raw }\n");
}

}  // namespace

struct NamedSound {
    feedback_pattern_e pattern;
    const char* name;
};

constexpr NamedSound SOUNDS[] = {
#include "sounds.inc"
};

class SoundFile : public ::testing::TestWithParam<NamedSound> {};

TEST_P(SoundFile, IsAShortSoundThatCanBeHeard) {
    const std::string bytes = contentsOf(std::string(SOUND_DIR) + "/" + GetParam().name + ".wav");
    constexpr std::size_t head = 44;
    ASSERT_GT(bytes.size(), head);
    EXPECT_EQ(bytes.substr(0, 4), "RIFF");
    EXPECT_EQ(numberAt<std::uint32_t>(bytes, 4), bytes.size() - 8);
    EXPECT_EQ(bytes.substr(8, 8), "WAVEfmt ");
    EXPECT_EQ(numberAt<std::uint16_t>(bytes, 20), 1);  // uncompressed PCM
    EXPECT_EQ(numberAt<std::uint16_t>(bytes, 22), 1);  // one channel
    const auto rate = numberAt<std::uint32_t>(bytes, 24);
    EXPECT_EQ(rate, 48000U);
    EXPECT_EQ(numberAt<std::uint16_t>(bytes, 34), 16);  // bits
    EXPECT_EQ(bytes.substr(36, 4), "data");
    EXPECT_EQ(numberAt<std::uint32_t>(bytes, 40), bytes.size() - head);

    const double seconds = static_cast<double>(bytes.size() - head) / 2 / rate;
    EXPECT_GT(seconds, 0.05);
    EXPECT_LT(seconds, 0.5);
    EXPECT_GT(peak(bytes, head), 0.05);
    EXPECT_LT(peak(bytes, head), 0.9);  // no clipping
}

INSTANTIATE_TEST_SUITE_P(All, SoundFile, ::testing::ValuesIn(SOUNDS),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

// A set whose sound card is a file, or which has none while the configuration is missing.
class Sound : public ProbeSet {
  protected:
    void start(const Environment& more = {}) {
        Environment environment = more;
        environment.insert(
            {{"CANBERRA_DRIVER", "alsa"}, {"ALSA_CONFIG_PATH", file("asound.conf")}});
        ProbeSet::start({"sounds"}, environment);
    }

    // The probe plays the next of its sounds.
    void playNext() { EXPECT_EQ(control({"app-control"}).status, 0); }
};

TEST_F(Sound, EachOfTheFiveReachesTheSoundCard) {
    writeCard(file("asound.conf"), file("card"));
    start();
    for (const char* line :
         {"Sound 40 move: played", "Sound 41 back: played", "Sound 42 blocked: played",
          "Sound 43 select: played", "Sound 45 popup: played"}) {
        ASSERT_TRUE(logHas(line)) << line;
        ASSERT_TRUE(waitFor([&] { return peak(contentsOf(file("card")), 0) > 0.05; })) << line;
        std::filesystem::remove(file("card"));
        playNext();
    }
    EXPECT_EQ(quit(), 0);
}

TEST_F(Sound, ASoundSystemThatComesLaterIsUsedByTheNextSound) {
    start();
    ASSERT_TRUE(logHas("Sound 40 move: no sound system, "));
    playNext();
    ASSERT_TRUE(logHas("Sound 41 back: no sound system, "));
    writeCard(file("asound.conf"), file("card"));
    playNext();
    ASSERT_TRUE(logHas("Sound 42 blocked: played"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Sound, AFileThatIsMissingOrNoSoundIsNotTakenForAMissingSoundSystem) {
    writeCard(file("asound.conf"), file("card"));
    support::writeFile(file("back.wav"), "this is no sound");
    std::filesystem::copy_file(std::string(SOUND_DIR) + "/blocked.wav", file("blocked.wav"));
    start({{"VIRTUAL_SET_SOUNDS", folder()}});
    ASSERT_TRUE(logHas("Sound 40 move: no file " + file("move.wav") + ", No such file"));
    playNext();
    ASSERT_TRUE(logHas("Sound 41 back: no sound in " + file("back.wav") + ", "));
    playNext();
    ASSERT_TRUE(logHas("Sound 42 blocked: played"));
    EXPECT_EQ(quit(), 0);
}

TEST_F(Sound, AMissingFileIsNamedWithoutASoundSystemToo) {
    start({{"VIRTUAL_SET_SOUNDS", folder()}});
    ASSERT_TRUE(logHas("Sound 40 move: no file " + file("move.wav") + ", No such file"));
    EXPECT_EQ(quit(), 0);
}

class Feedback : public PrivateSet {
  protected:
    Feedback() { setenv("CANBERRA_DRIVER", "null", 1); }
    ~Feedback() override { unsetenv("CANBERRA_DRIVER"); }
};

TEST_F(Feedback, APatternThatDoesNotExistIsAnError) {
    EXPECT_EQ(feedback_initialize(), 0);
    EXPECT_EQ(feedback_play(static_cast<feedback_pattern_e>(44)), FEEDBACK_ERROR_INVALID_PARAMETER);
    EXPECT_EQ(feedback_deinitialize(), 0);
}

TEST_F(Feedback, NothingPlaysBeforeTheServiceIsInitialized) {
    EXPECT_EQ(feedback_play(FEEDBACK_PATTERN_MOVE), FEEDBACK_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(feedback_deinitialize(), FEEDBACK_ERROR_NOT_INITIALIZED);
}

TEST_F(Feedback, SoundsThatAreSwitchedOffStillSucceed) {
    describe("[Sound]\nEnabled=false\n");
    EXPECT_EQ(feedback_initialize(), 0);
    EXPECT_EQ(feedback_play(FEEDBACK_PATTERN_MOVE), 0);
    EXPECT_EQ(feedback_deinitialize(), 0);
    EXPECT_TRUE(waitFor([&] { return log().find("Sound 40 move: off") != std::string::npos; }));
}

}  // namespace platform_test
