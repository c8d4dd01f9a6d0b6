// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>
#include <ProjectModel/Project.h>
#include <Roamly/Window/Grid/PhotoFilter.h>
#include <Roamly/Window/Grid/Sections.h>

#include <QAbstractListModel>
#include <QTimeZone>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <vector>

namespace Grid {

/// A project's photos as rows of a view, those that pass a filter. It shows what it is given last and tells
/// its views the differences, never a reset, so that selection, current row and open editors survive. What
/// the user types goes out as a signal: the model changes only by the next `show`. Belongs to the window's
/// thread.
class PhotoListModel : public QAbstractListModel {
    Q_OBJECT

public:
    /// Dates are told in `zone`.
    explicit PhotoListModel(QTimeZone zone = QTimeZone::systemTimeZone(), QObject* parent = nullptr);

    /// Takes time in proportion to the photos.
    void show(const ProjectModel::Project& project, const PhotoFilter& filter = {});

    [[nodiscard]] const ProjectModel::PhotoItem& photo(int row) const;
    [[nodiscard]] const Foundation::Uuid& id(int row) const { return photo(row).id; }
    /// Nothing when no shown photo has the id.
    [[nodiscard]] std::optional<int> rowOf(const Foundation::Uuid& id) const;
    /// How many photos of the project are in the photo's near-duplicate group; 0 when it is in none.
    [[nodiscard]] std::size_t groupSize(int row) const;
    /// Where its film's chapters begin, over the shown rows.
    [[nodiscard]] const std::vector<Section>& sections() const { return m_sections; }
    /// Whether a filter hides all photos of a project that has some.
    [[nodiscard]] bool hidesAll() const { return m_rows.empty() && m_projectHasPhotos; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    /// Display: the caption, else the file's name. Edit: the caption. AccessibleText and
    /// AccessibleDescription: what a screen reader says.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// A caption was typed: tells it with `captionEdited`.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

Q_SIGNALS:
    /// Before rows go, all of them at once, ascending; rows that the model moves meanwhile are still in
    /// place.
    void photosAboutToBeRemoved(const std::vector<std::size_t>& rows);
    /// Rows or headers are other ones; comes last.
    void sectionsChanged();
    void captionEdited(const Foundation::Uuid& id, const QString& caption);

private:
    struct Row {
        ProjectModel::PhotoItem photo;
        std::size_t groupSize = 0;

        friend bool operator==(const Row&, const Row&) = default;
    };

    void remove(const std::vector<std::size_t>& rows);
    void reorder(const std::vector<std::size_t>& order);
    void insert(const std::vector<std::size_t>& rows,
                const std::vector<const ProjectModel::PhotoItem*>& shown);
    /// Puts new values in place; the rows that got some, ascending.
    std::vector<std::size_t> update(const std::vector<const ProjectModel::PhotoItem*>& shown,
                                    const std::unordered_map<Foundation::Uuid, std::size_t>& groupSizes);
    void tellChanged(const std::vector<std::size_t>& rows);

    QTimeZone m_zone;
    std::vector<Row> m_rows;
    std::vector<Section> m_sections;
    bool m_projectHasPhotos = false;
    /// Made at the first look-up after rows came, went or moved.
    mutable std::optional<std::unordered_map<Foundation::Uuid, int>> m_rowOf;
};

} // namespace Grid
