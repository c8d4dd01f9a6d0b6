// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/PhotoText.h>
#include <Roamly/Window/Grid/RowDifference.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

namespace Grid {

using Foundation::Uuid;
using ProjectModel::PhotoItem;

namespace {

struct Run {
    std::size_t first;
    std::size_t count;
};

std::vector<Run> runs(const std::vector<std::size_t>& rows) {
    std::vector<Run> result;
    for (const std::size_t row : rows) {
        if (!result.empty() && result.back().first + result.back().count == row)
            ++result.back().count;
        else
            result.push_back({row, 1});
    }
    return result;
}

/// Each run taken out or put in shifts what follows it and is told to every view. Past this many the rows are
/// gathered at the end first, which costs the same however many there are.
constexpr std::size_t fewRuns = 8;

std::unordered_map<Uuid, std::size_t> countedGroups(const std::vector<PhotoItem>& photos) {
    std::unordered_map<Uuid, std::size_t> sizes;
    for (const PhotoItem& photo : photos) {
        if (photo.clusterID)
            ++sizes[*photo.clusterID];
    }
    return sizes;
}

std::vector<std::size_t> complement(const std::vector<std::size_t>& rows, std::size_t count) {
    std::vector<std::size_t> all(count);
    std::iota(all.begin(), all.end(), std::size_t{0});
    std::vector<std::size_t> others;
    others.reserve(count - rows.size());
    std::set_difference(all.begin(), all.end(), rows.begin(), rows.end(), std::back_inserter(others));
    return others;
}

} // namespace

PhotoListModel::PhotoListModel(QTimeZone zone, QObject* parent)
    : QAbstractListModel(parent)
    , m_zone(std::move(zone)) {}

void PhotoListModel::show(const ProjectModel::Project& project, const PhotoFilter& filter) {
    const PhotoMatcher matcher{filter};
    std::vector<bool> isShown(project.photos.size(), true);
    std::vector<const PhotoItem*> shown;
    shown.reserve(project.photos.size());
    for (std::size_t position = 0; position < project.photos.size(); ++position) {
        isShown[position] = matcher.matchesAll() || matcher.matches(project.photos[position]);
        if (isShown[position])
            shown.push_back(&project.photos[position]);
    }

    std::vector<Uuid> before(m_rows.size());
    std::transform(m_rows.begin(), m_rows.end(), before.begin(), [](const Row& row) { return row.photo.id; });
    std::vector<Uuid> after(shown.size());
    std::transform(shown.begin(), shown.end(), after.begin(),
                   [](const PhotoItem* photo) { return photo->id; });
    const RowDifference difference = rowDifference(before, after);

    m_projectHasPhotos = !project.photos.empty();
    remove(difference.removed);
    reorder(difference.order);
    insert(difference.inserted, shown);
    const std::vector<std::size_t> changed = update(shown, countedGroups(project.photos));

    std::vector<Section> parted = sectionsOf(project.photos, isShown, m_zone);
    const bool rowsDiffer = before != after;
    const bool sectionsDiffer = parted != m_sections;
    m_sections = std::move(parted);
    tellChanged(changed);
    if (rowsDiffer || sectionsDiffer)
        Q_EMIT sectionsChanged();
}

void PhotoListModel::remove(const std::vector<std::size_t>& rows) {
    if (rows.empty())
        return;
    Q_EMIT photosAboutToBeRemoved(rows);
    std::vector<Run> parts = runs(rows);
    if (parts.size() > fewRuns) {
        std::vector<std::size_t> order = complement(rows, m_rows.size());
        parts = {{order.size(), rows.size()}};
        order.insert(order.end(), rows.begin(), rows.end());
        reorder(order);
    }
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) {
        beginRemoveRows({}, static_cast<int>(part->first), static_cast<int>(part->first + part->count - 1));
        const auto first = m_rows.begin() + static_cast<std::ptrdiff_t>(part->first);
        m_rows.erase(first, first + static_cast<std::ptrdiff_t>(part->count));
        m_rowOf.reset();
        endRemoveRows();
    }
}

