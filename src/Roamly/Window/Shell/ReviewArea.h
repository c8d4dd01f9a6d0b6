// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <Roamly/Document/ProjectDocument.h>
#include <Roamly/Window/Grid/CloseUp.h>
#include <Roamly/Window/Grid/ReviewPane.h>
#include <Roamly/Window/Shell/Thumbnails.h>

#include <QList>
#include <QUrl>
#include <QWidget>
#include <set>

namespace Shell {

/// The photos of a document and what is done with them in their own view: the join between the window and the
/// review grid.
class ReviewArea : public QWidget {
    Q_OBJECT

public:
    /// Borrows the document. `photo` loads one for the screen.
    ReviewArea(Document::ProjectDocument& document, std::shared_ptr<Platform::ThumbnailProvider> thumbnails,
               Grid::LargePhotos::Load photo, QWidget* parent = nullptr);
    ~ReviewArea() override;

    /// What the actions on photos apply to.
    [[nodiscard]] std::set<Foundation::Uuid> marked() const;
    void selectAll();
    void selectNone();
    void find();
    void editCaption();
    /// Hands on a caption that is being typed.
    void finishEditing();
    void openPhoto();
    void compareGroup();
    [[nodiscard]] bool isMarkedInGroup() const;
    void showDetails(bool isShown);
    void resizePhotos(int steps);
    /// Empty when a caption may be regenerated.
    void setWhyNoCaption(const QString& reason);
    /// The control of the photos' size, for a better place.
    [[nodiscard]] QWidget* zoom();

Q_SIGNALS:
    void markedChanged();
    void placeWanted(const std::set<Foundation::Uuid>& photos);
    void captionWanted(const Foundation::Uuid& photo);
    void fileWanted(const Foundation::Uuid& photo);
    void dropped(const QList<QUrl>& urls);

private:
    Thumbnails m_thumbnails;
    Grid::ReviewPane* m_pane;
    Grid::CloseUp m_closeUp;
    Document::ProjectDocument::Subscription m_subscription;
};

} // namespace Shell
