// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ReviewModel.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

#include <vector>

using Document::ProjectDocument;
using Document::ReviewModel;
using Foundation::Uuid;
using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;
using TestPhotos::item;
using TestPhotos::uuid;

namespace {

Project projectOf(int count) {
    Project project;
    for (int number = 1; number <= count; ++number)
        project.photos.push_back(item(number, "/photos/" + std::to_string(number) + ".jpg"));
    return project;
}

std::vector<Uuid> order(const Project& project) {
    std::vector<Uuid> ids;
    for (const PhotoItem& photo : project.photos)
        ids.push_back(photo.id);
    return ids;
}

} // namespace

TEST(ReviewModelTest, CaptionOfOnlySpacesAndNewlinesClearsCaptionAndProvenance) {
    ProjectDocument document{projectOf(1)};
    ReviewModel review{document};
    review.setCaption("Sintra", uuid(1));
    review.setCaption(" \n\t \r\n", uuid(1));
    EXPECT_EQ(document.project().photos[0].caption, std::nullopt);
    EXPECT_EQ(document.project().photos[0].captionProvenance, std::nullopt);
}

TEST(ReviewModelTest, CaptionWithSpacesAroundAWordIsStoredAsTheWordByTheUser) {
    ProjectDocument document{projectOf(1)};
    ReviewModel{document}.setCaption("  Sintra\n", uuid(1));
    EXPECT_EQ(document.project().photos[0].caption, "Sintra");
    EXPECT_EQ(document.project().photos[0].captionProvenance, Provenance::user);
}

TEST(ReviewModelTest, UnicodeSpacesAreTrimmedLikeOrdinaryOnes) {
    ProjectDocument document{projectOf(1)};
    // No-break space, em space, ideographic space, line separator, next line.
    ReviewModel{document}.setCaption("\u00A0\u2003東京 の夜\u3000\u2028\u0085", uuid(1));
    EXPECT_EQ(document.project().photos[0].caption, "東京 の夜");
}

TEST(ReviewModelTest, WhiteSpaceInsideACaptionStays) {
    ProjectDocument document{projectOf(1)};
    ReviewModel{document}.setCaption("two  words\nand a line", uuid(1));
    EXPECT_EQ(document.project().photos[0].caption, "two  words\nand a line");
}

TEST(ReviewModelTest, LaterGeneratedCaptionsLeaveTheUsersAlone) {
    ProjectDocument document{projectOf(1)};
    ReviewModel{document}.setCaption("mine", uuid(1));
    document.edit("Generate", [](Project& project) { project.applyGeneratedCaption("generated", uuid(1)); });
    EXPECT_EQ(document.project().photos[0].caption, "mine");
}

TEST(ReviewModelTest, MovingAPhotoOnceSetsManualOrderAndAFollowingImportKeepsTheHandMadeOrder) {
    ProjectDocument document{projectOf(3)};
    ReviewModel{document}.movePhotos({2}, 0);
    EXPECT_TRUE(document.project().usesManualOrder);
    EXPECT_EQ(order(document.project()), (std::vector{uuid(3), uuid(1), uuid(2)}));

    PhotoItem early = item(9, "/photos/9.jpg");
    early.captureDate = Foundation::makeInstant(1999, 1, 1, 0, 0, 0);
    document.edit("Import", [&](Project& project) { project.mergeImportedPhotos({early}, {}); });
    EXPECT_EQ(order(document.project()), (std::vector{uuid(3), uuid(1), uuid(2), uuid(9)}));
}

TEST(ReviewModelTest, MovesABlockInItsFormerOrder) {
    ProjectDocument document{projectOf(5)};
    ReviewModel{document}.movePhotos({0, 1}, 4);
    EXPECT_EQ(order(document.project()), (std::vector{uuid(3), uuid(4), uuid(1), uuid(2), uuid(5)}));
}

TEST(ReviewModelTest, TogglingAnUnknownIdentifierChangesNothing) {
    const Project before = projectOf(2);
    ProjectDocument document{before};
    ReviewModel{document}.toggleSelection(uuid(77));
    EXPECT_EQ(document.project(), before);
}

