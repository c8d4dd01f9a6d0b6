// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QColor>
#include <QIconEngine>
#include <QString>

namespace Theme {

/// Draws a picture of lines in the colour that the palette's text has at that moment, so that icons follow
/// from light to dark by themselves. What the drawing calls "currentColor" is that colour; all else keeps its
/// own.
class IconEngine : public QIconEngine {
public:
    /// With an invalid `colour` it is the palette's.
    IconEngine(QString name, QByteArray svg, const QColor& colour);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    [[nodiscard]] QIconEngine* clone() const override;
    [[nodiscard]] QString key() const override;
    bool isNull() override { return m_svg.isEmpty(); }

private:
    [[nodiscard]] QColor colour(QIcon::Mode mode) const;
    [[nodiscard]] QPixmap rendered(const QSize& pixels, QIcon::Mode mode) const;

    QString m_name;
    QByteArray m_svg;
    QColor m_colour;
};

} // namespace Theme
