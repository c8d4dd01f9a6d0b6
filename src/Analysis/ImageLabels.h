// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Analysis/VisionNetwork.h>

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace Analysis {

/// One word for what an image shows.
struct ImageLabel {
    /// Words joined by underscores.
    std::string identifier;
    /// 0…1.
    float confidence = 0;
};

/// Plain words for the classes of the vision network.
class ImageLabels {
public:
    /// What the program comes with, for `dataFile`.
    static constexpr const char* fileName = "image-labels.bin";

    /// Throws NetworkFileError.
    explicit ImageLabels(const std::filesystem::path& file);

    /// Every word, the likeliest first, each as sure as all classes that bear it together; equally sure ones
    /// in the order of the file. Any thread.
    [[nodiscard]] std::vector<ImageLabel> labels(std::span<const float> classScores) const;

private:
    struct Word {
        std::string text;
        std::vector<std::size_t> classes;
    };
    std::vector<Word> m_words;
};

} // namespace Analysis
