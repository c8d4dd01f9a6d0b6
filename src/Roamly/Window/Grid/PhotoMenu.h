// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMenu>
#include <QString>
#include <cstddef>

namespace Grid {

/// What may be wished for the chosen photos, and what may be done to them now.
struct PhotoMenuState {
    std::size_t photos = 0;
    /// All of them are in the film.
    bool areAllInTheFilm = false;
    bool isInGroup = false;
    /// Why no caption can be generated now; empty when one can.
    QString whyNoCaption;
    /// Why the photo's file cannot be shown; empty when it can.
    QString whyNoFile;
};

/// The menu of the chosen photos. Each entry is a wish, told by its signal; those that cannot be met are
/// disabled and say why.
class PhotoMenu : public QMenu {
    Q_OBJECT

public:
    explicit PhotoMenu(const PhotoMenuState& state, QWidget* parent = nullptr);

Q_SIGNALS:
    void openRequested();
    void compareRequested();
    void decisionRequested(bool isInTheFilm);
    void captionEditRequested();
    void captionRegenerationRequested();
    void placeRequested();
    void chapterRequested();
    void fileRequested();
    void removalRequested();
};

} // namespace Grid
