// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SoundFile.h"

#include <Export/AudioGain.h>
#include <Export/ExportError.h>
#include <Export/Libav.h>
#include <Export/Soundtrack.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <optional>
#include <random>
#include <stop_token>
#include <string>
#include <vector>

namespace {

using namespace Export;
using testing::HasSubstr;
using Samples = std::vector<StereoSample>;
namespace fs = std::filesystem;

/// Everything the soundtrack plays, without fades unless given.
Samples play(const fs::path& music, double duration, double fadeIn = 0, double fadeOut = 0,
             std::stop_token stop = {}) {
    Soundtrack soundtrack(music, {{}, duration, fadeIn, fadeOut}, std::move(stop));
    Samples samples;
    StereoBuffer buffer;
    while (soundtrack.next(buffer))
        samples.insert(samples.end(), buffer.begin(), buffer.end());
    return samples;
}

std::optional<ExportError> failureOf(const fs::path& music, double duration = 1) {
    try {
        play(music, duration);
    } catch (const ExportError& error) {
        return error;
    }
    return std::nullopt;
}

double peak(const Samples& samples, bool right) {
    double highest = 0;
    for (const StereoSample& sample : samples)
        highest = std::max(highest, std::abs(static_cast<double>(right ? sample.right : sample.left)));
    return highest;
}

/// The largest distance between the samples and a sine of an amplitude, played from its beginning.
double distanceFromSine(const Samples& samples, double frequency, double amplitude, std::size_t first,
                        std::size_t last) {
    double largest = 0;
    for (std::size_t i = first; i < last; ++i) {
        const double expected = amplitude * sine(frequency, static_cast<int>(i), audioSampleRate);
        largest = std::max(
            {largest, std::abs(samples.at(i).left - expected), std::abs(samples.at(i).right - expected)});
    }
    return largest;
}

/// A different value for every sample, exact in 16 bits.
double ramp(int index, int channel) {
    return ((index * 7 + channel * 1000) % 30000 - 15000) / 32767.0;
}

class SoundtrackTest : public testing::Test {
protected:
    TemporaryFolder folder;
};

TEST_F(SoundtrackTest, SixteenBitStereoComesThroughExactly) {
    writeSound(folder / "a.wav", {.length = 44100 * 2, .sample = ramp});
    const Samples samples = play(folder / "a.wav", 1);
    for (int i = 0; i < 44100; ++i) {
        const auto& sample = samples[static_cast<std::size_t>(i)];
        ASSERT_EQ(sample.left, static_cast<float>(std::lround(ramp(i, 0) * 32767)) / 32768) << i;
        ASSERT_EQ(sample.right, static_cast<float>(std::lround(ramp(i, 1) * 32767)) / 32768) << i;
    }
}

TEST_F(SoundtrackTest, LastBufferIsNotTrimmed) {
    writeSound(folder / "a.wav", {.length = 44100 * 2});
    EXPECT_EQ(play(folder / "a.wav", 1).size(), 44U * 1024);
    // A buffer that reaches the end exactly is the last one.
    EXPECT_EQ(play(folder / "a.wav", 1024.0 / 44100).size(), 1024U);
    EXPECT_EQ(play(folder / "a.wav", 1025.0 / 44100).size(), 2048U);
    EXPECT_EQ(play(folder / "a.wav", 0.0001).size(), 1024U);
}

TEST_F(SoundtrackTest, NothingIsPlayedWithoutATime) {
    EXPECT_TRUE(play(folder / "missing.wav", 0).empty());
    EXPECT_TRUE(play(folder / "missing.wav", -1).empty());
}

TEST_F(SoundtrackTest, WavAndFlacLoopWithoutAGapOrALostSample) {
    const int length = 30011;
    const auto sample = [](int i, int) { return i * 0.5 / 30011 + 0.2; };
    writeSound(folder / "a.wav", {.length = length, .sample = sample});
    writeSound(folder / "a.flac", {.container = "flac", .codec = "flac", .length = length, .sample = sample});
    for (const char* name : {"a.wav", "a.flac"}) {
        const Samples samples = play(folder / name, 5);
        for (std::size_t i = static_cast<std::size_t>(length); i < 5U * 44100; ++i)
            ASSERT_EQ(samples[i], samples[i - static_cast<std::size_t>(length)]) << name << " " << i;
        EXPECT_NEAR(samples[static_cast<std::size_t>(length) - 1].left, 0.7, 1e-3);
        EXPECT_NEAR(samples[static_cast<std::size_t>(length)].left, 0.2, 1e-3);
    }
}

TEST_F(SoundtrackTest, MusicTooLongToKeepInMemoryLoopsToo) {
    const int length = 44100 * 31 + 77;
    writeSound(folder / "a.wav", {.channels = 1, .length = length, .sample = ramp});
    const Samples samples = play(folder / "a.wav", 65);
    for (std::size_t i = static_cast<std::size_t>(length); i < 65U * 44100; ++i)
        ASSERT_EQ(samples[i], samples[i - static_cast<std::size_t>(length)]) << i;
}

TEST_F(SoundtrackTest, OneSampleOfMusicLoopsForAMinuteInNoTime) {
    writeSound(folder / "a.wav", {.length = 1, .sample = [](int, int) { return 0.5; }});
    const Samples samples = play(folder / "a.wav", 60);
    for (std::size_t i = 1; i < 60U * 44100; ++i)
        ASSERT_EQ(samples.at(i), samples[0]) << i;
}

TEST_F(SoundtrackTest, EnvelopeMultipliesEverySampleByTheGainOfItsTime) {
    writeSound(folder / "a.wav", {.length = 44100, .sample = [](int, int) { return 1; }});
    const Samples samples = play(folder / "a.wav", 8, 2, 3);
    const float full = 32767.0F / 32768;
    double start = 0;
    for (std::size_t i = 0; i < samples.size(); i += 1024) {
        for (std::size_t j = 0; j < 1024; ++j) {
            const float gain = AudioGain::gain(start + static_cast<double>(j) / 44100, 8, 2, 3);
            ASSERT_EQ(samples[i + j], (StereoSample{full * gain, full * gain})) << i + j;
        }
        start = static_cast<double>(i + 1024) / 44100;
    }
    // What the last buffer has after the end is silent.
    EXPECT_EQ(samples.back(), StereoSample{});
}

TEST_F(SoundtrackTest, MonoIsHeardInBothEarsAtItsOwnLevel) {
    writeSound(folder / "a.wav", {.channels = 1, .length = 44100, .sample = ramp});
    const Samples samples = play(folder / "a.wav", 1);
    for (int i = 0; i < 44100; ++i) {
        const auto& sample = samples[static_cast<std::size_t>(i)];
        ASSERT_NEAR(sample.left, ramp(i, 0), 1e-4) << i;
        ASSERT_EQ(sample.left, sample.right);
    }
}

TEST_F(SoundtrackTest, EveryRateFrom8To192KilohertzKeepsPitchTimeAndLevel) {
    for (const int rate : {8000, 11025, 16000, 22050, 32000, 48000, 88200, 96000, 176400, 192000}) {
        const fs::path file = folder / (std::to_string(rate) + ".wav");
        writeSound(file, {.sampleRate = rate, .length = rate * 2, .sample = [rate](int i, int) {
                              return 0.5 * sine(500, i, rate);
                          }});
        const Samples samples = play(file, 1.9);
        // A resampler needs a moment to settle where the sound begins.
        EXPECT_LT(distanceFromSine(samples, 500, 0.5, 200, 44100 * 19 / 10), 0.01) << rate;
    }
}

TEST_F(SoundtrackTest, ResampledMusicLoopsAtItsOwnLength) {
    writeSound(folder / "a.wav", {.sampleRate = 48000, .length = 24000, .sample = [](int i, int) {
                                      return 0.5 * sine(100, i, 48000);
                                  }});
    const Samples samples = play(folder / "a.wav", 4);
    // Half a second holds fifty whole periods, so the loop is heard as one sine.
    EXPECT_LT(distanceFromSine(samples, 100, 0.5, 200, 4 * 44100), 0.05);
}

TEST_F(SoundtrackTest, SurroundSoundIsMixedDownWithoutClipping) {
    // Front left, front right, front centre, low frequencies, side left, side right.
    for (int loud = 0; loud < 6; ++loud) {
        const fs::path file = folder / (std::to_string(loud) + ".flac");
        writeSound(file, {.container = "flac",
                          .codec = "flac",
                          .sampleRate = 48000,
                          .channels = 6,
                          .length = 48000,
                          .sample = [loud](int i, int channel) {
                              return channel == loud ? sine(440, i, 48000) : 0;
                          }});
        const Samples samples = play(file, 0.9);
        const double left = peak(samples, false);
        const double right = peak(samples, true);
        if (loud == 0 || loud == 4) {
            EXPECT_GT(left, 0.2) << loud;
            EXPECT_LT(right, 0.001) << loud;
        } else if (loud == 1 || loud == 5) {
            EXPECT_LT(left, 0.001) << loud;
            EXPECT_GT(right, 0.2) << loud;
        } else if (loud == 2) {
            EXPECT_GT(left, 0.2);
            EXPECT_NEAR(left, right, 0.001);
        }
    }
    writeSound(
        folder / "all.flac",
        {.container = "flac", .codec = "flac", .channels = 6, .length = 44100, .sample = [](int i, int) {
             return sine(440, i, 44100);
         }});
    const Samples samples = play(folder / "all.flac", 0.9);
    EXPECT_LE(peak(samples, false), 1.0);
    EXPECT_GT(peak(samples, false), 0.9);
}

TEST_F(SoundtrackTest, ChannelsThatNobodyNamedAreSharedOut) {
    for (const int channels : {2, 3, 9, 12}) {
        const fs::path file = folder / (std::to_string(channels) + ".wav");
        writeSound(file, {.channels = channels,
                          .hasNamedChannels = false,
                          .length = 44100,
                          .sample = [](int i, int) { return 0.9 * sine(440, i, 44100); }});
        const Samples samples = play(file, 0.5);
        EXPECT_GT(peak(samples, false), 0.3) << channels;
        EXPECT_GT(peak(samples, true), 0.3) << channels;
        EXPECT_LE(peak(samples, false), 1) << channels;
    }
}

TEST_F(SoundtrackTest, FormatsThatPeopleHaveAreRead) {
    const auto tone = [](int rate) { return [rate](int i, int) { return 0.5 * sine(500, i, rate); }; };
    const std::vector<std::pair<std::string, SoundFile>> files{
        {"a.mp3", {.container = "mp3", .codec = "libmp3lame", .length = 88200, .sample = tone(44100)}},
        {"a.m4a", {.container = "ipod", .codec = "aac", .length = 88200, .sample = tone(44100)}},
        {"b.m4a",
         {.container = "ipod", .codec = "alac", .sampleRate = 48000, .length = 96000, .sample = tone(48000)}},
        {"a.ogg", {.container = "ogg", .codec = "libvorbis", .length = 88200, .sample = tone(44100)}},
        {"a.opus",
         {.container = "ogg",
          .codec = "libopus",
          .sampleRate = 48000,
          .length = 96000,
          .sample = tone(48000)}},
        {"a.aiff", {.container = "aiff", .codec = "pcm_s24be", .length = 88200, .sample = tone(44100)}},
        {"8bit.wav",
         {.codec = "pcm_u8", .sampleRate = 8000, .channels = 1, .length = 16000, .sample = tone(8000)}},
        {"float.wav", {.codec = "pcm_f32le", .sampleRate = 96000, .length = 192000, .sample = tone(96000)}},
        {"24.flac",
         {.container = "flac",
          .codec = "flac",
          .sampleRate = 96000,
          .length = 192000,
          .sample = tone(96000)}},
    };
    for (const auto& [name, sound] : files) {
        writeSound(folder / name, sound);
        const Samples samples = play(folder / name, 1.9);
        // Level over whole periods; the phase too, since the padding of the encoders is cut.
        EXPECT_LT(distanceFromSine(samples, 500, 0.5, 4410, 44100), 0.06) << name;
    }
}

TEST_F(SoundtrackTest, CoverArtIsNoSound) {
    const auto tone = [](int i, int) { return 0.5 * sine(500, i, 44100); };
    writeSound(
        folder / "a.mp3",
        {.container = "mp3", .codec = "libmp3lame", .length = 88200, .sample = tone, .hasCover = true});
    writeSound(folder / "a.flac",
               {.container = "flac", .codec = "flac", .length = 88200, .sample = tone, .hasCover = true});
    for (const char* name : {"a.mp3", "a.flac"}) {
        const Samples samples = play(folder / name, 1.9);
        EXPECT_LT(distanceFromSine(samples, 500, 0.5, 4410, 44100), 0.06) << name;
    }
}

TEST_F(SoundtrackTest, CompressedMusicLoopsWithoutTheEncodersPadding) {
    // A second holds a hundred whole periods, so the loop is heard as one sine unless silence is added.
    const auto tone = [](int i, int) { return 0.5 * sine(100, i, 44100); };
    writeSound(folder / "a.mp3",
               {.container = "mp3", .codec = "libmp3lame", .length = 44100, .sample = tone});
    writeSound(folder / "a.m4a", {.container = "ipod", .codec = "aac", .length = 44100, .sample = tone});
    for (const char* name : {"a.mp3", "a.m4a"}) {
        const Samples samples = play(folder / name, 3);
        EXPECT_LT(distanceFromSine(samples, 100, 0.5, 46000, 3 * 44100 - 2000), 0.1) << name;
    }
}

/// Photos and music of the real world, whose facts were verified by other means.
TEST_F(SoundtrackTest, RealMusicPlaysForAsLongAsItLasts) {
    const char* photos = std::getenv("ROAMLY_TEST_PHOTOS");
    if (!photos)
        GTEST_SKIP() << "ROAMLY_TEST_PHOTOS is not set";
    const fs::path root(photos);
    int count = 0;
    const auto manifest = nlohmann::json::parse(std::ifstream(root / "manifest.json"));
    for (const auto& item : manifest.at("items")) {
        const std::string file = item.at("file");
        if (!item.contains("audio"))
            continue;
        ++count;
        if (item["audio"].is_null()) {
            EXPECT_TRUE(failureOf(root / file)) << file;
            continue;
        }
        MusicReader reader(root / file, {});
        Samples samples;
        while (reader.read(samples)) {
        }
        // Containers count the encoder's padding in, in Opus up to 65,535 samples of it.
        const double padding = item["audio"]["codec"] == "opus" ? 1.4 : 0.1;
        const double seconds = static_cast<double>(samples.size()) / audioSampleRate;
        EXPECT_LE(seconds, item["audio"]["seconds"].get<double>() + 0.01) << file;
        EXPECT_GE(seconds, item["audio"]["seconds"].get<double>() - padding) << file;
    }
    EXPECT_GT(count, 0);
}

TEST_F(SoundtrackTest, FileWithoutAudioTrackFailsAndIsNamed) {
    std::ofstream(folder / "text.mp3") << "this is no music";
    std::ofstream(folder / "nothing.mp3").flush();
    std::ofstream(folder / "picture.pgm") << "P5 1 1 255 x";
    fs::create_directory(folder / "folder");
    for (const std::string name : {"text.mp3", "nothing.mp3", "picture.pgm", "folder", "missing.wav"}) {
        const auto error = failureOf(folder / name);
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->kind(), ExportError::Kind::appendFailed);
        EXPECT_THAT(error->what(), HasSubstr((folder / name).string()));
    }
}

