// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/Platform/FileUri.h>
#include <Roamly/Platform/RecentFiles.h>
#include <Support/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using Platform::RecentFiles;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const char* const listOfOthers = R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0" xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info">
  <bookmark href="file:///home/me/letter.odt" added="2024-01-02T03:04:05Z" modified="2024-01-02T03:04:05Z"
            visited="2024-01-02T03:04:05Z">
    <title>A letter</title>
    <info><metadata owner="http://freedesktop.org">
      <mime:mime-type type="application/vnd.oasis.opendocument.text"/>
      <bookmark:applications>
        <bookmark:application name="Writer" exec="&apos;writer %u&apos;" modified="2024-01-02T03:04:05Z" count="3"/>
      </bookmark:applications>
    </metadata></info>
  </bookmark>
</xbel>)";

class RecentFilesTest : public testing::Test {
protected:
    fs::path project(const std::string& name) const {
        std::ofstream{m_folder / name} << "{}";
        return m_folder / name;
    }
    std::string desktopList() const { return Foundation::readFile(m_folder / "data/recently-used.xbel"); }
    void writeDesktopList(const std::string& text) const {
        fs::create_directories(m_folder / "data");
        std::ofstream{m_folder / "data/recently-used.xbel"} << text;
    }

    TemporaryFolder m_folder;
    RecentFiles m_recent{{m_folder / "state/recent-projects", m_folder / "data/recently-used.xbel"}};
};

TEST_F(RecentFilesTest, AtFirstThereAreNone) {
    EXPECT_THAT(m_recent.list(), IsEmpty());
}

TEST_F(RecentFilesTest, TheLastOpenedComesFirstAndEachOnce) {
    const fs::path a = project("a.roamly");
    const fs::path b = project("b\nwith a break.roamly");
    m_recent.add(a);
    m_recent.add(b);
    EXPECT_THAT(m_recent.list(), ElementsAre(b, a));
    m_recent.add(m_folder / "./a.roamly");
    EXPECT_THAT(m_recent.list(), ElementsAre(a, b));
}

TEST_F(RecentFilesTest, MissingFilesAreNotShownUntilTheyAreBack) {
    const fs::path a = project("a.roamly");
    m_recent.add(a);
    m_recent.add(project("b.roamly"));
    fs::remove(a);
    EXPECT_THAT(m_recent.list(), ElementsAre(m_folder / "b.roamly"));
    m_recent.add(project("c.roamly"));
    project("a.roamly");
    EXPECT_THAT(m_recent.list(), SizeIs(3));
}

TEST_F(RecentFilesTest, OnlyTheLastFewAreKept) {
    for (int i = 0; i < 15; ++i)
        m_recent.add(project(std::to_string(i) + ".roamly"));
    EXPECT_THAT(m_recent.list(), SizeIs(RecentFiles::mostFiles));
    EXPECT_EQ(m_recent.list().front(), m_folder / "14.roamly");
}

TEST_F(RecentFilesTest, TheDesktopLearnsOfThem) {
    const fs::path file = project("My Trip & more.roamly");
    m_recent.add(file);
    m_recent.add(file);
    const std::string list = desktopList();
    EXPECT_THAT(list, HasSubstr("My%20Trip%20&amp;%20more.roamly"));
    EXPECT_THAT(list, HasSubstr("application/vnd.roamly.project+json"));
    EXPECT_THAT(list, HasSubstr("name=\"Roamly\""));
    EXPECT_THAT(list, HasSubstr("count=\"2\""));
    EXPECT_EQ(fs::status(m_folder / "data/recently-used.xbel").permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(RecentFilesTest, EntriesOfOthersStay) {
    writeDesktopList(listOfOthers);
    m_recent.add(project("a.roamly"));
    for (const char* kept : {"file:///home/me/letter.odt", "A letter", "name=\"Writer\"", "count=\"3\"",
                             "application/vnd.oasis.opendocument.text", "2024-01-02T03:04:05"})
        EXPECT_THAT(desktopList(), HasSubstr(kept));
    EXPECT_THAT(desktopList(), HasSubstr("a.roamly"));
}

TEST_F(RecentFilesTest, AListThatCannotBeReadIsLeftAsItIs) {
    writeDesktopList("<xbel><bookmark");
    m_recent.add(project("a.roamly"));
    EXPECT_EQ(desktopList(), "<xbel><bookmark");
    EXPECT_THAT(m_recent.list(), SizeIs(1));
}

TEST_F(RecentFilesTest, ClearingTakesTheOwnEntriesFromBothLists) {
    writeDesktopList(listOfOthers);
    m_recent.add(project("a.roamly"));
    m_recent.clear();
    EXPECT_THAT(m_recent.list(), IsEmpty());
    EXPECT_THAT(desktopList(), Not(HasSubstr("a.roamly")));
    EXPECT_THAT(desktopList(), HasSubstr("letter.odt"));
}

TEST_F(RecentFilesTest, FoldersThatTakeNoFilesAreNoFailure) {
    std::ofstream{m_folder / "file"} << "in the way";
    RecentFiles recent{{m_folder / "file/recent", m_folder / "file/recently-used.xbel"}};
    recent.add(project("a.roamly"));
    EXPECT_THAT(recent.list(), IsEmpty());
}

} // namespace
