// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SoundFile.h"

#include <Export/ExportError.h>
#include <Export/MusicFile.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>

namespace Export {
namespace {

using Kind = ExportError::Kind;

void writeText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file) << text;
}

std::optional<ExportError> problemOf(const std::filesystem::path& file, const std::stop_token& stop = {}) {
    try {
        checkMusic(file, stop);
    } catch (const ExportError& error) {
        return error;
    }
    return std::nullopt;
}

TEST(MusicFileTest, TakesMusicOfTheUsualKinds) {
    const TemporaryFolder folder;
    writeSound(folder / "a.wav", {.length = 4410});
    writeSound(folder / "a.flac", {.container = "flac", .codec = "flac", .length = 4410, .hasCover = true});
    writeSound(folder / "a.m4a", {.container = "ipod", .codec = "aac", .length = 44100});
    for (const char* name : {"a.wav", "a.flac", "a.m4a"})
        EXPECT_FALSE(problemOf(folder / name)) << name;
}

TEST(MusicFileTest, NamesTheFileAndWhyItIsNoMusic) {
    const TemporaryFolder folder;
    writeText(folder / "text.mp3", "this is no music");
    writeText(folder / "nothing.mp3", "");
    writeSound(folder / "empty.wav", {.length = 0});
    std::filesystem::create_directory(folder / "folder.mp3");
    for (const std::string name : {"text.mp3", "nothing.mp3", "empty.wav", "folder.mp3", "missing.mp3"}) {
        const auto problem = problemOf(folder / name);
        ASSERT_TRUE(problem) << name;
        EXPECT_EQ(problem->kind(), Kind::appendFailed);
        EXPECT_THAT(problem->what(), testing::HasSubstr(name + ": "));
    }
}

TEST(MusicFileTest, AnInterruptionIsNoFaultOfTheFile) {
    const TemporaryFolder folder;
    writeSound(folder / "a.wav", {.length = 4410});
    std::stop_source stop;
    stop.request_stop();
    for (const char* name : {"a.wav", "missing.mp3"}) {
        const auto problem = problemOf(folder / name, stop.get_token());
        ASSERT_TRUE(problem) << name;
        EXPECT_EQ(problem->kind(), Kind::cancelled);
    }
}

} // namespace
} // namespace Export
