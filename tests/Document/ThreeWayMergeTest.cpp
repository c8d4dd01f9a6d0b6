// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProjectVariations.h"

#include <Roamly/Document/ThreeWayMerge.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

using Document::merged;
using Document::Testing::ProjectVariations;
using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;
using ProjectModel::ResolvedLocation;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

/// Photos that were taken a minute apart, in the order of their numbers.
PhotoItem dated(int number) {
    PhotoItem photo = item(number);
    photo.captureDate = Foundation::Instant{std::chrono::minutes{number}};
    return photo;
}

Project projectOf(std::initializer_list<int> numbers) {
    Project project;
    for (const int number : numbers)
        project.photos.push_back(dated(number));
    return project;
}

std::vector<Uuid> order(const Project& project) {
    std::vector<Uuid> ids;
    for (const PhotoItem& photo : project.photos)
        ids.push_back(photo.id);
    return ids;
}

std::vector<Uuid> uuids(std::initializer_list<int> numbers) {
    std::vector<Uuid> ids;
    for (const int number : numbers)
        ids.push_back(uuid(number));
    return ids;
}

/// Three states to change.
struct Three {
    explicit Three(Project project)
        : base(std::move(project))
        , mine(base)
        , theirs(base) {}

    [[nodiscard]] Project merged() const { return Document::merged(base, mine, theirs); }

    Project base;
    Project mine;
    Project theirs;
};

} // namespace

TEST(ThreeWayMergeTest, WhatOnlyOneSideChangedHolds) {
    ProjectVariations variations{1};
    for (int i = 0; i < 2000; ++i) {
        Project base = variations.project();
        const Project other = variations.variation(base);
        // Theirs alone is theirs, whatever it is.
        ASSERT_EQ(merged(base, base, other), other) << i;
        ASSERT_EQ(merged(base, base, base), base) << i;
    }
}

TEST(ThreeWayMergeTest, WhatOnlyIChangedIsMineInMyOrder) {
    ProjectVariations variations{2};
    for (int i = 0; i < 2000; ++i) {
        Project base = variations.project();
        base.markManuallyOrdered();
        Project mine = variations.variation(base);
        mine.markManuallyOrdered();
        const Project result = merged(base, mine, base);
        ASSERT_EQ(result.settings, mine.settings);
        ASSERT_EQ(result.music, mine.music);
        ASSERT_EQ(result.sources, mine.sources);
        ASSERT_EQ(result.photos.size(), mine.photos.size()) << i;
        ASSERT_TRUE(std::is_permutation(result.photos.begin(), result.photos.end(), mine.photos.begin()))
            << i;
    }
}

TEST(ThreeWayMergeTest, FieldsOfOnePhotoThatTheTwoChangedAreBothKept) {
    Three three{projectOf({1, 2})};
    three.mine.applyGeneratedCaption("a tram", uuid(1));
    three.mine.applyProposedSelection(true, uuid(9), 0.5, uuid(1));
    three.theirs.userSetSelection(false, uuid(1));
    three.theirs.userSetLocation(ResolvedLocation{"Lisbon", "Portugal"}, uuid(1));
    const PhotoItem result = three.merged().photos[0];
    EXPECT_EQ(result.caption, "a tram");
    EXPECT_EQ(result.captionProvenance, Provenance::generated);
    EXPECT_EQ(result.clusterID, uuid(9));
    EXPECT_EQ(result.qualityScore, 0.5);
    EXPECT_FALSE(result.isSelected);
    EXPECT_EQ(result.selectionProvenance, Provenance::user);
    EXPECT_EQ(result.location, (ResolvedLocation{"Lisbon", "Portugal", Provenance::user}));
}

