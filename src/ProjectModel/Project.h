#pragma once

#include <Foundation/Bookmark.h>
#include <Foundation/Uuid.h>
#include <ProjectModel/MusicSelection.h>
#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/PhotoSource.h>
#include <ProjectModel/ProjectSettings.h>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ProjectModel {

/// The whole state of one slideshow document: plain values, copied on assignment. All changes go through the
/// operations below; those that name a photo change the first one with that id and do nothing when there is
/// none.
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
    /// Sets a caption of a batch run, unless the present one is the user's.
    void applyGeneratedCaption(const std::string& caption, const Foundation::Uuid& id);
    /// Sets a caption that the user asked for explicitly, even over one they typed.
    void setGeneratedCaption(const std::string& caption, const Foundation::Uuid& id);

    // The user's own choices. They always win.

    /// Stores the location with provenance `user`, or clears it.
    void userSetLocation(const std::optional<ResolvedLocation>& location, const Foundation::Uuid& id);
    /// An empty text is a caption too; no value clears caption and provenance.
    void userSetCaption(const std::optional<std::string>& caption, const Foundation::Uuid& id);
    void userSetSelection(bool isSelected, const Foundation::Uuid& id);

    // The whole project.

    /// Starts a fresh analysis: selects every photo as `proposed` and clears clusters and scores, the user's
    /// own selections included.
    void resetAnalysisSelection();
    void removePhotos(const std::set<Foundation::Uuid>& ids);
    /// Removes the source and the photos that were imported from it.
    void removeSource(const Foundation::Uuid& id);
    void markManuallyOrdered() { usesManualOrder = true; }

    /// Appends the photos whose identity key the project does not hold yet, then sorts chronologically.
    /// Photos already there are kept exactly as they were.
    void mergeImportedPhotos(const std::vector<PhotoItem>& incoming, Foundation::BookmarkResolver& resolver);
    /// Dated photos by instant, then undated ones; stable. Does nothing under a manual order.
    void applyChronologicalOrder();

    friend bool operator==(const Project&, const Project&) = default;
};

} // namespace ProjectModel
