// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Bookmark.h>
#include <Foundation/DisplayText.h>
#include <Roamly/Document/OutputFile.h>
#include <Roamly/Document/Refusal.h>

#include <unistd.h>

#include <optional>
#include <string>
#include <system_error>
#include <variant>

namespace Document::OutputFile {

namespace {

bool isSameFile(const std::filesystem::path& a, const std::optional<std::filesystem::path>& b) {
    std::error_code error;
    return b && std::filesystem::equivalent(a, *b, error);
}

} // namespace

void checkIsWritable(const std::filesystem::path& file) {
    if (!file.has_filename())
        throw Refusal(Refusal::Kind::noFileName, Foundation::quotedText(file) + " is no name for a file.");
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        throw Refusal(Refusal::Kind::outputNotWritable,
                      "There is no folder " + Foundation::quotedText(folder) + ".");
    if (std::filesystem::is_directory(file, error))
        throw Refusal(Refusal::Kind::outputNotWritable, Foundation::quotedText(file) + " is a folder.");
    if (std::filesystem::exists(file, error) && !std::filesystem::is_regular_file(file, error))
        throw Refusal(Refusal::Kind::outputNotWritable,
                      Foundation::quotedText(file) + " is not a regular file.");
    try {
        Foundation::checkFileCanBeReplaced(file);
    } catch (const std::system_error&) {
        if (::access(file.c_str(), F_OK) == 0 && ::access(file.c_str(), W_OK) != 0)
            throw Refusal(Refusal::Kind::outputNotWritable,
                          Foundation::quotedText(file) + " is write-protected.");
        if (std::filesystem::is_symlink(file, error))
            throw Refusal(Refusal::Kind::outputNotWritable, "Where the link " + Foundation::quotedText(file) +
                                                                " leads nothing can be written.");
        throw Refusal(Refusal::Kind::outputNotWritable,
                      "The folder " + Foundation::quotedText(folder) + " can’t be written to.");
    }
}

void checkIsNoInput(const std::filesystem::path& file, const std::filesystem::path& projectFile,
                    const ProjectModel::Project& project) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return;
    if (isSameFile(file, projectFile))
        throw Refusal(Refusal::Kind::outputIsInput,
                      Foundation::quotedText(file) + " is the project itself; choose another name.");
    Foundation::BookmarkResolver resolver;
    if (project.music && isSameFile(file, resolver.resolvedFile(project.music->bookmark)))
        throw Refusal(Refusal::Kind::outputIsInput,
                      Foundation::quotedText(file) + " is the project’s music; choose another name.");
    for (const ProjectModel::PhotoItem& photo : project.photos) {
        const auto* const ref = std::get_if<ProjectModel::FilePhotoRef>(&photo.source);
        if (ref && isSameFile(file, resolver.resolvedFile(ref->bookmark)))
            throw Refusal(Refusal::Kind::outputIsInput,
                          Foundation::quotedText(file) +
                              " is one of the project’s photos; choose another name.");
    }
}

void checkIsNotTheProject(const std::filesystem::path& movie, const std::filesystem::path& projectFile) {
    if (movie.lexically_normal() == projectFile.lexically_normal())
        throw Refusal(Refusal::Kind::movieIsProject, "The movie and the project can’t be the same file.");
}

} // namespace Document::OutputFile
