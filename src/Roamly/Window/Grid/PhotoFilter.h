// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace ProjectModel {
struct PhotoItem;
}

namespace Grid {

/// Which photos the grid shows.
struct PhotoFilter {
    enum class Kind { all, inTheFilm, leftOut, withoutPlace, inGroups, missing };

    Kind kind = Kind::all;
    /// What was typed: words that captions, places or file names must hold, all of them.
    QString text;

    friend bool operator==(const PhotoFilter&, const PhotoFilter&) = default;
};

/// Text as searching compares it: without accents, and capital letters as small ones.
[[nodiscard]] QString searchable(const QString& text);

/// A filter made ready for many photos.
class PhotoMatcher {
public:
    explicit PhotoMatcher(const PhotoFilter& filter);

    [[nodiscard]] bool matches(const ProjectModel::PhotoItem& photo) const;
    [[nodiscard]] bool matchesAll() const { return m_kind == PhotoFilter::Kind::all && m_words.isEmpty(); }

private:
    PhotoFilter::Kind m_kind;
    QStringList m_words;
};

} // namespace Grid
