// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/Project.h>
#include <ProjectModel/RandomProject.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

namespace ProjectModel {
namespace {

using Foundation::Instant;
using std::chrono::seconds;

void merge(Project& project, const std::vector<PhotoItem>& incoming) {
    Foundation::BookmarkResolver resolver;
    IdentityKeys keys = identityKeys(project.photos, resolver);
    keys.merge(identityKeys(incoming, resolver));
    project.mergeImportedPhotos(incoming, keys);
}

/// A library photo that is told apart by its name, taken `second` seconds after midnight, or undated.
PhotoItem photo(const std::string& name, std::optional<int> second = std::nullopt) {
    static Testing::RandomProject random{21};
    PhotoItem item = random.photo();
    item.source = LibraryPhotoRef{.localIdentifier = name};
    item.captureDate = second ? std::optional{Instant{seconds{*second}}} : std::nullopt;
    return item;
}

std::vector<std::string> namesOf(const Project& project) {
    std::vector<std::string> names;
    for (const PhotoItem& item : project.photos)
        names.push_back(std::get<LibraryPhotoRef>(item.source).localIdentifier);
    return names;
}

using Names = std::vector<std::string>;

// Chronological order

TEST(ProjectOrderTest, PutsDatedPhotosInOrderOfTimeAndUndatedOnesBehindThem) {
    Project project;
    project.photos = {photo("undated 1"), photo("late", 30), photo("undated 2"), photo("early", 10)};
    project.applyChronologicalOrder();
    EXPECT_EQ(namesOf(project), (Names{"early", "late", "undated 1", "undated 2"}));
}

TEST(ProjectOrderTest, KeepsTheOrderOfPhotosOfOneInstantAndMovesAnUndatedFirstPhotoBehind) {
    Project project;
    project.photos = {photo("undated"), photo("c", 5), photo("a", 5), photo("b", 5)};
    project.applyChronologicalOrder();
    EXPECT_EQ(namesOf(project), (Names{"c", "a", "b", "undated"}));
}

TEST(ProjectOrderTest, LeavesAProjectWithoutDatesAsItIs) {
    Project project;
    project.photos = {photo("c"), photo("a"), photo("b")};
    project.applyChronologicalOrder();
    EXPECT_EQ(namesOf(project), (Names{"c", "a", "b"}));
}

TEST(ProjectOrderTest, DoesNothingUnderAManualOrder) {
    Project project;
    project.photos = {photo("late", 30), photo("undated"), photo("early", 10)};
    project.usesManualOrder = true;
    project.applyChronologicalOrder();
    EXPECT_EQ(namesOf(project), (Names{"late", "undated", "early"}));
}

TEST(ProjectOrderTest, PutsDatesBeforeTheEpochFirst) {
    Project project;
    project.photos = {photo("1970", 0), photo("1969", -86'400)};
    project.applyChronologicalOrder();
    EXPECT_EQ(namesOf(project), (Names{"1969", "1970"}));
}

TEST(ProjectOrderTest, SortsAnyProjectStablyAndLosesNothing) {
    Testing::RandomProject random{22};
    for (int i = 0; i < 300; ++i) {
        const Project before = random.project(40);
        Project after = before;
        after.applyChronologicalOrder();
        if (before.usesManualOrder) {
            ASSERT_EQ(after, before);
            continue;
        }
        const auto positionBefore = [&](const PhotoItem& item) {
            return std::find(before.photos.begin(), before.photos.end(), item) - before.photos.begin();
        };
        ASSERT_EQ(after.photos.size(), before.photos.size());
        for (std::size_t j = 1; j < after.photos.size(); ++j) {
            const PhotoItem& a = after.photos[j - 1];
            const PhotoItem& b = after.photos[j];
            ASSERT_TRUE(a.captureDate || !b.captureDate);
            if (a.captureDate && b.captureDate) {
                ASSERT_LE(*a.captureDate, *b.captureDate);
            }
            if (a.captureDate == b.captureDate) {
                ASSERT_LT(positionBefore(a), positionBefore(b));
            }
        }
        Project again = after;
        again.applyChronologicalOrder();
        ASSERT_EQ(again, after);
    }
}

// Merging

/// As a folder import makes them: the references lead to the files, all else differs from import to import.
std::vector<PhotoItem> photosOfFiles(const TemporaryFolder& folder, const Names& names, std::uint64_t seed) {
    Testing::RandomProject random{seed};
    std::vector<PhotoItem> photos;
    for (const std::string& name : names) {
        photos.push_back(random.photo());
        photos.back().source =
            FilePhotoRef{.bookmark = Foundation::makeBookmark(folder / name).value(), .displayName = name};
    }
    return photos;
}

TEST(ProjectImportTest, ImportingTheSameFolderTwiceAddsNothingAndTouchesNothing) {
    const TemporaryFolder folder;
    const Names names{"a.jpg", "b.jpg", "c.jpg"};
    for (const std::string& name : names)
        std::ofstream{folder / name} << name;

    Project project;
    merge(project, photosOfFiles(folder, names, 1));
    ASSERT_EQ(project.photos.size(), 3U);
    project.userSetCaption("mine", project.photos[1].id);
    const Project before = project;
    merge(project, photosOfFiles(folder, names, 2));
    EXPECT_EQ(project, before);
}

TEST(ProjectImportTest, AFileThatWasRenamedSinceItsImportIsNotAddedAgain) {
    const TemporaryFolder folder;
    std::ofstream{folder / "a.jpg"} << "a";
    Project project;
    merge(project, photosOfFiles(folder, {"a.jpg"}, 1));
    const Project before = project;
    std::filesystem::rename(folder / "a.jpg", folder / "renamed.jpg");
    merge(project, photosOfFiles(folder, {"renamed.jpg"}, 2));
    EXPECT_EQ(project, before);
}

TEST(ProjectImportTest, ABatchThatHoldsOnePhotoTwiceAddsItsFirst) {
    Project project;
    const PhotoItem first = photo("same", 1);
    merge(project, {first, photo("same", 2), photo("other", 0)});
    EXPECT_EQ(namesOf(project), (Names{"other", "same"}));
    EXPECT_EQ(project.photos[1], first);
}

TEST(ProjectImportTest, AManualOrderKeepsItsPhotosAndTakesNewOnesAtTheEndInTheOrderOfTheImport) {
    Project project;
    project.photos = {photo("z", 90), photo("y", 10), photo("x")};
    project.markManuallyOrdered();
    merge(project, {photo("n", 50), photo("y", 1), photo("m", 5)});
    EXPECT_EQ(namesOf(project), (Names{"z", "y", "x", "n", "m"}));
}

TEST(ProjectImportTest, NewPhotosTakeTheirPlaceInTime) {
    Project project;
    project.photos = {photo("a", 10), photo("c", 30)};
    merge(project, {photo("undated"), photo("b", 20)});
    EXPECT_EQ(namesOf(project), (Names{"a", "b", "c", "undated"}));
}

TEST(ProjectImportTest, APhotoIsKnownByItsReferenceAndNotByItsIdentifier) {
    Project project;
    project.photos = {photo("a", 1)};
    PhotoItem sameID = photo("b", 2);
    sameID.id = project.photos[0].id;
    merge(project, {sameID});
    EXPECT_EQ(namesOf(project), (Names{"a", "b"}));
}

TEST(ProjectImportTest, ALibraryPhotoAndAFileOfOneNameAreTwoPhotos) {
    Project project;
    project.photos = {photo("a")};
    PhotoItem file = photo("");
    file.source = FilePhotoRef{.bookmark = {'a'}, .displayName = "a"};
    merge(project, {file});
    EXPECT_EQ(project.photos.size(), 2U);
}

TEST(ProjectImportTest, AnEmptyImportStillRestoresTheOrder) {
    Project project;
    project.photos = {photo("b", 2), photo("a", 1)};
    merge(project, {});
    EXPECT_EQ(namesOf(project), (Names{"a", "b"}));
}

TEST(ProjectImportTest, AnyMergeKeepsEveryKeyOnceAndThePhotosThatWereThere) {
    Testing::RandomProject random{23};
    for (int i = 0; i < 300; ++i) {
        Project before;
        before.usesManualOrder = random.chance(0.5);
        std::set<std::string> keys;
        for (std::size_t j = random.below(8); j > 0; --j) {
            before.photos.push_back(random.photo());
            before.photos.back().source = LibraryPhotoRef{.localIdentifier = std::to_string(j)};
            keys.insert(std::to_string(j));
        }
        std::vector<PhotoItem> incoming;
        for (std::size_t j = random.below(12); j > 0; --j) {
            const std::string name = std::to_string(random.below(16));
            incoming.push_back(random.photo());
            incoming.back().source = LibraryPhotoRef{.localIdentifier = name};
            keys.insert(name);
        }
        Project after = before;
        merge(after, incoming);
        const Names names = namesOf(after);
        ASSERT_EQ(std::set<std::string>(names.begin(), names.end()), keys);
        ASSERT_EQ(names.size(), keys.size());
        for (const PhotoItem& item : before.photos)
            ASSERT_NE(std::find(after.photos.begin(), after.photos.end(), item), after.photos.end());
        if (before.usesManualOrder) {
            ASSERT_TRUE(std::equal(before.photos.begin(), before.photos.end(), after.photos.begin()));
        }
        ASSERT_EQ(after.sources, before.sources);

        const Project once = after;
        merge(after, incoming);
        ASSERT_EQ(after, once);
    }
}

} // namespace
} // namespace ProjectModel
