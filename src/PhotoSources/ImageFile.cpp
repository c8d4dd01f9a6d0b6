// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/ImageFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace PhotoSources {

std::optional<ImageFile> ImageFile::open(const std::filesystem::path& path) {
    // Looked at before it is opened: merely opening a pipe wakes its writer.
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return std::nullopt;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
        ::close(descriptor);
        return std::nullopt;
    }
    return ImageFile(path, descriptor, static_cast<std::uint64_t>(status.st_size));
}

ImageFile::ImageFile(std::filesystem::path path, int descriptor, std::uint64_t size)
    : m_path(std::move(path))
    , m_descriptor(descriptor)
    , m_size(size) {}

ImageFile::ImageFile(ImageFile&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_descriptor(std::exchange(other.m_descriptor, -1))
    , m_size(other.m_size) {}

ImageFile::~ImageFile() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

std::size_t ImageFile::readAt(std::uint64_t offset, std::span<std::uint8_t> target) const {
    std::size_t done = 0;
    while (done < target.size()) {
        const ssize_t count = ::pread(m_descriptor, target.data() + done, target.size() - done,
                                      static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::optional<std::vector<std::uint8_t>> ImageFile::readAll(std::uint64_t limit) const {
    if (m_size > limit)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(m_size));
    bytes.resize(readAt(0, bytes));
    if (bytes.empty())
        return std::nullopt;
    return bytes;
}

} // namespace PhotoSources
