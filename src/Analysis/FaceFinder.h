// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/ImageNetwork.h>
#include <Foundation/Image.h>

#include <filesystem>
#include <vector>

namespace Analysis {

/// A face in an image; places in pixels of the image.
struct Face {
    double centreX = 0;
    double centreY = 0;
    /// Of the upright square that holds it.
    double side = 0;
    /// Radians from upright, clockwise.
    double tilt = 0;
    /// 0…1.
    double confidence = 0;
};

/// Finds faces, and whether their eyes show.
class FaceFinder {
public:
    /// What the program comes with, for `dataFile`.
    static constexpr const char* detectorFileName = "face-detector.bin";
    static constexpr const char* landmarksFileName = "face-landmarks.bin";

    /// Throws NetworkFileError.
    FaceFinder(const std::filesystem::path& detectorFile, const std::filesystem::path& landmarksFile);

    /// The surest first. Any thread. Throws std::runtime_error when the network fails.
    [[nodiscard]] std::vector<Face> faces(const Foundation::Image& image) const;

    /// Whether the landmarks of a face of the image include its left eye (the person's own left), open or
    /// not. False when a second look finds no face there, or the eye lies outside the image or behind the
    /// nose. Any thread. Throws std::runtime_error when the network fails.
    [[nodiscard]] bool showsLeftEye(const Foundation::Image& image, const Face& face) const;

private:
    ImageNetwork m_detector;
    ImageNetwork m_landmarks;
};

} // namespace Analysis
