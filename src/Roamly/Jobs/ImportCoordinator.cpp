// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/Jobs/ImportCoordinator.h>

#include <memory>
#include <utility>

namespace Jobs {

namespace {

using ProjectModel::PhotoItem;
using ProjectModel::Project;

/// Absolute, without "." and ".." and without a separator at the end.
std::filesystem::path fullPath(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(folder, error);
    if (error)
        absolute = folder;
    absolute = absolute.lexically_normal();
    return absolute.has_filename() || !absolute.has_relative_path() ? absolute : absolute.parent_path();
}

/// What a folder holds, with its photos linked to it already.
struct ReadFolder {
    ProjectModel::PhotoSource source;
    std::vector<PhotoItem> photos;
};

/// All that was read of the chosen folders before the end or a stop.
struct Reading {
    std::vector<ReadFolder> folders;
    std::vector<std::string> notices;
    ProjectModel::IdentityKeys keys;
};

/// Reads one folder into `reading`, as photos or as a notice. Throws Foundation::Cancelled.
void read(const std::filesystem::path& path, const ImportEnvironment& environment,
          const PhotoSources::FolderImporter::Options& options, Reading& reading) {
    const std::optional<Foundation::Bytes> bookmark = environment.bookmarkOfFolder(path);
    if (!bookmark) {
        reading.notices.push_back("Couldn’t get lasting access to “" + ImportCoordinator::folderName(path) +
                                  "”.");
        return;
    }
    const ProjectModel::PhotoSource source{
        options.newID(), ProjectModel::FolderSourceRef{*bookmark, Foundation::displayText(path)}};
    std::vector<PhotoItem> photos = environment.photosInFolder(path, options);
    if (photos.empty()) {
        reading.notices.push_back("No photos were found in “" + ImportCoordinator::folderName(path) + "”.");
        return;
    }
    for (PhotoItem& photo : photos)
        photo.sourceID = source.id;
    reading.keys.merge(environment.identityKeys(photos, options.stop));
    reading.folders.push_back({source, std::move(photos)});
}

/// Adds what was read; photos that were there already stay linked to the source through which they first
/// came.
std::size_t merge(const Reading& reading, Project& project) {
    std::size_t added = 0;
    for (const ReadFolder& folder : reading.folders) {
        const std::size_t before = project.photos.size();
        project.mergeImportedPhotos(folder.photos, reading.keys);
        if (project.photos.size() > before)
            project.addSource(folder.source);
        added += project.photos.size() - before;
    }
    return added;
}

} // namespace

std::optional<std::string> ImportOutcome::notice() const {
    std::optional<std::string> text;
    for (const std::string& notice : notices)
        text = text ? *text + "\n" + notice : notice;
    return text;
}

ImportCoordinator::ImportCoordinator(Executor executor, ImportEnvironment environment,
                                     std::function<void()> changed)
    : m_environment(std::make_shared<const ImportEnvironment>(std::move(environment)))
    , m_changed(std::move(changed))
    , m_job(std::move(executor), Job::WhenStopped::RunOut) {}

void ImportCoordinator::changed() const {
    if (m_changed)
        m_changed();
}

std::string ImportCoordinator::folderName(const std::filesystem::path& folder) {
    const std::filesystem::path path = fullPath(folder);
    return Foundation::displayText(path.has_filename() ? path.filename() : path);
}

void ImportCoordinator::importFolders(Document::ProjectDocument& document,
                                      std::vector<std::filesystem::path> folders) {
    if (m_job.isRunning())
        return;
    m_state = State{};
    m_state.isRunning = true;
    m_state.progressText = "Starting…";
    m_job.start(
        [this, &document, environment = m_environment, folders = std::move(folders),
         present = document.project().photos](const Job::Run& run) {
            auto reading = std::make_shared<Reading>();
            try {
                reading->keys = environment->identityKeys(present, run.stop());
                for (const std::filesystem::path& folder : folders) {
                    const std::filesystem::path path = fullPath(folder);
                    PhotoSources::FolderImporter::Options options;
                    options.newID = environment->newID;
                    options.stop = run.stop();
                    options.progress = [&](const PhotoSources::ImportProgress& progress) {
                        run.post([this, text = "Importing " + folderName(path), progress] {
                            m_state.progressText = text;
                            m_state.progress = progress;
                            changed();
                        });
                    };
                    read(path, *environment, options, *reading);
                }
            } catch (const Foundation::Cancelled&) {
                // What was read before stays.
            }
            return [this, &document, reading, environment] {
                // Photos that came while the folders were read (an undone removal brings some) have no key
                // yet.
                reading->keys.merge(
                    environment->identityKeys(reading->keys.missing(document.project().photos), {}));
                ImportOutcome outcome{.added = 0, .notices = std::move(reading->notices)};
                if (!reading->folders.empty())
                    document.edit("Import Photos",
                                  [&](Project& project) { outcome.added = merge(*reading, project); });
                m_state.outcome = std::move(outcome);
            };
        },
        [this](const Job::Ending& ending) {
            m_state.progressText.reset();
            m_state.wasCancelled = ending.wasStopped;
            m_state.errorText = ending.failure;
            m_state.isStopping = false;
            m_state.isRunning = false;
            changed();
        });
    changed();
}

void ImportCoordinator::cancel() {
    if (!m_job.stop())
        return;
    m_state.isStopping = true;
    changed();
}

} // namespace Jobs
