// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Captioning/URLSessionTransport.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Jobs/CaptionController.h>
#include <Support/LoopbackServer.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <new>
#include <set>
#include <thread>

namespace {

using namespace Jobs;
using namespace Document;
using Captioning::CaptionError;
using ProjectModel::AIProvider;
using ProjectModel::Provenance;

const std::string goodAnswer = R"({"response":"A caption."})";

/// A controller over a real server; photos whose number is in `unloadable` have no pixels.
class CaptionControllerTest : public testing::Test {
protected:
    explicit CaptionControllerTest()
        : server([this](const LoopbackServer::Request& request) { return answer(request); }) {
        settings.ollamaBaseURL = server.url();
    }

    CaptionEnvironment environment() {
        return {
            .settings = [this] { return settings; },
            .openRouterKey = [this] { return key; },
            .image = [this](const ProjectModel::PhotoRef& ref) -> std::optional<Foundation::Image> {
                if (unloadable.contains(std::get<ProjectModel::FilePhotoRef>(ref).displayName))
                    return std::nullopt;
                return Foundation::Image{2, 2, std::vector<std::uint8_t>(12, 128)};
            },
            .classify = {},
            .transport = std::make_shared<Captioning::URLSessionTransport>(),
            .openRouterBaseURL = server.url(),
        };
    }

    ProjectDocument document(int photos) {
        ProjectModel::Project project;
        for (int i = 1; i <= photos; ++i)
            project.photos.push_back(TestPhotos::item(i, "/photos/" + std::to_string(i) + ".jpg"));
        return ProjectDocument{project};
    }

    /// Runs a batch to its end; the texts that were shown on the way are in `shown`.
    CaptionController::State run(ProjectDocument& document, AIProvider provider = AIProvider::ollama) {
        CaptionController* running = nullptr;
        CaptionController controller{queue.executor(), environment(), [&] {
                                         if (running->state().progressText)
                                             shown.push_back(*running->state().progressText);
                                     }};
        running = &controller;
        controller.run(document, provider);
        runUntilIdle(controller);
        return controller.state();
    }
    void runUntilIdle(const CaptionController& controller) {
        queue.runUntil([&] { return !controller.state().isRunning; });
    }

