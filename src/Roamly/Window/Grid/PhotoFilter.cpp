// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoFilter.h>
#include <Roamly/Window/Grid/PhotoText.h>

#include <algorithm>

namespace Grid {

using ProjectModel::PhotoItem;

namespace {

bool isOfKind(const PhotoItem& photo, PhotoFilter::Kind kind) {
    switch (kind) {
    case PhotoFilter::Kind::all:
        return true;
    case PhotoFilter::Kind::inTheFilm:
        return photo.isSelected;
    case PhotoFilter::Kind::leftOut:
        return !photo.isSelected;
    case PhotoFilter::Kind::withoutPlace:
        return PhotoText::place(photo).isEmpty();
    case PhotoFilter::Kind::inGroups:
        return photo.clusterID.has_value();
    case PhotoFilter::Kind::missing:
        return photo.isMissing;
    }
    return true;
}

} // namespace

QString searchable(const QString& text) {
    const bool isPlain =
        std::all_of(text.begin(), text.end(), [](QChar letter) { return letter.unicode() < 0x80; });
    if (isPlain)
        return text.toLower();
    QString folded = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
    folded.removeIf([](QChar letter) { return letter.category() == QChar::Mark_NonSpacing; });
    return folded;
}

PhotoMatcher::PhotoMatcher(const PhotoFilter& filter)
    : m_kind(filter.kind)
    , m_words(searchable(filter.text).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {}

bool PhotoMatcher::matches(const PhotoItem& photo) const {
    if (!isOfKind(photo, m_kind))
        return false;
    if (m_words.isEmpty())
        return true;
    QString text = PhotoText::place(photo) + QLatin1Char('\n') + PhotoText::fileName(photo);
    if (photo.caption)
        text += QLatin1Char('\n') + QString::fromStdString(*photo.caption);
    text = searchable(text);
    return std::all_of(m_words.begin(), m_words.end(),
                       [&](const QString& word) { return text.contains(word); });
}

} // namespace Grid
