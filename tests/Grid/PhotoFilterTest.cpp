// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoFilter.h>

#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

namespace {

using Grid::PhotoFilter;
using Grid::PhotoMatcher;
using ProjectModel::PhotoItem;

bool finds(const QString& text, const PhotoItem& photo) {
    return PhotoMatcher{{PhotoFilter::Kind::all, text}}.matches(photo);
}

bool isOfKind(PhotoFilter::Kind kind, const PhotoItem& photo) {
    return PhotoMatcher{{kind, {}}}.matches(photo);
}

TEST(PhotoFilter, SearchesCaptionsPlacesAndFileNames) {
    PhotoItem photo = GridPhotos::photo(4711, "Lisbon");
    photo.caption = "The yellow tram";
    EXPECT_TRUE(finds("tram", photo));
    EXPECT_TRUE(finds("lisb", photo));
    EXPECT_TRUE(finds("img_4711", photo));
    EXPECT_FALSE(finds("porto", photo));
    EXPECT_TRUE(finds("   ", photo));
}

TEST(PhotoFilter, EveryWordMustBeFoundInAnyOrder) {
    PhotoItem photo = GridPhotos::photo(1, "Lisbon");
    photo.caption = "The yellow tram";
    EXPECT_TRUE(finds("lisbon yellow", photo));
    EXPECT_FALSE(finds("lisbon red", photo));
}

TEST(PhotoFilter, HeedsNeitherCapitalsNorAccents) {
    EXPECT_TRUE(finds("malaga", GridPhotos::photo(1, "Málaga")));
    EXPECT_TRUE(finds("MÁLAGA", GridPhotos::photo(1, "Malaga")));
    EXPECT_TRUE(finds("strasse", GridPhotos::photo(1, "STRASSE")));
    EXPECT_TRUE(finds("京都", GridPhotos::photo(1, "京都市")));
    EXPECT_TRUE(finds("القاهرة", GridPhotos::photo(1, "القاهرة")));
}

TEST(PhotoFilter, KindsTellPhotosApart) {
    using Kind = PhotoFilter::Kind;
    PhotoItem plain = GridPhotos::photo(1, "Lisbon");
    PhotoItem other = GridPhotos::photo(2, {}, false);
    other.clusterID = GridPhotos::id(9);
    other.isMissing = true;
    for (const Kind kind : {Kind::leftOut, Kind::withoutPlace, Kind::inGroups, Kind::missing}) {
        EXPECT_FALSE(isOfKind(kind, plain));
        EXPECT_TRUE(isOfKind(kind, other));
    }
    EXPECT_TRUE(isOfKind(Kind::inTheFilm, plain));
    EXPECT_FALSE(isOfKind(Kind::inTheFilm, other));
    EXPECT_TRUE(isOfKind(Kind::all, plain));
}

} // namespace
