// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Window/Grid/FittedPhoto.h>
#include <Roamly/Window/Grid/LargePhotos.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QTimeZone>
#include <QWidget>
#include <optional>
#include <vector>

class QPushButton;

namespace Grid {

/// One photo as large as the window allows, with its caption and its place in the row below. Arrows walk
/// along the photos that the grid shows, Space decides, Esc goes back.
class Loupe : public QWidget {
    Q_OBJECT

public:
    /// Borrows all three. Dates are told in `zone`.
    Loupe(const PhotoListModel& photos, ThumbnailFeed& feed, LargePhotos& large, QTimeZone zone,
          QWidget* parent = nullptr);

    /// Shows a photo of the list.
    void open(const Foundation::Uuid& photo);
    [[nodiscard]] std::optional<Foundation::Uuid> current() const { return m_current; }
    /// "12 of 146"
    [[nodiscard]] QString position() const;

Q_SIGNALS:
    /// Another photo is shown.
    void walked(const Foundation::Uuid& photo);
    void decisionToggled(const std::vector<Foundation::Uuid>& photos);
    void removalRequested(const std::vector<Foundation::Uuid>& photos);
    void groupRequested(const Foundation::Uuid& photo);
    void left();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    [[nodiscard]] QRect photoArea() const;
    [[nodiscard]] QRect captionArea() const;
    /// On the photo, in the corner where the grid has it.
    [[nodiscard]] QRect badge(const QRect& shown) const;
    void paintTexts(QPainter& painter, const ProjectModel::PhotoItem& photo);
    void walk(int rows);
    void goTo(int row);
    /// The list is another one: its photo may be elsewhere in it, or gone.
    void follow();
    void wish();
    void tell();

    const PhotoListModel* m_photos;
    ThumbnailFeed* m_feed;
    LargePhotos* m_large;
    QTimeZone m_zone;
    FittedPhoto m_photo;
    QPushButton* m_back;
    QPushButton* m_compare;
    std::optional<Foundation::Uuid> m_current;
    int m_row = 0;
    /// Turned so far and not yet walked.
    int m_wheel = 0;
    QRect m_shown;
};

} // namespace Grid
