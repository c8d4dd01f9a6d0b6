#include <Foundation/AtomicFile.h>
#include <Roamly/TestPhotos.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <cstdint>
#include <stdexcept>

namespace TestPhotos {

namespace {

void appendLittle(std::string& bytes, std::uint32_t number, int length) {
    for (int i = 0; i < length; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

/// One directory entry of a TIFF structure.
void appendEntry(std::string& bytes, std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                 std::uint32_t value) {
    appendLittle(bytes, tag, 2);
    appendLittle(bytes, type, 2);
    appendLittle(bytes, count, 4);
    appendLittle(bytes, value, 4);
}

/// The JPEG segment that says when a photo was taken, in UTC.
std::string dateSegment(std::string_view date) {
    constexpr std::uint32_t photoDirectory = 8 + 2 + 12 + 4;
    constexpr std::uint32_t texts = photoDirectory + 2 + 2 * 12 + 4;
    std::string tiff = "II";
    appendLittle(tiff, 42, 2);
    appendLittle(tiff, 8, 4);
    appendLittle(tiff, 1, 2);
    appendEntry(tiff, 0x8769, 4, 1, photoDirectory);
    appendLittle(tiff, 0, 4);
    appendLittle(tiff, 2, 2);
    appendEntry(tiff, 0x9003, 2, 20, texts);
    appendEntry(tiff, 0x9011, 2, 7, texts + 20);
    appendLittle(tiff, 0, 4);
    tiff += date;
    tiff += '\0';
    tiff += "+00:00";
    tiff += '\0';

    const std::size_t length = 2 + 6 + tiff.size();
    std::string segment = "\xFF\xE1";
    segment += static_cast<char>(length >> 8);
    segment += static_cast<char>(length & 0xFF);
    segment += std::string_view{"Exif\0\0", 6};
    return segment + tiff;
}

} // namespace

std::filesystem::path write(const std::filesystem::path& file, const Look& look) {
    QImage image{look.width, look.height, QImage::Format_RGB32};
    image.fill(0xFF000000U | look.colour);
    QByteArray encoded;
    QBuffer buffer{&encoded};
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "JPEG", 90))
        throw std::runtime_error("Qt cannot write JPEG files here.");
    std::string bytes = encoded.toStdString();
    if (!look.date.empty())
        bytes.insert(2, dateSegment(look.date));
    std::filesystem::create_directories(file.parent_path());
    Foundation::writeFileAtomically(file, bytes);
    return file;
}

std::filesystem::path write(const std::filesystem::path& file) {
    return write(file, Look{});
}

Foundation::Uuid uuid(int number) {
    Foundation::Uuid id;
    id.bytes[14] = static_cast<std::uint8_t>(number >> 8);
    id.bytes[15] = static_cast<std::uint8_t>(number & 0xFF);
    return id;
}

ProjectModel::PhotoItem item(int number, const std::filesystem::path& file) {
    const std::string path = file.string();
    return {
        .id = uuid(number),
        .source = ProjectModel::FilePhotoRef{{path.begin(), path.end()}, file.filename().string()},
        .captureDate = {},
        .coordinate = {},
        .location = {},
        .clusterID = {},
        .qualityScore = {},
        .caption = {},
        .captionProvenance = {},
        .isSelected = true,
        .selectionProvenance = ProjectModel::Provenance::proposed,
        .isMissing = false,
        .sourceID = {},
    };
}

} // namespace TestPhotos
