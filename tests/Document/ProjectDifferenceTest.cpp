// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProjectVariations.h"

#include <Roamly/Document/ProjectDifference.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <set>

using Document::apply;
using Document::difference;
using Document::inverted;
using Document::ProjectDifference;
using Document::revert;
using Document::Testing::ProjectVariations;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

Project projectOf(std::initializer_list<int> numbers) {
    Project project;
    for (const int number : numbers)
        project.photos.push_back(item(number));
    return project;
}

std::vector<std::size_t> positions(const std::vector<ProjectDifference::PlacedPhoto>& placed) {
    std::vector<std::size_t> result;
    for (const ProjectDifference::PlacedPhoto& one : placed)
        result.push_back(one.position);
    return result;
}

using Positions = std::vector<std::size_t>;

} // namespace

TEST(ProjectDifferenceTest, EqualProjectsDifferInNothing) {
    ProjectVariations variations{1};
    for (int i = 0; i < 200; ++i) {
        const Project project = variations.project();
        ASSERT_TRUE(difference(project, project).isEmpty());
    }
}

TEST(ProjectDifferenceTest, LeadsFromEitherProjectToTheOther) {
    ProjectVariations variations{2};
    for (int i = 0; i < 5000; ++i) {
        const Project before = variations.project();
        const Project after = variations.variation(before);
        const ProjectDifference found = difference(before, after);
        ASSERT_EQ(found.isEmpty(), before == after) << i;
        Project project = before;
        apply(found, project);
        ASSERT_EQ(project, after) << i;
        revert(found, project);
        ASSERT_EQ(project, before) << i;
    }
}

TEST(ProjectDifferenceTest, LeadsBetweenProjectsThatHaveNothingInCommon) {
    ProjectVariations variations{3};
    for (int i = 0; i < 300; ++i) {
        const Project before = variations.project();
        const Project after = variations.project();
        const ProjectDifference found = difference(before, after);
        Project project = before;
        apply(found, project);
        ASSERT_EQ(project, after);
        revert(found, project);
        ASSERT_EQ(project, before);
    }
}

TEST(ProjectDifferenceTest, InvertedItIsTheDifferenceOfTheWayBack) {
    ProjectVariations variations{4};
    for (int i = 0; i < 3000; ++i) {
        const Project before = variations.project();
        const Project after = variations.variation(before);
        const ProjectDifference found = difference(before, after);
        ASSERT_EQ(inverted(found), difference(after, before)) << i;
        ASSERT_EQ(inverted(inverted(found)), found) << i;
    }
}

TEST(ProjectDifferenceTest, TellsWhatAListThatFollowsItHasToDo) {
    Project before = projectOf({1, 2, 3, 4, 5});
    Project after = projectOf({5, 9, 2, 3, 8});
    after.photos[3].caption = "three";
    const ProjectDifference found = difference(before, after);
    EXPECT_EQ(positions(found.removed), (Positions{0, 3}));
    EXPECT_EQ(found.removed[1].photo.id, uuid(4));
    // Of 2, 3 and 5 the last comes first.
    EXPECT_EQ(found.order, (Positions{2, 0, 1}));
    EXPECT_EQ(positions(found.inserted), (Positions{1, 4}));
    ASSERT_EQ(found.changed.size(), 1U);
    EXPECT_EQ(found.changed[0].position, 3U);
    EXPECT_EQ(found.changed[0].before, before.photos[2]);
    EXPECT_EQ(found.changed[0].after, after.photos[3]);
}

TEST(ProjectDifferenceTest, OnePhotoOfEqualIdsThatGoesIsTheLast) {
    const Project before = projectOf({1, 1, 1});
    const ProjectDifference found = difference(before, projectOf({1, 1}));
    EXPECT_EQ(positions(found.removed), (Positions{2}));
    EXPECT_TRUE(found.changed.empty());
    EXPECT_TRUE(found.order.empty());
}

TEST(ProjectDifferenceTest, HoldsOnlyWhatDiffers) {
    Project before = projectOf({1, 2, 3});
    Project after = before;
    after.settings.captionPrompt = "short";
    ProjectDifference found = difference(before, after);
    EXPECT_TRUE(found.settings);
    EXPECT_FALSE(found.music || found.sources || found.usesManualOrder || found.schemaVersion);
    EXPECT_TRUE(found.changed.empty());

    after = before;
    after.usesManualOrder = true;
    after.music = ProjectModel::MusicSelection{{1, 2}, "fado.mp3"};
    found = difference(before, after);
    EXPECT_TRUE(found.usesManualOrder && found.music);
    EXPECT_FALSE(found.settings);
}

TEST(ProjectDifferenceTest, ItsBytesCountTheTextsAndBookmarksThatItHolds) {
    Project before = projectOf({1, 2});
    Project after = before;
    after.photos[0].isSelected = false;
    const std::size_t plain = difference(before, after).bytes();
    EXPECT_GE(plain, sizeof(ProjectDifference) + 2 * sizeof(PhotoItem));

    after.photos[0].caption = std::string(100'000, 'x');
    const std::size_t withText = difference(before, after).bytes();
    EXPECT_GE(withText, plain + 100'000);
    EXPECT_LT(withText, plain + 110'000);

    after.sources.push_back({uuid(7), ProjectModel::FolderSourceRef{Foundation::Bytes(50'000), "/x"}});
    EXPECT_GE(difference(before, after).bytes(), withText + 50'000);
}
