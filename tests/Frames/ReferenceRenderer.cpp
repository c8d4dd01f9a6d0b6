// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/ReferenceRenderer.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Frames::Testing {

namespace {

using Yuv = std::array<double, 3>;

/// From components 0…1 to limited-range values, black being 0 in each.
Yuv aboveBlack(double red, double green, double blue) {
    const double luma = 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    return {219 * luma, 224 * (blue - luma) / 1.8556, 224 * (red - luma) / 1.5748};
}

double cubic(double x) {
    x = std::abs(x);
    if (x < 1)
        return 1.5 * x * x * x - 2.5 * x * x + 1;
    if (x < 2)
        return -0.5 * x * x * x + 2.5 * x * x - 4 * x + 2;
    return 0;
}

/// The weights of `count` samples, mirrored at their ends, for a value at `position`, each value standing for
/// `step` samples.
std::vector<double> weights(int count, double position, double step) {
    std::vector<double> result(static_cast<std::size_t>(count), 0.0);
    const double stretch = std::max(step, 1.0);
    double total = 0;
    const auto last = static_cast<long>(std::ceil(position + 2 * stretch));
    for (auto i = static_cast<long>(std::floor(position - 2 * stretch)); i <= last; ++i) {
        const double weight = cubic((static_cast<double>(i) + 0.5 - position) / stretch);
        double mirrored = static_cast<double>(i) + 0.5;
        mirrored = mirrored < 0 ? -mirrored : mirrored > count ? 2.0 * count - mirrored : mirrored;
        const int index = std::clamp(static_cast<int>(std::floor(mirrored)), 0, count - 1);
        result[static_cast<std::size_t>(index)] += weight;
        total += weight;
    }
    for (double& weight : result)
        weight /= total;
    return result;
}

/// The share of [left, right), as far as it lies within [0, limit), that lies within [from, to).
double covered(double from, double to, double left, double right, double limit) {
    left = std::max(left, 0.0);
    right = std::min(right, limit);
    return std::max(0.0, std::min(to, right) - std::max(from, left)) / (right - left);
}

/// The square of the picture that sample (x, y) of a plane stands for: its left and top border, and its side.
struct Square {
    double left;
    double top;
    double side;
};

Square squareOf(int plane, int x, int y) {
    return plane == 0 ? Square{double(x), double(y), 1} : Square{2.0 * x - 0.5, 2.0 * y, 2};
}

void drawLayer(FrameSize size, const ReferenceLayer& layer, std::vector<ReferencePlane>& planes) {
    const Foundation::Image& photo = *layer.photo;
    const double fit = std::min(double(size.width) / photo.width, double(size.height) / photo.height);
    const double scale = fit * layer.scale;
    const double left = size.width * (0.5 + layer.offsetX) - scale * photo.width / 2;
    const double top = size.height * 0.5 + size.width * layer.offsetY - scale * photo.height / 2;
    for (int p = 0; p < 3; ++p) {
        ReferencePlane& plane = planes[static_cast<std::size_t>(p)];
        for (int y = 0; y < plane.height; ++y)
            for (int x = 0; x < plane.width; ++x) {
                const Square square = squareOf(p, x, y);
                const double coverage = covered(left, left + scale * photo.width, square.left,
                                                square.left + square.side, size.width) *
                                        covered(top, top + scale * photo.height, square.top,
                                                square.top + square.side, size.height);
                if (coverage <= 0)
                    continue;
                const double step = square.side / scale;
                const auto across =
                    weights(photo.width, (square.left + square.side / 2 - left) / scale, step);
                const auto down = weights(photo.height, (square.top + square.side / 2 - top) / scale, step);
                double value = 0;
                for (int v = 0; v < photo.height; ++v) {
                    const double weightDown = down[static_cast<std::size_t>(v)];
                    if (weightDown == 0)
                        continue;
                    for (int u = 0; u < photo.width; ++u) {
                        const double weight = weightDown * across[static_cast<std::size_t>(u)];
                        if (weight == 0)
                            continue;
                        const std::uint8_t* pixel = photo.row(v) + static_cast<std::size_t>(u) * 3;
                        value += weight * aboveBlack(pixel[0] / 255.0, pixel[1] / 255.0,
                                                     pixel[2] / 255.0)[static_cast<std::size_t>(p)];
                    }
                }
                double& below =
                    plane.values[static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.width) +
                                 static_cast<std::size_t>(x)];
                below += (value - below) * coverage * layer.opacity;
            }
    }
}

