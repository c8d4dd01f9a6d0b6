// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/AnalysisController.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <stdexcept>

namespace {

using namespace Jobs;
using namespace Document;
using Analysis::PipelineProgress;
using ProjectModel::Project;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

const ResolvedLocation rome{"Rome", "Italy", Provenance::geocoded};

/// Three photos: with a place, with a position only, with nothing.
Project threePhotos() {
    Project project;
    for (int i = 1; i <= 3; ++i)
        project.photos.push_back(TestPhotos::item(i));
    project.photos[0].coordinate = {41.9, 12.5};
    project.photos[0].location = rome;
    project.photos[1].coordinate = {10.0, 20.0};
    return project;
}

AnalysisController::Analyze yields(const std::function<void(Project&)>& change) {
    return [change](Project project, const AppSettings&, const AnalysisController::Progress&,
                    const std::stop_token&) {
        change(project);
        return project;
    };
}

TEST(AnalysisControllerTest, DescribesEachStage) {
    using Stage = PipelineProgress::Stage;
    EXPECT_EQ(AnalysisController::describe({Stage::geocoding, 3, 9}), "Locating photos… 3/9");
    EXPECT_EQ(AnalysisController::describe({Stage::clustering, 12, 40}), "Finding duplicates… 12/40");
    EXPECT_EQ(AnalysisController::describe({Stage::scoring, 1, 2}), "Ranking best shots… 1/2");
    EXPECT_EQ(AnalysisController::describe({Stage::done, 1, 1}), "Done");
}

TEST(AnalysisControllerTest, ListsTheGeocodingIssueFirst) {
    Project project = threePhotos();
    project.photos.push_back(TestPhotos::item(4));
    const AnalysisController::Issues issues = AnalysisController::issues(project);
    EXPECT_THAT(issues.texts,
                testing::ElementsAre("1 photo could not be geocoded — check your internet connection.",
                                     "2 photos have no GPS location data."));
    EXPECT_TRUE(issues.canRetry);
}

TEST(AnalysisControllerTest, SpeaksOfOnePhotoInTheSingularAndNeedsNoRetryForMissingGps) {
    Project project = threePhotos();
    project.photos.erase(project.photos.begin() + 1);
    const AnalysisController::Issues issues = AnalysisController::issues(project);
    EXPECT_THAT(issues.texts, testing::ElementsAre("1 photo has no GPS location data."));
    EXPECT_FALSE(issues.canRetry);
}

TEST(AnalysisControllerTest, AnEmptyPlaceIsNoIssue) {
    Project project = threePhotos();
    project.photos[1].location = ResolvedLocation{{}, {}, Provenance::geocoded};
    project.photos[2].location = rome;
    EXPECT_TRUE(AnalysisController::issues(project).texts.empty());
}

TEST(AnalysisControllerTest, MergesProposalsAndKeepsWhatTheUserChose) {
    Project project = threePhotos();
    project.userSetLocation(ResolvedLocation{"Home", {}, Provenance::user}, project.photos[0].id);
    project.userSetSelection(true, project.photos[1].id);
    Project analysed = threePhotos();
    const Foundation::Uuid cluster = Foundation::Uuid::random();
    analysed.photos[1].location = rome;
    for (int i = 0; i < 3; ++i) {
        analysed.photos[static_cast<std::size_t>(i)].clusterID = cluster;
        analysed.photos[static_cast<std::size_t>(i)].isSelected = i == 0;
        analysed.photos[static_cast<std::size_t>(i)].qualityScore = 0.5;
    }
    AnalysisController::merge(analysed, project);
    EXPECT_EQ(project.photos[0].location->city, "Home");
    EXPECT_EQ(project.photos[1].location, rome);
    EXPECT_TRUE(project.photos[1].isSelected);
    EXPECT_FALSE(project.photos[2].isSelected);
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        EXPECT_EQ(photo.clusterID, cluster);
        EXPECT_EQ(photo.qualityScore, 0.5);
    }
}

TEST(AnalysisControllerTest, LeavesPhotosAloneThatCameOrWentMeanwhile) {
    Project project = threePhotos();
    project.photos.erase(project.photos.begin());
    project.photos.push_back(TestPhotos::item(9));
    const Project before = project;
    AnalysisController::merge(threePhotos(), project);
    EXPECT_EQ(project, before);
}

TEST(AnalysisControllerTest, SortsByTimeAgainUnlessTheOrderIsTheUsers) {
    Project project = threePhotos();
    project.photos[0].captureDate = Foundation::makeInstant(2024, 5, 2, 0, 0, 0);
    project.photos[1].captureDate = Foundation::makeInstant(2024, 5, 1, 0, 0, 0);
    Project byHand = project;
    byHand.markManuallyOrdered();
    const Project analysed = project;
    AnalysisController::merge(analysed, project);
    EXPECT_EQ(project.photos[0].id, TestPhotos::uuid(2));
    AnalysisController::merge(analysed, byHand);
    EXPECT_EQ(byHand.photos[0].id, TestPhotos::uuid(1));
}

