// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <PhotoSources/ProcessSetup.h>
#include <Support/TestPhotos.h>

#include <vips/vips.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <vector>

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

/// A JPEG of one colour.
std::string plainJpeg(const Look& look) {
    PhotoSources::prepareDecoding();
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < look.width * look.height; ++i) {
        for (const int shift : {16, 8, 0})
            pixels.push_back(static_cast<std::uint8_t>(look.colour >> shift & 0xFF));
    }
    const std::unique_ptr<VipsImage, decltype(&g_object_unref)> image{
        vips_image_new_from_memory_copy(pixels.data(), pixels.size(), look.width, look.height, 3,
                                        VIPS_FORMAT_UCHAR),
        &g_object_unref};
    void* encoded = nullptr;
    std::size_t size = 0;
    if (!image || vips_jpegsave_buffer(image.get(), &encoded, &size, "Q", 90, nullptr) != 0)
        throw std::runtime_error("libvips cannot write JPEG files here.");
    const std::unique_ptr<void, decltype(&g_free)> owner{encoded, &g_free};
    return {static_cast<const char*>(encoded), size};
}

} // namespace

std::filesystem::path write(const std::filesystem::path& file, const Look& look) {
    std::string bytes = plainJpeg(look);
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
