// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/MusicFile.h>
#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <Roamly/Document/ProjectMusic.h>
#include <Roamly/Document/Refusal.h>

namespace Document {

ProjectModel::MusicSelection musicSelection(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        throw Refusal(Refusal::Kind::noMusic, "There is no music file " + Foundation::quotedText(file) + ".");
    const std::optional<Foundation::Bytes> bookmark =
        std::filesystem::is_regular_file(file, error) ? Foundation::makeBookmark(file) : std::nullopt;
    if (!bookmark)
        throw Refusal(Refusal::Kind::noMusic,
                      Foundation::quotedText(file) + " is not a file that music can be read from.");
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

std::string notPlayableWarning(const std::filesystem::path& file) {
    return Foundation::quotedText(file) + " can’t be played; no movie can be made with it.";
}

void checkMusicIsPlayable(const ProjectModel::Project& project, const std::stop_token& stop) {
    if (!project.music)
        return;
    const auto file = Foundation::BookmarkResolver{}.resolvedFile(project.music->bookmark);
    if (file && !isPlayable(*file, stop))
        throw Refusal(Refusal::Kind::musicNotPlayable,
                      "The music " + Foundation::quotedText(*file) + " can’t be played.");
}

} // namespace Document
