// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/PhotoDrag.h>
#include <Roamly/Window/Theme/Colours.h>

#include <QDrag>
#include <QFontMetrics>
#include <QMimeData>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <optional>

namespace Grid::PhotoDrag {

using Foundation::Uuid;

namespace {

QString mimeType() {
    return QStringLiteral("application/x-roamly-photos");
}

} // namespace

std::unique_ptr<QMimeData> mimeData(const std::vector<Uuid>& photos) {
    QByteArray lines;
    for (const Uuid& photo : photos)
        lines += QByteArray::fromStdString(photo.text()) + '\n';
    auto data = std::make_unique<QMimeData>();
    data->setData(mimeType(), lines);
    return data;
}

bool holdsPhotos(const QMimeData& data) {
    return data.hasFormat(mimeType());
}

std::vector<Uuid> photos(const QMimeData& data) {
    std::vector<Uuid> result;
    for (const QByteArray& line : data.data(mimeType()).split('\n')) {
        if (const std::optional<Uuid> photo = Uuid::parse(line.toStdString()))
            result.push_back(*photo);
    }
    return result;
}

void run(QWidget& from, const std::vector<Uuid>& photos, const QPixmap& picture) {
    // Qt deletes it.
    auto* drag = new QDrag{&from};
    drag->setMimeData(mimeData(photos).release());
    drag->setPixmap(picture);
    drag->setHotSpot({24, 24});
    drag->exec(Qt::MoveAction, Qt::MoveAction);
}

QPixmap picture(const QPixmap& tile, std::size_t count, const Theme::Colours& colours, const QFont& font,
                double ratio) {
    constexpr int side = 96;
    constexpr int sheetOffset = 5;
    constexpr int room = 12;
    const int sheets = static_cast<int>(std::min<std::size_t>(count, 3)) - 1;
    const int extent = side + 2 * sheetOffset + room;
    QPixmap result{QSize{extent, extent} * ratio};
    result.setDevicePixelRatio(ratio);
    result.fill(Qt::transparent);

    QPainter painter{&result};
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF top{room / 2.0, room / 2.0, side, side};
    for (int sheet = sheets; sheet >= 0; --sheet) {
        painter.setPen(QPen{colours.line, 1});
        painter.setBrush(colours.tile);
        painter.drawRoundedRect(
            top.translated(sheet * sheetOffset, sheet * sheetOffset).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    }
    if (!tile.isNull())
        painter.drawPixmap(top, tile, QRectF{tile.rect()});
    if (count > 1) {
        QFont small{font};
        small.setPixelSize(12);
        small.setWeight(QFont::DemiBold);
        painter.setFont(small);
        const QString number = QString::number(count);
        const double width = std::max(20, QFontMetrics{small}.horizontalAdvance(number) + 12);
        const QRectF badge{top.right() - width + room / 2.0, 0, width, 20};
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.accent);
        painter.drawRoundedRect(badge, 10, 10);
        painter.setPen(colours.onAccent);
        painter.drawText(badge, Qt::AlignCenter, number);
    }
    return result;
}

} // namespace Grid::PhotoDrag
