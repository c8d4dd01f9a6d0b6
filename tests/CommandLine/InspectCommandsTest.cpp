// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/TestPhotos.h>

#include <QImage>
#include <QString>

using nlohmann::json;

namespace {

class InspectCommandsTest : public EndToEndTest {
protected:
    /// Photo 1 in Paris, 2 without a place, 3 in Rome, with a caption.
    void makePlaces() {
        makeProject();
        ASSERT_EQ(run({"place", "p.roamly", photoID(0), "--city", "Paris", "--country", "France"}).status, 0);
        ASSERT_EQ(run({"place", "p.roamly", photoID(2), "--city", "Rome", "--country", "Italy"}).status, 0);
        ASSERT_EQ(run({"title", "p.roamly", photoID(2), "Ciao"}).status, 0);
    }
    std::vector<json> states(const std::vector<std::string>& times) {
        std::vector<std::string> words{"inspect", "state", "p.roamly"};
        for (const std::string& time : times) {
            words.emplace_back("--at");
            words.push_back(time);
        }
        const Ran ran = run(words);
        EXPECT_EQ(ran.status, 0) << ran.err;
        return ran.json();
    }
};

} // namespace

TEST_F(InspectCommandsTest, ProjectPrintsExactlyTheBytesThatSavingWrites) {
    makePlaces();
    EXPECT_EQ(run({"inspect", "project", "p.roamly"}).out, text("p.roamly"));
    Foundation::writeFileAtomically(program / "loose.roamly", project().dump());
    EXPECT_EQ(run({"inspect", "project", "loose.roamly"}).out, text("p.roamly"));
}

TEST_F(InspectCommandsTest, TimelineIsOneObjectWithTheRecordsOwnMembers) {
    makePlaces();
    Foundation::writeFileAtomically(program / "fado.mp3", "x");
    ASSERT_EQ(run({"music", "p.roamly", "fado.mp3"}).status, 0);
    const Ran ran = run({"inspect", "timeline", "p.roamly"});
    ASSERT_EQ(ran.lines().size(), 1U);
    const json timeline = ran.json()[0];
    ASSERT_EQ(timeline["items"].size(), 5U);
    EXPECT_EQ(timeline["items"][0],
              (json{{"chapter", {{"title", "Paris, France"}, {"start", 0.0}, {"duration", 3.0}}}}));
    const json first = timeline["items"][1]["photo"];
    EXPECT_EQ(first["photoID"], photoID(0));
    EXPECT_EQ(first["start"], 3.0);
    EXPECT_EQ(first["duration"], 5.0);
    EXPECT_EQ(first["crossfadesFromPrevious"], false);
    EXPECT_EQ(first["overlay"], (json{{"locationText", "Paris, France"}, {"isApproximate", false}}));
    for (const char* member : {"startScale", "endScale"})
        EXPECT_TRUE(first["kenBurns"][member].is_number());
    for (const char* member : {"startOffset", "endOffset"})
        EXPECT_EQ(first["kenBurns"][member].size(), 2U);
    EXPECT_EQ(timeline["items"][2]["photo"]["start"], 7.25);
    EXPECT_EQ(timeline["items"][2]["photo"]["crossfadesFromPrevious"], true);
    EXPECT_EQ(timeline["items"][2]["photo"]["overlay"], (json{{"isApproximate", false}}));
    EXPECT_EQ(timeline["items"][3]["chapter"]["start"], 12.25);
    EXPECT_EQ(timeline["items"][4]["photo"]["overlay"]["caption"], "Ciao");
    EXPECT_EQ(timeline["totalDuration"], 20.25);
    EXPECT_EQ(timeline["audio"], (json{{"musicBookmark", project()["music"]["bookmark"]},
                                       {"totalDuration", 20.25},
                                       {"fadeIn", 2.0},
                                       {"fadeOut", 3.0}}));
}

