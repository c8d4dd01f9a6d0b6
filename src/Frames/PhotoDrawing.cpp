// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Frames/Blending.h>
#include <Frames/FrameMemory.h>
#include <Frames/PhotoDrawing.h>
#include <Frames/PreparedPhoto.h>
#include <Frames/SampleGrid.h>
#include <Frames/ZimgGraph.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>

namespace Frames {

namespace {

/// Where a photo lies on a frame, in pixels of the frame.
struct Placement {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    /// Frame pixels for one photo pixel.
    double scale = 1;
};

/// Sizes, in frame pixels, between which a drawn photo can be scaled at all and can be seen.
constexpr double smallest = 1.0 / 64;
constexpr double largest = 1e9;

/// Nothing when no picture can come of the motion: not finite, or scaled out of all proportion.
std::optional<Placement> placementOf(const PhotoLayer& layer, FrameSize size) {
    const double frameWidth = size.width;
    const double frameHeight = size.height;
    const double fit = std::min(frameWidth / layer.photo->width(), frameHeight / layer.photo->height());
    Placement result;
    result.scale = fit * layer.motion.scale;
    result.width = result.scale * layer.photo->width();
    result.height = result.scale * layer.photo->height();
    // Both displacements count in frame widths.
    result.left = (frameWidth - result.width) / 2 + frameWidth * layer.motion.offset.width;
    result.top = (frameHeight - result.height) / 2 + frameWidth * layer.motion.offset.height;
    const double longer = std::max(result.width, result.height);
    const bool sane = std::isfinite(result.left) && std::isfinite(result.top) && result.scale > 0 &&
                      longer >= smallest && longer <= largest;
    return sane ? std::optional(result) : std::nullopt;
}

/// The samples of one row or column of a plane that a photo covers: [first, last), the outermost of them
/// perhaps in part. What a sample stands for beyond the border of the frame does not count.
class Coverage {
public:
    /// The photo lies between `from` and `to`, the frame between `low` and `high`; there are `count` samples.
    Coverage(double from, double to, double low, double high, int count)
        : m_from(from)
        , m_to(to)
        , m_low(low)
        , m_high(high) {
        m_first = from <= low ? 0 : within(std::floor(from), 0, count);
        m_last = to >= high ? count : within(std::ceil(to), m_first, count);
        if (to <= low || from >= high)
            m_last = m_first;
        m_innerFirst = from <= low ? 0 : within(std::ceil(from), m_first, m_last);
        m_innerLast = to >= high ? m_last : within(std::floor(to), m_innerFirst, m_last);
    }

    [[nodiscard]] int first() const { return m_first; }
    [[nodiscard]] int last() const { return m_last; }
    [[nodiscard]] bool isEmpty() const { return m_first >= m_last; }

    /// How much of sample `i` is covered, 0…1.
    [[nodiscard]] double of(int i) const {
        const double left = std::max(m_low, static_cast<double>(i));
        const double right = std::min(m_high, i + 1.0);
        return std::clamp((std::min(m_to, right) - std::max(m_from, left)) / (right - left), 0.0, 1.0);
    }

    /// The samples [innerFirst, innerLast) are covered whole.
    [[nodiscard]] int innerFirst() const { return m_innerFirst; }
    [[nodiscard]] int innerLast() const { return m_innerLast; }

private:
    /// A whole number, limited before it is an int: a photo may lie far outside the frame.
    static int within(double value, int low, int high) {
        return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
    }

    double m_from;
    double m_to;
    double m_low;
    double m_high;
    int m_first = 0;
    int m_last = 0;
    int m_innerFirst = 0;
    int m_innerLast = 0;
};

/// One plane of the frame that is drawn on.
struct Canvas {
    std::uint8_t* samples = nullptr;
    std::ptrdiff_t stride = 0;
    int width = 0;
    int height = 0;
    SampleGrid grid;
    FrameSize frameSize;
    /// The value of black.
    std::uint8_t ground = 0;

    Canvas(YuvFrame& frame, int plane)
        : samples(frame.plane(plane))
        , stride(frame.stride(plane))
        , width(frame.planeWidth(plane))
        , height(frame.planeHeight(plane))
        , grid(plane == 0 ? SampleGrid::full() : SampleGrid::halved())
        , frameSize(frame.size())
        , ground(plane == 0 ? 16 : 128) {}

    [[nodiscard]] std::uint8_t* row(int y) const { return samples + y * stride; }

