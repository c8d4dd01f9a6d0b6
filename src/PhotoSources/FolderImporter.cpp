// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/Bookmark.h>
#include <Foundation/Cancellation.h>
#include <Foundation/DisplayText.h>
#include <PhotoSources/ContentType.h>
#include <PhotoSources/FileSource.h>
#include <PhotoSources/FolderImporter.h>
#include <PhotoSources/FolderWalk.h>
#include <PhotoSources/ImageFileMetadata.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

namespace PhotoSources::FolderImporter {

namespace {

namespace fs = std::filesystem;

/// What is read of one file, before it gets an identifier.
struct FoundPhoto {
    ProjectModel::FilePhotoRef source;
    ImageFileMetadata metadata;
};

std::optional<FoundPhoto> readPhoto(const fs::path& path) {
    const std::optional<FileSource> file = FileSource::open(path);
    if (!file || !isImage(*file))
        return std::nullopt;
    std::optional<Foundation::Bytes> bookmark = Foundation::makeBookmark(path);
    if (!bookmark)
        return std::nullopt;
    return FoundPhoto{{std::move(*bookmark), Foundation::displayText(path.filename())},
                      ImageFileMetadataReader::read(*file)};
}

ProjectModel::PhotoItem photoItem(FoundPhoto found, const Foundation::Uuid& id) {
    return {
        .id = id,
        .source = std::move(found.source),
        .captureDate = found.metadata.captureDate,
        .coordinate = found.metadata.coordinate,
        .location = std::nullopt,
        .clusterID = std::nullopt,
        .qualityScore = std::nullopt,
        .caption = std::nullopt,
        .captionProvenance = std::nullopt,
        .isSelected = true,
        .selectionProvenance = ProjectModel::Provenance::proposed,
        .isMissing = false,
        .sourceID = std::nullopt,
    };
}

/// Reads files on all cores. Each worker takes the next file that nobody has taken and writes to that file's
/// own place, so the result does not depend on who is faster.
class ParallelReading {
public:
    ParallelReading(const std::vector<fs::path>& files, std::stop_token stop)
        : m_files(files)
        , m_stop(std::move(stop))
        , m_photos(files.size()) {}

    /// Returns when all is read; `afterEach` is called from this thread.
    std::vector<std::optional<FoundPhoto>> run(const std::function<void()>& afterEach) {
        {
            std::vector<std::jthread> threads;
            const std::size_t workers = std::min<std::size_t>(
                std::max(1U, std::thread::hardware_concurrency()), m_files.size() / 8 + 1);
            for (std::size_t i = 1; i < workers; ++i)
                threads.emplace_back([this](const std::stop_token& abandoned) {
                    while (!abandoned.stop_requested() && readNext())
                        ;
                });
            // An exception from the callback leaves through the threads' destructors, which stop them.
            while (readNext())
                afterEach();
        }
        Foundation::throwIfStopped(m_stop);
        afterEach();
        return std::move(m_photos);
    }

    /// So far. Files that turned out to be no images count in neither number.
    [[nodiscard]] ImportProgress progress() const {
        // In this order: a file is always counted as one of the total before it is completed.
        const std::size_t completed = m_completed.load();
        return {completed, m_files.size() - m_passedOver.load()};
    }

private:
    bool readNext() {
        if (m_stop.stop_requested())
            return false;
        const std::size_t index = m_next.fetch_add(1);
        if (index >= m_files.size())
            return false;
        m_photos[index] = readPhoto(m_files[index]);
        ++(m_photos[index] ? m_completed : m_passedOver);
        return true;
    }

    const std::vector<fs::path>& m_files;
    std::stop_token m_stop;
    std::vector<std::optional<FoundPhoto>> m_photos;
    std::atomic<std::size_t> m_next = 0;
    std::atomic<std::size_t> m_completed = 0;
    std::atomic<std::size_t> m_passedOver = 0;
};

/// Reports only what is new, and not so often that the reports cost more than the reading.
class ProgressReport {
public:
    explicit ProgressReport(const std::function<void(const ImportProgress&)>& receiver)
        : m_receiver(receiver) {}

    void offer(const ImportProgress& progress) {
        using namespace std::chrono_literals;
        const auto now = std::chrono::steady_clock::now();
        const bool isLast = progress.completed == progress.total;
        if (!m_receiver || progress == m_last || (!isLast && m_last && now - m_lastTime < 20ms))
            return;
        m_last = progress;
        m_lastTime = now;
        m_receiver(progress);
    }

private:
    const std::function<void(const ImportProgress&)>& m_receiver;
    std::optional<ImportProgress> m_last;
    std::chrono::steady_clock::time_point m_lastTime;
};

} // namespace

std::vector<ProjectModel::PhotoItem> importPhotos(const fs::path& folder, const Options& options) {
    Foundation::throwIfStopped(options.stop);
    const std::vector<fs::path> files = filesBelow(folder, options.stop);

    ProgressReport report{options.progress};
    ParallelReading reading{files, options.stop};
    report.offer(reading.progress());
    std::vector<std::optional<FoundPhoto>> found = reading.run([&] { report.offer(reading.progress()); });

    std::vector<ProjectModel::PhotoItem> photos;
    photos.reserve(found.size());
    for (std::optional<FoundPhoto>& photo : found) {
        if (photo)
            photos.push_back(photoItem(std::move(*photo), options.newID()));
    }
    return photos;
}

} // namespace PhotoSources::FolderImporter
