#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace Foundation::Testing {

/// A folder of a test's own that goes with everything in it. Its path holds no symbolic link.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name =
            (std::filesystem::canonical(std::filesystem::temp_directory_path()) / "roamly-test-XXXXXX");
        if (!::mkdtemp(name.data()))
            throw std::system_error(errno, std::generic_category(), name);
        m_path = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }
    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

} // namespace Foundation::Testing
