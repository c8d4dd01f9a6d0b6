// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Export/ExportEstimate.h>
#include <Export/ExportPreset.h>
#include <Roamly/Jobs/ExportController.h>
#include <Roamly/Window/Sheets/Sheet.h>

#include <QStringList>
#include <functional>
#include <optional>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace Sheets {

/// What is going to be exported, and how the user chose the last time.
struct ExportPlan {
    Export::ExportPreset preset = {};
    /// The film's length in seconds.
    double filmSeconds = 0;
    /// In the film.
    int photoCount = 0;
    /// The names of those of them that can't be found and will be black.
    QStringList missingPhotos = {};
    /// What an export goes over; at least 1.
    int processorCount = 1;
};

/// The export's sheet: resolution, codec and place are chosen, progress is watched, the finished film is
/// shown. Closing it leaves a running export alone.
class ExportSheet : public Sheet {
    Q_OBJECT
public:
    /// Asks the user for the movie's file, proposing a name, and calls `chosen` once there is one; never when
    /// the user thinks better of it. Returns at once.
    using FileChooser = std::function<void(QWidget* parent, const QString& proposedName,
                                           std::function<void(const QString&)> chosen)>;

    ExportSheet(ExportPlan plan, FileChooser chooseFile, QWidget* parent);

    using Sheet::show;
    /// How the export goes; `secondsLeft` where that can be told.
    void show(const Jobs::ExportController::State& state, std::optional<double> secondsLeft = {});

Q_SIGNALS:
    /// The user's choice, to be kept for the next time.
    void resolutionChosen(Export::ExportResolution resolution);
    void codecChosen(Export::ExportCodec codec);
    void exportRequested(Export::ExportPreset preset, const QString& path);
    void cancelRequested();
    void showInFilesRequested(const QString& path);
    void playRequested(const QString& path);

private:
    void addChoices();
    void addMissingPhotos();
    void addProgress();
    void addOutcome();
    void addButtons();
    void showSummary();
    [[nodiscard]] Export::ExportPreset preset() const;

    ExportPlan m_plan;
    FileChooser m_chooseFile;
    QString m_savedPath;

    QComboBox* m_resolution = nullptr;
    QComboBox* m_codec = nullptr;
    QLabel* m_summary = nullptr;
    QWidget* m_progressArea = nullptr;
    QLabel* m_stage = nullptr;
    QLabel* m_timeLeft = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_cancel = nullptr;
    QWidget* m_savedArea = nullptr;
    QLabel* m_savedName = nullptr;
    QLabel* m_failedPhotos = nullptr;
    QWidget* m_errorArea = nullptr;
    QLabel* m_error = nullptr;
    QPushButton* m_export = nullptr;
};

/// The desktop's own save dialog (or Qt's, when `native` is false) for movies.
[[nodiscard]] ExportSheet::FileChooser movieFileDialog(bool native);

/// What is proposed to be the movie's name.
[[nodiscard]] QString proposedMovieName();

/// Names the photos that will be black; empty when there are none.
[[nodiscard]] QString missingPhotosSentence(const QStringList& names);

} // namespace Sheets
