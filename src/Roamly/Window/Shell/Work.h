// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Roamly/Window/Shell/WorkRows.h>

#include <QObject>
#include <QString>
#include <map>

namespace Shell {

/// What the long work of a window needs of the machine.
struct Engines {
    Jobs::ImportEnvironment import;
    Jobs::AnalysisController::Analyze analyze;
    Jobs::CaptionEnvironment captions;
    Jobs::ExportController::FrameSourceFactory frames;
};

/// This machine, as it is.
[[nodiscard]] Engines machineEngines();

/// The long work of one window, one job of each kind at a time. It works on copies and lands in the document
/// as one step each, while the user goes on.
class Work : public QObject {
    Q_OBJECT

public:
    explicit Work(Engines engines, QObject* parent = nullptr);
    /// Ends what runs, and waits for it.
    ~Work() override;

    [[nodiscard]] Jobs::ImportCoordinator& imports() { return m_imports; }
    [[nodiscard]] Jobs::AnalysisController& analysis() { return m_analysis; }
    [[nodiscard]] Jobs::CaptionController& captions() { return m_captions; }
    [[nodiscard]] Jobs::ExportController& exports() { return m_exports; }

    [[nodiscard]] bool isRunning(WorkKind kind) const;
    [[nodiscard]] std::optional<WorkRow> row(WorkKind kind) const;
    void cancel(WorkKind kind);

Q_SIGNALS:
    void changed(Shell::WorkKind kind);
    void begun(Shell::WorkKind kind);
    /// It is over, done or not. Comes after `changed`.
    void ended(Shell::WorkKind kind);

private:
    void note(WorkKind kind);

    std::map<WorkKind, bool> m_wasRunning;
    Jobs::ImportCoordinator m_imports;
    Jobs::AnalysisController m_analysis;
    Jobs::CaptionController m_captions;
    Jobs::ExportController m_exports;
};

/// What the user is told when work ended: one sentence, nothing when there is nothing to tell.
[[nodiscard]] QString endSentence(const Jobs::ImportCoordinator::State& state);
[[nodiscard]] QString endSentence(const Jobs::AnalysisController::State& state);
[[nodiscard]] QString endSentence(const Jobs::CaptionController::State& state);
[[nodiscard]] QString endSentence(const Jobs::ExportController::State& state);

} // namespace Shell
