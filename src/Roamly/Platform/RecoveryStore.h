// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <Foundation/Instant.h>
#include <Foundation/Uuid.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Platform {

/// The copy of an unsaved project that a crash left behind.
struct Recovery {
    Foundation::Uuid id;
    /// The project's own file; absent when it was never saved.
    std::optional<std::filesystem::path> original;
    /// When the copy was written.
    Foundation::Instant written;
    /// A project file.
    std::filesystem::path copy;
};

/// Where one window keeps the copy of its unsaved project. Held for as long as the window is open; the lock
/// in it goes with the process, however that ends. One call at a time, any thread, best not a window's: the
/// disk is waited for.
class RecoverySlot {
public:
    RecoverySlot(RecoverySlot&&) noexcept;
    RecoverySlot& operator=(RecoverySlot&&) noexcept;
    /// A copy that is still there stays, to be offered by the next start.
    ~RecoverySlot();

    [[nodiscard]] Foundation::Uuid id() const;

    /// Replaces the copy: after a crash at any instant the old one is there or the new one. Throws
    /// std::system_error.
    void write(std::string_view document, const std::optional<std::filesystem::path>& original,
               Foundation::Instant now);

    /// The project is saved or given up. Fails silently.
    void remove();

private:
    friend class RecoveryStore;
    struct Held;
    explicit RecoverySlot(std::unique_ptr<Held> held);

    std::unique_ptr<Held> m_held;
};

/// The folder with the copies of all windows of all running programs, and of those that crashed. Any thread.
class RecoveryStore {
public:
    /// Usually `recovery` in UserFolders::state(); made when a slot is.
    explicit RecoveryStore(std::filesystem::path folder);

    /// A new window's. Throws std::system_error.
    [[nodiscard]] RecoverySlot newSlot() const;

    /// What crashed programs left, the newest first, without what a running program holds.
    [[nodiscard]] std::vector<Recovery> list() const;

    /// The slot of a crashed program, for the window that shows its project again: the copy stays safe until
    /// that window saves. Nothing when it is gone or another has taken it.
    [[nodiscard]] std::optional<RecoverySlot> adopt(const Foundation::Uuid& id) const;

private:
    std::filesystem::path m_folder;
};

} // namespace Platform
