// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProjectVariations.h"

#include <Roamly/Document/ProjectDocument.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <stdexcept>

using Document::EditName;
using Document::ProjectDifference;
using Document::ProjectDocument;
using Document::Testing::ProjectVariations;
using ProjectModel::FilePhotoRef;
using ProjectModel::PhotoRef;
using ProjectModel::PhotoRefresh;
using ProjectModel::Project;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

Project projectOf(int count) {
    Project project;
    for (int number = 1; number <= count; ++number)
        project.photos.push_back(item(number));
    return project;
}

void caption(ProjectDocument& document, const std::string& text, int number = 1) {
    document.edit({"Edit Caption", "caption " + std::to_string(number)},
                  [&](Project& project) { project.userSetCaption(text, uuid(number)); });
}

void remove(ProjectDocument& document, int number) {
    document.edit("Remove", [&](Project& project) { project.removePhotos({uuid(number)}); });
}

const PhotoRef renewed = FilePhotoRef{{9, 9, 9}, "renewed.jpg"};

PhotoRefresh refreshOf(const Project& project, std::size_t position, PhotoRef source = renewed,
                       bool isMissing = false) {
    const ProjectModel::PhotoItem& photo = project.photos[position];
    return {photo.id, photo.source, std::move(source), isMissing};
}

} // namespace

TEST(ProjectDocumentTest, AnEditThatChangesNothingIsNoStepAndNobodyHearsOfIt) {
    ProjectDocument document{projectOf(2)};
    int told = 0;
    const auto listening = document.addListener([&](const ProjectDifference&) { ++told; });
    document.edit("Nothing", [](Project&) {});
    document.edit("Remove", [](Project& project) { project.removePhotos({uuid(77)}); });
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(document.canUndo());
    EXPECT_FALSE(document.isModified());
}

TEST(ProjectDocumentTest, AnyEditsAreUndoneAndRedoneToTheVeryProjectsAndListenersCanFollow) {
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        ProjectVariations variations{seed};
        ProjectDocument document{variations.project()};
        Project follower = document.project();
        const auto listening =
            document.addListener([&](const ProjectDifference& difference) { apply(difference, follower); });
        std::vector<Project> states{document.project()};
        for (int i = 0; i < 30; ++i) {
            const Project next = variations.variation(document.project());
            document.edit(std::to_string(i), [&](Project& project) { project = next; });
            if (!(next == states.back()))
                states.push_back(next);
            ASSERT_EQ(follower, next);
        }
        const std::size_t steps = states.size() - 1;
        for (std::size_t i = steps; i > 0; --i) {
            document.undo();
            ASSERT_EQ(document.project(), states[i - 1]);
            ASSERT_EQ(follower, states[i - 1]);
        }
        ASSERT_FALSE(document.canUndo());
        ASSERT_FALSE(document.isModified());
        for (std::size_t i = 1; i <= steps; ++i) {
            document.redo();
            ASSERT_EQ(document.project(), states[i]);
            ASSERT_EQ(follower, states[i]);
        }
        ASSERT_FALSE(document.canRedo());
    }
}

TEST(ProjectDocumentTest, AnyEditsOfOneKeyAreOneStep) {
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        ProjectVariations variations{seed};
        ProjectDocument document{variations.project()};
        const Project before = document.project();
        for (int i = 0; i < 8; ++i) {
            const Project next = variations.variation(document.project());
            document.edit({"Edit", "key"}, [&](Project& project) { project = next; });
        }
        const Project after = document.project();
        document.undo();
        ASSERT_EQ(document.project(), before) << seed;
        ASSERT_FALSE(document.canUndo()) << seed;
        document.redo();
        ASSERT_EQ(document.project(), after) << seed;
    }
}

