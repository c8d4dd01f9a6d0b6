// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/EdgeScroll.h>

#include <QAbstractScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace Grid {

namespace {

constexpr int edgeHeight = 48;
constexpr int fastest = 32;

} // namespace

EdgeScroll::EdgeScroll(QAbstractScrollArea& area)
    : QTimer(&area)
    , m_area(&area) {
    setInterval(16);
    connect(this, &QTimer::timeout, this, &EdgeScroll::step);
}

void EdgeScroll::pointAt(int y) {
    m_y = y;
    if (stepAt(y, m_area->viewport()->height()) == 0)
        stop();
    else if (!isActive())
        start();
}

int EdgeScroll::stepAt(int y, int viewportHeight) {
    const int edge = std::min(edgeHeight, viewportHeight / 4);
    if (edge <= 0)
        return 0;
    const int above = edge - y;
    const int below = y - (viewportHeight - edge);
    const auto speed = [&](int depth) { return std::clamp(depth * fastest / edge, 1, fastest); };
    if (above > 0)
        return -speed(above);
    return below > 0 ? speed(below) : 0;
}

void EdgeScroll::step() {
    QScrollBar* bar = m_area->verticalScrollBar();
    const int before = bar->value();
    bar->setValue(before + stepAt(m_y, m_area->viewport()->height()));
    if (bar->value() != before)
        Q_EMIT scrolled();
}

} // namespace Grid
