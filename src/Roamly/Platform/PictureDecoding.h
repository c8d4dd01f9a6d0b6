// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/PhotoDecoding.h>

#include <memory>

namespace Platform {

/// How this program decodes picture files: in this process, once what that needs has started
/// (`preparePictures`). The one for all. Thread-safe.
[[nodiscard]] std::shared_ptr<const PhotoSources::PhotoDecoding> pictureDecoding();

} // namespace Platform
