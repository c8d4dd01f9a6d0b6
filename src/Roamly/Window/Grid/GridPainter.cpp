// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Grid/CellPainter.h>
#include <Roamly/Window/Grid/Choice.h>
#include <Roamly/Window/Grid/GridPainter.h>
#include <Roamly/Window/Grid/HeaderPainter.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/TilePictures.h>

#include <QPainter>

namespace Grid {

namespace {

void paintCells(QPainter& painter, const QRect& area, const GridScene& scene) {
    // Rings reach beyond their cells.
    constexpr int reach = CellAreas::ringReach;
    const QRect wanted = area.adjusted(-reach, -reach, reach, reach).translated(0, scene.offset);
    for (const auto& [first, last] : scene.layout.rowsIn(wanted)) {
        for (int row = first; row <= last && row < scene.photos.rowCount(); ++row) {
            const QRect cell = scene.layout.cell(row).translated(0, -scene.offset);
            const ProjectModel::PhotoItem& photo = scene.photos.photo(row);
            const CellContent content{
                .photo = photo,
                .groupSize = scene.photos.groupSize(row),
                .picture = scene.pictures.picture(photo, cell.width(), scene.ratio, scene.colours.tile),
                .isChosen = scene.choice.isChosen(row),
                .hasFocus = row == scene.focusedRow,
                .isHovered = row == scene.hoveredRow,
                .isEdited = row == scene.editedRow,
            };
            paintCell(painter, cell, content, scene.colours, scene.font, scene.isRightToLeft);
        }
    }
}

void paintHeader(QPainter& painter, const QRect& where, int section, const GridScene& scene) {
    const std::vector<Section>& sections = scene.photos.sections();
    if (static_cast<std::size_t>(section) < sections.size()) {
        HeaderPainter::paint(painter, where, sections[static_cast<std::size_t>(section)], scene.colours,
                             scene.font, scene.isRightToLeft);
    }
}

/// The headers that scroll with their photos, under whose rings they lie.
void paintHeaders(QPainter& painter, const QRect& area, const GridScene& scene) {
    const std::optional<int> first = scene.layout.sectionAt(area.top() + scene.offset);
    for (int section = first.value_or(scene.layout.sectionCount()); section < scene.layout.sectionCount();
         ++section) {
        const QRect where = scene.layout.header(section).translated(0, -scene.offset);
        if (where.top() > area.bottom())
            break;
        if (where.intersects(area))
            paintHeader(painter, where, section, scene);
    }
}

/// The one that stays on top once photos scroll under it.
void paintStickyHeader(QPainter& painter, const QRect& area, const GridScene& scene) {
    const auto sticky = scene.layout.stickyHeader(scene.offset);
    if (!sticky || !sticky->area.intersects(area) ||
        scene.offset <= scene.layout.header(sticky->section).top())
        return;
    paintHeader(painter, sticky->area, sticky->section, scene);
    painter.fillRect(QRect{0, sticky->area.bottom(), sticky->area.width(), 1}, scene.colours.line);
}

void paintOverlays(QPainter& painter, const GridScene& scene) {
    const QColor accent = scene.colours.accent;
    if (scene.dropSlot) {
        const QRect mark = scene.layout.slotMark(*scene.dropSlot).translated(0, -scene.offset);
        painter.setPen(Qt::NoPen);
        painter.setBrush(accent);
        painter.drawRoundedRect(mark.adjusted(-1, 0, 1, 0), 2, 2);
    }
    if (scene.awaitsFiles) {
        painter.setPen(QPen{accent, 2});
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(scene.viewport.adjusted(1, 1, -1, -1));
    }
    if (scene.frame) {
        QColor inside = accent;
        inside.setAlphaF(0.15F);
        painter.setPen(QPen{accent, 1});
        painter.setBrush(inside);
        painter.drawRect(QRectF{scene.frame->translated(0, -scene.offset)}.adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

} // namespace

void paintGrid(QPainter& painter, const QRect& area, const GridScene& scene) {
    painter.setFont(scene.font);
    // Each text runs as its own letters do, whatever the interface's direction.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(area, scene.colours.background);
    paintHeaders(painter, area, scene);
    paintCells(painter, area, scene);
    paintStickyHeader(painter, area, scene);
    paintOverlays(painter, scene);
}

} // namespace Grid
