// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures the export against the encoder alone on the very same frames, and against other programs that make
// the like. Every contender is a process of its own, so that memory and processor time are its own.

#include "Child.h"
#include "Contenders.h"
#include "Peers.h"

#include <Roamly/Platform/ProcessSetup.h>

#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace Bench;
namespace fs = std::filesystem;

constexpr const char* help = R"(bench-export [OPTION…]
Prints what an export costs beside the encoder alone, FFmpeg's filter graph and melt.
  --photos N            photos of the trip (3)
  --photo-duration S    seconds a photo is on screen (3)
  --resolution R        p1080, p2160 or all (p1080)
  --codec C             h264, hevc or all (all)
  --repeat N            runs of each contender, the fastest counts (1)
  --no-peers            leaves the other programs out
  --flatness            cost per frame of trips of 20 to 2,000 photos, 0.1 s each
  --memory              peak memory of a 4K export of 200 photos (or --photos), 0.1 s each,
                        beside the encoder alone
  --sources DIR         a folder of photos to show instead of painted ones
  --folder DIR          where photos and movies go (/tmp/roamly-bench)
)";

struct Options {
    TripOptions trip{"/tmp/roamly-bench", {}};
    std::vector<Export::ExportResolution> resolutions{Export::ExportResolution::p1080};
    std::vector<Export::ExportCodec> codecs{Export::allExportCodecs.begin(), Export::allExportCodecs.end()};
    /// As asked for; each mode has its own default.
    std::optional<int> photos;
    int repeat = 1;
    bool hasPeers = true;
    bool isFlatness = false;
    bool isMemory = false;
    /// Set in a contender's process.
    std::string run;
    long cycled = 0;
};

template <typename Value, std::size_t count>
std::vector<Value> choice(const std::string& text, const std::array<Value, count>& all) {
    std::vector<Value> chosen;
    for (const Value value : all) {
        if (text == "all" || text == rawValue(value))
            chosen.push_back(value);
    }
    if (chosen.empty())
        throw std::invalid_argument("unknown: " + text);
    return chosen;
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size())
                throw std::invalid_argument(name + " needs a value");
            return arguments[++i];
        };
        if (name == "--photos")
            options.photos = options.trip.photos = std::stoi(value());
        else if (name == "--photo-duration")
            options.trip.photoDuration = std::stod(value());
        else if (name == "--resolution")
            options.resolutions = choice(value(), Export::allExportResolutions);
        else if (name == "--codec")
            options.codecs = choice(value(), Export::allExportCodecs);
        else if (name == "--repeat")
            options.repeat = std::stoi(value());
        else if (name == "--no-peers")
            options.hasPeers = false;
        else if (name == "--flatness")
            options.isFlatness = true;
        else if (name == "--memory")
            options.isMemory = true;
        else if (name == "--sources")
            options.trip.sources = value();
        else if (name == "--folder")
            options.trip.folder = value();
        else if (name == "--run")
            options.run = value();
        else if (name == "--cycled")
            options.cycled = std::stol(value());
        else
            throw std::invalid_argument("unknown: " + name);
    }
    return options;
}

// In a contender's process.

fs::path movieIn(const TripOptions& trip) {
    return trip.folder / "bench.mov";
}

void runContender(const Options& options) {
    const Export::ExportPreset preset{options.resolutions.front(), options.codecs.front()};
    const fs::path movie = movieIn(options.trip);
    Platform::prepareProcess();
    Measurement measured;
    if (options.run == "export")
        measured = runExport(options.trip, preset, movie);
    else if (options.run == "drawing")
        measured = runDrawing(options.trip, preset);
    else
        measured = runEncoder(options.trip, preset, movie, options.cycled);
    std::printf("%lld %f %f %lld\n", static_cast<long long>(measured.frames), measured.wallSeconds,
                measured.cpuSeconds, static_cast<long long>(measured.peakBytes));
}

// In the process that prints.

Measurement fasterOf(const Measurement& one, const Measurement& other) {
    if (one.frames == 0)
        return other;
    return {other.frames, std::min(one.wallSeconds, other.wallSeconds),
            std::min(one.cpuSeconds, other.cpuSeconds), std::max(one.peakBytes, other.peakBytes)};
}

Measurement measureOwn(const std::string& run, const TripOptions& trip, const Export::ExportPreset& preset,
                       long cycled = 0) {
    const Usage usage = runChild({"/proc/self/exe", "--run", run, "--folder", trip.folder.string(),
                                  "--sources", trip.sources.string(), "--photos", std::to_string(trip.photos),
                                  "--photo-duration", std::to_string(trip.photoDuration), "--resolution",
                                  std::string(rawValue(preset.resolution)), "--codec",
                                  std::string(rawValue(preset.codec)), "--cycled", std::to_string(cycled)},
                                 true);
    if (!usage.hasSucceeded)
        throw std::runtime_error(run + " failed");
    Measurement measured;
    std::istringstream(usage.output) >> measured.frames >> measured.wallSeconds >> measured.cpuSeconds >>
        measured.peakBytes;
    return measured;
}

/// Nothing when the program is missing or failed, or made another number of frames.
std::optional<Measurement> measurePeer(const std::vector<std::string>& command, const fs::path& movie,
                                       std::int64_t frames) {
    const Usage usage = runChild(command);
    if (!usage.hasSucceeded)
        return std::nullopt;
    const Usage probed = runChild({"ffprobe", "-v", "error", "-select_streams", "v", "-show_entries",
                                   "stream=nb_frames", "-of", "csv=p=0", movie.string()});
    const std::int64_t made = std::atoll(probed.output.c_str());
    if (std::llabs(made - frames) > 2)
        return std::nullopt;
    return Measurement{made, usage.wallSeconds, usage.cpuSeconds, usage.peakBytes};
}

