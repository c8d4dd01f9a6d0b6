// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/TestPhotos.h>

#include <csignal>
#include <thread>

using nlohmann::json;

namespace {

class ProjectCommandsTest : public EndToEndTest {};

constexpr const char* unknownID = "00000000-0000-0000-0000-0000000000FF";

} // namespace

TEST_F(ProjectCommandsTest, NewWritesAnEmptyProject) {
    const Ran ran = run({"new", "a.roamly"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(text("a.roamly"), "{\n  \"photos\": [],\n  \"schemaVersion\": 2,\n  \"settings\": {},\n"
                                "  \"sources\": [],\n  \"usesManualOrder\": false\n}");
}

TEST_F(ProjectCommandsTest, NewLeavesAnExistingFileUntouchedAndFails) {
    Foundation::writeFileAtomically(program / "a.roamly", "mine");
    expectFailure(1, {"new", "a.roamly"});
    EXPECT_EQ(text("a.roamly"), "mine");
}

TEST_F(ProjectCommandsTest, ImportAddsTheFoldersPhotosInTheOrderOfTheirDates) {
    makeProject();
    const json project = this->project();
    ASSERT_EQ(project["photos"].size(), 3U);
    EXPECT_EQ(project["photos"][0]["captureDate"], "2024-05-01T10:00:00Z");
    EXPECT_EQ(project["photos"][2]["source"]["file"]["displayName"], "3.jpg");
    ASSERT_EQ(project["sources"].size(), 1U);
    EXPECT_EQ(project["photos"][0]["sourceID"], project["sources"][0]["id"]);
}

TEST_F(ProjectCommandsTest, ImportReportsWhatWasAddedAndTheNoticesInTheirWords) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    std::filesystem::create_directory(program / "empty");
    EXPECT_EQ(done({"import", "p.roamly", "trip", "empty", "nowhere/at all"}),
              (json{{"added", 3},
                    {"notices",
                     {"No photos were found in “empty”.", "Couldn’t get lasting access to “at all”."}}}));
    EXPECT_EQ(done({"import", "p.roamly", "trip"}), (json{{"added", 0}, {"notices", json::array()}}));
}

TEST_F(ProjectCommandsTest, ImportSpeaksToPeopleOnStandardErrorAndToProgramsOnStandardOutput) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    const Ran ran = run({"import", "p.roamly", "trip", "nowhere"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "{\"added\":3,\"notices\":[\"Couldn’t get lasting access to “nowhere”.\"]}\n");
    EXPECT_EQ(ran.err, "Couldn’t get lasting access to “nowhere”.\nAdded 3 photos; the project holds 3.\n");
}

TEST_F(ProjectCommandsTest, ImportFailsOnlyWhenEveryFolderGaveANotice) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    EXPECT_EQ(run({"import", "p.roamly", "nowhere", "trip/1.jpg"}).status, 1);
    EXPECT_EQ(run({"import", "p.roamly", "nowhere", "trip"}).status, 0);
    EXPECT_EQ(project()["photos"].size(), 3U);
}

TEST_F(ProjectCommandsTest, ImportReportsProgressForPrograms) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    const std::vector<json> lines = run({"import", "p.roamly", "trip", "--json"}).json();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], (json{{"progress", {{"completed", 3}, {"total", 3}}}}));
}

TEST_F(ProjectCommandsTest, ImportWithNothingNewLeavesTheFileAsItIs) {
    makeProject();
    // Another layout of the same document.
    Foundation::writeFileAtomically(program / "p.roamly", project().dump());
    const std::string before = text("p.roamly");
    EXPECT_EQ(run({"import", "p.roamly", "trip"}).status, 0);
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(ProjectCommandsTest, AnOlderFileIsSavedInTheNewLayoutByTheNextCommandThatChangesProjects) {
    Foundation::writeFileAtomically(program / "old.roamly",
                                    R"({"sources":[{"folder":{"bookmark":"L3g=","displayPath":"/x"}}],)"
                                    R"("photos":[],"settings":{},"usesManualOrder":false})");
    const std::string before = text("old.roamly");
    EXPECT_EQ(run({"sources", "old.roamly"}).status, 0);
    EXPECT_EQ(text("old.roamly"), before);
    EXPECT_EQ(run({"deselect", "old.roamly", unknownID}).status, 0);
    EXPECT_EQ(project("old.roamly")["schemaVersion"], 2);
    const Ran first = run({"sources", "old.roamly"});
    EXPECT_EQ(first.out, run({"sources", "old.roamly"}).out);
}

TEST_F(ProjectCommandsTest, SourcesPrintsEachSourceAsALine) {
    makeProject();
    TestPhotos::write(program / "more/4.jpg");
    ASSERT_EQ(run({"import", "p.roamly", "more"}).status, 0);
    const std::vector<json> lines = run({"sources", "p.roamly"}).json();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], project()["sources"][0]);
    EXPECT_EQ(lines[1]["ref"]["folder"]["displayPath"], (program / "more").string());
}

