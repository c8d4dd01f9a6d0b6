#pragma once

#include <Foundation/Image.h>

#include <stop_token>
#include <string>
#include <vector>

namespace Captioning {

/// A backend that writes captions. Implementations are immutable and safe to use from any thread.
class CaptionGenerating {
public:
    virtual ~CaptionGenerating() = default;

    /// One caption for the picture and its scene tags. Throws CaptionError, or Foundation::Cancelled when
    /// `stop` was triggered.
    [[nodiscard]] virtual std::string caption(const Foundation::Image& image,
                                              const std::vector<std::string>& tags,
                                              const std::stop_token& stop) const = 0;
};

} // namespace Captioning
