// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/CaptionPipeline.h>
#include <Captioning/FoundationModelsCaptioner.h>
#include <Foundation/Cancellation.h>

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace Captioning;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;

PhotoItem photo(bool isSelected = true, std::optional<Provenance> captionProvenance = std::nullopt) {
    return {Foundation::Uuid::random(),
            ProjectModel::LibraryPhotoRef{"id"},
            {},
            {},
            {},
            {},
            {},
            captionProvenance ? std::optional<std::string>{"old"} : std::nullopt,
            captionProvenance,
            isSelected,
            Provenance::proposed,
            false,
            {}};
}

Project project(std::size_t photos) {
    Project project;
    for (std::size_t i = 0; i < photos; ++i)
        project.photos.push_back(photo());
    return project;
}

/// Answers the nth request (from 1) by what it is told.
class ScriptedGenerator : public CaptionGenerating {
public:
    explicit ScriptedGenerator(std::function<std::string(int)> answer)
        : m_answer(std::move(answer)) {}
    [[nodiscard]] std::string caption(const Foundation::Image&, const SceneTags&,
                                      const std::stop_token&) const override {
        return m_answer(++m_calls);
    }
    [[nodiscard]] int calls() const { return m_calls; }

private:
    std::function<std::string(int)> m_answer;
    mutable int m_calls = 0;
};

struct Outcome {
    CaptionRun result;
    std::vector<CaptionProgress> progress;
};

const Foundation::Image pixel{1, 1, {0, 0, 0}};

Outcome runOn(const Project& project, const CaptionGenerating& generator,
              CaptionPipeline::ImageLoader image = {}, const std::stop_token& stop = {}) {
    if (!image)
        image = [](const ProjectModel::PhotoRef&) { return std::optional{pixel}; };
    const VisionSceneTagger tagger{0.1F, 6, {}};
    Outcome run;
    run.result = CaptionPipeline{tagger, generator, image}.generate(
        project, [&](const CaptionProgress& progress) { run.progress.push_back(progress); }, stop);
    return run;
}

std::string numbered(int call) {
    return "caption " + std::to_string(call);
}

TEST(CaptionPipelineTest, DoesNothingForAProjectWithoutSelectedPhotos) {
    Project project;
    project.photos.push_back(photo(false));
    const ScriptedGenerator generator{numbered};
    const Outcome run = runOn(project, generator);
    EXPECT_EQ(run.result, CaptionRun{});
    EXPECT_TRUE(run.progress.empty());
    EXPECT_EQ(generator.calls(), 0);
}

TEST(CaptionPipelineTest, LeavesTypedCaptionsOutAndRenewsGeneratedOnes) {
    Project project;
    project.photos = {photo(true, Provenance::user), photo(true, Provenance::generated)};
    const Outcome run = runOn(project, ScriptedGenerator{numbered});
    EXPECT_EQ(run.result.attempted, 1);
    EXPECT_EQ(run.result.captions,
              (std::map<Foundation::Uuid, std::string>{{project.photos[1].id, "caption 1"}}));
}

TEST(CaptionPipelineTest, GoesOnAfterAFailureAndKeepsTheFirst) {
    const Project three = project(3);
    const Outcome run = runOn(three, ScriptedGenerator{[](int call) -> std::string {
                                  if (call == 2)
                                      throw CaptionError{HttpFailure{500}};
                                  return numbered(call);
                              }});
    EXPECT_EQ(run.result.captions.size(), 2U);
    EXPECT_EQ(run.result.firstFailure, CaptionError{HttpFailure{500}});
    EXPECT_FALSE(run.result.cancelled);
    EXPECT_EQ(run.progress, (std::vector<CaptionProgress>{{1, 3}, {2, 3}, {3, 3}}));
}

TEST(CaptionPipelineTest, NeverReplacesTheFirstFailureByALaterOne) {
    const Outcome run = runOn(project(3), ScriptedGenerator{[](int call) -> std::string {
                                  if (call == 2)
                                      throw CaptionError{HttpFailure{500}};
                                  if (call == 3)
                                      throw CaptionError{EmptyResponse{}};
                                  return numbered(call);
                              }});
    EXPECT_EQ(run.result.captions.size(), 1U);
    EXPECT_EQ(run.result.firstFailure, CaptionError{HttpFailure{500}});
}

TEST(CaptionPipelineTest, DropsABlankCaptionSilently) {
    const Outcome run = runOn(project(1), ScriptedGenerator{[](int) { return std::string{"   "}; }});
    EXPECT_TRUE(run.result.captions.empty());
    EXPECT_FALSE(run.result.firstFailure);
    EXPECT_EQ(run.progress, (std::vector<CaptionProgress>{{1, 1}}));
}

