// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/YuvConversion.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace PhotoSources {

namespace {

/// The weights of red and blue in luma (ITU-T H.273, matrix coefficients).
struct LumaWeights {
    double red = 0.299;
    double blue = 0.114;
};

constexpr int matrixIdentity = 0;
constexpr int matrixYCgCo = 8;

LumaWeights lumaWeights(int matrix) {
    switch (matrix) {
    case 1:
        return {0.2126, 0.0722};
    case 4:
        return {0.30, 0.11};
    case 7:
        return {0.212, 0.087};
    case 9:
    case 10:
        return {0.2627, 0.0593};
    default:
        // BT.601 is also what a picture that says nothing is taken to be.
        return {0.299, 0.114};
    }
}

/// R = scale * (Y - black) + ... in fixed point, for samples of a given depth and range.
class Matrix {
public:
    static constexpr int shift = 14;

    Matrix(const ColourCoding& coding, int bits, int outputBits) {
        const double unit = std::exp2(bits - 8);
        const double most = std::exp2(outputBits) - 1;
        const double whole = std::exp2(bits) - 1;
        const double lumaSpan = coding.fullRange ? whole : 219 * unit;
        const double chromaSpan = coding.fullRange ? whole : 224 * unit;
        m_black = coding.fullRange ? 0 : static_cast<int>(16 * unit);
        m_middle = 1 << (bits - 1);
        m_most = static_cast<int>(most);
        const double fixed = std::exp2(shift);
        m_luma = std::lround(fixed * most / lumaSpan);
        m_isIdentity = coding.matrix == matrixIdentity;
        m_isYCgCo = coding.matrix == matrixYCgCo;
        const LumaWeights weights = lumaWeights(coding.matrix);
        const double green = 1 - weights.red - weights.blue;
        const double chroma = fixed * most / chromaSpan;
        m_redCr = std::lround(chroma * 2 * (1 - weights.red));
        m_blueCb = std::lround(chroma * 2 * (1 - weights.blue));
        m_greenCr = std::lround(chroma * 2 * (1 - weights.red) * weights.red / green);
        m_greenCb = std::lround(chroma * 2 * (1 - weights.blue) * weights.blue / green);
        m_chroma = std::lround(chroma);
    }

