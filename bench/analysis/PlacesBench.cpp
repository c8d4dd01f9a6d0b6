// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints how the clusterer grows from 1,000 to 100,000 photos of a year, and how many coordinates a second
// the gazetteer names.

#include <Analysis/DataFile.h>
#include <Analysis/DuplicateClusterer.h>
#include <Analysis/OfflineReverseGeocoder.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <filesystem>
#include <random>
#include <vector>

namespace {

/// The processor's time, which other programs do not disturb as much.
struct Clock {
    using duration = std::chrono::nanoseconds;
    using time_point = std::chrono::time_point<Clock>;
    static time_point now() {
        std::timespec time{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return time_point(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
    }
};

/// As many as prints have.
constexpr std::size_t featureCount = 1024;
constexpr int secondsOfAYear = 365 * 24 * 3600;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Scenes at random times of a year, each a burst of one to eight shots a few seconds apart that resemble
/// each other.
std::vector<Analysis::ClusterItem> yearOfPhotos(std::size_t count) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> time(0, secondsOfAYear);
    std::uniform_int_distribution<int> burst(1, 8);
    std::normal_distribution<float> scene(0, 1.0F / 32);
    std::normal_distribution<float> shot(0, 0.1F / 32);
    std::vector<Analysis::ClusterItem> photos;
    while (photos.size() < count) {
        std::vector<float> features(featureCount);
        for (float& value : features)
            value = scene(random);
        Foundation::Instant instant{std::chrono::seconds(1'700'000'000 + time(random))};
        for (int shots = burst(random); shots > 0 && photos.size() < count; --shots) {
            auto& photo = photos.emplace_back();
            for (std::size_t i = 0; i < 4; ++i)
                photo.id.bytes[i] = static_cast<std::uint8_t>(photos.size() >> (8 * i));
            photo.captureDate = instant;
            photo.features = features;
            for (float& value : photo.features)
                value += shot(random);
            instant += std::chrono::seconds(3);
        }
    }
    return photos;
}

void benchClusterer() {
    std::printf(
        "Processor time. Clusterer, photos spread over a year, %zu features each\n%10s %10s %12s %10s\n",
        featureCount, "photos", "seconds", "us a photo", "clustered");
    for (const std::size_t count : {1'000U, 3'000U, 10'000U, 30'000U, 100'000U}) {
        const auto photos = yearOfPhotos(count);
        const auto start = Clock::now();
        const auto clusters = Analysis::DuplicateClusterer::cluster(photos, 0.5, 600);
        const double seconds = secondsSince(start);
        std::printf("%10zu %10.4f %12.3f %10zu\n", count, seconds, seconds * 1e6 / static_cast<double>(count),
                    clusters.size());
    }
}

template <typename Coordinate>
void benchLookups(Analysis::OfflineReverseGeocoder& geocoder, const char* title, Coordinate coordinate) {
    constexpr int count = 50'000;
    std::mt19937 random(2);
    std::vector<ProjectModel::Coordinate> coordinates;
    for (int i = 0; i < count; ++i)
        coordinates.push_back(coordinate(random));
    std::size_t named = 0;
    const auto start = Clock::now();
    for (const auto& one : coordinates)
        named += geocoder.placemark(one).city ? 1 : 0;
    const double seconds = secondsSince(start);
    std::printf("%-34s %10.0f a second, %6.2f us each, %5.1f %% with a city\n", title, count / seconds,
                seconds * 1e6 / count, 100.0 * static_cast<double>(named) / count);
}

void benchGazetteer(const std::filesystem::path& gazetteer, const std::filesystem::path& landBorders) {
    const auto start = Clock::now();
    Analysis::OfflineReverseGeocoder geocoder(gazetteer, landBorders);
    std::printf("\ngazetteer opened and checked in %.1f ms\n", secondsSince(start) * 1e3);
    benchLookups(geocoder, "around Paris, within a degree", [](std::mt19937& random) {
        std::uniform_real_distribution<double> offset(-1, 1);
        return ProjectModel::Coordinate{48.86 + offset(random), 2.35 + offset(random)};
    });
    benchLookups(geocoder, "central Europe", [](std::mt19937& random) {
        return ProjectModel::Coordinate{std::uniform_real_distribution<double>(44, 54)(random),
                                        std::uniform_real_distribution<double>(0, 20)(random)};
    });
    benchLookups(geocoder, "anywhere on the globe", [](std::mt19937& random) {
        return ProjectModel::Coordinate{std::uniform_real_distribution<double>(-90, 90)(random),
                                        std::uniform_real_distribution<double>(-180, 180)(random)};
    });
}

} // namespace

int main(int argc, char** argv) {
    try {
        benchClusterer();
        benchGazetteer(argc > 1 ? std::filesystem::path(argv[1]) : Analysis::dataFile("gazetteer.bin"),
                       argc > 2 ? std::filesystem::path(argv[2]) : Analysis::dataFile("land-borders.bin"));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
