// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/RandomProject.h>
#include <ProjectModel/ReviewOps.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace ProjectModel {
namespace {

/// Photos that are told apart by their first id byte: 1, 2, 3, …
std::vector<PhotoItem> numberedPhotos(std::size_t count) {
    Testing::RandomProject random{7};
    std::vector<PhotoItem> photos;
    for (std::size_t i = 0; i < count; ++i) {
        photos.push_back(random.photo());
        photos.back().id = Foundation::Uuid{{static_cast<std::uint8_t>(i + 1)}};
    }
    return photos;
}

std::vector<int> numbersOf(const std::vector<PhotoItem>& photos) {
    std::vector<int> numbers;
    for (const PhotoItem& photo : photos)
        numbers.push_back(photo.id.bytes[0]);
    return numbers;
}

std::vector<int> orderAfterMoving(std::size_t count, const std::set<std::size_t>& positions,
                                  std::size_t destination) {
    std::vector<PhotoItem> photos = numberedPhotos(count);
    ReviewOps::move(photos, positions, destination);
    return numbersOf(photos);
}

TEST(ReviewOpsTest, MovesTheFirstTwoOfFiveBeforeTheFifth) {
    EXPECT_EQ(orderAfterMoving(5, {0, 1}, 4), (std::vector{3, 4, 1, 2, 5}));
}

TEST(ReviewOpsTest, MovesToTheEndWhenTheDestinationIsTheLength) {
    EXPECT_EQ(orderAfterMoving(4, {1}, 4), (std::vector{1, 3, 4, 2}));
}

TEST(ReviewOpsTest, MovesToTheBeginning) {
    EXPECT_EQ(orderAfterMoving(4, {1, 3}, 0), (std::vector{2, 4, 1, 3}));
}

TEST(ReviewOpsTest, GathersScatteredPhotosInTheirFormerOrder) {
    EXPECT_EQ(orderAfterMoving(6, {0, 2, 5}, 3), (std::vector{2, 1, 3, 6, 4, 5}));
}

TEST(ReviewOpsTest, LeavesABlockWhereItStandsWhenMovedOntoItself) {
    for (const std::size_t destination : {1U, 2U, 3U})
        EXPECT_EQ(orderAfterMoving(4, {1, 2}, destination), (std::vector{1, 2, 3, 4}));
}

TEST(ReviewOpsTest, MovesNothingWithoutPositions) {
    EXPECT_EQ(orderAfterMoving(3, {}, 1), (std::vector{1, 2, 3}));
    EXPECT_EQ(orderAfterMoving(0, {}, 0), std::vector<int>{});
}

TEST(ReviewOpsTest, KeepsEveryPhotoWhole) {
    const std::vector<PhotoItem> before = numberedPhotos(5);
    std::vector<PhotoItem> after = before;
    ReviewOps::move(after, {0, 3}, 2);
    EXPECT_EQ(after, (std::vector{before[1], before[0], before[3], before[2], before[4]}));
}

TEST(ReviewOpsTest, LosesNoPhotoToPositionsOutsideTheList) {
    std::vector<int> order = orderAfterMoving(3, {1, 9}, 77);
    std::sort(order.begin(), order.end());
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

/// Taking the photos out from the highest position down and putting them back as one block.
std::vector<PhotoItem> movedOneByOne(std::vector<PhotoItem> photos, const std::set<std::size_t>& positions,
                                     std::size_t destination) {
    std::vector<PhotoItem> block;
    for (const std::size_t position : positions)
        block.push_back(photos[position]);
    for (auto position = positions.rbegin(); position != positions.rend(); ++position)
        photos.erase(photos.begin() + static_cast<std::ptrdiff_t>(*position));
    const auto below = std::distance(positions.begin(), positions.lower_bound(destination));
    photos.insert(photos.begin() + static_cast<std::ptrdiff_t>(destination) - below, block.begin(),
                  block.end());
    return photos;
}

TEST(ReviewOpsTest, AgreesWithMovingByRemovalAndInsertion) {
    Testing::RandomProject random{11};
    for (int i = 0; i < 2000; ++i) {
        const std::vector<PhotoItem> before = numberedPhotos(1 + random.below(9));
        std::set<std::size_t> positions;
        for (std::size_t j = random.below(before.size() + 1); j > 0; --j)
            positions.insert(random.below(before.size()));
        const std::size_t destination = random.below(before.size() + 1);
        std::vector<PhotoItem> after = before;
        ReviewOps::move(after, positions, destination);
        ASSERT_EQ(numbersOf(after), numbersOf(movedOneByOne(before, positions, destination)));
    }
}

} // namespace
} // namespace ProjectModel