TEST(ProjectDocumentTest, TypingInOneCaptionIsOneStepUntilItIsSealedOrSomethingComesBetween) {
    ProjectDocument document{projectOf(2)};
    caption(document, "L");
    caption(document, "Li");
    document.seal();
    caption(document, "Lis");
    caption(document, "B", 2);
    caption(document, "Lisb");
    std::vector<std::optional<std::string>> captions;
    while (document.canUndo()) {
        document.undo();
        captions.push_back(document.project().photos[0].caption);
    }
    EXPECT_EQ(captions, (std::vector<std::optional<std::string>>{"Lis", "Lis", "Li", std::nullopt}));
}

TEST(ProjectDocumentTest, AStepThatEndsWhereItBeganDisappears) {
    ProjectDocument document{projectOf(1)};
    caption(document, "kept");
    document.seal();
    caption(document, "x");
    int told = 0;
    const auto listening = document.addListener([&](const ProjectDifference&) { ++told; });
    caption(document, "kept");
    EXPECT_EQ(told, 1);
    // What is typed from here on is a step of its own again.
    caption(document, "new");
    document.undo();
    EXPECT_EQ(document.project().photos[0].caption, "kept");
    document.undo();
    EXPECT_EQ(document.project().photos[0].caption, std::nullopt);
    EXPECT_FALSE(document.canUndo());
}

TEST(ProjectDocumentTest, TheMenusTellTheNamesOfTheSteps) {
    ProjectDocument document{projectOf(3)};
    EXPECT_EQ(document.undoName(), std::nullopt);
    remove(document, 2);
    caption(document, "x");
    EXPECT_EQ(document.undoName(), "Edit Caption");
    document.undo();
    EXPECT_EQ(document.undoName(), "Remove");
    EXPECT_EQ(document.redoName(), "Edit Caption");
    remove(document, 3);
    EXPECT_FALSE(document.canRedo());
}

TEST(ProjectDocumentTest, ModifiedMeansDifferentFromWhatWasSaved) {
    ProjectDocument document{projectOf(2)};
    EXPECT_FALSE(document.isModified());
    caption(document, "x");
    EXPECT_TRUE(document.isModified());
    document.undo();
    EXPECT_FALSE(document.isModified());
    document.redo();
    document.markSaved();
    EXPECT_FALSE(document.isModified());
    EXPECT_TRUE(document.canUndo());
    document.undo();
    EXPECT_TRUE(document.isModified());
    // Typing the same again by hand is as good.
    caption(document, "y");
    caption(document, "x");
    EXPECT_FALSE(document.isModified());
}

TEST(ProjectDocumentTest, AnEditThatThrowsChangesNothing) {
    const Project before = projectOf(2);
    ProjectDocument document{before};
    int told = 0;
    const auto listening = document.addListener([&](const ProjectDifference&) { ++told; });
    EXPECT_THROW(document.edit("Fail",
                               [](Project& project) {
                                   project.removePhotos({uuid(1)});
                                   throw std::runtime_error("no");
                               }),
                 std::runtime_error);
    EXPECT_EQ(document.project(), before);
    EXPECT_EQ(told, 0);
    EXPECT_FALSE(document.canUndo());
}

TEST(ProjectDocumentTest, ListenersHearAsLongAsTheyAreSubscribed) {
    ProjectDocument document{projectOf(3)};
    std::vector<std::string> heard;
    ProjectDocument::Subscription second;
    ProjectDocument::Subscription first = document.addListener([&](const ProjectDifference&) {
        heard.emplace_back("first");
        second.reset();
    });
    second = document.addListener([&](const ProjectDifference&) { heard.emplace_back("second"); });
    const ProjectDocument::Subscription third =
        document.addListener([&](const ProjectDifference&) { heard.emplace_back("third"); });
    caption(document, "x");
    first.reset();
    caption(document, "y");
    EXPECT_EQ(heard, (std::vector<std::string>{"first", "third", "third"}));
}

