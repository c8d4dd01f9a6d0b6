// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/IdentityKeys.h>
#include <ProjectModel/Project.h>
#include <ProjectModel/RandomProject.h>
#include <Support/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace ProjectModel {
namespace {

const PhotoRef album = LibraryPhotoRef{.localIdentifier = "album/1"};
const PhotoRef file = FilePhotoRef{.bookmark = {'/', 'a'}, .displayName = "a"};

PhotoItem photoOf(const PhotoRef& ref) {
    static Testing::RandomProject random{41};
    PhotoItem photo = random.photo();
    photo.source = ref;
    return photo;
}

TEST(IdentityKeysTest, FindsTheKeyOfAReferenceAndNothingForAnother) {
    IdentityKeys keys;
    keys.add(album, "one");
    keys.add(file, "two");
    ASSERT_NE(keys.find(album), nullptr);
    EXPECT_EQ(*keys.find(album), "one");
    EXPECT_EQ(*keys.find(file), "two");
    EXPECT_EQ(keys.find(FilePhotoRef{.bookmark = {'/', 'a'}, .displayName = "b"}), nullptr);
    EXPECT_EQ(keys.find(LibraryPhotoRef{.localIdentifier = "/a"}), nullptr);
}

TEST(IdentityKeysTest, AKeyThatIsKnownStays) {
    IdentityKeys keys;
    keys.add(album, "first");
    keys.add(album, "second");
    IdentityKeys other;
    other.add(album, "third");
    other.add(file, "file");
    keys.merge(std::move(other));
    EXPECT_EQ(*keys.find(album), "first");
    EXPECT_EQ(*keys.find(file), "file");
}

TEST(IdentityKeysTest, TellsWhichPhotosHaveNone) {
    IdentityKeys keys;
    keys.add(album, "key");
    const std::vector<PhotoItem> photos{photoOf(file), photoOf(album)};
    EXPECT_EQ(keys.missing(photos), std::vector{photos[0]});
}

TEST(IdentityKeysTest, WorkedOutTheyAreTheKeysThatTheDiskGives) {
    const TemporaryFolder folder;
    std::ofstream{folder / "a.jpg"} << "a";
    const PhotoRef before =
        FilePhotoRef{.bookmark = Foundation::makeBookmark(folder / "a.jpg").value(), .displayName = "a.jpg"};
    std::filesystem::rename(folder / "a.jpg", folder / "b.jpg");
    Foundation::BookmarkResolver resolver;
    const std::vector<PhotoItem> photos{photoOf(before), photoOf(album)};
    const IdentityKeys keys = identityKeys(photos, resolver);
    EXPECT_EQ(*keys.find(before), "file:" + (folder / "b.jpg").string());
    EXPECT_EQ(*keys.find(album), storedIdentityKey(album));
}

TEST(IdentityKeysTest, AnImportAsksNothingOfTheDiskAndGoesByTheKeysItIsGiven) {
    Project project;
    project.photos = {photoOf(album)};
    const PhotoItem same = photoOf(file);
    IdentityKeys keys;
    keys.add(album, "the same photo");
    keys.add(file, "the same photo");
    project.mergeImportedPhotos({same}, keys);
    EXPECT_EQ(project.photos.size(), 1U);
    // Without keys, what the references themselves tell has to do.
    project.mergeImportedPhotos({same, same}, {});
    EXPECT_EQ(project.photos.size(), 2U);
}

} // namespace
} // namespace ProjectModel
