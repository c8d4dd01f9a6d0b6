// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ProjectModel/Project.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ProjectModel::Testing {

/// Makes projects that use every corner of what a project may hold. The same seed makes the same projects.
class RandomProject {
public:
    explicit RandomProject(std::uint64_t seed)
        : m_engine(seed) {}

    [[nodiscard]] Project project(std::size_t mostPhotos = 12) {
        Project project;
        for (std::size_t i = below(4); i > 0; --i)
            project.sources.push_back(source());
        for (std::size_t i = below(mostPhotos + 1); i > 0; --i)
            project.photos.push_back(photo(project.sources));
        project.settings = settings();
        if (chance(0.5))
            project.music = MusicSelection{.bookmark = bytes(40), .displayName = text()};
        project.usesManualOrder = chance(0.3);
        return project;
    }

    /// Photos share places, dates and clusters often enough for those to matter.
    [[nodiscard]] PhotoItem photo(const std::vector<PhotoSource>& sources = {}) {
        return {
            .id = uuid(),
            .source = photoRef(),
            .captureDate = maybe([&] { return instant(); }),
            .coordinate = maybe([&] { return Coordinate{.latitude = number(), .longitude = number()}; }),
            .location = maybe([&] { return location(); }),
            .clusterID = maybe([&] { return Foundation::Uuid{{static_cast<std::uint8_t>(below(3))}}; }),
            .qualityScore = maybe([&] { return chance(0.5) ? unit() : number(); }),
            .caption = maybe([&] { return text(); }),
            .captionProvenance = maybe([&] { return provenance(); }),
            .isSelected = chance(0.7),
            .selectionProvenance = provenance(),
            .isMissing = chance(0.2),
            .sourceID = maybe(
                [&] { return sources.empty() || chance(0.2) ? uuid() : sources[below(sources.size())].id; }),
        };
    }

    [[nodiscard]] PhotoSource source() {
        if (chance(0.5))
            return {.id = uuid(), .ref = AlbumSourceRef{.localIdentifier = text(), .title = text()}};
        return {.id = uuid(), .ref = FolderSourceRef{.bookmark = bytes(60), .displayPath = text()}};
    }

    [[nodiscard]] PhotoRef photoRef() {
        if (chance(0.5))
            return LibraryPhotoRef{.localIdentifier = text()};
        return FilePhotoRef{.bookmark = bytes(60), .displayName = text()};
    }

    [[nodiscard]] ProjectSettings settings() {
        return {
            .photoDuration = maybe([&] { return chance(0.8) ? unit() * 10 : number(); }),
            .kenBurnsEnabled = maybe([&] { return chance(0.5); }),
            .captionsEnabled = maybe([&] { return chance(0.5); }),
            .aiCaptionsEnabled = maybe([&] { return chance(0.5); }),
            .chapterStyle = maybe([&] { return allChapterStyles[below(allChapterStyles.size())]; }),
            .aiProvider = maybe([&] { return allAIProviders[below(allAIProviders.size())]; }),
            .captionPrompt = maybe([&] { return text(); }),
        };
    }

    [[nodiscard]] ResolvedLocation location() {
        return {
            .city = maybe([&] {
                return pick<std::string>({"Lisbon", "Rome", "", "München"});
            }),
            .country = maybe([&] {
                return pick<std::string>({"Portugal", "Italy", "", "日本"});
            }),
            .provenance = provenance(),
        };
    }

    [[nodiscard]] Provenance provenance() {
        return pick({Provenance::proposed, Provenance::geocoded, Provenance::inferred, Provenance::generated,
                     Provenance::user});
    }

    /// Mostly within one day, so that equal ones occur; sometimes anywhere in the years 1 to 9999.
    [[nodiscard]] Foundation::Instant instant() {
        if (chance(0.8))
            return Foundation::Instant{
                std::chrono::seconds{1'689'336'000 + static_cast<std::int64_t>(below(40))}};
        const auto first = Foundation::parseIso8601("0001-01-01T00:00:00Z")->time_since_epoch().count();
        const auto last = Foundation::parseIso8601("9999-12-31T23:59:59Z")->time_since_epoch().count();
        return Foundation::Instant{
            std::chrono::seconds{std::uniform_int_distribution<std::int64_t>{first, last}(m_engine)}};
    }

    /// Any finite number, by its bits.
    [[nodiscard]] double number() {
        if (chance(0.1))
            return pick({0.0, -0.0, 1.0, -1.0, 5e-324, 1.7976931348623157e308, 9007199254740993.0, 0.1});
        const double value = std::bit_cast<double>(m_engine());
        return std::isfinite(value) ? value : unit();
    }

    [[nodiscard]] std::string text() {
        static constexpr std::string_view pieces[] = {"a",
                                                      "Zürich",
                                                      " ",
                                                      "\"",
                                                      "\\",
                                                      "/",
                                                      "\n",
                                                      "\t",
                                                      std::string_view{"\0", 1},
                                                      "\x1F",
                                                      "\x7F",
                                                      "日本",
                                                      "😀🏳️‍🌈",
                                                      "é",
                                                      "e\u0301",
                                                      "\u2028",
                                                      "\U0010FFFF",
                                                      "مرحبا"};
        std::string result;
        for (std::size_t i = below(7); i > 0; --i)
            result += pieces[below(std::size(pieces))];
        return result;
    }

    [[nodiscard]] Foundation::Bytes bytes(std::size_t most) {
        Foundation::Bytes result(below(most + 1));
        for (std::uint8_t& byte : result)
            byte = static_cast<std::uint8_t>(m_engine());
        return result;
    }

    [[nodiscard]] Foundation::Uuid uuid() {
        Foundation::Uuid id;
        for (std::uint8_t& byte : id.bytes)
            byte = static_cast<std::uint8_t>(m_engine());
        return id;
    }

    /// 0 … limit - 1.
    [[nodiscard]] std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>{0, limit - 1}(m_engine);
    }
    [[nodiscard]] double unit() { return std::uniform_real_distribution<double>{0, 1}(m_engine); }
    [[nodiscard]] bool chance(double probability) { return unit() < probability; }

    template <typename Value>
    [[nodiscard]] Value pick(std::initializer_list<Value> values) {
        return *std::next(values.begin(), static_cast<std::ptrdiff_t>(below(values.size())));
    }

private:
    template <typename Make>
    [[nodiscard]] auto maybe(Make make) -> std::optional<decltype(make())> {
        if (chance(0.4))
            return std::nullopt;
        return make();
    }

    std::mt19937_64 m_engine;
};

} // namespace ProjectModel::Testing
