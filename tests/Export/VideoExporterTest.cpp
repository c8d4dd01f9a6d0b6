// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MovieProbe.h"
#include "PlainFrames.h"
#include "SoundFile.h"

#include <Export/MovieExport.h>
#include <Export/VideoExporter.h>
#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <fstream>
#include <limits>
#include <optional>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

using namespace Export;
using Kind = ExportError::Kind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr Frames::FrameSize smallSize{64, 36};

void writeText(const fs::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

std::string readText(const fs::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Foundation::Bytes barePath(const fs::path& file) {
    const std::string text = file.string();
    return {text.begin(), text.end()};
}

class VideoExporterTest : public testing::Test {
protected:
    /// Exports in small frames, so that a test takes no time.
    ExportResult run(const Timeline::SlideshowTimeline& timeline, ExportCodec codec = ExportCodec::h264) {
        return exportMovie(timeline, Timeline::Playhead(timeline, 0.75), {smallSize, codec, 30}, frames,
                           movie, progress, stop.get_token());
    }

    std::optional<ExportError> failureOf(const Timeline::SlideshowTimeline& timeline) {
        try {
            run(timeline);
        } catch (const ExportError& error) {
            return error;
        }
        return std::nullopt;
    }

    Timeline::SlideshowTimeline withMusic(double duration, const fs::path& music, double fadeIn = 0,
                                          double fadeOut = 0) {
        Timeline::SlideshowTimeline timeline = onePhoto(duration);
        timeline.audio = Timeline::AudioPlan{barePath(music), duration, fadeIn, fadeOut};
        return timeline;
    }

    TemporaryFolder folder;
    fs::path movie = folder / "Slideshow.mov";
    PlainFrames frames;
    std::function<void(const ExportProgress&)> progress;
    std::stop_source stop;
};

TEST_F(VideoExporterTest, TenSecondsAt30FpsGiveExactly300FramesAtMultiplesOfAThirtieth) {
    run(onePhoto(10.0));
    const ProbedMovie probed = probeMovie(movie);
    ASSERT_EQ(probed.video.size(), 1U);
    const ProbedVideo& video = probed.video[0];
    ASSERT_EQ(video.times.size(), 300U);
    for (std::size_t i = 0; i < 300; ++i)
        EXPECT_EQ(video.times[i], static_cast<std::int64_t>(i));
    EXPECT_EQ(video.start, 0);
    EXPECT_DOUBLE_EQ(video.duration, 10.0);
    EXPECT_DOUBLE_EQ(probed.duration, 10.0);
    EXPECT_EQ(video.frameRate, 30);
    EXPECT_TRUE(probed.sound.empty());
    EXPECT_EQ(frames.calls, 300);
}

TEST_F(VideoExporterTest, FramesComeInTheOrderOfTheirTimes) {
    run(onePhoto(4.0));
    const std::vector<double> lumas = probeMovie(movie).video.at(0).lumas;
    ASSERT_EQ(lumas.size(), 120U);
    for (std::size_t i = 0; i < lumas.size(); ++i)
        EXPECT_NEAR(lumas[i], PlainFrames::luma(static_cast<double>(i) / 30 / 4.0), 1.5) << i;
}

TEST_F(VideoExporterTest, FrameCountIsRoundedHalvesUpAndAtLeastOne) {
    for (const auto& [duration, count] :
         std::vector<std::pair<double, std::size_t>>{{0.001, 1}, {0.05, 2}, {0.1, 3}, {0.11, 3}, {0.12, 4}}) {
        run(onePhoto(duration));
        EXPECT_EQ(probeMovie(movie).video.at(0).times.size(), count) << duration;
    }
}

TEST_F(VideoExporterTest, TimelineOfTotalZeroFailsWithNoFramesAndCreatesNoFile) {
    for (const double duration : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        const auto error = failureOf(onePhoto(duration));
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), Kind::noFrames);
        EXPECT_THAT(folder.contents(), IsEmpty());
    }
    EXPECT_EQ(frames.calls, 0);
}

TEST_F(VideoExporterTest, NoFramesLeavesAnExistingMovieUntouched) {
    writeText(movie, "the last movie");
    EXPECT_EQ(failureOf(onePhoto(0))->kind(), Kind::noFrames);
    EXPECT_EQ(readText(movie), "the last movie");
}

