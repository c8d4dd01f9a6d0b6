// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Imports a folder of JPEGs with EXIF dates and positions and, over the same files, has the exiv2 command
// print the same six tags in one process. Both run as children, in turn, with the files in the page cache;
// the best of the rounds counts. Usage: bench-import [number of files] [rounds]

#include <PhotoSources/FolderImporter.h>
#include <PhotoSources/ProcessSetup.h>
#include <PhotoSources/SampleFiles.h>
#include <Support/TemporaryFolder.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// The tags and sizes of a phone's photo: maker's notes, a thumbnail's worth of bytes, some picture data.
SampleFiles::Bytes photo(int number) {
    using SampleFiles::textField;
    const auto count = static_cast<std::uint32_t>(number);
    SampleFiles::Exif exif;
    exif.image = {textField(0x010F, "Maker"),
                  textField(0x0110, "Model 12 Pro"),
                  SampleFiles::shortField(0x0112, 1),
                  SampleFiles::rationalField(0x011A, {{72, 1}}),
                  SampleFiles::rationalField(0x011B, {{72, 1}}),
                  SampleFiles::shortField(0x0128, 2),
                  textField(0x0131, "17.2"),
                  textField(0x0132, "2023:07:14 18:22:05")};
    exif.photo = {SampleFiles::rationalField(0x829A, {{1, 120 + count % 1000}}),
                  SampleFiles::rationalField(0x829D, {{9, 5}}), SampleFiles::shortField(0x8827, 64)};
    std::array<char, 32> date{};
    std::snprintf(date.data(), date.size(), "2023:07:%02u %02u:%02u:%02u", 1 + count / 500 % 28,
                  count / 60 % 24, count % 60, count % 59);
    exif.dateTimeOriginal(date.data());
    exif.photo.push_back(textField(0x9004, date.data()));
    exif.photo.push_back(textField(0x9010, "+02:00"));
    exif.offsetTimeOriginal("+02:00");
    exif.photo.push_back({0x927C, 7, 1'500, std::vector<std::uint64_t>(1'500, 0x5A), 1});
    exif.latitude({{41, 1}, {count % 60, 1}, {count % 6000, 100}}, "N");
    exif.longitude({{12, 1}, {count % 60, 1}, {count % 6000, 100}}, "E");

    SampleFiles::Bytes block = SampleFiles::tiff(exif);
    block.resize(block.size() + 8'000, 0x11);
    SampleFiles::Bytes bytes = SampleFiles::jpeg(block);
    const SampleFiles::Bytes comment = [] {
        SampleFiles::Bytes segment{0xFF, 0xFE, 0x75, 0x30};
        segment.resize(2 + 0x7530, 0x20);
        return segment;
    }();
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(12 + block.size()), comment.begin(),
                 comment.end());
    return bytes;
}

struct Cost {
    double wall = 0; // seconds
    double cpu = 0;  // seconds
    double peak = 0; // MiB
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

Cost importing(const fs::path& folder, std::size_t expected) {
    return measured([&] {
        PhotoSources::prepareMetadata();
        const auto photos = PhotoSources::FolderImporter::importPhotos(folder);
        const bool isComplete =
            photos.size() == expected && std::all_of(photos.begin(), photos.end(), [](const auto& item) {
                return item.captureDate && item.coordinate;
            });
        return isComplete ? 0 : 1;
    });
}

Cost printing(const std::vector<fs::path>& files) {
    std::vector<std::string> words{"exiv2", "-q", "-Pkv"};
    for (const char* tag :
         {"Exif.Photo.DateTimeOriginal", "Exif.Photo.OffsetTimeOriginal", "Exif.GPSInfo.GPSLatitude",
          "Exif.GPSInfo.GPSLatitudeRef", "Exif.GPSInfo.GPSLongitude", "Exif.GPSInfo.GPSLongitudeRef"}) {
        words.emplace_back("-K");
        words.emplace_back(tag);
    }
    for (const fs::path& file : files)
        words.push_back(file.string());
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return measured([&] {
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDOUT_FILENO);
        ::execvp("exiv2", arguments.data());
        return 127;
    });
}

void keepBest(Cost& best, const Cost& cost) {
    best = {std::min(best.wall, cost.wall), std::min(best.cpu, cost.cpu), std::min(best.peak, cost.peak)};
}

void print(const char* name, const Cost& cost, const Cost& reference, std::size_t count) {
    const double perFile = 1000 / static_cast<double>(count);
    std::printf("%-10s %9.3f %9.3f %12.4f %12.4f %9.1f %8.2f %8.2f\n", name, cost.wall, cost.cpu,
                cost.wall * perFile, cost.cpu * perFile, cost.peak, cost.wall / reference.wall,
                cost.cpu / reference.cpu);
}

} // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 10'000;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
    if (count < 1 || rounds < 1) {
        std::fprintf(stderr, "Usage: bench-import [number of files] [rounds]\n");
        return 2;
    }
    const TemporaryFolder folder;
    std::vector<fs::path> files;
    for (int i = 0; i < count; ++i)
        files.push_back(
            folder.write("day " + std::to_string(i / 400) + "/IMG_" + std::to_string(i) + ".jpg", photo(i)));

    constexpr double none = 1e9;
    Cost imported{none, none, none};
    Cost reference{none, none, none};
    for (int round = 0; round < rounds; ++round) {
        keepBest(reference, printing(files));
        keepBest(imported, importing(folder.path(), files.size()));
    }
    std::printf("%d JPEG files, best of %d rounds\n", count, rounds);
    std::printf("%-10s %9s %9s %12s %12s %9s %8s %8s\n", "", "wall s", "CPU s", "wall ms/file", "CPU ms/file",
                "peak MiB", "wall x", "CPU x");
    print("exiv2", reference, reference, files.size());
    print("import", imported, reference, files.size());
    return 0;
}
