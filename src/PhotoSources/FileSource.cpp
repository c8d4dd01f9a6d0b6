// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/FileSource.h>

#include <cstring>
#include <utility>

namespace PhotoSources {

namespace {

constexpr std::size_t headCapacity = 4096;

} // namespace

std::optional<FileSource> FileSource::open(const std::filesystem::path& path) {
    std::optional<ImageFile> file = ImageFile::open(path);
    if (!file)
        return std::nullopt;
    return FileSource{std::move(*file)};
}

FileSource::FileSource(ImageFile file)
    : m_file(std::move(file))
    , m_head(new std::uint8_t[headCapacity])
    , m_headSize(m_file.readAt(0, {m_head.get(), headCapacity})) {}

bool FileSource::read(std::uint64_t offset, std::span<std::uint8_t> target) const {
    if (offset <= m_headSize && target.size() <= m_headSize - offset) {
        std::memcpy(target.data(), m_head.get() + offset, target.size());
        return true;
    }
    if (offset > size() || target.size() > size() - offset)
        return false;
    return m_file.readAt(offset, target) == target.size();
}

} // namespace PhotoSources
