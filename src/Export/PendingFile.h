// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>

namespace Export {

/// A file in the making. It is written under a temporary name beside its target and takes the target's name
/// when it is complete; until then, and when it is abandoned, nothing stands at the target.
class PendingFile {
public:
    /// Creates the empty temporary file. Throws ExportError (writerSetupFailed).
    explicit PendingFile(std::filesystem::path target);
    /// Deletes the temporary file unless it was committed.
    ~PendingFile();
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;

    /// The temporary name.
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] const std::filesystem::path& target() const { return m_target; }

    /// Deletes the temporary files of this process, for one that is about to end without unwinding.
    /// Thread-safe.
    static void discardAll();

    /// Puts the closed file in its place, safe on the disk. Throws ExportError (writerFailed).
    void commit();

private:
    std::filesystem::path m_target;
    std::filesystem::path m_path;
    bool m_isCommitted = false;
};

} // namespace Export