TEST(ReviewModelTest, TogglingFlipsTheSelectionAsTheUsersDecision) {
    ProjectDocument document{projectOf(2)};
    ReviewModel review{document};
    review.toggleSelection(uuid(2));
    EXPECT_FALSE(document.project().photos[1].isSelected);
    EXPECT_EQ(document.project().photos[1].selectionProvenance, Provenance::user);
    EXPECT_EQ(document.project().photos[0], item(1, "/photos/1.jpg"));
    review.toggleSelection(uuid(2));
    EXPECT_TRUE(document.project().photos[1].isSelected);
    EXPECT_EQ(document.project().photos[1].selectionProvenance, Provenance::user);
}

TEST(ReviewModelTest, SelectedCountOfAnEmptyProjectIsZero) {
    ProjectDocument document;
    EXPECT_EQ(ReviewModel{document}.selectedCount(), 0U);
}

TEST(ReviewModelTest, SelectedCountCountsSelectedPhotosOnly) {
    ProjectDocument document{projectOf(3)};
    ReviewModel review{document};
    review.setSelection(false, {uuid(1), uuid(55)});
    EXPECT_EQ(review.selectedCount(), 2U);
}

TEST(ReviewModelTest, NamesOfPlacesAreTrimmedAndBlankOnesAreNone) {
    ProjectDocument document{projectOf(1)};
    ReviewModel review{document};
    review.setPlace(" Ponta  Delgada\n", "\t\u00A0Portugal ", {uuid(1)});
    EXPECT_EQ(document.project().photos[0].location,
              (ProjectModel::ResolvedLocation{"Ponta  Delgada", "Portugal", Provenance::user}));
    review.setPlace(" \n", "Portugal", {uuid(1)});
    EXPECT_EQ(document.project().photos[0].location,
              (ProjectModel::ResolvedLocation{std::nullopt, "Portugal", Provenance::user}));
    review.setPlace("", " ", {uuid(1)});
    EXPECT_FALSE(document.project().photos[0].location);
}

TEST(ReviewModelTest, PlaceIsTheUsersAndIsClearedByNamingNothing) {
    ProjectDocument document{projectOf(1)};
    ReviewModel review{document};
    review.setPlace("Sintra", std::nullopt, {uuid(1)});
    EXPECT_EQ(document.project().photos[0].location,
              (ProjectModel::ResolvedLocation{"Sintra", std::nullopt, Provenance::user}));
    review.setPlace(std::nullopt, std::nullopt, {uuid(1)});
    EXPECT_EQ(document.project().photos[0].location, std::nullopt);
}

TEST(ReviewModelTest, RemovesOnlyTheNamedPhotos) {
    ProjectDocument document{projectOf(3)};
    ReviewModel{document}.removePhotos({uuid(2), uuid(42)});
    EXPECT_EQ(order(document.project()), (std::vector{uuid(1), uuid(3)}));
}

TEST(ReviewModelTest, EveryChangeIsOneStepThatTellsItsName) {
    ProjectDocument document{projectOf(3)};
    ReviewModel review{document};
    std::vector<std::string> names;
    const ProjectDocument::Subscription listening = document.addListener(
        [&](const Document::ProjectDifference&) { names.push_back(document.undoName().value_or("")); });
    review.toggleSelection(uuid(1));
    review.setSelection(true, {uuid(1), uuid(2)});
    review.setCaption("x", uuid(1));
    review.movePhotos({1}, 0);
    review.sortByDate();
    review.setPlace("Sintra", std::nullopt, {uuid(1), uuid(2)});
    review.setPlace("", "", {uuid(1)});
    review.removePhotos({uuid(1), uuid(3)});
    EXPECT_EQ(names, (std::vector<std::string>{"Leave Out 1 Photo", "Select 2 Photos", "Edit Caption",
                                               "Move 1 Photo", "Sort by Date", "Set Place", "Clear Place",
                                               "Remove 2 Photos"}));
}

TEST(ReviewModelTest, TypingInOneCaptionIsOneStepAndInAnotherTheNext) {
    const Project before = projectOf(2);
    ProjectDocument document{before};
    ReviewModel review{document};
    for (const char* text : {"S", "Si", "Sin"})
        review.setCaption(text, uuid(1));
    review.setCaption("B", uuid(2));
    document.undo();
    EXPECT_EQ(document.project().photos[0].caption, "Sin");
    document.undo();
    EXPECT_EQ(document.project(), before);
    EXPECT_FALSE(document.canUndo());
}
