// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/DisplayText.h>
#include <Roamly/Document/FilmSummary.h>
#include <Roamly/Document/PlaybackSettings.h>
#include <Roamly/Document/ReviewModel.h>
#include <Roamly/Window/Sheets/AlbumPicker.h>
#include <Roamly/Window/Sheets/CaptionPromptSheet.h>
#include <Roamly/Window/Sheets/ExportSheet.h>
#include <Roamly/Window/Sheets/KnownPlaces.h>
#include <Roamly/Window/Sheets/PlaceSheet.h>
#include <Roamly/Window/Sheets/ProjectSettingsPopup.h>
#include <Roamly/Window/Sheets/SourcesManager.h>
#include <Roamly/Window/Shell/MusicLength.h>
#include <Roamly/Window/Shell/WindowSheets.h>
#include <Timeline/MusicFit.h>

#include <QDesktopServices>
#include <QThread>
#include <QUrl>
#include <algorithm>
#include <utility>

namespace Shell {

using ProjectModel::PhotoItem;
using ProjectModel::Project;
using ProjectModel::ProjectSettings;

namespace {

QString utf16(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// What the photos' file was called when its place was noted last.
QString fileName(const PhotoItem& photo) {
    const auto* const file = std::get_if<ProjectModel::FilePhotoRef>(&photo.source);
    return file ? utf16(file->displayName) : QString{};
}

Sheets::ExportPlan planOf(const Project& project, const Document::AppSettings& user) {
    Sheets::ExportPlan plan;
    plan.preset = {user.exportResolution, user.exportCodec};
    const Document::FilmSummary film =
        Document::summarize(project, Document::effectiveSettings(project.settings, user), std::nullopt);
    plan.filmSeconds = film.film;
    plan.photoCount = static_cast<int>(film.selected);
    for (const PhotoItem& photo : project.photos) {
        if (photo.isSelected && photo.isMissing)
            plan.missingPhotos << fileName(photo);
    }
    plan.processorCount = std::max(1, QThread::idealThreadCount());
    return plan;
}

Sheets::MusicFitOffer offerOf(const Project& project, const Document::AppSettings& user,
                              const std::optional<double>& music) {
    if (!project.music)
        return {.photoDuration = {}, .explanation = QStringLiteral("Choose music first.")};
    if (!music)
        return {.photoDuration = {}, .explanation = QStringLiteral("The music cannot be read.")};
    const auto fit =
        Timeline::fitToMusic(project, Document::effectiveSettings(project.settings, user), *music);
    if (!fit)
        return {.photoDuration = {}, .explanation = QStringLiteral("Select photos for the film first.")};
    const QString seconds = QString::number(fit->photoDuration, 'f', 1);
    const QString played =
        fit->plays == 1 ? QString{} : QStringLiteral(", which is played %1 times").arg(fit->plays);
    return {
        .photoDuration = fit->photoDuration,
        .explanation =
            QStringLiteral("%1 s for each photo, and the film ends with the music%2.").arg(seconds, played)};
}

/// What all the photos have, nothing where they differ.
template <typename Member>
QString common(const Project& project, const std::set<Foundation::Uuid>& ids, Member member) {
    std::optional<std::string> shared;
    for (const PhotoItem& photo : project.photos) {
        if (!ids.contains(photo.id))
            continue;
        const std::string mine =
            photo.location ? std::invoke(member, *photo.location).value_or(std::string{}) : std::string{};
        if (shared && *shared != mine)
            return {};
        shared = mine;
    }
    return utf16(shared.value_or(""));
}

std::optional<std::string> typed(const QString& name) {
    return name.trimmed().isEmpty() ? std::nullopt : std::optional{name.toStdString()};
}

} // namespace

WindowSheets::WindowSheets(QWidget& window, Document::ProjectDocument& document, Work& work,
                           const MusicLength& music, const WindowServices& services)
    : QObject(&window)
    , m_window(&window)
    , m_document(&document)
    , m_work(&work)
    , m_music(&music)
    , m_services(services) {
    connect(&work, &Work::changed, this, [this](WorkKind kind) {
        if (kind == WorkKind::exportMovie)
            showExportState();
    });
}

WindowSheets::~WindowSheets() = default;

void WindowSheets::showExport() {
    if (m_export)
        return m_export->raise();
    m_export = new Sheets::ExportSheet(planOf(m_document->project(), m_services.settings()),
                                       m_services.choosers.movie, m_window);
    m_export->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_export, &Sheets::ExportSheet::resolutionChosen, this,
            [this](Export::ExportResolution resolution) {
                m_services.setSetting("exportResolution", std::string{Export::rawValue(resolution)});
            });
    connect(m_export, &Sheets::ExportSheet::codecChosen, this, [this](Export::ExportCodec codec) {
        m_services.setSetting("exportCodec", std::string{Export::rawValue(codec)});
    });
    connect(m_export, &Sheets::ExportSheet::exportRequested, this,
            [this](Export::ExportPreset preset, const QString& path) {
                const Project& project = m_document->project();
                m_exportTime = {};
                m_work->exports().exportMovie(
                    project, Document::effectiveSettings(project.settings, m_services.settings()), preset,
                    path.toStdString());
            });
    connect(m_export, &Sheets::ExportSheet::cancelRequested, this,
            [this] { m_work->cancel(WorkKind::exportMovie); });
    connect(m_export, &Sheets::ExportSheet::showInFilesRequested, this,
            [this](const QString& path) { m_services.showInFiles(path.toStdString()); });
    connect(m_export, &Sheets::ExportSheet::playRequested, this,
            [](const QString& path) { QDesktopServices::openUrl(QUrl::fromLocalFile(path)); });
    showExportState();
    m_export->open();
}

void WindowSheets::showExportState() {
    const Jobs::ExportController::State& state = m_work->exports().state();
    const double now = m_services.now();
    if (state.isExporting && state.progress > 0)
        m_exportTime.progress(now, state.progress);
    if (m_export)
        m_export->show(state, m_exportTime.seconds(now));
}

void WindowSheets::showCaptionPrompt() {
    auto* const sheet =
        new Sheets::CaptionPromptSheet(utf16(m_document->project().settings.captionPrompt.value_or("")),
                                       utf16(m_services.settings().captionPrompt.value_or("")), m_window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &Sheets::CaptionPromptSheet::promptEdited, this, [this](const QString& prompt) {
        ProjectSettings settings = m_document->project().settings;
        settings.captionPrompt = typed(prompt);
        m_document->edit({"Change Caption Prompt", "caption prompt"},
                         [&](Project& project) { project.userSetSettings(std::move(settings)); });
    });
    connect(sheet, &QDialog::finished, this, [this] { m_document->seal(); });
    sheet->open();
}

void WindowSheets::showProjectSettings(const QWidget& button) {
    const Document::AppSettings user = m_services.settings();
    const Project& project = m_document->project();
    m_settings = new Sheets::ProjectSettingsPopup(project.settings, user,
                                                  offerOf(project, user, m_music->seconds()), m_window);
    m_settings->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_settings, &Sheets::ProjectSettingsPopup::settingsEdited, this, &WindowSheets::changeSettings);
    connect(m_settings, &Sheets::ProjectSettingsPopup::providerChosen, this, &WindowSheets::providerChosen);
    connect(m_settings, &Sheets::ProjectSettingsPopup::musicFitAccepted, this, [this](double duration) {
        ProjectSettings settings = m_document->project().settings;
        settings.photoDuration = duration;
        m_document->edit("Fit to Music",
                         [&](Project& changed) { changed.userSetSettings(std::move(settings)); });
    });
    connect(m_settings, &QDialog::finished, this, [this] { m_document->seal(); });
    m_settings->openUnder(button);
}

