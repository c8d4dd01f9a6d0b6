// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <vector>

typedef struct _VipsImage VipsImage;

/// Pictures whose every corner is known, and the files they are written to.
namespace Painting {

struct Rgb {
    int r = 0;
    int g = 0;
    int b = 0;

    friend std::ostream& operator<<(std::ostream& out, const Rgb& colour) {
        return out << '(' << colour.r << ", " << colour.g << ", " << colour.b << ')';
    }
};

/// The colours of a picture's quarters, as somebody looking at it sees them.
struct Quarters {
    Rgb topLeft{200, 40, 40};
    Rgb topRight{40, 170, 60};
    Rgb bottomLeft{50, 60, 200};
    Rgb bottomRight{230, 220, 180};
};

class Canvas {
public:
    explicit Canvas(VipsImage* image);
    Canvas(Canvas&&) noexcept = default;
    Canvas& operator=(Canvas&&) noexcept = default;

    [[nodiscard]] VipsImage* get() const { return m_image.get(); }

    /// What `operation` makes of this picture; the test fails when it fails.
    [[nodiscard]] Canvas with(const std::function<int(VipsImage* in, VipsImage** out)>& operation) const;
    [[nodiscard]] Canvas inProfile(const std::string& profile) const;
    [[nodiscard]] Canvas withOrientation(int tag) const;
    [[nodiscard]] Canvas withText(const char* field, const char* value) const;
    [[nodiscard]] Canvas withProfileBytes(std::span<const std::uint8_t> profile) const;
    [[nodiscard]] Canvas withoutProfile() const;

    /// By the ending of the name, which may carry options: "a.jpg[Q=95]". Returns the path without them.
    std::filesystem::path save(const std::filesystem::path& path) const;

    /// The samples, 8 bits, three bands.
    [[nodiscard]] std::vector<std::uint8_t> samples() const;

private:
    std::shared_ptr<VipsImage> m_image;
};

/// 8 bits, sRGB.
[[nodiscard]] Canvas quarters(int width, int height, const Quarters& colours = {});
[[nodiscard]] Canvas plain(int width, int height, Rgb colour);
[[nodiscard]] Canvas fromSamples(int width, int height, int bands, std::vector<std::uint8_t> samples);

/// The colour in the middle of a quarter, or at a point given in shares of the sides.
[[nodiscard]] Rgb at(const Foundation::Image& image, double x, double y);

/// An empty text where every quarter has its colour, else what is wrong.
[[nodiscard]] std::string difference(const std::optional<Foundation::Image>& image,
                                     const Quarters& expected = {}, int tolerance = 4);
[[nodiscard]] bool isNear(Rgb a, Rgb b, int tolerance);

} // namespace Painting
