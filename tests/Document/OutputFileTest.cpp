// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Bookmark.h>
#include <Roamly/Document/OutputFile.h>
#include <Roamly/Document/Refusal.h>
#include <Support/TemporaryFolder.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace {

using Document::Refusal;
namespace OutputFile = Document::OutputFile;

class OutputFileTest : public testing::Test {
protected:
    std::filesystem::path write(const char* name) {
        const std::filesystem::path file = folder / name;
        Foundation::writeFileAtomically(file, name);
        return file;
    }

    TemporaryFolder folder;
};

/// How a check refuses, or nothing.
std::optional<Refusal> refusal(const std::function<void()>& check) {
    try {
        check();
        return std::nullopt;
    } catch (const Refusal& refused) {
        return refused;
    }
}

void expectRefusal(Refusal::Kind kind, const std::string& ending, const std::function<void()>& check) {
    const auto refused = refusal(check);
    ASSERT_TRUE(refused) << ending;
    EXPECT_EQ(refused->kind(), kind);
    EXPECT_TRUE(std::string{refused->what()}.ends_with(ending)) << refused->what();
}

} // namespace

TEST_F(OutputFileTest, ANewFileAndOneThatExistsMayBeWritten) {
    EXPECT_NO_THROW(OutputFile::checkIsWritable(folder / "new.mov"));
    EXPECT_NO_THROW(OutputFile::checkIsWritable(write("old.mov")));
    EXPECT_FALSE(std::filesystem::exists(folder / "new.mov")) << "looking makes nothing";
}

TEST_F(OutputFileTest, WhatIsNoFileIsRefusedWithTheReason) {
    std::filesystem::create_directory(folder / "trip");
    expectRefusal(Refusal::Kind::noFileName, "is no name for a file.",
                  [&] { OutputFile::checkIsWritable(folder / ""); });
    expectRefusal(Refusal::Kind::outputNotWritable, "nowhere”.",
                  [&] { OutputFile::checkIsWritable(folder / "nowhere/m.mov"); });
    expectRefusal(Refusal::Kind::outputNotWritable, "trip” is a folder.",
                  [&] { OutputFile::checkIsWritable(folder / "trip"); });
    expectRefusal(Refusal::Kind::outputNotWritable, "“/dev/null” is not a regular file.",
                  [] { OutputFile::checkIsWritable("/dev/null"); });
    std::filesystem::create_symlink("nowhere/m.mov", folder / "link.mov");
    expectRefusal(Refusal::Kind::outputNotWritable, "link.mov” leads nothing can be written.",
                  [&] { OutputFile::checkIsWritable(folder / "link.mov"); });
}

TEST_F(OutputFileTest, WhatTheWorkIsMadeFromIsNeverReplaced) {
    const auto projectFile = write("p.roamly");
    const auto photo = write("1.jpg");
    const auto music = write("fado.mp3");
    ProjectModel::Project project = ProjectModel::Project::empty();
    ProjectModel::PhotoItem item = TestPhotos::item(1, photo);
    item.source = ProjectModel::FilePhotoRef{*Foundation::makeBookmark(photo), "1.jpg"};
    project.mergeImportedPhotos({item}, {});
    project.userSetMusic(ProjectModel::MusicSelection{*Foundation::makeBookmark(music), "fado.mp3"});

    const auto check = [&](const std::filesystem::path& file) {
        return [&, file] { OutputFile::checkIsNoInput(file, projectFile, project); };
    };
    expectRefusal(Refusal::Kind::outputIsInput, "is the project itself; choose another name.",
                  check(folder / "." / "p.roamly"));
    expectRefusal(Refusal::Kind::outputIsInput, "is one of the project’s photos; choose another name.",
                  check(photo));
    expectRefusal(Refusal::Kind::outputIsInput, "is the project’s music; choose another name.", check(music));
    std::filesystem::create_hard_link(photo, folder / "again.mov");
    expectRefusal(Refusal::Kind::outputIsInput, "is one of the project’s photos; choose another name.",
                  check(folder / "again.mov"));
    EXPECT_FALSE(refusal(check(write("other.mov"))));
    EXPECT_FALSE(refusal(check(folder / "new.mov")));
}

TEST_F(OutputFileTest, TheMovieIsNotTheProjectEvenBeforeThereIsEither) {
    expectRefusal(Refusal::Kind::movieIsProject, "can’t be the same file.",
                  [] { OutputFile::checkIsNotTheProject("./trip/../m", "m"); });
    EXPECT_NO_THROW(OutputFile::checkIsNotTheProject("m.mov", "m.roamly"));
}

TEST(RefusalTest, OnlyARequestThatMakesNoSenseIsMisuse) {
    EXPECT_TRUE(isMisuse(Refusal::Kind::noFileName));
    EXPECT_TRUE(isMisuse(Refusal::Kind::movieIsProject));
    for (const auto kind :
         {Refusal::Kind::outputNotWritable, Refusal::Kind::outputIsInput, Refusal::Kind::noMusic,
          Refusal::Kind::musicNotPlayable, Refusal::Kind::aiCaptionsOff})
        EXPECT_FALSE(isMisuse(kind));
}
