// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <ProjectModel/PhotoIndex.h>
#include <ProjectModel/Project.h>
#include <ProjectModel/RandomProject.h>
#include <ProjectModel/ReviewOps.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace ProjectModel {
namespace {

using Foundation::Uuid;

/// Projects in which ids occur twice, and ids of which some are in none.
class BulkRandom : public Testing::RandomProject {
public:
    using RandomProject::RandomProject;

    Project projectWithEqualIds() {
        Project result = project(15);
        for (PhotoItem& photo : result.photos) {
            if (chance(0.2))
                photo.id = result.photos[below(result.photos.size())].id;
        }
        return result;
    }

    Uuid idOf(const Project& project) {
        return project.photos.empty() || chance(0.1) ? uuid()
                                                     : project.photos[below(project.photos.size())].id;
    }

    std::set<Uuid> idsOf(const Project& project) {
        std::set<Uuid> ids;
        for (std::size_t i = below(8); i > 0; --i)
            ids.insert(idOf(project));
        return ids;
    }
};

constexpr int rounds = 500;

TEST(ProjectBulkTest, SelectingManyIsSelectingEach) {
    BulkRandom random{31};
    for (int i = 0; i < rounds; ++i) {
        Project bulk = random.projectWithEqualIds();
        Project each = bulk;
        const std::set<Uuid> ids = random.idsOf(bulk);
        const bool isSelected = random.chance(0.5);
        bulk.userSetSelections(isSelected, ids);
        for (const Uuid& id : ids)
            each.userSetSelection(isSelected, id);
        ASSERT_EQ(bulk, each);
    }
}

TEST(ProjectBulkTest, NamingThePlaceOfManyIsNamingThatOfEach) {
    BulkRandom random{32};
    for (int i = 0; i < rounds; ++i) {
        Project bulk = random.projectWithEqualIds();
        Project each = bulk;
        const std::set<Uuid> ids = random.idsOf(bulk);
        const std::optional<ResolvedLocation> location =
            random.chance(0.3) ? std::nullopt : std::optional{random.location()};
        bulk.userSetLocations(location, ids);
        for (const Uuid& id : ids)
            each.userSetLocation(location, id);
        ASSERT_EQ(bulk, each);
        for (const PhotoItem& photo : bulk.photos) {
            const PhotoItem& first = *std::ranges::find(bulk.photos, photo.id, &PhotoItem::id);
            if (&first == &photo && ids.contains(photo.id) && photo.location) {
                ASSERT_EQ(photo.location->provenance, Provenance::user);
            }
        }
    }
}

TEST(ProjectBulkTest, GeneratedCaptionsAreAppliedAsEachByItself) {
    BulkRandom random{33};
    for (int i = 0; i < rounds; ++i) {
        Project bulk = random.projectWithEqualIds();
        Project each = bulk;
        std::map<Uuid, std::string> captions;
        for (std::size_t j = random.below(8); j > 0; --j)
            captions[random.idOf(bulk)] = random.text();
        bulk.applyGeneratedCaptions(captions);
        for (const auto& [id, caption] : captions)
            each.applyGeneratedCaption(caption, id);
        ASSERT_EQ(bulk, each);
    }
}

TEST(ProjectBulkTest, ProposalsAreAppliedAsEachByItselfInTheirOrder) {
    BulkRandom random{34};
    for (int i = 0; i < rounds; ++i) {
        Project bulk = random.projectWithEqualIds();
        Project each = bulk;
        std::vector<ProposedLocation> locations;
        std::vector<ProposedSelection> selections;
        for (std::size_t j = random.below(12); j > 0; --j) {
            locations.push_back({random.idOf(bulk), random.location()});
            const PhotoItem values = random.photo();
            selections.push_back(
                {random.idOf(bulk), values.isSelected, values.clusterID, values.qualityScore});
        }
        bulk.applyProposedLocations(locations);
        for (const ProposedLocation& one : locations)
            each.applyProposedLocation(one.location, one.id);
        ASSERT_EQ(bulk, each);
        bulk.applyProposedSelections(selections);
        for (const ProposedSelection& one : selections)
            each.applyProposedSelection(one.isSelected, one.clusterID, one.qualityScore, one.id);
        ASSERT_EQ(bulk, each);
    }
}

TEST(ProjectBulkTest, AnAnalysisIsMergedPhotoByPhotoAsProposals) {
    BulkRandom random{35};
    for (int i = 0; i < rounds; ++i) {
        Project bulk = random.projectWithEqualIds();
        Project analysed = bulk;
        for (PhotoItem& photo : analysed.photos) {
            const PhotoItem values = random.photo();
            photo.location = values.location;
            photo.clusterID = values.clusterID;
            photo.qualityScore = values.qualityScore;
            photo.isSelected = values.isSelected;
        }
        if (random.chance(0.3))
            std::ranges::reverse(analysed.photos);
        if (random.chance(0.5) && !bulk.photos.empty())
            bulk.removePhotos({random.idOf(bulk)});
        bulk.photos.push_back(random.photo());
        Project each = bulk;

        bulk.applyAnalysis(analysed);
        // For every photo that both hold, by id, the first of each.
        std::set<Uuid> done;
        for (const PhotoItem& photo : std::vector{each.photos}) {
            const auto result = std::ranges::find(analysed.photos, photo.id, &PhotoItem::id);
            if (result == analysed.photos.end() || !done.insert(photo.id).second)
                continue;
            if (result->location)
                each.applyProposedLocation(*result->location, photo.id);
            each.applyProposedSelection(result->isSelected, result->clusterID, result->qualityScore,
                                        photo.id);
        }
        ASSERT_EQ(bulk, each);
    }
}

TEST(ProjectBulkTest, MovingPhotosMovesTheBlockAndMakesTheOrderManual) {
    BulkRandom random{36};
    for (int i = 0; i < rounds; ++i) {
        Project moved = random.project();
        Project expected = moved;
        std::set<std::size_t> positions;
        for (std::size_t j = 0; j < moved.photos.size(); ++j) {
            if (random.chance(0.3))
                positions.insert(j);
        }
        const std::size_t destination = random.below(moved.photos.size() + 1);
        moved.userMovePhotos(positions, destination);
        ReviewOps::move(expected.photos, positions, destination);
        expected.usesManualOrder = true;
        ASSERT_EQ(moved, expected);
        moved.applyChronologicalOrder();
        ASSERT_EQ(moved, expected);
    }
}

TEST(ProjectBulkTest, SortingByDateTakesAManualOrderBack) {
    BulkRandom random{37};
    for (int i = 0; i < rounds; ++i) {
        Project sorted = random.project();
        Project expected = sorted;
        sorted.userSortByDate();
        expected.usesManualOrder = false;
        expected.applyChronologicalOrder();
        ASSERT_EQ(sorted, expected);
        ASSERT_FALSE(sorted.usesManualOrder);
    }
}

TEST(ProjectBulkTest, MusicSettingsAndSourcesAreSetAndTouchNothingElse) {
    BulkRandom random{38};
    for (int i = 0; i < rounds; ++i) {
        const Project before = random.project();
        Project project = before;
        const MusicSelection music{.bookmark = random.bytes(9), .displayName = random.text()};
        project.userSetMusic(music);
        ASSERT_EQ(project.music, music);
        project.userSetMusic(std::nullopt);
        ASSERT_EQ(project.music, std::nullopt);
        project.userSetMusic(before.music);
        ASSERT_EQ(project, before);

        const ProjectSettings settings = random.settings();
        project.userSetSettings(settings);
        ASSERT_EQ(project.settings, settings);
        project.userSetSettings(before.settings);
        ASSERT_EQ(project, before);

        const PhotoSource source = random.source();
        project.addSource(source);
        ASSERT_EQ(project.sources.size(), before.sources.size() + 1);
        ASSERT_EQ(project.sources.back(), source);
        ASSERT_EQ(project.photos, before.photos);
    }
}

TEST(ProjectBulkTest, RefreshesReachThePhotosThatHaveTheSourceAndNoOther) {
    BulkRandom random{39};
    for (int i = 0; i < rounds; ++i) {
        Project project = random.projectWithEqualIds();
        const Project before = project;
        std::vector<PhotoRefresh> refreshes;
        for (const PhotoItem& photo : before.photos) {
            if (random.chance(0.3))
                refreshes.push_back({photo.id, random.chance(0.8) ? photo.source : random.photoRef(),
                                     random.photoRef(), random.chance(0.5)});
        }
        project.refreshPhotos(PhotoRefreshes{refreshes});
        for (std::size_t j = 0; j < before.photos.size(); ++j) {
            PhotoItem photo = project.photos[j];
            std::vector<PhotoRefresh> meant;
            std::ranges::copy_if(refreshes, std::back_inserter(meant), [&](const PhotoRefresh& refresh) {
                return refresh.id == photo.id && refresh.was == before.photos[j].source;
            });
            if (!meant.empty()) {
                ASSERT_TRUE(std::ranges::any_of(meant, [&](const PhotoRefresh& refresh) {
                    return refresh.source == photo.source && refresh.isMissing == photo.isMissing;
                }));
            } else {
                ASSERT_EQ(photo.source, before.photos[j].source);
            }
            photo.source = before.photos[j].source;
            photo.isMissing = meant.empty() ? photo.isMissing : before.photos[j].isMissing;
            ASSERT_EQ(photo, before.photos[j]);
        }
    }
}

TEST(PhotoIndexTest, FindsWhatALookThroughTheListFinds) {
    BulkRandom random{40};
    for (int i = 0; i < rounds; ++i) {
        const Project project = random.projectWithEqualIds();
        const PhotoIndex index{project.photos};
        for (int j = 0; j < 8; ++j) {
            const Uuid id = random.idOf(project);
            const auto found = std::ranges::find(project.photos, id, &PhotoItem::id);
            const auto expected =
                found == project.photos.end()
                    ? std::nullopt
                    : std::optional{static_cast<std::size_t>(found - project.photos.begin())};
            ASSERT_EQ(index.find(id), expected);
        }
    }
}

} // namespace
} // namespace ProjectModel