TEST_F(InspectCommandsTest, AnEmptyProjectsTimelineHasNoItemsAndNoMusic) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    EXPECT_EQ(run({"inspect", "timeline", "p.roamly"}).out, "{\"items\":[],\"totalDuration\":0}\n");
}

TEST_F(InspectCommandsTest, OverlayChaptersShowOnThePhotoAndKenBurnsCanBeOff) {
    makePlaces();
    ASSERT_EQ(run({"set", "p.roamly", "chapterStyle", "overlay"}).status, 0);
    ASSERT_EQ(run({"set", "p.roamly", "kenBurnsEnabled", "false"}).status, 0);
    const json timeline = run({"inspect", "timeline", "p.roamly"}).json()[0];
    ASSERT_EQ(timeline["items"].size(), 3U);
    EXPECT_EQ(timeline["items"][2]["photo"]["overlay"]["chapterTitle"], "Rome, Italy");
    EXPECT_FALSE(timeline["items"][0]["photo"].contains("kenBurns"));
}

TEST_F(InspectCommandsTest, StatePrintsALineForEachTimeInTheirOrder) {
    makePlaces();
    const std::vector<json> lines = states({"8", "-1.5", "0", "7.625", "1e6"});
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], (json{{"photo",
                               {{"current", photoID(1)},
                                {"progress", 0.15},
                                {"incomingProgress", 0.0},
                                {"incomingOpacity", 0.0}}}}));
    EXPECT_EQ(lines[1], (json{{"empty", json::object()}}));
    EXPECT_EQ(lines[2], (json{{"chapter", {{"title", "Paris, France"}, {"start", 0.0}, {"duration", 3.0}}}}));
    EXPECT_EQ(lines[3]["photo"]["current"], photoID(0));
    EXPECT_EQ(lines[3]["photo"]["incoming"], photoID(1));
    EXPECT_EQ(lines[3]["photo"]["incomingOpacity"], 0.5);
    EXPECT_EQ(lines[4]["photo"]["progress"], 1.0);
}

TEST_F(InspectCommandsTest, StateUsesTheWholeCrossfadeForShortPhotosToo) {
    makeProject();
    ASSERT_EQ(run({"set", "p.roamly", "photoDuration", "1"}).status, 0);
    // Photos step by half a second, the dissolve is measured against 0.75 seconds all the same.
    EXPECT_EQ(states({"0.875"})[0]["photo"]["incomingOpacity"], 0.5);
}

TEST_F(InspectCommandsTest, StateWithoutOrWithMalformedTimesIsMisuse) {
    makeProject();
    expectFailure(2, {"inspect", "state", "p.roamly"});
    for (const char* time : {"x", "nan", "inf", "1e999", "", "1s"})
        expectFailure(2, {"inspect", "state", "p.roamly", "--at", time});
}

TEST_F(InspectCommandsTest, FrameWritesThePictureOfTheMovie) {
    TestPhotos::write(program / "wide/1.jpg", {.width = 640, .height = 360, .colour = 0xC04020});
    ASSERT_EQ(run({"new", "w.roamly"}).status, 0);
    ASSERT_EQ(run({"import", "w.roamly", "wide"}).status, 0);
    ASSERT_EQ(run({"set", "w.roamly", "kenBurnsEnabled", "false"}).status, 0);
    const Ran ran = run({"inspect", "frame", "w.roamly", "--at", "1", "--size", "320x180", "-o", "f.png"});
    ASSERT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.out, "{\"failedPhotoIDs\":[]}\n");
    EXPECT_EQ(ran.err, "");
    const QImage picture{QString::fromStdString((program / "f.png").string())};
    EXPECT_EQ(picture.size(), QSize(320, 180));
    const QColor middle = picture.pixelColor(160, 60);
    EXPECT_NEAR(middle.red(), 0xC0, 6);
    EXPECT_NEAR(middle.green(), 0x40, 6);
    EXPECT_NEAR(middle.blue(), 0x20, 6);
}

