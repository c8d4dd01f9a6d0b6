// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Player/SlideshowPlayerModel.h>
#include <Support/TestPhotos.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Player;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using TestPhotos::uuid;

/// A card of 3 s, then three photos of 5 s that dissolve for 0.75 s: they begin at 3, 7.25 and 11.5; the end
/// is 16.5.
Timeline::SlideshowTimeline threePhotos() {
    Timeline::SlideshowTimeline timeline;
    timeline.items.push_back(Timeline::ChapterSegment{"Rome, Italy", 0, 3});
    for (int i = 0; i < 3; ++i) {
        Timeline::PhotoSegment photo;
        photo.photoID = uuid(i + 1);
        photo.start = 3 + i * 4.25;
        photo.duration = 5;
        photo.crossfadesFromPrevious = i > 0;
        timeline.items.push_back(photo);
    }
    timeline.totalDuration = 16.5;
    return timeline;
}

class SlideshowPlayerModelTest : public testing::Test {
protected:
    SlideshowPlayerModelTest() {
        model.onScrub([this](double time) { scrubs.push_back(time); });
    }
    SlideshowPlayerModel model{threePhotos(), 0.75};
    std::vector<double> scrubs;
};

TEST_F(SlideshowPlayerModelTest, StartsPausedAtTheBeginning) {
    EXPECT_FALSE(model.isPlaying());
    EXPECT_EQ(model.elapsed(), 0);
    model.tick(1);
    EXPECT_EQ(model.elapsed(), 0);
}

TEST_F(SlideshowPlayerModelTest, TickingMovesOnWhilePlayingAndNeverScrubs) {
    model.togglePlay();
    model.tick(2.5);
    model.tick(2.5);
    EXPECT_EQ(model.elapsed(), 5);
    model.togglePlay();
    model.tick(1);
    EXPECT_EQ(model.elapsed(), 5);
    EXPECT_THAT(scrubs, IsEmpty());
}

TEST_F(SlideshowPlayerModelTest, ALargeTickStopsExactlyAtTheEnd) {
    model.togglePlay();
    model.tick(1000);
    EXPECT_EQ(model.elapsed(), 16.5);
    EXPECT_FALSE(model.isPlaying());
    EXPECT_THAT(scrubs, IsEmpty());
}

TEST_F(SlideshowPlayerModelTest, PlayingAfterTheEndBeginsAgain) {
    model.togglePlay();
    model.tick(1000);
    model.togglePlay();
    EXPECT_TRUE(model.isPlaying());
    EXPECT_EQ(model.elapsed(), 0);
    EXPECT_THAT(scrubs, ElementsAre(0));
}

TEST_F(SlideshowPlayerModelTest, DuringAnOpeningCardNextAndPreviousAreDeadAndNothingIsNearby) {
    model.next();
    model.previous();
    EXPECT_EQ(model.elapsed(), 0);
    EXPECT_THAT(scrubs, IsEmpty());
    EXPECT_THAT(model.nearbyPhotoIDs(), IsEmpty());
    EXPECT_EQ(model.frame(0.75), std::nullopt);
}

TEST_F(SlideshowPlayerModelTest, NextGoesToTheStartOfTheFollowingPhotoAndStaysOnTheLast) {
    model.seek(4);
    model.next();
    EXPECT_EQ(model.elapsed(), 7.25);
    model.next();
    EXPECT_EQ(model.elapsed(), 11.5);
    model.next();
    EXPECT_EQ(model.elapsed(), 11.5);
    EXPECT_THAT(scrubs, ElementsAre(4, 7.25, 11.5));
}

TEST_F(SlideshowPlayerModelTest, PreviousGoesBackAWholePhotoAndNeverRestartsThePresentOne) {
    model.seek(15);
    model.previous();
    EXPECT_EQ(model.elapsed(), 7.25);
    model.previous();
    EXPECT_EQ(model.elapsed(), 3);
    model.tick(0);
    model.previous();
    EXPECT_EQ(model.elapsed(), 3);
    EXPECT_THAT(scrubs, ElementsAre(15, 7.25, 3));
}

TEST_F(SlideshowPlayerModelTest, ThePhotosBesideThePresentOneAreNearby) {
    model.seek(4);
    EXPECT_THAT(model.nearbyPhotoIDs(), UnorderedElementsAre(uuid(1), uuid(2)));
    model.seek(8);
    EXPECT_THAT(model.nearbyPhotoIDs(), UnorderedElementsAre(uuid(1), uuid(2), uuid(3)));
    model.seek(16);
    EXPECT_THAT(model.nearbyPhotoIDs(), UnorderedElementsAre(uuid(2), uuid(3)));
}

TEST_F(SlideshowPlayerModelTest, SeekingStaysInsideAndScrubs) {
    model.seek(-3);
    model.seek(99);
    model.seek(std::numeric_limits<double>::quiet_NaN());
    EXPECT_THAT(scrubs, ElementsAre(0, 16.5, 0));
}

TEST_F(SlideshowPlayerModelTest, AFrameCarriesWhatThePlayheadSays) {
    model.seek(7.25 + 0.375);
    const SlideshowPlayerModel::Frame frame = model.frame(0.75).value();
    EXPECT_EQ(frame.id, uuid(1));
    EXPECT_DOUBLE_EQ(frame.progress, 4.625 / 5);
    EXPECT_EQ(frame.incomingID, uuid(2));
    EXPECT_DOUBLE_EQ(frame.incomingProgress, 0.375 / 5);
    EXPECT_DOUBLE_EQ(frame.incomingOpacity, 0.5);
    EXPECT_EQ(model.frame(0.1).value().id, uuid(2)) << "with a shorter dissolve it is over";
}

TEST_F(SlideshowPlayerModelTest, FindsAPhotosFirstSegment) {
    ASSERT_NE(model.segment(uuid(2)), nullptr);
    EXPECT_EQ(model.segment(uuid(2))->start, 7.25);
    EXPECT_EQ(model.segment(uuid(9)), nullptr);
}

TEST(EmptySlideshowTest, NothingHappens) {
    SlideshowPlayerModel model{{}, 0.75};
    model.next();
    model.previous();
    model.togglePlay();
    model.tick(1);
    EXPECT_FALSE(model.isPlaying());
    EXPECT_EQ(model.elapsed(), 0);
    EXPECT_THAT(model.nearbyPhotoIDs(), IsEmpty());
}

} // namespace
