// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/FileSource.h>

namespace PhotoSources {

/// Whether the system takes the file for an image, by the shared MIME database. The contents decide: a photo
/// with a wrong extension or none is an image; a PDF, a film, a text or an empty file is none whatever its
/// name. Only where the database does not know the contents (many camera raw formats, a damaged start) the
/// name decides. Any thread.
[[nodiscard]] bool isImage(const FileSource& file);

} // namespace PhotoSources
