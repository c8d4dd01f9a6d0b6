// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/DisplayText.h>
#include <Roamly/Platform/CaptionEngine.h>
#include <Roamly/Platform/MachineAnalysis.h>
#include <Roamly/Platform/MachineImport.h>
#include <Roamly/Platform/SlideshowFrames.h>
#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/Work.h>

#include <utility>

namespace Shell {

namespace {

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QString counted(std::size_t count, const QString& one, const QString& many) {
    return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

} // namespace

Engines machineEngines() {
    return {.import = Platform::machineImport(),
            .analyze = Platform::analyzeOnThisMachine,
            .captions = Platform::systemCaptionEnvironment(),
            .frames = Platform::slideshowFrames};
}

Work::Work(Engines engines, QObject* parent)
    : QObject(parent)
    , m_imports(executorOf(this), std::move(engines.import), [this] { note(WorkKind::importing); })
    , m_analysis(executorOf(this), std::move(engines.analyze), [this] { note(WorkKind::analysis); })
    , m_captions(executorOf(this), std::move(engines.captions), [this] { note(WorkKind::captions); })
    , m_exports(executorOf(this), std::move(engines.frames), [this] { note(WorkKind::exportMovie); }) {}

Work::~Work() = default;

bool Work::isRunning(WorkKind kind) const {
    switch (kind) {
    case WorkKind::importing:
        return m_imports.state().isRunning;
    case WorkKind::analysis:
        return m_analysis.state().isRunning;
    case WorkKind::captions:
        return m_captions.state().isRunning;
    case WorkKind::exportMovie:
        return m_exports.state().isExporting;
    }
    return false;
}

std::optional<WorkRow> Work::row(WorkKind kind) const {
    switch (kind) {
    case WorkKind::importing:
        return workRow(m_imports.state());
    case WorkKind::analysis:
        return workRow(m_analysis.state());
    case WorkKind::captions:
        return workRow(m_captions.state());
    case WorkKind::exportMovie:
        return workRow(m_exports.state());
    }
    return std::nullopt;
}

void Work::cancel(WorkKind kind) {
    switch (kind) {
    case WorkKind::importing:
        return m_imports.cancel();
    case WorkKind::analysis:
        return m_analysis.cancel();
    case WorkKind::captions:
        return m_captions.cancel();
    case WorkKind::exportMovie:
        return m_exports.cancel();
    }
}

void Work::note(WorkKind kind) {
    const bool isNow = isRunning(kind);
    const bool was = std::exchange(m_wasRunning[kind], isNow);
    if (isNow && !was)
        Q_EMIT begun(kind);
    Q_EMIT changed(kind);
    if (was && !isNow)
        Q_EMIT ended(kind);
}

QString endSentence(const Jobs::ImportCoordinator::State& state) {
    if (state.errorText)
        return text(*state.errorText);
    QStringList lines;
    if (state.outcome.added > 0)
        lines << counted(state.outcome.added, QStringLiteral("photo was imported."),
                         QStringLiteral("photos were imported."));
    if (const auto notice = state.outcome.notice())
        lines << text(*notice);
    return lines.join(QLatin1Char('\n'));
}

QString endSentence(const Jobs::AnalysisController::State& state) {
    if (state.errorText)
        return text(*state.errorText);
    return state.wasCancelled ? QString{} : QStringLiteral("The photos are analyzed.");
}

QString endSentence(const Jobs::CaptionController::State& state) {
    if (state.errorText)
        return text(*state.errorText);
    if (!state.run || state.run->captions.empty())
        return {};
    return counted(state.run->captions.size(), QStringLiteral("caption was written."),
                   QStringLiteral("captions were written."));
}

QString endSentence(const Jobs::ExportController::State& state) {
    if (state.errorText)
        return text(*state.errorText);
    if (!state.savedPath)
        return {};
    return QStringLiteral("The movie “%1” is saved.")
        .arg(text(Foundation::displayText(state.savedPath->filename())));
}

} // namespace Shell
