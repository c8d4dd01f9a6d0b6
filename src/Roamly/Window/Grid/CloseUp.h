// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Document/ReviewModel.h>
#include <Roamly/Window/Grid/LargePhotos.h>
#include <Roamly/Window/Grid/ReviewPane.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QObject>
#include <QTimeZone>
#include <optional>
#include <vector>

class QStackedWidget;

namespace Grid {

class Comparison;
class DetailsPanel;
class Loupe;

/// What brings a pane's photos closer: the loupe and the comparison of a group, which take the grid's place,
/// and the details beside it.
class CloseUp : public QObject {
    Q_OBJECT

public:
    /// Borrows all but the loader; the views become the pane's.
    CloseUp(ReviewPane& pane, Document::ProjectDocument& document, ThumbnailFeed& feed,
            LargePhotos::Load load, QTimeZone zone = QTimeZone::systemTimeZone());

    /// After the pane's own refresh.
    void refresh();

    void openPhoto(const Foundation::Uuid& photo);
    /// A photo without a group changes nothing.
    void compareGroup(const Foundation::Uuid& photo);
    /// Back to the grid; whether there was something to leave.
    bool leave();
    void showDetails(bool isShown);
    /// Hands on a caption that is being typed in the details.
    void finishEditing();

private:
    void connectLoupe();
    void connectDetails();
    void show(QWidget* view);
    void showGroup();
    void showChosen();
    /// After what happens now, where that may be a change of the document.
    void store(const Foundation::Uuid& photo, const QString& caption);

    ReviewPane* m_pane;
    Document::ProjectDocument* m_document;
    Document::ReviewModel m_review;
    QTimeZone m_zone;
    LargePhotos m_large;
    QStackedWidget* m_views;
    Loupe* m_loupe;
    Comparison* m_comparison;
    DetailsPanel* m_details;
    /// A photo of the group that is compared.
    std::optional<Foundation::Uuid> m_compared;
    /// Where the comparison was asked for, and where Esc leads back to.
    bool m_cameFromLoupe = false;
    bool m_isRefreshing = false;
};

} // namespace Grid
