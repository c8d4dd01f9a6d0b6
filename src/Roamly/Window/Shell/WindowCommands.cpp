// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Roamly/Document/CaptionProvider.h>
#include <Roamly/Document/ProjectMusic.h>
#include <Roamly/Document/ReviewModel.h>
#include <Roamly/Window/Shell/EventLoop.h>
#include <Roamly/Window/Shell/Questions.h>
#include <Roamly/Window/Shell/WindowCommands.h>

#include <QWidget>
#include <algorithm>
#include <memory>
#include <utility>

namespace Shell {

using ProjectModel::PhotoItem;
using ProjectModel::Project;

namespace {

const PhotoItem* photoOf(const Project& project, const Foundation::Uuid& id) {
    const auto found = std::ranges::find(project.photos, id, &PhotoItem::id);
    return found == project.photos.end() ? nullptr : &*found;
}

} // namespace

WindowCommands::WindowCommands(QWidget& window, Document::ProjectDocument& document, Work& work,
                               const WindowServices& services)
    : QObject(&window)
    , m_window(&window)
    , m_document(&document)
    , m_work(&work)
    , m_services(services)
    , m_errand(executorOf(this), Jobs::Job::WhenStopped::RunOut) {}

WindowCommands::~WindowCommands() = default;

void WindowCommands::importPhotos(const Paths& folders) {
    m_work->imports().importFolders(*m_document, folders);
}

void WindowCommands::analyze() {
    m_work->analysis().run(*m_document, m_services.settings());
}

void WindowCommands::generateCaptions() {
    const Document::AppSettings settings = m_services.settings();
    const ProjectModel::ProjectSettings& own = m_document->project().settings;
    if (!Document::allowsAICaptions(own, settings)) {
        Q_EMIT noticed(QString::fromStdString(Document::generateCaptionsHelp(own, settings)));
        return;
    }
    m_work->captions().run(*m_document, Document::effectiveProvider(own, settings));
}

void WindowCommands::regenerateCaption(const Foundation::Uuid& photo) {
    m_work->captions().regenerate(
        photo, *m_document,
        Document::effectiveProvider(m_document->project().settings, m_services.settings()));
}

void WindowCommands::resetAnalysis() {
    m_document->edit("Reset Analysis", [](Project& project) { project.resetAnalysisSelection(); });
}

void WindowCommands::sortByDate() {
    Document::ReviewModel{*m_document}.sortByDate();
}

void WindowCommands::remove(const std::set<Foundation::Uuid>& photos) {
    Document::ReviewModel{*m_document}.removePhotos(photos);
}

void WindowCommands::toggleInFilm(const std::set<Foundation::Uuid>& photos) {
    const auto& all = m_document->project().photos;
    const bool someAreOut = std::ranges::any_of(
        all, [&](const PhotoItem& photo) { return !photo.isSelected && photos.contains(photo.id); });
    Document::ReviewModel{*m_document}.setSelection(someAreOut, photos);
}

void WindowCommands::chooseMusic() {
    m_services.choosers.music(m_window, [this](const std::filesystem::path& file) { takeMusic(file); });
}

void WindowCommands::takeMusic(const std::filesystem::path& file) {
    struct Found {
        std::optional<ProjectModel::MusicSelection> music;
        bool isPlayable = false;
    };
    const auto found = std::make_shared<Found>();
    (void)m_errand.start(
        [this, file, found](const Jobs::Job::Run& run) -> Jobs::Job::Landing {
            found->music = Document::musicSelection(file);
            found->isPlayable = Document::isPlayable(file, run.stop());
            return [this, file, found] {
                m_document->edit("Choose Music",
                                 [&](Project& project) { project.userSetMusic(found->music); });
                if (!found->isPlayable)
                    Q_EMIT noticed(QString::fromStdString(Document::notPlayableWarning(file)));
            };
        },
        [this](const Jobs::Job::Ending& ending) {
            if (ending.failure)
                Q_EMIT noticed(QString::fromStdString(*ending.failure));
        });
}

void WindowCommands::removeMusic() {
    m_document->edit("Remove Music", [](Project& project) { project.userSetMusic(std::nullopt); });
}

void WindowCommands::chooseProvider(std::optional<ProjectModel::AIProvider> provider) {
    const Document::AppSettings settings = m_services.settings();
    const ProjectModel::ProjectSettings& own = m_document->project().settings;
    const auto choose = [this, provider] {
        ProjectModel::ProjectSettings changed = m_document->project().settings;
        changed.aiProvider = provider;
        m_document->edit("Choose Caption Provider",
                         [&](Project& project) { project.userSetSettings(std::move(changed)); });
        Q_EMIT providerDecided();
    };
    const auto confirmation = Document::privacyConfirmation(provider.value_or(settings.defaultAIProvider),
                                                            Document::effectiveProvider(own, settings));
    if (!confirmation)
        return choose();
    askForConsent(m_window, *confirmation, [this, choose](bool agreed) {
        if (agreed)
            choose();
        else
            Q_EMIT providerDecided();
    });
}

void WindowCommands::showInFiles(const Foundation::Uuid& photo) {
    const PhotoItem* const item = photoOf(m_document->project(), photo);
    const auto* const file = item ? std::get_if<ProjectModel::FilePhotoRef>(&item->source) : nullptr;
    if (file == nullptr)
        return;
    const auto found = std::make_shared<std::optional<std::filesystem::path>>();
    (void)m_errand.start(
        [this, bookmark = file->bookmark, found](const Jobs::Job::Run&) -> Jobs::Job::Landing {
            *found = Foundation::BookmarkResolver{}.resolvedFile(bookmark);
            return [this, found] {
                if (*found)
                    m_services.showInFiles(**found);
                else
                    Q_EMIT noticed(QStringLiteral("The photo’s file cannot be found."));
            };
        },
        {});
}

} // namespace Shell
