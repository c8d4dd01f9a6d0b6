#include <Export/Blending.h>
#include <Export/FrameMemory.h>
#include <Export/PhotoDrawing.h>
#include <Export/PreparedPhoto.h>
#include <Export/SampleGrid.h>
#include <Export/ZimgGraph.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

namespace Export {

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

/// Draws one plane of a photo onto one plane of a frame. zimg scales the part of the photo that lies on the
/// frame, continued past the photo's edges; each row that it finishes is weighed with what it covers and laid
/// down while it is still in the processor's cache.
class PlaneDrawing {
public:
    PlaneDrawing(const PhotoLayer& layer, const Placement& placement, int plane, const Canvas& canvas)
        : m_canvas(canvas)
        , m_source(layer.photo->plane(plane))
        , m_placement(placement)
        , m_opacity(layer.opacity)
        , m_columns(canvas.grid.planeX(placement.left), canvas.grid.planeX(placement.left + placement.width),
                    canvas.grid.planeX(0), canvas.grid.planeX(canvas.frameSize.width), canvas.width)
        , m_rows(canvas.grid.planeY(placement.top), canvas.grid.planeY(placement.top + placement.height),
                 canvas.grid.planeY(0), canvas.grid.planeY(canvas.frameSize.height), canvas.height) {}

    void drawOverBlack() {
        if (isEmpty()) {
            for (int y = 0; y < m_canvas.height; ++y)
                m_canvas.fill(y, 0, m_canvas.width);
            return;
        }
        // zimg writes from an aligned address on; black then takes back what is too much.
        m_origin = m_columns.first() / static_cast<int>(pixelAlignment) * static_cast<int>(pixelAlignment);
        zimg_image_buffer target{};
        target.version = ZIMG_API_VERSION;
        target.plane[0] = {m_canvas.row(m_rows.first()) + m_origin, m_canvas.stride, ZIMG_BUFFER_MAX};
        scaler().process(source(), target, {}, {&PlaneDrawing::fadeRow, this});
        for (int y = 0; y < m_canvas.height; ++y) {
            if (y < m_rows.first() || y >= m_rows.last()) {
                m_canvas.fill(y, 0, m_canvas.width);
            } else {
                m_canvas.fill(y, 0, m_columns.first());
                m_canvas.fill(y, m_columns.last(), m_canvas.width);
            }
        }
    }

    void drawOver() {
        if (isEmpty())
            return;
        m_origin = m_columns.first();
        const ZimgGraph graph = scaler();
        const unsigned rows = graph.targetRows();
        const std::size_t stride = pixelAligned(static_cast<std::size_t>(m_columns.last() - m_origin));
        const AlignedMemory ring = allocateAligned(stride * rows);
        zimg_image_buffer target{};
        target.version = ZIMG_API_VERSION;
        target.plane[0] = {ring.get(), static_cast<std::ptrdiff_t>(stride), rows - 1};
        m_ring = ring.get();
        m_ringStride = stride;
        m_ringMask = rows - 1;
        graph.process(source(), target, {}, {&PlaneDrawing::mixRow, this});
    }

private:
    [[nodiscard]] bool isEmpty() const { return m_columns.isEmpty() || m_rows.isEmpty(); }

    /// The position on the photo's plane of a position on the canvas.
    [[nodiscard]] double sourceX(int x) const {
        return m_source.grid.planeX((m_canvas.grid.pictureX(x) - m_placement.left) / m_placement.scale);
    }
    [[nodiscard]] double sourceY(int y) const {
        return m_source.grid.planeY((m_canvas.grid.pictureY(y) - m_placement.top) / m_placement.scale);
    }

