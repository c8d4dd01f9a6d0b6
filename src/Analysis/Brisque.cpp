// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/Brisque.h>
#include <Analysis/NetworkFile.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <span>

namespace Analysis {

namespace {

constexpr int radius = 3;
constexpr std::size_t taps = 2 * radius + 1;

/// One half of a Gaussian over 7 pixels whose deviation is 7/6: the weights of its middle and of the pixels
/// one, two and three away.
using Window = std::array<float, radius + 1>;

Window makeWindow() {
    constexpr double deviation = 7.0 / 6;
    std::array<double, radius + 1> weights{};
    for (std::size_t i = 0; i < weights.size(); ++i)
        weights[i] = std::exp(-static_cast<double>(i * i) / (2 * deviation * deviation));
    const double sum = weights[0] + 2 * (weights[1] + weights[2] + weights[3]);
    Window window{};
    for (std::size_t i = 0; i < weights.size(); ++i)
        window[i] = static_cast<float>(weights[i] / sum);
    return window;
}

/// `row` has three more values at each end.
void blurRow(const Window& window, const float* row, float* __restrict out, std::size_t width) {
    const auto [w0, w1, w2, w3] = window;
    for (std::size_t x = 0; x < width; ++x)
        out[x] = w0 * row[x + 3] + w1 * (row[x + 2] + row[x + 4]) + w2 * (row[x + 1] + row[x + 5]) +
                 w3 * (row[x] + row[x + 6]);
}

/// Yields the rows of an image one after another, each pixel minus the mean around it, by the deviation
/// around it ("mean subtracted, contrast normalised"). Beyond the image its last pixels go on.
class Normaliser {
public:
    explicit Normaliser(const GreyImage& image)
        : m_image(image)
        , m_padded(width() + 2 * radius) {
        for (std::size_t i = 0; i < taps; ++i) {
            m_means[i].resize(width());
            m_squares[i].resize(width());
        }
        for (int y = 0; y < std::min<int>(radius, image.height); ++y)
            blur(y);
    }

    void nextRow(std::vector<float>& row) {
        const int y = m_next++;
        if (y + radius < m_image.height)
            blur(y + radius);
        std::array<const float*, taps> m{};
        std::array<const float*, taps> q{};
        for (int i = 0; i < static_cast<int>(taps); ++i) {
            const std::size_t slot = slotOf(std::clamp(y + i - radius, 0, m_image.height - 1));
            m[static_cast<std::size_t>(i)] = m_means[slot].data();
            q[static_cast<std::size_t>(i)] = m_squares[slot].data();
        }
        const auto [w0, w1, w2, w3] = m_window;
        // So that hardly any contrast stays hardly any.
        constexpr float floor = 1;
        const float* const here = m_image.row(y);
        float* __restrict const out = row.data();
        for (std::size_t x = 0; x < row.size(); ++x) {
            const float mean =
                w0 * m[3][x] + w1 * (m[2][x] + m[4][x]) + w2 * (m[1][x] + m[5][x]) + w3 * (m[0][x] + m[6][x]);
            const float square =
                w0 * q[3][x] + w1 * (q[2][x] + q[4][x]) + w2 * (q[1][x] + q[5][x]) + w3 * (q[0][x] + q[6][x]);
            const float deviation = std::sqrt(std::max(0.0F, square - mean * mean));
            out[x] = (here[x] - mean) / (deviation + floor);
        }
    }

private:
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(m_image.width); }
    static std::size_t slotOf(int y) { return static_cast<std::size_t>(y) % taps; }

    /// Along the row; the last seven rows are kept.
    void blur(int y) {
        const float* const row = m_image.row(y);
        std::copy_n(row, width(), m_padded.begin() + radius);
        std::fill_n(m_padded.begin(), radius, row[0]);
        std::fill_n(m_padded.end() - radius, radius, row[width() - 1]);
        blurRow(m_window, m_padded.data(), m_means[slotOf(y)].data(), width());
        for (float& value : m_padded)
            value *= value;
        blurRow(m_window, m_padded.data(), m_squares[slotOf(y)].data(), width());
    }

