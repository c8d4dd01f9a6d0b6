// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Analyses a folder of photos and prints photos per second: decoding alone, the vision network alone, finding
// faces alone, aesthetics alone, and a whole run with its memory; and how much longer the run takes than
// decoding. Where the folder has a manifest.json with labels, it also prints how well the distances of prints
// part photos of one scene from others.
//
//     bench-analysis FOLDER [PHOTOS] [NETWORK]
//
// PHOTOS (200) photos are analysed, those of the folder again and again. NETWORK is a vision network to use
// instead of the program's own (tools/vision-models/make-comparison-network makes one).

#include <Analysis/Aesthetics.h>
#include <Analysis/AnalysisPipeline.h>
#include <Analysis/DataFile.h>
#include <Analysis/FaceFinder.h>
#include <Analysis/OrderedWork.h>
#include <Analysis/VisionFeaturePrinter.h>
#include <Analysis/VisionQualityScorer.h>
#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/ProcessSetup.h>

#include <malloc.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Foundation::Image;

constexpr int maxPixel = 1024;

std::optional<Image> decoded(const fs::path& file) {
    return PhotoSources::ImageDecoder::decode(file, maxPixel);
}

std::size_t workers() {
    return std::max(1U, std::thread::hardware_concurrency());
}

/// What some work took: on the clock, and of all cores together, which other programs disturb less.
struct Taken {
    double seconds = 0;
    double cpuSeconds = 0;
};

Taken timed(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t cpuStart = std::clock();
    work();
    const double cpuSeconds = static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC;
    return {std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), cpuSeconds};
}

/// The same work for so many photos, on all cores.
Taken timed(std::size_t count, const std::function<void(std::size_t)>& work) {
    return timed([&] {
        Analysis::inOrder(
            count, workers(),
            [&](std::size_t i) {
                work(i);
                return true;
            },
            [] { return true; }, [](std::size_t, bool) {});
    });
}

Taken report(const char* name, std::size_t count, Taken taken) {
    const auto photos = static_cast<double>(count);
    std::printf("%-16s %8.1f photos/s %8.1f ms CPU a photo\n", name, photos / taken.seconds,
                taken.cpuSeconds * 1000 / photos);
    std::fflush(stdout);
    return taken;
}

/// A photo's reference is its path.
class DecodingProvider final : public Analysis::ImageProviding {
public:
    [[nodiscard]] std::optional<Image> image(const ProjectModel::PhotoRef& ref) override {
        return decoded(std::get<ProjectModel::LibraryPhotoRef>(ref).localIdentifier);
    }
};

/// The photos have no positions, so that nobody asks.
class NoPlaces final : public Analysis::ReverseGeocoding {
public:
    [[nodiscard]] Analysis::Placemark placemark(const ProjectModel::Coordinate&,
                                                const std::stop_token&) override {
        return {};
    }
};

/// A photo every two minutes; each shot twice, as bursts are, so that half of the shots are compared and
/// scored.
ProjectModel::Project project(const std::vector<fs::path>& files, std::size_t count) {
    ProjectModel::Project project;
    for (std::size_t i = 0; i < count; ++i) {
        ProjectModel::PhotoItem photo;
        photo.id = Foundation::Uuid::random();
        photo.source = ProjectModel::LibraryPhotoRef{files[(i % 4 == 1 ? i - 1 : i) % files.size()].string()};
        photo.captureDate =
            Foundation::Instant{std::chrono::seconds(1'700'000'000 + 120 * static_cast<long>(i))};
        project.photos.push_back(std::move(photo));
    }
    return project;
}

Taken wholeRun(const std::vector<fs::path>& files, std::size_t count, Analysis::FeaturePrinting& printer,
               Analysis::ImageQualityScoring& scorer) {
    const fs::path cacheFile =
        fs::temp_directory_path() / ("bench-analysis-" + std::to_string(count) + ".json");
    Analysis::GeocodeCache cache(cacheFile);
    NoPlaces places;
    Analysis::ContinuousClock clock;
    Analysis::LocationResolver resolver(cache, places, 0, Analysis::Clock::Duration(0), clock);
    DecodingProvider provider;
    Analysis::AnalysisPipeline pipeline(resolver, provider, printer, scorer);
    auto photos = project(files, count);
    ProjectModel::Project analysed;
    const Taken taken = timed([&] { analysed = pipeline.analyze(std::move(photos)); });
    const auto grouped = std::count_if(analysed.photos.begin(), analysed.photos.end(),
                                       [](const auto& photo) { return photo.clusterID.has_value(); });
    std::printf("%ld of %zu photos are in groups\n", static_cast<long>(grouped), count);
    return taken;
}

/// The most memory that the process held since the last `forgetPeak`, in MiB; 0 where the system does not
/// say.
double peakMiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::strtod(line.c_str() + 6, nullptr) / 1024;
    }
    return 0;
}