TEST(ThreeWayMergeTest, OfOneFieldThatBothChangedTheUsersDecisionHolds) {
    Three three{projectOf({1, 2, 3, 4})};
    // 1: theirs is the user's; 2: mine is; 3: both are; 4: neither is.
    three.mine.applyGeneratedCaption("generated", uuid(1));
    three.theirs.userSetCaption("typed", uuid(1));
    three.mine.userSetCaption("typed", uuid(2));
    three.theirs.applyGeneratedCaption("generated", uuid(2));
    three.mine.userSetCaption("mine", uuid(3));
    three.theirs.userSetCaption("theirs", uuid(3));
    three.mine.applyGeneratedCaption("mine", uuid(4));
    three.theirs.applyGeneratedCaption("theirs", uuid(4));
    const Project result = three.merged();
    EXPECT_EQ(result.photos[0].caption, "typed");
    EXPECT_EQ(result.photos[0].captionProvenance, Provenance::user);
    EXPECT_EQ(result.photos[1].caption, "typed");
    EXPECT_EQ(result.photos[1].captionProvenance, Provenance::user);
    EXPECT_EQ(result.photos[2].caption, "theirs");
    EXPECT_EQ(result.photos[3].caption, "theirs");
}

TEST(ThreeWayMergeTest, TheUsersLocationAndSelectionHoldOverProposals) {
    Three three{projectOf({1, 2})};
    three.mine.applyProposedLocation({"Porto", "Portugal", Provenance::geocoded}, uuid(1));
    three.mine.applyProposedSelection(false, std::nullopt, std::nullopt, uuid(1));
    three.theirs.userSetLocation(ResolvedLocation{"Lisbon", std::nullopt}, uuid(1));
    three.theirs.userSetSelection(true, uuid(1));
    three.mine.userSetLocation(ResolvedLocation{"Faro", std::nullopt}, uuid(2));
    three.theirs.applyProposedLocation({"Porto", "Portugal", Provenance::geocoded}, uuid(2));
    const Project result = three.merged();
    EXPECT_EQ(result.photos[0].location->city, "Lisbon");
    EXPECT_TRUE(result.photos[0].isSelected);
    EXPECT_EQ(result.photos[1].location->city, "Faro");
}

TEST(ThreeWayMergeTest, WhatTheUserClearedMeanwhileIsNotProposedAgain) {
    Three three{projectOf({1})};
    three.base.applyGeneratedCaption("old", uuid(1));
    three.mine = three.theirs = three.base;
    three.mine.applyGeneratedCaption("new", uuid(1));
    three.theirs.userSetCaption(std::nullopt, uuid(1));
    EXPECT_EQ(three.merged().photos[0].caption, std::nullopt);
    EXPECT_EQ(three.merged().photos[0].captionProvenance, std::nullopt);
}

TEST(ThreeWayMergeTest, RemovedByEitherIsRemovedEvenWhenTheOtherChangedIt) {
    Three three{projectOf({1, 2, 3, 4})};
    three.mine.removePhotos({uuid(1)});
    three.mine.applyGeneratedCaption("paid", uuid(3));
    three.theirs.removePhotos({uuid(3)});
    three.theirs.userSetCaption("typed", uuid(1));
    EXPECT_EQ(order(three.merged()), uuids({2, 4}));
}

TEST(ThreeWayMergeTest, AddedByEitherIsKeptInTheOrderOfTime) {
    Three three{projectOf({2, 5, 8})};
    for (const int number : {4, 9})
        three.mine.photos.push_back(dated(number));
    three.theirs.photos.insert(three.theirs.photos.begin(), dated(1));
    EXPECT_EQ(order(three.merged()), uuids({1, 2, 4, 5, 8, 9}));
    std::swap(three.mine, three.theirs);
    EXPECT_EQ(order(three.merged()), uuids({1, 2, 4, 5, 8, 9}));
}

TEST(ThreeWayMergeTest, UnderAManualOrderWhatIAddedComesLast) {
    Three three{projectOf({2, 5, 8})};
    three.mine.photos.insert(three.mine.photos.begin(), dated(1));
    three.theirs.userMovePhotos({2}, 0);
    EXPECT_EQ(order(three.merged()), uuids({8, 2, 5, 1}));
    EXPECT_TRUE(three.merged().usesManualOrder);
}

