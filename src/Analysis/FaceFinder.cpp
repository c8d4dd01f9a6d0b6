// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/FaceFinder.h>
#include <Analysis/ImageScaling.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace Analysis {

namespace {

// The detector looks at a square picture and answers for each cell of a square grid.
constexpr int detectorSide = 192;
constexpr int gridSide = 48;
constexpr std::size_t cellCount = static_cast<std::size_t>(gridSide) * gridSide;
constexpr std::size_t numbersPerCell = 16;
constexpr double leastConfidence = 0.6;
/// Boxes that share more than this part of their union are one face.
constexpr double sameFaceOverlap = 0.3;

constexpr int landmarkSide = 256;
constexpr std::size_t landmarkCount = 478;
/// The landmarks see the face with some surroundings.
constexpr double landmarkMargin = 1.5;
constexpr double leastPresence = 0.5;

// Of MediaPipe's face mesh.
constexpr std::array<std::size_t, 4> leftEye{263, 362, 386, 374};
constexpr std::size_t leftEyeOuterCorner = 263;
constexpr std::size_t leftEyeInnerCorner = 362;
constexpr std::size_t rightEyeOuterCorner = 33;
constexpr std::size_t rightEyeInnerCorner = 133;
/// An eye that the landmarks draw narrower than this part of the other one is behind the nose.
constexpr double leastEyeRatio = 0.2;

double sigmoid(double value) {
    return 1 / (1 + std::exp(-value));
}

double overlap(const Face& a, const Face& b) {
    const auto shared = [](double p, double pSide, double q, double qSide) {
        return std::max(0.0, std::min(p + pSide / 2, q + qSide / 2) - std::max(p - pSide / 2, q - qSide / 2));
    };
    const double both =
        shared(a.centreX, a.side, b.centreX, b.side) * shared(a.centreY, a.side, b.centreY, b.side);
    return both / (a.side * a.side + b.side * b.side - both);
}

/// The image fitted into the middle of a black square, and how to get back.
struct Letterbox {
    FloatPlanes picture{detectorSide, detectorSide};
    double scale = 1;
    int left = 0;
    int top = 0;
};

Letterbox letterbox(const Foundation::Image& image) {
    Letterbox box;
    box.scale = static_cast<double>(std::max(image.width, image.height)) / detectorSide;
    const auto fitted = [&](int length) {
        return std::clamp(static_cast<int>(std::lround(length / box.scale)), 1, detectorSide);
    };
    const FloatPlanes small = scaled(image, fitted(image.width), fitted(image.height));
    box.left = (detectorSide - small.width) / 2;
    box.top = (detectorSide - small.height) / 2;
    for (std::size_t channel = 0; channel < 3; ++channel) {
        for (int y = 0; y < small.height; ++y)
            std::copy_n(small.row(channel, y), small.width, box.picture.row(channel, box.top + y) + box.left);
    }
    return box;
}

/// The square around a face, turned upright; black beyond the image.
FloatPlanes uprightFace(const Foundation::Image& image, const Face& face) {
    const double step = face.side * landmarkMargin / landmarkSide;
    // So many samples a side make one pixel, so that a large face keeps no more detail than fits.
    const int samples = std::clamp(static_cast<int>(std::lround(step)), 1, 8);
    const double cosine = std::cos(face.tilt) * step;
    const double sine = std::sin(face.tilt) * step;
    FloatPlanes upright(landmarkSide, landmarkSide);
    for (int row = 0; row < landmarkSide; ++row) {
        std::array<float*, 3> target{upright.row(0, row), upright.row(1, row), upright.row(2, row)};
        for (int column = 0; column < landmarkSide; ++column) {
            std::array<float, 3> sum{};
            for (int i = 0; i < samples * samples; ++i) {
                const int sampleRow = i / samples;
                const double u = column + (i % samples + 0.5) / samples - landmarkSide / 2.0;
                const double v = row + (sampleRow + 0.5) / samples - landmarkSide / 2.0;
                const auto x = static_cast<int>(std::floor(face.centreX + u * cosine - v * sine));
                const auto y = static_cast<int>(std::floor(face.centreY + u * sine + v * cosine));
                if (x < 0 || y < 0 || x >= image.width || y >= image.height)
                    continue;
                const std::uint8_t* pixel = image.row(y) + static_cast<std::size_t>(x) * 3;
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sum[channel] += static_cast<float>(pixel[channel]);
            }
            for (std::size_t channel = 0; channel < 3; ++channel)
                *target[channel]++ = sum[channel] / static_cast<float>(samples * samples);
        }
    }
    return upright;
}

} // namespace

