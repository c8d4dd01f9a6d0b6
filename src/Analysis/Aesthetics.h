// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/Brisque.h>
#include <Analysis/PhotoDetail.h>
#include <Analysis/PhotoTones.h>
#include <Foundation/Image.h>

#include <filesystem>

namespace Analysis {

/// How good a photo looks: well exposed, sharp and free of noise is better. Any thread.
class Aesthetics {
public:
    static constexpr const char* fileName = Brisque::fileName;

    struct Measures {
        PhotoTones tones;
        PhotoDetail detail;
        /// How distorted the photo looks, 0…100.
        double brisque = 0;
        /// The variance of the photo's normalised contrast at half its size; about 0.2…1, higher when fine
        /// structure fills the photo, as noise does.
        double texture = 0;
    };

    /// Loads the model of Brisque. Throws NetworkFileError.
    explicit Aesthetics(const std::filesystem::path& file);

    /// Both sides must be at least Brisque::smallestSide pixels.
    [[nodiscard]] Measures measures(const Foundation::Image& image) const;

    /// 0…1. A photo's blurred, noisy or badly exposed version scores lower than the photo, also after the
    /// sharpness of BestShotSelector is added, which takes noise for detail. 0.5 for an image too small to
    /// tell.
    [[nodiscard]] double score(const Foundation::Image& image) const;
    [[nodiscard]] static double score(const Measures& measures);

private:
    Brisque m_brisque;
};

} // namespace Analysis
