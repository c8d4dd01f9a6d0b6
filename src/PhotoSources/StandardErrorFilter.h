// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace PhotoSources {

/// While one of these lives, what libjxl and libde265 print about broken files does not reach standard error,
/// which they cannot be told; all other lines do, late at worst. Affects the whole process; any number
/// may live at a time. Any thread.
///
/// Held only while such a file is decoded, by `ImageDecoder`. To filter all that the process ever prints,
/// standard error would have to be a pipe with a thread behind it for good: progress would no longer find a
/// terminal there, lines would come late and out of order with standard output, and the last words of a
/// process that crashes would be lost.
class StandardErrorFilter {
public:
    StandardErrorFilter();
    StandardErrorFilter(const StandardErrorFilter&) = delete;
    StandardErrorFilter& operator=(const StandardErrorFilter&) = delete;
    ~StandardErrorFilter();
};

} // namespace PhotoSources
