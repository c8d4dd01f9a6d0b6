// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Window/Grid/LargePhotos.h>
#include <Roamly/Window/Grid/ShotTile.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QWidget>
#include <vector>

class QGridLayout;
class QLabel;
class QScrollArea;

namespace Grid {

/// The shots of a near-duplicate group side by side, up to six at once. The keys 1 to 9 keep a shot or leave
/// it out, Esc goes back.
class Comparison : public QWidget {
    Q_OBJECT

public:
    /// Borrows both.
    Comparison(ThumbnailFeed& feed, LargePhotos& large, QWidget* parent = nullptr);

    /// Other values of the same shots keep tiles and keyboard where they are.
    void setShots(const std::vector<Shot>& shots);
    [[nodiscard]] const std::vector<ShotTile*>& tiles() const { return m_tiles; }
    /// How many shots stand beside each other.
    [[nodiscard]] static int columnsFor(std::size_t shots);

Q_SIGNALS:
    void decisionToggled(const std::vector<Foundation::Uuid>& photos);
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void rebuild(const std::vector<Shot>& shots);
    void arrange();

    ThumbnailFeed* m_feed;
    LargePhotos* m_large;
    QLabel* m_title;
    QScrollArea* m_scroll;
    QWidget* m_wall;
    QGridLayout* m_grid;
    std::vector<ShotTile*> m_tiles;
};

} // namespace Grid
