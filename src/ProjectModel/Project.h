// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/IdentityKeys.h>
#include <ProjectModel/MusicSelection.h>
#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/PhotoRefreshes.h>
#include <ProjectModel/PhotoSource.h>
#include <ProjectModel/ProjectSettings.h>
#include <ProjectModel/Proposals.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ProjectModel {

/// The whole state of one slideshow document: plain values, copied on assignment. All changes go through the
/// operations below, which ask nothing of the machine; those that name a photo change the first one with that
/// id and do nothing when there is none. Those that take many photos go over the list once, however many they
/// are.
struct Project {
    static constexpr std::int64_t currentSchemaVersion = 2;

    std::int64_t schemaVersion = currentSchemaVersion;
    /// In the order they were first imported.
    std::vector<PhotoSource> sources;
    /// In slideshow order.
    std::vector<PhotoItem> photos;
    ProjectSettings settings;
    std::optional<MusicSelection> music;
    /// Set once the user has reordered photos by hand; stops chronological sorting.
    bool usesManualOrder = false;

    /// What a new document starts from.
    [[nodiscard]] static Project empty() { return {}; }

    // Proposals of automatic steps. They give way to what the user chose.

    /// Sets the location as it is given, unless the present one is the user's.
    void applyProposedLocation(const ResolvedLocation& location, const Foundation::Uuid& id);
    /// Always replaces cluster and score (absent clears them); the selection only where it is not the user's.
    /// Leaves `selectionProvenance` as it is.
    void applyProposedSelection(bool isSelected, std::optional<Foundation::Uuid> clusterID,
                                std::optional<double> qualityScore, const Foundation::Uuid& id);
    /// As if each were applied by itself, in their order.
    void applyProposedLocations(const std::vector<ProposedLocation>& proposals);
    void applyProposedSelections(const std::vector<ProposedSelection>& proposals);
    /// What an analysis found: its locations and selections as proposals, photo by photo, for those that are
    /// in both projects.
    void applyAnalysis(const Project& analysed);
    /// Sets a caption of a batch run, unless the present one is the user's.
    void applyGeneratedCaption(const std::string& caption, const Foundation::Uuid& id);
    void applyGeneratedCaptions(const std::map<Foundation::Uuid, std::string>& captions);
    /// Sets a caption that the user asked for explicitly, even over one they typed.
    void setGeneratedCaption(const std::string& caption, const Foundation::Uuid& id);

    // The user's own choices. They always win.

    /// Stores the location with provenance `user`, or clears it.
    void userSetLocation(const std::optional<ResolvedLocation>& location, const Foundation::Uuid& id);
    /// An empty text is a caption too; no value clears caption and provenance.
    void userSetCaption(const std::optional<std::string>& caption, const Foundation::Uuid& id);
    void userSetSelection(bool isSelected, const Foundation::Uuid& id);
    void userSetLocations(const std::optional<ResolvedLocation>& location,
                          const std::set<Foundation::Uuid>& ids);
    void userSetSelections(bool isSelected, const std::set<Foundation::Uuid>& ids);
    void userSetMusic(std::optional<MusicSelection> selection) { music = std::move(selection); }
    void userSetSettings(ProjectSettings own) { settings = std::move(own); }
    /// Moves photos as `ReviewOps::move` does; from then on nothing sorts them any more.
    void userMovePhotos(const std::set<std::size_t>& positions, std::size_t destination);
    /// Takes a manual order back: chronological again, now and later.
    void userSortByDate();

    // The whole project.

    /// Starts a fresh analysis: selects every photo as `proposed` and clears clusters and scores, the user's
    /// own selections included.
    void resetAnalysisSelection();
    void removePhotos(const std::set<Foundation::Uuid>& ids);
    /// Removes the source and the photos that were imported from it.
    void removeSource(const Foundation::Uuid& id);
    void markManuallyOrdered() { usesManualOrder = true; }

    void addSource(PhotoSource source) { sources.push_back(std::move(source)); }
    /// Appends the photos whose identity key the project does not hold yet, then sorts chronologically.
    /// Photos already there are kept exactly as they were. `keys` holds the keys of both; for a photo that it
    /// lacks the key that needs no disk has to do.
    void mergeImportedPhotos(const std::vector<PhotoItem>& incoming, const IdentityKeys& keys);
    /// Dated photos by instant, then undated ones; stable. Does nothing under a manual order.
    void applyChronologicalOrder();
    /// Every photo that is meant, also those of equal ids.
    void refreshPhotos(const PhotoRefreshes& refreshes);

    friend bool operator==(const Project&, const Project&) = default;
};

} // namespace ProjectModel