TEST(CaptionPipelineTest, StoresACaptionAsItWasReturned) {
    const Project one = project(1);
    const Outcome run = runOn(one, ScriptedGenerator{[](int) { return std::string{" spaced "}; }});
    EXPECT_EQ(run.result.captions.at(one.photos[0].id), " spaced ");
}

TEST(CaptionPipelineTest, KeepsWhatItHasWhenTheBackendNoticesTheCancellation) {
    const Project five = project(5);
    const Outcome run = runOn(five, ScriptedGenerator{[](int call) -> std::string {
                                  if (call == 2)
                                      throw Foundation::Cancelled{};
                                  return numbered(call);
                              }});
    EXPECT_EQ(run.result.captions.size(), 1U);
    EXPECT_TRUE(run.result.cancelled);
    EXPECT_EQ(run.progress, (std::vector<CaptionProgress>{{1, 5}}));
}

TEST(CaptionPipelineTest, TreatsAnErrorAfterTheCancellationAsTheCancellation) {
    std::stop_source stop;
    const Outcome run = runOn(project(3), ScriptedGenerator{[&](int) -> std::string {
                                  stop.request_stop();
                                  throw CaptionError{TransportFailure{"aborted"}};
                              }},
                              {}, stop.get_token());
    EXPECT_TRUE(run.result.cancelled);
    EXPECT_FALSE(run.result.firstFailure);
    EXPECT_TRUE(run.progress.empty());
}

TEST(CaptionPipelineTest, StopsBeforeTheNextPhoto) {
    std::stop_source stop;
    const ScriptedGenerator generator{[&](int call) {
        stop.request_stop();
        return numbered(call);
    }};
    const Outcome run = runOn(project(3), generator, {}, stop.get_token());
    EXPECT_EQ(generator.calls(), 1);
    EXPECT_TRUE(run.result.cancelled);
    EXPECT_EQ(run.result.captions.size(), 1U);
    EXPECT_EQ(run.progress, (std::vector<CaptionProgress>{{1, 3}}));
}

TEST(CaptionPipelineTest, SkipsAPhotoWithoutPixelsAndCountsIt) {
    const Outcome run = runOn(project(2), ScriptedGenerator{numbered}, [](const ProjectModel::PhotoRef&) {
        return std::optional<Foundation::Image>{};
    });
    EXPECT_EQ(run.result.attempted, 2);
    EXPECT_TRUE(run.result.captions.empty());
    EXPECT_FALSE(run.result.firstFailure);
    EXPECT_EQ(run.progress.size(), 2U);
}

/// Says what it is told of the photo, as often as it wants to.
class TellsTags : public CaptionGenerating {
public:
    explicit TellsTags(int times)
        : m_times(times) {}
    [[nodiscard]] std::string caption(const Foundation::Image&, const SceneTags& tags,
                                      const std::stop_token&) const override {
        std::string told = "seen";
        for (int i = 0; i < m_times; ++i)
            told += ", " + tags.get().at(0);
        return told;
    }

private:
    int m_times;
};

TEST(CaptionPipelineTest, LooksForTagsOnlyWhenTheBackendAsksAndOncePerPhoto) {
    const Project two = project(2);
    int looks = 0;
    const VisionSceneTagger tagger{0.1F, 6, [&looks](const Foundation::Image&) {
                                       ++looks;
                                       return std::vector{ClassObservation{"pier", 0.9F}};
                                   }};
    const auto captionOf = [&](const TellsTags& generator) {
        looks = 0;
        const CaptionPipeline pipeline{tagger, generator,
                                       [](const ProjectModel::PhotoRef&) { return std::optional{pixel}; }};
        return pipeline.generate(two).captions.at(two.photos[0].id);
    };
    EXPECT_EQ(captionOf(TellsTags{0}), "seen");
    EXPECT_EQ(looks, 0);
    EXPECT_EQ(captionOf(TellsTags{2}), "seen, pier, pier");
    EXPECT_EQ(looks, 2);
}

TEST(CaptionPipelineTest, FoldsOtherErrorsIntoTransport) {
    const Outcome run =
        runOn(project(1),
              ScriptedGenerator{[](int) -> std::string { throw std::runtime_error("the guard refused"); }});
    EXPECT_EQ(run.result.firstFailure, CaptionError{TransportFailure{"the guard refused"}});
}

TEST(CaptionPipelineTest, VisitsEveryPhotoThoughTheOnDeviceModelIsUnavailable) {
    const Outcome run = runOn(project(4), FoundationModelsCaptioner{});
    EXPECT_EQ(run.result.firstFailure,
              CaptionError{BackendUnavailable{"The built-in captions are not available on this computer."}});
    EXPECT_EQ(run.progress.size(), 4U);
}

} // namespace
