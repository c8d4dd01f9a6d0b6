// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Slides/SlideFont.h>
#include <Roamly/Slides/SlideShade.h>
#include <Roamly/Slides/SlideTextRenderer.h>
#include <Roamly/Slides/TextBlock.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRect>
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace Slides {

namespace {

// All lengths are pixels of the frame.

constexpr int cardTitleSize = 48;
constexpr int overlayTitleSize = 44;
constexpr int captionSize = 20;
constexpr int locationSize = 17;
constexpr double locationOpacity = 0.9;
constexpr int symbolSize = 20;

/// What texts keep clear of the frame's edges.
constexpr int margin = 40;
constexpr int titleTopMargin = 56;
/// Between caption and location.
constexpr int columnSpacing = 8;
/// Between the symbol and the location's text.
constexpr int symbolSpacing = 4;

constexpr int shadowRadius = 8;
constexpr int shadowDrop = 2;
constexpr double shadowOpacity = 0.33;

/// How far strokes may reach over the bounds that the text engine states, before a block is moved or clipped.
constexpr int overhang = 24;

/// A drawing on clear ground, premultiplied, with its place on the frame.
struct Layer {
    QImage image;
    QPoint origin;

    [[nodiscard]] QRect rect() const { return {origin, image.size()}; }
};

Layer makeLayer(const QRect& rect) {
    QImage image(rect.size(), QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull())
        throw std::bad_alloc();
    image.fill(Qt::transparent);
    return {std::move(image), rect.topLeft()};
}

/// The part of the image that is not clear, in its own coordinates; empty when all of it is.
QRect inkBounds(const QImage& image) {
    int left = image.width();
    int right = -1;
    int top = image.height();
    int bottom = -1;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            if (row[x * 4 + 3] == 0)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = y;
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

/// Crops the layer to its ink, first moving it inside `box` as far as possible and then clipping it to the
/// box.
Layer confined(const Layer& layer, const QRect& box) {
    const QRect ink = inkBounds(layer.image);
    if (ink.isEmpty())
        return {};
    const QRect placed = ink.translated(layer.origin);
    QPoint shift(std::max(0, box.left() - placed.left()), std::max(0, box.top() - placed.top()));
    if (shift.x() == 0)
        shift.setX(std::min(0, std::max(box.right() - placed.right(), box.left() - placed.left())));
    if (shift.y() == 0)
        shift.setY(std::min(0, std::max(box.bottom() - placed.bottom(), box.top() - placed.top())));
    const QRect visible = placed.translated(shift) & box;
    if (visible.isEmpty())
        return {};
    const QRect source = visible.translated(-shift - layer.origin);
    return {layer.image.copy(source), visible.topLeft()};
}

void multiplyOpacity(QImage& image, double opacity) {
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(image.rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
}

Layer drawText(const TextBlock& block, QPoint topLeft, const QRect& box) {
    if (block.isEmpty())
        return {};
    const QRect rect(topLeft, QSize(block.width(), block.height()));
    Layer layer = makeLayer(rect.adjusted(-overhang, -overhang, overhang, overhang));
    {
        QPainter painter(&layer.image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                               QPainter::SmoothPixmapTransform);
        painter.setPen(Qt::white);
        block.draw(painter, QPoint(overhang, overhang));
    }
    return confined(layer, box);
}

/// The weights of a Gaussian blur. A blur "radius" is commonly two standard deviations.
std::vector<double> gaussianKernel(int radius) {
    const double sigma = radius / 2.0;
    const int reach = static_cast<int>(std::ceil(3 * sigma));
    std::vector<double> kernel;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        kernel.push_back(std::exp(-i * i / (2 * sigma * sigma)));
        sum += kernel.back();
    }
    for (double& weight : kernel)
        weight /= sum;
    return kernel;
}

/// The layer over its own shadow, which may reach as far as the frame's edges.
Layer withShadow(const Layer& layer, Frames::FrameSize frame) {
    const std::vector<double> kernel = gaussianKernel(shadowRadius);
    const int reach = static_cast<int>(kernel.size()) / 2;
    const QRect whole = layer.rect().adjusted(-reach, -reach, reach, reach + shadowDrop);
    const int width = whole.width();
    const int height = whole.height();
    const auto at = [width](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    };
    const std::size_t count = at(0, height);

    // The text's opacity, spread along rows and then along columns; each letter is where the shadow is 0.
    std::vector<double> spread(count);
    for (int y = 0; y < layer.image.height(); ++y) {
        const uchar* row = layer.image.constScanLine(y);
        for (int x = 0; x < layer.image.width(); ++x) {
            if (const int alpha = row[x * 4 + 3]; alpha != 0) {
                for (std::size_t k = 0; k < kernel.size(); ++k)
                    spread[at(x + static_cast<int>(k), y + reach + shadowDrop)] += kernel[k] * alpha;
            }
        }
    }
    std::vector<double> shadow(count);
    for (int y = 0; y < height; ++y) {
        for (std::size_t k = 0; k < kernel.size(); ++k) {
            const int source = y + static_cast<int>(k) - reach;
            if (source < 0 || source >= height)
                continue;
            const double weight = kernel[k] * shadowOpacity;
            for (int x = 0; x < width; ++x)
                shadow[at(x, y)] += weight * spread[at(x, source)];
        }
    }

    Layer result = makeLayer(whole);
    for (int y = 0; y < height; ++y) {
        uchar* row = result.image.scanLine(y);
        for (int x = 0; x < width; ++x)
            row[x * 4 + 3] = dithered(shadow[at(x, y)], x, y);
    }
    {
        QPainter painter(&result.image);
        painter.drawImage(layer.origin - result.origin, layer.image);
    }
    const QRect visible = whole & QRect(0, 0, frame.width, frame.height);
    return {result.image.copy(visible.translated(-whole.topLeft())), visible.topLeft()};
}

/// A compass arrow with a stroke through it: the place is a guess. Drawn in white into a square of `side`.
Layer drawLocationSlash(QPoint topLeft, int side, const QRect& box) {
    Layer layer = makeLayer(QRect(topLeft, QSize(side, side)));
    {
        QPainter painter(&layer.image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side, side);

        QPainterPath arrow(QPointF(0.92, 0.08));
        arrow.lineTo(0.10, 0.43);
        arrow.lineTo(0.49, 0.51);
        arrow.lineTo(0.57, 0.90);
        arrow.closeSubpath();
        const QLineF slash(0.10, 0.10, 0.90, 0.90);

        painter.setPen(QPen(Qt::white, 0.08, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(arrow);
        // The stroke stands off the arrow by a gap as wide as itself.
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.setPen(QPen(Qt::white, 0.20, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(slash);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(QPen(Qt::white, 0.08, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(slash);
    }
    return confined(layer, box);
}

void append(std::vector<Frames::OverlayBitmap>& bitmaps, const Layer& layer) {
    if (layer.image.isNull())
        return;
    Frames::OverlayBitmap bitmap{.x = layer.origin.x(),
                                 .y = layer.origin.y(),
                                 .width = layer.image.width(),
                                 .height = layer.image.height(),
                                 .pixels = {}};
    const std::size_t stride = static_cast<std::size_t>(bitmap.width) * 4;
    bitmap.pixels.reserve(stride * static_cast<std::size_t>(bitmap.height));
    for (int y = 0; y < bitmap.height; ++y) {
        const uchar* row = layer.image.constScanLine(y);
        bitmap.pixels.insert(bitmap.pixels.end(), row, row + stride);
    }
    bitmaps.push_back(std::move(bitmap));
}

/// The frame without its margins; empty for a frame smaller than they are.
QRect contentBox(Frames::FrameSize frame) {
    return QRect(QPoint(margin, margin), QPoint(frame.width - margin - 1, frame.height - margin - 1));
}

int lineHeight(const QFont& font) {
    return static_cast<int>(std::ceil(QFontMetricsF(font).height()));
}

/// The title at the top centre. Returns the first row below it, or the top of the content where there is
/// none.
int appendTitle(std::vector<Frames::OverlayBitmap>& bitmaps, std::string_view title,
                Frames::FrameSize frame) {
    QRect box = contentBox(frame);
    const int noTitleBottom = box.top();
    box.setTop(titleTopMargin);
    const QFont font = SlideFont::font(SlideFont::Family::display, overlayTitleSize, QFont::Bold);
    // It stays on its shade, in the upper half, unless that does not even hold one line.
    const int maxHeight =
        std::min(box.height(), std::max(frame.height / 2 - titleTopMargin, lineHeight(font)));
    const TextBlock block(title, font, TextBlock::Alignment::centre, box.width(), maxHeight);
    if (block.isEmpty())
        return noTitleBottom;
    const QPoint topLeft(box.left() + (box.width() - block.width()) / 2, box.top());
    if (const Layer layer = drawText(block, topLeft, box); !layer.image.isNull())
        append(bitmaps, withShadow(layer, frame));
    return topLeft.y() + block.height();
}

/// Caption and location in the bottom left corner, below `top`.
void appendColumn(std::vector<Frames::OverlayBitmap>& bitmaps, const Timeline::OverlaySpec& spec,
                  Frames::FrameSize frame, int top) {
    QRect box = contentBox(frame);
    box.setTop(std::max(box.top(), top));
    const QFont captionFont = SlideFont::font(SlideFont::Family::text, captionSize, QFont::Normal);
    const QFont locationFont = SlideFont::font(SlideFont::Family::text, locationSize, QFont::DemiBold);
    // The column stays on its shade, in the lower half, unless that does not even hold a line of each.
    const int needed = lineHeight(captionFont) + columnSpacing + lineHeight(locationFont);
    int space = std::min(box.height(), std::max(frame.height / 2 - margin, needed));
    int bottom = box.top() + box.height();

    const int symbolSide = spec.isApproximate ? symbolSize : 0;
    const int indent = spec.isApproximate ? symbolSide + symbolSpacing : 0;
    // Of the two, the place is the shorter: it is laid out first, in no more than half of the space if there
    // is a caption, which takes what is left.
    const bool hasCaption = spec.caption && !spec.caption->empty();
    const TextBlock location(spec.locationText.value_or(""), locationFont, TextBlock::Alignment::left,
                             box.width() - indent, hasCaption ? space / 2 : space);
    if (!location.isEmpty()) {
        bottom -= location.height();
        QRect textBox = box;
        textBox.setLeft(box.left() + indent);
        Layer text = drawText(location, QPoint(textBox.left(), bottom), textBox);
        if (!text.image.isNull()) {
            multiplyOpacity(text.image, locationOpacity);
            append(bitmaps, text);
            if (spec.isApproximate) {
                const int y = bottom + (location.height() - symbolSide) / 2;
                Layer symbol = drawLocationSlash(QPoint(box.left(), y), symbolSide, box);
                multiplyOpacity(symbol.image, locationOpacity);
                append(bitmaps, symbol);
            }
        }
        bottom -= columnSpacing;
        space -= location.height() + columnSpacing;
    }

    const TextBlock caption(spec.caption.value_or(""), captionFont, TextBlock::Alignment::left, box.width(),
                            space);
    append(bitmaps, drawText(caption, QPoint(box.left(), bottom - caption.height()), box));
}

} // namespace

std::vector<Frames::OverlayBitmap> SlideTextRenderer::overlay(const Timeline::OverlaySpec& spec,
                                                              Frames::FrameSize frame) {
    std::vector<Frames::OverlayBitmap> bitmaps{SlideShade::bottom(frame)};
    int top = 0;
    if (spec.chapterTitle) {
        bitmaps.push_back(SlideShade::top(frame));
        top = appendTitle(bitmaps, *spec.chapterTitle, frame);
    }
    appendColumn(bitmaps, spec, frame, top);
    return bitmaps;
}

std::vector<Frames::OverlayBitmap> SlideTextRenderer::chapterCard(std::string_view title,
                                                                  Frames::FrameSize frame) {
    std::vector<Frames::OverlayBitmap> bitmaps;
    const QRect box = contentBox(frame);
    const TextBlock block(title, SlideFont::font(SlideFont::Family::display, cardTitleSize, QFont::DemiBold),
                          TextBlock::Alignment::centre, box.width(), box.height());
    append(bitmaps, drawText(block,
                             box.topLeft() + QPoint((box.width() - block.width()) / 2,
                                                    (box.height() - block.height()) / 2),
                             box));
    return bitmaps;
}

} // namespace Slides
