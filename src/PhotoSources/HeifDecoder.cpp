// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <PhotoSources/HeifContainer.h>
#include <PhotoSources/HeifDecoder.h>
#include <PhotoSources/HevcDecoder.h>
#include <PhotoSources/VipsPicture.h>
#include <PhotoSources/YuvConversion.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <thread>

namespace PhotoSources::HeifDecoder {

namespace {

/// The largest phone sensors have 200 megapixels.
constexpr std::uint64_t mostPixels = 220'000'000;
/// One coded picture, decoded, takes up to six bytes a pixel and the decoder's own notes.
constexpr std::uint64_t mostSinglePixels = 64'000'000;
/// Several tiles are decoded at a time.
constexpr std::uint64_t mostTilePixels = 16'000'000;
/// Of the picture put together, after reduction.
constexpr std::uint64_t mostAssembledBytes = 400'000'000;
constexpr int mostThreads = 4;

std::uint64_t mostPixelsOfATile(const HeifPicture& picture) {
    return picture.tiles.size() == 1 ? mostSinglePixels : mostTilePixels;
}

struct Rectangle {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// The part of the coded picture that is shown, and how it is turned.
struct View {
    Rectangle part;
    Orientation orientation;
};

/// Moves a rectangle of the turned part back into the coordinates of the coded picture.
Rectangle beforeTurning(const Rectangle& shown, const View& view) {
    const Orientation& turn = view.orientation;
    const int width = turn.transpose ? view.part.height : view.part.width;
    const int height = turn.transpose ? view.part.width : view.part.height;
    Rectangle result = shown;
    if (turn.mirrorX)
        result.left = width - shown.left - shown.width;
    if (turn.mirrorY)
        result.top = height - shown.top - shown.height;
    if (turn.transpose) {
        std::swap(result.left, result.top);
        std::swap(result.width, result.height);
    }
    result.left += view.part.left;
    result.top += view.part.top;
    return result;
}

/// What a crop keeps of a picture of this size; all of it where the crop makes no sense.
Rectangle cropped(const HeifCrop& crop, int width, int height) {
    const auto start = [](double kept, double offset, int length) -> std::optional<int> {
        const double first = offset + (length - 1) / 2.0 - (kept - 1) / 2;
        if (!(kept >= 1) || !(kept <= length) || !(first > -1) || !(first < length))
            return std::nullopt;
        return std::clamp(static_cast<int>(std::lround(first)), 0, length - 1);
    };
    const std::optional<int> left = start(crop.width, crop.offsetX, width);
    const std::optional<int> top = start(crop.height, crop.offsetY, height);
    if (!left || !top)
        return {0, 0, width, height};
    return {*left, *top, std::clamp(static_cast<int>(std::lround(crop.width)), 1, width - *left),
            std::clamp(static_cast<int>(std::lround(crop.height)), 1, height - *top)};
}

View viewOf(const HeifPicture& picture) {
    View view{{0, 0, picture.width, picture.height}, {}};
    for (const HeifTransform& transform : picture.transforms) {
        if (const auto* turn = std::get_if<Orientation>(&transform)) {
            view.orientation = view.orientation.followedBy(*turn);
            continue;
        }
        const bool swapped = view.orientation.transpose;
        const Rectangle shown =
            cropped(std::get<HeifCrop>(transform), swapped ? view.part.height : view.part.width,
                    swapped ? view.part.width : view.part.height);
        view.part = beforeTurning(shown, view);
    }
    return view;
}

/// How far the tiles may be reduced while they are put together: the resampler keeps a factor of two where
/// memory allows.
int reductionFor(const HeifPicture& picture, const View& view, int maxPixel, int bytesPerPixel) {
    const HeifTile& tile = picture.tiles.front();
    const int longest = std::max(view.part.width, view.part.height);
    const int shortest = std::min(view.part.width, view.part.height);
    const auto fits = [&](int factor) {
        // Blocks of samples must not straddle tiles.
        const bool aligned = (picture.columns == 1 || tile.width % factor == 0) &&
                             (picture.rows == 1 || tile.height % factor == 0);
        return aligned && shortest >= factor;
    };
    const auto bytes = [&](int factor) {
        return static_cast<std::uint64_t>(picture.width / factor) *
               static_cast<std::uint64_t>(picture.height / factor) *
               static_cast<std::uint64_t>(bytesPerPixel);
    };
    int best = 1;
    for (const int factor : {2, 4, 8}) {
        const bool leavesRoom = longest / factor >= 2 * maxPixel;
        const bool isNeeded = bytes(best) > mostAssembledBytes && longest / factor >= maxPixel;
        if (fits(factor) && (leavesRoom || isNeeded))
            best = factor;
    }
    return best;
}

/// The coding of a tile: the container's word goes before the stream's.
ColourCoding codingOf(const HeifPicture& picture, const HevcPlanes& planes) {
    constexpr int unspecified = 2;
    if (!picture.coding)
        return planes.coding;
    ColourCoding coding = *picture.coding;
    if (coding.matrix == unspecified)
        coding.matrix = planes.coding.matrix;
    return coding;
}

/// Puts the picture together from its tiles, of which the first has been decoded.
class Assembly {
public:
    Assembly(const HeifPicture& picture, const HevcPlanes& first, int reduction, RgbSamples& samples)
        : m_picture(picture)
        , m_reduction(reduction)
        , m_samples(samples) {
        place(0, first);
    }

    /// Takes part in the work until it is done or has failed; called by every thread that shares it.
    void work() noexcept {
        try {
            decodeTiles();
        } catch (const std::exception&) {
            m_failed = true; // no memory, which would end the program from a thread of its own
        }
    }