    const GreyImage& m_image;
    Window m_window = makeWindow();
    std::vector<float> m_padded;
    std::array<std::vector<float>, taps> m_means;
    std::array<std::vector<float>, taps> m_squares;
    int m_next = 0;
};

/// Half the size as the model was taught: by cubic interpolation half-way between the pixels.
GreyImage cubicHalf(const GreyImage& image) {
    constexpr float near = 0.59375F;
    constexpr float far = -0.09375F;
    GreyImage result{image.width / 2, image.height / 2, {}};
    const auto width = static_cast<std::size_t>(image.width);
    const auto halfWidth = static_cast<std::size_t>(result.width);
    result.values.resize(halfWidth * static_cast<std::size_t>(result.height));
    std::vector<float> column(width + 2);
    for (int y = 0; y < result.height; ++y) {
        const float* const a = image.row(std::max(0, 2 * y - 1));
        const float* const b = image.row(2 * y);
        const float* const c = image.row(2 * y + 1);
        const float* const d = image.row(std::min(image.height - 1, 2 * y + 2));
        for (std::size_t x = 0; x < width; ++x)
            column[x + 1] = far * (a[x] + d[x]) + near * (b[x] + c[x]);
        column[0] = column[1];
        column[width + 1] = column[width];
        float* const out = result.values.data() + static_cast<std::size_t>(y) * halfWidth;
        for (std::size_t x = 0; x < halfWidth; ++x)
            out[x] =
                far * (column[2 * x] + column[2 * x + 3]) + near * (column[2 * x + 1] + column[2 * x + 2]);
    }
    return result;
}

/// The sums from which a distribution is fitted.
class Tally {
public:
    void add(const float* values, std::size_t count) {
        float absolute = 0;
        float leftSquares = 0;
        float rightSquares = 0;
        std::int32_t leftCount = 0;
        std::int32_t rightCount = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const float value = values[i];
            const float left = std::min(value, 0.0F);
            const float right = std::max(value, 0.0F);
            absolute += right - left;
            leftSquares += left * left;
            rightSquares += right * right;
            leftCount += value < 0;
            rightCount += value > 0;
        }
        m_sum += static_cast<double>(absolute);
        m_leftSquares += static_cast<double>(leftSquares);
        m_rightSquares += static_cast<double>(rightSquares);
        m_leftCount += leftCount;
        m_rightCount += rightCount;
    }

    /// An asymmetric generalised Gaussian distribution, by its moments.
    struct Fit {
        double shape;
        double leftVariance;
        double rightVariance;
    };

    [[nodiscard]] Fit fit(double count) const {
        const double left = m_leftCount > 0 ? m_leftSquares / m_leftCount : 0;
        const double right = m_rightCount > 0 ? m_rightSquares / m_rightCount : 0;
        if (m_leftSquares + m_rightSquares <= 0)
            return {lowestShape, 0, 0};
        const double skew = right > 0 ? std::sqrt(left / right) : 1;
        const double plain = m_sum / count * (m_sum / count) / ((m_leftSquares + m_rightSquares) / count);
        const double ratio =
            plain * (skew * skew * skew + 1) * (skew + 1) / ((skew * skew + 1) * (skew * skew + 1));
        return {shapeOf(ratio), left, right};
    }

    /// Where a distribution of this shape has its mean, between the deviations of its sides.
    [[nodiscard]] static double meanOf(const Fit& fit) {
        return (std::sqrt(fit.rightVariance) - std::sqrt(fit.leftVariance)) * std::tgamma(2 / fit.shape) /
               std::sqrt(std::tgamma(1 / fit.shape) * std::tgamma(3 / fit.shape));
    }

private:
    static constexpr double lowestShape = 0.2;
    static constexpr double highestShape = 10;

    /// The shape at which the squared mean of absolute values is this part of the mean square; it rises with
    /// the shape.
    static double shapeOf(double ratio) {
        double low = lowestShape;
        double high = highestShape;
        constexpr int steps = 16;
        for (int i = 0; i < steps; ++i) {
            const double shape = (low + high) / 2;
            const double two = std::tgamma(2 / shape);
            const double here = two * two / (std::tgamma(1 / shape) * std::tgamma(3 / shape));
            (here < ratio ? low : high) = shape;
        }
        return (low + high) / 2;
    }

    double m_sum = 0;
    double m_leftSquares = 0;
    double m_rightSquares = 0;
    double m_leftCount = 0;
    double m_rightCount = 0;
};

