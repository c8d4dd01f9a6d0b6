// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Window/Stage/FrameConversion.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Stage {

namespace {

/// BT.709, limited range to full range, in 1/65536; chroma comes times 16.
constexpr int lumaScale = 76309;
constexpr int redFromCr = 117489 / 16;
constexpr int greenFromCb = -13975 / 16;
constexpr int greenFromCr = -34925 / 16;
constexpr int blueFromCb = 138438 / 16;
constexpr int half = 1 << 15;

/// Chroma is interpolated with the cubic of Catmull and Rom, as the film's pictures are. Rows of it lie
/// between two rows of luma, so it is taken a quarter of the way to the next one; in 1/128.
constexpr std::array columnWeights{-9, 111, 29, -3};

int reflected(int index, int count) {
    if (index < 0)
        index = -1 - index;
    else if (index >= count)
        index = 2 * count - 1 - index;
    return std::clamp(index, 0, count - 1);
}

/// One row of chroma at the resolution of luma.
class ChromaRow {
public:
    explicit ChromaRow(int chromaWidth)
        : m_between(static_cast<std::size_t>(chromaWidth) + margin + 2)
        , m_row(static_cast<std::size_t>(chromaWidth) * 2) {}

    /// Times 16, around 0.
    [[nodiscard]] const int* data() const { return m_row.data(); }

    void interpolate(const Frames::YuvFrame& frame, int plane, int y) {
        mixRows(frame, plane, y);
        const int width = frame.planeWidth(plane);
        const int* const in = m_between.data() + margin;
        int* const out = m_row.data();
        // In a row, chroma lies on the even columns of luma, and halfway between for the odd ones.
        for (int x = 0; x < width; ++x) {
            const int odd = (9 * (in[x] + in[x + 1]) - in[x - 1] - in[x + 2] + 8) >> 4;
            out[2 * x] = in[x] - 2048;
            out[2 * x + 1] = odd - 2048;
        }
    }

private:
    static constexpr std::size_t margin = 1;

    void mixRows(const Frames::YuvFrame& frame, int plane, int y) {
        const int height = frame.planeHeight(plane);
        const int width = frame.planeWidth(plane);
        const int towards = y % 2 == 0 ? -1 : 1;
        std::array<const std::uint8_t*, 4> rows{};
        for (int tap = 0; tap < 4; ++tap)
            rows[static_cast<std::size_t>(tap)] =
                frame.plane(plane) + reflected(y / 2 + towards * (tap - 1), height) * frame.stride(plane);
        int* const out = m_between.data() + margin;
        for (int x = 0; x < width; ++x) {
            const int sum = columnWeights[0] * rows[0][x] + columnWeights[1] * rows[1][x] +
                            columnWeights[2] * rows[2][x] + columnWeights[3] * rows[3][x];
            out[x] = (sum + 4) >> 3;
        }
        out[-1] = out[0];
        out[width] = out[width - 1];
        out[width + 1] = out[reflected(width + 1, width)];
    }

    std::vector<int> m_between;
    std::vector<int> m_row;
};

std::uint32_t byte(int value) {
    return static_cast<std::uint32_t>(std::clamp(value >> 16, 0, 255));
}

} // namespace

QImage toScreen(const Frames::YuvFrame& frame) {
    const auto [width, height] = frame.size();
    QImage image{width, height, QImage::Format_RGB32};
    std::array chroma{ChromaRow(frame.planeWidth(1)), ChromaRow(frame.planeWidth(2))};
    for (int y = 0; y < height; ++y) {
        chroma[0].interpolate(frame, 1, y);
        chroma[1].interpolate(frame, 2, y);
        const std::uint8_t* const luma = frame.plane(0) + y * frame.stride(0);
        const int* const cb = chroma[0].data();
        const int* const cr = chroma[1].data();
        auto* const out = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int grey = (luma[x] - 16) * lumaScale + half;
            const std::uint32_t red = byte(grey + cr[x] * redFromCr);
            const std::uint32_t green = byte(grey + cb[x] * greenFromCb + cr[x] * greenFromCr);
            const std::uint32_t blue = byte(grey + cb[x] * blueFromCb);
            out[x] = 0xFF000000U | red << 16 | green << 8 | blue;
        }
    }
    return image;
}

} // namespace Stage