    [[nodiscard]] ZimgGraph scaler() const {
        zimg_image_format from = ZimgGraph::planeFormat(m_source.width, m_source.height);
        from.active_region.left = sourceX(m_origin);
        from.active_region.top = sourceY(m_rows.first());
        const int width = m_columns.last() - m_origin;
        const int height = m_rows.last() - m_rows.first();
        const double step = m_canvas.grid.pitch / (m_placement.scale * m_source.grid.pitch);
        from.active_region.width = width * step;
        from.active_region.height = height * step;
        const zimg_image_format to = ZimgGraph::planeFormat(width, height);
        return ZimgGraph(from, to, ZimgGraph::defaultParameters());
    }

    [[nodiscard]] zimg_image_buffer_const source() const {
        zimg_image_buffer_const buffer{};
        buffer.version = ZIMG_API_VERSION;
        buffer.plane[0] = {m_source.samples, m_source.stride, ZIMG_BUFFER_MAX};
        return buffer;
    }

    /// Calls `lay(first, count, share)` for the pieces of row `y` between columns `from` and `to`.
    template <typename Lay>
    void forEachPiece(int y, int from, int to, const Lay& lay) const {
        const double rowShare = m_opacity * m_rows.of(y);
        const auto partly = [&](int first, int last) {
            for (int x = std::max(first, from); x < std::min(last, to); ++x)
                lay(x, std::size_t{1}, Blending::share(rowShare * m_columns.of(x)));
        };
        partly(m_columns.first(), m_columns.innerFirst());
        const int first = std::max(m_columns.innerFirst(), from);
        const int last = std::min(m_columns.innerLast(), to);
        if (first < last)
            lay(first, static_cast<std::size_t>(last - first), Blending::share(rowShare));
        partly(m_columns.innerLast(), m_columns.last());
    }

    static int fadeRow(void* user, unsigned i, unsigned left, unsigned right) {
        const auto& self = *static_cast<const PlaneDrawing*>(user);
        const int y = self.m_rows.first() + static_cast<int>(i);
        std::uint8_t* const row = self.m_canvas.row(y);
        self.forEachPiece(y, self.m_origin + static_cast<int>(left), self.m_origin + static_cast<int>(right),
                          [&](int x, std::size_t count, Blending::Share share) {
                              if (share != Blending::whole)
                                  Blending::fade(row + x, count, self.m_canvas.ground, share);
                          });
        return 0;
    }

    static int mixRow(void* user, unsigned i, unsigned left, unsigned right) {
        const auto& self = *static_cast<const PlaneDrawing*>(user);
        const int y = self.m_rows.first() + static_cast<int>(i);
        std::uint8_t* const row = self.m_canvas.row(y);
        const std::uint8_t* const scaled = self.m_ring + (i & self.m_ringMask) * self.m_ringStride;
        self.forEachPiece(y, self.m_origin + static_cast<int>(left), self.m_origin + static_cast<int>(right),
                          [&](int x, std::size_t count, Blending::Share share) {
                              Blending::mix(row + x, scaled + (x - self.m_origin), count, share);
                          });
        return 0;
    }

    const Canvas& m_canvas;
    const PreparedPhoto::Plane& m_source;
    const Placement& m_placement;
    double m_opacity;
    Coverage m_columns;
    Coverage m_rows;
    /// The canvas column that zimg's first column is.
    int m_origin = 0;
    const std::uint8_t* m_ring = nullptr;
    std::size_t m_ringStride = 0;
    unsigned m_ringMask = 0;
};

} // namespace

void drawOverBlack(const PhotoLayer& layer, YuvFrame& frame) {
    const std::optional<Placement> placement = placementOf(layer, frame.size());
    if (!placement) {
        frame.fillBlack();
        return;
    }
    for (int p = 0; p < 3; ++p) {
        const Canvas canvas(frame, p);
        PlaneDrawing(layer, *placement, p, canvas).drawOverBlack();
    }
}

void drawOver(const PhotoLayer& layer, YuvFrame& frame) {
    const std::optional<Placement> placement = placementOf(layer, frame.size());
    if (!placement)
        return;
    for (int p = 0; p < 3; ++p) {
        const Canvas canvas(frame, p);
        PlaneDrawing(layer, *placement, p, canvas).drawOver();
    }
}

} // namespace Export