TEST_F(SoundtrackTest, MusicOfNoSamplesFailsInsteadOfLoopingForEver) {
    writeSound(folder / "a.wav", {.length = 0});
    writeSound(folder / "a.flac", {.container = "flac", .codec = "flac", .length = 0});
    for (const char* name : {"a.wav", "a.flac"}) {
        const auto error = failureOf(folder / name);
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->kind(), ExportError::Kind::appendFailed);
    }
}

TEST_F(SoundtrackTest, MusicTakenAwayBeforeItStartsAgainFails) {
    writeSound(folder / "a.wav", {.sampleRate = 8000, .channels = 1, .length = 8000 * 31});
    Soundtrack soundtrack(folder / "a.wav", {{}, 100, 0, 0}, {});
    StereoBuffer buffer;
    ASSERT_TRUE(soundtrack.next(buffer));
    fs::remove(folder / "a.wav");
    const auto playOn = [&] {
        while (soundtrack.next(buffer)) {
        }
    };
    EXPECT_THROW(playOn(), ExportError);
    EXPECT_GT(soundtrack.position(), 30);
    EXPECT_LT(soundtrack.position(), 32);
}

TEST_F(SoundtrackTest, DamagedPartsAreSkipped) {
    const auto tone = [](int i, int) { return 0.5 * sine(500, i, 44100); };
    writeSound(folder / "a.mp3",
               {.container = "mp3", .codec = "libmp3lame", .length = 44100 * 4, .sample = tone});
    const auto size = static_cast<std::streamoff>(fs::file_size(folder / "a.mp3"));
    std::fstream file(folder / "a.mp3", std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(size / 2);
    file << std::string(static_cast<std::size_t>(size / 8), '\xA5');
    file.close();
    const Samples samples = play(folder / "a.mp3", 3);
    EXPECT_LT(distanceFromSine(samples, 500, 0.5, 4410, 44100), 0.06);
    EXPECT_GT(peak({samples.end() - 22050, samples.end()}, false), 0.4);
}

TEST_F(SoundtrackTest, TruncatedMusicLoopsOverWhatIsThere) {
    writeSound(folder / "a.wav", {.length = 44100, .sample = ramp});
    fs::resize_file(folder / "a.wav", 44 + 34 + 4 * 10000);
    const Samples samples = play(folder / "a.wav", 1);
    ASSERT_GE(samples.size(), 44100U);
    EXPECT_GT(peak(samples, false), 0.4);
}

TEST_F(SoundtrackTest, SamplesThatAreNoNumbersAreSilentAndFarTooLoudOnesAreLimited) {
    const auto sample = [](int i, int) {
        return i % 3 == 0   ? std::numeric_limits<double>::quiet_NaN()
               : i % 3 == 1 ? std::numeric_limits<double>::infinity()
                            : -1e30;
    };
    writeSound(folder / "a.wav", {.codec = "pcm_f32le", .length = 44100, .sample = sample});
    const Samples samples = play(folder / "a.wav", 0.5);
    EXPECT_EQ(samples[0].left, 0);
    EXPECT_EQ(samples[1].left, 0);
    EXPECT_EQ(samples[2].left, -1);
}

TEST_F(SoundtrackTest, StopIsACancellation) {
    writeSound(folder / "a.wav", {.length = 44100});
    std::stop_source stop;
    stop.request_stop();
    try {
        play(folder / "a.wav", 1, 0, 0, stop.get_token());
        FAIL() << "not stopped";
    } catch (const ExportError& error) {
        EXPECT_EQ(error.kind(), ExportError::Kind::cancelled);
    }
}

TEST_F(SoundtrackTest, DamagedFilesOfAnyKindEitherPlayOrFail) {
    const auto tone = [](int i, int) { return 0.5 * sine(500, i, 44100); };
    const std::vector<std::pair<std::string, SoundFile>> kinds{
        {"a.wav", {.length = 3000, .sample = tone}},
        {"a.flac", {.container = "flac", .codec = "flac", .length = 3000, .sample = tone}},
        {"a.mp3", {.container = "mp3", .codec = "libmp3lame", .length = 6000, .sample = tone}},
        {"a.m4a", {.container = "ipod", .codec = "aac", .length = 6000, .sample = tone}},
        {"a.ogg", {.container = "ogg", .codec = "libvorbis", .length = 6000, .sample = tone}},
    };
    std::mt19937 random(20260711);
    int played = 0;
    int failed = 0;
    for (const auto& [name, sound] : kinds) {
        writeSound(folder / name, sound);
        std::ifstream stream(folder / name, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        for (int round = 0; round < 150; ++round) {
            std::string damaged = bytes;
            const auto changes = 1 + random() % 8;
            for (unsigned change = 0; change < changes; ++change) {
                // Mostly in the headers, where the claims are.
                const std::size_t range =
                    random() % 2 ? std::min<std::size_t>(200, bytes.size()) : bytes.size();
                damaged[random() % range] = static_cast<char>(random());
            }
            if (random() % 4 == 0)
                damaged.resize(random() % damaged.size());
            std::ofstream(folder / "damaged", std::ios::binary) << damaged;
            if (const auto error = failureOf(folder / "damaged", 0.5)) {
                EXPECT_EQ(error->kind(), ExportError::Kind::appendFailed) << error->what();
                ++failed;
            } else {
                ++played;
            }
        }
    }
    EXPECT_GT(played, 100);
    EXPECT_GT(failed, 20);
}

} // namespace
