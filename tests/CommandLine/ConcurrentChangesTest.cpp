// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Support/LoopbackServer.h>
#include <Support/TestPhotos.h>

#include <atomic>
#include <csignal>

using nlohmann::json;

namespace {

/// Commands that change the project while a long one works on it. Nothing of either may be lost.
class ConcurrentChangesTest : public EndToEndTest {
protected:
    ConcurrentChangesTest()
        : server([this](const LoopbackServer::Request&) {
            LoopbackServer::Answer answer = LoopbackServer::ok(json{{"response", "Generated."}}.dump());
            answer.silent = answersLeft-- <= 0;
            return answer;
        }) {
        makeProject();
        EXPECT_EQ(run({"settings", "ollamaBaseURL", server.url()}).status, 0);
        ids = {photoID(0), photoID(1), photoID(2)};
    }

    /// A long command, in the midst of which the photos are changed by other ones.
    Ran runWhileOthersChangePhotos(const std::vector<std::string>& words, std::string_view sign) {
        return program.runWhile(words, sign, [this] { changePhotos(); });
    }

    void changePhotos() {
        // None of them has to wait for the long one.
        for (const std::vector<std::string>& words :
             {std::vector<std::string>{"deselect", "p.roamly", ids[0]},
              {"title", "p.roamly", ids[1], "typed"}}) {
            const Ran ran = run(words);
            EXPECT_EQ(ran.status, 0) << ran.err;
            EXPECT_EQ(ran.err.find("Waiting"), std::string::npos) << ran.err;
        }
    }

    void expectTheChangesOfTheOthers() {
        const json photos = project()["photos"];
        EXPECT_EQ(photos[0]["id"], ids[0]);
        EXPECT_EQ(photos[0]["isSelected"], false);
        EXPECT_EQ(photos[0]["selectionProvenance"], "user");
        EXPECT_EQ(photos[1]["caption"], "typed");
        EXPECT_EQ(photos[1]["captionProvenance"], "user");
    }

    /// What the server answers before it falls silent.
    std::atomic<int> answersLeft = 1000;
    LoopbackServer server;
    std::vector<std::string> ids;
};

const std::vector<std::string> captionAll{"caption", "p.roamly", "--provider", "ollama", "--json"};

} // namespace

TEST_F(ConcurrentChangesTest, CaptionsArriveBesideWhatWasDecidedMeanwhile) {
    const Ran ran = runWhileOthersChangePhotos(captionAll, "\"completed\":1");
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(server.requests().size(), 3U);
    expectTheChangesOfTheOthers();
    EXPECT_EQ(project()["photos"][0]["caption"], "Generated.");
    EXPECT_EQ(project()["photos"][2]["caption"], "Generated.");
}

TEST_F(ConcurrentChangesTest, AnInterruptedRunKeepsItsCaptionsAndTheChangesOfOthers) {
    // The run cannot end before the signal comes.
    answersLeft = 1;
    const Ran ran = program.interrupt(captionAll, "\"completed\":1", {SIGINT});
    EXPECT_EQ(ran.status, 130) << ran.err;
    answersLeft = 1000;
    EXPECT_EQ(project()["photos"][0]["caption"], "Generated.");
    const Ran again = runWhileOthersChangePhotos(captionAll, "\"completed\":1");
    EXPECT_EQ(again.status, 0) << again.err;
    expectTheChangesOfTheOthers();
}

TEST_F(ConcurrentChangesTest, CaptionsOfPhotosThatWereRemovedMeanwhileGoWithThem) {
    const Ran ran = program.runWhile(captionAll, "\"completed\":1", [this] {
        EXPECT_EQ(run({"remove", "p.roamly", ids[1]}).status, 0);
    });
    EXPECT_EQ(ran.status, 0) << ran.err;
    ASSERT_EQ(project()["photos"].size(), 2U);
    EXPECT_EQ(project()["photos"][0]["caption"], "Generated.");
    EXPECT_EQ(project()["photos"][1]["caption"], "Generated.");
}

TEST_F(ConcurrentChangesTest, AnAnalysisArrivesBesideWhatWasDecidedMeanwhile) {
    const Ran ran = runWhileOthersChangePhotos({"analyze", "p.roamly", "--json"}, "\"progress\"");
    EXPECT_EQ(ran.status, 0) << ran.err;
    expectTheChangesOfTheOthers();
}

TEST_F(ConcurrentChangesTest, AnImportArrivesBesideWhatWasDecidedMeanwhile) {
    TestPhotos::write(program / "more/0.jpg", {.date = "2024:04:30 10:00:00"});
    TestPhotos::write(program / "more/4.jpg", {.date = "2024:05:04 10:00:00"});
    const Ran ran = program.runWhile({"import", "p.roamly", "more", "--json"}, "\"progress\"", [this] {
        changePhotos();
        EXPECT_EQ(run({"set", "p.roamly", "photoDuration", "4"}).status, 0);
    });
    EXPECT_EQ(ran.status, 0) << ran.err;
    const json photos = project()["photos"];
    ASSERT_EQ(photos.size(), 5U);
    EXPECT_EQ(photos[1]["id"], ids[0]);
    EXPECT_EQ(photos[1]["isSelected"], false);
    EXPECT_EQ(photos[2]["caption"], "typed");
    EXPECT_EQ(project()["sources"].size(), 2U);
    EXPECT_EQ(project()["settings"]["photoDuration"], 4);
}

TEST_F(ConcurrentChangesTest, AMovieIsMadeOfTheProjectAsItBecameMeanwhile) {
    TestPhotos::write(program / "more/4.jpg", {.date = "2024:05:04 10:00:00"});
    ASSERT_EQ(run({"settings", "photoDuration", "0.2"}).status, 0);
    const Ran ran = runWhileOthersChangePhotos(
        {"make", "more", "-o", "m.mov", "--project", "p.roamly", "--json"}, "\"progress\"");
    EXPECT_EQ(ran.status, 0) << ran.err;
    expectTheChangesOfTheOthers();
    EXPECT_EQ(project()["photos"].size(), 4U);
    EXPECT_TRUE(std::filesystem::exists(program / "m.mov"));
}
