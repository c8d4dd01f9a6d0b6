// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/Platform/SettingsStore.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

using Document::AppSettings;
using Document::findUserSetting;
using Platform::SettingsStore;

namespace {

class SettingsStoreTest : public testing::Test {
protected:
    bool set(std::string_view name, std::string_view text) {
        return m_store.set(*findUserSetting(name), text);
    }
    void unset(std::string_view name) { m_store.unset(*findUserSetting(name)); }
    void writeFile(std::string_view contents) {
        std::filesystem::create_directories(m_store.path().parent_path());
        Foundation::writeFileAtomically(m_store.path(), contents);
    }
    std::string file() { return Foundation::readFile(m_store.path()); }

    TemporaryFolder m_folder;
    SettingsStore m_store{m_folder / "app.roamly.Roamly/settings.ini"};
};

} // namespace

TEST_F(SettingsStoreTest, FirstLaunchEverySettingReadsItsDefault) {
    const AppSettings settings = m_store.load();
    EXPECT_EQ(settings.photoDuration, 5.0);
    EXPECT_TRUE(settings.kenBurnsEnabled);
    EXPECT_EQ(settings.chapterStyle, ProjectModel::ChapterStyle::card);
    EXPECT_TRUE(settings.captionsEnabled);
    EXPECT_TRUE(settings.aiCaptionsEnabled);
    EXPECT_EQ(settings.exportResolution, Export::ExportResolution::p1080);
    EXPECT_EQ(settings.exportCodec, Export::ExportCodec::h264);
    EXPECT_EQ(settings.defaultAIProvider, ProjectModel::AIProvider::apple);
    EXPECT_EQ(settings.ollamaBaseURL, "http://127.0.0.1:11434");
    EXPECT_EQ(settings.ollamaModel, "llava");
    EXPECT_EQ(settings.openRouterModel, "openai/gpt-4o-mini");
    EXPECT_EQ(settings.captionPrompt, std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(m_store.path())) << "reading writes nothing";
}

TEST_F(SettingsStoreTest, EverySettingIsStoredUnderItsKeyAndReadBack) {
    const std::vector<std::pair<std::string, std::string>> values{
        {"photoDuration", "7.25"},
        {"kenBurnsEnabled", "false"},
        {"chapterStyle", "overlay"},
        {"captionsEnabled", "false"},
        {"aiCaptionsEnabled", "false"},
        {"exportResolution", "p2160"},
        {"exportCodec", "hevc"},
        {"defaultAIProvider", "ollama"},
        {"ollamaBaseURL", "https://u:p@host.example:8080/base"},
        {"ollamaModel", "llama3.2-vision"},
        {"openRouterModel", "google/gemini-flash-1.5"},
        {"geocoderURL", "http://geocoder.example/nominatim"},
        {"captionPrompt", "Witty, \"dry\"; like postcards = fun \\ 日本 \n second line"}};
    ASSERT_EQ(values.size(), Document::settingsTable().size());
    for (const auto& [name, text] : values)
        EXPECT_TRUE(set(name, text)) << name;
    const AppSettings settings = m_store.load();
    for (const auto& [name, text] : values)
        EXPECT_EQ(findUserSetting(name)->user.text(settings), text) << name;
    EXPECT_NE(file().find("photoDuration=7.25\n"), std::string::npos) << file();
    EXPECT_NE(file().find("kenBurnsEnabled=false\n"), std::string::npos) << file();
}

TEST_F(SettingsStoreTest, UnsetBringsTheDefaultBack) {
    set("photoDuration", "7.25");
    set("ollamaModel", "other");
    unset("photoDuration");
    EXPECT_EQ(m_store.load().photoDuration, 5.0);
    EXPECT_EQ(m_store.load().ollamaModel, "other");
    EXPECT_EQ(file().find("photoDuration"), std::string::npos);
}

TEST_F(SettingsStoreTest, UnsetWithoutAFileMakesNone) {
    unset("photoDuration");
    EXPECT_FALSE(std::filesystem::exists(m_store.path()));
}

TEST_F(SettingsStoreTest, ValuesThatAreNoneForTheirKeyAreRefused) {
    const std::vector<std::pair<std::string, std::string>> wrong{
        {"photoDuration", "0"},       {"photoDuration", "-3"},     {"photoDuration", "nan"},
        {"photoDuration", "inf"},     {"photoDuration", "1e999"},  {"photoDuration", "5s"},
        {"photoDuration", " 5"},      {"photoDuration", "5,5"},    {"photoDuration", ""},
        {"kenBurnsEnabled", "yes"},   {"kenBurnsEnabled", "TRUE"}, {"captionsEnabled", "1"},
        {"chapterStyle", "Card"},     {"exportResolution", "4K"},  {"exportCodec", "av1"},
        {"defaultAIProvider", "gpt"}, {"geocoderURL", "host"},     {"ollamaModel", "\xFF"},
        {"ollamaBaseURL", "host"},    {"ollamaBaseURL", ""},       {"ollamaBaseURL", "ftp://host"},
        {"ollamaBaseURL", "http://"}, {"captionPrompt", "\xFF"}};
    for (const auto& [name, text] : wrong)
        EXPECT_FALSE(set(name, text)) << name << "=" << text;
    EXPECT_FALSE(std::filesystem::exists(m_store.path()));
}

