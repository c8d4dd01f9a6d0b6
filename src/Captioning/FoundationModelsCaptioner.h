// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/CaptionGenerating.h>

namespace Captioning {

/// The operating system's own language model. No system that this program runs on has one, so it always
/// answers that it is unavailable.
class FoundationModelsCaptioner : public CaptionGenerating {
public:
    /// Throws CaptionError with `BackendUnavailable`.
    [[nodiscard]] std::string caption(const Foundation::Image& image, const SceneTags& tags,
                                      const std::stop_token& stop) const override;
};

} // namespace Captioning
