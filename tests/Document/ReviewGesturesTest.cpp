// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ReviewModel.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Document::ProjectDocument;
using Document::ReviewModel;
using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

ProjectDocument documentOf(int count) {
    Project project;
    for (int number = 1; number <= count; ++number)
        project.photos.push_back(item(number, "/photos/" + std::to_string(number) + ".jpg"));
    return ProjectDocument{project};
}

std::vector<Uuid> order(const ProjectDocument& document) {
    std::vector<Uuid> ids;
    for (const PhotoItem& photo : document.project().photos)
        ids.push_back(photo.id);
    return ids;
}

} // namespace

TEST(ReviewGesturesTest, TogglingSeveralBringsAllInUnlessAllAreIn) {
    ProjectDocument document = documentOf(3);
    ReviewModel review{document};
    review.setSelection(true, {uuid(1), uuid(3)});
    review.setSelection(false, {uuid(2)});
    review.toggleSelections({uuid(1), uuid(2)});
    EXPECT_TRUE(document.project().photos[0].isSelected);
    EXPECT_TRUE(document.project().photos[1].isSelected);
    review.toggleSelections({uuid(1), uuid(2)});
    EXPECT_FALSE(document.project().photos[0].isSelected);
    EXPECT_FALSE(document.project().photos[1].isSelected);
    EXPECT_TRUE(document.project().photos[2].isSelected);
}

TEST(ReviewGesturesTest, PhotosMoveBeforeOrAfterAnother) {
    ProjectDocument document = documentOf(5);
    ReviewModel review{document};
    review.movePhotos({uuid(1), uuid(4)}, uuid(2), true);
    EXPECT_EQ(order(document), (std::vector{uuid(2), uuid(1), uuid(4), uuid(3), uuid(5)}));
    review.movePhotos({uuid(5)}, uuid(2), false);
    EXPECT_EQ(order(document), (std::vector{uuid(5), uuid(2), uuid(1), uuid(4), uuid(3)}));
    EXPECT_TRUE(document.project().usesManualOrder);
}

TEST(ReviewGesturesTest, PhotosThatLieApartGatherWhereOneOfThemStands) {
    ProjectDocument document = documentOf(4);
    ReviewModel{document}.movePhotos({uuid(1), uuid(3)}, uuid(3), false);
    EXPECT_EQ(order(document), (std::vector{uuid(2), uuid(1), uuid(3), uuid(4)}));
}

TEST(ReviewGesturesTest, PhotosPutBackWhereTheyStandChangeNothing) {
    ProjectDocument document = documentOf(4);
    ReviewModel review{document};
    review.movePhotos({uuid(2), uuid(3)}, uuid(3), false);
    review.movePhotos({uuid(2), uuid(3)}, uuid(1), true);
    review.movePhotos({uuid(2), uuid(3)}, uuid(4), false);
    review.movePhotos({uuid(2)}, uuid(99), false);
    review.movePhotos({uuid(99)}, uuid(2), false);
    EXPECT_FALSE(document.project().usesManualOrder);
}