void WindowSheets::changeSettings(const ProjectSettings& settings) {
    m_document->edit({"Change Project Settings", "project settings"},
                     [&](Project& project) { project.userSetSettings(settings); });
}

void WindowSheets::showSources() {
    m_sources = new Sheets::SourcesManager(Sheets::sourceRows(m_document->project()), m_window);
    m_sources->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_sources, &Sheets::SourcesManager::addFolderRequested, this, &WindowSheets::importWanted);
    connect(m_sources, &Sheets::SourcesManager::locateRequested, this, &WindowSheets::locateWanted);
    connect(m_sources, &Sheets::SourcesManager::removeRequested, this, [this](const Foundation::Uuid& id) {
        m_document->edit("Remove Source", [&](Project& project) { project.removeSource(id); });
    });
    m_sources->open();
}

void WindowSheets::showAlbums() {
    auto* const sheet = new Sheets::AlbumPicker({}, m_window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->open();
}

void WindowSheets::showPlace(const std::set<Foundation::Uuid>& photos) {
    const Project& project = m_document->project();
    auto* const sheet =
        new Sheets::PlaceSheet(photos.size(), common(project, photos, &ProjectModel::ResolvedLocation::city),
                               common(project, photos, &ProjectModel::ResolvedLocation::country),
                               Sheets::knownPlaces(project), m_window);
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    connect(sheet, &Sheets::PlaceSheet::placeChosen, this,
            [this, photos](const QString& city, const QString& country) {
                Document::ReviewModel{*m_document}.setPlace(typed(city), typed(country), photos);
            });
    sheet->open();
}

void WindowSheets::refresh() {
    const Project& project = m_document->project();
    if (m_settings)
        m_settings->setValues(project.settings, offerOf(project, m_services.settings(), m_music->seconds()));
    if (m_sources)
        m_sources->showRows(Sheets::sourceRows(project));
}

} // namespace Shell