TEST_F(SettingsStoreTest, GarbageTypedIntoTheFileFallsBackToTheDefaults) {
    writeFile("photoDuration=soon\nkenBurnsEnabled=maybe\nchapterStyle=banner\nexportResolution=8k\n"
              "exportCodec=\ndefaultAIProvider=robot\nollamaBaseURL=nonsense\n"
              "[Group]\ncaptionsEnabled=false\n");
    EXPECT_EQ(m_store.load(), AppSettings{});
}

TEST_F(SettingsStoreTest, AnEmptyModelNameIsAValueAndNotTheDefault) {
    writeFile("ollamaModel=\nopenRouterModel=\n");
    EXPECT_EQ(m_store.load().ollamaModel, "");
    EXPECT_EQ(m_store.load().openRouterModel, "");
}

TEST_F(SettingsStoreTest, BytesThatAreNoSettingsFileGiveTheDefaults) {
    writeFile(std::string{"\0\xFF\xFE[[[=\n\n%zz\\x", 15});
    EXPECT_EQ(m_store.load(), AppSettings{});
}

TEST_F(SettingsStoreTest, ATextWithCommasTypedWithoutQuotesIsReadAsOneText) {
    writeFile("captionPrompt=Short, and poetic\nphotoDuration=3\n");
    EXPECT_EQ(m_store.load().captionPrompt, "Short, and poetic");
    EXPECT_EQ(m_store.load().photoDuration, 3.0);
}

TEST_F(SettingsStoreTest, UnknownKeysInTheFileSurviveAWrite) {
    writeFile("fromTheFuture=kept\n");
    set("photoDuration", "3");
    EXPECT_NE(file().find("fromTheFuture=kept"), std::string::npos);
}

TEST_F(SettingsStoreTest, TheFileAndItsFolderAreTheOwnersAlone) {
    set("ollamaModel", "x");
    struct stat status {};
    ASSERT_EQ(::stat(m_store.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    ASSERT_EQ(::stat(m_store.path().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(SettingsStoreTest, AFileThatOthersCouldReadIsClosedToThemWhenWritten) {
    writeFile("ollamaModel=y\n");
    std::filesystem::permissions(m_store.path(), std::filesystem::perms{0644});
    set("ollamaModel", "x");
    struct stat status {};
    ASSERT_EQ(::stat(m_store.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_EQ(m_store.load().ollamaModel, "x");
}

TEST_F(SettingsStoreTest, AFolderThatCannotBeMadeIsToldInOneSentence) {
    Foundation::writeFileAtomically(m_folder / "file", "");
    SettingsStore store{m_folder / "file/app.roamly.Roamly/settings.ini"};
    try {
        store.set(*findUserSetting("ollamaModel"), "x");
        FAIL() << "nothing was thrown";
    } catch (const Platform::SettingsStoreError& error) {
        EXPECT_NE(std::string{error.what()}.find("settings.ini"), std::string::npos);
    }
}

TEST_F(SettingsStoreTest, ProcessesWritingAtTheSameTimeLoseNoWrite) {
    // Each process writes its own key again and again; all last values must be there at the end.
    const std::vector<std::string> names{"photoDuration", "ollamaModel", "openRouterModel", "captionPrompt",
                                         "ollamaBaseURL"};
    constexpr int writes = 8;
    const auto value = [](const std::string& name, int round) {
        const std::string number = std::to_string(round + 1);
        return name == "photoDuration"   ? number
               : name == "ollamaBaseURL" ? "http://host:" + number
                                         : "v" + number;
    };
    std::vector<pid_t> children;
    for (const std::string& name : names) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            bool isStored = true;
            try {
                for (int round = 0; round < writes; ++round) {
                    SettingsStore store{m_store.path()};
                    isStored = store.set(*findUserSetting(name), value(name, round)) && isStored;
                }
            } catch (...) {
                isStored = false;
            }
            ::_exit(isStored ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const AppSettings settings = m_store.load();
    for (const std::string& name : names)
        EXPECT_EQ(findUserSetting(name)->user.text(settings), value(name, writes - 1)) << name;
}

TEST(SettingsStorePathTest, LiesInTheApplicationsFolderOfTheUsersConfiguration) {
    ::setenv("XDG_CONFIG_HOME", "/some/where", 1);
    EXPECT_EQ(SettingsStore::defaultPath(), "/some/where/app.roamly.Roamly/settings.ini");
    ::unsetenv("XDG_CONFIG_HOME");
    ::setenv("HOME", "/home/somebody", 1);
    EXPECT_EQ(SettingsStore::defaultPath(), "/home/somebody/.config/app.roamly.Roamly/settings.ini");
}
