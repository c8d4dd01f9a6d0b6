// SPDX-FileCopyrightText: the Roamly developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <system_error>
#include <vector>

/// A folder of a test's own that goes with everything in it. Its path holds no symbolic link.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name =
            std::filesystem::canonical(std::filesystem::temp_directory_path()) / "roamly-test-XXXXXX";
        if (!::mkdtemp(name.data()))
            throw std::system_error(errno, std::generic_category(), name);
        m_path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        // A test may have taken the right to change it away.
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
        return m_path / name;
    }

    /// Writes a file, making the folders above it, and returns its path.
    std::filesystem::path write(const std::filesystem::path& name,
                                std::span<const std::uint8_t> contents) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream{file, std::ios::binary}.write(reinterpret_cast<const char*>(contents.data()),
                                                    static_cast<std::streamsize>(contents.size()));
        return file;
    }

    /// The names of what it holds, hidden files too, in their order.
    [[nodiscard]] std::vector<std::string> contents() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

private:
    std::filesystem::path m_path;
};
