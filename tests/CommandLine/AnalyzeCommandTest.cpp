// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/LoopbackServer.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fstream>
#include <iterator>

using namespace std::string_literals;
using nlohmann::json;
using testing::HasSubstr;

namespace {

class AnalyzeCommandTest : public EndToEndTest {
protected:
    AnalyzeCommandTest() { makeProject(); }

    void changeProject(const std::function<void(json&)>& change) {
        json changed = project();
        change(changed);
        std::ofstream{program / "p.roamly"} << changed.dump();
    }
    void setPosition(std::size_t photo, double latitude, double longitude) {
        changeProject([&](json& project) {
            project["photos"][photo]["coordinate"] = {{"latitude", latitude}, {"longitude", longitude}};
        });
    }
};

} // namespace

TEST_F(AnalyzeCommandTest, NamesPlacesWithoutANetwork) {
    setPosition(0, 38.7107, -9.1366);
    setPosition(1, 41.1407, -8.6110);
    const json result = done({"analyze", "p.roamly"});
    EXPECT_EQ(result, (json{{"issues", {"1 photo has no GPS location data."}}, {"canRetry", false}}));
    EXPECT_EQ(project()["photos"][0]["location"],
              (json{{"city", "Lisbon"}, {"country", "Portugal"}, {"provenance", "geocoded"}}));
    EXPECT_EQ(project()["photos"][1]["location"]["city"], "Porto");
}

TEST_F(AnalyzeCommandTest, PrintsTheIssuesForPeople) {
    const Ran ran = run({"analyze", "p.roamly"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "{\"issues\":[\"3 photos have no GPS location data.\"],\"canRetry\":false}\n");
    EXPECT_THAT(ran.err, HasSubstr("3 photos have no GPS location data."));
}

TEST_F(AnalyzeCommandTest, ReportsItsStagesInOrder) {
    std::vector<std::string> stages;
    for (const json& line : run({"analyze", "p.roamly", "--json"}).json()) {
        if (!line.contains("progress"))
            continue;
        const std::string stage = line["progress"]["stage"];
        if (stages.empty() || stages.back() != stage)
            stages.push_back(stage);
    }
    EXPECT_THAT(stages, testing::Contains("clustering"));
    EXPECT_EQ(stages.back(), "done");
}

namespace {

/// Six photos in places of their own, three of them alike and taken within a minute.
class TripAnalysisTest : public AnalyzeCommandTest {
protected:
    TripAnalysisTest() {
        for (const char* number : {"1", "2", "3"}) {
            TestPhotos::write(program / ("burst/"s + number + ".jpg"),
                              {.colour = 0xC0C020, .date = "2024:05:04 10:00:0"s + number});
        }
        EXPECT_EQ(run({"import", "p.roamly", "burst"}).status, 0);
        for (std::size_t i = 0; i < 6; ++i)
            setPosition(i, 38.7107 + 0.5 * static_cast<double>(i), -8.6);
    }

    /// The stage of each line of progress.
    static std::vector<std::string> stages(const Ran& ran) {
        std::vector<std::string> result;
        for (const json& line : ran.json()) {
            if (line.contains("progress"))
                result.push_back(line["progress"]["stage"]);
        }
        return result;
    }
    /// The project without what is random in it.
    [[nodiscard]] json comparable() const {
        json result = project();
        for (json& photo : result["photos"]) {
            if (photo.contains("clusterID"))
                photo["clusterID"] = "some";
        }
        return result;
    }
    /// The members of a photo, by its id, that the user and the analysis decide.
    [[nodiscard]] json decided(const std::string& id) const {
        json result;
        const json project = this->project();
        for (const json& photo : project["photos"]) {
            if (photo["id"] != id)
                continue;
            for (const char* member :
                 {"isSelected", "selectionProvenance", "location", "caption", "captionProvenance"}) {
                if (photo.contains(member))
                    result[member] = photo[member];
            }
        }
        return result;
    }
    [[nodiscard]] std::vector<std::string> order() const {
        std::vector<std::string> ids;
        const json project = this->project();
        for (const json& photo : project["photos"])
            ids.push_back(photo["id"]);
        return ids;
    }
    [[nodiscard]] json cache() const {
        return json::parse(Foundation::readFile(program.cacheFolder() / "geocode.json"));
    }
    [[nodiscard]] std::size_t filesInCache() const {
        const std::filesystem::directory_iterator begin{program.cacheFolder()};
        return static_cast<std::size_t>(std::distance(begin, std::filesystem::directory_iterator{}));
    }
};

} // namespace

TEST_F(TripAnalysisTest, TheUsersOwnChoicesSurviveEveryLaterAnalysis) {
    ASSERT_EQ(run({"analyze", "p.roamly"}).status, 0);
    // Of the burst, the last three, the analysis keeps one.
    std::string kept;
    std::string dropped;
    for (std::size_t i = 3; i < 6; ++i)
        (project()["photos"][i]["isSelected"] == true ? kept : dropped) = photoID(i);
    ASSERT_FALSE(kept.empty());
    ASSERT_FALSE(dropped.empty());
    const std::string first = photoID(0);
    const std::string second = photoID(1);
    const std::string third = photoID(2);

    for (const std::vector<std::string>& words : {std::vector<std::string>{"select", "p.roamly", dropped},
                                                  {"deselect", "p.roamly", kept, first},
                                                  {"place", "p.roamly", first, "--city", "Home"},
                                                  {"place", "p.roamly", second, "--clear"},
                                                  {"title", "p.roamly", third, "Tram 28"},
                                                  {"move", "p.roamly", "0", "--to", "6"}})
        ASSERT_EQ(run(words).status, 0) << words[0];
    const json home{{"city", "Home"}, {"provenance", "user"}};
    const json found = decided(third)["location"];
    EXPECT_EQ(found["provenance"], "geocoded");
    const std::vector<std::string> order = this->order();
    EXPECT_EQ(order.back(), first);

    const auto expectOwnPlacesAndTexts = [&] {
        EXPECT_EQ(decided(first)["location"], home);
        // A place that was taken away is looked for again.
        EXPECT_EQ(decided(second)["location"]["provenance"], "geocoded");
        EXPECT_EQ(decided(third)["location"], found);
        EXPECT_EQ(decided(third)["caption"], "Tram 28");
        EXPECT_EQ(decided(third)["captionProvenance"], "user");
        EXPECT_EQ(this->order(), order);
    };
    const auto selection = [&](const std::string& id) {
        const json photo = decided(id);
        return json{photo["isSelected"], photo["selectionProvenance"]};
    };
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        ASSERT_EQ(run({"analyze", "p.roamly"}).status, 0);
        EXPECT_EQ(selection(dropped), (json{true, "user"}));
        EXPECT_EQ(selection(kept), (json{false, "user"}));
        EXPECT_EQ(selection(first), (json{false, "user"}));
        EXPECT_EQ(selection(second), (json{true, "proposed"}));
        expectOwnPlacesAndTexts();
    }

    // Only what is selected begins anew.
    ASSERT_EQ(run({"analyze", "p.roamly", "--reset"}).status, 0);
    EXPECT_EQ(selection(dropped), (json{false, "proposed"}));
    EXPECT_EQ(selection(kept), (json{true, "proposed"}));
    EXPECT_EQ(selection(first), (json{true, "proposed"}));
    expectOwnPlacesAndTexts();
}

