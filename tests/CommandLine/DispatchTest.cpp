// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Roamly/CommandLine/Commands.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

class DispatchTest : public EndToEndTest {};

} // namespace

TEST_F(DispatchTest, TheHelpTellsWhatItCanDo) {
    const Ran ran = run({"--help"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find("roamly make"), std::string::npos);
    EXPECT_EQ(ran.err, "");
}

TEST_F(DispatchTest, WithoutADisplayOneSentenceTellsThatThereIsNoWindow) {
    makeProject();
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {}, {"p.roamly"}, {"trip"}, {"p.roamly", "trip"}, {"play", "p.roamly", "--from", "3"}}) {
        const Ran ran = run(words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err,
                  "roamly: There is no display to open a window on; “roamly --help” lists what works "
                  "without one.\n");
    }
}

TEST_F(DispatchTest, TheVersionIsNamed) {
    const Ran ran = run({"--version"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.out.starts_with("roamly ")) << ran.out;
}

TEST_F(DispatchTest, TheLicencesNameWhereTheDataComesFrom) {
    const Ran ran = run({"--version", "--licences"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find("GeoNames (geonames.org), CC BY 4.0"), std::string::npos) << ran.out;
}

TEST_F(DispatchTest, TheLicencesNameTheRuntimeOfTheNetworksAsPackedOnlyWhereItComesAlong) {
    const Ran ran = run({"--version", "--licences"});
    EXPECT_NE(ran.out.find("ONNX Runtime"), std::string::npos) << ran.out;
    EXPECT_EQ(ran.out.find("as packed by sherpa-onnx") != std::string::npos,
              std::filesystem::exists(ROAMLY_LIBRARIES "/libonnxruntime.so"))
        << ran.out;
}

TEST_F(DispatchTest, TheLicencesAreAskedForInEitherSpellingWithTheVersionOrAlone) {
    const Ran ran = run({"--licences"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.out.starts_with(run({"--version"}).out)) << ran.out.substr(0, 200);
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"--licenses"},
                                               {"--version", "--licences"},
                                               {"--version", "--licenses"},
                                               {"--licences", "--version"}})
        EXPECT_EQ(run(words).out, ran.out) << words[0];
}

TEST_F(DispatchTest, TheLicencesAreShownInFull) {
    const std::string licences = run({"--licences"}).out;
    // A sentence from the end of each, and the copyright lines that have to go along.
    for (const std::string_view text :
         {"Creative Commons may be contacted at creativecommons.org.",
          "these additional rights are granted in this License in order to meet the\nterms of this License.",
          "limitations under the License.", "Copyright (c) 2016 widdix GmbH",
          "Copyright (c) 2025, country-coder contributors", "Copyright (c) 2020-2021, Raúl Polanco",
          "Copyright (c) 2019 Qian Sha", "Copyright 2023 Adam Averay",
          "Copyright (c) 2025 Karthik Gangadharaiah", "Copyright (c) 2017 Simone Primarosa"})
        EXPECT_NE(licences.find(text), std::string::npos) << text;
}

TEST_F(DispatchTest, AtExactlyThePackedRuntimeStandsTheLicenceOfItsMakers) {
    const std::string licences = run({"--licences"}).out;
    const bool comesAlong = std::filesystem::exists(ROAMLY_LIBRARIES "/libonnxruntime.so");
    for (const std::string_view text :
         {"Copyright (c) Microsoft Corporation", "THIRD PARTY SOFTWARE NOTICES AND INFORMATION"})
        EXPECT_EQ(licences.find(text) != std::string::npos, comesAlong) << text;
}

