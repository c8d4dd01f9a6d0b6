// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <optional>

namespace Analysis::SharpnessScorer {

/// The population variance of the 4-neighbour Laplacian over the inner pixels of the image in 8-bit grey
/// (ITU-R BT.601 weights), at its full size. Nothing when a side is shorter than 3 pixels. Any thread.
[[nodiscard]] std::optional<double> variance(const Foundation::Image& image);

} // namespace Analysis::SharpnessScorer