constexpr double mebibyte = 1 << 20;

void printHead(const std::string& title) {
    std::printf("\n%s\n%-22s %7s %9s %9s %8s %10s %7s %7s\n", title.c_str(), "", "frames", "wall s", "CPU s",
                "fps", "peak MiB", "wall ×", "CPU ×");
}

void printRow(const std::string& name, const Measurement& row, const Measurement& reference) {
    std::printf("%-22s %7lld %9.2f %9.2f %8.1f %10.0f %7.3f %7.3f\n", name.c_str(),
                static_cast<long long>(row.frames), row.wallSeconds, row.cpuSeconds,
                static_cast<double>(row.frames) / row.wallSeconds,
                static_cast<double>(row.peakBytes) / mebibyte, row.wallSeconds / reference.wallSeconds,
                row.cpuSeconds / reference.cpuSeconds);
    std::fflush(stdout);
}

void compare(const Options& options, const Export::ExportPreset& preset) {
    const TripOptions& trip = options.trip;
    const fs::path movie = movieIn(trip);
    Measurement encoder;
    Measurement whole;
    Measurement drawing;
    std::map<std::string, Measurement> peers;
    for (int i = 0; i < options.repeat; ++i) {
        encoder = fasterOf(encoder, measureOwn("encoder", trip, preset));
        whole = fasterOf(whole, measureOwn("export", trip, preset));
        drawing = fasterOf(drawing, measureOwn("drawing", trip, preset));
        if (!options.hasPeers)
            continue;
        if (const auto made = measurePeer(ffmpegCommand(trip, preset, movie), movie, encoder.frames))
            peers["FFmpeg filter graph"] = fasterOf(peers["FFmpeg filter graph"], *made);
        if (const auto made = measurePeer(meltCommand(trip, preset, movie), movie, encoder.frames))
            peers["melt"] = fasterOf(peers["melt"], *made);
    }
    printHead(std::string(displayName(preset.resolution)) + " " + std::string(displayName(preset.codec)));
    printRow("encoder alone", encoder, encoder);
    printRow("whole export", whole, encoder);
    printRow("drawing, one thread", drawing, encoder);
    for (const std::string name : {"FFmpeg filter graph", "melt"}) {
        if (peers.contains(name))
            printRow(name, peers[name], encoder);
        else if (options.hasPeers)
            std::printf("%-22s is missing or failed\n", name.c_str());
    }
}

void measureFlatness(const Options& options) {
    const Export::ExportPreset preset{options.resolutions.front(), options.codecs.front()};
    std::printf("\nCost per frame, %s %s, 0.1 s a photo\n%8s %8s %14s %14s %10s\n",
                std::string(displayName(preset.resolution)).c_str(),
                std::string(displayName(preset.codec)).c_str(), "photos", "frames", "wall ms/frame",
                "CPU ms/frame", "peak MiB");
    for (const int photos : {20, 200, 2000}) {
        TripOptions trip = options.trip;
        trip.photos = photos;
        trip.photoDuration = 0.1;
        const Measurement made = measureOwn("export", trip, preset);
        const auto frames = static_cast<double>(made.frames);
        std::printf("%8d %8.0f %14.2f %14.2f %10.0f\n", photos, frames, made.wallSeconds * 1000 / frames,
                    made.cpuSeconds * 1000 / frames, static_cast<double>(made.peakBytes) / mebibyte);
        std::fflush(stdout);
    }
}

void measureMemory(const Options& options) {
    TripOptions trip = options.trip;
    trip.photos = options.photos.value_or(200);
    trip.photoDuration = 0.1;
    for (const Export::ExportCodec codec : options.codecs) {
        const Export::ExportPreset preset{Export::ExportResolution::p2160, codec};
        // A few frames shown again and again, since all would not fit into memory.
        const Measurement encoder = measureOwn("encoder", trip, preset, 30);
        const Measurement whole = measureOwn("export", trip, preset);
        std::printf("\nPeak memory, 4K %s, %d photos\n%-26s %6.0f MiB\n%-26s %6.0f MiB\n",
                    std::string(displayName(codec)).c_str(), trip.photos, "encoder alone",
                    static_cast<double>(encoder.peakBytes) / mebibyte, "whole export",
                    static_cast<double>(whole.peakBytes) / mebibyte);
        std::printf("%-26s %6.0f MiB\n", "beyond the encoder alone",
                    static_cast<double>(whole.peakBytes - encoder.peakBytes) / mebibyte);
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (std::find(arguments.begin(), arguments.end(), "--help") != arguments.end()) {
            std::fputs(help, stdout);
            return 0;
        }
        const Options options = parse(arguments);
        if (!options.run.empty()) {
            setenv("QT_QPA_PLATFORM", "offscreen", 0);
            const QGuiApplication application(argc, argv);
            runContender(options);
            return 0;
        }
        fs::create_directories(options.trip.folder);
        // Qt asks for a folder of the user's own in every process.
        const fs::path runtime = options.trip.folder / "runtime";
        fs::create_directories(runtime);
        fs::permissions(runtime, fs::perms::owner_all);
        setenv("XDG_RUNTIME_DIR", runtime.c_str(), 0);
        samplePhotos(options.trip);
        if (options.isFlatness)
            measureFlatness(options);
        if (options.isMemory)
            measureMemory(options);
        const bool isComparison = !options.isFlatness && !options.isMemory;
        for (std::size_t i = 0; isComparison && i < options.resolutions.size(); ++i) {
            const Export::ExportResolution resolution = options.resolutions[i];
            for (const Export::ExportCodec codec : options.codecs)
                compare(options, {resolution, codec});
        }
        fs::remove(movieIn(options.trip));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
