// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ReviewModel.h>
#include <Roamly/Window/Grid/FilterBar.h>
#include <Roamly/Window/Grid/PhotoGridView.h>
#include <Roamly/Window/Grid/PhotoListModel.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>
#include <Roamly/Window/Grid/ZoomControl.h>

#include <QString>
#include <QWidget>
#include <vector>

class QSplitter;
class QStackedWidget;

namespace Grid {

/// Where photos are reviewed: the grid under its filter, with room for details beside it and for a loupe in
/// its place. What the user decides goes into the document through the review's operations; what needs more
/// than the project goes out as a signal.
class ReviewPane : public QWidget {
    Q_OBJECT

public:
    /// Borrows document and feed. Dates are told in `zone`.
    ReviewPane(Document::ProjectDocument& document, ThumbnailFeed& feed,
               QTimeZone zone = QTimeZone::systemTimeZone(), QWidget* parent = nullptr);

    /// The document changed: shows what it holds now.
    void refresh();

    [[nodiscard]] PhotoGridView& grid() { return *m_grid; }
    [[nodiscard]] const PhotoListModel& photos() const { return m_photos; }
    [[nodiscard]] FilterBar& filterBar() { return *m_filterBar; }
    /// In the filter's row; whoever has a better place may take it there.
    [[nodiscard]] ZoomControl& zoomControl() { return *m_zoom; }

    /// What regenerating a caption waits for, told in the menu; empty when it may be done.
    void setWhyNoCaption(const QString& reason) { m_whyNoCaption = reason; }

    /// A panel beside the grid, hidden at first; the pane owns it.
    void setDetails(QWidget* details);
    void showDetails(bool isShown);
    /// A view that takes the grid's place while it is shown; the pane owns it.
    void setLoupe(QWidget* loupe);
    void showLoupe(bool isShown);
    [[nodiscard]] bool isLoupeShown() const;

Q_SIGNALS:
    void chosenChanged();
    void loupeRequested(const Foundation::Uuid& photo);
    void groupRequested(const Foundation::Uuid& photo);
    void placeRequested(const std::vector<Foundation::Uuid>& photos);
    void captionRegenerationRequested(const Foundation::Uuid& photo);
    void fileRequested(const Foundation::Uuid& photo);
    void urlsDropped(const QList<QUrl>& urls);

private:
    void forwardWishes();
    void showMenu(const QPoint& globalPosition);
    void showWhatMatches();

    Document::ProjectDocument* m_document;
    Document::ReviewModel m_review;
    PhotoListModel m_photos;
    FilterBar* m_filterBar;
    ZoomControl* m_zoom;
    PhotoGridView* m_grid;
    QWidget* m_noMatches;
    /// The grid or the note that nothing matches.
    QStackedWidget* m_shown;
    QSplitter* m_beside;
    QStackedWidget* m_pages;
    QWidget* m_gridPage;
    QWidget* m_details = nullptr;
    QWidget* m_loupe = nullptr;
    QString m_whyNoCaption;
    bool m_isRefreshing = false;
};

} // namespace Grid
