// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Project.h>
#include <ProjectModel/RandomProject.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace ProjectModel {
namespace {

using Foundation::Uuid;

Uuid numbered(std::uint8_t number) {
    return {{number}};
}

PhotoItem photoNumbered(std::uint8_t number) {
    return {
        .id = numbered(number),
        .source = LibraryPhotoRef{.localIdentifier = std::to_string(number)},
        .captureDate = std::nullopt,
        .coordinate = std::nullopt,
        .location = std::nullopt,
        .clusterID = std::nullopt,
        .qualityScore = std::nullopt,
        .caption = std::nullopt,
        .captionProvenance = std::nullopt,
        .isSelected = true,
        .selectionProvenance = Provenance::proposed,
        .isMissing = false,
        .sourceID = std::nullopt,
    };
}

Project projectOfThree() {
    Project project;
    project.photos = {photoNumbered(1), photoNumbered(2), photoNumbered(3)};
    return project;
}

const ResolvedLocation lisbon{.city = "Lisbon", .country = "Portugal", .provenance = Provenance::geocoded};
const ResolvedLocation rome{.city = "Rome", .country = "Italy", .provenance = Provenance::inferred};

// Records

TEST(ProjectTest, EmptyIsAProjectOfTheCurrentVersionWithNothingInIt) {
    EXPECT_EQ(Project::currentSchemaVersion, 2);
    EXPECT_EQ(Project::empty(), (Project{.schemaVersion = 2,
                                         .sources = {},
                                         .photos = {},
                                         .settings = {.photoDuration = std::nullopt,
                                                      .kenBurnsEnabled = std::nullopt,
                                                      .captionsEnabled = std::nullopt,
                                                      .aiCaptionsEnabled = std::nullopt,
                                                      .chapterStyle = std::nullopt,
                                                      .aiProvider = std::nullopt,
                                                      .captionPrompt = std::nullopt},
                                         .music = std::nullopt,
                                         .usesManualOrder = false}));
}

TEST(ProjectTest, PhotosThatDifferInAnySingleFieldAreUnequal) {
    const PhotoItem photo = photoNumbered(1);
    const std::vector<std::function<void(PhotoItem&)>> changes{
        [](PhotoItem& p) { p.id = numbered(2); },
        [](PhotoItem& p) { p.source = FilePhotoRef{}; },
        [](PhotoItem& p) { p.captureDate = Foundation::Instant{}; },
        [](PhotoItem& p) { p.coordinate = Coordinate{}; },
        [](PhotoItem& p) { p.location = ResolvedLocation{}; },
        [](PhotoItem& p) { p.clusterID = Uuid{}; },
        [](PhotoItem& p) { p.qualityScore = 0; },
        [](PhotoItem& p) { p.caption = ""; },
        [](PhotoItem& p) { p.captionProvenance = Provenance::proposed; },
        [](PhotoItem& p) { p.isSelected = false; },
        [](PhotoItem& p) { p.selectionProvenance = Provenance::user; },
        [](PhotoItem& p) { p.isMissing = true; },
        [](PhotoItem& p) { p.sourceID = Uuid{}; },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        PhotoItem changed = photo;
        changes[i](changed);
        EXPECT_NE(changed, photo) << "field " << i + 1;
    }
}

TEST(ProjectTest, PhotosThatDifferOnlyInTheirSourceIdentifierAreUnequal) {
    PhotoItem a = photoNumbered(1);
    PhotoItem b = a;
    a.sourceID = numbered(8);
    EXPECT_NE(a, b);
    b.sourceID = numbered(9);
    EXPECT_NE(a, b);
    b.sourceID = numbered(8);
    EXPECT_EQ(a, b);
}

// Operations that name a photo

TEST(ProjectTest, AnUnknownPhotoChangesNothingInAnyOperation) {
    Testing::RandomProject random{2};
    for (int i = 0; i < 50; ++i) {
        const Project before = random.project();
        const Uuid unknown = random.uuid();
        Project after = before;
        after.applyProposedLocation(lisbon, unknown);
        after.applyProposedSelection(false, numbered(1), 0.5, unknown);
        after.applyGeneratedCaption("caption", unknown);
        after.setGeneratedCaption("caption", unknown);
        after.userSetLocation(lisbon, unknown);
        after.userSetLocation(std::nullopt, unknown);
        after.userSetCaption("caption", unknown);
        after.userSetCaption(std::nullopt, unknown);
        after.userSetSelection(false, unknown);
        ASSERT_EQ(after, before);
    }
}

TEST(ProjectTest, OperationsChangeOnlyTheFirstPhotoWithTheIdentifier) {
    Project project = projectOfThree();
    project.photos[2].id = numbered(2);
    const Project before = project;
    project.userSetSelection(false, numbered(2));
    EXPECT_FALSE(project.photos[1].isSelected);
    EXPECT_EQ(project.photos[0], before.photos[0]);
    EXPECT_EQ(project.photos[2], before.photos[2]);
}

TEST(ProjectTest, AProposedLocationKeepsTheProvenanceItCarries) {
    Project project = projectOfThree();
    project.applyProposedLocation(lisbon, numbered(2));
    EXPECT_EQ(project.photos[1].location, lisbon);
    project.applyProposedLocation(rome, numbered(2));
    EXPECT_EQ(project.photos[1].location, rome);
}

TEST(ProjectTest, AProposedLocationReplacesEveryLocationButTheUsers) {
    for (const Provenance provenance : {Provenance::proposed, Provenance::geocoded, Provenance::inferred,
                                        Provenance::generated, Provenance::user}) {
        Project project = projectOfThree();
        const ResolvedLocation present{.city = "Paris", .country = std::nullopt, .provenance = provenance};
        project.photos[0].location = present;
        project.applyProposedLocation(rome, numbered(1));
        EXPECT_EQ(project.photos[0].location, provenance == Provenance::user ? present : rome);
    }
}

TEST(ProjectTest, ALocationSetByTheUserIsTheUsersAndStandsAgainstLaterProposals) {
    Project project = projectOfThree();
    project.userSetLocation(lisbon, numbered(1));
    const ResolvedLocation expected{.city = "Lisbon", .country = "Portugal", .provenance = Provenance::user};
    EXPECT_EQ(project.photos[0].location, expected);
    project.applyProposedLocation(rome, numbered(1));
    EXPECT_EQ(project.photos[0].location, expected);
}

TEST(ProjectTest, TheUserMayClearALocationAndAProposalMayThenFillItAgain) {
    Project project = projectOfThree();
    project.userSetLocation(lisbon, numbered(1));
    project.userSetLocation(std::nullopt, numbered(1));
    EXPECT_EQ(project.photos[0].location, std::nullopt);
    project.applyProposedLocation(rome, numbered(1));
    EXPECT_EQ(project.photos[0].location, rome);
}

TEST(ProjectTest, AProposedSelectionSparesTheUsersButRecordsClusterAndScore) {
    Project project = projectOfThree();
    project.userSetSelection(true, numbered(1));
    project.applyProposedSelection(false, numbered(7), 0.25, numbered(1));
    EXPECT_TRUE(project.photos[0].isSelected);
    EXPECT_EQ(project.photos[0].selectionProvenance, Provenance::user);
    EXPECT_EQ(project.photos[0].clusterID, numbered(7));
    EXPECT_EQ(project.photos[0].qualityScore, 0.25);
}

TEST(ProjectTest, AProposedSelectionLeavesTheSelectionProvenanceAsItIs) {
    for (const Provenance provenance :
         {Provenance::proposed, Provenance::geocoded, Provenance::inferred, Provenance::generated}) {
        Project project = projectOfThree();
        project.photos[0].selectionProvenance = provenance;
        project.applyProposedSelection(false, std::nullopt, std::nullopt, numbered(1));
        EXPECT_FALSE(project.photos[0].isSelected);
        EXPECT_EQ(project.photos[0].selectionProvenance, provenance);
    }
}

TEST(ProjectTest, AProposedSelectionWithoutClusterAndScoreClearsThem) {
    for (const Provenance provenance : {Provenance::proposed, Provenance::user}) {
        Project project = projectOfThree();
        project.photos[0].selectionProvenance = provenance;
        project.photos[0].clusterID = numbered(7);
        project.photos[0].qualityScore = 0.5;
        project.applyProposedSelection(true, std::nullopt, std::nullopt, numbered(1));
        EXPECT_EQ(project.photos[0].clusterID, std::nullopt);
        EXPECT_EQ(project.photos[0].qualityScore, std::nullopt);
    }
}

TEST(ProjectTest, AGeneratedCaptionOfABatchSparesTheUsersOnly) {
    Project project = projectOfThree();
    project.userSetCaption("mine", numbered(1));
    const Project before = project;
    project.applyGeneratedCaption("made up", numbered(1));
    EXPECT_EQ(project, before);

    project.applyGeneratedCaption("made up", numbered(2));
    EXPECT_EQ(project.photos[1].caption, "made up");
    EXPECT_EQ(project.photos[1].captionProvenance, Provenance::generated);
    project.applyGeneratedCaption("again", numbered(2));
    EXPECT_EQ(project.photos[1].caption, "again");

    // On disk a caption may lack its provenance; then it is nobody's.
    project.photos[2].caption = "whose?";
    project.applyGeneratedCaption("made up", numbered(3));
    EXPECT_EQ(project.photos[2].caption, "made up");
}

TEST(ProjectTest, AnEmptyCaptionOfTheUserStandsAgainstABatch) {
    Project project = projectOfThree();
    project.userSetCaption("", numbered(1));
    project.applyGeneratedCaption("made up", numbered(1));
    EXPECT_EQ(project.photos[0].caption, "");
}

TEST(ProjectTest, ACaptionAskedForExplicitlyReplacesTheUsers) {
    Project project = projectOfThree();
    project.userSetCaption("mine", numbered(1));
    project.setGeneratedCaption("made up", numbered(1));
    EXPECT_EQ(project.photos[0].caption, "made up");
    EXPECT_EQ(project.photos[0].captionProvenance, Provenance::generated);
}

TEST(ProjectTest, AnEmptyTextIsACaptionOfTheUserAndNoTextClearsBothFields) {
    Project project = projectOfThree();
    project.userSetCaption("", numbered(1));
    EXPECT_EQ(project.photos[0].caption, "");
    EXPECT_EQ(project.photos[0].captionProvenance, Provenance::user);
    project.userSetCaption(std::nullopt, numbered(1));
    EXPECT_EQ(project.photos[0].caption, std::nullopt);
    EXPECT_EQ(project.photos[0].captionProvenance, std::nullopt);
}

TEST(ProjectTest, TheUsersSelectionIsMarkedAsTheirs) {
    Project project = projectOfThree();
    project.userSetSelection(false, numbered(2));
    EXPECT_FALSE(project.photos[1].isSelected);
    EXPECT_EQ(project.photos[1].selectionProvenance, Provenance::user);
}

TEST(ProjectTest, OperationsOnOnePhotoTouchNeitherTheOthersNorTheOrder) {
    Testing::RandomProject random{3};
    for (int i = 0; i < 200; ++i) {
        const Project before = random.project();
        if (before.photos.empty())
            continue;
        const std::size_t index = random.below(before.photos.size());
        const Uuid id = before.photos[index].id;
        Project after = before;
        switch (random.below(7)) {
        case 0:
            after.applyProposedLocation(random.location(), id);
            break;
        case 1:
            after.applyProposedSelection(random.chance(0.5), random.uuid(), random.unit(), id);
            break;
        case 2:
            after.applyGeneratedCaption(random.text(), id);
            break;
        case 3:
            after.setGeneratedCaption(random.text(), id);
            break;
        case 4:
            after.userSetLocation(random.location(), id);
            break;
        case 5:
            after.userSetCaption(random.text(), id);
            break;
        default:
            after.userSetSelection(random.chance(0.5), id);
            break;
        }
        after.photos[index] = before.photos[index];
        ASSERT_EQ(after, before);
    }
}

// The whole project

TEST(ProjectTest, ResettingTheAnalysisSelectsEvenWhatTheUserDeselected) {
    Project project = projectOfThree();
    project.userSetSelection(false, numbered(1));
    project.resetAnalysisSelection();
    EXPECT_TRUE(project.photos[0].isSelected);
    EXPECT_EQ(project.photos[0].selectionProvenance, Provenance::proposed);
}

TEST(ProjectTest, ResettingTheAnalysisClearsClustersAndScoresAndKeepsTheRest) {
    Testing::RandomProject random{4};
    for (int i = 0; i < 100; ++i) {
        const Project before = random.project();
        Project expected = before;
        for (PhotoItem& photo : expected.photos) {
            photo.isSelected = true;
            photo.selectionProvenance = Provenance::proposed;
            photo.clusterID = std::nullopt;
            photo.qualityScore = std::nullopt;
        }
        Project after = before;
        after.resetAnalysisSelection();
        ASSERT_EQ(after, expected);
    }
}

TEST(ProjectTest, RemovingPhotosKeepsTheOrderOfTheOthersAndAllSources) {
    Project project = projectOfThree();
    project.sources = {{.id = numbered(9), .ref = AlbumSourceRef{}}};
    project.photos[1].sourceID = numbered(9);
    const Project before = project;
    project.removePhotos({numbered(2), numbered(77)});
    EXPECT_EQ(project.photos, (std::vector{before.photos[0], before.photos[2]}));
    EXPECT_EQ(project.sources, before.sources);
    project.removePhotos({});
    EXPECT_EQ(project.photos.size(), 2U);
}

TEST(ProjectTest, RemovingASourceTakesItsPhotosWithIt) {
    Project project = projectOfThree();
    project.sources = {{.id = numbered(8), .ref = AlbumSourceRef{}},
                       {.id = numbered(9), .ref = FolderSourceRef{}}};
    project.photos[0].sourceID = numbered(8);
    project.photos[1].sourceID = numbered(9);
    const Project before = project;
    project.removeSource(numbered(8));
    EXPECT_EQ(project.photos, (std::vector{before.photos[1], before.photos[2]}));
    EXPECT_EQ(project.sources, std::vector{before.sources[1]});
}

TEST(ProjectTest, RemovingASourceWhosePhotosDoNotKnowItRemovesTheEntryAlone) {
    Project project = projectOfThree();
    project.sources = {{.id = numbered(8), .ref = FolderSourceRef{}}};
    const std::vector<PhotoItem> photos = project.photos;
    project.removeSource(numbered(8));
    EXPECT_TRUE(project.sources.empty());
    EXPECT_EQ(project.photos, photos);
}

TEST(ProjectTest, RemovingAnUnknownSourceRemovesThePhotosThatNameItAndNothingElse) {
    Project project = projectOfThree();
    project.sources = {{.id = numbered(8), .ref = FolderSourceRef{}}};
    project.photos[1].sourceID = numbered(9);
    const Project before = project;
    project.removeSource(numbered(9));
    EXPECT_EQ(project.photos, (std::vector{before.photos[0], before.photos[2]}));
    EXPECT_EQ(project.sources, before.sources);
}

TEST(ProjectTest, ASourceMayBeRemovedByTheIdentifierInItsOwnRecord) {
    Project project = projectOfThree();
    project.sources = {{.id = numbered(8), .ref = FolderSourceRef{}},
                       {.id = numbered(9), .ref = FolderSourceRef{}}};
    project.photos[0].sourceID = numbered(8);
    project.photos[2].sourceID = numbered(9);
    project.removeSource(*project.photos[0].sourceID);
    ASSERT_EQ(project.sources.size(), 1U);
    EXPECT_EQ(project.sources[0].id, numbered(9));
    EXPECT_EQ(project.photos.size(), 2U);
}

TEST(ProjectTest, MarkingAsManuallyOrderedChangesThatAlone) {
    Project project = projectOfThree();
    Project expected = project;
    expected.usesManualOrder = true;
    project.markManuallyOrdered();
    EXPECT_EQ(project, expected);
}

} // namespace
} // namespace ProjectModel