    std::function<LoopbackServer::Answer(const LoopbackServer::Request&)> answer =
        [](const LoopbackServer::Request&) { return LoopbackServer::ok(goodAnswer); };
    LoopbackServer server;
    Jobs::ActionQueue queue;
    AppSettings settings;
    std::string key;
    std::set<std::string> unloadable;
    std::vector<std::string> shown;
};

TEST_F(CaptionControllerTest, CaptionsSelectedPhotosAsGenerated) {
    ProjectDocument open = document(2);
    const CaptionController::State state = run(open);
    EXPECT_FALSE(state.isRunning);
    EXPECT_FALSE(state.progressText);
    EXPECT_FALSE(state.errorText);
    for (const ProjectModel::PhotoItem& photo : open.project().photos) {
        EXPECT_EQ(photo.caption, "A caption.");
        EXPECT_EQ(photo.captionProvenance, Provenance::generated);
    }
}

TEST_F(CaptionControllerTest, ShowsHowFarItHasCome) {
    ProjectDocument open = document(2);
    run(open);
    EXPECT_THAT(shown, testing::ElementsAre("Starting…", "Captioning… 1/2", "Captioning… 2/2"));
}

TEST_F(CaptionControllerTest, HasNothingToSayWithoutSelectedPhotos) {
    ProjectDocument open = document(0);
    const CaptionController::State state = run(open);
    EXPECT_THAT(shown, testing::ElementsAre("Starting…"));
    EXPECT_FALSE(state.errorText);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CaptionControllerTest, CountsPhotosWhoseImagesAreMissing) {
    ProjectDocument open = document(12);
    unloadable = {"3.jpg", "7.jpg"};
    EXPECT_EQ(run(open).errorText, "2 of 12 photos couldn’t be captioned (their images couldn’t be loaded).");
}

TEST_F(CaptionControllerTest, NamesAServerThatIsNotRunning) {
    settings.ollamaBaseURL = "http://127.0.0.1:1";
    ProjectDocument open = document(1);
    EXPECT_THAT(
        run(open).errorText.value_or(""),
        testing::AllOf(testing::StartsWith(
                           "Couldn’t reach Ollama (local) — is the server running at the URL in Settings? ("),
                       testing::EndsWith(")")));
}

TEST_F(CaptionControllerTest, AsksForTheKeyOfTheCloudService) {
    ProjectDocument open = document(1);
    EXPECT_EQ(run(open, AIProvider::openRouter).errorText,
              "Add your OpenRouter API key in Settings ▸ Captions.");
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CaptionControllerTest, SaysThatThereIsNoOnDeviceModel) {
    ProjectDocument open = document(2);
    EXPECT_EQ(run(open, AIProvider::apple).errorText,
              "The built-in captions are not available on this computer.");
}

TEST_F(CaptionControllerTest, DescribesEachFailureInWords) {
    EXPECT_EQ(CaptionController::describe(CaptionError{Captioning::HttpFailure{404}}, "Ollama (local)"),
              "Ollama (local) returned HTTP 404. Check the model name and URL in Settings.");
    EXPECT_EQ(CaptionController::describe(CaptionError{Captioning::EmptyResponse{}}, "OpenRouter (cloud)"),
              "OpenRouter (cloud) returned an empty caption. Try a different model in Settings.");
    EXPECT_EQ(CaptionController::describe(CaptionError{Captioning::TransportFailure{"gone"}},
                                          "Built-in (on-device)"),
              "Couldn’t reach Built-in (on-device) — is the server running at the URL in Settings? (gone)");
}

TEST_F(CaptionControllerTest, BatchLeavesATypedCaptionAndRegenerateReplacesIt) {
    ProjectDocument open = document(1);
    const Foundation::Uuid id = open.project().photos[0].id;
    open.edit("Edit", [&](ProjectModel::Project& project) { project.userSetCaption("mine", id); });
    run(open);
    EXPECT_EQ(open.project().photos[0].caption, "mine");

    CaptionController controller{queue.executor(), environment()};
    controller.regenerate(id, open, AIProvider::ollama);
    runUntilIdle(controller);
    EXPECT_EQ(open.project().photos[0].caption, "A caption.");
    EXPECT_EQ(open.project().photos[0].captionProvenance, Provenance::generated);
}

TEST_F(CaptionControllerTest, RegeneratesAPhotoThatIsNotSelected) {
    ProjectDocument open = document(1);
    const Foundation::Uuid id = open.project().photos[0].id;
    open.edit("Edit", [&](ProjectModel::Project& project) { project.userSetSelection(false, id); });
    CaptionController controller{queue.executor(), environment()};
    controller.regenerate(id, open, AIProvider::ollama);
    runUntilIdle(controller);
    EXPECT_EQ(open.project().photos[0].caption, "A caption.");
}

TEST_F(CaptionControllerTest, SaysWhenTheOnePhotoCannotBeLoaded) {
    ProjectDocument open = document(1);
    unloadable.insert("1.jpg");
    CaptionController controller{queue.executor(), environment()};
    controller.regenerate(open.project().photos[0].id, open, AIProvider::ollama);
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().errorText, "Couldn’t caption that photo — its image couldn’t be loaded.");
}