TEST_F(TripAnalysisTest, InterruptedItLeavesTheProjectAsItWasAtWhateverStageAndKeepsThePlaces) {
    const std::string before = text("p.roamly");
    const std::vector<std::string> whole = stages(run({"analyze", "p.roamly", "--json"}));
    const json analysed = comparable();
    ASSERT_EQ(cache().size(), 6U);
    const std::vector<std::string> expected{"geocoding",  "geocoding",  "geocoding",  "geocoding",
                                            "geocoding",  "geocoding",  "clustering", "clustering",
                                            "clustering", "clustering", "clustering", "clustering",
                                            "scoring",    "scoring",    "scoring",    "done"};
    ASSERT_EQ(whole, expected);

    for (const int line : {1, 4, 6, 7, 10, 12, 13, 15}) {
        SCOPED_TRACE(line);
        Foundation::writeFileAtomically(program / "p.roamly", before);
        std::filesystem::remove_all(program.cacheFolder());
        const Ran ran = program.interrupt({"analyze", "p.roamly", "--json"}, "{\"progress\"", {SIGINT}, line);
        EXPECT_EQ(ran.status, 130);
        EXPECT_EQ(ran.err, "roamly: Interrupted.\n");
        // A line that was on its way comes out yet.
        EXPECT_LE(stages(ran).size(), static_cast<std::size_t>(line) + 1);
        EXPECT_THAT(ran.out, testing::Not(HasSubstr("result")));
        EXPECT_EQ(text("p.roamly"), before);
        EXPECT_EQ(files(), (std::vector<std::string>{"burst", "p.roamly", "trip"}));
        EXPECT_GE(cache().size(), static_cast<std::size_t>(std::min(line, 6)));
        EXPECT_EQ(filesInCache(), 1U);
    }
    EXPECT_EQ(run({"analyze", "p.roamly"}).status, 0);
    EXPECT_EQ(comparable(), analysed);
}

TEST_F(TripAnalysisTest, InterruptedItEndsAtOnceWhileAServerKeepsItWaiting) {
    std::atomic<int> asked = 0;
    const LoopbackServer server{[&](const LoopbackServer::Request&) {
        LoopbackServer::Answer answer =
            LoopbackServer::ok(R"({"address":{"city":"Lisbon","country":"Portugal"}})");
        answer.silent = ++asked > 1;
        return answer;
    }};
    ASSERT_EQ(run({"settings", "geocoderURL", server.url()}).status, 0);
    const std::string before = text("p.roamly");
    const Ran ran = program.interrupt({"analyze", "p.roamly", "--json"}, "geocoding", {SIGINT});
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(text("p.roamly"), before);
    EXPECT_EQ(cache().size(), 1U);
}