    void fill(int y, int from, int to) const {
        std::memset(row(y) + from, ground, static_cast<std::size_t>(to - from));
    }
};

/// How the planes of a photo that lie on one grid come onto the planes of a frame: the samples they cover,
/// and the graph that scales what of the photo lies on the frame, continued past the photo's edges.
class PlaneScaling {
public:
    /// The graph's columns begin where the photo does, or at the multiple of `columnStep` before.
    PlaneScaling(const PreparedPhoto::Plane& source, const Placement& placement, const Canvas& canvas,
                 int columnStep)
        : m_columns(canvas.grid.planeX(placement.left), canvas.grid.planeX(placement.left + placement.width),
                    canvas.grid.planeX(0), canvas.grid.planeX(canvas.frameSize.width), canvas.width)
        , m_rows(canvas.grid.planeY(placement.top), canvas.grid.planeY(placement.top + placement.height),
                 canvas.grid.planeY(0), canvas.grid.planeY(canvas.frameSize.height), canvas.height)
        , m_origin(m_columns.first() / columnStep * columnStep) {
        if (isEmpty())
            return;
        const int width = m_columns.last() - m_origin;
        const int height = m_rows.last() - m_rows.first();
        const double x = (canvas.grid.pictureX(m_origin) - placement.left) / placement.scale;
        const double y = (canvas.grid.pictureY(m_rows.first()) - placement.top) / placement.scale;
        const double step = canvas.grid.pitch / (placement.scale * source.grid.pitch);
        zimg_image_format from = ZimgGraph::planeFormat(source.width, source.height);
        from.active_region.left = source.grid.planeX(x);
        from.active_region.top = source.grid.planeY(y);
        from.active_region.width = width * step;
        from.active_region.height = height * step;
        m_graph.emplace(from, ZimgGraph::planeFormat(width, height), ZimgGraph::defaultParameters());
    }

    [[nodiscard]] const Coverage& columns() const { return m_columns; }
    [[nodiscard]] const Coverage& rows() const { return m_rows; }
    [[nodiscard]] bool isEmpty() const { return m_columns.isEmpty() || m_rows.isEmpty(); }
    /// The canvas column that the graph's first column is.
    [[nodiscard]] int origin() const { return m_origin; }
    /// The graph's columns.
    [[nodiscard]] int width() const { return m_columns.last() - m_origin; }
    /// Only unless empty.
    [[nodiscard]] const ZimgGraph& graph() const { return *m_graph; }

private:
    Coverage m_columns;
    Coverage m_rows;
    int m_origin;
    std::optional<ZimgGraph> m_graph;
};

/// Draws one plane of a photo onto one plane of a frame. Each row that the graph finishes is weighed with
/// what it covers and laid down while it is still in the processor's cache.
class PlaneDrawing {
public:
    PlaneDrawing(const PlaneScaling& scaling, const PreparedPhoto::Plane& source, const Canvas& canvas,
                 double opacity)
        : m_scaling(scaling)
        , m_canvas(canvas)
        , m_opacity(opacity) {
        m_source.version = ZIMG_API_VERSION;
        m_source.plane[0] = {source.samples, source.stride, ZIMG_BUFFER_MAX};
    }

    /// The scaling's columns must begin at an aligned address.
    void drawOverBlack() {
        const Coverage& columns = m_scaling.columns();
        const Coverage& rows = m_scaling.rows();
        if (m_scaling.isEmpty()) {
            for (int y = 0; y < m_canvas.height; ++y)
                m_canvas.fill(y, 0, m_canvas.width);
            return;
        }
        zimg_image_buffer target{};
        target.version = ZIMG_API_VERSION;
        target.plane[0] = {m_canvas.row(rows.first()) + m_scaling.origin(), m_canvas.stride, ZIMG_BUFFER_MAX};
        m_scaling.graph().process(m_source, target, {}, {&PlaneDrawing::fadeRow, this});
        for (int y = 0; y < m_canvas.height; ++y) {
            if (y < rows.first() || y >= rows.last()) {
                m_canvas.fill(y, 0, m_canvas.width);
            } else {
                m_canvas.fill(y, 0, columns.first());
                m_canvas.fill(y, columns.last(), m_canvas.width);
            }
        }
    }

