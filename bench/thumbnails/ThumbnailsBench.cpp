// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Makes thumbnails of a folder's photos and, over the same files, has vipsthumbnail do so in one process;
// both as children, in turn, with the files in the page cache, the best of the rounds counting. Then how fast
// they come from the cache, and what 20,000 photos cost that are scrolled through. Usage: bench-thumbnails
// FOLDER [bound] [rounds]

#include <Foundation/Bookmark.h>
#include <PhotoSources/ThumbnailLoader.h>
#include <Roamly/Jobs/ActionQueue.h>
#include <Roamly/Platform/ThumbnailRequests.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Seconds = std::chrono::duration<double>;
using Foundation::Uuid;
using Platform::Thumbnail;
using Platform::ThumbnailProvider;
using Platform::ThumbnailRequests;

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
    const Seconds wall = std::chrono::steady_clock::now() - start;
    if (child < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "A child failed (status %d).\n", status);
        std::exit(1);
    }
    return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
            static_cast<double>(usage.ru_maxrss) / 1024};
}

void keepBest(Cost& best, const Cost& cost) {
    best = {std::min(best.wall, cost.wall), std::min(best.cpu, cost.cpu), std::min(best.peak, cost.peak)};
}

int vipsthumbnail(const std::vector<fs::path>& files, int bound, const fs::path& output) {
    std::vector<std::string> words{"vipsthumbnail", "--size", std::to_string(bound) + ">", "-o",
                                   (output / "%s-small.jpg[Q=80]").string()};
    for (const fs::path& file : files)
        words.push_back(file.string());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp("vipsthumbnail", arguments.data());
    return 127;
}

/// All of them one after the other, as a single thread gets them.
int thumbnails(const std::vector<fs::path>& files, int bound, const fs::path& cache) {
    PhotoSources::ThumbnailLoader loader{cache};
    int number = 0;
    for (const fs::path& file : files) {
        if (!loader.thumbnail(file, std::to_string(number++), bound))
            return 1;
    }
    return 0;
}

ProjectModel::PhotoRef bookmarked(const fs::path& file) {
    return ProjectModel::FilePhotoRef{Foundation::makeBookmark(file).value_or(Foundation::Bytes{}),
                                      file.filename().string()};
}

/// One pass down the grid, a window of 40 photos that moves on by a row of 8, the asker's own time of each
/// step apart; the last window is waited for.
int scrollThrough(const std::vector<fs::path>& files, int bound, const fs::path& cache) {
    constexpr std::size_t count = 20'000;
    constexpr std::size_t columns = 8;
    constexpr std::size_t window = 40;
    std::vector<ProjectModel::PhotoRef> photos;
    for (const fs::path& file : files)
        photos.push_back(bookmarked(file));
    const auto photoAt = [&](std::size_t i) { return photos[i % photos.size()]; };
    std::vector<Uuid> ids;
    for (std::size_t i = 0; i < count; ++i)
        ids.push_back(Uuid::random());

    Jobs::ActionQueue queue;
    ThumbnailProvider::Options options;
    options.cacheDirectory = cache;
    options.decoders = std::max(1U, std::thread::hardware_concurrency());
    std::size_t delivered = 0;
    Uuid lastDelivered;
    ThumbnailRequests requests{std::make_shared<ThumbnailProvider>(options), queue.executor(),
                               [&](const Uuid& id, int, const Thumbnail&) {
                                   ++delivered;
                                   lastDelivered = id;
                               }};
    const auto start = std::chrono::steady_clock::now();
    double longestStep = 0;
    std::size_t found = 0;
    for (std::size_t first = 0; first + window <= count; first += columns) {
        const auto step = std::chrono::steady_clock::now();
        for (std::size_t i = first; i < first + window; ++i) {
            if (requests.find(photoAt(i), bound))
                ++found;
            else
                requests.request(ids[i], photoAt(i), bound);
        }
        requests.keepOnly({&ids[first], window});
        queue.runPending();
        longestStep = std::max(longestStep, Seconds{std::chrono::steady_clock::now() - step}.count());
    }
    const double passed = Seconds{std::chrono::steady_clock::now() - start}.count();
    std::size_t missing = 0;
    const auto isComplete = [&] {
        missing = 0;
        for (std::size_t i = count - window; i < count; ++i)
            missing += requests.find(photoAt(i), bound) ? 0 : 1;
        return missing == 0;
    };
    queue.runUntil(isComplete);
    const double complete = Seconds{std::chrono::steady_clock::now() - start}.count();
    std::printf(
        "%-28s %10.2f s for 20,000 photos, its longest step %.2f ms; %zu found in memory, %zu delivered; "
        "last rows complete %.0f ms later\n",
        "scrolled through", passed, 1000 * longestStep, found, delivered, 1000 * (complete - passed));
    std::fflush(stdout);
    return 0;
}

void print(const char* name, const Cost& cost, const Cost& reference, std::size_t count) {
    const double perFile = 1000 / static_cast<double>(count);
    std::printf("%-28s %10.2f %10.2f %9.1f %8.2f %8.2f\n", name, cost.wall * perFile, cost.cpu * perFile,
                cost.peak, cost.wall / reference.wall, cost.cpu / reference.cpu);
}

} // namespace

int main(int argc, char** argv) {
    const int bound = argc > 2 ? std::atoi(argv[2]) : 512;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 5;
    if (argc < 2 || bound < 1 || rounds < 1) {
        std::fprintf(stderr, "Usage: bench-thumbnails FOLDER [bound] [rounds]\n");
        return 2;
    }
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator{argv[1]}) {
        const std::string ending = entry.path().extension();
        if (entry.is_regular_file() && (ending == ".jpg" || ending == ".JPG" || ending == ".jpeg"))
            files.push_back(fs::absolute(entry.path()));
    }
    if (files.empty()) {
        std::fprintf(stderr, "There are no JPEGs in %s.\n", argv[1]);
        return 1;
    }
    std::ranges::sort(files);
    std::string pattern = (fs::temp_directory_path() / "roamly-bench-XXXXXX").string();
    const fs::path folder = ::mkdtemp(pattern.data());
    fs::create_directory(folder / "theirs");

    Cost ours, theirs, cached;
    for (int round = 0; round < rounds; ++round) {
        const fs::path cache = folder / ("ours" + std::to_string(round));
        keepBest(theirs, measured([&] { return vipsthumbnail(files, bound, folder / "theirs"); }));
        keepBest(ours, measured([&] { return thumbnails(files, bound, cache); }));
        keepBest(cached, measured([&] { return thumbnails(files, bound, cache); }));
    }
    std::printf("%zu JPEGs to %d pixels, best of %d rounds\n\n", files.size(), bound, rounds);
    std::printf("%-28s %10s %10s %9s %8s %8s\n", "", "wall ms", "CPU ms", "peak MiB", "wall /", "CPU /");
    print("vipsthumbnail to JPEG", theirs, theirs, files.size());
    print("thumbnail, not cached", ours, theirs, files.size());
    print("thumbnail from the cache", cached, theirs, files.size());
    std::printf("%-28s %10.0f a second on one thread\n\n", "",
                static_cast<double>(files.size()) / cached.wall);
    // Its own process, so that its memory is its own.
    std::fflush(stdout);
    const Cost scrolled = measured([&] { return scrollThrough(files, bound, folder / "scrolled"); });
    std::printf("%-28s %10.1f MiB at its peak\n", "", scrolled.peak);
    fs::remove_all(folder);
    return 0;
}
