// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Analysis/ImageLabels.h>
#include <Analysis/NetworkFile.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <sstream>
#include <unordered_map>

namespace Analysis {

namespace {

/// What the network leaves for each of the many classes that it does not mean; together they would name
/// whatever has many classes.
constexpr float leastScore = 0.03F;

} // namespace

ImageLabels::ImageLabels(const std::filesystem::path& file) {
    const NetworkFile table(file);
    std::istringstream stream(
        std::string(reinterpret_cast<const char*>(table.bytes().data()), table.bytes().size()));
    std::unordered_map<std::string, std::size_t> known;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('#'))
            continue;
        std::size_t number = 0;
        const char* end = line.data() + line.size();
        const auto [rest, error] = std::from_chars(line.data(), end, number);
        if (error != std::errc{} || rest == end || *rest != '\t' || number > 9999)
            throw NetworkFileError::damaged(file);
        std::istringstream words(std::string(rest, end));
        for (std::string word; words >> word;) {
            const auto [entry, isNew] = known.try_emplace(word, m_words.size());
            if (isNew)
                m_words.push_back({word, {}});
            m_words[entry->second].classes.push_back(number);
        }
    }
    if (m_words.empty())
        throw NetworkFileError::damaged(file);
}

std::vector<ImageLabel> ImageLabels::labels(std::span<const float> classScores) const {
    std::vector<ImageLabel> labels;
    labels.reserve(m_words.size());
    for (const Word& word : m_words) {
        float confidence = 0;
        for (const std::size_t number : word.classes) {
            if (number < classScores.size() && classScores[number] >= leastScore)
                confidence += classScores[number];
        }
        labels.push_back({word.text, std::clamp(confidence, 0.0F, 1.0F)});
    }
    std::stable_sort(labels.begin(), labels.end(), [](const ImageLabel& left, const ImageLabel& right) {
        return left.confidence > right.confidence;
    });
    return labels;
}

} // namespace Analysis
