#include <Foundation/AtomicFile.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace Foundation {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), path.string());
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
    for (int depth = 0; depth < 40 && std::filesystem::is_symlink(std::filesystem::symlink_status(path)); ++depth) {
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

mode_t defaultMode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

} // namespace

void writeFileAtomically(const std::filesystem::path& path, std::string_view contents) {
    const std::filesystem::path target = linkTarget(path);
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";

    struct stat existing {};
    const bool exists = ::stat(target.c_str(), &existing) == 0;
    if (exists && !S_ISREG(existing.st_mode)) {
        errno = S_ISDIR(existing.st_mode) ? EISDIR : EINVAL;
        fail(target);
    }
    // A rename would replace even a file that its owner made read-only; refuse as an in-place write would.
    if (exists && ::access(target.c_str(), W_OK) != 0)
        fail(target);

    std::string temporary = (folder / ("." + target.filename().string() + ".XXXXXX")).string();
    FileDescriptor file{::mkostemp(temporary.data(), O_CLOEXEC)};
    if (file.get() < 0)
        fail(target);
    try {
        if (exists && (existing.st_uid != ::geteuid() || existing.st_gid != ::getegid())) {
            // Keeping the owner is a courtesy that only root can always grant.
            [[maybe_unused]] const int ignored = ::fchown(file.get(), existing.st_uid, existing.st_gid);
        }
        if (::fchmod(file.get(), exists ? existing.st_mode & 07777 : defaultMode()) != 0)
            fail(target);
        writeAll(file.get(), contents, target);
        if (::fsync(file.get()) != 0)
            fail(target);
        if (::close(file.release()) != 0)
            fail(target);
        if (::rename(temporary.c_str(), target.c_str()) != 0)
            fail(target);
    } catch (...) {
        ::unlink(temporary.c_str());
        throw;
    }
    // Some file systems cannot synchronise a folder; the new contents are in place all the same.
    const FileDescriptor folderDescriptor{::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (folderDescriptor.get() >= 0)
        ::fsync(folderDescriptor.get());
}

std::string readFile(const std::filesystem::path& path) {
    const FileDescriptor file{::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)};
    if (file.get() < 0)
        fail(path);
    struct stat status {};
    if (::fstat(file.get(), &status) != 0)
        fail(path);
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        fail(path);
    }
    std::string contents;
    contents.resize(static_cast<std::size_t>(status.st_size));
    std::size_t length = 0;
    while (true) {
        if (length == contents.size())
            contents.resize(contents.size() + 65536);
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
