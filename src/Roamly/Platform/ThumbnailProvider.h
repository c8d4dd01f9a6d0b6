// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <PhotoSources/ThumbnailLoader.h>
#include <Roamly/Platform/AppImageProvider.h>
#include <Roamly/Platform/RenewedResolver.h>
#include <Roamly/Platform/ThumbnailKey.h>
#include <Roamly/Platform/ThumbnailMemory.h>

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Platform {

/// The thumbnails of all windows: from memory, from the cache on disk, or decoded on all cores. The newest
/// request comes first, and what is in the cache before what must be decoded. Thread-safe, and nothing here
/// waits for a disk but the destructor, which waits for the decodes under way.
///
/// A window asks through a ThumbnailRequests of its own.
class ThumbnailProvider {
public:
    struct Options {
        std::filesystem::path cacheDirectory;
        /// Threads that decode; one more only looks into the cache, so that its pictures wait for no decode.
        unsigned decoders = 1;
        std::size_t mostMemoryBytes = std::size_t{96} << 20;
        /// A photo-library photo filling a square of so many pixels; without one they have no thumbnails.
        /// Workers' threads.
        AppImageProvider::LibraryImageLoader libraryThumbnail;
    };

    /// Stands for one request. Later ones are greater.
    using Ticket = std::uint64_t;
    using Done = std::function<void(const Thumbnail&)>;

    explicit ThumbnailProvider(Options options);
    ~ThumbnailProvider();
    ThumbnailProvider(const ThumbnailProvider&) = delete;
    ThumbnailProvider& operator=(const ThumbnailProvider&) = delete;

    /// The process' one: `thumbnails` in the user's caches, all cores. Made once, by whoever opens windows.
    [[nodiscard]] static std::shared_ptr<ThumbnailProvider>
    shared(AppImageProvider::LibraryImageLoader libraryThumbnail = {});

    /// What is in memory; a null thumbnail when it is known that there is none.
    [[nodiscard]] std::optional<Thumbnail> find(const ThumbnailKey& key);

    /// `done` is called once on a worker's thread, unless the request is dropped before. Of several requests
    /// for one thumbnail one decode serves all. A file that changed since is decoded anew even if memory
    /// holds it.
    Ticket request(const ThumbnailKey& key, Done done);

    /// The requests are not answered any more, but for those being answered just now.
    void drop(std::span<const Ticket> tickets);

    /// Looks again for photos that had no thumbnail when they are asked for the next time.
    void forgetMissing();

private:
    /// Which file, and what stands for its present content.
    struct Content {
        std::filesystem::path file;
        std::string key;
    };
    struct Task {
        ThumbnailKey key;
        std::map<Ticket, Done> requests;
        /// Known once the cache has been looked into.
        std::optional<Content> content;
        /// The place in its queue; none while a worker has it.
        std::optional<Ticket> place;
    };
    using Queue = std::map<Ticket, std::shared_ptr<Task>>;
    struct Answer {
        Thumbnail thumbnail;
        std::string content;
    };

    void work(const std::stop_token& stop, bool decodes);
    [[nodiscard]] std::shared_ptr<Task> next(const std::stop_token& stop, bool decodes);
    void enqueue(const std::shared_ptr<Task>& task);
    void dequeue(Task& task);
    [[nodiscard]] Queue& queueOf(const Task& task);

    /// Nothing when it must be decoded; sets the task's content then.
    [[nodiscard]] std::optional<Answer> lookedUp(Task& task);
    [[nodiscard]] Answer decoded(const Task& task);
    void finish(const std::shared_ptr<Task>& task, const Answer& answer);

    Options m_options;
    PhotoSources::ThumbnailLoader m_loader;
    ThumbnailMemory m_memory;
    RenewedResolver m_resolver;

    std::mutex m_mutex;
    std::condition_variable_any m_hasMore;
    Ticket m_lastTicket = 0;
    std::unordered_map<ThumbnailKey, std::shared_ptr<Task>, ThumbnailKeyHash> m_tasks;
    std::unordered_map<Ticket, std::weak_ptr<Task>> m_tickets;
    Queue m_toLookUp;
    Queue m_toDecode;
    /// Last, so that they end first.
    std::vector<std::jthread> m_workers;
};

} // namespace Platform
