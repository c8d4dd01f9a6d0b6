// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <Foundation/AtomicFile.h>
#include <Roamly/Platform/RecoveryStore.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

namespace Platform {

namespace {

namespace fs = std::filesystem;
using Foundation::Uuid;

fs::path copyFile(const fs::path& folder, const Uuid& id) {
    return folder / (id.text() + ".roamly");
}
/// The time of writing in a line of its own, and the original's path to the end: paths are bytes.
fs::path detailsFile(const fs::path& folder, const Uuid& id) {
    return folder / (id.text() + ".details");
}
fs::path lockFile(const fs::path& folder, const Uuid& id) {
    return folder / (id.text() + ".lock");
}

/// Of the whole file, bound to the open file and not to the process, so that two windows of one process
/// exclude each other as well.
struct flock wholeFile() {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool lock(int descriptor) {
    struct flock request = wholeFile();
    return ::fcntl(descriptor, F_OFD_SETLK, &request) == 0;
}

/// Asks without taking it, so that looking never gets in the way of who adopts.
bool isLocked(const fs::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct flock request = wholeFile();
    const bool isHeld = ::fcntl(descriptor, F_OFD_GETLK, &request) == 0 && request.l_type != F_UNLCK;
    ::close(descriptor);
    return isHeld;
}

/// Whether the name still leads to the file that is open: leftovers are tidied away by others.
bool isInPlace(int descriptor, const fs::path& file) {
    struct stat open {};
    struct stat named {};
    return ::fstat(descriptor, &open) == 0 && ::stat(file.c_str(), &named) == 0 &&
           open.st_ino == named.st_ino && open.st_dev == named.st_dev;
}

void removeQuietly(const fs::path& file) {
    std::error_code ignored;
    fs::remove(file, ignored);
}

/// What a slot leaves that never held a copy. Its lock goes only under the lock itself, or a slot that is
/// just being made would lose it.
void removeLeftover(const fs::path& file) {
    if (file.extension() == ".details")
        removeQuietly(file);
    if (file.extension() != ".lock")
        return;
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0)
        return;
    if (lock(descriptor) && isInPlace(descriptor, file))
        removeQuietly(file);
    ::close(descriptor);
}

std::optional<Recovery> recoveryIn(const fs::path& folder, const Uuid& id) {
    try {
        const std::string details = Foundation::readFile(detailsFile(folder, id));
        const std::size_t end = details.find('\n');
        const auto written = Foundation::parseIso8601(std::string_view{details}.substr(0, end));
        if (end == std::string::npos || !written)
            return std::nullopt;
        Recovery recovery{id, std::nullopt, *written, copyFile(folder, id)};
        if (end + 1 < details.size())
            recovery.original = details.substr(end + 1);
        return recovery;
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

} // namespace

struct RecoverySlot::Held {
    fs::path folder;
    Uuid id;
    int lock = -1;

    Held(fs::path inFolder, const Uuid& identifier, int lockDescriptor)
        : folder(std::move(inFolder))
        , id(identifier)
        , lock(lockDescriptor) {}
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() {
        std::error_code ignored;
        if (!fs::exists(copyFile(folder, id), ignored))
            removeQuietly(lockFile(folder, id));
        ::close(lock);
    }
};

RecoverySlot::RecoverySlot(std::unique_ptr<Held> held)
    : m_held(std::move(held)) {}
RecoverySlot::RecoverySlot(RecoverySlot&&) noexcept = default;
RecoverySlot& RecoverySlot::operator=(RecoverySlot&&) noexcept = default;
RecoverySlot::~RecoverySlot() = default;

Foundation::Uuid RecoverySlot::id() const {
    return m_held->id;
}

void RecoverySlot::write(std::string_view document, const std::optional<fs::path>& original,
                         Foundation::Instant now) {
    // The details first: a copy without them would not be offered.
    Foundation::writeFileAtomically(detailsFile(m_held->folder, m_held->id),
                                    Foundation::iso8601(now) + "\n" + (original ? original->native() : ""));
    Foundation::writeFileAtomically(copyFile(m_held->folder, m_held->id), document);
}

void RecoverySlot::remove() {
    removeQuietly(copyFile(m_held->folder, m_held->id));
    removeQuietly(detailsFile(m_held->folder, m_held->id));
}

RecoveryStore::RecoveryStore(fs::path folder)
    : m_folder(std::move(folder)) {}

RecoverySlot RecoveryStore::newSlot() const {
    fs::create_directories(m_folder);
    // Projects say where somebody was and when.
    fs::permissions(m_folder, fs::perms::owner_all);
    while (true) {
        const Uuid id = Uuid::random();
        const fs::path file = lockFile(m_folder, id);
        const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor < 0)
            throw std::system_error(errno, std::generic_category(), file.string());
        auto held = std::make_unique<RecoverySlot::Held>(m_folder, id, descriptor);
        if (lock(descriptor)) {
            if (isInPlace(descriptor, file))
                return RecoverySlot{std::move(held)};
        } else if (errno != EAGAIN && errno != EACCES) {
            throw std::system_error(errno, std::generic_category(), file.string());
        }
        // Somebody tidied up before it was locked.
    }
}

std::vector<Recovery> RecoveryStore::list() const {
    std::vector<Recovery> found;
    std::vector<fs::path> leftovers;
    std::error_code error;
    fs::directory_iterator entry{m_folder, error};
    for (; !error && entry != fs::directory_iterator{}; entry.increment(error)) {
        const fs::path& file = entry->path();
        const std::optional<Uuid> id = Uuid::parse(file.stem().string());
        if (!id || isLocked(lockFile(m_folder, *id)))
            continue;
        std::error_code ignored;
        if (file.extension() == ".roamly") {
            if (std::optional<Recovery> recovery = recoveryIn(m_folder, *id))
                found.push_back(std::move(*recovery));
        } else if (!fs::exists(copyFile(m_folder, *id), ignored)) {
            leftovers.push_back(file);
        }
    }
    std::ranges::for_each(leftovers, removeLeftover);
    std::ranges::sort(found, [](const Recovery& a, const Recovery& b) {
        return std::pair{b.written, a.id} < std::pair{a.written, b.id};
    });
    return found;
}

std::optional<RecoverySlot> RecoveryStore::adopt(const Uuid& id) const {
    const fs::path file = lockFile(m_folder, id);
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return std::nullopt;
    if (!lock(descriptor) || !isInPlace(descriptor, file)) {
        ::close(descriptor);
        return std::nullopt;
    }
    auto held = std::make_unique<RecoverySlot::Held>(m_folder, id, descriptor);
    std::error_code ignored;
    if (!fs::exists(copyFile(m_folder, id), ignored))
        return std::nullopt;
    return RecoverySlot{std::move(held)};
}

} // namespace Platform