TEST_F(DispatchTest, EveryPackageThatComesAlongIsAttributed) {
    const std::string licences = run({"--licences"}).out;
    std::ifstream stream(ROAMLY_MANIFEST);
    const auto manifest = nlohmann::json::parse(stream);
    const bool runtimeComesAlong = std::filesystem::exists(ROAMLY_LIBRARIES "/libonnxruntime.so");
    for (const auto& package : manifest.at("packages")) {
        const std::string group = package.at("group");
        const bool comesAlong = group == "onnxruntime" ? runtimeComesAlong : group != "comparison";
        const std::string attribution = package.at("attribution");
        EXPECT_EQ(licences.find(attribution) != std::string::npos, comesAlong) << attribution;
    }
}

TEST_F(DispatchTest, TheVersionTakesNoOtherOption) {
    expectFailure(2, {"--version", "--bogus"});
    expectFailure(2, {"--licences", "--bogus"});
}

TEST_F(DispatchTest, EveryCommandExplainsItselfWhateverElseIsTyped) {
    for (const CommandLine::Command& command : CommandLine::commands()) {
        std::vector<std::string> words;
        const std::string name{command.name};
        const std::size_t space = name.find(' ');
        words.push_back(name.substr(0, space));
        if (space != std::string::npos)
            words.push_back(name.substr(space + 1));
        words.insert(words.end(), {"--nonsense", "x", "--help"});
        const Ran ran = run(words);
        EXPECT_EQ(ran.status, 0) << name;
        EXPECT_TRUE(ran.out.starts_with("Usage: roamly " + name)) << ran.out;
        EXPECT_EQ(ran.err, "") << name;
    }
}

TEST_F(DispatchTest, UnknownCommandsAndOptionsAreMisuseWithTheNearestName) {
    expectFailure(2, {"frobnicate"});
    expectFailure(2, {"--frobnicate"});
    EXPECT_NE(run({"exprot"}).err.find("Did you mean export?"), std::string::npos);
    EXPECT_NE(run({"export", "p", "--outputt", "x"}).err.find("Did you mean --output?"), std::string::npos);
}

TEST_F(DispatchTest, TheWindowIsAProgramOfItsOwnBesideThisOne) {
    namespace fs = std::filesystem;
    makeProject();
    fs::create_directories(program / "bin");
    fs::create_directories(program / "lib/roamly");
    fs::copy_file(ROAMLY_PROGRAM, program / "bin/roamly");
    program.setProgram(program / "bin/roamly");
    program.setEnvironment("LD_LIBRARY_PATH", ROAMLY_LIBRARIES);
    program.setEnvironment("DISPLAY", ":77");
    expectFailure(1, {"p.roamly"});

    const fs::path window = program / "lib/roamly/roamly-window";
    std::ofstream{window} << "#!/bin/sh\nprintf '%s|' \"$@\"\n";
    fs::permissions(window, fs::perms::owner_all);
    EXPECT_EQ(run({}).out, "|");
    EXPECT_EQ(run({"p.roamly", "trip"}).out, "p.roamly|trip|");
    EXPECT_EQ(run({"--", "-odd.roamly"}).out, "-odd.roamly|");
    EXPECT_EQ(run({"play", "p.roamly", "--window", "--from", "2.5"}).out,
              "--play|--from=2.5|--window|--|p.roamly|");
}

TEST_F(DispatchTest, FilesToOpenTakeNoOptionsAndMustBeThere) {
    makeProject();
    expectFailure(2, {"p.roamly", "--bogus"});
    expectFailure(2, {"p.roamly", "nothing-there"});
    expectFailure(1, {"play", "nothing-there.roamly"});
    expectFailure(2, {"play", "p.roamly", "--from", "-1"});
}

TEST_F(DispatchTest, EveryCommandWithoutArgumentsIsMisuseExceptSettings) {
    for (const CommandLine::Command& command : CommandLine::commands()) {
        const std::string name{command.name};
        if (name == "settings")
            continue;
        const std::size_t space = name.find(' ');
        std::vector<std::string> words{name.substr(0, space)};
        if (space != std::string::npos)
            words.push_back(name.substr(space + 1));
        expectFailure(2, words);
    }
}