/// A controller on a queue that this thread owns.
class AnalysisRunTest : public testing::Test {
protected:
    AnalysisController controllerFor(AnalysisController::Analyze analyze) {
        return {queue.executor(), std::move(analyze), [this] { ++changes; }};
    }
    void runUntilIdle(const AnalysisController& controller) {
        queue.runUntil([&] { return !controller.state().isRunning; });
    }
    /// Reports once, then works until it is stopped.
    AnalysisController::Analyze untilStopped(std::latch& begun) {
        return [&begun](Project project, const AppSettings&, const AnalysisController::Progress& progress,
                        const std::stop_token& stop) {
            std::latch stopped{1};
            const std::stop_callback wake{stop, [&] { stopped.count_down(); }};
            progress({PipelineProgress::Stage::clustering, 1, 2});
            begun.count_down();
            stopped.wait();
            project.photos[1].location = rome;
            return project;
        };
    }

    Jobs::ActionQueue queue;
    ProjectDocument document{threePhotos()};
    int changes = 0;
};

TEST_F(AnalysisRunTest, EndsWithItsIssuesInTheProject) {
    AnalysisController controller =
        controllerFor(yields([](Project& project) { project.photos[1].location = rome; }));
    controller.run(document, {});
    runUntilIdle(controller);
    EXPECT_FALSE(controller.state().progressText);
    EXPECT_EQ(document.project().photos[1].location, rome);
    EXPECT_THAT(controller.state().issues, testing::ElementsAre("1 photo has no GPS location data."));
    EXPECT_FALSE(controller.state().canRetry);
}

TEST_F(AnalysisRunTest, ShowsHowFarItHasCome) {
    std::latch begun{1};
    AnalysisController controller = controllerFor(untilStopped(begun));
    controller.run(document, {});
    EXPECT_EQ(controller.state().progressText, "Starting…");
    begun.wait();
    queue.runPending();
    EXPECT_EQ(controller.state().progressText, "Finding duplicates… 1/2");
}

TEST_F(AnalysisRunTest, CancellingIsIdleAtOnceTellsTheListenerAndDropsTheResultAndLateReports) {
    std::latch begun{1};
    const Project before = document.project();
    AnalysisController controller = controllerFor(untilStopped(begun));
    controller.run(document, {});
    begun.wait();
    const int changesBefore = changes;
    controller.cancel();
    EXPECT_EQ(changes, changesBefore + 1);
    EXPECT_FALSE(controller.state().isRunning);
    EXPECT_TRUE(controller.state().wasCancelled);
    EXPECT_FALSE(controller.state().progressText);
    queue.runPending();
    EXPECT_FALSE(controller.state().progressText) << "the report was late";
    EXPECT_TRUE(controller.state().issues.empty());
    EXPECT_FALSE(controller.state().canRetry);
    EXPECT_EQ(document.project(), before);
}

TEST_F(AnalysisRunTest, ARunBegunRightAfterACancelledOneIsItsOwn) {
    std::latch begun{1};
    int runs = 0;
    AnalysisController controller =
        controllerFor([&, slow = untilStopped(begun)](const Project& project, const AppSettings& settings,
                                                      const AnalysisController::Progress& progress,
                                                      const std::stop_token& stop) {
            return runs++ == 0 ? slow(project, settings, progress, stop) : project;
        });
    controller.run(document, {});
    begun.wait();
    controller.cancel();
    controller.run(document, {});
    EXPECT_TRUE(controller.state().isRunning);
    runUntilIdle(controller);
    EXPECT_FALSE(controller.state().wasCancelled);
    EXPECT_EQ(controller.state().issues.size(), 2U);
    EXPECT_FALSE(document.project().photos[1].location) << "the first run's result";
}

TEST_F(AnalysisRunTest, AControllerThatIsGoneHearsNothingMore) {
    std::latch begun{1};
    const Project before = document.project();
    {
        AnalysisController controller = controllerFor(untilStopped(begun));
        controller.run(document, {});
        begun.wait();
    }
    queue.runPending();
    EXPECT_EQ(document.project(), before);
}

TEST_F(AnalysisRunTest, RunningTwiceQuicklyStartsOneRun) {
    std::atomic<int> runs = 0;
    AnalysisController controller = controllerFor(yields([&](Project&) { ++runs; }));
    controller.run(document, {});
    controller.run(document, {});
    runUntilIdle(controller);
    queue.runPending();
    EXPECT_EQ(runs, 1);
}

TEST_F(AnalysisRunTest, SaysWhyARunCouldNotBegin) {
    AnalysisController controller =
        controllerFor(yields([](Project&) { throw std::runtime_error("The file x is damaged."); }));
    controller.run(document, {});
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().errorText, "The file x is damaged.");
    EXPECT_EQ(document.project(), threePhotos());
}

} // namespace
