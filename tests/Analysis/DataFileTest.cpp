// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/DataFile.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace Analysis {
namespace {

TEST(DataFileTest, FindsTheGazetteerOfTheBuildTree) {
    EXPECT_TRUE(std::filesystem::equivalent(dataFile("gazetteer.bin"), ROAMLY_GAZETTEER));
}

TEST(DataFileTest, LooksIntoTheSystemsDataFolders) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "share/roamly");
    std::ofstream(folder / "share/roamly/weights.onnx") << "x";
    const std::string path = "/nowhere:" + (folder / "share").string();
    ::setenv("XDG_DATA_DIRS", path.c_str(), 1);
    EXPECT_EQ(dataFile("weights.onnx"), folder / "share/roamly/weights.onnx");
    ::unsetenv("XDG_DATA_DIRS");
}

TEST(DataFileTest, NamesWhereAMissingFileShouldBe) {
    EXPECT_TRUE(dataFile("no-such-file").string().ends_with("/share/roamly/no-such-file"));
}

} // namespace
} // namespace Analysis
