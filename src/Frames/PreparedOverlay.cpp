// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Blending.h>
#include <Frames/PreparedOverlay.h>

#include <algorithm>
#include <stdexcept>

namespace Frames {

namespace {

constexpr std::uint8_t blackLuma = 16;
constexpr std::uint8_t greyChroma = 128;

/// Samples are sorted into clear, black and coloured by blocks of this many.
constexpr int blockLength = 32;

/// The matrix of BT.709 with the ranges of 8-bit limited video.
constexpr double kr = 0.2126;
constexpr double kb = 0.0722;
constexpr double kg = 1 - kr - kb;
constexpr double lumaRange = 219.0 / 255;
constexpr double chromaRange = 224.0 / 255;

/// One flattened pixel: premultiplied components in units of 1/255 of an 8-bit level.
struct Pixel {
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    std::uint16_t alpha = 0;
};

/// Sums of weighted pixels.
struct PixelSum {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    std::uint32_t alpha = 0;

    void add(const Pixel& pixel, std::uint32_t weight) {
        red += pixel.red * weight;
        green += pixel.green * weight;
        blue += pixel.blue * weight;
        alpha += pixel.alpha * weight;
    }
};

void layOver(Pixel& below, const std::uint8_t* source) {
    const std::uint32_t alpha = source[3];
    if (alpha == 0)
        return;
    const auto over = [alpha](std::uint16_t value, std::uint32_t component) {
        // A colour above its alpha is not premultiplied; it cannot be more than full.
        const std::uint32_t colour = std::min(component, alpha) * 255;
        return static_cast<std::uint16_t>(value == 0 ? colour : colour + (value * (255 - alpha) + 127) / 255);
    };
    below = {over(below.red, source[0]), over(below.green, source[1]), over(below.blue, source[2]),
             over(below.alpha, alpha)};
}

std::uint8_t roundedAlpha(std::uint32_t alpha, std::uint32_t divisor) {
    return static_cast<std::uint8_t>((alpha + divisor / 2) / divisor);
}

/// Rounded to nearest; what rounding took below zero counts as zero.
std::uint16_t asPaint(double value) {
    return static_cast<std::uint16_t>((static_cast<std::uint32_t>(std::max(value, 0.0) * 2) + 1) / 2);
}

} // namespace

class PreparedOverlay::Builder {
public:
    Builder(std::span<const OverlayBitmap> bitmaps, PreparedOverlay& overlay)
        : m_bitmaps(bitmaps)
        , m_overlay(overlay)
        , m_width(overlay.m_size.width) {
        for (std::vector<Pixel>& row : m_rows)
            row.resize(static_cast<std::size_t>(m_width));
        m_alpha.resize(static_cast<std::size_t>(m_width));
        for (std::vector<std::uint16_t>& paint : m_paint)
            paint.resize(static_cast<std::size_t>(m_width));
    }

    /// Takes in luma rows `y` and `y` + 1 and the chroma row that belongs to both.
    void addRowPair(int y) {
        m_left = m_width;
        m_right = 0;
        for (const OverlayBitmap& bitmap : m_bitmaps) {
            if (y + 1 < bitmap.y || y >= bitmap.y + bitmap.height)
                continue;
            m_left = std::min(m_left, std::max(bitmap.x, 0));
            m_right = std::max(m_right, std::min(bitmap.x + bitmap.width, m_width));
        }
        if (m_left >= m_right)
            return;
        const bool second = y + 1 < m_overlay.m_size.height;
        flatten(0, y);
        if (second)
            flatten(1, y + 1);
        addLuma(0, y);
        if (second)
            addLuma(1, y + 1);
        addChroma(y / 2, second ? 1 : 0);
        for (std::vector<Pixel>& row : m_rows)
            std::fill(row.begin() + m_left, row.begin() + m_right, Pixel{});
    }

private:
    void flatten(std::size_t index, int y) {
        std::vector<Pixel>& row = m_rows[index];
        for (const OverlayBitmap& bitmap : m_bitmaps) {
            if (y < bitmap.y || y >= bitmap.y + bitmap.height)
                continue;
            const int from = std::max(bitmap.x, 0);
            const int to = std::min(bitmap.x + bitmap.width, m_width);
            const std::uint8_t* source = bitmap.pixels.data() + (static_cast<std::size_t>(y - bitmap.y) *
                                                                     static_cast<std::size_t>(bitmap.width) +
                                                                 static_cast<std::size_t>(from - bitmap.x)) *
                                                                    4;
            for (int x = from; x < to; ++x, source += 4)
                layOver(row[static_cast<std::size_t>(x)], source);
        }
    }

    void addLuma(std::size_t index, int y) {
        for (int x = m_left; x < m_right; ++x) {
            const auto at = static_cast<std::size_t>(x);
            const Pixel& pixel = m_rows[index][at];
            m_alpha[at] = roundedAlpha(pixel.alpha, 255);
            m_paint[0][at] = static_cast<std::uint16_t>(blackLuma * m_alpha[at]);
            if ((pixel.red | pixel.green | pixel.blue) == 0)
                continue;
            const double colour = lumaRange * (kr * pixel.red + kg * pixel.green + kb * pixel.blue);
            m_paint[0][at] = asPaint(blackLuma * m_alpha[at] + colour);
        }
        addSpans(m_overlay.m_luma, 1, y, m_left, m_right, blackLuma);
    }

