// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Image.h>
#include <ProjectModel/PhotoRef.h>

#include <optional>

namespace Analysis {

/// Where the analysis gets pixels from.
class ImageProviding {
public:
    virtual ~ImageProviding() = default;

    /// The decoded photo at a size good enough for looking at scenes and faces; nothing when its pixels
    /// cannot be had. Worker's thread.
    [[nodiscard]] virtual std::optional<Foundation::Image> image(const ProjectModel::PhotoRef& ref) = 0;
};

} // namespace Analysis