/// Y, Cb, Cr above black times alpha, and alpha.
using Flattened = std::array<double, 4>;

std::vector<Flattened> flatten(FrameSize size, std::span<const OverlayBitmap> bitmaps) {
    std::vector<Flattened> result(static_cast<std::size_t>(size.width) *
                                  static_cast<std::size_t>(size.height));
    for (const OverlayBitmap& bitmap : bitmaps)
        for (int v = 0; v < bitmap.height; ++v)
            for (int u = 0; u < bitmap.width; ++u) {
                const int x = bitmap.x + u;
                const int y = bitmap.y + v;
                if (x < 0 || y < 0 || x >= size.width || y >= size.height)
                    continue;
                const std::uint8_t* pixel =
                    bitmap.pixels.data() +
                    (static_cast<std::size_t>(v) * static_cast<std::size_t>(bitmap.width) +
                     static_cast<std::size_t>(u)) *
                        4;
                const Yuv yuv = aboveBlack(pixel[0] / 255.0, pixel[1] / 255.0, pixel[2] / 255.0);
                const double alpha = pixel[3] / 255.0;
                Flattened& below = result[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
                                          static_cast<std::size_t>(x)];
                for (std::size_t c = 0; c < 3; ++c)
                    below[c] = below[c] * (1 - alpha) + yuv[c];
                below[3] = below[3] * (1 - alpha) + alpha;
            }
    return result;
}

void drawOverlay(FrameSize size, std::span<const OverlayBitmap> bitmaps,
                 std::vector<ReferencePlane>& planes) {
    const std::vector<Flattened> flattened = flatten(size, bitmaps);
    // The frame's border pixels go on outside.
    const auto pixelAt = [&](int x, int y) {
        x = std::clamp(x, 0, size.width - 1);
        y = std::clamp(y, 0, size.height - 1);
        return flattened[static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) +
                         static_cast<std::size_t>(x)];
    };
    for (std::size_t p = 0; p < 3; ++p) {
        ReferencePlane& plane = planes[p];
        for (int y = 0; y < plane.height; ++y)
            for (int x = 0; x < plane.width; ++x) {
                double colour = 0;
                double alpha = 0;
                const auto add = [&](int px, int py, double weight) {
                    const auto pixel = pixelAt(px, py);
                    colour += weight * pixel[p];
                    alpha += weight * pixel[3];
                };
                if (p == 0) {
                    add(x, y, 1);
                } else {
                    for (int dy = 0; dy < 2; ++dy)
                        for (int dx = -1; dx <= 1; ++dx)
                            add(2 * x + dx, 2 * y + dy, (dx == 0 ? 2 : 1) / 8.0);
                }
                double& below =
                    plane.values[static_cast<std::size_t>(y) * static_cast<std::size_t>(plane.width) +
                                 static_cast<std::size_t>(x)];
                below = below * (1 - alpha) + colour;
            }
    }
}

} // namespace

std::vector<ReferencePlane> renderReference(FrameSize size, std::span<const ReferenceLayer> layers,
                                            std::span<const OverlayBitmap> overlay) {
    std::vector<ReferencePlane> planes;
    for (int p = 0; p < 3; ++p) {
        ReferencePlane plane;
        plane.width = p == 0 ? size.width : (size.width + 1) / 2;
        plane.height = p == 0 ? size.height : (size.height + 1) / 2;
        plane.values.resize(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
        planes.push_back(plane);
    }
    for (const ReferenceLayer& layer : layers)
        drawLayer(size, layer, planes);
    if (!overlay.empty())
        drawOverlay(size, overlay, planes);
    for (std::size_t p = 0; p < 3; ++p)
        for (double& value : planes[p].values)
            value += p == 0 ? 16 : 128;
    return planes;
}

} // namespace Frames::Testing
