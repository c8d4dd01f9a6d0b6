// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/FeaturePrinting.h>
#include <Analysis/VisionNetwork.h>

namespace Analysis {

/// Prints images with the embedding of the vision network, scaled to the distances that FeaturePrinting
/// promises.
class VisionFeaturePrinter final : public FeaturePrinting {
public:
    /// Borrows the network for its lifetime.
    explicit VisionFeaturePrinter(const VisionNetwork& network);

    /// 1024 numbers; nothing for an empty image.
    [[nodiscard]] std::optional<std::vector<float>> features(const Foundation::Image& image) override;

private:
    const VisionNetwork& m_network;
};

} // namespace Analysis
