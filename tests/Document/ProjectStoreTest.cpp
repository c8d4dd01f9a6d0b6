// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <ProjectModel/ProjectFile.h>
#include <Roamly/Document/ProjectStore.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <vector>

using Document::ProjectStoreError;
using ProjectModel::Project;
namespace ProjectStore = Document::ProjectStore;

namespace {

std::string sentence(const std::function<void()>& action) {
    try {
        action();
    } catch (const ProjectStoreError& error) {
        return error.what();
    }
    return {};
}

std::size_t entries(const std::filesystem::path& folder) {
    const std::filesystem::directory_iterator begin{folder};
    return static_cast<std::size_t>(std::distance(begin, std::filesystem::directory_iterator{}));
}

} // namespace

TEST(ProjectStoreTest, WhatIsSavedIsLoaded) {
    const TemporaryFolder folder;
    Project project;
    project.photos.push_back(TestPhotos::item(1));
    ProjectStore::save(folder / "a.roamly", project);
    const Document::LoadedProject loaded = ProjectStore::load(folder / "a.roamly");
    EXPECT_EQ(loaded.project, project);
    EXPECT_FALSE(loaded.hasNewIdentifiers);
}

TEST(ProjectStoreTest, CreateWritesTheWholeDocumentWithOrdinaryPermissions) {
    const TemporaryFolder folder;
    ProjectStore::create(folder / "a.roamly", Project::empty());
    EXPECT_EQ(Foundation::readFile(folder / "a.roamly"), ProjectModel::encoded(Project::empty()));
    EXPECT_EQ(entries(folder.path()), 1U);
    const mode_t mask = ::umask(0);
    ::umask(mask);
    struct stat status {};
    ASSERT_EQ(::stat((folder / "a.roamly").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0666 & ~mask);
}

TEST(ProjectStoreTest, CreateLeavesAnExistingFileUntouched) {
    const TemporaryFolder folder;
    Foundation::writeFileAtomically(folder / "a.roamly", "anything");
    EXPECT_NE(sentence([&] { ProjectStore::create(folder / "a.roamly", Project::empty()); }).find("a.roamly"),
              std::string::npos);
    EXPECT_EQ(Foundation::readFile(folder / "a.roamly"), "anything");
    EXPECT_EQ(entries(folder.path()), 1U);
}

TEST(ProjectStoreTest, CreateDoesNotFollowALinkThatLeadsNowhere) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("elsewhere", folder / "a.roamly");
    EXPECT_FALSE(sentence([&] { ProjectStore::create(folder / "a.roamly", Project::empty()); }).empty());
    EXPECT_FALSE(std::filesystem::exists(folder / "elsewhere"));
}

TEST(ProjectStoreTest, OfManyProcessesCreatingOneFileExactlyOneSucceeds) {
    const TemporaryFolder folder;
    constexpr int processes = 12;
    std::vector<pid_t> children;
    for (int number = 0; number < processes; ++number) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const bool isRefused =
                !sentence([&] { ProjectStore::create(folder / "a.roamly", Project::empty()); }).empty();
            ::_exit(isRefused ? 1 : 0);
        }
        children.push_back(child);
    }
    int succeeded = 0;
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        succeeded += status == 0 ? 1 : 0;
    }
    EXPECT_EQ(succeeded, 1);
    EXPECT_EQ(ProjectStore::load(folder / "a.roamly").project, Project::empty());
    EXPECT_EQ(entries(folder.path()), 1U);
}

TEST(ProjectStoreTest, FailuresAreOneSentenceThatNamesTheFile) {
    const TemporaryFolder folder;
    Foundation::writeFileAtomically(folder / "empty.roamly", "");
    Foundation::writeFileAtomically(folder / "broken.roamly", "{\"photos\":");
    Foundation::writeFileAtomically(folder / "newer.roamly", "{\"schemaVersion\":3}");
    std::filesystem::create_directory(folder / "folder.roamly");
    for (const std::string name :
         {"missing.roamly", "empty.roamly", "broken.roamly", "newer.roamly", "folder.roamly"}) {
        const std::string text = sentence([&] { static_cast<void>(ProjectStore::load(folder / name)); });
        EXPECT_NE(text.find(name), std::string::npos) << text;
        EXPECT_TRUE(text.ends_with(".")) << text;
        EXPECT_EQ(text.find('\n'), std::string::npos) << text;
    }
}

TEST(ProjectStoreTest, SavingIntoAFolderThatIsNotThereFailsAndNamesTheFile) {
    const TemporaryFolder folder;
    const std::string text = sentence([&] { ProjectStore::save(folder / "no/a.roamly", Project::empty()); });
    EXPECT_NE(text.find("no/a.roamly"), std::string::npos) << text;
}

TEST(ProjectStoreTest, AProjectThatCannotBeEncodedLeavesTheOldFile) {
    const TemporaryFolder folder;
    ProjectStore::save(folder / "a.roamly", Project::empty());
    Project project;
    project.photos.push_back(TestPhotos::item(1));
    project.photos[0].caption = "\xFF";
    EXPECT_FALSE(sentence([&] { ProjectStore::save(folder / "a.roamly", project); }).empty());
    EXPECT_EQ(ProjectStore::load(folder / "a.roamly").project, Project::empty());
}

TEST(ProjectStoreTest, SourcesOfAnOlderFileGetNewIdentifiersAndThatIsTold) {
    const TemporaryFolder folder;
    Foundation::writeFileAtomically(
        folder / "old.roamly",
        R"({"sources":[{"folder":{"bookmark":"","displayPath":"/x"}}],"photos":[],"settings":{},)"
        R"("usesManualOrder":false})");
    const Document::LoadedProject loaded = ProjectStore::load(folder / "old.roamly");
    EXPECT_TRUE(loaded.hasNewIdentifiers);
    EXPECT_EQ(loaded.project.sources.size(), 1U);
}
