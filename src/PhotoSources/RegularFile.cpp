#include <PhotoSources/RegularFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace PhotoSources {

namespace {

constexpr std::size_t headCapacity = 4096;

} // namespace

std::optional<RegularFile> RegularFile::open(const std::filesystem::path& path) {
    struct stat status {};
    // Asked before opening too, since opening a device can already move something.
    if (path.native().find('\0') != std::string::npos || ::stat(path.c_str(), &status) != 0 ||
        !S_ISREG(status.st_mode))
        return std::nullopt;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return std::nullopt;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(descriptor);
        return std::nullopt;
    }
    return RegularFile{path, descriptor, static_cast<std::uint64_t>(status.st_size)};
}

RegularFile::RegularFile(std::filesystem::path path, int descriptor, std::uint64_t size)
    : m_path(std::move(path))
    , m_descriptor(descriptor)
    , m_size(size)
    , m_head(new std::uint8_t[headCapacity]) {
    m_headSize = readSome(0, {m_head.get(), headCapacity});
}

RegularFile::RegularFile(RegularFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_size(other.m_size)
    , m_head(std::move(other.m_head))
    , m_headSize(std::exchange(other.m_headSize, 0)) {}

RegularFile::~RegularFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::size_t RegularFile::readSome(std::uint64_t offset, std::span<std::uint8_t> target) const {
    std::size_t length = 0;
    while (length < target.size()) {
        const ssize_t count = ::pread(m_descriptor, target.data() + length, target.size() - length,
                                      static_cast<off_t>(offset + length));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    return length;
}

bool RegularFile::read(std::uint64_t offset, std::span<std::uint8_t> target) const {
    if (offset <= m_headSize && target.size() <= m_headSize - offset) {
        std::memcpy(target.data(), m_head.get() + offset, target.size());
        return true;
    }
    if (offset > m_size || target.size() > m_size - offset)
        return false;
    return readSome(offset, target) == target.size();
}

} // namespace PhotoSources
