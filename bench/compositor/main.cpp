// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints what one frame costs on one thread: median CPU milliseconds over a slow pan, photos as large as the
// export loads them.
#include <Frames/Compositor.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace Frames;

double cpuMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double median(int repetitions, const std::function<void(int)>& work) {
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        const double start = cpuMilliseconds();
        work(i);
        times.push_back(cpuMilliseconds() - start);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

/// Waves with some noise: neither flat nor alike in any two places.
Foundation::Image paintedPhoto(int width, int height, unsigned seed) {
    Foundation::Image image;
    image.width = width;
    image.height = height;
    image.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            seed = seed * 1664525u + 1013904223u;
            const auto wave = [&](double period) {
                const double value = 128 + 90 * std::sin((x + 2.0 * y) / period) + (seed >> 24) % 16;
                image.pixels.push_back(static_cast<std::uint8_t>(value));
            };
            wave(37);
            wave(53);
            wave(71);
        }
    return image;
}

OverlayBitmap bottomShade(FrameSize size) {
    OverlayBitmap bitmap{0, size.height / 2, size.width, size.height - size.height / 2, {}};
    bitmap.pixels.resize(static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height) *
                         4);
    std::size_t at = 3;
    for (int y = 0; y < bitmap.height; ++y)
        for (int x = 0; x < bitmap.width; ++x, at += 4)
            bitmap.pixels[at] = static_cast<std::uint8_t>(255 * y / (2 * bitmap.height));
    return bitmap;
}

/// Stripes as wide as strokes of letters, with soft edges.
OverlayBitmap textLine(FrameSize size) {
    OverlayBitmap bitmap{40, size.height - 84, size.width / 2, 24, {}};
    for (int y = 0; y < bitmap.height; ++y)
        for (int x = 0; x < bitmap.width; ++x) {
            const int phase = (x + y / 3) % 9;
            const std::uint8_t alpha = phase < 2 ? 255 : phase < 4 ? 96 : 0;
            bitmap.pixels.insert(bitmap.pixels.end(), {alpha, alpha, alpha, alpha});
        }
    return bitmap;
}

PhotoLayer layer(const std::shared_ptr<const PreparedPhoto>& photo, int frame, double direction,
                 double opacity) {
    PhotoLayer result;
    result.photo = photo;
    result.motion.scale = 1 + 0.1 * frame / 100;
    result.motion.offset = {direction * 0.0002 * frame, -direction * 0.0001 * frame};
    result.opacity = opacity;
    return result;
}

void measure(const char* name, FrameSize size, int repetitions) {
    const int longest = size.width;
    const Foundation::Image wideImage = paintedPhoto(longest, longest * 9 / 16, 1);
    const Foundation::Image classicImage = paintedPhoto(longest, longest * 3 / 4, 2);
    const Foundation::Image uprightImage = paintedPhoto(longest * 3 / 4, longest, 3);
    const auto row = [&](const char* what, double milliseconds) {
        std::printf("%-6s %-34s %8.2f ms\n", name, what, milliseconds);
    };

    std::shared_ptr<const PreparedPhoto> wide;
    std::shared_ptr<const PreparedPhoto> classic;
    row("prepare a 4:3 photo", median(5, [&](int) { classic = preparePhoto(classicImage); }));
    wide = preparePhoto(wideImage);
    const auto upright = preparePhoto(uprightImage);
    std::shared_ptr<const PreparedOverlay> overlay;
    row("prepare an overlay", median(5, [&](int) {
            const std::vector<OverlayBitmap> bitmaps{bottomShade(size), textLine(size)};
            overlay = prepareOverlay(bitmaps, size);
        }));

    const auto frames = [&](const char* what, const std::function<std::vector<PhotoLayer>(int)>& layers,
                            const PreparedOverlay* over) {
        row(what, median(repetitions, [&](int i) { (void)compose(size, layers(i), over); }));
    };
    frames(
        "black", [&](int) { return std::vector<PhotoLayer>{}; }, nullptr);
    frames(
        "black, overlay", [&](int) { return std::vector<PhotoLayer>{}; }, overlay.get());
    frames(
        "one photo 16:9", [&](int i) { return std::vector{layer(wide, i, 1, 1)}; }, nullptr);
    frames(
        "one photo 4:3", [&](int i) { return std::vector{layer(classic, i, 1, 1)}; }, nullptr);
    frames(
        "one photo 3:4", [&](int i) { return std::vector{layer(upright, i, 1, 1)}; }, nullptr);
    frames(
        "one photo 16:9, overlay", [&](int i) { return std::vector{layer(wide, i, 1, 1)}; }, overlay.get());
    const auto dissolve = [&](int i) {
        const double a = (i % 22 + 1) / 23.0;
        return std::vector{layer(wide, i, 1, 1 - a), layer(classic, i, -1, a)};
    };
    frames("dissolve 16:9 to 4:3", dissolve, nullptr);
    frames("dissolve 16:9 to 4:3, overlay", dissolve, overlay.get());
}

} // namespace

int main(int argc, char** argv) {
    const int repetitions = argc > 1 ? std::max(1, std::atoi(argv[1])) : 40;
    measure("1080p", {1920, 1080}, repetitions);
    measure("4K", {3840, 2160}, repetitions);
}