    void drawOver() {
        if (m_scaling.isEmpty())
            return;
        const unsigned rows = m_scaling.graph().targetRows();
        m_ringStride = pixelAligned(static_cast<std::size_t>(m_scaling.width()));
        m_ringMask = rows - 1;
        const AlignedMemory ring = allocateAligned(m_ringStride * rows);
        m_ring = ring.get();
        zimg_image_buffer target{};
        target.version = ZIMG_API_VERSION;
        target.plane[0] = {ring.get(), static_cast<std::ptrdiff_t>(m_ringStride), m_ringMask};
        m_scaling.graph().process(m_source, target, {}, {&PlaneDrawing::mixRow, this});
    }

private:
    /// Calls `lay(x, count, share)` for the pieces of row `i` of the graph between its columns `left` and
    /// `right`.
    template <typename Lay>
    void forEachPiece(unsigned i, unsigned left, unsigned right, const Lay& lay) const {
        const Coverage& columns = m_scaling.columns();
        const int from = m_scaling.origin() + static_cast<int>(left);
        const int to = m_scaling.origin() + static_cast<int>(right);
        const double rowShare = m_opacity * m_scaling.rows().of(canvasRow(i));
        const auto partly = [&](int first, int last) {
            for (int x = std::max(first, from); x < std::min(last, to); ++x)
                lay(x, std::size_t{1}, Blending::share(rowShare * columns.of(x)));
        };
        partly(columns.first(), columns.innerFirst());
        const int first = std::max(columns.innerFirst(), from);
        const int last = std::min(columns.innerLast(), to);
        if (first < last)
            lay(first, static_cast<std::size_t>(last - first), Blending::share(rowShare));
        partly(columns.innerLast(), columns.last());
    }

    [[nodiscard]] int canvasRow(unsigned i) const { return m_scaling.rows().first() + static_cast<int>(i); }

    static int fadeRow(void* user, unsigned i, unsigned left, unsigned right) {
        const auto& self = *static_cast<const PlaneDrawing*>(user);
        std::uint8_t* const row = self.m_canvas.row(self.canvasRow(i));
        self.forEachPiece(i, left, right, [&](int x, std::size_t count, Blending::Share share) {
            if (share != Blending::whole)
                Blending::fade(row + x, count, self.m_canvas.ground, share);
        });
        return 0;
    }

    static int mixRow(void* user, unsigned i, unsigned left, unsigned right) {
        const auto& self = *static_cast<const PlaneDrawing*>(user);
        std::uint8_t* const row = self.m_canvas.row(self.canvasRow(i));
        const std::uint8_t* const scaled = self.m_ring + (i & self.m_ringMask) * self.m_ringStride;
        self.forEachPiece(i, left, right, [&](int x, std::size_t count, Blending::Share share) {
            Blending::mix(row + x, scaled + (x - self.m_scaling.origin()), count, share);
        });
        return 0;
    }

    const PlaneScaling& m_scaling;
    const Canvas& m_canvas;
    double m_opacity;
    zimg_image_buffer_const m_source{};
    /// The last rows that the graph made, when it does not write to the canvas itself.
    const std::uint8_t* m_ring = nullptr;
    std::size_t m_ringStride = 0;
    unsigned m_ringMask = 0;
};

/// Cb and Cr lie on the same grid and share what is made for it.
struct Planes {
    int first;
    int last;
};
constexpr std::array planesByGrid{Planes{0, 0}, Planes{1, 2}};

} // namespace

void drawOverBlack(const PhotoLayer& layer, YuvFrame& frame) {
    const std::optional<Placement> placement = placementOf(layer, frame.size());
    if (!placement) {
        frame.fillBlack();
        return;
    }
    for (const Planes& planes : planesByGrid) {
        const PlaneScaling scaling(layer.photo->plane(planes.first), *placement, Canvas(frame, planes.first),
                                   pixelAlignment);
        for (int p = planes.first; p <= planes.last; ++p) {
            const Canvas canvas(frame, p);
            PlaneDrawing(scaling, layer.photo->plane(p), canvas, layer.opacity).drawOverBlack();
        }
    }
}

void drawOver(const PhotoLayer& layer, YuvFrame& frame) {
    const std::optional<Placement> placement = placementOf(layer, frame.size());
    if (!placement)
        return;
    for (const Planes& planes : planesByGrid) {
        const PlaneScaling scaling(layer.photo->plane(planes.first), *placement, Canvas(frame, planes.first),
                                   1);
        for (int p = planes.first; p <= planes.last; ++p) {
            const Canvas canvas(frame, p);
            PlaneDrawing(scaling, layer.photo->plane(p), canvas, layer.opacity).drawOver();
        }
    }
}

} // namespace Frames