/// The 18 features of one scale.
void measure(const GreyImage& image, std::span<double, Brisque::featureCount / 2> features) {
    const auto width = static_cast<std::size_t>(image.width);
    // The pixel itself, and its products with the one to the right, below, below right and below left.
    Tally pixels;
    std::array<Tally, 4> products;
    std::vector<float> product(width);
    const auto multiply = [&](const float* a, const float* b, std::size_t count, Tally& tally) {
        for (std::size_t x = 0; x < count; ++x)
            product[x] = a[x] * b[x];
        tally.add(product.data(), count);
    };
    Normaliser normaliser(image);
    std::vector<float> here(width);
    std::vector<float> below(width);
    normaliser.nextRow(here);
    for (int y = 0; y < image.height; ++y) {
        pixels.add(here.data(), width);
        multiply(here.data(), here.data() + 1, width - 1, products[0]);
        if (y + 1 == image.height)
            break;
        normaliser.nextRow(below);
        multiply(here.data(), below.data(), width, products[1]);
        multiply(here.data(), below.data() + 1, width - 1, products[2]);
        multiply(here.data() + 1, below.data(), width - 1, products[3]);
        here.swap(below);
    }
    const double count = static_cast<double>(image.width) * static_cast<double>(image.height);
    auto feature = features.begin();
    const Tally::Fit own = pixels.fit(count);
    *feature++ = own.shape;
    *feature++ = (own.leftVariance + own.rightVariance) / 2;
    for (const Tally& tally : products) {
        const Tally::Fit fit = tally.fit(count);
        *feature++ = fit.shape;
        *feature++ = Tally::meanOf(fit);
        *feature++ = fit.leftVariance;
        *feature++ = fit.rightVariance;
    }
}

/// Takes numbers from the bytes of the model one after another.
class Reader {
public:
    Reader(std::span<const std::byte> bytes, const std::filesystem::path& file)
        : m_bytes(bytes)
        , m_file(file) {}

    template <typename Numbers>
    void read(Numbers& into) {
        const std::span numbers(into);
        using Number = typename Numbers::value_type;
        if (numbers.size_bytes() > m_bytes.size())
            throw NetworkFileError::damaged(m_file);
        std::memcpy(numbers.data(), m_bytes.data(), numbers.size_bytes());
        m_bytes = m_bytes.subspan(numbers.size_bytes());
        if constexpr (std::is_floating_point_v<Number>) {
            if (!std::all_of(numbers.begin(), numbers.end(),
                             [](Number value) { return std::isfinite(value); }))
                throw NetworkFileError::damaged(m_file);
        }
    }

    [[nodiscard]] bool isAtEnd() const { return m_bytes.empty(); }

private:
    std::span<const std::byte> m_bytes;
    const std::filesystem::path& m_file;
};

} // namespace

Brisque::Brisque(const std::filesystem::path& file) {
    const NetworkFile network(file);
    Reader reader(network.bytes(), file);
    // The numbers of features and support vectors.
    std::array<std::uint32_t, 2> counts{};
    reader.read(counts);
    constexpr std::uint32_t mostVectors = 100'000;
    if (counts[0] != featureCount || counts[1] == 0 || counts[1] > mostVectors)
        throw NetworkFileError::damaged(file);
    std::array<double, 2> kernel{};
    reader.read(kernel);
    m_gamma = kernel[0];
    m_offset = kernel[1];
    reader.read(m_lowest);
    reader.read(m_highest);
    m_coefficients.resize(counts[1]);
    reader.read(m_coefficients);
    m_vectors.resize(featureCount * counts[1]);
    reader.read(m_vectors);
    const bool isInOrder = std::equal(m_lowest.begin(), m_lowest.end(), m_highest.begin(), std::less<>());
    if (!reader.isAtEnd() || !isInOrder)
        throw NetworkFileError::damaged(file);
}

Brisque::Features Brisque::features(const GreyImage& image) {
    Features features{};
    if (image.width < smallestSide || image.height < smallestSide)
        return features;
    const std::span all(features);
    measure(image, all.first<featureCount / 2>());
    measure(cubicHalf(image), all.last<featureCount / 2>());
    return features;
}

double Brisque::score(const Features& features) const {
    std::vector<float> distances(m_coefficients.size());
    for (std::size_t i = 0; i < featureCount; ++i) {
        const auto value =
            static_cast<float>(-1 + 2 * (features[i] - m_lowest[i]) / (m_highest[i] - m_lowest[i]));
        const float* const vectors = m_vectors.data() + i * distances.size();
        for (std::size_t j = 0; j < distances.size(); ++j)
            distances[j] += (value - vectors[j]) * (value - vectors[j]);
    }
    double sum = -m_offset;
    for (std::size_t j = 0; j < distances.size(); ++j)
        sum += m_coefficients[j] * std::exp(-m_gamma * static_cast<double>(distances[j]));
    return std::clamp(sum, 0.0, 100.0);
}

} // namespace Analysis
