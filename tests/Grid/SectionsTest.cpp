// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Grid/Sections.h>

#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <vector>

namespace {

using Foundation::makeInstant;
using Grid::Section;
using ProjectModel::PhotoItem;

std::vector<Section> sections(const std::vector<PhotoItem>& photos) {
    return Grid::sectionsOf(photos, std::vector<bool>(photos.size(), true), QTimeZone::utc());
}

TEST(Sections, FollowTheChaptersOfTheFilm) {
    const std::vector<Section> all =
        sections({GridPhotos::photo(0, "Lisbon"), GridPhotos::photo(1), GridPhotos::photo(2, "Sintra"),
                  GridPhotos::photo(3, "Lisbon")});
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0], (Section{0, 2, "Lisbon", "2 of 2 selected"}));
    EXPECT_EQ(all[1], (Section{2, 1, "Sintra", "1 of 1 selected"}));
    EXPECT_EQ(all[2], (Section{3, 1, "Lisbon", "1 of 1 selected"}));
}

TEST(Sections, APhotoLeftOutStaysWhereItStands) {
    const std::vector<Section> all =
        sections({GridPhotos::photo(0, "Lisbon"), GridPhotos::photo(1, "Porto", false),
                  GridPhotos::photo(2, "Lisbon")});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0], (Section{0, 3, "Lisbon", "2 of 3 selected"}));
}

TEST(Sections, PhotosOfTheFilmBeforeTheFirstPlaceHaveTheirOwn) {
    const std::vector<Section> all = sections({GridPhotos::photo(0), GridPhotos::photo(1, "Lisbon")});
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].title, "No place yet");
    EXPECT_EQ(all[1].title, "Lisbon");
}

TEST(Sections, PhotosLeftOutBeforeTheFirstChapterBelongToIt) {
    const std::vector<Section> all =
        sections({GridPhotos::photo(0, "Lisbon", false), GridPhotos::photo(1, "Lisbon")});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0].title, "Lisbon");
    EXPECT_EQ(all[0].count, 2U);
}

TEST(Sections, WhereNothingIsInTheFilmThereIsOneThatSaysSo) {
    const std::vector<Section> all = sections({GridPhotos::photo(0, "Lisbon", false)});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all[0], (Section{0, 1, "Left out", "0 of 1 selected"}));
    EXPECT_TRUE(sections({}).empty());
}

TEST(Sections, HiddenPhotosBeginChaptersButAreNotCounted) {
    const std::vector<PhotoItem> photos = {
        GridPhotos::photo(0, "Lisbon"), GridPhotos::photo(1, "Lisbon"), GridPhotos::photo(2, "Sintra"),
        GridPhotos::photo(3, "Sintra", false), GridPhotos::photo(4, "Porto")};
    const std::vector<Section> all =
        Grid::sectionsOf(photos, {false, true, false, true, false}, QTimeZone::utc());
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0], (Section{0, 1, "Lisbon", "1 of 1 selected"}));
    EXPECT_EQ(all[1], (Section{1, 1, "Sintra", "0 of 1 selected"}));
}

TEST(Sections, TellYearsOnlyWhereThereAreSeveral) {
    std::vector<PhotoItem> photos = {GridPhotos::photo(0, "Lisbon"), GridPhotos::photo(1, "Lisbon"),
                                     GridPhotos::photo(2, "Sintra")};
    photos[0].captureDate = makeInstant(2024, 5, 14, 8, 0, 0);
    photos[1].captureDate = makeInstant(2024, 5, 16, 8, 0, 0);
    photos[2].captureDate = makeInstant(2024, 5, 17, 8, 0, 0);
    EXPECT_EQ(sections(photos)[0].details, "14 to 16 May · 2 of 2 selected");
    photos[2].captureDate = makeInstant(2025, 5, 17, 8, 0, 0);
    EXPECT_EQ(sections(photos)[0].details, "14 to 16 May 2024 · 2 of 2 selected");
    EXPECT_EQ(sections(photos)[1].details, "17 May 2025 · 1 of 1 selected");
}

TEST(PhotoText, DatesLeaveOutWhatFirstAndLastShare) {
    const auto dates = [](std::optional<Foundation::Instant> first, std::optional<Foundation::Instant> last) {
        return Grid::PhotoText::dates({*first, *last}, false, QTimeZone::utc());
    };
    EXPECT_EQ(dates(makeInstant(2024, 5, 14, 8, 0, 0), makeInstant(2024, 5, 14, 20, 0, 0)), "14 May");
    EXPECT_EQ(dates(makeInstant(2024, 5, 14, 8, 0, 0), makeInstant(2024, 5, 16, 8, 0, 0)), "14 to 16 May");
    EXPECT_EQ(dates(makeInstant(2024, 4, 30, 8, 0, 0), makeInstant(2024, 5, 2, 8, 0, 0)),
              "30 April to 2 May");
    EXPECT_EQ(dates(makeInstant(2023, 12, 30, 8, 0, 0), makeInstant(2024, 1, 2, 8, 0, 0)),
              "30 December 2023 to 2 January 2024");
}

TEST(PhotoText, DatesAreThoseOfTheZone) {
    const auto late = makeInstant(2024, 5, 14, 23, 30, 0);
    EXPECT_EQ(Grid::PhotoText::dates({*late, *late}, false, QTimeZone{7200}), "15 May");
}

} // namespace
