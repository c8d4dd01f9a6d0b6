// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace PhotoSources {

// What the libraries beneath have to be told once for the whole process. The program does so; nothing else in
// this folder changes more than what it is handed, but for the `StandardErrorFilter`.

/// Silences Exiv2, which otherwise prints what it thinks of each photo, and guards its XMP toolkit, which is
/// not made for threads. To be called before metadata are read. Takes a tenth of a millisecond. Owner's
/// thread.
void prepareMetadata();

/// Starts libvips: silent, with no cache, and on one thread a picture, since photos are decoded side by side.
/// To be called before pictures are decoded, scaled or encoded, by this folder or any other. Takes some
/// 50 ms. Throws std::runtime_error. Owner's thread; a second call changes nothing.
void prepareDecoding();

} // namespace PhotoSources