void forgetPeak() {
    ::malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

struct Pair {
    double distance;
    bool isSame;
};

/// All pairs of labelled photos: those of a burst or scene group, and those of different ones.
std::vector<Pair> labelledPairs(const fs::path& folder, Analysis::FeaturePrinting& printer) {
    struct Print {
        std::string burst;
        std::string scene;
        std::vector<float> features;
    };
    std::vector<Print> prints;
    const auto manifest = nlohmann::json::parse(std::ifstream(folder / "manifest.json"));
    for (const auto& item : manifest.at("items")) {
        const auto labels = item.value("labels", nlohmann::json::object());
        if (!labels.contains("burst") && !labels.contains("scene_group") && !labels.contains("content"))
            continue;
        if (const auto image = decoded(folder / item.at("file").get<std::string>()))
            prints.push_back({labels.value("burst", ""), labels.value("scene_group", ""),
                              printer.features(*image).value_or(std::vector<float>())});
    }
    std::vector<Pair> pairs;
    for (std::size_t i = 0; i < prints.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const Print& a = prints[i];
            const Print& b = prints[j];
            double squares = 0;
            for (std::size_t k = 0; k < std::min(a.features.size(), b.features.size()); ++k) {
                const double difference =
                    static_cast<double>(a.features[k]) - static_cast<double>(b.features[k]);
                squares += difference * difference;
            }
            pairs.push_back({std::sqrt(squares), (!a.burst.empty() && a.burst == b.burst) ||
                                                     (!a.scene.empty() && a.scene == b.scene)});
        }
    }
    return pairs;
}

void printCurve(const std::vector<Pair>& pairs) {
    const auto same = std::count_if(pairs.begin(), pairs.end(), [](const Pair& pair) { return pair.isSame; });
    std::printf("\n%zu pairs of labelled photos, %ld of one scene\n", pairs.size(), static_cast<long>(same));
    std::printf("threshold  precision  recall  found wrongly\n");
    for (int step = 4; step <= 16; ++step) {
        const double threshold = step * 0.05;
        long right = 0;
        long wrong = 0;
        for (const Pair& pair : pairs) {
            if (pair.distance < threshold)
                ++(pair.isSame ? right : wrong);
        }
        std::printf("%8.2f  %9.3f  %6.3f  %13ld\n", threshold,
                    right + wrong > 0 ? static_cast<double>(right) / static_cast<double>(right + wrong) : 1.0,
                    same > 0 ? static_cast<double>(right) / static_cast<double>(same) : 1.0, wrong);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench-analysis FOLDER [PHOTOS] [NETWORK]\n");
        return 2;
    }
    const fs::path folder = argv[1];
    const std::size_t count = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 200;

    PhotoSources::prepareDecoding();
    // What cannot be decoded, or in no time, would flatter or spoil the figures.
    std::vector<fs::path> files;
    std::vector<Image> images;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        auto image =
            entry.is_regular_file() && entry.file_size() > 100'000 ? decoded(entry.path()) : std::nullopt;
        if (image && std::max(image->width, image->height) == maxPixel) {
            files.push_back(entry.path());
            images.push_back(std::move(*image));
        }
        if (files.size() == count)
            break;
    }
    if (files.empty()) {
        std::fprintf(stderr, "There are no photos of %d pixels and more in %s\n", maxPixel, folder.c_str());
        return 1;
    }
    std::printf("%zu files of %d pixels and more, %zu photos, %zu cores\n\n", files.size(), maxPixel, count,
                workers());

    const Analysis::VisionNetwork vision(argc > 3 ? fs::path(argv[3])
                                                  : Analysis::dataFile(Analysis::VisionNetwork::fileName));
    const Analysis::FaceFinder faces(Analysis::dataFile(Analysis::FaceFinder::detectorFileName),
                                     Analysis::dataFile(Analysis::FaceFinder::landmarksFileName));
    const Analysis::Aesthetics aesthetics(Analysis::dataFile(Analysis::Aesthetics::fileName));
    Analysis::VisionFeaturePrinter printer(vision);
    Analysis::VisionQualityScorer scorer(aesthetics, faces);

    const Taken decoding = report(
        "decoding", count, timed(count, [&](std::size_t i) { (void)decoded(files[i % files.size()]); }));
    const auto image = [&](std::size_t i) -> const Image& { return images[i % images.size()]; };
    report("vision network", count, timed(count, [&](std::size_t i) { (void)vision.look(image(i)); }));
    report("finding faces", count, timed(count, [&](std::size_t i) { (void)faces.faces(image(i)); }));
    report("aesthetics", count, timed(count, [&](std::size_t i) { (void)aesthetics.score(image(i)); }));
    images = {};
    forgetPeak();
    const Taken whole = report("whole run", count, wholeRun(files, count, printer, scorer));
    std::printf("%-16s %8.0f MiB at most\n", "", peakMiB());
    std::printf("\nwhole run / decoding: %.2f on the clock, %.2f in CPU time\n",
                whole.seconds / decoding.seconds, whole.cpuSeconds / decoding.cpuSeconds);

    if (fs::exists(folder / "manifest.json"))
        printCurve(labelledPairs(folder, printer));
    return 0;
}
