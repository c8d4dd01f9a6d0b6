// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Captioning/SceneTagging.h>
#include <Foundation/Image.h>

#include <stop_token>
#include <string>

namespace Captioning {

/// A backend that writes captions. Implementations are immutable. Any thread.
class CaptionGenerating {
public:
    virtual ~CaptionGenerating() = default;

    /// One caption for the picture. `tags` are its scene tags, for backends that do not see it. Throws
    /// CaptionError, or Foundation::Cancelled when `stop` was triggered.
    [[nodiscard]] virtual std::string caption(const Foundation::Image& image, const SceneTags& tags,
                                              const std::stop_token& stop) const = 0;
};

} // namespace Captioning