    void addChroma(int y, std::size_t secondRow) {
        // Sample i is centred on pixel 2i: it takes part of the pixels on both sides, from both rows.
        const int left = m_left / 2;
        const int right = std::min((m_right + 2) / 2, (m_width + 1) / 2);
        const auto pixel = [this](std::size_t row, int x) -> const Pixel& {
            return m_rows[row][static_cast<std::size_t>(std::clamp(x, 0, m_width - 1))];
        };
        for (int i = left; i < right; ++i) {
            PixelSum sum;
            for (const std::size_t row : {std::size_t{0}, secondRow}) {
                sum.add(pixel(row, 2 * i - 1), 1);
                sum.add(pixel(row, 2 * i), 2);
                sum.add(pixel(row, 2 * i + 1), 1);
            }
            const auto at = static_cast<std::size_t>(i);
            m_alpha[at] = roundedAlpha(sum.alpha, 8 * 255);
            m_paint[0][at] = m_paint[1][at] = static_cast<std::uint16_t>(greyChroma * m_alpha[at]);
            if ((sum.red | sum.green | sum.blue) == 0)
                continue;
            const double luma = kr * sum.red + kg * sum.green + kb * sum.blue;
            const double cb = chromaRange / 8 * (sum.blue - luma) / (2 * (1 - kb));
            const double cr = chromaRange / 8 * (sum.red - luma) / (2 * (1 - kr));
            m_paint[0][at] = asPaint(greyChroma * m_alpha[at] + cb);
            m_paint[1][at] = asPaint(greyChroma * m_alpha[at] + cr);
        }
        addSpans(m_overlay.m_chroma, 2, y, left, right, greyChroma);
    }

    enum class Kind { clear, black, coloured };

    [[nodiscard]] Kind kindOf(std::size_t components, int from, int to, std::uint8_t ground) const {
        Kind kind = Kind::clear;
        for (auto at = static_cast<std::size_t>(from); at < static_cast<std::size_t>(to); ++at) {
            if (m_alpha[at] == 0)
                continue;
            kind = Kind::black;
            for (std::size_t c = 0; c < components; ++c)
                if (m_paint[c][at] != ground * m_alpha[at])
                    return Kind::coloured;
        }
        return kind;
    }

    void addSpans(Plane& plane, std::size_t components, int y, int left, int right, std::uint8_t ground) {
        Kind open = Kind::clear;
        for (int from = left; from < right;) {
            const int to = std::min((from / blockLength + 1) * blockLength, right);
            const Kind kind = kindOf(components, from, to, ground);
            if (kind != Kind::clear) {
                if (kind != open)
                    plane.spans.push_back({y, from, 0, plane.alpha.size(),
                                           kind == Kind::coloured ? plane.paint[0].size() : noPaint});
                plane.spans.back().count += to - from;
                plane.alpha.insert(plane.alpha.end(), m_alpha.begin() + from, m_alpha.begin() + to);
                if (kind == Kind::coloured)
                    for (std::size_t c = 0; c < components; ++c)
                        plane.paint[c].insert(plane.paint[c].end(), m_paint[c].begin() + from,
                                              m_paint[c].begin() + to);
            }
            open = kind;
            from = to;
        }
    }

    std::span<const OverlayBitmap> m_bitmaps;
    PreparedOverlay& m_overlay;
    int m_width;
    /// The columns that the current rows' bitmaps reach.
    int m_left = 0;
    int m_right = 0;
    /// Clear between two calls.
    std::array<std::vector<Pixel>, 2> m_rows;
    std::vector<std::uint8_t> m_alpha;
    std::array<std::vector<std::uint16_t>, 2> m_paint;
};

void PreparedOverlay::Plane::shrinkToFit() {
    spans.shrink_to_fit();
    alpha.shrink_to_fit();
    for (std::vector<std::uint16_t>& component : paint)
        component.shrink_to_fit();
}

PreparedOverlay::PreparedOverlay(std::span<const OverlayBitmap> bitmaps, FrameSize size)
    : m_size(size) {
    for (const OverlayBitmap& bitmap : bitmaps) {
        if (bitmap.width < 0 || bitmap.height < 0 ||
            bitmap.pixels.size() <
                static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(bitmap.height) * 4)
            throw std::invalid_argument("an overlay bitmap has fewer pixels than its size says");
    }
    Builder builder(bitmaps, *this);
    for (int y = 0; y < size.height; y += 2)
        builder.addRowPair(y);
    m_luma.shrinkToFit();
    m_chroma.shrinkToFit();
}

void PreparedOverlay::drawOn(YuvFrame& frame) const {
    draw(m_luma, 0, frame, 0);
    draw(m_chroma, 0, frame, 1);
    draw(m_chroma, 1, frame, 2);
}

void PreparedOverlay::draw(const Plane& overlay, std::size_t component, YuvFrame& frame, int plane) {
    const std::uint8_t ground = plane == 0 ? blackLuma : greyChroma;
    for (const Span& span : overlay.spans) {
        std::uint8_t* const samples = frame.plane(plane) + span.y * frame.stride(plane) + span.x;
        const std::uint8_t* const alpha = overlay.alpha.data() + span.alphaAt;
        const auto count = static_cast<std::size_t>(span.count);
        if (span.paintAt == noPaint)
            Blending::shade(samples, alpha, count, ground);
        else
            Blending::paint(samples, alpha, overlay.paint[component].data() + span.paintAt, count);
    }
}

std::shared_ptr<const PreparedOverlay> prepareOverlay(std::span<const OverlayBitmap> bitmaps,
                                                      FrameSize size) {
    return std::make_shared<const PreparedOverlay>(bitmaps, size);
}

} // namespace Frames
