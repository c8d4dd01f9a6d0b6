// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/ProjectSettings.h>
#include <Roamly/Document/AppSettings.h>

#include <QDialog>
#include <QString>
#include <optional>

class QLabel;
class QPushButton;

namespace Sheets {

class OwnOrDefaultChoice;
class OwnOrDefaultSeconds;

/// What "Fit to Music" would do.
struct MusicFitOffer {
    /// Seconds each photo would be shown; absent when it can't be done.
    std::optional<double> photoDuration;
    /// What comes of it, or why it can't be done: one sentence.
    QString explanation;
};

/// The project's settings, each either its own or the user's default, in a popup under its button.
class ProjectSettingsPopup : public QDialog {
    Q_OBJECT
public:
    ProjectSettingsPopup(const ProjectModel::ProjectSettings& project, const Document::AppSettings& user,
                         const MusicFitOffer& musicFit, QWidget* parent);

    /// After a change elsewhere: undo, a confirmation that was refused. Tells nobody.
    void setValues(const ProjectModel::ProjectSettings& project, const MusicFitOffer& musicFit);

    /// Opens under the widget, its near edges aligned, within the screen.
    void openUnder(const QWidget& button);

Q_SIGNALS:
    /// All but the provider, with one change; the provider and the caption prompt are as they were.
    void settingsEdited(const ProjectModel::ProjectSettings& settings);
    /// Absent: the user's default. Whoever hears it asks for consent where it is needed, and calls
    /// `setValues`.
    void providerChosen(std::optional<ProjectModel::AIProvider> provider);
    /// The photos' duration that "Fit to Music" offers was accepted.
    void musicFitAccepted(double photoDuration);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void tellEdited();
    void fitHeight();

    ProjectModel::ProjectSettings m_project;
    MusicFitOffer m_musicFit;
    OwnOrDefaultSeconds* m_photoDuration;
    OwnOrDefaultChoice* m_kenBurns;
    OwnOrDefaultChoice* m_captions;
    OwnOrDefaultChoice* m_aiCaptions;
    OwnOrDefaultChoice* m_chapters;
    OwnOrDefaultChoice* m_provider;
    QPushButton* m_fit;
    QLabel* m_fitExplanation;
};

} // namespace Sheets