TEST_F(ProjectCommandsTest, RemoveSourceTakesItsPhotosWithIt) {
    makeProject();
    TestPhotos::write(program / "more/4.jpg");
    ASSERT_EQ(run({"import", "p.roamly", "more"}).status, 0);
    EXPECT_EQ(done({"remove-source", "p.roamly", project()["sources"][0]["id"]}), json::object());
    EXPECT_EQ(project()["photos"].size(), 1U);
    EXPECT_EQ(project()["sources"].size(), 1U);
}

TEST_F(ProjectCommandsTest, DeselectAndSelectAreTheUsersDecisions) {
    makeProject();
    EXPECT_EQ(run({"deselect", "p.roamly", photoID(0), photoID(2)}).status, 0);
    EXPECT_EQ(project()["photos"][0]["isSelected"], false);
    EXPECT_EQ(project()["photos"][0]["selectionProvenance"], "user");
    EXPECT_EQ(project()["photos"][1]["selectionProvenance"], "proposed");
    EXPECT_EQ(run({"select", "p.roamly", photoID(0)}).status, 0);
    EXPECT_EQ(project()["photos"][0]["isSelected"], true);
    EXPECT_EQ(project()["photos"][2]["isSelected"], false);
}

TEST_F(ProjectCommandsTest, IdentifiersAreAcceptedInLowerCase) {
    makeProject();
    std::string id = photoID(0);
    for (char& c : id)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    EXPECT_EQ(run({"remove", "p.roamly", id}).status, 0);
    EXPECT_EQ(project()["photos"].size(), 2U);
}

TEST_F(ProjectCommandsTest, UnknownIdentifiersChangeNothingAndAreNoError) {
    makeProject();
    const std::string before = text("p.roamly");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"select", "p.roamly", unknownID},
                                                  {"deselect", "p.roamly", unknownID},
                                                  {"place", "p.roamly", unknownID, "--city", "Rome"},
                                                  {"place", "p.roamly", unknownID, "--clear"},
                                                  {"title", "p.roamly", unknownID, "x"},
                                                  {"remove", "p.roamly", unknownID},
                                                  {"remove-source", "p.roamly", unknownID}})
        EXPECT_EQ(run(words).status, 0) << words[0];
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(ProjectCommandsTest, PlaceNamesAndClearsThePlace) {
    makeProject();
    EXPECT_EQ(run({"place", "p.roamly", photoID(1), "--city", "Sintra", "--country=Portugal"}).status, 0);
    EXPECT_EQ(project()["photos"][1]["location"],
              (json{{"city", "Sintra"}, {"country", "Portugal"}, {"provenance", "user"}}));
    EXPECT_EQ(run({"place", "p.roamly", photoID(1), "--country", "Spain"}).status, 0);
    EXPECT_EQ(project()["photos"][1]["location"], (json{{"country", "Spain"}, {"provenance", "user"}}));
    EXPECT_EQ(run({"place", "p.roamly", photoID(1), "--clear"}).status, 0);
    EXPECT_FALSE(project()["photos"][1].contains("location"));
}

TEST_F(ProjectCommandsTest, PlaceNamesAreTrimmedAndBlankOnesClear) {
    makeProject();
    EXPECT_EQ(run({"place", "p.roamly", photoID(1), "--city", " Sintra\n", "--country", ""}).status, 0);
    EXPECT_EQ(project()["photos"][1]["location"], (json{{"city", "Sintra"}, {"provenance", "user"}}));
    EXPECT_EQ(run({"place", "p.roamly", photoID(1), "--city", ""}).status, 0);
    EXPECT_FALSE(project()["photos"][1].contains("location"));
    expectFailure(2, {"place", "p.roamly", photoID(1)});
    expectFailure(2, {"place", "p.roamly", photoID(1), "--clear", "--city", ""});
}

