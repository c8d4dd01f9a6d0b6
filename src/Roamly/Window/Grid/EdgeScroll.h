// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTimer>

class QAbstractScrollArea;

namespace Grid {

/// Scrolls an area while something is dragged near its upper or lower edge, faster the nearer it is.
class EdgeScroll : public QTimer {
    Q_OBJECT

public:
    /// Borrows the area.
    explicit EdgeScroll(QAbstractScrollArea& area);

    /// Where the pointer is, in the viewport's height.
    void pointAt(int y);

    /// How far one step scrolls for a pointer at y: pixels, negative upwards, 0 away from the edges.
    [[nodiscard]] static int stepAt(int y, int viewportHeight);

Q_SIGNALS:
    void scrolled();

private:
    void step();

    QAbstractScrollArea* m_area;
    int m_y = 0;
};

} // namespace Grid
