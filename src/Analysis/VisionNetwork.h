// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/ImageNetwork.h>
#include <Foundation/Image.h>

#include <filesystem>
#include <vector>

namespace Analysis {

/// What one look of the network yields.
struct VisionAnswer {
    /// What the image is like; none negative, as many for every image.
    std::vector<float> embedding;
    /// How sure the network is of each of the 1000 ImageNet classes; they sum to 1.
    std::vector<float> classScores;
};

/// The network that knows scenes and things: MobileNet v1. bench-analysis compares it with ResNet-50, which
/// parts scenes as well and takes six times as long.
class VisionNetwork {
public:
    /// What the program comes with, for `dataFile`.
    static constexpr const char* fileName = "vision-network.bin";

    /// Takes some tenths of a second. Throws NetworkFileError.
    explicit VisionNetwork(const std::filesystem::path& file);

    /// The same answer for the same image, whatever else runs. Uses one core; asked in several
    /// threads it uses several. Any thread. Throws std::runtime_error when the image is empty or the
    /// network fails.
    [[nodiscard]] VisionAnswer look(const Foundation::Image& image) const;

private:
    ImageNetwork m_network;
};

} // namespace Analysis
