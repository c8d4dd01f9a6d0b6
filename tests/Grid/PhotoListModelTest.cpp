// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoListModel.h>

#include <Grid/GridPhotos.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <algorithm>
#include <random>

namespace {

using Grid::PhotoFilter;
using Grid::PhotoListModel;
using ProjectModel::PhotoItem;
using ProjectModel::Project;

/// The ids of the shown rows.
std::vector<Foundation::Uuid> shownIds(const PhotoListModel& model) {
    std::vector<Foundation::Uuid> ids;
    for (int row = 0; row < model.rowCount(); ++row)
        ids.push_back(model.id(row));
    return ids;
}

QString text(const PhotoListModel& model, int row, int role) {
    return model.data(model.index(row), role).toString();
}

TEST(PhotoListModel, NamesAPhotoByItsCaptionElseByItsFile) {
    Project project = GridPhotos::project(2);
    project.photos[1].caption = "Tram 28";
    PhotoListModel model;
    model.show(project);
    EXPECT_EQ(text(model, 0, Qt::AccessibleTextRole), "IMG_0.jpg");
    EXPECT_EQ(text(model, 1, Qt::AccessibleTextRole), "Tram 28");
    EXPECT_EQ(text(model, 0, Qt::EditRole), "");
}

TEST(PhotoListModel, DescribesAPhotoToScreenReaders) {
    Project project = GridPhotos::project(2);
    for (PhotoItem& photo : project.photos)
        photo.clusterID = GridPhotos::id(99);
    project.photos[0].captureDate = Foundation::makeInstant(2024, 5, 14, 16, 22, 5);
    project.photos[0].location->provenance = ProjectModel::Provenance::inferred;
    project.photos[1].location.reset();
    project.photos[1].isSelected = false;
    project.photos[1].isMissing = true;
    PhotoListModel model{QTimeZone::utc()};
    model.show(project);
    EXPECT_EQ(text(model, 0, Qt::AccessibleDescriptionRole),
              "approximately City 0, 14 May 2024 16:22, in the film, part of a group of 2");
    EXPECT_EQ(text(model, 1, Qt::AccessibleDescriptionRole),
              "no place, left out, part of a group of 2, file missing");
}

TEST(PhotoListModel, TellsATypedCaptionAndChangesOnlyByTheNextShow) {
    const Project project = GridPhotos::project(2);
    PhotoListModel model;
    model.show(project);
    QSignalSpy edited{&model, &PhotoListModel::captionEdited};
    EXPECT_TRUE(model.setData(model.index(1), QStringLiteral("Tram 28"), Qt::EditRole));
    ASSERT_EQ(edited.size(), 1);
    EXPECT_EQ(edited[0][0].value<Foundation::Uuid>(), GridPhotos::id(1));
    EXPECT_EQ(edited[0][1].toString(), "Tram 28");
    EXPECT_EQ(text(model, 1, Qt::EditRole), "");
}

TEST(PhotoListModel, FollowsAnyEditsByDifferencesAloneUnderTheModelTester) {
    PhotoListModel model;
    const QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    std::mt19937 random{11};
    Project project = GridPhotos::project(60);
    std::uint32_t next = 60;
    for (int round = 0; round < 150; ++round) {
        for (int edits = static_cast<int>(random() % 20); edits > 0; --edits) {
            std::vector<PhotoItem>& photos = project.photos;
            const std::size_t at = photos.empty() ? 0 : random() % photos.size();
            switch (random() % 5) {
            case 0:
                photos.insert(photos.begin() + static_cast<std::ptrdiff_t>(at),
                              GridPhotos::photo(next++, "City " + std::to_string(random() % 5)));
                break;
            case 1:
                if (!photos.empty())
                    photos.erase(photos.begin() + static_cast<std::ptrdiff_t>(at));
                break;
            case 2:
                if (!photos.empty())
                    std::swap(photos[at], photos.back());
                break;
            case 3:
                if (!photos.empty())
                    photos[at].isSelected = !photos[at].isSelected;
                break;
            default:
                if (!photos.empty())
                    photos[at].caption = "Caption " + std::to_string(round);
            }
        }
        const PhotoFilter filter{random() % 3 == 0 ? PhotoFilter::Kind::inTheFilm : PhotoFilter::Kind::all,
                                 {}};
        const QPersistentModelIndex kept = model.rowCount() > 0
                                               ? QPersistentModelIndex{model.index(model.rowCount() / 2)}
                                               : QPersistentModelIndex{};
        const auto keptId = kept.isValid() ? std::optional{model.id(kept.row())} : std::nullopt;
        model.show(project, filter);

        std::vector<Foundation::Uuid> expected;
        for (const PhotoItem& photo : project.photos) {
            if (filter.kind == PhotoFilter::Kind::all || photo.isSelected)
                expected.push_back(photo.id);
        }
        ASSERT_EQ(shownIds(model), expected);
        for (int row = 0; row < model.rowCount(); ++row) {
            const auto original =
                std::find_if(project.photos.begin(), project.photos.end(),
                             [&](const PhotoItem& photo) { return photo.id == model.id(row); });
            ASSERT_EQ(model.photo(row), *original);
            ASSERT_EQ(model.rowOf(model.id(row)), row);
        }
        // A photo that stays keeps its persistent index.
        const bool stays = keptId && std::count(expected.begin(), expected.end(), *keptId) > 0;
        ASSERT_EQ(kept.isValid(), stays);
        if (stays) {
            ASSERT_EQ(model.id(kept.row()), *keptId);
        }
    }
    EXPECT_EQ(resets.size(), 0);
}

TEST(PhotoListModel, TellsOneChangedPhotoAsOneChangedRow) {
    Project project = GridPhotos::project(100);
    PhotoListModel model;
    model.show(project);
    QSignalSpy changed{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy moved{&model, &QAbstractItemModel::layoutChanged};
    project.photos[42].caption = "Tram 28";
    model.show(project);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].value<QModelIndex>().row(), 42);
    EXPECT_EQ(changed[0][1].value<QModelIndex>().row(), 42);
    EXPECT_EQ(moved.size(), 0);
    model.show(project);
    EXPECT_EQ(changed.size(), 1);
}

TEST(PhotoListModel, TellsAGroupThatGrewToItsOtherPhotosToo) {
    Project project = GridPhotos::project(3);
    project.photos[0].clusterID = GridPhotos::id(99);
    PhotoListModel model;
    model.show(project);
    EXPECT_EQ(model.groupSize(0), 1U);
    project.photos[2].clusterID = GridPhotos::id(99);
    model.show(project);
    EXPECT_EQ(model.groupSize(0), 2U);
    EXPECT_EQ(model.groupSize(1), 0U);
}

} // namespace
