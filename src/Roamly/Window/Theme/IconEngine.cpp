// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Theme/IconEngine.h>

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QtGlobal>
#include <algorithm>
#include <utility>

namespace Theme {

namespace {

/// How strong an icon is that can't be used now.
constexpr int disabledAlpha = 96;

/// The drawings' grid and the width of their lines in it.
constexpr double gridSide = 24;
constexpr double lineWidth = 1.5;
/// Lines thinner than this look grey rather than fine.
constexpr double leastLineWidth = 1.25;

/// The drawing for a side in pixels, in the colour.
QByteArray drawing(QByteArray svg, const QColor& ink, int side) {
    svg.replace("currentColor", ink.name(QColor::HexRgb).toLatin1());
    const double width = std::max(lineWidth, leastLineWidth * gridSide / side);
    svg.replace("stroke-width=\"1.5\"", "stroke-width=\"" + QByteArray::number(width, 'f', 3) + '"');
    return svg;
}

} // namespace

IconEngine::IconEngine(QString name, QByteArray svg, const QColor& colour)
    : m_name(std::move(name))
    , m_svg(std::move(svg))
    , m_colour(colour) {}

QColor IconEngine::colour(QIcon::Mode mode) const {
    const QPalette palette = QGuiApplication::palette();
    QColor result = m_colour.isValid()        ? m_colour
                    : mode == QIcon::Selected ? palette.color(QPalette::HighlightedText)
                                              : palette.color(QPalette::Active, QPalette::WindowText);
    if (mode == QIcon::Disabled)
        result.setAlpha(result.alpha() * disabledAlpha / 255);
    return result;
}

QPixmap IconEngine::rendered(const QSize& pixels, QIcon::Mode mode) const {
    const QColor ink = colour(mode);
    const QString cacheKey = QStringLiteral("roamly-icon/%1/%2x%3/%4")
                                 .arg(m_name)
                                 .arg(pixels.width())
                                 .arg(pixels.height())
                                 .arg(ink.rgba(), 8, 16);
    QPixmap picture;
    if (QPixmapCache::find(cacheKey, &picture))
        return picture;
    picture = QPixmap{pixels};
    picture.fill(Qt::transparent);
    QSvgRenderer renderer{drawing(m_svg, ink, std::max(1, std::min(pixels.width(), pixels.height())))};
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter{&picture};
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    if (ink.alpha() < 255) {
        // Fades the whole, so that crossing lines do not show through each other.
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.fillRect(picture.rect(), QColor{0, 0, 0, ink.alpha()});
    }
    painter.end();
    QPixmapCache::insert(cacheKey, picture);
    return picture;
}

void IconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) {
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const int side = std::min(rect.width(), rect.height());
    QRect square{0, 0, side, side};
    square.moveCenter(rect.center());
    painter->drawPixmap(square, rendered((QSizeF{square.size()} * ratio).toSize(), mode));
}

QPixmap IconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) {
    return rendered(size, mode);
}

QPixmap IconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal scale) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    // From here on the size is in pixels of the layout, before in those of the device.
    QPixmap picture = rendered((QSizeF{size} * scale).toSize(), mode);
    picture.setDevicePixelRatio(scale);
    return picture;
#else
    Q_UNUSED(scale)
    return rendered(size, mode);
#endif
}

QIconEngine* IconEngine::clone() const {
    return new IconEngine{m_name, m_svg, m_colour};
}

QString IconEngine::key() const {
    return QStringLiteral("roamly");
}

} // namespace Theme