    [[nodiscard]] bool isComplete() const {
        // A tile that cannot be decoded leaves a black square; a picture of mostly squares is none.
        return !m_failed && m_missing * 4 <= m_picture.tiles.size();
    }

private:
    void decodeTiles() {
        HevcDecoder decoder(mostPixelsOfATile(m_picture));
        while (!m_failed) {
            const std::size_t index = m_next++;
            if (index >= m_picture.tiles.size())
                return;
            if (const std::optional<HevcPlanes> planes = decoder.decode(m_picture.tiles[index]))
                place(index, *planes);
            else
                ++m_missing;
        }
    }

    void place(std::size_t index, const HevcPlanes& planes) {
        const auto columns = static_cast<std::size_t>(m_picture.columns);
        const HeifTile& tile = m_picture.tiles[index];
        const int left = static_cast<int>(index % columns) * tile.width / m_reduction;
        const int top = static_cast<int>(index / columns) * tile.height / m_reduction;
        const int tileWidth = std::min(tile.width, planes.planes[0].width);
        const int tileHeight = std::min(tile.height, planes.planes[0].height);
        const std::size_t pixelBytes = m_samples.bitsPerChannel > 8 ? 6 : 3;
        RgbTarget target;
        target.bytesPerRow = static_cast<std::size_t>(m_samples.width) * pixelBytes;
        target.bitsPerChannel = m_samples.bitsPerChannel;
        target.width = std::min(tileWidth / m_reduction, m_samples.width - left);
        target.height = std::min(tileHeight / m_reduction, m_samples.height - top);
        if (target.width < 1 || target.height < 1)
            return;
        target.data = m_samples.bytes.data() + static_cast<std::size_t>(top) * target.bytesPerRow +
                      static_cast<std::size_t>(left) * pixelBytes;
        convertToRgb(planes, codingOf(m_picture, planes), m_reduction, target);
    }

    const HeifPicture& m_picture;
    int m_reduction;
    RgbSamples& m_samples;
    std::atomic<std::size_t> m_next = 1;
    std::atomic<std::size_t> m_missing = 0;
    std::atomic<bool> m_failed = false;
};

void crop(RgbSamples& samples, const Rectangle& part) {
    if (part.left == 0 && part.top == 0 && part.width == samples.width && part.height == samples.height)
        return;
    const std::size_t pixelBytes = samples.bitsPerChannel > 8 ? 6 : 3;
    const std::size_t rowBytes = static_cast<std::size_t>(samples.width) * pixelBytes;
    const std::size_t partBytes = static_cast<std::size_t>(part.width) * pixelBytes;
    for (int y = 0; y < part.height; ++y) {
        const std::uint8_t* from = samples.bytes.data() + static_cast<std::size_t>(part.top + y) * rowBytes +
                                   static_cast<std::size_t>(part.left) * pixelBytes;
        std::copy_n(from, partBytes, samples.bytes.data() + static_cast<std::size_t>(y) * partBytes);
    }
    samples.width = part.width;
    samples.height = part.height;
    samples.bytes.resize(partBytes * static_cast<std::size_t>(part.height));
}

} // namespace

std::optional<Foundation::Image> decode(const HeifPicture& picture, int maxPixel) {
    if (static_cast<std::uint64_t>(picture.width) * static_cast<std::uint64_t>(picture.height) > mostPixels)
        return std::nullopt;

    // The first tile tells the depth, which decides how the picture is kept.
    HevcDecoder decoder(mostPixelsOfATile(picture));
    const std::optional<HevcPlanes> first = decoder.decode(picture.tiles.front());
    if (!first)
        return std::nullopt;
    RgbSamples samples;
    samples.bitsPerChannel = first->planes[0].bits > 8 ? 16 : 8;
    const ColourCoding coding = codingOf(picture, *first);

    const View view = viewOf(picture);
    const int pixelBytes = samples.bitsPerChannel > 8 ? 6 : 3;
    const int reduction = reductionFor(picture, view, maxPixel, pixelBytes);
    samples.width = picture.width / reduction;
    samples.height = picture.height / reduction;
    const std::uint64_t bytes = static_cast<std::uint64_t>(samples.width) *
                                static_cast<std::uint64_t>(samples.height) *
                                static_cast<std::uint64_t>(pixelBytes);
    if (bytes > mostAssembledBytes)
        return std::nullopt;
    samples.bytes.resize(static_cast<std::size_t>(bytes));

    Assembly assembly(picture, *first, reduction, samples);
    const int cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    const int threads = std::min({cores, mostThreads, static_cast<int>(picture.tiles.size())});
    {
        std::vector<std::jthread> helpers;
        for (int i = 1; i < threads; ++i)
            helpers.emplace_back([&assembly] { assembly.work(); });
        assembly.work();
    }
    if (!assembly.isComplete())
        return std::nullopt;

    Rectangle part{view.part.left / reduction, view.part.top / reduction, 0, 0};
    part.width = std::clamp(view.part.width / reduction, 1, samples.width - part.left);
    part.height = std::clamp(view.part.height / reduction, 1, samples.height - part.top);
    crop(samples, part);
    if (!picture.iccProfile.empty())
        samples.iccProfile.assign(picture.iccProfile.begin(), picture.iccProfile.end());
    else if (std::optional<ColourProfile::Bytes> profile = ColourProfile::forCoding(coding))
        samples.iccProfile = std::move(*profile);
    return VipsPicture::finish(samples, view.part.width, view.part.height, view.orientation, maxPixel);
}

} // namespace PhotoSources::HeifDecoder