FaceFinder::FaceFinder(const std::filesystem::path& detectorFile, const std::filesystem::path& landmarksFile)
    : m_detector(detectorFile, detectorSide, {{"boxes", cellCount * numbersPerCell}, {"scores", cellCount}})
    , m_landmarks(landmarksFile, landmarkSide, {{"landmarks", landmarkCount * 3}, {"presence", 1}}) {}

std::vector<Face> FaceFinder::faces(const Foundation::Image& image) const {
    if (image.isEmpty())
        return {};
    const Letterbox box = letterbox(image);
    const auto answers = m_detector.run(box.picture.values);
    std::vector<Face> candidates;
    for (std::size_t cell = 0; cell < cellCount; ++cell) {
        const double confidence = sigmoid(static_cast<double>(answers[1][cell]));
        if (confidence < leastConfidence)
            continue;
        // Centre, size, then the right eye, the left eye and four more points, all from the cell's middle.
        const float* numbers = answers[0].data() + cell * numbersPerCell;
        const double cellSize = static_cast<double>(detectorSide) / gridSide;
        const std::size_t column = cell % gridSide;
        const std::size_t row = cell / gridSide;
        const double cellX = (static_cast<double>(column) + 0.5) * cellSize;
        const double cellY = (static_cast<double>(row) + 0.5) * cellSize;
        Face face;
        face.centreX = (static_cast<double>(numbers[0]) + cellX - box.left) * box.scale;
        face.centreY = (static_cast<double>(numbers[1]) + cellY - box.top) * box.scale;
        face.side = static_cast<double>(std::max(numbers[2], numbers[3])) * box.scale;
        face.tilt = std::atan2(static_cast<double>(numbers[7] - numbers[5]),
                               static_cast<double>(numbers[6] - numbers[4]));
        face.confidence = confidence;
        if (std::isfinite(face.centreX) && std::isfinite(face.centreY) && face.side >= 1 &&
            std::isfinite(face.tilt))
            candidates.push_back(face);
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Face& a, const Face& b) { return a.confidence > b.confidence; });
    std::vector<Face> faces;
    for (const Face& candidate : candidates) {
        if (std::none_of(faces.begin(), faces.end(),
                         [&](const Face& face) { return overlap(face, candidate) > sameFaceOverlap; }))
            faces.push_back(candidate);
    }
    return faces;
}

bool FaceFinder::showsLeftEye(const Foundation::Image& image, const Face& face) const {
    const auto answers = m_landmarks.run(uprightFace(image, face).values);
    if (sigmoid(static_cast<double>(answers[1][0])) < leastPresence)
        return false;

    const double step = face.side * landmarkMargin / landmarkSide;
    const auto landmark = [&](std::size_t number) {
        return std::pair{static_cast<double>(answers[0][number * 3]) - landmarkSide / 2.0,
                         static_cast<double>(answers[0][number * 3 + 1]) - landmarkSide / 2.0};
    };
    const auto width = [&](std::size_t from, std::size_t to) {
        return landmark(to).first - landmark(from).first;
    };
    if (width(leftEyeInnerCorner, leftEyeOuterCorner) <
        leastEyeRatio * std::abs(width(rightEyeOuterCorner, rightEyeInnerCorner)))
        return false;
    return std::all_of(leftEye.begin(), leftEye.end(), [&](std::size_t number) {
        const auto [u, v] = landmark(number);
        const double x = face.centreX + (u * std::cos(face.tilt) - v * std::sin(face.tilt)) * step;
        const double y = face.centreY + (u * std::sin(face.tilt) + v * std::cos(face.tilt)) * step;
        return x >= 0 && y >= 0 && x < image.width && y < image.height;
    });
}

} // namespace Analysis