TEST_F(VideoExporterTest, EndlessTimelineIsRefusedBeforeTheExistingMovieGoes) {
    writeText(movie, "the last movie");
    for (const double duration : {1e300, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(failureOf(onePhoto(duration))->kind(), Kind::writerSetupFailed);
    EXPECT_EQ(readText(movie), "the last movie");
}

TEST_F(VideoExporterTest, MusicThatIsNoneIsRefusedBeforeTheExistingMovieGoes) {
    writeText(movie, "the last movie");
    writeText(folder / "text.mp3", "this is no music");
    EXPECT_EQ(failureOf(withMusic(1, folder / "text.mp3"))->kind(), Kind::appendFailed);
    EXPECT_EQ(readText(movie), "the last movie");
    EXPECT_EQ(frames.calls, 0);
}

TEST_F(VideoExporterTest, H264MovieIsTaggedAsPlayersExpect) {
    run(onePhoto(0.2));
    const ProbedMovie probed = probeMovie(movie);
    const ProbedVideo& video = probed.video.at(0);
    EXPECT_EQ(video.tag, "avc1");
    EXPECT_EQ(video.pixelFormat, "yuv420p");
    EXPECT_EQ(video.profile, FF_PROFILE_H264_HIGH);
    EXPECT_EQ(video.width, 64);
    EXPECT_EQ(video.height, 36);
    EXPECT_EQ(video.primaries, AVCOL_PRI_BT709);
    EXPECT_EQ(video.transfer, AVCOL_TRC_BT709);
    EXPECT_EQ(video.matrix, AVCOL_SPC_BT709);
    EXPECT_EQ(video.range, AVCOL_RANGE_MPEG);
    EXPECT_EQ(probed.colourBox, (std::string("nclc\0\1\0\1\0\1", 10)));
    EXPECT_GE(video.keyFrames, 1);
}

TEST_F(VideoExporterTest, HevcMovieIsTaggedAsPlayersExpect) {
    run(onePhoto(1.0), ExportCodec::hevc);
    const ProbedMovie probed = probeMovie(movie);
    const ProbedVideo& video = probed.video.at(0);
    EXPECT_EQ(video.tag, "hvc1");
    EXPECT_EQ(video.pixelFormat, "yuv420p");
    EXPECT_EQ(video.profile, FF_PROFILE_HEVC_MAIN);
    EXPECT_EQ(video.primaries, AVCOL_PRI_BT709);
    EXPECT_EQ(video.transfer, AVCOL_TRC_BT709);
    EXPECT_EQ(video.matrix, AVCOL_SPC_BT709);
    EXPECT_EQ(video.range, AVCOL_RANGE_MPEG);
    EXPECT_EQ(probed.colourBox, (std::string("nclc\0\1\0\1\0\1", 10)));
    ASSERT_EQ(video.times.size(), 30U);
    EXPECT_EQ(video.times.front(), 0);
    EXPECT_EQ(video.times.back(), 29);
    EXPECT_EQ(video.start, 0);
    EXPECT_DOUBLE_EQ(video.duration, 1.0);
    EXPECT_EQ(video.lumas.size(), 30U);
}

TEST_F(VideoExporterTest, IndexStandsBeforeThePictures) {
    run(onePhoto(0.5));
    const ProbedMovie probed = probeMovie(movie);
    EXPECT_EQ(probed.brand, "qt  ");
    const auto& boxes = probed.boxes;
    const auto at = [&](const char* type) { return std::find(boxes.begin(), boxes.end(), type); };
    ASSERT_NE(at("moov"), boxes.end());
    ASSERT_NE(at("mdat"), boxes.end());
    EXPECT_LT(at("moov"), at("mdat"));
}

TEST_F(VideoExporterTest, FullSizesComeFromThePreset) {
    const Timeline::SlideshowTimeline timeline = onePhoto(0.1);
    VideoExporter(timeline, {ExportResolution::p1080, ExportCodec::h264}, 0.75, frames).exportMovie(movie);
    ProbedMovie probed = probeMovie(movie);
    EXPECT_EQ(probed.video.at(0).width, 1920);
    EXPECT_EQ(probed.video.at(0).height, 1080);
    EXPECT_EQ(probed.video.at(0).tag, "avc1");
    EXPECT_EQ(probed.video.at(0).profile, FF_PROFILE_H264_HIGH);

    VideoExporter(timeline, {ExportResolution::p2160, ExportCodec::hevc}, 0.75, frames).exportMovie(movie);
    probed = probeMovie(movie);
    EXPECT_EQ(probed.video.at(0).width, 3840);
    EXPECT_EQ(probed.video.at(0).height, 2160);
    EXPECT_EQ(probed.video.at(0).tag, "hvc1");
    EXPECT_EQ(probed.video.at(0).times.size(), 3U);
}

TEST_F(VideoExporterTest, ProgressAscendsFrameByFrameAndEndsWithDone) {
    std::vector<ExportProgress> reports;
    progress = [&](const ExportProgress& report) { reports.push_back(report); };
    run(onePhoto(0.5));
    ASSERT_EQ(reports.size(), 16U);
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_EQ(reports[i], (ExportProgress{static_cast<double>(i + 1) / 15, "Rendering video"}));
    EXPECT_EQ(reports.back(), (ExportProgress{1.0, "Done"}));
}

TEST_F(VideoExporterTest, ResultListsThePhotosThatCouldNotBeDrawn) {
    Foundation::Uuid id;
    id.bytes[3] = 7;
    frames.failed = {id};
    EXPECT_EQ(run(onePhoto(0.1)), (ExportResult{{id}}));
}

TEST_F(VideoExporterTest, NewMovieReplacesTheOldOneAndLeavesNothingElse) {
    writeText(movie, "the last movie");
    run(onePhoto(0.1));
    EXPECT_THAT(folder.contents(), ElementsAre("Slideshow.mov"));
    EXPECT_EQ(probeMovie(movie).video.size(), 1U);
}

TEST_F(VideoExporterTest, NothingStandsAtTheTargetUntilTheMovieIsComplete) {
    writeText(movie, "the last movie");
    progress = [&](const ExportProgress& report) { EXPECT_EQ(fs::exists(movie), report.stage == "Done"); };
    run(onePhoto(0.2));
}

TEST_F(VideoExporterTest, ShortNameWithoutFolderIsWrittenInTheWorkingFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    movie = "Film";
    EXPECT_NO_THROW(run(onePhoto(0.1)));
    fs::current_path(before);
    EXPECT_THAT(folder.contents(), ElementsAre("Film"));
}

TEST_F(VideoExporterTest, StrangeAndLongNamesAreNamesOfFiles) {
    for (const std::string& name :
         {std::string("http:%d?.mov"), std::string("a\nb.mov"), std::string(255, 'x')}) {
        movie = folder / name;
        run(onePhoto(0.1));
        EXPECT_EQ(probeMovie(movie).video.size(), 1U) << name;
    }
}

TEST_F(VideoExporterTest, SymbolicLinkStaysAndTheMovieIsWrittenWhereItPoints) {
    fs::create_directory(folder / "disk");
    writeText(folder / "disk/real.mov", "the last movie");
    fs::create_symlink("disk/real.mov", movie);
    run(onePhoto(0.1));
    EXPECT_TRUE(fs::is_symlink(movie));
    EXPECT_EQ(probeMovie(folder / "disk/real.mov").video.size(), 1U);
    EXPECT_THAT(folder.contents(), testing::UnorderedElementsAre("disk", "Slideshow.mov"));
}

TEST_F(VideoExporterTest, LinksInACircleAreAnErrorNotAHang) {
    fs::create_symlink("b.mov", folder / "a.mov");
    fs::create_symlink("a.mov", folder / "b.mov");
    movie = folder / "a.mov";
    EXPECT_EQ(failureOf(onePhoto(0.1))->kind(), Kind::writerSetupFailed);
    EXPECT_TRUE(fs::is_symlink(folder / "a.mov"));
}

TEST_F(VideoExporterTest, FolderAtTheTargetIsNeverDeleted) {
    fs::create_directory(movie);
    const auto error = failureOf(onePhoto(0.1));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::writerSetupFailed);
    EXPECT_THAT(error->what(), HasSubstr(movie.string()));
    EXPECT_TRUE(fs::is_directory(movie));
    EXPECT_THAT(folder.contents(), ElementsAre("Slideshow.mov"));
}

TEST_F(VideoExporterTest, MissingTargetFolderIsASetupFailureThatNamesThePath) {
    movie = folder / "nowhere/Slideshow.mov";
    const auto error = failureOf(onePhoto(0.1));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::writerSetupFailed);
    EXPECT_THAT(error->what(), HasSubstr(movie.string()));
    EXPECT_THAT(error->what(), HasSubstr("No such file or directory"));
    EXPECT_EQ(frames.calls, 0);
}

