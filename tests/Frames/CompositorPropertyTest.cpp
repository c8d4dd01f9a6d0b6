// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Compositor.h>
#include <Frames/ReferenceRenderer.h>
#include <Frames/TestPictures.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace Frames;
using namespace Frames::Testing;

class Dice {
public:
    explicit Dice(unsigned seed)
        : m_engine(seed) {}

    int whole(int low, int high) {
        return low + static_cast<int>(m_engine() % static_cast<unsigned>(high - low + 1));
    }
    double real(double low, double high) {
        return low + (high - low) * (static_cast<double>(m_engine()) / 4294967296.0);
    }
    bool oneIn(int n) { return whole(1, n) == 1; }

private:
    std::mt19937 m_engine;
};

/// Noise that stays away from the ends of the range, where scaling filters overshoot and are cut off.
Foundation::Image noise(Dice& dice, int width, int height) {
    return paint(width, height, [&](int, int) {
        const auto component = [&] { return static_cast<std::uint8_t>(dice.whole(50, 205)); };
        return Colour{component(), component(), component()};
    });
}

OverlayBitmap randomBitmap(Dice& dice, FrameSize size) {
    OverlayBitmap bitmap{dice.whole(-10, size.width),
                         dice.whole(-10, size.height),
                         dice.whole(0, size.width),
                         dice.whole(0, size.height),
                         {}};
    const int kind = dice.whole(0, 2);
    for (int i = 0; i < bitmap.width * bitmap.height; ++i) {
        const int alpha = kind == 2 && dice.oneIn(2) ? 0 : dice.whole(0, 255);
        const auto component = [&] {
            return static_cast<std::uint8_t>(kind == 0 ? 0 : dice.whole(0, alpha));
        };
        bitmap.pixels.insert(bitmap.pixels.end(),
                             {component(), component(), component(), static_cast<std::uint8_t>(alpha)});
    }
    return bitmap;
}

std::string dump(const std::vector<ReferenceLayer>& layers) {
    std::string text;
    for (const ReferenceLayer& layer : layers)
        text += ", " + std::to_string(layer.photo->width) + "x" + std::to_string(layer.photo->height) +
                " at " + std::to_string(layer.scale) + " (" + std::to_string(layer.offsetX) + ", " +
                std::to_string(layer.offsetY) + ") * " + std::to_string(layer.opacity);
    return text;
}

TEST(CompositorPropertyTest, AgreesWithADirectRenderingInRealNumbers) {
    Dice dice(20240607);
    double worst = 0;
    double sum = 0;
    double count = 0;
    for (int round = 0; round < 300; ++round) {
        const FrameSize size{dice.whole(1, 70), dice.whole(1, 50)};
        std::vector<Foundation::Image> photos;
        std::vector<PhotoLayer> layers;
        std::vector<ReferenceLayer> references;
        const int layerCount = dice.whole(0, 3);
        photos.reserve(static_cast<std::size_t>(layerCount));
        for (int i = 0; i < layerCount; ++i)
            photos.push_back(noise(dice, dice.whole(1, 60), dice.whole(1, 60)));
        for (const Foundation::Image& photo : photos) {
            const double scale = dice.oneIn(3) ? dice.real(0.2, 4) : dice.real(1, 1.12);
            const double reach = dice.oneIn(3) ? 0.5 : 0.03;
            const double x = dice.real(-reach, reach);
            const double y = dice.real(-reach, reach);
            const double opacity = dice.oneIn(3) ? 1 : dice.real(0, 1);
            layers.push_back(layerOf(photo, scale, x, y, opacity));
            references.push_back({&photo, scale, x, y, opacity});
        }
        std::vector<OverlayBitmap> bitmaps;
        for (int i = dice.whole(0, 3); i > 0; --i)
            bitmaps.push_back(randomBitmap(dice, size));
        const auto frame = compose(size, layers, prepareOverlay(bitmaps, size).get());
        const auto expected = renderReference(size, references, bitmaps);
        // Each layer is rounded when scaled and when blended, the overlay once more.
        const double tolerance = 0.6 + 0.8 * layerCount + (bitmaps.empty() ? 0 : 1);
        for (int p = 0; p < 3; ++p)
            for (int y = 0; y < frame->planeHeight(p); ++y)
                for (int x = 0; x < frame->planeWidth(p); ++x) {
                    const double wanted = expected[static_cast<std::size_t>(p)].at(x, y);
                    const double error = sampleAt(*frame, p, x, y) - wanted;
                    ASSERT_LE(std::abs(error), tolerance)
                        << "round " << round << ", plane " << p << ", sample " << x << ' ' << y << " of "
                        << size.width << 'x' << size.height << ", " << layerCount
                        << " layers: " << sampleAt(*frame, p, x, y) << " instead of " << wanted
                        << dump(references);
                    worst = std::max(worst, std::abs(error));
                    sum += error;
                    count += 1;
                }
    }
    // Rounding favours neither side.
    EXPECT_LT(std::abs(sum / count), 0.02);
    RecordProperty("worst", std::to_string(worst));
}

TEST(CompositorPropertyTest, SurvivesAnyGeometry) {
    Dice dice(7);
    const auto wild = [&] {
        const double size = std::pow(10, dice.real(-14, 14));
        return dice.oneIn(2) ? size : -size;
    };
    for (int round = 0; round < 600; ++round) {
        const FrameSize size{dice.whole(1, 40), dice.whole(1, 40)};
        const Foundation::Image photo = flat(dice.oneIn(4) ? 1 : dice.whole(1, 300),
                                             dice.oneIn(4) ? 1 : dice.whole(1, 300), {255, 255, 255});
        std::vector<PhotoLayer> layers;
        layers.reserve(2);
        for (int i = 0; i < 2; ++i)
            layers.push_back(layerOf(photo, dice.oneIn(2) ? 1 : wild(), dice.oneIn(2) ? 0 : wild(),
                                     dice.oneIn(2) ? 0 : wild(), 0.5));
        const auto frame = compose(size, layers, nullptr);
        for (int y = 0; y < size.height; ++y)
            for (int x = 0; x < size.width; ++x) {
                ASSERT_GE(sampleAt(*frame, 0, x, y), 16);
                ASSERT_LE(sampleAt(*frame, 0, x, y), 181);
            }
    }
}

} // namespace