TEST(ProjectDocumentTest, AListenerThatChangesTheDocumentIsRefused) {
    ProjectDocument document{projectOf(2)};
    auto listening = document.addListener([&](const ProjectDifference&) { document.undo(); });
    EXPECT_THROW(caption(document, "x"), std::logic_error);
    listening = document.addListener([&](const ProjectDifference&) { caption(document, "y"); });
    EXPECT_THROW(remove(document, 2), std::logic_error);
    listening.reset();
    document.undo();
    EXPECT_EQ(document.project().photos.size(), 2U);
}

TEST(ProjectDocumentTest, ARefreshIsNoStepAndNoModificationAndListenersAreTold) {
    ProjectDocument document{projectOf(2)};
    int told = 0;
    const auto listening =
        document.addListener([&](const ProjectDifference& found) { told += found.changed.empty() ? 0 : 1; });
    document.refresh({refreshOf(document.project(), 1, renewed, true)});
    EXPECT_EQ(document.project().photos[1].source, renewed);
    EXPECT_TRUE(document.project().photos[1].isMissing);
    EXPECT_EQ(document.project().photos[0], item(1));
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(document.canUndo());
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(document.unsavedRefreshes().size(), 1U);
    document.markSaved();
    EXPECT_TRUE(document.unsavedRefreshes().empty());
}

TEST(ProjectDocumentTest, NoStepLeadsBackToWhatWasKnownBeforeARefresh) {
    ProjectDocument document{projectOf(3)};
    caption(document, "x");
    remove(document, 1);
    remove(document, 2);
    document.undo();
    const Project before = projectOf(3);
    document.refresh(
        {refreshOf(before, 0), refreshOf(before, 1, FilePhotoRef{{8}, "8"}), refreshOf(before, 2)});
    document.redo();
    while (document.canUndo())
        document.undo();
    ASSERT_EQ(document.project().photos.size(), 3U);
    EXPECT_EQ(document.project().photos[0].source, renewed);
    EXPECT_EQ(document.project().photos[1].source, (PhotoRef{FilePhotoRef{{8}, "8"}}));
    EXPECT_EQ(document.project().photos[0].caption, std::nullopt);
    EXPECT_FALSE(document.isModified());
    while (document.canRedo())
        document.redo();
    ASSERT_EQ(document.project().photos.size(), 1U);
    EXPECT_EQ(document.project().photos[0].source, renewed);
}

TEST(ProjectDocumentTest, ARefreshBetweenTwoLettersLeavesThemOneStep) {
    ProjectDocument document{projectOf(1)};
    caption(document, "x");
    document.refresh({refreshOf(document.project(), 0)});
    caption(document, "xy");
    document.undo();
    EXPECT_EQ(document.project().photos[0].caption, std::nullopt);
    EXPECT_EQ(document.project().photos[0].source, renewed);
    EXPECT_FALSE(document.canUndo());
}

TEST(ProjectDocumentTest, ALateRefreshOfAPhotoThatHasAnotherSourceByNowChangesNothing) {
    ProjectDocument document{projectOf(2)};
    const PhotoRefresh late = refreshOf(document.project(), 0, FilePhotoRef{{1}, "late"});
    document.refresh({refreshOf(document.project(), 0)});
    document.refresh({late, {uuid(77), renewed, renewed, true}});
    EXPECT_EQ(document.project().photos[0].source, renewed);
    EXPECT_EQ(document.unsavedRefreshes().size(), 1U);
}

TEST(ProjectDocumentTest, AReplacedProjectIsUnmodifiedAndHasNoHistory) {
    ProjectDocument document{projectOf(2)};
    Project follower = document.project();
    const auto listening =
        document.addListener([&](const ProjectDifference& difference) { apply(difference, follower); });
    caption(document, "x");
    document.refresh({refreshOf(document.project(), 0)});
    document.replace(projectOf(5));
    EXPECT_EQ(document.project(), projectOf(5));
    EXPECT_EQ(follower, projectOf(5));
    EXPECT_FALSE(document.isModified());
    EXPECT_FALSE(document.canUndo());
    EXPECT_TRUE(document.unsavedRefreshes().empty());
    EXPECT_EQ(document.historyBytes(), 0U);
}
