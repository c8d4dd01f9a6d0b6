// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Document/ThreeWayMerge.h>

#include <algorithm>
#include <functional>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Document {

namespace {

using ProjectModel::PhotoItem;
using ProjectModel::PhotoSource;
using ProjectModel::Project;
using ProjectModel::ProjectSettings;
using ProjectModel::Provenance;

/// Whether mine holds. `field` gives what is compared, `isUsers` tells whether a user decided it; `base` is
/// absent for what both sides added.
template <typename Record, typename Field, typename IsUsers>
bool mineHolds(const Record* base, const Record& mine, const Record& theirs, const Field& field,
               const IsUsers& isUsers) {
    if (base && field(mine) == field(*base))
        return false;
    if (base && field(theirs) == field(*base))
        return true;
    return isUsers(mine) && !isUsers(theirs);
}

/// Merges members that belong together and have one provenance, or none.
template <typename Record>
class Merger {
public:
    Merger(const Record* base, const Record& mine, const Record& theirs)
        : m_base(base)
        , m_mine(mine)
        , m_theirs(theirs)
        , m_result(theirs) {}

    template <typename IsUsers, typename... Members>
    void decide(const IsUsers& isUsers, Members Record::*... members) {
        const auto field = [&](const Record& record) { return std::tie(record.*members...); };
        if (mineHolds(m_base, m_mine, m_theirs, field, isUsers))
            ((m_result.*members = m_mine.*members), ...);
    }

    /// Each for itself; nobody decides them.
    template <typename... Members>
    void take(Members Record::*... members) {
        (decide([](const Record&) { return false; }, members), ...);
    }

    [[nodiscard]] Record result() { return std::move(m_result); }

private:
    const Record* m_base;
    const Record& m_mine;
    const Record& m_theirs;
    Record m_result;
};

PhotoItem mergedRecord(const PhotoItem* base, const PhotoItem& mine, const PhotoItem& theirs) {
    Merger<PhotoItem> merger{base, mine, theirs};
    merger.decide(
        [](const PhotoItem& photo) {
            return photo.location && photo.location->provenance == Provenance::user;
        },
        &PhotoItem::location);
    merger.decide([](const PhotoItem& photo) { return photo.captionProvenance == Provenance::user; },
                  &PhotoItem::caption, &PhotoItem::captionProvenance);
    merger.decide([](const PhotoItem& photo) { return photo.selectionProvenance == Provenance::user; },
                  &PhotoItem::isSelected, &PhotoItem::selectionProvenance);
    merger.decide([](const PhotoItem&) { return false; }, &PhotoItem::clusterID, &PhotoItem::qualityScore);
    merger.take(&PhotoItem::source, &PhotoItem::captureDate, &PhotoItem::coordinate, &PhotoItem::isMissing,
                &PhotoItem::sourceID);
    return merger.result();
}

PhotoSource mergedRecord(const PhotoSource* base, const PhotoSource& mine, const PhotoSource& theirs) {
    Merger<PhotoSource> merger{base, mine, theirs};
    merger.take(&PhotoSource::ref);
    return merger.result();
}

ProjectSettings mergedSettings(const ProjectSettings& base, const ProjectSettings& mine,
                               const ProjectSettings& theirs) {
    Merger<ProjectSettings> merger{&base, mine, theirs};
    merger.take(&ProjectSettings::photoDuration, &ProjectSettings::kenBurnsEnabled,
                &ProjectSettings::captionsEnabled, &ProjectSettings::aiCaptionsEnabled,
                &ProjectSettings::chapterStyle, &ProjectSettings::aiProvider,
                &ProjectSettings::captionPrompt);
    return merger.result();
}

/// The how many-th of its id, and the id: what tells records apart.
struct Key {
    Foundation::Uuid id;
    std::size_t occurrence;

    friend bool operator==(const Key&, const Key&) = default;
};

struct KeyHash {
    std::size_t operator()(const Key& key) const {
        return std::hash<Foundation::Uuid>{}(key.id) + key.occurrence;
    }
};

/// The records of one side, looked up by key.
template <typename Record>
class Side {
public:
    explicit Side(const std::vector<Record>& records) {
        std::unordered_map<Foundation::Uuid, std::size_t> seen;
        keys.reserve(records.size());
        for (const Record& record : records) {
            keys.push_back({record.id, seen[record.id]++});
            m_records.emplace(keys.back(), &record);
        }
    }

    [[nodiscard]] const Record* find(const Key& key) const {
        const auto found = m_records.find(key);
        return found == m_records.end() ? nullptr : found->second;
    }

    std::vector<Key> keys;

private:
    std::unordered_map<Key, const Record*, KeyHash> m_records;
};

/// Whether the records that both hold stand in another order.
template <typename Record>
bool isReordered(const Side<Record>& base, const Side<Record>& side) {
    std::unordered_map<Key, std::size_t, KeyHash> positions;
    for (std::size_t i = 0; i < base.keys.size(); ++i)
        positions.emplace(base.keys[i], i);
    std::size_t last = 0;
    for (const Key& key : side.keys) {
        const auto found = positions.find(key);
        if (found == positions.end())
            continue;
        if (found->second < last)
            return true;
        last = found->second;
    }
    return false;
}

template <typename Record>
struct MergedRecords {
    std::vector<Record> records;
    /// The last ones come from the side whose order did not hold.
    bool hasAppended = false;
};

/// In the order of mine or of theirs, followed by what only the other side holds.
template <typename Record>
MergedRecords<Record> mergedRecords(const Side<Record>& base, const Side<Record>& mine,
                                    const Side<Record>& theirs, bool inMyOrder) {
    MergedRecords<Record> result;
    const auto add = [&](const Key& key) {
        const Record* const old = base.find(key);
        const Record* const my = mine.find(key);
        const Record* const their = theirs.find(key);
        if (my && their)
            result.records.push_back(mergedRecord(old, *my, *their));
        else if (!old)
            result.records.push_back(my ? *my : *their);
    };
    const Side<Record>& first = inMyOrder ? mine : theirs;
    const Side<Record>& second = inMyOrder ? theirs : mine;
    for (const Key& key : first.keys)
        add(key);
    const std::size_t ordered = result.records.size();
    for (const Key& key : second.keys) {
        if (!first.find(key))
            add(key);
    }
    result.hasAppended = result.records.size() > ordered;
    return result;
}

} // namespace

Project merged(const Project& base, const Project& mine, const Project& theirs) {
    Merger<Project> merger{&base, mine, theirs};
    merger.take(&Project::schemaVersion, &Project::music, &Project::usesManualOrder);
    Project result = merger.result();
    result.settings = mergedSettings(base.settings, mine.settings, theirs.settings);
    result.sources =
        mergedRecords(Side{base.sources}, Side{mine.sources}, Side{theirs.sources}, false).records;

    const Side basePhotos{base.photos};
    const Side myPhotos{mine.photos};
    const Side theirPhotos{theirs.photos};
    const bool iReordered = isReordered(basePhotos, myPhotos);
    const bool theyReordered = isReordered(basePhotos, theirPhotos);
    const bool onlyMineIsByHand = mine.usesManualOrder && !theirs.usesManualOrder && result.usesManualOrder;
    MergedRecords<PhotoItem> photos =
        mergedRecords(basePhotos, myPhotos, theirPhotos, iReordered && (!theyReordered || onlyMineIsByHand));
    result.photos = std::move(photos.records);
    // Under a manual order this does nothing.
    if (photos.hasAppended || (iReordered && theyReordered))
        result.applyChronologicalOrder();
    return result;
}

} // namespace Document
