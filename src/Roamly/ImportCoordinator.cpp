#include <Foundation/Bookmark.h>
#include <Roamly/DisplayText.h>
#include <Roamly/ImportCoordinator.h>

namespace Roamly {

using ProjectModel::Project;

std::optional<std::string> ImportOutcome::notice() const {
    std::optional<std::string> text;
    for (const std::string& notice : notices)
        text = text ? *text + "\n" + notice : notice;
    return text;
}

namespace ImportCoordinator {

namespace {

/// Absolute, without "." and ".." and without a separator at the end.
std::filesystem::path fullPath(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(folder, error);
    if (error)
        absolute = folder;
    absolute = absolute.lexically_normal();
    return absolute.has_filename() || !absolute.has_relative_path() ? absolute : absolute.parent_path();
}

} // namespace

std::string folderName(const std::filesystem::path& folder) {
    const std::filesystem::path path = fullPath(folder);
    return displayText(path.has_filename() ? path.filename() : path);
}

ImportOutcome importFolders(ProjectDocument& document, std::span<const std::filesystem::path> folders,
                            const Options& options) {
    ImportOutcome outcome;
    // Shared by all folders, so that a tree is searched for moved files at most once.
    Foundation::BookmarkResolver resolver;
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path path = fullPath(folder);
        std::error_code error;
        const bool isFolder = std::filesystem::is_directory(path, error);
        const std::optional<Foundation::Bytes> bookmark =
            isFolder ? Foundation::makeBookmark(path) : std::optional<Foundation::Bytes>{};
        if (!bookmark) {
            outcome.notices.push_back("Couldn’t get lasting access to “" + folderName(folder) + "”.");
            continue;
        }

        const ProjectModel::PhotoSource source{options.newID(),
                                               ProjectModel::FolderSourceRef{*bookmark, displayText(path)}};
        PhotoSources::FolderImporter::Options importing;
        importing.newID = options.newID;
        importing.stop = options.stop;
        if (options.progress)
            importing.progress = [&](const PhotoSources::ImportProgress& progress) {
                options.progress(path, progress);
            };
        std::vector<ProjectModel::PhotoItem> photos =
            PhotoSources::FolderImporter::importPhotos(path, importing);
        if (photos.empty()) {
            outcome.notices.push_back("No photos were found in “" + folderName(folder) + "”.");
            continue;
        }

        for (ProjectModel::PhotoItem& photo : photos)
            photo.sourceID = source.id;
        document.edit([&](Project& project) {
            const std::size_t before = project.photos.size();
            project.mergeImportedPhotos(photos, resolver);
            const std::size_t added = project.photos.size() - before;
            // Photos that were there already stay linked to the source through which they first came.
            if (added > 0)
                project.sources.push_back(source);
            outcome.added += added;
        });
    }
    return outcome;
}

} // namespace ImportCoordinator

} // namespace Roamly
