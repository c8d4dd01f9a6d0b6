// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoItem.h>
#include <Timeline/ChapterWalk.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using ProjectModel::PhotoItem;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;

PhotoItem photoIn(const std::optional<std::string>& city, bool isSelected = true) {
    PhotoItem photo{};
    photo.isSelected = isSelected;
    if (city)
        photo.location = ResolvedLocation{city, std::nullopt, Provenance::geocoded};
    return photo;
}

TEST(ChapterWalk, AChapterBeginsWhereThePlaceChanges) {
    Timeline::ChapterWalk walk;
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), "Lisbon");
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), std::nullopt);
    EXPECT_EQ(walk.enter(photoIn("Sintra")), "Sintra");
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), "Lisbon");
}

TEST(ChapterWalk, APhotoWithoutAPlaceNeitherBeginsNorEndsOne) {
    Timeline::ChapterWalk walk;
    EXPECT_EQ(walk.enter(photoIn({})), std::nullopt);
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), "Lisbon");
    EXPECT_EQ(walk.enter(photoIn({})), std::nullopt);
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), std::nullopt);
}

TEST(ChapterWalk, PhotosLeftOutOfTheFilmDoNotCount) {
    Timeline::ChapterWalk walk;
    EXPECT_EQ(walk.enter(photoIn("Porto", false)), std::nullopt);
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), "Lisbon");
    EXPECT_EQ(walk.enter(photoIn("Porto", false)), std::nullopt);
    EXPECT_EQ(walk.enter(photoIn("Lisbon")), std::nullopt);
}

} // namespace