TEST_F(ProjectCommandsTest, TitleIsTrimmedAndAnEmptyOneClears) {
    makeProject();
    EXPECT_EQ(run({"title", "p.roamly", photoID(0), " \u00A0Tram 28 – 電車\n"}).status, 0);
    EXPECT_EQ(project()["photos"][0]["caption"], "Tram 28 – 電車");
    EXPECT_EQ(project()["photos"][0]["captionProvenance"], "user");
    EXPECT_EQ(run({"title", "p.roamly", photoID(0), ""}).status, 0);
    EXPECT_FALSE(project()["photos"][0].contains("caption"));
    EXPECT_FALSE(project()["photos"][0].contains("captionProvenance"));
    EXPECT_EQ(run({"title", "p.roamly", photoID(0), "--", "--none"}).status, 0);
    EXPECT_EQ(project()["photos"][0]["caption"], "--none");
}

TEST_F(ProjectCommandsTest, MoveReordersAndTheNextImportKeepsTheOrder) {
    makeProject();
    EXPECT_EQ(run({"move", "p.roamly", "2", "1", "--to", "0"}).status, 0);
    TestPhotos::write(program / "more/0.jpg", {.date = "2020:01:01 00:00:00"});
    EXPECT_EQ(run({"import", "p.roamly", "more"}).status, 0);
    const json project = this->project();
    std::string names;
    for (const json& photo : project["photos"])
        names += photo["source"]["file"]["displayName"].get<std::string>() + " ";
    EXPECT_EQ(names, "2.jpg 3.jpg 1.jpg 0.jpg ");
    EXPECT_EQ(project["usesManualOrder"], true);
}

TEST_F(ProjectCommandsTest, PositionsOutsideTheListAreMisuseAndChangeNothing) {
    makeProject();
    const std::string before = text("p.roamly");
    expectFailure(2, {"move", "p.roamly", "3", "--to", "0"});
    expectFailure(2, {"move", "p.roamly", "0", "--to", "4"});
    expectFailure(2, {"move", "p.roamly", "-1", "--to", "0"});
    expectFailure(2, {"move", "p.roamly", "0"});
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(run({"move", "p.roamly", "0", "--to", "3"}).status, 0);
}

TEST_F(ProjectCommandsTest, RemoveTakesPhotosOutOfTheProject) {
    makeProject();
    const std::string kept = photoID(1);
    EXPECT_EQ(run({"remove", "p.roamly", photoID(0), photoID(2)}).status, 0);
    ASSERT_EQ(project()["photos"].size(), 1U);
    EXPECT_EQ(photoID(0), kept);
    EXPECT_TRUE(std::filesystem::exists(program / "trip/1.jpg"));
}

TEST_F(ProjectCommandsTest, MusicIsChosenAndTakenAway) {
    makeProject();
    Foundation::writeFileAtomically(program / "fado.mp3", "not really");
    EXPECT_EQ(run({"music", "p.roamly", "fado.mp3"}).status, 0);
    EXPECT_EQ(project()["music"]["displayName"], "fado.mp3");
    const std::string before = text("p.roamly");
    expectFailure(1, {"music", "p.roamly", "nowhere.mp3"});
    expectFailure(1, {"music", "p.roamly", "trip"});
    expectFailure(2, {"music", "p.roamly"});
    expectFailure(2, {"music", "p.roamly", "fado.mp3", "--none"});
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(run({"music", "p.roamly", "--none"}).status, 0);
    EXPECT_FALSE(project().contains("music"));
}