TEST_F(TripAnalysisTest, InterruptedMakeKeepsNothing) {
    const Ran ran = program.interrupt({"make", "trip", "-o", "m.mov", "--project", "m.roamly", "--json"},
                                      "clustering", {SIGINT}, 2);
    EXPECT_EQ(ran.status, 130);
    EXPECT_EQ(files(), (std::vector<std::string>{"burst", "p.roamly", "trip"}));
}

TEST_F(AnalyzeCommandTest, ADamagedFileOfTheProgramIsNamed) {
    // A program without its data stands alone in a folder.
    std::filesystem::create_directory(program / "bin");
    std::filesystem::copy_file(ROAMLY_PROGRAM, program / "bin/roamly");
    program.setProgram(program / "bin/roamly");
    program.setEnvironment("XDG_DATA_DIRS", "/nonexistent");
    program.setEnvironment("LD_LIBRARY_PATH", ROAMLY_LIBRARIES);
    const std::string before = text("p.roamly");
    const Ran ran = run({"analyze", "p.roamly"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, HasSubstr("gazetteer.bin"));
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(AnalyzeCommandTest, MakeAnalysesToo) {
    ASSERT_EQ(run({"settings", "photoDuration", "0.2"}).status, 0);
    setPosition(0, 38.7107, -9.1366);
    const Ran ran = run({"make", "trip", "-o", "m.mov", "--project", "p.roamly", "--json"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("clustering"));
    EXPECT_EQ(project()["photos"][0]["location"]["city"], "Lisbon");
}

TEST_F(AnalyzeCommandTest, InspectClustersListsTheGroupsInProjectOrder) {
    const std::string cluster = "AAAAAAAA-0000-0000-0000-000000000001";
    changeProject([&](json& project) {
        project["photos"][2]["clusterID"] = cluster;
        project["photos"][0]["clusterID"] = cluster;
    });
    EXPECT_EQ(run({"inspect", "clusters", "p.roamly"}).json()[0],
              (json{{"clusters", {{{"clusterID", cluster}, {"photoIDs", {photoID(0), photoID(2)}}}}}}));
}

TEST_F(AnalyzeCommandTest, InspectPlaceTakesNegativeNumbersAndLeavesOutWhatIsNotOnEarth) {
    const std::vector<json> lines = run({"inspect", "place", "-33.8568,151.2153", "0,-30", "91,0"}).json();
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0]["location"]["city"], "Sydney");
    EXPECT_EQ(lines[0]["coordinate"], (json{{"latitude", -33.8568}, {"longitude", 151.2153}}));
    EXPECT_FALSE(lines[1].contains("location") && lines[1]["location"].contains("city"));
    EXPECT_FALSE(lines[2].contains("location"));
    expectFailure(2, {"inspect", "place", "Rome"});
}

TEST_F(AnalyzeCommandTest, MergesWithWhatAnotherProgramWroteMeanwhile) {
    setPosition(0, 38.7107, -9.1366);
    const Ran ran = program.runWhile({"analyze", "p.roamly", "--json"}, "\"progress\"", [&] {
        json theirs = project();
        theirs["photos"][1]["caption"] = "theirs";
        Foundation::writeFileAtomically(program / "p.roamly", theirs.dump());
    });
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(project()["photos"][0]["location"]["city"], "Lisbon");
    EXPECT_EQ(project()["photos"][1]["caption"], "theirs");
}

TEST_F(AnalyzeCommandTest, SavesNothingOverWhatItCannotMergeWith) {
    setPosition(0, 38.7107, -9.1366);
    const std::string theirs = R"({"schemaVersion":3})";
    const Ran ran = program.runWhile({"analyze", "p.roamly", "--json"}, "\"progress\"",
                                     [&] { Foundation::writeFileAtomically(program / "p.roamly", theirs); });
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.err, testing::HasSubstr("can’t be opened"));
    EXPECT_EQ(text("p.roamly"), theirs);
}

TEST_F(AnalyzeCommandTest, InspectsWhatTheNetworksSee) {
    const std::string photo = "trip/1.jpg";
    EXPECT_EQ(run({"inspect", "features", photo}).json()[0]["features"].size(), 1024U);
    const json quality = run({"inspect", "quality", photo}).json()[0];
    for (const char* member : {"variance", "sharpness", "aesthetics", "hasOpenEyedFace", "score"})
        EXPECT_TRUE(quality.contains(member)) << member;
    EXPECT_TRUE(run({"inspect", "tags", photo}).json()[0]["tags"].is_array());
    const json distances = run({"inspect", "distances", photo, "missing.jpg"}).json()[0];
    EXPECT_EQ(distances["files"], (json{photo, "missing.jpg"}));
    EXPECT_EQ(distances["distances"], (json{{0, nullptr}, {nullptr, nullptr}}));
    const Ran missing = run({"inspect", "features", "missing.jpg", photo});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.json()[0], (json{{"file", "missing.jpg"}}));
    EXPECT_EQ(missing.json().size(), 2U);
}