TEST_F(InspectCommandsTest, FrameIsFullHdUnlessSaidOtherwise) {
    makeProject();
    ASSERT_EQ(run({"inspect", "frame", "p.roamly", "--at", "0", "-o", "f.png"}).status, 0);
    EXPECT_EQ(QImage{QString::fromStdString((program / "f.png").string())}.size(), QSize(1920, 1080));
}

TEST_F(InspectCommandsTest, FrameNamesThePhotosItCouldNotDraw) {
    makeProject();
    std::filesystem::remove_all(program / "trip");
    const Ran ran = run({"inspect", "frame", "p.roamly", "--at", "1", "--size", "64x36", "-o", "f.png"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.json()[0], (json{{"failedPhotoIDs", {photoID(0)}}}));
}

TEST_F(InspectCommandsTest, FrameReplacesNoInputAndRefusesBadArguments) {
    makeProject();
    const std::string before = text("p.roamly");
    expectFailure(1, {"inspect", "frame", "p.roamly", "--at", "0", "-o", "p.roamly"});
    expectFailure(1, {"inspect", "frame", "p.roamly", "--at", "0", "-o", "trip/1.jpg"});
    expectFailure(1, {"inspect", "frame", "p.roamly", "--at", "0", "-o", "trip"});
    expectFailure(1, {"inspect", "frame", "p.roamly", "--at", "0", "-o", "no/f.png"});
    expectFailure(2, {"inspect", "frame", "p.roamly", "--at", "0"});
    expectFailure(2, {"inspect", "frame", "p.roamly", "-o", "f.png"});
    expectFailure(2, {"inspect", "frame", "p.roamly", "--at", "0", "--size", "0x5", "-o", "f.png"});
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_FALSE(std::filesystem::exists(program / "f.png"));
}

TEST_F(InspectCommandsTest, MetadataPrintsALineForEachFileInOrderAndAlwaysSucceeds) {
    Foundation::writeFileAtomically(program / "noise.jpg", "no picture");
    const Ran ran = run({"inspect", "metadata", "trip/2.jpg", "missing.jpg", "./noise.jpg", "trip"});
    EXPECT_EQ(ran.status, 0);
    const std::vector<json> lines = ran.json();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], (json{{"file", "trip/2.jpg"},
                              {"captureDate", "2024-05-02T10:00:00Z"},
                              {"captureDateIsLowConfidence", false}}));
    EXPECT_EQ(lines[1], (json{{"file", "missing.jpg"}, {"captureDateIsLowConfidence", true}}));
    EXPECT_EQ(lines[2]["file"], "./noise.jpg");
    EXPECT_EQ(lines[2]["captureDateIsLowConfidence"], true);
    EXPECT_FALSE(lines[2].contains("coordinate"));
    EXPECT_EQ(lines[3]["file"], "trip");
}

TEST_F(InspectCommandsTest, MetadataOfAFileWhoseNameIsNotUtf8IsStillJson) {
    std::filesystem::copy_file(program / "trip/2.jpg", program.folder() / "\xE9.jpg");
    const std::vector<json> lines = run({"inspect", "metadata", "\xE9.jpg"}).json();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0]["captureDate"], "2024-05-02T10:00:00Z");
}

TEST_F(InspectCommandsTest, WithJsonEveryResultIsWrapped) {
    makeProject();
    ASSERT_EQ(run({"title", "p.roamly", photoID(0), "a \"b\\\" {  c"}).status, 0);
    EXPECT_TRUE(done({"inspect", "timeline", "p.roamly"}).contains("items"));
    EXPECT_EQ(done({"inspect", "project", "p.roamly"}), project());
    EXPECT_TRUE(done({"inspect", "state", "p.roamly", "--at", "1"}).contains("photo"));
}

TEST_F(InspectCommandsTest, TheGroupAloneOrWithAnUnknownMemberIsMisuse) {
    expectFailure(2, {"inspect"});
    expectFailure(2, {"inspect", "stat"});
    EXPECT_EQ(run({"inspect", "--help"}).status, 0);
}
