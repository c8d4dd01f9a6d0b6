// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/TestPhotos.h>

#include <algorithm>
#include <csignal>

using nlohmann::json;

namespace {

class ExportCommandsTest : public EndToEndTest {
protected:
    /// Makes p.roamly with photos of a tenth of a second.
    void makeShortProject() {
        makeProject();
        ASSERT_EQ(run({"set", "p.roamly", "photoDuration", "0.2"}).status, 0);
    }
    /// A project whose movie takes a while.
    void makeLongProject() {
        makeProject();
        ASSERT_EQ(run({"set", "p.roamly", "photoDuration", "600"}).status, 0);
    }
    bool isMovie(std::string_view file) { return text(file).substr(4, 8) == "ftypqt  "; }
};

} // namespace

TEST_F(ExportCommandsTest, ExportWritesAMovie) {
    makeShortProject();
    const Ran ran = run({"export", "p.roamly", "-o", "m.mov"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "{\"failedPhotoIDs\":[]}\n");
    EXPECT_EQ(ran.err, "Saved m.mov.\n");
    EXPECT_TRUE(isMovie("m.mov"));
    EXPECT_EQ(files(), (std::vector<std::string>{"m.mov", "p.roamly", "trip"}));
}

TEST_F(ExportCommandsTest, ExportReportsProgressAndTheResultForPrograms) {
    makeShortProject();
    const Ran ran = run({"export", "p.roamly", "-o", "m.mov", "--json"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    const std::vector<json> lines = ran.json();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines.back(), (json{{"result", {{"failedPhotoIDs", json::array()}}}}));
    double last = 0;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        EXPECT_EQ(lines[i]["progress"].size(), 2U);
        EXPECT_GE(lines[i]["progress"]["fraction"].get<double>(), last);
        last = lines[i]["progress"]["fraction"];
        EXPECT_EQ(lines[i]["progress"]["stage"], i + 2 < lines.size() ? "Rendering video" : "Done");
    }
    EXPECT_EQ(lines[lines.size() - 2], (json{{"progress", {{"fraction", 1.0}, {"stage", "Done"}}}}));
}

TEST_F(ExportCommandsTest, PhotosThatCannotBeDrawnAreNoFailureAndAreNamed) {
    makeShortProject();
    std::filesystem::remove(program / "trip/1.jpg");
    Foundation::writeFileAtomically(program / "trip/3.jpg", "no picture any more");
    std::vector<std::string> failed{photoID(0), photoID(2)};
    std::sort(failed.begin(), failed.end());
    EXPECT_EQ(done({"export", "p.roamly", "-o", "m.mov"}), (json{{"failedPhotoIDs", failed}}));
    EXPECT_EQ(run({"export", "p.roamly", "-o", "m.mov"}).err,
              "Saved m.mov.\n2 photos couldn't be loaded and appear black in the video.\n");
}

TEST_F(ExportCommandsTest, AProjectWithoutSelectedPhotosFailsAndLeavesWhatStoodThere) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    Foundation::writeFileAtomically(program / "m.mov", "older movie");
    const Ran ran = run({"export", "p.roamly", "-o", "m.mov"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_TRUE(ran.err.starts_with("roamly: Export failed: ")) << ran.err;
    EXPECT_EQ(text("m.mov"), "older movie");
}

TEST_F(ExportCommandsTest, MusicThatCannotBePlayedFailsBeforeAnythingElseHappens) {
    makeShortProject();
    Foundation::writeFileAtomically(program / "fado.mp3", "x");
    Foundation::writeFileAtomically(program / "m.mov", "older movie");
    expectFailure(1, {"make", "trip", "-o", "m.mov", "--music", "fado.mp3", "--json"});
    EXPECT_NE(
        run({"make", "trip", "-o", "m.mov", "--music", "fado.mp3"}).err.find("fado.mp3” can’t be played"),
        std::string::npos);
    ASSERT_EQ(run({"music", "p.roamly", "fado.mp3"}).status, 0);
    expectFailure(1, {"make", "trip", "-o", "m.mov", "--project", "p.roamly", "--json"});
    expectFailure(1, {"export", "p.roamly", "-o", "m.mov", "--json"});
    EXPECT_EQ(text("m.mov"), "older movie");
    writeTone("tone.wav");
    EXPECT_EQ(run({"make", "trip", "-o", "m.mov", "--project", "p.roamly", "--music", "tone.wav"}).status, 0);
    EXPECT_TRUE(isMovie("m.mov"));
}

TEST_F(ExportCommandsTest, AMovieOfMusicThatIsGoneIsSilent) {
    makeShortProject();
    writeTone("tone.wav");
    ASSERT_EQ(run({"music", "p.roamly", "tone.wav"}).status, 0);
    std::filesystem::remove(program / "tone.wav");
    EXPECT_EQ(run({"export", "p.roamly", "-o", "m.mov"}).status, 0);
    EXPECT_EQ(text("m.mov").find("mp4a"), std::string::npos);
}

TEST_F(ExportCommandsTest, ResolutionAndCodecComeFromTheOptionsOrTheSettings) {
    makeShortProject();
    ASSERT_EQ(run({"settings", "exportCodec", "hevc"}).status, 0);
    ASSERT_EQ(run({"export", "p.roamly", "-o", "a.mov"}).status, 0);
    EXPECT_NE(text("a.mov").find("hvc1"), std::string::npos);
    ASSERT_EQ(run({"export", "p.roamly", "-o", "b.mov", "--codec", "h264"}).status, 0);
    EXPECT_NE(text("b.mov").find("avc1"), std::string::npos);
}

TEST_F(ExportCommandsTest, ExportRefusesBadArguments) {
    makeShortProject();
    expectFailure(2, {"export", "p.roamly"});
    expectFailure(2, {"export", "-o", "m.mov"});
    expectFailure(2, {"export", "p.roamly", "-o", "m.mov", "--codec", "av1"});
    expectFailure(2, {"export", "p.roamly", "-o", "m.mov", "--resolution", "4K"});
    expectFailure(2, {"export", "p.roamly", "-o", "m.mov", "--fast"});
    expectFailure(2, {"export", "p.roamly", "extra", "-o", "m.mov"});
    EXPECT_FALSE(std::filesystem::exists(program / "m.mov"));
}

TEST_F(ExportCommandsTest, ExportNeverReplacesWhatItIsMadeFrom) {
    makeShortProject();
    Foundation::writeFileAtomically(program / "fado.mp3", "x");
    ASSERT_EQ(run({"music", "p.roamly", "fado.mp3"}).status, 0);
    std::filesystem::create_symlink("trip/2.jpg", program / "link.mov");
    const std::string before = text("p.roamly");
    const std::string photo = text("trip/1.jpg");
    for (const char* output :
         {"p.roamly", "./trip/../p.roamly", "trip/1.jpg", "fado.mp3", "link.mov", "trip"})
        expectFailure(1, {"export", "p.roamly", "-o", output});
    expectFailure(1, {"export", "p.roamly", "-o", "/dev/null"});
    expectFailure(1, {"export", "p.roamly", "-o", "no/such/m.mov"});
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(text("trip/1.jpg"), photo);
    EXPECT_EQ(text("fado.mp3"), "x");
}

TEST_F(ExportCommandsTest, InterruptedItLeavesNoMovieAndEndsWith130) {
    makeLongProject();
    for (const int signal : {SIGINT, SIGTERM}) {
        const Ran ran =
            program.interrupt({"export", "p.roamly", "-o", "m.mov", "--json"}, "Rendering video", {signal});
        EXPECT_EQ(ran.status, 130) << ran.err;
        EXPECT_EQ(ran.err, "roamly: Export cancelled.\n");
        EXPECT_EQ(files(), (std::vector<std::string>{"p.roamly", "trip"}));
        EXPECT_EQ(ran.out.find("\"result\""), std::string::npos);
    }
}

TEST_F(ExportCommandsTest, TakesTwoSignalsAtOnceForOneRequest) {
    makeLongProject();
    const Ran ran = program.interrupt({"export", "p.roamly", "-o", "m.mov", "--json"}, "Rendering video",
                                      {SIGINT, SIGINT, SIGTERM});
    EXPECT_EQ(ran.status, 130) << ran.err;
    EXPECT_EQ(ran.err, "roamly: Export cancelled.\n");
    EXPECT_EQ(files(), (std::vector<std::string>{"p.roamly", "trip"}));
}

TEST_F(ExportCommandsTest, InterruptedTwiceItEndsAtOnceAndLeavesNoMovieEither) {
    makeLongProject();
    const Ran ran = program.interrupt({"export", "p.roamly", "-o", "m.mov", "--json"}, "Rendering video",
                                      {SIGTERM, SIGINT}, 1, std::chrono::milliseconds{1200});
    EXPECT_EQ(ran.status, 130) << ran.err;
    EXPECT_EQ(files(), (std::vector<std::string>{"p.roamly", "trip"}));
}

TEST_F(ExportCommandsTest, ABarIsDrawnOnATerminalAndNoneInAPipe) {
    makeShortProject();
    const Ran onTerminal = program.run({"export", "p.roamly", "-o", "m.mov"}, Program::ErrorTo::Terminal);
    EXPECT_EQ(onTerminal.status, 0);
    EXPECT_NE(onTerminal.err.find("━"), std::string::npos) << onTerminal.err;
    EXPECT_NE(onTerminal.err.find("\x1b[KSaved m.mov."), std::string::npos)
        << "the bar goes before the sentence comes";
    const Ran inPipe = run({"export", "p.roamly", "-o", "m.mov"});
    EXPECT_EQ(inPipe.err.find('\r'), std::string::npos);
    EXPECT_EQ(inPipe.err.find("━"), std::string::npos);
    const Ran asJson =
        program.run({"export", "p.roamly", "-o", "m.mov", "--json"}, Program::ErrorTo::Terminal);
    EXPECT_EQ(asJson.err, "");
}

TEST_F(ExportCommandsTest, MakeTurnsFoldersIntoAMovieInOneGo) {
    ASSERT_EQ(run({"settings", "photoDuration", "0.2"}).status, 0);
    EXPECT_EQ(done({"make", "trip", "-o", "m.mov"}),
              (json{{"added", 3}, {"notices", json::array()}, {"failedPhotoIDs", json::array()}}));
    EXPECT_TRUE(isMovie("m.mov"));
    EXPECT_EQ(files(), (std::vector<std::string>{"m.mov", "trip"}));
}

TEST_F(ExportCommandsTest, MakeKeepsTheProjectAndAddsToOneThatExists) {
    ASSERT_EQ(run({"settings", "photoDuration", "0.2"}).status, 0);
    Foundation::writeFileAtomically(program / "fado.mp3", "x");
    ASSERT_EQ(run({"make", "trip", "-o", "m.mov", "--project", "p.roamly"}).status, 0);
    ASSERT_EQ(project()["photos"].size(), 3U);
    ASSERT_EQ(run({"title", "p.roamly", photoID(0), "mine"}).status, 0);
    TestPhotos::write(program / "more/4.jpg", {.date = "2024:05:04 10:00:00"});
    EXPECT_EQ(done({"make", "more", "-o", "m.mov", "--project", "p.roamly"})["added"], 1);
    ASSERT_EQ(project()["photos"].size(), 4U);
    EXPECT_EQ(project()["photos"][0]["caption"], "mine");
    EXPECT_EQ(project()["sources"].size(), 2U);
}

TEST_F(ExportCommandsTest, MakeStopsWhenNoFolderHadPhotos) {
    std::filesystem::create_directory(program / "empty");
    const Ran ran = run({"make", "empty", "nowhere", "-o", "m.mov", "--project", "p.roamly"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.err, "No photos were found in “empty”.\nCouldn’t get lasting access to “nowhere”.\n"
                       "roamly: No movie was made.\n");
    EXPECT_EQ(files(), (std::vector<std::string>{"empty", "trip"}));
}

TEST_F(ExportCommandsTest, MakeChecksEverythingBeforeItBegins) {
    expectFailure(2, {"make", "-o", "m.mov"});
    expectFailure(2, {"make", "trip"});
    expectFailure(2, {"make", "trip", "-o", "x", "--project", "./x"});
    expectFailure(1, {"make", "trip", "-o", "m.mov", "--music", "nowhere.mp3"});
    expectFailure(1, {"make", "trip", "-o", "no/m.mov"});
    expectFailure(1, {"make", "trip", "-o", "m.mov", "--project", "no/p.roamly"});
    Foundation::writeFileAtomically(program / "broken.roamly", "{");
    expectFailure(1, {"make", "trip", "-o", "m.mov", "--project", "broken.roamly"});
    EXPECT_EQ(text("broken.roamly"), "{");
    EXPECT_EQ(files(), (std::vector<std::string>{"broken.roamly", "trip"}));
}
