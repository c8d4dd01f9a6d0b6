// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/AudioGain.h>
#include <Roamly/Player/MusicStream.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <thread>
#include <vector>

using Export::audioSampleRate;
using Export::StereoSample;

namespace {

constexpr int fade = audioSampleRate / 100;

class MusicStreamTest : public testing::Test {
protected:
    /// Each sample tells its place in the file.
    static double ramp(int index) { return 0.2 + 0.6 * index / length; }
    static double expected(std::int64_t filmSample) { return ramp(static_cast<int>(filmSample % length)); }

    /// The file: 16 bits, two channels.
    static std::vector<std::uint8_t> wave() {
        std::vector<std::uint8_t> bytes;
        const auto text = [&](std::string_view four) { bytes.insert(bytes.end(), four.begin(), four.end()); };
        const auto number = [&](unsigned value, int count) {
            for (int i = 0; i < count; ++i)
                bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        };
        constexpr unsigned size = 4 * length;
        text("RIFF");
        number(36 + size, 4);
        text("WAVEfmt ");
        number(16, 4);
        number(1, 2);
        number(2, 2);
        number(audioSampleRate, 4);
        number(4 * audioSampleRate, 4);
        number(4, 2);
        number(16, 2);
        text("data");
        number(size, 4);
        for (int i = 0; i < length; ++i) {
            const auto sample = static_cast<unsigned>(std::lround(ramp(i) * 32767));
            number(sample, 2);
            number(sample, 2);
        }
        return bytes;
    }
    static void waitUntilReady(const Player::MusicStream& stream) {
        while (stream.available() < 20000)
            std::this_thread::yield();
    }
    static std::vector<StereoSample> read(Player::MusicStream& stream, std::size_t count) {
        std::vector<StereoSample> samples(count);
        stream.read(samples);
        return samples;
    }

    static constexpr int length = 30000;
    TemporaryFolder folder;
    std::filesystem::path file = [this] { return folder.write("music.wav", wave()); }();
    Timeline::AudioPlan plan{.musicBookmark = {}, .totalDuration = 100, .fadeIn = 0, .fadeOut = 0};
};

} // namespace

TEST_F(MusicStreamTest, IsSilentUntilItPlays) {
    Player::MusicStream stream{file, plan};
    waitUntilReady(stream);
    for (const StereoSample& sample : read(stream, 1000))
        EXPECT_EQ(sample, StereoSample{});
}

TEST_F(MusicStreamTest, PlaysTheFileRoundAndRoundWithoutAGap) {
    Player::MusicStream stream{file, plan};
    stream.setPlaying(true);
    for (int sample = 0; sample < 4 * length; sample += 5000) {
        waitUntilReady(stream);
        const auto samples = read(stream, 5000);
        for (int i = sample == 0 ? 2 * fade : 0; i < 5000; ++i)
            ASSERT_NEAR(samples[static_cast<std::size_t>(i)].left, expected(sample + i), 1e-3) << sample + i;
    }
}

TEST_F(MusicStreamTest, JumpsToTheRightPlaceOfAnyPass) {
    Player::MusicStream stream{file, plan};
    stream.setPlaying(true);
    for (const double time : {0.1, 3.7, 0.3, 50.0}) {
        waitUntilReady(stream);
        (void)read(stream, 1000);
        stream.seek(time);
        const auto tail = read(stream, fade);
        (void)tail;
        waitUntilReady(stream);
        (void)read(stream, fade);
        const auto samples = read(stream, 100);
        EXPECT_NEAR(samples[50].left, expected(std::llround(time * audioSampleRate) + 2 * fade + 50), 1e-3)
            << time;
    }
}

TEST_F(MusicStreamTest, AJumpAndAPauseMakeNoClick) {
    Player::MusicStream stream{file, plan};
    stream.setPlaying(true);
    waitUntilReady(stream);
    std::vector<StereoSample> heard = read(stream, 2000);
    const auto hear = [&](std::size_t count) {
        const auto more = read(stream, count);
        heard.insert(heard.end(), more.begin(), more.end());
    };
    stream.seek(10);
    hear(fade);
    waitUntilReady(stream);
    hear(2000);
    stream.setPlaying(false);
    hear(2000);
    EXPECT_EQ(heard.back(), StereoSample{});
    float step = 0;
    for (std::size_t i = 1; i < heard.size(); ++i)
        step = std::max(step, std::abs(heard[i].left - heard[i - 1].left));
    // Full scale in 10 ms, and the music's own steps.
    EXPECT_LT(step, 2.5F / fade);
}

TEST_F(MusicStreamTest, FollowsTheFilmsEnvelope) {
    plan = {.musicBookmark = {}, .totalDuration = 4, .fadeIn = 1, .fadeOut = 2};
    Player::MusicStream stream{file, plan};
    stream.seek(3);
    stream.setPlaying(true);
    waitUntilReady(stream);
    const auto samples = read(stream, 2000);
    const std::int64_t at = 3 * audioSampleRate + 1000;
    const double gain = Export::AudioGain::gain(static_cast<double>(at) / audioSampleRate, 4, 1, 2);
    EXPECT_NEAR(samples[1000].left, expected(at) * gain, 1e-3);
}

TEST_F(MusicStreamTest, GoesOnWhileItIsMuted) {
    Player::MusicStream stream{file, plan};
    stream.setPlaying(true);
    stream.setMuted(true);
    waitUntilReady(stream);
    for (const StereoSample& sample : read(stream, 5000))
        ASSERT_EQ(sample, StereoSample{});
    stream.setMuted(false);
    waitUntilReady(stream);
    EXPECT_NEAR(read(stream, 1000)[999].left, expected(5999), 1e-3);
}

TEST_F(MusicStreamTest, FadesOutForGood) {
    Player::MusicStream stream{file, plan};
    stream.setPlaying(true);
    waitUntilReady(stream);
    (void)read(stream, 2000);
    stream.fadeOut(0.05);
    waitUntilReady(stream);
    const auto samples = read(stream, 3000);
    EXPECT_GT(samples[1000].left, 0.05);
    EXPECT_EQ(samples.back(), StereoSample{});
}

TEST_F(MusicStreamTest, MusicThatIsNotThereIsSilence) {
    Player::MusicStream stream{folder / "nothing.wav", plan};
    stream.setPlaying(true);
    for (const StereoSample& sample : read(stream, 1000))
        EXPECT_EQ(sample, StereoSample{});
}
