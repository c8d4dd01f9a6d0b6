#include <Export/ExportError.h>
#include <Export/MusicFile.h>
#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/CommandLine/Failures.h>
#include <Roamly/CommandLine/Music.h>

namespace CommandLine {

ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Failure("There is no music file “" + Foundation::displayText(file) + "”.");
    const std::optional<Foundation::Bytes> bookmark =
        std::filesystem::is_regular_file(file, error) ? Foundation::makeBookmark(file) : std::nullopt;
    if (!bookmark)
        throw Failure("“" + Foundation::displayText(file) + "” is not a file that music can be read from.");
    return {*bookmark, Foundation::displayText(file.filename())};
}

bool isPlayable(const std::filesystem::path& file, const std::stop_token& stop) {
    try {
        Export::checkMusic(file, stop);
        return true;
    } catch (const Export::ExportError&) {
        Foundation::throwIfStopped(stop);
        return false;
    }
}

void checkMusicIsPlayable(const ProjectModel::Project& project, const std::stop_token& stop) {
    if (!project.music)
        return;
    const auto file = Foundation::BookmarkResolver{}.resolvedFile(project.music->bookmark);
    if (file && !isPlayable(*file, stop))
        throw Failure("The music “" + Foundation::displayText(*file) + "” can’t be played.");
}

} // namespace CommandLine