TEST(ThreeWayMergeTest, AnOrderMadeByHandHoldsOverWhatSortedItselfMeanwhile) {
    Three three{projectOf({1, 2, 3})};
    three.base.photos = {dated(2), dated(1), dated(3)};
    three.mine = three.theirs = three.base;
    three.mine.userMovePhotos({2}, 0);
    three.theirs.applyChronologicalOrder();
    EXPECT_EQ(order(three.merged()), uuids({3, 2, 1}));
    std::swap(three.mine, three.theirs);
    EXPECT_EQ(order(three.merged()), uuids({3, 2, 1}));
}

TEST(ThreeWayMergeTest, SortedByDateAgainItIsSortedWithWhatCame) {
    Three three{projectOf({3, 1, 5})};
    three.base.markManuallyOrdered();
    three.mine = three.theirs = three.base;
    three.mine.photos.push_back(dated(2));
    three.theirs.userSortByDate();
    EXPECT_EQ(order(three.merged()), uuids({1, 2, 3, 5}));
    EXPECT_FALSE(three.merged().usesManualOrder);
}

TEST(ThreeWayMergeTest, SettingsAreMergedOneByOneAndTheirsHoldWhereBothChangedOne) {
    Three three{projectOf({})};
    three.base.settings.photoDuration = 3;
    three.mine = three.theirs = three.base;
    three.mine.settings.captionPrompt = "mine";
    three.mine.settings.kenBurnsEnabled = true;
    three.mine.settings.photoDuration.reset();
    three.theirs.settings.captionPrompt = "theirs";
    three.theirs.settings.captionsEnabled = false;
    const ProjectModel::ProjectSettings result = three.merged().settings;
    EXPECT_EQ(result.captionPrompt, "theirs");
    EXPECT_EQ(result.kenBurnsEnabled, true);
    EXPECT_EQ(result.captionsEnabled, false);
    EXPECT_EQ(result.photoDuration, std::nullopt);
}

TEST(ThreeWayMergeTest, MusicOfEitherIsKeptAndTheirsWhereBothChoseSome) {
    Three three{projectOf({})};
    three.mine.userSetMusic(ProjectModel::MusicSelection{{1}, "mine.mp3"});
    EXPECT_EQ(three.merged().music->displayName, "mine.mp3");
    three.theirs.userSetMusic(ProjectModel::MusicSelection{{2}, "theirs.mp3"});
    EXPECT_EQ(three.merged().music->displayName, "theirs.mp3");
}

TEST(ThreeWayMergeTest, SourcesOfBothAreKeptAndRemovedOnesAreGone) {
    const auto source = [](int number) {
        return ProjectModel::PhotoSource{uuid(number),
                                         ProjectModel::FolderSourceRef{{1}, "/" + std::to_string(number)}};
    };
    Three three{projectOf({})};
    three.base.sources = {source(1), source(2)};
    three.mine = three.theirs = three.base;
    three.mine.addSource(source(3));
    three.theirs.addSource(source(4));
    three.theirs.removeSource(uuid(1));
    EXPECT_EQ(three.merged().sources, (std::vector{source(2), source(4), source(3)}));
}

TEST(ThreeWayMergeTest, WhateverBothDidNothingAddedIsLostAndNothingRemovedComesBack) {
    for (std::uint64_t seed = 0; seed < 2000; ++seed) {
        ProjectVariations variations{seed};
        const Project base = variations.project();
        const Project mine = variations.variation(base);
        const Project theirs = variations.variation(base);
        const Project result = merged(base, mine, theirs);
        const auto count = [](const Project& project, const Uuid& id) {
            return std::ranges::count(project.photos, id, &PhotoItem::id);
        };
        for (const Project* side : {&base, &mine, &theirs, &result}) {
            for (const PhotoItem& photo : side->photos) {
                // Of equal ids the first goes with the first, so that the numbers tell.
                const auto before = count(base, photo.id);
                const auto expected = std::min({before, count(mine, photo.id), count(theirs, photo.id)}) +
                                      std::max({count(mine, photo.id) - before,
                                                count(theirs, photo.id) - before, std::ptrdiff_t{0}});
                ASSERT_EQ(count(result, photo.id), expected) << seed;
            }
        }
        ASSERT_EQ(merged(base, mine, mine).photos.size(), mine.photos.size());
    }
}