TEST_F(VideoExporterTest, DeviceAtTheTargetIsNeverDeleted) {
    movie = "/dev/null";
    const auto error = failureOf(onePhoto(0.1));
    EXPECT_TRUE(fs::exists("/dev/null"));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::writerSetupFailed);
    EXPECT_THAT(error->what(), HasSubstr("/dev/null"));
}

/// No file grows beyond the limit as long as this lives, as if the disk were full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

TEST_F(VideoExporterTest, DiskThatFillsUpIsAnErrorWithItsReasonAndLeavesNothing) {
    const fs::path music = folder / "noise.wav";
    writeSound(music, {.length = 44100, .sample = [](int i, int) { return std::sin(i * 12.9898) * 0.5; }});
    // At the end of a short movie, and in the middle of a long one.
    for (const double duration : {0.5, 20.0}) {
        std::optional<ExportError> error;
        {
            const FileSizeLimit limit(4000);
            error = failureOf(withMusic(duration, music));
        }
        ASSERT_TRUE(error) << duration;
        EXPECT_EQ(error->kind(), Kind::writerFailed);
        EXPECT_THAT(error->what(), HasSubstr(movie.string() + ": File too large"));
        EXPECT_THAT(folder.contents(), ElementsAre("noise.wav"));
    }
}

