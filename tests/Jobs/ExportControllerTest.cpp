// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/ExportController.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

using Jobs::ExportController;
using ProjectModel::Project;

namespace {

/// Black frames that can be counted, held up and made to fail.
class TestFrames : public Frames::FrameSource {
public:
    std::set<Foundation::Uuid> failed;
    std::function<void()> before;

    std::shared_ptr<const Frames::YuvFrame> frame(const Timeline::RenderState& /*state*/,
                                                  Frames::FrameSize size) override {
        if (before)
            before();
        auto frame = std::make_shared<Frames::YuvFrame>(size);
        frame->fillBlack();
        return frame;
    }
    std::set<Foundation::Uuid> failedPhotoIDs() const override { return failed; }
};

Project projectOf(int count) {
    Project project;
    for (int number = 1; number <= count; ++number)
        project.photos.push_back(TestPhotos::item(number));
    return project;
}

/// A slideshow of a few frames.
Timeline::EffectiveSettings quick() {
    Timeline::EffectiveSettings settings;
    settings.photoDuration = 0.2;
    return settings;
}

class ExportControllerTest : public testing::Test {
protected:
    ExportController::FrameSourceFactory factory() {
        return [this](const Project&, int maxPixel) {
            m_maxPixel = maxPixel;
            auto frames = std::make_unique<TestFrames>();
            frames->failed = m_failed;
            frames->before = m_before;
            return frames;
        };
    }

    void runUntilIdle(const ExportController& controller) {
        queue.runUntil([&] { return !controller.state().isExporting; });
    }

    Jobs::ActionQueue queue;
    TemporaryFolder m_folder;
    std::filesystem::path m_movie = m_folder / "Slideshow.mov";
    std::set<Foundation::Uuid> m_failed;
    std::function<void()> m_before;
    int m_maxPixel = 0;
};

} // namespace

TEST_F(ExportControllerTest, ASuccessfulExportEndsWithSavedAndTheMovie) {
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(projectOf(2), quick(), {}, m_movie);
    runUntilIdle(controller);
    const ExportController::State& state = controller.state();
    EXPECT_FALSE(state.isExporting);
    EXPECT_EQ(state.stageText, "Saved");
    EXPECT_EQ(state.progress, 1.0);
    EXPECT_EQ(state.savedPath, m_movie);
    EXPECT_EQ(state.errorText, std::nullopt);
    EXPECT_EQ(state.failedPhotoCount(), 0U);
    EXPECT_TRUE(std::filesystem::exists(m_movie));
}

TEST_F(ExportControllerTest, CancellingShowsExportCancelledAndNoSaved) {
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> mayGoOn = false;
    m_before = [&] {
        hasBegun = true;
        hasBegun.notify_all();
        mayGoOn.wait(false);
    };
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(projectOf(3), quick(), {}, m_movie);
    hasBegun.wait(false);
    controller.cancel();
    EXPECT_TRUE(controller.state().isStopping);
    mayGoOn = true;
    mayGoOn.notify_all();
    runUntilIdle(controller);
    const ExportController::State& state = controller.state();
    EXPECT_FALSE(state.isExporting);
    EXPECT_EQ(state.errorText, "Export cancelled.");
    EXPECT_TRUE(state.wasCancelled);
    EXPECT_EQ(state.savedPath, std::nullopt);
    EXPECT_NE(state.stageText, "Saved");
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.path()));
}

TEST_F(ExportControllerTest, WithTwoMissingPhotosItShowsSavedAndTheSentenceInThePlural) {
    m_failed = {TestPhotos::uuid(1), TestPhotos::uuid(2)};
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(projectOf(2), quick(), {}, m_movie);
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().stageText, "Saved");
    EXPECT_EQ(controller.state().failedPhotoIDs, m_failed);
    EXPECT_EQ(ExportController::failedPhotosSentence(controller.state().failedPhotoCount()),
              "2 photos couldn't be loaded and appear black in the video.");
}

TEST_F(ExportControllerTest, TheSentenceIsInTheSingularForOnePhotoAndAbsentForNone) {
    EXPECT_EQ(ExportController::failedPhotosSentence(1),
              "1 photo couldn't be loaded and appear black in the video.");
    EXPECT_EQ(ExportController::failedPhotosSentence(0), std::nullopt);
}

TEST_F(ExportControllerTest, AProjectWithoutSelectedPhotosFailsWithTheDescriptionOfNoFrames) {
    Project project = projectOf(1);
    project.photos[0].isSelected = false;
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(project, quick(), {}, m_movie);
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().errorText,
              std::string{"Export failed: "} +
                  Export::ExportError{Export::ExportError::Kind::noFrames}.what());
    EXPECT_FALSE(controller.state().wasCancelled);
    EXPECT_FALSE(controller.state().isExporting);
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.path()));
}

TEST_F(ExportControllerTest, PhotosAreDecodedToTheBoundOfTheResolution) {
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(projectOf(1), quick(), {Export::ExportResolution::p1080, {}}, m_movie);
    runUntilIdle(controller);
    EXPECT_EQ(m_maxPixel, 1920);
    EXPECT_EQ(ExportController::decodingBound(3840), 3840);
    EXPECT_EQ(ExportController::decodingBound(1920), 1920);
    EXPECT_EQ(ExportController::decodingBound(1921), 3840);
}

TEST_F(ExportControllerTest, ReportsComeThroughTheExecutorInOrder) {
    std::vector<double> fractions;
    std::vector<std::string> stages;
    ExportController* watched = nullptr;
    ExportController controller{queue.executor(), factory(), [&] {
                                    fractions.push_back(watched->state().progress);
                                    stages.push_back(watched->state().stageText);
                                }};
    watched = &controller;
    controller.exportMovie(projectOf(2), quick(), {}, m_movie);
    EXPECT_TRUE(controller.state().isExporting);
    EXPECT_EQ(controller.state().stageText, "Preparing…");
    runUntilIdle(controller);
    EXPECT_TRUE(std::is_sorted(fractions.begin(), fractions.end()));
    EXPECT_EQ(stages.front(), "Preparing…");
    EXPECT_NE(std::find(stages.begin(), stages.end(), "Rendering video"), stages.end());
    EXPECT_EQ(stages.back(), "Saved");
}

TEST_F(ExportControllerTest, ASecondExportWhileOneRunsIsIgnored) {
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(projectOf(1), quick(), {}, m_movie);
    controller.exportMovie(projectOf(1), quick(), {}, m_folder / "Second.mov");
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().savedPath, m_movie);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "Second.mov"));
}

TEST_F(ExportControllerTest, AnExportAfterAFailedOneStartsAfresh) {
    ExportController controller{queue.executor(), factory()};
    controller.exportMovie(Project::empty(), quick(), {}, m_movie);
    runUntilIdle(controller);
    ASSERT_TRUE(controller.state().errorText);
    controller.exportMovie(projectOf(1), quick(), {}, m_movie);
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().errorText, std::nullopt);
    EXPECT_EQ(controller.state().savedPath, m_movie);
}
