// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>
#include <ProjectModel/PhotoItem.h>
#include <Roamly/Window/Grid/FittedPhoto.h>
#include <Roamly/Window/Grid/ThumbnailFeed.h>

#include <QString>
#include <QWidget>
#include <optional>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace Grid {

class DetailsPreview;

/// What there is to be told of one photo.
struct PhotoDetails {
    ProjectModel::PhotoItem photo;
    QString date;
    QString place;
    /// "between Sintra 12 min before and Sintra 8 min after"; empty when there is none.
    QString placeEvidence;
    /// How the photo does in its group; empty when it is in none.
    QString shot;
    QString quality;
    /// Why its file cannot be shown; empty when it can.
    QString whyNoFile;
};

/// The details of the photo that has the keyboard, with its caption to be written in several lines. A caption
/// goes out when the keyboard leaves it, another photo comes, or with Ctrl+Return; Esc takes it back.
class DetailsPanel : public QWidget {
    Q_OBJECT

public:
    /// Borrows the feed.
    explicit DetailsPanel(ThumbnailFeed& feed, QWidget* parent = nullptr);

    /// Nothing: `otherwise` says why ("Choose a photo"). A caption that is being typed stays as it is.
    void setDetails(const std::optional<PhotoDetails>& details, const QString& otherwise = {});
    /// Hands on a caption that is being typed.
    void finishEditing();

Q_SIGNALS:
    void captionEdited(const Foundation::Uuid& photo, const QString& caption);
    void fileRequested(const Foundation::Uuid& photo);
    void placeRequested(const Foundation::Uuid& photo);
    void groupRequested(const Foundation::Uuid& photo);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showCaption();
    void colour();

    std::optional<PhotoDetails> m_details;
    QWidget* m_page;
    QLabel* m_nothing;
    DetailsPreview* m_preview;
    QLabel* m_file;
    QPushButton* m_showInFiles;
    QLabel* m_date;
    QLabel* m_place;
    QLabel* m_evidence;
    QPushButton* m_setPlace;
    QPlainTextEdit* m_caption;
    QWidget* m_group;
    QLabel* m_shot;
    QLabel* m_quality;
    QPushButton* m_compare;
};

} // namespace Grid