TEST_F(VideoExporterTest, FrameThatCannotBeMadeFailsAndLeavesNothing) {
    writeText(movie, "the last movie");
    frames.before = [](double progress) { return progress < 0.5; };
    const auto error = failureOf(onePhoto(2));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::appendFailed);
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, FrameSourceThatThrowsFailsWithItsReason) {
    frames.before = [](double progress) -> bool {
        if (progress > 0.3)
            throw std::runtime_error("the font is missing");
        return true;
    };
    const auto error = failureOf(onePhoto(2));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::appendFailed);
    EXPECT_THAT(error->what(), HasSubstr("the font is missing"));
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, FrameSourceThatNoticesTheCancellationItselfIsACancellation) {
    frames.before = [](double) -> bool { throw Foundation::Cancelled(); };
    EXPECT_EQ(failureOf(onePhoto(1))->kind(), Kind::cancelled);
}

TEST_F(VideoExporterTest, CancellingWhileTheWriterIsBusyLeavesNoFileBehind) {
    writeText(movie, "the last movie");
    progress = [&](const ExportProgress& report) {
        if (report.fraction > 0.3)
            stop.request_stop();
    };
    const auto error = failureOf(onePhoto(20));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->kind(), Kind::cancelled);
    EXPECT_THAT(folder.contents(), IsEmpty());
    EXPECT_LT(frames.calls, 300);
}

TEST_F(VideoExporterTest, CancellingWhileFramesAreAwaitedIsNoticed) {
    std::atomic<bool> isAwaited = false;
    std::atomic<bool> mayGoOn = false;
    frames.before = [&](double progress) {
        if (progress > 0.2) {
            isAwaited = true;
            isAwaited.notify_all();
            mayGoOn.wait(false);
        }
        return true;
    };
    std::jthread user([&] {
        isAwaited.wait(false);
        stop.request_stop();
        mayGoOn = true;
        mayGoOn.notify_all();
    });
    EXPECT_EQ(failureOf(onePhoto(5))->kind(), Kind::cancelled);
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, CancellingAfterTheLastFrameStillLeavesNoFile) {
    progress = [&](const ExportProgress& report) {
        if (report.fraction == 1)
            stop.request_stop();
    };
    EXPECT_EQ(failureOf(onePhoto(0.5))->kind(), Kind::cancelled);
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, CancelledBeforehandDrawsNothing) {
    stop.request_stop();
    EXPECT_EQ(failureOf(onePhoto(1))->kind(), Kind::cancelled);
    EXPECT_EQ(frames.calls, 0);
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, ProgressCallbackThatThrowsLeavesNothing) {
    progress = [](const ExportProgress& report) {
        if (report.fraction > 0.5)
            throw std::logic_error("the window is gone");
    };
    EXPECT_THROW(run(onePhoto(2)), std::logic_error);
    EXPECT_THAT(folder.contents(), IsEmpty());
}