void PhotoListModel::reorder(const std::vector<std::size_t>& order) {
    if (order.empty())
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<Row> rows;
    rows.reserve(order.size());
    std::vector<int> movedTo(order.size());
    for (std::size_t row = 0; row < order.size(); ++row) {
        rows.push_back(std::move(m_rows[order[row]]));
        movedTo[order[row]] = static_cast<int>(row);
    }
    m_rows = std::move(rows);
    m_rowOf.reset();
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& index : from)
        to << this->index(movedTo[static_cast<std::size_t>(index.row())]);
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void PhotoListModel::insert(const std::vector<std::size_t>& rows,
                            const std::vector<const PhotoItem*>& shown) {
    if (rows.empty())
        return;
    const auto put = [&](std::size_t where, std::size_t firstOfRows, std::size_t count) {
        beginInsertRows({}, static_cast<int>(where), static_cast<int>(where + count - 1));
        std::vector<Row> added;
        added.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            added.push_back({*shown[rows[firstOfRows + i]], 0});
        m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(where),
                      std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
        m_rowOf.reset();
        endInsertRows();
    };
    const std::vector<Run> parts = runs(rows);
    if (parts.size() <= fewRuns) {
        std::size_t done = 0;
        for (const Run& part : parts) {
            put(part.first, done, part.count);
            done += part.count;
        }
        return;
    }
    const std::size_t stayed = m_rows.size();
    put(stayed, 0, rows.size());
    std::vector<std::size_t> order(m_rows.size());
    std::size_t nextOld = 0;
    std::size_t nextNew = 0;
    for (std::size_t row = 0; row < order.size(); ++row) {
        const bool isNew = nextNew < rows.size() && rows[nextNew] == row;
        order[row] = isNew ? stayed + nextNew++ : nextOld++;
    }
    reorder(order);
}

std::vector<std::size_t> PhotoListModel::update(const std::vector<const PhotoItem*>& shown,
                                                const std::unordered_map<Uuid, std::size_t>& groupSizes) {
    std::vector<std::size_t> changed;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        const PhotoItem& photo = *shown[row];
        const std::size_t groupSize = photo.clusterID ? groupSizes.at(*photo.clusterID) : 0;
        if (m_rows[row].photo == photo && m_rows[row].groupSize == groupSize)
            continue;
        m_rows[row] = {photo, groupSize};
        changed.push_back(row);
    }
    return changed;
}

void PhotoListModel::tellChanged(const std::vector<std::size_t>& rows) {
    std::vector<Run> parts = runs(rows);
    if (parts.size() > fewRuns)
        parts = {{rows.front(), rows.back() - rows.front() + 1}};
    for (const Run& part : parts) {
        Q_EMIT dataChanged(index(static_cast<int>(part.first)),
                           index(static_cast<int>(part.first + part.count - 1)));
    }
}

const PhotoItem& PhotoListModel::photo(int row) const {
    return m_rows.at(static_cast<std::size_t>(row)).photo;
}

std::optional<int> PhotoListModel::rowOf(const Uuid& id) const {
    if (!m_rowOf) {
        m_rowOf.emplace();
        m_rowOf->reserve(m_rows.size());
        for (std::size_t row = 0; row < m_rows.size(); ++row)
            m_rowOf->try_emplace(m_rows[row].photo.id, static_cast<int>(row));
    }
    const auto entry = m_rowOf->find(id);
    return entry == m_rowOf->end() ? std::nullopt : std::optional{entry->second};
}

std::size_t PhotoListModel::groupSize(int row) const {
    return m_rows.at(static_cast<std::size_t>(row)).groupSize;
}

int PhotoListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant PhotoListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& [photo, groupSize] = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return PhotoText::name(photo);
    case Qt::EditRole:
        return QString::fromStdString(photo.caption.value_or(std::string{}));
    case Qt::AccessibleDescriptionRole:
        return PhotoText::description(photo, groupSize, m_zone);
    default:
        return {};
    }
}

Qt::ItemFlags PhotoListModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsDragEnabled |
           Qt::ItemNeverHasChildren;
}

bool PhotoListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const Uuid edited = id(index.row());
    Q_EMIT captionEdited(edited, value.toString());
    return true;
}

} // namespace Grid
