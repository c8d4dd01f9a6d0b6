// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Export/ExportError.h>
#include <Export/PendingFile.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace Export {

namespace {

std::string systemText(int error) {
    return std::generic_category().message(error);
}

std::filesystem::path folderOf(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.parent_path();
    return folder.empty() ? "." : folder;
}

std::filesystem::path temporaryName(const std::filesystem::path& target, std::random_device& random) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    // File names end at 255 bytes.
    std::string name = ".";
    name += target.filename().string().substr(0, 200);
    name += '.';
    for (int i = 0; i < 6; ++i)
        name += letters[random() % letters.size()];
    return folderOf(target) / name;
}

/// The temporary files that exist.
class Unfinished {
public:
    void add(const std::filesystem::path& file) {
        const std::lock_guard lock(m_mutex);
        m_files.insert(file);
    }
    void remove(const std::filesystem::path& file) {
        const std::lock_guard lock(m_mutex);
        m_files.erase(file);
    }
    void discard() {
        const std::lock_guard lock(m_mutex);
        for (const std::filesystem::path& file : m_files)
            unlink(file.c_str());
    }

private:
    std::mutex m_mutex;
    std::set<std::filesystem::path> m_files;
};

Unfinished& unfinished() {
    static Unfinished files;
    return files;
}

/// Zero or the error's number.
int synchronise(const std::filesystem::path& path, int flags) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | flags);
    if (file < 0)
        return errno;
    const int error = fsync(file) == 0 ? 0 : errno;
    close(file);
    return error;
}

} // namespace

PendingFile::PendingFile(std::filesystem::path target)
    : m_target(std::move(target)) {
    std::random_device random;
    int file = -1;
    do {
        m_path = temporaryName(m_target, random);
        file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (file < 0 && errno == EEXIST);
    if (file < 0)
        throw ExportError(ExportError::Kind::writerSetupFailed, m_target.string() + ": " + systemText(errno));
    close(file);
    unfinished().add(m_path);
}

PendingFile::~PendingFile() {
    if (!m_isCommitted)
        unlink(m_path.c_str());
    unfinished().remove(m_path);
}

void PendingFile::discardAll() {
    unfinished().discard();
}

void PendingFile::commit() {
    int error = synchronise(m_path, 0);
    if (error == 0 && rename(m_path.c_str(), m_target.c_str()) != 0)
        error = errno;
    if (error != 0)
        throw ExportError(ExportError::Kind::writerFailed, m_target.string() + ": " + systemText(error));
    m_isCommitted = true;
    // The movie is complete and in its place; some file systems cannot synchronise a folder.
    synchronise(folderOf(m_target), O_DIRECTORY);
}

} // namespace Export
