// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

/// A session bus of its own with, if wanted, a real and unlocked keyring daemon on it, for as long as it
/// lives. This process and its children use them through their environment. Make it before anything talks to
/// a bus: the connection is made once in a process.
class PrivateKeyring {
public:
    enum class Daemon { Running, Absent };

    explicit PrivateKeyring(Daemon daemon);
    ~PrivateKeyring();
    PrivateKeyring(const PrivateKeyring&) = delete;
    PrivateKeyring& operator=(const PrivateKeyring&) = delete;

    /// Whether the programs that this needs are installed.
    [[nodiscard]] static bool isPossible();

    /// Where the daemon keeps its files.
    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
    pid_t m_bus = -1;
    pid_t m_daemon = -1;
};
