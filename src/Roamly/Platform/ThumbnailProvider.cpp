// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Roamly/Platform/PictureDecoding.h>
#include <Roamly/Platform/ThumbnailProvider.h>
#include <Roamly/Platform/UserFolders.h>

#include <sys/stat.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <algorithm>
#include <array>
#include <exception>
#include <string_view>
#include <utility>

namespace Platform {

namespace {

Thumbnail sharedImage(std::optional<Foundation::Image> image) {
    if (!image || image->isEmpty())
        return nullptr;
    return std::make_shared<const Foundation::Image>(std::move(*image));
}

/// Changes whenever the file does: another path, size, time of modification or inode. Nothing when there is
/// no such file.
std::optional<std::string> contentKey(const std::filesystem::path& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0)
        return std::nullopt;
    std::string described = file.native();
    const std::array<std::int64_t, 4> numbers{status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
                                              static_cast<std::int64_t>(status.st_ino)};
    for (const std::int64_t number : numbers)
        described.append(1, '\0').append(std::to_string(number));
    constexpr int digits = 32; // 128 bits
    const QByteArray bytes = QByteArray::fromStdString(described);
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().left(digits).toStdString();
}

} // namespace

ThumbnailProvider::ThumbnailProvider(Options options)
    : m_options(std::move(options))
    , m_loader(m_options.cacheDirectory, pictureDecoding())
    , m_memory(m_options.mostMemoryBytes) {
    for (unsigned i = 0; i < m_options.decoders + 1; ++i)
        m_workers.emplace_back([this, decodes = i > 0](const std::stop_token& stop) { work(stop, decodes); });
}

ThumbnailProvider::~ThumbnailProvider() {
    for (std::jthread& worker : m_workers)
        worker.request_stop();
}

std::shared_ptr<ThumbnailProvider>
ThumbnailProvider::shared(AppImageProvider::LibraryImageLoader libraryThumbnail) {
    Options options;
    options.cacheDirectory = UserFolders::caches() / "thumbnails";
    options.decoders = std::max(1U, std::thread::hardware_concurrency());
    options.libraryThumbnail = std::move(libraryThumbnail);
    return std::make_shared<ThumbnailProvider>(std::move(options));
}

std::optional<Thumbnail> ThumbnailProvider::find(const ThumbnailKey& key) {
    return m_memory.find(key);
}

ThumbnailProvider::Ticket ThumbnailProvider::request(const ThumbnailKey& key, Done done) {
    const std::scoped_lock lock{m_mutex};
    const Ticket ticket = ++m_lastTicket;
    std::shared_ptr<Task>& task = m_tasks[key];
    const bool isNew = !task;
    if (isNew)
        task = std::make_shared<Task>(Task{key, {}, {}, {}});
    task->requests.emplace(ticket, std::move(done));
    m_tickets.emplace(ticket, task);
    if (isNew || task->place) {
        dequeue(*task);
        enqueue(task);
    }
    return ticket;
}

void ThumbnailProvider::drop(std::span<const Ticket> tickets) {
    const std::scoped_lock lock{m_mutex};
    for (const Ticket ticket : tickets) {
        const auto found = m_tickets.find(ticket);
        if (found == m_tickets.end())
            continue;
        const std::shared_ptr<Task> task = found->second.lock();
        m_tickets.erase(found);
        task->requests.erase(ticket);
        // One that a worker has is seen to when the worker is done with it.
        if (task->requests.empty() && task->place) {
            dequeue(*task);
            m_tasks.erase(task->key);
        }
    }
}

void ThumbnailProvider::forgetMissing() {
    m_memory.forgetMissing();
}

ThumbnailProvider::Queue& ThumbnailProvider::queueOf(const Task& task) {
    return task.content ? m_toDecode : m_toLookUp;
}

void ThumbnailProvider::enqueue(const std::shared_ptr<Task>& task) {
    task->place = task->requests.rbegin()->first;
    queueOf(*task).emplace(*task->place, task);
    // Not everyone may take it up: the one that does not decode must not swallow the call.
    m_hasMore.notify_all();
}

void ThumbnailProvider::dequeue(Task& task) {
    if (!task.place)
        return;
    queueOf(task).erase(*task.place);
    task.place.reset();
}

std::shared_ptr<ThumbnailProvider::Task> ThumbnailProvider::next(const std::stop_token& stop, bool decodes) {
    std::unique_lock lock{m_mutex};
    const bool hasOne =
        m_hasMore.wait(lock, stop, [&] { return !m_toLookUp.empty() || (decodes && !m_toDecode.empty()); });
    if (!hasOne || stop.stop_requested())
        return nullptr;
    std::shared_ptr<Task> task = std::prev((m_toLookUp.empty() ? m_toDecode : m_toLookUp).end())->second;
    dequeue(*task);
    return task;
}

void ThumbnailProvider::work(const std::stop_token& stop, bool decodes) {
    while (const std::shared_ptr<Task> task = next(stop, decodes)) {
        std::optional<Answer> answer;
        try {
            answer = task->content ? decoded(*task) : lookedUp(*task);
        } catch (const std::exception&) {
            answer = Answer{}; // out of memory, most likely: one photo without a picture
        }
        if (answer) {
            finish(task, *answer);
            continue;
        }
        const std::scoped_lock lock{m_mutex};
        if (task->requests.empty())
            m_tasks.erase(task->key);
        else
            enqueue(task);
    }
}

std::optional<ThumbnailProvider::Answer> ThumbnailProvider::lookedUp(Task& task) {
    Content content;
    if (const auto* file = std::get_if<ProjectModel::FilePhotoRef>(&task.key.photo)) {
        const std::optional<std::filesystem::path> path = m_resolver.resolvedFile(file->bookmark);
        const std::optional<std::string> key = path ? contentKey(*path) : std::nullopt;
        if (!key)
            return Answer{};
        content = {*path, *key};
    } else if (!m_options.libraryThumbnail) {
        return Answer{};
    }
    if (const std::optional<Thumbnail> inMemory = m_memory.find(task.key, content.key); inMemory && *inMemory)
        return Answer{*inMemory, content.key};
    if (!content.file.empty()) {
        if (auto cached = m_loader.cachedThumbnail(content.key, task.key.maxPixel))
            return Answer{sharedImage(std::move(cached)), content.key};
    }
    const std::scoped_lock lock{m_mutex};
    task.content = std::move(content);
    return std::nullopt;
}

ThumbnailProvider::Answer ThumbnailProvider::decoded(const Task& task) {
    if (const auto* photo = std::get_if<ProjectModel::LibraryPhotoRef>(&task.key.photo))
        return {sharedImage(m_options.libraryThumbnail(photo->localIdentifier, task.key.maxPixel)), {}};
    return {sharedImage(m_loader.thumbnail(task.content->file, task.content->key, task.key.maxPixel)),
            task.content->key};
}

void ThumbnailProvider::finish(const std::shared_ptr<Task>& task, const Answer& answer) {
    m_memory.insert(task->key, answer.content, answer.thumbnail);
    std::map<Ticket, Done> requests;
    {
        const std::scoped_lock lock{m_mutex};
        m_tasks.erase(task->key);
        requests.swap(task->requests);
        for (const auto& [ticket, done] : requests)
            m_tickets.erase(ticket);
    }
    for (const auto& [ticket, done] : requests)
        done(answer.thumbnail);
}

} // namespace Platform
