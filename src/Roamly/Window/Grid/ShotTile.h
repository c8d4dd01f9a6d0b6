// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/PhotoItem.h>
#include <Roamly/Window/Grid/FittedPhoto.h>

#include <QAbstractButton>
#include <QString>

namespace Grid {

/// A shot of a group beside the others, and what is known of it.
struct Shot {
    ProjectModel::PhotoItem photo;
    /// "Best of 5 similar shots"
    QString place;
    /// "Quality 82 of 100"; empty when it was not judged.
    QString quality;
    bool isBest = false;

    friend bool operator==(const Shot&, const Shot&) = default;
};

/// A button that shows one shot of a comparison; pressed, it is kept or left out.
class ShotTile : public QAbstractButton {
    Q_OBJECT

public:
    /// Borrows both; `number` is the key that decides, from 1.
    ShotTile(const Shot& shot, int number, ThumbnailFeed& feed, const LargePhotos& large,
             QWidget* parent = nullptr);

    void setShot(const Shot& shot);
    [[nodiscard]] const Shot& shot() const { return m_shot; }
    /// Where the photo goes, in the tile's own pixels.
    [[nodiscard]] QRect photoArea() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void tell();

    Shot m_shot;
    int m_number;
    FittedPhoto m_photo;
};

} // namespace Grid
