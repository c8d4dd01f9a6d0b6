// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SampleTrip.h"

#include <Export/Libav.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>

namespace Bench {

namespace {

namespace fs = std::filesystem;
namespace Libav = Export::Libav;

constexpr int width = 4032;
constexpr int height = 3024;
constexpr int fileCount = 6;

std::uint32_t hash(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t value = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ seed * 0xC2B2AE3DU;
    value = (value ^ value >> 15) * 0x2C1B3C6DU;
    value = (value ^ value >> 12) * 0x297A2D39U;
    return value ^ value >> 15;
}

/// Smoothly interpolated noise of cells of a size: 0…1.
float cells(int x, int y, int size, std::uint32_t seed) {
    const auto column = static_cast<std::uint32_t>(x / size);
    const auto row = static_cast<std::uint32_t>(y / size);
    const auto smooth = [](float t) { return t * t * (3 - 2 * t); };
    const float u = smooth(static_cast<float>(x % size) / static_cast<float>(size));
    const float v = smooth(static_cast<float>(y % size) / static_cast<float>(size));
    const auto corner = [&](std::uint32_t right, std::uint32_t down) {
        return static_cast<float>(hash(column + right, row + down, seed) >> 8) * 0x1p-24F;
    };
    const float top = corner(0, 0) * (1 - u) + corner(1, 0) * u;
    const float bottom = corner(0, 1) * (1 - u) + corner(1, 1) * u;
    return top * (1 - v) + bottom * v;
}

std::uint8_t luma(int x, int y, std::uint32_t seed) {
    float value = 0;
    float weight = 0.5F;
    for (const int size : {700, 250, 90, 32, 12, 5}) {
        value += weight * cells(x, y, size, seed + static_cast<std::uint32_t>(size));
        weight *= 0.62F;
    }
    const float grain =
        static_cast<float>(hash(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), seed) >> 24) /
            255 -
        0.5F;
    return static_cast<std::uint8_t>(std::clamp(value * 190 + grain * 8, 0.0F, 255.0F));
}

void paint(const fs::path& file, std::uint32_t seed) {
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_MJPEG);
    const Libav::CodecContext encoder(avcodec_alloc_context3(codec));
    encoder->width = width;
    encoder->height = height;
    encoder->pix_fmt = AV_PIX_FMT_YUVJ420P;
    encoder->color_range = AVCOL_RANGE_JPEG;
    encoder->time_base = {1, 1};
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = FF_QP2LAMBDA * 3;
    const Libav::Frame frame = Libav::makeFrame();
    frame->format = encoder->pix_fmt;
    frame->width = width;
    frame->height = height;
    frame->quality = encoder->global_quality;
    if (avcodec_open2(encoder.get(), codec, nullptr) < 0 || av_frame_get_buffer(frame.get(), 0) < 0)
        throw std::runtime_error("no JPEG encoder");
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            frame->data[0][y * frame->linesize[0] + x] = luma(x, y, seed);
    }
    for (int plane = 1; plane < 3; ++plane) {
        for (int y = 0; y < height / 2; ++y) {
            for (int x = 0; x < width / 2; ++x) {
                const float tint = cells(x, y, 300, seed * 31 + static_cast<std::uint32_t>(plane));
                frame->data[plane][y * frame->linesize[plane] + x] =
                    static_cast<std::uint8_t>(98 + tint * 60);
            }
        }
    }
    const Libav::Packet packet = Libav::makePacket();
    if (avcodec_send_frame(encoder.get(), frame.get()) < 0 ||
        avcodec_receive_packet(encoder.get(), packet.get()) < 0)
        throw std::runtime_error("the JPEG encoder failed");
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(packet->data), packet->size);
}

} // namespace

std::vector<fs::path> samplePhotos(const TripOptions& options) {
    std::vector<fs::path> files;
    if (!options.sources.empty()) {
        for (const auto& entry : fs::directory_iterator(options.sources))
            files.push_back(fs::absolute(entry.path()));
        std::sort(files.begin(), files.end());
        return files;
    }
    for (std::uint32_t i = 0; i < fileCount; ++i) {
        files.push_back(options.folder / ("photo" + std::to_string(i) + ".jpg"));
        if (!fs::exists(files.back()))
            paint(files.back(), i + 1);
    }
    return files;
}

ProjectModel::Project sampleTrip(const TripOptions& options) {
    using namespace ProjectModel;
    constexpr std::array cities{"Lisbon", "Porto", "Sintra"};
    const std::vector<fs::path> files = samplePhotos(options);
    Project project = Project::empty();
    for (int i = 0; i < options.photos; ++i) {
        const auto index = static_cast<std::size_t>(i);
        const std::string path = files[index % files.size()].string();
        Foundation::Uuid id;
        for (std::size_t byte = 0; byte < 16; ++byte)
            id.bytes[byte] = static_cast<std::uint8_t>(
                hash(static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(byte), 7));
        project.photos.push_back(
            {.id = id,
             .source = FilePhotoRef{{path.begin(), path.end()}, "photo"},
             .captureDate = std::nullopt,
             .coordinate = std::nullopt,
             .location = ResolvedLocation{cities[index / 4 % cities.size()], "Portugal", Provenance::user},
             .clusterID = std::nullopt,
             .qualityScore = std::nullopt,
             .caption = "Number " + std::to_string(i + 1) + " of many, seen from the bridge",
             .captionProvenance = Provenance::user,
             .isSelected = true,
             .selectionProvenance = Provenance::user,
             .isMissing = false,
             .sourceID = std::nullopt});
    }
    return project;
}

Timeline::EffectiveSettings sampleSettings(const TripOptions& options) {
    Timeline::EffectiveSettings settings;
    settings.photoDuration = options.photoDuration;
    settings.chapterStyle = ProjectModel::ChapterStyle::overlay;
    return settings;
}

} // namespace Bench