    template <typename Sample>
    void convert(const int* luma, const int* cb, const int* cr, Sample* out, int count) const {
        constexpr std::int64_t half = std::int64_t{1} << (shift - 1);
        const auto clamped = [this](std::int64_t value) {
            return static_cast<Sample>(std::clamp<std::int64_t>(value >> shift, 0, m_most));
        };
        if (m_isIdentity) {
            for (int i = 0; i < count; ++i, out += 3) {
                out[0] = clamped((cr[i] - m_black) * m_luma + half);
                out[1] = clamped((luma[i] - m_black) * m_luma + half);
                out[2] = clamped((cb[i] - m_black) * m_luma + half);
            }
            return;
        }
        if (m_isYCgCo) {
            for (int i = 0; i < count; ++i, out += 3) {
                const std::int64_t y = (luma[i] - m_black) * m_luma + half;
                const std::int64_t cg = (cb[i] - m_middle) * m_chroma, co = (cr[i] - m_middle) * m_chroma;
                out[0] = clamped(y - cg + co);
                out[1] = clamped(y + cg);
                out[2] = clamped(y - cg - co);
            }
            return;
        }
        for (int i = 0; i < count; ++i, out += 3) {
            const std::int64_t y = (luma[i] - m_black) * m_luma + half;
            const std::int64_t u = cb[i] - m_middle, v = cr[i] - m_middle;
            out[0] = clamped(y + v * m_redCr);
            out[1] = clamped(y - u * m_greenCb - v * m_greenCr);
            out[2] = clamped(y + u * m_blueCb);
        }
    }

private:
    std::int64_t m_luma = 0, m_redCr = 0, m_blueCb = 0, m_greenCr = 0, m_greenCb = 0, m_chroma = 0;
    int m_black = 0, m_middle = 0, m_most = 0;
    bool m_isIdentity = false, m_isYCgCo = false;
};

int sampleAt(const HevcPlanes::Plane& plane, int x, int y) {
    x = std::clamp(x, 0, plane.width - 1);
    y = std::clamp(y, 0, plane.height - 1);
    const std::uint8_t* row = plane.data + static_cast<std::size_t>(y) * plane.bytesPerRow;
    if (plane.bits <= 8)
        return row[x];
    std::uint16_t value = 0;
    std::memcpy(&value, row + static_cast<std::size_t>(x) * 2, sizeof value);
    return value;
}

template <typename Sample>
const Sample* rowAt(const HevcPlanes::Plane& plane, int y) {
    const std::uint8_t* row =
        plane.data + static_cast<std::size_t>(std::clamp(y, 0, plane.height - 1)) * plane.bytesPerRow;
    return reinterpret_cast<const Sample*>(row);
}

/// One row of a plane, each value the mean of a block of samples.
template <typename Sample>
void reduceRow(const HevcPlanes::Plane& plane, int y, int across, int down, int count,
               std::vector<int>& out) {
    std::fill_n(out.begin(), count, 0);
    const int whole = std::min(count, plane.width / across);
    for (int line = 0; line < down; ++line) {
        const Sample* row = rowAt<Sample>(plane, y * down + line);
        for (int x = 0; x < whole; ++x) {
            int sum = 0;
            for (int i = 0; i < across; ++i)
                sum += row[x * across + i];
            out[static_cast<std::size_t>(x)] += sum;
        }
        for (int x = whole; x < count; ++x) {
            int sum = 0;
            for (int i = 0; i < across; ++i)
                sum += sampleAt(plane, x * across + i, y * down + line);
            out[static_cast<std::size_t>(x)] += sum;
        }
    }
    const int samples = across * down;
    if (samples > 1) {
        for (int x = 0; x < count; ++x) {
            int& value = out[static_cast<std::size_t>(x)];
            value = (value + samples / 2) / samples;
        }
    }
}

/// One row of chroma at luma's resolution. Chroma sits on every other luma column, and half-way between two
/// luma rows, which is where HEVC puts it unless told otherwise.
template <typename Sample>
void upsampleRow(const HevcPlanes::Plane& plane, int y, bool halfWidth, bool halfHeight, int count,
                 std::vector<int>& out) {
    const int nearRow = halfHeight ? y / 2 : y;
    const int farRow = !halfHeight ? y : y % 2 == 0 ? nearRow - 1 : nearRow + 1;
    const Sample* close = rowAt<Sample>(plane, nearRow);
    const Sample* far = rowAt<Sample>(plane, farRow);
    const int last = plane.width - 1;
    const auto at = [&](int x) { return 3 * close[x] + far[x]; };
    if (!halfWidth) {
        for (int x = 0; x < count; ++x)
            out[static_cast<std::size_t>(x)] = (at(std::min(x, last)) + 2) >> 2;
        return;
    }
    for (int x = 0; x < count; x += 2) {
        const int here = at(std::min(x / 2, last));
        const int next = at(std::min(x / 2 + 1, last));
        out[static_cast<std::size_t>(x)] = (here + 2) >> 2;
        if (x + 1 < count)
            out[static_cast<std::size_t>(x) + 1] = (here + next + 4) >> 3;
    }
}

template <typename Sample>
void readRow(const HevcPlanes::Plane& plane, int y, int reduction, bool halfWidth, bool halfHeight, int count,
             std::vector<int>& out) {
    const int across = halfWidth ? reduction / 2 : reduction;
    const int down = halfHeight ? reduction / 2 : reduction;
    if (across > 0 && down > 0)
        reduceRow<Sample>(plane, y, across, down, count, out);
    else
        upsampleRow<Sample>(plane, y, halfWidth, halfHeight, count, out);
}

/// Brings samples of one depth to another; luma and chroma may differ.
void changeDepth(std::vector<int>& samples, int from, int to) {
    if (from == to)
        return;
    for (int& sample : samples)
        sample = from < to ? sample << (to - from) : sample >> (from - to);
}

} // namespace

void convertToRgb(const HevcPlanes& picture, const ColourCoding& coding, int reduction,
                  const RgbTarget& target) {
    const auto width = static_cast<std::size_t>(target.width);
    const int depth = picture.planes[0].bits;
    const Matrix matrix(coding, depth, target.bitsPerChannel);
    const bool halfWidth = picture.layout == ChromaLayout::c420 || picture.layout == ChromaLayout::c422;
    const bool halfHeight = picture.layout == ChromaLayout::c420;
    const bool mono = picture.layout == ChromaLayout::mono;

    std::vector<int> luma(width);
    std::vector<int> cb(width, 1 << (depth - 1)), cr(cb);
    const auto read = [&](const HevcPlanes::Plane& plane, int y, bool narrow, bool low,
                          std::vector<int>& out) {
        if (plane.bits <= 8)
            readRow<std::uint8_t>(plane, y, reduction, narrow, low, target.width, out);
        else
            readRow<std::uint16_t>(plane, y, reduction, narrow, low, target.width, out);
        changeDepth(out, plane.bits, depth);
    };
    ColourCoding used = coding;
    if (mono && used.matrix == matrixIdentity)
        used.matrix = 1;
    const Matrix& conversion = mono ? Matrix(used, depth, target.bitsPerChannel) : matrix;
    for (int y = 0; y < target.height; ++y) {
        read(picture.planes[0], y, false, false, luma);
        if (!mono) {
            read(picture.planes[1], y, halfWidth, halfHeight, cb);
            read(picture.planes[2], y, halfWidth, halfHeight, cr);
        }
        std::uint8_t* row = target.data + static_cast<std::size_t>(y) * target.bytesPerRow;
        if (target.bitsPerChannel <= 8)
            conversion.convert(luma.data(), cb.data(), cr.data(), row, target.width);
        else
            conversion.convert(luma.data(), cb.data(), cr.data(), reinterpret_cast<std::uint16_t*>(row),
                               target.width);
    }
}

} // namespace PhotoSources
