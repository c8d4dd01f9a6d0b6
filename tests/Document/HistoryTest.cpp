// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/History.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

using Document::apply;
using Document::difference;
using Document::EditName;
using Document::History;
using Document::ProjectDifference;
using ProjectModel::Project;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

/// The first photo gets a caption of a length; its step takes about twice that.
ProjectDifference captioned(Project& project, std::size_t length) {
    const Project before = project;
    project.userSetCaption(std::string(length, length % 2 == 0 ? 'x' : 'y'), uuid(1));
    return difference(before, project);
}

Project onePhoto() {
    Project project;
    project.photos.push_back(item(1));
    return project;
}

} // namespace

TEST(HistoryTest, AFreshOneHasNothingToUndoOrRedo) {
    const History history;
    EXPECT_FALSE(history.undoName());
    EXPECT_FALSE(history.redoName());
    EXPECT_EQ(history.bytes(), 0U);
}

TEST(HistoryTest, UndoingLeadsBackStepByStepAndRedoingForward) {
    History history;
    Project project = onePhoto();
    std::vector<Project> states{project};
    for (std::size_t length = 1; length < 5; ++length) {
        history.add(std::to_string(length), captioned(project, length));
        states.push_back(project);
    }
    const std::size_t bytes = history.bytes();
    for (std::size_t i = 4; i > 0; --i) {
        EXPECT_EQ(history.undoName(), std::to_string(i));
        apply(history.undo(), project);
        EXPECT_EQ(project, states[i - 1]);
        EXPECT_EQ(history.redoName(), std::to_string(i));
    }
    EXPECT_FALSE(history.undoName());
    EXPECT_EQ(history.bytes(), bytes);
    for (std::size_t i = 1; i < 5; ++i) {
        apply(history.redo(), project);
        EXPECT_EQ(project, states[i]);
    }
    EXPECT_FALSE(history.redoName());
}

TEST(HistoryTest, ANewStepForgetsWhatWasUndone) {
    History history;
    Project project = onePhoto();
    history.add("a", captioned(project, 3000));
    const std::size_t one = history.bytes();
    history.add("b", captioned(project, 100'000));
    apply(history.undo(), project);
    history.add("c", captioned(project, 3001));
    EXPECT_FALSE(history.redoName());
    EXPECT_EQ(history.undoName(), "c");
    EXPECT_LT(history.bytes(), 3 * one);
}

TEST(HistoryTest, BeyondItsLimitTheOldestStepsAreForgotten) {
    constexpr std::size_t limit = 100'000;
    History history{limit};
    Project project = onePhoto();
    int undone = 0;
    for (std::size_t length = 10'000; length < 10'020; ++length) {
        history.add("step", captioned(project, length));
        EXPECT_LE(history.bytes(), limit);
    }
    while (history.undoName()) {
        apply(history.undo(), project);
        ++undone;
    }
    // Each step holds the text before and the one after.
    EXPECT_EQ(undone, 4);
    EXPECT_EQ(project.photos[0].caption->size(), 10'015U);
}

TEST(HistoryTest, TheNewestStepStaysHoweverLargeItIs) {
    History history{1000};
    Project project = onePhoto();
    history.add("small", captioned(project, 10));
    history.add("large", captioned(project, 50'000));
    EXPECT_EQ(history.undoName(), "large");
    apply(history.undo(), project);
    EXPECT_FALSE(history.undoName());
    EXPECT_EQ(project.photos[0].caption->size(), 10U);
}

TEST(HistoryTest, AStepGoesOnOnlyWithItsOwnKeyUntilItIsSealed) {
    History history;
    Project project = onePhoto();
    EXPECT_FALSE(history.continues({"a", "key"}));
    history.add({"a", "key"}, captioned(project, 1));
    EXPECT_TRUE(history.continues({"another name", "key"}));
    EXPECT_FALSE(history.continues({"a", "other"}));
    EXPECT_FALSE(history.continues("a"));
    history.seal();
    EXPECT_FALSE(history.continues({"a", "key"}));

    history.add({"a", "key"}, captioned(project, 2));
    apply(history.undo(), project);
    apply(history.redo(), project);
    EXPECT_FALSE(history.continues({"a", "key"}));
    history.add("without a key", captioned(project, 3));
    EXPECT_FALSE(history.continues("without a key"));
}

TEST(HistoryTest, ClearedItIsEmpty) {
    History history;
    Project project = onePhoto();
    history.add({"a", "key"}, captioned(project, 1));
    history.add({"b", "key"}, captioned(project, 2));
    apply(history.undo(), project);
    history.clear();
    EXPECT_FALSE(history.undoName());
    EXPECT_FALSE(history.redoName());
    EXPECT_EQ(history.bytes(), 0U);
    EXPECT_FALSE(history.continues({"b", "key"}));
}
