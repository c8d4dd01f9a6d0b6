// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/EmbeddedExif.h>
#include <PhotoSources/Exiv2Tags.h>
#include <PhotoSources/FileSource.h>
#include <PhotoSources/ImageFileMetadata.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <ctime>

namespace PhotoSources::ImageFileMetadataReader {

namespace {

using Foundation::Instant;

/// What can be written down and read again: the years 1 to 9999.
std::optional<Instant> representable(Instant instant) {
    using namespace std::chrono;
    constexpr Instant first = sys_days{January / 1 / 1};
    constexpr Instant end = sys_days{January / 1 / 10'000};
    if (instant < first || instant >= end)
        return std::nullopt;
    return instant;
}

/// Takes characters off the front of a text.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text) {}

    [[nodiscard]] bool isAtEnd() const { return m_rest.empty(); }

    bool take(char character) {
        if (!m_rest.starts_with(character))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    /// From `minimum` to `maximum` digits.
    std::optional<unsigned> takeNumber(std::size_t minimum, std::size_t maximum) {
        unsigned number = 0;
        std::size_t length = 0;
        while (length < maximum && length < m_rest.size() && m_rest[length] >= '0' && m_rest[length] <= '9')
            number = number * 10 + static_cast<unsigned>(m_rest[length++] - '0');
        if (length < minimum)
            return std::nullopt;
        m_rest.remove_prefix(length);
        return number;
    }

private:
    std::string_view m_rest;
};

/// "yyyy:MM:dd HH:mm:ss" as if it were UTC. Single digits pass where the pattern has two.
std::optional<Instant> takeWallClock(Scanner& scanner) {
    const auto year = scanner.takeNumber(4, 4);
    const auto month = year && scanner.take(':') ? scanner.takeNumber(1, 2) : std::nullopt;
    const auto day = month && scanner.take(':') ? scanner.takeNumber(1, 2) : std::nullopt;
    const auto hour = day && scanner.take(' ') ? scanner.takeNumber(1, 2) : std::nullopt;
    const auto minute = hour && scanner.take(':') ? scanner.takeNumber(1, 2) : std::nullopt;
    const auto second = minute && scanner.take(':') ? scanner.takeNumber(1, 2) : std::nullopt;
    if (!second)
        return std::nullopt;
    return Foundation::makeInstant(static_cast<int>(*year), *month, *day, *hour, *minute, *second);
}

/// "Z", "+02:00", "-05:30".
std::optional<std::chrono::seconds> takeOffset(Scanner& scanner) {
    if (scanner.take('Z'))
        return std::chrono::seconds{0};
    const bool isWest = scanner.take('-');
    if (!isWest && !scanner.take('+'))
        return std::nullopt;
    const auto hours = scanner.takeNumber(2, 2);
    const auto minutes = hours && scanner.take(':') ? scanner.takeNumber(2, 2) : std::nullopt;
    if (!minutes || *hours > 23 || *minutes > 59)
        return std::nullopt;
    const std::chrono::seconds offset = std::chrono::hours{*hours} + std::chrono::minutes{*minutes};
    return isWest ? -offset : offset;
}

std::optional<Instant> parseWithOffset(std::string_view text) {
    Scanner scanner{text};
    const std::optional<Instant> wallClock = takeWallClock(scanner);
    const std::optional<std::chrono::seconds> offset = wallClock ? takeOffset(scanner) : std::nullopt;
    if (!offset || !scanner.isAtEnd())
        return std::nullopt;
    return representable(*wallClock - *offset);
}

/// The distance of the machine's zone from UTC. The zone is looked up once, at the first call.
std::chrono::seconds localOffsetAt(Instant instant) {
    static_assert(sizeof(std::time_t) == 8);
    const std::time_t time = instant.time_since_epoch().count();
    std::tm local{};
    if (::localtime_r(&time, &local) == nullptr)
        return std::chrono::seconds{0};
    return std::chrono::seconds{local.tm_gmtoff};
}

/// A wall-clock time that occurs twice, when clocks are set back, is taken as the first of the two; one that
/// does not occur, when they are set forward, as if they had not been yet.
Instant fromLocal(Instant wallClock) {
    constexpr std::chrono::days moreThanAnyOffset{1};
    const std::chrono::seconds before = localOffsetAt(wallClock - moreThanAnyOffset);
    const std::chrono::seconds after = localOffsetAt(wallClock + moreThanAnyOffset);
    const Instant withBefore = wallClock - before;
    const Instant withAfter = wallClock - after;
    if (before == after || localOffsetAt(withBefore) == before || localOffsetAt(withAfter) != after)
        return withBefore;
    return withAfter;
}

std::optional<Instant> parseLocal(std::string_view text) {
    Scanner scanner{text};
    const std::optional<Instant> wallClock = takeWallClock(scanner);
    if (!wallClock || !scanner.isAtEnd())
        return std::nullopt;
    return representable(fromLocal(*wallClock));
}

/// When the file came into being on this file system; nothing where that is not recorded. A link is followed.
std::optional<Instant> fileCreationDate(const std::filesystem::path& file) {
    struct statx status {};
    if (::statx(AT_FDCWD, file.c_str(), AT_STATX_SYNC_AS_STAT, STATX_BTIME, &status) != 0 ||
        (status.stx_mask & STATX_BTIME) == 0)
        return std::nullopt;
    // The part below a second counts forward from the seconds, before 1970 too, so leaving it out is the
    // floor.
    return representable(Instant{std::chrono::seconds{status.stx_btime.tv_sec}});
}

std::optional<ProjectModel::Coordinate> coordinate(const ExifTags& tags) {
    if (!tags.latitude || !tags.longitude)
        return std::nullopt;
    return ProjectModel::Coordinate{tags.latitudeRef == "S" ? -*tags.latitude : *tags.latitude,
                                    tags.longitudeRef == "W" ? -*tags.longitude : *tags.longitude};
}

ImageFileMetadata metadata(const ExifTags& tags, const std::filesystem::path& file) {
    ImageFileMetadata result;
    result.coordinate = coordinate(tags);
    if (tags.dateTimeOriginal)
        result.captureDate = parseExifDate(*tags.dateTimeOriginal, tags.offsetTimeOriginal);
    result.captureDateIsLowConfidence = !result.captureDate;
    if (!result.captureDate)
        result.captureDate = fileCreationDate(file);
    return result;
}

} // namespace

std::optional<Instant> parseExifDate(std::string_view text, const std::optional<std::string>& offset) {
    if (offset) {
        if (const std::optional<Instant> instant = parseWithOffset(std::string{text} + *offset))
            return instant;
    }
    return parseLocal(text);
}

ImageFileMetadata read(const std::filesystem::path& file) {
    const std::optional<FileSource> opened = FileSource::open(file);
    return opened ? read(*opened) : metadata({}, file);
}

ImageFileMetadata read(const FileSource& file) {
    const std::optional<ExifTags> tags = readEmbeddedExif(file);
    return metadata(tags ? *tags : readExiv2Tags(file.path()), file.path());
}

} // namespace PhotoSources::ImageFileMetadataReader