TEST_F(ProjectCommandsTest, MusicThatCannotBePlayedIsTakenWithAWarning) {
    makeProject();
    Foundation::writeFileAtomically(program / "fado.mp3", "not really");
    const Ran ran = run({"music", "p.roamly", "fado.mp3"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.err.find("“fado.mp3” can’t be played"), std::string::npos) << ran.err;
    writeTone("tone.wav");
    EXPECT_EQ(run({"music", "p.roamly", "tone.wav", "--json"}).err, "");
    EXPECT_EQ(project()["music"]["displayName"], "tone.wav");
}

TEST_F(ProjectCommandsTest, SetStoresTypedValuesAndUnsetRemovesThem) {
    makeProject();
    for (const auto& [key, value] :
         std::vector<std::pair<std::string, std::string>>{{"photoDuration", "2.5"},
                                                          {"kenBurnsEnabled", "false"},
                                                          {"captionsEnabled", "true"},
                                                          {"aiCaptionsEnabled", "false"},
                                                          {"chapterStyle", "overlay"},
                                                          {"aiProvider", "ollama"},
                                                          {"captionPrompt", "Short, and “poetic”"}})
        EXPECT_EQ(run({"set", "p.roamly", key, value}).status, 0) << key;
    EXPECT_EQ(project()["settings"], (json{{"photoDuration", 2.5},
                                           {"kenBurnsEnabled", false},
                                           {"captionsEnabled", true},
                                           {"aiCaptionsEnabled", false},
                                           {"chapterStyle", "overlay"},
                                           {"aiProvider", "ollama"},
                                           {"captionPrompt", "Short, and “poetic”"}}));
    EXPECT_EQ(run({"set", "p.roamly", "chapterStyle", "--unset"}).status, 0);
    EXPECT_FALSE(project()["settings"].contains("chapterStyle"));
}

TEST_F(ProjectCommandsTest, SetRefusesUnknownKeysAndValues) {
    makeProject();
    const std::string before = text("p.roamly");
    expectFailure(2, {"set", "p.roamly", "colour", "red"});
    expectFailure(2, {"set", "p.roamly", "photoDuration"});
    expectFailure(2, {"set", "p.roamly", "photoDuration", "5", "--unset"});
    for (const char* value : {"0", "-1", "nan", "inf", "1e999", "five"})
        expectFailure(2, {"set", "p.roamly", "photoDuration", value});
    expectFailure(2, {"set", "p.roamly", "kenBurnsEnabled", "on"});
    expectFailure(2, {"set", "p.roamly", "chapterStyle", "none"});
    expectFailure(2, {"set", "p.roamly", "aiProvider", "openrouter"});
    expectFailure(2, {"set", "p.roamly", "captionPrompt", "\xC3("});
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(ProjectCommandsTest, GoingOverToTheCloudNeedsAConfirmation) {
    makeProject();
    const std::string before = text("p.roamly");
    const Ran refused = run({"set", "p.roamly", "aiProvider", "openRouter"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("is uploaded to generate its caption"), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("--yes"), std::string::npos) << refused.err;
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(run({"set", "p.roamly", "aiProvider", "openRouter", "--yes"}).status, 0);
    EXPECT_EQ(project()["settings"]["aiProvider"], "openRouter");
    // Where it is in effect already nobody is asked again.
    EXPECT_EQ(run({"set", "p.roamly", "aiProvider", "openRouter"}).status, 0);
    EXPECT_EQ(run({"set", "p.roamly", "aiProvider", "apple"}).status, 0);
    ASSERT_EQ(run({"settings", "defaultAIProvider", "openRouter"}).status, 0);
    ASSERT_EQ(run({"set", "p.roamly", "aiProvider", "--unset"}).status, 0);
    EXPECT_EQ(run({"set", "p.roamly", "aiProvider", "openRouter"}).status, 0);
}

TEST_F(ProjectCommandsTest, OnATerminalTheConfirmationIsAskedFor) {
    makeProject();
    const std::string before = text("p.roamly");
    const Ran no = program.runTyping({"set", "p.roamly", "aiProvider", "openRouter"}, "n\n");
    EXPECT_EQ(no.status, 1) << no.err;
    EXPECT_NE(no.err.find("Use OpenRouter (cloud)? [y/N]"), std::string::npos) << no.err;
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(program.runTyping({"set", "p.roamly", "aiProvider", "openRouter"}, "\n").status, 1);
    EXPECT_EQ(program.runTyping({"set", "p.roamly", "aiProvider", "openRouter"}, "y\n").status, 0);
    EXPECT_EQ(project()["settings"]["aiProvider"], "openRouter");
}

TEST_F(ProjectCommandsTest, MalformedIdentifiersAreMisuse) {
    makeProject();
    for (const char* command : {"select", "deselect", "remove", "remove-source"})
        expectFailure(2, {command, "p.roamly", "12345"});
    expectFailure(2, {"title", "p.roamly", "12345", "x"});
    expectFailure(2, {"place", "p.roamly", "12345", "--clear"});
    // One bad among good ones changes nothing.
    const std::string before = text("p.roamly");
    expectFailure(2, {"remove", "p.roamly", photoID(0), "12345"});
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(ProjectCommandsTest, TextThatIsNotUtf8IsMisuse) {
    makeProject();
    expectFailure(2, {"title", "p.roamly", photoID(0), "\xFF"});
    expectFailure(2, {"place", "p.roamly", photoID(0), "--city", "\xFF"});
}

TEST_F(ProjectCommandsTest, ProjectsThatCannotBeOpenedFailInOneSentence) {
    Foundation::writeFileAtomically(program / "newer.roamly", R"({"schemaVersion":3})");
    Foundation::writeFileAtomically(program / "broken.roamly", "{");
    Foundation::writeFileAtomically(program / "list.roamly", "[]");
    Foundation::writeFileAtomically(program / "empty.roamly", "");
    for (const char* file :
         {"missing.roamly", "newer.roamly", "broken.roamly", "list.roamly", "empty.roamly", "trip"}) {
        expectFailure(1, {"sources", file});
        expectFailure(1, {"import", file, "trip"});
        expectFailure(1, {"select", file, unknownID});
        expectFailure(1, {"inspect", "timeline", file});
        expectFailure(1, {"export", file, "-o", "m.mov"});
    }
    EXPECT_EQ(text("broken.roamly"), "{");
}

TEST_F(ProjectCommandsTest, CommandsChangingOneProjectAtTheSameTimeLoseNoChange) {
    makeProject();
    const std::vector<std::string> ids{photoID(0), photoID(1), photoID(2)};
    std::vector<std::thread> threads;
    threads.reserve(ids.size());
    for (const std::string& id : ids) {
        threads.emplace_back([&, id] {
            for (int round = 0; round < 3; ++round) {
                EXPECT_EQ(program.run({"title", "p.roamly", id, "caption of " + id}).status, 0);
                EXPECT_EQ(program.run({"deselect", "p.roamly", id}).status, 0);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const json project = this->project();
    ASSERT_EQ(project["photos"].size(), 3U);
    for (const json& photo : project["photos"]) {
        EXPECT_EQ(photo["caption"], "caption of " + photo["id"].get<std::string>());
        EXPECT_EQ(photo["isSelected"], false);
    }
}

TEST_F(ProjectCommandsTest, AnInterruptedImportChangesNothing) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    for (int number = 0; number < 20; ++number)
        TestPhotos::write(program / ("many/" + std::to_string(number) + ".jpg"), {.width = 8, .height = 8});
    const std::string before = text("p.roamly");
    const Ran ran = program.interrupt({"import", "p.roamly", "many", "--json"}, "\"completed\":0", {SIGINT});
    EXPECT_EQ(ran.status, 130) << ran.err;
    EXPECT_EQ(ran.err, "roamly: Interrupted.\n");
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(files(), (std::vector<std::string>{"many", "p.roamly", "trip"}));
}

TEST_F(ProjectCommandsTest, AnImportInterruptedAtItsEndIsSavedOrNotAsItSays) {
    ASSERT_EQ(run({"new", "p.roamly"}).status, 0);
    for (int number = 0; number < 20; ++number)
        TestPhotos::write(program / ("many/" + std::to_string(number) + ".jpg"), {.width = 8, .height = 8});
    const std::string before = text("p.roamly");
    // It may be about to save, or have saved, when the signal comes.
    const Ran ran = program.interrupt({"import", "p.roamly", "many", "--json"}, "\"completed\":20", {SIGINT});
    if (ran.status == 130) {
        EXPECT_EQ(text("p.roamly"), before);
    } else {
        EXPECT_EQ(ran.status, 0) << ran.err;
        EXPECT_EQ(project()["photos"].size(), 20U);
    }
    EXPECT_EQ(files(), (std::vector<std::string>{"many", "p.roamly", "trip"}));
}
