// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/CacheTrimming.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using PhotoSources::CacheTrimming::removeFile;
using PhotoSources::CacheTrimming::trim;

class CacheTrimmingTest : public testing::Test {
protected:
    /// The higher the age, the longer ago it was modified.
    void write(const std::string& name, std::uintmax_t bytes, int age) const {
        std::ofstream{m_folder / name};
        fs::resize_file(m_folder / name, bytes);
        fs::last_write_time(m_folder / name, fs::file_time_type::clock::now() - std::chrono::hours{age});
    }
    std::set<std::string> names() const {
        std::set<std::string> result;
        for (const fs::directory_entry& entry : fs::directory_iterator{m_folder.path()})
            result.insert(entry.path().filename());
        return result;
    }

    TemporaryFolder m_folder;
};

using Names = std::set<std::string>;

TEST_F(CacheTrimmingTest, TheLongestUnmodifiedGoFirstAndNoMoreThanNeeded) {
    write("new", 40, 1);
    write("oldest", 40, 4);
    write("older", 40, 3);
    write("old", 40, 2);
    trim(m_folder.path(), 80, removeFile);
    EXPECT_EQ(names(), (Names{"new", "old"}));
}

TEST_F(CacheTrimmingTest, NothingGoesAtTheBoundItself) {
    write("a", 40, 1);
    write("b", 40, 2);
    trim(m_folder.path(), 80, removeFile);
    EXPECT_EQ(names(), (Names{"a", "b"}));
}

TEST_F(CacheTrimmingTest, AFileThatCannotBeRemovedKeepsCounting) {
    write("held", 40, 4);
    write("older", 40, 3);
    write("old", 40, 2);
    write("new", 40, 1);
    std::vector<std::string> tried;
    trim(m_folder.path(), 80, [&](const fs::path& file) {
        tried.push_back(file.filename());
        return file.filename() != "held" && removeFile(file);
    });
    EXPECT_EQ(names(), (Names{"held", "new"}));
    EXPECT_EQ(tried, (std::vector<std::string>{"held", "older", "old"}));
}

TEST_F(CacheTrimmingTest, FoldersInItNeitherCountNorGo) {
    fs::create_directory(m_folder / "folder");
    std::ofstream{m_folder / "folder/inside"};
    fs::resize_file(m_folder / "folder/inside", 1000);
    write("file", 40, 1);
    trim(m_folder.path(), 80, removeFile);
    EXPECT_EQ(names(), (Names{"file", "folder"}));
    trim(m_folder.path(), 0, removeFile);
    EXPECT_EQ(names(), (Names{"folder"}));
}

TEST_F(CacheTrimmingTest, AFolderThatIsNotThereStaysAway) {
    trim(m_folder / "none", 0, removeFile);
    EXPECT_EQ(names(), Names{});
}

} // namespace