TEST_F(VideoExporterTest, NothingIsWrittenToStandardError) {
    writeSound(folder / "tone.wav", {.length = 4410});
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    run(withMusic(0.2, folder / "tone.wav"));
    run(withMusic(0.2, folder / "tone.wav"), ExportCodec::hevc);
    writeText(folder / "text.mp3", "this is no music");
    EXPECT_TRUE(failureOf(withMusic(0.2, folder / "text.mp3")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(VideoExporterTest, MusicIsAacAt44100HertzInStereo) {
    writeSound(folder / "tone.wav",
               {.length = 44100 * 4, .sample = [](int i, int) { return 0.8 * sine(440, i, 44100); }});
    run(withMusic(3, folder / "tone.wav"));
    const ProbedMovie probed = probeMovie(movie);
    ASSERT_EQ(probed.sound.size(), 1U);
    const ProbedSound& sound = probed.sound[0];
    EXPECT_EQ(sound.codec, "aac");
    EXPECT_EQ(sound.profile, FF_PROFILE_AAC_LOW);
    EXPECT_EQ(sound.sampleRate, 44100);
    EXPECT_EQ(sound.channels, 2);
    EXPECT_EQ(sound.start, 0);
    // Ends with the first buffer that reaches the slideshow's end.
    EXPECT_GE(sound.duration, 3.0);
    EXPECT_LT(sound.duration, 3.0 + 1024.0 / 44100);
    EXPECT_DOUBLE_EQ(probed.video.at(0).duration, 3.0);
    EXPECT_EQ(probed.video.at(0).times.size(), 90U);
}

TEST_F(VideoExporterTest, MusicFollowsTheEnvelope) {
    writeSound(folder / "tone.wav",
               {.length = 44100 * 9, .sample = [](int i, int) { return 0.8 * sine(1000, i, 44100); }});
    run(withMusic(8, folder / "tone.wav", 2, 3));
    const auto samples = probeMovie(movie).sound.at(0).samples;
    const double full = level(samples, 4, 0.25);
    EXPECT_NEAR(full, 0.8 / std::sqrt(2), 0.02);
    for (const auto& [time, gain] : std::vector<std::pair<double, double>>{
             {0.5, 0.25}, {1, 0.5}, {1.5, 0.75}, {2.2, 1}, {4.8, 1}, {6.5, 0.5}, {7.25, 0.25}}) {
        EXPECT_NEAR(level(samples, time, 0.02) / full, gain, 0.02) << time;
        EXPECT_NEAR(level(samples, time, 0.02, true) / full, gain, 0.02) << time;
    }
}

TEST_F(VideoExporterTest, SoundIsWhereItBelongsToTheSample) {
    // A short burst every half second.
    writeSound(folder / "clicks.wav", {.length = 44100 * 3, .sample = [](int i, int) {
                                           const int since = i % 22050;
                                           return since < 64 && i >= 22050 ? 0.9 * sine(5512.5, since, 44100)
                                                                           : 0.0;
                                       }});
    run(withMusic(3, folder / "clicks.wav"));
    const auto samples = probeMovie(movie).sound.at(0).samples;
    for (int click = 1; click < 6; ++click) {
        // The offset at which the decoded sound correlates best with the burst.
        int best = 0;
        double strongest = 0;
        for (int shift = -600; shift <= 600; ++shift) {
            double sum = 0;
            for (int i = 0; i < 64; ++i)
                sum += sine(5512.5, i, 44100) *
                       samples.at(static_cast<std::size_t>(click * 22050 + shift + i)).left;
            if (sum > strongest) {
                strongest = sum;
                best = shift;
            }
        }
        EXPECT_EQ(best, 0) << "click " << click;
        EXPECT_GT(strongest, 10);
    }
}

TEST_F(VideoExporterTest, MusicShorterThanTheSlideshowStartsAgain) {
    // 0.5 s of which the first half is loud.
    writeSound(folder / "beat.wav", {.length = 22050, .sample = [](int i, int) {
                                         return i < 11025 ? 0.8 * sine(880, i, 44100) : 0.0;
                                     }});
    run(withMusic(3, folder / "beat.wav"));
    const auto samples = probeMovie(movie).sound.at(0).samples;
    for (int half = 0; half < 6; ++half) {
        EXPECT_GT(level(samples, half * 0.5 + 0.125, 0.08), 0.5) << half;
        EXPECT_LT(level(samples, half * 0.5 + 0.375, 0.08), 0.05) << half;
    }
}

TEST_F(VideoExporterTest, LongerMusicStopsAfterTheFirstBufferThatReachesTheEnd) {
    writeSound(folder / "long.wav", {.length = 44100 * 10});
    run(withMusic(1, folder / "long.wav"));
    const ProbedSound sound = probeMovie(movie).sound.at(0);
    // 44 buffers of 1024 samples are the first to reach 1 s.
    EXPECT_EQ(sound.samples.size(), 44U * 1024);
}

TEST_F(VideoExporterTest, MusicThatNoLongerResolvesGivesAVideoWithoutSound) {
    run(withMusic(0.5, folder / "gone.mp3"));
    ProbedMovie probed = probeMovie(movie);
    EXPECT_TRUE(probed.sound.empty());
    EXPECT_EQ(probed.video.at(0).times.size(), 15U);

    Timeline::SlideshowTimeline timeline = withMusic(0.5, "");
    timeline.audio->musicBookmark = {0xFF, 1, 2, 3};
    run(timeline);
    EXPECT_TRUE(probeMovie(movie).sound.empty());
}

TEST_F(VideoExporterTest, MusicThatWasRenamedIsFoundByItsBookmark) {
    writeSound(folder / "tone.wav", {.length = 44100});
    Timeline::SlideshowTimeline timeline = withMusic(0.5, "");
    timeline.audio->musicBookmark = *Foundation::makeBookmark(folder / "tone.wav");
    fs::rename(folder / "tone.wav", folder / "song.wav");
    run(timeline);
    EXPECT_EQ(probeMovie(movie).sound.size(), 1U);
}

TEST_F(VideoExporterTest, MusicWithoutSoundFailsAndLeavesNoMovie) {
    writeText(folder / "text.mp3", "this is no music");
    writeSound(folder / "empty.wav", {.length = 0});
    fs::create_directory(folder / "folder.mp3");
    for (const std::string name : {"text.mp3", "empty.wav", "folder.mp3"}) {
        const auto error = failureOf(withMusic(1, folder / name));
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->kind(), Kind::appendFailed);
        EXPECT_THAT(error->what(), HasSubstr(name));
        EXPECT_FALSE(fs::exists(movie));
        EXPECT_EQ(folder.contents().size(), 3U);
    }
}

TEST_F(VideoExporterTest, MusicIsNotOverwrittenByTheMovie) {
    writeSound(folder / "tone.wav", {.length = 44100});
    movie = folder / "tone.wav";
    const std::string before = readText(movie);
    EXPECT_EQ(failureOf(withMusic(0.5, movie))->kind(), Kind::writerSetupFailed);
    EXPECT_EQ(readText(movie), before);
}

TEST_F(VideoExporterTest, SoundAndPicturesLieSideBySideInTheFile) {
    writeSound(folder / "noise.wav", {.length = 44100 * 2, .sample = [](int i, int channel) {
                                          return std::sin(i * 12.9898 + channel) * 0.5;
                                      }});
    run(withMusic(20, folder / "noise.wav"));
    // 128 kbit/s are 16,000 bytes a second.
    EXPECT_LT(probeMovie(movie).sound.at(0).farthestFromPictures, 24000);
}

} // namespace
