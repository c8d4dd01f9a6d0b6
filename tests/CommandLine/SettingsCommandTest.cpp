// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>

#include <sys/stat.h>

#include <thread>

using nlohmann::json;

namespace {

class SettingsCommandTest : public EndToEndTest {};

} // namespace

TEST_F(SettingsCommandTest, AllSettingsAreOneObjectOfTypedValues) {
    const Ran ran = run({"settings"});
    EXPECT_EQ(ran.status, 0);
    ASSERT_EQ(ran.lines().size(), 1U);
    EXPECT_EQ(ran.json()[0], (json{{"photoDuration", 5.0},
                                   {"kenBurnsEnabled", true},
                                   {"chapterStyle", "card"},
                                   {"captionsEnabled", true},
                                   {"aiCaptionsEnabled", true},
                                   {"exportResolution", "p1080"},
                                   {"exportCodec", "h264"},
                                   {"defaultAIProvider", "apple"},
                                   {"ollamaBaseURL", "http://127.0.0.1:11434"},
                                   {"ollamaModel", "llava"},
                                   {"openRouterModel", "openai/gpt-4o-mini"}}));
}

TEST_F(SettingsCommandTest, OneSettingIsSetReadAndUnset) {
    EXPECT_EQ(run({"settings", "photoDuration", "2.5"}).status, 0);
    EXPECT_EQ(run({"settings", "photoDuration"}).out, "2.5\n");
    EXPECT_EQ(run({"settings", "chapterStyle"}).out, "\"card\"\n");
    EXPECT_EQ(run({"settings", "kenBurnsEnabled"}).out, "true\n");
    EXPECT_EQ(run({"settings", "captionPrompt"}).out, "null\n");
    EXPECT_EQ(done({"settings", "photoDuration"}), 2.5);
    EXPECT_EQ(run({"settings", "photoDuration", "--unset"}).status, 0);
    EXPECT_EQ(run({"settings", "photoDuration"}).out, "5\n");
}

TEST_F(SettingsCommandTest, TheFileHoldsReadableTextUnderTheKeyAndIsPrivate) {
    ASSERT_EQ(run({"settings", "photoDuration", "2.5"}).status, 0);
    ASSERT_EQ(run({"settings", "kenBurnsEnabled", "false"}).status, 0);
    const std::string contents = Foundation::readFile(program.settingsFile());
    EXPECT_NE(contents.find("photoDuration=2.5\n"), std::string::npos) << contents;
    EXPECT_NE(contents.find("kenBurnsEnabled=false\n"), std::string::npos) << contents;
    struct stat status {};
    ASSERT_EQ(::stat(program.settingsFile().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(SettingsCommandTest, UnknownKeysAndValuesAreMisuse) {
    expectFailure(2, {"settings", "colour"});
    expectFailure(2, {"settings", "colour", "red"});
    expectFailure(2, {"settings", "photoDuration", "never"});
    expectFailure(2, {"settings", "photoDuration", "-1"});
    expectFailure(2, {"settings", "photoDuration", "5", "--unset"});
    expectFailure(2, {"settings", "--unset"});
    expectFailure(2, {"settings", "ollamaBaseURL", "not an address"});
    expectFailure(2, {"settings", "captionPrompt", "\xFF"});
    EXPECT_NE(run({"settings", "photoduration"}).err.find("Did you mean photoDuration?"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(program.settingsFile()));
}

TEST_F(SettingsCommandTest, GarbageInTheFileFallsBackToTheDefault) {
    std::filesystem::create_directories(program.settingsFile().parent_path());
    Foundation::writeFileAtomically(program.settingsFile(), "photoDuration=soon\nchapterStyle=overlay\n");
    EXPECT_EQ(run({"settings", "photoDuration"}).out, "5\n");
    EXPECT_EQ(run({"settings", "chapterStyle"}).out, "\"overlay\"\n");
}

TEST_F(SettingsCommandTest, TheUsersSettingsHoldWhereTheProjectSetsNothing) {
    makeProject();
    EXPECT_EQ(run({"inspect", "timeline", "p.roamly"}).json()[0]["items"][0]["photo"]["duration"], 5.0);
    ASSERT_EQ(run({"settings", "photoDuration", "8"}).status, 0);
    ASSERT_EQ(run({"settings", "kenBurnsEnabled", "false"}).status, 0);
    const json photo = run({"inspect", "timeline", "p.roamly"}).json()[0]["items"][0]["photo"];
    EXPECT_EQ(photo["duration"], 8.0);
    EXPECT_FALSE(photo.contains("kenBurns"));
    ASSERT_EQ(run({"set", "p.roamly", "photoDuration", "3"}).status, 0);
    EXPECT_EQ(run({"inspect", "timeline", "p.roamly"}).json()[0]["items"][0]["photo"]["duration"], 3.0);
}

TEST_F(SettingsCommandTest, ManyProcessesAtTheSameTimeLoseNoWrite) {
    const std::vector<std::pair<std::string, std::string>> values{
        {"photoDuration", "7"},         {"kenBurnsEnabled", "false"},
        {"chapterStyle", "overlay"},    {"captionsEnabled", "false"},
        {"aiCaptionsEnabled", "false"}, {"exportResolution", "p2160"},
        {"exportCodec", "hevc"},        {"defaultAIProvider", "ollama"},
        {"ollamaModel", "other"},       {"openRouterModel", "some/model"},
        {"captionPrompt", "dry"},       {"ollamaBaseURL", "http://h:1"}};
    std::vector<std::thread> threads;
    threads.reserve(values.size());
    for (const auto& setting : values) {
        threads.emplace_back([&] {
            EXPECT_EQ(program.run({"settings", setting.first, setting.second}).status, 0);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const json all = run({"settings"}).json()[0];
    for (const auto& [key, value] : values)
        EXPECT_EQ(all[key].is_string() ? all[key].get<std::string>() : all[key].dump(), value) << key;
}

TEST_F(SettingsCommandTest, ChoosingTheCloudForAllProjectsSaysWhatHappensToPhotos) {
    EXPECT_NE(run({"settings", "defaultAIProvider", "openRouter"})
                  .err.find("OpenRouter sends each photo to the cloud."),
              std::string::npos);
    EXPECT_EQ(run({"settings", "defaultAIProvider", "ollama"}).err, "Saved.\n");
}
