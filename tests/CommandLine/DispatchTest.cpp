#include "EndToEndTest.h"

#include <Roamly/CommandLine/Commands.h>

#include <filesystem>
#include <fstream>

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

TEST_F(DispatchTest, TheVersionTakesNoOtherOption) {
    expectFailure(2, {"--version", "--bogus"});
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
