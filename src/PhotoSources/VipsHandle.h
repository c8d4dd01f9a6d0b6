// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vips/vips.h>

#include <algorithm>
#include <cstdint>
#include <memory>

/// Owners for libvips' objects. Only for the files that talk to libvips.
namespace PhotoSources::VipsHandle {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Picture = std::unique_ptr<VipsImage, Unref>;
using Source = std::unique_ptr<VipsSource, Unref>;

/// Clears what libvips wrote into its error log, which otherwise grows with every broken photo.
struct ErrorLogCleared {
    ~ErrorLogCleared() { vips_error_clear(); }
};

/// The result of a libvips operation that writes its output through a pointer.
template <typename Operation>
Picture made(Operation operation) {
    VipsImage* out = nullptr;
    if (operation(&out) != 0)
        return nullptr;
    return Picture(out);
}

struct Size {
    int width = 0;
    int height = 0;

    [[nodiscard]] int longest() const { return std::max(width, height); }
    [[nodiscard]] int shortest() const { return std::min(width, height); }
    [[nodiscard]] std::uint64_t pixels() const {
        return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
    }
};

inline Size sizeOf(const Picture& picture) {
    return {vips_image_get_width(picture.get()), vips_image_get_height(picture.get())};
}

} // namespace PhotoSources::VipsHandle
