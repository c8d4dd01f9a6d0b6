// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Uuid.h>

namespace Timeline {

/// A displacement as fractions of the output frame.
struct Offset {
    double width = 0;
    double height = 0;

    friend bool operator==(const Offset&, const Offset&) = default;
};

/// The slow zoom and pan of one photo. Scales multiply the size of the photo fitted into the frame.
struct KenBurnsTransform {
    struct Sample {
        double scale = 1;
        Offset offset;

        friend bool operator==(const Sample&, const Sample&) = default;
    };

    double startScale = 1;
    double endScale = 1;
    Offset startOffset;
    Offset endOffset;

    /// Linear interpolation; progress is clamped to 0…1.
    [[nodiscard]] Sample sample(double progress) const;

    friend bool operator==(const KenBurnsTransform&, const KenBurnsTransform&) = default;
};

namespace KenBurns {

/// The motion of a photo, derived from its identifier alone so that it is the same in every run, in the
/// player, in the export and on every machine.
[[nodiscard]] KenBurnsTransform transform(const Foundation::Uuid& seed);

} // namespace KenBurns

} // namespace Timeline
