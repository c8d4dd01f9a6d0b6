// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Window/Grid/CellAreas.h>
#include <Roamly/Window/Grid/Choice.h>
#include <Roamly/Window/Grid/FlowLayout.h>
#include <Roamly/Window/Grid/KeyGestures.h>
#include <Roamly/Window/Grid/PointerGestures.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>
#include <Roamly/Window/Grid/TilePictures.h>

#include <QList>
#include <QListView>
#include <QUrl>
#include <optional>
#include <utility>
#include <vector>

namespace Grid {

class DropZone;
class EdgeScroll;
class PhotoListModel;

/// The photos as a wall of tiles in sections, whose headers stay on top while they scroll. It shows and tells
/// what the user wants by signals; its own selection is what the wishes apply to. Photos are named by ids.
class PhotoGridView : public QListView {
    Q_OBJECT

public:
    static constexpr int smallestTile = 96;
    static constexpr int largestTile = 384;

    /// Borrows model and feed.
    PhotoGridView(PhotoListModel& model, ThumbnailFeed& feed, QWidget* parent = nullptr);

    [[nodiscard]] int tileSide() const { return m_tileSide; }
    /// About how wide tiles are; the photo at the top stays there.
    void setTileSide(int side);

    /// What wishes apply to: the selected photos, in their order.
    [[nodiscard]] std::vector<Foundation::Uuid> chosen() const { return m_choice->chosen(); }
    [[nodiscard]] std::optional<Foundation::Uuid> current() const;
    /// Makes the photo current, selects it alone and brings it into view.
    void goTo(const Foundation::Uuid& photo);
    /// Selects all photos under the header of the current one.
    void chooseCurrentSection();
    void editCurrentCaption();
    /// Hands on a caption that is being typed, before something that needs it.
    void finishEditing();

    // What gestures do.

    struct Hit {
        int row = -1;
        int section = -1;
        std::optional<CellAreas::Part> part;
    };
    [[nodiscard]] Hit hit(const QPoint& point) const;
    [[nodiscard]] QPoint toContent(const QPoint& point) const;
    [[nodiscard]] Choice& choice() { return *m_choice; }
    [[nodiscard]] CellAreas areasOf(int row) const;
    void hover(const QPoint& point);
    void scrollNear(const QPoint& point);
    void stopScrolling();
    /// Esc: a frame that is drawn, else what is chosen. Whether there was either.
    bool giveUp();
    void editCaption(int row);
    /// Lets the user drag the chosen photos, beginning at a row.
    void drag(int row);

    [[nodiscard]] const FlowLayout& flowLayout() const;
    [[nodiscard]] const PhotoListModel& photos() const { return *m_photos; }

    [[nodiscard]] QRect visualRect(const QModelIndex& index) const override;
    [[nodiscard]] QModelIndex indexAt(const QPoint& point) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override;
    void selectAll() override;

Q_SIGNALS:
    void tileSideChanged(int side);
    /// The view's own selection is another one.
    void chosenChanged();
    /// Space: between in the film and left out.
    void decisionToggled(const std::vector<Foundation::Uuid>& photos);
    void removalRequested(const std::vector<Foundation::Uuid>& photos);
    void loupeRequested(const Foundation::Uuid& photo);
    /// The photo's near-duplicate group, side by side.
    void groupRequested(const Foundation::Uuid& photo);
    void menuRequested(const QPoint& globalPosition);
    /// To before or after a photo.
    void moveRequested(const std::vector<Foundation::Uuid>& photos, const Foundation::Uuid& neighbour,
                       bool isAfter);
    void urlsDropped(const QList<QUrl>& urls);

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    [[nodiscard]] int horizontalOffset() const override { return 0; }
    [[nodiscard]] int verticalOffset() const override;
    [[nodiscard]] bool isIndexHidden(const QModelIndex&) const override { return false; }
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    [[nodiscard]] QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;

    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override { m_pointer.press(*event); }
    void mouseMoveEvent(QMouseEvent* event) override { m_pointer.move(*event); }
    void mouseReleaseEvent(QMouseEvent* event) override { m_pointer.release(*event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { m_pointer.doubleClick(*event); }
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override { m_pointer.askForMenu(*event); }
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void relayout();
    void keepInSight();
    void tellVisiblePhotos();

    PhotoListModel* m_photos;
    ThumbnailFeed* m_feed;
    TilePictures m_pictures;
    PointerGestures m_pointer{*this};
    KeyGestures m_keys{*this};
    EdgeScroll* m_edgeScroll;
    DropZone* m_dropZone;
    std::optional<Choice> m_choice;
    int m_tileSide = 192;

    mutable FlowLayout m_layout;
    mutable bool m_isLayoutDirty = true;
    /// The photo at the viewport's top and how far its tile is above it, kept over changes of the layout.
    std::optional<std::pair<Foundation::Uuid, int>> m_kept;

    int m_hoveredRow = -1;
    std::vector<Foundation::Uuid> m_toldVisible;
};

} // namespace Grid
