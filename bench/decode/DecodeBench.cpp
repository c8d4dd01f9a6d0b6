// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes twelve-megapixel JPEGs to a bound and, over the same files, has vipsthumbnail do so in one process:
// once writing JPEGs, as it does by itself, and once writing plain samples, which takes its encoder out. All
// run as children, in turn, with the files in the page cache; the best of the rounds counts. Usage:
// bench-decode [bound] [number of files] [rounds] [files to use instead of generated ones ...]

#include <PhotoSources/ImageDecoder.h>
#include <PhotoSources/ProcessSetup.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vips/vips.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// Broad shapes under fine grain, which is about what a photo costs a decoder: some 4 MB at quality 88.
bool paint(const fs::path& file, int seed) {
    VipsImage* shapes = nullptr;
    VipsImage* large = nullptr;
    VipsImage* grain = nullptr;
    VipsImage* bands[3] = {};
    VipsImage* joined = nullptr;
    VipsImage* samples = nullptr;
    bool isWritten = true;
    for (int band = 0; band < 3 && isWritten; ++band) {
        isWritten =
            vips_perlin(&shapes, 1000, 750, "cell_size", 120 + 10 * band, "seed", seed * 3 + band, nullptr) ==
                0 &&
            vips_resize(shapes, &large, 4, nullptr) == 0 &&
            vips_gaussnoise(&grain, 4000, 3000, "mean", 0.0, "sigma", 6.0, "seed", seed, nullptr) == 0;
        VipsImage* scaled = nullptr;
        isWritten = isWritten && vips_linear1(large, &scaled, 90, 128, nullptr) == 0 &&
                    vips_add(scaled, grain, &bands[band], nullptr) == 0;
        for (VipsImage** image : {&shapes, &large, &grain, &scaled})
            g_clear_object(image);
    }
    isWritten = isWritten && vips_bandjoin(bands, &joined, 3, nullptr) == 0 &&
                vips_cast_uchar(joined, &samples, nullptr) == 0;
    if (isWritten) {
        samples->Type = VIPS_INTERPRETATION_sRGB;
        isWritten = vips_jpegsave(samples, file.c_str(), "Q", 88, nullptr) == 0;
    }
    for (VipsImage** image : {&bands[0], &bands[1], &bands[2], &joined, &samples})
        g_clear_object(image);
    return isWritten;
}

struct Cost {
    double wall = 1e9; // seconds
    double cpu = 1e9;  // seconds
    double peak = 1e9; // MiB
};

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs `work` in a child; its result is the child's exit status.
Cost measured(const std::function<int()>& work) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    if (child < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "A child failed (status %d).\n", status);
        std::exit(1);
    }
    return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
}

Cost decoding(const std::vector<fs::path>& files, int bound) {
    return measured([&] {
        PhotoSources::prepareDecoding();
        return std::ranges::all_of(files,
                                   [bound](const fs::path& file) {
                                       const auto image = PhotoSources::ImageDecoder::decode(file, bound);
                                       return image && std::max(image->width, image->height) <= bound;
                                   })
                   ? 0
                   : 1;
    });
}

Cost thumbnailing(const std::vector<fs::path>& files, int bound, const std::string& output) {
    std::vector<std::string> words{"vipsthumbnail", "--size", std::to_string(bound) + ">", "-o", output};
    for (const fs::path& file : files)
        words.push_back(file.string());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return measured([&] {
        ::execvp("vipsthumbnail", arguments.data());
        return 127;
    });
}

void keepBest(Cost& best, const Cost& cost) {
    best = {std::min(best.wall, cost.wall), std::min(best.cpu, cost.cpu), std::min(best.peak, cost.peak)};
}

void print(const char* name, const Cost& cost, const Cost& reference, std::size_t count) {
    const double perFile = 1000 / static_cast<double>(count);
    std::printf("%-28s %10.2f %10.2f %9.1f %8.2f %8.2f\n", name, cost.wall * perFile, cost.cpu * perFile,
                cost.peak, cost.wall / reference.wall, cost.cpu / reference.cpu);
}

} // namespace

int main(int argc, char** argv) {
    const int bound = argc > 1 ? std::atoi(argv[1]) : 512;
    const int count = argc > 2 ? std::atoi(argv[2]) : 12;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 5;
    if (bound < 1 || count < 1 || rounds < 1) {
        std::fprintf(stderr, "Usage: bench-decode [bound] [number of files] [rounds] [file ...]\n");
        return 2;
    }
    std::string pattern = (fs::temp_directory_path() / "roamly-bench-XXXXXX").string();
    const fs::path folder = ::mkdtemp(pattern.data());
    std::vector<fs::path> files;
    for (int i = 4; i < argc; ++i)
        files.emplace_back(argv[i]);
    if (files.empty()) {
        // In a child, so that no thread of libvips' lives here when the others are forked.
        measured([&] {
            PhotoSources::prepareDecoding();
            for (int i = 0; i < std::min(count, 4); ++i) {
                if (!paint(folder / ("photo" + std::to_string(i) + ".jpg"), i + 1))
                    return 1;
            }
            return 0;
        });
        for (int i = 0; i < count; ++i)
            files.push_back(folder / ("photo" + std::to_string(i % std::min(count, 4)) + ".jpg"));
    }

    Cost ours, theirs, plain;
    for (int round = 0; round < rounds; ++round) {
        keepBest(ours, decoding(files, bound));
        keepBest(theirs, thumbnailing(files, bound, (folder / "%s-small.jpg").string()));
        keepBest(plain, thumbnailing(files, bound, (folder / "%s-small.v").string()));
    }
    std::uintmax_t bytes = 0;
    for (const fs::path& file : files)
        bytes += fs::file_size(file);
    std::printf("%zu files of %.1f MB to %d pixels, best of %d rounds\n\n", files.size(),
                static_cast<double>(bytes) / 1e6 / static_cast<double>(files.size()), bound, rounds);
    std::printf("%-28s %10s %10s %9s %8s %8s\n", "", "wall ms", "CPU ms", "peak MiB", "wall /", "CPU /");
    print("vipsthumbnail to JPEG", theirs, theirs, files.size());
    print("vipsthumbnail, no encoder", plain, theirs, files.size());
    print("decode", ours, theirs, files.size());
    fs::remove_all(folder);
    return 0;
}
