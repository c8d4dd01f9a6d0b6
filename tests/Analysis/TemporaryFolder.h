#pragma once

#include <Foundation/Uuid.h>

#include <filesystem>

namespace Analysis {

/// A folder for one test, removed at its end.
class TemporaryFolder {
public:
    TemporaryFolder()
        : m_path(std::filesystem::temp_directory_path() /
                 ("roamly-analysis-" + Foundation::Uuid::random().text())) {
        std::filesystem::create_directories(m_path);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::filesystem::path operator/(const std::filesystem::path& name) const {
        return m_path / name;
    }

private:
    std::filesystem::path m_path;
};

} // namespace Analysis
