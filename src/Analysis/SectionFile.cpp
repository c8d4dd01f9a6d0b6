// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/OfflineReverseGeocoder.h>
#include <Analysis/SectionFile.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <string>

namespace Analysis {

namespace {

using namespace GazetteerFormat;

static_assert(std::endian::native == std::endian::little, "the file is used as it lies");

GazetteerError complaint(const std::filesystem::path& file, const FileKind& kind,
                         const std::string& complaint) {
    return GazetteerError("The file of " + std::string(kind.content) + " " + file.string() + " " + complaint +
                          "; build Roamly again, or reinstall it, to get it back.");
}

std::span<const std::byte> mapped(const std::filesystem::path& file, const FileKind& kind) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        throw complaint(file, kind, "is missing or cannot be read");
    struct stat status {};
    void* address = MAP_FAILED;
    std::size_t size = 0;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0) {
        size = static_cast<std::size_t>(status.st_size);
        address = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    }
    ::close(descriptor);
    if (address == MAP_FAILED)
        throw complaint(file, kind, "is damaged");
    return {static_cast<const std::byte*>(address), size};
}

const Header& headerOf(std::span<const std::byte> bytes) {
    return *reinterpret_cast<const Header*>(bytes.data());
}

std::span<const Section> tableOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const Section*>(bytes.data() + sizeof(Header)), headerOf(bytes).sectionCount};
}

bool isIntact(std::span<const std::byte> bytes, const FileKind& kind) {
    if (bytes.size() < sizeof(Header) + kind.sectionCount * sizeof(Section))
        return false;
    const Header& header = headerOf(bytes);
    if (header.magic != kind.magic || header.sectionCount != kind.sectionCount ||
        header.fileSize != bytes.size() || header.tableChecksum != checksum(std::as_bytes(tableOf(bytes))))
        return false;
    const auto table = tableOf(bytes);
    return std::all_of(table.begin(), table.end(), [&](const Section& section) {
        return section.offset % 8 == 0 && section.offset <= bytes.size() &&
               section.size <= bytes.size() - section.offset &&
               section.checksum == checksum(bytes.subspan(section.offset, section.size));
    });
}

void check(std::span<const std::byte> bytes, const std::filesystem::path& file, const FileKind& kind) {
    if (bytes.size() >= sizeof(Header) && headerOf(bytes).magic == kind.magic &&
        headerOf(bytes).version != kind.version)
        throw complaint(file, kind, "belongs to another version of Roamly");
    if (!isIntact(bytes, kind))
        throw complaint(file, kind, "is damaged");
}

} // namespace

SectionFile::SectionFile(const std::filesystem::path& file, const FileKind& kind)
    : m_bytes(mapped(file, kind)) {
    try {
        check(m_bytes, file, kind);
    } catch (...) {
        ::munmap(const_cast<std::byte*>(m_bytes.data()), m_bytes.size());
        throw;
    }
}

SectionFile::~SectionFile() {
    ::munmap(const_cast<std::byte*>(m_bytes.data()), m_bytes.size());
}

std::span<const std::byte> SectionFile::sectionBytes(std::size_t number) const {
    const Section& section = tableOf(m_bytes)[number];
    return m_bytes.subspan(section.offset, section.size);
}

} // namespace Analysis
