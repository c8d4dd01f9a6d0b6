// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/PhotoEvidence.h>
#include <Support/TestPhotos.h>

#include <gtest/gtest.h>

namespace {

using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::Provenance;

PhotoItem taken(int number, int second, const char* city, Provenance provenance) {
    PhotoItem photo = TestPhotos::item(number);
    photo.captureDate = Foundation::Instant{std::chrono::seconds{second}};
    photo.location = ProjectModel::ResolvedLocation{city, "Portugal", provenance};
    return photo;
}

PhotoItem scored(int number, std::optional<double> score) {
    PhotoItem photo = TestPhotos::item(number);
    photo.clusterID = TestPhotos::uuid(99);
    photo.qualityScore = score;
    return photo;
}

TEST(PhotoEvidence, NamesTheNeighboursThatGaveAPlace) {
    Project project;
    project.photos = {taken(1, 0, "Lisbon", Provenance::geocoded),
                      taken(2, 3600, "Sintra", Provenance::geocoded),
                      taken(3, 3600 + 60, "Sintra", Provenance::inferred),
                      taken(4, 3600 + 720, "Sintra", Provenance::inferred),
                      taken(5, 3600 + 1200, "Sintra", Provenance::geocoded)};
    EXPECT_EQ(Document::placeEvidence(project, project.photos[3]),
              "between Sintra 12 min before and Sintra 8 min after");
    EXPECT_EQ(Document::placeEvidence(project, project.photos[2]),
              "between Sintra 1 min before and Sintra 19 min after");
}

TEST(PhotoEvidence, TellsSecondsAndHoursApart) {
    Project project;
    project.photos = {taken(1, 0, "Porto", Provenance::geocoded), taken(2, 40, "Porto", Provenance::inferred),
                      taken(3, 40 + 3 * 3600 + 300, "Porto", Provenance::user)};
    EXPECT_EQ(Document::placeEvidence(project, project.photos[1]),
              "between Porto 40 s before and Porto 3 h 5 min after");
}

TEST(PhotoEvidence, NamesNoNeighbourWhoseOwnPlaceChangedSince) {
    Project project;
    project.photos = {taken(1, 0, "Cascais", Provenance::user), taken(2, 600, "Sintra", Provenance::inferred),
                      taken(3, 900, "Sintra", Provenance::geocoded)};
    EXPECT_EQ(Document::placeEvidence(project, project.photos[1]), "from photos taken about the same time");
}

TEST(PhotoEvidence, TellsWhoSetAPlace) {
    Project project;
    project.photos = {taken(1, 0, "Lisbon", Provenance::geocoded), taken(2, 1, "Lisbon", Provenance::user),
                      TestPhotos::item(3)};
    EXPECT_EQ(Document::placeEvidence(project, project.photos[0]), "from the photo’s GPS position");
    EXPECT_EQ(Document::placeEvidence(project, project.photos[1]), "set by you");
    EXPECT_EQ(Document::placeEvidence(project, project.photos[2]), "");
}

TEST(PhotoEvidence, FindsTheShotsOfAGroupInTheirOrder) {
    Project project;
    project.photos = {scored(3, 0.5), TestPhotos::item(1), scored(2, 0.7)};
    const auto group = Document::groupOf(project, TestPhotos::uuid(2));
    ASSERT_EQ(group.size(), 2U);
    EXPECT_EQ(group[0].id, TestPhotos::uuid(3));
    EXPECT_EQ(group[1].id, TestPhotos::uuid(2));
    EXPECT_TRUE(Document::groupOf(project, TestPhotos::uuid(1)).empty());
    EXPECT_TRUE(Document::groupOf(project, TestPhotos::uuid(50)).empty());
}

TEST(PhotoEvidence, ComparesAShotWithItsGroup) {
    const std::vector<PhotoItem> group{scored(1, 0.42), scored(2, 0.823), scored(3, 0.78)};
    EXPECT_EQ(Document::placeInGroup(Document::standing(group, group[1])), "Best of 3 similar shots");
    EXPECT_EQ(Document::quality(Document::standing(group, group[1])), "Quality 82 of 100");
    EXPECT_EQ(Document::placeInGroup(Document::standing(group, group[2])), "2nd of 3 similar shots");
    EXPECT_EQ(Document::quality(Document::standing(group, group[2])), "Quality 78 of 100, 4 below the best");
    EXPECT_EQ(Document::placeInGroup(Document::standing(group, group[0])), "3rd of 3 similar shots");
}

TEST(PhotoEvidence, ClaimsNoPlaceWhileShotsWereNotCompared) {
    const std::vector<PhotoItem> group{scored(1, 0.42), scored(2, std::nullopt)};
    EXPECT_EQ(Document::placeInGroup(Document::standing(group, group[0])),
              "One of 2 similar shots, not compared yet");
    EXPECT_EQ(Document::quality(Document::standing(group, group[0])), "Quality 42 of 100");
    EXPECT_EQ(Document::quality(Document::standing(group, group[1])), "");
}

} // namespace
