// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/ImageLabels.h>
#include <Analysis/VisionNetwork.h>
#include <Foundation/Image.h>

#include <optional>
#include <vector>

namespace Analysis {

/// Says in plain words what an image shows.
class VisionClassifier {
public:
    /// Borrows both for its lifetime.
    VisionClassifier(const VisionNetwork& network, const ImageLabels& labels);

    /// The likeliest first; nothing when the image is empty or the network fails. Any thread.
    [[nodiscard]] std::optional<std::vector<ImageLabel>> operator()(const Foundation::Image& image) const;

private:
    const VisionNetwork* m_network;
    const ImageLabels* m_labels;
};

} // namespace Analysis
