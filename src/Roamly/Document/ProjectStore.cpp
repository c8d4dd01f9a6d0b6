// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/DisplayText.h>
#include <ProjectModel/ProjectFile.h>
#include <Roamly/Document/ProjectStore.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace Document {

namespace {

std::string quoted(const std::filesystem::path& path) {
    return "“" + Foundation::displayText(path) + "”";
}

std::string reason(const std::error_code& code) {
    if (code == std::errc::is_a_directory)
        return "it is a folder";
    if (code == std::errc::invalid_argument)
        return "it is not a regular file";
    if (code == std::errc::permission_denied)
        return "permission denied";
    if (code == std::errc::no_such_file_or_directory)
        return "its folder does not exist";
    std::string text = code.message();
    if (!text.empty() && text[0] >= 'A' && text[0] <= 'Z')
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    return text;
}

[[noreturn]] void failToSave(const std::filesystem::path& path, const std::error_code& code) {
    throw ProjectStoreError("The project " + quoted(path) + " can’t be saved: " + reason(code) + ".");
}

std::string encodedFor(const std::filesystem::path& path, const ProjectModel::Project& project) {
    try {
        return ProjectModel::encoded(project);
    } catch (const ProjectModel::ProjectFileError& error) {
        throw ProjectStoreError("The project " + quoted(path) + " can’t be saved: " + error.what());
    }
}

/// Gives a complete file its name in one step, and only a name that is free.
bool takeFreeName(const std::filesystem::path& file, const std::filesystem::path& name) {
    if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, name.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    // Not every file system knows that rename; those that do not (network ones) have hard links.
    const bool linked = ::link(file.c_str(), name.c_str()) == 0;
    const int problem = errno;
    if (!linked && problem != EEXIST)
        throw std::system_error(problem, std::generic_category());
    ::unlink(file.c_str());
    return linked;
}

} // namespace

std::optional<ProjectStore::FileVersion> ProjectStore::versionOf(const std::filesystem::path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return FileVersion{status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
                       status.st_mtim.tv_nsec};
}

void ProjectStore::checkIsUnchanged(const std::filesystem::path& path,
                                    const std::optional<FileVersion>& version) {
    const auto now = versionOf(path);
    if (now && now != version)
        throw SaveConflict("The project " + quoted(path) +
                           " was changed by another program meanwhile, so nothing was saved.");
}

LoadedProject ProjectStore::load(const std::filesystem::path& path) {
    std::string bytes;
    try {
        bytes = Foundation::readFile(path);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::no_such_file_or_directory)
            throw ProjectStoreError("There is no project file " + quoted(path) + ".");
        throw ProjectStoreError("The project " + quoted(path) + " can’t be opened: " + reason(error.code()) +
                                ".");
    }
    LoadedProject loaded;
    try {
        loaded.project = ProjectModel::decodeProject(bytes, [&loaded] {
            loaded.hasNewIdentifiers = true;
            return Foundation::Uuid::random();
        });
    } catch (const ProjectModel::ProjectFileError& error) {
        throw ProjectStoreError("The project " + quoted(path) + " can’t be opened: " + error.what());
    }
    return loaded;
}

void ProjectStore::save(const std::filesystem::path& path, const ProjectModel::Project& project) {
    const std::string bytes = encodedFor(path, project);
    try {
        Foundation::writeFileAtomically(path, bytes);
    } catch (const std::system_error& error) {
        failToSave(path, error.code());
    }
}

void ProjectStore::checkCanSave(const std::filesystem::path& path) {
    try {
        Foundation::checkFileCanBeReplaced(path);
    } catch (const std::system_error& error) {
        failToSave(path, error.code());
    }
}

void ProjectStore::create(const std::filesystem::path& path, const ProjectModel::Project& project) {
    const std::string bytes = encodedFor(path, project);
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const std::filesystem::path temporary = folder / (".roamly-" + Foundation::Uuid::random().text());
    try {
        Foundation::writeFileAtomically(temporary, bytes);
        if (takeFreeName(temporary, path))
            return;
    } catch (const std::system_error& error) {
        ::unlink(temporary.c_str());
        failToSave(path, error.code());
    }
    ::unlink(temporary.c_str());
    throw ProjectStoreError(quoted(path) + " exists already and was left as it is.");
}

} // namespace Document
