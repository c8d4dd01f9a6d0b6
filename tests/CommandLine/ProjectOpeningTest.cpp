// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "EndToEndTest.h"

#include <Foundation/AtomicFile.h>
#include <Support/TestPhotos.h>

#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// Commands that work for long before they save.
class ProjectOpeningTest : public EndToEndTest {
protected:
    ProjectOpeningTest() {
        makeProject();
        TestPhotos::write(program / "more/4.jpg", {.date = "2024:05:04 10:00:00"});
        fs::create_directory(program / "closed");
        fs::copy_file(program / "p.roamly", program / "closed/p.roamly");
        fs::permissions(program / "closed", fs::perms{0555});
    }
    ~ProjectOpeningTest() override { fs::permissions(program / "closed", fs::perms{0755}); }

    /// The whole of standard error of a run that did nothing else, not even begin.
    std::string refusal(std::vector<std::string> words) {
        words.emplace_back("--json");
        const Ran ran = run(words);
        EXPECT_EQ(ran.status, 1) << words[0];
        EXPECT_EQ(ran.out, "") << words[0] << " began its work";
        return ran.err;
    }
};

} // namespace

TEST_F(ProjectOpeningTest, NothingLongIsBegunForAProjectInAFolderThatMayNotBeWritten) {
    const std::string before = text("closed/p.roamly");
    const std::string sentence = "roamly: The project “closed/p.roamly” can’t be saved: permission denied.\n";
    EXPECT_EQ(refusal({"analyze", "closed/p.roamly"}), sentence);
    EXPECT_EQ(refusal({"import", "closed/p.roamly", "more"}), sentence);
    EXPECT_EQ(refusal({"make", "more", "-o", "m.mov", "--project", "closed/p.roamly"}),
              "roamly: The folder “closed” can’t be written to.\n");
    ASSERT_EQ(run({"settings", "aiCaptionsEnabled", "true"}).status, 0);
    EXPECT_EQ(refusal({"caption", "closed/p.roamly", "--provider", "ollama"}), sentence);
    EXPECT_EQ(text("closed/p.roamly"), before);
}

TEST_F(ProjectOpeningTest, NothingLongIsBegunForAWriteProtectedProject) {
    fs::permissions(program / "p.roamly", fs::perms{0444});
    const std::string before = text("p.roamly");
    const std::string sentence = "roamly: The project “p.roamly” can’t be saved: permission denied.\n";
    EXPECT_EQ(refusal({"analyze", "p.roamly"}), sentence);
    EXPECT_EQ(refusal({"import", "p.roamly", "more"}), sentence);
    EXPECT_EQ(refusal({"make", "more", "-o", "m.mov", "--project", "p.roamly"}),
              "roamly: “p.roamly” is write-protected.\n");
    EXPECT_EQ(text("p.roamly"), before);
}

TEST_F(ProjectOpeningTest, QuickCommandsSayTheSame) {
    EXPECT_EQ(refusal({"deselect", "closed/p.roamly", photoID(0)}),
              "roamly: The project “closed/p.roamly” can’t be saved: permission denied.\n");
}

TEST_F(ProjectOpeningTest, AProjectThatMayNotBeWrittenCanStillBeExportedAndInspected) {
    ASSERT_EQ(run({"settings", "photoDuration", "0.2"}).status, 0);
    EXPECT_EQ(run({"export", "closed/p.roamly", "-o", "m.mov"}).status, 0);
    EXPECT_EQ(run({"inspect", "timeline", "closed/p.roamly"}).status, 0);
}

TEST_F(ProjectOpeningTest, NoMovieIsBegunWhereItCouldNotBeWritten) {
    fs::permissions(program / "closed", fs::perms{0755});
    Foundation::writeFileAtomically(program / "closed/old.mov", "older movie");
    Foundation::writeFileAtomically(program / "kept.mov", "older movie");
    fs::permissions(program / "kept.mov", fs::perms{0444});
    fs::create_symlink("closed/old.mov", program / "link.mov");
    fs::permissions(program / "closed", fs::perms{0555});
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"export", "p.roamly", "-o"}, {"make", "more", "-o"}}) {
        const auto refusalOf = [&](const std::string& output) {
            std::vector<std::string> call = words;
            call.push_back(output);
            return refusal(call);
        };
        EXPECT_EQ(refusalOf("closed/m.mov"), "roamly: The folder “closed” can’t be written to.\n");
        EXPECT_EQ(refusalOf("closed/old.mov"), "roamly: The folder “closed” can’t be written to.\n");
        EXPECT_EQ(refusalOf("kept.mov"), "roamly: “kept.mov” is write-protected.\n");
        EXPECT_EQ(refusalOf("link.mov"), "roamly: Where the link “link.mov” leads nothing can be written.\n");
    }
    EXPECT_EQ(text("closed/old.mov"), "older movie");
    EXPECT_EQ(text("kept.mov"), "older movie");
}

TEST_F(ProjectOpeningTest, MakeRefusesToReplaceAPhotoBeforeItAnalyses) {
    fs::create_hard_link(program / "more/4.jpg", program / "photo.mov");
    const Ran ran = run({"make", "more", "-o", "photo.mov", "--json"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.err.find("is one of the project’s photos"), std::string::npos) << ran.err;
    EXPECT_EQ(ran.out.find("\"stage\""), std::string::npos) << ran.out;
}
