// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/GreyImage.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <vector>

namespace Analysis {

/// BRISQUE, the blind quality evaluator of Mittal, Moorthy and Bovik (2012): how far the statistics of local
/// contrast lie from those of undistorted photos, as a support vector regression learnt it from the opinions
/// in the LIVE database. Any thread.
class Brisque {
public:
    static constexpr const char* fileName = "quality-model.bin";
    /// The shortest side of an image that can be judged, in pixels.
    static constexpr int smallestSide = 32;
    static constexpr std::size_t featureCount = 36;
    /// The feature that holds the variance of normalised contrast at half the size.
    static constexpr std::size_t coarseVariance = 19;
    using Features = std::array<double, featureCount>;

    /// Throws NetworkFileError.
    explicit Brisque(const std::filesystem::path& file);

    /// 18 numbers of the image and 18 of the image at half its size. Finite for every image; an empty one, or
    /// one that is too small, has zeros.
    [[nodiscard]] static Features features(const GreyImage& image);

    /// 0…100; an undistorted photo is near 0, a ruined one near 100.
    [[nodiscard]] double score(const Features& features) const;

private:
    Features m_lowest{};
    Features m_highest{};
    double m_gamma = 0;
    double m_offset = 0;
    std::vector<double> m_coefficients;
    /// The support vectors, transposed: for each feature its values in all of them.
    std::vector<float> m_vectors;
};

} // namespace Analysis
