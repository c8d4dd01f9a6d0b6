// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Foundation/Uuid.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

namespace Foundation {

namespace {

[[noreturn]] void fail(int error, const std::filesystem::path& path) {
    throw std::system_error(error, std::generic_category(), path.string());
}

/// With the error of the system call that has just failed.
[[noreturn]] void fail(const std::filesystem::path& path) {
    const int error = errno;
    fail(error, path);
}

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor)
        : m_descriptor(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    [[nodiscard]] int get() const { return m_descriptor; }
    [[nodiscard]] int release() { return std::exchange(m_descriptor, -1); }

private:
    int m_descriptor;
};

/// Follows a chain of symbolic links by hand, since the last one may dangle: writing through a link creates
/// its target.
std::filesystem::path linkTarget(std::filesystem::path path) {
    constexpr int longestChain = 40; // as the kernel's own limit
    for (int length = 0; std::filesystem::is_symlink(std::filesystem::symlink_status(path)); ++length) {
        if (length == longestChain)
            fail(ELOOP, path);
        const std::filesystem::path target = std::filesystem::read_symlink(path);
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return path;
}

void writeAll(int descriptor, std::string_view contents, const std::filesystem::path& path) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            fail(path);
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// A new file beside the target that goes again unless it takes the target's name.
class TemporaryFile {
public:
    /// The name does not lengthen the target's own, which may be as long as names can be.
    TemporaryFile(const std::filesystem::path& folder, const std::filesystem::path& target, mode_t mode)
        : m_path(folder / (".roamly-" + Uuid::random().text()))
        , m_target(target)
        , m_file(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)) {
        if (m_file.get() < 0)
            fail(target);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!m_inPlace)
            ::unlink(m_path.c_str());
    }

    [[nodiscard]] int descriptor() const { return m_file.get(); }

    void moveIntoPlace() {
        if (::close(m_file.release()) != 0 || ::rename(m_path.c_str(), m_target.c_str()) != 0)
            fail(m_target);
        m_inPlace = true;
    }

private:
    std::filesystem::path m_path;
    std::filesystem::path m_target;
    FileDescriptor m_file;
    bool m_inPlace = false;
};

/// Owner, group and permissions of the file that is replaced. File systems without permissions refuse to
/// change them even to what they show, so nothing is changed that agrees already.
void takeAttributes(int descriptor, const struct stat& existing, const std::filesystem::path& path) {
    struct stat created {};
    if (::fstat(descriptor, &created) != 0)
        fail(path);
    // Keeping owner and group is a courtesy that only root can always grant.
    if (existing.st_uid != created.st_uid || existing.st_gid != created.st_gid) {
        [[maybe_unused]] const bool kept = ::fchown(descriptor, existing.st_uid, existing.st_gid) == 0 ||
                                           ::fchown(descriptor, static_cast<uid_t>(-1), existing.st_gid) == 0;
    }
    constexpr mode_t permissions = 07777;
    if ((existing.st_mode & permissions) != (created.st_mode & permissions) &&
        ::fchmod(descriptor, existing.st_mode & permissions) != 0)
        fail(path);
}

/// Where a path leads, and what stands there.
struct Destination {
    std::filesystem::path file;
    std::filesystem::path folder;
    std::optional<struct stat> existing;
};

/// Throws when what stands there must not be replaced.
Destination destinationOf(const std::filesystem::path& path) {
    Destination destination{linkTarget(path), ".", std::nullopt};
    if (destination.file.has_parent_path())
        destination.folder = destination.file.parent_path();
    struct stat existing {};
    if (::stat(destination.file.c_str(), &existing) != 0) {
        if (!destination.file.has_filename())
            fail(ENOENT, destination.file);
        return destination;
    }
    if (!S_ISREG(existing.st_mode))
        fail(S_ISDIR(existing.st_mode) ? EISDIR : EINVAL, destination.file);
    // A rename would replace even a file that its owner made read-only; refuse as an in-place write would.
    if (::access(destination.file.c_str(), W_OK) != 0)
        fail(destination.file);
    destination.existing = existing;
    return destination;
}

enum class Synchronisation { Awaited, LeftToTheSystem };

void replaceFile(const std::filesystem::path& path, std::string_view contents,
                 Synchronisation synchronisation) {
    const auto [target, folder, existing] = destinationOf(path);
    // A private file must not be open to others for even a moment.
    TemporaryFile file{folder, target, existing ? mode_t{0600} : mode_t{0666}};
    if (existing)
        takeAttributes(file.descriptor(), *existing, target);
    writeAll(file.descriptor(), contents, target);
    if (synchronisation == Synchronisation::Awaited && ::fsync(file.descriptor()) != 0)
        fail(target);
    file.moveIntoPlace();
    if (synchronisation == Synchronisation::LeftToTheSystem)
        return;
    // Some file systems cannot synchronise a folder; the new contents are in place all the same.
    const FileDescriptor folderDescriptor{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (folderDescriptor.get() >= 0)
        ::fsync(folderDescriptor.get());
}

} // namespace

void checkFileCanBeReplaced(const std::filesystem::path& path) {
    const Destination destination = destinationOf(path);
    // Whether a folder takes files is known only to the file system: permissions, lists of exceptions to
    // them, read-only mounts, servers that judge for themselves.
    const TemporaryFile attempt{destination.folder, destination.file, 0600};
}

void writeFileAtomically(const std::filesystem::path& path, std::string_view contents) {
    replaceFile(path, contents, Synchronisation::Awaited);
}

void writeCacheFile(const std::filesystem::path& path, std::string_view contents) {
    replaceFile(path, contents, Synchronisation::LeftToTheSystem);
}

std::string readFile(const std::filesystem::path& path) {
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (file.get() < 0)
        fail(path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        fail(path);
    if (!S_ISREG(status.st_mode))
        fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path);
    if (status.st_size > static_cast<off_t>(largestReadableFile))
        fail(EFBIG, path);
    // One byte of room more than the file should need, to meet its end without growing.
    std::string contents(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t length = 0;
    while (true) {
        if (length > largestReadableFile)
            fail(EFBIG, path);
        if (length == contents.size())
            contents.resize(std::max<std::size_t>(contents.size() * 2, 65536));
        const ssize_t count = ::read(file.get(), contents.data() + length, contents.size() - length);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            fail(path);
        }
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    contents.resize(length);
    return contents;
}

} // namespace Foundation