TEST_F(CaptionControllerTest, IgnoresAnUnknownPhoto) {
    ProjectDocument open = document(1);
    CaptionController controller{queue.executor(), environment()};
    controller.regenerate(Foundation::Uuid::random(), open, AIProvider::ollama);
    runUntilIdle(controller);
    EXPECT_FALSE(controller.state().run);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(CaptionControllerTest, IgnoresASecondRunWhileOneIsRunning) {
    ProjectDocument open = document(1);
    // Nothing is carried over before the queue runs, so that the first run has not ended here.
    CaptionController controller{queue.executor(), environment()};
    controller.run(open, AIProvider::ollama);
    controller.run(open, AIProvider::ollama);
    controller.regenerate(open.project().photos[0].id, open, AIProvider::ollama);
    runUntilIdle(controller);
    queue.runPending();
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(CaptionControllerTest, CancellingTellsTheListenerAtOnceKeepsWhatArrivedAndSaysNothing) {
    ProjectDocument open = document(5);
    CaptionController* running = nullptr;
    bool wasToldOfStopping = false;
    CaptionController controller{queue.executor(), environment(), [&] {
                                     wasToldOfStopping = wasToldOfStopping || running->state().isStopping;
                                 }};
    running = &controller;
    // The third request is answered only when the run was asked to stop.
    std::latch third{1};
    std::latch stopped{1};
    answer = [&, count = std::make_shared<std::atomic<int>>(0)](const LoopbackServer::Request&) {
        if (++*count == 3) {
            third.count_down();
            stopped.wait();
        }
        return LoopbackServer::ok(goodAnswer);
    };
    controller.run(open, AIProvider::ollama);
    third.wait();
    controller.cancel();
    EXPECT_TRUE(wasToldOfStopping);
    EXPECT_TRUE(controller.state().isRunning);
    stopped.count_down();
    runUntilIdle(controller);
    EXPECT_FALSE(controller.state().isStopping);
    EXPECT_TRUE(controller.state().run.value().cancelled);
    EXPECT_FALSE(controller.state().errorText);
    EXPECT_EQ(open.project().photos[0].caption, "A caption.");
    EXPECT_EQ(open.project().photos[1].caption, "A caption.");
    EXPECT_FALSE(open.project().photos[3].caption);
}

TEST_F(CaptionControllerTest, AsksForSettingsAndKeyOnTheWorkersThread) {
    ProjectDocument open = document(1);
    const std::thread::id owner = std::this_thread::get_id();
    std::vector<std::thread::id> askedOn;
    CaptionEnvironment asked = environment();
    asked.settings = [&] {
        askedOn.push_back(std::this_thread::get_id());
        return settings;
    };
    asked.openRouterKey = [&] {
        askedOn.push_back(std::this_thread::get_id());
        return key;
    };
    CaptionController controller{queue.executor(), asked};
    controller.run(open, AIProvider::openRouter);
    runUntilIdle(controller);
    EXPECT_THAT(askedOn, testing::SizeIs(2));
    EXPECT_THAT(askedOn, testing::Each(testing::Ne(owner)));
}

TEST_F(CaptionControllerTest, WhatTheWorkThrowsIsToldAndEndsTheRunAlone) {
    ProjectDocument open = document(1);
    CaptionEnvironment broken = environment();
    broken.image = [](const ProjectModel::PhotoRef&) -> std::optional<Foundation::Image> {
        throw std::bad_alloc{};
    };
    CaptionController controller{queue.executor(), broken};
    controller.run(open, AIProvider::ollama);
    runUntilIdle(controller);
    EXPECT_EQ(controller.state().errorText, "There is not enough memory.");
}

TEST_F(CaptionControllerTest, PrefersTheProjectsGuidanceToTheUsers) {
    ProjectModel::ProjectSettings own;
    settings.captionPrompt = "The user's.";
    EXPECT_EQ(CaptionController::guidance(own, settings), "The user's.");
    own.captionPrompt = "";
    EXPECT_EQ(CaptionController::guidance(own, settings), "");
    settings.captionPrompt.reset();
    own.captionPrompt.reset();
    EXPECT_EQ(CaptionController::guidance(own, settings), std::nullopt);
}

TEST_F(CaptionControllerTest, FallsBackToTheLocalServerWhereTheAddressIsNone) {
    for (const char* text : {"", "not an address", "localhost:11434", "ftp://127.0.0.1"}) {
        settings.ollamaBaseURL = text;
        EXPECT_EQ(CaptionController::ollamaURL(settings), "http://127.0.0.1:11434") << text;
    }
    settings.ollamaBaseURL = "http://192.0.2.1:8080/ollama";
    EXPECT_EQ(CaptionController::ollamaURL(settings), "http://192.0.2.1:8080/ollama");
}

} // namespace
